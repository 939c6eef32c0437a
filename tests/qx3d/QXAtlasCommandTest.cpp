#include <apps/qx3d/QXAtlasCommand.h>

#include <apps/qx3d/QXSceneFile.h>
#include <apps/qx3d/QXViewOptions.h>

#include <tests/assimp/QXTestFiles.h>
#include <tests/qx3d/QXPngReader.h>
#include <tests/qx3d/QXTgaMaker.h>

#include <gtest/gtest.h>

namespace QXApp {
namespace {

class QXAtlasCommandTest : public testing::Test {
protected:
  QXAtlasCommandTest() {
    m_Options.m_strRenderer = "null";
    m_Options.m_strOut = m_Folder.Path("out");
  }

  void WriteScene(std::string const& strText) { m_Options.m_strScene = m_Folder.Write("a.qxscene", strText); }

  /// A scene with an icon of 12 x 12 and one of 100 x 20 pixels.
  void WriteGoodScene() {
    m_Folder.Write("small.tga", MakeTga(12, 12, {0, 0, 255, 255}));
    m_Folder.Write("wide.tga", MakeTga(100, 20, {255, 0, 0, 255}));
    WriteScene("[icon]\nimage = small.tga\nposition = 0, 0, 0\n[icon]\nimage = wide.tga\nposition = 1, 0, 0\n");
  }

  int Run() {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    int const nExitStatus = RunAtlas(m_Options);
    m_strOut = testing::internal::GetCapturedStdout();
    m_strError = testing::internal::GetCapturedStderr();
    return nExitStatus;
  }

  void ExpectFailure(std::vector<std::string> const& vecParts) {
    EXPECT_EQ(Run(), 1);
    EXPECT_EQ(m_strOut, "");
    for (std::string const& strPart : vecParts)
      EXPECT_NE(m_strError.find(strPart), std::string::npos) << strPart << " in: " << m_strError;
    EXPECT_FALSE(std::filesystem::exists(m_Folder.Path("out/Image_BigTexture_0.png")));
  }

  QXAssimp::QXTestFolder m_Folder;
  QXAtlasOptions m_Options;
  std::string m_strOut;
  std::string m_strError;
};

TEST_F(QXAtlasCommandTest, PagesAreWrittenAndTold) {
  WriteGoodScene();
  EXPECT_EQ(Run(), 0);
  EXPECT_EQ(m_strError, "");
  EXPECT_NE(m_strOut.find("Image_BigTexture_0          1024 x 1024  PF_A8R8G8B8 (12)          2     1.6 %\n"),
      std::string::npos)
      << m_strOut;
  QXPicture const picture = ReadPicture(m_Folder.Path("out/Image_BigTexture_0.png"));
  ASSERT_EQ(picture.m_nWidth, 2048);
  ASSERT_EQ(picture.m_nHeight, 2048 + 32);
  auto const at = [&](int nX, int nY) {
    unsigned char const* p = picture.m_vecPixels.data() + 3 * (std::size_t(nY) * 2048 + std::size_t(nX));
    return std::array<int, 3>{p[0], p[1], p[2]};
  };
  // The wide one stands first, in the middle of a square of 128 pixels that are two each here.
  EXPECT_EQ(at(128, 128), (std::array<int, 3>{0, 0, 255}));
  EXPECT_EQ(at(256 + 16, 16), (std::array<int, 3>{255, 0, 0}));
  EXPECT_EQ(at(1000, 1000), (std::array<int, 3>{255, 0, 255})) << "magenta where nothing is";
}

TEST_F(QXAtlasCommandTest, ReportNamesWhatStandsWhere) {
  WriteGoodScene();
  EXPECT_EQ(Run(), 0);
  std::vector<unsigned char> const vecBytes = QXAssimp::ReadTestFile(m_Folder.Path("out/atlas.txt"));
  std::string const strReport(vecBytes.begin(), vecBytes.end());
  EXPECT_EQ(strReport.find(m_strOut), 0u) << strReport;
  EXPECT_NE(strReport.find("     1     0     0   128  " + m_Folder.Path("wide.tga")), std::string::npos) << strReport;
  EXPECT_NE(strReport.find("     2   128     0    16  " + m_Folder.Path("small.tga")), std::string::npos) << strReport;
}

TEST_F(QXAtlasCommandTest, FoldersAreMadeAndOldFilesReplaced) {
  WriteGoodScene();
  m_Options.m_strOut = m_Folder.Path("a/b/c");
  EXPECT_EQ(Run(), 0);
  m_Folder.Write("a/b/c/Image_BigTexture_0.png", "old");
  m_Folder.Write("a/b/c/other.txt", "mine");
  EXPECT_EQ(Run(), 0);
  EXPECT_EQ(ReadPicture(m_Folder.Path("a/b/c/Image_BigTexture_0.png")).m_nWidth, 2048);
  auto const files = std::filesystem::directory_iterator(m_Folder.Path("a/b/c"));
  EXPECT_EQ(std::distance(begin(files), end(files)), 3) << "nothing is left beside the picture, the report, and mine";
}

TEST_F(QXAtlasCommandTest, EveryPageHasItsPicture) {
  std::string strScene;
  for (int i = 0; i < 5; ++i) {
    std::string const strName = "i" + std::to_string(i) + ".tga";
    m_Folder.Write(strName, MakeTga(500, 500, {0, 0, 0, 255}));
    strScene += "[icon]\nimage = " + strName + "\nposition = 0, 0, 0\n";
  }
  WriteScene(strScene);
  EXPECT_EQ(Run(), 0);
  EXPECT_TRUE(std::filesystem::exists(m_Folder.Path("out/Image_BigTexture_0.png")));
  EXPECT_TRUE(std::filesystem::exists(m_Folder.Path("out/Image_BigTexture_1.png")));
  EXPECT_FALSE(std::filesystem::exists(m_Folder.Path("out/Image_BigTexture_2.png")));
}

TEST_F(QXAtlasCommandTest, PlacesThatCannotBeWrittenToAreToldFirst) {
  m_Options.m_strScene = m_Folder.Path("none.qxscene");
  m_Options.m_strOut = m_Folder.Write("file", "x");
  ExpectFailure({"--out " + m_Options.m_strOut, "give another name"});
  m_Options.m_strOut = m_Folder.Path("file/below");
  ExpectFailure({"--out " + m_Options.m_strOut, "give another name"});
  m_Options.m_strOut = "/proc/nowhere";
  ExpectFailure({"--out /proc/nowhere"});
  m_Options.m_strOut = m_Folder.Path(std::string(300, 'a'));
  ExpectFailure({"--out " + m_Options.m_strOut, "give another name"});
}

TEST_F(QXAtlasCommandTest, SceneWithoutIconsHasNoAtlas) {
  m_Folder.Write("block.obj", QXAssimp::ReadTestFile(QXAssimp::ModelPath("block.obj")));
  WriteScene("[model]\nfile = block.obj\n");
  ExpectFailure({m_Options.m_strScene, "no icons", "[icon]"});
}

TEST_F(QXAtlasCommandTest, BadScenesAreTold) {
  m_Options.m_strScene = m_Folder.Path("none.qxscene");
  ExpectFailure({m_Options.m_strScene});
  WriteScene("[icon]\nimage = none.png\nposition = 0, 0, 0\n");
  ExpectFailure({m_Options.m_strScene + ":2", "none.png"});
}

TEST_F(QXAtlasCommandTest, IconThatCannotBeReadIsLeftOut) {
  WriteGoodScene();
  m_Folder.Write("small.tga", "broken");
  EXPECT_EQ(Run(), 0);
  EXPECT_EQ(m_strError.find("qx3d: " + m_Options.m_strScene + ":2: image " + m_Folder.Path("small.tga")), 0u)
      << m_strError;
  EXPECT_NE(m_strOut.find("(12)          1     1.6 %"), std::string::npos) << m_strOut;
}

TEST_F(QXAtlasCommandTest, SceneOfBrokenIconsAloneFails) {
  WriteGoodScene();
  m_Folder.Write("small.tga", "broken");
  m_Folder.Write("wide.tga", "broken");
  ExpectFailure({"small.tga", "wide.tga", "none of its icons and labels"});
}

TEST_F(QXAtlasCommandTest, UnknownRendererAndMissingPluginFolderAreTold) {
  WriteGoodScene();
  m_Options.m_strRenderer = "nope";
  ExpectFailure({"'nope'"});
  m_Options.m_vecPluginFolders.push_back(m_Folder.Path("none"));
  ExpectFailure({"--plugins " + m_Folder.Path("none")});
}

TEST_F(QXAtlasCommandTest, SampleSceneReadsWell) {
  std::string const strPath = std::string(QX_SOURCE_DIR) + "/examples/city/braunschweig.qxscene";
  std::vector<unsigned char> const vecBytes = QXAssimp::ReadTestFile(strPath);
  QXSceneProblems problems(strPath);
  QXSceneFile const scene = ParseScene(std::string(vecBytes.begin(), vecBytes.end()), strPath, problems);
  EXPECT_TRUE(problems.IsEmpty()) << problems.GetLines()[0];
  EXPECT_EQ(scene.m_vecModels.size(), 1u);
  EXPECT_GT(scene.m_vecIcons.size(), 50u);
}

}  // namespace
}  // namespace QXApp
