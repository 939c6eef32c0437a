#include <QxGraphics3D/texture/QXTexture.h>

#include <QxGraphics3D/frame/foundation/base3d/QXImageData.h>
#include <QxGraphics3D/frame/foundation/base3d/QXTextureData.h>
#include <QxGraphics3D/frame/foundation/base3d/QXTextureDataAnimation.h>

#include <tests/QXBareTexture.h>
#include <tests/foundation/stream/QXUnprivileged.h>
#include <tests/foundation/toolkit/QXTestFolder.h>
#include <tests/texture/QXSmallFiles.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include <sys/stat.h>

namespace QXC {
namespace {

std::string const Orange = "\x10\x80\xF0";

/// What no road makes a picture of: the member load succeeds with nothing, the others fail.
void ExpectNoPicture(QdcUnicodeString const& strPath) {
  QXBareTexture texture;
  EXPECT_EQ(texture.LoadImageData(strPath, 0, 0, 1), 1);
  EXPECT_EQ(texture.m_bLoadedImage, 0);
  EXPECT_EQ(texture.m_TextureData.m_pPixels, nullptr);
  QXImageData* pImage = nullptr;
  EXPECT_EQ(QXTexture::LoadImageData(strPath, 0, pImage, 0), 0);
  EXPECT_EQ(pImage, nullptr);
  EXPECT_EQ(QXTexture::LoadImageDataEx(strPath, nullptr), nullptr);
  std::unique_ptr<QXTextureData> const pData(QXTexture::GetTextureData(strPath));
  ASSERT_NE(pData, nullptr);
  EXPECT_EQ(pData->m_pPixels, nullptr);
  EXPECT_EQ(QXTexture::GetTextureDataAnimation(strPath), nullptr);
}

TEST(QXTextureLoadFile, OfAPictureSucceedsOnEveryRoad) {
  QXTestFolder const folder;
  QdcUnicodeString const strPath = Wide(folder.Write("\xC3\xA4 b.BMP", MakeBitmap(12, 5, Orange)));
  QXBareTexture texture;
  EXPECT_EQ(texture.LoadImageData(strPath, 0, 0, 0), 1);
  EXPECT_EQ(texture.m_TextureData.m_eFormat, PF_R8G8B8);
  EXPECT_EQ(texture.m_TextureData.m_nWidth, 16u);
  EXPECT_EQ(texture.m_TextureData.m_nHeight, 8u);
  EXPECT_EQ(texture.m_TextureData.m_pPixels[0], 0x10);
  EXPECT_EQ(texture.m_TextureData.m_pPixels[16 * 8 * 3 - 1], 0xF0);
  QXImageData* pImage = nullptr;
  ASSERT_EQ(QXTexture::LoadImageData(strPath, 0, pImage, 0), 1);
  EXPECT_EQ(pImage->m_nWidth, 12u);
  EXPECT_EQ(texture.SetTextureData(pImage, 0, 0, 0, 1), 1);
  EXPECT_EQ(texture.m_bHasTransparentData, 0);
  pImage = QXTexture::LoadImageDataEx(strPath + L".|temp", nullptr);
  ASSERT_NE(pImage, nullptr);
  EXPECT_EQ(pImage->m_nBitDepth, 24);
  EXPECT_EQ(texture.SetTextureData(pImage, 0, 0, 0, 0), 1);
  std::unique_ptr<QXTextureData> const pData(QXTexture::GetTextureData(strPath));
  ASSERT_NE(pData, nullptr);
  EXPECT_EQ(pData->m_nWidth, 16u);
  EXPECT_EQ(pData->m_pPixels[3], 255);
}

std::unique_ptr<QXTextureData> FromMemory(std::string const& strBytes) {
  return std::unique_ptr<QXTextureData>(
      QXTexture::GetTextureDataFromMemory(reinterpret_cast<unsigned char const*>(strBytes.data()), strBytes.size()));
}

TEST(QXTextureLoadFile, OfAPictureInMemoryIsThatOfTheFile) {
  std::unique_ptr<QXTextureData> const pData = FromMemory(MakeBitmap(12, 5, Orange));
  ASSERT_NE(pData, nullptr);
  EXPECT_EQ(pData->m_eFormat, PF_A8R8G8B8);
  EXPECT_EQ(pData->m_nWidth, 16u);
  EXPECT_EQ(pData->m_nHeight, 8u);
  EXPECT_EQ(pData->GetBlockLength(), 16u * 8u * 4u);
  EXPECT_EQ(pData->m_pPixels[0], 0x10);
  EXPECT_EQ(pData->m_pPixels[2], 0xF0);
  EXPECT_EQ(pData->m_pPixels[3], 255);
}

TEST(QXTextureLoadFile, OfARawTypeInMemoryKeepsItsBytes) {
  std::string const strGif = "GIF89a and the rest";
  std::unique_ptr<QXTextureData> const pData = FromMemory(strGif);
  ASSERT_NE(pData, nullptr);
  EXPECT_EQ(pData->m_nCompression, static_cast<unsigned int>(TEXTURE_COMPRESSION_RAW));
  EXPECT_EQ(pData->m_nDataSize, strGif.size());
  EXPECT_EQ(pData->GetBlockLength(), strGif.size());
  EXPECT_EQ(std::string(pData->m_pPixels, pData->m_pPixels + strGif.size()), strGif);
}

TEST(QXTextureLoadFile, OfNoPictureInMemoryBringsNothing) {
  EXPECT_EQ(QXTexture::GetTextureDataFromMemory(nullptr, 0), nullptr);
  EXPECT_EQ(FromMemory("no picture"), nullptr);
  EXPECT_EQ(FromMemory(MakeBitmap(12, 5, Orange).substr(0, 20)), nullptr);
}

TEST(QXTextureLoadFile, OfWhatIsNoFileBringsNothing) {
  QXTestFolder const folder;
  ASSERT_EQ(mkfifo((folder.GetPath() / "pipe.png").c_str(), 0600), 0);
  std::filesystem::create_directories(folder.GetPath() / "folder.png");
  std::filesystem::create_symlink("/dev/zero", folder.GetPath() / "device.png");
  for (char const* szName : {"pipe.png", "folder.png", "device.png", "missing.png"}) {
    SCOPED_TRACE(szName);
    ExpectNoPicture(Wide(folder.GetPath() / szName));
  }
}

TEST(QXTextureLoadFile, OfAForbiddenFileBringsNothing) {
  QXTestFolder const folder;
  std::filesystem::path const path = folder.Write("secret.bmp", MakeBitmap(4, 4, Orange));
  ASSERT_EQ(chmod(folder.GetPath().c_str(), 0755), 0);
  ASSERT_EQ(chmod(path.c_str(), 0), 0);
  QXUnprivileged const user;
  ExpectNoPicture(Wide(path));
}

// The extension names the type; a reader that took what it can get would show pictures under names that no other
// program opens.
TEST(QXTextureLoadFile, OfBytesOfAnotherTypeBringsNothing) {
  QXTestFolder const folder;
  std::string const strBitmap = MakeBitmap(4, 4, Orange);
  for (char const* szName : {"a.png", "a.jpg", "a.jpeg", "a.tif", "a.tiff", "a.webp", "a.hdr", "a.psd", "a.tga"}) {
    SCOPED_TRACE(szName);
    ExpectNoPicture(Wide(folder.Write(szName, strBitmap)));
  }
  ExpectNoPicture(Wide(folder.Write("a.bmp", MakeTarga(4, 4, "abcd"))));
}

TEST(QXTextureLoadFile, OfACutFileBringsNothingAtEveryLength) {
  QXTestFolder const folder;
  std::string const strBitmap = MakeBitmap(4, 4, Orange);
  for (std::size_t nLength = 0; nLength < strBitmap.size(); ++nLength) {
    SCOPED_TRACE(nLength);
    ExpectNoPicture(Wide(folder.Write("cut.bmp", std::string_view(strBitmap).substr(0, nLength))));
  }
}

}  // namespace
}  // namespace QXC
