#include <apps/qx3d/QXSceneData.h>

#include <apps/qx3d/QXSceneModels.h>
#include <apps/qx3d/geo/QXGeoFile.h>
#include <apps/qx3d/geo/QXGeoNames.h>

#include <tests/assimp/QXTestFiles.h>
#include <tests/qx3d/geo/QXShapefileMaker.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace QXApp {
namespace {

using QXC::QXVector3d;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Folder = QXAssimp::QXTestFolder;

std::vector<QXSceneLabel> Append(QXSceneData const& data, std::vector<QXGeoPoint> const& vecPoints) {
  std::vector<QXSceneLabel> vecLabels;
  EXPECT_EQ(AppendDataLabels(data, vecPoints, vecLabels), "");
  return vecLabels;
}

QXGeoPoint const Turned{"a", QXVector3d(1, 2, 3), true, 30.0};
QXGeoPoint const Plain{"b", QXVector3d(1, 2, 3)};

TEST(QXSceneData, LabelsWithAnAngleAreFlatAndTheOthersFaceTheEye) {
  std::vector<QXSceneLabel> const vecLabels = Append(QXSceneData(), {Turned, Plain});
  ASSERT_EQ(vecLabels.size(), 2u);
  EXPECT_EQ(vecLabels[0].m_strText, "a");
  EXPECT_EQ(vecLabels[0].m_eFacing, QXLabelFacing::Flat);
  EXPECT_EQ(vecLabels[0].m_dRotation, 30.0);
  EXPECT_EQ(vecLabels[0].m_dHeight, 10.0);
  EXPECT_EQ(vecLabels[1].m_eFacing, QXLabelFacing::Camera);
  EXPECT_EQ(vecLabels[1].m_dHeight, 0.0);
}

TEST(QXSceneData, TheStyleIsThatOfTheScene) {
  QXSceneData data;
  data.m_Style.m_bHalo = true;
  data.m_Style.m_nColor[1] = 7;
  data.m_Style.m_dHeight = 4.0;
  data.m_vecPosition = QXVector3d(10, 20, 30);
  data.m_dLift = 5.0;
  std::vector<QXSceneLabel> const vecLabels = Append(data, {Turned, Plain});
  EXPECT_TRUE(vecLabels[1].m_bHalo);
  EXPECT_EQ(vecLabels[1].m_nColor[1], 7);
  EXPECT_EQ(vecLabels[1].m_vecPosition, QXVector3d(11, 22, 38));
  // A height is one of flat labels.
  EXPECT_EQ(vecLabels[1].m_eFacing, QXLabelFacing::Flat);
  EXPECT_EQ(vecLabels[1].m_dHeight, 4.0);
  data.m_bFacing = true;
  data.m_Style.m_dHeight = 0.0;
  EXPECT_EQ(Append(data, {Turned})[0].m_eFacing, QXLabelFacing::Camera);
  EXPECT_EQ(Append(data, {Turned})[0].m_dRotation, 0.0);
}

TEST(QXSceneData, NoLabelStandsOnItsHead) {
  for (auto const& [dAngle, dExpected] : std::vector<std::pair<double, double>>{
           {0, 0}, {89, 89}, {90, 90}, {91, -89}, {-90, 90}, {-89, -89}, {180, 0}, {270, 90}, {3670, 70}}) {
    QXGeoPoint point = Turned;
    point.m_dAngle = dAngle;
    EXPECT_EQ(Append(QXSceneData(), {point})[0].m_dRotation, dExpected) << dAngle;
  }
}

TEST(QXSceneData, ATurnedLabelBeginsOnItsPointUnlessTheSceneSaysOtherwise) {
  QXSceneData data;
  EXPECT_EQ(Append(data, {Turned})[0].m_nAlignX, -1);
  EXPECT_EQ(Append(data, {Turned})[0].m_nAlignY, -1);
  EXPECT_EQ(Append(data, {Plain})[0].m_nAlignX, 0);
  data.m_bAlign = true;
  EXPECT_EQ(Append(data, {Turned})[0].m_nAlignX, 0);
}

TEST(QXSceneData, ALabelThatIsTurnedAroundKeepsThePlaceThatItCovers) {
  QXSceneData data;
  data.m_Style.m_dOffset[0] = 3.0;
  data.m_Style.m_dOffset[1] = -1.0;
  QXGeoPoint point = Turned;
  point.m_dAngle = 170.0;
  QXSceneLabel const label = Append(data, {point})[0];
  EXPECT_EQ(label.m_dRotation, -10.0);
  EXPECT_EQ(label.m_nAlignX, 1);
  EXPECT_EQ(label.m_nAlignY, 1);
  EXPECT_EQ(label.m_dOffset[0], -3.0);
  EXPECT_EQ(label.m_dOffset[1], 1.0);
}

TEST(QXSceneData, ASceneHasAtMostAHundredThousandLabels) {
  std::vector<QXSceneLabel> vecLabels(MaxScenePlacements - 1);
  EXPECT_THAT(AppendDataLabels(QXSceneData(), {Plain, Plain}, vecLabels), HasSubstr("at most 100000"));
  EXPECT_EQ(vecLabels.size(), MaxScenePlacements);
}

TEST(QXSceneData, LabelsBeyondWhatCanBeShownAreLeftOut) {
  QXSceneData data;
  data.m_vecPosition = QXVector3d(1e15, 0, 0);
  std::vector<QXSceneLabel> vecLabels;
  EXPECT_THAT(AppendDataLabels(data, {Plain}, vecLabels), HasSubstr("beyond 1e15"));
  EXPECT_THAT(vecLabels, IsEmpty());
}

std::string const Map =
    R"({"type":"FeatureCollection","features":[
{"type":"Feature","properties":{"name":"a"},"geometry":{"type":"Point","coordinates":[1,2]}},
{"type":"Feature","properties":{},"geometry":{"type":"Polygon","coordinates":[[[0,0],[9,0],[9,9],[0,0]]]}}]})";

struct Loaded {
  QXSceneFile m_Scene;
  std::vector<std::string> m_vecProblems;
  std::vector<std::string> m_vecWarnings;
  unsigned long long m_nTriangles = 0;
};

Loaded Load(QXSceneData const& data) {
  Loaded loaded;
  loaded.m_Scene.m_vecData = {data};
  QXSceneModels models;
  LoadSceneData(
      loaded.m_Scene, &models, [](std::string const&) {}, loaded.m_vecProblems, loaded.m_vecWarnings);
  loaded.m_nTriangles = models.GetTriangleCount();
  return loaded;
}

TEST(QXSceneData, AFileGivesLabelsAndBuildings) {
  Folder const folder;
  QXSceneData data;
  data.m_strFile = folder.Write("a.GeoJSON", Map);
  Loaded const both = Load(data);
  EXPECT_THAT(both.m_vecProblems, IsEmpty());
  EXPECT_EQ(both.m_Scene.m_vecLabels.size(), 1u);
  EXPECT_EQ(both.m_nTriangles, 7u);
  data.m_bLabels = false;
  EXPECT_THAT(Load(data).m_Scene.m_vecLabels, IsEmpty());
  data.m_bLabels = true;
  data.m_bBuildings = false;
  EXPECT_EQ(Load(data).m_nTriangles, 0u);
}

TEST(QXSceneData, AFileThatShowsNothingIsTold) {
  Folder const folder;
  QXSceneData data;
  data.m_strFile = folder.Write("a.geojson", Map);
  data.m_strLabel = "title";
  data.m_bBuildings = false;
  EXPECT_THAT(Load(data).m_vecProblems, ElementsAre(HasSubstr(": there is nothing to show: neither points with an "
                                                              "attribute 'title'")));
}

TEST(QXSceneData, BadFilesAreToldWithTheirNameAndLine) {
  Folder const folder;
  QXSceneData data;
  data.m_strFile = folder.Write("a.gml", "<a>\n</b>");
  EXPECT_THAT(Load(data).m_vecProblems, ElementsAre(HasSubstr("a.gml:2: the XML is not well-formed")));
  data.m_strFile = folder.Path("gone.gml");
  EXPECT_THAT(Load(data).m_vecProblems, ElementsAre(folder.Path("gone.gml") + ": no such file; correct the name"));
  data.m_strFile = folder.Write("a.shp", "x");
  EXPECT_THAT(Load(data).m_vecProblems, ElementsAre(HasSubstr("a.shx, which belongs to it: no such file"),
                                            HasSubstr("a.dbf, which belongs to it: no such file")));
  data.m_strFile = folder.Write("a.txt", "x");
  EXPECT_THAT(Load(data).m_vecProblems, ElementsAre(HasSubstr("no map data by its name")));
}

TEST(QXSceneData, AShapefileIsReadWithTheFilesBesideIt) {
  Folder const folder;
  QXShapefileMaker maker;
  maker.Add(1.0, 2.0, "Caf\xE9", "");
  QXSceneData data;
  data.m_strFile = folder.Write("a.shp", maker.GetShapes());
  folder.Write("a.shx", maker.GetIndex());
  folder.Write("a.DBF", maker.GetAttributes());
  folder.Write("a.cpg", "1252");
  Loaded const loaded = Load(data);
  EXPECT_THAT(loaded.m_vecProblems, IsEmpty());
  ASSERT_EQ(loaded.m_Scene.m_vecLabels.size(), 1u);
  EXPECT_EQ(loaded.m_Scene.m_vecLabels[0].m_strText, "Caf\xC3\xA9");
}

TEST(QXGeoFile, MapDataIsKnownByItsName) {
  for (char const* szName : {"a.gml", "b/a.CityGML", "a.GEOJSON", "a.shp"}) EXPECT_TRUE(IsGeoName(szName)) << szName;
  for (char const* szName : {"a.obj", "gml", "a.json", "a.gml.qxscene", "", "a.shx"})
    EXPECT_FALSE(IsGeoName(szName)) << szName;
  EXPECT_EQ(GetGeoNames("a.gml").m_strLabel, "tekst");
  EXPECT_EQ(GetGeoNames("a.gml").m_strAngle, "hoek");
  EXPECT_EQ(GetGeoNames("a.shp").m_strLabel, "name");
  EXPECT_EQ(GetGeoNames("a.shp").m_strAngle, "");
}

struct Read {
  QXSceneFile m_Scene;
  std::vector<std::string> m_vecProblems;
};

Read ReadScene(std::string const& strText) {
  QXSceneProblems problems("d/a.qxscene");
  Read read;
  read.m_Scene = ParseScene(strText, "d/a.qxscene", problems);
  read.m_vecProblems = problems.GetLines();
  return read;
}

TEST(QXSceneDataSection, EveryKeyIsRead) {
  Read const read = ReadScene(
      "[data]\nfile = m.gml\nlabel = straat\nangle = draai\nlabels = yes\nbuildings = no\nposition = 1, 2, 3\n"
      "lift = 4.5\nfont = Sans\nsize = 20\nbold = yes\nitalic = yes\ncolor = #010203\nhalo = #040506\n"
      "offset = 1, 2\nalign = top-left\ndepth = off\nfacing = flat\nheight = 6\n");
  EXPECT_THAT(read.m_vecProblems, IsEmpty());
  ASSERT_EQ(read.m_Scene.m_vecData.size(), 1u);
  EXPECT_THAT(read.m_Scene.m_vecLabels, IsEmpty());
  QXSceneData const& data = read.m_Scene.m_vecData[0];
  EXPECT_EQ(data.m_strFile, "d/m.gml");
  EXPECT_EQ(data.m_strLabel, "straat");
  EXPECT_EQ(data.m_strAngle, "draai");
  EXPECT_TRUE(data.m_bLabels);
  EXPECT_FALSE(data.m_bBuildings);
  EXPECT_EQ(data.m_vecPosition, QXVector3d(1, 2, 3));
  EXPECT_EQ(data.m_dLift, 4.5);
  EXPECT_EQ(data.m_Style.m_strFont, "Sans");
  EXPECT_EQ(data.m_Style.m_nSize, 20);
  EXPECT_TRUE(data.m_Style.m_bBold && data.m_Style.m_bItalic && data.m_Style.m_bHalo && !data.m_Style.m_bDepth);
  EXPECT_EQ(data.m_Style.m_nHalo[2], 6);
  EXPECT_EQ(data.m_Style.m_dOffset[1], 2.0);
  EXPECT_EQ(data.m_Style.m_nAlignX, -1);
  EXPECT_EQ(data.m_Style.m_nAlignY, 1);
  EXPECT_TRUE(data.m_bFacing && data.m_bAlign);
  EXPECT_EQ(data.m_Style.m_eFacing, QXLabelFacing::Flat);
  EXPECT_EQ(data.m_Style.m_dHeight, 6.0);
  EXPECT_EQ(data.m_nLine, 2);
}

TEST(QXSceneDataSection, DefaultsShowLabelsAndBuildings) {
  QXSceneData const data = ReadScene("[data]\nfile=m.shp\n").m_Scene.m_vecData.at(0);
  EXPECT_TRUE(data.m_bLabels && data.m_bBuildings && !data.m_bFacing);
  EXPECT_EQ(data.m_strLabel + data.m_strAngle, "");
  EXPECT_EQ(data.m_dLift, 0.0);
}

TEST(QXSceneDataSection, LabelsAndDataKeepTheirKeysApart) {
  Read const read =
      ReadScene("[data]\nfile=m.gml\nsize=20\n[label]\ntext=a\nposition=0,0,0\nsize=30\n[data]\nfile=n.gml\n");
  EXPECT_THAT(read.m_vecProblems, IsEmpty());
  EXPECT_EQ(read.m_Scene.m_vecData.at(0).m_Style.m_nSize, 20);
  EXPECT_EQ(read.m_Scene.m_vecLabels.at(0).m_nSize, 30);
  EXPECT_EQ(read.m_Scene.m_vecData.at(1).m_Style.m_nSize, 0);
}

TEST(QXSceneDataSection, MistakesAreTold) {
  EXPECT_THAT(ReadScene("[data]\n").m_vecProblems, ElementsAre(HasSubstr(":1: [data] lacks 'file'")));
  EXPECT_THAT(ReadScene("[data]\nfile=a.obj\n").m_vecProblems, ElementsAre(HasSubstr(":2: 'a.obj' is no map data")));
  EXPECT_THAT(ReadScene("[model]\nfile=a.gml\n").m_vecProblems, ElementsAre(HasSubstr("name it in a section [data]")));
  EXPECT_THAT(ReadScene("[data]\nfile=a.gml\nlabels=no\nbuildings=no\n").m_vecProblems,
      ElementsAre(HasSubstr("leave nothing")));
  EXPECT_THAT(ReadScene("[data]\nfile=a.gml\nfacing=camera\nheight=3\n").m_vecProblems,
      ElementsAre(HasSubstr("height is about labels that lie in the world")));
  EXPECT_THAT(ReadScene("[data]\nfile=a.gml\nlift=nan\n").m_vecProblems, ElementsAre(HasSubstr("is no number")));
}

TEST(QXSceneDataSection, AMissingFileIsToldAtItsLine) {
  Folder const folder;
  std::vector<std::string> vecProblems;
  ReadSceneFile(folder.Write("a.qxscene", "[data]\nfile = gone.gml\n"), vecProblems);
  EXPECT_THAT(vecProblems, ElementsAre(HasSubstr("a.qxscene:2: " + folder.Path("gone.gml") + ": no such file")));
}

}  // namespace
}  // namespace QXApp
