#include <apps/qx3d/QXModelPictures.h>

#include <apps/qx3d/QXHostTexture.h>
#include <apps/qx3d/QXMessage.h>
#include <apps/qx3d/QXNewFile.h>
#include <apps/qx3d/QXPixels.h>
#include <apps/qx3d/QXPngWriter.h>
#include <apps/qx3d/QXWholeFile.h>

#include <QxGraphics3D/frame/foundation/base3d/QXImageData.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMathEngine.h>
#include <QxGraphics3D/frame/foundation/fileparser/ModelDataInfo.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseToolkit.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileType.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXModelImage.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXModelMesh.h>
#include <QxGraphics3D/frame/foundation/geometry/QXGeoPicture.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <utility>

namespace QXApp {

namespace {

using QXC::QdcUnicodeString;
using QXC::QXFileType;

/// Every device takes textures of this edge, and a picture of twice the edge has a gigabyte.
constexpr unsigned int MaxEdge = 8192;

/// Textures have power-of-two edges; the picture is stretched, so that its coordinates stay true.
bool Stretch(QXPixels& pixels) {
  unsigned int const nWidth = std::min(QXC::QXMathEngine::NextP2(std::min(pixels.m_nWidth, MaxEdge)), MaxEdge);
  unsigned int const nHeight = std::min(QXC::QXMathEngine::NextP2(std::min(pixels.m_nHeight, MaxEdge)), MaxEdge);
  if (nWidth == pixels.m_nWidth && nHeight == pixels.m_nHeight) return true;
  QXPixels target = MakePixels(nWidth, nHeight);
  if (QXC::QXMathEngine::ScaleImageInternal(4, static_cast<int>(pixels.m_nWidth), static_cast<int>(pixels.m_nHeight),
          pixels.m_pBytes.get(), static_cast<int>(nWidth), static_cast<int>(nHeight), target.m_pBytes.get(), -1) == 0)
    return false;
  pixels = std::move(target);
  return true;
}

/// A copy that holds the picture and its mirror images.
QXPixels CopyMirrored(QXPixels const& source, bool bMirrorU, bool bMirrorV) {
  QXPixels target = MakePixels(source.m_nWidth * (bMirrorU ? 2 : 1), source.m_nHeight * (bMirrorV ? 2 : 1));
  for (unsigned int y = 0; y < target.m_nHeight; ++y) {
    unsigned int const nRow = y < source.m_nHeight ? y : target.m_nHeight - 1 - y;
    unsigned char const* pSource = source.m_pBytes.get() + std::size_t{4} * source.m_nWidth * nRow;
    unsigned char* pTarget = target.m_pBytes.get() + std::size_t{4} * target.m_nWidth * y;
    std::memcpy(pTarget, pSource, std::size_t{4} * source.m_nWidth);
    for (unsigned int x = source.m_nWidth; x < target.m_nWidth; ++x)
      std::memcpy(pTarget + std::size_t{4} * x, pSource + std::size_t{4} * (target.m_nWidth - 1 - x), 4);
  }
  return target;
}

void ApplyAlpha(QXTextureKey const& key, QXPixels& pixels) {
  if (key.m_eAlpha == QXC::QX_ALPHA_AUTO) return;
  for (std::size_t i = 0; i < pixels.GetPixelCount(); ++i) {
    unsigned char& nAlpha = pixels.m_pBytes[4 * i + 3];
    nAlpha = key.m_eAlpha == QXC::QX_ALPHA_OPAQUE || nAlpha >= key.m_nThreshold ? 255 : 0;
  }
}

}  // namespace

/// What a picture became; of the three forms one is filled.
struct QXModelPictures::Picture {
  /// Where its texture's name begins.
  std::string m_strName;
  bool m_bUsable = false;
  bool m_bTransparent = false;
  QXPixels m_Still;
  std::vector<unsigned char> m_vecAnimation;
  std::unique_ptr<QXHostTexture> m_pKtx2;

  /// @return  empty, or the reason
  std::string Load(QXC::QXModelImage const& image);

private:
  std::string LoadFile(QdcUnicodeString const& strPath);
  std::string LoadBytes(unsigned char const* pBytes, QXUInt64 nSize);
  std::string LoadAnimation(unsigned char const* pBytes, QXUInt64 nSize);
  std::string LoadKtx2(QdcUnicodeString const& strPath);
  std::string SetStill(QXPixels&& pixels);
};

std::string QXModelPictures::Picture::Load(QXC::QXModelImage const& image) {
  std::string strReason;
  if (image.m_arrBytes.GetSize() > 0)
    strReason = LoadBytes(image.m_arrBytes.GetData(), image.m_arrBytes.GetSize());
  else if (image.m_strFilePath.IsEmpty())
    strReason = "the model carries no picture under this name; export it again";
  else
    strReason = LoadFile(image.m_strFilePath);
  m_bUsable = strReason.empty();
  return m_bUsable ? strReason : AddPictureAdvice(strReason);
}

std::string QXModelPictures::Picture::LoadFile(QdcUnicodeString const& strPath) {
  int const nType = QXC::QXFileParseToolkit::GetFileTypeByExtName(strPath);
  std::error_code error;
  std::filesystem::file_status const status = std::filesystem::status(Narrow(strPath), error);
  if (!std::filesystem::exists(status)) return "no such file; put it beside the model";
  if (!std::filesystem::is_regular_file(status)) return "this is no regular file; name a picture";
  if (QXFileType::IsImageType(nType) == 0) return "unknown kind of picture; readable are" + ListImageKinds();
  if (nType == QXFileType::EM_IMAGE_KTX2) return LoadKtx2(strPath);
  if (nType == QXFileType::EM_IMAGE_GIF) {
    std::unique_ptr<QXC::QXTextureData> const pFile(QXC::QXTexture::GetTextureData(strPath));
    if (pFile == nullptr || pFile->m_pPixels == nullptr) return "it cannot be read; change its permissions";
    return LoadAnimation(pFile->m_pPixels, pFile->m_nDataSize);
  }
  QXC::QXImageData* pImage = nullptr;
  if (QXC::QXTexture::LoadImageData(strPath, 0, pImage, 0) == 0 || pImage == nullptr) return TakePictureReason();
  QXPixels pixels = TakePixels(*pImage);
  DisposeImage(pImage);
  return SetStill(std::move(pixels));
}

std::string QXModelPictures::Picture::LoadBytes(unsigned char const* pBytes, QXUInt64 nSize) {
  int const nType = QXC::QXFileParseToolkit::GetFileTypeByContent(pBytes, nSize);
  if (nType == QXFileType::EM_IMAGE_GIF) return LoadAnimation(pBytes, nSize);
  QXC::QdcArray<QXC::QXImageData*> arrImages;
  if (QXC::QXFileParseToolkit::GetImageDataFromMemory(pBytes, nSize, arrImages) == 0)
    return nType < 0 ? "unknown kind of picture; readable are" + ListImageKinds() : TakePictureReason();
  QXPixels pixels;
  if (arrImages.GetSize() > 0 && arrImages[0] != nullptr) pixels = TakePixels(*arrImages[0]);
  for (QXC::QXImageData* pImage : arrImages) DisposeImage(pImage);
  return SetStill(std::move(pixels));
}

/// All frames are looked at once, so that a broken file is told from here and not by a hole in the model. One that does
/// not move is a still picture.
std::string QXModelPictures::Picture::LoadAnimation(unsigned char const* pBytes, QXUInt64 nSize) {
  QXC::QdcArray<QXC::QXGeoPicture*> arrFrames;
  std::string strReason;
  if (QXC::QXFileParseToolkit::GetDynamicIMGDataFromMemory(pBytes, nSize, arrFrames, 0) == 0)
    strReason = TakePictureReason();
  QXPixels first;
  if (arrFrames.GetSize() > 0 && arrFrames[0]->GetImage() != nullptr) {
    // The clear pixels of any frame show what is behind the picture.
    for (QXC::QXGeoPicture* pFrame : arrFrames) {
      QXPixels frame;
      if (pFrame->GetImage() != nullptr) frame = TakePixels(*pFrame->GetImage());
      if (frame.m_pBytes == nullptr) continue;
      m_bTransparent = m_bTransparent || HasTransparentPixels(frame);
      if (first.m_pBytes == nullptr) first = std::move(frame);
    }
  }
  std::size_t const nFrames = arrFrames.GetSize();
  for (QXC::QXGeoPicture* pFrame : arrFrames) delete pFrame;
  if (!strReason.empty()) return strReason;
  if (nFrames < 2) return SetStill(std::move(first));
  m_vecAnimation.assign(pBytes, pBytes + nSize);
  return std::string();
}

std::string QXModelPictures::Picture::LoadKtx2(QdcUnicodeString const& strPath) {
  auto pTexture = std::make_unique<QXHostTexture>();
  // The parsers know nothing of this road; their reason would be that of an earlier picture.
  if (pTexture->LoadKTX2(strPath) == 0)
    return "it is broken, larger than the library reads or of a kind that is not read";
  m_pKtx2 = std::move(pTexture);
  return std::string();
}

std::string QXModelPictures::Picture::SetStill(QXPixels&& pixels) {
  if (pixels.m_pBytes == nullptr || pixels.GetPixelCount() == 0 || !Stretch(pixels)) return "it holds no image";
  m_Still = std::move(pixels);
  m_bTransparent = HasTransparentPixels(m_Still);
  return std::string();
}

QXModelPictures::QXModelPictures() = default;
QXModelPictures::QXModelPictures(QXModelPictures&&) noexcept = default;
QXModelPictures& QXModelPictures::operator=(QXModelPictures&&) noexcept = default;
QXModelPictures::~QXModelPictures() = default;

void QXModelPictures::Load(QXC::ModelDataInfo const& model, std::vector<std::string>& vecProblems) {
  m_vecPictures.clear();
  m_vecPictures.resize(static_cast<std::size_t>(model.GetImageCount()));
  for (int i = 0; i < model.GetMeshCount(); ++i) {
    int const nImage = model.GetMesh(i)->m_Texture.m_nImage;
    QXC::QXModelImage const* pImage = model.GetImage(nImage);
    if (pImage == nullptr || m_vecPictures[static_cast<std::size_t>(nImage)] != nullptr) continue;
    auto pPicture = std::make_unique<Picture>();
    bool const bFile = !pImage->m_strFilePath.IsEmpty();
    pPicture->m_strName =
        bFile ? Narrow(pImage->m_strFilePath) : Narrow(model.GetName()) + "|" + std::to_string(nImage);
    std::string const strReason = pPicture->Load(*pImage);
    if (!strReason.empty()) {
      std::string const strShown = bFile ? Narrow(pImage->m_strFilePath) : Narrow(pImage->m_strName);
      vecProblems.push_back("picture " + (strShown.empty() ? std::to_string(nImage) : strShown) + ": " + strReason);
    }
    m_vecPictures[static_cast<std::size_t>(nImage)] = std::move(pPicture);
  }
}

int QXModelPictures::AddFile(std::string const& strPath, std::vector<std::string>& vecProblems) {
  QXC::QXModelImage image;
  image.m_strFilePath = QdcUnicodeString::FromUTF8(strPath.c_str());
  auto pPicture = std::make_unique<Picture>();
  pPicture->m_strName = strPath;
  std::string const strReason = pPicture->Load(image);
  if (!strReason.empty()) {
    vecProblems.push_back("picture " + strPath + ": " + strReason);
    return -1;
  }
  m_vecPictures.push_back(std::move(pPicture));
  return static_cast<int>(m_vecPictures.size()) - 1;
}

bool QXModelPictures::IsUsable(int nImage) const {
  auto const nIndex = static_cast<std::size_t>(nImage);
  return nImage >= 0 && nIndex < m_vecPictures.size() && m_vecPictures[nIndex] != nullptr &&
         m_vecPictures[nIndex]->m_bUsable;
}

bool QXModelPictures::IsTransparent(int nImage) const {
  return IsUsable(nImage) && m_vecPictures[static_cast<std::size_t>(nImage)]->m_bTransparent;
}

bool QXModelPictures::IsAnimated(int nImage) const {
  return IsUsable(nImage) && !m_vecPictures[static_cast<std::size_t>(nImage)]->m_vecAnimation.empty();
}

bool QXModelPictures::IsStill(int nImage) const {
  return IsUsable(nImage) && m_vecPictures[static_cast<std::size_t>(nImage)]->m_Still.m_pBytes != nullptr;
}

bool QXModelPictures::HasAnimated() const {
  for (std::size_t i = 0; i < m_vecPictures.size(); ++i)
    if (IsAnimated(static_cast<int>(i))) return true;
  return false;
}

std::string QXModelPictures::GetTextureName(QXTextureKey const& key) const {
  std::string strName = m_vecPictures[static_cast<std::size_t>(key.m_nImage)]->m_strName;
  if (key.m_bRepeat) strName += "|repeat";
  if (key.m_bMirrorU) strName += "|mirror-u";
  if (key.m_bMirrorV) strName += "|mirror-v";
  if (key.m_eAlpha == QXC::QX_ALPHA_OPAQUE) strName += "|opaque";
  if (key.m_eAlpha == QXC::QX_ALPHA_MASK) strName += "|mask-" + std::to_string(key.m_nThreshold);
  return strName;
}

std::string QXModelPictures::GetWrittenExtension(QXTextureKey const& key) const {
  Picture const& picture = *m_vecPictures[static_cast<std::size_t>(key.m_nImage)];
  if (picture.m_pKtx2 != nullptr) return ".ktx2";
  return picture.m_vecAnimation.empty() ? ".png" : ".gif";
}

std::string QXModelPictures::Write(QXTextureKey const& key, std::string const& strPath) const {
  Picture const& picture = *m_vecPictures[static_cast<std::size_t>(key.m_nImage)];
  if (!picture.m_vecAnimation.empty())
    return WriteNewFile(strPath, picture.m_vecAnimation.data(), picture.m_vecAnimation.size());
  if (picture.m_pKtx2 != nullptr) {
    // Blocks for the device have no other form than that of their file.
    std::string strBytes;
    std::string const strReason = ReadWholeFile(picture.m_strName, 1024, "picture", strBytes);
    return strReason.empty() ? WriteNewFile(strPath, strBytes.data(), strBytes.size()) : strReason;
  }
  QXPixels pixels = CopyMirrored(picture.m_Still, key.m_bMirrorU, key.m_bMirrorV);
  ApplyAlpha(key, pixels);
  return QXPngWriter::WriteWithAlpha(
      strPath, static_cast<int>(pixels.m_nWidth), static_cast<int>(pixels.m_nHeight), pixels.m_pBytes.get());
}

void QXModelPictures::Fill(QXTextureKey const& key, QXC::QXTexture& texture) const {
  Picture const& picture = *m_vecPictures[static_cast<std::size_t>(key.m_nImage)];
  texture.SetTextureMipMap(1);
  texture.SetTextureRepeatMode(key.m_bRepeat ? 1 : 0);
  if (key.m_eAlpha == QXC::QX_ALPHA_OPAQUE) texture.m_bHasTransparentData = 0;
  if (picture.m_pKtx2 != nullptr) {
    texture.SetTextureData(picture.m_pKtx2->m_TextureData);
    texture.SetMipmapOffset(picture.m_pKtx2->m_arrMipmapOffset);
    texture.m_bKtx2Flag = picture.m_pKtx2->m_bKtx2Flag;
    return;
  }
  if (!picture.m_vecAnimation.empty()) {
    QXC::QXTextureData file;
    file.m_pPixels = new unsigned char[picture.m_vecAnimation.size()];
    std::copy(picture.m_vecAnimation.begin(), picture.m_vecAnimation.end(), file.m_pPixels);
    file.m_nDataSize = static_cast<unsigned int>(picture.m_vecAnimation.size());
    file.m_nCompression = QXC::TEXTURE_COMPRESSION_RAW;
    texture.SetTextureData(file);
    return;
  }
  QXPixels pixels = CopyMirrored(picture.m_Still, key.m_bMirrorU, key.m_bMirrorV);
  ApplyAlpha(key, pixels);
  texture.m_bHasTransparentData = picture.m_bTransparent && key.m_eAlpha != QXC::QX_ALPHA_OPAQUE ? 1 : 0;
  texture.SetTextureData(static_cast<int>(pixels.m_nWidth), static_cast<int>(pixels.m_nHeight),
      pixels.m_pBytes.release(), QXC::TEXTURE_COMPRESSION_NONE, QXC::PF_A8R8G8B8);
  if (texture.m_bHasTransparentData != 0) texture.SetTranseparentPixelColor();
}

}  // namespace QXApp
