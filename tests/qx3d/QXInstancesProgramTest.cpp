// Instances, lights and weather as a person views them.
#include <tests/assimp/QXTestFiles.h>
#include <tests/qx3d/QXPngReader.h>
#include <tests/qx3d/QXProgramRun.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdlib>

namespace QXApp {
namespace {

using testing::HasSubstr;
using Folder = QXAssimp::QXTestFolder;
using Rgb = std::array<int, 3>;

struct BlockFolder : Folder {
  BlockFolder() {
    Write("block.obj", QXAssimp::ReadTestFile(QXAssimp::ModelPath("block.obj")));
    Write("block.mtl", QXAssimp::ReadTestFile(QXAssimp::ModelPath("block.mtl")));
  }
};

ProgramRun View(Folder const& folder, std::string const& strScene, std::string const& strOptions,
    std::string const& strLauncher = WithoutDisplay) {
  return RunProgram(folder,
      "view " + Quote(folder.Write("a.qxscene", strScene)) + " --size 120x90 --out " + Quote(folder.Path("out.png")) +
          " " + strOptions,
      strLauncher);
}

std::string const Blocks = "[scene]\nground = no\n[instances]\nfile = block.obj\nup = z\nplace = 0, 0, 0\n"
                           "place = 10, 0, 0, 90\nplaces = more.txt\n";

TEST(QXInstancesProgram, InstancesAreCountedAndFillThePicture) {
  BlockFolder const folder;
  folder.Write("more.txt", "20 0 0\n30 0 0 45 2\n");
  ProgramRun const run = View(folder, Blocks, "--renderer null --stats");
  EXPECT_EQ(run.m_nExitStatus, 0) << run.m_strError;
  EXPECT_EQ(run.m_strError, "");
  EXPECT_THAT(run.m_strOut, HasSubstr("instances          4, of 1 mesh; 4 drawn by the last view\n"));
  EXPECT_THAT(run.m_strOut, HasSubstr("triangles          48 drawn; the scene has 48\n"));
  EXPECT_THAT(run.m_strOut, HasSubstr("draw operations    1\n"));
}

TEST(QXInstancesProgram, ProblemsOfPlacesAreToldWithTheirFile) {
  BlockFolder const folder;
  std::string const strPath = folder.Write("more.txt", "20 0\n30 0 0 45 2\nx\n");
  ProgramRun const run = View(folder, Blocks, "--renderer null");
  EXPECT_EQ(run.m_nExitStatus, 1);
  EXPECT_THAT(run.m_strError, HasSubstr("qx3d: " + strPath + ":1: '20 0' is no place"));
  EXPECT_THAT(run.m_strError, HasSubstr("qx3d: " + strPath + ":3: 'x' is no place"));
}

TEST(QXInstancesProgram, InstancesAreBakedAsModels) {
  BlockFolder const folder;
  folder.Write("more.txt", "20 0 0\n30 0 0 45 2\n");
  std::string const strScene = folder.Write("a.qxscene", Blocks + "color = #FF0000\n");
  ProgramRun const run = RunProgram(folder, "bake " + Quote(strScene) + " -o " + Quote(folder.Path("a.qsg")));
  EXPECT_EQ(run.m_nExitStatus, 0) << run.m_strError;
  EXPECT_THAT(run.m_strOut, HasSubstr("4 objects, 48 triangles"));
  EXPECT_THAT(run.m_strError, HasSubstr("the colours of instances are not in the file"));
}

TEST(QXInstancesProgram, TimeOfTheCommandLineDarkensTheBackground) {
  BlockFolder const folder;
  std::string const strScene = "[model]\nfile = block.obj\n";
  auto const corner = [&](std::string const& strOptions) {
    ProgramRun const run = View(folder, strScene, "--renderer null --no-ground " + strOptions);
    EXPECT_EQ(run.m_nExitStatus, 0) << run.m_strError;
    return int{ReadPicture(folder.Path("out.png")).m_vecPixels[0]};
  };
  int const nPlain = corner("");
  EXPECT_NEAR(corner("--time 2026-06-21T13:20+02:00"), nPlain, 1);
  EXPECT_LT(corner("--time 2026-12-21T23:00"), nPlain / 4);
  ProgramRun const wrong = View(folder, strScene, "--renderer null --time noon");
  EXPECT_EQ(wrong.m_nExitStatus, 2);
  EXPECT_THAT(wrong.m_strError, HasSubstr("'noon' is no moment from 1900 to 2099"));
}

TEST(QXInstancesProgram, NullRendererTakesEverything) {
  BlockFolder const folder;
  ProgramRun const run = View(folder,
      "[model]\nfile = block.obj\n[light]\nposition = 0, 0, 9\n[light]\ntype = directional\ndirection = 1, 0, -1\n"
      "[fog]\nmode = exp\ndensity = 0.01\n[sky]\ntime = 2026-06-21T20:30\ncondition = storm\n[ocean]\nlevel = -1\n",
      "--renderer null --stats --frames 3");
  EXPECT_EQ(run.m_nExitStatus, 0) << run.m_strError;
  EXPECT_EQ(run.m_strError, "");
  EXPECT_THAT(run.m_strOut, HasSubstr("lights             2\n"));
}

#ifdef QX_WITH_OGRE

QXPicture Draw(Folder const& folder, std::string const& strScene, std::string const& strOptions = "") {
  ProgramRun const run = View(folder, strScene, "--renderer ogre " + strOptions, WithDisplay);
  EXPECT_EQ(run.m_nExitStatus, 0) << run.m_strError;
  EXPECT_EQ(run.m_strError, "");
  return ReadPicture(folder.Path("out.png"));
}

Rgb At(QXPicture const& picture, int nX, int nY) {
  unsigned char const* p = picture.m_vecPixels.data() + 3 * static_cast<std::size_t>(nY * picture.m_nWidth + nX);
  return {p[0], p[1], p[2]};
}

int CountDifferent(QXPicture const& left, QXPicture const& right) {
  int nCount = 0;
  for (int y = 0; y < left.m_nHeight; ++y) {
    for (int x = 0; x < left.m_nWidth; ++x) {
      Rgb const a = At(left, x, y);
      Rgb const b = At(right, x, y);
      nCount += std::abs(a[0] - b[0]) + std::abs(a[1] - b[1]) + std::abs(a[2] - b[2]) > 12 ? 1 : 0;
    }
  }
  return nCount;
}

TEST(QXInstancesProgram, OgreDrawsInstancesAsItDrawsModels) {
  BlockFolder const folder;
  std::string const strHead = "[scene]\nground = no\n[camera]\neye = 6000010, -30, 20\nlook = 6000010, 0, 0\n";
  QXPicture const instances = Draw(folder, strHead + "[instances]\nfile = block.obj\nup = z\nplace = 6000000, 0, 0\n"
                                                     "place = 6000010, 0, 0, 30, 1.5\nplace = 6000020, 0, 0, 120\n");
  QXPicture const models =
      Draw(folder, strHead + "[model]\nfile = block.obj\nup = z\nposition = 6000000, 0, 0\n"
                             "[model]\nfile = block.obj\nup = z\nposition = 6000010, 0, 0\nheading = 30\nscale = 1.5\n"
                             "[model]\nfile = block.obj\nup = z\nposition = 6000020, 0, 0\nheading = 120\n");
  EXPECT_LT(CountDifferent(instances, models), 20);
  QXPicture const nothing = Draw(folder, strHead + "[model]\nfile = block.obj\nposition = 0, 0, 1e6\n");
  EXPECT_GT(CountDifferent(instances, nothing), 200);
}

/// A white plane seen from above.
std::string WritePlane(Folder const& folder) {
  folder.Write("plane.mtl", "newmtl white\nKd 1 1 1\n");
  folder.Write(
      "plane.obj", "mtllib plane.mtl\nv -50 -50 0\nv 50 -50 0\nv 50 50 0\nv -50 50 0\nusemtl white\nf 1 2 3 4\n");
  return "[camera]\neye = 0, -0.1, 60\nlook = 0, 0, 0\n[model]\nfile = plane.obj\nup = z\n";
}

TEST(QXInstancesProgram, OgreLightsWhatALampStandsOver) {
  BlockFolder const folder;
  QXPicture const picture = Draw(folder, "[scene]\nground = no\nsun = no\nambient = #101010\n" + WritePlane(folder) +
                                             "[light]\nposition = 0, 0, 5\ncolor = #FF0000\nrange = 12\n");
  Rgb const middle = At(picture, 60, 45);
  Rgb const edge = At(picture, 10, 45);
  EXPECT_GT(middle[0], 200);
  EXPECT_LT(middle[1], 40);
  EXPECT_LT(edge[0], 40);
  EXPECT_EQ(edge[0], edge[1]);
}

TEST(QXInstancesProgram, OgreHidesWhatStandsInTheFog) {
  BlockFolder const folder;
  std::string const strScene = "[scene]\nground = no\nbackground = #204060\n" + WritePlane(folder);
  Rgb const clear = At(Draw(folder, strScene), 60, 45);
  Rgb const fogged = At(Draw(folder, strScene + "[fog]\nmode = linear\nstart = 1\nend = 30\n"), 60, 45);
  EXPECT_GT(clear[0], 150);
  EXPECT_EQ(fogged, (Rgb{0x20, 0x40, 0x60}));
}

TEST(QXInstancesProgram, OgrePutsTheSceneUnderTheSkyOfItsTime) {
  BlockFolder const folder;
  std::string const strScene = "[scene]\nground = no\n[camera]\neye = 0, -20, 2\nlook = 0, 0, 5\n[model]\nfile = "
                               "block.obj\nup = z\n[sky]\ntime = 2026-06-21T12:00\nclouds = none\n";
  Rgb const noon = At(Draw(folder, strScene), 60, 5);
  Rgb const night = At(Draw(folder, strScene, "--time 2026-12-21T23:30"), 60, 5);
  EXPECT_GT(noon[2], noon[0]) << "blue";
  EXPECT_GT(noon[2], 120);
  EXPECT_LT(night[2], 60);
}

#endif

}  // namespace
}  // namespace QXApp
