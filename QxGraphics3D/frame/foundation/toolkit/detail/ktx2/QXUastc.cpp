#include <QxGraphics3D/frame/foundation/toolkit/detail/ktx2/QXUastc.h>

#include <QxGraphics3D/frame/foundation/toolkit/detail/ktx2/QXUastcTables.h>

#include <algorithm>
#include <cstring>
#include <utility>

namespace QXC::detail {

namespace {

/// The 128 bits of a block.
struct QXBits {
  std::uint64_t m_nLow;
  std::uint64_t m_nHigh;

  /// The bits from nFirst on, as many as 64 or the block has.
  template <unsigned int nFirst>
  std::uint64_t From() const {
    if constexpr (nFirst == 0)
      return m_nLow;
    else if constexpr (nFirst < 64)
      return m_nLow >> nFirst | m_nHigh << (64 - nFirst);
    else
      return m_nHigh >> (nFirst - 64);
  }
};

std::uint64_t Load64(unsigned char const* pBytes) {
  std::uint64_t nWord = 0;
  for (unsigned int i = 0; i < 8; ++i) nWord |= std::uint64_t(pBytes[i]) << (8 * i);
  return nWord;
}

constexpr auto g_ModeLookup = MakeUastcModeLookup();
constexpr std::array<QXUastcPattern, 1> g_Whole = {MakeUastcPattern(0, 1)};
constexpr auto g_Patterns2 = MakeUastcPatterns(g_UastcSeeds2, 2);
constexpr auto g_Patterns3 = MakeUastcPatterns(g_UastcSeeds3, 3);
constexpr auto g_Patterns2Of3 = MakeUastcPatterns(g_UastcSeeds2Of3, 2);
template <unsigned int nBase, unsigned int nBits>
constexpr auto g_Scale = MakeUastcScale<nBase, nBits>();
template <unsigned int nBits>
constexpr auto g_Weights = MakeUastcWeights<nBits>();

template <QXUastcPatterns ePatterns>
constexpr auto const& GetPatterns() {
  if constexpr (ePatterns == QXUastcPatterns::Two)
    return g_Patterns2;
  else if constexpr (ePatterns == QXUastcPatterns::Three)
    return g_Patterns3;
  else if constexpr (ePatterns == QXUastcPatterns::TwoOfThree)
    return g_Patterns2Of3;
  else
    return g_Whole;
}

/// How many digits stand together, in how many bits; a group that is not full takes what its digits need.
template <unsigned int nBase>
struct QXDigits {
  static constexpr unsigned int ms_nGroup = nBase == 3 ? 5 : 3;
  static constexpr unsigned int ms_nGroupBits = nBase == 3 ? 8 : 7;
  static constexpr unsigned int BitsOf(unsigned int nDigits) {
    constexpr unsigned int three[] = {0, 2, 4, 5, 7};
    constexpr unsigned int five[] = {0, 3, 5};
    unsigned int const nRest = nDigits % ms_nGroup;
    return nDigits / ms_nGroup * ms_nGroupBits + (nBase == 3 ? three[nRest] : five[nRest % 3]);
  }
};

/// All digits of a group by its bits. Groups above the last combination wrap, as plain division gives it.
template <unsigned int nBase>
constexpr auto MakeDigits() {
  std::array<std::array<unsigned char, 5>, (1u << QXDigits<nBase>::ms_nGroupBits)> table = {};
  for (unsigned int i = 0; i < table.size(); ++i) {
    unsigned int nRest = i;
    for (unsigned int nDigit = 0; nDigit < QXDigits<nBase>::ms_nGroup; ++nDigit, nRest /= nBase) {
      table[i][nDigit] = static_cast<unsigned char>(nRest % nBase);
    }
  }
  return table;
}
template <unsigned int nBase>
constexpr auto g_Digits = MakeDigits<nBase>();

/// Where the fields of a mode begin.
template <unsigned int nMode>
struct QXLayout {
  static constexpr QXUastcMode ms_Mode = g_UastcModes[nMode];
  static constexpr unsigned int ms_nPattern = ms_Mode.m_nCodeBits + ms_Mode.m_nHintBits;
  static constexpr unsigned int ms_nSelector = ms_nPattern + ms_Mode.GetPatternBits();
  static constexpr unsigned int ms_nDigits = ms_nSelector + ms_Mode.m_nSelectorBits;
  static constexpr unsigned int ms_nEndpoints =
      ms_nDigits +
      (ms_Mode.m_nEndpointBase == 1 ? 0 : QXDigits<ms_Mode.m_nEndpointBase>::BitsOf(ms_Mode.GetEndpointCount()));
  static constexpr unsigned int ms_nWeights = ms_nEndpoints + ms_Mode.GetEndpointCount() * ms_Mode.m_nEndpointBits;
  static constexpr unsigned int ms_nEnd =
      ms_nWeights + ms_Mode.m_nPlanes * (16u * ms_Mode.m_nWeightBits - ms_Mode.GetSubsets());
  static_assert(ms_nEnd <= 128);
};

/// Two endpoints of a subset, R,G,B,A each.
using QXEndpoints = unsigned char[2][4];

template <unsigned int nMode>
void ReadEndpoints(QXBits const& bits, QXEndpoints* pEndpoints) {
  using Layout = QXLayout<nMode>;
  constexpr QXUastcMode mode = Layout::ms_Mode;
  constexpr unsigned int nCount = mode.GetEndpointCount();
  constexpr unsigned int nLowBits = mode.m_nEndpointBits;
  unsigned char values[nCount];
  std::uint64_t nLow = bits.From<Layout::ms_nEndpoints>();
  [[maybe_unused]] std::uint64_t nDigits = bits.From<Layout::ms_nDigits>();
  for (unsigned int i = 0; i < nCount; ++i, nLow >>= nLowBits) {
    unsigned int const nBits = static_cast<unsigned int>(nLow) & ((1u << nLowBits) - 1);
    if constexpr (mode.m_nEndpointBase == 1) {
      values[i] = g_Scale<1, nLowBits>[nBits];
    } else {
      using Digits = QXDigits<mode.m_nEndpointBase>;
      unsigned int const nGroup = i / Digits::ms_nGroup;
      unsigned int const nFirst = nGroup * Digits::ms_nGroup;
      unsigned int const nGroupBits = Digits::BitsOf(std::min(nCount - nFirst, Digits::ms_nGroup));
      unsigned int const nPacked =
          static_cast<unsigned int>(nDigits >> (nGroup * Digits::ms_nGroupBits)) & ((1u << nGroupBits) - 1);
      unsigned int const nDigit = g_Digits<mode.m_nEndpointBase>[nPacked][i - nFirst];
      values[i] = g_Scale<mode.m_nEndpointBase, nLowBits>[nDigit << nLowBits | nBits];
    }
  }
  for (unsigned int nSubset = 0; nSubset < mode.GetSubsets(); ++nSubset) {
    unsigned char const* const pValues = values + nSubset * 2 * mode.m_nComponents;
    for (unsigned int nEnd = 0; nEnd < 2; ++nEnd) {
      unsigned char* const pColor = pEndpoints[nSubset][nEnd];
      if constexpr (mode.m_nComponents == 2) {
        pColor[0] = pColor[1] = pColor[2] = pValues[nEnd];
        pColor[3] = pValues[2 + nEnd];
      } else {
        for (unsigned int i = 0; i < 3; ++i) pColor[i] = pValues[2 * i + nEnd];
        if constexpr (mode.m_nComponents == 4)
          pColor[3] = pValues[6 + nEnd];
        else
          pColor[3] = 255;
      }
    }
  }
}

/// All colours between two endpoints that a weight of nBits bits can pick.
template <unsigned int nBits>
void FillPalette(QXEndpoints const& endpoints, unsigned char* pPalette) {
  // Two colours a turn: eight 16-bit lanes, which compilers turn into one register.
  std::uint16_t first[8];
  std::uint16_t second[8];
  for (unsigned int i = 0; i < 8; ++i) {
    first[i] = endpoints[0][i & 3];
    second[i] = endpoints[1][i & 3];
  }
  for (unsigned int nPair = 0; nPair < (1u << nBits) / 2; ++nPair) {
    for (unsigned int i = 0; i < 8; ++i) {
      std::uint16_t const nWeight = g_Weights<nBits>[nPair * 2 + i / 4];
      // (257 * n + 32) >> 14, the upper byte of the 16-bit interpolation, without leaving 16 bits: 257 n + 32 is
      // 256 n + (n + 32), and 256 n gives nothing to the lower 8 bits.
      std::uint16_t const n = static_cast<std::uint16_t>(first[i] * (64 - nWeight) + second[i] * nWeight);
      std::uint16_t const nSum = static_cast<std::uint16_t>(n + (static_cast<std::uint16_t>(n + 32) >> 8));
      pPalette[nPair * 8 + i] = static_cast<unsigned char>(nSum >> 6);
    }
  }
}

std::uint64_t InsertZero(std::uint64_t nBits, unsigned int nPlace) {
  std::uint64_t const nBelow = (std::uint64_t(1) << nPlace) - 1;
  return (nBits & nBelow) | (nBits & ~nBelow) << 1;
}

/// The weights, nWeightBits each, with the upper bits of the anchors put back.
template <unsigned int nMode>
std::uint64_t ReadWeights(QXBits const& bits, QXUastcPattern const& pattern) {
  constexpr QXUastcMode mode = QXLayout<nMode>::ms_Mode;
  constexpr unsigned int nBits = mode.m_nWeightBits;
  std::uint64_t nWeights = bits.From<QXLayout<nMode>::ms_nWeights>();
  if constexpr (mode.GetSubsets() == 1) {
    for (unsigned int nPlane = 0; nPlane < mode.m_nPlanes; ++nPlane) {
      nWeights = InsertZero(nWeights, nPlane * nBits + nBits - 1);
    }
  } else {
    for (unsigned int i = 0; i < mode.GetSubsets(); ++i) {
      nWeights = InsertZero(nWeights, pattern.m_Anchors[i] * nBits + nBits - 1);
    }
  }
  return nWeights;
}

/// The bytes of a colour that take the weights of the second plane.
constexpr unsigned char g_PlaneMasks[4][4] = {{255, 0, 0, 0}, {0, 255, 0, 0}, {0, 0, 255, 0}, {0, 0, 0, 255}};

std::uint32_t LoadColor(unsigned char const* pColor) {
  std::uint32_t nColor;
  std::memcpy(&nColor, pColor, 4);
  return nColor;
}

template <unsigned int nMode>
void PaintOnePlane(QXBits const& bits, QXUastcPattern const& pattern, unsigned char const* pPalette,
    unsigned char* pRgba, std::size_t nPitch) {
  constexpr QXUastcMode mode = QXLayout<nMode>::ms_Mode;
  constexpr unsigned int nBits = mode.m_nWeightBits;
  std::uint64_t nWeights = ReadWeights<nMode>(bits, pattern);
  for (unsigned int i = 0; i < 16; ++i, nWeights >>= nBits) {
    if constexpr (16 * nBits > 64) {
      // The rear half of the widest weights does not fit behind the front half in one word.
      if (i == 8) nWeights = bits.From<QXLayout<nMode>::ms_nWeights + 8 * nBits - 1>();
    }
    std::size_t nColor = nWeights & ((1u << nBits) - 1);
    if constexpr (mode.GetSubsets() > 1) nColor += std::size_t(pattern.m_SubsetOf[i]) << nBits;
    std::memcpy(pRgba + (i >> 2) * nPitch + (i & 3) * 4, pPalette + nColor * 4, 4);
  }
}

template <unsigned int nMode>
void PaintTwoPlanes(QXBits const& bits, QXUastcPattern const& pattern, unsigned char const* pPalette,
    unsigned char* pRgba, std::size_t nPitch) {
  constexpr QXUastcMode mode = QXLayout<nMode>::ms_Mode;
  constexpr unsigned int nBits = mode.m_nWeightBits;
  constexpr unsigned int nMask = (1u << nBits) - 1;
  unsigned int nSelector = 3;
  if constexpr (mode.m_nSelectorBits != 0) {
    nSelector = static_cast<unsigned int>(bits.From<QXLayout<nMode>::ms_nSelector>()) & 3;
  }
  std::uint32_t const nSecond = LoadColor(g_PlaneMasks[nSelector]);
  std::uint64_t nWeights = ReadWeights<nMode>(bits, pattern);
  for (unsigned int i = 0; i < 16; ++i, nWeights >>= 2 * nBits) {
    std::uint32_t const nColor = (LoadColor(pPalette + (nWeights & nMask) * 4) & ~nSecond) |
                                 (LoadColor(pPalette + (nWeights >> nBits & nMask) * 4) & nSecond);
    std::memcpy(pRgba + (i >> 2) * nPitch + (i & 3) * 4, &nColor, 4);
  }
}

void FillBlock(unsigned char const pColor[4], unsigned char* pRgba, std::size_t nPitch) {
  for (unsigned int i = 0; i < 16; ++i) std::memcpy(pRgba + (i >> 2) * nPitch + (i & 3) * 4, pColor, 4);
}

bool PaintError(unsigned char* pRgba, std::size_t nPitch) {
  static constexpr unsigned char magenta[4] = {255, 0, 255, 255};
  FillBlock(magenta, pRgba, nPitch);
  return false;
}

template <unsigned int nMode>
bool DecodeMode(QXBits const& bits, unsigned char* pRgba, std::size_t nPitch) {
  if constexpr (nMode == g_nUastcNoMode) {
    return PaintError(pRgba, nPitch);
  } else if constexpr (nMode == g_nUastcSolidMode) {
    std::uint64_t const nColor = bits.From<g_UastcModes[nMode].m_nCodeBits>();
    unsigned char color[4];
    for (unsigned int i = 0; i < 4; ++i) color[i] = static_cast<unsigned char>(nColor >> (8 * i));
    FillBlock(color, pRgba, nPitch);
    return true;
  } else {
    using Layout = QXLayout<nMode>;
    constexpr QXUastcMode mode = Layout::ms_Mode;
    auto const& patterns = GetPatterns<mode.m_ePatterns>();
    std::size_t const nPattern = bits.From<Layout::ms_nPattern>() & ((1u << mode.GetPatternBits()) - 1);
    if (nPattern >= patterns.size()) return PaintError(pRgba, nPitch);
    QXEndpoints endpoints[mode.GetSubsets()];
    unsigned char palette[mode.GetSubsets() * (4u << mode.m_nWeightBits)];
    ReadEndpoints<nMode>(bits, endpoints);
    for (unsigned int i = 0; i < mode.GetSubsets(); ++i) {
      FillPalette<mode.m_nWeightBits>(endpoints[i], palette + i * (4u << mode.m_nWeightBits));
    }
    if constexpr (mode.m_nPlanes == 2)
      PaintTwoPlanes<nMode>(bits, patterns[nPattern], palette, pRgba, nPitch);
    else
      PaintOnePlane<nMode>(bits, patterns[nPattern], palette, pRgba, nPitch);
    return true;
  }
}

using QXModeDecoder = bool (*)(QXBits const&, unsigned char*, std::size_t);

template <unsigned int... nModes>
constexpr std::array<QXModeDecoder, sizeof...(nModes)> MakeDecoders(std::integer_sequence<unsigned int, nModes...>) {
  return {&DecodeMode<nModes>...};
}
constexpr auto g_Decoders = MakeDecoders(std::make_integer_sequence<unsigned int, g_nUastcModes + 1>());

bool DecodeBlockTo(unsigned char const* pBlock, unsigned char* pRgba, std::size_t nPitch) {
  QXBits const bits = {Load64(pBlock), Load64(pBlock + 8)};
  return g_Decoders[g_ModeLookup[bits.m_nLow & 127]](bits, pRgba, nPitch);
}

}  // namespace

bool DecodeUastcBlock(unsigned char const pBlock[16], unsigned char pRgba[64]) {
  return DecodeBlockTo(pBlock, pRgba, 16);
}

bool DecodeUastcImage(unsigned char const* pBlocks, std::uint64_t nSize, unsigned int nWidth, unsigned int nHeight,
    unsigned char* pRgba) {
  std::uint64_t const nBlocksWide = (std::uint64_t(nWidth) + 3) / 4;
  std::uint64_t const nBlocksHigh = (std::uint64_t(nHeight) + 3) / 4;
  if (nWidth == 0 || nHeight == 0 || nSize / 16 < nBlocksWide * nBlocksHigh) return false;
  std::size_t const nPitch = std::size_t(nWidth) * 4;
  for (std::uint64_t nTop = 0; nTop < nHeight; nTop += 4) {
    std::size_t const nRows = static_cast<std::size_t>(std::min<std::uint64_t>(4, nHeight - nTop));
    unsigned char* const pRow = pRgba + nTop * nPitch;
    for (std::uint64_t nLeft = 0; nLeft < nWidth; nLeft += 4, pBlocks += 16) {
      std::size_t const nColumns = static_cast<std::size_t>(std::min<std::uint64_t>(4, nWidth - nLeft));
      unsigned char* const pTarget = pRow + nLeft * 4;
      if (nRows == 4 && nColumns == 4) {
        DecodeBlockTo(pBlocks, pTarget, nPitch);
        continue;
      }
      unsigned char block[64];
      DecodeBlockTo(pBlocks, block, 16);
      for (std::size_t i = 0; i < nRows; ++i) std::memcpy(pTarget + i * nPitch, block + i * 16, nColumns * 4);
    }
  }
  return true;
}

}  // namespace QXC::detail
