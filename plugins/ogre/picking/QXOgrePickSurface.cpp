#include <plugins/ogre/picking/QXOgrePickSurface.h>

#include <algorithm>
#include <cstddef>

#include <OgreHardwarePixelBuffer.h>
#include <OgreRenderSystem.h>
#include <OgreRenderTexture.h>
#include <OgreResourceGroupManager.h>
#include <OgreRoot.h>
#include <OgreTextureManager.h>
#include <OgreViewport.h>

#include <plugins/ogre/QXOgreDevice.h>
#include <plugins/ogre/QXOgreScene.h>

namespace QXC {

namespace {

/// The device has the first row on top.
template <class Value>
void TurnOver(std::vector<Value>& arrValues, std::size_t nRow) {
  for (std::size_t i = 0, j = arrValues.size() - nRow; i < j; i += nRow, j -= nRow)
    std::swap_ranges(arrValues.begin() + static_cast<std::ptrdiff_t>(i),
        arrValues.begin() + static_cast<std::ptrdiff_t>(i + nRow), arrValues.begin() + static_cast<std::ptrdiff_t>(j));
}

}  // namespace

QXOgrePickSurface::QXOgrePickSurface(unsigned int nWidth, unsigned int nHeight)
    : m_nWidth(nWidth), m_nHeight(nHeight), m_pTarget(nullptr), m_pViewport(nullptr) {
  try {
    m_pIdentifiers = MakeTexture(Ogre::PF_BYTE_RGBA);
    m_pPlaces = MakeTexture(Ogre::PF_FLOAT32_RGBA);
    m_pTarget =
        Ogre::Root::getSingleton().getRenderSystem()->createMultiRenderTarget(QXOgreDevice::MakeName("identifiers"));
    m_pTarget->setAutoUpdated(false);
    m_pTarget->bindSurface(0, m_pIdentifiers->getBuffer()->getRenderTarget());
    m_pTarget->bindSurface(1, m_pPlaces->getBuffer()->getRenderTarget());
    m_pViewport = m_pTarget->addViewport(nullptr);
  } catch (...) {
    Release();
    throw;
  }
  m_pViewport->setAutoUpdated(false);
  m_pViewport->setOverlaysEnabled(false);
  m_pViewport->setShadowsEnabled(false);
  m_pViewport->setBackgroundColour(Ogre::ColourValue::ZERO);
}

QXOgrePickSurface::~QXOgrePickSurface() {
  Release();
}

void QXOgrePickSurface::Release() {
  if (m_pTarget) {
    m_pTarget->removeAllViewports();
    Ogre::Root::getSingleton().getRenderSystem()->destroyRenderTarget(m_pTarget->getName());
  }
  m_pTarget = nullptr;
  for (Ogre::TexturePtr* const pTexture : {&m_pIdentifiers, &m_pPlaces}) {
    if (*pTexture) Ogre::TextureManager::getSingleton().remove(*pTexture);
    pTexture->reset();
  }
}

Ogre::TexturePtr QXOgrePickSurface::MakeTexture(Ogre::PixelFormat eFormat) {
  return Ogre::TextureManager::getSingleton().createManual(QXOgreDevice::MakeName("identifiers"),
      Ogre::ResourceGroupManager::DEFAULT_RESOURCE_GROUP_NAME, Ogre::TEX_TYPE_2D, m_nWidth, m_nHeight, 0, eFormat,
      Ogre::TU_RENDERTARGET);
}

void QXOgrePickSurface::Clear() {
  m_pViewport->setDimensions(0.0F, 0.0F, 1.0F, 1.0F);
  m_pViewport->clear(Ogre::FBT_COLOUR | Ogre::FBT_DEPTH, Ogre::ColourValue::ZERO);
}

void QXOgrePickSurface::Draw(QXOgreScene& scene, QXOgreView const& view, int nLeft, int nBottom, int nWidth,
    int nHeight, unsigned int nClearBuffers) {
  // OGRE takes fractions in float and truncates, and counts from the top.
  auto const fWidth = static_cast<float>(m_nWidth);
  auto const fHeight = static_cast<float>(m_nHeight);
  auto const fraction = [](int nPixels, float fSize) { return (static_cast<float>(nPixels) + 0.5F) / fSize; };
  int const nTop = static_cast<int>(m_nHeight) - nBottom - nHeight;
  m_pViewport->setDimensions(
      fraction(nLeft, fWidth), fraction(nTop, fHeight), fraction(nWidth, fWidth), fraction(nHeight, fHeight));
  m_pViewport->setClearEveryFrame(nClearBuffers != 0, nClearBuffers);
  m_pTarget->_beginUpdate();
  scene.Draw(*m_pViewport, view, 1);
  m_pTarget->_endUpdate();
}

void QXOgrePickSurface::Read(std::vector<unsigned char>& arrIdentifiers, std::vector<float>& arrPlaces) {
  std::size_t const nPixels = std::size_t{m_nWidth} * m_nHeight;
  arrIdentifiers.resize(4 * nPixels);
  arrPlaces.resize(4 * nPixels);
  m_pIdentifiers->getBuffer()->blitToMemory(
      Ogre::PixelBox(m_nWidth, m_nHeight, 1, Ogre::PF_BYTE_RGBA, arrIdentifiers.data()));
  m_pPlaces->getBuffer()->blitToMemory(Ogre::PixelBox(m_nWidth, m_nHeight, 1, Ogre::PF_FLOAT32_RGBA, arrPlaces.data()));
  TurnOver(arrIdentifiers, std::size_t{4} * m_nWidth);
  TurnOver(arrPlaces, std::size_t{4} * m_nWidth);
}

}  // namespace QXC
