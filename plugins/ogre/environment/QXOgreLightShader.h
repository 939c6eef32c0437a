/// @file
/// The parts of fragment programs that know light and fog. They stand in front of the main function, which calls
/// gatherLight where the drawable is lit, and fogged with the colour that is finished otherwise.
#pragma once

namespace QXC {

/// The sun and the ambient light, and whatever the next part adds to them.
inline constexpr char QX_OGRE_LIGHT_SHADER[] = R"glsl(
uniform vec3 toSun;
uniform vec4 ambient;
uniform vec4 diffuse;
uniform float orthographic;
in vec3 viewPosition;
vec3 ambientLight;
vec3 diffuseLight;
vec3 shineLight;
void addLight(vec3 normal, vec3 eyeward, float exponent, vec3 towards, vec3 colour, vec3 shine) {
  float facing = dot(normal, towards);
  if (!(facing > 0.0)) return;
  diffuseLight += colour * facing;
  if (exponent > 0.0)
    shineLight += shine * pow(max(dot(normal, normalize(towards + eyeward)), 0.0), exponent);
}
void gatherLamps(vec3 normal, vec3 eyeward, float exponent);
void gatherLight(vec3 normal, vec3 eyeward, float exponent) {
  ambientLight = ambient.rgb;
  diffuseLight = vec3(0.0);
  shineLight = vec3(0.0);
  addLight(normal, eyeward, exponent, toSun, diffuse.rgb, diffuse.rgb);
  gatherLamps(normal, eyeward, exponent);
}
)glsl";

/// Each lamp has six groups of numbers: where it stands, and 1 (or the way to one that is everywhere, and 0); the way it
/// shines, and the cosine of half its outer angle; constant, linear and quadric attenuation, and its range; diffuse
/// colour, and the exponent of its falloff; colour of its highlights, and one by the difference of the cosines of half
/// its angles; ambient colour. Places are those of the eye. The array holds QXOgreLamps::MOST times 6.
inline constexpr char QX_OGRE_LAMP_SHADER[] = R"glsl(
uniform int lampCount;
uniform vec4 lamps[192];
void addLamp(int first, vec3 normal, vec3 eyeward, float exponent) {
  vec4 place = lamps[first];
  vec4 axis = lamps[first + 1];
  vec4 fading = lamps[first + 2];
  vec4 plain = lamps[first + 3];
  vec4 shine = lamps[first + 4];
  vec3 way = place.xyz - viewPosition * place.w;
  float span = min(length(way), 1e18);
  vec3 towards = way / max(span, 1e-18);
  float share = 1.0;
  if (place.w > 0.0) {
    float cosine = -dot(towards, axis.xyz);
    if (span > fading.w || cosine <= axis.w) return;
    share = pow(min((cosine - axis.w) * shine.w, 1.0), plain.w);
    share /= max(fading.x + span * (fading.y + span * fading.z), 1e-6);
  }
  ambientLight += lamps[first + 5].rgb * share;
  addLight(normal, eyeward, exponent, towards, plain.rgb * share, shine.rgb * share);
}
void gatherLamps(vec3 normal, vec3 eyeward, float exponent) {
  for (int i = 0; i < lampCount; ++i) addLamp(6 * i, normal, eyeward, exponent);
}
)glsl";

/// Scenes without lamps and fog have programs without: processors that draw go through what a condition skips.
inline constexpr char QX_OGRE_NO_LAMP_SHADER[] = R"glsl(
void gatherLamps(vec3 normal, vec3 eyeward, float exponent) {}
)glsl";

/// Behind the part of the light. The first number is the mode (QXOgreFog); in parallel views fog grows along the view.
inline constexpr char QX_OGRE_FOG_SHADER[] = R"glsl(
uniform vec4 fog;
uniform vec4 fogColour;
vec3 fogged(vec3 colour) {
  if (fog.x < 0.5) return colour;
  float span = orthographic > 0.5 ? max(-viewPosition.z, 0.0) : min(length(viewPosition), 1e18);
  float depth = fog.y * span;
  float visible = exp(fog.x < 1.5 ? -depth : -depth * depth);
  if (fog.x > 2.5) visible = (fog.y - span) * fog.z;
  return mix(fogColour.rgb, colour, clamp(visible, 0.0, 1.0));
}
)glsl";

/// In place of that, where there is none, and for what is to be read.
inline constexpr char QX_OGRE_NO_FOG_SHADER[] = R"glsl(
vec3 fogged(vec3 colour) { return colour; }
)glsl";

}  // namespace QXC
