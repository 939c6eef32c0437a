// Ribbons behind what moves.
#include <cmath>
#include <limits>
#include <memory>
#include <random>

#include <QxGraphics3D/renderop/QXRibbonTrail3D.h>

#include <plugins/ogre/effects/QXOgreRibbon.h>

#include <tests/ogre/QXOgreTexturing.h>

namespace QXC {

namespace {

constexpr QXPixel BLUE_PIXEL{0, 0, 255, 255};
constexpr double NO_NUMBER = std::numeric_limits<double>::quiet_NaN();

/// One unit is 32 pixels, the zero is in the middle of the picture, and the camera looks down from z = 10.
class QXOgreRibbons : public QXOgreTexturing {
protected:
  void TearDown() override {
    m_arrTrails.clear();
    QXOgreTexturing::TearDown();
  }
  /// Half a unit wide and red.
  QXRibbonTrail3D* Make(std::vector<QXVector3d> const& arrPoints, wchar_t const* szMaterial = L"") {
    QXRibbonTrail3D* const pTrail =
        m_pGraphics3D->GetRenderOperationManager()->CreateRibbonTrail(L"3D", L"trail", szMaterial);
    EXPECT_NE(pTrail, nullptr) << Text(m_pGraphics3D->GetErrorText());
    m_arrTrails.emplace_back(pTrail);
    pTrail->SetInitialWidth(0, 0.5);
    pTrail->SetInitialColor(0, RED);
    for (QXVector3d const& vec : arrPoints) pTrail->AddPoint(0, vec);
    return pTrail;
  }
  /// From the left to the right through the middle: columns 16 to 47, rows 24 to 39.
  QXRibbonTrail3D* MakeStraight() { return Make({{-0.5, 0.0, 0.0}, {0.0, 0.0, 0.0}, {0.5, 0.0, 0.0}}); }
  /// Expects that a colour fills a rectangle, right and bottom behind it, and nothing else.
  static void ExpectFilled(QXPicture const& picture, QXPixel const& pixel, int nLeft, int nTop, int nRight, int nBottom,
      char const* szWhat) {
    for (int y = 0; y < 64; ++y)
      for (int x = 0; x < 64; ++x) {
        bool const bInside = x >= nLeft && x < nRight && y >= nTop && y < nBottom;
        bool const bFilled = picture.At(static_cast<unsigned int>(x), static_cast<unsigned int>(y)) == pixel;
        ASSERT_EQ(bFilled, bInside) << szWhat << " at " << x << ", " << y;
      }
  }

  std::vector<std::unique_ptr<QXRibbonTrail3D>> m_arrTrails;
};

}  // namespace

TEST_F(QXOgreRibbons, AFreshTrailIsOneWhiteRibbonThatLosesNothing) {
  std::unique_ptr<QXRibbonTrail3D> const pTrail(
      m_pGraphics3D->GetRenderOperationManager()->CreateRibbonTrail(L"3D", L"fresh", L""));
  ASSERT_NE(pTrail, nullptr);
  EXPECT_EQ(pTrail->GetName(), L"fresh");
  EXPECT_EQ(pTrail->IsVisible(), 1);
  EXPECT_EQ(pTrail->GetTrailCount(), 1U);
  EXPECT_EQ(pTrail->GetMaxPointCount(), 20U);
  EXPECT_EQ(pTrail->GetTrailLength(), 0.0);
  // The first one, and one past the last.
  for (unsigned int const n : {0U, 7U}) {
    EXPECT_EQ(pTrail->GetInitialColor(n), QXColorValue3D(1.0, 1.0, 1.0, 1.0)) << n;
    EXPECT_EQ(pTrail->GetColorChange(n), QXColorValue3D()) << n;
    EXPECT_EQ(pTrail->GetInitialWidth(n), 1.0) << n;
    EXPECT_EQ(pTrail->GetWidthChange(n), 0.0) << n;
  }
}

TEST_F(QXOgreRibbons, ATrailNeedsAScene) {
  EXPECT_EQ(m_pGraphics3D->GetRenderOperationManager()->CreateRibbonTrail(L"none", L"trail", L""), nullptr);
  EXPECT_EQ(Text(m_pGraphics3D->GetErrorText()), "a ribbon needs a scene that exists: 'none'");
}

TEST_F(QXOgreRibbons, ItRunsThroughItsPoints) {
  MakeStraight();
  ExpectFilled(Frame(), RED_PIXEL, 16, 24, 48, 40, "straight");
  EXPECT_EQ(m_pGraphics3D->GetDrawOperationCount(), 1U);
  EXPECT_EQ(m_pTarget->GetTriangleCount(), 4);
}

TEST_F(QXOgreRibbons, NoPointAndOnePointAreNoRibbon) {
  QXRibbonTrail3D* const pTrail = Make({});
  ExpectFilled(Frame(), BACKGROUND_PIXEL, 0, 0, 64, 64, "none");
  pTrail->AddPoint(0, {0.0, 0.0, 0.0});
  pTrail->AddPoint(0, {0.0, 0.0, 0.0});
  ExpectFilled(Frame(), BACKGROUND_PIXEL, 0, 0, 64, 64, "one, twice");
  EXPECT_EQ(m_pGraphics3D->GetDrawOperationCount(), 0U);
}

TEST_F(QXOgreRibbons, PointsOnOnePlaceCountOnce) {
  Make({{-0.5, 0.0, 0.0}, {-0.5, 0.0, 0.0}, {0.0, 0.0, 0.0}, {0.0, 0.0, 0.0}, {0.5, 0.0, 0.0}, {0.5, 0.0, 0.0}});
  ExpectFilled(Frame(), RED_PIXEL, 16, 24, 48, 40, "straight");
  EXPECT_EQ(m_pTarget->GetTriangleCount(), 4);
}

TEST_F(QXOgreRibbons, TheOldestPointsDropOff) {
  QXRibbonTrail3D* const pTrail = MakeStraight();
  pTrail->SetMaxPointCount(2);
  EXPECT_EQ(pTrail->GetMaxPointCount(), 2U);
  ExpectFilled(Frame(), RED_PIXEL, 32, 24, 48, 40, "fewer");
  pTrail->AddPoint(0, {1.0, 0.0, 0.0});
  ExpectFilled(Frame(), RED_PIXEL, 48, 24, 64, 40, "one more");
  pTrail->SetMaxPointCount(3);
  pTrail->AddPoint(0, {0.0, 0.0, 0.0});
  ExpectFilled(Frame(), RED_PIXEL, 32, 24, 64, 40, "three again");
  pTrail->SetMaxPointCount(0);
  pTrail->AddPoint(0, {0.0, 0.0, 0.0});
  EXPECT_EQ(Frame().At(40, 32), BACKGROUND_PIXEL);
}

TEST_F(QXOgreRibbons, TheLengthCutsTheEndOffAndKeepsThePoints) {
  QXRibbonTrail3D* const pTrail = MakeStraight();
  pTrail->SetTrailLength(0.75);
  EXPECT_EQ(pTrail->GetTrailLength(), 0.75);
  ExpectFilled(Frame(), RED_PIXEL, 24, 24, 48, 40, "three quarters");
  pTrail->SetTrailLength(0.25);
  ExpectFilled(Frame(), RED_PIXEL, 40, 24, 48, 40, "a quarter");
  pTrail->SetTrailLength(9.0);
  ExpectFilled(Frame(), RED_PIXEL, 16, 24, 48, 40, "longer than it is");
  pTrail->SetTrailLength(0.0);
  ExpectFilled(Frame(), RED_PIXEL, 16, 24, 48, 40, "all");
}

TEST_F(QXOgreRibbons, ColoursFadeEachChannelDownToNothing) {
  QXRibbonTrail3D* const pTrail = Make({});
  pTrail->SetInitialColor(0, {1.0, 0.6, 0.0, 1.0});
  pTrail->SetColorChange(0, {0.25, 0.5, 1.0, 0.5});
  EXPECT_EQ(pTrail->GetColorChange(0), QXColorValue3D(0.25, 0.5, 1.0, 0.5));
  pTrail->AddPoint(0, {-0.5, 0.0, 0.0});
  pTrail->AddPoint(0, {0.5, 0.0, 0.0});
  EXPECT_EQ(Frame().At(32, 32), (QXPixel{255, 153, 0, 255}));
  pTrail->Advance(1.0);
  // 0.75, 0.1, 0 with half an alpha over the background's blue.
  QXPixel const half = Frame().At(32, 32);
  EXPECT_NEAR(half.r, 96, 1);
  EXPECT_NEAR(half.g, 13, 1);
  EXPECT_NEAR(half.b, 26, 1);
  pTrail->Advance(9.0);
  EXPECT_EQ(Frame().At(32, 32), BACKGROUND_PIXEL);
  // A new point has lost nothing yet.
  pTrail->SetColorChange(0, {});
  pTrail->SetInitialColor(0, RED);
  pTrail->AddPoint(0, {-0.5, 0.0, 0.0});
  QXPixel const near = Frame().At(17, 32);
  EXPECT_GT(near.r, 230);
}

TEST_F(QXOgreRibbons, ColoursRunFromPointToPoint) {
  QXRibbonTrail3D* const pTrail = Make({{-1.0, 0.0, 0.0}});
  pTrail->SetInitialColor(0, GREEN);
  pTrail->AddPoint(0, {1.0, 0.0, 0.0});
  QXPicture const picture = Frame();
  for (unsigned int const x : {4U, 32U, 60U}) {
    EXPECT_NEAR(picture.At(x, 32).g, (x + 0.5) / 64.0 * 255.0, 1.5) << x;
    EXPECT_NEAR(picture.At(x, 32).r, (63.5 - x) / 64.0 * 255.0, 1.5) << x;
  }
}

TEST_F(QXOgreRibbons, WidthsShrinkDownToNothing) {
  QXRibbonTrail3D* const pTrail = MakeStraight();
  pTrail->SetWidthChange(0, 0.25);
  EXPECT_EQ(pTrail->GetWidthChange(0), 0.25);
  pTrail->Advance(1.0);
  ExpectFilled(Frame(), RED_PIXEL, 16, 28, 48, 36, "half as wide");
  // Time does not run backwards, and what is no number is no time.
  for (double const d : {-1.0, 0.0, NO_NUMBER, std::numeric_limits<double>::infinity()}) pTrail->Advance(d);
  ExpectFilled(Frame(), RED_PIXEL, 16, 28, 48, 36, "as before");
  pTrail->Advance(9.0);
  ExpectFilled(Frame(), BACKGROUND_PIXEL, 0, 0, 64, 64, "gone");
}

TEST_F(QXOgreRibbons, TrailsHaveTheirOwnPointsAndSettings) {
  QXRibbonTrail3D* const pTrail = MakeStraight();
  pTrail->SetTrailCount(2);
  EXPECT_EQ(pTrail->GetTrailCount(), 2U);
  pTrail->SetInitialColor(1, GREEN);
  pTrail->SetInitialWidth(1, 0.25);
  pTrail->AddPoint(1, {-1.0, 0.75, 0.0});
  pTrail->AddPoint(1, {1.0, 0.75, 0.0});
  QXPicture const picture = Frame();
  ExpectFilled(picture, RED_PIXEL, 16, 24, 48, 40, "first");
  ExpectFilled(picture, GREEN_PIXEL, 0, 4, 64, 12, "second");
  EXPECT_EQ(m_pGraphics3D->GetDrawOperationCount(), 2U);
  pTrail->ClearTrail(0);
  EXPECT_EQ(Frame().At(32, 32), BACKGROUND_PIXEL);
  // One that vanishes loses its points.
  pTrail->SetTrailCount(1);
  pTrail->SetTrailCount(2);
  EXPECT_EQ(pTrail->GetInitialColor(1), QXColorValue3D(1.0, 1.0, 1.0, 1.0));
  EXPECT_EQ(Frame().At(32, 8), BACKGROUND_PIXEL);
  pTrail->AddPoint(1, {-1.0, 0.75, 0.0});
  pTrail->AddPoint(1, {1.0, 0.75, 0.0});
  pTrail->ClearAllTrails();
  ExpectFilled(Frame(), BACKGROUND_PIXEL, 0, 0, 64, 64, "all cleared");
}

TEST_F(QXOgreRibbons, ATrailPastTheLastChangesNothing) {
  QXRibbonTrail3D* const pTrail = MakeStraight();
  pTrail->AddPoint(1, {1.0, 1.0, 0.0});
  pTrail->ClearTrail(1);
  pTrail->SetInitialColor(1, GREEN);
  pTrail->SetColorChange(1, GREEN);
  pTrail->SetInitialWidth(1, 9.0);
  pTrail->SetWidthChange(1, 9.0);
  EXPECT_EQ(pTrail->GetInitialWidth(0), 0.5);
  EXPECT_EQ(pTrail->GetInitialWidth(1), 1.0);
  ExpectFilled(Frame(), RED_PIXEL, 16, 24, 48, 40, "straight");
}

TEST_F(QXOgreRibbons, PartsShareTheEdgeThatHalvesTheirAngle) {
  QXRibbonTrail3D* const pTrail = Make({});
  pTrail->SetInitialWidth(0, 0.25);
  for (QXVector3d const& vec : {QXVector3d(-0.5, -0.5, 0.0), {0.5, -0.5, 0.0}, {0.5, 0.5, 0.0}})
    pTrail->AddPoint(0, vec);
  QXPicture const picture = Frame();
  for (int y = 0; y < 64; ++y)
    for (int x = 0; x < 64; ++x) {
      bool const bAlong = x >= 16 && x < 52 && y >= 44 && y < 52;
      bool const bUp = x >= 44 && x < 52 && y >= 16 && y < 52;
      ASSERT_EQ(picture.At(static_cast<unsigned int>(x), static_cast<unsigned int>(y)) == RED_PIXEL, bAlong || bUp)
          << x << ", " << y;
    }
}

TEST_F(QXOgreRibbons, ASharpTurnReachesNoFartherThanTwiceTheWidth) {
  QXRibbonTrail3D* const pTrail = Make({});
  pTrail->SetInitialWidth(0, 0.25);
  for (QXVector3d const& vec : {QXVector3d(-0.5, -0.02, 0.0), {0.0, 0.0, 0.0}, {-0.5, 0.02, 0.0}})
    pTrail->AddPoint(0, vec);
  QXPicture const picture = Frame();
  for (unsigned int y = 0; y < 64; ++y)
    for (unsigned int x = 42; x < 64; ++x) ASSERT_EQ(picture.At(x, y), BACKGROUND_PIXEL) << x << ", " << y;
  // And one that turns right around.
  pTrail->ClearAllTrails();
  for (double const x : {-0.5, 0.5, -0.5}) pTrail->AddPoint(0, {x, 0.0, 0.0});
  ExpectFilled(Frame(), RED_PIXEL, 16, 28, 48, 36, "there and back");
}

TEST_F(QXOgreRibbons, ItTurnsToTheCameraOrLiesAcrossItsNormal) {
  QXRibbonTrail3D* const pTrail = MakeStraight();
  // From the side it is as wide as from above.
  m_pCamera->SetPosition(0.0, -10.0, 0.0);
  m_pCamera->LookAt(0.0, 0.0, 0.0);
  ExpectFilled(Frame(), RED_PIXEL, 16, 24, 48, 40, "from the side");
  pTrail->SetFaceCamera(0, {0.0, 0.0, 5.0});
  QXPicture const edge = Frame();
  for (unsigned int const y : {28U, 36U}) EXPECT_EQ(edge.At(32, y), BACKGROUND_PIXEL) << "it lies flat, seen along it";
  m_pCamera->SetPosition(0.0, 0.0, 10.0);
  m_pCamera->SetOrientation(QXQuaternion4d());
  ExpectFilled(Frame(), RED_PIXEL, 16, 24, 48, 40, "flat, from above");
  pTrail->SetFaceCamera(1, {});
  ExpectFilled(Frame(), RED_PIXEL, 16, 24, 48, 40, "turned again");
}

TEST_F(QXOgreRibbons, InPerspectiveItTurnsToTheEyeItself) {
  m_pCamera->SetProjectionType(PROJECTION_PERSPECTIVE);
  // At the depth 10 the picture is 20 wide: a pixel is 0.3125 units.
  m_pCamera->SetProjectionMatrix(QXMathEngine::ComputePerspectiveMatrix(std::acos(-1.0) / 2.0, 1.0, 0.1, 100.0));
  QXRibbonTrail3D* const pTrail = Make({});
  pTrail->SetInitialWidth(0, 5.0);
  // Far to the right of the eye, in steps: turned to the view's direction alone it would be exactly 16 pixels wide.
  for (int i = -8; i <= 8; ++i) pTrail->AddPoint(0, {7.5, i * 1.0, 0.0});
  QXPicture const picture = Frame();
  int nWidth = 0;
  for (unsigned int x = 0; x < 64; ++x) nWidth += picture.At(x, 32) == RED_PIXEL;
  // The edges stand at (7.5, 0) plus and minus 2.5 * (0.8, 0.6): 9.5 / 8.5 and 5.5 / 11.5 of half a picture.
  EXPECT_NEAR(nWidth, (std::min(9.5 / 8.5, 1.0) - 5.5 / 11.5) * 32.0, 1.0);
}

TEST_F(QXOgreRibbons, WhatRunsAlongTheLineOfSightHidesNothingElse) {
  QXRibbonTrail3D* const pTrail = Make({{0.0, 0.0, -1.0}, {0.0, 0.0, 1.0}});
  Frame();
  pTrail->AddPoint(0, {0.5, 0.0, 1.0});
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(40, 32), RED_PIXEL);
  EXPECT_EQ(picture.At(8, 32), BACKGROUND_PIXEL);
}

TEST_F(QXOgreRibbons, ThePictureRunsFromTheHeadAndFromTheLeft) {
  QXRibbonTrail3D* const pTrail = MakeStraight();
  pTrail->ClearAllTrails();
  pTrail->SetInitialColor(0, QXColorValue3D::White);
  pTrail->AddPoint(0, {-0.5, 0.0, 0.0});
  // The parts are not equally long: the picture goes by lengths.
  pTrail->AddPoint(0, {0.25, 0.0, 0.0});
  pTrail->AddPoint(0, {0.5, 0.0, 0.0});
  pTrail->SetTexture(MakeTexture(2, 1, PF_A8R8G8B8, {0, 0, 255, 255, 0, 255, 0, 255}));
  QXPicture const along = Frame();
  ExpectFilled(along, RED_PIXEL, 32, 24, 48, 40, "the head's half");
  ExpectFilled(along, GREEN_PIXEL, 16, 24, 32, 40, "the end's half");
  pTrail->SetTexture(MakeTexture(1, 2, PF_A8R8G8B8, {0, 0, 255, 255, 0, 255, 0, 255}));
  QXPicture const across = Frame();
  ExpectFilled(across, RED_PIXEL, 16, 24, 48, 32, "left of what moves to the right");
  ExpectFilled(across, GREEN_PIXEL, 16, 32, 48, 40, "right of it");
  pTrail->SetTexture(nullptr);
  EXPECT_EQ(Frame().At(32, 32), (QXPixel{255, 255, 255, 255}));
}

TEST_F(QXOgreRibbons, ATextureIsCountedBlendedAndMayDieFirst) {
  QXTexture* const pTexture = MakeTexture(1, 1, PF_A8R8G8B8, {255, 255, 255, 0});
  int const nBefore = pTexture->GetRef();
  QXRibbonTrail3D* const pTrail = MakeStraight();
  pTrail->SetTexture(pTexture);
  EXPECT_EQ(pTexture->GetRef(), nBefore + 1);
  ExpectFilled(Frame(), BACKGROUND_PIXEL, 0, 0, 64, 64, "clear");
  Delete(pTexture);
  ExpectFilled(Frame(), RED_PIXEL, 16, 24, 48, 40, "plain again");
}

TEST_F(QXOgreRibbons, TheMaterialIsTheNameOfATexture) {
  QXRenderTarget* const pOther = MakeTarget(L"blue");
  AddViewport(*pOther, *MakeCamera(L"nothing", L"3D"), 0, 0.0, 0.0, 1.0, 1.0)->m_BackgroundColor = {0.0, 0.0, 1.0, 1.0};
  QXRibbonTrail3D* pTrail = Make({}, L"blue");
  pTrail->SetInitialColor(0, QXColorValue3D::White);
  pTrail->AddPoint(0, {-0.5, 0.0, -9.0});
  pTrail->AddPoint(0, {0.5, 0.0, -9.0});
  pOther->SetActive(0);
  pOther->Update();
  EXPECT_EQ(Frame().At(8, 32), BACKGROUND_PIXEL);
  pTrail->SetVisible(0);
  pOther->Update();
  pTrail->SetVisible(1);
  EXPECT_EQ(Frame().At(32, 32), BLUE_PIXEL);
  pTrail->SetVisible(0);
  // One that nobody knows: plain.
  pTrail = Make({{-0.5, 0.0, 0.0}, {0.5, 0.0, 0.0}}, L"unknown");
  EXPECT_EQ(Frame().At(32, 32), RED_PIXEL);
}

TEST_F(QXOgreRibbons, ItIsHiddenByWhatStandsBeforeItAndBlendedWithWhatStandsBehind) {
  QXRibbonTrail3D* const pTrail = MakeStraight();
  QXRenderOperation3D* const pSquare = DrawSquare(-1.0F, -1.0F, 0.0F, 1.0F, 1.0F, GREEN);
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(24, 32), GREEN_PIXEL);
  EXPECT_EQ(picture.At(40, 32), RED_PIXEL);
  pTrail->SetColorChange(0, {0.0, 0.0, 0.0, 0.5});
  pTrail->Advance(1.0);
  // A pane behind the ribbon and one before it.
  pSquare->SetColor({1.0, 1.0, 1.0, 0.5});
  auto const behindOrBefore = [&](double dZ) {
    QXMatrix4d matModel;
    matModel.SetTrans({0.0, 0.0, dZ});
    pSquare->SetModelMatrix(matModel);
    return Frame().At(24, 32);
  };
  QXPixel const behind = behindOrBefore(-2.0);
  EXPECT_NEAR(behind.r, 128, 2);
  EXPECT_NEAR(behind.g, 64, 2);
  QXPixel const before = behindOrBefore(2.0);
  EXPECT_NEAR(before.r, 64, 2);
  EXPECT_NEAR(before.g, 128, 2);
}

TEST_F(QXOgreRibbons, FarFromTheZeroItLooksTheSame) {
  QXVector3d const vecPlace(6000000.0, -6000000.0, 3000.0);
  Make({vecPlace + QXVector3d(-0.5, 0.0, 0.0), vecPlace, vecPlace + QXVector3d(0.5, 0.0, 0.0)});
  m_pGraphics3D->SetRelativeOrigin(vecPlace);
  m_pCamera->SetPosition(vecPlace + QXVector3d(0.0, 0.0, 10.0));
  ExpectFilled(Frame(), RED_PIXEL, 16, 24, 48, 40, "with the origin there");
  m_pGraphics3D->SetRelativeOrigin({});
  ExpectFilled(Frame(), RED_PIXEL, 16, 24, 48, 40, "with the origin at zero");
}

TEST_F(QXOgreRibbons, HeightsOfPointsAreExaggeratedAndWidthsAreNot) {
  Make({{-0.5, 0.0, 0.25}, {0.5, 0.0, 0.25}});
  m_pCamera->SetPosition(0.0, -10.0, 0.0);
  m_pCamera->LookAt(0.0, 0.0, 0.0);
  m_pTarget->SetVerticalExaggeration(2.0);
  ExpectFilled(Frame(), RED_PIXEL, 16, 8, 48, 24, "twice as high");
}

TEST_F(QXOgreRibbons, WhatIsHiddenOrOutsideIsNotCounted) {
  QXRibbonTrail3D* const pTrail = MakeStraight();
  pTrail->SetVisible(0);
  EXPECT_EQ(pTrail->IsVisible(), 0);
  ExpectFilled(Frame(), BACKGROUND_PIXEL, 0, 0, 64, 64, "hidden");
  EXPECT_EQ(m_pGraphics3D->GetDrawOperationCount(), 0U);
  EXPECT_EQ(m_pGraphics3D->HasRenderableObjects(L"3D"), 0);
  pTrail->SetVisible(1);
  EXPECT_EQ(m_pGraphics3D->HasRenderableObjects(L"3D"), 1);
  m_pCamera->SetPosition(5.0, 0.0, 10.0);
  Frame();
  EXPECT_EQ(m_pGraphics3D->GetDrawOperationCount(), 0U);
}

TEST_F(QXOgreRibbons, ACameraThatComputesItsProjectionSeesIt) {
  QXCamera* const pCamera = m_pGraphics3D->CreateCamera(L"free", L"3D");
  pCamera->SetPosition(0.0, 0.0, 1.0e6);
  m_pViewport->SetCamera(pCamera);
  Make({{-1.0e5, 0.0, 0.0}})->SetInitialWidth(0, 1.0e5);
  m_arrTrails.back()->AddPoint(0, {1.0e5, 0.0, 0.0});
  EXPECT_EQ(Frame().At(32, 32), RED_PIXEL);
}

TEST_F(QXOgreRibbons, WhatIsNoNumberIsNoPointAndNoWidth) {
  QXRibbonTrail3D* const pTrail = MakeStraight();
  pTrail->AddPoint(0, {NO_NUMBER, 0.0, 0.0});
  pTrail->AddPoint(0, {0.0, std::numeric_limits<double>::infinity(), 0.0});
  pTrail->AddPoint(0, {0.0, 0.0, 1.0e300});
  ExpectFilled(Frame(), RED_PIXEL, 16, 24, 48, 40, "as before");
  pTrail->SetTrailLength(NO_NUMBER);
  ExpectFilled(Frame(), RED_PIXEL, 16, 24, 48, 40, "without a length");
  pTrail->SetInitialWidth(0, NO_NUMBER);
  pTrail->AddPoint(0, {0.75, 0.0, 0.0});
  EXPECT_EQ(Frame().At(4, 4), BACKGROUND_PIXEL);
}

TEST_F(QXOgreRibbons, ItOutlivesItsSceneAndTheRenderer) {
  ASSERT_EQ(m_pGraphics3D->CreateScene(L"other"), 1);
  std::unique_ptr<QXRibbonTrail3D> const pTrail(
      m_pGraphics3D->GetRenderOperationManager()->CreateRibbonTrail(L"other", L"trail", L""));
  pTrail->AddPoint(0, {-0.5, 0.0, 0.0});
  pTrail->AddPoint(0, {0.5, 0.0, 0.0});
  m_pCamera = MakeCamera(L"other", L"other");
  m_pViewport->SetCamera(m_pCamera);
  EXPECT_EQ(Frame().At(32, 32), (QXPixel{255, 255, 255, 255}));
  m_pGraphics3D->DestroyScene(L"other");
  QXRibbonTrail3D* const pStays = MakeStraight();
  Frame();
  m_pGraphics3D.reset();
  for (QXRibbonTrail3D* const p : {pTrail.get(), pStays}) {
    p->AddPoint(0, {0.0, 0.0, 0.0});
    p->Advance(1.0);
    EXPECT_EQ(p->GetTrailCount(), 1U);
  }
}

// The ring of points beside a plain list, which forgets from its front.
TEST(QXOgreRibbon, KeepsTheLastPointsAsAPlainListDoes) {
  constexpr unsigned int SEED = 20260;
  SCOPED_TRACE("seed " + std::to_string(SEED));
  std::mt19937 random(SEED);
  auto const roll = [&](unsigned int n) { return static_cast<unsigned int>(random() % n); };
  QXOgreRibbon ribbon;
  std::vector<QXOgreRibbonPoint> arrList;
  std::size_t nMax = 20;
  for (int i = 0; i < 20000; ++i) {
    switch (roll(12)) {
    case 0:
      nMax = roll(9);
      ribbon.Limit(nMax);
      break;
    case 1:
      ribbon.m_Color.g = 0.1 * roll(10);
      ribbon.m_ColorChange = {0.1 * roll(3), 0.0, 0.2, 0.05};
      ribbon.m_dWidth = 1.0 + roll(4);
      ribbon.m_dWidthChange = 0.25 * roll(3);
      break;
    case 2:
      ribbon.Advance(0.5);
      for (QXOgreRibbonPoint& point : arrList) {
        point.m_Color.r = std::max(point.m_Color.r - ribbon.m_ColorChange.r * 0.5, 0.0);
        point.m_Color.b = std::max(point.m_Color.b - ribbon.m_ColorChange.b * 0.5, 0.0);
        point.m_Color.a = std::max(point.m_Color.a - ribbon.m_ColorChange.a * 0.5, 0.0);
        point.m_dWidth = std::max(point.m_dWidth - ribbon.m_dWidthChange * 0.5, 0.0);
      }
      break;
    case 3:
      if (roll(20) > 0) break;
      ribbon.Clear();
      arrList.clear();
      break;
    default:
      ribbon.Add({1.0 * i, 0.0, 0.0}, nMax);
      arrList.push_back({{1.0 * i, 0.0, 0.0}, ribbon.m_Color, ribbon.m_dWidth});
    }
    if (arrList.size() > nMax) arrList.erase(arrList.begin(), arrList.end() - static_cast<std::ptrdiff_t>(nMax));
    ASSERT_EQ(ribbon.GetCount(), arrList.size()) << i;
    for (std::size_t k = 0; k < arrList.size(); ++k) {
      QXOgreRibbonPoint const& expected = arrList[arrList.size() - 1 - k];
      ASSERT_EQ(ribbon.GetPoint(k).m_vecPosition, expected.m_vecPosition) << i;
      ASSERT_EQ(ribbon.GetPoint(k).m_Color, expected.m_Color) << i;
      ASSERT_EQ(ribbon.GetPoint(k).m_dWidth, expected.m_dWidth) << i;
    }
  }
}

TEST(QXOgreRibbon, TheCutLiesBetweenItsPointsInEverything) {
  QXOgreRibbon ribbon;
  ribbon.m_Color = {0.0, 1.0, 0.0, 1.0};
  ribbon.m_dWidth = 2.0;
  ribbon.Add({0.0, 0.0, 0.0}, 9);
  ribbon.m_Color = {1.0, 0.0, 0.0, 0.5};
  ribbon.m_dWidth = 4.0;
  ribbon.Add({8.0, 0.0, 0.0}, 9);
  std::vector<QXOgreRibbonPoint> arrPoints;
  ribbon.CollectHead(2.0, arrPoints);
  ASSERT_EQ(arrPoints.size(), 2U);
  EXPECT_EQ(arrPoints[0].m_vecPosition, QXVector3d(8.0, 0.0, 0.0));
  EXPECT_EQ(arrPoints[1].m_vecPosition, QXVector3d(6.0, 0.0, 0.0));
  EXPECT_EQ(arrPoints[1].m_Color, QXColorValue3D(0.75, 0.25, 0.0, 0.625));
  EXPECT_EQ(arrPoints[1].m_dWidth, 3.5);
  // A length that ends on a point gives that point once.
  ribbon.Add({9.0, 0.0, 0.0}, 9);
  arrPoints.clear();
  ribbon.CollectHead(1.0, arrPoints);
  EXPECT_EQ(arrPoints.size(), 2U);
}

}  // namespace QXC
