#include <plugins/ogre/QXOgreMaterials.h>

#include <stdexcept>
#include <string>

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

namespace QXC {

namespace {

/// What adds itself to what is behind it or multiplies that vanishes in fog, instead of bringing the fog's colour a second
/// time.
Ogre::ColourValue FogColorOf(QXOgreSurface const& surface, QXOgreFog const& fog) {
  if (!surface.m_bTransparent) return fog.m_Color;
  if (surface.m_eDestFactor == Ogre::SBF_ONE) return Ogre::ColourValue::Black;
  bool const bSource = surface.m_eSourceFactor == Ogre::SBF_DEST_COLOUR && surface.m_eDestFactor == Ogre::SBF_ZERO;
  bool const bDest = surface.m_eSourceFactor == Ogre::SBF_ZERO && surface.m_eDestFactor == Ogre::SBF_SOURCE_COLOUR;
  return bSource || bDest ? Ogre::ColourValue::White : fog.m_Color;
}

/// Labels are neither lit nor in fog.
bool HasAtmosphere(QXOgreSurface const& surface) {
  return surface.m_eProgram != QX_OGRE_PROGRAM_LABEL;
}

/// To the technique that the light needs.
void Apply(Ogre::Material const& material, QXOgreSurface const& surface, QXOgreLight const& light) {
  auto const pParameters = material.getTechnique(light.GetTechnique())->getPass(0)->getFragmentProgramParameters();
  pParameters->setNamedConstant("toSun", light.m_vecToSun);
  pParameters->setNamedConstant("ambient", light.m_Ambient);
  pParameters->setNamedConstant("diffuse", light.m_Diffuse);
  pParameters->setNamedConstant("orthographic", light.m_fOrthographic);
  if (light.GetTechnique() == 0 || !HasAtmosphere(surface)) return;
  pParameters->setNamedConstant("lampCount", light.m_Lamps.m_nCount);
  if (light.m_Lamps.m_nCount > 0)
    pParameters->setNamedConstant("lamps", light.m_Lamps.m_arrNumbers.data(),
        static_cast<std::size_t>(light.m_Lamps.m_nCount) * QXOgreLamps::NUMBERS / 4, 4);
  pParameters->setNamedConstant("fog", light.m_Fog.m_Numbers);
  pParameters->setNamedConstant("fogColour", FogColorOf(surface, light.m_Fog));
}

void Tell(Ogre::Material const& material, int nView) {
  auto const pParameters = material.getTechnique(0)->getPass(0)->getFragmentProgramParameters();
  pParameters->setNamedConstant("viewNumber", static_cast<Ogre::Real>(nView));
}

}  // namespace

QXOgreMaterials::QXOgreMaterials(QXOgreLog& log) : m_Log(log), m_Light() {
  GetPrograms({});
}

QXOgreMaterials::~QXOgreMaterials() {
  // Materials hold the programs, so they go first.
  for (auto& [surface, pMaterial] : m_mapMaterials) Ogre::MaterialManager::getSingleton().remove(pMaterial);
  m_mapMaterials.clear();
  for (auto& [pPicture, pMaterial] : m_mapIdentifierMaterials) Ogre::MaterialManager::getSingleton().remove(pMaterial);
  m_mapIdentifierMaterials.clear();
  for (auto const& [source, pProgram] : m_mapSources) Ogre::HighLevelGpuProgramManager::getSingleton().remove(pProgram);
}

QXOgreMaterials::Programs const& QXOgreMaterials::GetPrograms(QXOgreVariant const& variant) {
  Programs& programs = m_mapPrograms[variant];
  if (!programs.m_pVertex) programs.m_pVertex = GetProgram(MakeVertexSource(variant), Ogre::GPT_VERTEX_PROGRAM);
  if (!programs.m_pFragment) programs.m_pFragment = GetProgram(MakeFragmentSource(variant), Ogre::GPT_FRAGMENT_PROGRAM);
  return programs;
}

Ogre::HighLevelGpuProgramPtr const& QXOgreMaterials::GetProgram(
    std::string const& strSource, Ogre::GpuProgramType eType) {
  auto const position = m_mapSources.find({eType, strSource});
  if (position != m_mapSources.end()) return position->second;
  auto pProgram = Ogre::HighLevelGpuProgramManager::getSingleton().createProgram(
      QXOgreDevice::MakeName("program"), Ogre::ResourceGroupManager::DEFAULT_RESOURCE_GROUP_NAME, "glsl", eType);
  pProgram->setSource(strSource);
  m_Log.Clear();
  pProgram->load();
  if (!pProgram->hasCompileError()) return m_mapSources[{eType, strSource}] = pProgram;
  Ogre::HighLevelGpuProgramManager::getSingleton().remove(pProgram);
  throw std::runtime_error("a program does not compile: " + m_Log.GetLastComplaint());
}

Ogre::MaterialPtr const& QXOgreMaterials::Get(QXOgreSurface const& surface) {
  auto const position = m_mapMaterials.find(surface);
  if (position != m_mapMaterials.end()) return position->second;
  Ogre::MaterialPtr const pMaterial = Make(surface, false);
  // It may be made while a viewport is being drawn, whose light was set before.
  Apply(*pMaterial, surface, m_Light);
  return m_mapMaterials[surface] = pMaterial;
}

Ogre::MaterialPtr const& QXOgreMaterials::GetForIdentifiers(Ogre::MaterialPtr const& pMaterial) {
  auto const position = m_mapIdentifierMaterials.find(pMaterial);
  if (position != m_mapIdentifierMaterials.end()) return position->second;
  Ogre::MaterialPtr pResult;
  // Once for each material: nobody needs the surfaces by their materials otherwise.
  for (auto const& [surface, pPicture] : m_mapMaterials)
    if (pPicture == pMaterial) pResult = Make(surface, true);
  if (!pResult) {
    static Ogre::MaterialPtr const s_None;
    return s_None;
  }
  Tell(*pResult, m_nView);
  return m_mapIdentifierMaterials[pMaterial] = pResult;
}

void QXOgreMaterials::SetViewNumber(int nView) {
  m_nView = nView;
  for (auto const& [pPicture, pMaterial] : m_mapIdentifierMaterials) Tell(*pMaterial, nView);
}

Ogre::MaterialPtr QXOgreMaterials::Make(QXOgreSurface const& surface, bool bIdentifiers) {
  auto pMaterial = Ogre::MaterialManager::getSingleton().create(
      QXOgreDevice::MakeName("material"), Ogre::ResourceGroupManager::DEFAULT_RESOURCE_GROUP_NAME);
  FillPass(*pMaterial->getTechnique(0)->getPass(0), surface, bIdentifiers, false);
  if (!bIdentifiers) FillPass(*pMaterial->createTechnique()->createPass(), surface, false, HasAtmosphere(surface));
  pMaterial->load();
  return pMaterial;
}

void QXOgreMaterials::FillPass(Ogre::Pass& pass, QXOgreSurface const& surface, bool bIdentifiers, bool bAtmosphere) {
  QXOgreVariant const variant{surface.m_eProgram, surface.m_eVertices, surface.m_eAlphaFunction, surface.m_strCoordSets,
      bAtmosphere, bIdentifiers};
  Programs const& programs = GetPrograms(variant);
  pass.setCullingMode(static_cast<Ogre::CullingMode>(surface.m_eCullingMode));
  pass.setPolygonMode(surface.m_bWireframe ? Ogre::PM_WIREFRAME : Ogre::PM_SOLID);
  pass.setDepthCheckEnabled(surface.m_bDepthTest);
  pass.setDepthFunction(static_cast<Ogre::CompareFunction>(surface.m_eDepthFunction));
  // Of panes one behind the other the nearest is hit.
  pass.setDepthWriteEnabled(surface.m_bDepthWrite && (bIdentifiers || !surface.m_bTransparent));
  // OGRE counts towards the eye.
  pass.setDepthBias(-surface.m_fDepthBias, -surface.m_fDepthBiasSlope);
  pass.setLineWidth(surface.m_fLineWidth);
  // Lets the vertex program say the size.
  pass.setPointAttenuation(true);
  // Alpha adds up instead of being blended: what is seen through a pane stays as solid as it was.
  if (surface.m_bTransparent && !bIdentifiers)
    pass.setSeparateSceneBlending(static_cast<Ogre::SceneBlendFactor>(surface.m_eSourceFactor),
        static_cast<Ogre::SceneBlendFactor>(surface.m_eDestFactor), Ogre::SBF_ONE, Ogre::SBF_ONE_MINUS_SOURCE_ALPHA);
  // What is drawn in the order of its depths in the picture, is so here: it may ask for no depth at all.
  pass.setTransparentSortingForced(surface.m_bTransparent && bIdentifiers);
  pass.setVertexProgram(programs.m_pVertex->getName());
  pass.setFragmentProgram(programs.m_pFragment->getName());
  BindParameters(pass, surface, variant);
}

void QXOgreMaterials::BindParameters(Ogre::Pass& pass, QXOgreSurface const& surface, QXOgreVariant const& variant) {
  using Parameters = Ogre::GpuProgramParameters;
  bool const bLines = surface.m_eProgram == QX_OGRE_PROGRAM_LINES;
  auto const pVertex = pass.getVertexProgramParameters();
  bool const bInstanced = variant.m_eVertices == QX_OGRE_VERTICES_INSTANCED;
  if (bInstanced) {
    pVertex->setNamedAutoConstant("projection", Parameters::ACT_PROJECTION_MATRIX);
  } else {
    pVertex->setNamedAutoConstant("worldViewProj", Parameters::ACT_WORLDVIEWPROJ_MATRIX);
  }
  if (bLines || surface.m_eProgram == QX_OGRE_PROGRAM_LABEL) {
    pVertex->setNamedAutoConstant("viewport", Parameters::ACT_VIEWPORT_SIZE);
    if (bLines) {
      pVertex->setNamedAutoConstant("worldView", Parameters::ACT_WORLDVIEW_MATRIX);
      pVertex->setNamedConstant("lineWidth", surface.m_fLineWidth);
    } else {
      pVertex->setNamedAutoConstant("flipping", Parameters::ACT_RENDER_TARGET_FLIPPING);
    }
  } else {
    pVertex->setNamedAutoConstant("worldView", Parameters::ACT_WORLDVIEW_MATRIX);
    if (!bInstanced) pVertex->setNamedAutoConstant("normalToView", Parameters::ACT_INVERSE_TRANSPOSE_WORLDVIEW_MATRIX);
    pVertex->setNamedConstant("pointSize", surface.m_fPointSize);
  }
  if (variant.m_bIdentifiers && !bInstanced)
    pVertex->setNamedAutoConstant("identity", Parameters::ACT_CUSTOM, QX_OGRE_IDENTITY);
  auto const pFragment = pass.getFragmentProgramParameters();
  pFragment->setNamedAutoConstant("tint", Parameters::ACT_CUSTOM, QX_OGRE_TINT);
  if (!variant.m_bIdentifiers) {
    pFragment->setNamedAutoConstant("selection", Parameters::ACT_CUSTOM, QX_OGRE_SELECTION);
    pFragment->setNamedAutoConstant("shading", Parameters::ACT_CUSTOM, QX_OGRE_SHADING);
  }
  if (variant.IsOfPass()) pFragment->setNamedAutoConstant("emissive", Parameters::ACT_CUSTOM, QX_OGRE_EMISSIVE);
  if (variant.IsOfPass() && !variant.m_bIdentifiers) {
    pFragment->setNamedAutoConstant("ownAmbient", Parameters::ACT_CUSTOM, QX_OGRE_AMBIENT);
    pFragment->setNamedAutoConstant("highlight", Parameters::ACT_CUSTOM, QX_OGRE_HIGHLIGHT);
  }
  for (unsigned int i = 0; i < surface.m_strCoordSets.size(); ++i) {
    std::string const strNumber = std::to_string(i);
    pVertex->setNamedAutoConstant("textureU" + strNumber, Parameters::ACT_CUSTOM, QX_OGRE_TEXTURES + 3 * i);
    pVertex->setNamedAutoConstant("textureV" + strNumber, Parameters::ACT_CUSTOM, QX_OGRE_TEXTURES + 3 * i + 1);
    pFragment->setNamedAutoConstant("alphaRule" + strNumber, Parameters::ACT_CUSTOM, QX_OGRE_TEXTURES + 3 * i + 2);
    pFragment->setNamedConstant("texture" + strNumber, static_cast<int>(i));
  }
}

void QXOgreMaterials::ApplyLight() {
  for (auto const& [surface, pMaterial] : m_mapMaterials) Apply(*pMaterial, surface, m_Light);
}

}  // namespace QXC
