#include <plugins/ogre/environment/QXOgreNoise.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numbers>
#include <numeric>

namespace QXC {

namespace {

constexpr unsigned int COARSEST = 4;
constexpr unsigned int OCTAVES = 6;
constexpr double ROUGHNESS = 0.55;

/// Mixes bits until neighbours have nothing to do with each other.
std::uint32_t Hash(std::uint32_t n) {
  n ^= n >> 16U;
  n *= 0x7FEB352DU;
  n ^= n >> 15U;
  n *= 0x846CA68BU;
  return n ^ n >> 16U;
}

/// The slope that a corner of the lattice has, times the way from there.
double Slope(unsigned int nX, unsigned int nY, unsigned int nFields, double dX, double dY) {
  std::uint32_t const nHash = Hash((nX % nFields) + 257U * (nY % nFields) + 65537U * nFields);
  double const dAngle = 2.0 * std::numbers::pi * nHash / 4294967296.0;
  return std::cos(dAngle) * dX + std::sin(dAngle) * dY;
}

double Fade(double d) {
  return d * d * d * (d * (d * 6.0 - 15.0) + 10.0);
}

double Octave(double dX, double dY, unsigned int nFields) {
  auto const nX = static_cast<unsigned int>(dX);
  auto const nY = static_cast<unsigned int>(dY);
  double const x = dX - nX;
  double const y = dY - nY;
  double const dLower = std::lerp(Slope(nX, nY, nFields, x, y), Slope(nX + 1, nY, nFields, x - 1.0, y), Fade(x));
  double const dUpper =
      std::lerp(Slope(nX, nY + 1, nFields, x, y - 1.0), Slope(nX + 1, nY + 1, nFields, x - 1.0, y - 1.0), Fade(x));
  return std::lerp(dLower, dUpper, Fade(y));
}

}  // namespace

std::vector<unsigned char> MakeNoise(unsigned int nEdge) {
  std::size_t const nCount = std::size_t{nEdge} * nEdge;
  std::vector<double> arrHeights(nCount);
  for (std::size_t i = 0; i < nCount; ++i) {
    auto const dX = static_cast<double>(i % nEdge);
    auto const dY = static_cast<double>(i / nEdge);
    double dWeight = 1.0;
    for (unsigned int nOctave = 0; nOctave < OCTAVES; ++nOctave) {
      unsigned int const nFields = COARSEST << nOctave;
      double const dScale = static_cast<double>(nFields) / nEdge;
      arrHeights[i] += dWeight * Octave(dX * dScale, dY * dScale, nFields);
      dWeight *= ROUGHNESS;
    }
  }
  std::vector<std::uint32_t> arrOrder(nCount);
  std::iota(arrOrder.begin(), arrOrder.end(), 0U);
  std::stable_sort(arrOrder.begin(), arrOrder.end(),
      [&](std::uint32_t a, std::uint32_t b) { return arrHeights[a] < arrHeights[b]; });
  std::vector<unsigned char> arrPixels(nCount);
  for (std::size_t i = 0; i < nCount; ++i) arrPixels[arrOrder[i]] = static_cast<unsigned char>(i * 256 / nCount);
  return arrPixels;
}

}  // namespace QXC
