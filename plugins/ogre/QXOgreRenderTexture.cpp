#include <plugins/ogre/QXOgreRenderTexture.h>

#include <algorithm>
#include <cstdint>

#include <OgreHardwarePixelBuffer.h>
#include <OgreRenderTexture.h>
#include <OgreResourceGroupManager.h>
#include <OgreTextureManager.h>

#include <plugins/ogre/QXOgreGraphics3D.h>
#include <plugins/ogre/QXOgreTexture.h>
#include <plugins/ogre/QXOgreTextureManager.h>

namespace QXC {

QXOgreRenderTexture::QXOgreRenderTexture(QXOgreGraphics3D& graphics3D, QdcUnicodeString const& strName,
    unsigned int nWidth, unsigned int nHeight, int nMipmaps, QdcUnicodeString const& strSceneName)
    : QXOgreRenderTarget(graphics3D, strName, strSceneName, nWidth, nHeight), m_nMipmaps(std::clamp(nMipmaps, 0, 15)) {
  MakeDevice(nWidth, nHeight, 1);
}

QXOgreRenderTexture::~QXOgreRenderTexture() {
  ReleaseDevice();
}

void QXOgreRenderTexture::MakeDevice(unsigned int nWidth, unsigned int nHeight, int nSamples) {
  // The new one first: if the device has no room for it, the old one stays.
  auto const pTexture = Ogre::TextureManager::getSingleton().createManual(QXOgreDevice::MakeName("texture"),
      Ogre::ResourceGroupManager::DEFAULT_RESOURCE_GROUP_NAME, Ogre::TEX_TYPE_2D, nWidth, nHeight, m_nMipmaps,
      Ogre::PF_A8R8G8B8, Ogre::TU_RENDERTARGET | (m_nMipmaps > 0 ? Ogre::TU_AUTOMIPMAP : 0), nullptr, false,
      nSamples > 1 ? static_cast<unsigned int>(nSamples) : 0);
  ReleaseDevice();
  m_pOgreTexture = pTexture;
  SetOgreTarget(m_pOgreTexture->getBuffer()->getRenderTarget());
  if (!m_pTexture) m_pTexture = std::make_unique<QXOgreTexture>(GetRenderer()->GetTextures());
  m_pTexture->ShowForeign(*GetRenderer()->GetDevice(), m_pOgreTexture);
  GetRenderer()->GetTextures().AddPicture(m_strName, m_pTexture.get());
}

QXTexture* QXOgreRenderTexture::GetTexture() const {
  return m_pTexture.get();
}

void QXOgreRenderTexture::CopyFromMemory(unsigned char const* pPixels, unsigned int nByteCount) {
  if (!m_pOgreTexture || !pPixels || nByteCount / 4 < std::uint64_t{m_nWidth} * m_nHeight) return;
  Ogre::PixelBox const pixels(m_nWidth, m_nHeight, 1, Ogre::PF_A8R8G8B8, const_cast<unsigned char*>(pPixels));
  TellTexture(false);
  GetRenderer()->Try([&] { m_pOgreTexture->getBuffer()->blitFromMemory(pixels); });
}

void QXOgreRenderTexture::ReleaseDevice() {
  if (!m_pOgreTexture) return;
  GetRenderer()->GetTextures().RemovePicture(m_strName);
  if (m_pTexture) m_pTexture->LeaveDevice();
  SetOgreTarget(nullptr);
  Ogre::TextureManager::getSingleton().remove(m_pOgreTexture);
  m_pOgreTexture.reset();
}

void QXOgreRenderTexture::ResizeDevice(unsigned int nWidth, unsigned int nHeight) {
  MakeDevice(nWidth, nHeight, GetSamples());
}

void QXOgreRenderTexture::FinishPicture() {
  // For a texture this brings several samples a pixel down to one.
  GetOgreTarget()->swapBuffers();
}

void QXOgreRenderTexture::ReadPicture(
    unsigned int nLeft, unsigned int nTop, unsigned int nWidth, unsigned int nHeight, unsigned char* pPixels) {
  Ogre::PixelBox const pixels(nWidth, nHeight, 1, Ogre::PF_A8R8G8B8, pPixels);
  GetOgreTarget()->copyContentsToMemory(Ogre::Box(nLeft, nTop, nLeft + nWidth, nTop + nHeight), pixels);
}

}  // namespace QXC
