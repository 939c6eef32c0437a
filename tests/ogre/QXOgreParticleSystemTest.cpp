// Pictures of particles.
#include <algorithm>
#include <cmath>
#include <memory>
#include <numbers>
#include <vector>

#include <QxGraphics3D/renderop/QXParticleSystem3D.h>

#include <plugins/ogre/effects/QXOgreParticles.h>
#include <tests/ogre/QXOgreTexturing.h>

namespace QXC {

namespace {

constexpr QXPixel WHITE_PIXEL{255, 255, 255, 255};

QXMatrix4d Emitter(QXVector3d const& vecPlace, double dScale = 1.0) {
  QXMatrix4d mat;
  for (int i = 0; i < 3; ++i) mat[i][i] = dScale;
  mat.SetTrans(vecPlace);
  return mat;
}

}  // namespace

/// Plain particles rise towards the camera, so each stays at its place in the picture.
class QXOgreParticleSystems : public QXOgreTexturing {
protected:
  void TearDown() override {
    m_arrSystems.clear();
    QXOgreTexturing::TearDown();
  }
  QXParticleSystem3D* Make(wchar_t const* szKind, wchar_t const* szScene = L"3D") {
    QXParticleSystem3D* const p = m_pGraphics3D->GetRenderOperationManager()->CreateParticleSystem(szScene, szKind);
    EXPECT_NE(p, nullptr) << Reason();
    m_arrSystems.emplace_back(p);
    return p;
  }
  /// One opaque square of 8 pixels in the middle of the picture.
  QXParticleSystem3D* MakeSquare() {
    QXParticleSystem3D* const p = Make(L"");
    p->SetTexture(MakePlain(255));
    p->SetModelMatrix(Emitter({}, 1.25));
    p->SetEmissionRate(1.0);
    p->Advance(1.0);
    return p;
  }
  QXTexture* MakePlain(unsigned char nAlpha) { return MakeTexture(1, 1, PF_A8R8G8B8, {255, 255, 255, nAlpha}); }

  std::vector<std::unique_ptr<QXParticleSystem3D>> m_arrSystems;
};

TEST_F(QXOgreParticleSystems, AParticleIsASquareOfItsSizeThatShowsTheTexture) {
  QXParticleSystem3D* const p = MakeSquare();
  EXPECT_EQ(p->GetParticleCount(), 1U);
  QXPicture const picture = Frame();
  for (unsigned int const i : {28U, 35U})
    for (unsigned int const k : {28U, 35U}) EXPECT_EQ(picture.At(i, k), WHITE_PIXEL) << i << ", " << k;
  for (unsigned int const i : {27U, 36U}) {
    EXPECT_EQ(picture.At(i, 32), BACKGROUND_PIXEL) << i;
    EXPECT_EQ(picture.At(32, i), BACKGROUND_PIXEL) << i;
  }
  EXPECT_EQ(m_pGraphics3D->GetDrawOperationCount(), 1U);
  p->SetTexture(MakeTexture(2, 2, PF_A8R8G8B8, {0, 0, 255, 255, 0, 255, 0, 255, 255, 0, 0, 255, 255, 255, 255, 255}));
  QXPicture const textured = Frame();
  EXPECT_EQ(textured.At(30, 30), RED_PIXEL) << "upright";
  EXPECT_EQ(textured.At(33, 30), GREEN_PIXEL);
  EXPECT_EQ(textured.At(33, 33), WHITE_PIXEL);
}

TEST_F(QXOgreParticleSystems, WithoutATextureItIsASoftDisc) {
  QXParticleSystem3D* const p = MakeSquare();
  p->SetTexture(nullptr);
  p->SetModelMatrix(Emitter({}, 10.0));
  p->Advance(1.0);
  QXPicture const picture = Frame();
  int const nMiddle = picture.At(32, 32).r;
  EXPECT_GT(nMiddle, 250);
  EXPECT_EQ(picture.At(1, 1), BACKGROUND_PIXEL) << "the corner is clear";
  // (1 - r * r) squared: nine sixteenths half way out.
  EXPECT_NEAR(picture.At(48, 32).r, 255 * 9 / 16, 10);
  EXPECT_NEAR(picture.At(32, 15).r, picture.At(48, 32).r, 10) << "round";
}

TEST_F(QXOgreParticleSystems, OnlyItsTextureWhileThatLives) {
  QXParticleSystem3D* const p = Make(L"");
  p->SetModelMatrix(Emitter({}, 1.25));
  p->SetEmissionRate(1.0);
  p->Advance(1.0);
  QXTexture* const pTexture = MakePlain(255);
  p->SetTexture(pTexture);
  EXPECT_GE(pTexture->GetRef(), 1);
  EXPECT_EQ(Frame().At(28, 28), WHITE_PIXEL);
  Delete(pTexture);
  EXPECT_EQ(Frame().At(28, 28), BACKGROUND_PIXEL) << "the disc is back";
}

TEST_F(QXOgreParticleSystems, ItMovesByAdvanceAlone) {
  QXParticleSystem3D* const p = Make(L"smoke");
  p->SetModelMatrix(Emitter({}, 0.3));
  p->Advance(2.0);
  std::vector<unsigned char> const arrFirst = Frame().GetBytes();
  EXPECT_EQ(Frame().GetBytes(), arrFirst);
  p->Advance(0.1);
  EXPECT_NE(Frame().GetBytes(), arrFirst);
}

TEST_F(QXOgreParticleSystems, EachRunOfAProgramLooksAlikeAndEachSystemDoesNot) {
  auto const draw = [this] {
    for (int i = 0; i < 2; ++i) {
      QXParticleSystem3D* const p = Make(L"smoke");
      p->SetModelMatrix(Emitter({i - 0.5, 0.0, 0.0}, 0.1));
      p->Advance(3.0);
    }
    return Frame();
  };
  QXPicture const first = draw();
  bool bDiffer = false;
  for (unsigned int x = 0; x < 32; ++x)
    for (unsigned int y = 0; y < 64; ++y) bDiffer = bDiffer || !(first.At(x, y) == first.At(x + 32, y));
  EXPECT_TRUE(bDiffer);
  std::vector<unsigned char> const arrFirst = first.GetBytes();
  TearDown();
  m_arrOperations.clear();
  m_arrTextures.clear();
  m_pGraphics3D.reset();
  SetUp();
  EXPECT_EQ(draw().GetBytes(), arrFirst);
}

TEST_F(QXOgreParticleSystems, HiddenOnesAreNotDrawn) {
  QXParticleSystem3D* const p = MakeSquare();
  EXPECT_EQ(m_pGraphics3D->HasRenderableObjects(L"3D"), 1);
  p->SetVisible(0);
  EXPECT_EQ(Frame().At(32, 32), BACKGROUND_PIXEL);
  EXPECT_EQ(m_pGraphics3D->GetDrawOperationCount(), 0U);
  EXPECT_EQ(m_pGraphics3D->HasRenderableObjects(L"3D"), 0);
  p->SetVisible(1);
  EXPECT_EQ(Frame().At(32, 32), WHITE_PIXEL);
}

TEST_F(QXOgreParticleSystems, WhatNoCameraSeesCostsNothing) {
  QXParticleSystem3D* const p = Make(L"");
  p->SetModelMatrix(Emitter({50.0, 0.0, 0.0}));
  p->Advance(1.0);
  EXPECT_EQ(p->GetParticleCount(), 10U);
  Frame();
  EXPECT_EQ(m_pGraphics3D->GetDrawOperationCount(), 0U);
}

/// As the first system of a renderer has the seed 1, the same numbers can be drawn by hand.
TEST_F(QXOgreParticleSystems, SmokeIsBlendedFromBackToFront) {
  QXParticleSystem3D* const p = Make(L"smoke");
  p->SetTexture(MakePlain(255));
  p->SetModelMatrix(Emitter({0.0, 0.0, -2.0}, 0.5));
  p->Advance(5.0);
  QXOgreParticles particles(*FindParticleKind(L"smoke"), 1);
  particles.SetMatrix(Emitter({0.0, 0.0, -2.0}, 0.5));
  particles.Advance(5.0);
  ASSERT_EQ(p->GetParticleCount(), particles.GetCount());
  std::vector<QXOgreParticles::State> arrStates;
  for (std::size_t i = 0; i < particles.GetCount(); ++i) arrStates.push_back(particles.GetState(i));
  std::sort(arrStates.begin(), arrStates.end(),
      [](auto const& a, auto const& b) { return a.m_vecPosition.z < b.m_vecPosition.z; });
  QXPicture const picture = Frame();
  int nCompared = 0;
  int nDeepest = 0;
  for (unsigned int y = 2; y < SIZE; y += 7) {
    for (unsigned int x = 2; x < SIZE; x += 7) {
      double const dX = (x + 0.5) / 32.0 - 1.0;
      double const dY = 1.0 - (y + 0.5) / 32.0;
      double dRed = 0.0;
      double dBlue = 51.0 / 255.0;
      int nDeep = 0;
      bool bEdge = false;
      for (QXOgreParticles::State const& state : arrStates) {
        double const dCos = std::cos(state.m_dAngle);
        double const dSin = std::sin(state.m_dAngle);
        double const u = (dX - state.m_vecPosition.x) * dCos + (dY - state.m_vecPosition.y) * dSin;
        double const v = (dY - state.m_vecPosition.y) * dCos - (dX - state.m_vecPosition.x) * dSin;
        double const dOut = std::max(std::abs(u), std::abs(v)) - 0.5 * state.m_dSize;
        bEdge = bEdge || std::abs(dOut) < 1e-3;
        if (dOut > 0.0) continue;
        dRed = dRed * (1.0 - state.m_Color.a) + state.m_Color.r * state.m_Color.a;
        dBlue = dBlue * (1.0 - state.m_Color.a) + state.m_Color.b * state.m_Color.a;
        ++nDeep;
      }
      if (bEdge) continue;
      ++nCompared;
      nDeepest = std::max(nDeepest, nDeep);
      EXPECT_NEAR(picture.At(x, y).r, 255.0 * dRed, 3.0) << x << ", " << y << ": " << nDeep << " over each other";
      EXPECT_NEAR(picture.At(x, y).b, 255.0 * dBlue, 3.0) << x << ", " << y;
    }
  }
  EXPECT_GT(nCompared, 60);
  EXPECT_GT(nDeepest, 15);
}

TEST_F(QXOgreParticleSystems, FireAddsItsLight) {
  m_pViewport->m_BackgroundColor = QXColorValue3D(0.2, 0.2, 0.2, 1.0);
  QXParticleSystem3D* const p = Make(L"fire");
  p->SetTexture(MakePlain(255));
  p->SetEmissionRate(4.0);
  p->SetModelMatrix(Emitter({0.0, 0.0, -2.0}));
  p->Advance(1.0);
  QXOgreParticles particles(*FindParticleKind(L"fire"), 1);
  particles.SetRate(4.0);
  particles.SetMatrix(Emitter({0.0, 0.0, -2.0}));
  particles.Advance(1.0);
  double dRed = 0.2;
  double dBlue = 0.2;
  int nDeep = 0;
  for (std::size_t i = 0; i < particles.GetCount(); ++i) {
    QXOgreParticles::State const state = particles.GetState(i);
    // The middle of pixel (32, 32).
    double const dX = 0.5 / 32.0 - state.m_vecPosition.x;
    double const dY = -0.5 / 32.0 - state.m_vecPosition.y;
    double const dCos = std::cos(state.m_dAngle);
    double const dSin = std::sin(state.m_dAngle);
    if (std::max(std::abs(dX * dCos + dY * dSin), std::abs(dY * dCos - dX * dSin)) > 0.5 * state.m_dSize) continue;
    dRed += state.m_Color.r * state.m_Color.a;
    dBlue += state.m_Color.b * state.m_Color.a;
    ++nDeep;
  }
  ASSERT_GT(nDeep, 1);
  QXPixel const pixel = Frame().At(32, 32);
  EXPECT_NEAR(pixel.r, 255.0 * std::min(1.0, dRed), 2.0);
  EXPECT_NEAR(pixel.b, 255.0 * std::min(1.0, dBlue), 2.0);
}

TEST_F(QXOgreParticleSystems, RainIsDrawnAlongItsWay) {
  // From the side: the camera looks along y, with z up.
  QXParticleSystem3D* const p = Make(L"rain");
  p->SetTexture(MakePlain(255));
  p->SetEmissionRate(2.0);
  QXCamera* const pSide = MakeCamera(L"side");
  pSide->SetPosition(0.0, -50.0, 0.0);
  pSide->LookAt(QXVector3d(0.0, 0.0, 0.0));
  pSide->SetProjectionMatrix(QXMathEngine::ComputeOrthoMatrix(-1.0, 1.0, -1.0, 1.0, 0.0, 100.0));
  // Twice as large, a drop is two pixels wide.
  QXOgreParticles particles(*FindParticleKind(L"rain"), 1);
  particles.SetRate(2.0);
  particles.SetMatrix(Emitter({}, 2.0));
  particles.Advance(0.5);
  QXOgreParticles::State const drop = particles.GetState(0);
  // The emitter stands so that the lower end of its first drop is three quarters down the picture's lower half.
  p->SetModelMatrix(Emitter({-drop.m_vecPosition.x, 0.0, -0.75 - drop.m_vecPosition.z}, 2.0));
  p->Advance(0.5);
  ASSERT_EQ(p->GetParticleCount(), 1U);
  m_pViewport->SetCamera(pSide);
  QXPicture const picture = Frame();
  unsigned int nLit = 0;
  for (unsigned int y = 0; y < SIZE; ++y) nLit += picture.At(31, y).r > 60 || picture.At(32, y).r > 60;
  EXPECT_NEAR(nLit, -drop.m_vecVelocity.z * 0.06 * 32.0, 1.5) << "behind it lies what it covers in 0.06 seconds";
  EXPECT_EQ(picture.At(32, 58), BACKGROUND_PIXEL) << "nothing in front of it";
  EXPECT_EQ(picture.At(28, 50), BACKGROUND_PIXEL) << "and it is thin";
}

TEST_F(QXOgreParticleSystems, DrawablesHideThemAndTheyHideDrawables) {
  MakeSquare();
  DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, 1.0F, RED);
  EXPECT_EQ(Frame().At(32, 32), RED_PIXEL);
  m_arrOperations[0]->SetModelMatrix(Emitter({0.0, 0.0, -2.0}));
  EXPECT_EQ(Frame().At(32, 32), WHITE_PIXEL);
}

TEST_F(QXOgreParticleSystems, HeightsAreExaggeratedAndSizesAreNot) {
  QXParticleSystem3D* const p = MakeSquare();
  p->SetModelMatrix(Emitter({0.0, 0.0, 3.0}, 1.25));
  p->Advance(1.0);
  DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, 5.0F, RED);
  m_arrOperations[0]->SetModelMatrix(Emitter({0.0, 0.0, 0.0}));
  EXPECT_EQ(Frame().At(32, 32), RED_PIXEL);
  m_pTarget->SetVerticalExaggeration(2.0);
  m_arrOperations[0]->SetModelMatrix(Emitter({0.0, 0.0, -2.6}));
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(32, 32), WHITE_PIXEL) << "at 6, above 4.8";
  EXPECT_EQ(picture.At(27, 32), RED_PIXEL);
}

TEST_F(QXOgreParticleSystems, TheyAreRightSixMillionUnitsAway) {
  double const dFar = 6.0e6;
  QXParticleSystem3D* const p = Make(L"");
  p->SetTexture(MakePlain(255));
  p->SetModelMatrix(Emitter({dFar, -dFar, 0.0}, 1.25));
  p->SetEmissionRate(1.0);
  p->Advance(1.0);
  m_pGraphics3D->SetRelativeOrigin({dFar, -dFar, 0.0});
  m_pCamera->SetPosition(dFar, -dFar, 10.0);
  QXPicture const picture = Frame();
  for (unsigned int const i : {28U, 35U}) EXPECT_EQ(picture.At(i, i), WHITE_PIXEL) << i;
  for (unsigned int const i : {27U, 36U}) EXPECT_EQ(picture.At(i, 32), BACKGROUND_PIXEL) << i;
}

TEST_F(QXOgreParticleSystems, EachViewportSeesThemFromItsOwnCamera) {
  MakeSquare();
  m_pTarget->RemoveAllViewports();
  AddViewport(*m_pTarget, *m_pCamera, 0, 0.0, 0.0, 0.5, 1.0);
  QXCamera* const pAside = MakeCamera(L"aside");
  pAside->SetPosition(0.5, 0.0, 10.0);
  AddViewport(*m_pTarget, *pAside, 1, 0.5, 0.0, 0.5, 1.0);
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(16, 32), WHITE_PIXEL);
  EXPECT_EQ(picture.At(48, 32), BACKGROUND_PIXEL);
  EXPECT_EQ(picture.At(40, 32), WHITE_PIXEL);
}

TEST_F(QXOgreParticleSystems, CamerasFindNearAndFarByThem) {
  QXParticleSystem3D* const p = MakeSquare();
  p->SetModelMatrix(Emitter({0.0, 0.0, -3000.0}, 1.25));
  p->Advance(1.0);
  QXCamera* const pOwn = m_pGraphics3D->CreateCamera(L"own", L"3D");
  pOwn->SetPosition(0.0, 0.0, -2000.0);
  // Fields of view stay as they are set once a mode was chosen.
  pOwn->SetFOVMode(static_cast<QXCameraFOVMode>(2));
  pOwn->SetFov(0.1 * std::numbers::pi / 180.0);
  m_pViewport->SetCamera(pOwn);
  QXPixel const pixel = Frame().At(32, 32);
  EXPECT_EQ(pixel, WHITE_PIXEL);
}

TEST_F(QXOgreParticleSystems, KindsAndScenesThatAreNotThereAreRefused) {
  QXRenderOperationManager& manager = *m_pGraphics3D->GetRenderOperationManager();
  EXPECT_EQ(manager.CreateParticleSystem(L"3D", L"steam"), nullptr);
  EXPECT_NE(Reason().find("steam"), std::string::npos);
  EXPECT_EQ(manager.CreateParticleSystem(L"nowhere", L"smoke"), nullptr);
  EXPECT_EQ(manager.CreateParticleSystem(L"", L"smoke"), nullptr);
}

TEST_F(QXOgreParticleSystems, TheyOutliveTheirSceneAndTheirRenderer) {
  m_pGraphics3D->CreateScene(L"other");
  QXParticleSystem3D* const pOther = Make(L"smoke", L"other");
  pOther->Advance(1.0);
  m_pGraphics3D->DestroyScene(L"other");
  pOther->Advance(1.0);
  EXPECT_EQ(pOther->GetParticleCount(), 24U) << "they go on unseen";
  QXParticleSystem3D* const p = MakeSquare();
  Frame();
  for (QXTexture* const pTexture : m_arrTextures) delete pTexture;
  m_arrTextures.clear();
  m_pGraphics3D.reset();
  p->Advance(1.0);
  EXPECT_EQ(p->GetParticleCount(), 2U);
  p->SetTexture(nullptr);
}

TEST_F(QXOgreParticleSystems, TenThousandAreOneOperation) {
  QXParticleSystem3D* const p = Make(L"smoke");
  p->SetEmissionRate(10000.0);
  p->SetModelMatrix(Emitter({}, 0.1));
  p->Advance(1.0);
  EXPECT_EQ(p->GetParticleCount(), 10000U);
  Frame();
  EXPECT_EQ(m_pGraphics3D->GetDrawOperationCount(), 1U);
}

}  // namespace QXC
