#include <QxGraphics3D/texture/QXTexture.h>

#include <QxGraphics3D/frame/foundation/base3d/QXMathEngine.h>
#include <QxGraphics3D/frame/foundation/base3d/detail/QXImageHolder.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXExchangeParamsManager.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseToolkit.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileType.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXImportParams.h>
#include <QxGraphics3D/frame/foundation/stream/QXFile.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXImageOperator.h>
#include <QxGraphics3D/texture/detail/QXLoadGuard.h>
#include <QxGraphics3D/texture/detail/QXLoadSource.h>

#include <climits>
#include <memory>

namespace QXC {

namespace {

/// What DecodeKTX2 is asked for and says.
constexpr int Ktx2BytesPerPixel = 4;
constexpr int Ktx2KindBc7 = 6;
constexpr int MaxMipLevels = 32;

struct DepthRule {
  QX3DPixelFormat m_eFormat;
  unsigned int m_nPixelSize;
};

/// The depth of 80 is one channel; a depth that no rule names counts as four.
DepthRule RuleOfDepth(unsigned char nBitDepth) {
  switch (nBitDepth) {
  case 8:
  case 80: return {PF_L8, 1};
  case 24: return {PF_R8G8B8, 3};
  default: return {PF_A8R8G8B8, 4};
  }
}

/// The length of a block for the resampler, which takes an int and -1 for "long enough".
int LengthArgument(QXUInt64 nLength, QXUInt64 nNeeded) {
  if (nLength <= INT_MAX) return static_cast<int>(nLength);
  return nLength >= nNeeded ? -1 : INT_MAX;
}

/// Resamples an image to power-of-two edges; null if the block cannot be had or the image's is too short.
std::unique_ptr<unsigned char[]> ResampleToPowersOfTwo(
    QXImageData const& image, unsigned int nPixelSize, unsigned int nNewWidth, unsigned int nNewHeight) {
  if (image.m_nWidth > INT_MAX || image.m_nHeight > INT_MAX || nNewWidth > INT_MAX || nNewHeight > INT_MAX)
    return nullptr;
  auto pBlock = detail::NewTextureBlock(nNewWidth, nNewHeight, nPixelSize);
  if (pBlock == nullptr) return nullptr;
  QXUInt64 const nLength = QXUInt64{image.m_nPitch} * image.m_nHeight;
  QXUInt64 const nNeeded = QXUInt64{image.m_nWidth} * image.m_nHeight * nPixelSize;
  unsigned char const bScaled =
      QXMathEngine::ScaleImageInternal(static_cast<int>(nPixelSize), static_cast<int>(image.m_nWidth),
          static_cast<int>(image.m_nHeight), static_cast<unsigned char const*>(image.m_pPixels),
          static_cast<int>(nNewWidth), static_cast<int>(nNewHeight), pBlock.get(), LengthArgument(nLength, nNeeded));
  if (bScaled == 0) return nullptr;
  return pBlock;
}

/// Makes an image's pixels those of the texture. Where both edges are powers of two already, the block itself changes
/// owner: what a decoder wrote is never copied.
bool TakeImage(QXTextureData& data, QXImageData& image) {
  DepthRule const rule = RuleOfDepth(image.m_nBitDepth);
  unsigned int const nNewWidth = QXMathEngine::NextP2(image.m_nWidth);
  unsigned int const nNewHeight = QXMathEngine::NextP2(image.m_nHeight);
  QXUInt64 nLength = QXUInt64{image.m_nPitch} * image.m_nHeight;
  if (nNewWidth == image.m_nWidth && nNewHeight == image.m_nHeight) {
    data.m_pPixels = static_cast<unsigned char*>(image.m_pPixels);
    image.m_pPixels = nullptr;
  } else {
    auto pBlock = ResampleToPowersOfTwo(image, rule.m_nPixelSize, nNewWidth, nNewHeight);
    if (pBlock == nullptr) return false;
    data.m_pPixels = pBlock.release();
    nLength = QXUInt64{nNewWidth} * nNewHeight * rule.m_nPixelSize;
  }
  data.m_eFormat = rule.m_eFormat;
  data.m_nWidth = nNewWidth;
  data.m_nHeight = nNewHeight;
  data.SetBlockLength(nLength);
  // What a KTX2 file that was here before has left would lie about the new block.
  data.m_nDataSize = 0;
  return true;
}

/// A list without an image, or with a first one that has no pixels, is a parser that brought nothing.
bool IsImage(QXImageData const* pImage) {
  return pImage != nullptr && pImage->m_pPixels != nullptr && pImage->m_nWidth > 0 && pImage->m_nHeight > 0;
}

unsigned char LoadByParser(
    QXTexture& texture, QdcUnicodeString const& strPath, unsigned char bFlag, unsigned char bWiden) {
  auto const pParams = detail::MakeLoadParams(QXFileType::ExtNameToFileType(QXFile::GetExt(strPath)), strPath);
  if (pParams == nullptr) return 0;
  QXTextureData& data = texture.m_TextureData;
  // Before the new image is made: the two together could be more than there is memory.
  if (data.m_pPixels != nullptr) data.Release();
  detail::QXImageList images;
  if (QXFileParseToolkit::GetImageData(pParams.get(), images.Items(), bFlag, -1) != 0 && IsImage(images.First())) {
    if (!TakeImage(data, *images.First())) return 0;
    // The texture's own compression counts, which loading an image does not write.
    if (bWiden != 0 && (data.m_eFormat == PF_R8G8B8 || data.m_eFormat == PF_B8G8R8) && data.m_nCompression == 0)
      data.RGBToRGBA();
    texture.m_bLoadedImage = 1;
  }
  texture.m_strTexFilePath = strPath;
  texture.m_strImgRealFilePath = strPath;
  return 1;
}

unsigned char LoadFile(QXTexture& texture, QdcUnicodeString const& strPath, unsigned char bFlag, unsigned char bWiden) {
  if (QXFile::GetExt(strPath).CompareNoCase(L".ktx2") != 0) return LoadByParser(texture, strPath, bFlag, bWiden);
  unsigned char const bLoaded = texture.LoadKTX2(strPath);
  // The texture keeps its name here: others find it in the cache under the picture that the KTX2 file stands for.
  if (bLoaded != 0) texture.m_strImgRealFilePath = strPath;
  return bLoaded;
}

unsigned char LoadLevels(QXTexture& texture, QdcUnicodeString const& strPath) {
  unsigned char* pPixels = nullptr;
  int nWidth = 0;
  int nHeight = 0;
  int nIgnored = 0;
  int nMipCount = 0;
  int nKind = 0;
  int nFormat = 0;
  int const nLength = QXImageOperator::DecodeKTX2(
      strPath, Ktx2BytesPerPixel, &pPixels, nWidth, nHeight, nIgnored, nMipCount, nKind, nFormat);
  std::unique_ptr<unsigned char[]> pHolder(pPixels);
  // Less than one level would leave the table of offsets empty, which it never is.
  if (nLength <= 0 || pPixels == nullptr || nMipCount < 1 || nMipCount > MaxMipLevels) return 0;
  texture.m_arrMipmapOffset.SetSize(static_cast<QXUInt64>(nMipCount));
  QXTextureData& data = texture.m_TextureData;
  if (data.m_pPixels != nullptr) data.Release();
  data.m_eFormat = static_cast<QX3DPixelFormat>(nFormat);
  data.m_pPixels = pHolder.release();
  data.m_nWidth = static_cast<unsigned int>(nWidth);
  data.m_nHeight = static_cast<unsigned int>(nHeight);
  data.m_nDataSize = static_cast<unsigned int>(nLength);
  data.SetBlockLength(static_cast<QXUInt64>(nLength));
  texture.m_bLoadedImage = 1;
  texture.m_bKtx2Flag = static_cast<unsigned char>(nKind == Ktx2KindBc7);
  return 1;
}

}  // namespace

unsigned char QXTexture::LoadImageData(
    QdcUnicodeString const& strPath, unsigned char /*bUnused*/, unsigned char bFlag, unsigned char bWiden) {
  if (strPath.IsEmpty() != 0) return 0;
  return detail::GuardLoad([&] { return LoadFile(*this, strPath, bFlag, bWiden); }, static_cast<unsigned char>(0));
}

unsigned char QXTexture::LoadImageData(unsigned char bUnused, unsigned char bFlag, unsigned char bWiden) {
  if (m_bLoadedImage != 0 || IsLoaded() != 0) return 1;
  return LoadImageData(m_strTexFilePath, bUnused, bFlag, bWiden);
}

unsigned char QXTexture::LoadKTX2(QdcUnicodeString const& strPath) {
  if (strPath.IsEmpty() != 0) return 0;
  return detail::GuardLoad([&] { return LoadLevels(*this, strPath); }, static_cast<unsigned char>(0));
}

}  // namespace QXC
