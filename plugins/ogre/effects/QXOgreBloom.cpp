#include <plugins/ogre/effects/QXOgreBloom.h>

#include <algorithm>
#include <cmath>

#include <OgreHardwareBufferManager.h>
#include <OgreHardwarePixelBuffer.h>
#include <OgreMaterial.h>
#include <OgreMaterialManager.h>
#include <OgrePass.h>
#include <OgreRenderTexture.h>
#include <OgreResourceGroupManager.h>
#include <OgreTechnique.h>
#include <OgreTextureManager.h>
#include <OgreVertexIndexData.h>
#include <OgreViewport.h>

#include <plugins/ogre/QXOgreDevice.h>
#include <plugins/ogre/QXOgreMaterials.h>
#include <plugins/ogre/QXOgreScene.h>
#include <plugins/ogre/effects/QXOgreBloomShaders.h>

namespace QXC {

namespace {

constexpr double MAX_INTENSITY = 10.0;
constexpr double MAX_RADIUS = 0.25;
/// Pixels of the reduced picture to each side that a blur reads; the program has room for as many weights.
constexpr unsigned int MAX_REACH = 8;

char const* const GROUP = "General";

double Limited(double dValue, double dLow, double dHigh, double dFormer) {
  return std::isnan(dValue) ? dFormer : std::clamp(dValue, dLow, dHigh);
}

Ogre::Vector2 ToVector(double dX, double dY) {
  return {static_cast<Ogre::Real>(dX), static_cast<Ogre::Real>(dY)};
}

}  // namespace

QXBloomSetting QXOgreBloom::Limit(QXBloomSetting const& setting, QXBloomSetting const& former) {
  QXBloomSetting limited;
  limited.m_dThreshold = Limited(setting.m_dThreshold, 0.0, 1.0, former.m_dThreshold);
  limited.m_dIntensity = Limited(setting.m_dIntensity, 0.0, MAX_INTENSITY, former.m_dIntensity);
  limited.m_dRadius = Limited(setting.m_dRadius, 0.0, MAX_RADIUS, former.m_dRadius);
  return limited;
}

bool QXOgreBloom::IsVisible(QXBloomSetting const& setting) {
  // As the program sees it, which divides by what a float threshold leaves of 1.
  return setting.m_dIntensity > 0.0 && static_cast<float>(setting.m_dThreshold) < 1.0F;
}

QXOgreBloom::QXOgreBloom(QXOgreDevice& device) : m_Device(device), m_pScene(device.CreateScene()) {
  m_pVertex = device.GetMaterials().GetProgram(QX_OGRE_WHOLE_SHADER, Ogre::GPT_VERTEX_PROGRAM);
  m_Bright = MakeStep(QX_OGRE_BRIGHT_SHADER, 1);
  m_Blur = MakeStep(QX_OGRE_BLUR_SHADER, 1);
  m_Sum = MakeStep(QX_OGRE_SUM_SHADER, 2);
  m_pTriangle = std::make_unique<Ogre::VertexData>();
  m_pTriangle->vertexCount = 3;
  m_pTriangle->vertexDeclaration->addElement(0, 0, Ogre::VET_FLOAT3, Ogre::VES_POSITION);
  float const arrCorners[] = {-1.0F, -1.0F, 0.0F, 3.0F, -1.0F, 0.0F, -1.0F, 3.0F, 0.0F};
  auto const pBuffer = Ogre::HardwareBufferManager::getSingleton().createVertexBuffer(
      3 * sizeof(float), 3, Ogre::HardwareBuffer::HBU_STATIC_WRITE_ONLY);
  pBuffer->writeData(0, sizeof arrCorners, arrCorners, true);
  m_pTriangle->vertexBufferBinding->setBinding(0, pBuffer);
}

QXOgreBloom::~QXOgreBloom() {
  // Materials hold textures, so they go first.
  for (Step const& step : {m_Bright, m_Blur, m_Sum})
    if (step.m_pMaterial) Ogre::MaterialManager::getSingleton().remove(step.m_pMaterial);
  for (Picture* const pPicture : {&m_Drawn, &m_arrReduced[0], &m_arrReduced[1]}) Free(*pPicture);
  m_Device.DestroyScene(static_cast<QXOgreScene*>(m_pScene));
}

QXOgreBloom::Step QXOgreBloom::MakeStep(char const* szFragment, int nTextures) {
  Step step;
  auto const pFragment = m_Device.GetMaterials().GetProgram(szFragment, Ogre::GPT_FRAGMENT_PROGRAM);
  step.m_pMaterial = Ogre::MaterialManager::getSingleton().create(QXOgreDevice::MakeName("effect"), GROUP);
  Ogre::Pass& pass = *step.m_pMaterial->getTechnique(0)->getPass(0);
  pass.setCullingMode(Ogre::CULL_NONE);
  pass.setDepthCheckEnabled(false);
  pass.setDepthWriteEnabled(false);
  pass.setPolygonModeOverrideable(false);
  pass.setVertexProgram(m_pVertex->getName());
  pass.setFragmentProgram(pFragment->getName());
  pass.getVertexProgramParameters()->setNamedAutoConstant(
      "flipping", Ogre::GpuProgramParameters::ACT_RENDER_TARGET_FLIPPING);
  char const* const arrNames[] = {"picture", "glow"};
  for (int i = 0; i < nTextures; ++i) {
    Ogre::TextureUnitState& unit = *pass.createTextureUnitState();
    unit.setTextureAddressingMode(Ogre::TAM_CLAMP);
    unit.setTextureFiltering(Ogre::FO_LINEAR, Ogre::FO_LINEAR, Ogre::FO_NONE);
    pass.getFragmentProgramParameters()->setNamedConstant(arrNames[i], i);
  }
  step.m_pMaterial->load();
  return step;
}

Ogre::GpuProgramParametersSharedPtr QXOgreBloom::ParametersOf(Step const& step) {
  return step.m_pMaterial->getTechnique(0)->getPass(0)->getFragmentProgramParameters();
}

void QXOgreBloom::SetTexture(Step const& step, unsigned short nUnit, Picture const& picture) {
  step.m_pMaterial->getTechnique(0)->getPass(0)->getTextureUnitState(nUnit)->setTexture(picture.m_pTexture);
}

void QXOgreBloom::Free(Picture& picture) {
  picture.m_pSampleCounts.reset();
  if (picture.m_pTexture) Ogre::TextureManager::getSingleton().remove(picture.m_pTexture);
  picture = {};
}

void QXOgreBloom::Fit(Picture& picture, unsigned int nWidth, unsigned int nHeight, int nSamples) {
  if (picture.m_nWidth == nWidth && picture.m_nHeight == nHeight && picture.m_nSamples == nSamples) return;
  Free(picture);
  picture.m_pTexture = Ogre::TextureManager::getSingleton().createManual(QXOgreDevice::MakeName("texture"), GROUP,
      Ogre::TEX_TYPE_2D, nWidth, nHeight, 0, Ogre::PF_A8R8G8B8, Ogre::TU_RENDERTARGET, nullptr, false,
      nSamples > 1 ? static_cast<unsigned int>(nSamples) : 0);
  Ogre::RenderTarget& target = *picture.m_pTexture->getBuffer()->getRenderTarget();
  target.setAutoUpdated(false);
  picture.m_pViewport = target.addViewport(nullptr);
  picture.m_pViewport->setAutoUpdated(false);
  picture.m_pViewport->setOverlaysEnabled(false);
  picture.m_pViewport->setShadowsEnabled(false);
  // Viewports need not clear it nor cover it.
  picture.m_pViewport->clear(
      Ogre::FBT_COLOUR | Ogre::FBT_DEPTH | Ogre::FBT_STENCIL, Ogre::ColourValue(0.0F, 0.0F, 0.0F, 0.0F));
  // In the end: where the device has no room for it, the next frame asks again.
  picture.m_nWidth = nWidth;
  picture.m_nHeight = nHeight;
  picture.m_nSamples = nSamples;
}

Ogre::Viewport& QXOgreBloom::Begin(unsigned int nWidth, unsigned int nHeight, int nSamples) {
  Fit(m_Drawn, nWidth, nHeight, nSamples);
  return *m_Drawn.m_pViewport;
}

QXOgreSampleCounts& QXOgreBloom::GetSampleCounts() {
  if (!m_Drawn.m_pSampleCounts)
    m_Drawn.m_pSampleCounts =
        std::make_unique<QXOgreSampleCounts>(m_Device.GetRenderSystem(), *m_Drawn.m_pViewport->getTarget());
  return *m_Drawn.m_pSampleCounts;
}

void QXOgreBloom::SetWeights(double dRadius) {
  // A bell of which the radius is two standard deviations.
  auto const nReach = static_cast<unsigned int>(std::ceil(dRadius));
  float arrWeights[MAX_REACH + 1] = {};
  double dSum = 0.0;
  auto const weight = [&](unsigned int i) {
    // Written so that no square of a tiny radius is divided by.
    return i > 0 ? std::exp(-2.0 * (i / dRadius) * (i / dRadius)) : 1.0;
  };
  for (unsigned int i = 0; i <= nReach; ++i) dSum += (i == 0 ? 1.0 : 2.0) * weight(i);
  for (unsigned int i = 0; i <= nReach; ++i) arrWeights[i] = static_cast<float>(weight(i) / dSum);
  ParametersOf(m_Blur)->setNamedConstant("weights", arrWeights, MAX_REACH + 1, 1);
  ParametersOf(m_Blur)->setNamedConstant("reach", static_cast<Ogre::Real>(nReach));
}

void QXOgreBloom::Draw(Step const& step, Ogre::Viewport& viewport) {
  Ogre::RenderOperation operation;
  operation.vertexData = m_pTriangle.get();
  operation.useIndexes = false;
  operation.operationType = Ogre::RenderOperation::OT_TRIANGLE_LIST;
  m_pScene->manualRender(&operation, step.m_pMaterial->getTechnique(0)->getPass(0), &viewport, Ogre::Affine3::IDENTITY,
      Ogre::Affine3::IDENTITY, Ogre::Matrix4::IDENTITY, true);
}

void QXOgreBloom::Finish(Ogre::Viewport& viewport, QXBloomSetting const& setting) {
  // Brings several samples a pixel down to one.
  m_Drawn.m_pTexture->getBuffer()->getRenderTarget()->swapBuffers();
  double const dRadius = setting.m_dRadius * m_Drawn.m_nHeight;
  unsigned int nSide = 1;
  while (dRadius / nSide > MAX_REACH) nSide *= 2;
  unsigned int const nWidth = (m_Drawn.m_nWidth + nSide - 1) / nSide;
  unsigned int const nHeight = (m_Drawn.m_nHeight + nSide - 1) / nSide;
  for (Picture& picture : m_arrReduced) Fit(picture, nWidth, nHeight, 1);
  SetWeights(dRadius / nSide);
  Ogre::Vector2 const vecSize = ToVector(m_Drawn.m_nWidth, m_Drawn.m_nHeight);
  Ogre::Vector2 const vecReduced = ToVector(nWidth, nHeight);

  ParametersOf(m_Bright)->setNamedConstant("size", vecSize);
  ParametersOf(m_Bright)->setNamedConstant("reduced", vecReduced);
  ParametersOf(m_Bright)->setNamedConstant("side", static_cast<Ogre::Real>(nSide));
  ParametersOf(m_Bright)->setNamedConstant("threshold", static_cast<Ogre::Real>(setting.m_dThreshold));
  SetTexture(m_Bright, 0, m_Drawn);
  Draw(m_Bright, *m_arrReduced[0].m_pViewport);

  ParametersOf(m_Blur)->setNamedConstant("reduced", vecReduced);
  for (std::size_t i = 0; i < m_arrReduced.size(); ++i) {
    ParametersOf(m_Blur)->setNamedConstant("direction", ToVector(i == 0 ? 1.0 : 0.0, i == 0 ? 0.0 : 1.0));
    SetTexture(m_Blur, 0, m_arrReduced[i]);
    Draw(m_Blur, *m_arrReduced[1 - i].m_pViewport);
  }

  ParametersOf(m_Sum)->setNamedConstant("size", vecSize);
  // The last squares may reach beyond the picture.
  ParametersOf(m_Sum)->setNamedConstant("covered", vecSize / (vecReduced * static_cast<Ogre::Real>(nSide)));
  ParametersOf(m_Sum)->setNamedConstant("intensity", static_cast<Ogre::Real>(setting.m_dIntensity));
  SetTexture(m_Sum, 0, m_Drawn);
  SetTexture(m_Sum, 1, m_arrReduced[0]);
  Draw(m_Sum, viewport);
}

}  // namespace QXC
