// The glyph atlas in the renderer's textures: what it asks of them, in which order and under which locks.
#include "QXFontAtlasFixture.h"

#include <QxGraphics3D/frame/foundation/base3d/QXMathEngine.h>
#include <QxGraphics3D/testing/QXCallLog.h>
#include <QxGraphics3D/testing/QXNullTextureManager.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <new>
#include <vector>

namespace QXC {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class QXTextureFontManagerTest : public QXFontAtlas<QXTextureFontManager> {
protected:
  ~QXTextureFontManagerTest() override { QXMathEngine::m_msGraphics3DType = m_eTypeBefore; }

  QXTextureFont* Get(int nNumber, int nWidth, int nHeight, unsigned char nCoverage = 9) {
    return GetShaped(m_Manager, Blank(nNumber), nWidth, nHeight, nCoverage);
  }
  /// What is told of a call, without what came before.
  template <class Call>
  QXTold Told(Call call) {
    GetTold().clear();
    call();
    return GetTold();
  }
  QXTold Upload() {
    return Told([this] { m_Manager.AddCharBitmapToTexture(); });
  }

  _Graphics3DType const m_eTypeBefore = QXMathEngine::m_msGraphics3DType;
};

// --- Textures are made ---

TEST_F(QXTextureFontManagerTest, TextureIsLookedUpByNameWithoutALock) {
  QXToldLocks const locks(m_Textures);
  QXTexture* pTexture = nullptr;
  EXPECT_THAT(Told([&] { pTexture = m_Manager.GetTexture(L"some"); }), ElementsAre("some: GetTexture(1)"));
  EXPECT_EQ(pTexture, m_Textures.Find(L"some"));
  m_Manager.SetTextureManager(nullptr);
  EXPECT_EQ(m_Manager.GetTexture(L"some"), nullptr);
}

TEST_F(QXTextureFontManagerTest, NewPageIsAnEmptyTextureWithOneUserMadeUnderBothLocks) {
  Shape(m_Manager, Blank(1), 10, 10);
  QXToldLocks const locks(m_Textures);
  EXPECT_THAT(Told([&] { m_Manager.GetTextureFont(Blank(1), QXTextStyle()); }),
      ElementsAre("atlas(", "store(", "Font_BigTexture_0: GetTexture(1)",
          "Font_BigTexture_0: SetTextureData(1024, 1024, pixels, 0, 5)", "Font_BigTexture_0: SetTextureMipMap(0)",
          "store)", "atlas)"));
  QXToldTexture const& texture = *m_Textures.Find(L"Font_BigTexture_0");
  EXPECT_EQ(texture.GetRef(), 1);
  EXPECT_EQ(texture.m_TextureData.m_nWidth, 1024u);
  EXPECT_EQ(texture.m_TextureData.m_nHeight, 1024u);
  EXPECT_EQ(texture.m_TextureData.m_eFormat, PF_BYTE_LA);
  EXPECT_EQ(texture.m_TextureData.m_nCompression, 0u);
  EXPECT_EQ(texture.IsLoaded(), 0) << "not before the upload";
  unsigned char const* const pPixels = texture.m_TextureData.m_pPixels;
  EXPECT_TRUE(std::all_of(pPixels, pPixels + 2097152, [](unsigned char nByte) { return nByte == 0; }));
}

TEST_F(QXTextureFontManagerTest, FurtherGlyphOfThePageAsksNothingOfTheTextures) {
  Get(1, 10, 10);
  Shape(m_Manager, Blank(2), 10, 10);
  QXToldLocks const locks(m_Textures);
  EXPECT_THAT(Told([&] { m_Manager.GetTextureFont(Blank(2), QXTextStyle()); }), ElementsAre("atlas(", "atlas)"));
  EXPECT_EQ(m_Textures.Find(L"Font_BigTexture_0")->GetRef(), 1);
}

TEST_F(QXTextureFontManagerTest, EveryOperationHoldsTheAtlasMutex) {
  Get(1, 10, 10);
  m_Manager.AddCharBitmapToTexture();
  QXToldLocks const locks(m_Textures);
  auto const onlyTheAtlas = ElementsAre("atlas(", "atlas)");
  EXPECT_THAT(Told([&] { m_Manager.GetCharBitmapData(Blank(1), QXTextStyle()); }), onlyTheAtlas);
  EXPECT_THAT(Told([&] { m_Manager.GetTextureFont(Blank(1), QXTextStyle()); }), onlyTheAtlas);
  EXPECT_THAT(Told([&] { m_Manager.DelTextureFont(Blank(1)); }), onlyTheAtlas);
  EXPECT_THAT(Upload(), onlyTheAtlas);
  EXPECT_THAT(Told([&] { m_Manager.SetTextureManager(&m_Textures); }), onlyTheAtlas);
  EXPECT_THAT(Told([&] { m_Manager.Clear(); }), onlyTheAtlas);
}

TEST_F(QXTextureFontManagerTest, WithoutTextureManagerThereAreNoGlyphsAndNoPlacesAreKept) {
  m_Manager.SetTextureManager(nullptr);
  EXPECT_EQ(Get(1, 10, 10), nullptr);
  EXPECT_EQ(Get(2, 0, 0), nullptr);
  m_Manager.SetTextureManager(&m_Textures);
  EXPECT_EQ(m_Textures.GetCount(), 0u);
  EXPECT_EQ(Get(3, 10, 10)->m_Key.m_nKey, Location(8, 8, 6, 0));
  EXPECT_EQ(m_Textures.GetCount(), 1u) << "the first page gets its texture";
}

TEST_F(QXTextureFontManagerTest, WithoutTextureThereIsNoGlyphAndNoPlaceIsKept) {
  m_Textures.m_bEmpty = 1;
  EXPECT_EQ(Get(1, 10, 10), nullptr);
  m_Textures.m_bEmpty = 0;
  EXPECT_EQ(m_Manager.GetTextureFont(Blank(1), QXTextStyle())->m_Key.m_nKey, Location(8, 8, 6, 0));
  EXPECT_EQ(m_Textures.GetCount(), 1u);
}

TEST_F(QXTextureFontManagerTest, PlaceOnAPageThatIsThereNeedsNoTextureManager) {
  Get(1, 10, 10);
  m_Manager.SetTextureManager(nullptr);
  EXPECT_EQ(Get(2, 10, 10)->m_Key.m_nKey, Location(24, 8, 6, 0));
  m_Manager.DelTextureFont(Blank(1));
  m_Manager.DelTextureFont(Blank(2));
  m_Manager.SetTextureManager(&m_Textures);
  EXPECT_NE(m_Textures.Find(L"Font_BigTexture_0"), nullptr) << "nobody was there to take it back";
}

// --- Upload ---

TEST_F(QXTextureFontManagerTest, NewGlyphsAreSentInTheOrderOfTheirKeys) {
  // Another order of keys than of places.
  GetShaped(m_Manager, Blank(2, L"b"), 10, 7, 21);
  GetShaped(m_Manager, Blank(2, L"a"), 3, 12, 22);
  GetShaped(m_Manager, Blank(1, L"c"), 11, 5, 23);
  QXToldLocks const locks(m_Textures);
  EXPECT_THAT(Upload(),
      ElementsAre("atlas(",  //
          "store(", "Font_BigTexture_0: GetTexture(1)", "Font_BigTexture_0: LoadTexture(1, 0) need 1",
          "Font_BigTexture_0: LoadSubTexture(0, 16, 11, 5, 11, 5, pixels of 23, 0)", "store)",  //
          "store(", "Font_BigTexture_0: GetTexture(1)",
          "Font_BigTexture_0: LoadSubTexture(16, 0, 3, 12, 3, 12, pixels of 22, 0)", "store)",  //
          "store(", "Font_BigTexture_0: GetTexture(1)",
          "Font_BigTexture_0: LoadSubTexture(0, 0, 10, 7, 10, 7, pixels of 21, 0)", "store)",  //
          "atlas)"));
  EXPECT_THAT(Upload(), ElementsAre("atlas(", "atlas)")) << "once";
}

TEST_F(QXTextureFontManagerTest, EachPageIsLoadedBeforeItsFirstGlyph) {
  Get(1, 1000, 2, 31);
  Get(2, 1000, 2, 32);
  EXPECT_THAT(Upload(), ElementsAre("Font_BigTexture_0: GetTexture(1)", "Font_BigTexture_0: LoadTexture(1, 0) need 1",
                            "Font_BigTexture_0: LoadSubTexture(0, 0, 1000, 2, 1000, 2, pixels of 31, 0)",
                            "Font_BigTexture_1: GetTexture(1)", "Font_BigTexture_1: LoadTexture(1, 0) need 1",
                            "Font_BigTexture_1: LoadSubTexture(0, 0, 1000, 2, 1000, 2, pixels of 32, 0)"));
}

TEST_F(QXTextureFontManagerTest, RendererOfType7LoadsWholeTexturesOnceABatch) {
  QXMathEngine::m_msGraphics3DType = GRAPHICS3D_DEFERRED;
  ASSERT_EQ(static_cast<int>(GRAPHICS3D_DEFERRED), 7);
  Get(1, 10, 10, 41);
  Get(2, 10, 10, 42);
  Get(3, 1000, 2, 43);
  EXPECT_THAT(
      Upload(), ElementsAre("Font_BigTexture_0: GetTexture(1)",
                    "Font_BigTexture_0: LoadSubTexture(0, 0, 10, 10, 10, 10, pixels of 41, 0)",
                    "Font_BigTexture_0: GetTexture(1)",
                    "Font_BigTexture_0: LoadSubTexture(16, 0, 10, 10, 10, 10, pixels of 42, 0)",
                    "Font_BigTexture_1: GetTexture(1)",
                    "Font_BigTexture_1: LoadSubTexture(0, 0, 1000, 2, 1000, 2, pixels of 43, 0)",
                    "Font_BigTexture_0: LoadTexture(0, 0) need 1", "Font_BigTexture_1: LoadTexture(0, 0) need 1"));
  Get(4, 10, 10, 44);
  EXPECT_THAT(Upload(),
      ElementsAre("Font_BigTexture_0: GetTexture(1)", testing::_, "Font_BigTexture_0: LoadTexture(0, 0) need 1"))
      << "only those with new glyphs";
  EXPECT_THAT(Upload(), IsEmpty());
}

TEST_F(QXTextureFontManagerTest, WithoutTextureManagerNewGlyphsKeepWaiting) {
  Get(1, 10, 10, 51);
  m_Manager.SetTextureManager(nullptr);
  EXPECT_THAT(Upload(), IsEmpty());
  m_Manager.SetTextureManager(&m_Textures);
  EXPECT_THAT(Upload(), testing::Contains("Font_BigTexture_0: LoadSubTexture(0, 0, 10, 10, 10, 10, pixels of 51, 0)"));
}

TEST_F(QXTextureFontManagerTest, WithoutTextureManagerPicturesStayHoweverManyTheyAre) {
  OpenBoxes();
  for (int i = 0; i < 1700; ++i) ASSERT_NE(m_Manager.GetTextureFont(Box(99, i), Style(L"boxes", 15)), nullptr);
  m_Manager.SetTextureManager(nullptr);
  m_Manager.AddCharBitmapToTexture();
  // Those that wait still need them.
  EXPECT_EQ(m_Manager.GetCharBitmapData(Box(99, 0), Style(L"boxes", 30))->m_nWidth, 200);
}

TEST_F(QXTextureFontManagerTest, GlyphOfAMissingTextureLeavesTheQueueUnsent) {
  Get(1, 10, 10);
  m_Textures.m_bEmpty = 1;
  EXPECT_THAT(Upload(), ElementsAre("Font_BigTexture_0: GetTexture(1)"));
  m_Textures.m_bEmpty = 0;
  EXPECT_THAT(Upload(), IsEmpty());
}

TEST_F(QXTextureFontManagerTest, GlyphThatWasReleasedBeforeTheUploadIsNeverSent) {
  Get(1, 10, 10, 61);
  Get(2, 10, 10, 62);
  m_Manager.DelTextureFont(Blank(1));
  EXPECT_THAT(Upload(),
      ElementsAre(testing::_, testing::_, "Font_BigTexture_0: LoadSubTexture(16, 0, 10, 10, 10, 10, pixels of 62, 0)"));
  // With the picture that was kept.
  m_Manager.GetTextureFont(Blank(1), QXTextStyle());
  EXPECT_THAT(Upload(), ElementsAre("Font_BigTexture_0: GetTexture(1)",
                            "Font_BigTexture_0: LoadSubTexture(0, 0, 10, 10, 10, 10, pixels of 61, 0)"));
}

/// Runs out of memory at a look-up.
class QXExhaustedTextureManager : public QXToldTextureManager {
public:
  QXTexture* GetTexture(QdcUnicodeString const& strName, unsigned char bCreate) override {
    if (m_nLookUpsLeft-- == 0) throw std::bad_alloc();
    return QXToldTextureManager::GetTexture(strName, bCreate);
  }

  int m_nLookUpsLeft = -1;  ///< negative: any number
};

TEST_F(QXTextureFontManagerTest, GlyphsKeepWaitingWhenMemoryRunsOutHalfway) {
  QXExhaustedTextureManager textures;
  QXTextureFontManager manager;
  manager.SetTextureManager(&textures);
  // Placed in another order than they are sent in.
  GetShaped(manager, Blank(3), 10, 10, 73);
  GetShaped(manager, Blank(1), 10, 10, 71);
  GetShaped(manager, Blank(2), 10, 10, 72);
  textures.m_nLookUpsLeft = 1;
  EXPECT_THROW(manager.AddCharBitmapToTexture(), std::bad_alloc);
  textures.m_nLookUpsLeft = -1;
  // One that was sent already and one that was not.
  manager.DelTextureFont(Blank(1));
  manager.DelTextureFont(Blank(3));
  EXPECT_THAT(Told([&] { manager.AddCharBitmapToTexture(); }),
      ElementsAre("Font_BigTexture_0: GetTexture(1)",
          "Font_BigTexture_0: LoadSubTexture(0, 16, 10, 10, 10, 10, pixels of 72, 0)"));
}

TEST_F(QXTextureFontManagerTest, GlyphsThatWaitAreForgottenByClear) {
  Get(1, 10, 10);
  m_Manager.Clear();
  EXPECT_THAT(Upload(), IsEmpty());
}

TEST_F(QXTextureFontManagerTest, PicturesPassTheLimitOnlyAfterTheyAreSent) {
  OpenBoxes();
  QXTextStyle const style = Style(L"boxes", 15);
  // More than 10 MiB; each of them waits.
  for (int i = 0; i < 1700; ++i) ASSERT_NE(m_Manager.GetTextureFont(Box(99, i), style), nullptr);
  QXTold const told = Upload();
  EXPECT_EQ(std::count_if(told.begin(), told.end(),
                [](std::string const& strLine) { return strLine.find("200, 16, 200, 16") != std::string::npos; }),
      1700);
  EXPECT_EQ(m_Manager.GetCharBitmapData(Box(99, 0), Style(L"boxes", 30))->m_nWidth, 398) << "drawn again";
}

// --- Textures go ---

TEST_F(QXTextureFontManagerTest, LastGlyphOfAPageGivesTheTextureBackUnderBothLocks) {
  Get(1, 10, 10);
  Get(2, 10, 10);
  QXToldLocks const locks(m_Textures);
  EXPECT_THAT(Told([&] { m_Manager.DelTextureFont(Blank(1)); }), ElementsAre("atlas(", "atlas)"));
  // RemoveTexture takes the lock once more.
  EXPECT_THAT(Told([&] { m_Manager.DelTextureFont(Blank(2)); }),
      ElementsAre("atlas(", "store(", "Font_BigTexture_0: GetTexture(1)", "store(", "Font_BigTexture_0: dies", "store)",
          "store)", "atlas)"));
  EXPECT_EQ(m_Textures.GetCount(), 0u);
}

TEST_F(QXTextureFontManagerTest, TextureThatOthersUseStays) {
  Get(1, 10, 10);
  m_Textures.Find(L"Font_BigTexture_0")->AddRef();
  m_Manager.DelTextureFont(Blank(1));
  EXPECT_EQ(m_Textures.Find(L"Font_BigTexture_0")->GetRef(), 1);
}

TEST_F(QXTextureFontManagerTest, DyingTextureMayAskForGlyphs) {
  Get(1, 10, 10);
  m_Textures.Find(L"Font_BigTexture_0")->m_Dies = [this] { Get(2, 10, 10); };
  m_Manager.DelTextureFont(Blank(1));
  ASSERT_NE(m_Textures.Find(L"Font_BigTexture_0"), nullptr);
  EXPECT_EQ(m_Manager.GetTextureFont(Blank(2), QXTextStyle())->m_nRefCount, 2);
}

TEST_F(QXTextureFontManagerTest, ClearLeavesTexturesWithTheirUser) {
  Get(1, 10, 10);
  Get(2, 1000, 2);
  m_Manager.AddCharBitmapToTexture();
  EXPECT_THAT(Told([&] { m_Manager.Clear(); }), IsEmpty());
  ASSERT_EQ(m_Textures.GetCount(), 2u);
  EXPECT_EQ(m_Textures.Find(L"Font_BigTexture_0")->GetRef(), 1);
  // The next page of that number is the same texture with an empty image and one user more, and it outlives its glyphs.
  m_Textures.Find(L"Font_BigTexture_0")->m_TextureData.m_pPixels[0] = 77;
  EXPECT_THAT(Told([&] { Get(3, 10, 10); }),
      ElementsAre("Font_BigTexture_0: GetTexture(1)", "Font_BigTexture_0: SetTextureData(1024, 1024, pixels, 0, 5)",
          "Font_BigTexture_0: SetTextureMipMap(0)"));
  EXPECT_EQ(m_Textures.Find(L"Font_BigTexture_0")->GetRef(), 2);
  EXPECT_EQ(m_Textures.Find(L"Font_BigTexture_0")->m_TextureData.m_pPixels[0], 0);
  m_Manager.DelTextureFont(Blank(3));
  EXPECT_EQ(m_Textures.Find(L"Font_BigTexture_0")->GetRef(), 1);
}

TEST_F(QXTextureFontManagerTest, ManagerThatDiesLeavesTexturesToo) {
  {
    QXTextureFontManager manager;
    manager.SetTextureManager(&m_Textures);
    GetShaped(manager, Blank(1), 10, 10);
  }
  EXPECT_EQ(m_Textures.Find(L"Font_BigTexture_0")->GetRef(), 1);
}

// --- The last page ---

class QXFullFontAtlas : public QXTextureFontManagerTest {
protected:
  /// A page of its own for each number; the pixels of 256 pages need not all be kept.
  void Fill(int nCount) {
    for (int i = 0; i < nCount; ++i) {
      ASSERT_NE(Get(i, 1023, 1), nullptr);
      m_Textures.Find(PageName(i))->ReleaseImgData();
    }
  }
};

TEST_F(QXFullFontAtlas, NoGlyphGetsAPlaceBehindPage255) {
  Fill(256);
  EXPECT_EQ(m_Manager.GetTextureFont(Blank(255), QXTextStyle())->m_Key.m_nKey, Location(512, 512, 0, 255));
  EXPECT_EQ(m_Textures.GetCount(), 256u);
  EXPECT_EQ(Get(1000, 10, 10), nullptr);
  EXPECT_EQ(m_Manager.GetTextureFont(Blank(1000), QXTextStyle()), nullptr);
  EXPECT_EQ(m_Textures.GetCount(), 256u) << "no page that nothing may stand on";
  m_Manager.DelTextureFont(Blank(7));
  EXPECT_EQ(Get(1000, 10, 10)->m_Key.m_nKey, Location(8, 8, 6, 7)) << "as soon as there is room again";
}

TEST_F(QXFullFontAtlas, BlanksStillOpenTheirPagesWhichTakeNothing) {
  Fill(256);
  EXPECT_EQ(Get(1000, 0, 0), nullptr);
  EXPECT_EQ(m_Textures.GetCount(), 257u);
  EXPECT_EQ(Get(1001, 10, 10), nullptr);
  EXPECT_EQ(m_Textures.GetCount(), 257u);
  // So do glyphs that fit nowhere, too small or too large.
  EXPECT_EQ(Get(1002, 1, 1), nullptr);
  EXPECT_EQ(m_Textures.GetCount(), 258u);
  EXPECT_EQ(Get(1003, 1024, 3), nullptr);
  EXPECT_EQ(m_Textures.GetCount(), 259u);
  m_Manager.DelTextureFont(Blank(0));
  EXPECT_FALSE(HasPage(0));
  EXPECT_TRUE(HasPage(1));
}

// --- What arrives ---

TEST_F(QXTextureFontManagerTest, NullRendererHoldsThePixelsOfEveryGlyph) {
  QXNullTextureManager textures(std::make_shared<QXCallLog>());
  QXTextureFontManager manager;
  manager.SetTextureManager(&textures);
  QXTextStyle const style = Style(L"sample", 20);
  std::vector<unsigned char> arrExpected(2097152);
  wchar_t const szText[] = L"QxGraphics";
  for (std::uint32_t i = 0; i < 10; ++i) {
    QXFontKey const key(static_cast<std::uint32_t>(szText[i]) << 16 | i, L"sample");
    QXTextureFont const* const pFont = manager.GetTextureFont(key, style);
    ASSERT_NE(pFont, nullptr);
    QXCharBitmapData const& bitmap = *manager.GetCharBitmapData(key, style);
    for (int nRow = 0; nRow < bitmap.m_nHeight; ++nRow) {
      std::copy_n(bitmap.m_pData + nRow * bitmap.m_nWidth * 2, bitmap.m_nWidth * 2,
          arrExpected.begin() + ((pFont->m_Key.GetTop() + nRow) * 1024 + pFont->m_Key.GetLeft()) * 2);
    }
  }
  manager.AddCharBitmapToTexture();
  auto const& texture = static_cast<QXNullTexture&>(*textures.GetTexture(L"Font_BigTexture_0", 0));
  EXPECT_EQ(texture.GetDeviceFormat(), PF_BYTE_LA);
  EXPECT_TRUE(texture.GetDevicePixels() == arrExpected);
  EXPECT_GT(std::count(arrExpected.begin(), arrExpected.end(), 255), 1000);
}

}  // namespace
}  // namespace QXC
