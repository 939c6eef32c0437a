// Scenes as a person views them.
#include <tests/assimp/QXTestFiles.h>
#include <tests/qx3d/QXPngReader.h>
#include <tests/qx3d/QXProgramRun.h>
#include <tests/qx3d/QXTgaMaker.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>

namespace QXApp {
namespace {

using testing::HasSubstr;
using Folder = QXAssimp::QXTestFolder;
using Rgb = std::array<int, 3>;

/// A folder with a red block, 2 x 3 x 4 from its origin to the upper north-east.
struct BlockFolder : Folder {
  BlockFolder() {
    Write("block.obj", QXAssimp::ReadTestFile(QXAssimp::ModelPath("block.obj")));
    Write("block.mtl", QXAssimp::ReadTestFile(QXAssimp::ModelPath("block.mtl")));
  }
};

std::string Arguments(Folder const& folder, std::string const& strScene, std::string const& strOptions = "") {
  return "view " + Quote(folder.Write("a.qxscene", strScene)) + " --renderer null --size 64x48 --out " +
         Quote(folder.Path("out.png")) + " " + strOptions;
}

ProgramRun Show(Folder const& folder, std::string const& strScene, std::string const& strOptions = "") {
  ProgramRun const run = RunProgram(folder, Arguments(folder, strScene, strOptions));
  EXPECT_EQ(run.m_nExitStatus, 0) << run.m_strError;
  EXPECT_EQ(run.m_strError, "");
  return run;
}

/// Status 1, no picture, and just these lines, without program and file.
void ExpectProblems(Folder const& folder, std::string const& strArguments, std::string const& strScene,
    std::vector<std::string> const& vecParts) {
  ProgramRun const run = RunProgram(folder, strArguments);
  EXPECT_EQ(run.m_nExitStatus, 1);
  EXPECT_EQ(run.m_strOut, "");
  EXPECT_FALSE(std::filesystem::exists(folder.Path("out.png")));
  std::size_t nFrom = 0;
  for (std::string const& strPart : vecParts) {
    std::size_t const nTo = run.m_strError.find('\n', nFrom);
    ASSERT_NE(nTo, std::string::npos) << run.m_strError;
    EXPECT_EQ(run.m_strError.find("qx3d: " + strScene + ":" + strPart, nFrom), nFrom) << run.m_strError;
    nFrom = nTo + 1;
  }
  EXPECT_EQ(nFrom, run.m_strError.size()) << run.m_strError;
}

Rgb At(QXPicture const& picture, int nX, int nY) {
  unsigned char const* p =
      picture.m_vecPixels.data() +
      3 * (static_cast<std::size_t>(nY) * static_cast<std::size_t>(picture.m_nWidth) + static_cast<std::size_t>(nX));
  return {p[0], p[1], p[2]};
}

std::string const ThreeBlocks = "[scene]\nground = no\n[model]\nfile = block.obj\nup = z\n[model]\nfile = "
                                "./block.obj\nup = z\nposition = 10, 0, 0\n"
                                "[model]\nfile = block.obj\nup = z\nposition = 20, 0, 0\nheading = 45\nscale = 2\n";

TEST(QXSceneProgram, PlacedModelsAreDrawnTogether) {
  BlockFolder const folder;
  ProgramRun const run = Show(folder, ThreeBlocks, "--stats");
  EXPECT_THAT(run.m_strOut, HasSubstr("triangles          36 drawn; the scene has 36\n"));
  EXPECT_THAT(run.m_strOut, HasSubstr("draw operations    1\n"));
}

TEST(QXSceneProgram, NamesCountFromTheFolderOfTheScene) {
  BlockFolder const folder;
  std::filesystem::create_directory(folder.Path("sub"));
  std::string const strScene = folder.Write("sub/b.qxscene", "[model]\nfile = ../block.obj\n");
  ProgramRun const run = RunProgram(folder, "view b.qxscene --renderer null --out ../out.png",
      "cd " + Quote(folder.Path("sub")) + " && env -u DISPLAY -u WAYLAND_DISPLAY");
  EXPECT_EQ(run.m_nExitStatus, 0) << run.m_strError;
  EXPECT_TRUE(std::filesystem::exists(folder.Path("out.png")));
  ProgramRun const other = RunProgram(folder, "view " + Quote(strScene) + " --renderer null --out /dev/null/x");
  EXPECT_THAT(other.m_strError, testing::Not(HasSubstr("block.obj")));
}

TEST(QXSceneProgram, BackgroundIsBehindEverything) {
  BlockFolder const folder;
  Show(folder, "[scene]\nbackground = #204060\n[model]\nfile = block.obj\n");
  QXPicture const picture = ReadPicture(folder.Path("out.png"));
  EXPECT_EQ(At(picture, 5, 5), (Rgb{0x20, 0x40, 0x60}));
  EXPECT_EQ(At(picture, 60, 40), (Rgb{0x20, 0x40, 0x60}));
}

TEST(QXSceneProgram, GroundIsLeftOutByTheSceneOrTheCommandLine) {
  BlockFolder const folder;
  std::string const strScene = "[model]\nfile = block.obj\n";
  EXPECT_THAT(Show(folder, strScene, "--stats").m_strOut, HasSubstr("the scene has 12, the ground 48\n"));
  EXPECT_THAT(Show(folder, "[scene]\nground = yes\n" + strScene, "--stats --no-ground").m_strOut,
      HasSubstr("the scene has 12\n"));
  EXPECT_THAT(Show(folder, "[scene]\nground = no\n" + strScene, "--stats").m_strOut, HasSubstr("the scene has 12\n"));
}

TEST(QXSceneProgram, CommandLineGoesBeforeTheCamera) {
  BlockFolder const folder;
  std::string const strModel = "[scene]\nground = no\n[model]\nfile = block.obj\nup = z\n";
  std::string const strAway = "[camera]\neye = 0, -50, 2\nlook = 0, -100, 2\n" + strModel;
  EXPECT_THAT(Show(folder, strAway, "--stats").m_strOut, HasSubstr("triangles          0 drawn"));
  EXPECT_THAT(Show(folder, strAway, "--stats --look 0,0,2").m_strOut, HasSubstr("triangles          12 drawn"));
  EXPECT_THAT(Show(folder, strAway, "--stats --eye 0,-150,2").m_strOut, HasSubstr("triangles          12 drawn"));
  // One alone: the eye looks at the middle, the point is looked at obliquely.
  EXPECT_THAT(Show(folder, "[camera]\neye = 0, -50, 2\n" + strModel, "--stats").m_strOut,
      HasSubstr("triangles          12 drawn"));
  EXPECT_THAT(Show(folder, "[camera]\nlook = 5000, 0, 0\n" + strModel, "--stats").m_strOut,
      HasSubstr("triangles          0 drawn"));
}

TEST(QXSceneProgram, EyeOfTheSceneOnThePointOfTheCommandLineIsRefused) {
  BlockFolder const folder;
  std::string const strScene = "[camera]\neye = 1, 2, 3\n[model]\nfile = block.obj\n";
  ExpectProblems(
      folder, Arguments(folder, strScene, "--look 1,2,3"), folder.Path("a.qxscene"), {" the eye and the point"});
}

TEST(QXSceneProgram, UpAxisOfTheCommandLineIsForModelsWithoutOne) {
  BlockFolder const folder;
  // The block is 4 high with z up and 3 with y up; the eye sees a strip at 3.5.
  auto const drawn = [&](std::string const& strKey, std::string const& strOption) {
    return Show(folder,
        "[scene]\nground = no\n[camera]\neye = 1, -10, 3.5\nlook = 1, 0, 3.5\nfield-of-view = 1\n"
        "[model]\nfile = block.obj\n" +
            strKey,
        strOption + " --stats")
        .m_strOut;
  };
  EXPECT_THAT(drawn("", "--up z"), HasSubstr("triangles          12 drawn"));
  EXPECT_THAT(drawn("", "--up y"), HasSubstr("triangles          0 drawn"));
  EXPECT_THAT(drawn("up = z\n", "--up y"), HasSubstr("triangles          12 drawn"));
  EXPECT_THAT(drawn("up = auto\n", "--up y"), HasSubstr("triangles          0 drawn"));
}

TEST(QXSceneProgram, AllProblemsOfAFileAreToldAtOnce) {
  BlockFolder const folder;
  std::string const strScene = folder.Path("a.qxscene");
  ExpectProblems(folder,
      Arguments(folder, "[scne]\n[model]\nfile = gone.obj\nheading = nan\n[icon]\nimage = block.obj\nsize = 0\n"),
      strScene,
      {"1: there is no section [scne]; ", "3: " + folder.Path("gone.obj") + ": no such file; ", "4: 'nan' is no number",
          "5: [icon] lacks 'position'; ", "7: '0' is no size; "});
  ExpectProblems(folder, Arguments(folder, ""), strScene, {" there is nothing to show; "});
  ExpectProblems(folder, Arguments(folder, "[model]\nfile = a.qxscene\n"), strScene,
      {"2: 'a.qxscene' is a scene, and a scene holds no scenes; "});
  ExpectProblems(
      folder, Arguments(folder, "[model]\nfile = block.obj\nx = \x1B[31m\n"), strScene, {"3: [model] has no key 'x'"});
}

TEST(QXSceneProgram, ModelsThatCannotBeReadAreToldAtTheirLines) {
  BlockFolder const folder;
  folder.Write("bad.glb", "glTF?");
  folder.Write("corners.obj", "v 0 0 0\n");
  folder.Write("text.doc", "x");
  ExpectProblems(folder,
      Arguments(folder, "[model]\nfile = bad.glb\n[model]\nfile = block.obj\n[model]\nfile = "
                        "corners.obj\n[model]\nfile = text.doc\n"),
      folder.Path("a.qxscene"),
      {"2: " + folder.Path("bad.glb") + ": ", "6: " + folder.Path("corners.obj") + ": ",
          "8: " + folder.Path("text.doc") + ": "});
}

TEST(QXSceneProgram, ScenesThatAreNotThereAreTold) {
  Folder const folder;
  auto const expect = [&folder](std::string const& strScene, std::string const& strPart) {
    ExpectProblems(folder, "view " + Quote(strScene) + " --renderer null --out " + Quote(folder.Path("out.png")),
        strScene, {strPart});
  };
  expect(folder.Path("gone.qxscene"), " no such file; ");
  std::filesystem::create_directory(folder.Path("dir.qxscene"));
  expect(folder.Path("dir.qxscene"), " this is a directory; ");
  ExpectProblems(folder,
      "atlas " + Quote(folder.Write("a.obj", "v 0 0 0\n")) + " --renderer null --out " + Quote(folder.Path("d")),
      folder.Path("a.obj"), {" this is no scene by its name; "});
}

TEST(QXSceneProgram, MissingPictureOfAModelIsOneLineAndTheSceneIsShown) {
  BlockFolder const folder;
  folder.Write("sign.mtl", "newmtl m\nmap_Kd gone.png\n");
  folder.Write("sign.obj", "mtllib sign.mtl\nv 0 0 0\nv 1 0 0\nv 0 1 1\nvt 0 0\nusemtl m\nf 1/1 2/1 3/1\n");
  ProgramRun const run = RunProgram(folder, Arguments(folder, "[model]\nfile = sign.obj\n[model]\nfile = block.obj\n"));
  EXPECT_EQ(run.m_nExitStatus, 0);
  EXPECT_EQ(run.m_strError, "qx3d: picture " + folder.Path("gone.png") + ": no such file; put it beside the model\n");
}

TEST(QXSceneProgram, IconsAloneAreAScene) {
  Folder const folder;
  folder.Write("i.tga", MakeTga(4, 4, {0, 0, 255, 255}));
  ProgramRun const run = Show(folder, "[icon]\nimage = i.tga\nposition = 604099, 5792153, 70\n", "--stats");
  EXPECT_THAT(run.m_strOut, HasSubstr("the scene has 0\n")) << "no ground under a single point";
  EXPECT_THAT(
      Show(folder, "[icon]\nimage = i.tga\nposition = 0, 0, 0\n[icon]\nimage = i.tga\nposition = 9, 0, 0\n", "--stats")
          .m_strOut,
      HasSubstr("the scene has 0, the ground 48\n"));
}

#if defined(QX_WITH_OGRE)

QXPicture Draw(Folder const& folder, std::string const& strScene, std::string const& strOptions = "") {
  std::filesystem::remove(folder.Path("out.png"));
  ProgramRun const run = RunProgram(folder,
      "view " + Quote(folder.Write("a.qxscene", strScene)) + " --renderer ogre --size 160x120 --out " +
          Quote(folder.Path("out.png")) + " " + strOptions,
      WithDisplay);
  EXPECT_EQ(run.m_nExitStatus, 0) << run.m_strError;
  EXPECT_EQ(run.m_strError, "");
  return ReadPicture(folder.Path("out.png"));
}

bool IsRed(Rgb const& rgb) {
  return rgb[0] > 2 * rgb[1] && rgb[0] > 2 * rgb[2];
}

/// Width of what is red in a row.
int CountRed(QXPicture const& picture, int nY) {
  int nCount = 0;
  for (int x = 0; x < picture.m_nWidth; ++x) nCount += IsRed(At(picture, x, nY)) ? 1 : 0;
  return nCount;
}

/// Pixels that differ by more than rounding.
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

/// Blocks seen from straight above, 60 pixels of a side to tan(0.275) of 100 units: 2.13 pixels a unit.
std::string FromAbove(std::string const& strModels, double dEast = 0.0, double dNorth = 0.0) {
  std::string const strPlace = std::to_string(dEast) + ", " + std::to_string(dNorth) + ", ";
  return "[scene]\nbackground = #000000\nground = no\n[camera]\neye = " + strPlace + "100\nlook = " + strPlace + "0\n" +
         strModels;
}

TEST(QXSceneProgramWithDevice, ModelsStandWhereTheyArePlaced) {
  BlockFolder const folder;
  // 20 wide, 30 deep: to the north-east of its place, and headed east to the south-east of it.
  QXPicture const picture =
      Draw(folder, FromAbove("[model]\nfile = block.obj\nup = z\nscale = 10\nposition = 5, 0, -40\n"
                             "[model]\nfile = block.obj\nup = z\nscale = 10\nposition = -30, 0, -40\nheading = 90\n"));
  auto const at = [&picture](double dEast, double dNorth) {
    // Near the roofs at height 0.
    return IsRed(At(picture, static_cast<int>(80.0 + 2.13 * dEast), static_cast<int>(60.0 - 2.13 * dNorth)));
  };
  EXPECT_TRUE(at(8.0, 3.0));
  EXPECT_TRUE(at(22.0, 26.0));
  EXPECT_FALSE(at(28.0, 5.0));
  EXPECT_FALSE(at(8.0, -5.0));
  EXPECT_TRUE(at(-27.0, -3.0));
  EXPECT_TRUE(at(-3.0, -17.0));
  EXPECT_FALSE(at(-27.0, 5.0));
  EXPECT_FALSE(at(-15.0, -24.0));
}

TEST(QXSceneProgramWithDevice, LargeCoordinatesShowTheSamePicture) {
  BlockFolder const folder;
  auto const model = [](double dEast, double dNorth) {
    return "[model]\nfile = block.obj\nup = z\nscale = 10\nheading = 30\nposition = " + std::to_string(dEast) + ", " +
           std::to_string(dNorth) + ", -40\n";
  };
  QXPicture const near = Draw(folder, FromAbove(model(0.0, 0.0)));
  QXPicture const far = Draw(folder, FromAbove(model(604099.125, 5792153.375), 604099.125, 5792153.375));
  EXPECT_LT(CountDifferent(near, far), 10) << "corners of pixels at the edges";
  EXPECT_GT(CountRed(near, 60), 30);
  // The same with a second one eight thousand kilometres away.
  QXPicture const wide =
      Draw(folder, FromAbove(model(604099.125, 5792153.375) + model(-8000000.0, 5792153.375), 604099.125, 5792153.375));
  EXPECT_LT(CountDifferent(near, wide), 10);
}

TEST(QXSceneProgramWithDevice, WiderFieldOfViewShowsMore) {
  BlockFolder const folder;
  std::string const strModel = "[model]\nfile = block.obj\nup = z\nscale = 10\nposition = -10, -15, -40\n";
  int const nUsual = CountRed(Draw(folder, FromAbove(strModel)), 60);
  std::string strWide = FromAbove(strModel);
  strWide.replace(strWide.find("[camera]\n"), 9, "[camera]\nfield-of-view = 90\n");
  int const nWide = CountRed(Draw(folder, strWide), 60);
  // tan(0.275) to tan(45 degrees).
  EXPECT_NEAR(nUsual * 0.282, nWide, 2.0);
  EXPECT_GT(nWide, 5);
}

TEST(QXSceneProgramWithDevice, SceneIsFramedWithItsIcons) {
  BlockFolder const folder;
  folder.Write("i.tga", MakeTga(4, 4, {0, 255, 0, 255}));
  QXPicture const picture = Draw(folder,
      "[scene]\nground = no\nbackground = #000000\n[model]\nfile = block.obj\nup = z\n[icon]\nimage = i.tga\n"
      "position = 40, 0, 5\nsize = 12\n");
  bool bIcon = false;
  bool bBlock = false;
  for (int y = 0; y < 120; ++y) {
    for (int x = 0; x < 160; ++x) {
      Rgb const rgb = At(picture, x, y);
      bIcon = bIcon || (rgb[1] > 200 && rgb[0] < 50 && x > 100);
      bBlock = bBlock || (IsRed(rgb) && x < 60);
    }
  }
  EXPECT_TRUE(bIcon);
  EXPECT_TRUE(bBlock);
}

#endif

}  // namespace
}  // namespace QXApp
