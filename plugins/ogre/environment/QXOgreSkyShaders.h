/// @file
/// Sources of the programs that draw skies, and what oceans take of them: GLSL 3.30.
#pragma once

namespace QXC {

/// The light of the air from any direction, by the table of QXOgreSkyModel; below the horizon the horizon's own, which
/// darkens downwards as haze over the ground does. What is shown of light.
inline constexpr char QX_OGRE_SKY_LIGHT[] = R"glsl(
uniform sampler2D skyTable;
uniform vec3 toSun;
const float PI = 3.14159265;
const vec2 TABLE = vec2(32.0, 48.0);
float groundShade(vec3 way) {
  return mix(1.0, 0.4, smoothstep(0.0, 0.15, -way.z));
}
vec3 skyLight(vec3 way) {
  float around = acos(clamp(dot(normalize(way.xy + vec2(1e-6)), normalize(toSun.xy + vec2(1e-6))), -1.0, 1.0));
  float altitude = asin(clamp(way.z, 0.0, 1.0));
  vec2 place = vec2(sqrt(around / PI), sqrt(altitude * 2.0 / PI));
  vec3 light = texture(skyTable, (place * (TABLE - 1.0) + 0.5) / TABLE).rgb;
  return light * groundShade(way);
}
vec3 shown(vec3 light) {
  return pow(1.0 - exp(-light), vec3(1.0 / 2.2));
}
)glsl";

/// How much of what is behind an endless layer of fog is lost: the way through it is its thickness over the sine of the
/// altitude. The numbers are those of QXOgreFog.
inline constexpr char QX_OGRE_SKY_FOG[] = R"glsl(
uniform vec4 fog;
uniform vec4 fogColour;
const float FOG_THICKNESS = 300.0;
float lostInFog(float sine) {
  if (fog.x < 0.5) return 0.0;
  float way = FOG_THICKNESS / max(sine, 1e-4);
  float depth = fog.y * way;
  float visible = exp(fog.x < 1.5 ? -depth : -depth * depth);
  if (fog.x > 2.5) visible = (fog.y - way) * fog.z;
  return 1.0 - clamp(visible, 0.0, 1.0);
}
)glsl";

/// Four corners of the viewport, behind everything.
inline constexpr char QX_OGRE_SKY_VERTEX[] = R"glsl(#version 330 core
uniform vec3 ray;
uniform vec3 rayRight;
uniform vec3 rayUp;
uniform float flipping;
in vec4 vertex;
out vec3 wayOut;
void main() {
  wayOut = ray + vertex.x * rayRight + vertex.y * rayUp;
  gl_Position = vec4(vertex.x, vertex.y * flipping, 0.0, 1.0);
}
)glsl";

/// Levels of the pattern are named, since in a branch nobody knows how far apart two pixels look. cloudAxes turn metres
/// over the ground into repeats of the pattern, cloudPlace is what stands over the eye, in repeats, with the clouds'
/// height over the eye and how far they are seen, in metres. cloudLook: the part that is covered, how soft edges are,
/// how solid a cloud is, how dark its base. cloudVeil is how much of the blue they hide beyond the distance to which
/// they are seen.
inline constexpr char QX_OGRE_SKY_FRAGMENT[] = R"glsl(
uniform vec3 sunLight;
uniform vec3 average;
uniform float night;
uniform mat4 starTurn;
uniform sampler2D noise;
uniform vec4 cloudAxes;
uniform vec4 cloudPlace;
uniform vec4 cloudLook;
uniform float cloudVeil;
in vec3 wayOut;
out vec4 fragmentColour;
const float SUN_RADIUS = 0.00466;
const float STAR_FIELDS = 90.0;

float random(vec3 cell, float number) {
  uvec3 n = uvec3(ivec3(cell) + 1000);
  uint h = n.x * 73856093u ^ n.y * 19349663u ^ n.z * 83492791u ^ uint(number) * 2654435769u;
  h ^= h >> 16; h *= 0x7feb352du; h ^= h >> 15; h *= 0x846ca68bu; h ^= h >> 16;
  return float(h) / 4294967296.0;
}

float stars(vec3 way, float pixel) {
  vec3 turned = mat3(starTurn) * way;
  vec3 cell = floor(turned * STAR_FIELDS);
  if (random(cell, 1.0) > 0.05) return 0.0;
  vec3 star = normalize(cell + 0.3 + 0.4 * vec3(random(cell, 2.0), random(cell, 3.0), random(cell, 4.0)));
  if (floor(star * STAR_FIELDS) != cell) return 0.0;
  float size = max(pixel, 0.0006);
  float bright = 0.04 + pow(random(cell, 5.0), 6.0);
  return bright * smoothstep(size * 1.2, 0.0, length(turned - star));
}

float density(vec2 place, float level) {
  float value = 0.72 * textureLod(noise, place, level).r + 0.28 * textureLod(noise, place * 5.0, level + 2.3).r;
  float from = 1.0 - cloudLook.x;
  return smoothstep(from, from + cloudLook.y, value);
}

void main() {
  vec3 way = normalize(wayOut);
  float pixel = max(length(fwidth(way)) * 0.7, 1e-5);
  // Under a closed layer nothing is blue, and the air is lit by the layer alone.
  vec3 grey = mix(average, vec3(dot(average, vec3(0.3, 0.5, 0.2))), 0.7);
  vec3 light = mix(skyLight(way), grey * (1.0 - 0.7 * cloudLook.w) * groundShade(way), cloudVeil);
  float apart = length(way - toSun);
  float aboveGround = smoothstep(-0.003, 0.003, way.z);
  float disc = 1.0 - smoothstep(SUN_RADIUS - 0.5 * pixel, SUN_RADIUS + 0.5 * pixel, apart);
  vec3 sun = sunLight * aboveGround * (disc * 20.0 + 0.15 * exp(-apart / 0.012) + 0.03 * exp(-apart / 0.06));
  float clear = 1.0;
  float up = cloudPlace.z > 0.0 ? way.z : -way.z;
  if (cloudLook.x > 0.0 && up > 0.001) {
    float distance = abs(cloudPlace.z) / up;
    vec2 metres = way.xy * distance;
    mat2 axes = mat2(cloudAxes.xy, cloudAxes.zw);
    vec2 place = cloudPlace.xy + axes * metres;
    // Of the pattern's pixels that one pixel of the picture covers, along the view.
    float level = log2(max(length(cloudAxes.xy) * 256.0 * distance * pixel / up, 1.0)) - 1.0;
    float dense = density(place, level);
    vec2 aside = axes * (toSun.xy / max(length(toSun.xy) + toSun.z, 0.3)) * 350.0;
    float before = density(place + aside, level);
    float seen = 1.0 - smoothstep(0.35, 1.0, distance / cloudPlace.w);
    float cover = dense * cloudLook.z * seen;
    float through = exp(-2.6 * before * cloudLook.z * cloudLook.z) * mix(1.0, 0.5, dense * cloudLook.z);
    float forward = 0.35 + 1.6 * pow(max(dot(way, toSun), 0.0), 12.0) * (1.0 - dense);
    vec3 lit = sunLight * (0.04 + 0.6 * through * forward) + mix(average, grey, 0.6) * (1.05 - 0.4 * dense);
    lit *= 1.0 - cloudLook.w * (0.35 + 0.65 * dense);
    // What is far away has the air's colour.
    lit = mix(lit, light, 1.0 - exp(-1.2 * distance / cloudPlace.w));
    light = mix(light, lit, cover);
    clear = 1.0 - cover;
  }
  clear *= clear;
  light += sun * clear;
  light += vec3(1.4, 1.5, 1.7) * stars(way, pixel) * night * clear * smoothstep(0.0, 0.25, way.z);
  vec3 colour = mix(shown(light), fogColour.rgb, lostInFog(way.z));
  fragmentColour = vec4(colour, 1.0);
}
)glsl";

}  // namespace QXC
