#include <plugins/ogre/QXOgreOpenGL.h>

#include <stdexcept>
#include <string>

#include <dlfcn.h>

namespace QXC {

namespace {

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

}  // namespace QXC
