// Which face of a collection carries a name.
#include "QXFontsFixture.h"

#include <QxGraphics3D/text/QXTrueType.h>

namespace QXC {
namespace {

class QXFontIndex : public QXFontsFixture {
protected:
  int IndexOf(std::string const& bytes, wchar_t const* szName) {
    QdcUnicodeString path = WriteFont("collection.ttc", bytes);
    QdcUnicodeString name = szName;
    return m_Fonts.GetFontIndex(path, name);
  }
  int IndexOf(std::vector<QXFontMaker> const& arrFaces, wchar_t const* szName) {
    return IndexOf(QXFontMaker::MakeCollection(arrFaces), szName);
  }

  static QXFontMaker Face24(QXNameRecord const& probe) { return TableOf(24, 17, probe); }
  static QXFontMaker Face57(QXNameRecord const& probe) { return TableOf(57, 43, probe); }
  static QXFontMaker Unreadable() { return TableOf(23, 17, Named(2052, 1, u"never read")); }
  // Half a character at its end.
  static QXFontMaker Undecodable() { return Face24({3, 1, 2052, 1, std::string("\0A\0", 3)}); }

  QXTrueType m_Fonts;
};

TEST_F(QXFontIndex, FileThatCannotBeOpenedHasNone) {
  QdcUnicodeString path = m_Folder.GetFile("nowhere.ttc");
  QdcUnicodeString name = L"Any";
  EXPECT_EQ(m_Fonts.GetFontIndex(path, name), -1);
  EXPECT_EQ(IndexOf("this is no font", L"Any"), -1);
}

TEST_F(QXFontIndex, SingleFaceIsFaceZeroWhateverItsName) {
  EXPECT_EQ(IndexOf(SimpleFont(u"Single").Make(), L"Other"), 0);
  EXPECT_EQ(IndexOf({SimpleFont(u"Single")}, L"Other"), 0);
}

TEST_F(QXFontIndex, NameStandsAtRecord17Of24) {
  std::vector<QXFontMaker> const faces = {Face24(Named(2052, 1, u"One")), Face24(Named(2052, 1, u"Two"))};
  EXPECT_EQ(IndexOf(faces, L"One"), 0);
  EXPECT_EQ(IndexOf(faces, L"Two"), 1);
  EXPECT_EQ(IndexOf(faces, L"Three"), -1);
}

TEST_F(QXFontIndex, NameStandsAtRecord43Of57) {
  std::vector<QXFontMaker> const faces = {Face57(Named(2052, 1, u"One")), Face57(Named(2052, 1, u"Two"))};
  EXPECT_EQ(IndexOf(faces, L"One"), 0);
  EXPECT_EQ(IndexOf(faces, L"Two"), 1);
}

TEST_F(QXFontIndex, OtherRecordsAreNotLookedAt) {
  for (int const at : {16, 18}) {
    std::vector<QXFontMaker> const faces(2, TableOf(24, at, Named(2052, 1, u"One")));
    EXPECT_EQ(IndexOf(faces, L"One"), -1) << at;
  }
  for (int const at : {42, 44}) {
    std::vector<QXFontMaker> const faces(2, TableOf(57, at, Named(2052, 1, u"One")));
    EXPECT_EQ(IndexOf(faces, L"One"), -1) << at;
  }
}

TEST_F(QXFontIndex, TablesOfAnotherSizeAreNotLookedInto) {
  for (int const records : {18, 23, 25, 44, 56, 58}) {
    for (int const at : {17, 43}) {
      std::vector<QXFontMaker> const faces(2, TableOf(records, at, Named(2052, 1, u"One")));
      EXPECT_EQ(IndexOf(faces, L"One"), -1) << records << " records, name at " << at;
    }
  }
}

TEST_F(QXFontIndex, OnlyAChineseUnicodeFamilyNameOfPlatform3Counts) {
  std::string const one = Utf16Bytes(u"One");
  QXNameRecord const wrong[] = {{1, 1, 2052, 1, one}, {0, 1, 2052, 1, one}, {3, 0, 2052, 1, one}, {3, 10, 2052, 1, one},
      {3, 1, 1033, 1, one}, {3, 1, 1028, 1, one}, {3, 1, 2052, 2, one}, {3, 1, 2052, 4, one}};
  for (QXNameRecord const& record : wrong) {
    std::vector<QXFontMaker> const faces(2, Face24(record));
    EXPECT_EQ(IndexOf(faces, L"One"), -1)
        << record.m_nPlatform << ' ' << record.m_nEncoding << ' ' << record.m_nLanguage << ' ' << record.m_nNameId;
  }
}

TEST_F(QXFontIndex, NameIsComparedWholeAndWithItsCase) {
  std::vector<QXFontMaker> const faces(2, Face24(Named(2052, 1, u"One")));
  EXPECT_EQ(IndexOf(faces, L"one"), -1);
  EXPECT_EQ(IndexOf(faces, L"On"), -1);
  EXPECT_EQ(IndexOf(faces, L"One "), -1);
}

TEST_F(QXFontIndex, NameWithATailOfZerosIsComparedByItsText) {
  QdcUnicodeString path =
      WriteFont("collection.ttc", QXFontMaker::MakeCollection({Unreadable(), Face24(Named(2052, 1, u"One"))}));
  QdcUnicodeString name(L"One\0tail", 8);
  EXPECT_EQ(m_Fonts.GetFontIndex(path, name), 1);
}

// A name that fits is answered at its own face, so what the next face is compared under shows with the empty name only.
TEST_F(QXFontIndex, FaceWithoutAReadableNameIsComparedUnderThePreviousOne) {
  EXPECT_EQ(IndexOf({Unreadable(), Unreadable()}, L""), 0);
  EXPECT_EQ(IndexOf({Face24(Named(2052, 1, u"One")), Unreadable()}, L""), -1);
}

TEST_F(QXFontIndex, EmptyNameRecordLeavesTheCandidate) {
  QXFontMaker const empty = Face24({3, 1, 2052, 1, std::string(2, '\0')});
  EXPECT_EQ(IndexOf({Face24(Named(2052, 1, u"One")), empty}, L""), -1);
  EXPECT_EQ(IndexOf({empty, Face24(Named(2052, 1, u"One"))}, L""), 0);
}

TEST_F(QXFontIndex, FaceThatCannotBeOpenedIsPassedOver) {
  std::string bytes =
      QXFontMaker::MakeCollection({Unreadable(), Face24(Named(2052, 1, u"One")), Face24(Named(2052, 1, u"Two"))});
  bytes.replace(12 + 4, 4, "\x7F\xFF\xFF\xFF");  // face 1 stands behind the end of the file
  EXPECT_EQ(IndexOf(bytes, L"One"), -1);
  EXPECT_EQ(IndexOf(bytes, L"Two"), 2);
}

TEST_F(QXFontIndex, FaceWhoseNameCannotBeDecodedIsNotCompared) {
  // The candidate is empty throughout: only a face that is compared can answer to the empty name.
  EXPECT_EQ(IndexOf({Undecodable(), Undecodable()}, L""), -1);
  EXPECT_EQ(IndexOf({Undecodable(), Unreadable()}, L""), 1);
}

TEST_F(QXFontIndex, FaceWhoseNameCannotBeDecodedStaysOpenUntilTheObjectEnds) {
  QdcUnicodeString path =
      WriteFont("kept.ttc", QXFontMaker::MakeCollection({Unreadable(), Undecodable(), Undecodable()}));
  QdcUnicodeString name = L"Any";
  {
    QXTrueType fonts;
    EXPECT_EQ(fonts.GetFontIndex(path, name), -1);
    EXPECT_EQ(MappedCount(path), 2);
  }
  EXPECT_EQ(MappedCount(path), 0);
}

TEST_F(QXFontIndex, AllOtherFacesAreClosed) {
  QdcUnicodeString path = WriteFont("closed.ttc",
      QXFontMaker::MakeCollection({Unreadable(), Face24(Named(2052, 1, u"One")), Face57(Named(2052, 1, u"Two"))}));
  for (wchar_t const* const szName : {L"One", L"Two", L"Three"}) {
    QdcUnicodeString name = szName;
    m_Fonts.GetFontIndex(path, name);
    EXPECT_EQ(MappedCount(path), 0);
  }
}

}  // namespace
}  // namespace QXC
