// Pixels of every code and packing, and what is refused.
#include <fstream>
#include <iterator>

#include <QxGraphics3D/frame/foundation/base3d/QXImageData.h>
#include <QxGraphics3D/texture/QXPixelFormatLayout.h>

#include <tests/ogre/QXOgreTexturing.h>

namespace QXC {

namespace {

constexpr QX3DPixelFormat ALL_FORMATS[] = {
    PF_L8, PF_BYTE_LA, PF_R8G8B8, PF_B8G8R8, PF_A8R8G8B8, PF_A8B8G8R8, PF_B8G8R8A8, PF_R8G8B8A8};

/// A pixel of a colour under a code. Of a format without the channel a part is lost.
std::vector<unsigned char> MakePixel(QX3DPixelFormat eFormat, QXPixel const& pixel) {
  QXPixelFormatLayout const layout = QXPixelFormatLayout::Of(eFormat);
  std::vector<unsigned char> arrBytes(layout.m_nPixelBytes);
  auto const put = [&](int nPlace, int nValue) {
    if (nPlace >= 0) arrBytes[static_cast<std::size_t>(nPlace)] = static_cast<unsigned char>(nValue);
  };
  put(layout.m_nBlue, pixel.b);
  put(layout.m_nGreen, pixel.g);
  put(layout.m_nRed, pixel.r);
  put(layout.m_nAlpha, pixel.a);
  return arrBytes;
}

std::vector<unsigned char> Repeated(std::vector<unsigned char> const& arrPart, std::size_t nCount) {
  std::vector<unsigned char> arrAll;
  for (std::size_t i = 0; i < nCount; ++i) arrAll.insert(arrAll.end(), arrPart.begin(), arrPart.end());
  return arrAll;
}

/// Writes nCount bits of a value into a block, lowest first.
void PutBits(std::vector<unsigned char>& arrBlock, unsigned int nFirst, unsigned int nCount, unsigned int nValue) {
  for (unsigned int i = 0; i < nCount; ++i)
    if ((nValue >> i & 1U) != 0)
      arrBlock[(nFirst + i) / 8] = static_cast<unsigned char>(arrBlock[(nFirst + i) / 8] | 1U << (nFirst + i) % 8);
}

/// A BC7 block of mode 6 whose pixels all have one colour with even values (the shared lowest bit is 0), or with
/// bOdd 1 odd ones.
std::vector<unsigned char> Bc7Mode6(QXPixel const& pixel, unsigned int bOdd) {
  std::vector<unsigned char> arrBlock(16);
  PutBits(arrBlock, 0, 7, 0x40);
  unsigned int nAt = 7;
  for (int const nChannel : {pixel.r, pixel.g, pixel.b, pixel.a})
    for (int i = 0; i < 2; ++i, nAt += 7) PutBits(arrBlock, nAt, 7, static_cast<unsigned int>(nChannel) >> 1);
  PutBits(arrBlock, 63, 1, bOdd);
  PutBits(arrBlock, 64, 1, bOdd);
  return arrBlock;
}

}  // namespace

/// Draws over a red ground, so that what lets through is seen.
class QXOgreTextureFormat : public QXOgreTexturing {
protected:
  void SetUp() override {
    QXOgreTexturing::SetUp();
    DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, -1.0F, RED);
  }
  /// The colour of a texture of one colour over the red ground.
  QXPixel Show(QXTexture* pTexture) {
    QXRenderOperation3D* const pOperation = DrawTextured(pTexture);
    QXPixel const pixel = Frame().At(32, 32);
    pOperation->SetVisible(0);
    return pixel;
  }
  void ExpectRefused(QXTexture* pTexture, char const* szReason) {
    pTexture->LoadTexture(0, 0);
    EXPECT_EQ(pTexture->IsLoaded(), 0) << szReason;
    EXPECT_EQ(pTexture->GetBindID(), 0U);
    EXPECT_EQ(Reason(), szReason);
    // The next one has to give its reason anew.
    EXPECT_EQ(m_pGraphics3D->CreateScene(L""), 0);
  }
  QXTexture* MakeUnloaded(
      int nWidth, int nHeight, QX3DPixelFormat eFormat, std::size_t nBytes, unsigned int nCompression) {
    QXTexture* const pTexture = QXOgreTexturing::MakeTexture();
    pTexture->SetTextureData(
        nWidth, nHeight, NewBlock(std::vector<unsigned char>(nBytes, 0xFF)), nCompression, eFormat);
    pTexture->m_TextureData.SetBlockLength(nBytes);
    return pTexture;
  }
};

TEST_F(QXOgreTextureFormat, EveryCodeShowsTheColoursThatItsBytesMean) {
  for (QX3DPixelFormat const eFormat : ALL_FORMATS) {
    QXPixelFormatLayout const layout = QXPixelFormatLayout::Of(eFormat);
    bool const bGray = layout.m_nPixelBytes < 3;
    for (QXPixel const& pixel : {QXPixel{230, 20, 10, 255}, QXPixel{10, 220, 30, 255}, QXPixel{40, 50, 255, 128}}) {
      QXPixel const shown = Show(MakeTexture(2, 2, eFormat, Repeated(MakePixel(eFormat, pixel), 4)));
      // A luminance is written last by the red channel, and stands for all three.
      QXPixel const base = bGray ? QXPixel{pixel.r, pixel.r, pixel.r, pixel.a} : pixel;
      double const dAlpha = layout.m_nAlpha < 0 ? 1.0 : base.a / 255.0;
      EXPECT_NEAR(shown.r, base.r * dAlpha + 255 * (1.0 - dAlpha), 1.01) << eFormat << pixel;
      EXPECT_NEAR(shown.g, base.g * dAlpha, 1.01) << eFormat << pixel;
      EXPECT_NEAR(shown.b, base.b * dAlpha, 1.01) << eFormat << pixel;
      EXPECT_EQ(shown.a, 255) << eFormat << pixel;
    }
  }
}

TEST_F(QXOgreTextureFormat, RowsOfThreeBytesNeedNoPadding) {
  // 5 pixels are 15 bytes: devices like rows of fours.
  std::vector<unsigned char> arrBytes;
  for (int y = 0; y < 3; ++y)
    for (int x = 0; x < 5; ++x)
      for (int const n : {10 * x, 20 * y, 200}) arrBytes.push_back(static_cast<unsigned char>(n));
  for (QX3DPixelFormat const eFormat : {PF_R8G8B8, PF_B8G8R8}) {
    DrawTextured(MakeTexture(5, 3, eFormat, arrBytes));
    QXPicture const picture = Frame();
    for (unsigned int y = 0; y < 3; ++y)
      for (unsigned int x = 0; x < 5; ++x)
        EXPECT_EQ(picture.At((2 * x + 1) * 64 / 10, (2 * y + 1) * 64 / 6),
            (QXPixel{200, static_cast<int>(20 * y), static_cast<int>(10 * x), 255}));
  }
}

TEST_F(QXOgreTextureFormat, AnImageOfThreeBytesComesByItsRecord) {
  for (unsigned char const nDepth : {std::uint8_t{24}, std::uint8_t{32}, std::uint8_t{8}}) {
    auto* pImage = new QXImageData;
    pImage->m_nWidth = 3;
    pImage->m_nHeight = 1;
    pImage->m_nBitDepth = nDepth;
    pImage->m_nPitch = 3U * nDepth / 8U;
    pImage->m_pPixels = NewBlock(Repeated({50, 60, 70, 255}, 3));
    if (nDepth == 24) std::copy_n("\x32\x3C\x46\x32\x3C\x46\x32\x3C\x46", 9, static_cast<char*>(pImage->m_pPixels));
    if (nDepth == 8) std::copy_n("\x46\x46\x46", 3, static_cast<char*>(pImage->m_pPixels));
    QXTexture* const pTexture = QXOgreTexturing::MakeTexture();
    ASSERT_EQ(pTexture->SetTextureData(pImage, 0, 0, 0, 1), 1);
    pTexture->LoadTexture(0, 0);
    ASSERT_EQ(pTexture->IsLoaded(), 1) << Reason();
    EXPECT_EQ(Show(pTexture), (nDepth == 8 ? QXPixel{70, 70, 70, 255} : QXPixel{70, 60, 50, 255})) << int{nDepth};
  }
}

TEST_F(QXOgreTextureFormat, BlocksOfThreeChannelsAreBc1) {
  // Two ends in 5, 6, 5 bits of red, green, blue: pure green first, and every index picks it.
  std::vector<unsigned char> const arrBlock = {0xE0, 0x07, 0x00, 0x00, 0, 0, 0, 0};
  for (QX3DPixelFormat const eFormat : {PF_R8G8B8, PF_B8G8R8}) {
    QXTexture* const pTexture = MakeTexture(6, 5, eFormat, Repeated(arrBlock, 4), TEXTURE_COMPRESSION_BLOCK);
    ASSERT_EQ(pTexture->IsLoaded(), 1) << Reason();
    EXPECT_EQ(Show(pTexture), GREEN_PIXEL);
  }
}

TEST_F(QXOgreTextureFormat, BlocksOfFourChannelsAreBc3) {
  std::vector<unsigned char> arrBlock = {0xFF, 0xFF, 0, 0, 0, 0, 0, 0, 0xE0, 0x07, 0x00, 0x00, 0, 0, 0, 0};
  EXPECT_EQ(Show(MakeTexture(4, 4, PF_A8R8G8B8, arrBlock, TEXTURE_COMPRESSION_BLOCK)), GREEN_PIXEL);
  arrBlock[0] = 128;
  QXPixel const half = Show(MakeTexture(4, 4, PF_R8G8B8A8, arrBlock, TEXTURE_COMPRESSION_BLOCK));
  EXPECT_NEAR(half.r, 127, 1);
  EXPECT_NEAR(half.g, 128, 1);
}

TEST_F(QXOgreTextureFormat, LevelsOfBlocksFollowTheirTable) {
  // 8 x 8 green in 4 blocks, 4 x 4 red, 2 x 2 blue.
  std::vector<unsigned char> arrBytes = Repeated({0xE0, 0x07, 0, 0, 0, 0, 0, 0}, 4);
  for (unsigned char const nHigh : {std::uint8_t{0xF8}, std::uint8_t{0x00}}) {
    arrBytes.insert(arrBytes.end(), {nHigh == 0 ? std::uint8_t{0x1F} : std::uint8_t{0}, nHigh, 0, 0, 0, 0, 0, 0});
  }
  QXTexture* const pTexture = QXOgreTexturing::MakeTexture();
  pTexture->SetTextureData(8, 8, NewBlock(arrBytes), TEXTURE_COMPRESSION_BLOCK, PF_B8G8R8);
  pTexture->m_TextureData.SetBlockLength(arrBytes.size());
  pTexture->BuildMipmapOffset();
  ASSERT_EQ(pTexture->m_arrMipmapOffset.GetSize(), 4U);
  // Blocks come as they are: no level can be made of them.
  pTexture->SetTextureMipMap(1);
  pTexture->LoadTexture(0, 0);
  ASSERT_EQ(pTexture->IsLoaded(), 1) << Reason();
  EXPECT_EQ(Show(pTexture), GREEN_PIXEL);
  pTexture->SetMipmapBaseLevel(1);
  EXPECT_EQ(Show(pTexture), RED_PIXEL);
  pTexture->SetMipmapBaseLevel(3);
  EXPECT_EQ(Show(pTexture), (QXPixel{0, 0, 255, 255})) << "the fourth level is not in the block";
}

TEST_F(QXOgreTextureFormat, Bc7ComesThroughWhereTheDeviceTakesIt) {
  struct Case {
    QXPixel m_Pixel;
    unsigned int m_bOdd;
  };
  for (Case const& item : {Case{{1, 255, 3, 255}, 1}, Case{{20, 40, 254, 128}, 0}}) {
    QXTexture* const pTexture = QXOgreTexturing::MakeTexture();
    std::vector<unsigned char> const arrBytes = Repeated(Bc7Mode6(item.m_Pixel, item.m_bOdd), 2);
    pTexture->SetTextureData(5, 4, NewBlock(arrBytes), 0, PF_A8R8G8B8);
    pTexture->m_TextureData.SetBlockLength(arrBytes.size());
    pTexture->m_bKtx2Flag = 1;
    pTexture->LoadTexture(0, 0);
    if (!pTexture->IsLoaded()) {
      EXPECT_EQ(Reason(), "the device does not take blocks of PF_BC7_UNORM");
      continue;
    }
    QXPixel const shown = Show(pTexture);
    double const dAlpha = item.m_Pixel.a / 255.0;
    EXPECT_NEAR(shown.r, item.m_Pixel.r * dAlpha + 255 * (1.0 - dAlpha), 1.01);
    EXPECT_NEAR(shown.g, item.m_Pixel.g * dAlpha, 1.01);
    EXPECT_NEAR(shown.b, item.m_Pixel.b * dAlpha, 1.01);
  }
}

TEST_F(QXOgreTextureFormat, OpaqueBc7IsNotBlended) {
  // Nearer by its zero and farther by its face: it shows if the texture were blended.
  auto const pBehind =
      MakeMesh({{-1.0F, -1.0F, -9.0F}, {1.0F, -1.0F, -9.0F}, {1.0F, 1.0F, -9.0F}, {-1.0F, 1.0F, -9.0F}});
  AddRange<unsigned short>(*pBehind, {0, 1, 2, 0, 2, 3}, QXColorValue3D(1.0, 0.0, 0.0, 0.5));
  QXMatrix4d matNearer;
  matNearer.SetTrans({0.0, 0.0, 5.0});
  pBehind->SetMatrix(matNearer);
  Draw(*pBehind);
  QXTexture* const pTexture = QXOgreTexturing::MakeTexture();
  pTexture->SetTextureData(4, 4, NewBlock(Bc7Mode6({1, 255, 1, 255}, 1)), 0, PF_A8R8G8B8);
  pTexture->m_TextureData.SetBlockLength(16);
  pTexture->m_bKtx2Flag = 1;
  pTexture->LoadTexture(0, 0);
  if (pTexture->IsLoaded()) {
    EXPECT_EQ(Show(pTexture), (QXPixel{1, 255, 1, 255}));
  } else {
    EXPECT_EQ(Reason(), "the device does not take blocks of PF_BC7_UNORM");
  }
}

TEST_F(QXOgreTextureFormat, WhatNobodyCanShowIsRefusedWithAReason) {
  ExpectRefused(QXOgreTexturing::MakeTexture(), "a texture without an image cannot be loaded");
  ExpectRefused(MakeUnloaded(0, 4, PF_A8R8G8B8, 64, 0), "a texture has an edge of no pixels");
  ExpectRefused(MakeUnloaded(4, 0, PF_A8R8G8B8, 64, 0), "a texture has an edge of no pixels");
  ExpectRefused(
      MakeUnloaded(2, 2, static_cast<QX3DPixelFormat>(77), 64, 0), "a texture has the unknown pixel format 77");
  ExpectRefused(MakeUnloaded(2, 2, PF_A8R8G8B8, 64, 19), "a texture has the unknown compression 19");
  ExpectRefused(MakeUnloaded(2, 2, PF_L8, 64, 14), "blocks of one or two channels are not known");
  ExpectRefused(MakeUnloaded(-1, -1, PF_A8R8G8B8, 64, 0), "a texture of 4294967295 x 4294967295 pixels is impossible");
  std::string const strMost = std::to_string(m_pGraphics3D->m_Capabilities.GetMaxTextureSize());
  ExpectRefused(MakeUnloaded(70000, 1, PF_L8, 70000, 0),
      ("a texture of 70000 x 1 pixels is impossible: each side takes 1 to " + strMost + " pixels").c_str());
}

TEST_F(QXOgreTextureFormat, ABlockKnownToBeTooShortIsRefusedByOneByte) {
  char const* const szReason = "the block of a texture is shorter than its size and format ask for";
  for (QX3DPixelFormat const eFormat : ALL_FORMATS) {
    std::size_t const nBytes = std::size_t{QXPixelFormatLayout::Of(eFormat).m_nPixelBytes} * 15;
    ExpectRefused(MakeUnloaded(5, 3, eFormat, nBytes - 1, 0), szReason);
    QXTexture* const pWhole = MakeUnloaded(5, 3, eFormat, nBytes, 0);
    pWhole->LoadTexture(0, 0);
    EXPECT_EQ(pWhole->IsLoaded(), 1) << eFormat;
  }
  ExpectRefused(MakeUnloaded(5, 5, PF_B8G8R8, 31, TEXTURE_COMPRESSION_BLOCK), szReason);
  ExpectRefused(MakeUnloaded(5, 5, PF_A8R8G8B8, 63, TEXTURE_COMPRESSION_BLOCK), szReason);
}

TEST_F(QXOgreTextureFormat, ARefusalLeavesWhatWasThere) {
  QXTexture* const pTexture = MakeTexture(1, 1, PF_A8R8G8B8, {0, 255, 0, 255});
  unsigned int const nBindID = pTexture->GetBindID();
  EXPECT_GT(nBindID, 0U);
  pTexture->SetTextureData(1, 1, NewBlock({0}), 99, PF_A8R8G8B8);
  pTexture->LoadTexture(0, 1);
  EXPECT_EQ(pTexture->GetBindID(), nBindID);
  EXPECT_NE(pTexture->m_TextureData.m_pPixels, nullptr) << "an image that is not on the device is kept";
  EXPECT_EQ(Show(pTexture), GREEN_PIXEL);
}

}  // namespace QXC
