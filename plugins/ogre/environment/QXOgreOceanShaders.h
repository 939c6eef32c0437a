/// @file
/// Sources of the programs that draw oceans: GLSL 3.30.
#pragma once

namespace QXC {

/// The same sum as QXOgreWaves, counted from the eye: of each wave its vector, its amplitude and its angle under the
/// eye. OGRE takes the length of an array from a bare number alone. weight says how much of a wave is left where points
/// lie so far apart.
inline constexpr char QX_OGRE_OCEAN_WAVES[] = R"glsl(
uniform vec4 wave[24];
uniform int waveCount;
uniform float chop;
float weight(vec4 one, float apart, float least) {
  return smoothstep(least, 2.0 * least, 6.2831853 / (length(one.xy) * apart));
}
)glsl";

/// In: the place in a grid, 0 to 1 to the right and away from the eye. In a perspective view the grid is a fan around
/// the point below the eye: fan has the azimuth where it begins, its angle, the first radius, and the logarithm of the
/// last one in that. The last row is the horizon. In a parallel view the grid lies on the rays. The far plane cuts
/// nothing off: what is behind it stands on it.
inline constexpr char QX_OGRE_OCEAN_VERTEX[] = R"glsl(
uniform mat4 toClip;
uniform float flipping;
uniform float parallel;
uniform vec4 fan;
uniform vec3 start;
uniform vec3 startRight;
uniform vec3 startUp;
uniform vec3 ray;
uniform float eyeAbove;
uniform float stretch;
uniform float apart;
in vec4 vertex;
out vec2 rest;
out vec3 seen;
void main() {
  float spacing = apart;
  if (parallel > 0.5) {
    vec2 place = vertex.xy * 2.2 - 1.1;
    vec3 from = start + place.x * startRight + place.y * startUp;
    rest = from.xy + ray.xy * ((-eyeAbove - from.z) / ray.z);
  } else {
    float azimuth = fan.x + fan.y * vertex.x;
    float radius = vertex.y > 0.0 ? fan.z * exp(fan.w * vertex.y) : 0.0;
    if (vertex.y >= 1.0) radius = 1e7;
    spacing = apart * radius;
    rest = radius * vec2(sin(azimuth), cos(azimuth));
  }
  vec3 place = vec3(rest, 0.0);
  for (int i = 0; i < waveCount; ++i) {
    float angle = dot(wave[i].xy, rest) + wave[i].w;
    float amount = wave[i].z * weight(wave[i], spacing, 2.5);
    place.xy -= normalize(wave[i].xy) * (amount * chop * sin(angle));
    place.z += amount * cos(angle);
  }
  seen = vec3(place.xy, place.z * stretch - eyeAbove);
  if (parallel < 0.5 && vertex.y >= 1.0) seen.z = 0.0;
  gl_Position = toClip * vec4(seen, 1.0);
  gl_Position.y *= flipping;
  if (gl_Position.w > 0.0) gl_Position.z = min(gl_Position.z, gl_Position.w * 0.999999);
  if (parallel > 0.5) gl_Position.z = max(gl_Position.z, -gl_Position.w * 0.999999);
}
)glsl";

/// Slopes are summed anew for each pixel. Waves that are too short for it make the surface rougher instead, by the
/// variance of their slopes; roughness begins with that of Cox and Munk for the wind (Measurement of the roughness of
/// the sea surface, 1954). Fresnel's reflection on a rough surface and its highlight are those of Bruneton, Neyret and
/// Holzschuch (Real-time realistic ocean lighting, 2010). look: roughness, how squeezed a crest is that carries foam,
/// how far one sees clearly, and the repeats of the foam's pattern in a metre; foamPlace is what of it lies under the
/// eye.
inline constexpr char QX_OGRE_OCEAN_FRAGMENT[] = R"glsl(
uniform sampler2D noise;
uniform vec3 average;
uniform vec2 cover;
uniform vec4 water;
uniform vec3 sunDirection;
uniform vec3 sunColour;
uniform vec3 ambientColour;
uniform vec4 look;
uniform vec2 foamPlace;
uniform vec3 parallelRay;
uniform vec4 fog;
uniform vec4 fogColour;
uniform vec4 depthAxis;
in vec2 rest;
in vec3 seen;
out vec4 fragmentColour;

float fogVisible(float span) {
  if (fog.x < 0.5) return 1.0;
  float depth = fog.y * span;
  float visible = exp(fog.x < 1.5 ? -depth : -depth * depth);
  if (fog.x > 2.5) visible = (fog.y - span) * fog.z;
  return clamp(visible, 0.0, 1.0);
}

// How the pattern rises over some of its pixels.
vec2 ripple(vec2 place, float reach) {
  vec2 e = vec2(reach / 256.0, 0.0);
  return vec2(textureLod(noise, place + e.xy, 0.0).r - textureLod(noise, place - e.xy, 0.0).r,
      textureLod(noise, place + e.yx, 0.0).r - textureLod(noise, place - e.yx, 0.0).r);
}

vec3 skyColour(vec3 way) {
  vec3 grey = mix(average, vec3(dot(average, vec3(0.3, 0.5, 0.2))), 0.7);
  return shown(mix(skyLight(way), grey * (1.0 - 0.7 * cover.y), cover.x));
}

void main() {
  float pixel = max(length(dFdx(rest)), length(dFdy(rest)));
  vec2 slope = vec2(0.0);
  float squeeze = 0.0;
  float variance = look.x;
  for (int i = 0; i < waveCount; ++i) {
    float angle = dot(wave[i].xy, rest) + wave[i].w;
    float left = weight(wave[i], pixel, 2.0);
    float steep = wave[i].z * length(wave[i].xy);
    slope -= wave[i].xy * (wave[i].z * left * sin(angle));
    squeeze += steep * left * cos(angle);
    variance += 0.5 * steep * steep * (1.0 - left * left);
  }
  // Ripples of two sizes, where a pixel is smaller than they are.
  vec2 at = foamPlace + rest * look.w;
  float ripples = sqrt(max(look.x - 0.003, 0.0));
  slope += ripple(at * 9.0, 1.0) * (1.0 - smoothstep(0.04, 0.4, pixel)) * ripples * 1.1;
  slope += ripple(at * 2.0, 2.0) * (1.0 - smoothstep(0.15, 1.5, pixel)) * ripples * 1.1;
  vec3 normal = normalize(vec3(-slope / max(1.0 - chop * squeeze, 0.2), 1.0));
  float distance = length(seen);
  vec3 toEye = dot(parallelRay, parallelRay) > 0.0 ? -parallelRay : -seen / max(distance, 1e-6);
  // From below the surface shows its other side.
  if (toEye.z < 0.0) { normal = -normal; }
  float facing = max(dot(normal, toEye), 0.0);
  float rough = sqrt(variance);
  float fresnel = 0.02 + 0.98 * pow(1.0 - facing, 5.0 * exp(-2.69 * rough)) / (1.0 + 22.7 * pow(rough, 1.5));
  vec3 mirrored = reflect(-toEye, normal);
  mirrored.z = abs(mirrored.z) + 0.35 * rough * (1.0 - abs(mirrored.z));
  vec3 sky = skyColour(normalize(mirrored));
  vec3 body = water.rgb * (ambientColour + sunColour * max(dot(normal, sunDirection), 0.0));
  // Light shines through the upper part of waves.
  body += water.rgb * sunColour * clamp(chop * squeeze, 0.0, 1.0) * 0.6;
  vec3 colour = mix(body, sky, fresnel);
  float alpha = mix(water.a, 1.0, fresnel);
  vec3 halfway = normalize(toEye + sunDirection);
  float tilt = max(dot(normal, halfway), 0.05);
  float tangent = (1.0 - tilt * tilt) / (tilt * tilt);
  float glint = exp(-0.5 * tangent / variance) / (25.0 * variance * pow(tilt, 4.0));
  float mirror = 0.02 + 0.98 * pow(1.0 - max(dot(halfway, toEye), 0.0), 5.0);
  float lit = smoothstep(-0.02, 0.02, sunDirection.z);
  vec3 light = sunColour * min(glint * mirror * lit, 1.5);
  colour += light;
  alpha = min(alpha + max(light.r, max(light.g, light.b)), 1.0);
  if (look.y < 9.0) {
    float pattern = 0.5 * texture(noise, at).r + 0.5 * texture(noise, at * 5.0).r;
    float foam = smoothstep(0.0, 0.35 * look.y, squeeze - look.y * (1.2 - 0.6 * pattern));
    foam *= 0.85 * smoothstep(0.25, 0.7, pattern);
    colour = mix(colour, ambientColour * 1.1 + sunColour * 0.8 * max(sunDirection.z, 0.0) + 0.1 * sunColour, foam);
    alpha = mix(alpha, 1.0, foam);
  }
  // Air lies between.
  vec3 horizon = skyColour(normalize(vec3(seen.xy + 1e-5, 0.0)));
  float hazy = dot(parallelRay, parallelRay) > 0.0 ? 0.0 : 1.0 - exp(-distance / look.z);
  colour = mix(colour, horizon, hazy);
  float visible = fogVisible(dot(parallelRay, parallelRay) > 0.0 ? dot(depthAxis, vec4(seen, 1.0)) : distance);
  colour = mix(fogColour.rgb, min(colour, vec3(1.0)), visible);
  fragmentColour = vec4(colour, mix(1.0, alpha, visible * (1.0 - hazy)));
}
)glsl";

}  // namespace QXC
