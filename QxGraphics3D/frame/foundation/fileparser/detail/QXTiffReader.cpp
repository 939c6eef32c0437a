#include <QxGraphics3D/frame/foundation/fileparser/detail/QXByteSource.h>
#include <QxGraphics3D/frame/foundation/fileparser/detail/QXImageBlock.h>
#include <QxGraphics3D/frame/foundation/fileparser/detail/QXImageCodecs.h>
#include <QxGraphics3D/frame/foundation/fileparser/detail/QXTiffFile.h>
#include <QxGraphics3D/frame/foundation/fileparser/detail/QXTiffSamples.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <iterator>
#include <memory>
#include <string_view>
#include <utility>

namespace QXC::detail {
namespace {

struct FreeBytes {
  void operator()(unsigned char* pBytes) const { std::free(pBytes); }
};
using Buffer = std::unique_ptr<unsigned char, FreeBytes>;

// Zeros that cost no memory before they are written: what the codec leaves out of damaged data is then the same at
// every run.
Buffer MakeBuffer(QXUInt64 nBytes) {
  return Buffer(static_cast<unsigned char*>(std::calloc(static_cast<std::size_t>(nBytes), 1)));
}

// The strips or tiles of a page, as a grid of equal cells of which the last of a row or column may reach outside.
struct Grid {
  std::uint32_t m_nCellWidth = 0;
  std::uint32_t m_nCellHeight = 0;
  QXUInt64 m_nRowBytes = 0;
  QXUInt64 m_nCellBytes = 0;

  bool Init(TIFF* pTiff, QXTiffPage const& page) {
    if (page.m_bTiled) {
      TIFFGetField(pTiff, TIFFTAG_TILEWIDTH, &m_nCellWidth);
      TIFFGetField(pTiff, TIFFTAG_TILELENGTH, &m_nCellHeight);
      m_nRowBytes = TIFFTileRowSize64(pTiff);
      m_nCellBytes = TIFFTileSize64(pTiff);
    } else {
      m_nCellWidth = page.m_nWidth;
      TIFFGetFieldDefaulted(pTiff, TIFFTAG_ROWSPERSTRIP, &m_nCellHeight);
      m_nCellHeight = std::min(m_nCellHeight, page.m_nHeight);
      m_nRowBytes = TIFFScanlineSize64(pTiff);
      m_nCellBytes = TIFFStripSize64(pTiff);
    }
    return m_nCellWidth > 0 && m_nCellHeight > 0;
  }

  // Whether the codec's own idea of a cell holds every sample that is going to be read of it.
  bool HoldsSamples(QXTiffPage const& page) const {
    unsigned int const nSamples = page.m_nPlanar == PLANARCONFIG_SEPARATE ? 1 : page.m_nSamples;
    QXUInt64 const nNeeded = (QXUInt64{m_nCellWidth} * nSamples * page.m_nBits + 7) / 8;
    return nNeeded > 0 && m_nRowBytes >= nNeeded && m_nCellBytes / m_nRowBytes >= m_nCellHeight;
  }
};

// Reads the cells of a page through the codec's decoders and hands their rows to the converter.
class CellReader {
public:
  CellReader(TIFF* pTiff, QXTiffPage const& page, QXTiffSamples const& samples)
      : m_pTiff(pTiff), m_Page(page), m_Samples(samples) {}

  bool Read(QXImageBlock& block, QXImageLimits const& limits) {
    if (!m_Grid.Init(m_pTiff, m_Page) || !m_Grid.HoldsSamples(m_Page)) return false;
    if (m_Grid.m_nCellBytes > QXTiffFile::MaxChunkBytes(limits) / m_Samples.GetPlanes()) return false;
    m_Buffer = MakeBuffer(m_Grid.m_nCellBytes * m_Samples.GetPlanes() + QXTiffSamples::SLACK_BYTES);
    if (!m_Buffer) return false;
    for (std::uint32_t y = 0; y < m_Page.m_nHeight; y += std::min(m_Grid.m_nCellHeight, m_Page.m_nHeight - y)) {
      for (std::uint32_t x = 0; x < m_Page.m_nWidth; x += std::min(m_Grid.m_nCellWidth, m_Page.m_nWidth - x)) {
        if (!ReadCell(x, y)) return false;
        ConvertCell(x, y, block);
      }
    }
    return true;
  }

private:
  unsigned char* Plane(unsigned int nPlane) const { return m_Buffer.get() + m_Grid.m_nCellBytes * nPlane; }

  bool ReadCell(std::uint32_t x, std::uint32_t y) {
    for (unsigned int i = 0; i < m_Samples.GetPlanes(); ++i) {
      auto const nSample = static_cast<std::uint16_t>(i);
      auto nBytes = static_cast<tmsize_t>(m_Grid.m_nCellBytes);
      tmsize_t nRead = -1;
      if (m_Page.m_bTiled) {
        nRead = TIFFReadEncodedTile(m_pTiff, TIFFComputeTile(m_pTiff, x, y, 0, nSample), Plane(i), nBytes);
      } else {
        std::uint32_t const nRows = std::min(m_Grid.m_nCellHeight, m_Page.m_nHeight - y);
        nBytes = static_cast<tmsize_t>(m_Grid.m_nRowBytes * nRows);
        nRead = TIFFReadEncodedStrip(m_pTiff, TIFFComputeStrip(m_pTiff, y, nSample), Plane(i), nBytes);
      }
      if (nRead < nBytes) return false;
    }
    return true;
  }

  void ConvertCell(std::uint32_t x, std::uint32_t y, QXImageBlock& block) const {
    std::uint32_t const nRows = std::min(m_Grid.m_nCellHeight, m_Page.m_nHeight - y);
    std::uint32_t const nColumns = std::min(m_Grid.m_nCellWidth, m_Page.m_nWidth - x);
    for (std::uint32_t nRow = 0; nRow < nRows; ++nRow) {
      unsigned char const* arrPlanes[4] = {};
      for (unsigned int i = 0; i < m_Samples.GetPlanes(); ++i) arrPlanes[i] = Plane(i) + m_Grid.m_nRowBytes * nRow;
      m_Samples.Convert(arrPlanes, block.GetRow(y + nRow) + std::size_t{x} * block.GetBytesPerPixel(), nColumns);
    }
  }

  TIFF* m_pTiff;
  QXTiffPage const& m_Page;
  QXTiffSamples const& m_Samples;
  Grid m_Grid;
  Buffer m_Buffer;
};

// Colours that libtiff itself turns into RGB: YCbCr, CMYK, Lab and their like. Asked for band by band, so that only one
// strip or row of tiles stands in memory four bytes wide.
class ColourReader {
public:
  ~ColourReader() {
    if (m_bBegun) TIFFRGBAImageEnd(&m_Image);
  }

  bool Read(TIFF* pTiff, QXTiffPage const& page, QXImageBlock& block, QXImageLimits const& limits) {
    char szReason[1024] = {};
    Grid grid;
    if (!grid.Init(pTiff, page) || !TIFFRGBAImageOK(pTiff, szReason)) return false;
    if (!TIFFRGBAImageBegin(&m_Image, pTiff, 1, szReason)) return false;
    m_bBegun = true;
    // The same on both sides: rows come as they are stored and are turned with those of every other page.
    m_Image.req_orientation = m_Image.orientation;
    std::uint32_t const nBand = std::min(grid.m_nCellHeight, page.m_nHeight);
    QXUInt64 const nBytes = QXUInt64{page.m_nWidth} * nBand * 4;
    if (nBytes > QXTiffFile::MaxChunkBytes(limits)) return false;
    m_Band = MakeBuffer(nBytes);
    if (!m_Band) return false;
    for (std::uint32_t y = 0; y < page.m_nHeight; y += std::min(nBand, page.m_nHeight - y)) {
      if (!ReadBand(page, y, std::min(nBand, page.m_nHeight - y), block)) return false;
    }
    return true;
  }

private:
  bool ReadBand(QXTiffPage const& page, std::uint32_t y, std::uint32_t nRows, QXImageBlock& block) {
    auto* pRaster = reinterpret_cast<std::uint32_t*>(m_Band.get());
    m_Image.row_offset = static_cast<int>(y);
    if (!TIFFRGBAImageGet(&m_Image, pRaster, page.m_nWidth, nRows)) return false;
    for (std::uint32_t nRow = 0; nRow < nRows; ++nRow) {
      unsigned char* pPixel = block.GetRow(y + nRow);
      for (std::uint32_t x = 0; x < page.m_nWidth; ++x, ++pRaster, pPixel += 3) {
        pPixel[0] = static_cast<unsigned char>(TIFFGetB(*pRaster));
        pPixel[1] = static_cast<unsigned char>(TIFFGetG(*pRaster));
        pPixel[2] = static_cast<unsigned char>(TIFFGetR(*pRaster));
      }
    }
    return true;
  }

  TIFFRGBAImage m_Image{};
  Buffer m_Band;
  bool m_bBegun = false;
};

// Where the orientation puts the stored pixels: the picture's first pixel, and the way to the next one of its row and
// to its next row, in stored pixels.
struct Turn {
  std::ptrdiff_t m_nStart = 0;
  std::ptrdiff_t m_nRight = 1;
  std::ptrdiff_t m_nDown = 0;
  bool m_bSwapped = false;

  Turn(unsigned int nOrientation, std::ptrdiff_t nWidth, std::ptrdiff_t nHeight) {
    bool const bFromRight = nOrientation == ORIENTATION_TOPRIGHT || nOrientation == ORIENTATION_BOTRIGHT ||
                            nOrientation == ORIENTATION_RIGHTBOT || nOrientation == ORIENTATION_LEFTBOT;
    bool const bFromBottom = nOrientation == ORIENTATION_BOTRIGHT || nOrientation == ORIENTATION_BOTLEFT ||
                             nOrientation == ORIENTATION_RIGHTTOP || nOrientation == ORIENTATION_RIGHTBOT;
    m_bSwapped = nOrientation >= ORIENTATION_LEFTTOP && nOrientation <= ORIENTATION_LEFTBOT;
    std::ptrdiff_t const nColumn = bFromRight ? -1 : 1;
    std::ptrdiff_t const nRow = bFromBottom ? -nWidth : nWidth;
    m_nStart = (bFromRight ? nWidth - 1 : 0) + (bFromBottom ? (nHeight - 1) * nWidth : 0);
    m_nRight = m_bSwapped ? nRow : nColumn;
    m_nDown = m_bSwapped ? nColumn : nRow;
  }
};

bool Orient(QXImageBlock& block, unsigned int nOrientation, QXImageLimits const& limits) {
  if (nOrientation <= ORIENTATION_TOPLEFT || nOrientation > ORIENTATION_LEFTBOT) return true;
  Turn const turn(nOrientation, block.GetWidth(), block.GetHeight());
  unsigned int const nBytes = block.GetBytesPerPixel();
  QXImageBlock turned;
  unsigned int const nWidth = turn.m_bSwapped ? block.GetHeight() : block.GetWidth();
  unsigned int const nHeight = turn.m_bSwapped ? block.GetWidth() : block.GetHeight();
  if (!turned.Make(nWidth, nHeight, nBytes, limits)) return false;
  for (unsigned int y = 0; y < nHeight; ++y) {
    unsigned char* pTarget = turned.GetRow(y);
    std::ptrdiff_t nSource = turn.m_nStart + turn.m_nDown * static_cast<std::ptrdiff_t>(y);
    for (unsigned int x = 0; x < nWidth; ++x, pTarget += nBytes, nSource += turn.m_nRight) {
      std::copy_n(block.GetRow(0) + nSource * static_cast<std::ptrdiff_t>(nBytes), nBytes, pTarget);
    }
  }
  block = std::move(turned);
  return true;
}

// Bytes that one byte of the file becomes at most; 0 where nothing is known.
QXUInt64 MaxRatio(unsigned int nCompression) {
  switch (nCompression) {
  case COMPRESSION_NONE: return 1;
  case COMPRESSION_PACKBITS: return 64;
  case COMPRESSION_ADOBE_DEFLATE:
  case COMPRESSION_DEFLATE: return 1032;
  case COMPRESSION_LZW: return 4096;
  default: return 0;
  }
}

// No more is made than the bytes could fill, or than strips that share their bytes would.
bool CanFill(TIFF* pTiff, QXTiffPage const& page, QXUInt64 nSize) {
  std::uint16_t nCompression = COMPRESSION_NONE;
  TIFFGetFieldDefaulted(pTiff, TIFFTAG_COMPRESSION, &nCompression);
  QXUInt64 const nRatio = MaxRatio(nCompression);
  // Colours of YCbCr may be stored for several pixels at once: at least one byte a pixel remains.
  QXUInt64 const nBits = page.m_nPhotometric == PHOTOMETRIC_YCBCR ? 8 : QXUInt64{page.m_nBits} * page.m_nSamples;
  return nRatio == 0 || (page.m_nWidth * nBits + 7) / 8 * page.m_nHeight / nRatio <= nSize;
}

bool HasMagic(QXByteSource const& source) {
  constexpr std::string_view MAGICS[] = {
      {"II*\0", 4}, {"MM\0*", 4}, {"II+\0", 4}, {"MM\0+", 4}};  // the last two with 64-bit offsets
  return std::any_of(std::begin(MAGICS), std::end(MAGICS), [&](auto strMagic) { return source.Has(0, strMagic); });
}

}  // namespace

QXImageData* ReadTiff(unsigned char const* pBytes, QXUInt64 nSize, QXImageLimits const& limits) {
  if (!HasMagic(QXByteSource(pBytes, nSize))) return nullptr;
  QXTiffFile const file(pBytes, nSize, limits);
  QXTiffPage page;
  if (!file.Get() || !file.HasWholeDirectory() || !file.ReadPage(page)) return nullptr;
  if (!limits.Allow(page.m_nWidth, page.m_nHeight, 1) || !CanFill(file.Get(), page, nSize)) return nullptr;
  // Measurements, which the codec would take for light: heights below zero would be the brightest.
  if (page.HasPlainColours() && !page.HasWholeSamples()) return nullptr;
  QXTiffSamples samples;
  bool const bSamples = samples.Init(file.Get(), page);
  QXImageBlock block;
  if (!block.Make(page.m_nWidth, page.m_nHeight, bSamples ? samples.GetBytesPerPixel() : 3, limits)) return nullptr;
  bool const bRead = bSamples ? CellReader(file.Get(), page, samples).Read(block, limits)
                              : ColourReader().Read(file.Get(), page, block, limits);
  if (!bRead || !Orient(block, page.m_nOrientation, limits)) return nullptr;
  return block.HandOver();
}

}  // namespace QXC::detail
