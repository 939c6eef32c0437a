/// @file
/// A pattern for clouds and foam.
#pragma once

#include <vector>

namespace QXC {

/// Makes a square picture of grey values that goes on across its edges without a seam: six octaves of Perlin's gradient
/// noise (Improving noise, 2002), the coarsest with four fields along an edge. The values are spread evenly over 0 to
/// 255, so that a part p of the picture is above 255 * (1 - p). The same on every machine.
/// @param nEdge  pixels, a power of two of at least 128
std::vector<unsigned char> MakeNoise(unsigned int nEdge);

}  // namespace QXC
