// Pictures that face the camera.
#include <cmath>
#include <memory>
#include <numbers>

#include <QxGraphics3D/renderop/QXBillboard.h>

#include <tests/ogre/QXOgreTexturing.h>

namespace QXC {

namespace {

constexpr QXPixel BLUE_PIXEL{0, 0, 255, 255};
constexpr QXPixel WHITE_PIXEL{255, 255, 255, 255};
constexpr QXColorValue3D BLUE{0.0, 0.0, 1.0, 1.0};

}  // namespace

/// One unit is 32 pixels, the zero is in the middle of the picture, and the camera looks down from z = 10.
class QXOgreBillboards : public QXOgreTexturing {
protected:
  void TearDown() override {
    m_arrBillboards.clear();
    QXOgreTexturing::TearDown();
  }
  QXBillboard* Make(QXVector3d const& vecPosition, double dWidth, double dHeight, unsigned char bPixels,
      QXColorValue3D const& color, wchar_t const* szScene = L"3D") {
    QXBillboard* const p = m_pGraphics3D->GetRenderOperationManager()->CreateBillboard(szScene);
    EXPECT_NE(p, nullptr) << Reason();
    m_arrBillboards.emplace_back(p);
    p->SetPosition(vecPosition);
    p->SetSize(dWidth, dHeight, bPixels);
    p->SetColor(color);
    return p;
  }
  /// 2 x 2 pixels: red, green above blue, white.
  QXTexture* MakeFourColors() {
    return MakeTexture(2, 2, PF_A8R8G8B8, {0, 0, 255, 255, 0, 255, 0, 255, 255, 0, 0, 255, 255, 255, 255, 255});
  }
  /// A texture of one colour, all of it transparent as alpha says.
  QXTexture* MakePlain(unsigned char r, unsigned char g, unsigned char b, unsigned char a) {
    return MakeTexture(1, 1, PF_A8R8G8B8, {b, g, r, a});
  }

  std::vector<std::unique_ptr<QXBillboard>> m_arrBillboards;
};

TEST_F(QXOgreBillboards, ThePositionIsTheMiddleOfTheLowerEdge) {
  Make({0.0, 0.0, 0.0}, 8.0, 16.0, 1, RED);
  QXPicture const picture = Frame();
  // Columns 28 to 35, rows 16 to 31.
  for (unsigned int const x : {28U, 35U})
    for (unsigned int const y : {16U, 31U}) EXPECT_EQ(picture.At(x, y), RED_PIXEL) << x << ", " << y;
  for (unsigned int const y : {15U, 32U}) EXPECT_EQ(picture.At(32, y), BACKGROUND_PIXEL) << y;
  for (unsigned int const x : {27U, 36U}) EXPECT_EQ(picture.At(x, 20), BACKGROUND_PIXEL) << x;
}

TEST_F(QXOgreBillboards, AWorldSizeShrinksWithDistanceAndAPixelSizeDoesNot) {
  m_pCamera->SetProjectionType(PROJECTION_PERSPECTIVE);
  // Half the angle is 45 degrees: at the depth d the picture is 2 d wide.
  m_pCamera->SetProjectionMatrix(QXMathEngine::ComputePerspectiveMatrix(std::numbers::pi / 2.0, 1.0, 0.1, 100.0));
  QXBillboard* const pWorld = Make({-4.0, 0.0, 2.0}, 4.0, 4.0, 0, RED);
  QXBillboard* const pPixels = Make({4.0, 0.0, 2.0}, 8.0, 8.0, 1, GREEN);
  // At the depth 8 a pixel is a quarter of a unit, at 32 a whole one.
  auto const count = [](QXPicture const& picture, QXPixel const& pixel) {
    int nCount = 0;
    for (unsigned int y = 0; y < SIZE; ++y)
      for (unsigned int x = 0; x < SIZE; ++x) nCount += picture.At(x, y) == pixel;
    return nCount;
  };
  QXPicture const near = Frame();
  EXPECT_EQ(count(near, RED_PIXEL), 16 * 16);
  EXPECT_EQ(count(near, GREEN_PIXEL), 8 * 8);
  pWorld->SetPosition({-4.0, 0.0, -22.0});
  pPixels->SetPosition({4.0, 0.0, -22.0});
  QXPicture const far = Frame();
  EXPECT_EQ(count(far, RED_PIXEL), 4 * 4);
  EXPECT_EQ(count(far, GREEN_PIXEL), 8 * 8);
}

TEST_F(QXOgreBillboards, ThePartOfTheTextureStandsUpright) {
  QXBillboard* const p = Make({0.0, -0.25, 0.0}, 16.0, 16.0, 1, QXColorValue3D::White);
  QXTexture* const pTexture = MakeFourColors();
  p->SetTexture(pTexture, QdcRect2D(0.0, 0.0, 1.0, 1.0));
  QXPicture const whole = Frame();
  EXPECT_EQ(whole.At(26, 26), RED_PIXEL);
  EXPECT_EQ(whole.At(37, 26), GREEN_PIXEL);
  EXPECT_EQ(whole.At(26, 37), BLUE_PIXEL);
  EXPECT_EQ(whole.At(37, 37), WHITE_PIXEL);
  p->SetTexture(pTexture, QdcRect2D(0.5, 0.0, 1.0, 1.0));
  QXPicture const right = Frame();
  EXPECT_EQ(right.At(26, 26), GREEN_PIXEL);
  EXPECT_EQ(right.At(26, 37), WHITE_PIXEL);
  p->SetTexture(pTexture, QdcRect2D(0.0, 0.5, 0.5, 1.0));
  EXPECT_EQ(Frame().At(37, 26), BLUE_PIXEL);
  p->SetTexture(pTexture, QdcRect2D(1.0, 1.0, 0.0, 0.0));
  EXPECT_EQ(Frame().At(26, 26), WHITE_PIXEL) << "a part given from the lower right corner is turned over";
}

TEST_F(QXOgreBillboards, TheTexturesOwnScaleAndOffsetFollowThePart) {
  QXBillboard* const p = Make({0.0, -0.25, 0.0}, 16.0, 16.0, 1, QXColorValue3D::White);
  QXTexture* const pTexture = MakeFourColors();
  pTexture->m_vecScale = QXVector3d(0.5, 0.5, 1.0);
  pTexture->m_vecOffset = QXVector3d(0.5, 0.0, 0.0);
  p->SetTexture(pTexture, QdcRect2D(0.0, 0.0, 1.0, 1.0));
  QXPicture const picture = Frame();
  for (unsigned int const x : {26U, 37U})
    for (unsigned int const y : {26U, 37U}) EXPECT_EQ(picture.At(x, y), GREEN_PIXEL) << x << ", " << y;
}

TEST_F(QXOgreBillboards, TheColourIsAFactorAndItsAlphaBlends) {
  QXBillboard* const p = Make({0.0, -0.25, 0.0}, 16.0, 16.0, 1, QXColorValue3D(1.0, 0.5, 1.0, 1.0));
  p->SetTexture(MakeFourColors(), QdcRect2D(0.0, 0.0, 1.0, 1.0));
  QXPixel const half = Frame().At(37, 37);
  EXPECT_EQ(half.r, 255);
  EXPECT_NEAR(half.g, 128, 1);
  EXPECT_EQ(half.b, 255);
  p->SetColor(QXColorValue3D(1.0, 1.0, 1.0, 0.5));
  QXPixel const blended = Frame().At(26, 26);
  EXPECT_NEAR(blended.r, 128, 1);
  EXPECT_NEAR(blended.b, 26, 1) << "half of the background's 51";
}

TEST_F(QXOgreBillboards, ARotationTurnsCounterClockwiseAboutThePosition) {
  QXBillboard* const p = Make({0.0, 0.0, 0.0}, 4.0, 24.0, 1, RED);
  p->SetRotation(std::numbers::pi / 2.0);
  QXPicture const quarter = Frame();
  EXPECT_EQ(quarter.At(10, 32), RED_PIXEL) << "what pointed up points to the left";
  EXPECT_EQ(quarter.At(32, 20), BACKGROUND_PIXEL);
  EXPECT_EQ(quarter.At(45, 32), BACKGROUND_PIXEL);
  p->SetRotation(std::numbers::pi);
  EXPECT_EQ(Frame().At(32, 50), RED_PIXEL);
  p->SetRotation(-std::numbers::pi / 2.0);
  EXPECT_EQ(Frame().At(50, 32), RED_PIXEL);
  p->SetSize(4.0 / 32.0, 24.0 / 32.0, 0);
  EXPECT_EQ(Frame().At(50, 32), RED_PIXEL) << "of a world size as well";
}

TEST_F(QXOgreBillboards, ARotationInAWideViewportKeepsItsShape) {
  QXRenderTarget* const pWide = MakeTarget(L"wide", 128, 64);
  AddViewport(*pWide, *m_pCamera, 0, 0.0, 0.0, 1.0, 1.0);
  Make({0.0, 0.0, 0.0}, 4.0, 24.0, 1, RED)->SetRotation(std::numbers::pi / 2.0);
  QXPicture const picture = Frame(pWide);
  EXPECT_EQ(picture.At(64 - 22, 32), RED_PIXEL);
  EXPECT_EQ(picture.At(64 - 26, 32), BACKGROUND_PIXEL) << "pixels are pixels, whatever the matrix makes of units";
}

TEST_F(QXOgreBillboards, ItIsDrawnBetweenItsDistancesOnly) {
  QXBillboard* const p = Make({0.0, -0.25, 0.0}, 16.0, 16.0, 1, RED);
  auto const isSeen = [&] { return Frame().At(32, 32) == RED_PIXEL; };
  // The distance is a hair above 10.
  p->SetVisibleDistance(0.0, 11.0);
  EXPECT_TRUE(isSeen());
  p->SetVisibleDistance(0.0, 9.9);
  EXPECT_FALSE(isSeen());
  p->SetVisibleDistance(10.1, 0.0);
  EXPECT_FALSE(isSeen());
  p->SetVisibleDistance(9.9, 0.0);
  EXPECT_TRUE(isSeen());
}

TEST_F(QXOgreBillboards, AnInvisibleOneIsNeitherDrawnNorCounted) {
  QXBillboard* const p = Make({0.0, -0.25, 0.0}, 16.0, 16.0, 1, RED);
  EXPECT_EQ(p->IsVisible(), 1);
  EXPECT_EQ(Frame().At(32, 32), RED_PIXEL);
  EXPECT_EQ(m_pGraphics3D->m_nFaceCount, 2U);
  EXPECT_EQ(m_pGraphics3D->m_nVertexCount, 4U);
  EXPECT_EQ(m_pGraphics3D->GetDrawOperationCount(), 1U);
  EXPECT_EQ(m_pGraphics3D->HasRenderableObjects(L"3D"), 1);
  p->SetVisible(0);
  EXPECT_EQ(p->IsVisible(), 0);
  EXPECT_EQ(Frame().At(32, 32), BACKGROUND_PIXEL);
  EXPECT_EQ(m_pGraphics3D->m_nFaceCount, 0U);
  EXPECT_EQ(m_pGraphics3D->HasRenderableObjects(L"3D"), 0);
}

TEST_F(QXOgreBillboards, WhatLiesOutsideTheViewIsNotCounted) {
  // Its position is outside, the rest is not.
  Make({0.0, -1.25, 0.0}, 16.0, 16.0, 1, RED);
  Frame();
  EXPECT_EQ(m_pGraphics3D->m_nFaceCount, 2U);
  EXPECT_EQ(Frame().At(32, 62), RED_PIXEL);
  for (QXVector3d const& vec : {QXVector3d(1.3, 0.0, 0.0), QXVector3d(-1.3, 0.0, 0.0), QXVector3d(0.0, 1.1, 0.0),
           QXVector3d(0.0, -1.6, 0.0), QXVector3d(0.0, 0.0, 11.0), QXVector3d(0.0, 0.0, -11.0)}) {
    m_arrBillboards.front()->SetPosition(vec);
    Frame();
    EXPECT_EQ(m_pGraphics3D->m_nFaceCount, 0U) << vec.x << ", " << vec.y << ", " << vec.z;
  }
}

TEST_F(QXOgreBillboards, AnOpaqueOneHidesWhatIsBehindAndIsHidden) {
  DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, 0.0F, GREEN);
  QXBillboard* const p = Make({0.0, -0.25, 1.0}, 16.0, 16.0, 1, RED);
  EXPECT_EQ(Frame().At(32, 32), RED_PIXEL);
  p->SetPosition({0.0, -0.25, -1.0});
  EXPECT_EQ(Frame().At(32, 32), GREEN_PIXEL);
}

TEST_F(QXOgreBillboards, TransparentOnesAreBlendedFromBackToFront) {
  // Made from front to back.
  Make({0.0, -0.25, 3.0}, 16.0, 16.0, 1, QXColorValue3D(1.0, 0.0, 0.0, 0.5));
  Make({0.0, -0.25, 2.0}, 16.0, 16.0, 1, QXColorValue3D(0.0, 1.0, 0.0, 0.5));
  Make({0.0, -0.25, 1.0}, 16.0, 16.0, 1, BLUE);
  QXPixel const pixel = Frame().At(32, 32);
  EXPECT_NEAR(pixel.r, 128, 1);
  EXPECT_NEAR(pixel.g, 64, 1);
  EXPECT_NEAR(pixel.b, 64, 1);
  EXPECT_EQ(m_pGraphics3D->GetDrawOperationCount(), 2U) << "an opaque batch and a transparent one";
}

TEST_F(QXOgreBillboards, OfTwoAtOneDepthTheLaterOneIsOver) {
  Make({0.0, -0.25, 1.0}, 16.0, 16.0, 1, QXColorValue3D(1.0, 0.0, 0.0, 0.999));
  Make({0.0, -0.25, 1.0}, 16.0, 16.0, 1, QXColorValue3D(0.0, 1.0, 0.0, 0.999));
  EXPECT_GT(Frame().At(32, 32).g, 250);
  // Its place in memory is taken by the last one, which does not make it the older of the two.
  auto const pFirst = std::move(m_arrBillboards.front());
  m_arrBillboards.erase(m_arrBillboards.begin());
  Make({0.0, -0.25, 1.0}, 16.0, 16.0, 1, QXColorValue3D(0.0, 0.0, 1.0, 0.999));
  EXPECT_GT(Frame().At(32, 32).b, 250);
}

TEST_F(QXOgreBillboards, ATransparentDrawableBetweenThemIsBlendedBetweenThem) {
  QXRenderOperation3D* const pPane = DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, 0.0F, QXColorValue3D(0.0, 0.0, 1.0, 0.5));
  pPane->SetModelMatrix([] {
    QXMatrix4d mat;
    mat.SetTrans({0.0, 0.0, 2.0});
    return mat;
  }());
  QXTexture* const pTexture = MakePlain(255, 255, 255, 254);
  Make({0.0, -0.25, 1.0}, 16.0, 16.0, 1, RED)->SetTexture(pTexture, QdcRect2D(0.0, 0.0, 1.0, 1.0));
  EXPECT_NEAR(Frame().At(32, 32).b, 128, 2);
  EXPECT_NEAR(Frame().At(32, 32).r, 127, 2) << "the pane is over the billboard";
  Make({0.0, -0.25, 3.0}, 16.0, 16.0, 1, QXColorValue3D(0.0, 1.0, 0.0, 0.5))
      ->SetTexture(pTexture, QdcRect2D(0.0, 0.0, 1.0, 1.0));
  QXPixel const pixel = Frame().At(32, 32);
  EXPECT_NEAR(pixel.r, 63, 2);
  EXPECT_NEAR(pixel.g, 128, 2);
  EXPECT_NEAR(pixel.b, 64, 2);
  EXPECT_EQ(m_pGraphics3D->GetDrawOperationCount(), 3U);
}

TEST_F(QXOgreBillboards, AtTheSideOfAParallelViewTheDepthDecides) {
  // Farther from the eye and yet nearer along the view.
  QXRenderOperation3D* const pPane = DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, 0.0F, QXColorValue3D(0.0, 0.0, 1.0, 0.5));
  pPane->SetModelMatrix([] {
    QXMatrix4d mat;
    mat.SetTrans({0.0, 0.0, 9.0});
    return mat;
  }());
  Make({0.9, 0.0, 9.5}, 8.0, 8.0, 1, QXColorValue3D(1.0, 0.0, 0.0, 0.5));
  QXPixel const pixel = Frame().At(61, 28);
  EXPECT_NEAR(pixel.r, 128, 1);
  EXPECT_NEAR(pixel.b, 77, 1) << "half of the pane's mixture";
}

TEST_F(QXOgreBillboards, TenThousandOfOneTextureAreOneBatch) {
  QXTexture* const pTexture = MakePlain(255, 255, 255, 128);
  for (int i = 0; i < 10000; ++i)
    Make({0.0001 * i - 0.5, -0.25, 0.0005 * i}, 16.0, 16.0, 1, RED)
        ->SetTexture(pTexture, QdcRect2D(0.0, 0.0, 1.0, 1.0));
  EXPECT_NEAR(Frame().At(32, 32).r, 255, 1);
  EXPECT_EQ(m_pGraphics3D->GetDrawOperationCount(), 1U);
  EXPECT_EQ(m_pGraphics3D->m_nFaceCount, 20000U);
}

TEST_F(QXOgreBillboards, OpaqueOnesOfTwoTexturesAreTwoBatches) {
  QXTexture* const arrTextures[2] = {MakePlain(255, 0, 0, 255), MakePlain(0, 255, 0, 255)};
  for (int i = 0; i < 20; ++i)
    Make({0.0, -0.25, 0.1 * i}, 16.0, 16.0, 1, QXColorValue3D::White)
        ->SetTexture(arrTextures[i % 2], QdcRect2D(0.0, 0.0, 1.0, 1.0));
  EXPECT_EQ(Frame().At(32, 32), GREEN_PIXEL);
  EXPECT_EQ(m_pGraphics3D->GetDrawOperationCount(), 2U);
}

TEST_F(QXOgreBillboards, LargeCoordinatesAreExact) {
  QXVector3d const vecFar(4000000.3, 5800000.7, 100.0);
  m_pCamera->SetPosition(vecFar.x, vecFar.y, vecFar.z + 10.0);
  Make(vecFar, 8.0, 16.0, 1, RED);
  for (QXVector3d const& vecOrigin : {QXVector3d(0.0, 0.0, 0.0), QXVector3d(4000000.0, 5800000.0, 0.0)}) {
    m_pGraphics3D->SetRelativeOrigin(vecOrigin);
    QXPicture const picture = Frame();
    EXPECT_EQ(picture.At(28, 31), RED_PIXEL);
    EXPECT_EQ(picture.At(35, 16), RED_PIXEL);
    EXPECT_EQ(picture.At(27, 31), BACKGROUND_PIXEL);
    EXPECT_EQ(picture.At(36, 16), BACKGROUND_PIXEL);
  }
}

TEST_F(QXOgreBillboards, PixelSizesMeetWholePixels) {
  // A picture whose columns alternate, 0.3 pixels beside the grid, seen through the linear filter.
  std::vector<unsigned char> arrBytes;
  for (int i = 0; i < 8; ++i)
    for (int const n : {i % 2 ? 255 : 0, i % 2 ? 255 : 0, i % 2 ? 255 : 0, 255})
      arrBytes.push_back(static_cast<unsigned char>(n));
  QXTexture* const pTexture = MakeTexture(8, 1, PF_A8R8G8B8, arrBytes);
  pTexture->RendererOperation1(2, 2, 0);
  Make({0.3 / 32.0, 0.3 / 32.0, 0.0}, 8.0, 1.0, 1, QXColorValue3D::White)
      ->SetTexture(pTexture, QdcRect2D(0.0, 0.0, 1.0, 1.0));
  QXPicture const picture = Frame();
  for (unsigned int i = 0; i < 8; ++i) EXPECT_EQ(picture.At(28 + i, 31).r, i % 2 ? 255 : 0) << i;
}

TEST_F(QXOgreBillboards, EveryViewportLooksAtItFromItsOwnSide) {
  m_pCamera->SetPosition(0.0, -10.0, 0.0);
  m_pCamera->LookAt(0.0, 0.0, 0.0);
  QXRenderTarget* const pSecond = MakeTarget(L"second");
  QXCamera* const pAside = MakeCamera(L"aside");
  pAside->SetPosition(10.0, 0.0, 0.0);
  pAside->LookAt(0.0, 0.0, 0.0);
  AddViewport(*pSecond, *pAside, 0, 0.0, 0.0, 1.0, 1.0);
  Make({0.0, 0.0, 0.0}, 0.5, 0.5, 0, RED);
  m_pGraphics3D->UpdateAllRenderTargets();
  for (QXRenderTarget* const pTarget : {m_pTarget, pSecond}) {
    QXPicture const picture(*pTarget);
    for (unsigned int const x : {25U, 38U}) EXPECT_EQ(picture.At(x, 18), RED_PIXEL) << x;
    for (unsigned int const x : {22U, 41U}) EXPECT_EQ(picture.At(x, 18), BACKGROUND_PIXEL) << x;
  }
}

TEST_F(QXOgreBillboards, TheTargetExaggeratesHeightsButNotSizes) {
  m_pCamera->SetPosition(0.0, -10.0, 0.0);
  m_pCamera->LookAt(0.0, 0.0, 0.0);
  Make({0.0, 0.0, 0.25}, 8.0 / 32.0, 8.0 / 32.0, 0, RED);
  m_pTarget->SetVerticalExaggeration(2.0);
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(32, 15), RED_PIXEL);
  EXPECT_EQ(picture.At(32, 8), RED_PIXEL);
  EXPECT_EQ(picture.At(32, 16), BACKGROUND_PIXEL);
  EXPECT_EQ(picture.At(32, 7), BACKGROUND_PIXEL);
}

TEST_F(QXOgreBillboards, ItHoldsItsTextureAndSurvivesItsDeath) {
  QXTexture* const pTexture = MakeFourColors();
  int const nFormer = pTexture->GetRef();
  QXBillboard* const p = Make({0.0, -0.25, 0.0}, 16.0, 16.0, 1, GREEN);
  p->SetTexture(pTexture, QdcRect2D(0.0, 0.0, 0.25, 0.25));
  EXPECT_EQ(pTexture->GetRef(), nFormer + 1);
  p->SetTexture(pTexture, QdcRect2D(0.5, 0.5, 1.0, 1.0));
  EXPECT_EQ(pTexture->GetRef(), nFormer + 1);
  p->SetTexture(nullptr, QdcRect2D());
  EXPECT_EQ(pTexture->GetRef(), nFormer);
  p->SetTexture(pTexture, QdcRect2D(0.5, 0.5, 1.0, 1.0));
  EXPECT_EQ(Frame().At(32, 32), GREEN_PIXEL);
  Delete(pTexture);
  EXPECT_EQ(Frame().At(32, 32), GREEN_PIXEL) << "what showed it keeps its colour";
  QXTexture* const pOther = MakePlain(255, 255, 255, 255);
  p->SetTexture(pOther, QdcRect2D(0.0, 0.0, 1.0, 1.0));
  EXPECT_EQ(pOther->GetRef(), 1);
  m_arrBillboards.clear();
  EXPECT_EQ(pOther->GetRef(), 0);
}

TEST_F(QXOgreBillboards, SizesAndPlacesThatAreNoNumbersAreNotDrawn) {
  double const dNan = std::nan("");
  double const dInfinity = HUGE_VAL;
  for (double const d : {0.0, -8.0, dNan, dInfinity}) {
    Make({0.0, 0.0, 0.0}, d, 8.0, 1, RED);
    Make({0.0, 0.0, 0.0}, 8.0, d, 0, RED);
  }
  for (double const d : {dNan, dInfinity, -dInfinity, 1.0e300}) {
    Make({d, 0.0, 0.0}, 8.0, 8.0, 1, RED);
    Make({0.0, d, 0.0}, 8.0, 8.0, 1, RED);
    Make({0.0, 0.0, d}, 8.0, 8.0, 1, RED);
    Make({0.0, 0.0, 0.0}, 8.0, 8.0, 1, RED)->SetRotation(std::isfinite(d) ? dNan : d);
  }
  Make({0.0, -0.25, 0.0}, 16.0, 16.0, 1, GREEN);
  EXPECT_EQ(Frame().At(32, 32), GREEN_PIXEL);
  EXPECT_EQ(m_pGraphics3D->m_nFaceCount, 2U);
  m_pCamera->SetProjectionMatrix(QXMatrix4d::ZERO);
  EXPECT_EQ(Frame().At(32, 32), GREEN_PIXEL) << "they do not take the scene out of the camera's own distances";
}

TEST_F(QXOgreBillboards, ItNeedsASceneAndOutlivesIt) {
  EXPECT_EQ(m_pGraphics3D->GetRenderOperationManager()->CreateBillboard(L"none"), nullptr);
  EXPECT_EQ(Reason(), "a billboard needs a scene that exists: 'none'");
  ASSERT_EQ(m_pGraphics3D->CreateScene(L"second"), 1);
  QXBillboard* const p = Make({0.0, -0.25, 0.0}, 16.0, 16.0, 1, RED, L"second");
  EXPECT_EQ(Frame().At(32, 32), BACKGROUND_PIXEL) << "it stands in another scene";
  m_pGraphics3D->DestroyScene(L"second");
  p->SetPosition({1.0, 2.0, 3.0});
  EXPECT_EQ(p->GetPosition().y, 2.0);
}

TEST_F(QXOgreBillboards, ItOutlivesTheRenderer) {
  QXTexture* const pTexture = m_pTextures->GetTexture(L"plain", 1);
  pTexture->SetTextureData(1, 1, NewBlock({0, 0, 255, 255}), 0, PF_A8R8G8B8);
  pTexture->LoadTexture(0, 0);
  QXBillboard* const p = Make({0.0, -0.25, 0.0}, 16.0, 16.0, 1, QXColorValue3D::White);
  p->SetTexture(pTexture, QdcRect2D(0.0, 0.0, 1.0, 1.0));
  EXPECT_EQ(Frame().At(32, 32), RED_PIXEL);
  m_pGraphics3D.reset();
  p->SetTexture(nullptr, QdcRect2D());
  p->SetPosition({1.0, 2.0, 3.0});
  EXPECT_EQ(p->GetPosition(), QXVector3d(1.0, 2.0, 3.0));
  m_arrBillboards.clear();
}

}  // namespace QXC
