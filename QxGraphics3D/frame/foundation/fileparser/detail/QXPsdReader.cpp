#include <QxGraphics3D/frame/foundation/fileparser/detail/QXByteSource.h>
#include <QxGraphics3D/frame/foundation/fileparser/detail/QXImageBlock.h>
#include <QxGraphics3D/frame/foundation/fileparser/detail/QXImageCodecs.h>

#include <algorithm>
#include <cstring>
#include <vector>

namespace QXC::detail {
namespace {

constexpr QXUInt64 SECTIONS = 26;
constexpr unsigned int MODE_GREY = 1;
constexpr unsigned int MODE_RGB = 3;
constexpr unsigned int PACKED = 1;
// Two bytes of a run become 128.
constexpr QXUInt64 PACK_RATIO = 64;

// stb_image reads PSD too, but takes packed 16-bit channels for 8-bit ones and lets colours run over where it takes the
// white out of them.
class PsdReader {
public:
  PsdReader(unsigned char const* pBytes, QXUInt64 nSize, QXImageLimits const& limits)
      : m_Source(pBytes, nSize), m_Limits(limits) {}

  QXImageData* Read() {
    if (!ReadHeader() || !SkipSections() || !CanFill() || !MakeBlock()) return nullptr;
    for (unsigned int i = 0; i < m_nChannels; ++i) {
      if (!ReadChannel(i)) return nullptr;
    }
    if (m_bAlpha) TakeWhiteOut();
    return m_Block.HandOver();
  }

private:
  bool ReadHeader() {
    if (!m_Source.Has(0, "8BPS") || m_Source.GetSize() < SECTIONS || m_Source.Big(4, 2) != 1) return false;
    m_nStored = m_Source.Big(12, 2);
    m_nHeight = m_Source.Big(14, 4);
    m_nWidth = m_Source.Big(18, 4);
    unsigned int const nBits = m_Source.Big(22, 2);
    unsigned int const nMode = m_Source.Big(24, 2);
    if ((nBits != 8 && nBits != 16) || (nMode != MODE_GREY && nMode != MODE_RGB)) return false;
    m_nColours = nMode == MODE_GREY ? 1 : 3;
    if (m_nStored < m_nColours) return false;
    m_nSampleBytes = nBits / 8;
    m_bAlpha = m_nStored > m_nColours;
    m_nChannels = m_nColours + (m_bAlpha ? 1 : 0);
    return true;
  }

  // Colour data, resources and layers, each with its length before it; then the kind of the flattened picture.
  bool SkipSections() {
    m_Source.SeekTo(SECTIONS);
    for (int i = 0; i < 3; ++i) {
      unsigned int const nLength = m_Source.Big(m_Source.GetPosition(), 4);
      if (!m_Source.Skip(4) || !m_Source.Skip(nLength)) return false;
    }
    unsigned int const nKind = m_Source.Big(m_Source.GetPosition(), 2);
    m_bPacked = nKind == PACKED;
    return m_Source.Skip(2) && nKind <= PACKED;
  }

  // No more is made than the bytes could fill. Packed rows of all channels have their lengths before the first one.
  bool CanFill() {
    if (!m_Limits.Allow(m_nWidth, m_nHeight, m_bAlpha ? 4 : m_nColours)) return false;
    QXUInt64 const nBytes = m_nWidth * m_nHeight * m_nSampleBytes * m_nChannels;
    if (!m_bPacked) return nBytes <= m_Source.GetLeft();
    m_nLengths = m_Source.GetPosition();
    return m_Source.Skip(m_nHeight * m_nStored * 2) && nBytes / PACK_RATIO <= m_Source.GetLeft();
  }

  bool MakeBlock() {
    m_arrRow.resize(static_cast<std::size_t>(m_nWidth * m_nSampleBytes));
    return m_Block.Make(m_nWidth, m_nHeight, m_bAlpha ? 4 : m_nColours, m_Limits);
  }

  bool ReadChannel(unsigned int nChannel) {
    for (unsigned int y = 0; y < m_nHeight; ++y) {
      bool const bRead = m_bPacked ? Unpack(m_Source.Big(m_nLengths + (m_nHeight * nChannel + y) * 2, 2))
                                   : m_Source.Read(m_arrRow.data(), m_arrRow.size()) == m_arrRow.size();
      if (!bRead) return false;
      StoreRow(nChannel, y);
    }
    return true;
  }

  // Runs never go on into the next row, and a row ends where its length says.
  bool Unpack(unsigned int nLength) {
    if (nLength > m_Source.GetLeft()) return false;
    QXByteSource packed(m_Source.GetNext(), nLength);
    m_Source.Skip(nLength);
    std::size_t nDone = 0;
    while (nDone < m_arrRow.size()) {
      if (packed.GetLeft() < 2) return false;
      unsigned int const nCode = packed.Big(packed.GetPosition(), 1);
      packed.Skip(1);
      if (nCode == 128) continue;
      std::size_t const nCount = nCode < 128 ? nCode + 1 : 257 - nCode;
      if (nCount > m_arrRow.size() - nDone) return false;
      if (nCode > 128) {
        std::memset(m_arrRow.data() + nDone, *packed.GetNext(), nCount);
        packed.Skip(1);
      } else if (packed.Read(m_arrRow.data() + nDone, nCount) != nCount) {
        return false;
      }
      nDone += nCount;
    }
    return true;
  }

  // Into its place of each pixel: red last but for alpha. Grey with alpha stands three times.
  void StoreRow(unsigned int nChannel, unsigned int y) {
    bool const bAlpha = nChannel == m_nColours;
    bool const bWideGrey = m_bAlpha && m_nColours == 1 && !bAlpha;
    unsigned int const nBytes = m_Block.GetBytesPerPixel();
    unsigned char* pPixel = m_Block.GetRow(y) + (bAlpha ? 3 : m_nColours == 3 ? 2 - nChannel : 0);
    for (std::size_t x = 0; x < m_nWidth; ++x, pPixel += nBytes) {
      unsigned char const* pSample = m_arrRow.data() + x * m_nSampleBytes;
      *pPixel = m_nSampleBytes == 1 ? *pSample : NarrowChannel(pSample[0] * 256u + pSample[1]);
      if (bWideGrey) pPixel[1] = pPixel[2] = *pPixel;
    }
  }

  // The flattened picture of a PSD stands on white; what shows through where alpha is thin is taken out again.
  void TakeWhiteOut() {
    unsigned char* pPixel = m_Block.GetRow(0);
    for (std::size_t i = 0; i < m_Block.GetPixelCount(); ++i, pPixel += 4) {
      int const nAlpha = pPixel[3];
      if (nAlpha == 0 || nAlpha == 255) continue;
      for (int c = 0; c < 3; ++c) {
        int const nColour = std::max(0, pPixel[c] - (255 - nAlpha));
        pPixel[c] = static_cast<unsigned char>(std::min(255, (nColour * 255 + nAlpha / 2) / nAlpha));
      }
    }
  }

  QXByteSource m_Source;
  QXImageLimits const& m_Limits;
  QXImageBlock m_Block;
  std::vector<unsigned char> m_arrRow;
  QXUInt64 m_nWidth = 0;
  QXUInt64 m_nHeight = 0;
  QXUInt64 m_nLengths = 0;
  unsigned int m_nStored = 0;
  unsigned int m_nColours = 0;
  unsigned int m_nChannels = 0;
  unsigned int m_nSampleBytes = 1;
  bool m_bAlpha = false;
  bool m_bPacked = false;
};

}  // namespace

QXImageData* ReadPsd(unsigned char const* pBytes, QXUInt64 nSize, QXImageLimits const& limits) {
  return PsdReader(pBytes, nSize, limits).Read();
}

}  // namespace QXC::detail
