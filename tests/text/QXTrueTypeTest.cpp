// Construction, and the road from a name to a face.
#include "QXFontsFixture.h"

#include <QxGraphics3D/text/QXTrueType.h>

#include <ft2build.h>
#include FT_FREETYPE_H

#include <filesystem>
#include <memory>
#include <utility>

namespace QXC {
namespace {

class QXTrueTypeFonts : public QXFontsFixture {
protected:
  QXTrueType& Fonts() {
    if (!m_pFonts) m_pFonts = std::make_unique<QXTrueType>();
    return *m_pFonts;
  }
  FT_Face Face(QdcUnicodeString const& strName, int nStyle = 0) {
    return Fonts().GetFace(strName, static_cast<QXTrueType::FaceStyle>(nStyle));
  }
  static std::string Family(FT_Face face) { return face && face->family_name ? face->family_name : "(none)"; }
  std::vector<std::string> Missing() {
    std::vector<std::string> names;
    for (QdcUnicodeString const& name : Fonts().m_arrMissingFonts) names.push_back(Narrow(name));
    return names;
  }
  FT_Face OpenFace(QdcUnicodeString const& strPath) {
    FT_Face face = nullptr;
    EXPECT_EQ(Fonts().QX_FT_New_Face(Fonts().m_pLibrary, strPath, 0, face), 0);
    return face;
  }
  static QXFontMaker Styled(std::u16string_view family, std::u16string_view subfamily, int nMacStyle) {
    QXFontMaker font = SimpleFont(family, subfamily);
    font.m_nMacStyle = nMacStyle;
    return font;
  }

  std::unique_ptr<QXTrueType> m_pFonts;
};

// --- construction ---

TEST_F(QXTrueTypeFonts, DefaultFontIsTheFileThatTheRegistryNamesForTheResource) {
  WriteFont("sub/a.fon", SimpleFont(u"House"));
  Register(L"MyFont", L"sub/a.fon");
  QXStringEx::SetResString(L"IMl001", L"My Font");
  EXPECT_EQ(Family(Fonts().m_pDefaultFace), "House");
}

TEST_F(QXTrueTypeFonts, OfTwoBlanksInANameTheSecondStaysInTheKey) {
  WriteFont("one.fon", SimpleFont(u"No Blank"));
  WriteFont("two.fon", SimpleFont(u"One Blank"));
  Register(L"MyFont", L"one.fon");
  Register(L"My Font", L"two.fon");
  Register(L" MyFont ", L"two.fon");
  struct {
    wchar_t const* szName;
    char const* szFamily;
  } const cases[] = {{L"MyFont", "No Blank"}, {L"My Font", "No Blank"}, {L" My Font ", "No Blank"},
      {L"My  Font", "One Blank"}, {L"My   Font", "One Blank"}, {L"  My Font  ", "One Blank"}};
  for (auto const& [szName, szFamily] : cases) {
    QXStringEx::SetResString(L"IMl001", szName);
    QXTrueType fonts;
    EXPECT_EQ(Family(fonts.m_pDefaultFace), szFamily) << Narrow(szName);
    EXPECT_EQ(Family(fonts.GetFace(szName, QXTrueType::FACE_REGULAR)), szFamily) << Narrow(szName);
  }
}

TEST_F(QXTrueTypeFonts, DefaultFontThatCannotBeHadIsNull) {
  QXStringEx::SetResString(L"IMl001", L"Unregistered");
  EXPECT_EQ(QXTrueType().m_pDefaultFace, nullptr);
  Register(L"Unregistered", L"not there.ttf");
  EXPECT_EQ(QXTrueType().m_pDefaultFace, nullptr);
  WriteFont("not there.ttf", std::string("no font"));
  EXPECT_EQ(QXTrueType().m_pDefaultFace, nullptr);
  QXToolkit::SetFontsPath(L"");
  EXPECT_EQ(QXTrueType().m_pDefaultFace, nullptr);
}

TEST_F(QXTrueTypeFonts, DefaultFontIsNotSearchedForInTheCatalogue) {
  WriteFont("house.ttf", SimpleFont(u"House"));
  QXStringEx::SetResString(L"IMl001", L"House");
  EXPECT_EQ(Fonts().m_pDefaultFace, nullptr);
}

TEST_F(QXTrueTypeFonts, NewObjectHasAnEmptyCatalogueAndNoFaces) {
  WriteFont("house.ttf", SimpleFont(u"House"));
  EXPECT_NE(Fonts().m_pLibrary, nullptr);
  EXPECT_EQ(Fonts().m_arrFontsInfo.GetSize(), 0u);
  EXPECT_EQ(Fonts().m_arrMissingFonts.GetSize(), 0u);
  EXPECT_EQ(Fonts().m_dictFaces.GetCount(), 0u);
  EXPECT_EQ(Fonts().GetTextStyle().GetFaceName().IsEmpty(), 1);
}

TEST_F(QXTrueTypeFonts, EndClosesTheDefaultFaceAndEveryOther) {
  WriteDefaultFont();
  QdcUnicodeString const paths[] = {m_Folder.GetFile("default.fon"), WriteFont("a.ttf", SimpleFont(u"A")),
      WriteFont("b.ttf", Styled(u"B", u"Bold", 1))};
  Face(L"A");
  Face(L"B", 1);
  for (QdcUnicodeString const& path : paths) EXPECT_EQ(MappedCount(path), 1) << Narrow(path);
  m_pFonts.reset();
  for (QdcUnicodeString const& path : paths) EXPECT_EQ(MappedCount(path), 0) << Narrow(path);
}

TEST_F(QXTrueTypeFonts, SingletonIsOneObject) {
  WriteDefaultFont();
  QXTrueType* const pFonts = QXTrueType::GetSingletonPtr();
  EXPECT_EQ(&QXTrueType::GetSingleton(), pFonts);
  EXPECT_EQ(QXSingleton<QXTrueType>::ms_pSingleton, pFonts);
  EXPECT_EQ(Family(pFonts->m_pDefaultFace), "Default");
}

TEST_F(QXTrueTypeFonts, StyleIsKeptByValue) {
  QXTextStyle style;
  style.SetFaceName(L"House");
  style.SetSize(-3.5);
  style.SetText3DScale(0.25);
  style.SetBold(1);
  Fonts().SetTextStyle(style);
  style.SetFaceName(L"Other");
  style.SetItalic(1);
  QXTextStyle const kept = Fonts().GetTextStyle();
  EXPECT_EQ(Narrow(kept.GetFaceName()), "House");
  EXPECT_EQ(kept.GetSize(), -3.5);
  EXPECT_EQ(kept.GetText3DScale(), 0.25);
  EXPECT_EQ(kept.IsBold(), 1);
  EXPECT_EQ(kept.IsItalic(), 0);
}

// --- opening ---

TEST_F(QXTrueTypeFonts, NewFaceGivesTheErrorOfFreeType) {
  FT_Face face = OpenFace(WriteFont("stra\303\237e.ttf", SimpleFont(u"Street")));
  EXPECT_EQ(Family(face), "Street");
  FT_Done_Face(face);
  face = reinterpret_cast<FT_Face>(this);
  QXTrueType& fonts = Fonts();
  EXPECT_EQ(fonts.QX_FT_New_Face(fonts.m_pLibrary, m_Folder.GetFile("nowhere.ttf"), 0, face), 1);
  EXPECT_EQ(face, nullptr);
  QdcUnicodeString const noFont = WriteFont("text.ttf", std::string("no font"));
  EXPECT_EQ(fonts.QX_FT_New_Face(fonts.m_pLibrary, noFont, 0, face), 2);
  EXPECT_NE(fonts.QX_FT_New_Face(fonts.m_pLibrary, m_Folder.GetFile("stra\303\237e.ttf"), 1, face), 0);
  FT_Library none = nullptr;
  EXPECT_NE(fonts.QX_FT_New_Face(none, m_Folder.GetFile("stra\303\237e.ttf"), 0, face), 0);
}

// --- from a name to a face ---

TEST_F(QXTrueTypeFonts, EmptyNameIsTheDefaultFont) {
  WriteDefaultFont();
  EXPECT_EQ(Family(Face(L"")), "Default");
  EXPECT_EQ(Family(Face(L"", 3)), "Default");
  QdcUnicodeString zeros;
  zeros.SetLength(5);
  EXPECT_EQ(Family(Face(zeros)), "Default");
  EXPECT_EQ(Family(Face(QdcUnicodeString(L"\0Name", 5))), "Default");
  EXPECT_EQ(Fonts().m_arrMissingFonts.GetSize(), 0u);
  EXPECT_EQ(Fonts().m_arrFontsInfo.GetSize(), 0u);
}

TEST_F(QXTrueTypeFonts, UnknownNameIsTheDefaultFontAndNeverLookedForAgain) {
  WriteDefaultFont();
  WriteFont("a.ttf", SimpleFont(u"A"));
  EXPECT_EQ(Family(Face(L"House")), "Default");
  EXPECT_EQ(Missing(), std::vector<std::string>{"House"});
  WriteFont("house.ttf", SimpleFont(u"House"));
  Register(L"House", L"house.ttf");
  Fonts().InitFontsInfo();
  EXPECT_EQ(Family(Face(L"House", 1)), "Default");
  EXPECT_EQ(Missing(), std::vector<std::string>{"House"});
}

TEST_F(QXTrueTypeFonts, NameInTheMissingListIsTheDefaultFont) {
  WriteDefaultFont();
  WriteFont("house.ttf", SimpleFont(u"House"));
  Fonts().m_arrMissingFonts.Add(L"House");
  EXPECT_EQ(Family(Face(L"House")), "Default");
}

TEST_F(QXTrueTypeFonts, OpenFamilyComesBeforeTheMissingList) {
  WriteFont("house.ttf", SimpleFont(u"House"));
  FT_Face const face = Face(L"House");
  Fonts().m_arrMissingFonts.Add(L"House");
  EXPECT_EQ(Face(L"House"), face);
  EXPECT_EQ(Family(face), "House");
}

TEST_F(QXTrueTypeFonts, MarkOfVerticalWritingSharesTheFace) {
  WriteFont("house.ttf", SimpleFont(u"House"));
  FT_Face const face = Face(L"@House");
  EXPECT_EQ(Family(face), "House");
  EXPECT_EQ(Face(L"House"), face);
  EXPECT_EQ(Fonts().m_dictFaces.GetCount(), 1u);
  EXPECT_FALSE(Fonts().m_dictFaces.IsEOF(Fonts().m_dictFaces.Find(L"House")));
}

TEST_F(QXTrueTypeFonts, MarkOfVerticalWritingFailsForItself) {
  WriteFont("a.ttf", SimpleFont(u"A"));
  EXPECT_EQ(Face(L"@House"), nullptr);
  EXPECT_EQ(Missing(), std::vector<std::string>{"@House"});
  // The name without the mark was not listed, so it is looked for, and found.
  WriteFont("house.ttf", SimpleFont(u"House"));
  Fonts().InitFontsInfo();
  EXPECT_EQ(Family(Face(L"House")), "House");
  // And now the family is open, which comes before the list.
  EXPECT_EQ(Family(Face(L"@House")), "House");
}

TEST_F(QXTrueTypeFonts, OnlyOneMarkIsPassedOver) {
  WriteFont("house.ttf", SimpleFont(u"House"));
  WriteFont("marked.ttf", SimpleFont(u"@House"));
  EXPECT_EQ(Family(Face(L"@@House")), "@House");
}

TEST_F(QXTrueTypeFonts, MarkIsDroppedFromTheRegistryKey) {
  WriteFont("house.fon", SimpleFont(u"House"));
  Register(L"MyFont", L"house.fon");
  EXPECT_EQ(Family(Face(L"@My Font")), "House");
}

// What stands in the four places, the style asked for, and the place that answers.
TEST_F(QXTrueTypeFonts, OpenFamilyAnswersWithTheStyleElseTheFirstOf012Else3) {
  struct {
    char const* szOpen;
    int nStyle;
    int nAnswer;
  } const cases[] = {{"0123", 0, 0}, {"0123", 1, 1}, {"0123", 2, 2}, {"0123", 3, 3}, {"0---", 1, 0}, {"0---", 3, 0},
      {"-12-", 0, 1}, {"-12-", 3, 1}, {"0-2-", 1, 0}, {"--23", 0, 2}, {"--23", 1, 2}, {"---3", 0, 3}, {"---3", 1, 3},
      {"---3", 2, 3}, {"----", 0, -1}, {"----", 3, -1}, {"0123", 4, 0}, {"-1--", -1, 1}, {"---3", 0x7FFFFFFF, 3}};
  WriteDefaultFont();
  QdcUnicodeString const path = WriteFont("face.fon", SimpleFont(u"Face"));
  for (auto const& [szOpen, nStyle, nAnswer] : cases) {
    QXTrueType fonts;
    QdcArray<FT_Face> faces;
    for (int i = 0; i < 4; ++i) {
      FT_Face face = nullptr;
      if (szOpen[i] != '-') fonts.QX_FT_New_Face(fonts.m_pLibrary, path, 0, face);
      faces.Add(face);
    }
    fonts.m_dictFaces[L"Family"] = faces;
    FT_Face const wanted = nAnswer < 0 ? nullptr : faces[static_cast<std::uint64_t>(nAnswer)];
    EXPECT_EQ(fonts.GetFace(L"Family", static_cast<QXTrueType::FaceStyle>(nStyle)), wanted) << szOpen << ' ' << nStyle;
  }
}

TEST_F(QXTrueTypeFonts, FirstStyleAskedForDecidesWhatAFamilyOffers) {
  WriteFont("house.ttf", SimpleFont(u"House"));
  WriteFont("house-bold.ttf", Styled(u"House", u"Bold", 1));
  FT_Face const regular = Face(L"House", 0);
  EXPECT_EQ(Face(L"House", 1), regular);
  EXPECT_EQ(regular->style_flags & FT_STYLE_FLAG_BOLD, 0);
  EXPECT_EQ(MappedCount(m_Folder.GetFile("house-bold.ttf")), 0);

  QXTrueType other;
  FT_Face const bold = other.GetFace(L"House", QXTrueType::FACE_BOLD);
  EXPECT_NE(bold->style_flags & FT_STYLE_FLAG_BOLD, 0);
  EXPECT_EQ(other.GetFace(L"House", QXTrueType::FACE_REGULAR), bold);
}

TEST_F(QXTrueTypeFonts, RegistryComesBeforeTheCatalogue) {
  WriteFont("house.ttf", SimpleFont(u"House"));
  WriteFont("registered.fon", SimpleFont(u"Registered"));
  Register(L"House", L"registered.fon");
  EXPECT_EQ(Family(Face(L"House")), "Registered");
  EXPECT_EQ(Fonts().m_arrFontsInfo.GetSize(), 0u);
}

TEST_F(QXTrueTypeFonts, RegistryFileThatIsNotThereMakesTheNameMissing) {
  WriteDefaultFont();
  WriteFont("house.ttf", SimpleFont(u"House"));
  Register(L"House", L"not there.ttf");
  EXPECT_EQ(Family(Face(L"House", 1)), "Default");
  EXPECT_EQ(Missing(), std::vector<std::string>{"House"});
  EXPECT_EQ(Fonts().m_arrFontsInfo.GetSize(), 0u);
}

TEST_F(QXTrueTypeFonts, RegistryEntryWithoutAFileIsNone) {
  WriteFont("house.ttf", SimpleFont(u"House"));
  Register(L"House", L"");
  EXPECT_EQ(Family(Face(L"House")), "House");
}

TEST_F(QXTrueTypeFonts, RegistryCollectionGivesTheFaceOfTheNameAsItWasAskedFor) {
  WriteFont("pair.ttc", QXFontMaker::MakeCollection({TableOf(24, 17, Named(2052, 1, u"First Face")),
                            TableOf(57, 43, Named(2052, 1, u"Second Face"))}));
  Register(L"FirstFace", L"pair.ttc");
  Register(L"SecondFace", L"pair.ttc");
  Register(L"ThirdFace", L"pair.ttc");
  EXPECT_EQ(Face(L"First Face")->face_index, 0);
  EXPECT_EQ(Face(L"@Second Face")->face_index, 1);
  EXPECT_EQ(Face(L"Third Face"), nullptr);
  EXPECT_EQ(Face(L"SecondFace"), nullptr);  // the key fits, the name in the file does not
  EXPECT_EQ(Missing(), (std::vector<std::string>{"Third Face", "SecondFace"}));
}

TEST_F(QXTrueTypeFonts, RegistryCollectionOfUnknownTablesMakesTheNameMissingUnlessItHasOneFace) {
  WriteFont("pair.ttc", QXFontMaker::MakeCollection({SimpleFont(u"House"), SimpleFont(u"Garden")}));
  WriteFont("single.ttc", QXFontMaker::MakeCollection({SimpleFont(u"Single")}));
  Register(L"House", L"pair.ttc");
  Register(L"Alone", L"single.ttc");
  EXPECT_EQ(Face(L"House"), nullptr);
  EXPECT_EQ(Missing(), std::vector<std::string>{"House"});
  EXPECT_EQ(Family(Face(L"Alone")), "Single");
}

TEST_F(QXTrueTypeFonts, CatalogueIsAskedForTheStyleAndThenForTheRegularOne) {
  WriteFont("a.ttf", SimpleFont(u"Both"));
  WriteFont("a-bold.ttf", Styled(u"Both", u"Bold", 1));
  WriteFont("b.ttf", SimpleFont(u"Plain"));
  WriteFont("c.ttf", Styled(u"Heavy", u"Bold", 1));
  EXPECT_EQ(Face(L"Both", 1)->style_flags & 3, FT_STYLE_FLAG_BOLD);
  EXPECT_EQ(Family(Face(L"Plain", 3)), "Plain");
  EXPECT_EQ(Face(L"Heavy", 0), nullptr);
  EXPECT_EQ(Face(L"Heavy", 2), nullptr);
  EXPECT_EQ(Missing(), std::vector<std::string>{"Heavy"});
}

TEST_F(QXTrueTypeFonts, StyleWithoutANameIsTheRegularOne) {
  WriteFont("a.ttf", SimpleFont(u"Plain"));
  EXPECT_EQ(Family(Face(L"Plain", 77)), "Plain");
}

TEST_F(QXTrueTypeFonts, CatalogueFindsTheFaceWithinACollection) {
  WriteFont("three.ttc", QXFontMaker::MakeCollection({SimpleFont(u"A"), SimpleFont(u"B"), SimpleFont(u"C")}));
  EXPECT_EQ(Face(L"C")->face_index, 2);
  EXPECT_EQ(Family(Face(L"B")), "B");
}

TEST_F(QXTrueTypeFonts, FaceThatCannotBeOpenedIsTriedAgainAndNotMissing) {
  WriteDefaultFont();
  std::string const bytes = SimpleFont(u"House").Make();
  QdcUnicodeString const path = WriteFont("house.ttf", bytes);
  Fonts().InitFontsInfo();
  std::filesystem::remove(m_Folder.m_Path / "house.ttf");
  EXPECT_EQ(Family(Face(L"House")), "Default");
  EXPECT_EQ(Fonts().m_arrMissingFonts.GetSize(), 0u);
  EXPECT_EQ(Fonts().m_dictFaces.GetCount(), 0u);
  WriteFont("house.ttf", bytes);
  EXPECT_EQ(Family(Face(L"House")), "House");
}

TEST_F(QXTrueTypeFonts, PlaceOfAFaceIsWhatTheFaceSaysOfItself) {
  // Flags of the face, and the place they mean: bold is 1, italic is 2.
  for (int const flags : {0, 1, 2, 3}) {
    WriteFont("house.fon", Styled(u"House", u"Regular", flags));
    Register(L"House", L"house.fon");
    for (int const wanted : {0, 1, 2, 3}) {
      QXTrueType fonts;
      FT_Face const face = fonts.GetFace(L"House", static_cast<QXTrueType::FaceStyle>(wanted));
      ASSERT_EQ(Family(face), "House");
      QdcArray<FT_Face> const faces = fonts.m_dictFaces[L"House"];
      ASSERT_EQ(faces.GetSize(), 4u);
      for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(faces[static_cast<std::uint64_t>(i)], i == flags ? face : nullptr) << flags << ' ' << wanted;
      }
    }
  }
}

TEST_F(QXTrueTypeFonts, RegularFaceFoundForABoldRequestStandsInTheRegularPlace) {
  WriteFont("house.ttf", SimpleFont(u"House"));
  FT_Face const face = Face(L"House", 1);
  QdcArray<FT_Face> const faces = Fonts().m_dictFaces[L"House"];
  EXPECT_EQ(faces[0], face);
  EXPECT_EQ(faces[1], nullptr);
}

TEST_F(QXTrueTypeFonts, FamilyIsKeptUnderTheNameAskedFor) {
  WriteFont("house.ttf", SimpleFont(u"House Sans"));
  FT_Face const whole = Face(L"House Sans");
  FT_Face const beginning = Face(L"House");
  EXPECT_EQ(Family(beginning), "House Sans");
  EXPECT_NE(beginning, whole);
  EXPECT_EQ(Fonts().m_dictFaces.GetCount(), 2u);
}

TEST_F(QXTrueTypeFonts, ChineseNameFindsTheFace) {
  WriteFont("hei.ttf", QXFontMaker({Named(2052, 1, u"\u6587\u6cc9\u9a7f"), Named(1033, 1, u"Spring")}));
  EXPECT_EQ(Family(Face(L"\u6587\u6cc9\u9a7f")), "Spring");
}

TEST_F(QXTrueTypeFonts, LoneMarkIsANameThatEveryFamilyBeginsWith) {
  WriteFont("a.ttf", SimpleFont(u"First"));
  WriteFont("b.ttf", SimpleFont(u"Second"));
  EXPECT_EQ(Family(Face(L"@")), "First");
}

TEST_F(QXTrueTypeFonts, FileOfANameIsToldWithWhatKnowsIt) {
  WriteFont("a.ttf", SimpleFont(u"House"));
  WriteFont("b.ttf", Styled(u"House", u"Bold", 1));
  WriteFont("c.ttc", QXFontMaker::MakeCollection({SimpleFont(u"First"), SimpleFont(u"Second")}));
  WriteFont("d.fon", SimpleFont(u"Registered"));
  Register(L"MyFont", L"d.fon");
  Register(L"First", L"c.ttc");
  Register(L"Gone", L"gone.ttf");
  struct {
    wchar_t const* szName;
    int nStyle;
    QXTrueType::FontSource eSource;
    char const* szFile;
    int nFace;
  } const cases[] = {{L"House", 0, QXTrueType::FONT_FROM_CATALOGUE, "a.ttf", 0},
      {L"House", 1, QXTrueType::FONT_FROM_CATALOGUE, "b.ttf", 0}, {L"House", 2, QXTrueType::FONT_REGULAR, "a.ttf", 0},
      {L"Second", 0, QXTrueType::FONT_FROM_CATALOGUE, "c.ttc", 1},
      {L"My Font", 1, QXTrueType::FONT_FROM_REGISTRY, "d.fon", 0}, {L"First", 0, QXTrueType::FONT_LOST, "c.ttc", -1},
      {L"Gone", 0, QXTrueType::FONT_LOST, "gone.ttf", -1}};
  for (auto const& [szName, nStyle, eSource, szFile, nFace] : cases) {
    QdcUnicodeString path;
    int index = 7;
    QXTrueType::FaceStyle const style = static_cast<QXTrueType::FaceStyle>(nStyle);
    EXPECT_EQ(Fonts().FindFontFile(szName, style, path, index), eSource) << Narrow(szName);
    EXPECT_EQ(Narrow(path), Narrow(m_Folder.GetFile(szFile))) << Narrow(szName);
    EXPECT_EQ(index, nFace) << Narrow(szName);
  }
  QdcUnicodeString path = L"before";
  int index = 7;
  EXPECT_EQ(Fonts().FindFontFile(L"Nobody", QXTrueType::FACE_BOLD, path, index), QXTrueType::FONT_UNKNOWN);
  EXPECT_TRUE(path == L"before");
  EXPECT_EQ(Fonts().m_arrMissingFonts.GetSize(), 0u);
  EXPECT_EQ(Fonts().m_dictFaces.GetCount(), 0u);
}

TEST_F(QXTrueTypeFonts, NamesOfTenThousandCharacters) {
  WriteDefaultFont();
  WriteFont("a.ttf", SimpleFont(u"A"));
  std::wstring const name(10000, L'A');
  EXPECT_EQ(Family(Face(name.c_str())), "Default");
  std::wstring const marked = L"@" + name;
  EXPECT_EQ(Family(Face(marked.c_str())), "Default");
  EXPECT_EQ(Fonts().m_arrMissingFonts.GetSize(), 2u);
  std::wstring const blanks(10000, L' ');
  Register(blanks.substr(5000).c_str(), L"a.ttf");
  EXPECT_EQ(Family(Face(blanks.c_str())), "A");
}

TEST_F(QXTrueTypeFonts, NameEndsAtItsFirstZero) {
  WriteFont("house.ttf", SimpleFont(u"House"));
  FT_Face const face = Face(QdcUnicodeString(L"House\0junk", 10));
  EXPECT_EQ(Family(face), "House");
  EXPECT_EQ(Face(L"House"), face);
}

TEST_F(QXTrueTypeFonts, WithoutAFolderOrADefaultFontEveryNameIsNull) {
  for (wchar_t const* const szFolder : {L"", L"/nowhere/fonts"}) {
    QXToolkit::SetFontsPath(szFolder);
    QXTrueType fonts;
    EXPECT_EQ(fonts.m_pDefaultFace, nullptr);
    EXPECT_EQ(fonts.GetFace(L"House", QXTrueType::FACE_REGULAR), nullptr);
    EXPECT_EQ(fonts.GetFace(L"", QXTrueType::FACE_REGULAR), nullptr);
    EXPECT_EQ(fonts.m_arrFontsInfo.GetSize(), 0u);
    EXPECT_EQ(fonts.m_arrMissingFonts.GetSize(), 1u);
  }
}

}  // namespace
}  // namespace QXC
