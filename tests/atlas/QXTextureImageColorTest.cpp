// From the bytes of an image to the colours of a big texture, as a device holds them.

#include "QXToldTextures.h"

#include <QxGraphics3D/atlas/QXTextureImageManager.h>
#include <QxGraphics3D/atlas/QXTextureImageManagerEx.h>
#include <QxGraphics3D/frame/foundation/base3d/QXImageData.h>
#include <QxGraphics3D/testing/QXNullTexture.h>
#include <QxGraphics3D/testing/QXNullTextureManager.h>

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace QXC {
namespace {

/// Red, green, blue, alpha.
using Color = std::array<int, 4>;

constexpr Color kRed{255, 0, 0, 255};
constexpr Color kGreen{0, 255, 0, 255};
constexpr Color kHalfBlue{0, 0, 255, 128};
constexpr Color kMagenta{255, 0, 255, 255};
constexpr Color kCyan{0, 255, 255, 255};

/// How a format stands in memory: which of the colour's parts is which byte.
struct Layout {
  int m_nFormat;
  std::vector<int> m_arrParts;
  Color m_Blank;
};

// The blank is one row of bytes for all of them: where alpha comes first it has another colour.
Layout const g_arrLayouts[] = {{10, {2, 1, 0}, kMagenta}, {11, {2, 1, 0}, kMagenta}, {12, {2, 1, 0, 3}, kMagenta},
    {13, {0, 1, 2, 3}, kMagenta}, {14, {3, 0, 1, 2}, kCyan}, {28, {2, 1, 0, 3}, kMagenta}};

// No colour anywhere, which the tests find at once.
Color At(QXImageData const& image, int nX, int nY) {
  int const nBytes = image.m_nBitDepth / 8;
  auto const* const p =
      static_cast<unsigned char const*>(image.m_pPixels) + static_cast<int>(image.m_nPitch) * nY + nX * nBytes;
  return nBytes >= 3 ? Color{p[2], p[1], p[0], nBytes == 4 ? p[3] : 255} : Color{-1, -1, -1, -1};
}

Color Opaque(Color color, Layout const& layout) {
  if (layout.m_arrParts.size() == 3) color[3] = 255;
  return color;
}

QXTextureData* MakePicture(Layout const& layout, unsigned int nSize, std::vector<Color> const& arrRows) {
  QXTextureData* const pData = MakeData(nSize, nSize, layout.m_nFormat, 0);
  unsigned char* pTo = pData->m_pPixels;
  for (unsigned int i = 0; i < nSize * nSize; ++i) {
    Color const& color = arrRows[i / nSize * arrRows.size() / nSize];
    for (int const nPart : layout.m_arrParts)
      *pTo++ = static_cast<unsigned char>(color[static_cast<std::size_t>(nPart)]);
  }
  return pData;
}

class QXTextureImageColorTest : public testing::TestWithParam<Layout> {
protected:
  QXTextureImageColorTest() { m_Manager.SetTextureManager(&m_Textures); }
  ~QXTextureImageColorTest() override { m_Manager.Clear(); }

  QXTextureImage* Place(wchar_t const* szName, unsigned int nSize, QXTextureData* pData) {
    QXTextureImage* const pImage = m_Manager.GetTextureImage(szName);
    pImage->m_nSize = nSize;
    pImage->m_pTextureData = pData;
    EXPECT_EQ(m_Manager.FindSpaceInBigTextures(pImage), 1);
    return pImage;
  }
  std::unique_ptr<QXImageData, void (*)(QXImageData*)> ReadBack(wchar_t const* szName) {
    return {m_Textures.GetTexture(szName, 0)->BlitToMemory(), [](QXImageData* pImage) {
              delete[] static_cast<unsigned char*>(pImage->m_pPixels);
              delete pImage;
            }};
  }

  QXNullTextureManager m_Textures{nullptr};
  QXTextureImageManager m_Manager;
};

INSTANTIATE_TEST_SUITE_P(Formats, QXTextureImageColorTest, testing::ValuesIn(g_arrLayouts),
    [](auto const& layout) { return "Format" + std::to_string(layout.param.m_nFormat); });

TEST_P(QXTextureImageColorTest, PicturesStandInTheirSlotsAndTheBlankAroundThem) {
  Layout const& layout = GetParam();
  Place(L"a", 64, MakePicture(layout, 64, {kRed, kGreen}));
  Place(L"b", 32, MakePicture(layout, 32, {kHalfBlue}));
  Place(L"c", 64, MakePicture(layout, 20, {kGreen, kRed}));
  m_Manager.LoadTexture();
  auto const pPage = ReadBack(L"Image_BigTexture_0");
  ASSERT_NE(pPage, nullptr);
  ASSERT_EQ(pPage->m_nWidth, 1024u);
  ASSERT_EQ(pPage->m_nHeight, 1024u);
  // Row 0 is the first one: of the first picture red is above green.
  struct Part {
    int m_nLeft, m_nTop, m_nRight, m_nBottom;
    Color m_Color;
  } const arrParts[] = {{0, 0, 64, 32, kRed}, {0, 32, 64, 64, kGreen}, {64, 0, 96, 32, kHalfBlue},
      {0, 64, 20, 74, kGreen}, {0, 74, 20, 84, kRed}};
  std::size_t nWrong = 0;
  for (int y = 0; y < 1024; ++y) {
    for (int x = 0; x < 1024; ++x) {
      Color expected = layout.m_Blank;
      for (Part const& part : arrParts) {
        if (x >= part.m_nLeft && x < part.m_nRight && y >= part.m_nTop && y < part.m_nBottom)
          expected = Opaque(part.m_Color, layout);
      }
      nWrong += At(*pPage, x, y) != expected;
    }
  }
  EXPECT_EQ(nWrong, 0u);
  for (wchar_t const* szName : {L"a", L"b", L"c"}) m_Manager.RemoveTextureImage(szName);
}

TEST_P(QXTextureImageColorTest, PictureOfAWholeBigTextureLeavesNoBlank) {
  Layout const& layout = GetParam();
  Place(L"a", 1024, MakePicture(layout, 1024, {kRed, kGreen, kHalfBlue, kRed}));
  m_Manager.LoadTexture();
  auto const pPage = ReadBack(L"Image_BigTexture_0");
  EXPECT_EQ(At(*pPage, 0, 0), Opaque(kRed, layout));
  EXPECT_EQ(At(*pPage, 1023, 511), Opaque(kGreen, layout));
  EXPECT_EQ(At(*pPage, 1023, 767), Opaque(kHalfBlue, layout));
  EXPECT_EQ(At(*pPage, 1023, 1023), Opaque(kRed, layout));
  m_Manager.RemoveTextureImage(L"a");
}

TEST_P(QXTextureImageColorTest, ReusedSlotShowsTheNewPicture) {
  Layout const& layout = GetParam();
  Place(L"a", 64, MakePicture(layout, 64, {kRed}));
  Place(L"b", 64, MakePicture(layout, 64, {kGreen}));
  m_Manager.LoadTexture();
  m_Manager.RemoveTextureImage(L"a");
  Place(L"c", 64, MakePicture(layout, 64, {kHalfBlue}));
  m_Manager.LoadTexture();
  auto const pPage = ReadBack(L"Image_BigTexture_0");
  EXPECT_EQ(At(*pPage, 63, 63), Opaque(kHalfBlue, layout));
  EXPECT_EQ(At(*pPage, 64, 0), Opaque(kGreen, layout));
}

TEST_P(QXTextureImageColorTest, BigTextureOfAnotherFormatLeftBehindIsNoTrap) {
  Layout const& layout = GetParam();
  Layout const& former = g_arrLayouts[layout.m_nFormat == 12 ? 0 : 2];
  Place(L"a", 64, MakePicture(former, 64, {kRed}));
  m_Manager.LoadTexture();
  m_Manager.Clear();
  Place(L"b", 64, MakePicture(layout, 64, {kHalfBlue}));
  m_Manager.LoadTexture();
  auto const pPage = ReadBack(L"Image_BigTexture_0");
  EXPECT_EQ(At(*pPage, 63, 63), Opaque(kHalfBlue, layout));
  EXPECT_EQ(At(*pPage, 64, 0), layout.m_Blank);
}

TEST_P(QXTextureImageColorTest, KeptTextureShowsTheNewPicture) {
  Layout const& layout = GetParam();
  QXTextureImageManagerEx images;
  images.SetTextureManager(&m_Textures);
  for (Color const& color : {kRed, kHalfBlue}) {
    QXTextureImageEx* const pImage = images.GetTextureImage(L"a");
    pImage->m_nWidth = pImage->m_nHeight = 16;
    pImage->m_nFormat = static_cast<unsigned int>(layout.m_nFormat);
    pImage->m_pTextureData = MakePicture(layout, 16, {kGreen, color});
    pImage->m_bReady = 1;
    images.LoadTexture(1);
    auto const pPicture = ReadBack(L"TextureImage_0");
    EXPECT_EQ(At(*pPicture, 15, 7), Opaque(kGreen, layout));
    EXPECT_EQ(At(*pPicture, 0, 8), Opaque(color, layout));
    images.RemoveTextureImage(L"a", 1);
  }
  EXPECT_EQ(m_Textures.GetTextureCount(), 1u);
}

// Pixels in blocks: 8 bytes a block for pixels of 3 bytes, 16 for pixels of 4. The blank is all ones.
TEST_P(QXTextureImageColorTest, CompressedPicturesStandInTheirSlotsBlockByBlock) {
  Layout const& layout = GetParam();
  std::size_t const nBlock = layout.m_arrParts.size() == 3 ? 8 : 16;
  Place(L"a", 64, MakeData(64, 64, layout.m_nFormat, 1, 14));
  Place(L"b", 32, MakeData(30, 18, layout.m_nFormat, 2, 14));
  Place(L"c", 4, MakeData(4, 4, layout.m_nFormat, 3, 14));
  m_Manager.LoadTexture();
  auto const& page = static_cast<QXNullTexture&>(*m_Textures.GetTexture(L"Image_BigTexture_0", 0));
  ASSERT_EQ(page.GetDevicePixels().size(), 256 * 256 * nBlock);
  std::size_t nWrong = 0;
  for (std::size_t nRow = 0; nRow < 256; ++nRow) {
    for (std::size_t nCol = 0; nCol < 256; ++nCol) {
      unsigned char nExpected = 255;
      if (nRow < 16 && nCol < 16) nExpected = 1;
      if (nRow < 5 && nCol >= 16 && nCol < 24) nExpected = 2;
      if (nRow == 0 && nCol == 24) nExpected = 3;
      for (std::size_t i = 0; i < nBlock; ++i) {
        nWrong += page.GetDevicePixels()[(nRow * 256 + nCol) * nBlock + i] != nExpected;
      }
    }
  }
  EXPECT_EQ(nWrong, 0u);
}

}  // namespace
}  // namespace QXC
