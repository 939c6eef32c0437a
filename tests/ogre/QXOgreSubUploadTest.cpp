// Parts of textures, and the image atlases that send them.
#include <memory>

#include <QxGraphics3D/atlas/QXTextureImageManager.h>
#include <QxGraphics3D/atlas/QXTextureImageManagerEx.h>
#include <QxGraphics3D/frame/foundation/base3d/QXTextureData.h>
#include <QxGraphics3D/renderop/QXBillboard.h>
#include <QxGraphics3D/texture/QXPixelFormatLayout.h>

#include <tests/ogre/QXOgreTexturing.h>

namespace QXC {

namespace {

constexpr QX3DPixelFormat ALL_FORMATS[] = {
    PF_L8, PF_BYTE_LA, PF_R8G8B8, PF_B8G8R8, PF_A8R8G8B8, PF_A8B8G8R8, PF_B8G8R8A8, PF_R8G8B8A8};
constexpr QXPixel BLUE_PIXEL{0, 0, 255, 255};
constexpr QXPixel MAGENTA_PIXEL{255, 0, 255, 255};

/// The colour of a pixel of test image n, another one everywhere and opaque.
QXPixel ColorOf(int n, int x, int y) {
  return {(37 * n + 24 * x + 9) % 256, (53 * n + 29 * y + 40) % 256, (91 * n + 5 * x * y + 100) % 256, 255};
}

/// What a pixel looks like under a code: of a format without the channels a part is lost.
QXPixel Seen(QX3DPixelFormat eFormat, QXPixel const& pixel) {
  // A luminance is written last by the red channel, and stands for all three.
  return QXPixelFormatLayout::Of(eFormat).m_nPixelBytes < 3 ? QXPixel{pixel.r, pixel.r, pixel.r, 255} : pixel;
}

void Append(std::vector<unsigned char>& arrBytes, QX3DPixelFormat eFormat, QXPixel const& pixel) {
  QXPixelFormatLayout const layout = QXPixelFormatLayout::Of(eFormat);
  std::size_t const nAt = arrBytes.size();
  arrBytes.resize(nAt + layout.m_nPixelBytes);
  auto const put = [&](int nPlace, int nValue) {
    if (nPlace >= 0) arrBytes[nAt + static_cast<std::size_t>(nPlace)] = static_cast<unsigned char>(nValue);
  };
  put(layout.m_nBlue, pixel.b);
  put(layout.m_nGreen, pixel.g);
  put(layout.m_nRed, pixel.r);
  put(layout.m_nAlpha, pixel.a);
}

std::vector<unsigned char> MakeImage(QX3DPixelFormat eFormat, int n, int nWidth, int nHeight) {
  std::vector<unsigned char> arrBytes;
  for (int y = 0; y < nHeight; ++y)
    for (int x = 0; x < nWidth; ++x) Append(arrBytes, eFormat, ColorOf(n, x, y));
  return arrBytes;
}

std::vector<unsigned char> MakePlain(QX3DPixelFormat eFormat, QXPixel const& pixel, int nCount) {
  std::vector<unsigned char> arrBytes;
  for (int i = 0; i < nCount; ++i) Append(arrBytes, eFormat, pixel);
  return arrBytes;
}

/// Blocks of one colour out of 5, 6 and 5 bits: of BC1, or with alpha of BC3.
std::vector<unsigned char> MakeBlocks(bool bAlpha, int nRed, int nGreen, int nBlue, int nCount) {
  std::vector<unsigned char> arrBytes;
  int const nColor = nRed << 11 | nGreen << 5 | nBlue;
  for (int i = 0; i < nCount; ++i) {
    if (bAlpha) arrBytes.insert(arrBytes.end(), {0xFF, 0xFF, 0, 0, 0, 0, 0, 0});
    for (int k = 0; k < 2; ++k) {
      arrBytes.push_back(static_cast<unsigned char>(nColor & 0xFF));
      arrBytes.push_back(static_cast<unsigned char>(nColor >> 8));
    }
    arrBytes.insert(arrBytes.end(), {0, 0, 0, 0});
  }
  return arrBytes;
}

}  // namespace

class QXOgreSubUpload : public QXOgreTexturing {
protected:
  void SetUp() override {
    QXOgreTexturing::SetUp();
    m_pBillboard.reset(m_pGraphics3D->GetRenderOperationManager()->CreateBillboard(L"3D"));
    m_pBillboard->SetPosition({0.0, -1.0, 0.0});
    m_pBillboard->SetSize(SIZE, SIZE, 1);
    QXTextureImageManager::GetSingleton().Clear();
    QXTextureImageManager::GetSingleton().SetTextureManager(m_pTextures);
    QXTextureImageManagerEx::GetSingleton().SetTextureManager(m_pTextures);
  }
  void TearDown() override {
    m_pBillboard.reset();
    QXTextureImageManager::GetSingleton().Clear();
    QXTextureImageManager::GetSingleton().SetTextureManager(nullptr);
    QXTextureImageManagerEx::GetSingleton().Clear();
    QXTextureImageManagerEx::GetSingleton().SetTextureManager(nullptr);
    QXOgreTexturing::TearDown();
  }
  /// 8 x 8 pixels of a texture of an edge, from (x, y) on, each as 8 x 8 pixels of the picture.
  QXPicture Show(QXTexture* pTexture, int x, int y, int nEdge) {
    double const d = nEdge;
    pTexture->RendererOperation1(1, 1, 0);
    m_pBillboard->SetTexture(pTexture, QdcRect2D(x / d, y / d, (x + 8) / d, (y + 8) / d));
    return Frame();
  }
  static QXPixel Texel(QXPicture const& picture, int x, int y) {
    return picture.At(static_cast<unsigned int>(8 * x + 4), static_cast<unsigned int>(8 * y + 4));
  }
  static QXTextureData* MakeData(QX3DPixelFormat eFormat, unsigned int nCompression, int nWidth, int nHeight,
      std::vector<unsigned char> const& arr) {
    auto* const pData = new QXTextureData;
    pData->m_nWidth = static_cast<unsigned int>(nWidth);
    pData->m_nHeight = static_cast<unsigned int>(nHeight);
    pData->m_eFormat = eFormat;
    pData->m_nCompression = nCompression;
    pData->m_nDataSize = static_cast<unsigned int>(arr.size());
    pData->m_pPixels = NewBlock(arr);
    return pData;
  }
  QXTextureImage* AddImage(int n, QXTextureData* pData, unsigned int nSize) {
    QdcUnicodeString strName;
    strName.Format(L"image%d", n);
    QXTextureImage* const pImage = QXTextureImageManager::GetSingleton().GetTextureImage(strName);
    pImage->m_pTextureData = pData;
    pImage->m_nSize = nSize;
    EXPECT_EQ(QXTextureImageManager::GetSingleton().FindSpaceInBigTextures(pImage), 1);
    return pImage;
  }
  QXTexture* PageOf(QXTextureImage const& image) {
    QdcUnicodeString strName;
    strName.Format(L"Image_BigTexture_%d", static_cast<int>(image.GetBigTextureIndex()));
    return m_pTextures->GetTexture(strName, 0);
  }

  std::unique_ptr<QXBillboard> m_pBillboard;
};

TEST_F(QXOgreSubUpload, PartsOfEveryFormatReachTheirPlaceAndLeaveTheRest) {
  for (QX3DPixelFormat const eFormat : ALL_FORMATS) {
    QXTexture* const pTexture = MakeTexture(8, 8, eFormat, MakePlain(eFormat, {200, 0, 0, 255}, 64));
    std::vector<unsigned char> const arrPart = MakeImage(eFormat, 1, 3, 2);
    pTexture->LoadSubTexture(4, 5, 3, 2, 3, 2, arrPart.data(), 0);
    QXPicture const picture = Show(pTexture, 0, 0, 8);
    for (int y = 0; y < 8; ++y)
      for (int x = 0; x < 8; ++x) {
        bool const bInside = x >= 4 && x < 7 && y >= 5 && y < 7;
        QXPixel const pixel = bInside ? ColorOf(1, x - 4, y - 5) : QXPixel{200, 0, 0, 255};
        EXPECT_EQ(Texel(picture, x, y), Seen(eFormat, pixel)) << eFormat << ": " << x << ", " << y;
      }
  }
}

TEST_F(QXOgreSubUpload, BlocksReachTheirPlaceAndLeaveTheRest) {
  for (bool const bAlpha : {false, true}) {
    QX3DPixelFormat const eFormat = bAlpha ? PF_A8R8G8B8 : PF_R8G8B8;
    QXTexture* const pTexture = MakeTexture(16, 16, eFormat, MakeBlocks(bAlpha, 31, 0, 0, 16), 14);
    ASSERT_EQ(pTexture->IsLoaded(), 1) << Reason();
    // 6 x 3 pixels of a source of 6 x 5: two blocks of its first row.
    std::vector<unsigned char> const arrPart = MakeBlocks(bAlpha, 0, 63, 0, 4);
    pTexture->LoadSubTexture(4, 8, 6, 3, 6, 5, arrPart.data(), 1);
    for (int const nCorner : {0, 8}) {
      QXPicture const picture = Show(pTexture, nCorner, 8, 16);
      for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 8; ++x) {
          bool const bInside = nCorner + x >= 4 && nCorner + x < 12 && y < 4;
          EXPECT_EQ(Texel(picture, x, y), bInside ? GREEN_PIXEL : RED_PIXEL) << bAlpha << ": " << x << ", " << y;
        }
    }
    QXPicture const above = Show(pTexture, 4, 0, 16);
    for (int i = 0; i < 8; ++i) EXPECT_EQ(Texel(above, i, 7), RED_PIXEL) << i;
    // The copy in memory has them as well: block 9 of 16 is the first one.
    std::size_t const nBytes = bAlpha ? 16 : 8;
    unsigned char const* const pBlocks = pTexture->m_TextureData.m_pPixels;
    EXPECT_EQ(std::memcmp(pBlocks + 9 * nBytes, arrPart.data(), 2 * nBytes), 0);
    EXPECT_NE(std::memcmp(pBlocks + 8 * nBytes, arrPart.data(), nBytes), 0);
    EXPECT_NE(std::memcmp(pBlocks + 11 * nBytes, arrPart.data(), nBytes), 0);
    EXPECT_NE(std::memcmp(pBlocks + 13 * nBytes, arrPart.data(), nBytes), 0);
  }
}

TEST_F(QXOgreSubUpload, BlocksOfAnEdgeMayReachBeyondIt) {
  QXTexture* const pTexture = MakeTexture(10, 10, PF_R8G8B8, MakeBlocks(false, 31, 0, 0, 9), 14);
  ASSERT_EQ(pTexture->IsLoaded(), 1) << Reason();
  std::vector<unsigned char> const arrPart = MakeBlocks(false, 0, 63, 0, 4);
  pTexture->LoadSubTexture(8, 8, 8, 8, 8, 8, arrPart.data(), 0);
  pTexture->LoadSubTexture(-4, -4, 8, 8, 8, 8, arrPart.data(), 0);
  QXPicture const lower = Show(pTexture, 2, 2, 10);
  EXPECT_EQ(Texel(lower, 7, 7), GREEN_PIXEL);
  EXPECT_EQ(Texel(lower, 6, 6), GREEN_PIXEL);
  EXPECT_EQ(Texel(lower, 5, 7), RED_PIXEL);
  EXPECT_EQ(Texel(lower, 1, 1), GREEN_PIXEL);
  EXPECT_EQ(Texel(lower, 2, 2), RED_PIXEL);
}

TEST_F(QXOgreSubUpload, WhatCannotBePutThereHasItsReason) {
  QXTexture* const pBlocks = MakeTexture(8, 8, PF_R8G8B8, MakeBlocks(false, 31, 0, 0, 4), 14);
  std::vector<unsigned char> const arrPart = MakeBlocks(false, 0, 63, 0, 4);
  pBlocks->LoadSubTexture(2, 0, 4, 4, 4, 4, arrPart.data(), 1);
  EXPECT_EQ(Reason(), "a part of blocks must begin where a block begins");
  pBlocks->LoadSubTexture(0, 4, 4, 4, 4, 4, nullptr, 1);
  EXPECT_EQ(Reason(), "a part of a texture needs pixels");
  QXPicture const picture = Show(pBlocks, 0, 0, 8);
  for (int i = 0; i < 8; ++i) EXPECT_EQ(Texel(picture, i, i), RED_PIXEL) << i;
  MakeTexture()->LoadSubTexture(0, 0, 1, 1, 1, 1, arrPart.data(), 0);
  EXPECT_EQ(Reason(), "a texture without an image cannot be loaded");
  QXTextureData layers[2];
  for (QXTextureData& layer : layers) {
    layer.m_nWidth = layer.m_nHeight = 1;
    layer.m_eFormat = PF_A8R8G8B8;
    layer.m_pPixels = NewBlock({0, 0, 255, 255});
  }
  QXTexture* const pStack = MakeTexture();
  pStack->LoadTextureArray(layers, 0, 2);
  ASSERT_EQ(pStack->IsLoaded(), 1) << Reason();
  pStack->LoadSubTexture(0, 0, 1, 1, 1, 1, arrPart.data(), 0);
  EXPECT_EQ(Reason(), "animations and stacks of layers take no parts");
}

TEST_F(QXOgreSubUpload, AnImageThatWaitsInMemoryComesFirst) {
  QXTexture* const pTexture = MakeTexture();
  std::vector<unsigned char> const arrRed = MakePlain(PF_A8R8G8B8, RED_PIXEL, 64);
  std::vector<unsigned char> const arrGreen = MakePlain(PF_A8R8G8B8, GREEN_PIXEL, 64);
  pTexture->SetTextureData(8, 8, NewBlock(arrRed), 0, PF_A8R8G8B8);
  pTexture->LoadSubTexture(0, 0, 4, 8, 8, 8, arrGreen.data(), 0);
  EXPECT_EQ(pTexture->IsLoaded(), 1);
  QXPicture const first = Show(pTexture, 0, 0, 8);
  EXPECT_EQ(Texel(first, 3, 0), GREEN_PIXEL);
  EXPECT_EQ(Texel(first, 4, 0), RED_PIXEL);
  // A newer image does not undo a part that came after it.
  pTexture->SetTextureData(8, 8, NewBlock(MakePlain(PF_A8R8G8B8, BLUE_PIXEL, 64)), 0, PF_A8R8G8B8);
  pTexture->SetIsNeedLoadTexture(1);
  pTexture->LoadSubTexture(0, 0, 4, 8, 8, 8, arrGreen.data(), 0);
  QXPicture const second = Show(pTexture, 0, 0, 8);
  EXPECT_EQ(Texel(second, 3, 0), GREEN_PIXEL);
  EXPECT_EQ(Texel(second, 4, 0), BLUE_PIXEL);
}

TEST_F(QXOgreSubUpload, LevelsFollowTheParts) {
  std::vector<unsigned char> const arrRed = MakePlain(PF_A8R8G8B8, RED_PIXEL, 8 * 8 + 4 * 4 + 2 * 2 + 1);
  std::vector<unsigned char> const arrGreen = MakePlain(PF_A8R8G8B8, GREEN_PIXEL, 64);
  for (bool const bOwn : {false, true}) {
    QXTexture* const pTexture = MakeTexture();
    pTexture->SetTextureData(8, 8, NewBlock(arrRed), 0, PF_A8R8G8B8);
    pTexture->m_TextureData.SetBlockLength(arrRed.size());
    pTexture->SetTextureMipMap(bOwn ? 0 : 1);
    if (bOwn) QXTexture::BuildMipmapOffset(8, 8, PF_A8R8G8B8, 0, pTexture->m_arrMipmapOffset);
    pTexture->LoadTexture(0, 0);
    pTexture->LoadSubTexture(0, 0, 4, 8, 4, 8, arrGreen.data(), 0);
    for (int const nLevel : {0, 1, 2}) {
      pTexture->SetMipmapBaseLevel(nLevel);
      QXPicture const picture = Show(pTexture, 0, 0, 8);
      EXPECT_EQ(Texel(picture, 3, 1), GREEN_PIXEL) << bOwn << ": level " << nLevel;
      EXPECT_EQ(Texel(picture, 4, 1), RED_PIXEL) << bOwn << ": level " << nLevel;
    }
  }
}

TEST_F(QXOgreSubUpload, BlocksAreDrawnWithoutTheLevelsThatCannotFollow) {
  QXTexture* const pTexture = MakeTexture();
  std::vector<unsigned char> const arrRed = MakeBlocks(false, 31, 0, 0, 4 + 1 + 1 + 1);
  pTexture->SetTextureData(8, 8, NewBlock(arrRed), 14, PF_B8G8R8);
  pTexture->m_TextureData.SetBlockLength(arrRed.size());
  pTexture->BuildMipmapOffset();
  pTexture->LoadTexture(0, 0);
  ASSERT_EQ(pTexture->IsLoaded(), 1) << Reason();
  std::vector<unsigned char> const arrGreen = MakeBlocks(false, 0, 63, 0, 4);
  pTexture->LoadSubTexture(0, 0, 8, 8, 8, 8, arrGreen.data(), 0);
  for (int const nLevel : {0, 1, 3}) {
    pTexture->SetMipmapBaseLevel(nLevel);
    EXPECT_EQ(Texel(Show(pTexture, 0, 0, 8), 4, 4), GREEN_PIXEL) << nLevel;
  }
}

TEST_F(QXOgreSubUpload, TheImageAtlasShowsItsImagesInTheirColours) {
  for (QX3DPixelFormat const eFormat : {PF_R8G8B8, PF_A8R8G8B8, PF_A8B8G8R8, PF_R8G8B8A8, PF_BYTE_LA}) {
    QXTextureImage* arrImages[3] = {};
    for (int i = 0; i < 3; ++i) {
      int const n = eFormat * 10 + i;
      arrImages[i] = AddImage(n, MakeData(eFormat, 0, 8, 8, MakeImage(eFormat, n, 8, 8)), i == 1 ? 16 : 8);
    }
    QXTextureImageManager::GetSingleton().LoadTexture();
    for (int i = 0; i < 3; ++i) {
      ASSERT_EQ(arrImages[i]->m_bLoaded, 1);
      QXTexture* const pPage = PageOf(*arrImages[i]);
      ASSERT_NE(pPage, nullptr);
      QdcRect const slot = arrImages[i]->GetSlot();
      QXPicture const picture = Show(pPage, slot.left, slot.top, 1024);
      for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 8; ++x)
          EXPECT_EQ(Texel(picture, x, y), Seen(eFormat, ColorOf(eFormat * 10 + i, x, y)))
              << eFormat << ", image " << i << ": " << x << ", " << y;
      // Beside a picture smaller than its slot, and far from all slots, nothing was uploaded.
      if (eFormat == PF_BYTE_LA) continue;
      if (i == 1) {
        EXPECT_EQ(Texel(Show(pPage, slot.left + 8, slot.top, 1024), 0, 0), MAGENTA_PIXEL) << eFormat;
      }
      EXPECT_EQ(Texel(Show(pPage, 512, 512, 1024), 3, 3), MAGENTA_PIXEL) << eFormat;
    }
  }
}

TEST_F(QXOgreSubUpload, TheImageAtlasTakesBlocks) {
  for (bool const bAlpha : {false, true}) {
    QX3DPixelFormat const eFormat = bAlpha ? PF_A8R8G8B8 : PF_R8G8B8;
    int const n = bAlpha ? 10 : 0;
    QXTextureImage* const pFirst = AddImage(n, MakeData(eFormat, 14, 8, 8, MakeBlocks(bAlpha, 31, 0, 0, 4)), 8);
    QXTextureImage* const pSecond = AddImage(n + 1, MakeData(eFormat, 14, 6, 8, MakeBlocks(bAlpha, 0, 63, 0, 4)), 8);
    QXTextureImageManager::GetSingleton().LoadTexture();
    ASSERT_EQ(pSecond->m_bLoaded, 1) << Reason();
    ASSERT_EQ(pSecond->GetSlot().left, 8);
    QXTexture* const pPage = PageOf(*pFirst);
    QXPicture const first = Show(pPage, 0, 0, 1024);
    QXPicture const second = Show(pPage, 8, 0, 1024);
    QXPicture const below = Show(pPage, 0, 8, 1024);
    for (int i = 0; i < 8; ++i) {
      EXPECT_EQ(Texel(first, i, 7 - i), RED_PIXEL) << i;
      EXPECT_EQ(Texel(second, i, 7 - i), GREEN_PIXEL) << i;
      EXPECT_NE(Texel(below, i, 0), RED_PIXEL) << i;
    }
  }
}

TEST_F(QXOgreSubUpload, AFreedSlotShowsTheNextImage) {
  QXTextureImage* const pFirst = AddImage(0, MakeData(PF_A8R8G8B8, 0, 8, 8, MakeImage(PF_A8R8G8B8, 0, 8, 8)), 8);
  AddImage(1, MakeData(PF_A8R8G8B8, 0, 8, 8, MakeImage(PF_A8R8G8B8, 1, 8, 8)), 8);
  QXTextureImageManager::GetSingleton().LoadTexture();
  QXTexture* const pPage = PageOf(*pFirst);
  QXTextureImageManager::GetSingleton().RemoveTextureImage(L"image0");
  AddImage(2, MakeData(PF_A8R8G8B8, 0, 8, 8, MakeImage(PF_A8R8G8B8, 2, 8, 8)), 8);
  QXTextureImageManager::GetSingleton().LoadTexture();
  EXPECT_EQ(Texel(Show(pPage, 0, 0, 1024), 2, 3), ColorOf(2, 2, 3));
  EXPECT_EQ(Texel(Show(pPage, 8, 0, 1024), 2, 3), ColorOf(1, 2, 3));
  // With the last image the page leaves the device.
  m_pBillboard->SetTexture(nullptr, QdcRect2D());
  for (wchar_t const* szName : {L"image1", L"image2"}) QXTextureImageManager::GetSingleton().RemoveTextureImage(szName);
  EXPECT_EQ(m_pTextures->GetTexture(L"Image_BigTexture_0", 0), nullptr);
}

TEST_F(QXOgreSubUpload, TheSecondImageAtlasShowsItsImagesInNewTexturesAndInKeptOnes) {
  QXTextureImageManagerEx& atlas = QXTextureImageManagerEx::GetSingleton();
  for (QX3DPixelFormat const eFormat : {PF_R8G8B8, PF_A8R8G8B8, PF_A8B8G8R8, PF_R8G8B8A8, PF_BYTE_LA}) {
    QXTexture* pFormer = nullptr;
    for (int n = 0; n < 2; ++n) {
      QXTextureImageEx* const pImage = atlas.GetTextureImage(L"image");
      pImage->m_pTextureData = MakeData(eFormat, 0, 8, 8, MakeImage(eFormat, n, 8, 8));
      pImage->m_nWidth = pImage->m_nHeight = 8;
      pImage->m_nFormat = static_cast<unsigned int>(eFormat);
      pImage->m_bReady = 1;
      atlas.LoadTexture(1);
      ASSERT_EQ(pImage->m_bLoaded, 1) << Reason();
      EXPECT_TRUE(n == 0 || pImage->m_pTexture == pFormer);
      pFormer = pImage->m_pTexture;
      QXPicture const picture = Show(pFormer, 0, 0, 8);
      for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 8; ++x)
          EXPECT_EQ(Texel(picture, x, y), Seen(eFormat, ColorOf(n, x, y))) << eFormat << ": " << x << ", " << y;
      atlas.RemoveTextureImage(L"image", 1);
    }
  }
  m_pBillboard->SetTexture(nullptr, QdcRect2D());
}

TEST_F(QXOgreSubUpload, TheSecondImageAtlasTakesBlocks) {
  QXTextureImageManagerEx& atlas = QXTextureImageManagerEx::GetSingleton();
  for (int n = 0; n < 2; ++n) {
    QXTextureImageEx* const pImage = atlas.GetTextureImage(L"image");
    pImage->m_pTextureData = MakeData(PF_R8G8B8, 14, 8, 8, MakeBlocks(false, n == 0 ? 31 : 0, n == 0 ? 0 : 63, 0, 4));
    pImage->m_nWidth = pImage->m_nHeight = 8;
    pImage->m_nFormat = PF_R8G8B8;
    pImage->m_nCompression = 14;
    pImage->m_bReady = 1;
    atlas.LoadTexture(1);
    ASSERT_EQ(pImage->m_bLoaded, 1) << Reason();
    EXPECT_EQ(Texel(Show(pImage->m_pTexture, 0, 0, 8), 5, 5), n == 0 ? RED_PIXEL : GREEN_PIXEL) << n;
    atlas.RemoveTextureImage(L"image", 1);
  }
  m_pBillboard->SetTexture(nullptr, QdcRect2D());
}

}  // namespace QXC
