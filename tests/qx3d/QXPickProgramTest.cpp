// `qx3d pick` as a person runs it.
#include <tests/assimp/QXTestFiles.h>
#include <tests/qx3d/QXPngReader.h>
#include <tests/qx3d/QXProgramRun.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>

namespace QXApp {
namespace {

using testing::HasSubstr;
using Folder = QXAssimp::QXTestFolder;

/// A folder with a red block, 2 x 3 x 4 from its origin to the upper north-east.
struct BlockFolder : Folder {
  BlockFolder() {
    Write("block.obj", QXAssimp::ReadTestFile(QXAssimp::ModelPath("block.obj")));
    Write("block.mtl", QXAssimp::ReadTestFile(QXAssimp::ModelPath("block.mtl")));
  }
};

/// Looks down upon the block, whose top then fills the middle of the picture.
std::string const FromAbove = " --eye 1,1.4,30 --look 1,1.5,4 --size 160x120 --up z ";

TEST(QXPickProgram, TellsAHitAndAMiss) {
  BlockFolder const folder;
  std::string const strBlock = Quote(folder.Path("block.obj"));
  ProgramRun const hit = RunProgram(folder, "pick " + strBlock + " 80 60 --renderer null --no-ground" + FromAbove);
  EXPECT_EQ(hit.m_nExitStatus, 0) << hit.m_strError;
  EXPECT_EQ(hit.m_strError, "");
  EXPECT_THAT(hit.m_strOut, HasSubstr("layer     1 (models)\nobject    1 ("));
  EXPECT_THAT(hit.m_strOut, HasSubstr("block.obj"));
  EXPECT_THAT(hit.m_strOut, HasSubstr("\nposition  "));
  EXPECT_THAT(hit.m_strOut, HasSubstr(" 4.000\n"));
  ProgramRun const miss = RunProgram(folder, "pick " + strBlock + " 2 3 --renderer null --no-ground" + FromAbove);
  EXPECT_EQ(miss.m_nExitStatus, 3) << miss.m_strError;
  EXPECT_EQ(miss.m_strError, "");
  EXPECT_EQ(miss.m_strOut, "nothing at 2 3\n");
}

TEST(QXPickProgram, RefusesAPixelOutsideOfThePicture) {
  BlockFolder const folder;
  std::string const strBlock = Quote(folder.Path("block.obj"));
  for (char const* const szPixel : {"160 5", "5 120", "-1 5"}) {
    ProgramRun const run =
        RunProgram(folder, "pick " + strBlock + " --renderer null --size 160x120 -- " + std::string(szPixel));
    EXPECT_EQ(run.m_nExitStatus, 1) << szPixel;
    EXPECT_EQ(run.m_strOut, "");
    EXPECT_THAT(run.m_strError, HasSubstr("outside of the picture, which has 160 x 120")) << szPixel;
  }
  ProgramRun const run = RunProgram(folder, "pick " + strBlock + " five 5 --renderer null");
  EXPECT_EQ(run.m_nExitStatus, 2);
  ProgramRun const none = RunProgram(folder, "pick " + strBlock + " 5 --renderer null");
  EXPECT_EQ(none.m_nExitStatus, 2);
}

TEST(QXPickProgram, WhatCannotBeShownIsTold) {
  Folder const folder;
  ProgramRun const run = RunProgram(folder, "pick " + Quote(folder.Path("none.obj")) + " 5 5 --renderer null");
  EXPECT_EQ(run.m_nExitStatus, 1);
  EXPECT_THAT(run.m_strError, HasSubstr("none.obj"));
}

TEST(QXPickProgram, BuildingsAreNumberedAsTheFileHasThem) {
  Folder const folder;
  std::string const strFile = folder.Write("town.geojson",
      R"({"type":"FeatureCollection","features":[
      {"type":"Feature","properties":{"building":"yes","height":5},"geometry":{"type":"Polygon","coordinates":
        [[[-20,-5],[-10,-5],[-10,5],[-20,5],[-20,-5]]]}},
      {"type":"Feature","properties":{"building":"yes","height":5},"geometry":{"type":"Polygon","coordinates":
        [[[-4,-4],[4,-4],[4,4],[-4,4],[-4,-4]]]}}]})");
  ProgramRun const merged = RunProgram(folder, "pick " + Quote(strFile) +
                                                   " 80 60 --renderer null --no-ground --size 160x120 --eye 0,-0.1,60 "
                                                   "--look 0,0,5");
  EXPECT_EQ(merged.m_nExitStatus, 0) << merged.m_strError;
  EXPECT_THAT(merged.m_strOut, HasSubstr("town.geojson, building "));
}

#if defined(QX_WITH_OGRE)

std::string const Scene = "[scene]\nground = no\n[model]\nfile = block.obj\nup = z\n"
                          "[model]\nfile = block.obj\nup = z\nposition = 10, 0, 0\n"
                          "[instances]\nfile = block.obj\nup = z\nplace = 20, 0, 0\nplace = 30, 0, 0\n"
                          "[label]\ntext = Below\nposition = 40, 0, 0\nsize = 40\n"
                          "[label]\ntext = Beside\nposition = 50, 0, 0\nsize = 40\n";

ProgramRun PickAbove(Folder const& folder, double dX, double dY, std::string const& strOptions = "") {
  std::string const strX = std::to_string(dX);
  std::string const strY = std::to_string(dY);
  return RunProgram(folder,
      "pick " + Quote(folder.Write("a.qxscene", Scene)) + " 80 60 --renderer ogre --size 160x120 --eye " + strX + "," +
          std::to_string(dY - 0.01) + ",30 --look " + strX + "," + strY + ",0 " + strOptions,
      WithDisplay);
}

TEST(QXPickProgram, TellsModelsInstancesAndLabelsApart) {
  BlockFolder const folder;
  ProgramRun const first = PickAbove(folder, 1.0, 1.5);
  EXPECT_EQ(first.m_nExitStatus, 0) << first.m_strError;
  EXPECT_THAT(first.m_strOut, HasSubstr("(models)"));
  EXPECT_THAT(first.m_strOut, HasSubstr("block, place 1 of 2)"));
  EXPECT_THAT(first.m_strOut, HasSubstr(" 4.000\n"));
  EXPECT_THAT(PickAbove(folder, 11.0, 1.5).m_strOut, HasSubstr("block, place 2 of 2)"));
  ProgramRun const instance = PickAbove(folder, 31.0, 1.5);
  EXPECT_THAT(instance.m_strOut, HasSubstr("(instances)"));
  EXPECT_THAT(instance.m_strOut, HasSubstr("block.obj, place 2 of 2)"));
  EXPECT_THAT(instance.m_strOut, HasSubstr("object    2 ("));
  // Somewhere in the letters above the label's place.
  ProgramRun const miss = PickAbove(folder, 15.0, 20.0);
  EXPECT_EQ(miss.m_nExitStatus, 3);
  EXPECT_EQ(miss.m_strOut, "nothing at 80 60\n");
}

TEST(QXPickProgram, HighlightsWhatIsHitInThePicture) {
  BlockFolder const folder;
  std::string const strOut = folder.Path("hit.png");
  for (double const dX : {1.0, 21.0}) {
    ProgramRun const run = PickAbove(folder, dX, 1.5, "--out " + Quote(strOut));
    EXPECT_EQ(run.m_nExitStatus, 0) << run.m_strError;
    QXPicture const picture = ReadPicture(strOut);
    ASSERT_EQ(picture.m_nWidth, 160);
    unsigned char const* const p = picture.m_vecPixels.data() + 3 * (60 * 160 + 80);
    // The block itself is red with hardly any green in it.
    EXPECT_GT(p[1], 90) << dX;
    std::filesystem::remove(strOut);
  }
}

TEST(QXPickProgram, FindsTheTextOfALabel) {
  BlockFolder const folder;
  bool bFound = false;
  // Letters have gaps; of a row through the words one pixel meets a stem.
  for (double dX = 49.0; dX < 51.0 && !bFound; dX += 0.13) {
    ProgramRun const run = PickAbove(folder, dX, 0.6);
    if (run.m_nExitStatus != 0) continue;
    EXPECT_THAT(run.m_strOut, HasSubstr("(labels)"));
    EXPECT_THAT(run.m_strOut, HasSubstr("(Beside)"));
    bFound = true;
  }
  EXPECT_TRUE(bFound);
}

#endif

}  // namespace
}  // namespace QXApp
