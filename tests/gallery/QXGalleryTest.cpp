// The gallery's program, its pictures in doc/images/gallery and the page that shows them say the same.
#include <gtest/gtest.h>

#include <tests/qx3d/QXPngReader.h>
#include <tests/qx3d/QXProgramRun.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace QXApp {

namespace {

constexpr int WIDTH = 640;
constexpr int HEIGHT = 360;
constexpr std::uintmax_t MAX_BYTES = 6 * 1024 * 1024;

std::string const PictureFolder = std::string(QX_SOURCE_DIR) + "/doc/images/gallery";

/// Names with their lines, in the program's order.
std::vector<std::pair<std::string, std::string>> ListPictures(QXAssimp::QXTestFolder const& folder) {
  ProgramRun const run = RunProgram(folder, "--list");
  EXPECT_EQ(run.m_nExitStatus, 0) << run.m_strError;
  std::vector<std::pair<std::string, std::string>> vecPictures;
  std::istringstream lines(run.m_strOut);
  for (std::string strLine; std::getline(lines, strLine);) {
    std::size_t const nEnd = strLine.find("  ");
    if (nEnd == std::string::npos) ADD_FAILURE() << "no line to '" << strLine << "'";
    if (nEnd != std::string::npos) vecPictures.emplace_back(strLine.substr(0, nEnd), strLine.substr(nEnd + 2));
  }
  return vecPictures;
}

std::size_t CountColors(QXPicture const& picture) {
  std::set<std::uint32_t> setColors;
  for (std::size_t i = 0; i + 2 < picture.m_vecPixels.size(); i += 3)
    setColors.insert(static_cast<std::uint32_t>(
        picture.m_vecPixels[i] << 16 | picture.m_vecPixels[i + 1] << 8 | picture.m_vecPixels[i + 2]));
  return setColors.size();
}

}  // namespace

TEST(QXGallery, NamesArePlainAndEachStandsOnce) {
  QXAssimp::QXTestFolder const folder;
  std::set<std::string> setNames;
  for (auto const& [strName, strLine] : ListPictures(folder)) {
    EXPECT_TRUE(std::regex_match(strName, std::regex("[a-z0-9]+(-[a-z0-9]+)*"))) << strName;
    EXPECT_TRUE(setNames.insert(strName).second) << strName << " stands twice";
    EXPECT_TRUE(strLine.ends_with(".")) << strName << ": " << strLine;
  }
  EXPECT_GE(setNames.size(), 4U);
}

TEST(QXGallery, ThePageShowsWhatTheProgramListsInItsOrder) {
  QXAssimp::QXTestFolder const folder;
  std::string strExpected;
  for (auto const& [strName, strLine] : ListPictures(folder))
    strExpected +=
        "## " + strName + "\n\n" + strLine + "\n\n![" + strName + "](images/gallery/" + strName + ".png)\n\n";
  strExpected.pop_back();
  std::string const strPage = ReadText(std::string(QX_SOURCE_DIR) + "/doc/gallery.md");
  std::size_t const nFirst = strPage.find("## ");
  ASSERT_NE(nFirst, std::string::npos);
  EXPECT_EQ(strPage.substr(nFirst), strExpected);
}

TEST(QXGallery, EachPictureOfThePageIsThereAndNoOther) {
  QXAssimp::QXTestFolder const folder;
  std::set<std::string> setListed;
  for (auto const& [strName, strLine] : ListPictures(folder)) setListed.insert(strName + ".png");
  std::set<std::string> setFiles;
  std::uintmax_t nBytes = 0;
  for (auto const& entry : std::filesystem::directory_iterator(PictureFolder)) {
    setFiles.insert(entry.path().filename().string());
    nBytes += entry.file_size();
    QXPicture const picture = ReadPicture(entry.path().string());
    EXPECT_EQ(picture.m_nWidth, WIDTH) << entry.path();
    EXPECT_EQ(picture.m_nHeight, HEIGHT) << entry.path();
  }
  EXPECT_EQ(setFiles, setListed);
  EXPECT_LT(nBytes, MAX_BYTES);
}

TEST(QXGallery, EveryPictureCanBeDrawn) {
  QXAssimp::QXTestFolder const folder;
  ProgramRun const run = RunProgram(folder, "--all " + Quote(folder.Path()), QX_WITH_DISPLAY);
  ASSERT_EQ(run.m_nExitStatus, 0) << run.m_strError;
  for (auto const& [strName, strLine] : ListPictures(folder)) {
    QXPicture const picture = ReadPicture(folder.Path(strName + ".png"));
    EXPECT_EQ(picture.m_nWidth, WIDTH) << strName;
    EXPECT_GT(CountColors(picture), 8U) << strName << " shows nothing";
  }
}

TEST(QXGallery, WhatCannotBeDoneIsTold) {
  QXAssimp::QXTestFolder const folder;
  ProgramRun run = RunProgram(folder, "no-such-picture " + Quote(folder.Path("a.png")));
  EXPECT_EQ(run.m_nExitStatus, 1);
  EXPECT_EQ(run.m_strError, "gallery: there is no picture 'no-such-picture'; 'gallery --list' names them\n");
  run = RunProgram(folder, "");
  EXPECT_EQ(run.m_nExitStatus, 2);
  EXPECT_EQ(run.m_strError, "usage: gallery --list | gallery --all FOLDER | gallery NAME FILE.png\n");
  run = RunProgram(folder, "scene-sun " + Quote(folder.Path("a.png")));
  EXPECT_EQ(run.m_nExitStatus, 1) << "there is no display";
  EXPECT_TRUE(run.m_strError.starts_with("gallery: scene-sun: OGRE cannot start: ")) << run.m_strError;
  EXPECT_FALSE(std::filesystem::exists(folder.Path("a.png")));
}

}  // namespace QXApp
