#include <tests/assimp/QXTestFiles.h>

#include <plugins/assimp/QXPictureFinder.h>

#include <QxGraphics3D/frame/foundation/fileparser/QXModelImage.h>

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace QXAssimp {
namespace {

TEST(QXPictureFinder, NameAsWrittenComesFirst) {
  QXTestFolder const folder;
  folder.Write("Wall.png", "x");
  folder.Write("wall.png", "x");
  EXPECT_EQ(FindPicture(folder.Path(), "wall.png"), folder.Path("wall.png"));
  EXPECT_EQ(FindPicture(folder.Path(), "Wall.png"), folder.Path("Wall.png"));
  folder.Write("a%20b.png", "x");
  folder.Write("a b.png", "x");
  EXPECT_EQ(FindPicture(folder.Path(), "a%20b.png"), folder.Path("a%20b.png"));
}

TEST(QXPictureFinder, BackslashesAndEscapesAreUndone) {
  QXTestFolder const folder;
  std::filesystem::create_directory(folder.Path("tex"));
  folder.Write("tex/old wall.png", "x");
  EXPECT_EQ(FindPicture(folder.Path(), "tex\\old wall.png"), folder.Path("tex/old wall.png"));
  EXPECT_EQ(FindPicture(folder.Path(), "tex/old%20wall.png"), folder.Path("tex/old wall.png"));
  EXPECT_EQ(FindPicture(folder.Path(), "tex/old%2"), folder.Path("tex/old%2"));
}

TEST(QXPictureFinder, CaseIsPassedOverOnEveryStep) {
  QXTestFolder const folder;
  std::filesystem::create_directory(folder.Path("Textures"));
  folder.Write("Textures/Wall.jpg", "x");
  EXPECT_EQ(FindPicture(folder.Path(), "TEXTURES\\WALL.JPG"), folder.Path("Textures/Wall.jpg"));
  folder.Write("Textures/wAll.jpg", "x");
  EXPECT_EQ(FindPicture(folder.Path(), "TEXTURES\\WALL.JPG"), folder.Path("Textures/Wall.jpg"));
}

TEST(QXPictureFinder, PathsOfOtherMachinesLeadToTheModelsFolder) {
  QXTestFolder const folder;
  folder.Write("wall.png", "x");
  EXPECT_EQ(FindPicture(folder.Path(), "C:\\Users\\me\\wall.png"), folder.Path("wall.png"));
  EXPECT_EQ(FindPicture(folder.Path(), "/nowhere/at/all/WALL.PNG"), folder.Path("wall.png"));
}

TEST(QXPictureFinder, AbsolutePathsAndParentsAreFollowed) {
  QXTestFolder const folder;
  std::filesystem::create_directory(folder.Path("model"));
  std::string const strPicture = folder.Write("wall.png", "x");
  EXPECT_EQ(FindPicture(folder.Path("model"), strPicture), strPicture);
  EXPECT_EQ(FindPicture(folder.Path("model"), "../wall.png"), folder.Path("model/../wall.png"));
}

TEST(QXPictureFinder, OnlyRegularFilesAreFound) {
  QXTestFolder const folder;
  std::filesystem::create_directory(folder.Path("dir.png"));
  ASSERT_EQ(mkfifo(folder.Path("Pipe.png").c_str(), 0600), 0);
  // Told as written, so that the message of whoever opens it names it.
  EXPECT_EQ(FindPicture(folder.Path(), "dir.png"), folder.Path("dir.png"));
  EXPECT_EQ(FindPicture(folder.Path(), "PIPE.PNG"), folder.Path("PIPE.PNG"));
  EXPECT_EQ(FindPicture(folder.Path(), "gone\\wall.png"), folder.Path("gone/wall.png"));
}

TEST(QXPictureFinder, CommentBehindANameIsPassedOverUnlessItBelongsToTheName) {
  QXTestFolder const folder;
  folder.Write("wall.png", "x");
  EXPECT_EQ(FindPicture(folder.Path(), "wall.png  # the north side"), folder.Path("wall.png"));
  EXPECT_EQ(FindPicture(folder.Path(), "gone.png #1"), folder.Path("gone.png #1"));
  EXPECT_EQ(FindPicture(folder.Path(), " #"), folder.Path(" #"));
  folder.Write("wall.png #2", "x");
  EXPECT_EQ(FindPicture(folder.Path(), "wall.png #2"), folder.Path("wall.png #2"));
}

TEST(QXPictureFinder, CarriedPicturesGetNoPath) {
  QXTestFolder const folder;
  folder.Write("wall.png", "x");
  QXC::ModelDataInfo model;
  for (int i = 0; i < 2; ++i) {
    auto* pImage = new QXC::QXModelImage;
    pImage->m_strName = L"wall.png";
    if (i == 0) pImage->m_arrBytes.Add(1);
    model.AddImage(pImage);
  }
  FindPictures(folder.Path(), model);
  EXPECT_EQ(model.GetImage(0)->m_strFilePath.IsEmpty(), 1);
  EXPECT_EQ(std::string(model.GetImage(1)->m_strFilePath.ToMBString().Cstr()), folder.Path("wall.png"));
  FindPictures("", model);
  EXPECT_EQ(model.GetImage(1)->m_strFilePath.IsEmpty(), 1);
}

}  // namespace
}  // namespace QXAssimp
