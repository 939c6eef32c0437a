#include <apps/qx3d/QXIconSet.h>

#include <apps/qx3d/QXSceneFile.h>
#include <apps/qx3d/QXSceneText.h>
#include <apps/qx3d/QXSymbolSet.h>

#include <QxGraphics3D/atlas/QXTextureImageManager.h>
#include <QxGraphics3D/testing/QXNullTexture.h>
#include <QxGraphics3D/testing/QXRecordingGraphics3D.h>

#include <tests/assimp/QXTestFiles.h>
#include <tests/qx3d/QXTgaMaker.h>
#include <tests/renderop/QXBareDrawables.h>

#include <gtest/gtest.h>

namespace QXApp {
namespace {

using Bytes = std::array<unsigned char, 4>;

/// Has no texture for anybody.
class EmptyTextureManager final : public QXC::QXTextureManager {
public:
  QXC::QXTexture* GetTexture(QXC::QdcUnicodeString const&, unsigned char) override { return nullptr; }
  unsigned char ManagerOperation2(QXC::QdcUnicodeString const&) const override { return 0; }
};

class QXIconSetTest : public testing::Test {
protected:
  void SetUp() override {
    ASSERT_NE(m_Graphics3D.Initialize(QXC::QdcUnicodeString()), 0);
    m_Graphics3D.GetLog().Clear();
  }
  void TearDown() override {
    m_Icons.GiveBack(m_Graphics3D);
    EXPECT_EQ(static_cast<QXC::QXNullTextureManager&>(*m_Graphics3D.GetTextureManager()).GetTextureCount(), 0u);
  }

  QXSceneIcon& Add(std::string const& strImage, double dWidth = 0.0, double dHeight = 0.0) {
    QXSceneIcon icon;
    icon.m_strImage = strImage;
    icon.m_vecPosition = QXC::QXVector3d(1.0, 2.0, 3.0);
    icon.m_dWidth = dWidth;
    icon.m_dHeight = dHeight;
    icon.m_nLine = 10 * static_cast<int>(m_vecIcons.size() + 1);
    m_vecIcons.push_back(icon);
    return m_vecIcons.back();
  }

  std::string Write(std::string const& strName, int nWidth, int nHeight, Bytes const& bytes = {10, 20, 30, 255}) {
    return m_Folder.Write(strName, MakeTga(nWidth, nHeight, bytes));
  }

  void Show() {
    m_Pictures.Load(m_vecIcons, m_Problems);
    m_Icons.Show(m_Graphics3D, L"Scene3D", m_vecIcons, m_Pictures, m_Symbols, m_Problems);
  }

  bool HasLogged(std::string const& strCall) {
    std::string const strLog = m_Graphics3D.GetLog().GetText();
    return strLog.find(strCall) != std::string::npos;
  }

  QXC::QXRecordingGraphics3D m_Graphics3D;
  QXAssimp::QXTestFolder m_Folder;
  std::vector<QXSceneIcon> m_vecIcons;
  QXIconPictures m_Pictures;
  QXSceneProblems m_Problems{"city.qxscene"};
  QXSymbolSet m_Symbols;
  QXIconSet m_Icons;
};

TEST_F(QXIconSetTest, IconIsABillboardThatShowsItsPartOfThePage) {
  Add(Write("a.tga", 14, 12));
  Show();
  EXPECT_TRUE(m_Problems.IsEmpty()) << m_Problems.GetLines()[0];
  EXPECT_TRUE(HasLogged("SetPosition((1 2 3))")) << m_Graphics3D.GetLog().GetText();
  EXPECT_TRUE(HasLogged("SetSize(14, 12, 1)")) << m_Graphics3D.GetLog().GetText();
  // A slot of 16 in the corner of the page; the picture in its middle.
  EXPECT_TRUE(HasLogged(", (0.0009765625 0.001953125 0.0146484375 0.013671875))")) << m_Graphics3D.GetLog().GetText();
}

TEST_F(QXIconSetTest, PixelsStandInThePageWithTheirColours) {
  Add(m_Folder.Write("a.tga", MakeTga(2, 2, [](int x, int y) {
    return Bytes{static_cast<unsigned char>(100 * x), static_cast<unsigned char>(100 * y), 250, 255};
  })));
  Show();
  std::vector<QXAtlasPage> vecPages = m_Icons.GetPages();
  ASSERT_EQ(vecPages.size(), 1u);
  EXPECT_EQ(vecPages[0].m_strName, "Image_BigTexture_0");
  EXPECT_EQ(vecPages[0].m_nSize, 1024);
  ASSERT_EQ(vecPages[0].m_vecTiles.size(), 1u);
  EXPECT_EQ(vecPages[0].m_vecTiles[0].m_nSize, 4);
  ASSERT_EQ(ReadAtlasPage(m_Graphics3D, vecPages[0]), "");
  auto const at = [&](std::size_t x, std::size_t y) {
    unsigned char const* p = vecPages[0].m_vecPixels.data() + 4 * (1024 * y + x);
    return Bytes{p[0], p[1], p[2], p[3]};
  };
  for (std::size_t y = 0; y < 4; ++y)
    for (std::size_t x = 0; x < 4; ++x)
      EXPECT_EQ(at(x, y),
          (Bytes{static_cast<unsigned char>(x < 2 ? 0 : 100), static_cast<unsigned char>(y < 2 ? 0 : 100), 250, 255}));
  EXPECT_EQ(at(4, 0), (Bytes{255, 0, 255, 255})) << "magenta where nothing is";
}

TEST_F(QXIconSetTest, IconsOfOneImageShareAPlace) {
  std::string const strA = Write("a.tga", 12, 12);
  for (int i = 0; i < 5; ++i) Add(strA, 12, 12);
  Add(Write("b.tga", 30, 30));
  Show();
  EXPECT_EQ(m_Icons.GetCount(), 6u);
  std::vector<QXAtlasPage> const vecPages = m_Icons.GetPages();
  ASSERT_EQ(vecPages.size(), 1u);
  EXPECT_EQ(vecPages[0].m_vecTiles.size(), 2u);
  EXPECT_DOUBLE_EQ(vecPages[0].GetFill(), (16.0 * 16.0 + 32.0 * 32.0) / (1024.0 * 1024.0));
}

TEST_F(QXIconSetTest, PlacesDoNotOverlapAndLargeOnesComeFirst) {
  for (int i = 0; i < 40; ++i) Add(Write("i" + std::to_string(i) + ".tga", 1 + 7 * (i % 17), 5));
  Show();
  std::vector<QXAtlasPage> const vecPages = m_Icons.GetPages();
  ASSERT_EQ(vecPages.size(), 1u);
  std::vector<int> vecTaken(1024 * 1024);
  for (QXAtlasTile const& tile : vecPages[0].m_vecTiles)
    for (int y = tile.m_nY; y < tile.m_nY + tile.m_nSize; ++y)
      for (int x = tile.m_nX; x < tile.m_nX + tile.m_nSize; ++x)
        ASSERT_EQ(vecTaken.at(static_cast<std::size_t>(1024 * y + x))++, 0);
  EXPECT_EQ(vecPages[0].m_vecTiles[0].m_nSize, 128) << "in the corner";
  EXPECT_EQ(vecPages[0].m_vecTiles.size(), 40u);
}

TEST_F(QXIconSetTest, SizesOfTheSceneArriveWithTheirUnit) {
  std::string const strA = Write("a.tga", 12, 12);
  Add(strA, 20, 10).m_eUnit = QXIconUnit::World;
  Add(strA, 24, 36);
  Show();
  EXPECT_TRUE(HasLogged("SetSize(20, 10, 0)")) << m_Graphics3D.GetLog().GetText();
  EXPECT_TRUE(HasLogged("SetSize(24, 36, 1)")) << m_Graphics3D.GetLog().GetText();
}

TEST_F(QXIconSetTest, FullPagesAreFollowedByFurtherOnes) {
  for (int i = 0; i < 5; ++i) Add(Write("i" + std::to_string(i) + ".tga", 500, 500));
  Show();
  ASSERT_EQ(m_Icons.GetPages().size(), 2u);
  EXPECT_DOUBLE_EQ(m_Icons.GetPages()[0].GetFill(), 1.0);
  EXPECT_EQ(m_Icons.GetPages()[1].m_strName, "Image_BigTexture_1");
}

TEST_F(QXIconSetTest, EverythingIsGivenBack) {
  int const nBefore = QXC::QXNullObject::GetLiveCount();
  Add(Write("a.tga", 12, 12));
  Show();
  EXPECT_EQ(QXC::QXNullObject::GetLiveCount(), nBefore + 2) << "a billboard and a texture";
  m_Icons.GiveBack(m_Graphics3D);
  EXPECT_EQ(QXC::QXNullObject::GetLiveCount(), nBefore);
  EXPECT_EQ(m_Icons.GetCount(), 0u);
  EXPECT_TRUE(m_Icons.GetPages().empty());
  m_Icons.GiveBack(m_Graphics3D);
}

TEST_F(QXIconSetTest, SetsOfOneProcessShareTheirPlaces) {
  Add(Write("a.tga", 12, 12));
  Show();
  QXIconSet other;
  QXIconPictures pictures;
  pictures.Load(m_vecIcons, m_Problems);
  other.Show(m_Graphics3D, L"Scene3D", m_vecIcons, pictures, m_Symbols, m_Problems);
  EXPECT_EQ(other.GetPages()[0].m_vecTiles.size(), 1u);
  EXPECT_EQ(other.GetPages()[0].m_vecTiles[0].m_nX, m_Icons.GetPages()[0].m_vecTiles[0].m_nX);
  m_Icons.GiveBack(m_Graphics3D);
  QXAtlasPage page = other.GetPages()[0];
  EXPECT_EQ(ReadAtlasPage(m_Graphics3D, page), "");
  other.GiveBack(m_Graphics3D);
}

TEST_F(QXIconSetTest, RendererWithoutTexturesIsTold) {
  QXC::QXTextureManager* pManager = m_Graphics3D.m_pTextureManager;
  m_Graphics3D.m_pTextureManager = nullptr;
  Add(Write("a.tga", 12, 12));
  Show();
  m_Icons.GiveBack(m_Graphics3D);
  m_Graphics3D.m_pTextureManager = pManager;
  ASSERT_EQ(m_Problems.GetLines().size(), 1u);
  EXPECT_NE(m_Problems.GetLines()[0].find("keeps no textures"), std::string::npos);
  EXPECT_EQ(m_Icons.GetCount(), 0u);
}

TEST_F(QXIconSetTest, RendererThatMakesNoTextureIsToldOnceForAPage) {
  QXC::QXTextureManager* pManager = m_Graphics3D.m_pTextureManager;
  EmptyTextureManager empty;
  m_Graphics3D.m_pTextureManager = &empty;
  Add(Write("a.tga", 12, 12));
  Add(Write("b.tga", 12, 12));
  Show();
  EXPECT_EQ(m_Icons.GetCount(), 0u);
  EXPECT_TRUE(m_Icons.GetPages().empty());
  m_Icons.GiveBack(m_Graphics3D);
  QXAtlasPage page;
  page.m_strName = "Image_BigTexture_0";
  page.m_nSize = 1024;
  EXPECT_NE(ReadAtlasPage(m_Graphics3D, page).find("Image_BigTexture_0"), std::string::npos);
  m_Graphics3D.m_pTextureManager = pManager;
  ASSERT_EQ(m_Problems.GetLines().size(), 1u);
  EXPECT_EQ(
      m_Problems.GetLines()[0].find("city.qxscene:10: the renderer cannot make the texture Image_BigTexture_0"), 0u)
      << m_Problems.GetLines()[0];
}

TEST_F(QXIconSetTest, RendererThatMakesNoBillboardIsToldOnce) {
  QXC::QXRenderOperationManager* pManager = m_Graphics3D.m_pRenderOperationManager;
  QXC::QXBareRenderOperationManager bare;
  m_Graphics3D.m_pRenderOperationManager = &bare;
  std::string const strA = Write("a.tga", 12, 12);
  Add(strA);
  Add(strA);
  Show();
  m_Graphics3D.m_pRenderOperationManager = pManager;
  ASSERT_EQ(m_Problems.GetLines().size(), 1u);
  EXPECT_EQ(m_Problems.GetLines()[0].find("city.qxscene:10: the renderer cannot make an icon"), 0u)
      << m_Problems.GetLines()[0];
}

TEST_F(QXIconSetTest, FullAtlasIsTold) {
  // Each takes a page, and an index of a page has 8 bits.
  auto& manager = QXC::QXTextureImageManager::GetSingleton();
  QXC::QdcUnicodeString strName;
  for (int i = 0; i < 256; ++i) {
    strName.Format(L"filler %d", i);
    QXC::QXTextureImage* pImage = manager.GetTextureImage(strName);
    pImage->m_nSize = 1024;
    pImage->m_pTextureData = new QXC::QXTextureData;
    pImage->m_pTextureData->m_eFormat = QXC::PF_A8R8G8B8;
    ASSERT_NE(manager.FindSpaceInBigTextures(pImage), 0);
  }
  Add(Write("a.tga", 12, 12));
  Show();
  m_Icons.GiveBack(m_Graphics3D);
  for (int i = 0; i < 256; ++i) {
    strName.Format(L"filler %d", i);
    manager.RemoveTextureImage(strName);
  }
  ASSERT_EQ(m_Problems.GetLines().size(), 1u);
  EXPECT_NE(m_Problems.GetLines()[0].find("city.qxscene:10: the atlas has no place"), std::string::npos);
  EXPECT_EQ(m_Icons.GetCount(), 0u);
}

}  // namespace
}  // namespace QXApp
