#include <plugins/ogre/environment/QXOgreEffect.h>

#include <OgreHardwarePixelBuffer.h>
#include <OgreHighLevelGpuProgram.h>
#include <OgreMaterial.h>
#include <OgreMaterialManager.h>
#include <OgreResourceGroupManager.h>
#include <OgreTechnique.h>
#include <OgreTextureManager.h>
#include <OgreTextureUnitState.h>

#include <plugins/ogre/QXOgreDevice.h>
#include <plugins/ogre/QXOgreMaterials.h>

namespace QXC {

namespace {

Ogre::String const& Group() {
  return Ogre::ResourceGroupManager::DEFAULT_RESOURCE_GROUP_NAME;
}

}  // namespace

QXOgreEffect::QXOgreEffect(QXOgreDevice& device, std::string const& strVertex, std::string const& strFragment) {
  QXOgreMaterials& materials = device.GetMaterials();
  auto const pVertex = materials.GetProgram(strVertex, Ogre::GPT_VERTEX_PROGRAM);
  auto const pFragment = materials.GetProgram(strFragment, Ogre::GPT_FRAGMENT_PROGRAM);
  m_pMaterial = Ogre::MaterialManager::getSingleton().create(QXOgreDevice::MakeName("material"), Group());
  GetPass().setVertexProgram(pVertex->getName());
  GetPass().setFragmentProgram(pFragment->getName());
  GetPass().setCullingMode(Ogre::CULL_NONE);
  m_pMaterial->load();
}

QXOgreEffect::~QXOgreEffect() {
  Ogre::MaterialManager::getSingleton().remove(m_pMaterial);
}

Ogre::Pass& QXOgreEffect::GetPass() const {
  return *m_pMaterial->getTechnique(0)->getPass(0);
}

void QXOgreEffect::AddTexture(std::string const& strName, Ogre::TexturePtr const& pTexture, bool bRepeat) {
  Ogre::Pass& pass = GetPass();
  int const nUnit = static_cast<int>(pass.getNumTextureUnitStates());
  Ogre::TextureUnitState* const pUnit = pass.createTextureUnitState();
  pUnit->setTexture(pTexture);
  pUnit->setTextureAddressingMode(bRepeat ? Ogre::TextureUnitState::TAM_WRAP : Ogre::TextureUnitState::TAM_CLAMP);
  pUnit->setTextureFiltering(
      Ogre::FO_LINEAR, Ogre::FO_LINEAR, pTexture->getNumMipmaps() > 0 ? Ogre::FO_LINEAR : Ogre::FO_NONE);
  GetFragment().setNamedConstant(strName, nUnit);
}

QXOgreData::QXOgreData(
    QXOgreDevice& device, unsigned int nWidth, unsigned int nHeight, Ogre::PixelFormat eFormat, bool bLevels)
    : m_Device(device), m_eFormat(eFormat), m_nWidth(nWidth), m_nHeight(nHeight), m_nByteCount(0) {
  int const nUsage = Ogre::TU_DYNAMIC_WRITE_ONLY | (bLevels ? Ogre::TU_AUTOMIPMAP : 0);
  m_pTexture = Ogre::TextureManager::getSingleton().createManual(QXOgreDevice::MakeName("data"), Group(),
      Ogre::TEX_TYPE_2D, nWidth, nHeight, bLevels ? static_cast<int>(Ogre::MIP_UNLIMITED) : 0, eFormat, nUsage);
  std::size_t const nBytes = Ogre::PixelUtil::getMemorySize(nWidth, nHeight, 1, m_pTexture->getFormat());
  // The levels of a row of halves come to a third of the first.
  m_nByteCount = bLevels ? nBytes + nBytes / 3 : nBytes;
  QXOgreDevice::CountMemory(m_nByteCount);
}

QXOgreData::~QXOgreData() {
  m_Device.Discard(m_pTexture, m_nByteCount);
}

void QXOgreData::Fill(void const* pPixels) {
  m_pTexture->getBuffer()->blitFromMemory(
      Ogre::PixelBox(m_nWidth, m_nHeight, 1, m_eFormat, const_cast<void*>(pPixels)));
}

}  // namespace QXC
