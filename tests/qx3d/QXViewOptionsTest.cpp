#include <apps/qx3d/QXViewOptions.h>

#include <gtest/gtest.h>

namespace QXApp {
namespace {

struct Parsed {
  QXCommandLine m_CommandLine;
  std::string m_strOut;
  std::string m_strError;
};

Parsed Parse(std::vector<std::string> const& vecArguments) {
  std::vector<char const*> vecPointers = {"qx3d"};
  for (std::string const& strArgument : vecArguments) vecPointers.push_back(strArgument.c_str());
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  Parsed parsed;
  parsed.m_CommandLine = ParseCommandLine(static_cast<int>(vecPointers.size()), vecPointers.data());
  parsed.m_strOut = testing::internal::GetCapturedStdout();
  parsed.m_strError = testing::internal::GetCapturedStderr();
  return parsed;
}

void ExpectLeaves(std::vector<std::string> const& vecArguments, int nExitStatus, std::string const& strPart) {
  Parsed const parsed = Parse(vecArguments);
  EXPECT_FALSE(parsed.m_CommandLine.m_bRun);
  EXPECT_EQ(parsed.m_CommandLine.m_nExitStatus, nExitStatus) << strPart;
  EXPECT_NE(parsed.m_strError.find(strPart), std::string::npos) << parsed.m_strError;
  EXPECT_EQ(parsed.m_strError.find("qx3d: "), 0u);
  EXPECT_EQ(parsed.m_strError.find('\n'), parsed.m_strError.size() - 1) << "one line";
  EXPECT_EQ(parsed.m_strOut, "");
}

TEST(QXViewOptions, ModelAloneTakesTheDefaults) {
  Parsed const parsed = Parse({"view", "city.3ds"});
  ASSERT_TRUE(parsed.m_CommandLine.m_bRun) << parsed.m_strError;
  QXViewOptions const& options = parsed.m_CommandLine.m_Options;
  EXPECT_EQ(options.m_strModel, "city.3ds");
  EXPECT_EQ(options.m_strOut, "");
  EXPECT_EQ(options.m_nWidth, 1280);
  EXPECT_EQ(options.m_nHeight, 720);
  EXPECT_EQ(options.m_strRenderer, "");
  EXPECT_FALSE(options.m_bEye);
  EXPECT_FALSE(options.m_bLook);
  EXPECT_EQ(options.m_nViews, 1);
  EXPECT_EQ(options.m_nFrames, 0);
  EXPECT_FALSE(options.m_bStats);
  EXPECT_TRUE(options.m_bGround);
  EXPECT_EQ(options.m_eUp, UpAxis::Auto);
}

TEST(QXViewOptions, PickTakesAPixel) {
  Parsed const parsed = Parse({"pick", "a.qxscene", "12", "34", "--size", "100x50", "--no-ground"});
  ASSERT_TRUE(parsed.m_CommandLine.m_bRun) << parsed.m_strError;
  EXPECT_EQ(parsed.m_CommandLine.m_eCommand, QXCommand::Pick);
  QXViewOptions const& options = parsed.m_CommandLine.m_Options;
  EXPECT_TRUE(options.m_bPick);
  EXPECT_EQ(options.m_strModel, "a.qxscene");
  EXPECT_EQ(options.m_nPickX, 12);
  EXPECT_EQ(options.m_nPickY, 34);
  EXPECT_FALSE(options.m_bGround);
  EXPECT_EQ(options.m_strOut, "");
  EXPECT_FALSE(Parse({"view", "a.qxscene"}).m_CommandLine.m_Options.m_bPick);
  ExpectLeaves({"pick", "a.qxscene", "100", "34", "--size", "100x50"}, 1, "100 34 is outside of the picture");
  ExpectLeaves({"pick", "a.qxscene", "1"}, 2, "pick --help");
  ExpectLeaves({"pick", "a.qxscene", "1", "2", "--views", "2"}, 2, "pick --help");
}

TEST(QXViewOptions, EveryOptionArrives) {
  Parsed const parsed = Parse({"view", "city.3ds", "--out", "a.png", "--size", "640x480", "--renderer", "null",
      "--plugins", "one", "--plugins", "two", "--eye", "-1,2.5,3e2", "--look", "604099.5,0,-7", "--up", "y", "--views",
      "4", "--frames", "9", "--stats", "--no-ground"});
  ASSERT_TRUE(parsed.m_CommandLine.m_bRun) << parsed.m_strError;
  QXViewOptions const& options = parsed.m_CommandLine.m_Options;
  EXPECT_EQ(options.m_strOut, "a.png");
  EXPECT_EQ(options.m_nWidth, 640);
  EXPECT_EQ(options.m_nHeight, 480);
  EXPECT_EQ(options.m_strRenderer, "null");
  EXPECT_EQ(options.m_vecPluginFolders, (std::vector<std::string>{"one", "two"}));
  ASSERT_TRUE(options.m_bEye);
  EXPECT_EQ(options.m_dEye[0], -1.0);
  EXPECT_EQ(options.m_dEye[1], 2.5);
  EXPECT_EQ(options.m_dEye[2], 300.0);
  ASSERT_TRUE(options.m_bLook);
  EXPECT_EQ(options.m_dLook[0], 604099.5);
  EXPECT_EQ(options.m_nViews, 4);
  EXPECT_EQ(options.m_nFrames, 9);
  EXPECT_TRUE(options.m_bStats);
  EXPECT_FALSE(options.m_bGround);
  EXPECT_EQ(options.m_eUp, UpAxis::Y);
}

TEST(QXViewOptions, PluginFolderDoesNotSwallowTheModel) {
  Parsed const parsed = Parse({"view", "--plugins", "folder", "city.3ds"});
  ASSERT_TRUE(parsed.m_CommandLine.m_bRun) << parsed.m_strError;
  EXPECT_EQ(parsed.m_CommandLine.m_Options.m_strModel, "city.3ds");
}

TEST(QXViewOptions, HelpAndVersionGoToTheOutputWithStatusZero) {
  for (char const* szOption : {"--help", "--version"}) {
    Parsed const parsed = Parse({szOption});
    EXPECT_FALSE(parsed.m_CommandLine.m_bRun);
    EXPECT_EQ(parsed.m_CommandLine.m_nExitStatus, 0);
    EXPECT_FALSE(parsed.m_strOut.empty());
    EXPECT_EQ(parsed.m_strError, "");
  }
  EXPECT_EQ(Parse({"--version"}).m_strOut.find("qx3d "), 0u);
  Parsed const view = Parse({"view", "--help"});
  EXPECT_EQ(view.m_CommandLine.m_nExitStatus, 0);
  for (char const* szOption :
      {"--out", "--size", "--renderer", "--eye", "--look", "--views", "--frames", "--stats", "--up"})
    EXPECT_NE(view.m_strOut.find(szOption), std::string::npos) << szOption;
}

TEST(QXViewOptions, WrongUsageLeavesWithTwo) {
  ExpectLeaves({}, 2, "qx3d --help");
  ExpectLeaves({"view"}, 2, "model");
  ExpectLeaves({"show", "a.obj"}, 2, "");
  ExpectLeaves({"view", "a.obj", "--colour"}, 2, "--colour");
  ExpectLeaves({"view", "a.obj", "b.obj"}, 2, "b.obj");
  ExpectLeaves({"view", "a.obj", "--out"}, 2, "--out");
  ExpectLeaves({"view", "a.obj", "--size", "big"}, 2, "'big' is no size");
  ExpectLeaves({"view", "a.obj", "--size", "10x"}, 2, "no size");
  ExpectLeaves({"view", "a.obj", "--size", "10x20x30"}, 2, "no size");
  ExpectLeaves({"view", "a.obj", "--eye", "1,2"}, 2, "no position");
  ExpectLeaves({"view", "a.obj", "--look", "1,2,nan"}, 2, "no position");
  ExpectLeaves({"view", "a.obj", "--views", "0"}, 2, "--views");
  ExpectLeaves({"view", "a.obj", "--views", "17"}, 2, "--views");
  ExpectLeaves({"view", "a.obj", "--frames", "0"}, 2, "--frames");
  ExpectLeaves({"view", "a.obj", "--up", "x"}, 2, "--up");
}

TEST(QXViewOptions, EmptyTextsAreWrongUsage) {
  ExpectLeaves({"view", ""}, 2, "empty");
  for (char const* szOption : {"--out", "--renderer", "--plugins"})
    ExpectLeaves({"view", "a.obj", szOption, ""}, 2, std::string(szOption) + ": the text is empty");
}

TEST(QXViewOptions, PositionsFartherThanCanBeShownAreWrongUsage) {
  EXPECT_TRUE(Parse({"view", "a.obj", "--eye", "1e15,-1e15,0"}).m_CommandLine.m_bRun);
  ExpectLeaves({"view", "a.obj", "--eye", "0,0,1.1e15"}, 2, "1e15");
  ExpectLeaves({"view", "a.obj", "--look", "-1e300,0,0"}, 2, "1e15");
}

TEST(QXViewOptions, LineEndsOfAnArgumentLeaveOneLine) {
  ExpectLeaves({"view", "a.obj", "--co\nlour"}, 2, "--co lour");
}

TEST(QXViewOptions, SizeThatCannotBeLeavesWithOne) {
  for (char const* szSize : {"0x720", "1280x0", "-5x720", "100000x100000", "16385x1", "99999999999999999999x5"})
    ExpectLeaves({"view", "a.obj", "--size", szSize}, 1, "1 to 16384 pixels");
  EXPECT_TRUE(Parse({"view", "a.obj", "--size", "16384x1"}).m_CommandLine.m_bRun);
}

}  // namespace
}  // namespace QXApp
