#include <apps/qx3d/QXPixels.h>

#include <apps/qx3d/QXMessage.h>

#include <QxGraphics3D/frame/foundation/base3d/QXImageData.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseToolkit.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileType.h>
#include <QxGraphics3D/frame/foundation/geometry/QXGeoPicture.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXImgToolkit.h>
#include <QxGraphics3D/texture/QXTexture.h>

#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

namespace QXApp {

namespace {

using QXC::QdcUnicodeString;
using QXC::QXFileType;

/// All kinds but the one that holds no pixels for a person.
std::string ListPictureKinds() {
  std::string strKinds = ListImageKinds();
  constexpr std::string_view Texture = " .ktx2";
  if (std::size_t const nAt = strKinds.find(Texture); nAt != std::string::npos) strKinds.erase(nAt, Texture.size());
  return strKinds;
}

/// What makes the library's reading pointless. Empty, or the reason.
std::string CheckFile(std::string const& strPath, int nType) {
  std::error_code error;
  std::filesystem::file_status const status = std::filesystem::status(strPath, error);
  if (!std::filesystem::exists(status)) return "no such file; correct the name";
  if (!std::filesystem::is_regular_file(status)) return "this is no regular file; name a picture";
  if (QXFileType::IsImageType(nType) == 0) return "unknown kind of picture; readable are" + ListPictureKinds();
  if (nType == QXFileType::EM_IMAGE_KTX2) return "a .ktx2 file is a finished texture; convert it to PNG";
  return std::string();
}

std::string ReadFirstFrame(QdcUnicodeString const& strPath, QXPixels& pixels) {
  std::unique_ptr<QXC::QXTextureData> const pFile(QXC::QXTexture::GetTextureData(strPath));
  if (pFile == nullptr || pFile->m_pPixels == nullptr) return "it cannot be read; change its permissions";
  QXC::QdcArray<QXC::QXGeoPicture*> arrFrames;
  std::string strReason;
  if (QXC::QXFileParseToolkit::GetDynamicIMGDataFromMemory(pFile->m_pPixels, pFile->m_nDataSize, arrFrames, 0) == 0)
    strReason = TakePictureReason();
  if (arrFrames.GetSize() > 0 && arrFrames[0]->GetImage() != nullptr) pixels = TakePixels(*arrFrames[0]->GetImage());
  for (QXC::QXGeoPicture* pFrame : arrFrames) delete pFrame;
  return strReason;
}

std::string ReadStill(QdcUnicodeString const& strPath, QXPixels& pixels) {
  QXC::QXImageData* pImage = nullptr;
  if (QXC::QXTexture::LoadImageData(strPath, 0, pImage, 0) == 0 || pImage == nullptr) return TakePictureReason();
  pixels = TakePixels(*pImage);
  DisposeImage(pImage);
  return std::string();
}

}  // namespace

QXPixels MakePixels(unsigned int nWidth, unsigned int nHeight) {
  return {nWidth, nHeight, std::make_unique_for_overwrite<unsigned char[]>(std::size_t{4} * nWidth * nHeight)};
}

QXPixels TakePixels(QXC::QXImageData& image) {
  QXPixels pixels;
  if (image.m_nCompression != 0 || QXC::QXImgToolkit::ImageDataToRGBA(image, 255) == 0) return pixels;
  pixels.m_nWidth = image.m_nWidth;
  pixels.m_nHeight = image.m_nHeight;
  pixels.m_pBytes.reset(static_cast<unsigned char*>(std::exchange(image.m_pPixels, nullptr)));
  return pixels;
}

void DisposeImage(QXC::QXImageData* pImage) {
  if (pImage == nullptr) return;
  delete[] static_cast<unsigned char*>(pImage->m_pPixels);
  delete pImage;
}

bool HasTransparentPixels(QXPixels const& pixels) {
  for (std::size_t i = 0; i < pixels.GetPixelCount(); ++i)
    if (pixels.m_pBytes[4 * i + 3] != 255) return true;
  return false;
}

std::string TakePictureReason() {
  std::string strReason = Narrow(QXC::QXFileParseToolkit::GetErrorText());
  return strReason.empty() ? "it is broken or larger than the library reads" : strReason;
}

std::string AddPictureAdvice(std::string const& strReason) {
  return strReason.find(';') != std::string::npos ? strReason : strReason + "; get another copy of the picture";
}

std::string ReadPixels(std::string const& strPath, QXPixels& pixels) {
  QdcUnicodeString const strWidePath = QdcUnicodeString::FromUTF8(strPath.c_str());
  int const nType = QXC::QXFileParseToolkit::GetFileTypeByExtName(strWidePath);
  std::string strReason = CheckFile(strPath, nType);
  if (strReason.empty())
    strReason =
        nType == QXFileType::EM_IMAGE_GIF ? ReadFirstFrame(strWidePath, pixels) : ReadStill(strWidePath, pixels);
  if (strReason.empty() && (pixels.m_pBytes == nullptr || pixels.GetPixelCount() == 0)) strReason = "it holds no image";
  return strReason.empty() ? strReason : AddPictureAdvice(strReason);
}

}  // namespace QXApp
