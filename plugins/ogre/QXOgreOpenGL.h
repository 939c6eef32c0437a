/// @file
/// OpenGL itself, for what OGRE has no words for.
#pragma once

namespace QXC {

/// The few functions of OpenGL that are needed, out of the library that OGRE draws with.
struct QXOgreOpenGL {
  /// Throws std::runtime_error with a reason if the library does not have them.
  static QXOgreOpenGL const& Get();

  /// Edge length of the largest texture, pixels.
  int GetMaxTextureSize() const;
  /// Edge length of the largest picture that can be drawn at once, pixels.
  int GetMaxTargetSize() const;
  /// Bits a pixel of the stencil buffer of what is being drawn into, 0 without one.
  int GetStencilBits() const;

  void (*m_pfnBindTexture)(unsigned int, unsigned int);
  void (*m_pfnGetInteger)(unsigned int, int*);
  void (*m_pfnGetAttachment)(unsigned int, unsigned int, unsigned int, int*);
  void (*m_pfnTexParameter)(unsigned int, unsigned int, int);
  void (*m_pfnGenerateMipmap)(unsigned int);
  void (*m_pfnGenQueries)(int, unsigned int*);
  void (*m_pfnDeleteQueries)(int, unsigned int const*);
  void (*m_pfnBeginQuery)(unsigned int, unsigned int);
  void (*m_pfnEndQuery)(unsigned int);
  void (*m_pfnGetQueryObject)(unsigned int, unsigned int, unsigned int*);
};

}  // namespace QXC
