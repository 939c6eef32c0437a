#include <apps/qx3d/QXSymbolModels.h>
#include <apps/qx3d/QXSymbolSet.h>

#include <apps/qx3d/QXIconSet.h>
#include <apps/qx3d/QXSceneText.h>

#include <QxGraphics3D/renderop/QXRenderOperation3D.h>
#include <QxGraphics3D/testing/QXRecordingGraphics3D.h>

#include <tests/assimp/QXTestFiles.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace QXApp {
namespace {

using QXC::QXVector3d;

void ExpectNear(QXVector3d const& vec, QXVector3d const& expected) {
  EXPECT_NEAR(vec.x, expected.x, 1e-9);
  EXPECT_NEAR(vec.y, expected.y, 1e-9);
  EXPECT_NEAR(vec.z, expected.z, 1e-9);
}

/// A model that is 4 wide, 2 deep and 6 high.
QXSymbolModel MakeModel(double dElevation) {
  QXSymbolModel model;
  model.m_Symbol.m_dElevation = dElevation;
  model.m_Scene.m_Bounds = QXC::QXBoundingBox(QXVector3d(100.0, 200.0, 300.0), QXVector3d(104.0, 202.0, 306.0));
  return model;
}

TEST(QXSymbolModel, FromAboveNorthIsUpAndHeightComesToTheViewer) {
  // 4 wide in 42 pixels less a pixel at each side: 10 for one.
  QXC::QXMatrix4d const mat = MakeModel(90.0).MakeView(1000.0, 500.0, 42.0);
  ExpectNear(QXVector3d(102.0, 201.0, 303.0).MultiplyMatrix(mat), QXVector3d(1021.0, 521.0, 0.0));
  ExpectNear(QXVector3d(104.0, 201.0, 303.0).MultiplyMatrix(mat), QXVector3d(1041.0, 521.0, 0.0));
  ExpectNear(QXVector3d(102.0, 202.0, 303.0).MultiplyMatrix(mat), QXVector3d(1021.0, 531.0, 0.0));
  ExpectNear(QXVector3d(102.0, 201.0, 304.0).MultiplyMatrix(mat), QXVector3d(1021.0, 521.0, 10.0));
}

TEST(QXSymbolModel, FromTheHorizonHeightIsUpAndTheSouthIsNear) {
  QXC::QXMatrix4d const mat = MakeModel(0.0).MakeView(0.0, 0.0, 62.0);
  ExpectNear(QXVector3d(102.0, 201.0, 306.0).MultiplyMatrix(mat), QXVector3d(31.0, 61.0, 0.0));
  ExpectNear(QXVector3d(102.0, 200.0, 303.0).MultiplyMatrix(mat), QXVector3d(31.0, 31.0, 10.0));
}

TEST(QXSymbolModel, EveryCornerIsInsideTheSquare) {
  for (double const dElevation : {0.0, 30.0, 45.0, 71.0, 90.0}) {
    QXSymbolModel const model = MakeModel(dElevation);
    QXC::QXMatrix4d const mat = model.MakeView(64.0, 128.0, 64.0);
    for (QXVector3d const& vecCorner : model.m_Scene.m_Bounds.GetCorners()) {
      QXVector3d const vec = vecCorner.MultiplyMatrix(mat);
      EXPECT_GE(vec.x, 65.0 - 1e-9) << dElevation;
      EXPECT_LE(vec.x, 127.0 + 1e-9) << dElevation;
      EXPECT_GE(vec.y, 129.0 - 1e-9) << dElevation;
      EXPECT_LE(vec.y, 191.0 + 1e-9) << dElevation;
    }
  }
}

TEST(QXSymbolModel, PointHasAPlaceToo) {
  QXSymbolModel model;
  model.m_Scene.m_Bounds = QXC::QXBoundingBox(QXVector3d(1.0, 2.0, 3.0), QXVector3d(1.0, 2.0, 3.0));
  ExpectNear(QXVector3d(1.0, 2.0, 3.0).MultiplyMatrix(model.MakeView(0.0, 0.0, 10.0)), QXVector3d(5.0, 5.0, 0.0));
}

TEST(QXSymbolModel, VerticesReachToTheEdgesOfTheSquare) {
  // A pyramid: seen from half above, the upper corners of its box are empty.
  QXAssimp::QXTestFolder const folder;
  QXSceneFile scene;
  scene.m_vecSymbols.resize(1);
  scene.m_vecSymbols[0].m_strName = "tent";
  scene.m_vecSymbols[0].m_dElevation = 30.0;
  scene.m_vecSymbols[0].m_dHeading = 30.0;
  scene.m_vecSymbols[0].m_strFile = folder.Write(
      "tent.obj", "v -1 0 -1\nv 1 0 -1\nv 1 0 1\nv -1 0 1\nv 0 3 0\nf 1 2 5\nf 2 3 5\nf 3 4 5\nf 4 1 5\nf 4 3 2 1\n");
  scene.m_vecIcons.resize(1);
  scene.m_vecIcons[0].m_strSymbol = "tent";
  QXSceneProblems problems("a.qxscene");
  std::vector<std::string> vecPictureProblems;
  std::vector<QXSymbolModel> const vecSymbols = LoadSymbols(
      scene, UpAxis::Y, [](std::string const&) {}, problems, vecPictureProblems);
  ASSERT_EQ(vecSymbols.size(), 1u);
  QXC::QXMatrix4d const mat = vecSymbols[0].MakeView(100.0, 200.0, 66.0);
  double const dTurn = std::numbers::pi / 6.0;
  double dLow = 1e9;
  double dHigh = -1e9;
  for (QXVector3d const& vec : {QXVector3d(-1.0, -1.0, 0.0), QXVector3d(1.0, -1.0, 0.0), QXVector3d(1.0, 1.0, 0.0),
           QXVector3d(-1.0, 1.0, 0.0), QXVector3d(0.0, 0.0, 3.0)}) {
    // Clockwise seen from above.
    QXVector3d const vecTurned(
        vec.x * std::cos(dTurn) + vec.y * std::sin(dTurn), vec.y * std::cos(dTurn) - vec.x * std::sin(dTurn), vec.z);
    double const dY = vecTurned.MultiplyMatrix(mat).y;
    dLow = std::min(dLow, dY);
    dHigh = std::max(dHigh, dY);
  }
  EXPECT_NEAR(dLow, 201.0, 1e-4);
  EXPECT_NEAR(dHigh, 265.0, 1e-4);
}

TEST(QXSymbolModel, OnlyShownSymbolsAreReadAndBadOnesTold) {
  QXSceneFile scene;
  for (char const* szName : {"block", "none", "unseen"}) {
    scene.m_vecSymbols.emplace_back();
    scene.m_vecSymbols.back().m_strName = szName;
    scene.m_vecSymbols.back().m_strFile = QXAssimp::ModelPath(std::string(szName) + ".obj");
    scene.m_vecSymbols.back().m_nLine = 7;
  }
  scene.m_vecIcons.resize(3);
  scene.m_vecIcons[0].m_strSymbol = "block";
  scene.m_vecIcons[1].m_strSymbol = "none";
  scene.m_vecIcons[2].m_strSymbol = "block";
  QXSceneProblems problems("a.qxscene");
  std::vector<std::string> vecRead;
  std::vector<std::string> vecPictureProblems;
  std::vector<QXSymbolModel> const vecSymbols = LoadSymbols(
      scene, UpAxis::Auto, [&](std::string const& strStep) { vecRead.push_back(strStep); }, problems,
      vecPictureProblems);
  ASSERT_EQ(vecSymbols.size(), 1u);
  EXPECT_EQ(vecSymbols[0].m_Symbol.m_strName, "block");
  EXPECT_EQ(vecSymbols[0].m_Scene.m_nTriangles, 12u);
  EXPECT_EQ(vecRead.size(), 2u);
  ASSERT_EQ(problems.GetLines().size(), 1u);
  EXPECT_EQ(problems.GetLines()[0].find("a.qxscene:7: " + QXAssimp::ModelPath("none.obj") + ": no such file"), 0u)
      << problems.GetLines()[0];
}

class QXSymbolSetTest : public testing::Test {
protected:
  void SetUp() override { ASSERT_NE(m_Graphics3D.Initialize(QXC::QdcUnicodeString()), 0); }
  void TearDown() override { m_Symbols.GiveBack(m_Graphics3D); }

  QXC::QXRecordingGraphics3D m_Graphics3D;
  QXSymbolSet m_Symbols;
};

TEST_F(QXSymbolSetTest, PictureHasTwiceThePixelsAndAPlaceOnThePage) {
  QXSymbolPlace const* pPlace = m_Symbols.Take(m_Graphics3D, "a", 50);
  ASSERT_NE(pPlace, nullptr);
  EXPECT_EQ(pPlace->m_rcPart, (QXC::QdcRect2D(0.0, 0.0, 100.0 / 2048.0, 100.0 / 2048.0)));
  double dLeft = -1.0;
  double dBottom = -1.0;
  double dEdge = -1.0;
  pPlace->GetSquare(dLeft, dBottom, dEdge);
  EXPECT_EQ(dLeft, 0.0);
  EXPECT_EQ(dBottom, 1948.0) << "y counts upwards from the page's last row";
  EXPECT_EQ(dEdge, 100.0);
  m_Symbols.Take(m_Graphics3D, "b", 20)->GetSquare(dLeft, dBottom, dEdge);
  EXPECT_EQ(dLeft, 128.0);
  EXPECT_EQ(dBottom, 2008.0);
}

TEST_F(QXSymbolSetTest, PagesAreThereOnceTheyAreDrawn) {
  QXSymbolPlace const* pPlace = m_Symbols.Take(m_Graphics3D, "a", 50);
  ASSERT_NE(pPlace, nullptr);
  EXPECT_EQ(m_Symbols.Find("a"), nullptr);
  EXPECT_TRUE(m_Symbols.GetPages().empty());
  QXC::QXRenderOperation3D* pDrawable =
      m_Graphics3D.GetRenderOperationManager()->CreateRenderOperation3D(L"Scene3D", 1);
  EXPECT_TRUE(m_Symbols.Attach(m_Graphics3D, *pPlace, pDrawable));
  m_Graphics3D.GetLog().Clear();
  m_Symbols.Draw(m_Graphics3D);
  EXPECT_NE(m_Graphics3D.GetLog().GetText().find("RenderPatchToTexture(1024, 1024, 2048, 2048"), std::string::npos)
      << m_Graphics3D.GetLog().GetText();
  ASSERT_NE(m_Symbols.Find("a"), nullptr);
  EXPECT_NE(m_Symbols.Find("a")->m_pTexture, nullptr);
  EXPECT_EQ(m_Symbols.Find("b"), nullptr);
  std::vector<QXAtlasPage> vecPages = m_Symbols.GetPages();
  ASSERT_EQ(vecPages.size(), 1u);
  EXPECT_EQ(vecPages[0].m_strName, "RenderTexture_BigTexture_0");
  EXPECT_EQ(vecPages[0].m_nSize, 2048);
  ASSERT_EQ(vecPages[0].m_vecTiles.size(), 1u);
  EXPECT_EQ(vecPages[0].m_vecTiles[0].m_nSize, 128);
  EXPECT_EQ(ReadAtlasPage(m_Graphics3D, vecPages[0]), "");
  EXPECT_EQ(vecPages[0].m_vecPixels.size(), 4u * 2048 * 2048);
  m_Graphics3D.GetRenderOperationManager()->DestroyRenderOperation3D(pDrawable);
}

TEST_F(QXSymbolSetTest, EverythingIsGivenBack) {
  int const nBefore = QXC::QXNullObject::GetLiveCount();
  for (int i = 0; i < 30; ++i) ASSERT_NE(m_Symbols.Take(m_Graphics3D, std::to_string(i), 200), nullptr);
  EXPECT_GT(QXC::QXNullObject::GetLiveCount(), nBefore);
  m_Symbols.GiveBack(m_Graphics3D);
  EXPECT_EQ(QXC::QXNullObject::GetLiveCount(), nBefore);
  m_Symbols.GiveBack(m_Graphics3D);
}

TEST_F(QXSymbolSetTest, RendererWithoutPagesGivesNoPlace) {
  QXC::QXNullGraphics3D asleep;
  QXSymbolSet symbols;
  EXPECT_EQ(symbols.Take(asleep, "a", 50), nullptr);
  symbols.Draw(asleep);
  EXPECT_EQ(symbols.Find("a"), nullptr);
  EXPECT_TRUE(symbols.GetPages().empty());
  symbols.GiveBack(asleep);
}

TEST_F(QXSymbolSetTest, IconShowsThePartOfItsSymbolInItsSize) {
  QXSymbolPlace const* pPlace = m_Symbols.Take(m_Graphics3D, "a", 32);
  QXC::QXRenderOperation3D* pDrawable =
      m_Graphics3D.GetRenderOperationManager()->CreateRenderOperation3D(L"Scene3D", 1);
  m_Symbols.Attach(m_Graphics3D, *pPlace, pDrawable);
  m_Symbols.Draw(m_Graphics3D);
  std::vector<QXSceneIcon> vecIcons(2);
  vecIcons[0].m_strSymbol = "a";
  vecIcons[1].m_strSymbol = "without a picture";
  QXSceneProblems problems("a.qxscene");
  QXIconPictures pictures;
  pictures.Load(vecIcons, problems);
  QXIconSet icons;
  m_Graphics3D.GetLog().Clear();
  icons.Show(m_Graphics3D, L"Scene3D", vecIcons, pictures, m_Symbols, problems);
  EXPECT_TRUE(problems.IsEmpty());
  EXPECT_EQ(icons.GetCount(), 1u);
  std::string const strLog = m_Graphics3D.GetLog().GetText();
  EXPECT_NE(strLog.find("SetSize(32, 32, 1)"), std::string::npos) << strLog;
  EXPECT_NE(strLog.find("SetTexture(memory, (0 0 0.03125 0.03125))"), std::string::npos) << strLog;
  icons.GiveBack(m_Graphics3D);
  m_Graphics3D.GetRenderOperationManager()->DestroyRenderOperation3D(pDrawable);
}

}  // namespace
}  // namespace QXApp
