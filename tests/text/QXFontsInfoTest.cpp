// The catalogue: which files and faces it takes, what it reads from their names, and how it is searched.
#include "QXFontsFixture.h"

#include <QxGraphics3D/text/QXTrueType.h>

#include <ft2build.h>
#include FT_FREETYPE_H

#include <cstdio>
#include <filesystem>
#include <optional>
#include <random>
#include <thread>

namespace QXC {
namespace {

class QXFontsInfo : public QXFontsFixture {
protected:
  QXTrueType::QXFontInfo InfoOf(std::vector<QXNameRecord> const& arrNames) {
    QdcUnicodeString const path = WriteFont("info.fon", QXFontMaker(arrNames));
    FT_Face face = nullptr;
    EXPECT_EQ(m_Fonts.QX_FT_New_Face(m_Fonts.m_pLibrary, path, 0, face), 0);
    QXTrueType::QXFontInfo const info = m_Fonts.GetFontInfo(face);
    FT_Done_Face(face);
    return info;
  }
  /// File relative to the fonts folder, face and English name of every entry.
  std::vector<std::string> Catalogue() {
    std::vector<std::string> entries;
    std::size_t const folder = Narrow(QXToolkit::GetFontsPath()).size();
    for (QXTrueType::QXFontInfo const& info : m_Fonts.m_arrFontsInfo) {
      entries.push_back(Narrow(info.m_strFilePath).substr(folder) + ":" + std::to_string(info.m_nFaceIndex) + ":" +
                        Narrow(info.m_strFontNameEn));
    }
    return entries;
  }
  std::vector<std::string> Made() {
    m_Fonts.InitFontsInfo();
    return Catalogue();
  }
  std::string Found(wchar_t const* szName, int nStyle = 0) {
    QdcUnicodeString path;
    int index = -1;
    if (!m_Fonts.GetFontPathByName(szName, nStyle, path, index)) return "none";
    return std::filesystem::path(Narrow(path)).filename().string() + ":" + std::to_string(index);
  }
  static std::string Collection(int nFaces) {
    std::vector<QXFontMaker> faces;
    for (int i = 0; i < nFaces; ++i) faces.push_back(SimpleFont(std::u16string(1, static_cast<char16_t>(u'a' + i))));
    return QXFontMaker::MakeCollection(faces);
  }

  QXTrueType m_Fonts;
};

using Lines = std::vector<std::string>;

// --- records ---

TEST_F(QXFontsInfo, NewRecordIsEmpty) {
  QXTrueType::QXFontInfo const info;
  EXPECT_EQ(info.m_nFaceStyle, QXTrueType::FACE_REGULAR);
  EXPECT_EQ(info.m_nFaceIndex, 0);
  for (QdcUnicodeString const* pText :
      {&info.m_strFontName, &info.m_strFontNameEn, &info.m_strFilePath, &info.m_strVersion}) {
    EXPECT_EQ(pText->GetLength(), 0);
  }
}

TEST_F(QXFontsInfo, CopyHasAllSixFields) {
  QXTrueType::QXFontInfo info;
  info.m_strFontName = L"cn";
  info.m_strFontNameEn = L"en";
  info.m_nFaceStyle = QXTrueType::FACE_ITALIC;
  info.m_strFilePath = L"path";
  info.m_nFaceIndex = 7;
  info.m_strVersion = L"1.0";
  QXTrueType::QXFontInfo const copy(info);
  EXPECT_EQ(Narrow(copy.m_strFontName), "cn");
  EXPECT_EQ(Narrow(copy.m_strFontNameEn), "en");
  EXPECT_EQ(copy.m_nFaceStyle, QXTrueType::FACE_ITALIC);
  EXPECT_EQ(Narrow(copy.m_strFilePath), "path");
  EXPECT_EQ(copy.m_nFaceIndex, 7);
  EXPECT_EQ(Narrow(copy.m_strVersion), "1.0");
}

// --- one name ---

TEST_F(QXFontsInfo, NameKeepsTheLengthOfTheBufferItWasDecodedIn) {
  std::string bytes = Utf16Bytes(u"House");
  QdcUnicodeString name = L"before, and a good deal longer than what comes";
  EXPECT_EQ(m_Fonts.GetFontName(name, reinterpret_cast<unsigned char*>(bytes.data()), 10), 1);
  EXPECT_EQ(name.GetLength(), 30);
  EXPECT_TRUE(name == L"House");
}

TEST_F(QXFontsInfo, NameBeyondTheFirstPlaneIsOneCharacterEach) {
  std::string bytes = Utf16Bytes(u"\U0001F600\xD800z\xDC00");
  QdcUnicodeString name;
  EXPECT_EQ(m_Fonts.GetFontName(name, reinterpret_cast<unsigned char*>(bytes.data()), 10), 1);
  EXPECT_EQ(name.GetLength(), 30);
  EXPECT_TRUE(name == L"\x1F600\xD800z\xDC00");
}

TEST_F(QXFontsInfo, NameOfNothingOrHalfACharacterFails) {
  unsigned char bytes[] = {0, 'A', 0};
  QdcUnicodeString name;
  EXPECT_EQ(m_Fonts.GetFontName(name, bytes, 0), 0);
  EXPECT_EQ(m_Fonts.GetFontName(name, bytes, 1), 0);
  EXPECT_EQ(m_Fonts.GetFontName(name, bytes, 3), 0);
  EXPECT_EQ(m_Fonts.GetFontName(name, nullptr, 2), 0);
  EXPECT_EQ(m_Fonts.GetFontName(name, nullptr, 0xFFFFFFFEu), 0);
  EXPECT_EQ(name.IsEmpty(), 1);
}

TEST_F(QXFontsInfo, NameOfOneZeroIsAnEmptyTextAndNoFailure) {
  unsigned char bytes[] = {0, 0, 0, 'A'};
  QdcUnicodeString name;
  EXPECT_EQ(m_Fonts.GetFontName(name, bytes, 4), 1);
  EXPECT_EQ(name.IsEmpty(), 1);
  EXPECT_EQ(name.GetLength(), 12);
}

// --- one name table ---

TEST_F(QXFontsInfo, FamilyComesIn2052AndIn1033) {
  QXTrueType::QXFontInfo const info = InfoOf({Named(1033, 1, u"Spring"), Named(2052, 1, u"\u6587\u6cc9")});
  EXPECT_TRUE(info.m_strFontNameEn == L"Spring");
  EXPECT_TRUE(info.m_strFontName == L"\u6587\u6cc9");
  EXPECT_EQ(info.m_strFilePath.GetLength(), 0);
  EXPECT_EQ(info.m_nFaceIndex, 0);
}

TEST_F(QXFontsInfo, FamilyInOtherLanguagesIsIgnored) {
  QXTrueType::QXFontInfo const info = InfoOf({Named(1031, 1, u"Haus"), Named(1028, 1, u"H"), Named(4, 1, u"H")});
  EXPECT_EQ(info.m_strFontName.IsEmpty(), 1);
  EXPECT_EQ(info.m_strFontNameEn.IsEmpty(), 1);
}

TEST_F(QXFontsInfo, OnlyRecordsOfPlatform3Count) {
  for (int const platform : {0, 1, 2, 4}) {
    QXTrueType::QXFontInfo const info =
        InfoOf({{platform, 1, 1033, 1, Utf16Bytes(u"House")}, {platform, 1, 2052, 1, Utf16Bytes(u"House")},
            {platform, 1, 1033, 2, Utf16Bytes(u"Bold")}, {platform, 1, 1033, 5, Utf16Bytes(u"2.0")}});
    EXPECT_EQ(info.m_strFontName.IsEmpty(), 1) << platform;
    EXPECT_EQ(info.m_strFontNameEn.IsEmpty(), 1) << platform;
    EXPECT_EQ(info.m_strVersion.IsEmpty(), 1) << platform;
    EXPECT_EQ(info.m_nFaceStyle, 0) << platform;
  }
}

TEST_F(QXFontsInfo, AnyEncodingOfPlatform3Counts) {
  for (int const encoding : {0, 1, 3, 10}) {
    EXPECT_TRUE(InfoOf({{3, encoding, 1033, 1, Utf16Bytes(u"House")}}).m_strFontNameEn == L"House") << encoding;
  }
}

TEST_F(QXFontsInfo, LaterRecordsOverwriteEarlierOnes) {
  QXTrueType::QXFontInfo const info =
      InfoOf({Named(1033, 1, u"First"), Named(2052, 1, u"A"), Named(1033, 2, u"Bold"), Named(1033, 5, u"1.0"),
          Named(1033, 5, u"2.0"), Named(1033, 2, u"Italic"), Named(2052, 1, u"B"), Named(1033, 1, u"Second")});
  EXPECT_TRUE(info.m_strFontNameEn == L"Second");
  EXPECT_TRUE(info.m_strFontName == L"B");
  EXPECT_TRUE(info.m_strVersion == L"2.0");
  EXPECT_EQ(info.m_nFaceStyle, 2);
}

TEST_F(QXFontsInfo, RecordThatCannotBeDecodedIsPassedOver) {
  std::string const half("\0A\0", 3);
  QXTrueType::QXFontInfo const info =
      InfoOf({Named(1033, 1, u"House"), {3, 1, 1033, 1, half}, Named(1033, 5, u"1.0"), {3, 1, 1033, 5, half}});
  EXPECT_TRUE(info.m_strFontNameEn == L"House");
  EXPECT_TRUE(info.m_strVersion == L"1.0");
}

TEST_F(QXFontsInfo, EmptyTextIsDecodedAndOverwrites) {
  EXPECT_EQ(InfoOf({Named(1033, 1, u"House"), Named(1033, 1, {u"\0", 1})}).m_strFontNameEn.IsEmpty(), 1);
}

TEST_F(QXFontsInfo, StyleComesFromFourTextsInAnyCase) {
  struct {
    char16_t const* szText;
    int nStyle;
  } const cases[] = {{u"Regular", 0}, {u"Bold", 1}, {u"Italic", 2}, {u"BoldItalic", 3}, {u"BOLD", 1}, {u"itAlic", 2},
      {u"bolditalic", 3}, {u"Bold Italic", 0}, {u"Bold Oblique", 0}, {u"Oblique", 0}, {u"Book", 0}, {u"Bold ", 0},
      {u" Bold", 0}, {u"Bol", 0}};
  for (auto const& [szText, nStyle] : cases) {
    EXPECT_EQ(InfoOf({Named(1033, 2, szText)}).m_nFaceStyle, nStyle)
        << Narrow(InfoOf({Named(1033, 1, szText)}).m_strFontNameEn);
  }
}

TEST_F(QXFontsInfo, OtherStyleTextLeavesTheStyleAsItStood) {
  EXPECT_EQ(InfoOf({Named(1033, 2, u"Italic"), Named(1033, 2, u"Bold Italic")}).m_nFaceStyle, 2);
  EXPECT_EQ(InfoOf({Named(1033, 2, u"Italic"), Named(1033, 2, u"Regular")}).m_nFaceStyle, 0);
}

TEST_F(QXFontsInfo, StyleAndVersionCountInEnglishOnly) {
  QXTrueType::QXFontInfo const info =
      InfoOf({Named(2052, 2, u"Bold"), Named(1031, 2, u"Bold"), Named(2052, 5, u"2.0"), Named(1031, 5, u"2.0")});
  EXPECT_EQ(info.m_nFaceStyle, 0);
  EXPECT_EQ(info.m_strVersion.IsEmpty(), 1);
}

TEST_F(QXFontsInfo, StyleFlagsOfTheFaceDoNotCount) {
  QXFontMaker font = SimpleFont(u"House", u"Regular");
  font.m_nMacStyle = 3;
  WriteFont("house.ttf", font);
  m_Fonts.InitFontsInfo();
  EXPECT_EQ(m_Fonts.m_arrFontsInfo[0].m_nFaceStyle, 0);
}

TEST_F(QXFontsInfo, NoFaceGivesAnEmptyRecord) {
  FT_Face face = nullptr;
  EXPECT_EQ(m_Fonts.GetFontInfo(face).m_strFontNameEn.GetLength(), 0);
}

// --- the catalogue ---

TEST_F(QXFontsInfo, AllTtfFilesStandBeforeAllTtcFiles) {
  for (char const* const szName :
      {"b.ttc", "z.ttf", "A.TTF", "A-Bold.ttf", "m.TtC", ".ttf", "sub/a.ttc", "sub/deep/x.ttf", "m.ttf"}) {
    WriteFont(szName, SimpleFont(u"F"));
  }
  for (char const* const szName : {"a.otf", "b.ttf.bak", "ttf", "c.pfb", "d.ttx", "e.tt"})
    WriteFont(szName, SimpleFont(u"F"));
  EXPECT_EQ(Made(), (Lines{".ttf:0:F", "A.TTF:0:F", "A-Bold.ttf:0:F", "m.ttf:0:F", "sub/deep/x.ttf:0:F", "z.ttf:0:F",
                        "b.ttc:0:F", "m.TtC:0:F", "sub/a.ttc:0:F"}));
}

TEST_F(QXFontsInfo, PathIsTheFolderAndTheFile) {
  QdcUnicodeString const path = WriteFont("sub/a.ttf", SimpleFont(u"F"));
  m_Fonts.InitFontsInfo();
  EXPECT_TRUE(m_Fonts.m_arrFontsInfo[0].m_strFilePath == path);
}

TEST_F(QXFontsInfo, FilesThatAreNoFontsArePassedOver) {
  WriteFont("a.ttf", std::string("no font"));
  WriteFont("b.ttf", std::string());
  WriteFont("c.ttf", SimpleFont(u"C"));
  WriteFont("d.ttc", std::string("ttcf"));
  EXPECT_EQ(Made(), Lines{"c.ttf:0:C"});
}

TEST_F(QXFontsInfo, FaceWithoutNamesIsCatalogued) {
  WriteFont("a.ttf", QXFontMaker());
  EXPECT_EQ(Made(), Lines{"a.ttf:0:"});
}

TEST_F(QXFontsInfo, CollectionOfUpTo10FacesIsTakenWhole) {
  for (int const faces : {1, 2, 9, 10}) {
    WriteFont("a.ttc", Collection(faces));
    Lines expected;
    for (int i = 0; i < faces; ++i) {
      expected.push_back("a.ttc:" + std::to_string(i) + ":" + static_cast<char>('a' + i));
    }
    EXPECT_EQ(Made(), expected) << faces;
  }
}

TEST_F(QXFontsInfo, CollectionOfMoreThan10FacesGivesItsFirst) {
  for (int const faces : {11, 12, 20}) {
    WriteFont("a.ttc", Collection(faces));
    EXPECT_EQ(Made(), Lines{"a.ttc:0:a"}) << faces;
  }
}

TEST_F(QXFontsInfo, FaceOfACollectionThatCannotBeOpenedIsPassedOver) {
  std::string bytes = Collection(3);
  bytes.replace(12 + 4, 4, "\x7F\xFF\xFF\xFF");
  WriteFont("a.ttc", bytes);
  EXPECT_EQ(Made(), (Lines{"a.ttc:0:a", "a.ttc:2:c"}));
}

TEST_F(QXFontsInfo, CollectionWhoseFirstFaceCannotBeOpenedIsPassedOverWhole) {
  std::string bytes = Collection(3);
  bytes.replace(12, 4, "\x7F\xFF\xFF\xFF");
  WriteFont("a.ttc", bytes);
  EXPECT_EQ(Made(), Lines{});
}

TEST_F(QXFontsInfo, MakingItAgainStartsAnew) {
  WriteFont("a.ttf", SimpleFont(u"A"));
  WriteFont("b.ttf", SimpleFont(u"B"));
  EXPECT_EQ(Made(), (Lines{"a.ttf:0:A", "b.ttf:0:B"}));
  std::filesystem::remove(m_Folder.m_Path / "a.ttf");
  WriteFont("c.ttf", SimpleFont(u"C"));
  EXPECT_EQ(Made(), (Lines{"b.ttf:0:B", "c.ttf:0:C"}));
}

TEST_F(QXFontsInfo, WithoutAFolderItIsEmptyAndHoldsNoMemory) {
  WriteFont("a.ttf", SimpleFont(u"A"));
  for (wchar_t const* const szFolder : {L"", L"/nowhere/fonts"}) {
    QXToolkit::SetFontsPath(m_Folder.GetName());
    m_Fonts.InitFontsInfo();
    EXPECT_EQ(m_Fonts.m_arrFontsInfo.GetSize(), 1u);
    QXToolkit::SetFontsPath(szFolder);
    m_Fonts.InitFontsInfo();
    EXPECT_EQ(m_Fonts.m_arrFontsInfo.GetSize(), 0u);
    EXPECT_EQ(m_Fonts.m_arrFontsInfo.GetCapacity(), 0u);
  }
}

TEST_F(QXFontsInfo, EveryFileIsClosedAgain) {
  QdcUnicodeString const single = WriteFont("a.ttf", SimpleFont(u"A"));
  QdcUnicodeString const collection = WriteFont("b.ttc", Collection(4));
  m_Fonts.InitFontsInfo();
  EXPECT_EQ(MappedCount(single), 0);
  EXPECT_EQ(MappedCount(collection), 0);
}

// --- searching ---

TEST_F(QXFontsInfo, FirstSearchFillsTheCatalogue) {
  WriteFont("a.ttf", SimpleFont(u"A"));
  EXPECT_EQ(m_Fonts.m_arrFontsInfo.GetSize(), 0u);
  EXPECT_EQ(Found(L"B"), "none");
  EXPECT_EQ(m_Fonts.m_arrFontsInfo.GetSize(), 1u);
  WriteFont("b.ttf", SimpleFont(u"B"));
  EXPECT_EQ(Found(L"B"), "none");
}

TEST_F(QXFontsInfo, EmptyCatalogueIsFilledAgainAtTheNextSearch) {
  EXPECT_EQ(Found(L"A"), "none");
  WriteFont("a.ttf", SimpleFont(u"A"));
  EXPECT_EQ(Found(L"A"), "a.ttf:0");
}

TEST_F(QXFontsInfo, CatalogueThatIsNotEmptyIsSearchedAsItIs) {
  WriteFont("a.ttf", SimpleFont(u"A"));
  QXTrueType::QXFontInfo info;
  info.m_strFontNameEn = L"Own";
  info.m_strFilePath = L"/own.ttf";
  info.m_nFaceIndex = 5;
  m_Fonts.m_arrFontsInfo.Add(info);
  EXPECT_EQ(Found(L"Own"), "own.ttf:5");
  EXPECT_EQ(Found(L"A"), "none");
}

TEST_F(QXFontsInfo, BeginningOfANameFindsItAndTheFirstInTheCatalogueWins) {
  WriteFont("a.ttf", SimpleFont(u"House Sans Mono"));
  WriteFont("b.ttf", SimpleFont(u"House Sans"));
  WriteFont("c.ttf", SimpleFont(u"House"));
  EXPECT_EQ(Found(L"House"), "a.ttf:0");
  EXPECT_EQ(Found(L"House Sans"), "a.ttf:0");
  EXPECT_EQ(Found(L"H"), "a.ttf:0");
  EXPECT_EQ(Found(L""), "a.ttf:0");
  EXPECT_EQ(Found(L"ouse"), "none");
  EXPECT_EQ(Found(L"Sans"), "none");
  EXPECT_EQ(Found(L"house"), "none");
  EXPECT_EQ(Found(L"House Sans Mono Wide"), "none");
}

TEST_F(QXFontsInfo, EitherNameMayMatch) {
  WriteFont("a.ttf", QXFontMaker({Named(2052, 1, u"\u6587\u6cc9"), Named(1033, 1, u"Spring")}));
  EXPECT_EQ(Found(L"\u6587"), "a.ttf:0");
  EXPECT_EQ(Found(L"Spr"), "a.ttf:0");
}

TEST_F(QXFontsInfo, StyleMustBeTheSame) {
  WriteFont("a.ttf", SimpleFont(u"House", u"BoldItalic"));
  WriteFont("b.ttf", SimpleFont(u"House", u"Italic"));
  WriteFont("c.ttf", SimpleFont(u"House", u"Bold"));
  WriteFont("d.ttf", SimpleFont(u"House", u"Regular"));
  char const* const files[] = {"d.ttf:0", "c.ttf:0", "b.ttf:0", "a.ttf:0"};
  for (int style = 0; style < 4; ++style) EXPECT_EQ(Found(L"House", style), files[style]);
  EXPECT_EQ(Found(L"House", 4), "none");
  EXPECT_EQ(Found(L"House", -1), "none");
}

TEST_F(QXFontsInfo, BoldItalicFileWithABlankInItsStyleIsFoundAsRegular) {
  WriteFont("House-BoldItalic.ttf", SimpleFont(u"House", u"Bold Italic"));
  WriteFont("House-Regular.ttf", SimpleFont(u"House", u"Regular"));
  EXPECT_EQ(Found(L"House", 0), "House-BoldItalic.ttf:0");
  EXPECT_EQ(Found(L"House", 3), "none");
}

TEST_F(QXFontsInfo, SearchThatFindsNothingLeavesItsResultsAlone) {
  WriteFont("a.ttf", SimpleFont(u"A"));
  QdcUnicodeString path = L"before";
  int index = 42;
  EXPECT_EQ(m_Fonts.GetFontPathByName(L"B", 0, path, index), 0);
  EXPECT_TRUE(path == L"before");
  EXPECT_EQ(index, 42);
}

TEST_F(QXFontsInfo, ManyThreadsFillItOnce) {
  for (char const szName : std::string("abcdefgh")) WriteFont(std::string(1, szName) + ".ttf", SimpleFont(u"A"));
  std::vector<std::thread> threads;
  for (int i = 0; i < 8; ++i) {
    threads.emplace_back([this] {
      QdcUnicodeString path;
      int index = 0;
      EXPECT_EQ(m_Fonts.GetFontPathByName(L"A", 0, path, index), 1);
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(m_Fonts.m_arrFontsInfo.GetSize(), 8u);
}

// Names over two letters, so that many begin alike; the obvious search compares letter by letter.
class QXRandomCatalogue : public QXFontsInfo {
protected:
  std::wstring RandomName(std::size_t nLongest) {
    std::wstring name(m_Random() % (nLongest + 1), L'a');
    for (wchar_t& letter : name) letter = m_Random() % 2 ? L'a' : L'b';
    return name;
  }
  static QdcUnicodeString Buffered(std::wstring const& name) {
    QdcUnicodeString text(name.c_str());
    text.SetLength(static_cast<int>(name.size()) * 6);
    return text;
  }
  static bool BeginsWith(QdcUnicodeString const& strText, std::wstring const& name) {
    for (std::size_t i = 0; i < name.size(); ++i) {
      if (strText.GetAt(static_cast<int>(i)) != name[i]) return false;
    }
    return true;
  }
  std::optional<std::size_t> ObviousSearch(std::wstring const& name, int nStyle) const {
    for (std::size_t i = 0; i < m_Fonts.m_arrFontsInfo.GetSize(); ++i) {
      QXTrueType::QXFontInfo const& info = m_Fonts.m_arrFontsInfo[i];
      bool const fits = BeginsWith(info.m_strFontName, name) || BeginsWith(info.m_strFontNameEn, name);
      if (info.m_nFaceStyle == nStyle && fits) return i;
    }
    return std::nullopt;
  }

  static constexpr unsigned int ms_nSeed = 20261121;
  std::mt19937 m_Random{ms_nSeed};
};

TEST_F(QXRandomCatalogue, SearchAgreesWithTheObviousOne) {
  std::printf("seed %u\n", ms_nSeed);
  int found = 0;
  for (int round = 0; round < 200; ++round) {
    m_Fonts.m_arrFontsInfo.RemoveAll();
    std::size_t const entries = 1 + m_Random() % 12;
    for (std::size_t i = 0; i < entries; ++i) {
      QXTrueType::QXFontInfo info;
      info.m_strFontName = Buffered(RandomName(5));
      info.m_strFontNameEn = Buffered(RandomName(5));
      info.m_nFaceStyle = static_cast<QXTrueType::FaceStyle>(m_Random() % 4);
      info.m_strFilePath.Format(L"/%d.ttf", static_cast<int>(i));
      info.m_nFaceIndex = static_cast<int>(i);
      m_Fonts.m_arrFontsInfo.Add(info);
    }
    for (int question = 0; question < 100; ++question) {
      std::wstring const name = RandomName(6);
      int const style = static_cast<int>(m_Random() % 5);
      std::optional<std::size_t> const expected = ObviousSearch(name, style);
      QdcUnicodeString path;
      int index = -1;
      ASSERT_EQ(m_Fonts.GetFontPathByName(name.c_str(), style, path, index), expected.has_value());
      if (!expected) continue;
      ++found;
      ASSERT_EQ(index, static_cast<int>(*expected));
      ASSERT_TRUE(path == m_Fonts.m_arrFontsInfo[*expected].m_strFilePath);
    }
  }
  EXPECT_GT(found, 1000);
}

}  // namespace
}  // namespace QXC
