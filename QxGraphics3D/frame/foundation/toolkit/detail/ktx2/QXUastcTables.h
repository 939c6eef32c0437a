/// @file
/// The fixed tables of UASTC, worked out by the compiler: modes, partition patterns, endpoint scales.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace QXC::detail {

/// Which list of partition patterns a mode takes its pattern from.
enum class QXUastcPatterns : unsigned char { One, Two, Three, TwoOfThree };

/// The layout of one block mode. The fields follow each other from the lowest bit: mode code, hints, pattern, plane
/// selector, upper digits of the endpoints, their lower bits, weights.
struct QXUastcMode {
  unsigned char m_nCode;  ///< lowest bit first, as it stands in the block
  unsigned char m_nCodeBits;
  unsigned char m_nHintBits;  ///< for those who turn the block into another format: skipped
  unsigned char m_nWeightBits;
  unsigned char m_nPlanes;
  unsigned char m_nSelectorBits;  ///< 0 with two planes: the second one is alpha's
  unsigned char m_nComponents;    ///< 2: grey and alpha, 3: colour, 4: colour and alpha
  unsigned char m_nEndpointBase;  ///< of the upper digit: 3, 5, or 1 for none
  unsigned char m_nEndpointBits;
  QXUastcPatterns m_ePatterns;

  constexpr unsigned int GetSubsets() const {
    return m_ePatterns == QXUastcPatterns::One ? 1 : m_ePatterns == QXUastcPatterns::Three ? 3 : 2;
  }
  constexpr unsigned int GetPatternBits() const {
    return m_ePatterns == QXUastcPatterns::One ? 0 : m_ePatterns == QXUastcPatterns::Three ? 4 : 5;
  }
  constexpr unsigned int GetEndpointCount() const { return 2u * m_nComponents * GetSubsets(); }
};

constexpr unsigned int g_nUastcModes = 19;
constexpr unsigned int g_nUastcSolidMode = 8;
constexpr unsigned int g_nUastcNoMode = 19;  ///< what the unused code 0x45 stands for

constexpr QXUastcMode g_UastcModes[g_nUastcModes] = {
    // code, bits, hints, weight, planes, selector, components, base, bits, patterns
    {0x01, 4, 15, 4, 1, 0, 3, 3, 6, QXUastcPatterns::One},
    {0x35, 6, 15, 2, 1, 0, 3, 1, 8, QXUastcPatterns::One},
    {0x1D, 5, 15, 3, 1, 0, 3, 1, 4, QXUastcPatterns::Two},
    {0x03, 5, 15, 2, 1, 0, 3, 3, 2, QXUastcPatterns::Three},
    {0x13, 5, 15, 2, 1, 0, 3, 5, 3, QXUastcPatterns::Two},
    {0x0B, 5, 15, 3, 1, 0, 3, 1, 8, QXUastcPatterns::One},
    {0x1B, 5, 15, 2, 2, 2, 3, 5, 5, QXUastcPatterns::One},
    {0x07, 5, 15, 2, 1, 0, 3, 5, 3, QXUastcPatterns::TwoOfThree},
    {0x17, 5, 0, 0, 1, 0, 4, 1, 8, QXUastcPatterns::One},
    {0x0F, 5, 23, 2, 1, 0, 4, 1, 4, QXUastcPatterns::Two},
    {0x02, 3, 17, 4, 1, 0, 4, 3, 4, QXUastcPatterns::One},
    {0x00, 2, 17, 2, 2, 2, 4, 3, 4, QXUastcPatterns::One},
    {0x06, 3, 17, 3, 1, 0, 4, 3, 6, QXUastcPatterns::One},
    {0x1F, 5, 23, 1, 2, 2, 4, 1, 8, QXUastcPatterns::One},
    {0x0D, 5, 23, 2, 1, 0, 4, 1, 8, QXUastcPatterns::One},
    {0x05, 7, 23, 4, 1, 0, 2, 1, 8, QXUastcPatterns::One},
    {0x15, 6, 23, 2, 1, 0, 2, 1, 8, QXUastcPatterns::Two},
    {0x25, 6, 23, 2, 2, 0, 2, 1, 8, QXUastcPatterns::One},
    {0x09, 4, 15, 5, 1, 0, 3, 1, 5, QXUastcPatterns::One},
};

/// Mode by the lowest seven bits of a block.
constexpr std::array<unsigned char, 128> MakeUastcModeLookup() {
  std::array<unsigned char, 128> lookup = {};
  for (unsigned int i = 0; i < 128; ++i) {
    lookup[i] = g_nUastcNoMode;
    for (unsigned int nMode = 0; nMode < g_nUastcModes; ++nMode) {
      unsigned int const nMask = (1u << g_UastcModes[nMode].m_nCodeBits) - 1;
      if ((i & nMask) == g_UastcModes[nMode].m_nCode) lookup[i] = static_cast<unsigned char>(nMode);
    }
  }
  return lookup;
}

/// Seeds of the partition patterns that a block may use, by its pattern index.
constexpr std::uint16_t g_UastcSeeds2[] = {28, 20, 16, 29, 91, 9, 107, 72, 149, 204, 50, 114, 496, 17, 78, 39, 252, 828,
    43, 156, 116, 210, 476, 273, 684, 359, 246, 195, 694, 524};
constexpr std::uint16_t g_UastcSeeds3[] = {260, 74, 32, 156, 183, 15, 745, 0, 335, 902, 254};
constexpr std::uint16_t g_UastcSeeds2Of3[] = {
    36, 48, 61, 137, 161, 183, 226, 281, 302, 307, 479, 495, 593, 594, 605, 799, 812, 988, 993};

/// The scrambling of a seed, from the ASTC chapter of the Khronos Data Format text.
constexpr std::uint32_t ScrambleUastcSeed(std::uint32_t n) {
  n ^= n >> 15;
  n -= n << 17;
  n += n << 7;
  n += n << 4;
  n ^= n >> 5;
  n += n << 16;
  n ^= n >> 7;
  n ^= n >> 3;
  n ^= n << 6;
  n ^= n >> 17;
  return n;
}

/// The subset of one pixel, for two or three subsets and blocks of 4 x 4, from the same chapter: each subset is a plane
/// over the block with its slopes out of the seed, and the highest plane has the pixel.
constexpr unsigned int FindUastcSubset(
    std::uint32_t nSeed, unsigned int nColumn, unsigned int nRow, unsigned int nSubsets) {
  nSeed += (nSubsets - 1) * 1024;
  std::uint32_t const nRandom = ScrambleUastcSeed(nSeed);
  unsigned int const nShiftOfSeed = (nSeed & 2) != 0 ? 4 : 5;
  unsigned int const nShiftOfCount = nSubsets == 3 ? 6 : 5;
  unsigned int const nColumnShift = (nSeed & 1) != 0 ? nShiftOfSeed : nShiftOfCount;
  unsigned int const nRowShift = (nSeed & 1) != 0 ? nShiftOfCount : nShiftOfSeed;
  unsigned int heights[3] = {};
  for (unsigned int i = 0; i < nSubsets; ++i) {
    unsigned int const nAlong = (nRandom >> (8 * i)) & 15;
    unsigned int const nDown = (nRandom >> (8 * i + 4)) & 15;
    // Small blocks take every second place of the pattern.
    heights[i] = ((nAlong * nAlong >> nColumnShift) * nColumn * 2 + (nDown * nDown >> nRowShift) * nRow * 2 +
                     (nRandom >> (14 - 4 * i))) &
                 63;
  }
  if (heights[0] >= heights[1] && heights[0] >= heights[2]) return 0;
  return heights[1] >= heights[2] ? 1 : 2;
}

/// One partition pattern.
struct QXUastcPattern {
  unsigned char m_SubsetOf[16] = {};
  /// The first pixel of each subset, ascending: its weight is stored without the upper bit, which is 0.
  unsigned char m_Anchors[3] = {};
};

constexpr QXUastcPattern MakeUastcPattern(std::uint32_t nSeed, unsigned int nSubsets) {
  QXUastcPattern pattern;
  unsigned int nSeen = 0;
  unsigned int nAnchors = 0;
  for (unsigned int i = 0; i < 16; ++i) {
    unsigned int const nSubset = nSubsets == 1 ? 0 : FindUastcSubset(nSeed, i & 3, i >> 2, nSubsets);
    pattern.m_SubsetOf[i] = static_cast<unsigned char>(nSubset);
    if ((nSeen >> nSubset & 1) == 0) pattern.m_Anchors[nAnchors++] = static_cast<unsigned char>(i);
    nSeen |= 1u << nSubset;
  }
  return pattern;
}

template <std::size_t nCount>
constexpr std::array<QXUastcPattern, nCount> MakeUastcPatterns(
    std::uint16_t const (&seeds)[nCount], unsigned int nSubsets) {
  std::array<QXUastcPattern, nCount> patterns = {};
  for (std::size_t i = 0; i < nCount; ++i) patterns[i] = MakeUastcPattern(seeds[i], nSubsets);
  return patterns;
}

/// What an endpoint with an upper digit stands for, 0..255, from the table of the ASTC chapter: the scrambled order is
/// its way to scale without a wide multiplication. nValue is digit << nBits | lower bits; nBase 1 repeats the bits.
constexpr unsigned char ScaleUastcEndpoint(unsigned int nBase, unsigned int nBits, unsigned int nValue) {
  if (nBase == 1) {
    unsigned int nWide = 0;
    for (int nShift = 8 - static_cast<int>(nBits); nShift > -static_cast<int>(nBits);
         nShift -= static_cast<int>(nBits)) {
      nWide |= nShift >= 0 ? nValue << nShift : nValue >> -nShift;
    }
    return static_cast<unsigned char>(nWide);
  }
  unsigned int const nDigit = nValue >> nBits;
  unsigned int const a = (nValue & 1) != 0 ? 0x1FF : 0;
  unsigned int const x = (nValue & ((1u << nBits) - 1)) >> 1;
  unsigned int nFactor = 0;
  unsigned int nOffset = 0;
  if (nBase == 3 && nBits == 2) {
    nFactor = 93;
    nOffset = x * 0x116;
  }
  if (nBase == 3 && nBits == 4) {
    nFactor = 22;
    nOffset = x << 6 | x;
  }
  if (nBase == 3 && nBits == 6) {
    nFactor = 5;
    nOffset = x << 4 | x >> 4;
  }
  if (nBase == 5 && nBits == 3) {
    nFactor = 26;
    nOffset = x << 7 | x << 1 | x >> 1;
  }
  if (nBase == 5 && nBits == 5) {
    nFactor = 6;
    nOffset = x << 5 | x >> 3;
  }
  return static_cast<unsigned char>((a & 0x80) | (((nDigit * nFactor + nOffset) ^ a) >> 2));
}

template <unsigned int nBase, unsigned int nBits>
constexpr std::array<unsigned char, nBase << nBits> MakeUastcScale() {
  std::array<unsigned char, nBase << nBits> scale = {};
  for (unsigned int i = 0; i < scale.size(); ++i) scale[i] = ScaleUastcEndpoint(nBase, nBits, i);
  return scale;
}

/// Weights 0..64 by their stored bits: repeated to six bits, and the upper half one more, so that 64 is reached.
template <unsigned int nBits>
constexpr std::array<std::uint16_t, (1u << nBits)> MakeUastcWeights() {
  std::array<std::uint16_t, (1u << nBits)> weights = {};
  for (unsigned int i = 0; i < weights.size(); ++i) {
    unsigned int nWide = 0;
    for (int nShift = 6 - static_cast<int>(nBits); nShift > -static_cast<int>(nBits);
         nShift -= static_cast<int>(nBits)) {
      nWide |= nShift >= 0 ? i << nShift : i >> -nShift;
    }
    weights[i] = static_cast<std::uint16_t>(nWide > 32 ? nWide + 1 : nWide);
  }
  return weights;
}

}  // namespace QXC::detail
