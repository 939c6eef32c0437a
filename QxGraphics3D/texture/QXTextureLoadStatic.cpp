#include <QxGraphics3D/texture/QXTexture.h>

#include <QxGraphics3D/frame/foundation/base3d/QXMathEngine.h>
#include <QxGraphics3D/frame/foundation/base3d/detail/QXImageHolder.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseToolkit.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileType.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXImportParams.h>
#include <QxGraphics3D/frame/foundation/stream/QXFile.h>
#include <QxGraphics3D/frame/foundation/stream/detail/QXFileBytes.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXImageOperator.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXImgToolkit.h>
#include <QxGraphics3D/texture/detail/QXLoadGuard.h>
#include <QxGraphics3D/texture/detail/QXLoadSource.h>

#include <cstring>
#include <limits>
#include <memory>

namespace QXC {

namespace {

constexpr unsigned char OpaqueAlpha = 255;
constexpr unsigned int WidePixelSize = 4;

int TypeOfExtension(QdcUnicodeString const& strPath) {
  return QXFileType::ExtNameToFileType(QXFile::GetExt(strPath));
}

/// A file's bytes as an image record, null if it cannot be read.
QXImageData* ReadRawImage(QdcUnicodeString const& strPath) {
  detail::QXImageHolder pImage(new QXImageData);
  QXUInt64 nSize = 0;
  pImage->m_pPixels = detail::ReadWholeFile(strPath, nSize);
  if (pImage->m_pPixels == nullptr) return nullptr;
  pImage->m_nBitDepth = detail::RawFileCode;
  pImage->m_nPitch = static_cast<unsigned int>(nSize);
  return pImage.release();
}

/// The first image of a file by its parser; null if there is none.
QXImageData* ReadFirstImage(int nType, QdcUnicodeString const& strPath, unsigned char bFlag) {
  auto const pParams = detail::MakeLoadParams(nType, strPath);
  if (pParams == nullptr) return nullptr;
  detail::QXImageList images;
  if (QXFileParseToolkit::GetImageData(pParams.get(), images.Items(), bFlag, -1) == 0) return nullptr;
  return images.TakeFirst();
}

QXImageData* ReadAsItIs(QdcUnicodeString const& strGivenPath) {
  if (QXFile::IsExist(strGivenPath) == 0) return nullptr;
  QdcUnicodeString strPath = strGivenPath;
  if (QXFile::GetExt(strPath) == L".|temp") strPath = QXFile::StripExt(strPath);
  int const nType = TypeOfExtension(strPath);
  if (nType == QXFileType::EM_IMAGE_GIF) return ReadRawImage(strPath);
  return ReadFirstImage(nType, strPath, 1);
}

bool ReadRawData(QdcUnicodeString const& strPath, QXTextureData& data) {
  QXUInt64 nSize = 0;
  data.m_pPixels = detail::ReadWholeFile(strPath, nSize);
  if (data.m_pPixels == nullptr) return false;
  data.m_nCompression = detail::RawFileCode;
  data.m_nDataSize = static_cast<unsigned int>(nSize);
  data.SetBlockLength(nSize);
  return true;
}

/// Puts an image of 4-byte pixels into the record, its edges rounded up to powers of two.
bool TakeWideImage(QXImageData const& image, QXTextureData& data) {
  unsigned int const nWidth = QXMathEngine::NextP2(image.m_nWidth);
  unsigned int const nHeight = QXMathEngine::NextP2(image.m_nHeight);
  auto pBlock = detail::NewTextureBlock(nWidth, nHeight, WidePixelSize);
  if (pBlock == nullptr) return false;
  QXUInt64 const nLength = QXUInt64{nWidth} * nHeight * WidePixelSize;
  auto* const pPixels = static_cast<unsigned char*>(image.m_pPixels);
  if (nWidth == image.m_nWidth && nHeight == image.m_nHeight) {
    std::memcpy(pBlock.get(), pPixels, static_cast<std::size_t>(nLength));
  } else if (QXImageOperator::Scale(
                 WidePixelSize, image.m_nWidth, image.m_nHeight, pPixels, nWidth, nHeight, pBlock.get()) == 0) {
    return false;
  }
  data.m_eFormat = PF_A8R8G8B8;
  data.m_pPixels = pBlock.release();
  data.m_nWidth = nWidth;
  data.m_nHeight = nHeight;
  data.SetBlockLength(nLength);
  return true;
}

/// An image that cannot be widened (raw bytes, a depth that nobody knows) is none, and the record stays empty.
QXTextureData* MakeStill(QXImageData* pImage) {
  auto pData = std::make_unique<QXTextureData>();
  if (pImage != nullptr && QXImgToolkit::ImageDataToRGBA(*pImage, OpaqueAlpha) != 0 && !TakeWideImage(*pImage, *pData))
    return nullptr;
  return pData.release();
}

QXTextureData* ReadStill(QdcUnicodeString const& strPath) {
  int const nType = QXFileParseToolkit::GetFileTypeByExtName(strPath);
  if (nType == QXFileType::EM_UNKNOWN) return nullptr;
  if (TypeOfExtension(strPath) == QXFileType::EM_IMAGE_GIF) {
    auto pData = std::make_unique<QXTextureData>();
    return ReadRawData(strPath, *pData) ? pData.release() : nullptr;
  }
  detail::QXImageHolder const pImage(ReadFirstImage(nType, strPath, 1));
  return MakeStill(pImage.get());
}

/// Bytes of a raw type in a block of their own.
QXTextureData* CopyRaw(unsigned char const* pBytes, QXUInt64 nSize) {
  auto pData = std::make_unique<QXTextureData>();
  pData->m_pPixels = new unsigned char[static_cast<std::size_t>(nSize)];
  std::memcpy(pData->m_pPixels, pBytes, static_cast<std::size_t>(nSize));
  pData->m_nCompression = detail::RawFileCode;
  pData->m_nDataSize = static_cast<unsigned int>(nSize);
  pData->SetBlockLength(nSize);
  return pData.release();
}

QXTextureData* ReadStill(unsigned char const* pBytes, QXUInt64 nSize) {
  if (QXFileParseToolkit::GetFileTypeByContent(pBytes, nSize) == QXFileType::EM_IMAGE_GIF)
    return nSize <= std::numeric_limits<unsigned int>::max() ? CopyRaw(pBytes, nSize) : nullptr;
  detail::QXImageList images;
  if (QXFileParseToolkit::GetImageDataFromMemory(pBytes, nSize, images.Items()) == 0) return nullptr;
  detail::QXImageHolder const pImage(images.TakeFirst());
  return MakeStill(pImage.get());
}

}  // namespace

unsigned char QXTexture::LoadImageData(
    QdcUnicodeString const& strPath, unsigned char /*bUnused*/, QXImageData*& pImage, unsigned char bFlag) {
  pImage = nullptr;
  if (strPath.IsEmpty() != 0) return 0;
  pImage = detail::GuardLoad(
      [&]() -> QXImageData* {
        detail::QXImageHolder pFirst(ReadFirstImage(TypeOfExtension(strPath), strPath, bFlag));
        if (pFirst != nullptr) QXImgToolkit::ImageDataToRGBA(*pFirst, OpaqueAlpha);
        return pFirst.release();
      },
      static_cast<QXImageData*>(nullptr));
  return static_cast<unsigned char>(pImage != nullptr);
}

QXImageData* QXTexture::LoadImageDataEx(QdcUnicodeString const& strPath, QXMaterial* /*pMaterial*/) {
  if (strPath.IsEmpty() != 0) return nullptr;
  return detail::GuardLoad([&] { return ReadAsItIs(strPath); }, static_cast<QXImageData*>(nullptr));
}

QXTextureData* QXTexture::GetTextureData(QdcUnicodeString const& strPath) {
  return detail::GuardLoad([&] { return ReadStill(strPath); }, static_cast<QXTextureData*>(nullptr));
}

QXTextureData* QXTexture::GetTextureDataFromMemory(unsigned char const* pBytes, QXUInt64 nSize) {
  return detail::GuardLoad([&] { return ReadStill(pBytes, nSize); }, static_cast<QXTextureData*>(nullptr));
}

}  // namespace QXC
