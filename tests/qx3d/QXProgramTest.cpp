// The program as a person runs it.
#include <tests/assimp/QXTestFiles.h>
#include <tests/assimp/QXTexturedModels.h>
#include <tests/qx3d/QXGifMaker.h>
#include <tests/qx3d/QXPngReader.h>
#include <tests/qx3d/QXProgramRun.h>

#include <gtest/gtest.h>

#include <unistd.h>

namespace QXApp {
namespace {

using Folder = QXAssimp::QXTestFolder;

/// One line that holds all parts, the given status and no picture.
void ExpectFailure(Folder const& folder, std::string const& strArguments, int nExitStatus,
    std::vector<std::string> const& vecParts, std::string const& strLauncher = WithoutDisplay) {
  ProgramRun const run = RunProgram(folder, strArguments, strLauncher);
  EXPECT_EQ(run.m_nExitStatus, nExitStatus) << strArguments;
  EXPECT_EQ(run.m_strOut, "") << strArguments;
  EXPECT_EQ(run.m_strError.find("qx3d: "), 0u) << run.m_strError;
  EXPECT_EQ(run.m_strError.find('\n'), run.m_strError.size() - 1) << run.m_strError;
  for (std::string const& strPart : vecParts)
    EXPECT_NE(run.m_strError.find(strPart), std::string::npos) << strPart << " in: " << run.m_strError;
  EXPECT_FALSE(std::filesystem::exists(folder.Path("out.png"))) << strArguments;
}

std::string ViewArguments(Folder const& folder, std::string const& strModel) {
  return "view " + Quote(strModel) + " --renderer null --out " + Quote(folder.Path("out.png"));
}

std::string Block() {
  return QXAssimp::ModelPath("block.obj");
}

TEST(QXProgram, NullRendererWritesItsClearedPicture) {
  Folder const folder;
  ProgramRun const run = RunProgram(folder, ViewArguments(folder, Block()) + " --size 64x48");
  EXPECT_EQ(run.m_nExitStatus, 0) << run.m_strError;
  EXPECT_EQ(run.m_strOut, "");
  EXPECT_EQ(run.m_strError, "");
  QXPicture const picture = ReadPicture(folder.Path("out.png"));
  ASSERT_EQ(picture.m_nWidth, 64);
  ASSERT_EQ(picture.m_nHeight, 48);
  // The sky: 0.78, 0.87, 0.95.
  for (std::size_t i = 0; i < picture.m_vecPixels.size(); i += 3) {
    ASSERT_NEAR(picture.m_vecPixels[i], 199, 1);
    ASSERT_NEAR(picture.m_vecPixels[i + 1], 222, 1);
    ASSERT_NEAR(picture.m_vecPixels[i + 2], 242, 1);
  }
}

TEST(QXProgram, StatsTellWhatWasDrawn) {
  Folder const folder;
  ProgramRun const run = RunProgram(folder, ViewArguments(folder, Block()) + " --stats --no-ground --frames 3");
  EXPECT_EQ(run.m_nExitStatus, 0) << run.m_strError;
  EXPECT_NE(run.m_strOut.find("renderer           null\n"), std::string::npos) << run.m_strOut;
  EXPECT_NE(run.m_strOut.find("size               1280 x 720, 1 viewport\n"), std::string::npos) << run.m_strOut;
  EXPECT_NE(run.m_strOut.find("triangles          12 drawn"), std::string::npos) << run.m_strOut;
  EXPECT_NE(run.m_strOut.find("vertices           24 drawn; the model has 24\n"), std::string::npos) << run.m_strOut;
  EXPECT_NE(run.m_strOut.find("draw operations    1\n"), std::string::npos) << run.m_strOut;
}

TEST(QXProgram, StatsTellTheGroundFromTheModel) {
  Folder const folder;
  ProgramRun const run = RunProgram(folder, ViewArguments(folder, Block()) + " --stats");
  EXPECT_NE(run.m_strOut.find("triangles          60 drawn; the model has 12, the ground 48\n"), std::string::npos)
      << run.m_strOut;
  EXPECT_NE(run.m_strOut.find("vertices           73 drawn; the model has 24, the ground 49\n"), std::string::npos)
      << run.m_strOut;
}

TEST(QXProgram, EveryViewDrawsTheModel) {
  Folder const folder;
  ProgramRun const run = RunProgram(folder, ViewArguments(folder, Block()) + " --stats --no-ground --views 5");
  EXPECT_EQ(run.m_nExitStatus, 0) << run.m_strError;
  EXPECT_NE(run.m_strOut.find("5 viewports"), std::string::npos) << run.m_strOut;
  EXPECT_NE(run.m_strOut.find("triangles          60 drawn"), std::string::npos) << run.m_strOut;
}

TEST(QXProgram, EyeThatLooksAwaySeesNothing) {
  Folder const folder;
  std::string const strArguments = ViewArguments(folder, Block()) + " --stats --no-ground --eye 0,-50,2 ";
  EXPECT_NE(RunProgram(folder, strArguments).m_strOut.find("triangles          12 drawn"), std::string::npos);
  EXPECT_NE(RunProgram(folder, strArguments + "--look 0,-100,2").m_strOut.find("triangles          0 drawn"),
      std::string::npos);
}

TEST(QXProgram, EveryFormatIsShown) {
  Folder const folder;
  for (char const* szName :
      {"block.3ds", "block.gltf", "block.glb", "block.ply", "block.stl", "block.dae", "block.fbx"}) {
    ProgramRun const run = RunProgram(folder, ViewArguments(folder, QXAssimp::ModelPath(szName)) + " --size 8x8");
    EXPECT_EQ(run.m_nExitStatus, 0) << szName << run.m_strError;
  }
}

TEST(QXProgram, BadModelsAreOneLineAndNoPicture) {
  Folder const folder;
  auto const expect = [&folder](std::string const& strModel, std::vector<std::string> vecParts) {
    vecParts.push_back(strModel);
    ExpectFailure(folder, ViewArguments(folder, strModel), 1, vecParts);
  };
  // Of these a line says what to do as well.
  expect(folder.Path("none.3ds"), {"no such file", "correct the name"});
  expect(folder.Write("random.glb", "glTF?"), {"binary glTF", "export it again"});
  expect(folder.Write("corners.obj", "v 0 0 0\nv 1 0 0\n"), {"no triangles"});
  expect(folder.Write("huge.obj", "v 0 0 0\nv 1e38 0 0\nv 0 1e38 1e38\nf 1 2 3\n"), {"1e15"});
  expect(folder.Write("empty.3ds", ""), {"empty"});
  expect(folder.Path(), {"directory"});
  expect(folder.Write("text.doc", "x"), {"unknown kind", ".3ds", ".fbx"});
  expect(folder.Write("random.3ds", std::string(500, '\x5A')), {"no 3DS file"});
  expect(QXAssimp::ModelPath("points.obj"), {"no triangles"});
  std::vector<unsigned char> vecBytes = QXAssimp::ReadTestFile(QXAssimp::ModelPath("block.3ds"));
  vecBytes.resize(vecBytes.size() / 2);
  expect(folder.Write("cut.3ds", vecBytes), {"cut off"});
}

TEST(QXProgram, NamesWithControlCharactersLeaveOneLine) {
  Folder const folder;
  ExpectFailure(folder, ViewArguments(folder, folder.Write("a\nb\x1B[31m.obj", "")), 1, {"a b [31m.obj"});
  ExpectFailure(folder, ViewArguments(folder, folder.Path("c\nd.obj")), 1, {"c d.obj", "no such file"});
}

TEST(QXProgram, MissingPluginFolderIsNamed) {
  Folder const folder;
  ExpectFailure(folder, ViewArguments(folder, Block()) + " --plugins " + Quote(folder.Path("none")), 1,
      {"--plugins", folder.Path("none")});
}

TEST(QXProgram, UnreadableModelIsNamed) {
  Folder const folder;
  std::string const strModel = folder.Write("secret.obj", "v 0 0 0\n");
  std::filesystem::permissions(strModel, std::filesystem::perms::none);
  // The superuser reads everything, unless the program is started without that right.
  std::string const strLauncher =
      geteuid() == 0 ? "setpriv --bounding-set=-dac_override,-dac_read_search" : WithoutDisplay;
  ExpectFailure(folder, ViewArguments(folder, strModel), 1, {strModel, "permissions"}, strLauncher);
}

TEST(QXProgram, BadOutputsAreNamedBeforeTheModelIsRead) {
  Folder const folder;
  auto const expect = [&folder](std::string const& strOut, std::string const& strPart) {
    ExpectFailure(folder, "view /nowhere/model.obj --renderer null --out " + Quote(strOut), 1, {strOut, strPart});
  };
  expect(folder.Path("no/out.png"), "no folder");
  expect(folder.Path(), "directory");
  expect("/dev/null", "regular file");
}

TEST(QXProgram, ImpossibleSizesLeaveWithOneAndWrongUsageWithTwo) {
  Folder const folder;
  for (char const* szSize : {"0x0", "100000x100000", "-5x7"})
    ExpectFailure(folder, ViewArguments(folder, Block()) + " --size " + szSize, 1, {szSize, "1 to 16384"});
  ExpectFailure(folder, ViewArguments(folder, Block()) + " --size huge", 2, {"'huge'", "1280x720"});
  ExpectFailure(folder, "view", 2, {"model", "--help"});
  ExpectFailure(folder, "", 2, {"--help"});
}

TEST(QXProgram, EyeOnItsTargetIsRefused) {
  Folder const folder;
  ExpectFailure(folder, ViewArguments(folder, Block()) + " --eye 1,2,3 --look 1,2,3", 1, {"--eye", "same point"});
}

TEST(QXProgram, UnknownRendererIsNamedWithTheKnownOnes) {
  Folder const folder;
  ExpectFailure(folder, "view " + Quote(Block()) + " --renderer nope --out " + Quote(folder.Path("out.png")), 1,
      {"'nope'", "null"});
}

TEST(QXProgram, WithoutADisplayAWindowIsRefusedWithTheWayOut) {
  Folder const folder;
  ExpectFailure(folder, "view " + Quote(Block()) + " --renderer null", 1, {"no display", "--out"});
}

/// Renderers by configurations of their own: each must be refused by name, whatever is wrong with it.
void ExpectRefused(
    std::string const& strIni, std::string const& strRenderer, std::vector<std::string> const& vecParts) {
  Folder const folder;
  Folder const plugins;
  plugins.Write("broken.so", "this is no module");
  plugins.Write("test.ini", strIni);
  ExpectFailure(folder,
      "view " + Quote(Block()) + " --plugins " + Quote(plugins.Path()) + " --renderer " + strRenderer + " --out " +
          Quote(folder.Path("out.png")),
      1, vecParts);
}

TEST(QXProgram, BadRenderersAreRefused) {
  ExpectRefused("[renderer]\nname = gone\nmodule = gone.so\n", "gone", {"gone.so"});
  ExpectRefused("[renderer]\nname = broken\nmodule = broken.so\n", "broken", {"broken.so"});
  ExpectRefused("[renderer]\nname = off\nmodule = broken.so\nenabled = false\n", "off", {"'off'"});
  ExpectRefused("[renderer\nname = half\n", "half", {"'half'", "test.ini"});
}

TEST(QXProgram, ModulesThatAreNoRenderersAreRefused) {
  std::string const strFolder = std::string(QX_BINARY_DIR) + "/tests/frame/plugins/";
  for (char const* szName : {"other_version", "no_version", "no_create", "no_destroy", "throwing", "unresolved"}) {
    std::string const strModule = strFolder + szName + ".so";
    ASSERT_TRUE(std::filesystem::exists(strModule)) << strModule;
    ExpectRefused("[renderer]\nname = bad\nmodule = " + strModule + "\n", "bad", {strModule});
  }
}

TEST(QXProgram, BadModelReaderIsRefused) {
  Folder const folder;
  Folder const plugins;
  plugins.Write("test.ini", "[model-reader]\nname = gone\nmodule = gone.so\nnumber = 0\n");
  ExpectFailure(
      folder, ViewArguments(folder, Block()) + " --plugins " + Quote(plugins.Path()), 1, {"no reader", "gone"});
}

/// A sign with its picture in a folder. @return  its path
std::string WriteSign(Folder const& folder, std::string const& strMap = "quarters.png") {
  folder.Write("quarters.png", QXAssimp::ReadTestFile(QXAssimp::ModelPath("quarters.png")));
  folder.Write("sign.mtl", QXAssimp::MakeSignMtl(strMap));
  return folder.Write("sign.obj", QXAssimp::MakeSignObj("sign.mtl"));
}

TEST(QXProgram, StatsCountTextures) {
  Folder const folder;
  ProgramRun const run = RunProgram(folder, ViewArguments(folder, WriteSign(folder)) + " --stats");
  EXPECT_EQ(run.m_nExitStatus, 0);
  EXPECT_EQ(run.m_strError, "");
  EXPECT_NE(run.m_strOut.find("textures           1\n"), std::string::npos) << run.m_strOut;
  EXPECT_NE(RunProgram(folder, ViewArguments(folder, Block()) + " --stats").m_strOut.find("textures           0\n"),
      std::string::npos);
}

TEST(QXProgram, MissingPictureIsOneLineAndTheModelIsShown) {
  Folder const folder;
  ProgramRun const run = RunProgram(folder, ViewArguments(folder, WriteSign(folder, "tex\\gone.png")) + " --stats");
  EXPECT_EQ(run.m_nExitStatus, 0);
  EXPECT_EQ(
      run.m_strError, "qx3d: picture " + folder.Path("tex/gone.png") + ": no such file; put it beside the model\n");
  EXPECT_NE(run.m_strOut.find("the model has 2,"), std::string::npos) << run.m_strOut;
  EXPECT_NE(run.m_strOut.find("textures           0\n"), std::string::npos) << run.m_strOut;
  EXPECT_TRUE(std::filesystem::exists(folder.Path("out.png")));
}

TEST(QXProgram, StripStandsInOnePicture) {
  Folder const folder;
  ProgramRun const run = RunProgram(folder, ViewArguments(folder, Block()) + " --size 20x10 --strip 3");
  EXPECT_EQ(run.m_nExitStatus, 0) << run.m_strError;
  QXPicture const picture = ReadPicture(folder.Path("out.png"));
  EXPECT_EQ(picture.m_nWidth, 60);
  EXPECT_EQ(picture.m_nHeight, 10);
  std::filesystem::remove(folder.Path("out.png"));
  ExpectFailure(folder, ViewArguments(folder, Block()) + " --size 1000x10 --strip 17", 1, {"--strip", "16384"});
  ExpectFailure(folder, "view " + Quote(Block()) + " --renderer null --strip 2", 1, {"--strip", "--out"});
}

std::string Inspect(Folder const& folder, std::string const& strPath) {
  ProgramRun const run = RunProgram(folder, "inspect " + Quote(strPath));
  EXPECT_EQ(run.m_nExitStatus, 0) << run.m_strError;
  EXPECT_EQ(run.m_strError, "");
  return run.m_strOut;
}

TEST(QXProgram, InspectTellsWhatATextureBecomes) {
  Folder const folder;
  std::string const strQuarters = QXAssimp::ModelPath("quarters.png");
  EXPECT_EQ(Inspect(folder, strQuarters),
      "file               " + strQuarters +
          "\ntype by name       .png\ntype by content    .png\nsize               8 x 8\n"
          "depth              24 bits a pixel\n"
          "loaded as          PF_R8G8B8 (10), 3 bytes a pixel: blue, green, red\nloaded size        8 x 8\n"
          "compression        0, none\nmip levels         4\ntransparency       none, every pixel is opaque\n"
          "frames             1\n");
  // 3 x 1 pixels, one of them clear.
  std::string const strClear =
      Inspect(folder, folder.Write("clear.tga", std::vector<unsigned char>{0, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 3, 0, 1,
                                                    0, 32, 0x28, 1, 2, 3, 255, 1, 2, 3, 255, 1, 2, 3, 0}));
  EXPECT_NE(strClear.find("depth              32 bits a pixel\n"), std::string::npos) << strClear;
  EXPECT_NE(strClear.find("PF_A8R8G8B8 (12)"), std::string::npos) << strClear;
  EXPECT_NE(strClear.find("loaded size        4 x 1\n"), std::string::npos) << strClear;
  EXPECT_NE(strClear.find("transparency       1 of 3 pixels\n"), std::string::npos) << strClear;
}

TEST(QXProgram, InspectTellsTheLevelsOfKtx2) {
  Folder const folder;
  std::string const strPixels = Inspect(folder, QXAssimp::DataPath("ktx2/bc1_rgb_64_srgb_mip.ktx2"));
  for (char const* szLine : {"type by content    .ktx2\n", "size               64 x 64\n", "PF_A8B8G8R8 (13)",
           "compression        0, none\n", "mip levels         7\n", "transparency       none"})
    EXPECT_NE(strPixels.find(szLine), std::string::npos) << szLine << " in: " << strPixels;
  std::string const strBlocks = Inspect(folder, QXAssimp::DataPath("ktx2/bc7_rgba_100x60_srgb_mip.ktx2"));
  for (char const* szLine : {"size               100 x 60\n", "loaded size        100 x 60\n", "BC7 blocks",
           "compression        0, BC7\n", "mip levels         7\n", "not known"})
    EXPECT_NE(strBlocks.find(szLine), std::string::npos) << szLine << " in: " << strBlocks;
}

TEST(QXProgram, InspectListsFramesWithTheirDelays) {
  Folder const folder;
  std::string const strThree = Inspect(folder, folder.Write("three.gif", MakeGif({0, 1, 2}, 25)));
  for (char const* szLine : {"type by content    .gif\n", "size               8 x 8\n", "compression        16,",
           "transparency       none", "frames             3, 750 ms in all\n", "delays in ms       250 250 250\n"})
    EXPECT_NE(strThree.find(szLine), std::string::npos) << szLine << " in: " << strThree;
  // Without a delay a tenth of a second.
  std::string const strTwo = Inspect(folder, folder.Write("two.gif", MakeGif({0, 3}, 0)));
  EXPECT_NE(strTwo.find("delays in ms       100 100\n"), std::string::npos) << strTwo;
  EXPECT_NE(strTwo.find("transparency       64 of 128 pixels\n"), std::string::npos) << strTwo;
}

TEST(QXProgram, InspectAddsDelaysUpBeyond32Bits) {
  Folder const folder;
  std::string const strLong = Inspect(folder, folder.Write("long.gif", MakeGif(std::vector<int>(4000, 1), 65535)));
  EXPECT_NE(strLong.find("frames             4000, 2621400000 ms in all\n"), std::string::npos);
}

TEST(QXProgram, OutputThatIsLostIsAFailure) {
  Folder const folder;
  ProgramRun const run =
      RunProgram(folder, "inspect " + Quote(QXAssimp::ModelPath("quarters.png")), "sh -c '\"$0\" \"$@\" > /dev/full'");
  EXPECT_EQ(run.m_nExitStatus, 1);
  EXPECT_NE(run.m_strError.find("cannot be written; "), std::string::npos) << run.m_strError;
}

TEST(QXProgram, StatsDoNotMeasureByAClockOfSteps) {
  Folder const folder;
  std::string const strModel = WriteSign(folder, "three.gif");
  folder.Write("three.gif", MakeGif({0, 1, 2}, 10));
  ProgramRun const run = RunProgram(folder, ViewArguments(folder, strModel) + " --stats --frame-time 70");
  EXPECT_EQ(run.m_strError, "");
  EXPECT_NE(
      run.m_strOut.find("not measured: an animated picture is shown, with frames 70 ms apart\n"), std::string::npos)
      << run.m_strOut;
}

TEST(QXProgram, InspectRefusesWithTheReasonAndAWayOut) {
  Folder const folder;
  std::vector<unsigned char> const vecPng = QXAssimp::ReadTestFile(QXAssimp::ModelPath("quarters.png"));
  auto const expect = [&folder](std::string const& strImage, std::vector<std::string> vecParts) {
    vecParts.push_back(strImage);
    ExpectFailure(folder, "inspect " + Quote(strImage), 1, vecParts);
  };
  expect(folder.Path("gone.png"), {"no such file", "correct the name"});
  expect(folder.Path(), {"directory"});
  expect("/dev/null", {"no regular file"});
  expect(folder.Write("empty.png", ""), {"empty"});
  expect(folder.Write("wrong.jpg", vecPng), {"the name says .jpg", ".png", "rename"});
  expect(folder.Write("picture.dat", vecPng), {"unknown extension", ".png", "rename"});
  expect(folder.Write("notes.txt", "just text"), {"unknown kind", ".png", ".ktx2"});
  expect(Block(), {"model", "qx3d view"});
  expect(folder.Write("cut.png", std::vector<unsigned char>(vecPng.begin(), vecPng.end() - 30)), {"; get "});
  expect(folder.Write("cut.gif", "GIF89a"), {"; get "});
  ExpectFailure(folder, "inspect", 2, {"file", "inspect --help"});
  ExpectFailure(folder, "inspect ''", 2, {"empty"});
}

TEST(QXProgram, HelpAndVersionLeaveWithZero) {
  Folder const folder;
  ProgramRun const help = RunProgram(folder, "--help");
  EXPECT_EQ(help.m_nExitStatus, 0);
  EXPECT_NE(help.m_strOut.find("view"), std::string::npos);
  ProgramRun const version = RunProgram(folder, "--version");
  EXPECT_EQ(version.m_nExitStatus, 0);
  EXPECT_EQ(version.m_strOut.find("qx3d "), 0u);
}

#if defined(QX_WITH_OGRE)

/// The colour of a pixel, in words.
std::string NameColor(QXPicture const& picture, int x, int y) {
  unsigned char const* p =
      picture.m_vecPixels.data() +
      3 * (static_cast<std::size_t>(y) * static_cast<std::size_t>(picture.m_nWidth) + static_cast<std::size_t>(x));
  if (p[0] > 2 * p[1] && p[0] > 2 * p[2]) return "red";
  if (p[2] > p[0] && p[1] > p[0]) return "sky";
  return "other";
}

TEST(QXProgramWithDevice, ModelStandsInTheMiddleUnderTheSky) {
  Folder const folder;
  ProgramRun const run = RunProgram(folder,
      "view " + Quote(Block()) +
          " --up z --renderer ogre --no-ground --size 160x120 --eye 1,-20,2 --look 1,0,2 --out " +
          Quote(folder.Path("out.png")),
      WithDisplay);
  ASSERT_EQ(run.m_nExitStatus, 0) << run.m_strError;
  QXPicture const picture = ReadPicture(folder.Path("out.png"));
  ASSERT_EQ(picture.m_nWidth, 160);
  EXPECT_EQ(NameColor(picture, 80, 60), "red");
  EXPECT_EQ(NameColor(picture, 80, 5), "sky");
  EXPECT_EQ(NameColor(picture, 5, 60), "sky");
  // The eye stands level with the block's middle, 20 in front of its front side, which is 4 high: 2 / 20 of a picture
  // that is tan(0.275) high to each side, so about 21 of 60 pixels up and down.
  EXPECT_EQ(NameColor(picture, 80, 60 - 19), "red");
  EXPECT_EQ(NameColor(picture, 80, 60 - 24), "sky");
  EXPECT_EQ(NameColor(picture, 80, 60 + 19), "red");
  EXPECT_EQ(NameColor(picture, 80, 60 + 24), "sky");
}

TEST(QXProgramWithDevice, EveryViewShowsTheModel) {
  Folder const folder;
  ProgramRun const run = RunProgram(folder,
      "view " + Quote(Block()) + " --renderer ogre --views 4 --no-ground --size 201x151 --out " +
          Quote(folder.Path("out.png")),
      WithDisplay);
  ASSERT_EQ(run.m_nExitStatus, 0) << run.m_strError;
  QXPicture const picture = ReadPicture(folder.Path("out.png"));
  for (int x : {50, 150})
    for (int y : {38, 113}) EXPECT_EQ(NameColor(picture, x, y), "red") << x << ", " << y;
}

TEST(QXProgramWithDevice, WindowDrawsItsFramesAndCloses) {
  Folder const folder;
  ProgramRun const run =
      RunProgram(folder, "view " + Quote(Block()) + " --renderer ogre --frames 3 --size 160x120 --stats", WithDisplay);
  EXPECT_EQ(run.m_nExitStatus, 0) << run.m_strError;
  EXPECT_EQ(run.m_strError, "");
  EXPECT_NE(run.m_strOut.find("size               160 x 120"), std::string::npos) << run.m_strOut;
}

/// What a sign shows in the middle of its four quarters, row by row, from its first row.
std::string ReadSign(Folder const& folder, std::string const& strModel, std::string const& strOptions = "") {
  std::filesystem::remove(folder.Path("out.png"));
  ProgramRun const run = RunProgram(folder,
      "view " + Quote(strModel) +
          " --up z --renderer ogre --no-ground --size 160x160 --eye 2,-20,2 --look 2,0,2 --out " +
          Quote(folder.Path("out.png")) + " " + strOptions,
      WithDisplay);
  EXPECT_EQ(run.m_nExitStatus, 0) << run.m_strError;
  EXPECT_EQ(run.m_strError, "");
  QXPicture const picture = ReadPicture(folder.Path("out.png"));
  std::string strColors;
  // The sign is 4 wide, 20 away: 2 / 20 of a picture that is tan(0.275) to each side are 28 pixels.
  for (int y : {80 - 14, 80 + 14}) {
    for (int x : {80 - 14, 80 + 14}) {
      unsigned char const* p =
          picture.m_vecPixels.data() +
          3 * (static_cast<std::size_t>(y) * static_cast<std::size_t>(picture.m_nWidth) + static_cast<std::size_t>(x));
      char const* szColor = "mixed";
      if (p[0] > 150 && p[1] > 150 && p[2] > 150) szColor = "white";
      if (p[0] > 150 && p[1] < 50 && p[2] < 50) szColor = "red";
      if (p[0] < 50 && p[1] > 150 && p[2] < 50) szColor = "green";
      if (p[0] < 50 && p[1] < 50 && p[2] > 150) szColor = "blue";
      strColors += strColors.empty() ? szColor : std::string(" ") + szColor;
    }
  }
  return strColors;
}

constexpr char const* Upright = "red green blue white";

TEST(QXProgramWithDevice, PicturesOfAllFormatsStandUpright) {
  Folder const folder;
  std::vector<unsigned char> const vecPicture = QXAssimp::ReadTestFile(QXAssimp::ModelPath("quarters.png"));
  EXPECT_EQ(ReadSign(folder, WriteSign(folder)), Upright);
  EXPECT_EQ(ReadSign(folder, folder.Write("sign.gltf", QXAssimp::MakeSignGltf(QXAssimp::QXGltfSign()))), Upright);
  EXPECT_EQ(
      ReadSign(folder, folder.Write("sign.glb", QXAssimp::MakeSignGlb(QXAssimp::QXGltfSign(), vecPicture))), Upright);
  EXPECT_EQ(ReadSign(folder, folder.Write("sign.3ds", QXAssimp::MakeSign3ds("QUARTERS.PNG", {}))), Upright);
}

TEST(QXProgramWithDevice, TransformsAndWrapModesOfGltfAreSeen) {
  Folder const folder;
  WriteSign(folder);
  QXAssimp::QXGltfSign sign;
  auto const read = [&] { return ReadSign(folder, folder.Write("sign.gltf", QXAssimp::MakeSignGltf(sign))); };
  // Half a picture to the left, beyond the edge.
  sign.m_strTextureInfo = R"(,"extensions":{"KHR_texture_transform":{"offset":[0.5,0]}})";
  EXPECT_EQ(read(), "green red white blue");
  sign.m_strSampler = R"("wrapS":33071,"wrapT":33071)";
  EXPECT_EQ(read(), "green green white white");
  sign.m_strSampler = R"("wrapS":33648,"wrapT":10497)";
  EXPECT_EQ(read(), "green green white white");
  // A whole picture to the left: the mirror image stands there.
  sign.m_strTextureInfo = R"(,"extensions":{"KHR_texture_transform":{"offset":[1,0]}})";
  EXPECT_EQ(read(), "green red white blue");
  sign.m_strSampler.clear();
  EXPECT_EQ(read(), Upright);
  // A quarter turn of the coordinates against the clock, about the corner at the top left: (u, v) becomes (v, -u).
  sign.m_strTextureInfo = R"(,"extensions":{"KHR_texture_transform":{"rotation":1.5707963}})";
  EXPECT_EQ(read(), "blue red white green");
}

TEST(QXProgramWithDevice, PanesAreBlendedFromBackToFront) {
  // Two of them one behind the other, in both orders of the file.
  for (bool const bRedFirst : {true, false}) {
    Folder const folder;
    folder.Write("panes.mtl", "newmtl red\nKd 1 0 0\nd 0.7\nnewmtl blue\nKd 0 0 1\nd 0.7\n");
    std::string strModel = "mtllib panes.mtl\nv 0 0 0\nv 4 0 0\nv 4 0 4\nv 0 0 4\nv 0 1 0\nv 4 1 0\nv 4 1 4\nv 0 1 4\n";
    std::string const strRed = "o red\nusemtl red\nf 1 2 3 4\n";
    std::string const strBlue = "o blue\nusemtl blue\nf 5 6 7 8\n";
    strModel += bRedFirst ? strRed + strBlue : strBlue + strRed;
    ProgramRun const run = RunProgram(folder,
        "view " + Quote(folder.Write("panes.obj", strModel)) +
            " --up z --renderer ogre --no-ground --size 64x64 --eye 2,-20,2 --look 2,0,2 --out " +
            Quote(folder.Path("out.png")),
        WithDisplay);
    EXPECT_EQ(run.m_nExitStatus, 0) << run.m_strError;
    QXPicture const picture = ReadPicture(folder.Path("out.png"));
    unsigned char const* p = picture.m_vecPixels.data() + 3 * (32 * static_cast<std::size_t>(picture.m_nWidth) + 32);
    EXPECT_GT(p[0], p[2] + 50) << "the red pane is the nearer one";
  }
}

TEST(QXProgramWithDevice, Ktx2BlocksCoverAModel) {
  Folder const folder;
  folder.Write("writing.ktx2", QXAssimp::ReadTestFile(QXAssimp::DataPath("ktx2/bc7_rgba_100x60_srgb_mip.ktx2")));
  std::string const strModel = WriteSign(folder, "-clamp on writing.ktx2");
  ProgramRun const run = RunProgram(folder,
      "view " + Quote(strModel) +
          " --up z --renderer ogre --no-ground --size 200x200 --eye 2,-9,2 --look 2,0,2 --out " +
          Quote(folder.Path("out.png")),
      WithDisplay);
  EXPECT_EQ(run.m_strError, "");
  // White letters in the middle, and nothing around them.
  QXPicture const picture = ReadPicture(folder.Path("out.png"));
  unsigned char const* p = picture.m_vecPixels.data() + 3 * (100 * 200 + 100);
  EXPECT_GT(p[0], 200);
  EXPECT_GT(p[1], 200);
  EXPECT_EQ(NameColor(picture, 50, 50), "sky");
}

TEST(QXProgramWithDevice, AnimationPlaysFromFrameToFrame) {
  Folder const folder;
  std::string const strModel = WriteSign(folder, "-clamp on three.gif");
  folder.Write("three.gif", MakeGif({0, 1, 2}, 10));
  auto const show = [&](std::string const& strOptions) { return ReadSign(folder, strModel, strOptions); };
  // 300 ms in all; a frame is shown up to and with its end.
  EXPECT_EQ(show(""), "red red red red");
  EXPECT_EQ(show("--frames 3"), "red red red red");
  EXPECT_EQ(show("--frames 4"), "green green green green");
  EXPECT_EQ(show("--frames 2 --frame-time 100"), "red red red red");
  EXPECT_EQ(show("--frames 2 --frame-time 101"), "green green green green");
  EXPECT_EQ(show("--frames 3 --frame-time 120"), "blue blue blue blue");
  EXPECT_EQ(show("--frames 4 --frame-time 120"), "red red red red");
}

TEST(QXProgramWithDevice, StripShowsTheMomentsOfAnAnimation) {
  Folder const folder;
  std::string const strModel = WriteSign(folder, "three.gif");
  folder.Write("three.gif", MakeGif({0, 1, 2}, 10));
  std::string const strCommand = "view " + Quote(strModel) +
                                 " --up z --renderer ogre --no-ground --size 40x30 --strip 4 --frame-time 60 --frames 2"
                                 " --eye 2,-8,2 --look 2,0,2 --out " +
                                 Quote(folder.Path("out.png"));
  ASSERT_EQ(RunProgram(folder, strCommand, WithDisplay).m_nExitStatus, 0);
  std::vector<unsigned char> const vecFirst = QXAssimp::ReadTestFile(folder.Path("out.png"));
  QXPicture const picture = ReadPicture(folder.Path("out.png"));
  ASSERT_EQ(picture.m_nWidth, 160);
  // At 60, 180, 300 and 420 ms.
  std::string strColors;
  for (std::size_t nMoment = 0; nMoment < 4; ++nMoment) {
    unsigned char const* p = picture.m_vecPixels.data() + 3 * (15 * 160 + 40 * nMoment + 20);
    strColors += p[0] > 150 ? 'r' : (p[1] > 150 ? 'g' : (p[2] > 150 ? 'b' : '?'));
  }
  EXPECT_EQ(strColors, "rgrg");
  // The same call, the same picture.
  ASSERT_EQ(RunProgram(folder, strCommand, WithDisplay).m_nExitStatus, 0);
  EXPECT_EQ(QXAssimp::ReadTestFile(folder.Path("out.png")), vecFirst);
}

TEST(QXProgramWithDevice, MeshWithoutItsPictureIsSeenInItsColour) {
  Folder const folder;
  folder.Write("sign.mtl", QXAssimp::MakeSignMtl("gone.png", "1 0 0"));
  std::string const strModel = folder.Write("sign.obj", QXAssimp::MakeSignObj("sign.mtl"));
  ProgramRun const run = RunProgram(folder,
      "view " + Quote(strModel) + " --up z --renderer ogre --no-ground --size 40x40 --out " +
          Quote(folder.Path("out.png")),
      WithDisplay);
  EXPECT_EQ(run.m_nExitStatus, 0);
  EXPECT_NE(run.m_strError.find("gone.png"), std::string::npos);
  EXPECT_EQ(NameColor(ReadPicture(folder.Path("out.png")), 20, 20), "red");
}

TEST(QXProgramWithDevice, WithoutADisplayTheWayOutIsNamed) {
  Folder const folder;
  ExpectFailure(folder, "view " + Quote(Block()) + " --renderer ogre --out " + Quote(folder.Path("out.png")), 1,
      {"ogre", "xvfb-run"});
}

#endif

}  // namespace
}  // namespace QXApp
