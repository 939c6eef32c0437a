// Icons of scenes as a person sees them.
#include <tests/assimp/QXTestFiles.h>
#include <tests/qx3d/QXPngReader.h>
#include <tests/qx3d/QXProgramRun.h>
#include <tests/qx3d/QXTgaMaker.h>

#include <gtest/gtest.h>

#include <algorithm>

namespace QXApp {
namespace {

using Folder = QXAssimp::QXTestFolder;
using Bytes = std::array<unsigned char, 4>;  // blue, green, red, alpha

/// A black scene, looked at from the south; the eye is level with the middle of the picture.
std::string WriteScene(Folder const& folder, std::string const& strIcons) {
  return folder.Write("a.qxscene",
      "[scene]\nbackground = #000000\nground = no\n[camera]\neye = 0, -20, 0\nlook = 0, 0, 0\n" + strIcons);
}

std::string View(Folder const& folder, std::string const& strScene, std::string const& strRenderer,
    std::string const& strOptions = "") {
  return "view " + Quote(strScene) + " --renderer " + strRenderer + " --size 64x64 --out " +
         Quote(folder.Path("out.png")) + " " + strOptions;
}

TEST(QXIconProgram, StatsTellIconsPagesAndFill) {
  Folder const folder;
  folder.Write("a.tga", MakeTga(12, 12, {0, 0, 255, 255}));
  std::string const strScene = WriteScene(
      folder, "[icon]\nimage = a.tga\nposition = 0, 0, 0\n[icon]\nimage = a.tga\nposition = 1, 0, 0\nsize = 500\n");
  ProgramRun const run = RunProgram(folder, View(folder, strScene, "null", "--stats"));
  EXPECT_EQ(run.m_nExitStatus, 0) << run.m_strError;
  EXPECT_EQ(run.m_strError, "");
  EXPECT_NE(run.m_strOut.find("icons              2, of 1 tile on 1 atlas page, 0.0 % full\n"), std::string::npos)
      << run.m_strOut;
}

TEST(QXIconProgram, BrokenIconIsOneLineAndTheSceneIsShown) {
  Folder const folder;
  folder.Write("a.tga", MakeTga(12, 12, {0, 0, 255, 255}));
  std::string const strBroken = folder.Write("b.tga", "x");
  std::string const strScene =
      WriteScene(folder, "[icon]\nimage = b.tga\nposition = 0, 0, 0\n[icon]\nimage = a.tga\nposition = 1, 0, 0\n");
  ProgramRun const run = RunProgram(folder, View(folder, strScene, "null", "--stats"));
  EXPECT_EQ(run.m_nExitStatus, 0);
  EXPECT_EQ(run.m_strError.find("qx3d: " + strScene + ":8: image " + strBroken + ": "), 0u) << run.m_strError;
  EXPECT_EQ(std::count(run.m_strError.begin(), run.m_strError.end(), '\n'), 1) << run.m_strError;
  EXPECT_NE(run.m_strOut.find("icons              1, of 1 tile"), std::string::npos) << run.m_strOut;
  EXPECT_TRUE(std::filesystem::exists(folder.Path("out.png")));
}

TEST(QXIconProgram, SymbolsAreOnPagesOfTheirOwn) {
  Folder const folder;
  std::string const strScene = WriteScene(folder,
      "[icon]\nsymbol = block\nposition = 0, 0, 0\n[symbol]\nname = block\nfile = " + QXAssimp::ModelPath("block.obj") +
          "\n");
  ProgramRun const run =
      RunProgram(folder, "atlas " + Quote(strScene) + " --renderer null --out " + Quote(folder.Path("atlas")));
  EXPECT_EQ(run.m_nExitStatus, 0);
  EXPECT_EQ(run.m_strError, "");
  EXPECT_NE(run.m_strOut.find("RenderTexture_BigTexture_0  2048 x 2048"), std::string::npos) << run.m_strOut;
  EXPECT_EQ(ReadPicture(folder.Path("atlas/RenderTexture_BigTexture_0.png")).m_nWidth, 2048);
}

#if defined(QX_WITH_OGRE)

using Rgb = std::array<int, 3>;

Rgb At(QXPicture const& picture, int nX, int nY) {
  unsigned char const* p =
      picture.m_vecPixels.data() +
      3 * (static_cast<std::size_t>(nY) * static_cast<std::size_t>(picture.m_nWidth) + static_cast<std::size_t>(nX));
  return {p[0], p[1], p[2]};
}

/// Draws a scene of one icon.
QXPicture Draw(Folder const& folder, std::string const& strIcon) {
  ProgramRun const run = RunProgram(folder, View(folder, WriteScene(folder, strIcon), "ogre"), WithDisplay);
  EXPECT_EQ(run.m_nExitStatus, 0) << run.m_strError;
  EXPECT_EQ(run.m_strError, "");
  return ReadPicture(folder.Path("out.png"));
}

/// Smallest rectangle with everything that is not black: left, top, right, bottom.
std::array<int, 4> FindIcon(QXPicture const& picture) {
  std::array<int, 4> arrEdges{picture.m_nWidth, picture.m_nHeight, 0, 0};
  for (int y = 0; y < picture.m_nHeight; ++y)
    for (int x = 0; x < picture.m_nWidth; ++x)
      if (At(picture, x, y) != Rgb{0, 0, 0})
        arrEdges = {std::min(arrEdges[0], x), std::min(arrEdges[1], y), std::max(arrEdges[2], x + 1),
            std::max(arrEdges[3], y + 1)};
  return arrEdges;
}

TEST(QXIconProgramWithDevice, IconInItsOwnSizeIsItsImagePixelByPixel) {
  Folder const folder;
  auto const pixel = [](int x, int y) {
    // One pixel is clear; its colour must be nowhere.
    if (x == 4 && y == 2) return Bytes{255, 0, 255, 0};
    return Bytes{static_cast<unsigned char>(20 + 25 * x), static_cast<unsigned char>(20 + 40 * y),
        static_cast<unsigned char>(x % 2 == 0 ? 250 : 30), 255};
  };
  folder.Write("a.tga", MakeTga(9, 5, pixel));
  QXPicture const picture = Draw(folder, "[icon]\nimage = a.tga\nposition = 0, 0, 0\n");
  std::array<int, 4> const arrEdges = FindIcon(picture);
  EXPECT_EQ(arrEdges[2] - arrEdges[0], 9);
  // The middle of its lower edge is the middle of the picture.
  EXPECT_EQ(arrEdges[1], 32 - 5);
  EXPECT_EQ(arrEdges[3], 32);
  EXPECT_NEAR(arrEdges[0], 27.5, 0.5);
  for (int y = 0; y < 5; ++y)
    for (int x = 0; x < 9; ++x) {
      Bytes const bytes = pixel(x, y);
      Rgb const expected = bytes[3] == 0 ? Rgb{0, 0, 0} : Rgb{bytes[2], bytes[1], bytes[0]};
      EXPECT_EQ(At(picture, arrEdges[0] + x, arrEdges[1] + y), expected) << x << ", " << y;
    }
}

TEST(QXIconProgramWithDevice, NothingButTheIconsColourIsAtItsEdgesInAnySize) {
  Folder const folder;
  folder.Write("a.tga", MakeTga(11, 7, {255, 255, 255, 255}));
  for (char const* szSize : {"size = 47, 40", "size = 3, 5", "size = 3.3, 2.7\nunit = world",
           "size = 0.6, 0.7\nunit = world", "size = 0.21\nunit = world"}) {
    QXPicture const picture =
        Draw(folder, std::string("[icon]\nimage = a.tga\nposition = 0.03, 0, -1.01\n") + szSize + "\n");
    int nSeen = 0;
    for (int y = 0; y < 64; ++y)
      for (int x = 0; x < 64; ++x) {
        Rgb const rgb = At(picture, x, y);
        nSeen += rgb[0] > 0 ? 1 : 0;
        ASSERT_TRUE(rgb[0] == rgb[1] && rgb[1] == rgb[2]) << szSize << " at " << x << ", " << y;
      }
    EXPECT_GT(nSeen, 0) << szSize;
  }
}

TEST(QXIconProgramWithDevice, CutOutImageHasNoRimOfItsKey) {
  Folder const folder;
  // A white disc on the key's magenta.
  folder.Write("a.tga", MakeTga(16, 16, [](int x, int y) {
    int const nX = 2 * x - 15;
    int const nY = 2 * y - 15;
    return nX * nX + nY * nY < 150 ? Bytes{255, 255, 255, 255} : Bytes{255, 0, 255, 255};
  }));
  QXPicture const picture =
      Draw(folder, "[icon]\nimage = a.tga\nposition = 0, 0, -2\nsize = 50\ncolor-key = #FF00FF\n");
  for (int y = 0; y < 64; ++y)
    for (int x = 0; x < 64; ++x) {
      Rgb const rgb = At(picture, x, y);
      ASSERT_TRUE(rgb[0] == rgb[1] && rgb[1] == rgb[2]) << x << ", " << y;
    }
  EXPECT_EQ(At(picture, 32, 18), (Rgb{255, 255, 255}));
}

TEST(QXIconProgramWithDevice, SymbolIsItsModelAndClearAroundIt) {
  Folder const folder;
  std::string const strScene =
      WriteScene(folder, "[symbol]\nname = block\nfile = " + QXAssimp::ModelPath("block.obj") +
                             "\npixels = 30\nelevation = 90\nup = z\n[icon]\nsymbol = block\nposition = 0, 0, 0\n");
  ProgramRun const run = RunProgram(folder, View(folder, strScene, "ogre", "--stats"), WithDisplay);
  ASSERT_EQ(run.m_nExitStatus, 0) << run.m_strError;
  EXPECT_EQ(run.m_strError, "");
  EXPECT_NE(run.m_strOut.find("icons              1, of 1 tile on 1 atlas page"), std::string::npos) << run.m_strOut;
  QXPicture const picture = ReadPicture(folder.Path("out.png"));
  // From above it is longer than wide, in the middle of 30 x 30 pixels that stand on the middle of the picture.
  std::array<int, 4> const arrEdges = FindIcon(picture);
  EXPECT_NEAR(std::max(arrEdges[2] - arrEdges[0], arrEdges[3] - arrEdges[1]), 29, 1) << "a pixel of the page each side";
  EXPECT_LT(std::min(arrEdges[2] - arrEdges[0], arrEdges[3] - arrEdges[1]), 25);
  EXPECT_NEAR(0.5 * (arrEdges[0] + arrEdges[2]), 32.0, 1.0);
  EXPECT_NEAR(0.5 * (arrEdges[1] + arrEdges[3]), 17.0, 1.0);
  Rgb const rgb = At(picture, 32, 17);
  EXPECT_GT(rgb[0], 2 * rgb[1]) << "the block is red";
}

TEST(QXIconProgramWithDevice, SymbolsAreLitFromTheUpperLeft) {
  Folder const folder;
  // A roof of four sides, seen from above.
  folder.Write("roof.obj", "v -1 -1 0\nv 1 -1 0\nv 1 1 0\nv -1 1 0\nv 0 0 1\nf 1 2 5\nf 2 3 5\nf 3 4 5\nf 4 1 5\n");
  std::string const strScene =
      WriteScene(folder, "[symbol]\nname = roof\nfile = roof.obj\npixels = 32\nelevation = 90\nup = z\n"
                         "[icon]\nsymbol = roof\nposition = 0, 0, 0\n");
  ProgramRun const run = RunProgram(folder, View(folder, strScene, "ogre"), WithDisplay);
  ASSERT_EQ(run.m_nExitStatus, 0) << run.m_strError;
  QXPicture const picture = ReadPicture(folder.Path("out.png"));
  // It stands on the middle of the picture, 32 high; each side's own middle is 8 pixels off.
  int const nWest = At(picture, 24, 16)[1];
  int const nNorth = At(picture, 32, 8)[1];
  int const nEast = At(picture, 40, 16)[1];
  int const nSouth = At(picture, 32, 24)[1];
  EXPECT_GT(nWest, nEast + 20);
  EXPECT_GT(nNorth, nSouth + 10);
}

TEST(QXIconProgramWithDevice, AtlasOfTheDeviceIsThatOfTheNullRenderer) {
  Folder const folder;
  std::string strIcons;
  for (int i = 0; i < 6; ++i) {
    std::string const strName = "i" + std::to_string(i) + ".tga";
    folder.Write(strName, MakeTga(5 + 20 * i, 30, [&](int x, int y) {
      return Bytes{static_cast<unsigned char>(7 * x), static_cast<unsigned char>(8 * y),
          static_cast<unsigned char>(40 * i), static_cast<unsigned char>(255 - y)};
    }));
    strIcons += "[icon]\nimage = " + strName + "\nposition = 0, 0, 0\n";
  }
  std::string const strScene = WriteScene(folder, strIcons);
  for (char const* szRenderer : {"null", "ogre"}) {
    ProgramRun const run = RunProgram(folder,
        "atlas " + Quote(strScene) + " --renderer " + szRenderer + " --out " + Quote(folder.Path(szRenderer)),
        WithDisplay);
    EXPECT_EQ(run.m_nExitStatus, 0) << run.m_strError;
  }
  QXPicture const null = ReadPicture(folder.Path("null/Image_BigTexture_0.png"));
  ASSERT_EQ(null.m_nWidth, 2048);
  EXPECT_EQ(ReadPicture(folder.Path("ogre/Image_BigTexture_0.png")).m_vecPixels, null.m_vecPixels);
}

#endif

}  // namespace
}  // namespace QXApp
