#include "QXTextureImageManagerFixture.h"

#include <gmock/gmock.h>

#include <cstddef>
#include <cstdio>
#include <map>
#include <random>
#include <string>

namespace QXC {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(QXTextureImageManagerTest, UploadMakesTheBigTextureAndSendsThePixels) {
  QXTextureImage* const pImage = Place(L"a", 64, 12, 7);
  delete pImage->m_pTextureData;
  pImage->m_pTextureData = MakeData(30, 20, 12, 7);
  UploadToNewBigTexture();
  EXPECT_THAT(GetTold(),
      ElementsAre("Image_BigTexture_0: LoadSubTexture(0, 0, 30, 20, 30, 20, pixels of 7, 0)", "store)", "atlas)"));
  EXPECT_EQ(pImage->m_bLoaded, 1);
  EXPECT_EQ(pImage->m_bAllocated, 1);
  EXPECT_EQ(pImage->m_pTextureData, nullptr);
  EXPECT_EQ(m_Textures.Find(L"Image_BigTexture_0")->GetRef(), 1);
}

TEST_F(QXTextureImageManagerTest, ImagesAreSentInTheOrderOfTheirNamesEachUnderALockOfItsOwn) {
  Place(L"c", 64, 12, 1);
  Place(L"a", 64, 12, 2);
  Place(L"b", 32, 12, 3);
  UploadToNewBigTexture();
  EXPECT_THAT(
      GetTold(), ElementsAre("Image_BigTexture_0: LoadSubTexture(64, 0, 64, 64, 64, 64, pixels of 2, 0)", "store)",  //
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

}  // namespace
}  // namespace QXC
