/// @file
/// A material on a pair of programs, and a texture of numbers.
#pragma once

#include <cstddef>
#include <string>

#include <OgreGpuProgramParams.h>
#include <OgrePass.h>
#include <OgrePixelFormat.h>
#include <OgrePrerequisites.h>

namespace QXC {

class QXOgreDevice;

/// One pass with parameters of its own, which count from the next draw operation on. Effects of the same sources share
/// the programs.
class QXOgreEffect final {
public:
  /// Throws std::runtime_error with the compiler's words if the programs do not compile.
  QXOgreEffect(QXOgreDevice& device, std::string const& strVertex, std::string const& strFragment);
  ~QXOgreEffect();
  QXOgreEffect(QXOgreEffect const&) = delete;
  QXOgreEffect& operator=(QXOgreEffect const&) = delete;

  Ogre::MaterialPtr const& GetMaterial() const { return m_pMaterial; }
  Ogre::Pass& GetPass() const;
  Ogre::GpuProgramParameters& GetVertex() const { return *GetPass().getVertexProgramParameters(); }
  Ogre::GpuProgramParameters& GetFragment() const { return *GetPass().getFragmentProgramParameters(); }
  /// Adds a texture, smoothly looked up, under the name that the fragment program gives it.
  /// @param bRepeat  beyond its edges it goes on with the opposite ones; otherwise with the edge itself
  void AddTexture(std::string const& strName, Ogre::TexturePtr const& pTexture, bool bRepeat);

private:
  Ogre::MaterialPtr m_pMaterial;
};

/// A texture that is filled from memory, as often as its owner likes. Counted in QXTextureMemory.
class QXOgreData final {
public:
  /// @param bLevels  smaller levels for what is far away, made with each Fill
  QXOgreData(QXOgreDevice& device, unsigned int nWidth, unsigned int nHeight, Ogre::PixelFormat eFormat, bool bLevels);
  ~QXOgreData();
  QXOgreData(QXOgreData const&) = delete;
  QXOgreData& operator=(QXOgreData const&) = delete;

  /// @param pPixels  width x height of the format, the first row first
  void Fill(void const* pPixels);
  Ogre::TexturePtr const& GetTexture() const { return m_pTexture; }

private:
  QXOgreDevice& m_Device;
  Ogre::TexturePtr m_pTexture;
  Ogre::PixelFormat m_eFormat;
  unsigned int m_nWidth;
  unsigned int m_nHeight;
  std::size_t m_nByteCount;
};

}  // namespace QXC
