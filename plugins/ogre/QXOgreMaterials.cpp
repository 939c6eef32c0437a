#include <plugins/ogre/QXOgreMaterials.h>

#include <cstddef>
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
#include <plugins/ogre/QXOgreShaders.h>

namespace QXC {

namespace {

constexpr char VERSION[] = "#version 330 core\n";

/// Whether a letter names a set whose third coordinate picks a layer.
bool IsStack(char cSet) {
  return cSet >= 'A';
}

// Lines for one texture: # is its number, @ the set of coordinates that it reads.
constexpr char SET_DECLARATION[] = "in vec4 @;\n";
constexpr char VERTEX_DECLARATIONS[] = "uniform vec4 textureU#;\nuniform vec4 textureV#;\nout vec3 place#;\n";
constexpr char VERTEX_LINE[] = "  place# = vec3(dot(textureU#, @), dot(textureV#, @), @.z);\n";
constexpr char FRAGMENT_DECLARATIONS[] = "uniform vec4 alphaRule#;\nin vec3 place#;\n";
constexpr char IMAGE_DECLARATION[] = "uniform sampler2D texture#;\n";
constexpr char STACK_DECLARATION[] = "uniform sampler2DArray texture#;\n";
constexpr char IMAGE_LINE[] = "  vec4 texel# = texture(texture#, place#.xy);\n";
constexpr char STACK_LINE[] = "  vec4 texel# = texture(texture#, place#);\n";
/// The division comes after filtering: only then does what is clear bring no colour in.
constexpr char FRAGMENT_LINE[] = "  texel#.rgb /= mix(1.0, max(texel#.a, 1e-5), alphaRule#.y);\n"
                                 "  colour *= vec4(texel#.rgb, max(texel#.a, alphaRule#.x));\n";

void Append(std::string& strTarget, char const* szLines, std::size_t nTexture, unsigned int nSet = 0) {
  for (char const* p = szLines; *p != '\0'; ++p) {
    if (*p == '#') {
      strTarget += std::to_string(nTexture);
    } else if (*p == '@') {
      strTarget += "uv";
      strTarget += std::to_string(nSet);
    } else {
      strTarget += *p;
    }
  }
}

/// The vertex program that hands on, for each texture, the transformed coordinates of its set; the layer of a stack is
/// a coordinate that nothing transforms.
std::string VertexSource(std::string const& strCoordSets, bool bLabel) {
  std::string strSource = VERSION;
  std::string strLines;
  unsigned int nDeclared = 0;
  for (std::size_t i = 0; i < strCoordSets.size(); ++i) {
    auto const nSet = static_cast<unsigned int>(strCoordSets[i] - (IsStack(strCoordSets[i]) ? 'A' : '0'));
    // Two textures may read one set, which is declared once.
    if ((nDeclared >> nSet & 1U) == 0) Append(strSource, SET_DECLARATION, i, nSet);
    nDeclared |= 1U << nSet;
    Append(strSource, VERTEX_DECLARATIONS, i);
    Append(strLines, VERTEX_LINE, i, nSet);
  }
  // The offsets of labels, which no texture need read.
  if (bLabel && (nDeclared >> 1U & 1U) == 0) Append(strSource, SET_DECLARATION, 0, 1);
  strSource += bLabel ? QX_OGRE_LABEL_SHADER : QX_OGRE_VERTEX_SHADER;
  strSource += strLines;
  strSource += "}\n";
  return strSource;
}

/// The fragment program that multiplies the colour with every texture.
std::string FragmentSource(std::string const& strCoordSets) {
  std::string strSource = VERSION;
  std::string strLines;
  for (std::size_t i = 0; i < strCoordSets.size(); ++i) {
    bool const bStack = IsStack(strCoordSets[i]);
    Append(strSource, bStack ? STACK_DECLARATION : IMAGE_DECLARATION, i);
    Append(strSource, FRAGMENT_DECLARATIONS, i);
    Append(strLines, bStack ? STACK_LINE : IMAGE_LINE, i);
    Append(strLines, FRAGMENT_LINE, i);
  }
  strSource += QX_OGRE_FRAGMENT_SHADER;
  strSource += strLines;
  strSource += QX_OGRE_FRAGMENT_SHADER_END;
  return strSource;
}

void Apply(Ogre::Material const& material, QXOgreLight const& light) {
  auto const pParameters = material.getTechnique(0)->getPass(0)->getFragmentProgramParameters();
  pParameters->setNamedConstant("toSun", light.m_vecToSun);
  pParameters->setNamedConstant("ambient", light.m_Ambient);
  pParameters->setNamedConstant("diffuse", light.m_Diffuse);
  pParameters->setNamedConstant("orthographic", light.m_fOrthographic);
}

}  // namespace

QXOgreMaterials::QXOgreMaterials(QXOgreLog& log) : m_Log(log), m_Light() {
  GetPrograms({}, false);
}

QXOgreMaterials::~QXOgreMaterials() {
  // Materials hold the programs, so they go first.
  for (auto& [surface, pMaterial] : m_mapMaterials) Ogre::MaterialManager::getSingleton().remove(pMaterial);
  m_mapMaterials.clear();
  for (auto& [key, programs] : m_mapPrograms)
    for (auto const& pProgram : {programs.m_pVertex, programs.m_pFragment})
      if (pProgram) Ogre::HighLevelGpuProgramManager::getSingleton().remove(pProgram);
}

QXOgreMaterials::Programs const& QXOgreMaterials::GetPrograms(std::string const& strCoordSets, bool bLabel) {
  Programs& programs = m_mapPrograms[{bLabel, strCoordSets}];
  if (!programs.m_pVertex) programs.m_pVertex = Compile(VertexSource(strCoordSets, bLabel), Ogre::GPT_VERTEX_PROGRAM);
  if (!programs.m_pFragment) programs.m_pFragment = Compile(FragmentSource(strCoordSets), Ogre::GPT_FRAGMENT_PROGRAM);
  return programs;
}

Ogre::HighLevelGpuProgramPtr QXOgreMaterials::Compile(std::string const& strSource, Ogre::GpuProgramType eType) {
  auto pProgram = Ogre::HighLevelGpuProgramManager::getSingleton().createProgram(
      QXOgreDevice::MakeName("program"), Ogre::ResourceGroupManager::DEFAULT_RESOURCE_GROUP_NAME, "glsl", eType);
  pProgram->setSource(strSource);
  m_Log.Clear();
  pProgram->load();
  if (!pProgram->hasCompileError()) return pProgram;
  Ogre::HighLevelGpuProgramManager::getSingleton().remove(pProgram);
  throw std::runtime_error("a program does not compile: " + m_Log.GetLastComplaint());
}

Ogre::MaterialPtr const& QXOgreMaterials::Get(QXOgreSurface const& surface) {
  auto const position = m_mapMaterials.find(surface);
  if (position != m_mapMaterials.end()) return position->second;
  Ogre::MaterialPtr const pMaterial = Make(surface);
  // It may be made while a viewport is being drawn, whose light was set before.
  Apply(*pMaterial, m_Light);
  return m_mapMaterials[surface] = pMaterial;
}

Ogre::MaterialPtr QXOgreMaterials::Make(QXOgreSurface const& surface) {
  Programs const& programs = GetPrograms(surface.m_strCoordSets, surface.m_bLabel);
  auto pMaterial = Ogre::MaterialManager::getSingleton().create(
      QXOgreDevice::MakeName("material"), Ogre::ResourceGroupManager::DEFAULT_RESOURCE_GROUP_NAME);
  Ogre::Pass* const pPass = pMaterial->getTechnique(0)->getPass(0);
  pPass->setCullingMode(static_cast<Ogre::CullingMode>(surface.m_eCullingMode));
  pPass->setPolygonMode(surface.m_bWireframe ? Ogre::PM_WIREFRAME : Ogre::PM_SOLID);
  pPass->setDepthCheckEnabled(surface.m_bDepthTest);
  pPass->setDepthWriteEnabled(surface.m_bDepthWrite && !surface.m_bTransparent);
  // OGRE counts towards the eye.
  pPass->setDepthBias(-surface.m_fDepthBias, -surface.m_fDepthBiasSlope);
  pPass->setLineWidth(surface.m_fLineWidth);
  // Lets the vertex program say the size.
  pPass->setPointAttenuation(true);
  // Alpha adds up instead of being blended: what is seen through a pane stays as solid as it was.
  if (surface.m_bTransparent)
    pPass->setSeparateSceneBlending(
        Ogre::SBF_SOURCE_ALPHA, Ogre::SBF_ONE_MINUS_SOURCE_ALPHA, Ogre::SBF_ONE, Ogre::SBF_ONE_MINUS_SOURCE_ALPHA);
  pPass->setVertexProgram(programs.m_pVertex->getName());
  pPass->setFragmentProgram(programs.m_pFragment->getName());
  using Parameters = Ogre::GpuProgramParameters;
  auto const pVertex = pPass->getVertexProgramParameters();
  pVertex->setNamedAutoConstant("worldViewProj", Parameters::ACT_WORLDVIEWPROJ_MATRIX);
  if (surface.m_bLabel) {
    pVertex->setNamedAutoConstant("viewport", Parameters::ACT_VIEWPORT_SIZE);
    pVertex->setNamedAutoConstant("flipping", Parameters::ACT_RENDER_TARGET_FLIPPING);
  } else {
    pVertex->setNamedAutoConstant("worldView", Parameters::ACT_WORLDVIEW_MATRIX);
    pVertex->setNamedAutoConstant("normalToView", Parameters::ACT_INVERSE_TRANSPOSE_WORLDVIEW_MATRIX);
    pVertex->setNamedConstant("pointSize", surface.m_fPointSize);
  }
  auto const pFragment = pPass->getFragmentProgramParameters();
  pFragment->setNamedAutoConstant("tint", Parameters::ACT_CUSTOM, QX_OGRE_TINT);
  pFragment->setNamedAutoConstant("selection", Parameters::ACT_CUSTOM, QX_OGRE_SELECTION);
  pFragment->setNamedAutoConstant("shading", Parameters::ACT_CUSTOM, QX_OGRE_SHADING);
  for (unsigned int i = 0; i < surface.m_strCoordSets.size(); ++i) {
    std::string const strNumber = std::to_string(i);
    pVertex->setNamedAutoConstant("textureU" + strNumber, Parameters::ACT_CUSTOM, QX_OGRE_TEXTURES + 3 * i);
    pVertex->setNamedAutoConstant("textureV" + strNumber, Parameters::ACT_CUSTOM, QX_OGRE_TEXTURES + 3 * i + 1);
    pFragment->setNamedAutoConstant("alphaRule" + strNumber, Parameters::ACT_CUSTOM, QX_OGRE_TEXTURES + 3 * i + 2);
    pFragment->setNamedConstant("texture" + strNumber, static_cast<int>(i));
  }
  pMaterial->load();
  return pMaterial;
}

void QXOgreMaterials::SetLight(QXOgreLight const& light) {
  m_Light = light;
  for (auto const& [surface, pMaterial] : m_mapMaterials) Apply(*pMaterial, light);
}

}  // namespace QXC
