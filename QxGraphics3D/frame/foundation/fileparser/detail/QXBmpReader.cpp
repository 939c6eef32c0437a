#include <QxGraphics3D/frame/foundation/fileparser/detail/QXByteSource.h>
#include <QxGraphics3D/frame/foundation/fileparser/detail/QXImageBlock.h>
#include <QxGraphics3D/frame/foundation/fileparser/detail/QXImageCodecs.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

namespace QXC::detail {
namespace {

constexpr unsigned int FILE_HEADER_BYTES = 14;
constexpr unsigned int CORE_HEADER_BYTES = 12;
constexpr unsigned int OS2_HEADER_BYTES = 64;
constexpr unsigned int PLAIN = 0, RUNS_OF_8 = 1, RUNS_OF_4 = 2, FIELDS = 3, FIELDS_WITH_ALPHA = 6;
// Two bytes of a run become 255 pixels. Twice as many are let through, because pixels may be left out between runs.
constexpr QXUInt64 PIXELS_PER_BYTE = 255;

struct BmpHeader {
  unsigned int m_nPixels = 0;  // where they begin
  unsigned int m_nHeaderBytes = 0;
  QXUInt64 m_nWidth = 0;
  QXUInt64 m_nHeight = 0;
  bool m_bTopDown = false;
  unsigned int m_nBits = 0;
  unsigned int m_nCompression = PLAIN;
  unsigned int m_nColours = 0;
  std::array<unsigned int, 4> m_arrMasks{};  // blue, green, red, alpha

  bool IsCore() const { return m_nHeaderBytes == CORE_HEADER_BYTES; }
  bool HasRuns() const { return m_nCompression == RUNS_OF_8 || m_nCompression == RUNS_OF_4; }
  QXUInt64 GetRowBytes() const { return (m_nWidth * m_nBits + 31) / 32 * 4; }
  QXUInt64 GetStoredRow(QXUInt64 nRow) const { return m_bTopDown ? nRow : m_nHeight - 1 - nRow; }
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
  // Headers of OS/2 may end after any field; the palette follows.
  auto const Field = [&](unsigned int nPlace) {
    return nPlace + 4 <= FILE_HEADER_BYTES + header.m_nHeaderBytes ? source.Little(nPlace, 4) : 0;
  };
  header.m_nCompression = Field(30);
  header.m_nColours = Field(46);
}

// Fields of bits stand in the header, or right after it where it is the oldest one that knows them.
void ReadMasks(QXByteSource const& source, BmpHeader& header) {
  constexpr unsigned int RED = 54, HEADER_WITH_ALPHA = 56;
  if (header.m_nCompression == PLAIN) {
    if (header.m_nBits == 16) header.m_arrMasks = {0x1F, 0x3E0, 0x7C00, 0};
    if (header.m_nBits == 32) header.m_arrMasks = {0xFF, 0xFF00, 0xFF0000, 0xFF000000};
    return;
  }
  // Newer headers have them beside palettes too, where they say nothing.
  if (header.m_nBits != 16 && header.m_nBits != 32) return;
  bool const bAlpha = header.m_nCompression == FIELDS_WITH_ALPHA || header.m_nHeaderBytes >= HEADER_WITH_ALPHA;
  header.m_arrMasks = {source.Little(RED + 8, 4), source.Little(RED + 4, 4), source.Little(RED, 4),
      bAlpha ? source.Little(RED + 12, 4) : 0};
}

bool IsKnown(BmpHeader const& header) {
  switch (header.m_nBits) {
  case 1:
  case 2: return header.m_nCompression == PLAIN;
  case 4: return header.m_nCompression == PLAIN || header.m_nCompression == RUNS_OF_4;
  case 8: return header.m_nCompression == PLAIN || header.m_nCompression == RUNS_OF_8;
  case 24: return header.m_nCompression == PLAIN;
  case 16:
  case 32:
    // The same number means another coding in the header of OS/2.
    return header.m_nCompression == PLAIN ||
           ((header.m_nCompression == FIELDS || header.m_nCompression == FIELDS_WITH_ALPHA) &&
               header.m_nHeaderBytes != OS2_HEADER_BYTES);
  default: return false;
  }
}

bool ReadHeader(QXByteSource const& source, QXImageLimits const& limits, BmpHeader& header) {
  if (!source.Has(0, "BM") || source.GetSize() < FILE_HEADER_BYTES + CORE_HEADER_BYTES) return false;
  header.m_nPixels = source.Little(10, 4);
  header.m_nHeaderBytes = source.Little(14, 4);
  ReadSize(source, header);
  if (!limits.Allow(header.m_nWidth, header.m_nHeight, 1) || !IsKnown(header)) return false;
  if (header.m_nPixels > source.GetSize() || header.m_nHeaderBytes > source.GetSize()) return false;
  if (header.m_nPixels < FILE_HEADER_BYTES + header.m_nHeaderBytes) return false;
  ReadMasks(source, header);
  QXUInt64 const nBytes = source.GetSize() - header.m_nPixels;
  if (header.HasRuns()) return header.m_nWidth * header.m_nHeight / PIXELS_PER_BYTE <= nBytes;
  // Without runs every pixel has its bits in the file.
  return header.GetRowBytes() <= nBytes / header.m_nHeight;
}

// The colours of a palette in B,G,R; those that the file does not have are black.
struct Palette {
  unsigned char m_arrColours[256][3] = {};

  Palette(QXByteSource const& source, BmpHeader const& header) {
    QXUInt64 const nStart = QXUInt64{FILE_HEADER_BYTES} + header.m_nHeaderBytes;
    unsigned int const nEntryBytes = header.IsCore() ? 3 : 4;
    unsigned int const nNamed = header.m_nColours == 0 ? 1u << header.m_nBits : header.m_nColours;
    for (unsigned int i = 0; i < 256 && i < nNamed && nStart + (i + 1) * nEntryBytes <= header.m_nPixels; ++i) {
      for (unsigned int c = 0; c < 3; ++c) {
        m_arrColours[i][c] = static_cast<unsigned char>(source.Little(nStart + i * nEntryBytes + c, 1));
      }
    }
  }
};

void ReadIndexed(QXByteSource const& source, BmpHeader const& header, QXImageBlock const& block) {
  Palette const palette(source, header);
  unsigned int const nMask = (1u << header.m_nBits) - 1;
  for (QXUInt64 y = 0; y < header.m_nHeight; ++y) {
    unsigned char const* pSource = source.GetNext() + header.m_nPixels + y * header.GetRowBytes();
    unsigned char* pRow = block.GetRow(header.GetStoredRow(y));
    for (QXUInt64 x = 0; x < header.m_nWidth; ++x, pRow += 3) {
      QXUInt64 const nBit = x * header.m_nBits;
      std::memcpy(pRow, palette.m_arrColours[pSource[nBit / 8] >> (8 - header.m_nBits - nBit % 8) & nMask], 3);
    }
  }
}

// Pixels packed by runs. Those that the runs leave out have the first colour.
class RunReader {
public:
  RunReader(QXByteSource const& source, BmpHeader const& header, QXImageBlock const& block)
      : m_Source(source), m_Header(header), m_Palette(source, header), m_Block(block) {
    m_Source.SeekTo(header.m_nPixels);
    for (std::size_t i = 0; i < block.GetPixelCount(); ++i)
      std::memcpy(block.GetRow(0) + i * 3, m_Palette.m_arrColours, 3);
  }

  // False without the mark of the end, and for runs above the last row.
  bool Read() {
    for (;;) {
      unsigned char arrCode[2];
      if (m_Source.Read(arrCode, 2) != 2) return false;
      if (arrCode[0] > 0) {
        if (!PutRun(arrCode[0], arrCode[1])) return false;
      } else if (arrCode[1] == END) {
        return true;
      } else if (!(arrCode[1] > MOVE ? PutLiterals(arrCode[1]) : Move(arrCode[1]))) {
        return false;
      }
    }
  }

private:
  enum Escape : unsigned char { END_OF_ROW = 0, END = 1, MOVE = 2 };

  bool IsInside() const { return m_nY < m_Header.m_nHeight; }
  // Some writers fill the rows of the runs up to whole words, as those without runs are.
  void Put(unsigned int nIndex) {
    if (m_nX >= m_Header.m_nWidth) return;
    std::memcpy(m_Block.GetRow(m_Header.GetStoredRow(m_nY)) + m_nX * 3, m_Palette.m_arrColours[nIndex], 3);
    ++m_nX;
  }
  // The first of two indexes of four bits stands in the upper ones.
  unsigned int IndexOf(unsigned int nByte, unsigned int nPlace) const {
    if (m_Header.m_nBits == 8) return nByte;
    return nPlace % 2 == 0 ? nByte >> 4 : nByte & 15;
  }

  bool PutRun(unsigned int nCount, unsigned int nByte) {
    if (!IsInside()) return false;
    for (unsigned int i = 0; i < nCount; ++i) Put(IndexOf(nByte, i));
    return true;
  }

  // They fill pairs of bytes.
  bool PutLiterals(unsigned int nCount) {
    unsigned int const nBytes = (nCount * m_Header.m_nBits + 15) / 16 * 2;
    if (!IsInside() || nBytes > m_Source.GetLeft()) return false;
    unsigned char const* pBytes = m_Source.GetNext();
    for (unsigned int i = 0; i < nCount; ++i) Put(IndexOf(pBytes[i * m_Header.m_nBits / 8], i));
    return m_Source.Skip(nBytes);
  }

  bool Move(unsigned char nEscape) {
    if (nEscape == END_OF_ROW) {
      m_nX = 0;
      return ++m_nY <= m_Header.m_nHeight;
    }
    unsigned char arrStep[2];
    if (m_Source.Read(arrStep, 2) != 2) return false;
    m_nX += arrStep[0];
    m_nY += arrStep[1];
    return m_nY <= m_Header.m_nHeight;
  }

  QXByteSource m_Source;
  BmpHeader const& m_Header;
  Palette m_Palette;
  QXImageBlock const& m_Block;
  QXUInt64 m_nX = 0;
  QXUInt64 m_nY = 0;
};

// A channel within the bits of a pixel.
class Field {
public:
  // The bits of a mask stand together.
  bool Init(unsigned int nMask) {
    m_nShift = nMask == 0 ? 0 : static_cast<unsigned int>(std::countr_zero(nMask));
    m_nMax = nMask >> m_nShift;
    if ((m_nMax & (m_nMax + 1)) != 0) return false;
    for (unsigned int i = 0; i < 256 && m_nMax > 0 && m_nMax < 256; ++i) {
      m_arrBytes[i] = static_cast<unsigned char>((std::min(i, m_nMax) * 255 + m_nMax / 2) / m_nMax);
    }
    return true;
  }
  unsigned char Get(unsigned int nPixel) const {
    unsigned int const nValue = nPixel >> m_nShift & m_nMax;
    if (m_nMax < 256) return m_arrBytes[nValue];
    return static_cast<unsigned char>((QXUInt64{nValue} * 255 + m_nMax / 2) / m_nMax);
  }

private:
  unsigned int m_nShift = 0;
  unsigned int m_nMax = 0;
  unsigned char m_arrBytes[256] = {};
};

bool ReadFields(QXByteSource const& source, BmpHeader const& header, QXImageBlock const& block) {
  std::array<Field, 4> arrFields;
  for (std::size_t c = 0; c < 4; ++c) {
    if (!arrFields[c].Init(header.m_arrMasks[c])) return false;
  }
  unsigned int const nPixelBytes = header.m_nBits / 8;
  unsigned int const nChannels = block.GetBytesPerPixel();
  for (QXUInt64 y = 0; y < header.m_nHeight; ++y) {
    unsigned char const* pSource = source.GetNext() + header.m_nPixels + y * header.GetRowBytes();
    unsigned char* pRow = block.GetRow(header.GetStoredRow(y));
    for (QXUInt64 x = 0; x < header.m_nWidth; ++x, pSource += nPixelBytes, pRow += nChannels) {
      unsigned int nPixel = pSource[0] | unsigned{pSource[1]} << 8;
      if (nPixelBytes == 4) nPixel |= unsigned{pSource[2]} << 16 | unsigned{pSource[3]} << 24;
      for (unsigned int c = 0; c < nChannels; ++c) pRow[c] = arrFields[c].Get(nPixel);
    }
  }
  return true;
}

// Many writers leave the fourth byte 0: a picture of which nothing is to be seen is not meant.
void MakeVisible(QXImageBlock const& block) {
  unsigned char* const pPixels = block.GetRow(0);
  std::size_t const nBytes = block.GetPixelCount() * 4;
  for (std::size_t i = 3; i < nBytes; i += 4) {
    if (pPixels[i] != 0) return;
  }
  for (std::size_t i = 3; i < nBytes; i += 4) pPixels[i] = 255;
}

void CopyRows(QXByteSource const& source, BmpHeader const& header, QXImageBlock const& block) {
  for (QXUInt64 y = 0; y < header.m_nHeight; ++y) {
    unsigned char const* pSource = source.GetNext() + header.m_nPixels + y * header.GetRowBytes();
    std::memcpy(block.GetRow(header.GetStoredRow(y)), pSource, block.GetRowBytes());
  }
}

bool ReadPixels(QXByteSource const& source, BmpHeader const& header, QXImageBlock const& block) {
  if (header.HasRuns()) return RunReader(source, header, block).Read();
  if (header.m_nBits <= 8) {
    ReadIndexed(source, header, block);
  } else if (header.m_nBits == 24 || (header.m_nBits == 32 && header.m_nCompression == PLAIN)) {
    CopyRows(source, header, block);
  } else if (!ReadFields(source, header, block)) {
    return false;
  }
  if (block.GetBytesPerPixel() == 4) MakeVisible(block);
  return true;
}

}  // namespace

// Not by stb_image, which takes no runs, no colours beside whole pixels and no fields of more than 8 bits, and takes
// colours that a palette does not have from memory that it never wrote.
QXImageData* ReadBmp(unsigned char const* pBytes, QXUInt64 nSize, QXImageLimits const& limits) {
  QXByteSource const source(pBytes, nSize);
  BmpHeader header;
  if (!ReadHeader(source, limits, header)) return nullptr;
  QXImageBlock block;
  if (!block.Make(header.m_nWidth, header.m_nHeight, header.m_arrMasks[3] != 0 ? 4 : 3, limits)) return nullptr;
  if (!ReadPixels(source, header, block)) return nullptr;
  return block.HandOver();
}

}  // namespace QXC::detail
