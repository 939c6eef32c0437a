#include <QxGraphics3D/frame/foundation/fileparser/detail/QXImageReader.h>

#include <QxGraphics3D/frame/foundation/fileparser/QXFileType.h>
#include <QxGraphics3D/frame/foundation/fileparser/detail/QXGifReader.h>
#include <QxGraphics3D/frame/foundation/fileparser/detail/QXImageCodecs.h>

#include <new>

namespace QXC::detail {
namespace {

QXImageData* Dispatch(int nType, unsigned char const* pBytes, QXUInt64 nSize, QXImageLimits const& limits) {
  switch (nType) {
  case QXFileType::EM_IMAGE_BMP: return ReadBmp(pBytes, nSize, limits);
  case QXFileType::EM_IMAGE_JPG: return ReadJpeg(pBytes, nSize, limits);
  case QXFileType::EM_IMAGE_PNG: return ReadPng(pBytes, nSize, limits);
  case QXFileType::EM_IMAGE_GIF: return ReadGif(pBytes, nSize, limits);
  case QXFileType::EM_IMAGE_TIFF: return ReadTiff(pBytes, nSize, limits);
  case QXFileType::EM_IMAGE_WEBP: return ReadWebp(pBytes, nSize, limits);
  case QXFileType::EM_IMAGE_TGA: return ReadTga(pBytes, nSize, limits);
  case QXFileType::EM_IMAGE_HDR: return ReadHdr(pBytes, nSize, limits);
  case QXFileType::EM_IMAGE_PSD: return ReadPsd(pBytes, nSize, limits);
  case QXFileType::EM_IMAGE_KTX2: return ReadKtx2(pBytes, nSize, limits);
  default: return nullptr;
  }
}

}  // namespace

QXImageData* ReadImage(int nType, unsigned char const* pBytes, QXUInt64 nSize, QXImageLimits const& limits) {
  if (!pBytes || nSize == 0) return nullptr;
  try {
    return Dispatch(nType, pBytes, nSize, limits);
  } catch (std::bad_alloc const&) {
    return nullptr;
  }
}

}  // namespace QXC::detail
