#include <algorithm>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include <QxGraphics3D/frame/foundation/base3d/QXMathEngine.h>

#include "../QXBareTexture.h"

using namespace QXC;

namespace {

using Bytes = std::vector<unsigned char>;

constexpr int kFormats[] = {0, 1, 5, 10, 11, 12, 13, 14, 28, 99};

unsigned int RowPixelSize(int nFormat) {
  return nFormat == 1 ? 1 : nFormat == 10 ? 3 : 4;
}

Bytes Count(std::size_t nBytes) {
  Bytes bytes(nBytes);
  for (std::size_t nByte = 0; nByte < nBytes; ++nByte) bytes[nByte] = static_cast<unsigned char>(nByte + 1);
  return bytes;
}

/// A texture of that many bytes. Its length is known to it only if told.
void Fill(QXTexture& texture, unsigned int nWidth, unsigned int nHeight, int nFormat, Bytes const& bytes) {
  auto* const pPixels = new unsigned char[bytes.size()];
  std::copy(bytes.begin(), bytes.end(), pPixels);
  texture.SetTextureData(
      static_cast<int>(nWidth), static_cast<int>(nHeight), pPixels, 0, static_cast<QX3DPixelFormat>(nFormat));
}

Bytes GetBytes(QXTexture const& texture, std::size_t nBytes) {
  return Bytes(texture.m_TextureData.m_pPixels, texture.m_TextureData.m_pPixels + nBytes);
}

// --- slow forms to compare with ------------------------------------------------------------------------------------

void FlipReference(Bytes& bytes, std::size_t nRow, std::size_t nHeight) {
  Bytes const old = bytes;
  for (std::size_t nLine = 0; nLine < nHeight; ++nLine) {
    for (std::size_t nByte = 0; nByte < nRow; ++nByte) {
      bytes.at((nHeight - 1 - nLine) * nRow + nByte) = old.at(nLine * nRow + nByte);
    }
  }
}

void EdgeReference(Bytes& bytes, int& nFormat, std::size_t nWidth, std::size_t nHeight) {
  if (nFormat == 1 || nFormat == 10) {
    Bytes wide;
    for (std::size_t nPixel = 0; nPixel < nWidth * nHeight; ++nPixel) {
      for (std::size_t nChannel = 0; nChannel < 3; ++nChannel) {
        wide.push_back(nFormat == 1 ? bytes.at(nPixel) : bytes.at(nPixel * 3 + nChannel));
      }
      wide.push_back(255);
    }
    bytes = wide;
    nFormat = 12;
  }
  for (std::size_t nRow = 0; nRow < nHeight; ++nRow) {
    for (std::size_t nColumn = 0; nColumn < nWidth; ++nColumn) {
      if (nRow == 0 || nColumn == 0 || nRow + 1 == nHeight || nColumn + 1 == nWidth) {
        bytes.at((nRow * nWidth + nColumn) * 4 + 3) = 0;
      }
    }
  }
}

void ColourReference(Bytes& bytes, int nFormat, std::size_t nCount) {
  if (nFormat != 12) return;
  Bytes const old = bytes;
  for (std::size_t nPixel = 0; nPixel < nCount; ++nPixel) {
    if (old.at(nPixel * 4 + 3) != 0) continue;
    Bytes colour{0, 0, 0};
    for (std::size_t nBefore = nPixel; nBefore-- > 0;) {
      Bytes const candidate{old.at(nBefore * 4), old.at(nBefore * 4 + 1), old.at(nBefore * 4 + 2)};
      if (old.at(nBefore * 4 + 3) != 0 && candidate != Bytes{0, 0, 0}) {
        colour = candidate;
        break;
      }
    }
    std::copy(colour.begin(), colour.end(), bytes.begin() + static_cast<std::ptrdiff_t>(nPixel * 4));
  }
}

/// Textures without a block, without columns and without rows stay as they are.
void ExpectNothingDoneToNothing(void (QXTexture::*pfnOperation)()) {
  QXBareTexture texture;
  (texture.*pfnOperation)();
  texture.SetTextureData(4, 4, nullptr, 0, PF_L8);
  (texture.*pfnOperation)();
  EXPECT_EQ(texture.m_TextureData.m_eFormat, PF_L8);
  EXPECT_EQ(texture.m_TextureData.m_pPixels, nullptr);
  for (auto const& [nWidth, nHeight] : {std::pair(0U, 7U), std::pair(7U, 0U)}) {
    Fill(texture, nWidth, nHeight, PF_A8R8G8B8, {1});
    (texture.*pfnOperation)();
    EXPECT_EQ(GetBytes(texture, 1), Bytes{1});
  }
}

// --- flip ----------------------------------------------------------------------------------------------------------

TEST(QXTextureFlip, ExchangesRowsAndLeavesAMiddleOne) {
  QXBareTexture texture;
  Fill(texture, 2, 3, PF_L8, {1, 2, 3, 4, 5, 6});
  texture.FlipTexture();
  EXPECT_EQ(GetBytes(texture, 6), (Bytes{5, 6, 3, 4, 1, 2}));
  Fill(texture, 1, 4, PF_L8, {1, 2, 3, 4});
  texture.FlipTexture();
  EXPECT_EQ(GetBytes(texture, 4), (Bytes{4, 3, 2, 1}));
  Fill(texture, 4, 1, PF_L8, {1, 2, 3, 4});
  texture.FlipTexture();
  EXPECT_EQ(GetBytes(texture, 4), (Bytes{1, 2, 3, 4}));
}

TEST(QXTextureFlip, CountsOneByteForFormat1ThreeFor10AndFourForAnyOther) {
  for (int const nFormat : kFormats) {
    std::size_t const nRow = 5 * RowPixelSize(nFormat);
    Bytes expected = Count(5 * 3 * 4);
    QXBareTexture texture;
    Fill(texture, 5, 3, nFormat, expected);
    FlipReference(expected, nRow, 3);
    texture.FlipTexture();
    EXPECT_EQ(GetBytes(texture, expected.size()), expected) << nFormat;
    EXPECT_EQ(texture.m_TextureData.m_eFormat, nFormat);
  }
}

TEST(QXTextureFlip, CountsFourBytesForFormat11SoThatOnlyWideBlocksAreSafe) {
  QXBareTexture texture;
  Fill(texture, 1, 2, PF_B8G8R8, {1, 2, 3, 4, 5, 6, 7, 8});
  texture.FlipTexture();
  EXPECT_EQ(GetBytes(texture, 8), (Bytes{5, 6, 7, 8, 1, 2, 3, 4}));
}

TEST(QXTextureFlip, LeavesABlockThatIsTooShort) {
  for (QXUInt64 const nKnown : {24ULL, 31ULL, 32ULL}) {
    QXBareTexture texture;
    Fill(texture, 2, 4, PF_B8G8R8, Count(32));
    texture.m_TextureData.SetBlockLength(nKnown);
    texture.FlipTexture();
    EXPECT_EQ(GetBytes(texture, 32) == Count(32), nKnown < 32) << nKnown;
  }
}

TEST(QXTextureFlip, LeavesATextureWithoutPixelsOrRows) {
  ExpectNothingDoneToNothing(&QXTexture::FlipTexture);
}

// --- scale ---------------------------------------------------------------------------------------------------------

TEST(QXTextureScale, GivesWhatTheResamplingGivesForEachPixelSize) {
  for (int const nFormat : kFormats) {
    unsigned int const nPixelSize = RowPixelSize(nFormat);
    Bytes const source = Count(5 * 3 * nPixelSize);
    Bytes expected(8 * 2 * nPixelSize);
    ASSERT_EQ(
        QXMathEngine::ScaleImageInternal(static_cast<int>(nPixelSize), 5, 3, source.data(), 8, 2, expected.data(), -1),
        1);
    QXBareTexture texture;
    Fill(texture, 5, 3, nFormat, source);
    texture.ScaleImage(8, 2);
    EXPECT_EQ(GetBytes(texture, expected.size()), expected) << nFormat;
    EXPECT_EQ(texture.m_TextureData.m_nWidth, 8U);
    EXPECT_EQ(texture.m_TextureData.m_nHeight, 2U);
    EXPECT_EQ(texture.m_TextureData.m_eFormat, nFormat);
    EXPECT_EQ(texture.m_TextureData.GetBlockLength(), expected.size());
    EXPECT_EQ(texture.IsLoadedImage(), 1);
  }
}

TEST(QXTextureScale, TakesAnySizeForGranted) {
  QXBareTexture texture;
  Fill(texture, 2, 2, PF_L8, {9, 9, 9, 9});
  texture.ScaleImage(7, 5);
  EXPECT_EQ(GetBytes(texture, 35), Bytes(35, 9));
}

TEST(QXTextureScale, KeepsTheDataSizeTrueWhereOneIsTold) {
  QXBareTexture texture;
  Fill(texture, 2, 2, PF_L8, Count(4));
  texture.ScaleImage(3, 3);
  EXPECT_EQ(texture.m_TextureData.m_nDataSize, 0U);
  texture.m_TextureData.m_nDataSize = 9;
  texture.ScaleImage(4, 4);
  EXPECT_EQ(texture.m_TextureData.m_nDataSize, 16U);
}

void ExpectUnscaled(QXTexture& texture, int nWidth, int nHeight) {
  unsigned char* const pPixels = texture.m_TextureData.m_pPixels;
  unsigned int const nOldWidth = texture.m_TextureData.m_nWidth;
  unsigned int const nOldHeight = texture.m_TextureData.m_nHeight;
  texture.m_bLoadedImage = 1;
  texture.ScaleImage(nWidth, nHeight);
  EXPECT_EQ(texture.IsLoadedImage(), 0);
  EXPECT_EQ(texture.m_TextureData.m_pPixels, pPixels);
  EXPECT_EQ(texture.m_TextureData.m_nWidth, nOldWidth);
  EXPECT_EQ(texture.m_TextureData.m_nHeight, nOldHeight);
}

TEST(QXTextureScale, ClearsTheLoadedFlagWhenThereIsNothingToScale) {
  QXBareTexture texture;
  ExpectUnscaled(texture, 4, 4);
  texture.SetTextureData(4, 4, nullptr, 0, PF_A8R8G8B8);
  ExpectUnscaled(texture, 4, 4);
  Fill(texture, 0, 4, PF_A8R8G8B8, {1});
  ExpectUnscaled(texture, 4, 4);
  Fill(texture, 4, 0, PF_A8R8G8B8, {1});
  ExpectUnscaled(texture, 4, 4);
}

TEST(QXTextureScale, ClearsTheLoadedFlagForASizeThatCannotBe) {
  QXBareTexture texture;
  Fill(texture, 2, 2, PF_A8R8G8B8, Count(16));
  constexpr int nLargest = std::numeric_limits<int>::max();
  for (auto const& [nWidth, nHeight] : {std::pair(0, 4), std::pair(4, 0), std::pair(-1, 4), std::pair(4, -1),
           std::pair(-4, -4), std::pair(nLargest, nLargest), std::pair(std::numeric_limits<int>::min(), 2)}) {
    ExpectUnscaled(texture, nWidth, nHeight);
  }
  EXPECT_EQ(GetBytes(texture, 16), Count(16));
}

TEST(QXTextureScale, ClearsTheLoadedFlagForABlockThatIsTooShort) {
  QXBareTexture texture;
  Fill(texture, 2, 2, PF_B8G8R8, Count(12));
  texture.m_TextureData.SetBlockLength(12);
  ExpectUnscaled(texture, 4, 4);
}

// --- edges ---------------------------------------------------------------------------------------------------------

TEST(QXTextureEdge, GetsAlphaZeroAndKeepsEverythingElse) {
  for (int const nFormat : {0, 5, 11, 12, 13, 14, 28, 99}) {
    Bytes expected = Count(4 * 3 * 4);
    int nExpectedFormat = nFormat;
    QXBareTexture texture;
    Fill(texture, 4, 3, nFormat, expected);
    unsigned char const* const pPixels = texture.m_TextureData.m_pPixels;
    EdgeReference(expected, nExpectedFormat, 4, 3);
    texture.SetEdgeTransparency();
    EXPECT_EQ(GetBytes(texture, expected.size()), expected) << nFormat;
    EXPECT_EQ(texture.m_TextureData.m_eFormat, nFormat);
    EXPECT_EQ(texture.m_TextureData.m_pPixels, pPixels);
  }
}

TEST(QXTextureEdge, WidensGrayToFormat12) {
  QXBareTexture texture;
  Fill(texture, 3, 3, PF_L8, {10, 20, 30, 40, 50, 60, 70, 80, 90});
  texture.SetEdgeTransparency();
  EXPECT_EQ(texture.m_TextureData.m_eFormat, PF_A8R8G8B8);
  EXPECT_EQ(texture.m_TextureData.GetBlockLength(), 36U);
  EXPECT_EQ(GetBytes(texture, 4), (Bytes{10, 10, 10, 0}));
  EXPECT_EQ(
      Bytes(texture.m_TextureData.m_pPixels + 16, texture.m_TextureData.m_pPixels + 20), (Bytes{50, 50, 50, 255}));
}

TEST(QXTextureEdge, WidensFormat10ToFormat12) {
  QXBareTexture texture;
  Fill(texture, 3, 3, PF_R8G8B8, Count(27));
  texture.m_TextureData.m_nDataSize = 27;
  texture.SetEdgeTransparency();
  EXPECT_EQ(texture.m_TextureData.m_eFormat, PF_A8R8G8B8);
  EXPECT_EQ(texture.m_TextureData.m_nDataSize, 36U);
  EXPECT_EQ(GetBytes(texture, 4), (Bytes{1, 2, 3, 0}));
  EXPECT_EQ(
      Bytes(texture.m_TextureData.m_pPixels + 16, texture.m_TextureData.m_pPixels + 20), (Bytes{13, 14, 15, 255}));
}

TEST(QXTextureEdge, OfOneRowOrOneColumnIsEverything) {
  for (auto const& [nWidth, nHeight] : {std::pair(6U, 1U), std::pair(1U, 6U), std::pair(1U, 1U), std::pair(2U, 2U)}) {
    QXBareTexture texture;
    Fill(texture, nWidth, nHeight, PF_R8G8B8A8, Bytes(nWidth * nHeight * 4, 200));
    texture.SetEdgeTransparency();
    for (unsigned int nPixel = 0; nPixel < nWidth * nHeight; ++nPixel) {
      EXPECT_EQ(texture.m_TextureData.m_pPixels[nPixel * 4 + 2], 200);
      EXPECT_EQ(texture.m_TextureData.m_pPixels[nPixel * 4 + 3], 0);
    }
  }
}

TEST(QXTextureEdge, OfNothingIsNothing) {
  ExpectNothingDoneToNothing(&QXTexture::SetEdgeTransparency);
}

TEST(QXTextureEdge, LeavesABlockThatIsTooShort) {
  struct {
    int m_nFormat;
    QXUInt64 m_nNeeded;
  } const arrCases[]{{1, 12}, {10, 36}, {11, 48}, {28, 48}};
  for (auto const& [nFormat, nNeeded] : arrCases) {
    QXBareTexture texture;
    Fill(texture, 4, 3, nFormat, Count(48));
    texture.m_TextureData.SetBlockLength(nNeeded - 1);
    texture.SetEdgeTransparency();
    EXPECT_EQ(GetBytes(texture, 48), Count(48)) << nFormat;
    EXPECT_EQ(texture.m_TextureData.m_eFormat, nFormat);
    texture.m_TextureData.SetBlockLength(nNeeded);
    texture.SetEdgeTransparency();
    EXPECT_NE(GetBytes(texture, 48), Count(48)) << nFormat;
  }
}

// --- colour of transparent pixels ----------------------------------------------------------------------------------

TEST(QXTextureColour, OfATransparentPixelBecomesTheLastSeen) {
  QXBareTexture texture;
  // clang-format off
  Fill(texture, 7, 1, PF_A8R8G8B8, {
      9, 9, 9, 0,      // nothing seen yet
      1, 2, 3, 255,
      7, 7, 7, 0,
      0, 0, 0, 255,    // black is not remembered
      8, 8, 8, 0,
      0, 0, 5, 1,      // a little alpha and one channel are enough
      6, 6, 6, 0});
  texture.SetTranseparentPixelColor();
  EXPECT_EQ(GetBytes(texture, 28), (Bytes{
      0, 0, 0, 0,
      1, 2, 3, 255,
      1, 2, 3, 0,
      0, 0, 0, 255,
      1, 2, 3, 0,
      0, 0, 5, 1,
      0, 0, 5, 0}));
  // clang-format on
}

TEST(QXTextureColour, IsRememberedAcrossRows) {
  QXBareTexture texture;
  Fill(texture, 1, 2, PF_A8R8G8B8, {1, 2, 3, 4, 5, 6, 7, 0});
  texture.SetTranseparentPixelColor();
  EXPECT_EQ(GetBytes(texture, 8), (Bytes{1, 2, 3, 4, 1, 2, 3, 0}));
}

TEST(QXTextureColour, OfAFullyTransparentImageEndsBlack) {
  QXBareTexture texture;
  Bytes bytes(4 * 4 * 4, 0);
  for (std::size_t nByte = 0; nByte < bytes.size(); ++nByte) bytes[nByte] = nByte % 4 == 3 ? 0 : 100;
  Fill(texture, 4, 4, PF_A8R8G8B8, bytes);
  texture.SetTranseparentPixelColor();
  EXPECT_EQ(GetBytes(texture, 64), Bytes(64, 0));
}

TEST(QXTextureColour, StaysInAnyFormatBut12) {
  Bytes const bytes{1, 2, 3, 4, 5, 6, 7, 0};
  for (int const nFormat : kFormats) {
    if (nFormat == 12) continue;
    QXBareTexture texture;
    Fill(texture, 2, 1, nFormat, bytes);
    texture.SetTranseparentPixelColor();
    EXPECT_EQ(GetBytes(texture, 8), bytes) << nFormat;
  }
}

TEST(QXTextureColour, StaysWithoutPixelsOrInABlockThatIsTooShort) {
  QXBareTexture texture;
  texture.SetTextureData(4, 4, nullptr, 0, PF_A8R8G8B8);
  texture.SetTranseparentPixelColor();
  EXPECT_EQ(texture.m_TextureData.m_pPixels, nullptr);
  Bytes const bytes{1, 2, 3, 4, 5, 6, 7, 0};
  Fill(texture, 2, 1, PF_A8R8G8B8, bytes);
  texture.m_TextureData.SetBlockLength(7);
  texture.SetTranseparentPixelColor();
  EXPECT_EQ(GetBytes(texture, 8), bytes);
}

// --- all of them together ------------------------------------------------------------------------------------------

TEST(QXTexturePixels, EqualTheSlowFormsOverRandomSequences) {
  unsigned int const nSeed = 20270302;
  SCOPED_TRACE(nSeed);
  std::mt19937 random(nSeed);
  for (int nRound = 0; nRound < 1500; ++nRound) {
    std::size_t const nWidth = random() % 70;
    std::size_t const nHeight = random() % 9;
    int nFormat = kFormats[random() % std::size(kFormats)];
    Bytes bytes(nWidth * nHeight * RowPixelSize(nFormat));
    for (unsigned char& nByte : bytes) nByte = random() % 3 == 0 ? 0 : static_cast<unsigned char>(random());
    QXBareTexture texture;
    Fill(texture, static_cast<unsigned int>(nWidth), static_cast<unsigned int>(nHeight), nFormat, bytes);
    for (int nStep = 0; nStep < 6; ++nStep) {
      switch (random() % 4) {
      case 0:
        texture.FlipTexture();
        FlipReference(bytes, nWidth * RowPixelSize(nFormat), nHeight);
        break;
      case 1:
        texture.SetEdgeTransparency();
        EdgeReference(bytes, nFormat, nWidth, nHeight);
        break;
      case 2:
        texture.SetTranseparentPixelColor();
        ColourReference(bytes, nFormat, nWidth * nHeight);
        break;
      default:
        texture.m_TextureData.RGBToRGBA();
        if (nFormat == 10) {
          Bytes wide;
          for (std::size_t nByte = 0; nByte < bytes.size(); ++nByte) {
            wide.push_back(bytes[nByte]);
            if (nByte % 3 == 2) wide.push_back(255);
          }
          bytes = wide;
          nFormat = 12;
        } else if (nFormat == 11) {
          // The block has four bytes a pixel here, so that the other steps may run; what is widened are its first
          // three quarters, taken for three bytes a pixel.
          Bytes wide;
          for (std::size_t nByte = 0; nByte < nWidth * nHeight * 3; ++nByte) {
            wide.push_back(bytes[nByte]);
            if (nByte % 3 == 2) wide.push_back(255);
          }
          bytes = wide;
          nFormat = 28;
        }
        break;
      }
      ASSERT_EQ(GetBytes(texture, bytes.size()), bytes) << nRound << ", step " << nStep;
      ASSERT_EQ(texture.m_TextureData.m_eFormat, nFormat) << nRound << ", step " << nStep;
    }
  }
}

}  // namespace
