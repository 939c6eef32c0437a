#include <apps/qx3d/QXIconPictures.h>

#include <apps/qx3d/QXSceneFile.h>
#include <apps/qx3d/QXSceneText.h>

#include <tests/assimp/QXTestFiles.h>
#include <tests/qx3d/QXTgaMaker.h>

#include <gtest/gtest.h>

namespace QXApp {
namespace {

using Bytes = std::array<unsigned char, 4>;

class QXIconPicturesTest : public testing::Test {
protected:
  std::string Write(std::string const& strName, int nWidth, int nHeight, Bytes const& bytes = {10, 20, 30, 255}) {
    return m_Folder.Write(strName, MakeTga(nWidth, nHeight, bytes));
  }

  /// An icon on a line of its own.
  QXSceneIcon& Add(std::string const& strImage, double dWidth = 0.0, double dHeight = 0.0) {
    QXSceneIcon icon;
    icon.m_strImage = strImage;
    icon.m_dWidth = dWidth;
    icon.m_dHeight = dHeight;
    icon.m_nLine = 10 * static_cast<int>(m_vecIcons.size() + 1);
    m_vecIcons.push_back(icon);
    return m_vecIcons.back();
  }

  void Load() { m_Pictures.Load(m_vecIcons, m_Problems); }

  QXIconPicture const& Get(std::size_t nIcon) {
    return m_Pictures.GetPictures().at(static_cast<std::size_t>(m_Pictures.GetChoices().at(nIcon)));
  }

  QXAssimp::QXTestFolder m_Folder;
  std::vector<QXSceneIcon> m_vecIcons;
  QXIconPictures m_Pictures;
  QXSceneProblems m_Problems{"city.qxscene"};
};

TEST_F(QXIconPicturesTest, IconsOfOneImageShareIt) {
  std::string const strA = Write("a.tga", 12, 12);
  Add(strA);
  Add(Write("b.tga", 8, 4));
  Add(strA);
  Load();
  EXPECT_TRUE(m_Problems.IsEmpty());
  ASSERT_EQ(m_Pictures.GetPictures().size(), 2u);
  EXPECT_EQ(m_Pictures.GetChoices(), (std::vector<int>{0, 1, 0}));
  EXPECT_EQ(Get(0).m_Pixels.m_nWidth, 12u) << "no power of two is made of it";
  EXPECT_EQ(Get(1).m_Pixels.m_nHeight, 4u);
  EXPECT_EQ(Get(0).m_nLine, 10);
}

TEST_F(QXIconPicturesTest, EachColourKeyIsAnImageOfItsOwn) {
  std::string const strA = m_Folder.Write("a.tga", MakeTga(4, 4, [](int x, int) {
    return x < 2 ? Bytes{255, 0, 255, 255} : Bytes{0, 255, 0, 255};
  }));
  Add(strA);
  Add(strA);
  Add(strA);
  for (int i = 1; i < 3; ++i) {
    m_vecIcons[static_cast<std::size_t>(i)].m_bColorKey = true;
    m_vecIcons[static_cast<std::size_t>(i)].m_nColorKey[1] = 255;
  }
  m_vecIcons[2].m_nColorKey[0] = 3;
  m_vecIcons[2].m_nTolerance = 3;
  Load();
  ASSERT_EQ(m_Pictures.GetPictures().size(), 3u);
  EXPECT_FALSE(HasTransparentPixels(Get(0).m_Pixels));
  for (std::size_t i = 1; i < 3; ++i) {
    EXPECT_EQ(Get(i).m_Pixels.At(1, 0)[3], 255);
    EXPECT_EQ(Get(i).m_Pixels.At(2, 0)[3], 0);
    // The colour of its neighbour.
    EXPECT_EQ(Get(i).m_Pixels.At(2, 0)[1], 0);
    EXPECT_EQ(Get(i).m_Pixels.At(2, 0)[2], 255);
  }
  EXPECT_NE(Get(1).m_strName, Get(2).m_strName);
  EXPECT_NE(Get(0).m_strName, Get(1).m_strName);
}

TEST_F(QXIconPicturesTest, ImageIsAsLargeAsItsLargestIconNeedsIt) {
  std::string const strA = Write("a.tga", 100, 50);
  Add(strA, 20, 10);
  Add(strA, 40.5, 10);
  Load();
  EXPECT_EQ(Get(0).m_Pixels.m_nWidth, 41u);
  EXPECT_EQ(Get(0).m_Pixels.m_nHeight, 10u);
  EXPECT_EQ(Get(0).m_nFileWidth, 100u);
  EXPECT_EQ(Get(0).m_Pixels.At(40, 9)[2], 30);
}

TEST_F(QXIconPicturesTest, LargerIconsDoNotEnlargeTheImage) {
  Add(Write("a.tga", 12, 12), 60, 60);
  Load();
  EXPECT_EQ(Get(0).m_Pixels.m_nWidth, 12u);
}

TEST_F(QXIconPicturesTest, IconInWorldUnitsOrItsOwnSizeNeedsAllOfTheImage) {
  std::string const strA = Write("a.tga", 100, 50);
  std::string const strB = Write("b.tga", 100, 50);
  Add(strA, 20, 10);
  Add(strA, 2, 2).m_eUnit = QXIconUnit::World;
  Add(strB, 20, 10);
  Add(strB);
  Load();
  EXPECT_EQ(Get(0).m_Pixels.m_nWidth, 100u);
  EXPECT_EQ(Get(2).m_Pixels.m_nWidth, 100u);
}

TEST_F(QXIconPicturesTest, ImageLargerThanAPageIsScaledDownAndTold) {
  Add(Write("whole.tga", 2044, 100));
  Add(Write("small.tga", 2044, 100), 64, 16);
  Load();
  EXPECT_EQ(Get(0).m_Pixels.m_nWidth, MaxIconEdge);
  EXPECT_EQ(Get(0).m_Pixels.m_nHeight, 50u);
  EXPECT_EQ(Get(0).m_nFileWidth, 2044u);
  EXPECT_EQ(Get(1).m_Pixels.m_nWidth, 64u);
  ASSERT_EQ(m_Problems.GetLines().size(), 1u) << "the small icon loses nothing";
  std::string const strLine = m_Problems.GetLines()[0];
  EXPECT_EQ(strLine.find("city.qxscene:10: image " + m_Folder.Path("whole.tga")), 0u) << strLine;
  EXPECT_NE(strLine.find("2044 x 100 pixels 1022 x 50"), std::string::npos) << strLine;
}

TEST_F(QXIconPicturesTest, UnreadableImageIsToldOnceAndItsIconsHaveNone) {
  std::string const strBroken = m_Folder.Write("broken.png", "x");
  Add(strBroken);
  Add(Write("good.tga", 2, 2));
  Add(strBroken).m_bColorKey = true;
  Add(m_Folder.Path("none.png"));
  Load();
  EXPECT_EQ(m_Pictures.GetChoices(), (std::vector<int>{-1, 0, -1, -1}));
  std::vector<std::string> const vecLines = m_Problems.GetLines();
  ASSERT_EQ(vecLines.size(), 2u);
  EXPECT_EQ(vecLines[0].find("city.qxscene:10: image " + strBroken + ": "), 0u) << vecLines[0];
  EXPECT_EQ(vecLines[1].find("city.qxscene:40: image "), 0u) << vecLines[1];
  EXPECT_NE(vecLines[1].find("no such file"), std::string::npos) << vecLines[1];
}

TEST_F(QXIconPicturesTest, ManyIconsOfOneImageReadItOnce) {
  std::string const strA = Write("a.tga", 256, 256);
  for (int i = 0; i < 100000; ++i) Add(strA, 16, 16);
  Load();
  EXPECT_EQ(m_Pictures.GetPictures().size(), 1u);
  EXPECT_EQ(m_Pictures.GetChoices().back(), 0);
}

TEST_F(QXIconPicturesTest, WhatDoesNotFitIntoAllPagesIsToldAndNotKept) {
  // Squares of 16, 64 and 16 pixels.
  Add(Write("a.tga", 14, 14));
  Add(Write("b.tga", 40, 40));
  Add(Write("c.tga", 10, 10));
  m_Pictures.Load(m_vecIcons, m_Problems, 2 * 16 * 16 + 10);
  EXPECT_EQ(m_Pictures.GetChoices(), (std::vector<int>{0, -1, 1}));
  ASSERT_EQ(m_Problems.GetLines().size(), 1u);
  EXPECT_EQ(m_Problems.GetLines()[0], "city.qxscene:20: image " + m_vecIcons[1].m_strImage +
                                          ": the atlas has no place for it; use fewer or smaller images");
  QXSceneProblems none("city.qxscene");
  m_Pictures.Load(m_vecIcons, none, 2 * 16 * 16 + 64 * 64);
  EXPECT_TRUE(none.IsEmpty());
  EXPECT_EQ(m_Pictures.GetPictures().size(), 3u);
}

}  // namespace
}  // namespace QXApp
