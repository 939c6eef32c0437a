/// @file
/// Parts of the programs that draw identifiers in place of colours.
#pragma once

namespace QXC {

/// What a vertex knows of its object. The identifier of the drawable stands in two halves, since a float holds no whole
/// word; z says what the four bytes of a vertex are: 0 nothing, all vertices have the drawable's identifier; 1 the last
/// three are what is added to it, all ones for a vertex of no object; 2 they are the identifier themselves.
inline constexpr char QX_OGRE_IDENTIFIER_DECLARATIONS[] = R"glsl(
uniform vec4 identity;
flat out uint identifier;
)glsl";

inline constexpr char QX_OGRE_IDENTIFIER_LINES[] = R"glsl(
  uvec4 numbers = uvec4(secondary_colour * 255.0 + 0.5);
  uint rest = (numbers.y << 16u) | (numbers.z << 8u) | numbers.w;
  identifier = (uint(identity.x) << 16u) | uint(identity.y);
  if (identity.z > 1.5) {
    identifier = (numbers.x << 24u) | rest;
  } else if (identity.z > 0.5) {
    identifier = rest == 0xFFFFFFu || identifier == 0u ? 0u : identifier + rest;
  }
)glsl";

/// Instances bring theirs in the bytes of a pixel, where they bring their mark for a picture.
inline constexpr char QX_OGRE_INSTANCE_IDENTIFIER_LINES[] = R"glsl(
  uvec4 numbers = uvec4(binormal * 255.0 + 0.5);
  identifier = (numbers.w << 24u) | (numbers.x << 16u) | (numbers.y << 8u) | numbers.z;
)glsl";

/// Like the beginning of every fragment program, as far as the alpha needs it.
inline constexpr char QX_OGRE_PICK_SHADER[] = R"glsl(
uniform vec4 tint;
uniform float viewNumber;
flat in uint identifier;
in vec4 vertexColour;
layout(location = 0) out vec4 fragmentColour;
layout(location = 1) out vec4 fragmentPlace;
void main() {
  vec4 colour = vertexColour * tint;
)glsl";

/// What lets everything through is not there. The identifier is written as QXSceneOperation::GetID takes pixels apart:
/// the top bits in alpha, the rest from red to blue. The second output is where the fragment lies along the view, by the
/// window's depth and by w, and in which of the views that share a surface; targets with one output drop it.
inline constexpr char QX_OGRE_PICK_SHADER_END[] = R"glsl(
  if (!(colour.a >= 0.5 / 255.0)) discard;
  uvec4 bytes = uvec4(identifier >> 16u, identifier >> 8u, identifier, identifier >> 24u) & 255u;
  fragmentColour = vec4(bytes) / 255.0;
  fragmentPlace = vec4(gl_FragCoord.z, 1.0 / gl_FragCoord.w, viewNumber, 1.0);
}
)glsl";

}  // namespace QXC
