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

/// One directional light and an ambient one. The face's own normal, from the derivatives of the position, turns to the
/// eye; it lights what has no vertex normals, and turns vertex normals to the side that is seen. Its sign cannot come
/// from the derivatives themselves nor from the winding, since both change when the device draws upside down, as it
/// does into textures.
inline constexpr char QX_OGRE_FRAGMENT_SHADER[] = R"glsl(
uniform vec4 tint;
uniform vec4 selection;
uniform vec4 shading;
uniform vec3 toSun;
uniform vec4 ambient;
uniform vec4 diffuse;
uniform float orthographic;
in vec3 viewPosition;
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
  vec3 light = ambient.rgb + diffuse.rgb * max(dot(normal, toSun), 0.0);
  vec4 colour = vertexColour * tint;
)glsl";

inline constexpr char QX_OGRE_FRAGMENT_SHADER_END[] = R"glsl(
  colour.rgb = mix(colour.rgb, selection.rgb, selection.a);
  fragmentColour = vec4(min(colour.rgb * mix(vec3(1.0), light, shading.x), vec3(1.0)), colour.a);
}
)glsl";

}  // namespace QXC
