#include <QxGraphics3D/frame/foundation/base3d/QXImageData.h>
#include <QxGraphics3D/testing/QXNullRenderTarget.h>
#include <QxGraphics3D/testing/QXNullTexture.h>
#include <QxGraphics3D/testing/QXNullTextureManager.h>
#include <QxGraphics3D/testing/QXRecordingGraphics3D.h>
#include <QxGraphics3D/texture/QXTextureCacheEntry.h>
#include <QxGraphics3D/texture/QXTextureMemory.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>
#include <initializer_list>
#include <limits>
#include <memory>
#include <vector>

namespace QXC {
namespace {

using Bytes = std::vector<unsigned char>;

class QXNullTextureTest : public testing::Test {
protected:
  /// Bytes counting up from 1, as the texture's image.
  void SetImage(int nWidth, int nHeight, QX3DPixelFormat eFormat, std::size_t nBytes) {
    auto pPixels = std::make_unique<unsigned char[]>(nBytes);
    for (std::size_t i = 0; i < nBytes; ++i) pPixels[i] = static_cast<unsigned char>(i + 1);
    m_Texture.SetTextureData(nWidth, nHeight, pPixels.release(), 0, eFormat);
  }
  Bytes BlitBytes() {
    std::unique_ptr<QXImageData> const pImage(m_Texture.BlitToMemory());
    if (!pImage) return {};
    m_nBitDepth = pImage->m_nBitDepth;
    auto* const pPixels = static_cast<unsigned char*>(pImage->m_pPixels);
    EXPECT_EQ(pImage->m_nPitch, pImage->m_nWidth * pImage->m_nBitDepth / 8);
    Bytes const bytes(pPixels, pPixels + pImage->m_nPitch * pImage->m_nHeight);
    delete[] pPixels;
    return bytes;
  }

  int m_nBitDepth = 0;
  QXNullTexture m_Texture{nullptr, L"road"};
};

TEST_F(QXNullTextureTest, NewTextureIsNotOnTheDevice) {
  EXPECT_TRUE(m_Texture.m_strTexFilePath == L"road");
  EXPECT_EQ(m_Texture.IsLoaded(), 0);
  EXPECT_EQ(m_Texture.GetTextureID(), -1);
  EXPECT_TRUE(m_Texture.GetDevicePixels().empty());
  EXPECT_EQ(m_Texture.BlitToMemory(), nullptr);
}

TEST_F(QXNullTextureTest, LoadingCopiesTheImage) {
  SetImage(2, 1, PF_A8R8G8B8, 8);
  m_Texture.LoadTexture(1, 0);
  EXPECT_EQ(m_Texture.IsLoaded(), 1);
  EXPECT_EQ(m_Texture.GetTextureID(), static_cast<int>(m_Texture.GetBindID()));
  EXPECT_EQ(m_Texture.GetDeviceWidth(), 2u);
  EXPECT_EQ(m_Texture.GetDeviceHeight(), 1u);
  EXPECT_EQ(m_Texture.GetDeviceFormat(), PF_A8R8G8B8);
  EXPECT_EQ(m_Texture.GetDevicePixels(), (Bytes{1, 2, 3, 4, 5, 6, 7, 8}));
  m_Texture.m_TextureData.m_pPixels[0] = 99;
  EXPECT_EQ(m_Texture.GetDevicePixels()[0], 1);
}

TEST_F(QXNullTextureTest, TexturesHaveIdentifiersOfTheirOwn) {
  QXNullTexture other(nullptr);
  SetImage(1, 1, PF_L8, 1);
  m_Texture.LoadTexture(1, 0);
  other.SetTextureData(m_Texture.m_TextureData);
  other.LoadTexture(1, 0);
  EXPECT_NE(m_Texture.GetBindID(), other.GetBindID());
}

TEST_F(QXNullTextureTest, PixelsOutliveTheImageInMemory) {
  SetImage(1, 2, PF_B8G8R8, 6);
  m_Texture.LoadTexture(1, 1);
  EXPECT_EQ(m_Texture.m_TextureData.m_pPixels, nullptr);
  EXPECT_EQ(m_Texture.GetDevicePixels(), (Bytes{1, 2, 3, 4, 5, 6}));
  // There is nothing to make it anew from.
  m_Texture.LoadTexture(0, 0);
  EXPECT_EQ(m_Texture.IsLoaded(), 1);
  EXPECT_EQ(m_Texture.GetDevicePixels().size(), 6u);
}

TEST_F(QXNullTextureTest, LoadedTextureIsMadeAnewOnlyIfAskedFor) {
  SetImage(1, 1, PF_L8, 1);
  m_Texture.LoadTexture(1, 0);
  unsigned int const nBindID = m_Texture.GetBindID();
  m_Texture.m_TextureData.m_pPixels[0] = 50;
  m_Texture.LoadTexture(1, 0);
  EXPECT_EQ(m_Texture.GetDevicePixels(), Bytes{1});
  m_Texture.SetIsNeedLoadTexture(1);
  m_Texture.LoadTexture(1, 0);
  EXPECT_EQ(m_Texture.GetDevicePixels(), Bytes{50});
  EXPECT_EQ(m_Texture.IsNeedLoadTexture(), 0);
  m_Texture.m_TextureData.m_pPixels[0] = 60;
  m_Texture.LoadTexture(0, 0);
  EXPECT_EQ(m_Texture.GetDevicePixels(), Bytes{60});
  EXPECT_EQ(m_Texture.GetBindID(), nBindID);
}

TEST_F(QXNullTextureTest, ImagesThatAreNotThereFailToLoad) {
  m_Texture.LoadTexture(1, 0);
  EXPECT_EQ(m_Texture.IsLoaded(), 0);
  SetImage(0, 4, PF_L8, 4);
  m_Texture.LoadTexture(1, 0);
  EXPECT_EQ(m_Texture.IsLoaded(), 0);
  SetImage(4, 4, PF_A8R8G8B8, 63);
  m_Texture.m_TextureData.SetBlockLength(63);
  m_Texture.LoadTexture(1, 0);
  EXPECT_EQ(m_Texture.IsLoaded(), 0);
  // Larger than any memory: no size of a block wraps round.
  SetImage(-1, -1, PF_A8R8G8B8, 64);
  m_Texture.m_TextureData.SetBlockLength(64);
  m_Texture.LoadTexture(1, 0);
  EXPECT_EQ(m_Texture.IsLoaded(), 0);
}

TEST_F(QXNullTextureTest, LevelsBehindTheFirstAreKept) {
  SetImage(2, 2, PF_L8, 5);
  m_Texture.m_TextureData.SetBlockLength(5);
  m_Texture.LoadTexture(1, 0);
  EXPECT_EQ(m_Texture.GetDevicePixels(), (Bytes{1, 2, 3, 4, 5}));
}

TEST_F(QXNullTextureTest, CompressedImagesAreKeptAsTheyAre) {
  SetImage(5, 4, PF_A8R8G8B8, 32);
  m_Texture.m_TextureData.m_nCompression = TEXTURE_COMPRESSION_BLOCK;
  m_Texture.LoadTexture(1, 0);
  EXPECT_EQ(m_Texture.GetDevicePixels().size(), 32u);
  EXPECT_EQ(m_Texture.GetDeviceCompression(), static_cast<unsigned int>(TEXTURE_COMPRESSION_BLOCK));
  EXPECT_EQ(m_Texture.BlitToMemory(), nullptr);
  for (QX3DPixelFormat const eFormat : {PF_R8G8B8, PF_B8G8R8}) {
    SetImage(5, 4, eFormat, 16);
    m_Texture.m_TextureData.SetBlockLength(16);
    m_Texture.m_TextureData.m_nCompression = TEXTURE_COMPRESSION_BLOCK;
    m_Texture.LoadTexture(0, 0);
    EXPECT_EQ(m_Texture.GetDevicePixels().size(), 16u);
  }
}

TEST_F(QXNullTextureTest, PartsOfCompressedImagesAreReplacedByWholeBlocks) {
  // Three by two blocks, the last ones cut by the edge.
  SetImage(10, 7, PF_B8G8R8, 48);
  m_Texture.m_TextureData.m_nCompression = TEXTURE_COMPRESSION_BLOCK;
  m_Texture.LoadTexture(1, 0);
  Bytes expected = m_Texture.GetDevicePixels();
  auto const replace = [&expected](
                           int nBlock, unsigned char nValue) { std::fill_n(expected.begin() + nBlock * 8, 8, nValue); };
  unsigned char bytes[64];
  for (int i = 0; i < 64; ++i) bytes[i] = static_cast<unsigned char>(200 + i / 8);
  m_Texture.LoadSubTexture(4, 0, 4, 4, 4, 4, bytes, 0);
  replace(1, 200);
  EXPECT_EQ(m_Texture.GetDevicePixels(), expected);
  // Of a source of two by two blocks; what lies outside is left out.
  m_Texture.LoadSubTexture(8, 4, 8, 8, 8, 8, bytes, 0);
  replace(5, 200);
  EXPECT_EQ(m_Texture.GetDevicePixels(), expected);
  m_Texture.LoadSubTexture(-4, 0, 8, 8, 8, 8, bytes, 0);
  replace(0, 201);
  replace(3, 203);
  EXPECT_EQ(m_Texture.GetDevicePixels(), expected);
  m_Texture.LoadSubTexture(0, 4, 5, 1, 5, 1, bytes, 0);
  replace(3, 200);
  replace(4, 201);
  EXPECT_EQ(m_Texture.GetDevicePixels(), expected);
  m_Texture.LoadSubTexture(2, 0, 4, 4, 4, 4, bytes, 0);
  m_Texture.LoadSubTexture(0, 1, 4, 4, 4, 4, bytes, 0);
  EXPECT_EQ(m_Texture.GetDevicePixels(), expected);
}

TEST_F(QXNullTextureTest, BytesOfAFileAreKeptWhateverTheSizeOfTheImage) {
  SetImage(0, 0, PF_A8R8G8B8, 7);
  m_Texture.m_TextureData.m_nCompression = TEXTURE_COMPRESSION_RAW;
  m_Texture.LoadTexture(1, 0);
  EXPECT_EQ(m_Texture.IsLoaded(), 0);
  m_Texture.m_TextureData.m_nDataSize = 7;
  m_Texture.LoadTexture(1, 0);
  EXPECT_EQ(m_Texture.GetDevicePixels(), (Bytes{1, 2, 3, 4, 5, 6, 7}));
  unsigned char const bytes[64] = {};
  m_Texture.LoadSubTexture(0, 0, 4, 4, 4, 4, bytes, 0);
  EXPECT_EQ(m_Texture.GetDevicePixels()[0], 1);
  QXNullTexture other(nullptr);
  other.SetTextureData(m_Texture.m_TextureData);
  other.LoadTexture(1, 0);
  EXPECT_EQ(other.GetDevicePixels(), (Bytes{1, 2, 3, 4, 5, 6, 7}));
  // What is left of a former block's size says nothing of the next file.
  SetImage(0, 0, PF_A8R8G8B8, 3);
  m_Texture.m_TextureData.m_nCompression = TEXTURE_COMPRESSION_RAW;
  m_Texture.RendererOperation2();
  m_Texture.LoadTexture(1, 0);
  EXPECT_EQ(m_Texture.IsLoaded(), 0);
}

TEST_F(QXNullTextureTest, LeavingTheDeviceForgetsThePixels) {
  SetImage(1, 1, PF_L8, 1);
  m_Texture.LoadTexture(1, 0);
  m_Texture.RendererOperation2();
  EXPECT_EQ(m_Texture.GetBindID(), 0u);
  EXPECT_TRUE(m_Texture.GetDevicePixels().empty());
  EXPECT_NE(m_Texture.m_TextureData.m_pPixels, nullptr);
  m_Texture.LoadTexture(1, 0);
  EXPECT_EQ(m_Texture.IsLoaded(), 1);
}

// --- Sub-uploads ---

TEST_F(QXNullTextureTest, SubUploadsLandInThePixels) {
  SetImage(3, 3, PF_L8, 9);
  m_Texture.LoadTexture(1, 0);
  unsigned char const bytes[] = {21, 22, 23, 24};
  m_Texture.LoadSubTexture(1, 1, 2, 2, 2, 2, bytes, 0);
  EXPECT_EQ(m_Texture.GetDevicePixels(), (Bytes{1, 2, 3, 4, 21, 22, 7, 23, 24}));
  EXPECT_EQ(m_Texture.m_TextureData.m_pPixels[4], 5);
}

TEST_F(QXNullTextureTest, SubUploadTakesTheTopLeftOfALargerSource) {
  SetImage(2, 2, PF_B8G8R8, 12);
  m_Texture.LoadTexture(1, 0);
  unsigned char const bytes[] = {31, 32, 33, 34, 35, 36, 41, 42, 43, 44, 45, 46};
  m_Texture.LoadSubTexture(1, 0, 1, 2, 2, 2, bytes, 0);
  EXPECT_EQ(m_Texture.GetDevicePixels(), (Bytes{1, 2, 3, 31, 32, 33, 7, 8, 9, 41, 42, 43}));
}

TEST_F(QXNullTextureTest, WhatLiesOutsideIsLeftOut) {
  SetImage(2, 2, PF_L8, 4);
  m_Texture.LoadTexture(1, 0);
  unsigned char const bytes[] = {21, 22, 23, 24, 25, 26, 27, 28, 29};
  m_Texture.LoadSubTexture(-1, -1, 2, 2, 3, 3, bytes, 0);
  EXPECT_EQ(m_Texture.GetDevicePixels(), (Bytes{25, 2, 3, 4}));
  m_Texture.LoadSubTexture(1, 1, 3, 3, 3, 3, bytes, 0);
  EXPECT_EQ(m_Texture.GetDevicePixels(), (Bytes{25, 2, 3, 21}));
  // More asked for than the source has.
  m_Texture.LoadSubTexture(0, 0, 2, 2, 1, 1, bytes, 0);
  EXPECT_EQ(m_Texture.GetDevicePixels(), (Bytes{21, 2, 3, 21}));
  constexpr int kMost = std::numeric_limits<int>::max();
  constexpr int kLeast = std::numeric_limits<int>::min();
  m_Texture.LoadSubTexture(kMost, 0, kMost, 1, 3, 3, bytes, 0);
  m_Texture.LoadSubTexture(kLeast, kLeast, kMost, kMost, 3, 3, bytes, 0);
  m_Texture.LoadSubTexture(0, 0, -1, -1, 3, 3, bytes, 0);
  m_Texture.LoadSubTexture(0, 0, 1, 1, 3, 3, nullptr, 0);
  EXPECT_EQ(m_Texture.GetDevicePixels(), (Bytes{21, 2, 3, 21}));
}

TEST_F(QXNullTextureTest, SubUploadBeforeLoadingIsLost) {
  unsigned char const bytes[] = {1};
  m_Texture.LoadSubTexture(0, 0, 1, 1, 1, 1, bytes, 0);
  EXPECT_TRUE(m_Texture.GetDevicePixels().empty());
}

// --- Reading back ---

TEST_F(QXNullTextureTest, PixelsAreReadBackAsBlueGreenRedAlpha) {
  struct Case {
    QX3DPixelFormat m_eFormat;
    std::size_t m_nBytes;
    int m_nBitDepth;
    Bytes m_arrExpected;
  };
  for (Case const& test : {Case{PF_L8, 1, 8, {1}}, Case{PF_BYTE_LA, 2, 32, {1, 1, 1, 2}},
           Case{PF_R8G8B8, 3, 24, {1, 2, 3}}, Case{PF_B8G8R8, 3, 24, {1, 2, 3}}, Case{PF_A8R8G8B8, 4, 32, {1, 2, 3, 4}},
           Case{PF_R8G8B8A8, 4, 32, {1, 2, 3, 4}}, Case{PF_A8B8G8R8, 4, 32, {3, 2, 1, 4}},
           Case{PF_B8G8R8A8, 4, 32, {4, 3, 2, 1}}}) {
    SetImage(1, 1, test.m_eFormat, test.m_nBytes);
    m_Texture.LoadTexture(0, 0);
    EXPECT_EQ(BlitBytes(), test.m_arrExpected) << test.m_eFormat;
    EXPECT_EQ(m_nBitDepth, test.m_nBitDepth) << test.m_eFormat;
  }
}

// --- Levels, memory, log ---

TEST_F(QXNullTextureTest, LevelsAreRemembered) {
  EXPECT_EQ(m_Texture.GetMipmapBaseLevel(), 0);
  EXPECT_EQ(m_Texture.GetMipmapMaxLevel(), 0);
  m_Texture.SetMipmapBaseLevel(1);
  m_Texture.SetMipmapMaxLevel(4);
  EXPECT_EQ(m_Texture.GetMipmapBaseLevel(), 1);
  EXPECT_EQ(m_Texture.GetMipmapMaxLevel(), 4);
}

TEST_F(QXNullTextureTest, DeviceMemoryIsCounted) {
  int const nBefore = QXTextureMemory::GetSingleton().GetCurrentMemory();
  {
    QXNullTexture texture(nullptr);
    texture.SetTextureData(1024, 1024, new unsigned char[3 * 1048576](), 0, PF_B8G8R8);
    texture.LoadTexture(1, 0);
    texture.LoadTexture(0, 1);
    EXPECT_EQ(QXTextureMemory::GetSingleton().GetCurrentMemory(), nBefore + 3);
    texture.RendererOperation2();
    EXPECT_EQ(QXTextureMemory::GetSingleton().GetCurrentMemory(), nBefore);
    texture.SetTextureData(1024, 1024, new unsigned char[1048576](), 0, PF_L8);
    texture.LoadTexture(1, 0);
    EXPECT_EQ(QXTextureMemory::GetSingleton().GetCurrentMemory(), nBefore + 1);
  }
  EXPECT_EQ(QXTextureMemory::GetSingleton().GetCurrentMemory(), nBefore);
}

// --- Render targets ---

TEST(QXNullTargetTexture, ShowsThePictureOfItsTarget) {
  int const nBefore = QXTextureMemory::GetSingleton().GetCurrentMemory();
  {
    QXNullRenderTarget target(L"mirror", 2, 1, 1);
    auto* const pTexture = dynamic_cast<QXNullTexture*>(target.GetTexture());
    ASSERT_NE(pTexture, nullptr);
    EXPECT_EQ(pTexture->IsLoaded(), 1);
    EXPECT_EQ(target.GetTextureID(), pTexture->GetTextureID());
    EXPECT_EQ(pTexture->GetDevicePixels(), Bytes(8));
    target.Clear(1, 0, 1, 1, QXColorValue3D(1.0, 0.0, 0.0, 1.0));
    EXPECT_EQ(pTexture->GetDevicePixels(), (Bytes{0, 0, 0, 0, 0, 0, 255, 255}));
    target.ReSize(512, 512);
    EXPECT_EQ(pTexture->GetDeviceWidth(), 512u);
    EXPECT_EQ(pTexture->GetDeviceHeight(), 512u);
    std::unique_ptr<QXImageData> const pImage(pTexture->BlitToMemory());
    ASSERT_NE(pImage, nullptr);
    EXPECT_EQ(pImage->m_nBitDepth, 32);
    EXPECT_EQ(pImage->m_nPitch, 2048u);
    delete[] static_cast<unsigned char*>(pImage->m_pPixels);
    EXPECT_EQ(QXTextureMemory::GetSingleton().GetCurrentMemory(), nBefore + 1);
  }
  EXPECT_EQ(QXTextureMemory::GetSingleton().GetCurrentMemory(), nBefore);
}

TEST(QXNullTargetTexture, IsNotLoadedInto) {
  QXNullRenderTarget target(L"mirror", 1, 1, 1);
  auto* const pTexture = dynamic_cast<QXNullTexture*>(target.GetTexture());
  ASSERT_NE(pTexture, nullptr);
  pTexture->SetTextureData(1, 1, new unsigned char[1]{9}, 0, PF_L8);
  pTexture->LoadTexture(0, 0);
  unsigned char const bytes[4] = {1, 2, 3, 4};
  pTexture->LoadSubTexture(0, 0, 1, 1, 1, 1, bytes, 0);
  pTexture->RendererOperation2();
  EXPECT_EQ(pTexture->IsLoaded(), 1);
  EXPECT_EQ(pTexture->GetDevicePixels(), Bytes(4));
  EXPECT_EQ(pTexture->GetDeviceFormat(), PF_A8R8G8B8);
}

TEST(QXNullTargetTexture, WindowsHaveNone) {
  QXNullRenderTarget window(L"main", 1, 1, 0);
  EXPECT_EQ(window.GetTexture(), nullptr);
  EXPECT_EQ(window.GetTextureID(), -1);
}

TEST(QXNullTextureManager, FindsMakesAndNamesTextures) {
  QXNullTextureManager manager(nullptr);
  EXPECT_EQ(manager.GetTexture(L"road", 0), nullptr);
  EXPECT_EQ(manager.ManagerOperation2(L"road"), 0);
  QXTexture* const pTexture = manager.GetTexture(L"road", 1);
  ASSERT_NE(pTexture, nullptr);
  EXPECT_TRUE(pTexture->m_strTexFilePath == L"road");
  EXPECT_EQ(pTexture->GetRef(), 0);
  EXPECT_EQ(manager.GetTexture(L"road", 1), pTexture);
  EXPECT_EQ(manager.ManagerOperation2(L"road"), 1);
  EXPECT_EQ(manager.GetTextureCount(), 1u);
}

TEST(QXNullTextureManager, FindingATextureIsAnAccessAskingForItIsNot) {
  struct Open : QXTextureManager {
    static QXTextureCacheMap& CacheOf(QXTextureManager& manager) { return manager.*(&Open::m_mapCache); }
  };
  QXNullTextureManager manager(nullptr);
  manager.GetTexture(L"road", 1);
  QXTextureCacheEntry& entry = *Open::CacheOf(manager).at(L"road");
  entry.SetLastAccess(-1.0);
  manager.ManagerOperation2(L"road");
  EXPECT_EQ(entry.GetLastAccess(), -1.0);
  double const dBefore = static_cast<double>(std::clock());
  manager.GetTexture(L"road", 0);
  EXPECT_GE(entry.GetLastAccess(), dBefore);
  // An entry that lost its texture gets another one.
  entry.SetTexture(nullptr);
  entry.SetLastAccess(-1.0);
  EXPECT_EQ(manager.GetTexture(L"road", 0), nullptr);
  QXTexture* const pTexture = manager.GetTexture(L"road", 1);
  ASSERT_NE(pTexture, nullptr);
  EXPECT_EQ(entry.GetTexture(), pTexture);
  EXPECT_GE(entry.GetLastAccess(), dBefore);
  EXPECT_EQ(manager.GetTextureCount(), 1u);
}

TEST(QXNullTextureManager, EveryTextureGoesWithItsLastUserOrWithTheManager) {
  int const nBefore = QXNullObject::GetLiveCount();
  {
    QXNullTextureManager manager(nullptr);
    QXTexture* const pRoad = manager.GetTexture(L"road", 1);
    pRoad->AddRef();
    manager.GetTexture(L"wall", 1)->AddRef();
    manager.RemoveTexture(pRoad, 1);
    EXPECT_EQ(QXNullObject::GetLiveCount(), nBefore + 2);
    QXTexture* pNameless = manager.CreateTexture();
    manager.AddUnusedTextures(pNameless);
    EXPECT_EQ(QXNullObject::GetLiveCount(), nBefore + 3);
  }
  EXPECT_EQ(QXNullObject::GetLiveCount(), nBefore);
}

TEST(QXNullTextureManager, DeletesTexturesFromTheDeviceByIdentifier) {
  QXNullTextureManager manager(nullptr);
  QXTexture* const pRoad = manager.GetTexture(L"road", 1);
  QXTexture* const pWall = manager.GetTexture(L"wall", 1);
  for (QXTexture* const pTexture : {pRoad, pWall}) {
    pTexture->SetTextureData(1, 1, new unsigned char[1](), 0, PF_L8);
    pTexture->LoadTexture(1, 0);
  }
  manager.DeleteTexture(0);
  manager.DeleteTexture(pRoad->GetBindID());
  EXPECT_EQ(pRoad->IsLoaded(), 0);
  EXPECT_EQ(pWall->IsLoaded(), 1);
}

TEST(QXNullTextureManager, CallsAreWrittenDown) {
  QXRecordingGraphics3D graphics;
  graphics.Initialize(L"");
  graphics.GetLog().Clear();
  QXTextureManager* const pManager = graphics.GetTextureManager();
  pManager->Lock();
  QXTexture* const pTexture = pManager->GetTexture(L"road", 1);
  pTexture->AddRef();
  pManager->Unlock();
  pManager->GetTexture(L"road", 1);
  pTexture->SetTextureMipMap(1);
  pTexture->SetTextureRepeatMode(1);
  pTexture->SetTextureData(1, 1, new unsigned char[1](), 0, PF_L8);
  pTexture->LoadTexture(1, 0);
  unsigned char const nByte = 7;
  pTexture->LoadSubTexture(0, 0, 1, 1, 1, 1, &nByte, 0);
  pTexture->RendererOperation1(1, 2, 3);
  pManager->DeleteTexture(pTexture->GetBindID() + 1000000);
  pManager->RemoveTexture(pTexture, 1);
  pManager->DeleteUnusedTextures();
  std::unique_ptr<QXTexture> const pNameless(pManager->CreateTexture());
  std::string const strText = graphics.GetLog().GetText();
  EXPECT_EQ(strText.find("texture manager: GetTexture(\"road\", 1)\n"
                         "texture \"road\": SetTextureMipMap(1)\n"
                         "texture \"road\": SetTextureRepeatMode(1)\n"
                         "texture \"road\": LoadTexture(1, 0)\n"
                         "texture \"road\": LoadSubTexture(0, 0, 1, 1, 1, 1, memory, 0)\n"
                         "texture \"road\": RendererOperation1(1, 2, 3)\n"
                         "texture manager: DeleteTexture("),
      0u)
      << strText;
  EXPECT_NE(strText.find(")\n"
                         "texture \"road\": destroyed()\n"
                         "texture manager: DeleteUnusedTextures()\n"
                         "texture manager: CreateTexture()\n"),
      std::string::npos)
      << strText;
}

}  // namespace
}  // namespace QXC
