/// @file
/// Programs and materials of the drawables.
#pragma once

#include <compare>
#include <map>
#include <string>
#include <utility>

#include <OgreColourValue.h>
#include <OgreHighLevelGpuProgram.h>
#include <OgrePrerequisites.h>
#include <OgreVector.h>

#include <plugins/ogre/QXOgrePrograms.h>
#include <plugins/ogre/environment/QXOgreFog.h>
#include <plugins/ogre/environment/QXOgreLights.h>

namespace QXC {

class QXOgreLog;

/// The light and the fog of one viewport, in the coordinates of its camera.
struct QXOgreLight {
  Ogre::Vector3 m_vecToSun;     ///< Unit vector towards the sun
  Ogre::ColourValue m_Ambient;  ///< Light that reaches every face
  Ogre::ColourValue m_Diffuse;  ///< Sun light on a face that the sun meets squarely; black without a sun
  Ogre::Real m_fOrthographic;   ///< 1: all rays to the eye are parallel, 0: they meet in the eye
  QXOgreLamps m_Lamps;          ///< Those of the scene
  QXOgreFog m_Fog;

  /// Of materials that draw pictures: 1 knows lamps and fog, 0 goes without and is twice as fast where processors draw.
  unsigned short GetTechnique() const { return m_Lamps.m_nCount > 0 || m_Fog.m_Numbers.x > 0.0F ? 1 : 0; }
};

/// What a material fixes; what differs between drawables of one material travels as custom parameters.
struct QXOgreSurface {
  bool m_bTransparent = false;  ///< Blended by alpha, behind which depth is not written
  bool m_bWireframe = false;
  bool m_bDepthTest = true;
  bool m_bDepthWrite = true;
  int m_eProgram = QX_OGRE_PROGRAM_PLAIN;    ///< QXOgreProgram
  int m_eVertices = QX_OGRE_VERTICES_PLAIN;  ///< QXOgreVertexSource
  int m_eCullingMode = 1;  ///< CullingMode; none at first, since models of the real world come with either winding
  float m_fLineWidth = 1.0F;
  float m_fPointSize = 1.0F;
  float m_fDepthBias = 0.0F;
  float m_fDepthBiasSlope = 0.0F;
  int m_eDepthFunction = 3;  ///< Ogre::CompareFunction; less or equal at first
  int m_eAlphaFunction = 1;  ///< QXCompareFunction; at first every alpha passes
  /// Ogre::SceneBlendFactor of what is drawn and of what was there, where it is transparent.
  int m_eSourceFactor = 7;
  int m_eDestFactor = 9;
  /// The coordinate set that each texture reads ('0' to '7', 'A' to 'H' for a stack of layers), in the order in which
  /// textures are multiplied with the colour; empty without textures. Which textures they are the renderable knows.
  std::string m_strCoordSets;

  // The check takes the zero inside the comparison that the compiler writes for a pointer.
  auto operator<=>(QXOgreSurface const&) const = default;  // NOLINT(modernize-use-nullptr)
};

/// Numbers of the custom parameters that a renderable gives.
enum QXOgreParameter : unsigned int {
  QX_OGRE_TINT = 0,       ///< Factor on the vertex colour
  QX_OGRE_SELECTION = 1,  ///< Colour of the selection; alpha is how much it covers
  QX_OGRE_SHADING = 2,    ///< x: 1 lit, 0 the plain colour; y: 1 selected
  /// Three for each texture: what the four coordinates are multiplied with to give u and v, and x: the least alpha.
  QX_OGRE_TEXTURES = 3,
  // Of passes, behind those of eight textures.
  QX_OGRE_AMBIENT = 27,    ///< Factor on the ambient light
  QX_OGRE_EMISSIVE = 28,   ///< Light of its own; alpha is the reference of the alpha test
  QX_OGRE_HIGHLIGHT = 29,  ///< Colour of the highlight; alpha is its exponent, 0 for none
  /// x, y: halves of the drawable's identifier; z: QXOgreNumbering.
  QX_OGRE_IDENTITY = 60,
};

/// What the four bytes of a vertex that programs know as secondary_colour say of its identifier.
enum QXOgreNumbering : int {
  QX_OGRE_NUMBERING_NONE = 0,   ///< Nothing: all vertices have the drawable's
  QX_OGRE_NUMBERING_ADDED = 1,  ///< The last three are added to the drawable's; all ones for a vertex of no object
  QX_OGRE_NUMBERING_WHOLE = 2,  ///< They are the identifier
};

/// Materials of the drawables, one a surface, on one pair of programs for each variant: GL3Plus
/// draws nothing without programs. Textures are no part of a material: the renderables bind them, so that a texture may
/// come, change and go without any material that knows of it.
class QXOgreMaterials final {
public:
  /// Compiles the programs. Throws std::runtime_error with the compiler's words if they do not compile: OGRE itself
  /// tells that to its log alone.
  explicit QXOgreMaterials(QXOgreLog& log);
  ~QXOgreMaterials();
  QXOgreMaterials(QXOgreMaterials const&) = delete;
  QXOgreMaterials& operator=(QXOgreMaterials const&) = delete;

  /// The material of a surface, made at its first use and kept until the end.
  Ogre::MaterialPtr const& Get(QXOgreSurface const& surface);
  /// The one that draws identifiers where that one draws a picture: not blended, neither lit nor in fog, so that each
  /// pixel has one whole identifier. Null for a material that Get has not made. Cost: logarithmic in the materials.
  Ogre::MaterialPtr const& GetForIdentifiers(Ogre::MaterialPtr const& pMaterial);
  /// Sets which of the views that share a surface of identifiers is drawn next.
  void SetViewNumber(int nView);
  /// The light for what is drawn next; ApplyLight tells the programs what has changed in it. Cost of that: linear in
  /// the materials and in the lamps.
  QXOgreLight& GetLight() { return m_Light; }
  void ApplyLight();
  /// The program of a source, also for materials of somebody else's; compiled at its first use and kept until the end.
  /// Nobody removes one before: drivers that share programs between the contexts of several windows put away a removed
  /// one in each context later, take out what that context draws with then, and crash with its next draw operation.
  /// Throws as the constructor does.
  Ogre::HighLevelGpuProgramPtr const& GetProgram(std::string const& strSource, Ogre::GpuProgramType eType);

private:
  struct Programs {
    Ogre::HighLevelGpuProgramPtr m_pVertex;
    Ogre::HighLevelGpuProgramPtr m_pFragment;
  };

  /// Those of a variant, compiled at its first use. Throws as the constructor does.
  Programs const& GetPrograms(QXOgreVariant const& variant);
  Ogre::MaterialPtr Make(QXOgreSurface const& surface, bool bIdentifiers);
  void FillPass(Ogre::Pass& pass, QXOgreSurface const& surface, bool bIdentifiers, bool bAtmosphere);
  static void BindParameters(Ogre::Pass& pass, QXOgreSurface const& surface, QXOgreVariant const& variant);

  QXOgreLog& m_Log;
  std::map<std::pair<Ogre::GpuProgramType, std::string>, Ogre::HighLevelGpuProgramPtr> m_mapSources;
  std::map<QXOgreVariant, Programs> m_mapPrograms;
  std::map<QXOgreSurface, Ogre::MaterialPtr> m_mapMaterials;
  /// By the material whose place each takes.
  std::map<Ogre::MaterialPtr, Ogre::MaterialPtr> m_mapIdentifierMaterials;
  int m_nView = 0;
  QXOgreLight m_Light;
};

}  // namespace QXC
