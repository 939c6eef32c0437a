#include "QXToldTextures.h"

#include <QxGraphics3D/atlas/QXTextureImageManager.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <ctime>
#include <map>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

namespace QXC {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t Location(unsigned int nCol, unsigned int nRow, unsigned int nLod, unsigned int nIndex) {
  return nCol | nRow << 10 | nLod << 20 | nIndex << 24;
}

class QXTextureImageManagerTest : public testing::Test {
protected:
  QXTextureImageManagerTest() {
    m_Manager.SetTextureManager(&m_Textures);
    GetTold().clear();
  }

  /// A record with pixels, their first byte being nValue, but no slot.
  QXTextureImage* Make(wchar_t const* szName, unsigned int nSize, int nFormat = 12, unsigned char nValue = 1,
      unsigned int nCompression = 0) {
    QXTextureImage* const pImage = m_Manager.GetTextureImage(szName);
    pImage->m_nSize = nSize;
    pImage->m_pTextureData = MakeData(nSize, nSize, nFormat, nValue, nCompression);
    return pImage;
  }
  QXTextureImage* Place(wchar_t const* szName, unsigned int nSize, int nFormat = 12, unsigned char nValue = 1,
      unsigned int nCompression = 0) {
    QXTextureImage* const pImage = Make(szName, nSize, nFormat, nValue, nCompression);
    EXPECT_EQ(m_Manager.FindSpaceInBigTextures(pImage), 1);
    return pImage;
  }
  static QdcArray<QXTextureImage*> List(std::initializer_list<QXTextureImage*> images) {
    QdcArray<QXTextureImage*> arrImages;
    for (QXTextureImage* const pImage : images) arrImages.Add(pImage);
    return arrImages;
  }

  QXToldTextureManager m_Textures;
  QXTextureImageManager m_Manager;
  QXAsSingleton<QXTextureImageManager> m_Singleton{m_Manager};
};

// --- The record ---

TEST_F(QXTextureImageManagerTest, NewRecordHasItsDefaults) {
  auto const nBefore = static_cast<unsigned int>(std::clock());
  QXTextureImage const& image = *m_Manager.GetTextureImage(L"a");
  auto const nAfter = static_cast<unsigned int>(std::clock());
  EXPECT_EQ(image.m_nLocation, 0u);
  EXPECT_EQ(image.m_nRefCount, 1);
  EXPECT_EQ(image.m_FirstRect, QdcRect2D());
  EXPECT_EQ(image.m_SecondRect, QdcRect2D());
  EXPECT_EQ(image.m_bFlag, 0);
  EXPECT_EQ(image.m_pTextureData, nullptr);
  EXPECT_EQ(image.m_nOwnerID, 0);
  EXPECT_EQ(image.m_nUserValue, 0);
  EXPECT_EQ(image.m_nSize, 0u);
  EXPECT_EQ(image.m_bLoaded, 0);
  EXPECT_EQ(image.m_bAllocated, 0);
  EXPECT_TRUE(image.m_strName == L"a");
  EXPECT_EQ(image.m_nUserTag, 0u);
  EXPECT_EQ(image.m_pManager, &m_Manager);
  EXPECT_GE(image.m_nCreateTime, nBefore);
  EXPECT_LE(image.m_nCreateTime, nAfter);
  EXPECT_EQ(image.m_bUserFlagA, 0);
  EXPECT_EQ(image.m_bUserFlagB, 0);
  EXPECT_EQ(image.m_arrUserData.GetSize(), 0u);
  EXPECT_EQ(QXTextureImage(nullptr).m_nRefCount, 0);
}

TEST(QXTextureImage, HasItsFieldsInOrder) {
  QXTextureImage const image(nullptr);
  void const* const arrFields[] = {&image.m_nLocation, &image.m_nRefCount, &image.m_FirstRect, &image.m_SecondRect,
      &image.m_bFlag, &image.m_pTextureData, &image.m_nOwnerID, &image.m_nUserValue, &image.m_nSize, &image.m_bLoaded,
      &image.m_bAllocated, &image.m_strName, &image.m_nUserTag, &image.m_pManager, &image.m_nCreateTime,
      &image.m_bUserFlagA, &image.m_bUserFlagB, &image.m_arrUserData};
  for (std::size_t i = 1; i < std::size(arrFields); ++i) EXPECT_LT(arrFields[i - 1], arrFields[i]) << i;
  EXPECT_EQ(static_cast<void const*>(&image), arrFields[0]);
  EXPECT_EQ(sizeof image.m_nLocation, 4u);
  EXPECT_EQ(sizeof image.m_nOwnerID, 8u);
  EXPECT_EQ(sizeof image.m_nUserValue, 8u);
  EXPECT_EQ(sizeof image.m_nUserTag, 4u);
}

TEST(QXTextureImage, LocationIsReadAsColumnRowLevelAndIndex) {
  struct {
    std::uint32_t m_nLocation;
    unsigned int m_nIndex;
    QdcRect m_Slot;
  } const arrCases[] = {
      {Location(512, 512, 0, 0), 0, {0, 0, 1024, 1024}},
      {Location(128, 384, 2, 7), 7, {0, 256, 256, 512}},
      {Location(1022, 2, 8, 255), 255, {1020, 0, 1024, 4}},
      {Location(1, 1, 9, 3), 3, {0, 0, 2, 2}},
      {Location(0, 0, 10, 4), 4, {0, 0, 1, 1}},
      {Location(5, 6, 15, 0), 0, {5, 6, 5, 6}},
  };
  for (auto const& [nLocation, nIndex, slot] : arrCases) {
    QXTextureImage image(nullptr);
    image.m_nLocation = nLocation;
    EXPECT_EQ(image.GetBigTextureIndex(), nIndex) << nLocation;
    EXPECT_EQ(image.GetSlot(), slot) << nLocation;
  }
}

// --- GetTextureImage ---

TEST_F(QXTextureImageManagerTest, SameNameGivesTheSameImageWithOneUserMore) {
  QXTextureImage* const pImage = m_Manager.GetTextureImage(L"a");
  EXPECT_EQ(m_Manager.GetTextureImage(L"a"), pImage);
  EXPECT_EQ(pImage->m_nRefCount, 2);
  EXPECT_NE(m_Manager.GetTextureImage(L"b"), pImage);
  EXPECT_EQ(pImage->m_nRefCount, 2);
}

TEST_F(QXTextureImageManagerTest, NamesMayBeEmptyOrVeryLong) {
  QdcUnicodeString strLong;
  for (int i = 0; i < 20000; ++i) strLong += L"x";
  QdcUnicodeString const strLonger = strLong + L"y";
  QXTextureImage* const pLong = m_Manager.GetTextureImage(strLong);
  EXPECT_NE(m_Manager.GetTextureImage(strLonger), pLong);
  EXPECT_EQ(m_Manager.GetTextureImage(strLong), pLong);
  QXTextureImage* const pEmpty = m_Manager.GetTextureImage(L"");
  EXPECT_EQ(m_Manager.GetTextureImage(L""), pEmpty);
  EXPECT_EQ(pEmpty->m_nRefCount, 2);
  m_Manager.RemoveTextureImage(L"");
  EXPECT_EQ(pEmpty->m_nRefCount, 1);
}

TEST_F(QXTextureImageManagerTest, AskingForAnImageTakesNoSlot) {
  Place(L"a", 64);
  m_Manager.GetTextureImage(L"b");
  // The slot beside the first one is still there for the next that asks for one.
  EXPECT_EQ(Place(L"c", 64)->m_nLocation, Location(96, 32, 4, 0));
}

TEST_F(QXTextureImageManagerTest, ThereIsOneManagerForTheProcess) {
  EXPECT_EQ(QXTextureImageManager::GetSingletonPtr(), &m_Manager);
  EXPECT_EQ(&QXTextureImageManager::GetSingleton(), &m_Manager);
  QXSingleton<QXTextureImageManager>::ms_pSingleton = nullptr;
  QXTextureImageManager* const pMade = &QXTextureImageManager::GetSingleton();
  EXPECT_NE(pMade, &m_Manager);
  EXPECT_EQ(QXTextureImageManager::GetSingletonPtr(), pMade);
  delete pMade;
}

// --- FindSpaceInBigTextures ---

TEST_F(QXTextureImageManagerTest, SlotsFillQuarterByQuarter) {
  //   +----+----+---------+
  //   | a  | b  |    e    |
  //   +----+----+         |
  //   | c  | d  |         |
  //   +----+----+---------+
  //   |    f    |    g    |
  EXPECT_EQ(Place(L"a", 256)->m_nLocation, Location(128, 128, 2, 0));
  EXPECT_EQ(Place(L"b", 256)->m_nLocation, Location(384, 128, 2, 0));
  EXPECT_EQ(Place(L"c", 256)->m_nLocation, Location(128, 384, 2, 0));
  EXPECT_EQ(Place(L"d", 256)->m_nLocation, Location(384, 384, 2, 0));
  EXPECT_EQ(Place(L"e", 512)->m_nLocation, Location(768, 256, 1, 0));
  EXPECT_EQ(Place(L"f", 512)->m_nLocation, Location(256, 768, 1, 0));
  EXPECT_EQ(Place(L"g", 512)->m_nLocation, Location(768, 768, 1, 0));
  EXPECT_EQ(Place(L"h", 4)->m_nLocation, Location(2, 2, 8, 1));
  EXPECT_EQ(Place(L"i", 1024)->m_nLocation, Location(512, 512, 0, 2));
}

TEST_F(QXTextureImageManagerTest, PlacingSetsTheFlagAndTouchesNoTexture) {
  QXTextureImage* const pImage = Make(L"a", 64);
  pImage->m_bAllocated = 0;
  EXPECT_EQ(m_Manager.FindSpaceInBigTextures(pImage), 1);
  EXPECT_EQ(pImage->m_bAllocated, 1);
  EXPECT_EQ(pImage->m_bLoaded, 0);
  EXPECT_NE(pImage->m_pTextureData, nullptr);
  EXPECT_THAT(GetTold(), IsEmpty());
}

TEST_F(QXTextureImageManagerTest, AskingAndPlacingHoldTheLock) {
  QXTextureImage* const pImage = Make(L"a", 64);
  {
    QXToldLocks const locks(m_Textures);
    m_Manager.GetTextureImage(L"b");
    m_Manager.FindSpaceInBigTextures(pImage);
  }
  EXPECT_THAT(GetTold(), ElementsAre("atlas(", "atlas)", "atlas(", "atlas)"));
}

TEST_F(QXTextureImageManagerTest, FormatsAndCompressionsNeverShareABigTexture) {
  EXPECT_EQ(Place(L"a", 64, 12)->GetBigTextureIndex(), 0u);
  EXPECT_EQ(Place(L"b", 64, 10)->GetBigTextureIndex(), 1u);
  EXPECT_EQ(Place(L"c", 64, 12, 1, 14)->GetBigTextureIndex(), 2u);
  EXPECT_EQ(Place(L"d", 64, 10, 1, 14)->GetBigTextureIndex(), 3u);
  // Each kind goes on in its own.
  EXPECT_EQ(Place(L"e", 64, 10)->m_nLocation, Location(96, 32, 4, 1));
  EXPECT_EQ(Place(L"f", 64, 12)->m_nLocation, Location(96, 32, 4, 0));
  EXPECT_EQ(Place(L"g", 64, 12, 1, 14)->m_nLocation, Location(96, 32, 4, 2));
}

TEST_F(QXTextureImageManagerTest, SlotsOfOneAndTwoPixelsOpenBigTexturesOfTheirOwn) {
  EXPECT_EQ(Place(L"a", 4)->m_nLocation, Location(2, 2, 8, 0));
  EXPECT_EQ(Place(L"b", 1)->m_nLocation, Location(0, 0, 10, 1));
  EXPECT_EQ(Place(L"c", 2)->m_nLocation, Location(1, 1, 9, 2));
  EXPECT_EQ(Place(L"d", 2)->m_nLocation, Location(1, 1, 9, 3));
}

TEST_F(QXTextureImageManagerTest, FreedSlotIsTakenAgain) {
  QXTextureImage* const pFirst = Place(L"a", 128);
  std::uint32_t const nFirst = pFirst->m_nLocation;
  Place(L"b", 128);
  m_Manager.RemoveTextureImage(L"a");
  EXPECT_EQ(Place(L"c", 128)->m_nLocation, nFirst);
  EXPECT_EQ(Place(L"d", 128)->m_nLocation, Location(64, 192, 3, 0));
}

TEST_F(QXTextureImageManagerTest, SmallestFreeIndexIsUsedForTheNextBigTexture) {
  Place(L"a", 1024);
  Place(L"b", 1024);
  Place(L"c", 1024);
  m_Manager.RemoveTextureImage(L"b");
  EXPECT_EQ(Place(L"d", 1024)->GetBigTextureIndex(), 1u);
  EXPECT_EQ(Place(L"e", 1024)->GetBigTextureIndex(), 3u);
}

TEST_F(QXTextureImageManagerTest, BigTextureWithoutImagesForgetsItsFormat) {
  Place(L"a", 64, 12);
  m_Manager.RemoveTextureImage(L"a");
  EXPECT_EQ(Place(L"b", 64, 10)->m_nLocation, Location(32, 32, 4, 0));
  EXPECT_EQ(Place(L"c", 64, 12)->GetBigTextureIndex(), 1u);
}

TEST_F(QXTextureImageManagerTest, AskingAgainTakesASecondSlotAndKeepsTheFirst) {
  QXTextureImage* const pImage = Place(L"a", 512);
  EXPECT_EQ(m_Manager.FindSpaceInBigTextures(pImage), 1);
  EXPECT_EQ(pImage->m_nLocation, Location(768, 256, 1, 0));
  m_Manager.RemoveTextureImage(L"a");
  EXPECT_EQ(Place(L"b", 512)->m_nLocation, Location(768, 256, 1, 0));
}

TEST_F(QXTextureImageManagerTest, WrongSizesAreRefusedAndHoldNoSlot) {
  for (unsigned int const nSize : {0u, 1025u, 2048u, 4096u, 0x80000000u, 0xFFFFFFFFu}) {
    QXTextureImage* const pImage = Make(L"a", 4);
    pImage->m_nSize = nSize;
    pImage->m_nLocation = 77;
    EXPECT_EQ(m_Manager.FindSpaceInBigTextures(pImage), 0) << nSize;
    EXPECT_EQ(pImage->m_bAllocated, 0);
    EXPECT_EQ(pImage->m_nLocation, 77u);
    m_Manager.RemoveTextureImage(L"a");
  }
  EXPECT_EQ(Place(L"b", 1024)->m_nLocation, Location(512, 512, 0, 0));
}

TEST_F(QXTextureImageManagerTest, RefusedImageReleasesNobodysSlotWhenItGoes) {
  QXTextureImage* const pHolder = Place(L"holder", 4);
  EXPECT_EQ(m_Manager.FindSpaceInBigTextures(Make(L"a", 0)), 0);
  m_Manager.RemoveTextureImage(L"a");
  // The big texture of index 0 was not dropped, and its slot is still taken.
  EXPECT_EQ(Place(L"b", 1024)->GetBigTextureIndex(), 1u);
  EXPECT_EQ(Place(L"c", 4)->m_nLocation, Location(6, 2, 8, 0));
  EXPECT_EQ(pHolder->m_nLocation, Location(2, 2, 8, 0));
}

TEST_F(QXTextureImageManagerTest, RefusedImageIsNotUploaded) {
  QXTextureImage* const pImage = Make(L"a", 2000);
  m_Manager.FindSpaceInBigTextures(pImage);
  m_Manager.LoadTexture();
  EXPECT_EQ(pImage->m_bLoaded, 0);
  EXPECT_NE(pImage->m_pTextureData, nullptr);
  EXPECT_THAT(GetTold(), IsEmpty());
}

TEST_F(QXTextureImageManagerTest, NullAndImagesWithoutPixelsAreRefused) {
  EXPECT_EQ(m_Manager.FindSpaceInBigTextures(nullptr), 0);
  QXTextureImage* const pImage = m_Manager.GetTextureImage(L"a");
  pImage->m_nSize = 64;
  EXPECT_EQ(m_Manager.FindSpaceInBigTextures(pImage), 0);
  EXPECT_EQ(pImage->m_bAllocated, 0);
  EXPECT_EQ(Place(L"b", 64)->m_nLocation, Location(32, 32, 4, 0));
}

TEST_F(QXTextureImageManagerTest, MoreThan256BigTexturesAreRefused) {
  for (int i = 0; i < 256; ++i) {
    QXTextureImage* const pImage = Place(std::to_wstring(i).c_str(), 2);
    EXPECT_EQ(pImage->GetBigTextureIndex(), static_cast<unsigned int>(i));
  }
  QXTextureImage* const pImage = Make(L"more", 2);
  EXPECT_EQ(m_Manager.FindSpaceInBigTextures(pImage), 0);
  EXPECT_EQ(pImage->m_bAllocated, 0);
  EXPECT_EQ(pImage->m_nLocation, 0u);
  // It holds nothing that its end would free, and one that ends makes room.
  m_Manager.RemoveTextureImage(L"more");
  m_Manager.RemoveTextureImage(L"99");
  EXPECT_EQ(Place(L"next", 2)->GetBigTextureIndex(), 99u);
  // What is there still takes what fits.
  EXPECT_EQ(Place(L"small", 4)->GetBigTextureIndex(), 0u);
}

// Every placed square lies in its big texture and on no other, whatever comes and goes.
TEST_F(QXTextureImageManagerTest, SlotsNeverOverlap) {
  constexpr unsigned int kSeed = 20261121;
  std::printf("seed %u\n", kSeed);
  std::mt19937 random(kSeed);
  std::map<std::wstring, QXTextureImage*> mapLive;
  for (int i = 0; i < 3000; ++i) {
    std::wstring const strName = std::to_wstring(random() % 400);
    if (auto const place = mapLive.find(strName); place != mapLive.end()) {
      m_Manager.RemoveTextureImage(strName.c_str());
      mapLive.erase(place);
      continue;
    }
    QXTextureImage* const pImage = Make(strName.c_str(), 4u << random() % 6, random() % 4 ? 12 : 10);
    ASSERT_EQ(m_Manager.FindSpaceInBigTextures(pImage), 1);
    for (auto const& [strOther, pOther] : mapLive) {
      if (pOther->GetBigTextureIndex() != pImage->GetBigTextureIndex()) continue;
      ASSERT_EQ(pOther->m_pTextureData->m_eFormat, pImage->m_pTextureData->m_eFormat);
      QdcRect const a = pImage->GetSlot();
      QdcRect const b = pOther->GetSlot();
      ASSERT_TRUE(a.right <= b.left || b.right <= a.left || a.bottom <= b.top || b.bottom <= a.top) << i;
    }
    QdcRect const slot = pImage->GetSlot();
    ASSERT_EQ(slot.right - slot.left, static_cast<int>(pImage->m_nSize));
    ASSERT_TRUE(slot.left >= 0 && slot.top >= 0 && slot.right <= 1024 && slot.bottom <= 1024);
    mapLive[strName] = pImage;
  }
  for (auto const& [strName, pImage] : mapLive) m_Manager.RemoveTextureImage(strName.c_str());
  EXPECT_EQ(Place(L"whole", 1024)->m_nLocation, Location(512, 512, 0, 0));
}

// --- LoadTexture ---

TEST_F(QXTextureImageManagerTest, UploadMakesTheBigTextureAndSendsThePixels) {
  QXTextureImage* const pImage = Place(L"a", 64, 12, 7);
  delete pImage->m_pTextureData;
  pImage->m_pTextureData = MakeData(30, 20, 12, 7);
  {
    QXToldLocks const locks(m_Textures);
    m_Manager.LoadTexture();
  }
  EXPECT_THAT(
      GetTold(), ElementsAre("atlas(", "store(", "Image_BigTexture_0: GetTexture(1)",
                     "Image_BigTexture_0: SetTextureData(1024 x 1024, format 12, compression 0, size 4194304)",
                     "Image_BigTexture_0: LoadTexture(1, 0) need 0",
                     "Image_BigTexture_0: LoadSubTexture(0, 0, 30, 20, 30, 20, pixels of 7, 0)", "store)", "atlas)"));
  EXPECT_EQ(pImage->m_bLoaded, 1);
  EXPECT_EQ(pImage->m_bAllocated, 1);
  EXPECT_EQ(pImage->m_pTextureData, nullptr);
  EXPECT_EQ(m_Textures.Find(L"Image_BigTexture_0")->GetRef(), 1);
}

TEST_F(QXTextureImageManagerTest, ImagesAreSentInTheOrderOfTheirNamesEachUnderALockOfItsOwn) {
  Place(L"c", 64, 12, 1);
  Place(L"a", 64, 12, 2);
  Place(L"b", 32, 12, 3);
  {
    QXToldLocks const locks(m_Textures);
    m_Manager.LoadTexture();
  }
  EXPECT_THAT(GetTold(),
      ElementsAre("atlas(",  //
          "store(", "Image_BigTexture_0: GetTexture(1)",
          "Image_BigTexture_0: SetTextureData(1024 x 1024, format 12, compression 0, size 4194304)",
          "Image_BigTexture_0: LoadTexture(1, 0) need 0",
          "Image_BigTexture_0: LoadSubTexture(64, 0, 64, 64, 64, 64, pixels of 2, 0)", "store)",  //
          "store(", "Image_BigTexture_0: GetTexture(1)",
          "Image_BigTexture_0: LoadSubTexture(0, 64, 32, 32, 32, 32, pixels of 3, 0)", "store)",  //
          "store(", "Image_BigTexture_0: GetTexture(1)",
          "Image_BigTexture_0: LoadSubTexture(0, 0, 64, 64, 64, 64, pixels of 1, 0)", "store)",  //
          "atlas)"));
  EXPECT_EQ(m_Textures.Find(L"Image_BigTexture_0")->GetRef(), 3);
}

TEST_F(QXTextureImageManagerTest, NothingIsSentTwice) {
  Place(L"a", 64);
  m_Manager.LoadTexture();
  GetTold().clear();
  {
    QXToldLocks const locks(m_Textures);
    m_Manager.LoadTexture();
  }
  EXPECT_THAT(GetTold(), ElementsAre("atlas(", "atlas)"));
  EXPECT_EQ(m_Textures.Find(L"Image_BigTexture_0")->GetRef(), 1);
}

TEST_F(QXTextureImageManagerTest, ImagesGoToTheBigTextureOfTheirFormat) {
  Place(L"a", 64, 12, 1);
  Place(L"b", 64, 11, 2);
  Place(L"c", 64, 12, 3, 14);
  Place(L"d", 64, 10, 4, 14);
  m_Manager.LoadTexture();
  EXPECT_THAT(GetTold(), ElementsAre("Image_BigTexture_0: GetTexture(1)",
                             "Image_BigTexture_0: SetTextureData(1024 x 1024, format 12, compression 0, size 4194304)",
                             "Image_BigTexture_0: LoadTexture(1, 0) need 0",
                             "Image_BigTexture_0: LoadSubTexture(0, 0, 64, 64, 64, 64, pixels of 1, 0)",
                             "Image_BigTexture_1: GetTexture(1)",
                             "Image_BigTexture_1: SetTextureData(1024 x 1024, format 11, compression 0, size 3145728)",
                             "Image_BigTexture_1: LoadTexture(1, 0) need 0",
                             "Image_BigTexture_1: LoadSubTexture(0, 0, 64, 64, 64, 64, pixels of 2, 0)",
                             "Image_BigTexture_2: GetTexture(1)",
                             "Image_BigTexture_2: SetTextureData(1024 x 1024, format 12, compression 14, size 1048576)",
                             "Image_BigTexture_2: LoadTexture(1, 0) need 0",
                             "Image_BigTexture_2: LoadSubTexture(0, 0, 64, 64, 64, 64, pixels of 3, 0)",
                             "Image_BigTexture_3: GetTexture(1)",
                             "Image_BigTexture_3: SetTextureData(1024 x 1024, format 10, compression 14, size 524288)",
                             "Image_BigTexture_3: LoadTexture(1, 0) need 0",
                             "Image_BigTexture_3: LoadSubTexture(0, 0, 64, 64, 64, 64, pixels of 4, 0)"));
}

TEST_F(QXTextureImageManagerTest, BlanksHaveTheSizeOfTheirFormatAndCompression) {
  struct {
    int m_nFormat;
    unsigned int m_nCompression;
    unsigned int m_nSize;
  } const arrCases[] = {{10, 0, 3u << 20}, {11, 0, 3u << 20}, {12, 0, 4u << 20}, {13, 0, 4u << 20}, {14, 0, 4u << 20},
      {28, 0, 4u << 20}, {1, 0, 4u << 20}, {5, 0, 4u << 20}, {77, 0, 4u << 20}, {10, 14, 524288}, {11, 14, 524288},
      {12, 14, 1048576}, {13, 14, 1048576}, {14, 14, 1048576}, {28, 14, 1048576}, {1, 14, 1048576}, {12, 16, 4u << 20},
      {10, 19, 3u << 20}, {12, 20, 4u << 20}};
  for (auto const& [nFormat, nCompression, nSize] : arrCases) {
    SCOPED_TRACE(testing::Message() << nFormat << " " << nCompression);
    Place(L"a", 64, nFormat, 9, nCompression);
    m_Manager.LoadTexture();
    QXToldTexture* const pTexture = m_Textures.Find(L"Image_BigTexture_0");
    ASSERT_NE(pTexture, nullptr);
    QXTextureData const& blank = pTexture->m_TextureData;
    EXPECT_EQ(blank.m_nWidth, 1024u);
    EXPECT_EQ(blank.m_nHeight, 1024u);
    EXPECT_EQ(blank.m_eFormat, nFormat);
    EXPECT_EQ(blank.m_nCompression, nCompression);
    ASSERT_EQ(blank.m_nDataSize, nSize);
    unsigned int const nPixel = nCompression == 14 ? 1 : nSize >> 20;
    std::size_t nWrong = 0;
    for (unsigned int i = 0; i < nSize; ++i) {
      nWrong += blank.m_pPixels[i] != (nCompression != 14 && i % nPixel == 1 ? 0 : 255);
    }
    EXPECT_EQ(nWrong, 0u);
    m_Manager.RemoveTextureImage(L"a");
    EXPECT_EQ(m_Textures.GetCount(), 0u);
  }
}

TEST_F(QXTextureImageManagerTest, TextureThatHasAnImageGetsNoBlank) {
  m_Textures.GetTexture(L"Image_BigTexture_0", 1)->m_bLoadedImage = 1;
  GetTold().clear();
  Place(L"a", 64);
  m_Manager.LoadTexture();
  EXPECT_THAT(
      GetTold(), ElementsAre("Image_BigTexture_0: GetTexture(1)", "Image_BigTexture_0: LoadTexture(1, 0) need 0",
                     "Image_BigTexture_0: LoadSubTexture(0, 0, 64, 64, 64, 64, pixels of 1, 0)"));
}

TEST_F(QXTextureImageManagerTest, TextureThatIsOnTheDeviceIsNotLoaded) {
  m_Textures.GetTexture(L"Image_BigTexture_0", 1)->m_nBindID = 5;
  GetTold().clear();
  Place(L"a", 64);
  m_Manager.LoadTexture();
  EXPECT_THAT(GetTold(), ElementsAre("Image_BigTexture_0: GetTexture(1)",
                             "Image_BigTexture_0: SetTextureData(1024 x 1024, format 12, compression 0, size 4194304)",
                             "Image_BigTexture_0: LoadSubTexture(0, 0, 64, 64, 64, 64, pixels of 1, 0)"));
}

TEST_F(QXTextureImageManagerTest, ImagesWithoutSlotStayAndAreSentWhenTheyGetOne) {
  QXTextureImage* const pImage = Make(L"a", 64);
  Place(L"b", 64, 12, 2);
  m_Manager.LoadTexture();
  EXPECT_EQ(pImage->m_bLoaded, 0);
  EXPECT_EQ(m_Manager.GetTextureImage(L"a"), pImage);
  GetTold().clear();
  m_Manager.FindSpaceInBigTextures(pImage);
  m_Manager.LoadTexture();
  EXPECT_THAT(GetTold(), ElementsAre("Image_BigTexture_0: GetTexture(1)",
                             "Image_BigTexture_0: LoadSubTexture(64, 0, 64, 64, 64, 64, pixels of 1, 0)"));
  EXPECT_EQ(pImage->m_bLoaded, 1);
}

TEST_F(QXTextureImageManagerTest, FlagsOfTheRecordAreBelieved) {
  QXTextureImage* const pImage = Place(L"a", 64);
  pImage->m_bLoaded = 1;
  m_Manager.LoadTexture();
  EXPECT_THAT(GetTold(), IsEmpty());
  pImage->m_bLoaded = 0;
  pImage->m_bAllocated = 0;
  m_Manager.LoadTexture();
  EXPECT_THAT(GetTold(), IsEmpty());
  pImage->m_bAllocated = 1;
  m_Manager.LoadTexture();
  EXPECT_EQ(pImage->m_bLoaded, 1);
}

TEST_F(QXTextureImageManagerTest, ImagesThatTheirOwnersTookBackAreSentAgainInTheOrderOfTheirNames) {
  for (wchar_t const* szName : {L"a", L"b", L"c", L"d", L"e"}) Place(szName, 64);
  m_Manager.LoadTexture();
  m_Manager.RemoveTextureImage(L"b");
  m_Manager.RemoveTextureImage(L"e");
  for (wchar_t const* szName : {L"d", L"a"}) {
    QXTextureImage* const pImage = m_Manager.GetTextureImage(szName);
    pImage->m_pTextureData = MakeData(64, 64, 12, static_cast<unsigned char>(*szName));
    pImage->m_bLoaded = 0;
  }
  GetTold().clear();
  m_Manager.LoadTexture();
  EXPECT_THAT(GetTold(), ElementsAre("Image_BigTexture_0: GetTexture(1)",
                             "Image_BigTexture_0: LoadSubTexture(0, 0, 64, 64, 64, 64, pixels of 97, 0)",
                             "Image_BigTexture_0: GetTexture(1)",
                             "Image_BigTexture_0: LoadSubTexture(64, 64, 64, 64, 64, 64, pixels of 100, 0)"));
  // Of the three that are there two were sent twice.
  EXPECT_EQ(m_Textures.Find(L"Image_BigTexture_0")->GetRef(), 5);
  GetTold().clear();
  m_Manager.LoadTexture();
  EXPECT_THAT(GetTold(), IsEmpty());
}

// Images that come, are sent, are taken back and go, beside what each should be.
TEST_F(QXTextureImageManagerTest, NoImageThatWaitsIsForgotten) {
  constexpr unsigned int kSeed = 20261122;
  std::printf("seed %u\n", kSeed);
  std::mt19937 random(kSeed);
  std::map<std::wstring, QXTextureImage*> mapLive;
  for (int i = 0; i < 4000; ++i) {
    std::wstring const strName = std::to_wstring(random() % 60);
    auto const place = mapLive.find(strName);
    if (place == mapLive.end()) {
      mapLive[strName] = random() % 4 ? Place(strName.c_str(), 4) : Make(strName.c_str(), 4);
    } else if (random() % 2) {
      m_Manager.RemoveTextureImage(strName.c_str());
      mapLive.erase(place);
    } else if (place->second->m_bLoaded) {
      // Some get their pixels later.
      if (random() % 4) place->second->m_pTextureData = MakeData(4, 4, 12, 2);
      place->second->m_bLoaded = 0;
    } else if (!place->second->m_pTextureData) {
      place->second->m_pTextureData = MakeData(4, 4, 12, 3);
    } else if (!place->second->m_bAllocated) {
      m_Manager.FindSpaceInBigTextures(place->second);
    }
    if (random() % 3) continue;
    m_Manager.LoadTexture();
    // Not loaded are those that miss a slot or pixels.
    for (auto const& [strLive, pImage] : mapLive) {
      ASSERT_TRUE(pImage->m_bLoaded || !pImage->m_bAllocated || !pImage->m_pTextureData) << i;
    }
  }
}

TEST_F(QXTextureImageManagerTest, WithoutTextureManagerNothingHappens) {
  m_Manager.SetTextureManager(nullptr);
  QXTextureImage* const pWaiting = Place(L"a", 64);
  QXTextureImage* const pUseless = Place(L"b", 64);
  m_Manager.AddUselessTexture(List({pUseless}));
  {
    QXToldLocks const locks(m_Textures);
    m_Manager.LoadTexture();
  }
  EXPECT_THAT(GetTold(), IsEmpty());
  EXPECT_EQ(pWaiting->m_bLoaded, 0);
  EXPECT_NE(pWaiting->m_pTextureData, nullptr);
  EXPECT_EQ(m_Manager.GetTextureImage(L"b"), pUseless);
  // Both were only put off; the count of two is what keeps the useless one.
  m_Manager.SetTextureManager(&m_Textures);
  m_Manager.LoadTexture();
  EXPECT_EQ(pWaiting->m_bLoaded, 1);
  EXPECT_EQ(pUseless->m_nRefCount, 1);
}

TEST_F(QXTextureImageManagerTest, WithoutTextureTheImageKeepsWaiting) {
  m_Textures.m_bEmpty = 1;
  QXTextureImage* const pImage = Place(L"a", 64);
  m_Manager.LoadTexture();
  EXPECT_EQ(pImage->m_bLoaded, 0);
  EXPECT_EQ(pImage->m_bAllocated, 1);
  EXPECT_NE(pImage->m_pTextureData, nullptr);
  m_Textures.m_bEmpty = 0;
  m_Manager.LoadTexture();
  EXPECT_EQ(pImage->m_bLoaded, 1);
}

TEST_F(QXTextureImageManagerTest, PixelsThatLeftAgainAreNotMissed) {
  QXTextureImage* const pImage = Place(L"a", 64);
  delete pImage->m_pTextureData;
  pImage->m_pTextureData = nullptr;
  m_Manager.LoadTexture();
  EXPECT_EQ(pImage->m_bLoaded, 0);
  pImage->m_pTextureData = new QXTextureData;
  pImage->m_pTextureData->m_eFormat = PF_A8R8G8B8;
  m_Manager.LoadTexture();
  EXPECT_EQ(pImage->m_bLoaded, 0);
  EXPECT_THAT(GetTold(), IsEmpty());
  pImage->m_pTextureData->m_pPixels = new unsigned char[4];
  m_Manager.LoadTexture();
  EXPECT_EQ(pImage->m_bLoaded, 1);
}

TEST_F(QXTextureImageManagerTest, PixelsOfAnotherFormatThanTheSlotsAreNotSent) {
  QXTextureImage* const pImage = Place(L"a", 64, 12);
  delete pImage->m_pTextureData;
  pImage->m_pTextureData = MakeData(64, 64, 10, 3);
  m_Manager.LoadTexture();
  EXPECT_EQ(pImage->m_bLoaded, 0);
  EXPECT_THAT(GetTold(), IsEmpty());
}

TEST_F(QXTextureImageManagerTest, BlockThatIsKnownToBeTooShortIsNotSent) {
  QXTextureImage* const pImage = Place(L"a", 64, 12);
  pImage->m_pTextureData->m_nHeight = 65;
  m_Manager.LoadTexture();
  EXPECT_EQ(pImage->m_bLoaded, 0);
  EXPECT_THAT(GetTold(), IsEmpty());
  // One whose length nobody told is believed.
  pImage->m_pTextureData->m_nDataSize = 0;
  pImage->m_pTextureData->m_nHeight = 64;
  m_Manager.LoadTexture();
  EXPECT_EQ(pImage->m_bLoaded, 1);
}

TEST_F(QXTextureImageManagerTest, ShortBlocksOfAnyFormatAndCompressionAreNotSent) {
  struct {
    int m_nFormat;
    unsigned int m_nCompression;
    unsigned int m_nLeast;
  } const arrCases[] = {{1, 0, 35}, {5, 0, 70}, {10, 0, 105}, {12, 0, 140}, {10, 14, 32}, {11, 14, 32}, {12, 14, 64},
      {12, 19, 64}, {12, 16, 0}};
  for (auto const& [nFormat, nCompression, nLeast] : arrCases) {
    SCOPED_TRACE(testing::Message() << nFormat << " " << nCompression);
    QXTextureImage* const pImage = Place(L"a", 64, nFormat, 1, nCompression);
    pImage->m_pTextureData->m_nWidth = 7;
    pImage->m_pTextureData->m_nHeight = 5;
    if (nLeast != 0) {
      pImage->m_pTextureData->m_nDataSize = nLeast - 1;
      m_Manager.LoadTexture();
      EXPECT_EQ(pImage->m_bLoaded, 0);
    }
    pImage->m_pTextureData->m_nDataSize = nLeast;
    m_Manager.LoadTexture();
    EXPECT_EQ(pImage->m_bLoaded, 1);
    m_Manager.RemoveTextureImage(L"a");
  }
}

// --- RemoveTextureImage ---

TEST_F(QXTextureImageManagerTest, RemovingTakesOneUserAndOnlyTheLastOneDeletes) {
  QXTextureImage* const pImage = Place(L"a", 64);
  m_Manager.GetTextureImage(L"a");
  m_Manager.RemoveTextureImage(L"a");
  EXPECT_EQ(pImage->m_nRefCount, 1);
  EXPECT_EQ(m_Manager.GetTextureImage(L"a"), pImage);
  m_Manager.RemoveTextureImage(L"a");
  m_Manager.RemoveTextureImage(L"a");
  EXPECT_EQ(m_Manager.GetTextureImage(L"a")->m_bAllocated, 0);
}

TEST_F(QXTextureImageManagerTest, CountThatPassesZeroDeletesNothing) {
  QXTextureImage* const pImage = Place(L"a", 64);
  pImage->m_nRefCount = 0;
  m_Manager.RemoveTextureImage(L"a");
  EXPECT_EQ(pImage->m_nRefCount, -1);
  EXPECT_EQ(m_Manager.GetTextureImage(L"a"), pImage);
}

TEST_F(QXTextureImageManagerTest, UnknownNamesAreIgnored) {
  QXTextureImage* const pImage = Place(L"a", 64);
  {
    QXToldLocks const locks(m_Textures);
    m_Manager.RemoveTextureImage(L"b");
    m_Manager.RemoveTextureImage(L"");
  }
  EXPECT_THAT(GetTold(), ElementsAre("atlas(", "atlas)", "atlas(", "atlas)"));
  EXPECT_EQ(pImage->m_nRefCount, 1);
}

TEST_F(QXTextureImageManagerTest, RemovingTwiceIsHarmless) {
  Place(L"a", 64);
  QXTextureImage* const pOther = Place(L"b", 64);
  m_Manager.LoadTexture();
  m_Manager.RemoveTextureImage(L"a");
  m_Manager.RemoveTextureImage(L"a");
  EXPECT_EQ(m_Textures.Find(L"Image_BigTexture_0")->GetRef(), 1);
  EXPECT_EQ(pOther->m_nRefCount, 1);
}

TEST_F(QXTextureImageManagerTest, NameMayBeTheRecordsOwn) {
  QXTextureImage* const pImage = Place(L"a name that is long enough to stand in memory of its own", 64);
  m_Manager.LoadTexture();
  m_Manager.RemoveTextureImage(pImage->m_strName);
  EXPECT_EQ(m_Textures.GetCount(), 0u);
}

TEST_F(QXTextureImageManagerTest, ImageThatWasNotSentDoesNotCallTheTextureManager) {
  Place(L"a", 64);
  {
    QXToldLocks const locks(m_Textures);
    m_Manager.RemoveTextureImage(L"a");
  }
  EXPECT_THAT(GetTold(), ElementsAre("atlas(", "atlas)"));
}

TEST_F(QXTextureImageManagerTest, EachSentImageGivesItsReferenceBackAndTheLastEndsTheTexture) {
  Place(L"a", 64);
  Place(L"b", 64);
  m_Manager.LoadTexture();
  GetTold().clear();
  {
    QXToldLocks const locks(m_Textures);
    m_Manager.RemoveTextureImage(L"a");
    EXPECT_EQ(m_Textures.Find(L"Image_BigTexture_0")->GetRef(), 1);
    m_Manager.RemoveTextureImage(L"b");
  }
  EXPECT_THAT(GetTold(), ElementsAre("atlas(", "store(", "Image_BigTexture_0: GetTexture(1)", "store(", "store)",
                             "store)", "atlas)", "atlas(", "store(", "Image_BigTexture_0: GetTexture(1)", "store(",
                             "Image_BigTexture_0: dies", "store)", "store)", "atlas)"));
}

TEST_F(QXTextureImageManagerTest, BigTextureLivesOnForImagesThatWait) {
  Place(L"a", 64, 12);
  Place(L"b", 64, 12, 2);
  m_Manager.LoadTexture();
  QXTextureImage* const pWaiting = Place(L"c", 64, 12, 3);
  m_Manager.RemoveTextureImage(L"a");
  m_Manager.RemoveTextureImage(L"b");
  EXPECT_EQ(m_Textures.GetCount(), 0u);
  // Its slot is held, so the index is: another format opens the next one.
  EXPECT_EQ(Place(L"d", 64, 10)->GetBigTextureIndex(), 1u);
  GetTold().clear();
  m_Manager.RemoveTextureImage(L"d");
  m_Manager.LoadTexture();
  EXPECT_EQ(pWaiting->m_bLoaded, 1);
  EXPECT_THAT(GetTold(), ElementsAre("Image_BigTexture_0: GetTexture(1)",
                             "Image_BigTexture_0: SetTextureData(1024 x 1024, format 12, compression 0, size 4194304)",
                             "Image_BigTexture_0: LoadTexture(1, 0) need 0",
                             "Image_BigTexture_0: LoadSubTexture(0, 64, 64, 64, 64, 64, pixels of 3, 0)"));
}

TEST_F(QXTextureImageManagerTest, TextureThatIsGoneAlreadyIsMadeAndEndedAgain) {
  Place(L"a", 64);
  m_Manager.LoadTexture();
  m_Textures.Release();
  GetTold().clear();
  m_Manager.RemoveTextureImage(L"a");
  EXPECT_THAT(GetTold(), ElementsAre("Image_BigTexture_0: GetTexture(1)", "Image_BigTexture_0: dies"));
}

TEST_F(QXTextureImageManagerTest, RemovingWithoutTextureOrTextureManagerFreesTheSlot) {
  Place(L"a", 1024);
  Place(L"b", 1024);
  m_Manager.LoadTexture();
  m_Textures.m_bEmpty = 1;
  m_Manager.RemoveTextureImage(L"a");
  m_Manager.SetTextureManager(nullptr);
  m_Manager.RemoveTextureImage(L"b");
  EXPECT_EQ(Place(L"c", 1024)->GetBigTextureIndex(), 0u);
  EXPECT_EQ(Place(L"d", 1024)->GetBigTextureIndex(), 1u);
}

TEST_F(QXTextureImageManagerTest, TextureMayCallBackWhileItDies) {
  Place(L"a", 1024);
  m_Manager.LoadTexture();
  m_Textures.Find(L"Image_BigTexture_0")->m_Dies = [this] {
    m_Manager.RemoveTextureImage(L"a");
    QXTextureImage* const pNext = Place(L"a", 1024);
    EXPECT_EQ(pNext->m_nLocation, Location(512, 512, 0, 0));
  };
  m_Manager.RemoveTextureImage(L"a");
  EXPECT_EQ(m_Manager.GetTextureImage(L"a")->m_nRefCount, 2);
  // The one that came meanwhile holds what it was given.
  EXPECT_EQ(Place(L"b", 1024)->GetBigTextureIndex(), 1u);
  m_Manager.LoadTexture();
  EXPECT_EQ(m_Textures.Find(L"Image_BigTexture_0")->GetRef(), 1);
}

// --- Useless images ---

TEST_F(QXTextureImageManagerTest, UselessImagesGoAtTheEndOfTheNextLoadTexture) {
  QXTextureImage* const pUseless = Place(L"b", 64, 12, 2);
  Place(L"a", 64, 12, 1);
  {
    QXToldLocks const locks(m_Textures);
    m_Manager.AddUselessTexture(List({pUseless}));
  }
  EXPECT_THAT(GetTold(), ElementsAre("atlas(", "atlas)"));
  EXPECT_EQ(pUseless->m_nRefCount, 1);
  GetTold().clear();
  {
    QXToldLocks const locks(m_Textures);
    m_Manager.LoadTexture();
  }
  // It is sent once more before it goes.
  EXPECT_THAT(GetTold(),
      ElementsAre("atlas(",  //
          "store(", "Image_BigTexture_0: GetTexture(1)",
          "Image_BigTexture_0: SetTextureData(1024 x 1024, format 12, compression 0, size 4194304)",
          "Image_BigTexture_0: LoadTexture(1, 0) need 0",
          "Image_BigTexture_0: LoadSubTexture(64, 0, 64, 64, 64, 64, pixels of 1, 0)", "store)",  //
          "store(", "Image_BigTexture_0: GetTexture(1)",
          "Image_BigTexture_0: LoadSubTexture(0, 0, 64, 64, 64, 64, pixels of 2, 0)", "store)",             //
          "atlas(", "store(", "Image_BigTexture_0: GetTexture(1)", "store(", "store)", "store)", "atlas)",  //
          "atlas)"));
  EXPECT_EQ(m_Manager.GetTextureImage(L"b")->m_bAllocated, 0);
}

TEST_F(QXTextureImageManagerTest, ListedImageWithOtherUsersLosesOneForEachTimeItIsListed) {
  QXTextureImage* const pImage = Place(L"a", 64);
  for (int i = 0; i < 4; ++i) m_Manager.GetTextureImage(L"a");
  m_Manager.AddUselessTexture(List({pImage, pImage}));
  m_Manager.AddUselessTexture(List({pImage}));
  m_Manager.LoadTexture();
  EXPECT_EQ(pImage->m_nRefCount, 2);
  // The list is empty now.
  m_Manager.LoadTexture();
  EXPECT_EQ(pImage->m_nRefCount, 2);
}

TEST_F(QXTextureImageManagerTest, ImagesAreRemovedInTheOrderOfTheList) {
  Place(L"a", 1024);
  Place(L"b", 1024);
  Place(L"c", 1024);
  m_Manager.LoadTexture();
  m_Manager.AddUselessTexture(List({m_Manager.GetTextureImage(L"b"), m_Manager.GetTextureImage(L"a")}));
  m_Manager.AddUselessTexture(List({m_Manager.GetTextureImage(L"c")}));
  for (wchar_t const* szName : {L"a", L"b", L"c"}) m_Manager.RemoveTextureImage(szName);
  GetTold().clear();
  m_Manager.LoadTexture();
  EXPECT_THAT(GetTold(),
      ElementsAre("Image_BigTexture_1: GetTexture(1)", "Image_BigTexture_1: dies", "Image_BigTexture_0: GetTexture(1)",
          "Image_BigTexture_0: dies", "Image_BigTexture_2: GetTexture(1)", "Image_BigTexture_2: dies"));
}

TEST_F(QXTextureImageManagerTest, ListedImageThatIsGoneIsIgnored) {
  QXTextureImage* const pTwice = Place(L"a", 64);
  m_Manager.AddUselessTexture(List({pTwice, pTwice}));
  m_Manager.AddUselessTexture(List({Place(L"b", 64)}));
  m_Manager.RemoveTextureImage(L"b");
  QXTextureImage* const pKept = Place(L"c", 64);
  m_Manager.LoadTexture();
  m_Manager.AddUselessTexture(List({pKept, nullptr, reinterpret_cast<QXTextureImage*>(sizeof(void*)), pKept}));
  m_Manager.LoadTexture();
  EXPECT_EQ(m_Textures.GetCount(), 0u);
  m_Manager.AddUselessTexture(List({Place(L"d", 64)}));
  m_Manager.Clear();
  m_Manager.LoadTexture();
  EXPECT_EQ(m_Manager.GetTextureImage(L"d")->m_nRefCount, 1);
}

TEST_F(QXTextureImageManagerTest, LaterImageAtTheSameAddressIsNotTakenForTheListedOne) {
  // The allocator gives the memory of a deleted record to the next one sooner or later.
  bool bSameAddress = false;
  for (int i = 0; i < 1000 && !bSameAddress; ++i) {
    QXTextureImage* const pListed = m_Manager.GetTextureImage(L"listed");
    auto const nListed = reinterpret_cast<std::uintptr_t>(pListed);
    m_Manager.AddUselessTexture(List({pListed}));
    m_Manager.RemoveTextureImage(L"listed");
    QXTextureImage* const pNext = m_Manager.GetTextureImage(L"next");
    bSameAddress = reinterpret_cast<std::uintptr_t>(pNext) == nListed;
    m_Manager.LoadTexture();
    ASSERT_EQ(m_Manager.GetTextureImage(L"next"), pNext);
    ASSERT_EQ(pNext->m_nRefCount, 2);
    m_Manager.RemoveTextureImage(L"next");
    m_Manager.RemoveTextureImage(L"next");
  }
  // Sanitizers keep freed memory back, and then there is nothing to be mistaken for.
  std::printf("same address: %d\n", bSameAddress);
}

TEST_F(QXTextureImageManagerTest, ListedImageGoesByTheNameThatItHasThen) {
  QXTextureImage* const pImage = Place(L"a", 64);
  QXTextureImage* const pOther = Place(L"b", 64);
  m_Manager.AddUselessTexture(List({pImage}));
  m_Manager.GetTextureImage(L"b");
  pImage->m_strName = L"b";
  m_Manager.LoadTexture();
  EXPECT_EQ(pImage->m_nRefCount, 1);
  EXPECT_EQ(pOther->m_nRefCount, 1);
}

TEST_F(QXTextureImageManagerTest, UselessImagesAreRemovedFromTheOneManagerOfTheProcess) {
  QXTextureImageManager other;
  other.SetTextureManager(&m_Textures);
  QXTextureImage* const pOthers = other.GetTextureImage(L"a");
  QXTextureImage* const pImage = m_Manager.GetTextureImage(L"a");
  m_Manager.GetTextureImage(L"a");
  QdcArray<QXTextureImage*> arrUseless;
  arrUseless.Add(pOthers);
  other.AddUselessTexture(arrUseless);
  other.LoadTexture();
  EXPECT_EQ(pOthers->m_nRefCount, 1);
  EXPECT_EQ(pImage->m_nRefCount, 1);
}

TEST_F(QXTextureImageManagerTest, ImagesListedWhileOthersGoWaitForTheNextTime) {
  QXTextureImage* const pFirst = Place(L"a", 1024);
  QXTextureImage* const pSecond = Place(L"b", 1024);
  m_Manager.LoadTexture();
  m_Textures.Find(L"Image_BigTexture_0")->m_Dies = [&] { m_Manager.AddUselessTexture(List({pSecond})); };
  m_Manager.AddUselessTexture(List({pFirst}));
  m_Manager.LoadTexture();
  EXPECT_EQ(pSecond->m_nRefCount, 1);
  m_Manager.LoadTexture();
  EXPECT_EQ(m_Textures.GetCount(), 0u);
}

// --- Clear ---

TEST_F(QXTextureImageManagerTest, ClearDeletesImagesAndSlotsAndLeavesTheTextures) {
  Place(L"a", 1024);
  Place(L"b", 1024);
  Place(L"c", 1024);
  m_Manager.GetTextureImage(L"a");
  m_Manager.LoadTexture();
  GetTold().clear();
  {
    QXToldLocks const locks(m_Textures);
    m_Manager.Clear();
  }
  EXPECT_THAT(GetTold(), ElementsAre("atlas(", "atlas)"));
  EXPECT_EQ(m_Textures.GetCount(), 3u);
  EXPECT_EQ(m_Textures.Find(L"Image_BigTexture_0")->GetRef(), 1);
  QXTextureImage* const pImage = m_Manager.GetTextureImage(L"a");
  EXPECT_EQ(pImage->m_nRefCount, 1);
  EXPECT_EQ(pImage->m_bAllocated, 0);
  EXPECT_EQ(Place(L"b", 1024)->GetBigTextureIndex(), 0u);
}

TEST_F(QXTextureImageManagerTest, ClearLeavesTheUselessListAlone) {
  // Nothing of it can be told from an empty one but that those that come later are not forgotten with it.
  m_Manager.AddUselessTexture(List({Place(L"a", 64)}));
  m_Manager.Clear();
  QXTextureImage* const pImage = Place(L"a", 64);
  m_Manager.GetTextureImage(L"a");
  m_Manager.AddUselessTexture(List({pImage}));
  m_Manager.LoadTexture();
  EXPECT_EQ(pImage->m_nRefCount, 1);
}

TEST_F(QXTextureImageManagerTest, BigTextureLeftBehindIsUsedAsItIs) {
  Place(L"a", 64);
  m_Manager.LoadTexture();
  m_Manager.Clear();
  GetTold().clear();
  Place(L"b", 64, 12, 5);
  m_Manager.LoadTexture();
  EXPECT_THAT(GetTold(), ElementsAre("Image_BigTexture_0: GetTexture(1)",
                             "Image_BigTexture_0: LoadSubTexture(0, 0, 64, 64, 64, 64, pixels of 5, 0)"));
  EXPECT_EQ(m_Textures.Find(L"Image_BigTexture_0")->GetRef(), 2);
  m_Manager.RemoveTextureImage(L"b");
  EXPECT_EQ(m_Textures.Find(L"Image_BigTexture_0")->GetRef(), 1);
}

TEST_F(QXTextureImageManagerTest, BigTextureLeftBehindWithAnotherFormatIsMadeAnew) {
  Place(L"a", 64, 12);
  m_Manager.LoadTexture();
  m_Manager.Clear();
  GetTold().clear();
  Place(L"b", 64, 10, 5);
  m_Manager.LoadTexture();
  EXPECT_THAT(GetTold(), ElementsAre("Image_BigTexture_0: GetTexture(1)",
                             "Image_BigTexture_0: SetTextureData(1024 x 1024, format 10, compression 0, size 3145728)",
                             "Image_BigTexture_0: LoadTexture(1, 0) need 1",
                             "Image_BigTexture_0: LoadSubTexture(0, 0, 64, 64, 64, 64, pixels of 5, 0)"));
  m_Manager.Clear();
  GetTold().clear();
  Place(L"c", 64, 10, 6, 14);
  m_Manager.LoadTexture();
  EXPECT_THAT(GetTold(), ElementsAre("Image_BigTexture_0: GetTexture(1)",
                             "Image_BigTexture_0: SetTextureData(1024 x 1024, format 10, compression 14, size 524288)",
                             "Image_BigTexture_0: LoadTexture(1, 0) need 1",
                             "Image_BigTexture_0: LoadSubTexture(0, 0, 64, 64, 64, 64, pixels of 6, 0)"));
}

TEST_F(QXTextureImageManagerTest, TextureThatARendererWidensIsNotTakenForOneLeftBehind) {
  Place(L"a", 64, 10, 1);
  m_Manager.LoadTexture();
  m_Textures.Find(L"Image_BigTexture_0")->m_TextureData.RGBToRGBA();
  Place(L"b", 64, 10, 2);
  GetTold().clear();
  m_Manager.LoadTexture();
  // A second blank would cover the first image.
  EXPECT_THAT(GetTold(), ElementsAre("Image_BigTexture_0: GetTexture(1)",
                             "Image_BigTexture_0: LoadSubTexture(64, 0, 64, 64, 64, 64, pixels of 2, 0)"));
}

TEST_F(QXTextureImageManagerTest, BigTextureThatIsOpenedAgainIsLookedAtAgain) {
  Place(L"a", 64, 12);
  m_Manager.LoadTexture();
  // Somebody else holds the texture, so that it outlives its images.
  m_Textures.Find(L"Image_BigTexture_0")->AddRef();
  m_Manager.RemoveTextureImage(L"a");
  Place(L"b", 64, 10, 5);
  GetTold().clear();
  m_Manager.LoadTexture();
  EXPECT_THAT(GetTold(), ElementsAre("Image_BigTexture_0: GetTexture(1)",
                             "Image_BigTexture_0: SetTextureData(1024 x 1024, format 10, compression 0, size 3145728)",
                             "Image_BigTexture_0: LoadTexture(1, 0) need 1",
                             "Image_BigTexture_0: LoadSubTexture(0, 0, 64, 64, 64, 64, pixels of 5, 0)"));
}

TEST_F(QXTextureImageManagerTest, ImagesThatWaitGoToTheTextureManagerOfTheUpload) {
  Place(L"a", 64, 12, 1);
  m_Manager.LoadTexture();
  Place(L"b", 64, 12, 2);
  QXToldTextureManager other;
  // One of that name and another format, which no image of this manager was sent to yet.
  QXTextureData const former = *std::unique_ptr<QXTextureData>(MakeData(4, 4, 10, 0));
  other.GetTexture(L"Image_BigTexture_0", 1)->SetTextureData(former);
  m_Manager.SetTextureManager(&other);
  GetTold().clear();
  m_Manager.LoadTexture();
  EXPECT_THAT(GetTold(), ElementsAre("Image_BigTexture_0: GetTexture(1)",
                             "Image_BigTexture_0: SetTextureData(1024 x 1024, format 12, compression 0, size 4194304)",
                             "Image_BigTexture_0: LoadTexture(1, 0) need 1",
                             "Image_BigTexture_0: LoadSubTexture(64, 0, 64, 64, 64, 64, pixels of 2, 0)"));
  EXPECT_EQ(other.Find(L"Image_BigTexture_0")->GetRef(), 1);
  EXPECT_EQ(m_Textures.Find(L"Image_BigTexture_0")->GetRef(), 1);
  m_Manager.RemoveTextureImage(L"b");
  EXPECT_EQ(other.GetCount(), 0u);
  m_Manager.SetTextureManager(&m_Textures);
  m_Manager.LoadTexture();
  EXPECT_EQ(m_Textures.Find(L"Image_BigTexture_0")->GetRef(), 1);
}

TEST_F(QXTextureImageManagerTest, DestructorDeletesTheRecordsAndWhatTheyOwn) {
  // Leaks show under the address sanitizer; what shows here is that no texture is asked for.
  auto const pManager = std::make_unique<QXTextureImageManager>();
  pManager->SetTextureManager(&m_Textures);
  QXTextureImage* const pImage = pManager->GetTextureImage(L"a");
  pImage->m_pTextureData = MakeData(8, 8, 12, 1);
  pImage->m_nSize = 8;
  pImage->m_arrUserData.Add(5);
  EXPECT_EQ(pManager->FindSpaceInBigTextures(pImage), 1);
}

}  // namespace
}  // namespace QXC
