#include <QxGraphics3D/frame/foundation/fileparser/detail/QXGifReader.h>

#include <QxGraphics3D/frame/foundation/fileparser/detail/QXByteSource.h>
#include <QxGraphics3D/frame/foundation/fileparser/detail/QXImageBlock.h>

#include <QxGraphics3D/frame/foundation/base3d/detail/QXPixelKernels.h>
#include <QxGraphics3D/frame/foundation/geometry/QXGeoPicture.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
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

// What stands before a frame tells how it is shown.
struct FrameControl {
  int m_nTransparent = NO_TRANSPARENT_COLOR;
  int m_nDisposal = DISPOSAL_UNSPECIFIED;
  int m_nDelay = 0;  // hundredths of a second
};

// The last of several controls counts.
bool ReadExtension(GifFileType* pGif, FrameControl& control) {
  int nCode = 0;
  GifByteType* pBlock = nullptr;
  if (DGifGetExtension(pGif, &nCode, &pBlock) == GIF_ERROR) return false;
  while (pBlock) {
    GraphicsControlBlock block{};
    if (nCode == GRAPHICS_EXT_FUNC_CODE && DGifExtensionToGCB(pBlock[0], pBlock + 1, &block) == GIF_OK) {
      control = {block.TransparentColor, block.DisposalMode, block.DelayTime};
    }
    if (DGifGetExtensionNext(pGif, &pBlock) == GIF_ERROR) return false;
  }
  return true;
}

// To the description of the next frame that has a size and colours; false if there is none.
bool FindFrame(GifFileType* pGif, FrameControl& control) {
  control = FrameControl();
  for (;;) {
    GifRecordType eRecord = UNDEFINED_RECORD_TYPE;
    if (DGifGetRecordType(pGif, &eRecord) == GIF_ERROR) return false;
    if (eRecord == IMAGE_DESC_RECORD_TYPE) break;
    if (eRecord != EXTENSION_RECORD_TYPE || !ReadExtension(pGif, control)) return false;
  }
  if (DGifGetImageDesc(pGif) == GIF_ERROR) return false;
  GifImageDesc const& frame = pGif->Image;
  return frame.Width > 0 && frame.Height > 0 && (frame.ColorMap || pGif->SColorMap);
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
  Palette const palette(frame.ColorMap ? *frame.ColorMap : *pGif->SColorMap);
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

bool IsGif(unsigned char const* pBytes, QXUInt64 nSize) {
  QXByteSource const source(pBytes, nSize);
  return source.Has(0, "GIF87a") || source.Has(0, "GIF89a");
}

// Bytes of the colours that a packed field announces.
QXUInt64 PaletteBytes(unsigned int nPacked) {
  return nPacked & 0x80 ? 3ULL << ((nPacked & 7) + 1) : 0;
}

bool SkipSubBlocks(QXByteSource& source) {
  for (;;) {
    unsigned int const nBytes = source.Little(source.GetPosition(), 1);
    if (!source.Skip(1 + nBytes)) return false;
    if (nBytes == 0) return true;
  }
}

// Bytes of a frame beside its pixels, records and blocks: of tiny frames a file can hold hundreds of millions.
constexpr QXUInt64 LEAST_COST = 256;

// What a frame of that size asks for on a canvas of that many bytes. Pixels beyond the canvas are decoded too, and a few
// bytes can announce thousands of them.
QXUInt64 CostOf(QXUInt64 nWidth, QXUInt64 nHeight, QXUInt64 nCanvasBytes) {
  return std::max({nWidth * nHeight * 4, nCanvasBytes, LEAST_COST});
}

// What all frames that the file begins ask for, without decoding any: it is known before anything is made.
QXUInt64 CostOfFrames(unsigned char const* pBytes, QXUInt64 nSize, QXUInt64 nCanvasBytes) {
  constexpr unsigned int HEADER = 13, PACKED = 10, EXTENSION = 0x21, FRAME = 0x2C;
  QXByteSource source(pBytes, nSize);
  QXUInt64 nCost = 0;
  if (!source.Skip(HEADER + PaletteBytes(source.Little(PACKED, 1)))) return nCost;
  for (;;) {
    QXUInt64 const nPlace = source.GetPosition();
    unsigned int const nMark = source.Little(nPlace, 1);
    if (nMark == FRAME) {
      nCost += CostOf(source.Little(nPlace + 5, 2), source.Little(nPlace + 7, 2), nCanvasBytes);
      // Mark, place and size, packed field, colours, width of the first code.
      if (!source.Skip(11 + PaletteBytes(source.Little(nPlace + 9, 1)))) return nCost;
    } else if (nMark != EXTENSION || !source.Skip(2)) {
      return nCost;
    }
    if (!SkipSubBlocks(source)) return nCost;
  }
}

// The canvas on which the frames of a file follow each other.
class GifCanvas {
public:
  bool Make(GifFileType const& gif, QXImageLimits const& limits) {
    if (gif.SWidth <= 0 || gif.SHeight <= 0) return false;
    if (!m_Block.Make(static_cast<QXUInt64>(gif.SWidth), static_cast<QXUInt64>(gif.SHeight), 4, limits)) return false;
    std::memset(m_Block.GetRow(0), 0, GetBytes());
    return true;
  }

  std::size_t GetBytes() const { return m_Block.GetRowBytes() * m_Block.GetHeight(); }

  // Lays the frame that is described over what the one before left.
  bool Draw(GifFileType* pGif, FrameControl const& control) {
    if (control.m_nDisposal == DISPOSE_PREVIOUS) m_arrBefore.assign(m_Block.GetRow(0), m_Block.GetRow(0) + GetBytes());
    return ReadFrame(pGif, control.m_nTransparent, m_Block);
  }

  // Takes the frame away again as it asks for; nothing for what stays.
  void Dispose(GifImageDesc const& frame, FrameControl const& control) {
    if (control.m_nDisposal == DISPOSE_PREVIOUS) std::memcpy(m_Block.GetRow(0), m_arrBefore.data(), GetBytes());
    if (control.m_nDisposal == DISPOSE_BACKGROUND) Clear(frame);
  }

  // A copy of what is to be seen now; null without memory.
  std::unique_ptr<QXGeoPicture> TakePicture(double dDelay, unsigned char bFlip, QXImageLimits const& limits) const {
    QXImageBlock block;
    if (!block.Make(m_Block.GetWidth(), m_Block.GetHeight(), 4, limits)) return nullptr;
    std::memcpy(block.GetRow(0), m_Block.GetRow(0), GetBytes());
    if (bFlip) FlipRows(block.GetRow(0), block.GetRowBytes(), block.GetHeight());
    auto pPicture = std::make_unique<QXGeoPicture>();
    pPicture->SetImage(block.HandOver());
    if (!pPicture->GetImage()) return nullptr;
    pPicture->SetCenterPoint(QdcPoint2D(m_Block.GetWidth() / 2.0, m_Block.GetHeight() / 2.0));
    pPicture->SetDelayTime(dDelay);
    return pPicture;
  }

private:
  // The background is what stands behind the picture, as all players have it: nothing.
  void Clear(GifImageDesc const& frame) {
    auto const nLeft = static_cast<std::size_t>(std::min(frame.Left, static_cast<int>(m_Block.GetWidth())));
    auto const nRight =
        static_cast<std::size_t>(std::min(frame.Left + frame.Width, static_cast<int>(m_Block.GetWidth())));
    int const nBottom = std::min(frame.Top + frame.Height, static_cast<int>(m_Block.GetHeight()));
    for (int y = frame.Top; y < nBottom; ++y)
      std::memset(m_Block.GetRow(static_cast<std::size_t>(y)) + nLeft * 4, 0, (nRight - nLeft) * 4);
  }

  QXImageBlock m_Block;
  std::vector<unsigned char> m_arrBefore;
};

using Pictures = std::vector<std::unique_ptr<QXGeoPicture>>;

// Empty on failure.
Pictures ReadPictures(unsigned char const* pBytes, QXUInt64 nSize, unsigned char bFlip, QXImageLimits const& limits) {
  GifFile const file(pBytes, nSize);
  GifFileType* const pGif = file.Get();
  GifCanvas canvas;
  if (!pGif || !canvas.Make(*pGif, limits)) return Pictures();
  if (CostOfFrames(pBytes, nSize, canvas.GetBytes()) > limits.m_nMaxBytes) return Pictures();
  Pictures arrPictures;
  FrameControl control;
  while (FindFrame(pGif, control)) {
    GifImageDesc const frame = pGif->Image;
    if (!canvas.Draw(pGif, control)) break;
    arrPictures.push_back(canvas.TakePicture(control.m_nDelay, bFlip, limits));
    if (!arrPictures.back()) return Pictures();
    canvas.Dispose(frame, control);
  }
  return arrPictures;
}

}  // namespace

QXImageData* ReadGif(unsigned char const* pBytes, QXUInt64 nSize, QXImageLimits const& limits) {
  if (!IsGif(pBytes, nSize)) return nullptr;
  GifFile const file(pBytes, nSize);
  GifFileType* pGif = file.Get();
  FrameControl control;
  if (!pGif || !FindFrame(pGif, control) || pGif->SWidth <= 0 || pGif->SHeight <= 0) return nullptr;

  bool const bAlpha = control.m_nTransparent != NO_TRANSPARENT_COLOR || !Covers(pGif->Image, *pGif);
  auto const nFramePixels = static_cast<QXUInt64>(pGif->Image.Width) * static_cast<QXUInt64>(pGif->Image.Height);
  unsigned int const nBytesPerPixel = bAlpha ? 4 : 3;
  if (nFramePixels * nBytesPerPixel > limits.m_nMaxBytes) return nullptr;
  QXImageBlock block;
  auto const nWidth = static_cast<QXUInt64>(pGif->SWidth);
  auto const nHeight = static_cast<QXUInt64>(pGif->SHeight);
  if (!block.Make(nWidth, nHeight, nBytesPerPixel, limits)) return nullptr;
  if (bAlpha) std::memset(block.GetRow(0), 0, block.GetRowBytes() * block.GetHeight());
  if (!ReadFrame(pGif, control.m_nTransparent, block)) return nullptr;
  return block.HandOver();
}

unsigned char ReadGifPictures(unsigned char const* pBytes, QXUInt64 nSize, QdcArray<QXGeoPicture*>& arrPictures,
    unsigned char bFlip, QXImageLimits const& limits) {
  if (!pBytes || !IsGif(pBytes, nSize)) return 0;
  try {
    Pictures arrRead = ReadPictures(pBytes, nSize, bFlip, limits);
    if (arrRead.empty()) return 0;
    QXUInt64 nPlace = arrPictures.GetSize();
    arrPictures.SetSize(nPlace + arrRead.size());
    for (std::unique_ptr<QXGeoPicture>& pPicture : arrRead) arrPictures[nPlace++] = pPicture.release();
    return 1;
  } catch (std::bad_alloc const&) {
    return 0;
  }
}

}  // namespace QXC::detail
