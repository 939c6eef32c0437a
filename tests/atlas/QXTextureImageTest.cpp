#include "QXTextureImageManagerFixture.h"

#include <tests/QXFieldOrder.h>

#include <cstddef>
#include <cstdint>

namespace QXC {
namespace {

// --- The record ---

TEST_F(QXTextureImageManagerTest, NewRecordHasItsDefaults) {
  ExpectNewRecord();
  QXTextureImage const& image = *m_Manager.GetTextureImage(L"b");
  EXPECT_EQ(image.m_nLocation, 0u);
  EXPECT_EQ(image.m_nSize, 0u);
  EXPECT_EQ(image.m_bAllocated, 0);
  EXPECT_EQ(QXTextureImage(nullptr).m_nRefCount, 0);
}

TEST(QXTextureImage, HasItsFieldsInOrder) {
  QXTextureImage const image(nullptr);
  ExpectInOrder({&image.m_nLocation, &image.m_nRefCount, &image.m_FirstRect, &image.m_SecondRect, &image.m_bFlag,
      &image.m_pTextureData, &image.m_nOwnerID, &image.m_nUserValue, &image.m_nSize, &image.m_bLoaded,
      &image.m_bAllocated, &image.m_strName, &image.m_nUserTag, &image.m_pManager, &image.m_nCreateTime,
      &image.m_bUserFlagA, &image.m_bUserFlagB, &image.m_arrUserData});
  EXPECT_EQ(static_cast<void const*>(&image), static_cast<void const*>(&image.m_nLocation));
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

}  // namespace
}  // namespace QXC
