// What lies under pixels: identifiers, positions, depths.
#include <cmath>
#include <random>
#include <set>

#include <QxGraphics3D/frame/foundation/base3d/QXOperationType.h>
#include <QxGraphics3D/renderop/QXBillboard.h>

#include <tests/ogre/QXOgreScenery.h>

namespace QXC {
namespace {

class QXOgrePick : public QXOgreScenery {
protected:
  QXRenderOperation3D* Square(float x0, float y0, float x1, float y1, float z, unsigned int nID) {
    QXRenderOperation3D* const pOperation = DrawSquare(x0, y0, x1, y1, z, RED);
    pOperation->SetSelectionID(nID);
    return pOperation;
  }
  unsigned int Pick(double x, double y) { return m_pGraphics3D->PickObject(x, y, m_vecHit); }
  /// Identifiers of all pixels by one selection pass.
  void PassOver(QXRenderTarget& target) {
    ASSERT_EQ(m_pGraphics3D->BeginSelection(
                  &target, 0, 0, static_cast<int>(target.GetWidth()), static_cast<int>(target.GetHeight())),
        1);
    m_pGraphics3D->EndSelection();
  }

  QXVector3d m_vecHit;
};

TEST_F(QXOgrePick, FindsTheNearestObjectUnderAPixel) {
  Square(-1, -1, 0, 1, 0, 7);
  Square(-0.5F, -1, 1, 1, 1, 9);
  EXPECT_EQ(Pick(4.5, 32.5), 7U);
  EXPECT_EQ(Pick(20.5, 32.5), 9U);
  EXPECT_EQ(Pick(60.5, 32.5), 9U);
}

TEST_F(QXOgrePick, CountsWindowPointsFromTheLowerLeftCorner) {
  Square(-1, -1, -0.5F, -0.5F, 0, 5);
  EXPECT_EQ(Pick(0, 0), 5U);
  EXPECT_EQ(Pick(0, 63), 0U);
  EXPECT_EQ(Pick(63, 0), 0U);
}

TEST_F(QXOgrePick, TellsThePositionOfTheMiddleOfThePixel) {
  Square(-1, -1, 1, 1, 3, 5);
  ASSERT_EQ(Pick(40, 8), 5U);
  EXPECT_NEAR(m_vecHit.x, (40.5 / 32.0) - 1.0, 1e-9);
  EXPECT_NEAR(m_vecHit.y, (8.5 / 32.0) - 1.0, 1e-9);
  EXPECT_NEAR(m_vecHit.z, 3.0, 20.0 * 2e-6);
}

TEST_F(QXOgrePick, FindsNothingOnTheBackgroundAndOutside) {
  Square(-0.5F, -0.5F, 0.5F, 0.5F, 0, 5);
  m_vecHit = QXVector3d(7, 8, 9);
  EXPECT_EQ(Pick(1, 1), 0U);
  EXPECT_EQ(Pick(-1, 32), 0U);
  EXPECT_EQ(Pick(64, 32), 0U);
  EXPECT_EQ(Pick(32, 1e30), 0U);
  EXPECT_EQ(Pick(std::nan(""), 32), 0U);
  EXPECT_EQ(m_vecHit, QXVector3d(7, 8, 9));
}

TEST_F(QXOgrePick, WhatHasNoIdentifierHidesWhatIsBehindIt) {
  Square(-1, -1, 1, 1, 0, 5);
  Square(-1, -1, 0, 1, 2, 0);
  EXPECT_EQ(Pick(50, 32), 5U);
  EXPECT_EQ(Pick(10, 32), 0U);
  EXPECT_NEAR(m_vecHit.z, 2.0, 1e-4);
}

TEST_F(QXOgrePick, HiddenObjectsAreNotFound) {
  QXRenderOperation3D* const pFront = Square(-1, -1, 1, 1, 1, 6);
  Square(-1, -1, 1, 1, 0, 5);
  EXPECT_EQ(Pick(32, 32), 6U);
  pFront->SetVisible(0);
  EXPECT_EQ(Pick(32, 32), 5U);
}

TEST_F(QXOgrePick, GlassIsFoundUnlessItLetsEverythingThrough) {
  QXRenderOperation3D* const pFront = Square(-1, -1, 1, 1, 1, 6);
  Square(-1, -1, 1, 1, 0, 5);
  pFront->SetOpacity(0.3);
  EXPECT_EQ(Pick(32, 32), 6U);
  pFront->SetOpacity(0.0);
  EXPECT_EQ(Pick(32, 32), 5U);
}

TEST_F(QXOgrePick, OfTwoPanesTheNearerIsFoundInWhateverOrderTheyAreDrawn) {
  for (unsigned int const nFirst : {0U, 1U}) {
    QXRenderOperation3D* const pA = Square(-1, -1, 1, 1, nFirst == 0 ? 1.0F : 2.0F, 6);
    QXRenderOperation3D* const pB = Square(-1, -1, 1, 1, nFirst == 0 ? 2.0F : 1.0F, 7);
    pA->SetOpacity(0.5);
    pB->SetOpacity(0.5);
    EXPECT_EQ(Pick(32, 32), nFirst == 0 ? 7U : 6U);
    pA->SetVisible(0);
    pB->SetVisible(0);
  }
}

TEST_F(QXOgrePick, PickingLeavesThePictureAlone) {
  Square(-1, -1, 1, 1, 0, 5)->SetOpacity(0.5);
  std::vector<unsigned char> const arrBefore = Frame().GetBytes();
  QXViewport* const pViewport = m_pGraphics3D->GetViewport();
  unsigned int const nOperations = m_pGraphics3D->GetDrawOperationCount();
  EXPECT_EQ(Pick(32, 32), 5U);
  EXPECT_EQ(m_pGraphics3D->GetViewport(), pViewport);
  EXPECT_EQ(m_pGraphics3D->GetDrawOperationCount(), nOperations);
  EXPECT_EQ(QXPicture(*m_pTarget).GetBytes(), arrBefore);
  EXPECT_EQ(Frame().GetBytes(), arrBefore);
}

TEST_F(QXOgrePick, ToleranceFindsTheNearestWithinIt) {
  // Pixels 16 to 19 and 40 to 43, from below to above.
  Square(-0.5F, -1, -0.375F, 1, 0, 5);
  Square(0.25F, -1, 0.375F, 1, 0, 6);
  EXPECT_EQ(Pick(22, 32), 0U);
  m_pGraphics3D->SetSelectionTolerance(2.0);
  EXPECT_EQ(Pick(22, 32), 0U);
  m_pGraphics3D->SetSelectionTolerance(3.0);
  EXPECT_EQ(Pick(22, 32), 5U);
  EXPECT_NEAR(m_vecHit.x, 19.5 / 32.0 - 1.0, 1e-9);
  m_pGraphics3D->SetSelectionTolerance(64.0);
  EXPECT_EQ(Pick(29, 32), 5U);
  EXPECT_EQ(Pick(31, 32), 6U);
  for (double const dMost : {1.0e300, static_cast<double>(INFINITY)}) {
    m_pGraphics3D->SetSelectionTolerance(dMost);
    EXPECT_EQ(Pick(29, 32), 5U) << "64 pixels are the most";
    EXPECT_EQ(Pick(150, 32), 0U);
  }
  for (double const dNone : {-1.0, 0.0, std::nan("")}) {
    m_pGraphics3D->SetSelectionTolerance(dNone);
    EXPECT_EQ(Pick(22, 32), 0U);
    EXPECT_EQ(Pick(17, 32), 5U);
  }
}

TEST_F(QXOgrePick, ToleranceIsACircle) {
  Square(-1, -1, -0.5F, -0.5F, 0, 5);  // its last pixel is (15, 15)
  m_pGraphics3D->SetSelectionTolerance(4.0);
  EXPECT_EQ(Pick(19, 15), 5U);
  EXPECT_EQ(Pick(17, 17), 5U);
  EXPECT_EQ(Pick(18, 18), 0U);
}

TEST_F(QXOgrePick, EdgePixelsAreFoundExactlyWhereThePictureHasThem) {
  Square(-0.7F, -0.33F, 0.41F, 0.9F, 0, 5);
  QXPicture const picture = Frame();
  PassOver(*m_pTarget);
  for (unsigned int y = 0; y < SIZE; ++y)
    for (unsigned int x = 0; x < SIZE; ++x)
      ASSERT_EQ(m_pGraphics3D->ReadSelectionID(static_cast<int>(x), static_cast<int>(SIZE - 1 - y)) == 5U,
          picture.At(x, y) == RED_PIXEL)
          << x << ", " << y;
}

TEST_F(QXOgrePick, PointsAndLinesAreFoundExactlyWhereThePictureHasThem) {
  // Wider than the pixel that is looked at, so that their own places lie beside it.
  auto const pPoints = MakeMesh({{0.11F, 0.07F, 0.0F}, {-0.62F, 0.42F, 1.0F}});
  AddRange<unsigned short>(*pPoints, {0, 1}, RED)->m_eOperationType = QX_OPERATION_POINT_LIST;
  QXRenderOperation3D* const pWide = Draw(*pPoints);
  pWide->SetPointSize(15.0);
  pWide->SetSelectionID(5);
  auto const pLines =
      MakeMesh({{-1.0F, -0.93F, 0.0F}, {0.83F, -0.37F, 0.0F}, {-0.7F, -0.9F, 0.0F}, {-0.9F, 0.9F, 0.0F}});
  AddRange<unsigned short>(*pLines, {0, 1, 2, 3}, GREEN)->m_eOperationType = QX_OPERATION_LINE_LIST;
  Draw(*pLines)->SetSelectionID(6);
  QXPicture const picture = Frame();
  int nPoints = 0;
  int nLines = 0;
  for (unsigned int y = 0; y < SIZE; ++y) {
    for (unsigned int x = 0; x < SIZE; ++x) {
      bool const bPoint = picture.At(x, y) == RED_PIXEL;
      bool const bLine = picture.At(x, y) == GREEN_PIXEL;
      nPoints += bPoint ? 1 : 0;
      nLines += bLine ? 1 : 0;
      if (!bPoint && !bLine && (x + y) % 8 != 0) continue;
      ASSERT_EQ(Pick(x, SIZE - 1 - y), bPoint ? 5U : bLine ? 6U : 0U) << x << ", " << y;
    }
  }
  EXPECT_GT(nPoints, 400);
  EXPECT_GT(nLines, 100);
}

TEST_F(QXOgrePick, AgreesWithTheObviousReferenceOnRandomSquares) {
  constexpr unsigned int nSeed = 20261121;
  SCOPED_TRACE(nSeed);
  std::mt19937 random(nSeed);
  std::uniform_int_distribution<int> place(0, 63);
  struct Item {
    int x0, y0, x1, y1;
    float z;
    unsigned int nID;
  };
  std::vector<Item> arrItems;
  for (unsigned int i = 0; i < 60; ++i) {
    int const x0 = place(random), x1 = place(random), y0 = place(random), y1 = place(random);
    arrItems.push_back({std::min(x0, x1), std::min(y0, y1), std::max(x0, x1) + 1, std::max(y0, y1) + 1,
        static_cast<float>(i * 37 % 60) * 0.1F, i % 10 == 9 ? 0U : (1U << (i % 32)) + i});
    Item const& item = arrItems.back();
    auto const unit = [](int n) { return static_cast<float>(n) / 32.0F - 1.0F; };
    Square(unit(item.x0), unit(item.y0), unit(item.x1), unit(item.y1), item.z, item.nID);
  }
  PassOver(*m_pTarget);
  for (int y = 0; y < 64; ++y) {
    for (int x = 0; x < 64; ++x) {
      Item const* pTop = nullptr;
      for (Item const& item : arrItems)
        if (x >= item.x0 && x < item.x1 && y >= item.y0 && y < item.y1 && (!pTop || item.z > pTop->z)) pTop = &item;
      ASSERT_EQ(m_pGraphics3D->ReadSelectionID(x, y), pTop ? pTop->nID : 0U) << x << ", " << y;
      if ((x + y) % 16 != 0) continue;
      ASSERT_EQ(Pick(x, y), pTop ? pTop->nID : 0U) << x << ", " << y;
    }
  }
}

}  // namespace
}  // namespace QXC
