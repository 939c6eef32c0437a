// What scene files say about instances, lights and weather.
#include <apps/qx3d/QXSceneFile.h>
#include <apps/qx3d/QXSceneValue.h>

#include <tests/assimp/QXTestFiles.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace QXApp {
namespace {

using QXC::QXVector3d;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Folder = QXAssimp::QXTestFolder;

std::string const Model = "[model]\nfile = m.obj\n";

QXSceneFile Parse(std::string const& strText) {
  QXSceneProblems problems("dir/a.qxscene");
  QXSceneFile scene = ParseScene(strText, "dir/a.qxscene", problems);
  EXPECT_THAT(problems.GetLines(), IsEmpty());
  return scene;
}

/// What a text is told about, without the path.
std::vector<std::string> Problems(std::string const& strText) {
  QXSceneProblems problems("p");
  ParseScene(strText, "p", problems);
  std::vector<std::string> vecLines = problems.GetLines();
  for (std::string& strLine : vecLines) strLine.erase(0, 2);
  return vecLines;
}

/// The one thing that is wrong with a section behind a model, from its third line on.
std::string Problem(std::string const& strSection) {
  std::vector<std::string> const vecProblems = Problems(Model + strSection);
  EXPECT_EQ(vecProblems.size(), 1u) << strSection;
  return vecProblems.empty() ? std::string() : vecProblems[0];
}

// --- Instances ---

TEST(QXSceneInstances, PlacesAloneTakeTheDefaults) {
  QXSceneFile const scene = Parse("[instances]\nfile = tree.obj\nplace = 1, 2, 3\n");
  ASSERT_EQ(scene.m_vecInstances.size(), 1u);
  QXSceneInstances const& instances = scene.m_vecInstances[0];
  EXPECT_EQ(instances.m_strFile, "dir/tree.obj");
  EXPECT_EQ(instances.m_nLine, 2);
  ASSERT_EQ(instances.m_vecPlaces.size(), 1u);
  EXPECT_EQ(instances.m_vecPlaces[0].m_vecPosition, QXVector3d(1.0, 2.0, 3.0));
  EXPECT_FALSE(instances.m_vecPlaces[0].m_bHeading);
  EXPECT_EQ(instances.m_vecPlaces[0].m_dScale, 0.0);
  EXPECT_EQ(instances.m_eUp, UpAxis::Auto);
  EXPECT_FALSE(instances.m_bRandomHeading);
  EXPECT_EQ(instances.m_dHeading, 0.0);
  EXPECT_THAT(instances.m_dScale, ElementsAre(1.0, 1.0));
  EXPECT_EQ(instances.m_nSeed, 1);
  EXPECT_THAT(instances.m_nColor, ElementsAre(255, 255, 255));
  EXPECT_EQ(instances.m_dDistance, 0.0);
  EXPECT_EQ(instances.m_dSpread, 0.0);
  EXPECT_FALSE(instances.m_bZ);
  EXPECT_EQ(instances.m_vecPosition, QXVector3d());
}

TEST(QXSceneInstances, EveryKeyArrives) {
  QXSceneFile const scene = Parse("[instances]\nfile = tree.obj\nplace = 1, 2, 3, -90\nplace = 4 5 6 7 0.5\n"
                                  "places = list.txt\npoints = city.gml\nfeature = PlantCover\n"
                                  "where = kind = old oak\nheading-from = dir\nscale-from = size\nspread = 80\n"
                                  "z = 12.5\nposition = 10, 20, 30\nheading = random\nscale = 1.25, 0.75\nseed = 7\n"
                                  "color = #102030\ndistance = 900\nup = z\n");
  QXSceneInstances const& instances = scene.m_vecInstances[0];
  ASSERT_EQ(instances.m_vecPlaces.size(), 2u);
  EXPECT_TRUE(instances.m_vecPlaces[0].m_bHeading);
  EXPECT_EQ(instances.m_vecPlaces[0].m_dHeading, -90.0);
  EXPECT_EQ(instances.m_vecPlaces[0].m_dScale, 0.0);
  EXPECT_EQ(instances.m_vecPlaces[1].m_vecPosition, QXVector3d(4.0, 5.0, 6.0));
  EXPECT_EQ(instances.m_vecPlaces[1].m_dScale, 0.5);
  EXPECT_EQ(instances.m_strPlaces, "dir/list.txt");
  EXPECT_EQ(instances.m_nPlacesLine, 5);
  EXPECT_EQ(instances.m_strPoints, "dir/city.gml");
  EXPECT_EQ(instances.m_nPointsLine, 6);
  EXPECT_EQ(instances.m_strFeature, "PlantCover");
  EXPECT_EQ(instances.m_strWhere, "kind");
  EXPECT_EQ(instances.m_strWhereValue, "old oak");
  EXPECT_EQ(instances.m_strHeadingFrom, "dir");
  EXPECT_EQ(instances.m_strScaleFrom, "size");
  EXPECT_EQ(instances.m_dSpread, 80.0);
  EXPECT_TRUE(instances.m_bZ);
  EXPECT_EQ(instances.m_dZ, 12.5);
  EXPECT_EQ(instances.m_vecPosition, QXVector3d(10.0, 20.0, 30.0));
  EXPECT_TRUE(instances.m_bRandomHeading);
  // From the smaller to the larger, in whatever order they stand.
  EXPECT_THAT(instances.m_dScale, ElementsAre(0.75, 1.25));
  EXPECT_EQ(instances.m_nSeed, 7);
  EXPECT_THAT(instances.m_nColor, ElementsAre(0x10, 0x20, 0x30));
  EXPECT_EQ(instances.m_dDistance, 900.0);
  EXPECT_EQ(instances.m_eUp, UpAxis::Z);
}

TEST(QXSceneInstances, ValuesAreToldAtTheirLines) {
  EXPECT_THAT(Problems("[instances]\nfile = a.qxscene\nplace = 1, 2\nplace = 1,2,3,361\nplace = 1,2,3,4,0\n"
                       "place = 1,2,3,4,5,6\npoints = a.txt\nwhere = kind\nspread = 0\nz = high\nposition = 1\n"
                       "heading = north\nscale = 0\nseed = -1\ncolor = red\ndistance = 0\nup = x\nhigh = 1\n"),
      ElementsAre(HasSubstr("2: 'a.qxscene' is a scene"), HasSubstr("3: '1, 2' is no place"),
          HasSubstr("4: '1,2,3,361'"), HasSubstr("5: '1,2,3,4,0'"), HasSubstr("6: '1,2,3,4,5,6'"),
          HasSubstr("7: 'a.txt' is no map data"), HasSubstr("8: 'kind' is no condition"), HasSubstr("9: '0'"),
          HasSubstr("10: 'high'"), HasSubstr("11: '1'"), HasSubstr("12: 'north'"), HasSubstr("13: '0' is no scale"),
          HasSubstr("14: '-1'"), HasSubstr("15: 'red'"), HasSubstr("16: '0'"), HasSubstr("17: 'x'"),
          "18: [instances] has no key 'high'; known are file, place, places, points, feature, where, heading-from, "
          "scale-from, spread, z, position, heading, scale, seed, color, distance, up"));
}

TEST(QXSceneInstances, KeysThatContradictEachOtherAreTold) {
  std::string const strFile = "[instances]\nfile = t.obj\n";
  EXPECT_THAT(Problem(strFile), HasSubstr("3: [instances] has no places; add place = x, y, z"));
  for (char const* szKey :
      {"feature = a", "where = a = b", "heading-from = a", "scale-from = a", "spread = 1", "z = 0"})
    EXPECT_THAT(Problem(strFile + "place = 0,0,0\n" + szKey + "\n"), HasSubstr("are about points of map data"));
  EXPECT_THAT(Problem(strFile + "points = a.gml\n"), HasSubstr("add feature ="));
  EXPECT_THAT(
      Problem(strFile + "points = a.geojson\nfeature = a\n"), HasSubstr("feature is about elements of CityGML"));
  EXPECT_THAT(Problem(strFile + "points = a.shp\nspread = 1\n"), HasSubstr("spread is about areas"));
  EXPECT_THAT(Problems(strFile + "places = p.txt\n"), IsEmpty());
  EXPECT_THAT(Problems(strFile + "points = a.geojson\nspread = 10\nwhere = a = b\n"), IsEmpty());
}

TEST(QXSceneInstances, FilesThatAreNotThereAreTold) {
  Folder const folder;
  std::string const strScene =
      folder.Write("a.qxscene", "[instances]\nfile = t.obj\nplaces = p.txt\npoints = g.geojson\n");
  std::vector<std::string> vecProblems;
  ReadSceneFile(strScene, vecProblems);
  EXPECT_THAT(vecProblems, ElementsAre(HasSubstr(":2: " + folder.Path("t.obj") + ": no such file"),
                               HasSubstr(":3: " + folder.Path("p.txt") + ": no such file"),
                               HasSubstr(":4: " + folder.Path("g.geojson") + ": no such file")));
}

TEST(QXSceneInstances, AMillionPlacesAreReadAndMoreAreTold) {
  std::string strText = "[instances]\nfile = t.obj\n";
  for (std::size_t i = 0; i < MaxSceneInstances; ++i) strText += "place=1,2,3\n";
  EXPECT_EQ(Parse(strText).m_vecInstances[0].m_vecPlaces.size(), MaxSceneInstances);
  EXPECT_THAT(Problems(strText + "[instances]\nfile = t.obj\nplace=1,2,3\n"),
      ElementsAre(HasSubstr("1000005: a scene has at most 1000000 instances")));
}

// --- Lights ---

TEST(QXSceneLight, PointAloneTakesTheDefaults) {
  QXSceneFile const scene = Parse(Model + "[light]\nposition = 1, 2, 3\n");
  ASSERT_EQ(scene.m_vecLights.size(), 1u);
  QXSceneLight const& light = scene.m_vecLights[0];
  EXPECT_EQ(light.m_eKind, QXLightKind::Point);
  EXPECT_EQ(light.m_vecPosition, QXVector3d(1.0, 2.0, 3.0));
  EXPECT_FALSE(light.m_bDirection);
  EXPECT_FALSE(light.m_bTarget);
  EXPECT_THAT(light.m_nColor, ElementsAre(255, 255, 255));
  EXPECT_EQ(light.m_dInner, 30.0);
  EXPECT_EQ(light.m_dOuter, 45.0);
  EXPECT_EQ(light.m_dFalloff, 1.0);
  EXPECT_EQ(light.m_dRange, 0.0);
  EXPECT_THAT(light.m_dAttenuation, ElementsAre(0.0, 0.0, 0.0));
  EXPECT_EQ(light.m_dPower, 1.0);
  EXPECT_EQ(light.m_nLine, 3);
}

TEST(QXSceneLight, EveryKeyArrives) {
  QXSceneFile const scene =
      Parse(Model + "[light]\ntype = spot\nposition = 1, 2, 3\ntarget = 4, 5, 6\ncolor = #FFCC80\ninner = 20\n"
                    "outer = 70\nfalloff = 2.5\nrange = 40\nattenuation = 1, 0.1, 0.01\npower = 3\n"
                    "[light]\ntype = directional\ndirection = 0, 1, -1\n"
                    "[light]\ntype = spot\nposition = 0, 0, 9\ndirection = 0, 0, -1\n");
  ASSERT_EQ(scene.m_vecLights.size(), 3u);
  QXSceneLight const& light = scene.m_vecLights[0];
  EXPECT_EQ(light.m_eKind, QXLightKind::Spot);
  EXPECT_TRUE(light.m_bTarget);
  EXPECT_EQ(light.m_vecTarget, QXVector3d(4.0, 5.0, 6.0));
  EXPECT_THAT(light.m_nColor, ElementsAre(255, 0xCC, 0x80));
  EXPECT_EQ(light.m_dInner, 20.0);
  EXPECT_EQ(light.m_dOuter, 70.0);
  EXPECT_EQ(light.m_dFalloff, 2.5);
  EXPECT_EQ(light.m_dRange, 40.0);
  EXPECT_THAT(light.m_dAttenuation, ElementsAre(1.0, 0.1, 0.01));
  EXPECT_EQ(light.m_dPower, 3.0);
  EXPECT_EQ(scene.m_vecLights[1].m_eKind, QXLightKind::Directional);
  EXPECT_EQ(scene.m_vecLights[1].m_vecDirection, QXVector3d(0.0, 1.0, -1.0));
  EXPECT_TRUE(scene.m_vecLights[2].m_bDirection);
}

TEST(QXSceneLight, ValuesAreToldAtTheirLines) {
  EXPECT_THAT(
      Problems(Model + "[light]\ntype = lamp\nposition = 1\ndirection = a\ntarget = b\ncolor = c\n"
                       "inner = 181\nouter = -1\nfalloff = -1\nrange = 0\nattenuation = 1, 2\npower = 0\nx = 1\n"),
      ElementsAre(HasSubstr("4: 'lamp'"), HasSubstr("5: '1'"), HasSubstr("6: 'a'"), HasSubstr("7: 'b'"),
          HasSubstr("8: 'c'"), HasSubstr("9: '181'"), HasSubstr("10: '-1'"), HasSubstr("11: '-1'"),
          HasSubstr("12: '0'"), HasSubstr("13: '1, 2' is no list of 3 numbers"), HasSubstr("14: '0' is no power"),
          "15: [light] has no key 'x'; known are type, position, direction, target, inner, outer, falloff, color, "
          "range, attenuation, power"));
}

TEST(QXSceneLight, KeysThatContradictEachOtherAreTold) {
  EXPECT_THAT(Problem("[light]\n"), HasSubstr("3: a light that is not directional stands somewhere"));
  EXPECT_THAT(Problem("[light]\nposition = 0,0,0\ntarget = 1,1,1\n"), HasSubstr("shines to all sides"));
  EXPECT_THAT(Problem("[light]\nposition = 0,0,0\ninner = 10\n"), HasSubstr("are about spotlights"));
  EXPECT_THAT(Problem("[light]\ntype = directional\n"), HasSubstr("give it direction"));
  EXPECT_THAT(Problem("[light]\ntype = directional\ntarget = 1,1,1\n"), HasSubstr("give it direction"));
  EXPECT_THAT(
      Problem("[light]\ntype = directional\ndirection = 1,0,0\nposition = 0,0,0\n"), HasSubstr("comes from far away"));
  EXPECT_THAT(Problem("[light]\ntype = directional\ndirection = 1,0,0\nrange = 5\n"), HasSubstr("comes from far away"));
  EXPECT_THAT(Problem("[light]\ntype = directional\ndirection = 0,0,0\n"), HasSubstr("is no direction"));
  EXPECT_THAT(Problem("[light]\ntype = spot\nposition = 0,0,0\n"), HasSubstr("a direction or a target"));
  EXPECT_THAT(Problem("[light]\ntype = spot\nposition = 0,0,0\ntarget = 1,1,1\ndirection = 1,1,1\n"),
      HasSubstr("a direction or a target"));
  EXPECT_THAT(Problem("[light]\ntype = spot\nposition = 1,1,1\ntarget = 1,1,1\n"),
      HasSubstr("position and target are the same"));
  EXPECT_THAT(Problem("[light]\ntype = spot\nposition = 0,0,0\ntarget = 1,1,1\ninner = 60\n"),
      HasSubstr("not above the outer one"));
}

TEST(QXSceneLight, AThousandAreReadAndMoreAreToldOnce) {
  std::string strText = Model;
  for (std::size_t i = 0; i < MaxSceneLights; ++i) strText += "[light]\nposition = 0,0,0\n";
  EXPECT_EQ(Parse(strText).m_vecLights.size(), MaxSceneLights);
  EXPECT_THAT(Problems(strText + "[light]\nposition = 0,0,0\n[light]\n"),
      ElementsAre(HasSubstr("2003: a scene has at most 1000 of these")));
}

// --- Weather ---

TEST(QXSceneFog, EachModeTakesItsKeys) {
  QXSceneFog const linear = Parse(Model + "[fog]\nmode = linear\ncolor = #010203\nstart = 100\nend = 900\n").m_Fog;
  EXPECT_EQ(linear.m_eKind, QXFogKind::Linear);
  EXPECT_TRUE(linear.m_bColor);
  EXPECT_THAT(linear.m_nColor, ElementsAre(1, 2, 3));
  EXPECT_EQ(linear.m_dStart, 100.0);
  EXPECT_EQ(linear.m_dEnd, 900.0);
  QXSceneFog const exponential = Parse(Model + "[fog]\nmode = exp\ndensity = 0.002\n").m_Fog;
  EXPECT_EQ(exponential.m_eKind, QXFogKind::Exponential);
  EXPECT_EQ(exponential.m_dDensity, 0.002);
  EXPECT_FALSE(exponential.m_bColor);
  EXPECT_EQ(Parse(Model + "[fog]\nmode = exp2\ndensity = 0.002\n").m_Fog.m_eKind, QXFogKind::ExponentialSquared);
  EXPECT_EQ(Parse(Model).m_Fog.m_eKind, QXFogKind::None);
}

TEST(QXSceneFog, WhatIsWrongIsTold) {
  EXPECT_THAT(Problems(Model + "[fog]\nmode = thick\ncolor = x\ndensity = 0\nstart = -1\nend = 0\nx = 1\n"),
      ElementsAre(HasSubstr("4: 'thick'"), HasSubstr("5: 'x'"), HasSubstr("6: '0'"), HasSubstr("7: '-1'"),
          HasSubstr("8: '0'"), "9: [fog] has no key 'x'; known are mode, color, density, start, end"));
  EXPECT_THAT(Problem("[fog]\ndensity = 1\n"), HasSubstr("3: [fog] lacks 'mode'"));
  EXPECT_THAT(Problem("[fog]\nmode = linear\nend = 5\ndensity = 1\n"), HasSubstr("density is about exp"));
  EXPECT_THAT(Problem("[fog]\nmode = exp\ndensity = 1\nend = 5\n"), HasSubstr("start and end are about linear"));
  EXPECT_THAT(Problem("[fog]\nmode = exp2\n"), HasSubstr("ask for a density"));
  EXPECT_THAT(Problem("[fog]\nmode = linear\n"), HasSubstr("ends behind its start"));
  EXPECT_THAT(Problem("[fog]\nmode = linear\nstart = 5\nend = 5\n"), HasSubstr("ends behind its start"));
}

TEST(QXSceneSky, EveryKeyArrives) {
  QXSceneSky const sky = Parse(Model + "[sky]\ntime = 2026-06-21T20:30\ncondition = storm\nclouds = cirrus\n"
                                       "cloud-height = 1500\nwind = 270, 8.5\n")
                             .m_Sky;
  EXPECT_TRUE(sky.m_bSky);
  EXPECT_EQ(sky.m_Time.GetMillisecondsUTC(), 1782073800000);
  EXPECT_EQ(sky.m_nCondition, 4);
  EXPECT_EQ(sky.m_nClouds, 3);
  EXPECT_EQ(sky.m_dCloudHeight, 1500.0);
  EXPECT_EQ(sky.m_dWindFrom, 270.0);
  EXPECT_EQ(sky.m_dWindSpeed, 8.5);
  QXSceneSky const plain = Parse(Model + "[sky]\ntime = 2026-06-21T20:30\n").m_Sky;
  EXPECT_EQ(plain.m_nCondition, -1);
  EXPECT_EQ(plain.m_nClouds, -1);
  EXPECT_EQ(plain.m_dCloudHeight, 0.0);
  EXPECT_LT(plain.m_dWindFrom, 0.0);
  EXPECT_FALSE(Parse(Model).m_Sky.m_bSky);
}

TEST(QXSceneSky, WhatIsWrongIsTold) {
  EXPECT_THAT(
      Problems(Model + "[sky]\ntime = noon\ncondition = rain\nclouds = many\ncloud-height = 0\nwind = 8\nx = 1\n"),
      ElementsAre(HasSubstr("4: 'noon' is no moment"), HasSubstr("5: 'rain'"), HasSubstr("6: 'many'"),
          HasSubstr("7: '0'"), HasSubstr("8: '8' is no wind"),
          "9: [sky] has no key 'x'; known are time, condition, clouds, cloud-height, wind"));
  EXPECT_THAT(Problem("[sky]\nwind = 361, 1\ntime = 2026-06-21T20:30\n"), HasSubstr("is no wind"));
  EXPECT_THAT(Problem("[sky]\nwind = 10, 101\ntime = 2026-06-21T20:30\n"), HasSubstr("is no wind"));
  EXPECT_THAT(Problem("[sky]\n"), HasSubstr("3: [sky] lacks 'time'"));
  EXPECT_THAT(Problem("[sky]\ntime = 2026-06-21T20:30\n[sky]\n"), HasSubstr("there is a section [sky] in line 3"));
}

TEST(QXSceneOcean, KeysAndDefaults) {
  QXSceneOcean const ocean = Parse(Model + "[ocean]\nlevel = -2\nbeaufort = 6.5\nwind-from = 90\n").m_Ocean;
  EXPECT_TRUE(ocean.m_bOcean);
  EXPECT_EQ(ocean.m_dLevel, -2.0);
  EXPECT_EQ(ocean.m_dBeaufort, 6.5);
  EXPECT_EQ(ocean.m_dWindFrom, 90.0);
  QXSceneOcean const plain = Parse(Model + "[ocean]\n").m_Ocean;
  EXPECT_EQ(plain.m_dLevel, 0.0);
  EXPECT_EQ(plain.m_dBeaufort, 3.0);
  EXPECT_EQ(plain.m_dWindFrom, 270.0);
  EXPECT_FALSE(Parse(Model).m_Ocean.m_bOcean);
  EXPECT_THAT(Problems(Model + "[ocean]\nlevel = low\nbeaufort = 13\nwind-from = west\nx = 1\n"),
      ElementsAre(HasSubstr("4: 'low'"), HasSubstr("5: '13'"), HasSubstr("6: 'west'"),
          "7: [ocean] has no key 'x'; known are level, beaufort, wind-from"));
}

TEST(QXSceneFile, SunAndAmbientLight) {
  QXSceneFile const scene = Parse("[scene]\nsun = no\nambient = #202840\n" + Model);
  EXPECT_FALSE(scene.m_bSun);
  EXPECT_TRUE(scene.m_bAmbient);
  EXPECT_THAT(scene.m_nAmbient, ElementsAre(0x20, 0x28, 0x40));
  EXPECT_TRUE(Parse(Model).m_bSun);
  EXPECT_FALSE(Parse(Model).m_bAmbient);
  EXPECT_THAT(
      Problems("[scene]\nsun = high\nambient = 1\n" + Model), ElementsAre(HasSubstr("2: 'high'"), HasSubstr("3: '1'")));
}

// --- Values ---

std::int64_t Seconds(std::string const& strTime) {
  QDC::QdcTime time;
  EXPECT_EQ(ReadTime(strTime, time), "") << strTime;
  return time.GetMillisecondsUTC() / 1000;
}

TEST(QXSceneValue, MomentsAreUniversalUnlessAZoneFollows) {
  EXPECT_EQ(Seconds("1970-01-01T00:00"), 0);
  EXPECT_EQ(Seconds("1970-01-01T00:00:01Z"), 1);
  EXPECT_EQ(Seconds("1970-01-01 02:00+02:00"), 0);
  EXPECT_EQ(Seconds("1969-12-31T20:30-03:30"), 0);
  EXPECT_EQ(Seconds("2000-02-29T12:00"), 951825600);
  EXPECT_EQ(Seconds("1900-01-01T00:00"), -2208988800);
  EXPECT_EQ(Seconds("2099-12-31T23:59:59"), 4102444799);
}

TEST(QXSceneValue, WhatIsNoMomentIsTold) {
  for (char const* szBad : {"", "2026", "2026-06-21", "2026-06-21T", "2026-06-21T20", "2026-06-21T20:3",
           "2026-6-21T20:30", "2026-13-01T00:00", "2026-02-29T00:00", "2026-04-31T00:00", "2026-00-10T00:00",
           "2026-06-21T24:00", "2026-06-21T20:60", "2026-06-21T20:30:60", "2026-06-21T20:30:", "2026-06-21T20:30+2",
           "2026-06-21T20:30+15:00", "2026-06-21T20:30 CEST", "1899-12-31T23:59", "2100-01-01T00:00",
           "+026-06-21T20:30", "2026-06-21t20:30"}) {
    QDC::QdcTime time(7);
    EXPECT_THAT(ReadTime(szBad, time), HasSubstr("is no moment from 1900 to 2099; write it as")) << szBad;
    EXPECT_EQ(time.GetMillisecondsUTC(), 7) << szBad;
  }
}

}  // namespace
}  // namespace QXApp
