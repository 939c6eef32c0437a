#include "QXTextureImageManagerFixture.h"

#include <gmock/gmock.h>

#include <cstdint>
#include <cstdio>
#include <map>
#include <random>
#include <string>

namespace QXC {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

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

}  // namespace
}  // namespace QXC
