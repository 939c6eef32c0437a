#include "QXTextureImageManagerFixture.h"

#include <gmock/gmock.h>

#include <cstdio>
#include <memory>

namespace QXC {
namespace {

using testing::ElementsAre;

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
  UploadToNewBigTexture();
  // It is sent once more before it goes.
  EXPECT_THAT(GetTold(),
      ElementsAre("Image_BigTexture_0: LoadSubTexture(64, 0, 64, 64, 64, 64, pixels of 1, 0)", "store)",  //
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
