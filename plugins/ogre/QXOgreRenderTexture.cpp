#include <plugins/ogre/QXOgreRenderTexture.h>

#include <algorithm>
#include <cstdint>

#include <OgreHardwarePixelBuffer.h>
#include <OgreRenderTexture.h>
#include <OgreResourceGroupManager.h>
#include <OgreTextureManager.h>

#include <plugins/ogre/QXOgreGraphics3D.h>

namespace QXC {

namespace {

constexpr int DEFAULT_SAMPLES = 4;
constexpr int MAX_SAMPLES = 16;

}  // namespace

QXOgreRenderTexture::QXOgreRenderTexture(QXOgreGraphics3D& graphics3D, QdcUnicodeString const& strName,
    unsigned int nWidth, unsigned int nHeight, int nMipmaps, QdcUnicodeString const& strSceneName)
    : QXOgreRenderTarget(graphics3D, strName, strSceneName, nWidth, nHeight), m_nMipmaps(std::clamp(nMipmaps, 0, 15)),
      m_nSamples(1) {
  Make(nWidth, nHeight, m_nSamples);
}

QXOgreRenderTexture::~QXOgreRenderTexture() {
  ReleaseDevice();
}

void QXOgreRenderTexture::Make(unsigned int nWidth, unsigned int nHeight, int nSamples) {
  // The new one first: if the device has no room for it, the old one stays.
  auto const pTexture = Ogre::TextureManager::getSingleton().createManual(QXOgreDevice::MakeName("texture"),
      Ogre::ResourceGroupManager::DEFAULT_RESOURCE_GROUP_NAME, Ogre::TEX_TYPE_2D, nWidth, nHeight, m_nMipmaps,
      Ogre::PF_A8R8G8B8, Ogre::TU_RENDERTARGET | (m_nMipmaps > 0 ? Ogre::TU_AUTOMIPMAP : 0), nullptr, false,
      nSamples > 1 ? static_cast<unsigned int>(nSamples) : 0);
  ReleaseDevice();
  m_pOgreTexture = pTexture;
  m_nSamples = nSamples;
  SetOgreTarget(m_pOgreTexture->getBuffer()->getRenderTarget());
}

void QXOgreRenderTexture::SetSceneAntialias(unsigned char bEnable) {
  if ((bEnable != 0) != (m_nSamples > 1)) SetSceneAntialiasValue(bEnable ? DEFAULT_SAMPLES : 1);
}

void QXOgreRenderTexture::SetSceneAntialiasValue(int nSamples) {
  nSamples = std::clamp(nSamples, 1, MAX_SAMPLES);
  if (!GetRenderer() || nSamples == m_nSamples) return;
  GetRenderer()->Try([&] { Make(m_nWidth, m_nHeight, nSamples); });
}

void QXOgreRenderTexture::CopyFromMemory(unsigned char const* pPixels, unsigned int nByteCount) {
  if (!m_pOgreTexture || !pPixels || nByteCount / 4 < std::uint64_t{m_nWidth} * m_nHeight) return;
  Ogre::PixelBox const pixels(m_nWidth, m_nHeight, 1, Ogre::PF_A8R8G8B8, const_cast<unsigned char*>(pPixels));
  GetRenderer()->Try([&] { m_pOgreTexture->getBuffer()->blitFromMemory(pixels); });
}

void QXOgreRenderTexture::ReleaseDevice() {
  if (!m_pOgreTexture) return;
  SetOgreTarget(nullptr);
  Ogre::TextureManager::getSingleton().remove(m_pOgreTexture);
  m_pOgreTexture.reset();
}

void QXOgreRenderTexture::ResizeDevice(unsigned int nWidth, unsigned int nHeight) {
  Make(nWidth, nHeight, m_nSamples);
}

void QXOgreRenderTexture::FinishPicture() {
  // For a texture this brings several samples a pixel down to one.
  GetOgreTarget()->swapBuffers();
}

void QXOgreRenderTexture::ReadPicture(unsigned char* pPixels) {
  Ogre::PixelBox const pixels(m_nWidth, m_nHeight, 1, Ogre::PF_A8R8G8B8, pPixels);
  GetOgreTarget()->copyContentsToMemory(Ogre::Box(0, 0, m_nWidth, m_nHeight), pixels);
}

}  // namespace QXC
