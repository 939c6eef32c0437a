#include "QXImageAtlasFixture.h"

#include <QxGraphics3D/atlas/QXTextureImageManagerEx.h>

#include <tests/QXFieldOrder.h>

#include <gmock/gmock.h>

#include <memory>
#include <string>

namespace QXC {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class QXTextureImageManagerExTest : public QXImageAtlasFixture<QXTextureImageManagerEx, QXTextureImageEx> {
protected:
  QXTextureImageEx* Make(wchar_t const* szName, unsigned int nWidth, unsigned int nHeight, int nFormat = 12,
      unsigned char nValue = 1, unsigned int nCompression = 0) {
    QXTextureImageEx* const pImage = m_Manager.GetTextureImage(szName);
    pImage->m_nWidth = nWidth;
    pImage->m_nHeight = nHeight;
    pImage->m_nFormat = static_cast<unsigned int>(nFormat);
    pImage->m_nCompression = nCompression;
    pImage->m_pTextureData = MakeData(nWidth, nHeight, nFormat, nValue, nCompression);
    pImage->m_bReady = 1;
    return pImage;
  }
  QXTextureImageEx* Load(wchar_t const* szName, unsigned int nWidth, unsigned int nHeight, int nFormat = 12,
      unsigned char nValue = 1, unsigned int nCompression = 0) {
    QXTextureImageEx* const pImage = Make(szName, nWidth, nHeight, nFormat, nValue, nCompression);
    m_Manager.LoadTexture(0);
    EXPECT_EQ(pImage->m_bLoaded, 1);
    return pImage;
  }
  static std::string NameOf(QXTextureImageEx const* pImage) { return Narrow(pImage->m_pTexture->m_strTexFilePath); }
};

// --- The record ---

TEST_F(QXTextureImageManagerExTest, NewRecordHasItsDefaults) {
  ExpectNewRecord();
  QXTextureImageEx const& image = *m_Manager.GetTextureImage(L"b");
  EXPECT_EQ(image.m_nHeight, 0u);
  EXPECT_EQ(image.m_nWidth, 0u);
  EXPECT_EQ(image.m_bReady.load(), 0);
  EXPECT_EQ(image.m_nFormat, 0u);
  EXPECT_EQ(image.m_nCompression, 0u);
  EXPECT_EQ(image.m_pTexture, nullptr);
}

TEST(QXTextureImageEx, HasItsFieldsInOrder) {
  QXTextureImageEx const image(nullptr);
  ExpectInOrder({&image.m_nRefCount, &image.m_FirstRect, &image.m_SecondRect, &image.m_bFlag, &image.m_pTextureData,
      &image.m_nOwnerID, &image.m_nUserValue, &image.m_nHeight, &image.m_nWidth, &image.m_bLoaded, &image.m_bReady,
      &image.m_strName, &image.m_nUserTag, &image.m_pManager, &image.m_nCreateTime, &image.m_bUserFlagA,
      &image.m_bUserFlagB, &image.m_arrUserData, &image.m_nFormat, &image.m_nCompression, &image.m_pTexture});
  EXPECT_EQ(static_cast<void const*>(&image), static_cast<void const*>(&image.m_nRefCount));
  EXPECT_EQ(sizeof image.m_bReady, 1u);
}

TEST_F(QXTextureImageManagerExTest, SameNameGivesTheSameImageWithOneUserMore) {
  QXTextureImageEx* const pImage = m_Manager.GetTextureImage(L"a");
  EXPECT_EQ(m_Manager.GetTextureImage(L"a"), pImage);
  EXPECT_EQ(pImage->m_nRefCount, 2);
  EXPECT_NE(m_Manager.GetTextureImage(L""), pImage);
  EXPECT_EQ(pImage->m_nRefCount, 2);
}

// --- LoadTexture ---

TEST_F(QXTextureImageManagerExTest, AskingHoldsTheLock) {
  {
    QXToldLocks const locks(m_Textures);
    m_Manager.GetTextureImage(L"a");
  }
  EXPECT_THAT(GetTold(), ElementsAre("atlas(", "atlas)"));
}

TEST_F(QXTextureImageManagerExTest, ReadyImageGetsATextureOfItsOwn) {
  QXTextureImageEx* const pImage = Make(L"a", 30, 20, 12, 7);
  {
    QXToldLocks const locks(m_Textures);
    m_Manager.LoadTexture(0);
  }
  EXPECT_THAT(GetTold(),
      ElementsAre("atlas(", "store(", "TextureImage_0: GetTexture(1)", "store)", "TextureImage_0: SetTextureMipMap(0)",
          "TextureImage_0: SetTextureData(30 x 20, format 12, compression 0, size 2400)",
          "TextureImage_0: LoadTexture(1, 0) need 0", "atlas)"));
  EXPECT_EQ(pImage->m_bLoaded, 1);
  EXPECT_EQ(pImage->m_pTextureData, nullptr);
  EXPECT_EQ(pImage->m_pTexture, m_Textures.Find(L"TextureImage_0"));
  EXPECT_EQ(pImage->m_pTexture->GetRef(), 1);
}

TEST_F(QXTextureImageManagerExTest, TexturesAreNumberedInTheOrderOfTheNamesOfTheImages) {
  QXTextureImageEx* const pLast = Make(L"c", 8, 8);
  QXTextureImageEx* const pFirst = Make(L"a", 8, 8);
  QXTextureImageEx* const pSecond = Make(L"b", 8, 8);
  m_Manager.LoadTexture(0);
  EXPECT_EQ(NameOf(pFirst), "TextureImage_0");
  EXPECT_EQ(NameOf(pSecond), "TextureImage_1");
  EXPECT_EQ(NameOf(pLast), "TextureImage_2");
}

TEST_F(QXTextureImageManagerExTest, ImageThatIsNotReadyWaits) {
  QXTextureImageEx* const pImage = Make(L"a", 8, 8);
  pImage->m_bReady = 0;
  m_Manager.LoadTexture(0);
  EXPECT_EQ(pImage->m_bLoaded, 0);
  EXPECT_NE(pImage->m_pTextureData, nullptr);
  EXPECT_THAT(GetTold(), IsEmpty());
  pImage->m_bReady = 1;
  m_Manager.LoadTexture(0);
  EXPECT_EQ(NameOf(pImage), "TextureImage_0");
}

TEST_F(QXTextureImageManagerExTest, LoadedImagesAndThoseWithATextureAreLeftAlone) {
  QXTextureImageEx* const pLoaded = Make(L"a", 8, 8);
  pLoaded->m_bLoaded = 1;
  QXTextureImageEx* const pTextured = Make(L"b", 8, 8);
  QXToldTexture texture(L"other");
  pTextured->m_pTexture = &texture;
  m_Manager.LoadTexture(0);
  EXPECT_THAT(GetTold(), IsEmpty());
  EXPECT_EQ(pTextured->m_bLoaded, 0);
  pLoaded->m_bLoaded = 0;
  pTextured->m_pTexture = nullptr;
  m_Manager.LoadTexture(0);
  EXPECT_EQ(NameOf(pLoaded), "TextureImage_0");
  EXPECT_EQ(NameOf(pTextured), "TextureImage_1");
}

TEST_F(QXTextureImageManagerExTest, ImageThatItsOwnerTookBackGetsATextureAgain) {
  QXTextureImageEx* const pImage = Load(L"a", 8, 8);
  m_Textures.RemoveTexture(pImage->m_pTexture, 1);
  pImage->m_pTexture = nullptr;
  pImage->m_bLoaded = 0;
  pImage->m_pTextureData = MakeData(8, 8, 12, 2);
  m_Manager.LoadTexture(0);
  EXPECT_EQ(NameOf(pImage), "TextureImage_1");
}

TEST_F(QXTextureImageManagerExTest, NothingIsSentTwice) {
  Load(L"a", 8, 8);
  GetTold().clear();
  {
    QXToldLocks const locks(m_Textures);
    m_Manager.LoadTexture(0);
  }
  EXPECT_THAT(GetTold(), ElementsAre("atlas(", "atlas)"));
}

TEST_F(QXTextureImageManagerExTest, WithoutTextureManagerNothingHappens) {
  m_Manager.SetTextureManager(nullptr);
  QXTextureImageEx* const pImage = Make(L"a", 8, 8);
  QXTextureImageEx* const pUseless = Make(L"b", 8, 8);
  m_Manager.GetTextureImage(L"b");
  m_Manager.AddUselessTexture(List({pUseless}));
  {
    QXToldLocks const locks(m_Textures);
    m_Manager.LoadTexture(0);
  }
  EXPECT_THAT(GetTold(), IsEmpty());
  EXPECT_EQ(pImage->m_bLoaded, 0);
  EXPECT_EQ(pUseless->m_nRefCount, 2);
  m_Manager.SetTextureManager(&m_Textures);
  m_Manager.LoadTexture(0);
  EXPECT_EQ(pImage->m_bLoaded, 1);
  EXPECT_EQ(pUseless->m_nRefCount, 1);
}

TEST_F(QXTextureImageManagerExTest, WithoutTextureOrPixelsTheImageKeepsWaiting) {
  QXTextureImageEx* const pImage = Make(L"a", 8, 8);
  m_Textures.m_bEmpty = 1;
  m_Manager.LoadTexture(0);
  EXPECT_EQ(pImage->m_bLoaded, 0);
  EXPECT_EQ(pImage->m_pTexture, nullptr);
  EXPECT_NE(pImage->m_pTextureData, nullptr);
  m_Textures.m_bEmpty = 0;
  delete pImage->m_pTextureData;
  pImage->m_pTextureData = nullptr;
  GetTold().clear();
  m_Manager.LoadTexture(0);
  pImage->m_pTextureData = new QXTextureData;
  m_Manager.LoadTexture(0);
  EXPECT_THAT(GetTold(), IsEmpty());
  EXPECT_EQ(pImage->m_bLoaded, 0);
  pImage->m_pTextureData->m_pPixels = new unsigned char[4];
  m_Manager.LoadTexture(0);
  // The number that found no texture is used up.
  EXPECT_EQ(NameOf(pImage), "TextureImage_1");
}

// --- Textures that are kept ---

TEST_F(QXTextureImageManagerExTest, KeptTextureTakesTheNextImageOfItsKind) {
  QXTexture* const pTexture = Load(L"a", 30, 20)->m_pTexture;
  GetTold().clear();
  {
    QXToldLocks const locks(m_Textures);
    m_Manager.RemoveTextureImage(L"a", 1);
  }
  EXPECT_THAT(GetTold(), ElementsAre("atlas(", "atlas)"));
  EXPECT_EQ(pTexture->GetRef(), 1);
  QXTextureImageEx* const pNext = Make(L"b", 30, 20, 12, 9);
  GetTold().clear();
  {
    QXToldLocks const locks(m_Textures);
    m_Manager.LoadTexture(0);
  }
  EXPECT_THAT(GetTold(),
      ElementsAre("atlas(", "TextureImage_0: LoadSubTexture(0, 0, 30, 20, 30, 20, pixels of 9, 0)", "atlas)"));
  EXPECT_EQ(pNext->m_pTexture, pTexture);
  EXPECT_EQ(pNext->m_bLoaded, 1);
  EXPECT_EQ(pNext->m_pTextureData, nullptr);
  EXPECT_EQ(pTexture->GetRef(), 1);
  // It was taken out, and no number was used up.
  EXPECT_EQ(NameOf(Load(L"c", 30, 20)), "TextureImage_1");
}

TEST_F(QXTextureImageManagerExTest, ImagesOfAnotherKindGetNewTextures) {
  Load(L"a", 16, 32, 12);
  m_Manager.RemoveTextureImage(L"a", 1);
  EXPECT_EQ(NameOf(Load(L"b", 32, 16, 12)), "TextureImage_1");
  EXPECT_EQ(NameOf(Load(L"c", 16, 16, 12)), "TextureImage_2");
  EXPECT_EQ(NameOf(Load(L"d", 32, 32, 12)), "TextureImage_3");
  EXPECT_EQ(NameOf(Load(L"e", 16, 32, 13)), "TextureImage_4");
  EXPECT_EQ(NameOf(Load(L"f", 16, 32, 12, 1, 14)), "TextureImage_5");
  EXPECT_EQ(NameOf(Load(L"g", 16, 32, 12)), "TextureImage_0");
  // Pixels without compression, which are more than enough for the kept texture.
  m_Manager.RemoveTextureImage(L"f", 1);
  EXPECT_EQ(NameOf(Load(L"h", 16, 32, 12)), "TextureImage_6");
}

TEST_F(QXTextureImageManagerExTest, NumbersOfAKindAreNotRunTogether) {
  // 1_2... and 12_...: written without separators both would be one kind.
  Load(L"a", 12, 3, 12);
  m_Manager.RemoveTextureImage(L"a", 1);
  EXPECT_EQ(NameOf(Load(L"b", 1, 23, 12)), "TextureImage_1");
}

TEST_F(QXTextureImageManagerExTest, KeptTexturesLeaveInTheOrderInWhichTheyCame) {
  for (wchar_t const* szName : {L"a", L"b", L"c", L"d"}) Load(szName, 8, 8);
  for (wchar_t const* szName : {L"c", L"a", L"d"}) m_Manager.RemoveTextureImage(szName, 1);
  EXPECT_EQ(NameOf(Load(L"e", 8, 8)), "TextureImage_2");
  m_Manager.RemoveTextureImage(L"b", 1);
  EXPECT_EQ(NameOf(Load(L"f", 8, 8)), "TextureImage_0");
  EXPECT_EQ(NameOf(Load(L"g", 8, 8)), "TextureImage_3");
  EXPECT_EQ(NameOf(Load(L"h", 8, 8)), "TextureImage_1");
  EXPECT_EQ(NameOf(Load(L"i", 8, 8)), "TextureImage_4");
}

TEST_F(QXTextureImageManagerExTest, KindIsReadFromTheRecordWhenTheImageGoes) {
  Load(L"a", 8, 8)->m_nWidth = 4;
  m_Manager.RemoveTextureImage(L"a", 1);
  EXPECT_EQ(NameOf(Load(L"b", 8, 8)), "TextureImage_1");
  EXPECT_EQ(NameOf(Load(L"c", 4, 8)), "TextureImage_0");
}

TEST_F(QXTextureImageManagerExTest, BlockThatIsTooShortForItsKindGetsATextureMeasuredByItself) {
  Load(L"a", 64, 64);
  m_Manager.RemoveTextureImage(L"a", 1);
  // The record says more than its pixels are: sent into the kept texture they would be read past their end.
  QXTextureImageEx* const pImage = Make(L"b", 8, 8);
  pImage->m_nWidth = 64;
  pImage->m_nHeight = 64;
  m_Manager.LoadTexture(0);
  EXPECT_EQ(NameOf(pImage), "TextureImage_1");
  EXPECT_EQ(NameOf(Load(L"c", 64, 64)), "TextureImage_0");
}

TEST_F(QXTextureImageManagerExTest, BlockThatIsTooShortForTheKeptTextureGetsAnother) {
  struct {
    int m_nKeptFormat;
    unsigned int m_nKeptCompression;
    int m_nFormat;
    unsigned int m_nCompression;
  } const arrCases[] = {{12, 0, 10, 0}, {12, 0, 12, 14}, {12, 14, 10, 14}};
  for (auto const& [nKeptFormat, nKeptCompression, nFormat, nCompression] : arrCases) {
    SCOPED_TRACE(testing::Message() << nKeptFormat << " " << nKeptCompression);
    QXTexture const* const pKept = Load(L"a", 64, 64, nKeptFormat, 1, nKeptCompression)->m_pTexture;
    m_Manager.RemoveTextureImage(L"a", 1);
    // The record calls it what the kept texture is; the renderer would read past its end.
    QXTextureImageEx* const pImage = Make(L"b", 64, 64, nFormat, 2, nCompression);
    pImage->m_nFormat = static_cast<unsigned int>(nKeptFormat);
    pImage->m_nCompression = nKeptCompression;
    m_Manager.LoadTexture(0);
    EXPECT_EQ(pImage->m_bLoaded, 1);
    EXPECT_NE(pImage->m_pTexture, pKept);
    m_Manager.RemoveTextureImage(L"b", 0);
    EXPECT_EQ(Load(L"c", 64, 64, nKeptFormat, 3, nKeptCompression)->m_pTexture, pKept);
    m_Manager.RemoveTextureImage(L"c", 0);
  }
}

TEST_F(QXTextureImageManagerExTest, KindThatNobodyWroteDownIsAKindToo) {
  // Format and compression of the records are left 0, and the pixels have 3 bytes.
  Load(L"a", 64, 64, 10)->m_nFormat = 0;
  m_Manager.RemoveTextureImage(L"a", 1);
  m_Textures.Find(L"TextureImage_0")->m_TextureData.RGBToRGBA();
  Make(L"b", 64, 64, 10)->m_nFormat = 0;
  m_Manager.LoadTexture(0);
  EXPECT_EQ(NameOf(m_Manager.GetTextureImage(L"b")), "TextureImage_0");
}

TEST_F(QXTextureImageManagerExTest, KeptGreyTextureTakesGreyImagesAndNoOthers) {
  // As they are read from files: one byte a pixel, under a code of 4 bytes.
  auto const makeGrey = [this](wchar_t const* szName) {
    QXTextureImageEx* const pImage = Make(szName, 16, 16, 28);
    delete pImage->m_pTextureData;
    pImage->m_pTextureData = MakeData(16, 4, 28, 1);
    pImage->m_pTextureData->m_nHeight = 16;
    m_Manager.LoadTexture(0);
    return pImage;
  };
  makeGrey(L"a");
  m_Manager.RemoveTextureImage(L"a", 1);
  EXPECT_EQ(NameOf(Load(L"colours", 16, 16, 28)), "TextureImage_1");
  EXPECT_EQ(NameOf(makeGrey(L"b")), "TextureImage_0");
  m_Manager.RemoveTextureImage(L"colours", 1);
  EXPECT_EQ(NameOf(makeGrey(L"c")), "TextureImage_2");
}

TEST_F(QXTextureImageManagerExTest, WithoutKeepingTheTextureGoesBack) {
  Load(L"a", 8, 8);
  GetTold().clear();
  {
    QXToldLocks const locks(m_Textures);
    m_Manager.RemoveTextureImage(L"a", 0);
  }
  EXPECT_THAT(
      GetTold(), ElementsAre("atlas(", "store(", "store(", "TextureImage_0: dies", "store)", "store)", "atlas)"));
  EXPECT_EQ(NameOf(Load(L"b", 8, 8)), "TextureImage_1");
}

// --- RemoveTextureImage ---

TEST_F(QXTextureImageManagerExTest, RemovingTakesOneUserAndOnlyTheLastOneDeletes) {
  QXTextureImageEx* const pImage = Load(L"a", 8, 8);
  m_Manager.GetTextureImage(L"a");
  m_Manager.RemoveTextureImage(L"a", 1);
  EXPECT_EQ(pImage->m_nRefCount, 1);
  EXPECT_NE(pImage->m_pTexture, nullptr);
  m_Manager.RemoveTextureImage(L"a", 1);
  m_Manager.RemoveTextureImage(L"a", 1);
  m_Manager.RemoveTextureImage(L"b", 0);
  // Its texture was kept once.
  EXPECT_EQ(NameOf(Load(L"c", 8, 8)), "TextureImage_0");
  EXPECT_EQ(NameOf(Load(L"d", 8, 8)), "TextureImage_1");
}

TEST_F(QXTextureImageManagerExTest, CountThatPassesZeroDeletesNothing) {
  QXTextureImageEx* const pImage = Load(L"a", 8, 8);
  pImage->m_nRefCount = 0;
  m_Manager.RemoveTextureImage(L"a", 0);
  EXPECT_EQ(pImage->m_nRefCount, -1);
  EXPECT_EQ(m_Manager.GetTextureImage(L"a"), pImage);
  EXPECT_EQ(m_Textures.GetCount(), 1u);
}

TEST_F(QXTextureImageManagerExTest, ImageThatIsNotLoadedLeavesNothing) {
  Make(L"a", 8, 8)->m_bReady = 0;
  m_Manager.RemoveTextureImage(L"a", 1);
  Make(L"b", 8, 8)->m_bReady = 0;
  m_Manager.RemoveTextureImage(L"b", 0);
  EXPECT_THAT(GetTold(), IsEmpty());
  EXPECT_EQ(NameOf(Load(L"c", 8, 8)), "TextureImage_0");
}

TEST_F(QXTextureImageManagerExTest, ImageThatIsCalledLoadedWithoutTextureLeavesNothing) {
  Make(L"a", 8, 8)->m_bLoaded = 1;
  m_Manager.RemoveTextureImage(L"a", 1);
  Make(L"b", 8, 8)->m_bLoaded = 1;
  m_Manager.RemoveTextureImage(L"b", 0);
  EXPECT_EQ(NameOf(Load(L"c", 8, 8)), "TextureImage_0");
}

TEST_F(QXTextureImageManagerExTest, TextureOfAnImageThatIsNotLoadedIsNotTheManagersToKeep) {
  QXToldTexture texture(L"other");
  for (unsigned char bKeep = 0; bKeep < 2; ++bKeep) {
    Make(L"a", 8, 8)->m_pTexture = &texture;
    m_Manager.RemoveTextureImage(L"a", bKeep);
  }
  EXPECT_THAT(GetTold(), IsEmpty());
  EXPECT_EQ(NameOf(Load(L"b", 8, 8)), "TextureImage_0");
}

TEST_F(QXTextureImageManagerExTest, NameMayBeTheRecordsOwn) {
  QXTextureImageEx* const pImage = Load(L"a name that is long enough to stand in memory of its own", 8, 8);
  m_Manager.RemoveTextureImage(pImage->m_strName, 0);
  EXPECT_EQ(m_Textures.GetCount(), 0u);
}

TEST_F(QXTextureImageManagerExTest, WithoutTextureManagerTheRecordGoesAlone) {
  Load(L"a", 8, 8);
  m_Manager.SetTextureManager(nullptr);
  m_Manager.RemoveTextureImage(L"a", 0);
  EXPECT_EQ(m_Textures.Find(L"TextureImage_0")->GetRef(), 1);
  EXPECT_EQ(m_Manager.GetTextureImage(L"a")->m_nRefCount, 1);
}

TEST_F(QXTextureImageManagerExTest, TextureMayCallBackWhileItDies) {
  Load(L"a", 8, 8);
  m_Textures.Find(L"TextureImage_0")->m_Dies = [this] {
    m_Manager.RemoveTextureImage(L"a", 0);
    m_Manager.GetTextureImage(L"a");
  };
  m_Manager.RemoveTextureImage(L"a", 0);
  EXPECT_EQ(m_Manager.GetTextureImage(L"a")->m_nRefCount, 2);
}

// --- Useless images ---

TEST_F(QXTextureImageManagerExTest, UselessImagesGoAtTheEndOfTheNextLoadTexture) {
  QXTextureImageEx* const pImage = Load(L"a", 8, 8);
  Load(L"b", 8, 8);
  GetTold().clear();
  {
    QXToldLocks const locks(m_Textures);
    m_Manager.AddUselessTexture(List({pImage}));
    m_Manager.LoadTexture(0);
  }
  EXPECT_THAT(GetTold(),
      ElementsAre("atlas(", "atlas)",  //
          "atlas(", "atlas(", "store(", "store(", "TextureImage_0: dies", "store)", "store)", "atlas)", "atlas)"));
}

TEST_F(QXTextureImageManagerExTest, TexturesOfUselessImagesAreKeptIfLoadTextureSaysSo) {
  QXTextureImageEx* const pImage = Load(L"a", 8, 8);
  m_Manager.AddUselessTexture(List({pImage}));
  m_Manager.LoadTexture(1);
  EXPECT_EQ(m_Textures.GetCount(), 1u);
  EXPECT_EQ(NameOf(Load(L"b", 8, 8)), "TextureImage_0");
}

TEST_F(QXTextureImageManagerExTest, ListedImageWithOtherUsersLosesOneForEachTimeItIsListed) {
  QXTextureImageEx* const pImage = Load(L"a", 8, 8);
  for (int i = 0; i < 4; ++i) m_Manager.GetTextureImage(L"a");
  m_Manager.AddUselessTexture(List({pImage, pImage}));
  m_Manager.AddUselessTexture(List({pImage}));
  m_Manager.LoadTexture(1);
  EXPECT_EQ(pImage->m_nRefCount, 2);
  m_Manager.LoadTexture(1);
  EXPECT_EQ(pImage->m_nRefCount, 2);
}

TEST_F(QXTextureImageManagerExTest, ListedImageThatIsGoneIsIgnored) {
  QXTextureImageEx* const pTwice = Load(L"a", 8, 8);
  m_Manager.AddUselessTexture(List({pTwice, nullptr, pTwice, reinterpret_cast<QXTextureImageEx*>(sizeof(void*))}));
  m_Manager.AddUselessTexture(List({Load(L"b", 8, 8)}));
  m_Manager.RemoveTextureImage(L"b", 0);
  m_Manager.LoadTexture(0);
  EXPECT_EQ(m_Textures.GetCount(), 0u);
}

TEST_F(QXTextureImageManagerExTest, UselessImagesAreRemovedFromTheOneManagerOfTheProcess) {
  QXTextureImageManagerEx other;
  other.SetTextureManager(&m_Textures);
  QXTextureImageEx* const pOthers = other.GetTextureImage(L"a");
  QXTextureImageEx* const pImage = m_Manager.GetTextureImage(L"a");
  m_Manager.GetTextureImage(L"a");
  other.AddUselessTexture(List({pOthers}));
  other.LoadTexture(0);
  EXPECT_EQ(pOthers->m_nRefCount, 1);
  EXPECT_EQ(pImage->m_nRefCount, 1);
}

// --- Clear ---

TEST_F(QXTextureImageManagerExTest, ClearGivesEveryTextureBackInOrder) {
  for (wchar_t const* szName : {L"a", L"b", L"c", L"d", L"e"}) Load(szName, 8, 8);
  m_Manager.GetTextureImage(L"b");
  m_Manager.RemoveTextureImage(L"d", 1);
  m_Manager.RemoveTextureImage(L"a", 1);
  Make(L"waiting", 8, 8)->m_bReady = 0;
  GetTold().clear();
  {
    QXToldLocks const locks(m_Textures);
    m_Manager.Clear();
  }
  EXPECT_THAT(
      GetTold(), ElementsAre("atlas(", "store(", "store(", "TextureImage_1: dies", "store)", "store(",
                     "TextureImage_2: dies", "store)", "store(", "TextureImage_4: dies", "store)", "store(",
                     "TextureImage_3: dies", "store)", "store(", "TextureImage_0: dies", "store)", "store)", "atlas)"));
  EXPECT_EQ(m_Manager.GetTextureImage(L"b")->m_nRefCount, 1);
}

TEST_F(QXTextureImageManagerExTest, NumbersGoOnAfterClear) {
  Load(L"a", 8, 8);
  m_Manager.Clear();
  EXPECT_EQ(NameOf(Load(L"a", 8, 8)), "TextureImage_1");
  m_Manager.RemoveTextureImage(L"a", 0);
  EXPECT_EQ(NameOf(Load(L"a", 8, 8)), "TextureImage_2");
}

TEST_F(QXTextureImageManagerExTest, ClearForgetsTheUselessList) {
  QXTextureImageEx* const pImage = Make(L"a", 8, 8);
  m_Manager.GetTextureImage(L"a");
  m_Manager.AddUselessTexture(List({pImage}));
  // Without a texture manager everything else stays.
  m_Manager.SetTextureManager(nullptr);
  m_Manager.Clear();
  m_Manager.SetTextureManager(&m_Textures);
  m_Manager.LoadTexture(0);
  EXPECT_EQ(pImage->m_nRefCount, 2);
  EXPECT_EQ(m_Manager.GetTextureImage(L"a"), pImage);
}

TEST_F(QXTextureImageManagerExTest, ClearWithoutTextureManagerKeepsImagesAndTextures) {
  QXTextureImageEx* const pImage = Load(L"a", 8, 8);
  Load(L"b", 8, 8);
  m_Manager.RemoveTextureImage(L"b", 1);
  m_Manager.SetTextureManager(nullptr);
  GetTold().clear();
  {
    QXToldLocks const locks(m_Textures);
    m_Manager.Clear();
  }
  EXPECT_THAT(GetTold(), ElementsAre("atlas(", "atlas)"));
  m_Manager.SetTextureManager(&m_Textures);
  EXPECT_EQ(m_Manager.GetTextureImage(L"a"), pImage);
  EXPECT_EQ(NameOf(Load(L"c", 8, 8)), "TextureImage_1");
}

TEST_F(QXTextureImageManagerExTest, ClearBehindReleaseTouchesNoTexture) {
  // The order of QXGraphics3D::ClearResource: the textures are gone when the images are cleared.
  Load(L"a", 8, 8);
  Load(L"b", 8, 8);
  m_Manager.RemoveTextureImage(L"b", 1);
  m_Textures.Release();
  GetTold().clear();
  m_Manager.Clear();
  EXPECT_THAT(GetTold(), IsEmpty());
  EXPECT_EQ(NameOf(Load(L"a", 8, 8)), "TextureImage_2");
}

TEST_F(QXTextureImageManagerExTest, DestructorClears) {
  auto pManager = std::make_unique<QXTextureImageManagerEx>();
  pManager->SetTextureManager(&m_Textures);
  QXTextureImageEx* const pImage = pManager->GetTextureImage(L"a");
  pImage->m_pTextureData = MakeData(8, 8, 12, 1);
  pImage->m_bReady = 1;
  pManager->LoadTexture(0);
  EXPECT_EQ(m_Textures.GetCount(), 1u);
  pManager.reset();
  EXPECT_EQ(m_Textures.GetCount(), 0u);
  // Records are owned with and without a texture manager: the address sanitizer tells if these stay.
  pManager = std::make_unique<QXTextureImageManagerEx>();
  pManager->GetTextureImage(L"a")->m_pTextureData = MakeData(8, 8, 12, 1);
}

}  // namespace
}  // namespace QXC
