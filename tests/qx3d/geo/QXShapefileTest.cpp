#include <apps/qx3d/geo/QXShapefile.h>

#include <tests/qx3d/geo/QXParsedGeo.h>
#include <tests/qx3d/geo/QXShapefileMaker.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace QXApp {
namespace {

using QXC::QXVector3d;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

QXParsedGeo Parse(QXShapefileBytes const& bytes, QXGeoNames const& names = {"name", "turn"}) {
  return ParseGeo(ParseShapefile, "a.shp", bytes, names);
}

QXParsedGeo Parse(QXShapefileMaker const& maker, QXGeoNames const& names = {"name", "turn"}, std::uint32_t nType = 1,
    std::string const& strCodePage = "", char cLanguage = 0) {
  std::string const strShapes = maker.GetShapes(nType);
  std::string const strIndex = maker.GetIndex(nType);
  std::string const strAttributes = maker.GetAttributes(cLanguage);
  return Parse({strShapes, strIndex, strAttributes, strCodePage}, names);
}

std::string TextOf(QXParsedGeo const& parsed) {
  return parsed.m_Data.m_vecPoints.empty() ? "nothing" : parsed.m_Data.m_vecPoints[0].m_strText;
}

TEST(QXShapefile, PointsHaveTheTextAndAngleOfTheirRecord) {
  QXShapefileMaker maker;
  maker.Add(1.5, -2.0, "Domplein", "30.5");
  maker.Add(3.0, 4.0, "Markt", "");
  maker.Add(3.0, 4.0, "", "12");
  QXParsedGeo const parsed = Parse(maker);
  EXPECT_THAT(parsed.m_vecProblems, IsEmpty());
  EXPECT_THAT(parsed.m_vecWarnings, IsEmpty());
  ASSERT_EQ(parsed.m_Data.m_vecPoints.size(), 2u);
  EXPECT_EQ(parsed.m_Data.m_vecPoints[0].m_strText, "Domplein");
  EXPECT_EQ(parsed.m_Data.m_vecPoints[0].m_vecPosition, QXVector3d(1.5, -2.0, 0.0));
  EXPECT_TRUE(parsed.m_Data.m_vecPoints[0].m_bAngle);
  EXPECT_EQ(parsed.m_Data.m_vecPoints[0].m_dAngle, 30.5);
  EXPECT_EQ(parsed.m_Data.m_vecPoints[1].m_strText, "Markt");
  EXPECT_FALSE(parsed.m_Data.m_vecPoints[1].m_bAngle);
}

TEST(QXShapefile, EachPointOfARecordIsLabelled) {
  QXShapefileMaker maker;
  maker.AddMany({1.0, 2.0, 3.0, 4.0}, "a");
  EXPECT_EQ(Parse(maker, {"name", ""}, 8).m_Data.m_vecPoints.size(), 2u);
}

TEST(QXShapefile, RecordsThatShareALargeShapeAreReadUpToTenMillionPositions) {
  QXShapefileMaker maker;
  maker.Add(1.0, 2.0, "first", "");
  maker.AddMany(std::vector<double>(200000, 1.0), "");
  maker.AddAgain(5000);
  QXParsedGeo const parsed = Parse(maker, {"name", ""}, 8);
  EXPECT_THAT(parsed.m_vecProblems, IsEmpty());
  EXPECT_THAT(parsed.m_vecWarnings, ElementsAre(HasSubstr("record 101: the file has more than 10000000 positions")));
  EXPECT_EQ(TextOf(parsed), "first");
}

TEST(QXShapefile, TextsAreReadInTheEncodingOfTheFile) {
  QXShapefileMaker latin;
  latin.Add(0.0, 0.0, "Caf\xE9", "");
  EXPECT_EQ(TextOf(Parse(latin)), "Caf\xC3\xA9");
  EXPECT_EQ(TextOf(Parse(latin, {"name", ""}, 1, "1251\n")), "Caf\xD0\xB9");
  QXShapefileMaker modern;
  modern.Add(0.0, 0.0, "Caf\xC3\xA9", "");
  EXPECT_EQ(TextOf(Parse(modern)), "Caf\xC3\xA9");
  EXPECT_EQ(TextOf(Parse(modern, {"name", ""}, 1, "UTF-8")), "Caf\xC3\xA9");
  QXShapefileMaker chinese;
  chinese.Add(0.0, 0.0, "\xCE\xE4\xBA\xBA", "");
  EXPECT_EQ(TextOf(Parse(chinese, {"name", ""}, 1, "", 0x4D)), "\xE6\xAD\xA6\xE6\xB1\x89");
  QXShapefileMaker russian;
  russian.Add(0.0, 0.0, "\x8C\xA8\xE0", "");
  EXPECT_EQ(TextOf(Parse(russian, {"name", ""}, 1, "", 0x26)), "\xD0\x9C\xD0\xB8\xD1\x80");
}

TEST(QXShapefile, ATextOfAnotherEncodingIsTold) {
  QXShapefileMaker maker;
  maker.Add(0.0, 0.0, "Caf\xE9", "");
  QXParsedGeo const parsed = Parse(maker, {"name", ""}, 1, "UTF-8");
  EXPECT_THAT(parsed.m_Data.m_vecPoints, IsEmpty());
  EXPECT_THAT(parsed.m_vecWarnings, ElementsAre(HasSubstr("record 1: its text is none in the encoding")));
}

TEST(QXShapefile, AMissingAttributeIsToldWithThoseThatThereAre) {
  QXShapefileMaker maker;
  maker.Add(0.0, 0.0, "a", "");
  EXPECT_THAT(Parse(maker, {"label", ""}).m_vecProblems,
      ElementsAre("a.shp: there is no attribute 'label'; known are NAME, TURN"));
}

TEST(QXShapefile, OtherShapesThanPointsAreTold) {
  QXShapefileMaker maker;
  maker.Add(0.0, 0.0, "a", "");
  EXPECT_THAT(Parse(maker, {"name", ""}, 5).m_vecProblems, ElementsAre(HasSubstr("shapes are no points")));
}

TEST(QXShapefile, PlacesThatAreNoneAreLeftOut) {
  QXShapefileMaker maker;
  maker.Add(std::numeric_limits<double>::quiet_NaN(), 0.0, "a", "");
  maker.Add(0.0, 1e16, "b", "");
  maker.Add(0.0, 1e15, "c", "1e300");
  QXParsedGeo const parsed = Parse(maker);
  EXPECT_EQ(TextOf(parsed), "c");
  EXPECT_FALSE(parsed.m_Data.m_vecPoints[0].m_bAngle);
  EXPECT_THAT(parsed.m_vecWarnings, ElementsAre(HasSubstr("record 1: "), HasSubstr("record 2: ")));
}

TEST(QXShapefile, CutAnywhereItIsToldAndNoMemoryIsSpent) {
  QXShapefileMaker maker;
  for (int i = 0; i < 3; ++i) maker.Add(i, i, "name", "1");
  std::string const strFiles[3] = {maker.GetShapes(), maker.GetIndex(), maker.GetAttributes()};
  for (std::size_t nFile = 0; nFile < 3; ++nFile) {
    // Behind the records of attributes stands one byte that nobody needs.
    std::size_t const nWhole = strFiles[nFile].size() - (nFile == 2 ? 1 : 0);
    for (std::size_t nSize = 0; nSize < nWhole; ++nSize) {
      std::string strCut[3] = {strFiles[0], strFiles[1], strFiles[2]};
      strCut[nFile].resize(nSize);
      QXParsedGeo const parsed = Parse({strCut[0], strCut[1], strCut[2], ""});
      EXPECT_EQ(parsed.m_vecProblems.size(), 1u) << nFile << " " << nSize;
    }
  }
}

TEST(QXShapefile, AnyByteMayLie) {
  QXShapefileMaker maker;
  for (int i = 0; i < 2; ++i) maker.Add(i, i, "name", "1");
  std::string const strFiles[3] = {maker.GetShapes(), maker.GetIndex(), maker.GetAttributes()};
  for (std::size_t nFile = 0; nFile < 3; ++nFile) {
    for (std::size_t i = 0; i < strFiles[nFile].size(); ++i) {
      for (char const c : {'\0', '\x7F', '\xFF'}) {
        std::string strLie[3] = {strFiles[0], strFiles[1], strFiles[2]};
        strLie[nFile][i] = c;
        EXPECT_LE(Parse({strLie[0], strLie[1], strLie[2], ""}).m_Data.m_vecPoints.size(), 2u);
      }
    }
  }
}

}  // namespace
}  // namespace QXApp
