// GetBitmapData: which face draws a character, at which size and how, and what becomes of impossible requests. SetBold.
#include "QXGlyphFixture.h"

#include <algorithm>
#include <iostream>
#include <limits>
#include <random>
#include <set>
#include <vector>

namespace QXC {
namespace {

char const* const DEJAVU = SAMPLE_FONTS[0].m_szFile;
char const* const DEJAVU_BOLD = "/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf";

class QXTrueTypeGlyph : public QXGlyphFixture {
protected:
  QdcUnicodeString WriteMapped(std::string const& strFile, std::u16string_view family,
      std::vector<QXCharmapRecord> arrCharmaps, int nGlyphs = 10) {
    QXFontMaker font = SimpleFont(family);
    font.m_arrCharmaps = std::move(arrCharmaps);
    font.m_nGlyphs = nGlyphs;
    return WriteFont(strFile, font);
  }
  QdcUnicodeString WriteWith(
      std::string const& strFile, std::u16string_view family, std::vector<std::uint32_t> arrCharacters) {
    return WriteMapped(strFile, family, std::vector<QXCharmapRecord>{{3, 1, std::move(arrCharacters)}});
  }
  void MakeDefault(wchar_t const* szName, wchar_t const* szFile) {
    Register(szName, szFile);
    QXStringEx::SetResString(L"IMl001", szName);
  }
  /// Number of the glyph that a made font drew: its box is 100 units wide for each, 0 if nothing came.
  int DrawnGlyph(int nCharacter) {
    auto const picture = Draw(nCharacter);
    if (!picture) return 0;
    // 75 points at 96 dpi: 100 pixels an em, and glyph g advances 10 g + 10 of them.
    return picture->m_nAdvance / 10 - 1;
  }
  std::unique_ptr<QXPlain::Picture> Plain(
      char const* szFile, int nCharacter, int nSize, bool bBold, bool bHalo = false) {
    QXPlain::Font font(szFile, 0);
    return font.Draw(static_cast<unsigned int>(nCharacter), nSize, bBold, bHalo);
  }
};

TEST_F(QXTrueTypeGlyph, NewPictureHasNothing) {
  QXCharBitmapData const data;
  EXPECT_EQ(data.m_pData, nullptr);
  EXPECT_EQ(data.m_nWidth, 0);
  EXPECT_EQ(data.m_nHeight, 0);
  EXPECT_EQ(data.m_nBearingX, 0);
  EXPECT_EQ(data.m_nAdvance, 0);
  EXPECT_EQ(data.m_nBearingY, 0);
  EXPECT_EQ(data.m_nReserved, 0);
}

// --- pixels and metrics ---

TEST_F(QXTrueTypeGlyph, PixelsAreLuminance255AndCoverageFromTheTopDown) {
  OpenAs(L"f", DEJAVU);
  SetStyle(L"f", 40);
  auto const picture = Draw('L');  // a stem at the left, a foot at the bottom right
  ASSERT_TRUE(picture);
  auto const width = static_cast<std::size_t>(picture->m_nWidth);
  auto const height = static_cast<std::size_t>(picture->m_nHeight);
  ASSERT_EQ(picture->m_arrPixels.size(), width * height * 2);
  auto const coverage = [&](std::size_t nRow, std::size_t nColumn) {
    return picture->m_arrPixels[2 * (nRow * width + nColumn) + 1];
  };
  for (std::size_t i = 0; i < width * height; ++i) ASSERT_EQ(picture->m_arrPixels[2 * i], 255);
  EXPECT_EQ(coverage(3, 3), 255);
  EXPECT_EQ(coverage(3, width - 4), 0);
  EXPECT_EQ(coverage(height - 4, width - 4), 255);
}

TEST_F(QXTrueTypeGlyph, PlainGlyphLeavesTheMarginOfItsHalo) {
  OpenAs(L"f", DEJAVU);
  SetStyle(L"f", 40);
  auto const plain = Draw('H');
  auto const halo = Draw('H', true);
  ASSERT_TRUE(plain && halo);
  EXPECT_EQ(plain->m_nWidth, halo->m_nWidth);
  EXPECT_EQ(plain->m_nHeight, halo->m_nHeight);
  EXPECT_EQ(plain->m_nBearingX, halo->m_nBearingX);
  EXPECT_EQ(plain->m_nBearingY, halo->m_nBearingY);
  EXPECT_EQ(plain->m_nAdvance, halo->m_nAdvance);
  std::size_t const row = static_cast<std::size_t>(plain->m_nWidth) * 2;
  bool more = false;
  for (std::size_t i = 1; i < plain->m_arrPixels.size(); i += 2) {
    EXPECT_LE(plain->m_arrPixels[i], halo->m_arrPixels[i]);
    more |= plain->m_arrPixels[i] < halo->m_arrPixels[i];
    if (i < row || i >= plain->m_arrPixels.size() - row) {
      EXPECT_EQ(plain->m_arrPixels[i], 0);
    }
  }
  EXPECT_TRUE(more);
}

TEST_F(QXTrueTypeGlyph, MetricsAreTheSlotsInWholePixelsRoundedDown) {
  FT_Face const face = OpenAs(L"f", DEJAVU);
  for (int const character : {'g', 'j', 'W', ','}) {
    for (bool const bold : {false, true}) {
      SetStyle(L"f", 17, bold);
      auto const picture = Draw(character, true);
      ASSERT_TRUE(picture);
      ASSERT_EQ(FT_Load_Char(face, static_cast<FT_ULong>(character), FT_LOAD_NO_BITMAP), 0);
      FT_Glyph_Metrics const& metrics = face->glyph->metrics;
      EXPECT_EQ(picture->m_nBearingX, metrics.horiBearingX >> 6);
      EXPECT_EQ(picture->m_nBearingY, metrics.horiBearingY >> 6);
      EXPECT_EQ(picture->m_nAdvance, face->glyph->advance.x >> 6);
    }
  }
}

TEST_F(QXTrueTypeGlyph, BlankIsAnObjectWithoutPixelsAndWithAnAdvance) {
  OpenAs(L"f", DEJAVU);
  SetStyle(L"f", 20);
  for (bool const halo : {false, true}) {
    auto const blank = Draw(' ', halo);
    ASSERT_TRUE(blank);
    EXPECT_EQ(blank->m_nWidth, 0);
    EXPECT_EQ(blank->m_nHeight, 0);
    EXPECT_EQ(blank->m_nAdvance, 9);  // 0.318 em of 26.7 pixels, hinted
  }
}

// Nobody should, but the size objects that are kept for a face go with it, whoever closes it.
TEST_F(QXTrueTypeGlyph, FaceClosedByAHostLeavesNothingBehind) {
  FT_Face const face = OpenAs(L"f", DEJAVU);
  for (int size = 10; size < 40; ++size) {
    SetStyle(L"f", size);
    EXPECT_TRUE(Draw('n'));
  }
  Fonts().m_dictFaces.RemoveAll();
  ASSERT_EQ(FT_Done_Face(face), 0);
  OpenAs(L"g", DEJAVU_BOLD);
  for (int size = 10; size < 100; ++size) {
    SetStyle(L"g", size);
    ASSERT_TRUE(Same(Draw('o'), Plain(DEJAVU_BOLD, 'o', size, false)));
  }
}

// --- style ---

TEST_F(QXTrueTypeGlyph, BoldAndItalicChooseTheFaceOfTheStyle) {
  // The same character is another glyph in each.
  std::vector<std::uint32_t> characters = {'A'};
  for (int style = 0; style < 4; ++style) {
    std::string const file = "style" + std::to_string(style) + ".ttf";
    OpenAs(L"f", WriteWith(file, u"F", characters).ToMBString().Cstr(), 0, style);
    characters.insert(characters.end() - 1, static_cast<std::uint32_t>('1' + style));
  }
  SetStyle(L"f", 75, false, false);
  EXPECT_EQ(DrawnGlyph('A'), 1);
  SetStyle(L"f", 75, true, false);
  EXPECT_EQ(DrawnGlyph('A'), 2);
  SetStyle(L"f", 75, false, true);
  EXPECT_EQ(DrawnGlyph('A'), 3);
  SetStyle(L"f", 75, true, true);
  EXPECT_EQ(DrawnGlyph('A'), 4);
}

TEST_F(QXTrueTypeGlyph, BoldOfARegularFaceIsThickenedByOnePixel) {
  OpenAs(L"f", DEJAVU);
  SetStyle(L"f", 30, true);
  auto const bold = Draw('n');
  EXPECT_TRUE(Same(bold, Plain(DEJAVU, 'n', 30, true)));
  auto const regular = Plain(DEJAVU, 'n', 30, false);
  ASSERT_TRUE(bold && regular);
  EXPECT_EQ(bold->m_nWidth, regular->m_nWidth + 1);
  EXPECT_EQ(bold->m_nAdvance, regular->m_nAdvance);
}

TEST_F(QXTrueTypeGlyph, BoldOfABoldFaceIsThickenedOnceMore) {
  OpenAs(L"f", DEJAVU_BOLD, 0, 1);
  SetStyle(L"f", 30, true);
  EXPECT_TRUE(Same(Draw('n'), Plain(DEJAVU_BOLD, 'n', 30, true)));
  EXPECT_FALSE(Same(Plain(DEJAVU_BOLD, 'n', 30, true), Plain(DEJAVU_BOLD, 'n', 30, false)));
}

TEST_F(QXTrueTypeGlyph, ItalicWithoutAnItalicFaceStaysUpright) {
  OpenAs(L"f", DEJAVU);
  SetStyle(L"f", 30, false, true);
  EXPECT_TRUE(Same(Draw('n'), Plain(DEJAVU, 'n', 30, false)));
}

// --- size ---

TEST_F(QXTrueTypeGlyph, SizeTimesScaleIsTruncated) {
  OpenAs(L"f", DEJAVU);
  struct {
    double m_dSize;
    double m_dScale;
    int m_nPoints;
  } const cases[] = {{12.99, 1, 12}, {2.5, 4.9, 12}, {24, 0.5, 12}, {-2, -6.4, 12}, {0.9, 1, 0}, {-0.9, 1, 0},
      {0, 1, 0}, {-5, 1, -5}, {-1e300, 1, std::numeric_limits<int>::min()},
      {std::numeric_limits<double>::quiet_NaN(), 1, 0}, {12, std::numeric_limits<double>::quiet_NaN(), 0},
      {0, std::numeric_limits<double>::infinity(), 0}};
  for (auto const& c : cases) {
    QXTextStyle style;
    style.SetFaceName(L"f");
    style.SetSize(c.m_dSize);
    style.SetText3DScale(c.m_dScale);
    Fonts().SetTextStyle(style);
    auto const picture = Draw('k');
    EXPECT_TRUE(picture);
    EXPECT_TRUE(Same(picture, Plain(DEJAVU, 'k', c.m_nPoints, false))) << c.m_dSize << " times " << c.m_dScale;
  }
}

TEST_F(QXTrueTypeGlyph, SizesThatTheFaceCannotTakeAreNull) {
  OpenAs(L"f", DEJAVU);
  for (double const size : {49152.0, 60000.0, 1e9, 3e9, 1e300, std::numeric_limits<double>::infinity()}) {
    SetStyle(L"f", size);
    EXPECT_FALSE(Draw('.')) << size;
    EXPECT_FALSE(Draw(' ')) << size;
  }
  SetStyle(L"f", 49151);
  EXPECT_TRUE(Draw(' '));
}

TEST_F(QXTrueTypeGlyph, PicturesOfMoreThan16384PixelsAreNull) {
  OpenAs(L"f", DEJAVU);
  SetStyle(L"f", 14000);
  EXPECT_FALSE(Draw('W'));
  EXPECT_FALSE(Draw('W', true));
  EXPECT_TRUE(Same(Draw('.'), Plain(DEJAVU, '.', 14000, false)));
  SetStyle(L"f", 40000);
  EXPECT_FALSE(Draw('I'));     // too high only
  EXPECT_FALSE(Draw(0x2014));  // a dash, too wide only
}

TEST_F(QXTrueTypeGlyph, EdgeOfTheLargestPictureIsInside) {
  // Boxes 700 units high of 1000 an em: 0.7 * 4 / 3 pixels a point, and a margin.
  FT_Face const face = OpenAs(L"f", WriteWith("a.ttf", u"F", {'A'}).ToMBString().Cstr());
  std::set<FT_Pos> heights;
  for (int size = 17549; size < 17556; ++size) {
    SetStyle(L"f", size);
    auto const picture = Draw('A', true);
    ASSERT_EQ(FT_Load_Char(face, 'A', FT_LOAD_NO_BITMAP), 0);
    FT_BBox box;
    FT_Outline_Get_CBox(&face->glyph->outline, &box);
    FT_Pos const height = ((box.yMax + 64 + 63) >> 6) - ((box.yMin - 64) >> 6);
    heights.insert(height);
    ASSERT_EQ(picture != nullptr, height <= 16384) << height;
    if (picture) {
      EXPECT_EQ(picture->m_nHeight, height);
    }
  }
  EXPECT_TRUE(heights.count(16384) == 1 && heights.count(16385) == 1);
}

TEST_F(QXTrueTypeGlyph, HugeSizesOfEveryFontNeverCrash) {
  for (QXSampleFont const& font : SAMPLE_FONTS) {
    OpenAs(L"f", font.m_szFile, font.m_nFace);
    for (int const size : {40000, 49151}) {
      SetStyle(L"f", size, size == 49151);
      for (int const character : {int{' '}, int{'W'}, 0x416, 0x9F98}) Draw(character, size == 40000);
    }
    m_pFonts.reset();
  }
}

// --- which face ---

TEST_F(QXTrueTypeGlyph, CharacterThatTheFontLacksComesFromTheDefaultFont) {
  WriteWith("style.ttf", u"Style", {'A'});
  WriteWith("default.fon", u"House", {'1', 'B'});
  WriteWith("other.ttf", u"Other", {'1', '2', 'B'});
  MakeDefault(L"House", L"default.fon");
  SetStyle(L"Style", 75);
  EXPECT_EQ(DrawnGlyph('A'), 1);
  EXPECT_EQ(DrawnGlyph('B'), 2);
}

TEST_F(QXTrueTypeGlyph, DefaultFontIsAskedInTheSameStyle) {
  WriteWith("style.ttf", u"Style", {'A'});
  OpenAs(L"House", WriteWith("regular.fon", u"House", {'B'}).ToMBString().Cstr(), 0, 0);
  OpenAs(L"House", WriteWith("italic.fon", u"House", {'1', 'B'}).ToMBString().Cstr(), 0, 2);
  QXStringEx::SetResString(L"IMl001", L"House");
  SetStyle(L"Style", 75, false, true);
  EXPECT_EQ(DrawnGlyph('B'), 2);
}

TEST_F(QXTrueTypeGlyph, CharacterThatTheDefaultFontLacksComesFromTheFirstOfTheCatalogue) {
  WriteWith("a.ttf", u"Aaa", {'A'});
  WriteWith("b.ttf", u"Bbb", {'1', 'C'});
  WriteWith("c.ttf", u"Ccc", {'1', '2', 'C'});
  WriteWith("default.fon", u"House", {'B'});
  MakeDefault(L"House", L"default.fon");
  SetStyle(L"Aaa", 75);
  EXPECT_EQ(DrawnGlyph('C'), 2);
  EXPECT_FALSE(Fonts().m_dictFaces.IsEOF(Fonts().m_dictFaces.Find(L"Bbb")));
  EXPECT_TRUE(Fonts().m_dictFaces.IsEOF(Fonts().m_dictFaces.Find(L"Ccc"))) << "no more files are opened than needed";
}

TEST_F(QXTrueTypeGlyph, FontsOfTheCatalogueAreAskedInTheSameStyle) {
  WriteWith("style.fon", u"Style", {'A'});
  WriteWith("b.ttf", u"Bbb", {'C'});
  OpenAs(L"Style", m_Folder.GetFile("style.fon").ToMBString().Cstr());
  OpenAs(L"Bbb", WriteWith("regular.fon", u"Bbb", {'C'}).ToMBString().Cstr(), 0, 0);
  OpenAs(L"Bbb", WriteWith("italic.fon", u"Bbb", {'1', 'C'}).ToMBString().Cstr(), 0, 2);
  SetStyle(L"Style", 75, false, true);
  EXPECT_EQ(DrawnGlyph('C'), 2);
  SetStyle(L"Style", 75, false, false);
  EXPECT_EQ(DrawnGlyph('C'), 1);
}

// The face that has the character is the one that is sized and drawn.
TEST_F(QXTrueTypeGlyph, FaceOfTheFallbackIsTheOneThatIsSized) {
  FT_Face const style = OpenAs(L"Style", WriteWith("style.fon", u"Style", {'A'}).ToMBString().Cstr());
  WriteWith("b.ttf", u"Bbb", {'C'});
  SetStyle(L"Style", 75);
  auto const before = style->size->metrics.x_ppem;
  ASSERT_EQ(DrawnGlyph('C'), 1);
  EXPECT_EQ(style->size->metrics.x_ppem, before);
  EXPECT_EQ(Fonts().GetFace(L"Bbb", QXTrueType::FACE_REGULAR)->size->metrics.x_ppem, 100);
}

TEST_F(QXTrueTypeGlyph, CharacterThatNoFaceHasIsNull) {
  WriteWith("a.ttf", u"Aaa", {'A'});
  WriteWith("default.fon", u"House", {'B'});
  MakeDefault(L"House", L"default.fon");
  SetStyle(L"Aaa", 75);
  EXPECT_FALSE(Draw('C'));
  EXPECT_EQ(Fonts().m_arrFontsInfo.GetSize(), 1u);
}

TEST_F(QXTrueTypeGlyph, EntryWithoutAnEnglishNameMeansTheDefaultFont) {
  QXFontMaker chinese({Named(2052, 1, u"\u5B8B\u4F53")});
  chinese.m_arrCharmaps = {{3, 1, {'A', 'B', 'C'}}};
  WriteFont("chinese.ttf", chinese);
  WriteWith("default.fon", u"House", {'1', 'C'});
  Register(L"House", L"default.fon");
  QXStringEx::SetResString(L"IMl001", L"House");
  Fonts();
  QXStringEx::SetResString(L"IMl001", L"Nowhere");  // so that only the catalogue leads there
  QXFontMaker style = SimpleFont(u"Style");
  style.m_arrCharmaps.clear();
  WriteFont("style.fon", style);
  OpenAs(L"Style", m_Folder.GetFile("style.fon").ToMBString().Cstr());
  SetStyle(L"Style", 75);
  EXPECT_EQ(DrawnGlyph('C'), 2);
}

TEST_F(QXTrueTypeGlyph, FaceWithoutASelectedCharmapIsAskedThroughEachOfItsOwn) {
  FT_Face const face =
      OpenAs(L"Style", WriteMapped("style.fon", u"Style",
                           std::vector<QXCharmapRecord>{{3, 0, {'A'}}, {1, 0, {'1', 'B'}}, {3, 2, {'1', '2', 'B'}}})
                           .ToMBString()
                           .Cstr());
  ASSERT_EQ(face->charmap, nullptr);
  SetStyle(L"Style", 75);
  EXPECT_EQ(DrawnGlyph('B'), 2);
  EXPECT_EQ(face->charmap, face->charmaps[1]) << "stays selected";
  // Another is selected now, so the others are not tried any more.
  EXPECT_EQ(DrawnGlyph('A'), 0);
}

TEST_F(QXTrueTypeGlyph, LastCharmapStaysSelectedAndTheDefaultFontFollows) {
  FT_Face const face = OpenAs(
      L"Style", WriteMapped("style.fon", u"Style", std::vector<QXCharmapRecord>{{3, 0, {'A'}}, {1, 0, {'1', 'B'}}})
                    .ToMBString()
                    .Cstr());
  WriteWith("default.fon", u"House", {'1', '2', 'C'});
  MakeDefault(L"House", L"default.fon");
  SetStyle(L"Style", 75);
  EXPECT_EQ(DrawnGlyph('C'), 3);
  EXPECT_EQ(face->charmap, face->charmaps[1]);
}

TEST_F(QXTrueTypeGlyph, FaceWithoutAnyCharmapGoesToTheCatalogueAtOnce) {
  FT_Face const face = OpenAs(L"Style", WriteMapped("style.fon", u"Style", {}).ToMBString().Cstr());
  ASSERT_EQ(face->num_charmaps, 0);
  WriteWith("default.fon", u"House", {'1', '2', 'C'});
  WriteWith("other.ttf", u"Other", {'1', 'C'});
  MakeDefault(L"House", L"default.fon");
  SetStyle(L"Style", 75);
  EXPECT_EQ(DrawnGlyph('C'), 2);
}

TEST_F(QXTrueTypeGlyph, WithoutADefaultFontTheCatalogueIsAsked) {
  WriteWith("other.ttf", u"Other", {'1', 'C'});
  ASSERT_EQ(Fonts().m_pDefaultFace, nullptr);
  SetStyle(L"", 75);
  EXPECT_EQ(DrawnGlyph('C'), 2);
  EXPECT_EQ(DrawnGlyph('D'), 0);
}

TEST_F(QXTrueTypeGlyph, WithoutAnyFontEverythingIsNull) {
  for (wchar_t const* const name : {L"", L"Nowhere"}) {
    SetStyle(name, 20, true, true);
    EXPECT_FALSE(Draw('A'));
    EXPECT_FALSE(Draw(' ', true));
  }
}

TEST_F(QXTrueTypeGlyph, CharactersOutsideTheCodeSpaceAreNull) {
  OpenAs(L"f", DEJAVU);
  SetStyle(L"f", 20);
  for (int const character : {-1, std::numeric_limits<int>::min(), 0x110000, std::numeric_limits<int>::max(), 0}) {
    EXPECT_FALSE(Draw(character)) << character;
  }
  EXPECT_TRUE(Same(Draw(0x1D538), Plain(DEJAVU, 0x1D538, 20, false))) << "above the first plane";
}

// --- failure ---

TEST_F(QXTrueTypeGlyph, GlyphsThatAreOnlyBitmapsAreNull) {
  m_Folder.Write("bitmap.bdf",
      "STARTFONT 2.1\nFONT -x-x-medium-r-normal--8-80-75-75-c-80-iso10646-1\nSIZE 8 75 75\nFONTBOUNDINGBOX 8 8 0 0\n"
      "STARTPROPERTIES 2\nFONT_ASCENT 8\nFONT_DESCENT 0\nENDPROPERTIES\nCHARS 1\nSTARTCHAR A\nENCODING 65\n"
      "SWIDTH 500 0\nDWIDTH 8 0\nBBX 8 2 0 0\nBITMAP\nFF\nFF\nENDCHAR\nENDFONT\n");
  FT_Face const face = OpenAs(L"f", m_Folder.GetFile("bitmap.bdf").ToMBString().Cstr());
  ASSERT_NE(face, nullptr);
  ASSERT_NE(FT_Get_Char_Index(face, 'A'), 0u);
  SetStyle(L"f", 6, true);
  EXPECT_FALSE(Draw('A'));
  EXPECT_FALSE(Draw('A', true));
}

TEST_F(QXTrueTypeGlyph, GlyphThatCannotBeLoadedIsNullAndOthersAreNot) {
  QXFontMaker font = SimpleFont(u"F");
  std::string bytes = font.Make();
  // The glyph of 'B' counts 200 contours now.
  std::size_t const second = bytes.find(std::string("\0\1\0\x32\0\0\0\xFA", 8));
  ASSERT_NE(second, std::string::npos);
  bytes[second + 1] = '\xC8';
  OpenAs(L"f", WriteFont("f.fon", bytes).ToMBString().Cstr());
  SetStyle(L"f", 75);
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(DrawnGlyph('A'), 1);
    EXPECT_FALSE(Draw('B'));
    EXPECT_FALSE(Draw('B', true));
  }
}

// An outline counts its points in a short; the round corners of a border are many points for each of the glyph's.
TEST_F(QXTrueTypeGlyph, BorderOfMorePointsThanAnOutlineCountsIsNull) {
  for (int const corners : {2000, 12000}) {
    QXFontMaker font = SimpleFont(u"F");
    for (int i = 0; i < corners; ++i) font.m_arrCorners.emplace_back(i % 2 == 0 ? 100 : 600, i);
    std::string const file = WriteFont(std::to_string(corners) + ".fon", font).ToMBString().Cstr();
    OpenAs(L"f", file);
    SetStyle(L"f", 75);
    for (bool const halo : {false, true}) {
      auto const picture = Draw('A', halo);
      EXPECT_EQ(picture != nullptr, corners == 2000);
      EXPECT_TRUE(Same(picture, Plain(file.c_str(), 'A', 75, false, halo)));
      EXPECT_EQ(DrawnGlyph('B'), 2);
    }
    m_pFonts.reset();
  }
}

// An advance that does not fit 16.16 pixels cannot be copied out of the slot.
TEST_F(QXTrueTypeGlyph, AdvanceThatDoesNotFitIsNull) {
  OpenAs(L"f", DEJAVU);
  for (int const size : {30000, 49151}) {
    for (int const character : {0x20, 0x2003}) {  // an em wide: blank, and never too large a picture
      SetStyle(L"f", size);
      EXPECT_TRUE(Same(Draw(character), Plain(DEJAVU, character, size, false))) << character;
    }
  }
  SetStyle(L"f", 49151);
  EXPECT_FALSE(Draw(0x2003));
}

// --- SetBold ---

// Made from a copy: what each byte becomes follows from its own and the two that look at it.
std::vector<unsigned char> Thickened(std::vector<unsigned char> const& arrBytes, int nWidth, int nHeight) {
  std::vector<unsigned char> result = arrBytes;
  auto const at = [&](int nRow, int nColumn) {
    return static_cast<std::size_t>(nRow) * static_cast<std::size_t>(nWidth) + static_cast<std::size_t>(nColumn);
  };
  for (int row = 0; row < nHeight; ++row) {
    for (int column = 0; column < nWidth; ++column) {
      unsigned char& byte = result[at(row, column)];
      if (row + 1 < nHeight && column > 0) byte = std::max(byte, arrBytes[at(row + 1, column)]);
      if (row > 0 && column + 1 < nWidth) byte = std::max(byte, arrBytes[at(row, column + 1)]);
    }
  }
  return result;
}

TEST_F(QXTrueTypeGlyph, SetBoldRaisesTheByteAboveAndTheByteToTheLeft) {
  std::vector<unsigned char> bytes = {0, 0, 0, 0,  //
      0, 0, 0, 0,                                  //
      0, 0, 9, 0,                                  //
      0, 0, 0, 0};
  Fonts().SetBold(bytes.data(), 4, 4);
  EXPECT_EQ(bytes, (std::vector<unsigned char>{0, 0, 0, 0,  //
                       0, 0, 9, 0,                          //
                       0, 9, 9, 0,                          //
                       0, 0, 0, 0}));
}

TEST_F(QXTrueTypeGlyph, SetBoldNeverLowersAndNeverSpreadsFromTheFirstRowAndColumn) {
  std::vector<unsigned char> bytes = {0, 7, 7,  //
      7, 3, 0,                                  //
      7, 0, 0};
  Fonts().SetBold(bytes.data(), 3, 3);
  EXPECT_EQ(bytes, (std::vector<unsigned char>{0, 7, 7,  //
                       7, 3, 0,                          //
                       7, 0, 0}));
}

TEST_F(QXTrueTypeGlyph, SetBoldOfRandomPicturesIsTheReferences) {
  unsigned int const seed = 77;
  std::cout << "seed " << seed << '\n';
  std::mt19937 random(seed);
  for (int i = 0; i < 500; ++i) {
    int const width = static_cast<int>(1 + random() % 12);
    int const height = static_cast<int>(1 + random() % 12);
    std::vector<unsigned char> bytes(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    for (unsigned char& byte : bytes) byte = random() % 2 ? static_cast<unsigned char>(random()) : 0;
    std::vector<unsigned char> const expected = Thickened(bytes, width, height);
    Fonts().SetBold(bytes.data(), width, height);
    ASSERT_EQ(bytes, expected) << width << " x " << height;
  }
}

TEST_F(QXTrueTypeGlyph, SetBoldOfNothingDoesNothing) {
  Fonts().SetBold(nullptr, 10, 10);
  unsigned char byte = 5;
  for (int const edge : {1, 0, -1}) {
    Fonts().SetBold(&byte, edge, 1);
    Fonts().SetBold(&byte, 1, edge);
    Fonts().SetBold(&byte, edge, edge);
  }
  EXPECT_EQ(byte, 5);
}

}  // namespace
}  // namespace QXC
