// From labels to quads.
#include <apps/qx3d/QXLabelParts.h>
#include <tests/qx3d/QXLabelFixture.h>

#include <QxGraphics3D/frame/foundation/base/QdcColor.h>
#include <QxGraphics3D/renderop/QXRenderOperationMultiIndex.h>
#include <QxGraphics3D/renderop/QXTexCoordBlock.h>
#include <QxGraphics3D/renderop/QXVertexBlock.h>
#include <QxGraphics3D/renderop/QXVertexIndexPackage.h>
#include <QxGraphics3D/text/QXTextLayout.h>

#include <gmock/gmock.h>

#include <array>
#include <bit>
#include <cmath>
#include <memory>

namespace QXApp {
namespace {

using QXC::QXVector3d;
using testing::ElementsAre;
using Pair = std::array<double, 2>;

/// One drawable as it goes to the renderer.
class Drawn {
public:
  Drawn(QXLabelPartKey const& key, QXLabelParts::Part& part)
      : m_Key(key), m_vecOrigin(part.m_vecOrigin), m_pOperation(part.m_Collector.Finish(part.m_vecOrigin, nullptr)) {}

  unsigned int GetVertexCount() const { return m_pOperation->m_pVertexBlock->m_nVertexCount; }
  QXVector3d GetPosition(unsigned int nVertex) const {
    float const* p = m_pOperation->m_pVertexBlock->m_pBuffer + 7 * nVertex;
    return QXVector3d(static_cast<double>(p[0]), static_cast<double>(p[1]), static_cast<double>(p[2]));
  }
  unsigned int GetColor(unsigned int nVertex) const {
    return std::bit_cast<unsigned int>(m_pOperation->m_pVertexBlock->m_pBuffer[7 * nVertex + 6]);
  }
  /// Of a set of texture coordinates.
  Pair GetPair(unsigned int nVertex, int nSet) const {
    float const* p = m_pOperation->m_pTexCoordBlock->m_pBuffers[nSet] + 2 * nVertex;
    return {static_cast<double>(p[0]), static_cast<double>(p[1])};
  }
  bool HasOffsets() const { return m_pOperation->m_pTexCoordBlock->m_pBuffers[1] != nullptr; }

  QXLabelPartKey m_Key;
  QXVector3d m_vecOrigin;
  std::unique_ptr<QXC::QXRenderOperationMultiIndex> m_pOperation;
};

class QXLabelPartsTest : public QXLabelFixture {
protected:
  QXLabelPartsTest() { m_Manager.SetTextureManager(m_Graphics3D.GetTextureManager()); }
  ~QXLabelPartsTest() override {
    m_Layout.Clear();
    m_Manager.SetTextureManager(nullptr);
  }

  std::vector<Drawn> Draw(QXVector3d const& vecOrigin = QXVector3d(0.0, 0.0, 0.0)) {
    QXC::QXBoundingBox bounds;
    bounds.SetNULL();
    for (QXSceneLabel const& label : m_vecLabels)
      bounds.Merge(QXC::QXBoundingBox(label.m_vecPosition, label.m_vecPosition));
    QXLabelParts parts(vecOrigin, bounds);
    for (QXSceneLabel const& label : m_vecLabels) {
      QXC::QXTextStyle style;
      style.SetFaceName(QXC::QdcUnicodeString::FromUTF8(label.m_strFont.c_str()));
      style.SetSize(label.GetSize());
      m_Layout.SetText(QXC::QdcUnicodeString::FromUTF8(label.m_strText.c_str()), style, label.m_bHalo ? 1 : 0);
      parts.Add(label, m_Layout);
    }
    std::vector<Drawn> vecDrawn;
    for (auto& [key, part] : parts.GetParts()) vecDrawn.emplace_back(key, part);
    return vecDrawn;
  }

  QXC::QXTextureFontManager m_Manager;
  QXC::QXTextLayout m_Layout{m_Manager};
};

TEST_F(QXLabelPartsTest, FacingLabelHasItsPlaceOnceAndItsCornersInPixels) {
  QXSceneLabel& label = Add("AB");
  label.m_vecPosition = QXVector3d(1.0, 2.0, 3.0);
  label.m_nColor[0] = 7;
  label.m_nColor[1] = 8;
  label.m_nColor[2] = 9;
  std::vector<Drawn> const vecDrawn = Draw();
  ASSERT_EQ(vecDrawn.size(), 1u);
  Drawn const& drawn = vecDrawn[0];
  EXPECT_TRUE(drawn.m_Key.m_bFacing);
  EXPECT_TRUE(drawn.m_Key.m_bLetters);
  EXPECT_FALSE(drawn.m_Key.m_bOverlay);
  ASSERT_EQ(drawn.GetVertexCount(), 8u);
  for (unsigned int i = 0; i < 8; ++i) {
    EXPECT_EQ(drawn.GetPosition(i), QXVector3d(1.0, 2.0, 3.0));
    EXPECT_EQ(drawn.GetColor(i), QDC::QDCRGBA(7, 8, 9, 255));
  }
  // The line is 50 wide and stands on its middle; each box has a margin of 1.
  EXPECT_EQ(drawn.GetPair(0, 1), (Pair{5 - 25 - 1, -1}));
  EXPECT_EQ(drawn.GetPair(1, 1), (Pair{15 - 25 + 1, -1}));
  EXPECT_EQ(drawn.GetPair(2, 1), (Pair{15 - 25 + 1, 71}));
  EXPECT_EQ(drawn.GetPair(3, 1), (Pair{5 - 25 - 1, 71}));
  EXPECT_EQ(drawn.GetPair(4, 1), (Pair{25 - 25 - 1, -1}));
  EXPECT_EQ(drawn.GetPair(6, 1), (Pair{45 - 25 + 1, 71}));
}

TEST_F(QXLabelPartsTest, CornersShowTheGlyphUpright) {
  Add("A");
  std::vector<Drawn> const vecDrawn = Draw();
  ASSERT_EQ(vecDrawn.size(), 1u);
  // The first glyph stands in the page's upper left corner; v grows downwards.
  EXPECT_EQ(vecDrawn[0].GetPair(0, 0), (Pair{0.0, 72.0 / 1024.0}));
  EXPECT_EQ(vecDrawn[0].GetPair(1, 0), (Pair{12.0 / 1024.0, 72.0 / 1024.0}));
  EXPECT_EQ(vecDrawn[0].GetPair(2, 0), (Pair{12.0 / 1024.0, 0.0}));
  EXPECT_EQ(vecDrawn[0].GetPair(3, 0), (Pair{0.0, 0.0}));
  QXC::QXVertexIndexPackage const& indices = *vecDrawn[0].m_pOperation->GetIndexPackageArray()[0];
  auto const* pIndices = static_cast<unsigned short const*>(indices.m_pIndices);
  EXPECT_THAT(std::vector<int>(pIndices, pIndices + indices.m_nIndexNum), ElementsAre(0, 1, 2, 0, 2, 3));
}

TEST_F(QXLabelPartsTest, AnyOfNinePointsStandsOnThePosition) {
  for (int nY = -1; nY <= 1; ++nY) {
    for (int nX = -1; nX <= 1; ++nX) {
      m_vecLabels.clear();
      QXSceneLabel& label = Add("AB");
      label.m_nAlignX = nX;
      label.m_nAlignY = nY;
      std::vector<Drawn> const vecDrawn = Draw();
      // Without the margin: the left end of the line is the pen's, the lower and upper edges are the ink's.
      Pair const arrLowerLeft = vecDrawn.at(0).GetPair(0, 1);
      EXPECT_EQ(arrLowerLeft[0] + 1 - 5, -25 * (nX + 1)) << nX << ", " << nY;
      EXPECT_EQ(arrLowerLeft[1] + 1, -35 * (nY + 1)) << nX << ", " << nY;
    }
  }
}

TEST_F(QXLabelPartsTest, LettersStayOnWholePixels) {
  // An A of 16 pixels an em moves the pen by 3.
  for (int const nSize : {12, 13, 14, 15}) {
    m_vecLabels.clear();
    QXSceneLabel& label = Add("A");
    label.m_nSize = nSize;
    label.m_nAlignY = 0;
    std::vector<Drawn> const vecDrawn = Draw();
    for (unsigned int i = 0; i < 4; ++i)
      for (double const d : vecDrawn.at(0).GetPair(i, 1)) EXPECT_EQ(d, std::floor(d)) << nSize;
  }
}

TEST_F(QXLabelPartsTest, InkBelowTheBaselineIsPartOfTheHeight) {
  // In thousandths of an em: 10 pixels wide, from 20 below the baseline to 50 above it.
  QXC::QXFontMaker font = QXC::SimpleFont(u"Deep");
  font.m_arrCorners = {{50, -200}, {50, 500}, {150, 500}, {150, -200}};
  WriteFont("deep.ttf", font);
  int const nLowerEdges[3] = {0, -35, -70};
  for (int nY = -1; nY <= 1; ++nY) {
    m_vecLabels.clear();
    QXSceneLabel& label = Add("A");
    label.m_strFont = "Deep";
    label.m_nAlignY = nY;
    // Without the margin.
    EXPECT_EQ(Draw().at(0).GetPair(0, 1)[1] + 1, nLowerEdges[nY + 1]) << nY;
    EXPECT_EQ(Draw().at(0).GetPair(2, 1)[1] - 1, nLowerEdges[nY + 1] + 70) << nY;
  }
}

TEST_F(QXLabelPartsTest, OffsetTurnsWithTheTextAboutThePosition) {
  QXSceneLabel& label = Add("A");
  label.m_nAlignX = -1;
  label.m_dOffset[0] = 3.0;
  label.m_dOffset[1] = 4.0;
  label.m_dRotation = 90.0;
  // Unturned the lower left corner is at 5 - 1 + 3, -1 + 4; a quarter counter-clockwise makes (x, y) to (-y, x).
  EXPECT_EQ(Draw().at(0).GetPair(0, 1), (Pair{-3.0, 7.0}));
  m_vecLabels[0].m_dRotation = -90.0;
  EXPECT_EQ(Draw().at(0).GetPair(0, 1), (Pair{3.0, -7.0}));
  // What is nothing stays nothing: the cosine of a quarter is not quite 0 as computed.
  m_vecLabels[0].m_dOffset[1] = 1.0;
  EXPECT_EQ(Draw().at(0).GetPair(0, 1)[0], 0.0);
  m_vecLabels[0].m_dOffset[1] = 4.0;
  m_vecLabels[0].m_dRotation = 30.0;
  Pair const arrTurned = Draw().at(0).GetPair(0, 1);
  EXPECT_NEAR(arrTurned[0], 7.0 * std::sqrt(0.75) - 1.5, 1e-5);
  EXPECT_NEAR(arrTurned[1], 3.5 + 3.0 * std::sqrt(0.75), 1e-5);
}

TEST_F(QXLabelPartsTest, FlatLabelLiesInTheWorldInItsHeight) {
  QXSceneLabel& label = Add("AB");
  label.m_vecPosition = QXVector3d(100.0, 200.0, 3.0);
  label.m_eFacing = QXLabelFacing::Flat;
  label.m_dHeight = 50.0;  // an em: half a unit for each pixel
  label.m_dOffset[1] = 10.0;
  std::vector<Drawn> const vecDrawn = Draw();
  ASSERT_EQ(vecDrawn.size(), 1u);
  EXPECT_FALSE(vecDrawn[0].m_Key.m_bFacing);
  EXPECT_FALSE(vecDrawn[0].HasOffsets());
  EXPECT_EQ(vecDrawn[0].GetPosition(0), QXVector3d(100.0 - 10.5, 200.0 - 0.5 + 10.0, 3.0));
  EXPECT_EQ(vecDrawn[0].GetPosition(2), QXVector3d(100.0 - 4.5, 200.0 + 35.5 + 10.0, 3.0));
  // It reads northwards: what was to the right is in the north, what was up in the west.
  m_vecLabels[0].m_dRotation = 90.0;
  EXPECT_EQ(Draw().at(0).GetPosition(2), QXVector3d(100.0 - 45.5, 200.0 - 4.5, 3.0));
}

TEST_F(QXLabelPartsTest, FlatLabelOfAnySizeIsEquallyLarge) {
  for (int const nSize : {75, 150}) {
    m_vecLabels.clear();
    QXSceneLabel& label = Add("B");
    label.m_nSize = nSize;
    label.m_eFacing = QXLabelFacing::Flat;
    label.m_dHeight = 10.0;
    std::vector<Drawn> const vecDrawn = Draw();
    // Without the margins of a pixel.
    double const dPixel = 10.0 / (nSize * 96.0 / 72.0);
    EXPECT_NEAR(vecDrawn.at(0).GetPosition(1).x - vecDrawn.at(0).GetPosition(0).x - 2.0 * dPixel, 2.0, 1e-6) << nSize;
    EXPECT_NEAR(vecDrawn.at(0).GetPosition(2).y - vecDrawn.at(0).GetPosition(1).y - 2.0 * dPixel, 7.0, 1e-6) << nSize;
  }
}

TEST_F(QXLabelPartsTest, HalosLieUnderAllLetters) {
  QXSceneLabel& label = Add("AB");
  label.m_bHalo = true;
  label.m_nHalo[0] = 255;
  Add("B");
  std::vector<Drawn> const vecDrawn = Draw();
  ASSERT_EQ(vecDrawn.size(), 2u);
  EXPECT_FALSE(vecDrawn[0].m_Key.m_bLetters);
  EXPECT_EQ(vecDrawn[0].GetVertexCount(), 8u);
  EXPECT_EQ(vecDrawn[0].GetColor(0), QDC::QDCRGBA(255, 0, 0, 255));
  EXPECT_TRUE(vecDrawn[1].m_Key.m_bLetters);
  EXPECT_EQ(vecDrawn[1].GetVertexCount(), 12u);
  EXPECT_EQ(vecDrawn[1].GetColor(0), QDC::QDCRGBA(0, 0, 0, 255));
  EXPECT_LT(vecDrawn[0].m_Key.GetPriority(), vecDrawn[1].m_Key.GetPriority());
  // A halo is exactly round its letter.
  for (unsigned int i = 0; i < 8; ++i) EXPECT_EQ(vecDrawn[0].GetPair(i, 1), vecDrawn[1].GetPair(i, 1));
}

TEST_F(QXLabelPartsTest, KindsOfLabelsAreDrawnInTheirOrder) {
  for (int i = 0; i < 4; ++i) {
    QXSceneLabel& label = Add("A");
    label.m_bDepth = i % 2 == 0;
    label.m_eFacing = i < 2 ? QXLabelFacing::Camera : QXLabelFacing::Flat;
    label.m_dHeight = i < 2 ? 0.0 : 1.0;
    label.m_bHalo = true;
  }
  std::vector<Drawn> const vecDrawn = Draw();
  ASSERT_EQ(vecDrawn.size(), 8u);
  // Over everything last; flat ones under those that face the eye; halos under letters.
  for (std::size_t i = 0; i < 8; ++i) {
    EXPECT_EQ(vecDrawn[i].m_Key.m_bOverlay, i >= 4);
    EXPECT_EQ(vecDrawn[i].m_Key.m_bFacing, i % 4 >= 2);
    EXPECT_EQ(vecDrawn[i].m_Key.m_bLetters, i % 2 == 1);
    EXPECT_EQ(vecDrawn[i].m_Key.GetPriority(), static_cast<int>(i) + 1);
  }
}

TEST_F(QXLabelPartsTest, ManyLabelsAreFewDrawables) {
  for (int i = 0; i < 20000; ++i) {
    QXSceneLabel& label = Add("ABBA");
    label.m_vecPosition = QXVector3d(i % 141, i / 141, 0.0);
    label.m_bHalo = i % 2 == 0;
  }
  std::vector<Drawn> const vecDrawn = Draw();
  ASSERT_EQ(vecDrawn.size(), 2u);
  EXPECT_EQ(vecDrawn[0].GetVertexCount(), 160000u);
  EXPECT_EQ(vecDrawn[1].GetVertexCount(), 320000u);
}

TEST_F(QXLabelPartsTest, FarLabelsHaveAnOriginNearThem) {
  QXVector3d const vecOrigin(604100.0, 5792150.0, 70.0);
  Add("A").m_vecPosition = vecOrigin + QXVector3d(0.125, 0.0, 0.0);
  Add("A").m_vecPosition = vecOrigin + QXVector3d(300000.125, -300000.25, 0.5);
  std::vector<Drawn> const vecDrawn = Draw(vecOrigin);
  ASSERT_EQ(vecDrawn.size(), 2u);
  for (std::size_t i = 0; i < 2; ++i) {
    QXVector3d const vecPosition = vecDrawn[i].m_vecOrigin + vecDrawn[i].GetPosition(0);
    EXPECT_EQ(vecPosition, m_vecLabels[i].m_vecPosition);
    EXPECT_LT(vecDrawn[i].GetPosition(0).Length(), 65536.0);
  }
}

TEST_F(QXLabelPartsTest, FarthestLabelsAreStillFew) {
  for (double const x : {-1e15, 0.0, 1e15})
    for (double const y : {-1e15, 0.0, 1e15}) Add("A").m_vecPosition = QXVector3d(x, y, 1e15);
  EXPECT_EQ(Draw().size(), 9u);
}

}  // namespace
}  // namespace QXApp
