#include <apps/qx3d/QXPixels.h>

#include <tests/assimp/QXTestFiles.h>
#include <tests/qx3d/QXGifMaker.h>

#include <gtest/gtest.h>

namespace QXApp {
namespace {

using Folder = QXAssimp::QXTestFolder;

TEST(QXPixels, PictureKeepsItsOwnSize) {
  Folder const folder;
  // 3 x 1 pixels of 24 bits, no power of two: blue, green, red.
  std::vector<unsigned char> const vecTga{
      0, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 3, 0, 1, 0, 24, 0x20, 1, 2, 3, 4, 5, 6, 7, 8, 9};
  QXPixels pixels;
  EXPECT_EQ(ReadPixels(folder.Write("three.tga", vecTga), pixels), "");
  ASSERT_EQ(pixels.m_nWidth, 3u);
  ASSERT_EQ(pixels.m_nHeight, 1u);
  EXPECT_FALSE(HasTransparentPixels(pixels));
  for (unsigned int x = 0; x < 3; ++x)
    for (unsigned int i = 0; i < 3; ++i) EXPECT_EQ(pixels.At(x, 0)[i], 3 * x + i + 1);
}

TEST(QXPixels, AnimatedPictureGivesItsFirstFrame) {
  Folder const folder;
  QXPixels pixels;
  EXPECT_EQ(ReadPixels(folder.Write("three.gif", MakeGif({0, 1, 2}, 25)), pixels), "");
  EXPECT_EQ(pixels.m_nWidth, 8u);
  EXPECT_EQ(pixels.m_nHeight, 8u);
}

TEST(QXPixels, BadPicturesAreToldWithAnAdvice) {
  Folder const folder;
  auto const expect = [](std::string const& strPath, char const* szPart) {
    QXPixels pixels;
    std::string const strReason = ReadPixels(strPath, pixels);
    EXPECT_NE(strReason.find(szPart), std::string::npos) << strReason;
    EXPECT_NE(strReason.find(';'), std::string::npos) << strReason;
    EXPECT_EQ(pixels.m_pBytes, nullptr) << strPath;
  };
  expect(folder.Path("none.png"), "no such file");
  expect(folder.Path(), "no regular file");
  expect(folder.Write("text.txt", "x"), "unknown kind");
  expect(folder.Write("texture.ktx2", "x"), "convert it to PNG");
  expect(folder.Write("broken.png", "x"), ";");
  expect(folder.Write("empty.gif", ""), ";");
  expect(folder.Write("broken.gif", "GIF89a"), ";");
}

TEST(QXPixels, KindsThatAreToldAsReadableAre) {
  Folder const folder;
  QXPixels pixels;
  std::string const strReason = ReadPixels(folder.Write("text.txt", "x"), pixels);
  EXPECT_NE(strReason.find(" .png"), std::string::npos) << strReason;
  EXPECT_NE(strReason.find(" .gif"), std::string::npos) << strReason;
  EXPECT_EQ(strReason.find(".ktx2"), std::string::npos) << strReason;
}

}  // namespace
}  // namespace QXApp
