// Labels of scenes as a person sees them, in the installed fonts.
#include <tests/assimp/QXTestFiles.h>
#include <tests/qx3d/QXPngReader.h>
#include <tests/qx3d/QXProgramRun.h>

#include <QxGraphics3D/text/QXCharBitmapData.h>
#include <QxGraphics3D/text/QXTextLayout.h>
#include <QxGraphics3D/text/QXTextureFontManager.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>

namespace QXApp {
namespace {

using Folder = QXAssimp::QXTestFolder;
using testing::HasSubstr;

/// A black scene, looked at from the south; the position 0, 0, 0 is the middle of the picture.
std::string WriteScene(Folder const& folder, std::string const& strLabels, std::string const& strEye = "0, -20, 0") {
  return folder.Write("a.qxscene",
      "[scene]\nbackground = #000000\nground = no\n[camera]\neye = " + strEye + "\nlook = 0, 0, 0\n" + strLabels);
}

std::string View(Folder const& folder, std::string const& strScene, std::string const& strRenderer,
    std::string const& strOptions = "") {
  return "view " + Quote(strScene) + " --renderer " + strRenderer + " --size 128x128 --out " +
         Quote(folder.Path("out.png")) + " " + strOptions;
}

TEST(QXLabelProgram, StatsTellLabelsGlyphsAndFill) {
  Folder const folder;
  std::string const strScene =
      WriteScene(folder, "[label]\ntext = Aha\nposition = 0, 0, 0\n[label]\ntext = Ah\nposition = 1, 0, 0\n");
  ProgramRun const run = RunProgram(folder, View(folder, strScene, "null", "--stats"));
  EXPECT_EQ(run.m_nExitStatus, 0) << run.m_strError;
  EXPECT_EQ(run.m_strError, "");
  EXPECT_THAT(run.m_strOut, HasSubstr("labels             2, of 3 glyphs on 1 atlas page, 0.1 % full\n"));
}

TEST(QXLabelProgram, WithoutLabelsStatsSayNothingOfThem) {
  Folder const folder;
  std::string const strScene = WriteScene(folder, "[model]\nfile = " + QXAssimp::ModelPath("block.obj") + "\n");
  ProgramRun const run = RunProgram(folder, View(folder, strScene, "null", "--stats"));
  EXPECT_EQ(run.m_strOut.find("labels"), std::string::npos) << run.m_strOut;
}

TEST(QXLabelProgram, LettersThatCannotBeDrawnAreOneLineAndTheSceneIsShown) {
  Folder const folder;
  std::string const strScene = WriteScene(folder, "[label]\ntext = A\xF0\x9F\x98\x80\nposition = 0, 0, 0\n"
                                                  "[label]\ntext = \xF0\x9F\x98\x80"
                                                  "B\nposition = 0, 0, 0\n");
  ProgramRun const run = RunProgram(folder, View(folder, strScene, "null", "--stats"));
  EXPECT_EQ(run.m_nExitStatus, 0);
  EXPECT_EQ(run.m_strError,
      "qx3d: " + strScene + ":8: characters above U+FFFF cannot be drawn and are left out: U+1F600; write others\n");
  EXPECT_THAT(run.m_strOut, HasSubstr("labels             2, of 2 glyphs"));
}

TEST(QXLabelProgram, AtlasShowsThePagesOfGlyphs) {
  Folder const folder;
  std::string const strScene = WriteScene(
      folder, "[label]\ntext = Ab\nposition = 0, 0, 0\nfont = DejaVu Sans\nsize = 20\nbold = yes\nhalo = #FFFFFF\n");
  ProgramRun const run =
      RunProgram(folder, "atlas " + Quote(strScene) + " --renderer null --out " + Quote(folder.Path("atlas")));
  EXPECT_EQ(run.m_nExitStatus, 0);
  EXPECT_EQ(run.m_strError, "");
  EXPECT_THAT(run.m_strOut, HasSubstr("Font_BigTexture_0           1024 x 1024  PF_BYTE_LA (5)            4 "));
  EXPECT_EQ(ReadPicture(folder.Path("atlas/Font_BigTexture_0.png")).m_nWidth, 2048);
  EXPECT_THAT(ReadText(folder.Path("atlas/atlas.txt")), HasSubstr("b U+0062, DejaVu Sans 20 bold halo\n"));
}

TEST(QXLabelProgram, SceneWithoutMarksHasNoAtlas) {
  Folder const folder;
  std::string const strScene = WriteScene(folder, "[model]\nfile = " + QXAssimp::ModelPath("block.obj") + "\n");
  ProgramRun const run =
      RunProgram(folder, "atlas " + Quote(strScene) + " --renderer null --out " + Quote(folder.Path("atlas")));
  EXPECT_EQ(run.m_nExitStatus, 1);
  EXPECT_THAT(run.m_strError, HasSubstr("there are no icons and no labels in it, so there is no atlas; add an [icon]"));
}

#if defined(QX_WITH_OGRE)

using Rgb = std::array<int, 3>;

Rgb At(QXPicture const& picture, int nX, int nY) {
  unsigned char const* p =
      picture.m_vecPixels.data() +
      3 * (static_cast<std::size_t>(nY) * static_cast<std::size_t>(picture.m_nWidth) + static_cast<std::size_t>(nX));
  return {p[0], p[1], p[2]};
}

QXPicture Draw(Folder const& folder, std::string const& strLabel, std::string const& strEye = "0, -20, 0") {
  ProgramRun const run = RunProgram(folder,
      View(folder, WriteScene(folder, "[label]\nposition = 0, 0, 0\n" + strLabel, strEye), "ogre"), WithDisplay);
  EXPECT_EQ(run.m_nExitStatus, 0) << run.m_strError;
  EXPECT_EQ(run.m_strError, "");
  return ReadPicture(folder.Path("out.png"));
}

/// Smallest rectangle with everything that a test holds for: left, top, right, bottom.
template <class Test>
std::array<int, 4> Find(QXPicture const& picture, Test const& test) {
  std::array<int, 4> arrEdges{picture.m_nWidth, picture.m_nHeight, 0, 0};
  for (int y = 0; y < picture.m_nHeight; ++y)
    for (int x = 0; x < picture.m_nWidth; ++x)
      if (test(At(picture, x, y)))
        arrEdges = {std::min(arrEdges[0], x), std::min(arrEdges[1], y), std::max(arrEdges[2], x + 1),
            std::max(arrEdges[3], y + 1)};
  return arrEdges;
}

bool IsLit(Rgb const& rgb) {
  return rgb != Rgb{0, 0, 0};
}

TEST(QXLabelProgramWithDevice, TextStandsUprightOnThePoint) {
  Folder const folder;
  // An L: a stem at the left, a foot at the bottom.
  QXPicture const picture = Draw(folder, "text = L\nsize = 48\ncolor = #FFFFFF\nfont = DejaVu Sans\n");
  std::array<int, 4> const arrEdges = Find(picture, IsLit);
  EXPECT_EQ(arrEdges[3], 64);
  // 64 pixels an em, and capitals of DejaVu Sans have 0.729 of it.
  EXPECT_NEAR(arrEdges[3] - arrEdges[1], 47, 1);
  EXPECT_NEAR(0.5 * (arrEdges[0] + arrEdges[2]), 64, 3);
  EXPECT_EQ(At(picture, arrEdges[0] + 3, arrEdges[1] + 3), (Rgb{255, 255, 255}));
  EXPECT_EQ(At(picture, arrEdges[0] + 3, arrEdges[3] - 3), (Rgb{255, 255, 255}));
  EXPECT_EQ(At(picture, arrEdges[2] - 3, arrEdges[3] - 3), (Rgb{255, 255, 255}));
  EXPECT_EQ(At(picture, arrEdges[2] - 3, arrEdges[1] + 3), (Rgb{0, 0, 0}));
}

/// How much of each pixel a letter of DejaVu Sans covers, in 48 points; 0 outside of its picture.
class Coverage {
public:
  Coverage(char cLetter, bool bHalo) {
    QXC::QXTextStyle style;
    style.SetFaceName(L"DejaVu Sans");
    style.SetSize(48);
    m_pBitmap = m_Manager.GetCharBitmapData(
        QXC::QXTextLayout::MakeKey(static_cast<unsigned int>(cLetter), style, bHalo ? 1 : 0), style);
  }
  int GetWidth() const { return m_pBitmap->m_nWidth; }
  int GetHeight() const { return m_pBitmap->m_nHeight; }
  int At(int nX, int nY) const { return m_pBitmap->m_pData[2 * (nY * GetWidth() + nX) + 1]; }

private:
  QXC::QXTextureFontManager m_Manager;
  QXC::QXCharBitmapData const* m_pBitmap = nullptr;
};

TEST(QXLabelProgramWithDevice, LettersAreDrawnPixelByPixel) {
  Folder const folder;
  QXPicture const picture = Draw(folder, "text = R\nsize = 48\ncolor = #FFFFFF\nfont = DejaVu Sans\n");
  std::array<int, 4> const arrEdges = Find(picture, IsLit);
  Coverage const letter('R', false);
  // The picture has a margin of one pixel.
  for (int y = 1; y + 1 < letter.GetHeight(); ++y)
    for (int x = 1; x + 1 < letter.GetWidth(); ++x)
      ASSERT_NEAR(At(picture, arrEdges[0] + x - 1, arrEdges[1] + y - 1)[0], letter.At(x, y), 2) << x << ", " << y;
}

TEST(QXLabelProgramWithDevice, HaloIsRoundTheTextAndUnderIt) {
  Folder const folder;
  QXPicture const picture = Draw(folder, "text = R\nsize = 48\ncolor = #FF0000\nhalo = #0000FF\nfont = DejaVu Sans\n");
  std::array<int, 4> const arrText = Find(picture, [](Rgb const& rgb) { return rgb[0] > 0; });
  Coverage const letter('R', false);
  Coverage const halo('R', true);
  int nHalo = 0;
  for (int y = 0; y < letter.GetHeight(); ++y) {
    for (int x = 0; x < letter.GetWidth(); ++x) {
      Rgb const rgb = At(picture, arrText[0] + x - 1, arrText[1] + y - 1);
      ASSERT_NEAR(rgb[0], letter.At(x, y), 2) << x << ", " << y;
      ASSERT_NEAR(rgb[2], halo.At(x, y) * (255 - letter.At(x, y)) / 255, 3) << x << ", " << y;
      nHalo += rgb[2] > 128 ? 1 : 0;
    }
  }
  EXPECT_GT(nHalo, 100);
}

TEST(QXLabelProgramWithDevice, RotationIsCounterClockwise) {
  Folder const folder;
  // The foot of the L then points up at its right.
  QXPicture const picture = Draw(folder, "text = L\nsize = 48\ncolor = #FFFFFF\nrotation = 90\nfont = DejaVu Sans\n");
  std::array<int, 4> const arrEdges = Find(picture, IsLit);
  EXPECT_NEAR(arrEdges[2], 64, 1);
  EXPECT_NEAR(arrEdges[2] - arrEdges[0], 47, 1);
  EXPECT_EQ(At(picture, arrEdges[2] - 3, arrEdges[1] + 3), (Rgb{255, 255, 255}));
  EXPECT_EQ(At(picture, arrEdges[0] + 3, arrEdges[3] - 3), (Rgb{255, 255, 255}));
  EXPECT_EQ(At(picture, arrEdges[0] + 3, arrEdges[1] + 3), (Rgb{0, 0, 0}));
}

TEST(QXLabelProgramWithDevice, FlatTextIsReadFromAbove) {
  Folder const folder;
  std::string const strFlat =
      "text = L\nfacing = flat\nheight = 8\ncolor = #FFFFFF\nalign = center\nfont = DejaVu Sans\n";
  // From above and a little from the south, so that north is up.
  QXPicture const picture = Draw(folder, strFlat, "0, -0.02, 20");
  std::array<int, 4> const arrEdges = Find(picture, IsLit);
  // Of 11.3 units across 128 pixels the letter has 5.8.
  EXPECT_NEAR(arrEdges[3] - arrEdges[1], 66, 3);
  EXPECT_GT(At(picture, arrEdges[0] + 4, arrEdges[1] + 6)[0], 200);
  EXPECT_GT(At(picture, arrEdges[2] - 6, arrEdges[3] - 4)[0], 200);
  EXPECT_EQ(At(picture, arrEdges[2] - 6, arrEdges[1] + 6), (Rgb{0, 0, 0}));
}

TEST(QXLabelProgramWithDevice, DepthOffIsSeenThroughModels) {
  Folder const folder;
  std::string const strModel =
      "[model]\nfile = " + QXAssimp::ModelPath("block.obj") + "\nscale = 1000\nposition = -1000, -3000, -2000\n";
  auto const count = [&](std::string const& strDepth) {
    QXPicture const picture = Draw(folder,
        "text = HHHH\nsize = 30\nalign = center\ncolor = #FF00FF\ndepth = " + strDepth + "\nfont = DejaVu Sans\n" +
            strModel,
        "0, -5000, 0");
    int nCount = 0;
    for (int y = 0; y < picture.m_nHeight; ++y)
      for (int x = 0; x < picture.m_nWidth; ++x) nCount += At(picture, x, y) == Rgb{255, 0, 255} ? 1 : 0;
    return nCount;
  };
  EXPECT_GT(count("off"), 500);
  EXPECT_EQ(count("on"), 0);
}

#endif

}  // namespace
}  // namespace QXApp
