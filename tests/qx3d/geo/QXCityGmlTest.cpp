#include <apps/qx3d/geo/QXCityGml.h>

#include <tests/qx3d/geo/QXParsedGeo.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

namespace QXApp {
namespace {

using QXC::QXVector3d;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

QXParsedGeo Parse(std::string const& strText, QXGeoNames const& names = {"tekst", "hoek"}) {
  return ParseGeo(ParseCityGml, "a.gml", strText, names);
}

std::string City(std::string const& strMembers) {
  return "<?xml version=\"1.0\"?>\n<c:CityModel>\n" + strMembers + "\n</c:CityModel>\n";
}

std::string Member(std::string const& strFeature) {
  return "<c:cityObjectMember>" + strFeature + "</c:cityObjectMember>";
}

std::string Label(std::string const& strText, std::string const& strPosition, std::string const& strAngle) {
  return Member("<i:Street><i:tekst>" + strText + "</i:tekst><g:Point><g:pos>" + strPosition +
                "</g:pos></g:Point><i:hoek>" + strAngle + "</i:hoek></i:Street>");
}

std::string Ring(std::string const& strKind, std::string const& strPositions, std::string const& strAttributes = "") {
  return "<g:" + strKind + "><g:LinearRing><g:posList" + strAttributes + ">" + strPositions +
         "</g:posList></g:LinearRing></g:" + strKind + ">";
}

std::string Polygon(std::string const& strRings) {
  return "<g:Polygon>" + strRings + "</g:Polygon>";
}

std::string Ground(std::string const& strPolygons) {
  return "<b:lod0FootPrint>" + strPolygons + "</b:lod0FootPrint>";
}

std::string const Square = Polygon(Ring("exterior", "0 0 4 0 4 4 0 4 0 0"));

std::string Building(std::string const& strInside) {
  return Member("<b:Building>" + strInside + "</b:Building>");
}

TEST(QXCityGml, LabelsHaveTextPositionAndAngle) {
  QXParsedGeo const parsed = Parse(City(Label("Sint  Pieterskade\n", "1.5 -2", " 79.25 ") + Label("B", "1 2 3", "0")));
  ASSERT_EQ(parsed.m_Data.m_vecPoints.size(), 2u);
  QXGeoPoint const& first = parsed.m_Data.m_vecPoints[0];
  EXPECT_EQ(first.m_strText, "Sint Pieterskade");
  EXPECT_EQ(first.m_vecPosition, QXVector3d(1.5, -2.0, 0.0));
  EXPECT_TRUE(first.m_bAngle);
  EXPECT_EQ(first.m_dAngle, 79.25);
  EXPECT_EQ(parsed.m_Data.m_vecPoints[1].m_vecPosition, QXVector3d(1.0, 2.0, 3.0));
  EXPECT_THAT(parsed.m_vecProblems, IsEmpty());
  EXPECT_THAT(parsed.m_vecWarnings, IsEmpty());
}

TEST(QXCityGml, ATextStandsAtEachOfItsPositionsInItsAngle) {
  QXParsedGeo const parsed =
      Parse(City(Member("<S><tekst>A &amp; B</tekst><Point><pos>1 1</pos></Point><hoek>10</hoek>"
                        "<Point><pos>2 2</pos></Point><hoek>-20</hoek><Point><pos>3 3</pos></Point>"
                        "</S>")));
  ASSERT_EQ(parsed.m_Data.m_vecPoints.size(), 3u);
  EXPECT_EQ(parsed.m_Data.m_vecPoints[2].m_strText, "A & B");
  EXPECT_EQ(parsed.m_Data.m_vecPoints[0].m_dAngle, 10.0);
  EXPECT_EQ(parsed.m_Data.m_vecPoints[1].m_dAngle, -20.0);
  EXPECT_FALSE(parsed.m_Data.m_vecPoints[2].m_bAngle);
}

TEST(QXCityGml, PointsWithoutATextAndTextsWithoutAPointGiveNothing) {
  QXParsedGeo const parsed =
      Parse(City(Member("<S><Point><pos>1 1</pos></Point></S>") + Member("<S><tekst>a</tekst></S>") +
                 Member("<S><tekst> </tekst><Point><pos>1 1</pos></Point></S>")));
  EXPECT_THAT(parsed.m_Data.m_vecPoints, IsEmpty());
  EXPECT_THAT(parsed.m_vecWarnings, IsEmpty());
}

TEST(QXCityGml, TheNamesOfLabelAndAngleCanBeChosen) {
  std::string const strText = City(Member("<S><n>a</n><Point><pos>1 1</pos></Point><r>5</r></S>"));
  QXParsedGeo const parsed = Parse(strText, {"n", "r"});
  ASSERT_EQ(parsed.m_Data.m_vecPoints.size(), 1u);
  EXPECT_EQ(parsed.m_Data.m_vecPoints[0].m_dAngle, 5.0);
  EXPECT_FALSE(Parse(strText, {"n", ""}).m_Data.m_vecPoints[0].m_bAngle);
  EXPECT_THAT(Parse(strText).m_Data.m_vecPoints, IsEmpty());
}

TEST(QXCityGml, FeaturesStandInMembersOfAnyKind) {
  for (char const* szMember : {"cityObjectMember", "featureMember", "featureMembers", "member"}) {
    std::string const strMember = szMember;
    QXParsedGeo const parsed =
        Parse(City("<" + strMember + "><S><tekst>a</tekst><Point><pos>1 1</pos></Point></S></" + strMember + ">"));
    EXPECT_EQ(parsed.m_Data.m_vecPoints.size(), 1u) << strMember;
  }
}

TEST(QXCityGml, TheFirstTextOfAFeatureAndTheFirstAngleOfAPointCount) {
  QXParsedGeo const parsed = Parse(City(
      Member("<S><tekst>a</tekst><tekst>b</tekst><Point><pos>1 1</pos></Point><hoek>10</hoek><hoek>20</hoek></S>")));
  ASSERT_EQ(parsed.m_Data.m_vecPoints.size(), 1u);
  EXPECT_EQ(parsed.m_Data.m_vecPoints[0].m_strText, "a");
  EXPECT_EQ(parsed.m_Data.m_vecPoints[0].m_dAngle, 10.0);
}

TEST(QXCityGml, AnAngleThatIsNoNumberIsTold) {
  QXParsedGeo const parsed = Parse(City(Label("a", "1 1", "steep") + "\n" + Label("b", "1 1", "nan")));
  ASSERT_EQ(parsed.m_Data.m_vecPoints.size(), 2u);
  EXPECT_EQ(parsed.m_Data.m_vecPoints[0].m_dAngle, 0.0);
  EXPECT_THAT(parsed.m_vecWarnings, ElementsAre(HasSubstr("a.gml:3: the angle of a text"), HasSubstr("a.gml:4: ")));
}

TEST(QXCityGml, FootprintsHaveCourtyardsAndTheHeightsOfTheirBuilding) {
  QXParsedGeo const parsed = Parse(
      City(Building("<b:measuredHeight uom=\"m\">7.5</b:measuredHeight><b:storeysAboveGround>2"
                    "</b:storeysAboveGround>" +
                    Ground(Polygon(Ring("exterior", "0 0 9 0 9 9 0 9 0 0") + Ring("interior", "1 1 2 1 2 2 1 1"))))));
  ASSERT_EQ(parsed.m_Data.m_vecFootprints.size(), 1u);
  QXGeoFootprint const& footprint = parsed.m_Data.m_vecFootprints[0];
  ASSERT_EQ(footprint.m_vecRings.size(), 2u);
  EXPECT_THAT(footprint.m_vecRings[0],
      ElementsAre(QXVector3d(0, 0, 0), QXVector3d(9, 0, 0), QXVector3d(9, 9, 0), QXVector3d(0, 9, 0)));
  EXPECT_EQ(footprint.m_vecRings[1].size(), 3u);
  EXPECT_EQ(footprint.m_dHeight, 7.5);
  EXPECT_EQ(footprint.m_dStoreys, 2.0);
}

TEST(QXCityGml, OnlyTheGroundOfBuildingsCounts) {
  std::string const strText =
      City(Building("<b:lod2Solid>" + Square + "</b:lod2Solid>") + Member("<r:Road>" + Ground(Square) + "</r:Road>") +
           Member("<b:BuildingPart><i:geometrie2dGrondvlak>" + Square + "</i:geometrie2dGrondvlak></b:BuildingPart>"));
  EXPECT_EQ(Parse(strText).m_Data.m_vecFootprints.size(), 1u);
}

TEST(QXCityGml, AFootPrintGoesBeforeAGroundSurfaceAndThatBeforeARoofEdge) {
  std::string const strEdge = "<b:lod0RoofEdge>" + Square + Square + Square + "</b:lod0RoofEdge>";
  std::string const strSurface = "<b:GroundSurface>" + Square + Square + "</b:GroundSurface>";
  EXPECT_EQ(Parse(City(Building(strEdge))).m_Data.m_vecFootprints.size(), 3u);
  EXPECT_EQ(Parse(City(Building(strEdge + strSurface))).m_Data.m_vecFootprints.size(), 2u);
  EXPECT_EQ(Parse(City(Building(strSurface + strEdge))).m_Data.m_vecFootprints.size(), 2u);
  EXPECT_EQ(Parse(City(Building(strEdge + strSurface + Ground(Square)))).m_Data.m_vecFootprints.size(), 1u);
  EXPECT_EQ(Parse(City(Building(Ground(Square) + strEdge))).m_Data.m_vecFootprints.size(), 1u);
}

TEST(QXCityGml, APartHasTheHeightOfItsBuildingUntilItSaysItsOwn) {
  auto const part = [](std::string const& strInside) {
    return "<b:consistsOfBuildingPart><b:BuildingPart>" + strInside + Ground(Square) +
           "</b:BuildingPart></b:consistsOfBuildingPart>";
  };
  QXParsedGeo const parsed = Parse(City(Building("<b:measuredHeight>8</b:measuredHeight>" + part("") +
                                                 part("<b:measuredHeight>5</b:measuredHeight>") + Ground(Square))));
  ASSERT_EQ(parsed.m_Data.m_vecFootprints.size(), 3u);
  EXPECT_EQ(parsed.m_Data.m_vecFootprints[0].m_dHeight, 8.0);
  EXPECT_EQ(parsed.m_Data.m_vecFootprints[1].m_dHeight, 5.0);
  EXPECT_EQ(parsed.m_Data.m_vecFootprints[2].m_dHeight, 8.0);
}

TEST(QXCityGml, HeightsThatNoBuildingHasAreAsGoodAsNone) {
  for (char const* szHeight : {"0", "-3", "nan", "inf", "1e9", "high", "", "12 13"}) {
    QXParsedGeo const parsed =
        Parse(City(Building("<measuredHeight>" + std::string(szHeight) + "</measuredHeight>" + Ground(Square))));
    ASSERT_EQ(parsed.m_Data.m_vecFootprints.size(), 1u) << szHeight;
    EXPECT_EQ(parsed.m_Data.m_vecFootprints[0].m_dHeight, 0.0) << szHeight;
  }
}

std::vector<QXVector3d> OuterRing(QXParsedGeo const& parsed) {
  return parsed.m_Data.m_vecFootprints.empty() ? std::vector<QXVector3d>()
                                               : parsed.m_Data.m_vecFootprints[0].m_vecRings[0];
}

std::string const SixNumbers = "0 0 1 4 0 1 4 4 1 0 0 1";

TEST(QXCityGml, TheDimensionIsThatOfTheListOfWhatIsAroundOrOfTheEnvelope) {
  std::vector<QXVector3d> const vecRing{QXVector3d(0, 0, 1), QXVector3d(4, 0, 1), QXVector3d(4, 4, 1)};
  std::string const strOwn = Polygon(Ring("exterior", SixNumbers, " srsDimension=\"3\""));
  EXPECT_EQ(OuterRing(Parse(City(Building(Ground(strOwn))))), vecRing);
  std::string const strAround =
      "<g:MultiSurface srsDimension=\"3\">" + Polygon(Ring("exterior", SixNumbers)) + "</g:MultiSurface>";
  EXPECT_EQ(OuterRing(Parse(City(Building(Ground(strAround))))), vecRing);
  std::string const strBare = Building(Ground(Polygon(Ring("exterior", SixNumbers))));
  EXPECT_EQ(OuterRing(Parse(City("<g:Envelope><g:lowerCorner>0 0 0</g:lowerCorner></g:Envelope>" + strBare))), vecRing);
  // The ring closes with three numbers a position and does not with two.
  EXPECT_EQ(OuterRing(Parse(City(strBare))), vecRing);
  std::string const strFlat = Building(Ground(Square));
  EXPECT_EQ(OuterRing(Parse(City(strFlat))).size(), 4u);
  // What an element said ends with it.
  EXPECT_EQ(OuterRing(Parse(City("<x srsDimension=\"3\"></x>" + strFlat))).size(), 4u);
}

TEST(QXCityGml, RingsOfSinglePositionsAreRead) {
  std::string const strRing = "<g:exterior><g:LinearRing><g:pos>0 0</g:pos><g:pos>1 0</g:pos><g:pos>1 1</g:pos>"
                              "<g:pos>0 0</g:pos></g:LinearRing></g:exterior>";
  EXPECT_EQ(OuterRing(Parse(City(Building(Ground(Polygon(strRing)))))).size(), 3u);
}

TEST(QXCityGml, BadPositionsCostTheirPolygonAndAreTold) {
  for (char const* szPositions : {"0 0 4 0 4 4 0", "0 0 4 zero 4 4 0 0", "0 0 nan 0 4 4 0 0", "0 0 1e16 0 4 4 0 0",
           "0 0 1e999 0 4 4 0 0", "", "0 0 4 0x4 4 4 0 0"}) {
    QXParsedGeo const parsed = Parse(City("\n\n" + Building(Ground(Polygon(Ring("exterior", szPositions)) + Square))));
    EXPECT_EQ(parsed.m_Data.m_vecFootprints.size(), 1u) << szPositions;
    EXPECT_THAT(parsed.m_vecWarnings, ElementsAre(HasSubstr("a.gml:5: these are no positions"))) << szPositions;
  }
}

TEST(QXCityGml, PolygonsOfTwoCornersAreLeftOut) {
  QXParsedGeo const parsed = Parse(City(Building(Ground(Polygon(Ring("exterior", "0 0 4 0 4 0 0 0")) + Polygon("")))));
  EXPECT_THAT(parsed.m_Data.m_vecFootprints, IsEmpty());
  EXPECT_EQ(parsed.m_vecWarnings.size(), 2u);
}

TEST(QXCityGml, ACourtyardOfTwoCornersLeavesItsBuilding) {
  std::string const strPolygon = Polygon(Ring("exterior", "0 0 4 0 4 4 0 0") + Ring("interior", "1 1 2 2 1 1"));
  QXParsedGeo const parsed = Parse(City(Building(Ground(strPolygon))));
  ASSERT_EQ(parsed.m_Data.m_vecFootprints.size(), 1u);
  EXPECT_EQ(parsed.m_Data.m_vecFootprints[0].m_vecRings.size(), 1u);
}

TEST(QXCityGml, BadXmlIsToldWithItsLine) {
  EXPECT_THAT(Parse("<a>\n<b>\n</a>").m_vecProblems, ElementsAre(HasSubstr("a.gml:3: the XML is not well-formed")));
  EXPECT_EQ(Parse("").m_vecProblems.size(), 1u);
  EXPECT_EQ(Parse(std::string(1000, '\0')).m_vecProblems.size(), 1u);
  EXPECT_EQ(Parse("<a>\xFF</a>").m_vecProblems.size(), 1u);
}

TEST(QXCityGml, EntitiesAreRefusedBeforeTheyGrow) {
  std::string strBomb = "<!DOCTYPE a [\n<!ENTITY e0 \"boom\">\n";
  for (int i = 1; i < 30; ++i) {
    std::string const strBefore = "&e" + std::to_string(i - 1) + ";";
    strBomb += "<!ENTITY e" + std::to_string(i) + " \"" + strBefore + strBefore + strBefore + "\">\n";
  }
  QXParsedGeo const parsed = Parse(strBomb + "]><a>&e29;</a>");
  EXPECT_THAT(parsed.m_vecProblems, ElementsAre(HasSubstr("a.gml:2: the file declares entities")));
  EXPECT_THAT(Parse("<!DOCTYPE a [<!ENTITY x SYSTEM \"/etc/passwd\">]><a>&x;</a>").m_vecProblems,
      ElementsAre(HasSubstr("declares entities")));
}

TEST(QXCityGml, DeepNestingIsRefused) {
  auto const nested = [](std::size_t nDepth) {
    std::string strText;
    for (std::size_t i = 0; i < nDepth; ++i) strText += "<a>";
    for (std::size_t i = 0; i < nDepth; ++i) strText += "</a>";
    return strText;
  };
  EXPECT_THAT(Parse(nested(256)).m_vecProblems, IsEmpty());
  EXPECT_THAT(Parse(nested(257)).m_vecProblems, ElementsAre(HasSubstr("more than 256 deep")));
  EXPECT_THAT(Parse(nested(1000000)).m_vecProblems, ElementsAre(HasSubstr("more than 256 deep")));
}

TEST(QXCityGml, NestedBuildingsAndPolygonsKeepTheirBooks) {
  QXParsedGeo const parsed = Parse(City(
      Building(Ground("<g:Polygon>" + Ring("exterior", "0 0 4 0 4 4 0 0") + Square + "</g:Polygon>" + Ground(Square)) +
               "<b:Building/>")));
  EXPECT_LE(parsed.m_Data.m_vecFootprints.size(), 2u);
  EXPECT_THAT(parsed.m_vecProblems, IsEmpty());
}

TEST(QXCityGml, ATextOfMoreThanAThousandBytesIsLeftOut) {
  QXParsedGeo const parsed =
      Parse(City(Label(std::string(1000, 'x'), "0 0", "0") + Label(std::string(1001, 'x'), "0 0", "0")));
  EXPECT_EQ(parsed.m_Data.m_vecPoints.size(), 1u);
  EXPECT_EQ(parsed.m_vecWarnings.size(), 1u);
}

TEST(QXCityGml, CutAnywhereItIsToldAndNothingIsLeft) {
  std::string const strText =
      City(Label("a", "1 2", "3") + Building("<measuredHeight>8</measuredHeight>" + Ground(Square)));
  std::size_t const nWhole = strText.rfind('>') + 1;
  for (std::size_t nSize = 0; nSize < nWhole; ++nSize) {
    QXParsedGeo const parsed = Parse(strText.substr(0, nSize));
    EXPECT_EQ(parsed.m_vecProblems.size(), 1u) << nSize;
    EXPECT_THAT(parsed.m_Data.m_vecPoints, IsEmpty()) << nSize;
    EXPECT_THAT(parsed.m_Data.m_vecFootprints, IsEmpty()) << nSize;
  }
  EXPECT_THAT(Parse(strText).m_vecProblems, IsEmpty());
}

TEST(QXCityGml, ATextOfMoreThan16MiBIsRefused) {
  std::string strNumbers = "0 0 4 0 4 4 0 0";
  strNumbers.resize(std::size_t{16} << 20, ' ');
  EXPECT_EQ(Parse(City(Building(Ground(Polygon(Ring("exterior", strNumbers)))))).m_Data.m_vecFootprints.size(), 1u);
  QXParsedGeo const parsed = Parse(City("\n" + Building(Ground(Polygon(Ring("exterior", strNumbers + " "))))));
  EXPECT_THAT(parsed.m_vecProblems, ElementsAre(HasSubstr("a.gml:4: the text of an element has more than 16 MiB")));
  EXPECT_THAT(parsed.m_Data.m_vecFootprints, IsEmpty());
}

TEST(QXCityGml, AHugeTokenIsLookedAtOnce) {
  std::string const strText = "<a b=\"" + std::string(std::size_t{32} << 20, 'x') + "\"";
  auto const start = std::chrono::steady_clock::now();
  EXPECT_EQ(Parse(strText).m_vecProblems.size(), 1u);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

}  // namespace
}  // namespace QXApp
