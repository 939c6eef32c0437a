// What the glyph atlas and the glyph atlas in memory have in common: keys, records, places, pictures and their purge.
#include "QXFontAtlasFixture.h"

#include <QxGraphics3D/text/QXCharBitmapData.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <set>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace QXC {
namespace {

// --- Keys and records ---

TEST(QXFontKey, CodeDecidesTheOrderAndThenTheName) {
  EXPECT_TRUE(QXFontKey(1, L"b") < QXFontKey(2, L"a"));
  EXPECT_FALSE(QXFontKey(2, L"a") < QXFontKey(1, L"b"));
  EXPECT_TRUE(QXFontKey(1, L"a") < QXFontKey(1, L"b"));
  EXPECT_FALSE(QXFontKey(1, L"b") < QXFontKey(1, L"a"));
  EXPECT_FALSE(QXFontKey(1, L"a") < QXFontKey(1, L"a"));
  // Unsigned: characters of the upper half of the plane come last.
  EXPECT_TRUE(QXFontKey(0x7FFF0000, L"") < QXFontKey(0xFFFF0000, L""));
}

TEST(QXFontKey, NameCountsUpToItsFirstZero) {
  QdcUnicodeString strLong(L"face");
  strLong.SetLength(40);
  EXPECT_FALSE(QXFontKey(1, strLong) < QXFontKey(1, L"face"));
  EXPECT_FALSE(QXFontKey(1, L"face") < QXFontKey(1, strLong));
  EXPECT_TRUE(QXFontKey(1, strLong) == QXFontKey(1, L"face"));
}

TEST(QXFontKey, CharacterAndHaloAreReadFromTheirBits) {
  QXFontKey const key(0xABCD7FFF, L"");
  EXPECT_EQ(key.GetCharacter(), 0xABCD);
  EXPECT_EQ(key.IsHalo(), 1);
  EXPECT_EQ(QXFontKey(0xFFFFBFFF, L"").IsHalo(), 0);
  EXPECT_EQ(QXFontKey::HALO, 16384u);
  EXPECT_EQ(QXFontKey().m_nCode, 0u);
  // The last character of the plane is no negative one.
  EXPECT_EQ(QXFontKey(0xFFFF0000, L"").GetCharacter(), 65535);
}

TEST(QXFontTextureKey, FieldsLieInTheirBits) {
  static_assert(sizeof(QXFontTextureKey) == 4);
  QXFontTextureKey const key{Location(712, 40, 7, 201)};
  EXPECT_EQ(key.GetCentreX(), 712);
  EXPECT_EQ(key.GetCentreY(), 40);
  EXPECT_EQ(key.GetLevel(), 7);
  EXPECT_EQ(key.GetTexture(), 201);
  EXPECT_EQ(key.GetSize(), 8);
  EXPECT_EQ(key.GetLeft(), 708);
  EXPECT_EQ(key.GetTop(), 36);
  QXFontTextureKey const whole{Location(512, 512, 0, 0)};
  EXPECT_EQ(whole.GetSize(), 1024);
  EXPECT_EQ(whole.GetLeft(), 0);
}

TEST(QXFontTextureKey, IsANumberTooButNoNumberIsAKey) {
  QXFontTextureKey const key(Location(712, 40, 7, 201));
  std::uint32_t const nKey = key;
  EXPECT_EQ(nKey, Location(712, 40, 7, 201));
  EXPECT_EQ(key >> 24, 201u);
  EXPECT_TRUE(key == QXFontTextureKey(nKey));
  EXPECT_FALSE(key == QXFontTextureKey());
  static_assert(!std::is_convertible_v<std::uint32_t, QXFontTextureKey>);
}

TEST(QXTextureFont, NewRecordHasNoUsers) {
  QXTextureFont const font;
  EXPECT_EQ(font.m_Key.m_nKey, 0u);
  EXPECT_EQ(font.m_nRefCount, 0);
  EXPECT_EQ(font.m_TexCoords.m_fTop, 0.0F);
  static_assert(std::is_same_v<decltype(font.m_TexCoords.m_fLeft), float>);
  static_assert(sizeof(QXTextureFont) == 24);
}

TEST(QXTextureFont, CoordinatesAreFourInTheOrderLeftTopRightBottom) {
  QXTextureFont font;
  font.m_TexCoords = {1, 2, 3, 4};
  QXTextureFont const& same = font;
  EXPECT_EQ(same.m_TexCoords.m_fLeft, 1.0F);
  EXPECT_EQ(same.m_TexCoords.m_fTop, 2.0F);
  EXPECT_EQ(same.m_TexCoords.m_fRight, 3.0F);
  EXPECT_EQ(same.m_TexCoords.m_fBottom, 4.0F);
  for (int i = 0; i < 4; ++i) {
    EXPECT_EQ(same.m_TexCoords[i], static_cast<float>(i + 1));
    font.m_TexCoords[i] = 7;
    EXPECT_EQ(same.m_TexCoords[i], 7.0F);
  }
}

// --- Both managers ---

template <class Manager>
class QXFontAtlasTest : public QXFontAtlas<Manager> {
protected:
  QXTextureFont* Get(QXFontKey const& key, int nWidth, int nHeight) {
    return GetShaped(this->m_Manager, key, nWidth, nHeight);
  }
  /// Where a glyph of that number stands, square but for its height.
  std::uint32_t Place(int nNumber, int nEdge) {
    QXTextureFont const* const pFont = Get(Blank(nNumber), nEdge, std::min(nEdge, 2));
    EXPECT_NE(pFont, nullptr);
    return pFont ? pFont->m_Key.m_nKey : ~0u;
  }
  void Release(int nNumber) { this->m_Manager.DelTextureFont(Blank(nNumber)); }
  int PageCount() {
    int nCount = 0;
    while (this->HasPage(nCount)) ++nCount;
    return nCount;
  }
  /// Width of the kept picture, drawn in that size if there is none.
  int WidthOf(QXFontKey const& key, double dSize) {
    return this->m_Manager.GetCharBitmapData(key, this->Style(L"boxes", dSize))->m_nWidth;
  }
};

using Managers = testing::Types<QXTextureFontManager, QXMemoryTextureFontManager>;
TYPED_TEST_SUITE(QXFontAtlasTest, Managers);

TYPED_TEST(QXFontAtlasTest, IsItsOwnSingletonWithAVirtualDestructor) {
  static_assert(std::is_base_of_v<QXSingleton<TypeParam>, TypeParam>);
  static_assert(std::has_virtual_destructor_v<TypeParam>);
  static_assert(!std::is_base_of_v<QXTextureFontManager, QXMemoryTextureFontManager>);
  TypeParam& manager = TypeParam::GetSingleton();
  EXPECT_EQ(&manager, TypeParam::GetSingletonPtr());
  EXPECT_EQ(QXSingleton<TypeParam>::ms_pSingleton, &manager);
}

TYPED_TEST(QXFontAtlasTest, NothingIsMadeBeforeTheFirstGlyph) {
  EXPECT_EQ(this->PageCount(), 0);
  Shape(this->m_Manager, Blank(1), 10, 10);
  EXPECT_EQ(this->PageCount(), 0);
}

TYPED_TEST(QXFontAtlasTest, RecordSaysPlaceAndCoordinates) {
  QXTextureFont const* const pFirst = this->Get(Blank(1), 10, 7);
  ASSERT_NE(pFirst, nullptr);
  EXPECT_EQ(pFirst->m_Key.m_nKey, Location(8, 8, 6, 0));
  EXPECT_EQ(pFirst->m_nRefCount, 1);
  EXPECT_EQ(pFirst->m_TexCoords.m_fLeft, 0.0F);
  EXPECT_EQ(pFirst->m_TexCoords.m_fRight, 10.0F / 1024);
  EXPECT_EQ(pFirst->m_TexCoords.m_fBottom, 0.0F);
  EXPECT_EQ(pFirst->m_TexCoords.m_fTop, 7.0F / 1024);
  this->Get(Blank(2), 10, 7);
  this->Get(Blank(3), 10, 7);
  QXTextureFont const* const pFourth = this->Get(Blank(4), 5, 12);
  ASSERT_NE(pFourth, nullptr);
  EXPECT_EQ(pFourth->m_Key.m_nKey, Location(24, 24, 6, 0));
  EXPECT_EQ(pFourth->m_TexCoords.m_fLeft, 16.0F / 1024);
  EXPECT_EQ(pFourth->m_TexCoords.m_fRight, 21.0F / 1024);
  EXPECT_EQ(pFourth->m_TexCoords.m_fBottom, 16.0F / 1024);
  EXPECT_EQ(pFourth->m_TexCoords.m_fTop, 28.0F / 1024);
}

TYPED_TEST(QXFontAtlasTest, ColumnsGrowBeforeRows) {
  EXPECT_EQ(this->Place(1, 200), Location(128, 128, 2, 0));
  EXPECT_EQ(this->Place(2, 200), Location(384, 128, 2, 0));
  EXPECT_EQ(this->Place(3, 200), Location(128, 384, 2, 0));
  EXPECT_EQ(this->Place(4, 200), Location(384, 384, 2, 0));
  EXPECT_EQ(this->Place(5, 200), Location(640, 128, 2, 0));
}

TYPED_TEST(QXFontAtlasTest, TileHoldsTheGreaterSideAndOnePixelMore) {
  EXPECT_EQ(this->Get(Blank(1), 2, 15)->m_Key.GetSize(), 16);
  EXPECT_EQ(this->Get(Blank(2), 2, 16)->m_Key.GetSize(), 32);
  EXPECT_EQ(this->Get(Blank(3), 16, 2)->m_Key.GetSize(), 32);
  EXPECT_EQ(this->Get(Blank(4), 15, 2)->m_Key.GetSize(), 16);
}

TYPED_TEST(QXFontAtlasTest, SmallestTileHasFourPixels) {
  EXPECT_EQ(this->Place(1, 2), Location(2, 2, 8, 0));
  EXPECT_EQ(this->Place(2, 3), Location(6, 2, 8, 0));
  EXPECT_EQ(this->Place(3, 4), Location(12, 4, 7, 0));
}

TYPED_TEST(QXFontAtlasTest, BlanksOpenAPageEachInVain) {
  QXTextStyle const style = this->Style(L"sample", 12);
  EXPECT_EQ(this->m_Manager.GetTextureFont(Blank(1), style), nullptr);
  EXPECT_EQ(this->PageCount(), 1);
  EXPECT_EQ(this->m_Manager.GetTextureFont(Blank(1), style), nullptr);
  EXPECT_EQ(this->PageCount(), 2);
  // One pixel asks for a tile of two, which is none either.
  EXPECT_EQ(this->Get(Blank(2), 1, 1), nullptr);
  EXPECT_EQ(this->PageCount(), 3);
  // They take what comes later.
  EXPECT_EQ(this->Place(3, 2), Location(2, 2, 8, 0));
  EXPECT_EQ(this->PageCount(), 3);
  // No record came: nothing to release.
  this->m_Manager.DelTextureFont(Blank(1));
  EXPECT_EQ(this->PageCount(), 3);
}

TYPED_TEST(QXFontAtlasTest, GlyphOfAWholePageStillFitsAndAGreaterOneNever) {
  EXPECT_EQ(this->Place(1, 1023), Location(512, 512, 0, 0));
  EXPECT_EQ(this->Get(Blank(2), 1024, 3), nullptr);
  EXPECT_EQ(this->Get(Blank(3), 3, 1024), nullptr);
  EXPECT_EQ(this->Get(Blank(4), 5000, 3), nullptr);
  EXPECT_EQ(this->PageCount(), 4);
  // The whole page is taken, the next one is free.
  EXPECT_EQ(this->Place(5, 2), Location(2, 2, 8, 1));
}

TYPED_TEST(QXFontAtlasTest, UnknownCharacterGivesNothingAndMakesNothing) {
  QXFontKey const missing(0x4E00u << 16, L"face");
  EXPECT_EQ(this->m_Manager.GetCharBitmapData(missing, this->Style(L"sample", 12)), nullptr);
  EXPECT_EQ(this->m_Manager.GetTextureFont(missing, this->Style(L"sample", 12)), nullptr);
  EXPECT_EQ(this->PageCount(), 0);
}

// --- Users ---

TYPED_TEST(QXFontAtlasTest, EachRequestIsAUser) {
  QXTextureFont const* const pFont = this->Get(Blank(1), 10, 10);
  this->Place(9, 30);
  EXPECT_EQ(this->m_Manager.GetTextureFont(Blank(1), QXTextStyle()), pFont);
  EXPECT_EQ(pFont->m_nRefCount, 2);
  this->Release(1);
  EXPECT_EQ(pFont->m_nRefCount, 1);
  // Still there: its tile is not given away.
  EXPECT_EQ(this->Place(2, 10), Location(24, 8, 6, 0));
  this->Release(1);
  EXPECT_EQ(this->Place(3, 10), Location(8, 8, 6, 0));
}

TYPED_TEST(QXFontAtlasTest, ReleaseOfAnUnknownKeyDoesNothing) {
  this->Place(1, 10);
  this->m_Manager.DelTextureFont(Blank(2));
  this->m_Manager.DelTextureFont(Blank(1, L"other"));
  // Known by its picture only.
  Shape(this->m_Manager, Blank(3), 10, 10);
  this->m_Manager.DelTextureFont(Blank(3));
  EXPECT_TRUE(this->HasPage(0));
  EXPECT_EQ(this->Place(4, 10), Location(24, 8, 6, 0));
}

TYPED_TEST(QXFontAtlasTest, KeysOfOneCharacterAreGlyphsOfTheirOwn) {
  QXTextureFont const* const pFirst = this->Get(Blank(1), 10, 10);
  QXTextureFont const* const pOtherBits = this->Get(Blank(2), 10, 10);
  QXTextureFont const* const pOtherName = this->Get(Blank(1, L"other"), 10, 10);
  EXPECT_EQ((std::set<QXTextureFont const*>{pFirst, pOtherBits, pOtherName}).size(), 3u);
  EXPECT_EQ(this->m_Manager.GetTextureFont(Blank(1, L"other"), QXTextStyle()), pOtherName);
  EXPECT_EQ(this->m_Manager.GetTextureFont(Blank(1), QXTextStyle()), pFirst);
}

TYPED_TEST(QXFontAtlasTest, LongNamesAreReadToTheirEnd) {
  std::wstring const strFirst(10000, L'x');
  std::wstring const strSecond = strFirst.substr(1) + L'y';
  QXTextureFont const* const pFirst = this->Get(Blank(1, strFirst.c_str()), 10, 10);
  QXTextureFont const* const pSecond = this->Get(Blank(1, strSecond.c_str()), 10, 10);
  EXPECT_NE(pFirst, pSecond);
  EXPECT_EQ(this->m_Manager.GetTextureFont(Blank(1, strFirst.c_str()), QXTextStyle()), pFirst);
  this->m_Manager.DelTextureFont(Blank(1, strSecond.c_str()));
  EXPECT_EQ(pFirst->m_nRefCount, 2);
  EXPECT_EQ(this->Place(2, 10), Location(24, 8, 6, 0));
}

TYPED_TEST(QXFontAtlasTest, LastGlyphOfAPageTakesThePageAlong) {
  this->Place(1, 1000);
  this->Place(2, 1000);
  this->Place(3, 10);
  this->Place(4, 10);
  EXPECT_EQ(this->PageCount(), 3);
  this->Release(3);
  EXPECT_TRUE(this->HasPage(2));
  this->Release(4);
  EXPECT_FALSE(this->HasPage(2));
  this->Release(1);
  EXPECT_FALSE(this->HasPage(0));
  EXPECT_TRUE(this->HasPage(1));
  // The lowest number is the next one.
  EXPECT_EQ(this->Place(5, 600), Location(512, 512, 0, 0));
  EXPECT_EQ(this->Place(6, 600), Location(512, 512, 0, 2));
}

// --- Where the search begins ---

TYPED_TEST(QXFontAtlasTest, SearchBeginsOnThePageOfTheLastNewGlyph) {
  this->Place(1, 1000);
  this->Place(2, 1000);
  this->Place(3, 400);
  this->Release(1);
  // Page 0 has gone; it comes again empty.
  EXPECT_EQ(this->Place(4, 1000), Location(512, 512, 0, 0));
  this->Release(4);
  this->Get(Blank(5), 0, 0);
  EXPECT_TRUE(this->HasPage(0));
  // The last new glyph stood on page 0: the empty one, not page 2.
  EXPECT_EQ(this->Place(6, 400), Location(256, 256, 1, 0));
  this->Place(7, 400);
  this->Place(8, 400);
  this->Place(9, 400);
  // Full: on to the next that has room, which is then the one where the search begins.
  EXPECT_EQ(this->Place(10, 400), Location(768, 256, 1, 2));
  this->Release(9);
  EXPECT_EQ(this->Place(11, 400), Location(256, 768, 1, 2));
  EXPECT_EQ(this->Place(12, 400), Location(768, 768, 1, 2));
  // And round.
  EXPECT_EQ(this->Place(13, 400), Location(768, 768, 1, 0));
}

TYPED_TEST(QXFontAtlasTest, KnownGlyphDoesNotMoveTheSearch) {
  this->Place(1, 400);
  this->Place(2, 1000);
  this->m_Manager.GetTextureFont(Blank(1), QXTextStyle());
  this->Get(Blank(3), 0, 0);
  EXPECT_EQ(this->Place(4, 1000), Location(512, 512, 0, 2));
  this->m_Manager.GetTextureFont(Blank(1), QXTextStyle());
  this->Release(4);
  this->Get(Blank(5), 0, 0);
  EXPECT_EQ(this->Place(6, 400), Location(256, 256, 1, 2));
}

TYPED_TEST(QXFontAtlasTest, VanishedPageOfTheLastGlyphLetsTheSearchBeginAtTheLowest) {
  this->Place(1, 400);
  this->Place(2, 1000);
  this->Place(3, 1000);
  this->Get(Blank(4), 0, 0);
  this->Release(3);
  EXPECT_FALSE(this->HasPage(2));
  EXPECT_TRUE(this->HasPage(3));
  // Not page 3, which follows the one that has gone.
  EXPECT_EQ(this->Place(5, 400), Location(768, 256, 1, 0));
}

TYPED_TEST(QXFontAtlasTest, TileOutsideTheUpperLeftChainIsNotSeen) {
  EXPECT_EQ(this->Place(1, 10), Location(8, 8, 6, 0));
  EXPECT_EQ(this->Place(2, 10), Location(24, 8, 6, 0));
  // In the chain: the node of 32 is not free.
  EXPECT_EQ(this->Place(3, 20), Location(48, 16, 5, 0));
  this->Release(1);
  // The tile at (24, 8) lies in the upper right child, where nobody looks: both glyphs have those pixels now.
  EXPECT_EQ(this->Place(4, 20), Location(16, 16, 5, 0));
  // The lower tile is marked and keeps its place, but below a marked node nothing is granted.
  EXPECT_EQ(this->Place(5, 10), Location(8, 40, 6, 0));
  this->Release(2);
  this->Release(4);
  EXPECT_EQ(this->Place(6, 10), Location(8, 8, 6, 0));
}

// --- Pictures ---

TYPED_TEST(QXFontAtlasTest, PictureIsWhatTheEngineDraws) {
  QXTextStyle const style = this->Style(L"sample", 20);
  for (std::uint32_t nHalo : {0u, QXFontKey::HALO}) {
    // All bits that mean nothing here are set.
    QXFontKey const key(static_cast<std::uint32_t>(L'g') << 16 | 0xBFFF | nHalo, L"whatever");
    QXCharBitmapData const* const pBitmap = this->m_Manager.GetCharBitmapData(key, style);
    ASSERT_NE(pBitmap, nullptr);
    this->Fonts().SetTextStyle(style);
    auto const expected = this->Draw(L'g', nHalo != 0);
    ASSERT_TRUE(expected);
    EXPECT_EQ(pBitmap->m_nWidth, expected->m_nWidth);
    EXPECT_EQ(pBitmap->m_nHeight, expected->m_nHeight);
    EXPECT_EQ(pBitmap->m_nAdvance, expected->m_nAdvance);
    ASSERT_EQ(expected->m_arrPixels.size(),
        static_cast<std::size_t>(pBitmap->m_nWidth) * static_cast<std::size_t>(pBitmap->m_nHeight) * 2);
    EXPECT_EQ(std::memcmp(pBitmap->m_pData, expected->m_arrPixels.data(), expected->m_arrPixels.size()), 0);
  }
}

TYPED_TEST(QXFontAtlasTest, PictureIsDrawnOnceAndTheKeyStandsForTheStyle) {
  this->OpenBoxes();
  QXCharBitmapData const* const pBitmap = this->m_Manager.GetCharBitmapData(this->Box(3), this->Style(L"boxes", 15));
  EXPECT_EQ(pBitmap->m_nWidth, 8);
  EXPECT_EQ(this->m_Manager.GetCharBitmapData(this->Box(3), this->Style(L"boxes", 30)), pBitmap);
  EXPECT_EQ(this->WidthOf(this->Box(3, 1), 30), 14);
  QXTextureFont const* const pFont = this->m_Manager.GetTextureFont(this->Box(3), this->Style(L"boxes", 30));
  ASSERT_NE(pFont, nullptr);
  EXPECT_EQ(pFont->m_TexCoords.m_fRight, 8.0F / 1024);
}

TYPED_TEST(QXFontAtlasTest, PictureOutlivesItsGlyph) {
  this->OpenBoxes();
  this->m_Manager.GetTextureFont(this->Box(3), this->Style(L"boxes", 15));
  this->m_Manager.DelTextureFont(this->Box(3));
  EXPECT_EQ(this->WidthOf(this->Box(3), 30), 8);
}

// 1638 pictures of 6400 bytes and one of 2560.
template <class Test>
void KeepTenMebibytes(Test& test) {
  for (int i = 0; i < 1638; ++i) ASSERT_EQ(test.WidthOf(test.Box(99, i), 15), 200);
  ASSERT_EQ(test.WidthOf(test.Box(39), 15), 80);
}

template <class Manager>
class QXFontPurgeTest : public QXFontAtlasTest<Manager> {
public:
  using QXFontAtlasTest<Manager>::WidthOf;
  using QXFontAtlasTest<Manager>::Box;

protected:
  QXFontPurgeTest() { this->OpenBoxes(); }
};

TYPED_TEST_SUITE(QXFontPurgeTest, Managers);

TYPED_TEST(QXFontPurgeTest, PicturesGoAllAtOnceAboveTenMebibytes) {
  KeepTenMebibytes(*this);
  this->m_Manager.AddCharBitmapToTexture();
  EXPECT_EQ(this->WidthOf(this->Box(39), 30), 80) << "exactly the limit is not above it";
  // One more of 4 by 16 pixels.
  EXPECT_EQ(this->WidthOf(this->Box(1), 15), 4);
  EXPECT_EQ(this->WidthOf(this->Box(39), 30), 80) << "only with an upload";
  this->m_Manager.AddCharBitmapToTexture();
  EXPECT_EQ(this->WidthOf(this->Box(39), 30), 158) << "drawn again";
  EXPECT_EQ(this->WidthOf(this->Box(1), 30), 6);
  EXPECT_EQ(this->WidthOf(this->Box(99, 7), 30), 398);
  // Their bytes count from nothing again.
  this->m_Manager.AddCharBitmapToTexture();
  EXPECT_EQ(this->WidthOf(this->Box(39), 15), 158);
}

TYPED_TEST(QXFontPurgeTest, GlyphsInPagesLiveOnWithoutTheirPictures) {
  QXTextureFont const* const pFont = this->m_Manager.GetTextureFont(this->Box(3), this->Style(L"boxes", 15));
  KeepTenMebibytes(*this);
  this->m_Manager.AddCharBitmapToTexture();
  EXPECT_EQ(this->m_Manager.GetTextureFont(this->Box(3), this->Style(L"boxes", 30)), pFont);
  EXPECT_EQ(pFont->m_nRefCount, 2);
  EXPECT_EQ(pFont->m_TexCoords.m_fRight, 8.0F / 1024);
  EXPECT_EQ(this->WidthOf(this->Box(3), 30), 14) << "the picture is made again for who asks";
  this->m_Manager.DelTextureFont(this->Box(3));
  this->m_Manager.DelTextureFont(this->Box(3));
  EXPECT_FALSE(this->HasPage(0));
}

TYPED_TEST(QXFontPurgeTest, GlyphWithoutPictureCanBeReleasedAndComesBack) {
  this->m_Manager.GetTextureFont(this->Box(3), this->Style(L"boxes", 15));
  KeepTenMebibytes(*this);
  this->m_Manager.AddCharBitmapToTexture();
  this->m_Manager.DelTextureFont(this->Box(3));
  QXTextureFont const* const pFont = this->m_Manager.GetTextureFont(this->Box(3), this->Style(L"boxes", 30));
  ASSERT_NE(pFont, nullptr);
  EXPECT_EQ(pFont->m_nRefCount, 1);
  EXPECT_EQ(pFont->m_TexCoords.m_fRight, 14.0F / 1024);
}

TYPED_TEST(QXFontPurgeTest, ClearForgetsPicturesButNotTheirBytes) {
  KeepTenMebibytes(*this);
  this->m_Manager.Clear();
  EXPECT_EQ(this->WidthOf(this->Box(3), 15), 8);
  EXPECT_EQ(this->WidthOf(this->Box(3), 30), 8);
  // The first frame after it passes the limit with a single picture.
  this->m_Manager.AddCharBitmapToTexture();
  EXPECT_EQ(this->WidthOf(this->Box(3), 30), 14);
}

// --- Clear ---

TYPED_TEST(QXFontAtlasTest, ClearForgetsGlyphsAndMarksButNotThePageOfTheLast) {
  this->Place(1, 1000);
  this->Place(2, 1000);
  this->m_Manager.Clear();
  this->m_Manager.DelTextureFont(Blank(1));
  for (int i = 0; i < 3; ++i) this->Get(Blank(5), 0, 0);
  EXPECT_EQ(this->Place(1, 10), Location(8, 8, 6, 1));
}

TYPED_TEST(QXFontAtlasTest, ClearForgetsPictures) {
  this->OpenBoxes();
  EXPECT_EQ(this->WidthOf(this->Box(3), 15), 8);
  this->m_Manager.Clear();
  EXPECT_EQ(this->WidthOf(this->Box(3), 30), 14);
}

}  // namespace
}  // namespace QXC
