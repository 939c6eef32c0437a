#include <plugins/ogre/QXOgreMaterials.h>

#include <stdexcept>

#include <OgreGpuProgramParams.h>
#include <OgreHighLevelGpuProgram.h>
#include <OgreHighLevelGpuProgramManager.h>
#include <OgreMaterial.h>
#include <OgreMaterialManager.h>
#include <OgrePass.h>
#include <OgreResourceGroupManager.h>
#include <OgreTechnique.h>

#include <plugins/ogre/QXOgreDevice.h>
#include <plugins/ogre/QXOgreLog.h>
#include <plugins/ogre/QXOgreShaders.h>

namespace QXC {

QXOgreMaterials::QXOgreMaterials(QXOgreLog& log) {
  CompilePrograms(log);
}

QXOgreMaterials::~QXOgreMaterials() {
  // Materials hold the programs, so they go first.
  for (auto& [surface, pMaterial] : m_mapMaterials) Ogre::MaterialManager::getSingleton().remove(pMaterial);
  m_mapMaterials.clear();
  for (auto* pProgram : {&m_pVertexProgram, &m_pFragmentProgram}) {
    if (*pProgram) Ogre::HighLevelGpuProgramManager::getSingleton().remove(*pProgram);
    pProgram->reset();
  }
}

void QXOgreMaterials::CompilePrograms(QXOgreLog& log) {
  auto& programs = Ogre::HighLevelGpuProgramManager::getSingleton();
  auto const compile = [&](char const* szSource, Ogre::GpuProgramType eType) {
    auto pProgram = programs.createProgram(
        QXOgreDevice::MakeName("program"), Ogre::ResourceGroupManager::DEFAULT_RESOURCE_GROUP_NAME, "glsl", eType);
    pProgram->setSource(szSource);
    log.Clear();
    pProgram->load();
    if (pProgram->hasCompileError()) throw std::runtime_error("a program does not compile: " + log.GetLastComplaint());
    return pProgram;
  };
  m_pVertexProgram = compile(QX_OGRE_VERTEX_SHADER, Ogre::GPT_VERTEX_PROGRAM);
  m_pFragmentProgram = compile(QX_OGRE_FRAGMENT_SHADER, Ogre::GPT_FRAGMENT_PROGRAM);
}

Ogre::MaterialPtr const& QXOgreMaterials::Get(QXOgreSurface const& surface) {
  Ogre::MaterialPtr& pMaterial = m_mapMaterials[surface];
  if (!pMaterial) pMaterial = Make(surface);
  return pMaterial;
}

Ogre::MaterialPtr QXOgreMaterials::Make(QXOgreSurface const& surface) {
  auto pMaterial = Ogre::MaterialManager::getSingleton().create(
      QXOgreDevice::MakeName("material"), Ogre::ResourceGroupManager::DEFAULT_RESOURCE_GROUP_NAME);
  Ogre::Pass* const pPass = pMaterial->getTechnique(0)->getPass(0);
  pPass->setCullingMode(static_cast<Ogre::CullingMode>(surface.m_eCullingMode));
  pPass->setPolygonMode(surface.m_bWireframe ? Ogre::PM_WIREFRAME : Ogre::PM_SOLID);
  pPass->setDepthCheckEnabled(surface.m_bDepthTest);
  pPass->setDepthWriteEnabled(surface.m_bDepthWrite && !surface.m_bTransparent);
  pPass->setDepthBias(surface.m_fDepthBias, surface.m_fDepthBiasSlope);
  pPass->setLineWidth(surface.m_fLineWidth);
  // Lets the vertex program say the size.
  pPass->setPointAttenuation(true);
  // Alpha adds up instead of being blended: what is seen through a pane stays as solid as it was.
  if (surface.m_bTransparent)
    pPass->setSeparateSceneBlending(
        Ogre::SBF_SOURCE_ALPHA, Ogre::SBF_ONE_MINUS_SOURCE_ALPHA, Ogre::SBF_ONE, Ogre::SBF_ONE_MINUS_SOURCE_ALPHA);
  pPass->setVertexProgram(m_pVertexProgram->getName());
  pPass->setFragmentProgram(m_pFragmentProgram->getName());
  using Parameters = Ogre::GpuProgramParameters;
  auto const pVertex = pPass->getVertexProgramParameters();
  pVertex->setNamedAutoConstant("worldView", Parameters::ACT_WORLDVIEW_MATRIX);
  pVertex->setNamedAutoConstant("worldViewProj", Parameters::ACT_WORLDVIEWPROJ_MATRIX);
  pVertex->setNamedAutoConstant("normalToView", Parameters::ACT_INVERSE_TRANSPOSE_WORLDVIEW_MATRIX);
  pVertex->setNamedConstant("pointSize", surface.m_fPointSize);
  auto const pFragment = pPass->getFragmentProgramParameters();
  pFragment->setNamedAutoConstant("tint", Parameters::ACT_CUSTOM, QX_OGRE_TINT);
  pFragment->setNamedAutoConstant("selection", Parameters::ACT_CUSTOM, QX_OGRE_SELECTION);
  pFragment->setNamedAutoConstant("shading", Parameters::ACT_CUSTOM, QX_OGRE_SHADING);
  pMaterial->load();
  return pMaterial;
}

void QXOgreMaterials::SetLight(QXOgreLight const& light) {
  for (auto const& [surface, pMaterial] : m_mapMaterials) {
    auto const pParameters = pMaterial->getTechnique(0)->getPass(0)->getFragmentProgramParameters();
    pParameters->setNamedConstant("toSun", light.m_vecToSun);
    pParameters->setNamedConstant("ambient", light.m_Ambient);
    pParameters->setNamedConstant("diffuse", light.m_Diffuse);
    pParameters->setNamedConstant("orthographic", light.m_fOrthographic);
  }
}

}  // namespace QXC
