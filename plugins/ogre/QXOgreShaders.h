/// @file
/// Sources of the programs that draw every drawable: GLSL 3.30, the oldest that all core-profile drivers take.
#pragma once

namespace QXC {

/// One fixed part after another; where textures come in, a variant has its own lines between them.
///
/// In: position, normal (zero where the geometry has none), colour. Matrices come per drawable.
inline constexpr char QX_OGRE_VERTEX_SHADER[] = R"glsl(
uniform mat4 worldView;
uniform mat4 worldViewProj;
uniform mat4 normalToView;
uniform float pointSize;
in vec4 vertex;
in vec3 normal;
in vec4 colour;
out vec3 viewPosition;
out vec3 viewNormal;
out vec4 vertexColour;
void main() {
  gl_Position = worldViewProj * vertex;
  gl_PointSize = pointSize;
  viewPosition = (worldView * vertex).xyz;
  viewNormal = mat3(normalToView) * normal;
  vertexColour = colour;
)glsl";

/// For meshes at many places. In beside a vertex, once an instance: the rows of the matrix from the mesh to the
/// directions of the world, each with the place of the mesh's zero in the eye's coordinates behind it, since only double
/// has room for what lies between world and eye; its colour; four bytes that say which it is or how it is marked.
/// Cofactors turn normals as the inverse does, and flat instances have some too.
inline constexpr char QX_OGRE_INSTANCE_SHADER[] = R"glsl(
uniform mat4 worldView;
uniform mat4 projection;
uniform float pointSize;
in vec4 vertex;
in vec3 normal;
in vec4 colour;
in vec4 blendWeights;
in vec4 blendIndices;
in vec4 secondary_colour;
in vec4 tangent;
in vec4 binormal;
out vec3 viewPosition;
out vec3 viewNormal;
out vec4 vertexColour;
void main() {
  mat3 toEye = mat3(worldView) * transpose(mat3(blendWeights.xyz, blendIndices.xyz, secondary_colour.xyz));
  viewPosition = toEye * vertex.xyz + vec3(blendWeights.w, blendIndices.w, secondary_colour.w);
  gl_Position = projection * vec4(viewPosition, 1.0);
  gl_PointSize = pointSize;
  mat3 cofactors = mat3(cross(toEye[1], toEye[2]), cross(toEye[2], toEye[0]), cross(toEye[0], toEye[1]));
  viewNormal = cofactors * normal;
  vertexColour = colour * tangent;
)glsl";

/// For labels that face the camera. In: the anchor as the position, the offset of the corner in pixels, colour. The
/// anchor moves to a corner of pixels, so that the corners of letters meet pixels. What is drawn upside down, as into
/// textures, has its offsets upside down with it. An anchor at the eye or behind it has no place on the screen.
inline constexpr char QX_OGRE_LABEL_SHADER[] = R"glsl(
uniform mat4 worldViewProj;
uniform vec4 viewport;
uniform float flipping;
in vec4 vertex;
in vec4 colour;
out vec3 viewPosition;
out vec3 viewNormal;
out vec4 vertexColour;
void main() {
  vec4 anchor = worldViewProj * vertex;
  vec2 pixel = floor((anchor.xy / anchor.w * 0.5 + 0.5) * viewport.xy + 0.5) + uv1.xy * vec2(1.0, flipping);
  gl_Position = vec4((pixel * viewport.zw * 2.0 - 1.0) * anchor.w, anchor.zw);
  if (!(anchor.w > 0.0)) gl_Position = vec4(0.0, 0.0, 2.0, 1.0);
  viewPosition = vec3(0.0);
  viewNormal = vec3(0.0);
  vertexColour = colour;
)glsl";

/// Behind the parts that know light and fog. The face's own normal, from the derivatives of the position, turns to the
/// eye; it lights what has no vertex normals, and turns vertex normals to the side that is seen. Its sign cannot come
/// from the derivatives themselves nor from the winding, since both change when the device draws upside down, as it
/// does into textures.
inline constexpr char QX_OGRE_FRAGMENT_SHADER[] = R"glsl(
uniform vec4 tint;
uniform vec4 selection;
uniform vec4 shading;
in vec3 viewNormal;
in vec4 vertexColour;
out vec4 fragmentColour;
void main() {
  vec3 toEye = mix(-viewPosition, vec3(0.0, 0.0, 1.0), orthographic);
  vec3 face = cross(dFdx(viewPosition), dFdy(viewPosition));
  face *= inversesqrt(max(dot(face, face), 1e-37));
  if (dot(face, toEye) < 0.0) face = -face;
  vec3 normal = face;
  float square = dot(viewNormal, viewNormal);
  if (square > 0.0) {
    normal = viewNormal * inversesqrt(square);
    if (dot(normal, face) < 0.0) normal = -normal;
  }
  vec4 colour = vertexColour * tint;
)glsl";

inline constexpr char QX_OGRE_FRAGMENT_SHADER_END[] = R"glsl(
  colour.rgb = mix(colour.rgb, selection.rgb, selection.a * max(shading.y, chosen));
  if (shading.x > 0.0) {
    gatherLight(normal, toEye, 0.0);
    colour.rgb *= ambientLight + diffuseLight;
  }
  fragmentColour = vec4(fogged(min(colour.rgb, vec3(1.0))), colour.a);
}
)glsl";

/// In front of the fragment program of a pass: the colours of the material beside the diffuse one, which is in the tint. The exponent of the highlight stands in its alpha, the reference of the alpha
/// test in that of the emissive colour.
inline constexpr char QX_OGRE_PASS_DECLARATIONS[] = R"glsl(
uniform vec4 ownAmbient;
uniform vec4 emissive;
uniform vec4 highlight;
)glsl";

/// The material's ambient colour is a factor on the ambient light. Highlights are largest where the direction halfway
/// between eye and light is the normal.
inline constexpr char QX_OGRE_PASS_SHADER_END[] = R"glsl(
  colour.rgb = mix(colour.rgb, selection.rgb, selection.a * max(shading.y, chosen));
  if (shading.x > 0.0) {
    gatherLight(normal, normalize(toEye), highlight.a);
    colour.rgb *= ambientLight * ownAmbient.rgb + diffuseLight;
    colour.rgb += emissive.rgb + highlight.rgb * shineLight;
  }
  fragmentColour = vec4(fogged(min(colour.rgb, vec3(1.0))), colour.a);
}
)glsl";

/// For lines of so many pixels, as triangles. In: the point with the side of the line as its fourth number, the point
/// before it as the normal, the one after it as the first set of coordinates; at an end the point itself. The corner
/// moves sideways from the point, where two parts meet along the line that halves their angle, as far as that takes up
/// to twice the half width. The direction on the screen is the derivative of the projection, which keeps its sign when
/// the line passes the eye, as the difference of two projected points does not. A point behind the eye first moves
/// along the line to where that comes into sight: the two sides of a line change places at the eye, and triangles do
/// not.
inline constexpr char QX_OGRE_LINE_SHADER[] = R"glsl(
uniform mat4 worldView;
uniform mat4 worldViewProj;
uniform vec4 viewport;
uniform float lineWidth;
in vec4 vertex;
in vec3 normal;
in vec4 colour;
out vec3 viewPosition;
out vec3 viewNormal;
out vec4 vertexColour;
vec2 direction(vec4 from, vec4 to) {
  vec2 way = (to.xy * from.w - from.xy * to.w) * viewport.xy;
  float size = max(abs(way.x), abs(way.y));
  return size > 0.0 ? normalize(way / size) : vec2(1.0, 0.0);
}
float hidden(vec4 point, vec4 next) {
  float depth = point.z + point.w;
  float other = next.z + next.w;
  return depth < 0.0 && other > 0.0 ? depth / (depth - other) : 0.0;
}
void main() {
  vec4 here = worldViewProj * vec4(vertex.xyz, 1.0);
  vec4 before = worldViewProj * vec4(normal, 1.0);
  vec4 after = worldViewProj * vec4(uv0.xyz, 1.0);
  viewPosition = vertex.xyz;
  float part = hidden(here, after);
  here = mix(here, after, part);
  viewPosition = mix(viewPosition, uv0.xyz, part);
  part = hidden(here, before);
  here = mix(here, before, part);
  viewPosition = (worldView * vec4(mix(viewPosition, normal, part), 1.0)).xyz;
  vec2 inwards = direction(before, here);
  vec2 outwards = direction(here, after);
  if (normal == vertex.xyz) inwards = outwards;
  if (uv0.xyz == vertex.xyz) outwards = inwards;
  vec2 middle = inwards + outwards;
  middle = dot(middle, middle) > 1e-6 ? normalize(middle) : outwards;
  float reach = 1.0 / max(dot(middle, outwards), 0.5);
  vec2 offset = vec2(-middle.y, middle.x) * reach * vertex.w * lineWidth * viewport.zw;
  gl_Position = vec4(here.xy + offset * here.w, here.zw);
  viewNormal = vec3(0.0);
  vertexColour = colour;
)glsl";

}  // namespace QXC
