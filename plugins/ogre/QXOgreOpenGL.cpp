#include <plugins/ogre/QXOgreOpenGL.h>

#include <algorithm>
#include <stdexcept>
#include <string>

#include <dlfcn.h>

namespace QXC {

namespace {

// OpenGL's numbers.
constexpr unsigned int MAX_TEXTURE_SIZE = 0x0D33;
constexpr unsigned int MAX_VIEWPORT_DIMS = 0x0D3A;
constexpr unsigned int MAX_RENDERBUFFER_SIZE = 0x84E8;
constexpr unsigned int DRAW_FRAMEBUFFER = 0x8CA9;
constexpr unsigned int STENCIL = 0x1802;
constexpr unsigned int ATTACHMENT_OBJECT_TYPE = 0x8CD0;
constexpr unsigned int ATTACHMENT_STENCIL_SIZE = 0x8217;

template <class Function>
void Find(void* pLibrary, char const* szName, Function& pfn) {
  pfn = reinterpret_cast<Function>(dlsym(pLibrary, szName));
  if (!pfn) throw std::runtime_error(std::string("the OpenGL library has no ") + szName);
}

}  // namespace

QXOgreOpenGL const& QXOgreOpenGL::Get() {
  static QXOgreOpenGL const s_OpenGL = [] {
    // OGRE has loaded it already; one more handle keeps the functions where they are.
    void* const pLibrary = dlopen("libGL.so.1", RTLD_LAZY);
    if (!pLibrary) throw std::runtime_error("libGL.so.1 is not there");
    QXOgreOpenGL functions{};
    Find(pLibrary, "glBindTexture", functions.m_pfnBindTexture);
    Find(pLibrary, "glGetIntegerv", functions.m_pfnGetInteger);
    Find(pLibrary, "glGetFramebufferAttachmentParameteriv", functions.m_pfnGetAttachment);
    Find(pLibrary, "glTexParameteri", functions.m_pfnTexParameter);
    Find(pLibrary, "glGenerateMipmap", functions.m_pfnGenerateMipmap);
    Find(pLibrary, "glGenQueries", functions.m_pfnGenQueries);
    Find(pLibrary, "glDeleteQueries", functions.m_pfnDeleteQueries);
    Find(pLibrary, "glBeginQuery", functions.m_pfnBeginQuery);
    Find(pLibrary, "glEndQuery", functions.m_pfnEndQuery);
    Find(pLibrary, "glGetQueryObjectuiv", functions.m_pfnGetQueryObject);
    return functions;
  }();
  return s_OpenGL;
}

int QXOgreOpenGL::GetMaxTextureSize() const {
  int nSize = 0;
  m_pfnGetInteger(MAX_TEXTURE_SIZE, &nSize);
  return nSize;
}

int QXOgreOpenGL::GetMaxTargetSize() const {
  int nBufferSize = 0;
  int nViewportSizes[2] = {};
  m_pfnGetInteger(MAX_RENDERBUFFER_SIZE, &nBufferSize);
  m_pfnGetInteger(MAX_VIEWPORT_DIMS, nViewportSizes);
  return std::min({GetMaxTextureSize(), nBufferSize, nViewportSizes[0], nViewportSizes[1]});
}

int QXOgreOpenGL::GetStencilBits() const {
  // The size of an attachment that is not there is an error to ask for.
  int eType = 0;
  m_pfnGetAttachment(DRAW_FRAMEBUFFER, STENCIL, ATTACHMENT_OBJECT_TYPE, &eType);
  int nBits = 0;
  if (eType != 0) m_pfnGetAttachment(DRAW_FRAMEBUFFER, STENCIL, ATTACHMENT_STENCIL_SIZE, &nBits);
  return nBits;
}

}  // namespace QXC
