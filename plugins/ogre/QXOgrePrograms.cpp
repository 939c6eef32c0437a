#include <plugins/ogre/QXOgrePrograms.h>

#include <algorithm>
#include <cstddef>

#include <QxGraphics3D/frame/foundation/base3d/QXPass.h>

#include <plugins/ogre/QXOgreShaders.h>
#include <plugins/ogre/environment/QXOgreLightShader.h>
#include <plugins/ogre/picking/QXOgrePickShaders.h>

namespace QXC {

namespace {

constexpr char VERSION[] = "#version 330 core\n";

// Lines for one texture: # is its number, @ the set of coordinates that it reads, % the place that it is looked up at.
constexpr char SET_DECLARATION[] = "in vec4 @;\n";
constexpr char TRANSFORM_DECLARATIONS[] = "uniform vec4 textureU#;\nuniform vec4 textureV#;\n";
constexpr char PLACE_OUT[] = "out vec3 place%;\n";
constexpr char PLACE_IN[] = "in vec3 place%;\n";
constexpr char VERTEX_LINE[] = "  place% = vec3(dot(textureU#, @), dot(textureV#, @), @.z);\n";
/// Static geometry multiplies (u, v, 1) with the transforms that it calculates into coordinates, and so do those that
/// it leaves to the renderer. The fourth number is no coordinate there.
constexpr char PASS_LINE[] = "  vec4 at# = vec4(@.xy, 1.0, 1.0);\n"
                             "  place% = vec3(dot(textureU#, at#), dot(textureV#, at#), @.z);\n";
constexpr char LAYER_LINES[] = "  layer = floor(@.w + 0.5);\n";
constexpr char CHOICE_START[] = "  vec4 from% = vec4(@.xy, 1.0, 1.0);\n  place% = vec3(0.0, 0.0, @.z);\n";
constexpr char CHOICE_LINE[] = "place%.xy = vec2(dot(textureU#, from%), dot(textureV#, from%));\n";
constexpr char ALPHA_DECLARATION[] = "uniform vec4 alphaRule#;\n";
constexpr char IMAGE_DECLARATION[] = "uniform sampler2D texture#;\n";
constexpr char STACK_DECLARATION[] = "uniform sampler2DArray texture#;\n";
constexpr char IMAGE_LINE[] = "  vec4 texel# = texture(texture#, place%.xy);\n";
constexpr char STACK_LINE[] = "  vec4 texel# = texture(texture#, place%);\n";
/// Inside a branch nobody knows how fast the place changes from pixel to pixel, so it is found out before.
constexpr char GRADIENTS[] = "  vec2 right% = dFdx(place%.xy);\n  vec2 down% = dFdy(place%.xy);\n";
constexpr char IMAGE_GRAD_LINE[] = "  vec4 texel# = textureGrad(texture#, place%.xy, right%, down%);\n";
constexpr char STACK_GRAD_LINE[] = "  vec4 texel# = textureGrad(texture#, place%, right%, down%);\n";
/// The division comes after filtering: only then does what is clear bring no colour in.
constexpr char TEXEL_LINES[] = "  texel#.rgb /= mix(1.0, max(texel#.a, 1e-5), alphaRule#.y);\n"
                               "  colour *= vec4(texel#.rgb, max(texel#.a, alphaRule#.x));\n";

/// A source that grows by lines.
class Source {
public:
  void Add(char const* szLines, std::size_t nTexture = 0, std::size_t nSet = 0, std::size_t nPlace = 0) {
    for (char const* p = szLines; *p != '\0'; ++p) {
      switch (*p) {
      case '#': m_strText += std::to_string(nTexture); break;
      case '%': m_strText += std::to_string(nPlace); break;
      case '@': m_strText += "uv" + std::to_string(nSet); break;
      default: m_strText += *p;
      }
    }
  }
  void AddIf(std::size_t nLayer) { m_strText += "  if (layer == " + std::to_string(nLayer) + ".0) "; }

  std::string m_strText;
};

/// Whether a letter names a set whose third coordinate picks a layer.
bool IsStack(char cSet) {
  return cSet >= 'A';
}

std::size_t SetOf(char cSet) {
  return static_cast<std::size_t>(cSet - (IsStack(cSet) ? 'A' : '0'));
}

/// Textures that one mesh of a folded pass shows.
std::size_t GroupOf(QXOgreVariant const& variant) {
  return variant.m_eProgram == QX_OGRE_PROGRAM_PAIRS ? 2 : 1;
}

bool IsFolded(QXOgreVariant const& variant) {
  return variant.m_eProgram == QX_OGRE_PROGRAM_CHOICE || variant.m_eProgram == QX_OGRE_PROGRAM_PAIRS;
}

/// Each set that textures or the program itself read, once.
void DeclareSets(Source& source, QXOgreVariant const& variant) {
  unsigned int nWanted = 0;
  for (char const cSet : variant.m_strCoordSets) nWanted |= 1U << SetOf(cSet);
  // The offsets of labels, and the points after those of lines, which no texture need read.
  if (variant.m_eProgram == QX_OGRE_PROGRAM_LABEL) nWanted |= 1U << 1U;
  if (variant.m_eProgram == QX_OGRE_PROGRAM_LINES) nWanted |= 1U;
  for (std::size_t nSet = 0; nSet < 8; ++nSet)
    if ((nWanted >> nSet & 1U) != 0) source.Add(SET_DECLARATION, 0, nSet);
}

/// Whether a picture shows some of the objects that a drawable holds as selected.
bool KnowsObjects(QXOgreVariant const& variant) {
  bool const bInstanced = variant.m_eVertices == QX_OGRE_VERTICES_INSTANCED && !variant.m_bIdentifiers;
  return variant.IsOfPass() || bInstanced;
}

/// Where the textures of the group that the layer names are looked up; all of a group's n-th textures share a place.
void AddFoldedPlaces(Source& source, QXOgreVariant const& variant) {
  std::string const& strSets = variant.m_strCoordSets;
  std::size_t const nGroup = GroupOf(variant);
  source.Add(LAYER_LINES, 0, SetOf(strSets[0]));
  for (std::size_t i = 0; i < std::min(nGroup, strSets.size()); ++i) source.Add(CHOICE_START, 0, SetOf(strSets[i]), i);
  for (std::size_t i = 0; i < strSets.size(); ++i) {
    source.AddIf(i - i % nGroup);
    source.Add(CHOICE_LINE, i, 0, i % nGroup);
  }
}

char const* BodyOf(QXOgreVariant const& variant) {
  if (variant.m_eProgram == QX_OGRE_PROGRAM_LABEL) return QX_OGRE_LABEL_SHADER;
  if (variant.m_eProgram == QX_OGRE_PROGRAM_LINES) return QX_OGRE_LINE_SHADER;
  return variant.m_eVertices == QX_OGRE_VERTICES_INSTANCED ? QX_OGRE_INSTANCE_SHADER : QX_OGRE_VERTEX_SHADER;
}

void AddFoldedTexels(Source& source, QXOgreVariant const& variant) {
  std::string const& strSets = variant.m_strCoordSets;
  std::size_t const nGroup = GroupOf(variant);
  for (std::size_t i = 0; i < std::min(nGroup, strSets.size()); ++i) source.Add(GRADIENTS, 0, 0, i);
  for (std::size_t i = 0; i < strSets.size(); ++i) {
    source.AddIf(i - i % nGroup);
    source.Add("{\n");
    source.Add(IsStack(strSets[i]) ? STACK_GRAD_LINE : IMAGE_GRAD_LINE, i, 0, i % nGroup);
    source.Add(TEXEL_LINES, i);
    source.Add("  }\n");
  }
}

/// The line that drops what the comparison with the reference lets fail. What drops everything must not look like it: a
/// compiler that throws the rest away leaves arrays of other sizes than they are declared with, which OGRE takes for
/// impossible.
char const* AlphaTestOf(int eFunction) {
  switch (eFunction) {
  case COMPARE_NEVER: return "  if (gl_FragCoord.x >= 0.0) discard;\n";
  case COMPARE_LESS: return "  if (!(colour.a < emissive.a)) discard;\n";
  case COMPARE_LESS_EQUAL: return "  if (!(colour.a <= emissive.a)) discard;\n";
  case COMPARE_EQUAL: return "  if (!(abs(colour.a - emissive.a) < 0.002)) discard;\n";
  case COMPARE_NOT_EQUAL: return "  if (abs(colour.a - emissive.a) < 0.002) discard;\n";
  case COMPARE_GREATER_EQUAL: return "  if (!(colour.a >= emissive.a)) discard;\n";
  case COMPARE_GREATER: return "  if (!(colour.a > emissive.a)) discard;\n";
  default: return "";
  }
}

char const* EndOf(QXOgreVariant const& variant) {
  if (variant.m_bIdentifiers) return QX_OGRE_PICK_SHADER_END;
  return variant.IsOfPass() ? QX_OGRE_PASS_SHADER_END : QX_OGRE_FRAGMENT_SHADER_END;
}

}  // namespace

/// Hands on, for each texture, the transformed coordinates of its set; the layer of a stack is a coordinate that
/// nothing transforms.
std::string MakeVertexSource(QXOgreVariant const& variant) {
  std::string const& strSets = variant.m_strCoordSets;
  bool const bFolded = IsFolded(variant);
  std::size_t const nPlaces = bFolded ? std::min(GroupOf(variant), strSets.size()) : strSets.size();
  Source source;
  source.m_strText = VERSION;
  DeclareSets(source, variant);
  for (std::size_t i = 0; i < strSets.size(); ++i) source.Add(TRANSFORM_DECLARATIONS, i);
  for (std::size_t i = 0; i < nPlaces; ++i) source.Add(PLACE_OUT, 0, 0, i);
  if (bFolded) source.Add("flat out float layer;\n");
  bool const bInstanced = variant.m_eVertices == QX_OGRE_VERTICES_INSTANCED;
  if (KnowsObjects(variant)) source.Add("out float chosen;\n");
  if (variant.m_bIdentifiers) source.m_strText += QX_OGRE_IDENTIFIER_DECLARATIONS;
  // Instances bring an element of that name themselves.
  if (!bInstanced && (variant.IsOfPass() || variant.m_bIdentifiers)) source.Add("in vec4 secondary_colour;\n");
  source.m_strText += BodyOf(variant);
  if (KnowsObjects(variant)) source.Add(bInstanced ? "  chosen = binormal.x;\n" : "  chosen = secondary_colour.x;\n");
  if (variant.m_bIdentifiers)
    source.m_strText += bInstanced ? QX_OGRE_INSTANCE_IDENTIFIER_LINES : QX_OGRE_IDENTIFIER_LINES;
  if (bFolded) AddFoldedPlaces(source, variant);
  for (std::size_t i = 0; i < strSets.size() && !bFolded; ++i)
    source.Add(variant.IsOfPass() ? PASS_LINE : VERTEX_LINE, i, SetOf(strSets[i]), i);
  source.Add("}\n");
  return source.m_strText;
}

/// Multiplies the colour with the textures.
std::string MakeFragmentSource(QXOgreVariant const& variant) {
  std::string const& strSets = variant.m_strCoordSets;
  bool const bFolded = IsFolded(variant);
  std::size_t const nPlaces = bFolded ? std::min(GroupOf(variant), strSets.size()) : strSets.size();
  Source source;
  source.m_strText = VERSION;
  for (std::size_t i = 0; i < strSets.size(); ++i) {
    source.Add(IsStack(strSets[i]) ? STACK_DECLARATION : IMAGE_DECLARATION, i);
    source.Add(ALPHA_DECLARATION, i);
  }
  for (std::size_t i = 0; i < nPlaces; ++i) source.Add(PLACE_IN, 0, 0, i);
  if (bFolded) source.Add("flat in float layer;\n");
  if (variant.m_bIdentifiers) {
    if (variant.IsOfPass()) source.Add("uniform vec4 emissive;\n");
    source.m_strText += QX_OGRE_PICK_SHADER;
  } else {
    if (variant.IsOfPass()) source.m_strText += QX_OGRE_PASS_DECLARATIONS;
    source.Add(KnowsObjects(variant) ? "in float chosen;\n" : "const float chosen = 0.0;\n");
    source.m_strText += QX_OGRE_LIGHT_SHADER;
    source.m_strText += variant.m_bAtmosphere ? QX_OGRE_LAMP_SHADER : QX_OGRE_NO_LAMP_SHADER;
    source.m_strText += variant.m_bAtmosphere ? QX_OGRE_FOG_SHADER : QX_OGRE_NO_FOG_SHADER;
    source.m_strText += QX_OGRE_FRAGMENT_SHADER;
  }
  if (bFolded) AddFoldedTexels(source, variant);
  for (std::size_t i = 0; i < strSets.size() && !bFolded; ++i) {
    source.Add(IsStack(strSets[i]) ? STACK_LINE : IMAGE_LINE, i, 0, i);
    source.Add(TEXEL_LINES, i);
  }
  if (variant.IsOfPass()) source.Add(AlphaTestOf(variant.m_eAlphaFunction));
  source.m_strText += EndOf(variant);
  return source.m_strText;
}

}  // namespace QXC
