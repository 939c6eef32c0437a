/// @file
/// Sources of the programs that make bright things glow.
#pragma once

namespace QXC {

/// One triangle that covers the target. Places count from the upper left corner, as the rows of textures do, whichever
/// way up the device draws.
inline constexpr char QX_OGRE_WHOLE_SHADER[] = R"glsl(#version 330 core
uniform float flipping;
in vec4 vertex;
out vec2 place;
void main() {
  place = vec2(vertex.x * 0.5 + 0.5, 0.5 - vertex.y * 0.5);
  gl_Position = vec4(vertex.x, vertex.y * flipping, 0.0, 1.0);
}
)glsl";

/// The mean of the bright parts of a square of pixels: each is taken before the mean, so that a small light is not lost
/// in the dark around it. Beyond the edge the pixels of the edge stand again.
inline constexpr char QX_OGRE_BRIGHT_SHADER[] = R"glsl(#version 330 core
uniform sampler2D picture;
uniform vec2 size;
uniform vec2 reduced;
uniform float side;
uniform float threshold;
in vec2 place;
out vec4 fragmentColour;
void main() {
  ivec2 first = ivec2(place * reduced) * int(side);
  ivec2 last = ivec2(size) - 1;
  vec3 sum = vec3(0.0);
  for (int y = 0; y < int(side); ++y) {
    for (int x = 0; x < int(side); ++x) {
      vec3 colour = texelFetch(picture, min(first + ivec2(x, y), last), 0).rgb;
      float brightness = max(colour.r, max(colour.g, colour.b));
      sum += colour * clamp((brightness - threshold) / (1.0 - threshold), 0.0, 1.0);
    }
  }
  fragmentColour = vec4(sum / (side * side), 1.0);
}
)glsl";

/// A weighted mean along one direction. Beyond the edge the pixels of the edge stand again.
inline constexpr char QX_OGRE_BLUR_SHADER[] = R"glsl(#version 330 core
uniform sampler2D picture;
uniform vec2 reduced;
uniform vec2 direction;
uniform float reach;
uniform float weights[9];
in vec2 place;
out vec4 fragmentColour;
void main() {
  ivec2 here = ivec2(place * reduced);
  ivec2 last = ivec2(reduced) - 1;
  ivec2 along = ivec2(direction);
  vec3 sum = texelFetch(picture, here, 0).rgb * weights[0];
  for (int i = 1; i <= int(reach); ++i) {
    vec3 both = texelFetch(picture, clamp(here + along * i, ivec2(0), last), 0).rgb +
                texelFetch(picture, clamp(here - along * i, ivec2(0), last), 0).rgb;
    sum += both * weights[i];
  }
  fragmentColour = vec4(sum, 1.0);
}
)glsl";

/// The picture with the glow added. What shows the background through keeps doing so.
inline constexpr char QX_OGRE_SUM_SHADER[] = R"glsl(#version 330 core
uniform sampler2D picture;
uniform sampler2D glow;
uniform vec2 size;
uniform vec2 covered;
uniform float intensity;
in vec2 place;
out vec4 fragmentColour;
void main() {
  vec4 colour = texelFetch(picture, ivec2(place * size), 0);
  vec3 light = texture(glow, place * covered).rgb * intensity;
  fragmentColour = vec4(min(colour.rgb + light, vec3(1.0)), colour.a);
}
)glsl";

}  // namespace QXC
