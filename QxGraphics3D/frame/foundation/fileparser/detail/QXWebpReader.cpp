#include <QxGraphics3D/frame/foundation/fileparser/detail/QXByteSource.h>
#include <QxGraphics3D/frame/foundation/fileparser/detail/QXImageBlock.h>
#include <QxGraphics3D/frame/foundation/fileparser/detail/QXImageCodecs.h>

#include <cstddef>
#include <cstring>

#include <webp/decode.h>

namespace QXC::detail {
namespace {

constexpr unsigned int FILE_HEADER_BYTES = 12;
constexpr unsigned int CHUNK_HEADER_BYTES = 8;
constexpr unsigned int FRAME_HEADER_BYTES = 16;

// A coded picture and where it stands on the canvas.
struct Frame {
  unsigned char const* m_pBytes = nullptr;
  std::size_t m_nBytes = 0;
  QXUInt64 m_nLeft = 0;
  QXUInt64 m_nTop = 0;
};

// To the first frame of an animation; false if the file does not have all of it.
bool FindFrame(QXByteSource source, Frame& frame) {
  if (!source.SeekTo(FILE_HEADER_BYTES)) return false;
  for (;;) {
    bool const bFrame = source.Has(source.GetPosition(), "ANMF");
    unsigned int const nBytes = source.Little(source.GetPosition() + 4, 4);
    if (!source.Skip(CHUNK_HEADER_BYTES) || nBytes > source.GetLeft()) return false;
    if (bFrame) {
      if (nBytes < FRAME_HEADER_BYTES) return false;
      // Places are counted in pairs of pixels.
      frame.m_nLeft = QXUInt64{source.Little(source.GetPosition(), 3)} * 2;
      frame.m_nTop = QXUInt64{source.Little(source.GetPosition() + 3, 3)} * 2;
      frame.m_pBytes = source.GetNext() + FRAME_HEADER_BYTES;
      frame.m_nBytes = nBytes - FRAME_HEADER_BYTES;
      return true;
    }
    if (!source.Skip(QXUInt64{nBytes} + nBytes % 2)) return false;
  }
}

QXImageData* Decode(Frame const& frame, QXUInt64 nWidth, QXUInt64 nHeight, QXImageLimits const& limits) {
  WebPBitstreamFeatures features;
  if (WebPGetFeatures(frame.m_pBytes, frame.m_nBytes, &features) != VP8_STATUS_OK || features.has_animation) {
    return nullptr;
  }
  if (features.width <= 0 || features.height <= 0) return nullptr;
  auto const nFrameWidth = static_cast<QXUInt64>(features.width);
  auto const nFrameHeight = static_cast<QXUInt64>(features.height);
  if (frame.m_nLeft + nFrameWidth > nWidth || frame.m_nTop + nFrameHeight > nHeight) return nullptr;
  bool const bCovers = nFrameWidth == nWidth && nFrameHeight == nHeight;

  QXImageBlock block;
  bool const bAlpha = features.has_alpha || !bCovers;
  if (!block.Make(nWidth, nHeight, bAlpha ? 4 : 3, limits)) return nullptr;
  if (!bCovers) std::memset(block.GetRow(0), 0, block.GetRowBytes() * block.GetHeight());
  std::size_t const nStart = frame.m_nTop * block.GetRowBytes() + frame.m_nLeft * block.GetBytesPerPixel();
  std::size_t const nRoom = block.GetRowBytes() * block.GetHeight() - nStart;
  auto const pDecode = bAlpha ? WebPDecodeBGRAInto : WebPDecodeBGRInto;
  auto const nRowBytes = static_cast<int>(block.GetRowBytes());
  if (!pDecode(frame.m_pBytes, frame.m_nBytes, block.GetRow(0) + nStart, nRoom, nRowBytes)) return nullptr;
  return block.HandOver();
}

}  // namespace

QXImageData* ReadWebp(unsigned char const* pBytes, QXUInt64 nSize, QXImageLimits const& limits) {
  QXByteSource const source(pBytes, nSize);
  if (!source.Has(0, "RIFF") || !source.Has(8, "WEBP")) return nullptr;
  WebPBitstreamFeatures features;
  if (WebPGetFeatures(pBytes, static_cast<std::size_t>(nSize), &features) != VP8_STATUS_OK) return nullptr;
  if (features.width <= 0 || features.height <= 0) return nullptr;
  Frame frame{pBytes, static_cast<std::size_t>(nSize), 0, 0};
  if (features.has_animation && !FindFrame(source, frame)) return nullptr;
  return Decode(frame, static_cast<QXUInt64>(features.width), static_cast<QXUInt64>(features.height), limits);
}

}  // namespace QXC::detail
