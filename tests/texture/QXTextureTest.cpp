#include <QxGraphics3D/texture/QXTexture.h>

#include <cstring>
#include <limits>
#include <map>
#include <memory>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

#include <tests/QXFieldOrder.h>

#include <gtest/gtest.h>

#include <QxGraphics3D/frame/foundation/base3d/QXImageData.h>

#include "../QXBareTexture.h"
#include "../renderop/QXSlotOf.h"

using namespace QXC;

namespace {

QdcUnicodeString const kPath(L"/data/roofs/slate.png");

QXTextureData MakeData(unsigned int nWidth, unsigned int nHeight, QX3DPixelFormat eFormat, unsigned int nPixelSize) {
  QXTextureData data;
  data.m_nWidth = nWidth;
  data.m_nHeight = nHeight;
  data.m_eFormat = eFormat;
  data.m_pPixels = new unsigned char[nWidth * nHeight * nPixelSize];
  for (unsigned int nByte = 0; nByte < nWidth * nHeight * nPixelSize; ++nByte) {
    data.m_pPixels[nByte] = static_cast<unsigned char>(nByte * 7 + 1);
  }
  return data;
}

/// Tells when it dies and whether its block was released before.
class WatchedData : public QXTextureData {
public:
  explicit WatchedData(std::vector<bool>& arrReleased) : m_arrReleased(arrReleased) {
    m_pPixels = new unsigned char[4]{};
  }
  ~WatchedData() override { m_arrReleased.push_back(m_pPixels == nullptr); }

private:
  std::vector<bool>& m_arrReleased;
};

void ExpectDefaults(QXTexture& texture) {
  EXPECT_EQ(texture.m_TextureData.m_pPixels, nullptr);
  EXPECT_EQ(texture.m_TextureData.m_nWidth, 0U);
  EXPECT_EQ(texture.m_TextureData.m_nHeight, 0U);
  EXPECT_EQ(texture.m_arrLodLevels.GetSize(), 0U);
  EXPECT_EQ(texture.m_bMipmapEnabled, 0);
  EXPECT_EQ(texture.m_rcRegion, QdcRect2D());
  for (int const nValue : texture.m_nRegionValues) EXPECT_EQ(nValue, 0);
  EXPECT_EQ(texture.m_dScaleValue, 0.0);
  EXPECT_EQ(texture.m_vecScale, QXVector3d(1, 1, 1));
  EXPECT_EQ(texture.m_vecOffset, QXVector3d(0, 0, 0));
  EXPECT_EQ(texture.m_bSRGB, 1);
  EXPECT_EQ(texture.m_nBindID, 0U);
  EXPECT_EQ(texture.m_bLoadedImage, 0);
  EXPECT_EQ(texture.m_nRefCount, 0);
  EXPECT_EQ(texture.m_bRepeatMode, 0);
  EXPECT_EQ(texture.m_bHasTransparentData, 1);
  ASSERT_EQ(texture.m_arrMipmapOffset.GetSize(), 1U);
  EXPECT_EQ(texture.m_arrMipmapOffset[0], 0U);
  EXPECT_EQ(texture.m_bNeedLoadTexture, 0);
  EXPECT_EQ(texture.m_bNeedLoadImg, 0);
  EXPECT_EQ(texture.m_bIsFinished, 1);
  EXPECT_EQ(texture.m_bKtx2Flag, 0);
}

TEST(QXTexture, StartsWithItsDefaults) {
  QXBareTexture texture;
  ExpectDefaults(texture);
  EXPECT_EQ(texture.m_strTexFilePath, QdcUnicodeString());
  EXPECT_EQ(texture.m_strImgRealFilePath, QdcUnicodeString());
}

TEST(QXTexture, StartsWithItsDefaultsAndTheTwoPaths) {
  QXBareTexture texture(kPath);
  ExpectDefaults(texture);
  EXPECT_EQ(texture.m_strTexFilePath, kPath);
  EXPECT_EQ(texture.m_strImgRealFilePath, kPath);
}

TEST(QXTexture, CannotBeCopied) {
  EXPECT_FALSE(std::is_copy_constructible_v<QXBareTexture>);
  EXPECT_FALSE(std::is_copy_assignable_v<QXBareTexture>);
  EXPECT_TRUE(std::is_abstract_v<QXTexture>);
}

TEST(QXTexture, HasItsFieldsInOrder) {
  QXBareTexture texture;
  ExpectInOrder({&texture.m_strTexFilePath, &texture.m_TextureData, &texture.m_arrLodLevels, &texture.m_bMipmapEnabled,
      &texture.m_rcRegion, &texture.m_nRegionValues, &texture.m_dScaleValue, &texture.m_vecScale, &texture.m_vecOffset,
      &texture.m_bSRGB, &texture.m_nBindID, &texture.m_bLoadedImage, &texture.m_nRefCount, &texture.m_bRepeatMode,
      &texture.m_bHasTransparentData, &texture.m_arrMipmapOffset, &texture.m_bNeedLoadTexture, &texture.m_bNeedLoadImg,
      &texture.m_Mutex, &texture.m_bIsFinished, &texture.m_strImgRealFilePath, &texture.m_bKtx2Flag});
}

TEST(QXTexture, HasItsOperationsInSlotOrder) {
  using T = QXTexture;
  std::vector<std::ptrdiff_t> const arrSlots{SlotOf(&T::RendererOperation1), SlotOf(&T::RendererOperation2),
      SlotOf(&T::LoadTexture),
      SlotOf(static_cast<void (T::*)(QXTextureData*, unsigned int, unsigned int)>(&T::LoadTextureArray)),
      SlotOf(static_cast<void (T::*)(unsigned char)>(&T::LoadTextureArray)), SlotOf(&T::LoadSubTexture),
      SlotOf(&T::IsLoaded), SlotOf(&T::IsInitialGPU),
      SlotOf(static_cast<unsigned char (T::*)(QdcUnicodeString const&, unsigned char, unsigned char, unsigned char)>(
          &T::LoadImageData)),
      SlotOf(static_cast<unsigned char (T::*)(unsigned char, unsigned char, unsigned char)>(&T::LoadImageData)),
      SlotOf(&T::ReleaseImgData), SlotOf(static_cast<void (T::*)(QXTextureData const&)>(&T::SetTextureData)),
      SlotOf(static_cast<void (T::*)(int, int, unsigned char*, unsigned int, QX3DPixelFormat)>(&T::SetTextureData)),
      SlotOf(static_cast<void (T::*)(QXTextureData const*)>(&T::SetTextureData)),
      SlotOf(static_cast<unsigned char (T::*)(QXImageData*&, int, int, int, unsigned char)>(&T::SetTextureData)),
      SlotOf(&T::FlipTexture), SlotOf(&T::GetBindID), SlotOf(static_cast<void (T::*)()>(&T::BuildMipmapOffset)),
      SlotOf(&T::SetTextureRepeatMode), SlotOf(static_cast<QXTextureData* (T::*)()>(&T::GetTextureData)),
      SlotOf(&T::GetTextureRepeatMode), SlotOf(&T::SetEdgeTransparency), SlotOf(&T::ScaleImage),
      SlotOf(&T::SetTextureMipMap), SlotOf(&T::SetMipmapBaseLevel), SlotOf(&T::SetMipmapMaxLevel),
      SlotOf(&T::GetMipmapBaseLevel), SlotOf(&T::GetMipmapMaxLevel), SlotOf(&T::SetMipmapOffset),
      SlotOf(&T::GetMipmapOffset), SlotOf(&T::AddTexLodLevel), SlotOf(&T::DelTexLodLevel), SlotOf(&T::SetReverse),
      SlotOf(&T::GetNumTextureFrame), SlotOf(&T::GetTimeTextureFrame), SlotOf(&T::GetIsFinished),
      SlotOf(&T::SetIsFinished), SlotOf(&T::SetTranseparentPixelColor), SlotOf(&T::BlitToMemory),
      SlotOf(&T::GetTextureID), SlotOf(&T::SetTextureFlagOgreV2), SlotOf(&T::GetTextureFlagOgreV2)};
  // 43 with the destructor, which is slot 0.
  ASSERT_EQ(arrSlots.size(), 42U);
  for (std::size_t nSlot = 0; nSlot < arrSlots.size(); ++nSlot) {
    EXPECT_EQ(arrSlots[nSlot], static_cast<std::ptrdiff_t>(nSlot + 1));
  }
}

TEST(QXTexture, AnswersForADeviceThatItDoesNotHave) {
  QXBareTexture texture;
  texture.SetTextureData(MakeData(1, 1, PF_A8R8G8B8, 4));
  QXTextureData layer;
  texture.LoadTextureArray(&layer, 0, 1);
  texture.LoadTextureArray(1);
  EXPECT_EQ(texture.GetBindID(), 0U);
  EXPECT_EQ(texture.IsInitialGPU(), 1);
  texture.SetMipmapBaseLevel(3);
  texture.SetMipmapMaxLevel(4);
  EXPECT_EQ(texture.GetMipmapBaseLevel(), 0);
  EXPECT_EQ(texture.GetMipmapMaxLevel(), 0);
  texture.SetReverse(1);
  EXPECT_EQ(texture.GetNumTextureFrame(), 0);
  std::map<unsigned int, unsigned int> mapTimes{{1, 2}};
  texture.GetTimeTextureFrame(mapTimes);
  EXPECT_EQ(mapTimes, (std::map<unsigned int, unsigned int>{{1, 2}}));
  EXPECT_EQ(texture.BlitToMemory(), nullptr);
  EXPECT_EQ(texture.GetTextureID(), -1);
  texture.SetTextureFlagOgreV2(5);
  EXPECT_EQ(texture.GetTextureFlagOgreV2(), 0U);
}

TEST(QXTexture, TakesNoLodLevels) {
  QXBareTexture texture;
  QXTextureData level;
  QdcArray<QXTextureData*> arrLevels;
  arrLevels.Add(&level);
  EXPECT_EQ(texture.AddTexLodLevel(arrLevels, 0, 1), 0);
  EXPECT_EQ(arrLevels.GetSize(), 1U);
  EXPECT_EQ(texture.m_arrLodLevels.GetSize(), 0U);
  EXPECT_EQ(texture.DelTexLodLevel(0), 0);
}

TEST(QXTexture, IsLoadedWithAnIdentifierAboveZero) {
  QXBareTexture texture;
  EXPECT_EQ(texture.IsLoaded(), 0);
  texture.m_nBindID = 1;
  EXPECT_EQ(texture.IsLoaded(), 1);
  texture.m_nBindID = std::numeric_limits<unsigned int>::max();
  EXPECT_EQ(texture.IsLoaded(), 1);
  EXPECT_EQ(texture.GetBindID(), std::numeric_limits<unsigned int>::max());
}

TEST(QXTexture, CountsReferencesWithoutLimits) {
  QXBareTexture texture;
  texture.AddRef();
  texture.AddRef();
  EXPECT_EQ(texture.GetRef(), 2);
  for (int nTimes = 0; nTimes < 3; ++nTimes) texture.DecRef();
  EXPECT_EQ(texture.GetRef(), -1);
  EXPECT_EQ(texture.m_nRefCount, -1);
}

TEST(QXTexture, KeepsEachFlagInItsOwnField) {
  QXBareTexture texture;
  texture.SetSRGB(0);
  texture.SetTextureRepeatMode(1);
  texture.SetTextureMipMap(1);
  texture.SetIsNeedLoadTexture(1);
  texture.SetIsFinished(0);
  EXPECT_EQ(texture.m_bSRGB, 0);
  EXPECT_EQ(texture.GetSRGB(), 0);
  EXPECT_EQ(texture.m_bRepeatMode, 1);
  EXPECT_EQ(texture.GetTextureRepeatMode(), 1);
  EXPECT_EQ(texture.IsTextureRepeatMode(), 1);
  EXPECT_EQ(texture.m_bMipmapEnabled, 1);
  EXPECT_EQ(texture.m_bNeedLoadTexture, 1);
  EXPECT_EQ(texture.IsNeedLoadTexture(), 1);
  EXPECT_EQ(texture.GetIsNeedLoadImg(), 0);
  EXPECT_EQ(texture.m_bIsFinished, 0);
  EXPECT_EQ(texture.GetIsFinished(), 0);
  texture.SetIsNeedLoadImg(1);
  texture.SetIsNeedLoadTexture(0);
  EXPECT_EQ(texture.m_bNeedLoadImg, 1);
  EXPECT_EQ(texture.GetIsNeedLoadImg(), 1);
  EXPECT_EQ(texture.IsNeedLoadTexture(), 0);
  EXPECT_EQ(texture.IsLoadedImage(), 0);
  texture.m_bLoadedImage = 1;
  EXPECT_EQ(texture.IsLoadedImage(), 1);
  texture.m_bHasTransparentData = 0;
  EXPECT_EQ(texture.IsHasTransparentData(), 0);
}

TEST(QXTexture, KeepsItsTwoPathsApart) {
  QXBareTexture texture(kPath);
  texture.SetTexFilePath(L"name");
  EXPECT_EQ(texture.m_strTexFilePath, L"name");
  EXPECT_EQ(texture.GetImgRealFilePath(), kPath);
  texture.SetImgRealFilePath(L"file");
  EXPECT_EQ(texture.GetImgRealFilePath(), L"file");
  EXPECT_EQ(texture.m_strTexFilePath, L"name");
}

TEST(QXTexture, GivesTheAddressOfItsImage) {
  QXBareTexture texture;
  EXPECT_EQ(static_cast<QXTexture&>(texture).GetTextureData(), &texture.m_TextureData);
}

TEST(QXTexture, ReadsNoFileWhereAnImageOrADeviceTextureIs) {
  class Counting : public QXBareTexture {
  public:
    using QXBareTexture::LoadImageData;
    using QXBareTexture::QXBareTexture;
    unsigned char LoadImageData(
        QdcUnicodeString const& strPath, unsigned char a, unsigned char b, unsigned char bWiden) override {
      m_arrCalls.push_back(strPath);
      m_nArguments = a * 100 + b * 10 + bWiden;
      return 7;
    }
    std::vector<QdcUnicodeString> m_arrCalls;
    int m_nArguments = 0;
  };
  Counting texture(kPath);
  texture.m_nBindID = 1;
  EXPECT_EQ(texture.LoadImageData(1, 1, 1), 1);
  texture.m_nBindID = 0;
  texture.m_bLoadedImage = 1;
  EXPECT_EQ(texture.LoadImageData(1, 1, 1), 1);
  EXPECT_TRUE(texture.m_arrCalls.empty());
  texture.m_bLoadedImage = 0;
  texture.SetImgRealFilePath(L"elsewhere");
  EXPECT_EQ(texture.LoadImageData(3, 2, 1), 7);
  EXPECT_EQ(texture.m_arrCalls, std::vector<QdcUnicodeString>{kPath});
  EXPECT_EQ(texture.m_nArguments, 321);
}

TEST(QXTexture, ReleasesImageAndLodLevelsAndLeavesTheFlags) {
  std::vector<bool> arrReleased;
  QXBareTexture texture;
  texture.SetTextureData(MakeData(2, 3, PF_A8R8G8B8, 4));
  texture.SetIsNeedLoadTexture(1);
  texture.m_arrLodLevels.Add(new WatchedData(arrReleased));
  texture.m_arrLodLevels.Add(nullptr);
  texture.m_arrLodLevels.Add(new WatchedData(arrReleased));
  texture.ReleaseImgData();
  EXPECT_EQ(arrReleased, (std::vector<bool>{true, true}));
  EXPECT_EQ(texture.m_arrLodLevels.GetSize(), 0U);
  EXPECT_EQ(texture.m_arrLodLevels.GetCapacity(), 0U);
  EXPECT_EQ(texture.m_TextureData.m_pPixels, nullptr);
  EXPECT_EQ(texture.m_TextureData.m_nWidth, 2U);
  EXPECT_EQ(texture.IsLoadedImage(), 1);
  EXPECT_EQ(texture.IsNeedLoadTexture(), 1);
}

TEST(QXTexture, DiesWithItsLodLevelsAndWithoutCallingWhatADerivedClassMadeOfReleasing) {
  class Derived : public QXBareTexture {
  public:
    explicit Derived(int& nCalls) : m_nCalls(nCalls) {}
    void ReleaseImgData() override { ++m_nCalls; }
    int& m_nCalls;
  };
  int nCalls = 0;
  std::vector<bool> arrReleased;
  {
    std::unique_ptr<QXTexture> const pTexture(new Derived(nCalls));
    pTexture->m_arrLodLevels.Add(new WatchedData(arrReleased));
  }
  EXPECT_EQ(nCalls, 0);
  EXPECT_EQ(arrReleased, std::vector<bool>{true});
}

// --- taking images -------------------------------------------------------------------------------------------------

TEST(QXTexture, CopiesAnImageGivenByReferenceOrPointer) {
  QXTextureData const data = MakeData(2, 3, PF_A8R8G8B8, 4);
  QXBareTexture byReference;
  byReference.SetTextureData(data);
  QXBareTexture byPointer;
  byPointer.SetTextureData(&data);
  for (QXTexture* const pTexture : {static_cast<QXTexture*>(&byReference), static_cast<QXTexture*>(&byPointer)}) {
    EXPECT_NE(pTexture->m_TextureData.m_pPixels, data.m_pPixels);
    EXPECT_EQ(std::memcmp(pTexture->m_TextureData.m_pPixels, data.m_pPixels, 24), 0);
    EXPECT_EQ(pTexture->m_TextureData.m_nWidth, 2U);
    EXPECT_EQ(pTexture->m_TextureData.m_nHeight, 3U);
    EXPECT_EQ(pTexture->m_TextureData.m_eFormat, PF_A8R8G8B8);
    EXPECT_EQ(pTexture->IsLoadedImage(), 1);
  }
}

TEST(QXTexture, KeepsItsImageWhenGivenItself) {
  QXBareTexture texture;
  texture.SetTextureData(MakeData(2, 3, PF_A8R8G8B8, 4));
  texture.SetTextureData(texture.m_TextureData);
  texture.SetTextureData(texture.GetTextureData());
  ASSERT_NE(texture.m_TextureData.m_pPixels, nullptr);
  EXPECT_EQ(texture.m_TextureData.m_pPixels[23], static_cast<unsigned char>(23 * 7 + 1));
}

TEST(QXTexture, IgnoresANullImage) {
  QXBareTexture texture;
  texture.SetTextureData(static_cast<QXTextureData const*>(nullptr));
  EXPECT_EQ(texture.IsLoadedImage(), 0);
  QXImageData* pImage = nullptr;
  EXPECT_EQ(texture.SetTextureData(pImage, 1, 2, 3, 1), 0);
  EXPECT_EQ(texture.IsLoadedImage(), 0);
  EXPECT_EQ(texture.m_nRegionValues[0], 0);
  EXPECT_EQ(texture.m_bHasTransparentData, 1);
}

TEST(QXTexture, TakesABlockWithoutCopyingIt) {
  QXBareTexture texture;
  auto* const pFirst = new unsigned char[256 * 128 * 4]{};
  texture.SetTextureData(256, 128, pFirst, TEXTURE_COMPRESSION_NONE, PF_A8B8G8R8);
  EXPECT_EQ(texture.m_TextureData.m_pPixels, pFirst);
  EXPECT_EQ(texture.m_TextureData.m_nWidth, 256U);
  EXPECT_EQ(texture.m_TextureData.m_nHeight, 128U);
  EXPECT_EQ(texture.m_TextureData.m_eFormat, PF_A8B8G8R8);
  EXPECT_EQ(texture.m_TextureData.m_nCompression, 0U);
  EXPECT_EQ(texture.IsLoadedImage(), 1);
  auto* const pSecond = new unsigned char[16]{};
  texture.SetTextureData(4, 4, pSecond, TEXTURE_COMPRESSION_BLOCK, PF_A8R8G8B8);
  EXPECT_EQ(texture.m_TextureData.m_pPixels, pSecond);
  EXPECT_EQ(texture.m_TextureData.m_nCompression, 14U);
}

TEST(QXTexture, TakesNullForABlock) {
  QXBareTexture texture;
  texture.SetTextureData(MakeData(2, 2, PF_A8R8G8B8, 4));
  texture.SetTextureData(8, 9, nullptr, 0, PF_L8);
  EXPECT_EQ(texture.m_TextureData.m_pPixels, nullptr);
  EXPECT_EQ(texture.m_TextureData.m_nWidth, 8U);
  EXPECT_EQ(texture.m_TextureData.m_nHeight, 9U);
  EXPECT_EQ(texture.IsLoadedImage(), 1);
}

TEST(QXTexture, KeepsTheBlockThatItIsGivenBack) {
  QXBareTexture texture;
  texture.SetTextureData(MakeData(2, 3, PF_A8R8G8B8, 4));
  unsigned char* const pPixels = texture.m_TextureData.m_pPixels;
  texture.SetTextureData(3, 2, pPixels, 0, PF_A8B8G8R8);
  EXPECT_EQ(texture.m_TextureData.m_pPixels, pPixels);
  EXPECT_EQ(pPixels[23], static_cast<unsigned char>(23 * 7 + 1));
  EXPECT_EQ(texture.m_TextureData.m_nWidth, 3U);
  EXPECT_EQ(texture.m_TextureData.GetBlockLength(), 24U);
}

TEST(QXTexture, ForgetsTheLengthOfTheFormerBlock) {
  QXBareTexture texture;
  texture.m_TextureData = MakeData(1, 1, PF_A8R8G8B8, 4);
  texture.m_TextureData.m_nDataSize = 4;
  texture.SetTextureData(8, 8, new unsigned char[256], 0, PF_A8R8G8B8);
  EXPECT_EQ(texture.m_TextureData.GetBlockLength(), 0U);
  EXPECT_EQ(texture.m_TextureData.m_nDataSize, 0U);
  texture.m_TextureData.m_nDataSize = 256;
  texture.SetTextureData(16, 4, texture.m_TextureData.m_pPixels, 0, PF_A8R8G8B8);
  EXPECT_EQ(texture.m_TextureData.m_nDataSize, 256U);
  auto* pImage = new QXImageData;
  pImage->m_nWidth = pImage->m_nHeight = 2;
  pImage->m_pPixels = new unsigned char[16];
  texture.SetTextureData(pImage, 0, 0, 0, 0);
  EXPECT_EQ(texture.m_TextureData.GetBlockLength(), 0U);
  EXPECT_EQ(texture.m_TextureData.m_nDataSize, 0U);
}

TEST(QXTexture, BelievesTheDataSizeThatACallerTellsOfABlock) {
  QXBareTexture texture;
  auto* const pFile = new unsigned char[7]{1, 2, 3, 4, 5, 6, 7};
  texture.SetTextureData(0, 0, pFile, TEXTURE_COMPRESSION_RAW, PF_A8R8G8B8);
  texture.m_TextureData.m_nDataSize = 7;
  EXPECT_EQ(texture.m_TextureData.GetBlockLength(), 7U);
  QXTextureData const copy(texture.m_TextureData);
  EXPECT_EQ(copy.GetBlockLength(), 7U);
  EXPECT_EQ(std::memcmp(copy.m_pPixels, pFile, 7), 0);
}

struct Image {
  explicit Image(unsigned char nBitDepth, unsigned int nWidth = 2, unsigned int nHeight = 2, unsigned int nBytes = 16)
      : m_pPixels(new unsigned char[nBytes]), m_pRecord(new QXImageData) {
    std::memset(m_pPixels, 255, nBytes);
    m_pRecord->m_nWidth = nWidth;
    m_pRecord->m_nHeight = nHeight;
    m_pRecord->m_nPitch = nWidth * nBitDepth / 8;
    m_pRecord->m_nBitDepth = nBitDepth;
    m_pRecord->m_pPixels = m_pPixels;
  }
  unsigned char* m_pPixels;
  QXImageData* m_pRecord;
};

TEST(QXTexture, TakesTheBlockOfAnImageRecordAndDestroysTheRecord) {
  QXBareTexture texture;
  texture.SetTextureData(MakeData(5, 5, PF_L8, 1));
  Image image(32, 1, 2);
  image.m_pRecord->m_nCompression = 77;
  EXPECT_EQ(texture.SetTextureData(image.m_pRecord, 4, -5, 6, 0), 1);
  EXPECT_EQ(image.m_pRecord, nullptr);
  EXPECT_EQ(texture.m_TextureData.m_pPixels, image.m_pPixels);
  EXPECT_EQ(texture.m_TextureData.m_nWidth, 1U);
  EXPECT_EQ(texture.m_TextureData.m_nHeight, 2U);
  EXPECT_EQ(texture.m_TextureData.m_nCompression, 77U);
  EXPECT_EQ(texture.m_nRegionValues[0], 4);
  EXPECT_EQ(texture.m_nRegionValues[1], -5);
  EXPECT_EQ(texture.m_nRegionValues[2], 6);
  EXPECT_EQ(texture.IsLoadedImage(), 1);
}

TEST(QXTexture, NeverCopiesABlockWhoseEdgesArePowersOfTwo) {
  for (unsigned int const nEdge : {1U, 2U, 64U, 1024U}) {
    Image image(32, nEdge, nEdge * 2, nEdge * nEdge * 8);
    QXBareTexture texture;
    texture.SetTextureData(image.m_pRecord, 0, 0, 0, 1);
    EXPECT_EQ(texture.m_TextureData.m_pPixels, image.m_pPixels);
  }
}

TEST(QXTexture, GivesAnImageOf24BitsFormat11AndAnyOtherFormat28) {
  for (int const nBitDepth : {0, 8, 16, 24, 32, 80}) {
    Image image(static_cast<unsigned char>(nBitDepth));
    QXBareTexture texture;
    texture.SetTextureData(image.m_pRecord, 0, 0, 0, 0);
    EXPECT_EQ(texture.m_TextureData.m_eFormat, nBitDepth == 24 ? PF_B8G8R8 : PF_R8G8B8A8) << nBitDepth;
  }
}

TEST(QXTexture, TakesAnImageWithoutPixels) {
  auto* pImage = new QXImageData;
  pImage->m_nWidth = 1000;
  pImage->m_nHeight = 1000;
  pImage->m_nBitDepth = 32;
  QXBareTexture texture;
  texture.SetTextureData(MakeData(2, 2, PF_L8, 1));
  EXPECT_EQ(texture.SetTextureData(pImage, 0, 0, 0, 1), 1);
  EXPECT_EQ(pImage, nullptr);
  EXPECT_EQ(texture.m_TextureData.m_pPixels, nullptr);
  EXPECT_EQ(texture.m_TextureData.m_nWidth, 1000U);
  EXPECT_EQ(texture.IsHasTransparentData(), 0);
  EXPECT_EQ(texture.IsLoadedImage(), 1);
}

TEST(QXTexture, TakesItsOwnBlockBackFromAnImageRecord) {
  Image image(32);
  QXBareTexture texture;
  texture.SetTextureData(image.m_pRecord, 0, 0, 0, 0);
  auto* pAgain = new QXImageData;
  pAgain->m_nWidth = 4;
  pAgain->m_nHeight = 1;
  pAgain->m_nBitDepth = 32;
  pAgain->m_pPixels = texture.m_TextureData.m_pPixels;
  EXPECT_EQ(texture.SetTextureData(pAgain, 0, 0, 0, 1), 1);
  EXPECT_EQ(texture.m_TextureData.m_pPixels, image.m_pPixels);
  EXPECT_EQ(image.m_pPixels[15], 255);
  EXPECT_EQ(texture.m_TextureData.m_nWidth, 4U);
}

unsigned char ScanAlpha(Image image, unsigned char nCompression, unsigned char bBefore, unsigned char bScan = 1) {
  image.m_pRecord->m_nCompression = nCompression;
  QXBareTexture texture;
  texture.m_bHasTransparentData = bBefore;
  texture.SetTextureData(image.m_pRecord, 0, 0, 0, bScan);
  return texture.IsHasTransparentData();
}

TEST(QXTexture, JudgesCompression14ByTheDepth) {
  EXPECT_EQ(ScanAlpha(Image(32), 14, 0), 1);
  EXPECT_EQ(ScanAlpha(Image(24), 14, 1), 0);
  EXPECT_EQ(ScanAlpha(Image(8), 14, 1), 0);
}

TEST(QXTexture, TakesCompressions19And20ForTransparent) {
  for (unsigned char const nBitDepth : {static_cast<unsigned char>(24), static_cast<unsigned char>(32)}) {
    EXPECT_EQ(ScanAlpha(Image(nBitDepth), 19, 0), 1);
    EXPECT_EQ(ScanAlpha(Image(nBitDepth), 20, 0), 1);
  }
}

TEST(QXTexture, LooksAtEachFourthByteForAnyOtherCompression) {
  for (int const nCompression : {0, 1, 13, 15, 18, 21, 255}) {
    auto const nCode = static_cast<unsigned char>(nCompression);
    EXPECT_EQ(ScanAlpha(Image(32), nCode, 1), 0) << nCompression;
    for (int const nByte : {3, 7, 11, 15}) {
      Image image(32);
      image.m_pPixels[nByte] = 254;
      EXPECT_EQ(ScanAlpha(image, nCode, 0), 1) << nCompression << ", byte " << nByte;
    }
  }
}

TEST(QXTexture, LooksAtNoColourForTransparency) {
  Image image(32);
  for (int nByte = 0; nByte < 16; ++nByte) image.m_pPixels[nByte] = nByte % 4 == 3 ? 255 : 0;
  EXPECT_EQ(ScanAlpha(image, 0, 1), 0);
}

TEST(QXTexture, LooksForTransparencyOnlyIfAsked) {
  Image transparent(32);
  transparent.m_pPixels[3] = 0;
  EXPECT_EQ(ScanAlpha(transparent, 0, 0, 0), 0);
  EXPECT_EQ(ScanAlpha(Image(32), 0, 1, 0), 1);
}

TEST(QXTexture, LooksForTransparencyInsideABlockOf24BitsOnly) {
  // 5 pixels of 3 bytes hold 3 whole pixels of 4: bytes 3, 7 and 11 are looked at, 15 is outside.
  Image opaque(24, 5, 1, 15);
  EXPECT_EQ(ScanAlpha(opaque, 0, 1), 0);
  Image last(24, 5, 1, 15);
  last.m_pPixels[11] = 0;
  EXPECT_EQ(ScanAlpha(last, 0, 0), 1);
  Image tail(24, 5, 1, 15);
  tail.m_pPixels[12] = tail.m_pPixels[13] = tail.m_pPixels[14] = 0;
  EXPECT_EQ(ScanAlpha(tail, 0, 1), 0);
}

TEST(QXTexture, LooksForTransparencyInsideTheBytesOfARawFileOnly) {
  Image image(16, 100, 100, 10);
  image.m_pRecord->m_nPitch = 10;
  EXPECT_EQ(ScanAlpha(image, 16, 1), 0);
}

struct KnownLength {
  unsigned char m_nBitDepth;
  unsigned char m_nCompression;
  unsigned int m_nPitch;
  QXUInt64 m_nExpected;
};

TEST(QXTexture, KnowsTheLengthOfAnImagesBlock) {
  // 5 x 3 pixels; in blocks of 4 by 4 that is two blocks
  KnownLength const arrCases[]{{8, 0, 0, 15}, {8, 0, 5, 15}, {80, 0, 0, 15}, {24, 0, 0, 45}, {24, 0, 16, 48},
      {24, 0, 20, 60}, {32, 0, 20, 60}, {32, 99, 0, 60}, {0, 0, 0, 0}, {0, 0, 7, 21}, {16, 0, 1234, 1234},
      {16, 16, 1234, 1234}, {32, 16, 1234, 1234}, {24, 14, 0, 16}, {32, 14, 0, 32}, {24, 19, 0, 16}, {32, 19, 0, 32},
      {32, 20, 0, 32}};
  for (KnownLength const& known : arrCases) {
    Image image(32, 5, 3, 2000);
    image.m_pRecord->m_nBitDepth = known.m_nBitDepth;
    image.m_pRecord->m_nCompression = known.m_nCompression;
    image.m_pRecord->m_nPitch = known.m_nPitch;
    QXBareTexture texture;
    texture.SetTextureData(image.m_pRecord, 0, 0, 0, 0);
    EXPECT_EQ(texture.m_TextureData.GetBlockLength(), known.m_nExpected)
        << int{known.m_nBitDepth} << ' ' << int{known.m_nCompression} << ' ' << known.m_nPitch;
  }
}

// --- locks ---------------------------------------------------------------------------------------------------------

class QXTextureLock : public testing::Test {
protected:
  void SetUp() override {
    arrTold.clear();
    QXMutex::SetObserver([](QXMutex const& mutex, unsigned char bLocked) { arrTold.emplace_back(&mutex, bLocked); });
  }
  void TearDown() override { QXMutex::SetObserver(nullptr); }

  static inline std::vector<std::pair<QXMutex const*, unsigned char>> arrTold;
};

TEST_F(QXTextureLock, IsTakenByTheTwoGuardedSettersOnly) {
  QXBareTexture texture;
  std::vector<std::pair<QXMutex const*, unsigned char>> const arrOnce{{&texture.m_Mutex, 1}, {&texture.m_Mutex, 0}};
  QXTextureData const data = MakeData(2, 2, PF_A8R8G8B8, 4);
  texture.SetTextureData(&data);
  EXPECT_EQ(arrTold, arrOnce);
  arrTold.clear();
  texture.SetMipmapOffset(QdcArray<unsigned int>());
  EXPECT_EQ(arrTold, arrOnce);
  arrTold.clear();

  texture.SetTextureData(data);
  texture.SetTextureData(2, 2, new unsigned char[16]{}, 0, PF_A8R8G8B8);
  Image image(32);
  texture.SetTextureData(image.m_pRecord, 0, 0, 0, 1);
  texture.BuildMipmapOffset();
  texture.GetMipmapOffset();
  texture.FlipTexture();
  texture.ScaleImage(4, 4);
  texture.SetEdgeTransparency();
  texture.SetTranseparentPixelColor();
  texture.AddRef();
  texture.ReleaseImgData();
  EXPECT_TRUE(arrTold.empty());
}

TEST_F(QXTextureLock, MayBeEnteredAgain) {
  QXBareTexture texture;
  QXMutexLock lock(texture.m_Mutex);
  lock.lock();
  QXTextureData const data = MakeData(2, 2, PF_A8R8G8B8, 4);
  texture.SetTextureData(&data);
  texture.SetMipmapOffset(QdcArray<unsigned int>());
  EXPECT_EQ(texture.IsLoadedImage(), 1);
}

TEST(QXTexture, MayBeGivenImagesAndLevelOffsetsByTwoThreads) {
  QXBareTexture texture;
  auto const work = [&texture](unsigned int nWidth) {
    QXTextureData const data = MakeData(nWidth, 2, PF_A8R8G8B8, 4);
    QdcArray<unsigned int> arrOffsets;
    for (unsigned int nLevel = 0; nLevel < nWidth; ++nLevel) arrOffsets.Add(nLevel);
    for (int nTimes = 0; nTimes < 200; ++nTimes) {
      texture.SetTextureData(&data);
      texture.SetMipmapOffset(arrOffsets);
    }
  };
  std::thread first(work, 3);
  std::thread second(work, 5);
  first.join();
  second.join();
  EXPECT_EQ(texture.m_TextureData.GetBlockLength(), texture.m_TextureData.m_nWidth * 8);
  EXPECT_TRUE(texture.m_arrMipmapOffset.GetSize() == 3 || texture.m_arrMipmapOffset.GetSize() == 5);
}

}  // namespace
