// The glyph atlas in memory: its images.
#include "QXFontAtlasFixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <type_traits>
#include <vector>

namespace QXC {
namespace {

class QXMemoryTextureFontManagerTest : public QXFontAtlas<QXMemoryTextureFontManager> {
protected:
  QXTextureFont* Get(int nNumber, int nWidth, int nHeight, unsigned char nCoverage) {
    return GetShaped(m_Manager, Blank(nNumber), nWidth, nHeight, nCoverage);
  }
  QXTextureData* Image(int nIndex) { return m_Manager.GetTextureDataFromMemory(PageName(nIndex)); }
  /// Byte of luminance of a pixel.
  int Pixel(int nX, int nY, int nIndex = 0) { return Image(nIndex)->m_pPixels[(nY * 1024 + nX) * 2]; }
};

TEST_F(QXMemoryTextureFontManagerTest, NewPageIsAnEmptyImage) {
  Get(1, 10, 10, 9);
  QXTextureData const* const pImage = Image(0);
  ASSERT_NE(pImage, nullptr);
  EXPECT_EQ(pImage->m_nWidth, 1024u);
  EXPECT_EQ(pImage->m_nHeight, 1024u);
  EXPECT_EQ(pImage->m_eFormat, PF_BYTE_LA);
  EXPECT_EQ(pImage->m_nCompression, 0u);
  EXPECT_TRUE(
      std::all_of(pImage->m_pPixels, pImage->m_pPixels + 2097152, [](unsigned char nByte) { return nByte == 0; }));
}

TEST_F(QXMemoryTextureFontManagerTest, UnknownNamesGiveNull) {
  Get(1, 10, 10, 9);
  EXPECT_EQ(Image(1), nullptr);
  EXPECT_EQ(m_Manager.GetTextureDataFromMemory(L""), nullptr);
  EXPECT_EQ(m_Manager.GetTextureDataFromMemory(L"Font_BigTexture_00"), nullptr);
}

TEST_F(QXMemoryTextureFontManagerTest, ImagesAreFoundWithoutALockAndEverythingElseHoldsTheMutex) {
  Shape(m_Manager, Blank(1), 10, 10);
  QXToldLocks const locks(m_Textures);
  auto const told = [](auto call) {
    GetTold().clear();
    call();
    return GetTold();
  };
  auto const locked = testing::ElementsAre("atlas(", "atlas)");
  EXPECT_THAT(told([&] { m_Manager.GetCharBitmapData(Blank(1), QXTextStyle()); }), locked);
  EXPECT_THAT(told([&] { m_Manager.GetTextureFont(Blank(1), QXTextStyle()); }), locked);
  EXPECT_THAT(told([&] { m_Manager.AddCharBitmapToTexture(); }), locked);
  EXPECT_THAT(told([&] { Image(0); }), testing::IsEmpty());
  EXPECT_THAT(told([&] { m_Manager.DelTextureFont(Blank(1)); }), locked);
  EXPECT_THAT(told([&] { m_Manager.Clear(); }), locked);
}

TEST_F(QXMemoryTextureFontManagerTest, RowsAreCopiedTopDownToTheTile) {
  Get(1, 10, 10, 9);
  QXTextureFont const* const pFont = Get(2, 3, 12, 0);
  ASSERT_EQ(pFont->m_Key.GetLeft(), 16);
  QXCharBitmapData const* const pBitmap = m_Manager.GetCharBitmapData(Blank(2), QXTextStyle());
  for (int i = 0; i < 3 * 12 * 2; ++i) pBitmap->m_pData[i] = static_cast<unsigned char>(100 + i);
  m_Manager.AddCharBitmapToTexture();
  std::vector<unsigned char> arrExpected(2097152);
  for (int nRow = 0; nRow < 10; ++nRow) std::fill_n(arrExpected.begin() + nRow * 2048, 20, 9);
  for (int nRow = 0; nRow < 12; ++nRow) {
    for (int i = 0; i < 6; ++i) {
      arrExpected[static_cast<std::size_t>(nRow * 2048 + 32 + i)] = static_cast<unsigned char>(100 + nRow * 6 + i);
    }
  }
  EXPECT_TRUE(std::equal(arrExpected.begin(), arrExpected.end(), Image(0)->m_pPixels));
}

TEST_F(QXMemoryTextureFontManagerTest, GlyphsAreCopiedOnceAndInTheOrderOfTheirKeys) {
  Get(5, 10, 10, 50);
  Get(6, 10, 10, 60);
  Get(3, 20, 20, 30);
  m_Manager.DelTextureFont(Blank(5));
  // Over the tile at (16, 0), which stays: the pixels of both lie there, and the greater key comes last.
  QXTextureFont const* const pOver = Get(4, 20, 20, 40);
  ASSERT_EQ(pOver->m_Key.m_nKey, Location(16, 16, 5, 0));
  m_Manager.AddCharBitmapToTexture();
  EXPECT_EQ(Pixel(0, 0), 40);
  EXPECT_EQ(Pixel(16, 0), 60);
  EXPECT_EQ(Pixel(16, 10), 40);
  EXPECT_EQ(Pixel(32, 0), 30);
  Image(0)->m_pPixels[0] = 1;
  m_Manager.AddCharBitmapToTexture();
  EXPECT_EQ(Pixel(0, 0), 1);
}

TEST_F(QXMemoryTextureFontManagerTest, PixelsOfAReleasedGlyphStayUntilOthersCome) {
  Get(1, 10, 10, 70);
  Get(2, 10, 10, 80);
  m_Manager.AddCharBitmapToTexture();
  m_Manager.DelTextureFont(Blank(1));
  EXPECT_EQ(Pixel(9, 9), 70);
  EXPECT_EQ(Get(3, 9, 9, 90)->m_Key.m_nKey, Location(8, 8, 6, 0));
  m_Manager.AddCharBitmapToTexture();
  EXPECT_EQ(Pixel(8, 8), 90);
  EXPECT_EQ(Pixel(9, 9), 70);
}

TEST_F(QXMemoryTextureFontManagerTest, GlyphThatWasReleasedBeforeTheUploadIsNeverCopied) {
  Get(1, 10, 10, 70);
  Get(2, 10, 10, 80);
  m_Manager.DelTextureFont(Blank(1));
  m_Manager.AddCharBitmapToTexture();
  EXPECT_EQ(Pixel(0, 0), 0);
  EXPECT_EQ(Pixel(16, 0), 80);
}

TEST_F(QXMemoryTextureFontManagerTest, LastGlyphTakesTheImageAlong) {
  Get(1, 10, 10, 9);
  m_Manager.DelTextureFont(Blank(1));
  EXPECT_EQ(Image(0), nullptr);
  m_Manager.AddCharBitmapToTexture();
  EXPECT_EQ(Image(0), nullptr);
}

TEST_F(QXMemoryTextureFontManagerTest, ClearDeletesTheImages) {
  Get(1, 10, 10, 9);
  Get(2, 1000, 2, 9);
  ASSERT_NE(Image(1), nullptr);
  m_Manager.Clear();
  EXPECT_EQ(Image(0), nullptr);
  EXPECT_EQ(Image(1), nullptr);
  m_Manager.AddCharBitmapToTexture();
  EXPECT_EQ(Image(0), nullptr);
}

TEST_F(QXMemoryTextureFontManagerTest, BothManagersKeepTheirOwnGlyphs) {
  QXTextureFontManager manager;
  manager.SetTextureManager(&m_Textures);
  QXTextureFont const* const pFirst = Get(1, 10, 10, 9);
  QXTextureFont const* const pSecond = GetShaped(manager, Blank(1), 20, 20);
  EXPECT_NE(pFirst, pSecond);
  EXPECT_EQ(pFirst->m_nRefCount, 1);
  EXPECT_EQ(pSecond->m_Key.m_nKey, Location(16, 16, 5, 0));
}

TEST_F(QXMemoryTextureFontManagerTest, NoGlyphGetsAPlaceBehindPage255) {
  for (int i = 0; i < 256; ++i) {
    ASSERT_NE(Get(i, 1023, 1, 9), nullptr);
    Image(i)->Release();
  }
  EXPECT_EQ(Get(1000, 10, 10, 9), nullptr);
  EXPECT_EQ(Image(256), nullptr);
  EXPECT_EQ(Get(1001, 0, 0, 9), nullptr);
  EXPECT_NE(Image(256), nullptr);
  EXPECT_EQ(Get(1002, 10, 10, 9), nullptr);
}

}  // namespace
}  // namespace QXC
