#include <plugins/ogre/QXOgreBucketPass.h>

#include <algorithm>

#include <OgreBlendMode.h>

#include <QxGraphics3D/frame/foundation/base3d/QXPass.h>

namespace QXC {

namespace {

/// More pixels than any device has.
constexpr double MAX_SIZE = 1.0e4;

/// @param eUsual  for numbers that mean nothing
int ToOgreFactor(int eFactor, int eUsual) {
  switch (eFactor) {
  case BLEND_ONE: return Ogre::SBF_ONE;
  case BLEND_ZERO: return Ogre::SBF_ZERO;
  case BLEND_DEST_COLOUR: return Ogre::SBF_DEST_COLOUR;
  case BLEND_SOURCE_COLOUR: return Ogre::SBF_SOURCE_COLOUR;
  case BLEND_ONE_MINUS_DEST_COLOUR: return Ogre::SBF_ONE_MINUS_DEST_COLOUR;
  case BLEND_ONE_MINUS_SOURCE_COLOUR: return Ogre::SBF_ONE_MINUS_SOURCE_COLOUR;
  case BLEND_ONE_MINUS_DEST_ALPHA: return Ogre::SBF_ONE_MINUS_DEST_ALPHA;
  case BLEND_ONE_MINUS_SOURCE_ALPHA: return Ogre::SBF_ONE_MINUS_SOURCE_ALPHA;
  case BLEND_DEST_ALPHA: return Ogre::SBF_DEST_ALPHA;
  case BLEND_SOURCE_ALPHA: return Ogre::SBF_SOURCE_ALPHA;
  default: return eUsual;
  }
}

int ProgramOf(QXPass const& pass) {
  auto const names = [&](wchar_t const* szVertex, wchar_t const* szFragment) {
    return pass.m_strVertexProgram == szVertex && pass.m_strFragmentProgram == szFragment;
  };
  if (names(L"RenderModelSecVP.glsl", L"RenderModelSecFP.glsl")) return QX_OGRE_PROGRAM_CHOICE;
  if (names(L"MutiRenderModelSecVP.glsl", L"MutiRenderModelSecFP.glsl")) return QX_OGRE_PROGRAM_PAIRS;
  return QX_OGRE_PROGRAM_PASS;
}

QXOgreSurface SurfaceOf(QXPass const& pass) {
  QXOgreSurface surface;
  bool const bCulling = pass.m_eCulling == CULLING_CLOCKWISE || pass.m_eCulling == CULLING_ANTICLOCKWISE;
  surface.m_eCullingMode = bCulling ? pass.m_eCulling : CULLING_NONE;
  surface.m_bDepthTest = pass.m_bDepthCheck != 0;
  surface.m_bDepthWrite = pass.m_bDepthWrite != 0;
  bool const bDepth = pass.m_eDepthFunction >= COMPARE_NEVER && pass.m_eDepthFunction <= COMPARE_GREATER;
  surface.m_eDepthFunction = bDepth ? pass.m_eDepthFunction : COMPARE_LESS_EQUAL;
  bool const bAlpha = pass.m_eAlphaFunction >= COMPARE_NEVER && pass.m_eAlphaFunction <= COMPARE_GREATER;
  surface.m_eAlphaFunction = bAlpha ? pass.m_eAlphaFunction : COMPARE_ALWAYS;
  if (pass.m_dLineWidth > 0.0) surface.m_fLineWidth = static_cast<float>(std::min(pass.m_dLineWidth, MAX_SIZE));
  if (pass.m_dPointSize > 0.0) surface.m_fPointSize = static_cast<float>(std::min(pass.m_dPointSize, MAX_SIZE));
  int const eSource = ToOgreFactor(pass.m_eSourceFactor, Ogre::SBF_ONE);
  int const eDest = ToOgreFactor(pass.m_eDestFactor, Ogre::SBF_ZERO);
  // A pass that says nothing of blending is blended as usual where it lets something through.
  surface.m_bTransparent = eSource != Ogre::SBF_ONE || eDest != Ogre::SBF_ZERO;
  if (surface.m_bTransparent) {
    surface.m_eSourceFactor = eSource;
    surface.m_eDestFactor = eDest;
  }
  surface.m_eProgram = ProgramOf(pass);
  return surface;
}

}  // namespace

QXOgrePassLook LookOf(QXPass const& pass) {
  QXOgrePassLook look;
  look.m_Surface = SurfaceOf(pass);
  look.m_Diffuse = pass.m_clrDiffuse;
  look.m_Ambient = pass.m_clrAmbient;
  look.m_Emissive = pass.m_clrEmissive;
  look.m_Emissive.a = pass.m_nAlphaReference / 255.0;
  look.m_Highlight = pass.m_clrSpecular;
  look.m_Highlight.a = pass.m_dShininess;
  look.m_bLight = pass.m_bLighting != 0;
  return look;
}

QXOgreSurface Combine(QXOgreSurface const& drawable, QXOgreSurface const& pass) {
  QXOgreSurface const usual;
  QXOgreSurface surface = pass;
  surface.m_bWireframe = drawable.m_bWireframe;
  surface.m_bDepthTest = drawable.m_bDepthTest && pass.m_bDepthTest;
  surface.m_bDepthWrite = drawable.m_bDepthWrite && pass.m_bDepthWrite;
  if (drawable.m_eCullingMode != usual.m_eCullingMode && pass.m_eProgram != QX_OGRE_PROGRAM_LINES)
    surface.m_eCullingMode = drawable.m_eCullingMode;
  if (drawable.m_fLineWidth != usual.m_fLineWidth) surface.m_fLineWidth = drawable.m_fLineWidth;
  if (drawable.m_fPointSize != usual.m_fPointSize) surface.m_fPointSize = drawable.m_fPointSize;
  surface.m_fDepthBias = drawable.m_fDepthBias;
  surface.m_fDepthBiasSlope = drawable.m_fDepthBiasSlope;
  return surface;
}

}  // namespace QXC
