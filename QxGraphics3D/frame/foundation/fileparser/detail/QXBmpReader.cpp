#include <QxGraphics3D/frame/foundation/fileparser/detail/QXByteSource.h>
#include <QxGraphics3D/frame/foundation/fileparser/detail/QXImageBlock.h>
#include <QxGraphics3D/frame/foundation/fileparser/detail/QXImageCodecs.h>
#include <QxGraphics3D/frame/foundation/fileparser/detail/QXStbImage.h>

#include <cstring>

namespace QXC::detail {
namespace {

constexpr unsigned int FILE_HEADER_BYTES = 14;
constexpr unsigned int CORE_HEADER_BYTES = 12;

struct BmpHeader {
  unsigned int m_nPixels = 0;  // where they begin
  unsigned int m_nHeaderBytes = 0;
  QXUInt64 m_nWidth = 0;
  QXUInt64 m_nHeight = 0;
  bool m_bTopDown = false;
  unsigned int m_nBits = 0;
  unsigned int m_nCompression = 0;
  unsigned int m_nColours = 0;

  bool IsCore() const { return m_nHeaderBytes == CORE_HEADER_BYTES; }
  QXUInt64 GetRowBytes() const { return (m_nWidth * m_nBits + 31) / 32 * 4; }
};

void ReadSize(QXByteSource const& source, BmpHeader& header) {
  if (header.IsCore()) {
    header.m_nWidth = source.Little(18, 2);
    header.m_nHeight = source.Little(20, 2);
    header.m_nBits = source.Little(24, 2);
    return;
  }
  // Both are signed; a negative height means rows top down, a negative width nothing.
  unsigned int const nHeight = source.Little(22, 4);
  header.m_bTopDown = nHeight >> 31 != 0;
  header.m_nWidth = source.Little(18, 4);
  header.m_nHeight = header.m_bTopDown ? 0u - nHeight : nHeight;
  header.m_nBits = source.Little(28, 2);
  header.m_nCompression = source.Little(30, 4);
  header.m_nColours = source.Little(46, 4);
}

bool ReadHeader(QXByteSource const& source, QXImageLimits const& limits, BmpHeader& header) {
  if (!source.Has(0, "BM") || source.GetSize() < FILE_HEADER_BYTES + CORE_HEADER_BYTES) return false;
  header.m_nPixels = source.Little(10, 4);
  header.m_nHeaderBytes = source.Little(14, 4);
  ReadSize(source, header);
  if (!limits.Allow(header.m_nWidth, header.m_nHeight, 1)) return false;
  if (header.m_nPixels > source.GetSize() || header.m_nHeaderBytes > source.GetSize()) return false;
  if (header.m_nPixels < FILE_HEADER_BYTES + header.m_nHeaderBytes) return false;
  // Without runs every pixel has its bits in the file.
  return header.m_nBits > 0 && header.GetRowBytes() <= (source.GetSize() - header.m_nPixels) / header.m_nHeight;
}

// stb_image is kept away from palettes: it takes colours that a palette does not have from memory that it never wrote.
QXImageData* ReadIndexed(QXByteSource const& source, BmpHeader const& header, QXImageLimits const& limits) {
  if (header.m_nBits != 1 && header.m_nBits != 2 && header.m_nBits != 4 && header.m_nBits != 8) return nullptr;
  if (header.m_nCompression != 0) return nullptr;
  QXUInt64 const nStart = QXUInt64{FILE_HEADER_BYTES} + header.m_nHeaderBytes;
  unsigned int const nEntryBytes = header.IsCore() ? 3 : 4;
  unsigned int const nNamed = header.m_nColours == 0 ? 1u << header.m_nBits : header.m_nColours;
  unsigned char arrPalette[256][3] = {};
  for (unsigned int i = 0; i < 256 && i < nNamed && nStart + (i + 1) * nEntryBytes <= header.m_nPixels; ++i) {
    for (unsigned int c = 0; c < 3; ++c) {
      arrPalette[i][c] = static_cast<unsigned char>(source.Little(nStart + i * nEntryBytes + c, 1));
    }
  }
  QXImageBlock block;
  if (!block.Make(header.m_nWidth, header.m_nHeight, 3, limits)) return nullptr;
  unsigned int const nMask = (1u << header.m_nBits) - 1;
  for (QXUInt64 y = 0; y < header.m_nHeight; ++y) {
    unsigned char const* pSource = source.GetNext() + header.m_nPixels + y * header.GetRowBytes();
    unsigned char* pRow = block.GetRow(header.m_bTopDown ? y : header.m_nHeight - 1 - y);
    for (QXUInt64 x = 0; x < header.m_nWidth; ++x, pRow += 3) {
      QXUInt64 const nBit = x * header.m_nBits;
      std::memcpy(pRow, arrPalette[pSource[nBit / 8] >> (8 - header.m_nBits - nBit % 8) & nMask], 3);
    }
  }
  return block.HandOver();
}

}  // namespace

QXImageData* ReadBmp(unsigned char const* pBytes, QXUInt64 nSize, QXImageLimits const& limits) {
  QXByteSource const source(pBytes, nSize);
  BmpHeader header;
  if (!ReadHeader(source, limits, header)) return nullptr;
  if (header.m_nBits <= 8) return ReadIndexed(source, header, limits);
  return DecodeByStb(pBytes, nSize, header.m_nWidth, header.m_nHeight, limits);
}

}  // namespace QXC::detail
