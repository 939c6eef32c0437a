/// @file
/// Sources of the programs in their variants.
#pragma once

#include <compare>
#include <string>

namespace QXC {

/// What a pair of programs makes of vertices and textures.
enum QXOgreProgram : int {
  QX_OGRE_PROGRAM_PLAIN = 0,  ///< All textures multiplied with the colour
  QX_OGRE_PROGRAM_LABEL,      ///< The same, on the corners of labels that face the camera
  // Those of passes: colours of a material, and objects that are selected vertex by vertex.
  QX_OGRE_PROGRAM_PASS,    ///< All textures multiplied with the colour
  QX_OGRE_PROGRAM_CHOICE,  ///< The fourth coordinate of the first set says which texture it is
  QX_OGRE_PROGRAM_PAIRS,   ///< It says which texture and the one after it, which reads the second set
  QX_OGRE_PROGRAM_LINES,   ///< No texture, on the corners of lines of so many pixels
};

/// Where the vertices of the plain program come from.
enum QXOgreVertexSource : int {
  QX_OGRE_VERTICES_PLAIN = 0,  ///< One place for all of them
  QX_OGRE_VERTICES_INSTANCED,  ///< A place, a colour and an identifier for each instance
};

/// What tells variants apart.
struct QXOgreVariant {
  int m_eProgram = QX_OGRE_PROGRAM_PLAIN;    ///< QXOgreProgram
  int m_eVertices = QX_OGRE_VERTICES_PLAIN;  ///< QXOgreVertexSource; for the plain program alone
  int m_eAlphaFunction = 1;                  ///< QXCompareFunction; for the programs of passes alone
  /// The coordinate set that each texture reads ('0' to '7', 'A' to 'H' for a stack of layers).
  std::string m_strCoordSets;
  bool m_bAtmosphere = false;   ///< Knows the lamps and the fog of a scene
  bool m_bIdentifiers = false;  ///< Draws identifiers in place of colours

  // The check takes the zero inside the comparison that the compiler writes for a pointer.
  auto operator<=>(QXOgreVariant const&) const = default;  // NOLINT(modernize-use-nullptr)

  bool IsOfPass() const { return m_eProgram >= QX_OGRE_PROGRAM_PASS; }
};

/// GLSL for vertices and for fragments.
std::string MakeVertexSource(QXOgreVariant const& variant);
std::string MakeFragmentSource(QXOgreVariant const& variant);

}  // namespace QXC
