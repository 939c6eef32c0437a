#include <QxGraphics3D/frame/foundation/fileparser/detail/QXByteSource.h>
#include <QxGraphics3D/frame/foundation/fileparser/detail/QXImageBlock.h>
#include <QxGraphics3D/frame/foundation/fileparser/detail/QXImageCodecs.h>

#include <webp/decode.h>

namespace QXC::detail {

QXImageData* ReadWebp(unsigned char const* pBytes, QXUInt64 nSize, QXImageLimits const& limits) {
  QXByteSource const source(pBytes, nSize);
  if (!source.Has(0, "RIFF") || !source.Has(8, "WEBP")) return nullptr;
  auto const nBytes = static_cast<std::size_t>(nSize);
  WebPBitstreamFeatures features;
  if (WebPGetFeatures(pBytes, nBytes, &features) != VP8_STATUS_OK || features.has_animation) return nullptr;
  if (features.width <= 0 || features.height <= 0) return nullptr;

  QXImageBlock block;
  auto const nWidth = static_cast<unsigned int>(features.width);
  auto const nHeight = static_cast<unsigned int>(features.height);
  if (!block.Make(nWidth, nHeight, features.has_alpha ? 4 : 3, limits)) return nullptr;
  auto const pDecode = features.has_alpha ? WebPDecodeBGRAInto : WebPDecodeBGRInto;
  auto const nRowBytes = static_cast<int>(block.GetRowBytes());
  if (!pDecode(pBytes, nBytes, block.GetRow(0), block.GetRowBytes() * nHeight, nRowBytes)) return nullptr;
  return block.HandOver();
}

}  // namespace QXC::detail
