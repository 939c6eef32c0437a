#include <apps/qx3d/geo/QXGeoJson.h>

#include <tests/qx3d/geo/QXParsedGeo.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace QXApp {
namespace {

using QXC::QXVector3d;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

QXParsedGeo ParseLimited(std::string const& strText, QXGeoJsonLimits const& limits) {
  auto const parse = [&](std::string_view bytes, QXGeoNames const& names, QXSceneProblems& problems,
                         QXSceneProblems& warnings) { return ParseGeoJson(bytes, names, problems, warnings, limits); };
  return ParseGeo(parse, "a.geojson", strText, {"name", "turn"});
}

QXParsedGeo Parse(std::string const& strText) {
  return ParseLimited(strText, {});
}

std::string Feature(std::string const& strType, std::string const& strCoordinates, std::string const& strProperties) {
  return R"({"type":"Feature","geometry":{"type":")" + strType + R"(","coordinates":)" + strCoordinates +
         R"(},"properties":)" + strProperties + "}";
}

std::string Collection(std::string const& strFeatures) {
  return "{\"type\":\"FeatureCollection\",\n\"features\":[\n" + strFeatures + "\n]}";
}

TEST(QXGeoJson, PointsHaveTheTextAndTheAngleOfTheirProperties) {
  QXParsedGeo const parsed = Parse(Collection(Feature("Point", "[1.5,-2]", R"({"name":"\u6b66  \u6c49","turn":30})") +
                                              ",\n" + Feature("Point", "[1,2,3,4]", R"({"turn":"-7.5","name":12})")));
  EXPECT_THAT(parsed.m_vecProblems, IsEmpty());
  ASSERT_EQ(parsed.m_Data.m_vecPoints.size(), 2u);
  EXPECT_EQ(parsed.m_Data.m_vecPoints[0].m_strText, "\xE6\xAD\xA6 \xE6\xB1\x89");
  EXPECT_EQ(parsed.m_Data.m_vecPoints[0].m_vecPosition, QXVector3d(1.5, -2.0, 0.0));
  EXPECT_TRUE(parsed.m_Data.m_vecPoints[0].m_bAngle);
  EXPECT_EQ(parsed.m_Data.m_vecPoints[0].m_dAngle, 30.0);
  EXPECT_EQ(parsed.m_Data.m_vecPoints[1].m_strText, "12");
  EXPECT_EQ(parsed.m_Data.m_vecPoints[1].m_vecPosition, QXVector3d(1.0, 2.0, 3.0));
  EXPECT_EQ(parsed.m_Data.m_vecPoints[1].m_dAngle, -7.5);
}

TEST(QXGeoJson, OneFeatureAloneIsRead) {
  EXPECT_EQ(Parse(Feature("Point", "[1,2]", R"({"name":"a"})")).m_Data.m_vecPoints.size(), 1u);
}

TEST(QXGeoJson, EachPointOfAMultiPointIsLabelled) {
  EXPECT_EQ(Parse(Feature("MultiPoint", "[[1,2],[3,4]]", R"({"name":"a"})")).m_Data.m_vecPoints.size(), 2u);
}

TEST(QXGeoJson, FeaturesWithoutATextOrAPlaceGiveNothing) {
  QXParsedGeo const parsed = Parse(Collection(
      Feature("Point", "[1,2]", "null") + "," + Feature("Point", "[1,2]", "{}") + "," +
      Feature("Point", "[1,2]", R"({"name":["a"]})") + "," + Feature("LineString", "[[1,2],[3,4]]", R"({"name":"a"})") +
      "," + R"({"type":"Feature","geometry":null,"properties":{"name":"a"}})"));
  EXPECT_THAT(parsed.m_Data.m_vecPoints, IsEmpty());
  EXPECT_THAT(parsed.m_vecProblems, IsEmpty());
  EXPECT_THAT(parsed.m_vecWarnings, IsEmpty());
}

TEST(QXGeoJson, FeaturesThatStandInPropertiesAreNone) {
  std::string const strInner = Feature("Point", "[1,2]", R"({"name":"inner"})");
  QXParsedGeo const parsed =
      Parse(Collection(Feature("Point", "[1,2]", R"({"features":[)" + strInner + R"(],"name":"outer"})")));
  ASSERT_EQ(parsed.m_Data.m_vecPoints.size(), 1u);
  EXPECT_EQ(parsed.m_Data.m_vecPoints[0].m_strText, "outer");
}

TEST(QXGeoJson, FeaturesUnderAnotherNameAreNone) {
  std::string const strPoint = Feature("Point", "[1,2]", R"({"name":"a"})");
  QXParsedGeo const parsed =
      Parse("{\"type\":\"FeatureCollection\",\"old\":[" + strPoint + "],\"features\":[" + strPoint + "]}");
  EXPECT_EQ(parsed.m_Data.m_vecPoints.size(), 1u);
}

TEST(QXGeoJson, HeightsAndStoreysThatNoBuildingHasAreAsGoodAsNone) {
  struct {
    char const* szProperties;
    double dHeight;
    double dStoreys;
  } const cases[] = {{R"({"height":10000,"storeys":1000})", 10000.0, 1000.0},
      {R"({"height":10001,"storeys":1001})", 0.0, 0.0}, {R"({"height":0,"storeys":0})", 0.0, 0.0},
      {R"({"height":"high","storeys":-1})", 0.0, 0.0}, {R"({"height":null,"storeys":[1]})", 0.0, 0.0}};
  for (auto const& [szProperties, dHeight, dStoreys] : cases) {
    QXParsedGeo const parsed = Parse(Feature("Polygon", "[[[0,0],[9,0],[9,9],[0,0]]]", szProperties));
    ASSERT_EQ(parsed.m_Data.m_vecFootprints.size(), 1u) << szProperties;
    EXPECT_EQ(parsed.m_Data.m_vecFootprints[0].m_dHeight, dHeight) << szProperties;
    EXPECT_EQ(parsed.m_Data.m_vecFootprints[0].m_dStoreys, dStoreys) << szProperties;
  }
}

TEST(QXGeoJson, OneBadPositionOfManyIsToldAndTheOthersAreRead) {
  QXParsedGeo const parsed = Parse(Feature("MultiPoint", "[[1,2],[3],[5,6]]", R"({"name":"a"})"));
  EXPECT_EQ(parsed.m_Data.m_vecPoints.size(), 2u);
  EXPECT_EQ(parsed.m_vecWarnings.size(), 1u);
}

TEST(QXGeoJson, ControlCharactersOfATextAreBlanks) {
  QXParsedGeo const parsed = Parse(Feature("Point", "[1,2]", R"({"name":"\u0001a\u0007\u001f\nb\r"})"));
  ASSERT_EQ(parsed.m_Data.m_vecPoints.size(), 1u);
  EXPECT_EQ(parsed.m_Data.m_vecPoints[0].m_strText, "a b");
}

TEST(QXGeoJson, PolygonsAreFootprintsWithTheirHeights) {
  QXParsedGeo const parsed = Parse(Collection(
      Feature("Polygon", "[[[0,0],[9,0],[9,9],[0,0]],[[2,1],[3,1],[3,2],[2,1]]]", R"({"height":5.5,"storeys":"2"})") +
      "," + Feature("MultiPolygon", "[[[[0,0],[9,0],[9,9],[0,0]]],[[[0,0],[9,0],[9,9],[0,0]]]]", R"({"height":-1})")));
  ASSERT_EQ(parsed.m_Data.m_vecFootprints.size(), 3u);
  EXPECT_EQ(parsed.m_Data.m_vecFootprints[0].m_vecRings.size(), 2u);
  EXPECT_EQ(parsed.m_Data.m_vecFootprints[0].m_vecRings[0].size(), 3u);
  EXPECT_EQ(parsed.m_Data.m_vecFootprints[0].m_dHeight, 5.5);
  EXPECT_EQ(parsed.m_Data.m_vecFootprints[0].m_dStoreys, 2.0);
  EXPECT_EQ(parsed.m_Data.m_vecFootprints[1].m_dHeight, 0.0);
}

TEST(QXGeoJson, BadCoordinatesAreToldWithTheLineWhereTheirFeatureEnds) {
  for (char const* szCoordinates : {"[1]", "[1,null]", "1", "[1,1e16]", "[[1,2]]", "{}", "[\"1\",2]"}) {
    QXParsedGeo const parsed = Parse(Collection(
        Feature("Point", "[1,2]", R"({"name":"a"})") + ",\n" + Feature("Point", szCoordinates, R"({"name":"b"})")));
    EXPECT_EQ(parsed.m_Data.m_vecPoints.size(), 1u) << szCoordinates;
    EXPECT_THAT(parsed.m_vecWarnings, ElementsAre(HasSubstr("a.geojson:4: the coordinates"))) << szCoordinates;
  }
  for (char const* szCoordinates : {"[]", "[[]]", "[[[0,0],[1,1],[0,0]]]", "[[[0,0],[1,1],[2]]]", "null"})
    EXPECT_EQ(Parse(Feature("Polygon", szCoordinates, "{}")).m_vecWarnings.size(), 1u) << szCoordinates;
}

TEST(QXGeoJson, BadJsonIsToldWithItsLine) {
  EXPECT_THAT(Parse("{\n\"type\":\n]").m_vecProblems, ElementsAre(HasSubstr("a.geojson:3: ")));
  EXPECT_THAT(Parse("{\"x\":\n1e999}").m_vecProblems, ElementsAre(HasSubstr("a.geojson:2: ")));
  EXPECT_THAT(Parse("").m_vecProblems, ElementsAre(HasSubstr("a.geojson:1: ")));
  EXPECT_EQ(Parse("\"\xFF\"").m_vecProblems.size(), 1u);
  EXPECT_EQ(Parse("{\"a\":nan}").m_vecProblems.size(), 1u);
}

TEST(QXGeoJson, JsonOfAnotherKindIsTold) {
  for (char const* szText : {"[]", "3", "{}", "{\"type\":\"Topology\"}", "{\"features\":[]}"})
    EXPECT_THAT(Parse(szText).m_vecProblems, ElementsAre(HasSubstr("holds no FeatureCollection"))) << szText;
  EXPECT_THAT(Parse("{\"type\":\"FeatureCollection\",\"features\":[]}").m_vecProblems, IsEmpty());
}

TEST(QXGeoJson, DeepNestingIsRefusedAndCostsNoStack) {
  std::string const strDeep = std::string(1000000, '[') + std::string(1000000, ']');
  EXPECT_THAT(Parse("{\"a\":" + strDeep + "}").m_vecProblems, ElementsAre(HasSubstr("64 deep")));
  EXPECT_EQ(Parse(std::string(1000000, '[')).m_vecProblems.size(), 1u);
}

/// A member with an array of that many numbers.
std::string Numbers(std::size_t nCount) {
  std::string strNumbers = "\"x\":[0";
  for (std::size_t i = 1; i < nCount; ++i) strNumbers += ",0";
  return strNumbers + "]";
}

/// A point with a member more: 15 values and names, and those of the member.
std::string NamedPoint(std::string const& strMember) {
  return Feature("Point", "[1,2]", R"({"name":"a",)" + strMember + "}");
}

TEST(QXGeoJson, AFeatureOfManyValuesIsRefused) {
  EXPECT_EQ(QXGeoJsonLimits().m_nValues, 8000000u);
  // Each has 17 besides, and the collection 6 around them: its object, two names, an array, and a text that counts for
  // 2.
  std::string const strMost = NamedPoint(Numbers(1000));
  std::string const strText = Collection(strMost + "," + strMost);
  std::size_t nLimit = 1000;
  while (nLimit < 1030 && ParseLimited(strText, {nLimit, 1000}).m_Data.m_vecPoints.empty()) ++nLimit;
  EXPECT_EQ(nLimit, 1023u) << "each alone";
  EXPECT_EQ(ParseLimited(strText, {nLimit, 1000}).m_Data.m_vecPoints.size(), 2u);
  QXParsedGeo const parsed =
      ParseLimited(Collection(NamedPoint(R"("y":1)") + "," + NamedPoint(Numbers(1001))), {nLimit, 1000});
  EXPECT_THAT(parsed.m_vecProblems, ElementsAre("a.geojson: a feature has more than 1023 values, or one of them more "
                                                "than 1000 bytes; cut it into parts"));
  EXPECT_THAT(parsed.m_Data.m_vecPoints, IsEmpty()) << "nothing of the file is shown";
}

TEST(QXGeoJson, WhatStandsOutsideOfTheFeaturesCountsWithEachOfThem) {
  std::string const strPoint = NamedPoint(Numbers(500));
  std::string const strText = "{" + Numbers(500) + R"(,"type":"FeatureCollection","features":[)" + strPoint + "]}";
  EXPECT_EQ(ParseLimited(strText, {1030, 1000}).m_Data.m_vecPoints.size(), 1u);
  EXPECT_THAT(ParseLimited(strText, {1000, 1000}).m_vecProblems, ElementsAre(HasSubstr("more than 1000 values")));
}

TEST(QXGeoJson, LongTextsAndNamesCountForManyValues) {
  std::string const strLong(1600, 'x');
  for (std::string const& strMember : {"\"y\":\"" + strLong + "\"", "\"" + strLong + "\":0"}) {
    std::string const strText = Collection(NamedPoint(strMember + ",\"z\":0"));
    EXPECT_EQ(ParseLimited(strText, {140, 2000}).m_Data.m_vecPoints.size(), 1u);
    EXPECT_THAT(ParseLimited(strText, {100, 2000}).m_vecProblems, ElementsAre(HasSubstr("more than 100 values")));
  }
}

TEST(QXGeoJson, AValueOfManyBytesIsRefused) {
  EXPECT_EQ(QXGeoJsonLimits().m_nValueBytes, 16777216u);
  auto const text = [](std::size_t nSize) { return NamedPoint("\"x\":\"" + std::string(nSize, 'x') + "\""); };
  EXPECT_EQ(ParseLimited(text(990), {1000, 1000}).m_Data.m_vecPoints.size(), 1u);
  EXPECT_THAT(ParseLimited(text(1001), {1000, 1000}).m_vecProblems, ElementsAre(HasSubstr("more than 1000 bytes")));
  EXPECT_THAT(ParseLimited(Collection(std::string(1001, '1')), {1000, 1000}).m_vecProblems,
      ElementsAre(HasSubstr("more than 1000 bytes")));
  EXPECT_THAT(ParseLimited("\"" + std::string(1001, 'x'), {1000, 1000}).m_vecProblems,
      ElementsAre(HasSubstr("more than 1000 bytes")));
}

TEST(QXGeoJson, ObjectsInsideOfPropertiesTakeNoLongerThanOtherValues) {
  // As many beside each other would be looked at 10 to the 12 times.
  std::string strObjects = "\"x\":[{}";
  for (int i = 0; i < 1000000; ++i) strObjects += ",{}";
  EXPECT_EQ(
      ParseLimited(Collection(NamedPoint(strObjects + "]")), {8000000, 1000, 1000}).m_Data.m_vecPoints.size(), 1u);
}

TEST(QXGeoJson, ObjectsAmongManyOtherValuesAreRefused) {
  std::string strObjects;
  for (int i = 0; i < 1000; ++i) strObjects += ",{}";
  std::string strMixed = Numbers(1000);
  strMixed.replace(strMixed.size() - 1, 1, strObjects + "]");
  for (std::string const& strText : {Collection(NamedPoint(strMixed)), NamedPoint(strMixed),
           "{\"type\":\"FeatureCollection\",\"features\":" + strMixed.substr(4) + "}"}) {
    EXPECT_THAT(ParseLimited(strText, {8000, 4000, 500000}).m_vecProblems,
        ElementsAre("a.geojson: objects stand among too many other values; this is no map"));
    EXPECT_THAT(ParseLimited(strText, {8000, 4000, 2000000}).m_vecProblems, IsEmpty());
  }
}

TEST(QXGeoJson, TheTextsOfAllPointsTakeAtMostAHundredMegabytes) {
  std::string strPositions = "[1,2]";
  for (int i = 1; i < 100001; ++i) strPositions += ",[1,2]";
  QXParsedGeo const parsed = Parse(
      Collection(Feature("MultiPoint", "[" + strPositions + "]", "{\"name\":\"" + std::string(1000, 'x') + "\"}")));
  EXPECT_EQ(parsed.m_Data.m_vecPoints.size(), 100000u);
  EXPECT_THAT(parsed.m_vecWarnings, ElementsAre(HasSubstr("more than 100 MB together")));
}

TEST(QXGeoJson, CutAnywhereItIsToldAndNothingIsLeft) {
  std::string const strText = Collection(Feature("Point", "[1.5,-2]", R"({"name":"\u6b66","turn":30})") + ",\n" +
                                         Feature("Polygon", "[[[0,0],[9,0],[9,9],[0,0]]]", "{}"));
  for (std::size_t nSize = 0; nSize < strText.size(); ++nSize) {
    QXParsedGeo const parsed = Parse(strText.substr(0, nSize));
    EXPECT_EQ(parsed.m_vecProblems.size(), 1u) << nSize;
    EXPECT_THAT(parsed.m_Data.m_vecPoints, IsEmpty()) << nSize;
  }
}

}  // namespace
}  // namespace QXApp
