// Baking as a person does it, and what comes of it.
#include <apps/qx3d/QXPngWriter.h>

#include <tests/assimp/QXTestFiles.h>
#include <tests/assimp/QXTexturedModels.h>
#include <tests/qx3d/QXPngReader.h>
#include <tests/qx3d/QXProgramRun.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <set>

namespace QXApp {
namespace {

using testing::HasSubstr;
using Folder = QXAssimp::QXTestFolder;

std::string Block() {
  return QXAssimp::ModelPath("block.obj");
}

ProgramRun Bake(Folder const& folder, std::string const& strArguments) {
  return RunProgram(folder, "bake " + strArguments);
}

ProgramRun View(Folder const& folder, std::string const& strPath, std::string const& strOptions = "") {
  ProgramRun const run = RunProgram(folder, "view " + Quote(strPath) + " --renderer null --size 64x48 --stats --out " +
                                                Quote(folder.Path("out.png")) + " " + strOptions);
  EXPECT_EQ(run.m_nExitStatus, 0) << run.m_strError;
  return run;
}

/// One line that holds all parts, and status 1.
void ExpectFailure(ProgramRun const& run, std::vector<std::string> const& vecParts) {
  EXPECT_EQ(run.m_nExitStatus, 1);
  EXPECT_EQ(run.m_strError.find("qx3d: "), 0u) << run.m_strError;
  EXPECT_EQ(run.m_strError.find('\n'), run.m_strError.size() - 1) << run.m_strError;
  for (std::string const& strPart : vecParts) EXPECT_THAT(run.m_strError, HasSubstr(strPart));
}

std::string BlocksScene(int nCount) {
  std::string strScene;
  for (int i = 0; i < nCount; ++i)
    strScene += "[model]\nfile = block.obj\nup = z\nposition = " + std::to_string(604000 + 10 * i) + ", 5792000, 70\n";
  return strScene;
}

/// A folder with a red block and a scene of many.
struct TownFolder : Folder {
  TownFolder() {
    Write("block.obj", QXAssimp::ReadTestFile(Block()));
    Write("block.mtl", QXAssimp::ReadTestFile(QXAssimp::ModelPath("block.mtl")));
    Write("town.qxscene", BlocksScene(40));
  }
};

TEST(QXBakeProgram, SceneBecomesAFileThatIsShownInItsPlace) {
  TownFolder const folder;
  ProgramRun const run = Bake(folder, Quote(folder.Path("town.qxscene")) + " -o " + Quote(folder.Path("town.qsg")));
  EXPECT_EQ(run.m_nExitStatus, 0) << run.m_strError;
  EXPECT_EQ(run.m_strError, "");
  EXPECT_THAT(run.m_strOut, HasSubstr("40 objects, 480 triangles in 1 bucket, "));
  EXPECT_THAT(ReadText(folder.Path("town.qsg.qxscene")),
      HasSubstr("[static]\nfile = town.qsg\nposition = 604196, 5792002, 72\n"));
  EXPECT_FALSE(std::filesystem::exists(folder.Path("town.qsg.textures")));
  ProgramRun const view = View(folder, folder.Path("town.qsg"));
  EXPECT_THAT(view.m_strOut, HasSubstr("the model has 480, the ground 48\n"));
  EXPECT_THAT(view.m_strOut, HasSubstr("merged             40 meshes into 1 range\n"));
  // The eye stands where the scene's first block is.
  for (char const* szPath : {"town.qsg", "town.qsg.qxscene", "town.qxscene"})
    EXPECT_THAT(
        View(folder, folder.Path(szPath), "--no-ground --eye 604001,5791980,72 --look 604001,5792000,72").m_strOut,
        HasSubstr("triangles          480 drawn"))
        << szPath;
  EXPECT_THAT(
      View(folder, folder.Path("town.qsg"), "--no-ground --eye 604001,5791980,72 --look 604001,5700000,72").m_strOut,
      HasSubstr("triangles          0 drawn"));
}

TEST(QXBakeProgram, FileIsPlacedBySceneAndBesideModels) {
  TownFolder const folder;
  ASSERT_EQ(
      Bake(folder, Quote(folder.Path("town.qxscene")) + " -o " + Quote(folder.Path("town.qsg"))).m_nExitStatus, 0);
  folder.Write("both.qxscene", "[scene]\nground = no\n[static]\nfile = town.qsg\nposition = 10, 20, 30\n"
                               "[static]\nfile = town.qsg\n[model]\nfile = block.obj\n");
  EXPECT_THAT(View(folder, folder.Path("both.qxscene")).m_strOut, HasSubstr("the scene has 972\n"));
}

TEST(QXBakeProgram, SameInputGivesTheSameBytes) {
  TownFolder const folder;
  std::vector<unsigned char> vecFirst;
  for (char const* szName : {"a.qsg", "b.qsg"}) {
    ASSERT_EQ(Bake(folder, Quote(folder.Path("town.qxscene")) + " " + Quote(QXAssimp::ModelPath("block.gltf")) + " " +
                               Quote(Block()) + " -o " + Quote(folder.Path(szName)))
                  .m_nExitStatus,
        0);
    std::vector<unsigned char> const vecBytes = QXAssimp::ReadTestFile(folder.Path(szName));
    if (vecFirst.empty()) vecFirst = vecBytes;
    EXPECT_EQ(vecBytes, vecFirst);
  }
}

TEST(QXBakeProgram, PicturesGoIntoAFolderBesideIt) {
  Folder const folder;
  Folder const target;
  folder.Write("quarters.png", QXAssimp::ReadTestFile(QXAssimp::ModelPath("quarters.png")));
  folder.Write("sign.mtl", QXAssimp::MakeSignMtl("quarters.png", "1 1 1"));
  std::string const strModel = folder.Write("sign.obj", QXAssimp::MakeSignObj("sign.mtl"));
  ASSERT_EQ(Bake(folder, Quote(strModel) + " --up z -o " + Quote(target.Path("sign.qsg"))).m_nExitStatus, 0);
  EXPECT_TRUE(std::filesystem::exists(target.Path("sign.qsg.textures/1.png")));
  EXPECT_EQ(ReadText(target.Path("sign.qsg")).find(folder.Path()), std::string::npos) << "no path of this machine";
  ProgramRun const view = View(target, target.Path("sign.qsg"));
  EXPECT_EQ(view.m_strError, "");
  EXPECT_THAT(view.m_strOut, HasSubstr("textures           1\n"));
  // Moved with what belongs to it; then without.
  Folder const other;
  for (char const* szName : {"sign.qsg", "sign.qsg.qxscene"})
    std::filesystem::rename(target.Path(szName), other.Path(szName));
  EXPECT_THAT(View(other, other.Path("sign.qsg")).m_strError, HasSubstr("sign.qsg.textures/1.png: no such file"));
  std::filesystem::rename(target.Path("sign.qsg.textures"), other.Path("sign.qsg.textures"));
  EXPECT_EQ(View(other, other.Path("sign.qsg")).m_strError, "");
}

TEST(QXBakeProgram, UpgradeTakesThePicturesAlong) {
  Folder const folder;
  Folder const target;
  folder.Write("quarters.png", QXAssimp::ReadTestFile(QXAssimp::ModelPath("quarters.png")));
  folder.Write("sign.mtl", QXAssimp::MakeSignMtl("-clamp on quarters.png", "1 1 1"));
  std::string const strModel = folder.Write("sign.obj", QXAssimp::MakeSignObj("sign.mtl"));
  ASSERT_EQ(Bake(folder, Quote(strModel) + " --up z -o " + Quote(folder.Path("a.qsg"))).m_nExitStatus, 0);
  ASSERT_EQ(Bake(folder, Quote(folder.Path("a.qsg")) + " -o " + Quote(target.Path("b.qsg"))).m_nExitStatus, 0);
  EXPECT_EQ(QXAssimp::ReadTestFile(target.Path("b.qsg.textures/1.png")),
      QXAssimp::ReadTestFile(folder.Path("a.qsg.textures/1.png")));
  ProgramRun const view = View(target, target.Path("b.qsg"));
  EXPECT_EQ(view.m_strError, "");
  EXPECT_THAT(view.m_strOut, HasSubstr("textures           1\n"));
  // Passes and spheres name the picture beside the new file.
  std::string const strOut = RunProgram(target, "inspect " + Quote(target.Path("b.qsg"))).m_strOut;
  EXPECT_THAT(strOut, HasSubstr("texture b.qsg.textures/1.png\n"));
  EXPECT_THAT(strOut, HasSubstr("  b.qsg.textures/1.png, of 1 object\n"));
}

TEST(QXBakeProgram, WhatReachesTooFarForFloatsIsTold) {
  TownFolder const folder;
  auto const bake = [&](std::string const& strEast) {
    folder.Write(
        "wide.qxscene", "[model]\nfile = block.obj\n[model]\nfile = block.obj\nposition = " + strEast + ", 0, 0\n");
    ProgramRun const run = Bake(folder, Quote(folder.Path("wide.qxscene")) + " -o " + Quote(folder.Path("wide.qsg")));
    EXPECT_EQ(run.m_nExitStatus, 0);
    return run.m_strError;
  };
  EXPECT_EQ(bake("131000"), "");
  // 150 km from the middle floats have steps of 2 to the -6.
  EXPECT_THAT(
      bake("300000"), HasSubstr("it reaches 150001 units from its middle, where positions have steps of 0.0156; "));
}

TEST(QXBakeProgram, LabelsAndIconsAreToldToBeLeftOut) {
  TownFolder const folder;
  folder.Write("town.qxscene", BlocksScene(1) + "[label]\ntext = here\nposition = 0, 0, 0\n");
  ProgramRun const run = Bake(folder, Quote(folder.Path("town.qxscene")) + " -o " + Quote(folder.Path("town.qsg")));
  EXPECT_EQ(run.m_nExitStatus, 0);
  EXPECT_THAT(run.m_strError, HasSubstr("town.qxscene: 1 label and 0 icons are no geometry"));
}

TEST(QXBakeProgram, WhatCannotBeBakedIsOneLineAndNoFile) {
  TownFolder const folder;
  std::string const strOut = folder.Path("out.qsg");
  auto const expect = [&](std::string const& strArguments, std::vector<std::string> const& vecParts) {
    ExpectFailure(Bake(folder, strArguments), vecParts);
    EXPECT_FALSE(std::filesystem::exists(strOut)) << strArguments;
  };
  expect(Quote(folder.Path("gone.obj")) + " -o " + Quote(strOut), {"gone.obj", "no such file"});
  expect(Quote(Block()) + " -o " + Quote(folder.Path("out.bin")), {"out.bin", ".qsg"});
  expect(Quote(Block()) + " -o " + Quote(folder.Path("no/out.qsg")), {"no folder"});
  std::filesystem::create_directory(folder.Path("dir.qsg"));
  expect(Quote(Block()) + " -o " + Quote(folder.Path("dir.qsg")), {"dir.qsg", "directory"});
  expect(Quote(Block()) + " -o " + Quote(folder.Path("a ;b.qsg")), {"cannot stand in a scene"});
  folder.Write("label.qxscene", "[label]\ntext = here\nposition = 0, 0, 0\n");
  EXPECT_THAT(Bake(folder, Quote(folder.Path("label.qxscene")) + " -o " + Quote(strOut)).m_strError,
      HasSubstr("nothing to bake"));
  EXPECT_FALSE(std::filesystem::exists(strOut));
  ASSERT_EQ(Bake(folder, Quote(Block()) + " -o " + Quote(folder.Path("a.qsg"))).m_nExitStatus, 0);
  expect(Quote(folder.Path("a.qsg")) + " " + Quote(Block()) + " -o " + Quote(strOut), {"a.qsg", "alone"});
  folder.Write("static.qxscene", "[static]\nfile = a.qsg\n");
  expect(Quote(folder.Path("static.qxscene")) + " -o " + Quote(strOut), {"static.qxscene", "baked already"});
}

TEST(QXBakeProgram, SceneOfAPersonIsNotReplaced) {
  TownFolder const folder;
  std::string const strMine = folder.Write("a.qsg.qxscene", "[model]\nfile = block.obj\n");
  ExpectFailure(Bake(folder, Quote(Block()) + " -o " + Quote(folder.Path("a.qsg"))), {strMine, "move it away"});
  EXPECT_EQ(ReadText(strMine), "[model]\nfile = block.obj\n");
  std::filesystem::remove(strMine);
  for (int i = 0; i < 2; ++i)
    EXPECT_EQ(Bake(folder, Quote(Block()) + " -o " + Quote(folder.Path("a.qsg"))).m_nExitStatus, 0) << "its own it may";
}

TEST(QXBakeProgram, FullDiskLeavesTheOldFile) {
  TownFolder const folder;
  std::string const strOut = folder.Write("a.qsg", "old");
  // Room for a few bytes only.
  ProgramRun const run = RunProgram(folder, "bake " + Quote(folder.Path("town.qxscene")) + " -o " + Quote(strOut),
      "bash -c 'ulimit -f 8; \"$0\" \"$@\"'");
  EXPECT_EQ(run.m_nExitStatus, 1);
  EXPECT_THAT(run.m_strError, HasSubstr("a.qsg: the file cannot be written"));
  EXPECT_EQ(ReadText(strOut), "old");
}

TEST(QXBakeProgram, InspectTellsWhatIsInAFile) {
  TownFolder const folder;
  ASSERT_EQ(
      Bake(folder, Quote(folder.Path("town.qxscene")) + " -o " + Quote(folder.Path("town.qsg"))).m_nExitStatus, 0);
  ProgramRun const run = RunProgram(folder, "inspect " + Quote(folder.Path("town.qsg")));
  EXPECT_EQ(run.m_nExitStatus, 0) << run.m_strError;
  for (char const* szLine : {"version            1.3\n", "placed at          604196, 5792002, 72\n",
           "buckets            0 32-bit, 1 16-bit, 0 typed 32-bit, 0 typed 16-bit\n",
           "vertices         960 of 3 numbers, with normals, with colours\n",
           "bounds           -196, -2, -2 to 196, 1, 2\n", "indices          level 0, 1440 of 2 bytes, no pass\n",
           "sub-objects      40\n", "verified           every count, index and position\n"})
    EXPECT_THAT(run.m_strOut, HasSubstr(szLine));
}

TEST(QXBakeProgram, DamagedFilesAreToldByTheirByte) {
  TownFolder const folder;
  ASSERT_EQ(
      Bake(folder, Quote(folder.Path("town.qxscene")) + " -o " + Quote(folder.Path("town.qsg"))).m_nExitStatus, 0);
  std::vector<unsigned char> vecBytes = QXAssimp::ReadTestFile(folder.Path("town.qsg"));
  // The first position becomes a NaN.
  for (std::size_t i = 40; i < 44; ++i) vecBytes[i] = 0xFF;
  std::string const strBad = folder.Write("bad.qsg", vecBytes);
  ExpectFailure(
      RunProgram(folder, "inspect " + Quote(strBad)), {strBad, "byte 40: among the positions", "bake it again"});
  ExpectFailure(RunProgram(folder, "view " + Quote(strBad) + " --renderer null --out " + Quote(folder.Path("out.png"))),
      {strBad, "byte 40: "});
  folder.Write("bad.qxscene", "[static]\nfile = bad.qsg\n");
  ExpectFailure(RunProgram(folder, "view " + Quote(folder.Path("bad.qxscene")) + " --renderer null --out " +
                                       Quote(folder.Path("out.png"))),
      {folder.Path("bad.qxscene") + ":2: " + strBad + ": byte 40: "});
  EXPECT_FALSE(std::filesystem::exists(folder.Path("out.png")));
  ExpectFailure(RunProgram(folder, "inspect " + Quote(folder.Path("gone.qsg"))), {"gone.qsg", "no such file"});
}

TEST(QXBakeProgram, FileWithoutBucketsIsWholeAndNothingToShow) {
  Folder const folder;
  std::vector<unsigned char> vecBytes(32);
  double const dVersion = 1.3;
  std::memcpy(vecBytes.data(), &dVersion, sizeof dVersion);
  std::string const strPath = folder.Write("none.qsg", vecBytes);
  EXPECT_EQ(RunProgram(folder, "inspect " + Quote(strPath)).m_nExitStatus, 0);
  ExpectFailure(
      RunProgram(folder, "view " + Quote(strPath) + " --renderer null --out " + Quote(folder.Path("out.png"))),
      {strPath, "no vertices"});
}

TEST(QXBakeProgram, OlderFilesAreUpgraded) {
  TownFolder const folder;
  ASSERT_EQ(Bake(folder, Quote(Block()) + " -o " + Quote(folder.Path("new.qsg"))).m_nExitStatus, 0);
  // Version 1.2 has all but the spheres, whose count is the last of the file.
  std::vector<unsigned char> vecBytes = QXAssimp::ReadTestFile(folder.Path("new.qsg"));
  double const dVersion = 1.2;
  std::memcpy(vecBytes.data(), &dVersion, sizeof dVersion);
  vecBytes.resize(vecBytes.size() - 4);
  folder.Write("old.qsg", vecBytes);
  folder.Write("old.qsg.qxscene", "[static]\nfile = old.qsg\nposition = 7, 8, 9.5\n");
  EXPECT_THAT(
      RunProgram(folder, "inspect " + Quote(folder.Path("old.qsg"))).m_strOut, HasSubstr("version            1.2\n"));
  EXPECT_EQ(Bake(folder, Quote(folder.Path("old.qsg")) + " -o " + Quote(folder.Path("up.qsg"))).m_nExitStatus, 0);
  EXPECT_EQ(QXAssimp::ReadTestFile(folder.Path("up.qsg")), QXAssimp::ReadTestFile(folder.Path("new.qsg")));
  EXPECT_THAT(RunProgram(folder, "inspect " + Quote(folder.Path("up.qsg"))).m_strOut,
      HasSubstr("placed at          7, 8, 9.5\n"));
}

/// So many signs, each with a picture of its own in the folder.
std::string WriteSigns(Folder const& folder, int nCount) {
  std::string strScene;
  for (int i = 0; i < nCount; ++i) {
    std::string const strNumber = std::to_string(i);
    // A grey of its own.
    std::vector<unsigned char> const vecPixels(2 * 2 * 4, static_cast<unsigned char>(20 * i + 1));
    EXPECT_EQ(QXPngWriter::Write(folder.Path("p" + strNumber + ".png"), 2, 2, vecPixels.data()), "");
    folder.Write("s" + strNumber + ".mtl", QXAssimp::MakeSignMtl("p" + strNumber + ".png", "1 1 1"));
    folder.Write("s" + strNumber + ".obj", QXAssimp::MakeSignObj("s" + strNumber + ".mtl"));
    strScene += "[model]\nup = z\nfile = s" + strNumber + ".obj\nposition = " + std::to_string(5 * i) + ", 0, 0\n";
  }
  return folder.Write("signs.qxscene", strScene);
}

TEST(QXBakeProgram, FileWrittenInItsOwnPlaceKeepsItsPictures) {
  // In the order of their names 10 comes before 2.
  Folder const folder;
  std::string const strOut = Quote(folder.Path("signs.qsg"));
  ASSERT_EQ(Bake(folder, Quote(WriteSigns(folder, 12)) + " -o " + strOut).m_nExitStatus, 0);
  std::vector<unsigned char> const vecFile = QXAssimp::ReadTestFile(folder.Path("signs.qsg"));
  auto const picture = [&folder](int i) {
    return QXAssimp::ReadTestFile(folder.Path("signs.qsg.textures/" + std::to_string(i) + ".png"));
  };
  std::vector<std::vector<unsigned char>> vecPictures;
  for (int i = 1; i <= 12; ++i) vecPictures.push_back(picture(i));
  EXPECT_NE(vecPictures[1], vecPictures[9]);
  ProgramRun const run = Bake(folder, strOut + " -o " + strOut);
  EXPECT_EQ(run.m_nExitStatus, 0) << run.m_strError;
  EXPECT_EQ(run.m_strError, "");
  EXPECT_EQ(QXAssimp::ReadTestFile(folder.Path("signs.qsg")), vecFile);
  for (int i = 1; i <= 12; ++i) EXPECT_EQ(picture(i), vecPictures[static_cast<std::size_t>(i - 1)]) << i;
}

TEST(QXBakeProgram, PicturesOfAnUpgradedFileComeAlongAndReplaceNoneThatStay) {
  Folder const folder;
  Folder const other;
  ASSERT_EQ(Bake(folder, Quote(WriteSigns(folder, 3)) + " -o " + Quote(folder.Path("signs.qsg"))).m_nExitStatus, 0);
  ProgramRun const run = Bake(folder, Quote(folder.Path("signs.qsg")) + " -o " + Quote(other.Path("b.qsg")));
  EXPECT_EQ(run.m_strError, "");
  for (int i = 1; i <= 3; ++i)
    EXPECT_EQ(ReadText(other.Path("b.qsg.textures/" + std::to_string(i) + ".png")),
        ReadText(folder.Path("signs.qsg.textures/" + std::to_string(i) + ".png")));
  EXPECT_EQ(View(other, other.Path("b.qsg")).m_strError, "");
  // One that stands where the new ones go keeps its number, and the others take those behind it.
  std::filesystem::create_directory(folder.Path("mixed.qsg.textures"));
  std::filesystem::rename(folder.Path("signs.qsg.textures/3.png"), folder.Path("mixed.qsg.textures/1.png"));
  std::string const strKept = ReadText(folder.Path("mixed.qsg.textures/1.png"));
  std::string strFile = ReadText(folder.Path("signs.qsg"));
  std::string const strOld = "signs.qsg.textures/3.png";
  for (std::size_t n = strFile.find(strOld); n != std::string::npos; n = strFile.find(strOld))
    strFile.replace(n, strOld.size(), "mixed.qsg.textures/1.png");
  folder.Write("signs.qsg", strFile);
  ASSERT_EQ(Bake(folder, Quote(folder.Path("signs.qsg")) + " -o " + Quote(folder.Path("mixed.qsg"))).m_nExitStatus, 0);
  EXPECT_EQ(ReadText(folder.Path("mixed.qsg.textures/1.png")), strKept);
  for (int i = 2; i <= 3; ++i)
    EXPECT_EQ(ReadText(folder.Path("mixed.qsg.textures/" + std::to_string(i) + ".png")),
        ReadText(folder.Path("signs.qsg.textures/" + std::to_string(i - 1) + ".png")));
  EXPECT_EQ(View(folder, folder.Path("mixed.qsg")).m_strError, "");
}

TEST(QXBakeProgram, PlaceIsNotLostWithTheSceneBesideIt) {
  TownFolder const folder;
  ASSERT_EQ(Bake(folder, Quote(folder.Path("town.qxscene")) + " -o " + Quote(folder.Path("a.qsg"))).m_nExitStatus, 0);
  folder.Write("a.qsg.qxscene", "[static]\nfile = a.qsg\nposition = 604196, 57920\n");
  std::string const strPlace = folder.Path("a.qsg.qxscene") + ":3: ";
  ExpectFailure(Bake(folder, Quote(folder.Path("a.qsg")) + " -o " + Quote(folder.Path("b.qsg"))), {strPlace});
  EXPECT_FALSE(std::filesystem::exists(folder.Path("b.qsg")));
  ExpectFailure(RunProgram(folder,
                    "view " + Quote(folder.Path("a.qsg")) + " --renderer null --out " + Quote(folder.Path("out.png"))),
      {strPlace});
  EXPECT_THAT(RunProgram(folder, "inspect " + Quote(folder.Path("a.qsg"))).m_strOut,
      HasSubstr("placed at          " + strPlace));
}

TEST(QXViewMerging, StatsTellHowManyOperationsMergingSaves) {
  TownFolder const folder;
  EXPECT_THAT(View(folder, folder.Path("town.qxscene"), "--no-ground").m_strOut,
      testing::AllOf(HasSubstr("draw operations    1\n"), HasSubstr("merged             40 meshes into 1 range\n")));
  EXPECT_THAT(View(folder, folder.Path("town.qxscene"), "--no-ground --no-merge").m_strOut,
      testing::AllOf(HasSubstr("draw operations    40\n"), HasSubstr("merged             40 meshes into 40 ranges\n"),
          HasSubstr("triangles          480 drawn; the scene has 480\n")));
}

TEST(QXViewMerging, MeshToMarkMustBeThereAndMerged) {
  TownFolder const folder;
  auto const view = [&](std::string const& strOptions) {
    return RunProgram(folder, "view " + Quote(folder.Path("town.qxscene")) + " --renderer null --size 8x8 --out " +
                                  Quote(folder.Path("out.png")) + " " + strOptions);
  };
  EXPECT_EQ(view("--highlight 40").m_nExitStatus, 0);
  ExpectFailure(view("--highlight 41"), {"--highlight 41: there are 40 merged meshes"});
  ExpectFailure(view("--highlight 1 --no-merge"), {"leave --no-merge out"});
  EXPECT_EQ(view("--highlight 0").m_nExitStatus, 2);
}

#if defined(QX_WITH_OGRE)

QXPicture Draw(Folder const& folder, std::string const& strPath, std::string const& strOptions) {
  std::filesystem::remove(folder.Path("out.png"));
  ProgramRun const run = RunProgram(folder,
      "view " + Quote(strPath) + " --renderer ogre --size 200x150 --out " + Quote(folder.Path("out.png")) + " " +
          strOptions,
      WithDisplay);
  EXPECT_EQ(run.m_nExitStatus, 0) << run.m_strError;
  EXPECT_EQ(run.m_strError, "");
  return ReadPicture(folder.Path("out.png"));
}

/// Pixels that differ by more than rounding.
int CountDifferent(QXPicture const& left, QXPicture const& right) {
  int nCount = 0;
  for (std::size_t i = 0; i < left.m_vecPixels.size(); i += 3) {
    int nDifference = 0;
    for (std::size_t j = i; j < i + 3; ++j) nDifference += std::abs(left.m_vecPixels[j] - right.m_vecPixels[j]);
    nCount += nDifference > 12 ? 1 : 0;
  }
  return nCount;
}

/// Colours of a picture, as a check that something is seen.
std::size_t CountColors(QXPicture const& picture) {
  std::set<int> setColors;
  for (std::size_t i = 0; i < picture.m_vecPixels.size(); i += 3)
    setColors.insert(picture.m_vecPixels[i] << 16 | picture.m_vecPixels[i + 1] << 8 | picture.m_vecPixels[i + 2]);
  return setColors.size();
}

/// Blocks turned and scaled, signs with pictures that repeat and keep to their edge, and panes.
std::string WriteMixedScene(Folder const& folder) {
  folder.Write("block.obj", QXAssimp::ReadTestFile(Block()));
  folder.Write("block.mtl", QXAssimp::ReadTestFile(QXAssimp::ModelPath("block.mtl")));
  folder.Write("quarters.png", QXAssimp::ReadTestFile(QXAssimp::ModelPath("quarters.png")));
  folder.Write("sign.mtl", QXAssimp::MakeSignMtl("quarters.png", "1 1 1"));
  folder.Write("clamp.mtl", QXAssimp::MakeSignMtl("-clamp on quarters.png", "1 1 1"));
  folder.Write("sign.obj", QXAssimp::MakeSignObj("sign.mtl"));
  folder.Write("clamp.obj", QXAssimp::MakeSignObj("clamp.mtl"));
  folder.Write("pane.mtl", "newmtl blue\nKd 0 0 1\nd 0.5\n");
  folder.Write("pane.obj", "mtllib pane.mtl\nv 0 0 0\nv 4 0 0\nv 4 0 4\nv 0 0 4\nusemtl blue\nf 1 2 3 4\n");
  std::string strScene;
  for (int i = 0; i < 24; ++i) {
    char const* const szNames[] = {"block.obj", "sign.obj", "clamp.obj", "pane.obj"};
    strScene += std::string("[model]\nup = z\nfile = ") + szNames[i % 4] +
                "\nposition = " + std::to_string(604000 + 6 * (i % 6)) + ", " + std::to_string(5792000 + 7 * (i / 6)) +
                ", 70\nheading = " + std::to_string(7 * i) + "\nscale = " + std::to_string(1.0 + 0.03 * i) + "\n";
  }
  return folder.Write("mixed.qxscene", strScene);
}

TEST(QXViewMergingWithDevice, PicturesWithAndWithoutMergingAndBakedAreTheSame) {
  Folder const folder;
  std::string const strScene = WriteMixedScene(folder);
  QXPicture const merged = Draw(folder, strScene, "");
  EXPECT_GT(CountColors(merged), 100u);
  QXPicture const single = Draw(folder, strScene, "--no-merge");
  EXPECT_LT(CountDifferent(merged, single), 30) << "corners of pixels at the edges";
  ASSERT_EQ(Bake(folder, Quote(strScene) + " -o " + Quote(folder.Path("mixed.qsg"))).m_nExitStatus, 0);
  QXPicture const baked = Draw(folder, folder.Path("mixed.qsg"), "");
  // Panes of one file are blended in its order.
  EXPECT_LT(CountDifferent(merged, baked), 60);
}

TEST(QXViewMergingWithDevice, OneMergedMeshIsMarked) {
  TownFolder const folder;
  folder.Write("town.qxscene", BlocksScene(3));
  QXPicture const plain = Draw(folder, folder.Path("town.qxscene"), "--no-ground");
  // The middle of the three stands in the middle of the picture.
  std::size_t const nMiddle = 3 * (75 * 200 + 100);
  for (int i = 1; i <= 3; ++i) {
    QXPicture const marked = Draw(folder, folder.Path("town.qxscene"), "--no-ground --highlight " + std::to_string(i));
    EXPECT_GT(CountDifferent(plain, marked), 100) << i;
    bool bMiddle = false;
    for (std::size_t j = nMiddle; j < nMiddle + 3; ++j)
      bMiddle = bMiddle || std::abs(plain.m_vecPixels[j] - marked.m_vecPixels[j]) > 20;
    EXPECT_EQ(bMiddle, i == 2) << i;
  }
}

#endif

}  // namespace
}  // namespace QXApp
