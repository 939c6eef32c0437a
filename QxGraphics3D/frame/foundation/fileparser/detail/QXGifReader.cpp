#include <QxGraphics3D/frame/foundation/fileparser/detail/QXGifReader.h>

#include <QxGraphics3D/frame/foundation/fileparser/detail/QXByteSource.h>
#include <QxGraphics3D/frame/foundation/fileparser/detail/QXImageBlock.h>

#include <algorithm>
#include <cstring>
#include <vector>

#include <gif_lib.h>

namespace QXC::detail {
namespace {

int OnRead(GifFileType* pGif, GifByteType* pTarget, int nCount) {
  auto* pSource = static_cast<QXByteSource*>(pGif->UserData);
  return static_cast<int>(pSource->Read(pTarget, static_cast<std::size_t>(nCount)));
}

// Opens and closes.
class GifFile {
public:
  GifFile(unsigned char const* pBytes, QXUInt64 nSize) : m_Source(pBytes, nSize) {
    int nError = 0;
    m_pGif = DGifOpen(&m_Source, OnRead, &nError);
  }
  GifFile(GifFile const&) = delete;
  GifFile& operator=(GifFile const&) = delete;
  ~GifFile() {
    int nError = 0;
    if (m_pGif) DGifCloseFile(m_pGif, &nError);
  }
  GifFileType* Get() const { return m_pGif; }

private:
  QXByteSource m_Source;
  GifFileType* m_pGif = nullptr;
};

// What stands before a frame says which of its colours is none; the last of several counts.
bool ReadExtension(GifFileType* pGif, int& nTransparent) {
  int nCode = 0;
  GifByteType* pBlock = nullptr;
  if (DGifGetExtension(pGif, &nCode, &pBlock) == GIF_ERROR) return false;
  while (pBlock) {
    GraphicsControlBlock control{};
    if (nCode == GRAPHICS_EXT_FUNC_CODE && DGifExtensionToGCB(pBlock[0], pBlock + 1, &control) == GIF_OK) {
      nTransparent = control.TransparentColor;
    }
    if (DGifGetExtensionNext(pGif, &pBlock) == GIF_ERROR) return false;
  }
  return true;
}

// To the description of the first frame; false if there is none.
bool FindFrame(GifFileType* pGif, int& nTransparent) {
  for (;;) {
    GifRecordType eRecord = UNDEFINED_RECORD_TYPE;
    if (DGifGetRecordType(pGif, &eRecord) == GIF_ERROR) return false;
    if (eRecord == IMAGE_DESC_RECORD_TYPE) return DGifGetImageDesc(pGif) == GIF_OK;
    if (eRecord != EXTENSION_RECORD_TYPE || !ReadExtension(pGif, nTransparent)) return false;
  }
}

// The colours of a frame in B,G,R; those that the file does not have are black.
struct Palette {
  unsigned char m_arrColours[256][3] = {};

  explicit Palette(ColorMapObject const& map) {
    for (int i = 0; i < std::min(map.ColorCount, 256); ++i) {
      m_arrColours[i][0] = map.Colors[i].Blue;
      m_arrColours[i][1] = map.Colors[i].Green;
      m_arrColours[i][2] = map.Colors[i].Red;
    }
  }
};

// Which row of the frame the n-th row of an interlaced file is.
int InterlacedRow(int nRow, int nHeight) {
  constexpr int STARTS[] = {0, 4, 2, 1}, STEPS[] = {8, 8, 4, 2};
  for (int nPass = 0; nPass < 4; ++nPass) {
    int const nRows = std::max(0, (nHeight - STARTS[nPass] + STEPS[nPass] - 1) / STEPS[nPass]);
    if (nRow < nRows) return STARTS[nPass] + nRow * STEPS[nPass];
    nRow -= nRows;
  }
  return nHeight - 1;
}

void PlaceRow(std::vector<GifPixelType> const& arrRow, int nLeft, int nTransparent, Palette const& palette,
    unsigned char* pTarget, QXImageBlock const& block) {
  auto const nPlace = static_cast<std::size_t>(nLeft);
  std::size_t const nCount =
      std::min<std::size_t>(arrRow.size(), block.GetWidth() - std::min<std::size_t>(nPlace, block.GetWidth()));
  unsigned int const nBytes = block.GetBytesPerPixel();
  pTarget += nPlace * nBytes;
  for (std::size_t x = 0; x < nCount; ++x, pTarget += nBytes) {
    if (arrRow[x] == nTransparent) continue;
    std::memcpy(pTarget, palette.m_arrColours[arrRow[x]], 3);
    if (nBytes == 4) pTarget[3] = 255;
  }
}

bool ReadFrame(GifFileType* pGif, int nTransparent, QXImageBlock& block) {
  GifImageDesc const& frame = pGif->Image;
  ColorMapObject const* pMap = frame.ColorMap ? frame.ColorMap : pGif->SColorMap;
  if (!pMap) return false;
  Palette const palette(*pMap);
  std::vector<GifPixelType> arrRow(static_cast<std::size_t>(frame.Width));
  for (int i = 0; i < frame.Height; ++i) {
    if (DGifGetLine(pGif, arrRow.data(), frame.Width) == GIF_ERROR) return false;
    int const nRow = frame.Top + (frame.Interlace ? InterlacedRow(i, frame.Height) : i);
    if (nRow >= static_cast<int>(block.GetHeight())) continue;
    PlaceRow(arrRow, frame.Left, nTransparent, palette, block.GetRow(static_cast<std::size_t>(nRow)), block);
  }
  return true;
}

bool Covers(GifImageDesc const& frame, GifFileType const& gif) {
  return frame.Left == 0 && frame.Top == 0 && frame.Width >= gif.SWidth && frame.Height >= gif.SHeight;
}

}  // namespace

QXImageData* ReadGif(unsigned char const* pBytes, QXUInt64 nSize, QXImageLimits const& limits) {
  QXByteSource const source(pBytes, nSize);
  if (!source.Has(0, "GIF87a") && !source.Has(0, "GIF89a")) return nullptr;
  GifFile const file(pBytes, nSize);
  GifFileType* pGif = file.Get();
  int nTransparent = NO_TRANSPARENT_COLOR;
  if (!pGif || !FindFrame(pGif, nTransparent)) return nullptr;
  GifImageDesc const& frame = pGif->Image;
  if (frame.Width <= 0 || frame.Height <= 0 || pGif->SWidth <= 0 || pGif->SHeight <= 0) return nullptr;

  bool const bAlpha = nTransparent != NO_TRANSPARENT_COLOR || !Covers(frame, *pGif);
  QXImageBlock block;
  auto const nWidth = static_cast<QXUInt64>(pGif->SWidth);
  auto const nHeight = static_cast<QXUInt64>(pGif->SHeight);
  if (!block.Make(nWidth, nHeight, bAlpha ? 4 : 3, limits)) return nullptr;
  if (bAlpha) std::memset(block.GetRow(0), 0, block.GetRowBytes() * block.GetHeight());
  if (!ReadFrame(pGif, nTransparent, block)) return nullptr;
  return block.HandOver();
}

}  // namespace QXC::detail
