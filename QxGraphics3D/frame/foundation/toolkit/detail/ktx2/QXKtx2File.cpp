#include <QxGraphics3D/frame/foundation/toolkit/detail/ktx2/QXKtx2File.h>

#include <algorithm>
#include <bit>
#include <cstring>

namespace QXC::detail {

namespace {

constexpr unsigned char g_arrIdentifier[12] = {0xAB, 'K', 'T', 'X', ' ', '2', '0', 0xBB, '\r', '\n', 0x1A, '\n'};

/// Where the header has what. Behind it stands the index of the levels.
constexpr std::uint64_t g_nFormatAt = 12;
constexpr std::uint64_t g_nWidthAt = 20;
constexpr std::uint64_t g_nHeightAt = 24;
constexpr std::uint64_t g_nDepthAt = 28;
constexpr std::uint64_t g_nLayersAt = 32;
constexpr std::uint64_t g_nFacesAt = 36;
constexpr std::uint64_t g_nLevelsAt = 40;
constexpr std::uint64_t g_nSchemeAt = 44;
constexpr std::uint64_t g_nDescriptorAt = 48;
constexpr std::uint64_t g_nKeysAt = 56;
constexpr std::uint64_t g_nGlobalDataAt = 64;
constexpr std::uint64_t g_nHeaderSize = 80;
constexpr std::uint64_t g_nLevelEntrySize = 24;

/// A basic descriptor block without samples, and a sample.
constexpr std::uint64_t g_nBlockSize = 24;
constexpr std::uint64_t g_nSampleSize = 16;
/// What describes one image to BasisLZ.
constexpr std::uint64_t g_nImageDescSize = 20;

/// Most bytes that one byte can unfold to: zlib's longest copy of 258 bytes takes two bits; a Zstandard block of four
/// bytes repeats one 128 KiB times.
constexpr std::uint64_t g_nZlibRatio = 1032;
constexpr std::uint64_t g_nZstandardRatio = 32768;

constexpr unsigned char g_nModelBytes = 1;
constexpr unsigned char g_nModelBc1 = 128;
constexpr unsigned char g_nModelBc3 = 130;
constexpr unsigned char g_nModelBc7 = 134;
constexpr unsigned char g_nModelEtc1s = 163;
constexpr unsigned char g_nModelUastc = 166;

std::uint32_t Load32(unsigned char const* pBytes) {
  std::uint32_t nValue = 0;
  for (int i = 3; i >= 0; --i) nValue = nValue << 8 | pBytes[i];
  return nValue;
}
std::uint64_t Load64(unsigned char const* pBytes) {
  return Load32(pBytes) | std::uint64_t{Load32(pBytes + 4)} << 32;
}

/// Each with its numbers for linear and for sRGB bytes: the transfer function changes nothing here.
struct QXFormatRow {
  std::uint32_t m_nLinear;
  std::uint32_t m_nSrgb;
  QXKtx2Encoding m_eEncoding;
};
constexpr QXFormatRow g_arrFormats[] = {
    {9, 15, QXKtx2Encoding::R8},
    {16, 22, QXKtx2Encoding::R8G8},
    {23, 29, QXKtx2Encoding::R8G8B8},
    {30, 36, QXKtx2Encoding::B8G8R8},
    {37, 43, QXKtx2Encoding::R8G8B8A8},
    {44, 50, QXKtx2Encoding::B8G8R8A8},
    {131, 132, QXKtx2Encoding::Bc1Rgb},
    {133, 134, QXKtx2Encoding::Bc1Rgba},
    {137, 138, QXKtx2Encoding::Bc3},
    {145, 146, QXKtx2Encoding::Bc7},
};

/// What one encoding needs a block for, or one pixel, in bytes; and the colour model of its descriptor.
struct QXEncodingRow {
  unsigned int m_nEdge;
  unsigned int m_nBytes;
  unsigned char m_nModel;
};
QXEncodingRow RowOf(QXKtx2Encoding eEncoding) {
  switch (eEncoding) {
  case QXKtx2Encoding::R8: return {1, 1, g_nModelBytes};
  case QXKtx2Encoding::R8G8: return {1, 2, g_nModelBytes};
  case QXKtx2Encoding::R8G8B8:
  case QXKtx2Encoding::B8G8R8: return {1, 3, g_nModelBytes};
  case QXKtx2Encoding::R8G8B8A8:
  case QXKtx2Encoding::B8G8R8A8: return {1, 4, g_nModelBytes};
  case QXKtx2Encoding::Bc1Rgb:
  case QXKtx2Encoding::Bc1Rgba: return {4, 8, g_nModelBc1};
  case QXKtx2Encoding::Bc3: return {4, 16, g_nModelBc3};
  case QXKtx2Encoding::Bc7: return {4, 16, g_nModelBc7};
  case QXKtx2Encoding::Uastc: return {4, 16, g_nModelUastc};
  default: return {4, 0, g_nModelEtc1s};
  }
}

QXKtx2Colors ColorsOfUastc(unsigned int nChannel) {
  switch (nChannel) {
  case 4: return QXKtx2Colors::Red;
  case 5: return QXKtx2Colors::RedThenGreen;
  case 6: return QXKtx2Colors::RedGreenBeside;
  default: return QXKtx2Colors::AsDecoded;
  }
}

/// Of ETC1S every sample is a slice of its own.
bool ColorsOfEtc1s(unsigned char const* pSamples, std::uint64_t nSamples, QXKtx2Colors& eColors) {
  constexpr unsigned int nRgb = 0;
  constexpr unsigned int nRrr = 3;
  constexpr unsigned int nGgg = 4;
  constexpr unsigned int nAaa = 15;
  unsigned int const nFirst = pSamples[3] & 15u;
  if (nSamples == 1) {
    eColors = nFirst == nRrr ? QXKtx2Colors::Red : QXKtx2Colors::Opaque;
    return nFirst == nRrr || nFirst == nRgb;
  }
  unsigned int const nSecond = pSamples[g_nSampleSize + 3] & 15u;
  eColors = nFirst == nRrr ? QXKtx2Colors::RedThenGreen : QXKtx2Colors::AsDecoded;
  return nSamples == 2 && ((nFirst == nRgb && nSecond == nAaa) || (nFirst == nRrr && nSecond == nGgg));
}

}  // namespace

bool QXKtx2File::Open(unsigned char const* pBytes, std::uint64_t nSize, QXKtx2Limits const& limits) {
  m_File = {pBytes, nSize};
  return ReadHeader(limits) && ReadDescriptor() && ReadLevels() && ReadGlobalData();
}

bool QXKtx2File::TakeRange(std::uint64_t nOffset, std::uint64_t nLength, QXKtx2Range& range) const {
  if (nOffset > m_File.m_nSize || nLength > m_File.m_nSize - nOffset) return false;
  range = {m_File.m_pBytes + nOffset, nLength};
  return true;
}

bool QXKtx2File::ReadHeader(QXKtx2Limits const& limits) {
  unsigned char const* const pHeader = m_File.m_pBytes;
  if (m_File.m_nSize < g_nHeaderSize || std::memcmp(pHeader, g_arrIdentifier, sizeof g_arrIdentifier) != 0)
    return false;

  m_nWidth = Load32(pHeader + g_nWidthAt);
  m_nHeight = Load32(pHeader + g_nHeightAt);
  if (m_nWidth == 0 || m_nHeight == 0 || Load32(pHeader + g_nDepthAt) != 0) return false;
  if (std::max(m_nWidth, m_nHeight) > limits.m_nMaxEdge) return false;

  std::uint32_t const nFaces = Load32(pHeader + g_nFacesAt);
  if (nFaces != 1 && (nFaces != 6 || m_nWidth != m_nHeight)) return false;
  // No layers and no levels are said of a picture that is no array and of a file that asks for levels to be made.
  m_nImages = std::uint64_t{nFaces} * std::max(Load32(pHeader + g_nLayersAt), 1u);
  std::uint32_t const nLevels = std::max(Load32(pHeader + g_nLevelsAt), 1u);
  if (nLevels > static_cast<unsigned int>(std::bit_width(std::max(m_nWidth, m_nHeight)))) return false;
  m_arrLevels.assign(nLevels, QXKtx2Range());

  std::uint32_t const nScheme = Load32(pHeader + g_nSchemeAt);
  m_eScheme = static_cast<QXKtx2Scheme>(nScheme);
  QXKtx2Range keys;
  return nScheme <= 3 && TakeRange(Load32(pHeader + g_nKeysAt), Load32(pHeader + g_nKeysAt + 4), keys);
}

bool QXKtx2File::ReadDescriptor() {
  unsigned char const* const pHeader = m_File.m_pBytes;
  QXKtx2Range descriptor;
  if (!TakeRange(Load32(pHeader + g_nDescriptorAt), Load32(pHeader + g_nDescriptorAt + 4), descriptor)) return false;
  if (descriptor.m_nSize < 4 + g_nBlockSize || Load32(descriptor.m_pBytes) != descriptor.m_nSize) return false;

  // The first block is the basic one: vendor and kind are 0. The upper half of its second word is its length.
  unsigned char const* const pBlock = descriptor.m_pBytes + 4;
  std::uint64_t const nBlockSize = Load32(pBlock + 4) >> 16;
  if (Load32(pBlock) != 0 || nBlockSize < g_nBlockSize || nBlockSize > descriptor.m_nSize - 4) return false;
  std::uint64_t const nSamples = (nBlockSize - g_nBlockSize) / g_nSampleSize;
  return nSamples != 0 && CheckDescriptor(pBlock, nSamples);
}

bool QXKtx2File::CheckDescriptor(unsigned char const* pBlock, std::uint64_t nSamples) {
  unsigned char const nModel = pBlock[8];
  unsigned char const* const pSamples = pBlock + g_nBlockSize;
  std::uint32_t const nFormat = Load32(m_File.m_pBytes + g_nFormatAt);
  m_eColors = QXKtx2Colors::AsDecoded;
  if (nFormat == 0) {
    // The two formats that no graphics interface knows have no number; the descriptor alone names them.
    if (nModel == g_nModelUastc) {
      m_eEncoding = QXKtx2Encoding::Uastc;
      m_eColors = ColorsOfUastc(pSamples[3] & 15u);
      return m_eScheme != QXKtx2Scheme::BasisLz;
    }
    m_eEncoding = QXKtx2Encoding::Etc1s;
    return nModel == g_nModelEtc1s && m_eScheme == QXKtx2Scheme::BasisLz &&
           ColorsOfEtc1s(pSamples, nSamples, m_eColors);
  }
  auto const* const pRow = std::find_if(std::begin(g_arrFormats), std::end(g_arrFormats),
      [=](QXFormatRow const& row) { return row.m_nLinear == nFormat || row.m_nSrgb == nFormat; });
  if (pRow == std::end(g_arrFormats)) return false;
  m_eEncoding = pRow->m_eEncoding;
  return nModel == RowOf(m_eEncoding).m_nModel && m_eScheme != QXKtx2Scheme::BasisLz;
}

bool QXKtx2File::ReadLevels() {
  QXKtx2Range index;
  if (!TakeRange(g_nHeaderSize, m_arrLevels.size() * g_nLevelEntrySize, index)) return false;
  for (unsigned int nLevel = 0; nLevel < GetLevelCount(); ++nLevel) {
    unsigned char const* const pEntry = index.m_pBytes + nLevel * g_nLevelEntrySize;
    std::uint64_t const nOffset = Load64(pEntry);
    std::uint64_t const nLength = Load64(pEntry + 8);
    // Pixels do not begin within what describes them.
    if (nOffset < g_nHeaderSize + index.m_nSize) return false;
    if (!TakeRange(nOffset, nLength, m_arrLevels[nLevel])) return false;
    if (!CheckLength(nLevel, nLength, Load64(pEntry + 16))) return false;
  }
  return true;
}

bool QXKtx2File::CheckLength(unsigned int nLevel, std::uint64_t nLength, std::uint64_t nUnpacked) const {
  if (nLength == 0) return false;
  if (m_eScheme == QXKtx2Scheme::BasisLz) return nUnpacked == 0;
  // By division, since the product of what a header can say passes 64 bits.
  std::uint64_t const nImage = GetStoredSize(nLevel);
  if (nUnpacked % nImage != 0 || nUnpacked / nImage != m_nImages) return false;
  switch (m_eScheme) {
  case QXKtx2Scheme::Zstandard: return nUnpacked / g_nZstandardRatio <= nLength;
  case QXKtx2Scheme::Zlib: return nUnpacked / g_nZlibRatio <= nLength;
  default: return nUnpacked == nLength;
  }
}

bool QXKtx2File::ReadGlobalData() {
  unsigned char const* const pHeader = m_File.m_pBytes;
  if (!TakeRange(Load64(pHeader + g_nGlobalDataAt), Load64(pHeader + g_nGlobalDataAt + 8), m_GlobalData)) return false;
  if (m_eScheme != QXKtx2Scheme::BasisLz) return m_GlobalData.m_nSize == 0;
  return m_nImages * m_arrLevels.size() <= m_GlobalData.m_nSize / g_nImageDescSize;
}

std::uint64_t QXKtx2File::GetStoredSize(unsigned int nLevel) const {
  QXEncodingRow const row = RowOf(m_eEncoding);
  std::uint64_t const nColumns = (std::uint64_t{GetWidth(nLevel)} + row.m_nEdge - 1) / row.m_nEdge;
  std::uint64_t const nRows = (std::uint64_t{GetHeight(nLevel)} + row.m_nEdge - 1) / row.m_nEdge;
  return nColumns * nRows * row.m_nBytes;
}

std::uint64_t QXKtx2File::GetDecodedSize(unsigned int nLevels) const {
  std::uint64_t nSum = 0;
  for (unsigned int nLevel = 0; nLevel < nLevels; ++nLevel) {
    bool const bStored = m_eEncoding == QXKtx2Encoding::Bc7;
    nSum += bStored ? GetStoredSize(nLevel) : std::uint64_t{GetWidth(nLevel)} * GetHeight(nLevel) * 4;
  }
  return nSum;
}

}  // namespace QXC::detail
