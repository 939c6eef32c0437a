// Where instances stand, from lists and from map data.
#include <apps/qx3d/QXScenePlaces.h>

#include <apps/qx3d/geo/QXGeoAreas.h>

#include <tests/assimp/QXTestFiles.h>
#include <tests/qx3d/geo/QXShapefileMaker.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace QXApp {
namespace {

using QXC::QXVector3d;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Folder = QXAssimp::QXTestFolder;

struct Loaded {
  QXSceneFile m_Scene;
  std::vector<std::string> m_vecProblems;
  std::vector<std::string> m_vecWarnings;

  std::vector<QXScenePlace> const& GetPlaces() const { return m_Scene.m_vecInstances[0].m_vecPlaces; }
};

Loaded Load(std::vector<QXSceneInstances> const& vecInstances) {
  Loaded loaded;
  loaded.m_Scene.m_strPath = "s.qxscene";
  loaded.m_Scene.m_vecInstances = vecInstances;
  for (QXSceneInstances& instances : loaded.m_Scene.m_vecInstances) {
    instances.m_strFile = "t.obj";
    instances.m_nLine = 3;
    instances.m_nPointsLine = 5;
  }
  LoadScenePlaces(
      loaded.m_Scene, [](std::string const&) {}, loaded.m_vecProblems, loaded.m_vecWarnings);
  return loaded;
}

std::vector<QXScenePlace> Places(QXSceneInstances const& instances) {
  Loaded const loaded = Load({instances});
  EXPECT_THAT(loaded.m_vecProblems, IsEmpty());
  EXPECT_THAT(loaded.m_vecWarnings, IsEmpty());
  return loaded.GetPlaces();
}

QXSceneInstances WithPoints(std::string const& strPath) {
  QXSceneInstances instances;
  instances.m_strPoints = strPath;
  return instances;
}

QXSceneInstances WithPlaces(std::size_t nCount) {
  QXSceneInstances instances;
  instances.m_vecPlaces.resize(nCount);
  return instances;
}

std::string Collection(std::string const& strFeatures) {
  return R"({"type":"FeatureCollection","features":[)" + strFeatures + "]}";
}

std::string Feature(std::string const& strGeometry, std::string const& strProperties) {
  return R"({"type":"Feature","geometry":{)" + strGeometry + R"(},"properties":{)" + strProperties + "}}";
}

std::string const PointA = R"("type":"Point","coordinates":[1,2,3])";
std::string const PointB = R"("type":"Point","coordinates":[4,5])";
/// 20 x 10, with a courtyard of 2 x 2.
std::string const Area =
    R"("type":"Polygon","coordinates":[[[100,0],[120,0],[120,10],[100,10],[100,0]],[[109,4],[111,4],[111,6],[109,6],[109,4]]])";

TEST(QXScenePlaces, ListHasOnePlaceALine) {
  std::vector<QXScenePlace> vecPlaces;
  QXSceneProblems problems("p");
  ReadPlaces("\xEF\xBB\xBF# trees\r\n1, 2, 3\r\n\r\n  4 5 6 90 # turned\r\n7,8,9,10,0.5;\nhere\n1,2\n10,11,12",
      vecPlaces, problems);
  EXPECT_THAT(problems.GetLines(),
      ElementsAre(HasSubstr("p:6: 'here' is no place; write x, y, z"), HasSubstr("p:7: '1,2' is no place")));
  ASSERT_EQ(vecPlaces.size(), 4u);
  EXPECT_EQ(vecPlaces[0].m_vecPosition, QXVector3d(1.0, 2.0, 3.0));
  EXPECT_TRUE(vecPlaces[1].m_bHeading);
  EXPECT_EQ(vecPlaces[1].m_dHeading, 90.0);
  EXPECT_EQ(vecPlaces[2].m_dScale, 0.5);
  EXPECT_EQ(vecPlaces[3].m_vecPosition, QXVector3d(10.0, 11.0, 12.0));
}

TEST(QXScenePlaces, LinesThatAreNoTextOrTooLongAreToldAndNotCut) {
  using namespace std::string_literals;
  QXSceneProblems problems("p.txt");
  std::vector<QXScenePlace> vecPlaces;
  std::string const strBlanks(MaxSceneLine - 8, ' ');
  ReadPlaces(
      "1, 2, "s + strBlanks + "34\n1, 2, "s + strBlanks + "345\n1,2,3\0\n1,2,\xFF\n1,2,3 #"s + strBlanks + strBlanks,
      vecPlaces, problems);
  ASSERT_EQ(vecPlaces.size(), 2U);
  EXPECT_EQ(vecPlaces[0].m_vecPosition.z, 34.0);
  EXPECT_EQ(vecPlaces[1].m_vecPosition.z, 3.0);
  EXPECT_THAT(problems.GetLines(),
      ElementsAre(HasSubstr("p.txt:2: the line is longer than 190 bytes"),
          HasSubstr("p.txt:3: the line holds a zero byte"), HasSubstr("p.txt:4: the line is no UTF-8 text")));
}

TEST(QXScenePlaces, OfListsThatAreNoneTwentyLinesAreToldAndTheOthersCounted) {
  Folder folder;
  std::string strLines;
  for (int i = 0; i < 30; ++i) strLines += "x\n";
  folder.Write("p.txt", strLines);
  QXSceneInstances instances;
  instances.m_strPlaces = folder.Path("p.txt");
  std::vector<std::string> const vecProblems = Load({instances, instances}).m_vecProblems;
  ASSERT_EQ(vecProblems.size(), 21U);
  EXPECT_THAT(vecProblems[19], HasSubstr("p.txt:20: 'x' is no place"));
  EXPECT_THAT(vecProblems[20], HasSubstr("p.txt: 10 more"));
}

TEST(QXScenePlaces, OwnHeadingAndScaleGoBeforeThoseOfTheSection) {
  QXSceneInstances instances;
  instances.m_dHeading = 30.0;
  instances.m_dScale[0] = instances.m_dScale[1] = 2.0;
  instances.m_vecPosition = QXVector3d(100.0, 0.0, 0.0);
  instances.m_vecPlaces = {{QXVector3d(1.0, 0.0, 0.0)}, {QXVector3d(2.0, 0.0, 0.0), true, 0.0, 5.0}};
  std::vector<QXScenePlace> const vecPlaces = Places(instances);
  EXPECT_EQ(vecPlaces[0].m_vecPosition, QXVector3d(101.0, 0.0, 0.0));
  EXPECT_EQ(vecPlaces[0].m_dHeading, 30.0);
  EXPECT_EQ(vecPlaces[0].m_dScale, 2.0);
  EXPECT_EQ(vecPlaces[1].m_dHeading, 0.0);
  EXPECT_EQ(vecPlaces[1].m_dScale, 5.0);
}

TEST(QXScenePlaces, RandomOnesFollowTheSeedAlone) {
  QXSceneInstances instances = WithPlaces(1000);
  instances.m_bRandomHeading = true;
  instances.m_dScale[0] = 0.5;
  instances.m_dScale[1] = 1.5;
  std::vector<QXScenePlace> const vecFirst = Places(instances);
  std::vector<QXScenePlace> const vecAgain = Places(instances);
  instances.m_nSeed = 2;
  std::vector<QXScenePlace> const vecOther = Places(instances);
  double dHeadings = 0.0;
  double dScales = 0.0;
  for (std::size_t i = 0; i < 1000; ++i) {
    EXPECT_EQ(vecFirst[i].m_dHeading, vecAgain[i].m_dHeading);
    EXPECT_EQ(vecFirst[i].m_dScale, vecAgain[i].m_dScale);
    EXPECT_NE(vecFirst[i].m_dHeading, vecOther[i].m_dHeading);
    EXPECT_TRUE(vecFirst[i].m_dHeading >= 0.0 && vecFirst[i].m_dHeading < 360.0);
    EXPECT_TRUE(vecFirst[i].m_dScale >= 0.5 && vecFirst[i].m_dScale < 1.5);
    dHeadings += vecFirst[i].m_dHeading / 1000.0;
    dScales += vecFirst[i].m_dScale / 1000.0;
  }
  EXPECT_NEAR(dHeadings, 180.0, 12.0);
  EXPECT_NEAR(dScales, 1.0, 0.04);
}

TEST(QXScenePlaces, RandomNumbersAreThoseOfEverySystem) {
  // The first of splitmix64 for seed 1 is 0x910A2DEC89025CC1.
  QXRandom random(1);
  EXPECT_EQ(random.Take(), static_cast<double>(0x910A2DEC89025CC1ULL >> 11) * 0x1p-53);
}

TEST(QXScenePlaces, PointsOfGeoJsonCountNamedOrNot) {
  Folder const folder;
  std::string const strPath = folder.Write("a.geojson",
      Collection(
          Feature(PointA, R"("dir":90,"size":"1.5","kind":"oak")") + "," + Feature(PointB, R"("dir":-10)") + "," +
          Feature(R"("type":"MultiPoint","coordinates":[[7,8,9],[10,11,12]])", R"("dir":5,"size":2,"kind":"oak")")));
  QXSceneInstances instances = WithPoints(strPath);
  EXPECT_EQ(Places(instances).size(), 4u);
  instances.m_strHeadingFrom = "dir";
  std::vector<QXScenePlace> vecPlaces = Places(instances);
  EXPECT_EQ(vecPlaces[0].m_vecPosition, QXVector3d(1.0, 2.0, 3.0));
  EXPECT_EQ(vecPlaces[1].m_vecPosition, QXVector3d(4.0, 5.0, 0.0));
  EXPECT_EQ(vecPlaces[0].m_dHeading, 90.0);
  EXPECT_EQ(vecPlaces[1].m_dHeading, -10.0);
  EXPECT_EQ(vecPlaces[3].m_dHeading, 5.0);
  EXPECT_EQ(vecPlaces[0].m_dScale, 1.0);
  instances.m_strScaleFrom = "size";
  Loaded const loaded = Load({instances});
  EXPECT_THAT(loaded.m_vecWarnings,
      ElementsAre(strPath + ": points without a number as 'size', which take what the section says: 1 of 4"));
  EXPECT_EQ(loaded.GetPlaces()[0].m_dScale, 1.5);
  EXPECT_EQ(loaded.GetPlaces()[1].m_dScale, 1.0);
  instances.m_strWhere = "kind";
  instances.m_strWhereValue = "oak";
  EXPECT_EQ(Places(instances).size(), 3u);
}

TEST(QXScenePlaces, HeadingsOfManyTurnsAreTurnedBack) {
  Folder const folder;
  QXSceneInstances instances = WithPoints(
      folder.Write("a.geojson", Collection(Feature(PointA, R"("dir":9e14)") + "," + Feature(PointB, R"("dir":-450)"))));
  instances.m_strHeadingFrom = "dir";
  std::vector<QXScenePlace> const vecPlaces = Places(instances);
  EXPECT_EQ(vecPlaces[0].m_dHeading, 0.0);
  EXPECT_EQ(vecPlaces[1].m_dHeading, -90.0);
}

TEST(QXScenePlaces, HeightsAreThoseOfTheDataOrGiven) {
  Folder const folder;
  QXSceneInstances instances = WithPoints(folder.Write("a.geojson", Collection(Feature(PointA, ""))));
  instances.m_bZ = true;
  instances.m_dZ = 50.0;
  instances.m_vecPosition = QXVector3d(0.0, 0.0, 1.0);
  EXPECT_EQ(Places(instances)[0].m_vecPosition, QXVector3d(1.0, 2.0, 51.0));
}

TEST(QXScenePlaces, AreasGiveTheirMiddleOrOneForSoManySquareUnits) {
  Folder const folder;
  QXSceneInstances instances = WithPoints(folder.Write("a.geojson", Collection(Feature(Area, R"("dir":7)"))));
  instances.m_strHeadingFrom = "dir";
  std::vector<QXScenePlace> vecPlaces = Places(instances);
  ASSERT_EQ(vecPlaces.size(), 1u);
  EXPECT_NEAR(vecPlaces[0].m_vecPosition.x, 110.0, 1e-9);
  EXPECT_NEAR(vecPlaces[0].m_vecPosition.y, 5.0, 1e-9);
  instances.m_dSpread = 0.1;
  vecPlaces = Places(instances);
  // 196 square units, each place for a tenth of one.
  EXPECT_GE(vecPlaces.size(), 1960u);
  EXPECT_LE(vecPlaces.size(), 1961u);
  for (QXScenePlace const& place : vecPlaces) {
    QXVector3d const vec = place.m_vecPosition;
    EXPECT_TRUE(vec.x >= 100.0 && vec.x <= 120.0 && vec.y >= 0.0 && vec.y <= 10.0);
    EXPECT_FALSE(vec.x > 109.0 && vec.x < 111.0 && vec.y > 4.0 && vec.y < 6.0) << "inside the courtyard";
    EXPECT_EQ(place.m_dHeading, 7.0);
  }
  // Of a tenth of an instance for each of many areas a tenth is there.
  std::string strAreas = Feature(Area, "");
  for (int i = 1; i < 200; ++i) strAreas += "," + Feature(Area, "");
  instances = WithPoints(folder.Write("b.geojson", Collection(strAreas)));
  instances.m_dSpread = 1960.0;
  EXPECT_NEAR(static_cast<double>(Places(instances).size()), 20.0, 12.0);
}

TEST(QXScenePlaces, FeaturesOfCityGmlGivePointsOrAreas) {
  Folder const folder;
  std::string const strPath = folder.Write("a.gml", R"(<c:M xmlns:c="c" xmlns:gml="g">
<c:cityObjectMember><c:Tree><c:kind> old  oak </c:kind><c:turn>45</c:turn><c:big>2</c:big>
<gml:Point><gml:pos>1 2 3</gml:pos></gml:Point></c:Tree></c:cityObjectMember>
<c:cityObjectMember><c:Tree><gml:Point><gml:pos>4 5</gml:pos></gml:Point><c:kind>ash</c:kind></c:Tree></c:cityObjectMember>
<c:cityObjectMember><c:Survey><gml:Point><gml:pos>9 9</gml:pos></gml:Point></c:Survey></c:cityObjectMember>
<c:cityObjectMember><c:Tree><c:kind>old oak</c:kind><gml:Polygon><gml:exterior><gml:LinearRing>
<gml:posList srsDimension="2">0 0 4 0 4 2 0 2 0 0</gml:posList></gml:LinearRing></gml:exterior></gml:Polygon></c:Tree></c:cityObjectMember>
<c:cityObjectMember><c:Tree><gml:Curve><gml:posList>0 0 4 0</gml:posList></gml:Curve></c:Tree></c:cityObjectMember>
</c:M>)");
  QXSceneInstances instances = WithPoints(strPath);
  instances.m_strFeature = "Tree";
  std::vector<QXScenePlace> vecPlaces = Places(instances);
  ASSERT_EQ(vecPlaces.size(), 3u);
  EXPECT_EQ(vecPlaces[0].m_vecPosition, QXVector3d(1.0, 2.0, 3.0));
  EXPECT_EQ(vecPlaces[1].m_vecPosition, QXVector3d(4.0, 5.0, 0.0));
  EXPECT_EQ(vecPlaces[2].m_vecPosition, QXVector3d(2.0, 1.0, 0.0));
  instances.m_strWhere = "kind";
  instances.m_strWhereValue = "old oak";
  instances.m_strHeadingFrom = "turn";
  instances.m_strScaleFrom = "big";
  Loaded const loaded = Load({instances});
  ASSERT_EQ(loaded.GetPlaces().size(), 2u);
  EXPECT_EQ(loaded.GetPlaces()[0].m_dHeading, 45.0);
  EXPECT_EQ(loaded.GetPlaces()[0].m_dScale, 2.0);
  EXPECT_EQ(loaded.m_vecWarnings.size(), 2u);
  instances.m_strFeature = "Bush";
  EXPECT_THAT(Load({instances}).m_vecProblems, ElementsAre(HasSubstr("s.qxscene:3: [instances] has no place at all")));
}

TEST(QXScenePlaces, BuildingsGiveTheMiddlesOfAllTheirPolygons) {
  Folder const folder;
  QXSceneInstances instances = WithPoints(folder.Write("a.gml", R"(<M><cityObjectMember><Building>
<measuredHeight>9</measuredHeight><lod0FootPrint><Polygon><exterior><LinearRing>
<posList srsDimension="2">0 0 4 0 4 2 0 2 0 0</posList></LinearRing></exterior></Polygon></lod0FootPrint>
</Building></cityObjectMember></M>)"));
  instances.m_strFeature = "Building";
  instances.m_strScaleFrom = "measuredHeight";
  std::vector<QXScenePlace> const vecPlaces = Places(instances);
  ASSERT_EQ(vecPlaces.size(), 1u);
  EXPECT_EQ(vecPlaces[0].m_vecPosition, QXVector3d(2.0, 1.0, 0.0));
  EXPECT_EQ(vecPlaces[0].m_dScale, 9.0);
}

TEST(QXScenePlaces, PointsOfShapefilesCountNamedOrNot) {
  Folder const folder;
  QXShapefileMaker maker;
  maker.Add(1.0, 2.0, "oak", "30");
  maker.Add(3.0, 4.0, "", "60");
  QXSceneInstances instances = WithPoints(folder.Write("a.shp", maker.GetShapes()));
  folder.Write("a.shx", maker.GetIndex());
  folder.Write("a.dbf", maker.GetAttributes());
  instances.m_strHeadingFrom = "TURN";
  std::vector<QXScenePlace> vecPlaces = Places(instances);
  ASSERT_EQ(vecPlaces.size(), 2u);
  EXPECT_EQ(vecPlaces[1].m_vecPosition, QXVector3d(3.0, 4.0, 0.0));
  EXPECT_EQ(vecPlaces[1].m_dHeading, 60.0);
  instances.m_strWhere = "NAME";
  instances.m_strWhereValue = "oak";
  EXPECT_EQ(Places(instances).size(), 1u);
  instances.m_strScaleFrom = "SIZE";
  EXPECT_THAT(
      Load({instances}).m_vecProblems, ElementsAre(HasSubstr("there is no attribute 'SIZE'; known are NAME, TURN")));
}

TEST(QXScenePlaces, AttributeThatNoPointHasIsAMistake) {
  Folder const folder;
  QXSceneInstances instances = WithPoints(folder.Write("a.geojson", Collection(Feature(PointA, R"("dir":"west")"))));
  instances.m_strHeadingFrom = "dir";
  EXPECT_THAT(Load({instances}).m_vecProblems,
      ElementsAre(HasSubstr("s.qxscene:5: " + instances.m_strPoints + ": none of its points has a number as 'dir'")));
}

TEST(QXScenePlaces, ProblemsOfAllFilesAreToldAtOnce) {
  Folder const folder;
  QXSceneInstances list;
  list.m_strPlaces = folder.Write("p.txt", "1,2,3\noops\n");
  QXSceneInstances const broken = WithPoints(folder.Write("a.geojson", "{"));
  EXPECT_THAT(Load({list, broken}).m_vecProblems,
      ElementsAre(HasSubstr("p.txt:2: 'oops' is no place"), HasSubstr("a.geojson:1: ")));
}

TEST(QXScenePlaces, MoreThanAMillionAreToldOnce) {
  EXPECT_THAT(Load({WithPlaces(600000), WithPlaces(400000)}).m_vecProblems, IsEmpty());
  EXPECT_THAT(Load({WithPlaces(600000), WithPlaces(400001), WithPlaces(600000)}).m_vecProblems,
      ElementsAre(HasSubstr("s.qxscene:3: from here on the scene has more than 1000000 instances")));
  Folder const folder;
  QXSceneInstances instances = WithPoints(folder.Write("a.geojson", Collection(Feature(Area, ""))));
  instances.m_dSpread = 1e-12;
  EXPECT_THAT(Load({instances}).m_vecProblems, ElementsAre(HasSubstr("more than 1000000 instances")));
}

TEST(QXScenePlaces, InstancesBeyondWhatIsShownAreLeftOutAndTold) {
  QXSceneInstances instances;
  instances.m_vecPlaces = {{QXVector3d(1e15, 0.0, 0.0)}, {QXVector3d()}};
  instances.m_vecPosition = QXVector3d(1.0, 0.0, 0.0);
  Loaded const loaded = Load({instances});
  EXPECT_EQ(loaded.GetPlaces().size(), 1u);
  EXPECT_THAT(loaded.m_vecWarnings, ElementsAre("t.obj: instances beyond 1e15, which are left out: 1; give a nearer "
                                                "position"));
}

TEST(QXGeoAreas, AreaAndMiddleKeepTheirDigitsFarFromTheOrigin) {
  QXGeoFootprint area;
  double const x = 6000000.0;
  area.m_vecRings = {{QXVector3d(x, x, 5), QXVector3d(x + 3, x, 5), QXVector3d(x, x + 3, 5)}};
  EXPECT_EQ(GetArea(area), 4.5);
  EXPECT_EQ(GetMiddle(area), QXVector3d(x + 1.0, x + 1.0, 5.0));
  EXPECT_TRUE(IsInside(area, x + 1.0, x + 1.0));
  EXPECT_FALSE(IsInside(area, x + 2.0, x + 2.0));
  // Without an area the middle of its box.
  area.m_vecRings = {{QXVector3d(0, 0, 1), QXVector3d(4, 2, 1), QXVector3d(2, 1, 1)}};
  EXPECT_EQ(GetArea(area), 0.0);
  EXPECT_EQ(GetMiddle(area), QXVector3d(2.0, 1.0, 1.0));
}

// A street of one by a thousand, obliquely, fills a thousandth of its box.
TEST(QXGeoAreas, OfNarrowAreasNoPointIsMissing) {
  constexpr double Base = 6000000.0;
  QXGeoFootprint area;
  area.m_vecRings = {{QXVector3d(Base, Base, 7.0), QXVector3d(Base + 1000.0, Base + 1000.0, 7.0),
      QXVector3d(Base + 1000.0, Base + 1001.0, 7.0), QXVector3d(Base, Base + 1.0, 7.0)}};
  QXRandom random(3);
  std::size_t nCorners = 10000000;
  std::vector<QXVector3d> vecPoints;
  AppendPoints(area, 1000, random, nCorners, vecPoints);
  ASSERT_EQ(vecPoints.size(), 1000U);
  std::size_t nLower = 0;
  for (QXVector3d const& vec : vecPoints) {
    EXPECT_GE(vec.y - vec.x, -1e-6);
    EXPECT_LE(vec.y - vec.x, 1.0 + 1e-6);
    nLower += vec.y < Base + 500.0 ? 1U : 0U;
  }
  EXPECT_NEAR(static_cast<double>(nLower), 500.0, 80.0);
}

TEST(QXGeoAreas, PointsFillTheAreaEvenlyAndEndWithTheBudget) {
  QXGeoFootprint area;
  area.m_vecRings = {{QXVector3d(0, 0, 0), QXVector3d(10, 0, 0), QXVector3d(0, 10, 0)}};
  QXRandom random(3);
  std::size_t nCorners = 1000000;
  std::vector<QXVector3d> vecPoints;
  AppendPoints(area, 4000, random, nCorners, vecPoints);
  ASSERT_EQ(vecPoints.size(), 4000u);
  // A quarter lies in the half-sized triangle at each corner.
  auto const nLow =
      std::count_if(vecPoints.begin(), vecPoints.end(), [](QXVector3d const& v) { return v.x + v.y < 5; });
  EXPECT_NEAR(static_cast<double>(nLow), 1000.0, 100.0);
  nCorners = 30;
  vecPoints.clear();
  AppendPoints(area, 4000, random, nCorners, vecPoints);
  EXPECT_LE(vecPoints.size(), 10u);
  EXPECT_EQ(nCorners, 0u);
}

}  // namespace
}  // namespace QXApp
