// Fog of scenes.
#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <numbers>
#include <string>

#include <QxGraphics3D/renderop/QXBillboard.h>
#include <QxGraphics3D/view/QXFog.h>
#include <QxGraphics3D/view/QXLight.h>

#include <tests/ogre/QXOgreBucketing.h>
#include <tests/ogre/QXOgreLabeling.h>

namespace QXC {

namespace {

constexpr double NO_NUMBER = std::numeric_limits<double>::quiet_NaN();
constexpr double INFINITE = std::numeric_limits<double>::infinity();

QXFog Fog(FogMode eMode, double dStart, double dEnd, double dDensity) {
  QXFog fog;
  fog.SetFogMode(eMode);
  fog.SetFogStart(dStart);
  fog.SetFogEnd(dEnd);
  fog.SetFogDensity(dDensity);
  fog.SetFogColor(QXColorValue3D(0.2, 0.4, 0.6, 1.0));
  return fog;
}

/// What is seen through it, by the words of QXFog.h.
double VisibleAt(QXFog const& fog, double d) {
  double dVisible = 1.0;
  if (fog.GetFogMode() == FOG_EXPONENTIAL) dVisible = std::exp(-fog.GetFogDensity() * d);
  if (fog.GetFogMode() == FOG_EXPONENTIAL_SQUARED) dVisible = std::exp(-std::pow(fog.GetFogDensity() * d, 2.0));
  if (fog.GetFogMode() == FOG_LINEAR) dVisible = (fog.GetFogEnd() - d) / (fog.GetFogEnd() - fog.GetFogStart());
  return std::min(std::max(dVisible, 0.0), 1.0);
}

/// A pixel of a colour behind so much fog.
void ExpectFogged(QXPixel const& pixel, QXColorValue3D const& color, double dVisible, std::string const& strWhat) {
  EXPECT_NEAR(pixel.r, 255.0 * (0.2 + (color.r - 0.2) * dVisible), 1.0) << strWhat;
  EXPECT_NEAR(pixel.g, 255.0 * (0.4 + (color.g - 0.4) * dVisible), 1.0) << strWhat;
  EXPECT_NEAR(pixel.b, 255.0 * (0.6 + (color.b - 0.6) * dVisible), 1.0) << strWhat;
}

}  // namespace

class QXOgreFog : public QXOgreBucketing {
protected:
  /// A field of 90 degrees from (0, 0, 10), looking down on white squares. The one at the depth d is 2 d wide and takes
  /// the picture's columns from nLeft on, eight of them.
  void LookInPerspective() {
    QXMatrix4d matProjection;
    m_pCamera->SetProjectionType(PROJECTION_PERSPECTIVE);
    m_pGraphics3D->MakeProjectionMatrix(std::numbers::pi / 2.0, 1.0, 0.1, 1.0e4, matProjection);
    m_pCamera->SetProjectionMatrix(matProjection);
  }
  QXRenderOperation3D* DrawStripe(
      double dDepth, unsigned int nLeft, QXColorValue3D const& color = QXColorValue3D::White) {
    auto const fDepth = static_cast<float>(dDepth);
    float const fLeft = (static_cast<float>(nLeft) / 32.0F - 1.0F) * fDepth;
    return DrawSquare(fLeft, -fDepth, fLeft + 0.25F * fDepth, fDepth, 10.0F - fDepth, color);
  }
  static double DistanceOf(double dDepth, unsigned int x, unsigned int y) {
    double const dX = (x + 0.5) / 32.0 - 1.0;
    double const dY = (y + 0.5) / 32.0 - 1.0;
    return dDepth * std::sqrt(1.0 + dX * dX + dY * dY);
  }
  void SetFog(QXFog const& fog) { m_pGraphics3D->SetFog(L"3D", fog); }
};

TEST_F(QXOgreFog, EachModeFollowsItsFormulaByTheDistanceFromTheEye) {
  LookInPerspective();
  double const arrDepths[] = {1.0, 5.0, 9.0, 20.0, 50.0, 150.0};
  for (unsigned int i = 0; i < 6; ++i) DrawStripe(arrDepths[i], 8 * i);
  QXFog const arrFogs[] = {Fog(FOG_NONE, 1.0, 2.0, 3.0), Fog(FOG_EXPONENTIAL, 5.0, 1.0, 0.03),
      Fog(FOG_EXPONENTIAL, 0.0, 1.0, 0.2), Fog(FOG_EXPONENTIAL, 0.0, 1.0, 0.0), Fog(FOG_EXPONENTIAL, 0.0, 1.0, -0.5),
      Fog(FOG_EXPONENTIAL_SQUARED, 0.0, 1.0, 0.03), Fog(FOG_EXPONENTIAL_SQUARED, 0.0, 1.0, -0.1),
      Fog(FOG_EXPONENTIAL_SQUARED, 0.0, 1.0, 0.0), Fog(FOG_LINEAR, 4.0, 60.0, 1.0), Fog(FOG_LINEAR, -20.0, 30.0, 1.0),
      Fog(FOG_LINEAR, 60.0, 4.0, 1.0), Fog(FOG_LINEAR, 21.0, 21.0, 1.0), Fog(static_cast<FogMode>(9), 0.0, 1.0, 1.0)};
  for (QXFog const& fog : arrFogs) {
    SetFog(fog);
    QXPicture const picture = Frame();
    for (unsigned int i = 0; i < 6; ++i) {
      for (unsigned int const y : {2U, 31U, 50U}) {
        unsigned int const x = 8 * i + 3;
        ExpectFogged(picture.At(x, y), QXColorValue3D::White, VisibleAt(fog, DistanceOf(arrDepths[i], x, y)),
            "mode " + std::to_string(fog.GetFogMode()) + ", depth " + std::to_string(arrDepths[i]) + ", row " +
                std::to_string(y) + ", from " + std::to_string(fog.GetFogStart()) + " to " +
                std::to_string(fog.GetFogEnd()) + ", density " + std::to_string(fog.GetFogDensity()));
      }
    }
  }
}

TEST_F(QXOgreFog, InParallelViewsItGrowsAlongTheView) {
  DrawSquare(-1.0F, -1.0F, 0.0F, 1.0F, 8.0F, QXColorValue3D::White);
  DrawSquare(0.0F, -1.0F, 1.0F, 1.0F, -5.0F, QXColorValue3D::White);
  QXFog const fog = Fog(FOG_LINEAR, 0.0, 20.0, 1.0);
  SetFog(fog);
  QXPicture const picture = Frame();
  for (unsigned int const y : {1U, 32U}) {
    ExpectFogged(picture.At(1, y), QXColorValue3D::White, VisibleAt(fog, 2.0), "near");
    ExpectFogged(picture.At(62, y), QXColorValue3D::White, VisibleAt(fog, 15.0), "far");
  }
}

TEST_F(QXOgreFog, TheBackgroundStaysAndSoDoesEverythingWithoutFog) {
  DrawSquare(-1.0F, -1.0F, 0.0F, 1.0F, 0.0F, RED);
  SetFog(Fog(FOG_EXPONENTIAL, 0.0, 1.0, 1.0e9));
  QXPicture picture = Frame();
  EXPECT_EQ(picture.At(10, 32), (QXPixel{51, 102, 153, 255}));
  EXPECT_EQ(picture.At(50, 32), BACKGROUND_PIXEL);
  SetFog(QXFog());
  EXPECT_EQ(Frame().At(10, 32), RED_PIXEL);
}

TEST_F(QXOgreFog, EachSceneHasItsOwn) {
  ASSERT_EQ(m_pGraphics3D->CreateScene(L"city"), 1);
  DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, 0.0F, RED);
  QXFog const fog = Fog(FOG_EXPONENTIAL, 0.0, 1.0, 1.0e9);
  m_pGraphics3D->SetFog(L"city", fog);
  m_pGraphics3D->SetFog(L"nowhere", fog);
  m_pGraphics3D->SetFog(L"", fog);
  EXPECT_EQ(Frame().At(32, 32), RED_PIXEL);
  m_pGraphics3D->DestroyScene(L"city");
  ASSERT_EQ(m_pGraphics3D->CreateScene(L"city"), 1);
  auto const pMesh = MakeMesh({{-1.0F, -1.0F, 0.0F}, {1.0F, -1.0F, 0.0F}, {1.0F, 1.0F, 0.0F}, {-1.0F, 1.0F, 0.0F}});
  AddRange<unsigned short>(*pMesh, {0, 1, 2, 0, 2, 3}, GREEN);
  Draw(*pMesh, L"city");
  QXRenderTarget* const pTarget = MakeTarget(L"other");
  AddViewport(*pTarget, *MakeCamera(L"eye", L"city"), 0, 0.0, 0.0, 1.0, 1.0);
  EXPECT_EQ(Frame(pTarget).At(32, 32), GREEN_PIXEL) << "a new scene of the name has none";
}

TEST_F(QXOgreFog, ItIsNeitherLitNorSelected) {
  QXFog const fog = Fog(FOG_LINEAR, 0.0, 20.0, 1.0);
  SetFog(fog);
  QXRenderOperation3D* const pSquare = DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, 0.0F, QXColorValue3D::White);
  m_pTarget->SetSunLightEnable(1);
  m_pTarget->SetAmbientLight(QXColorValue3D(0.5, 0.25, 0.0, 1.0));
  m_pTarget->SetDiffuseLight(QXColorValue3D(0.0, 0.0, 0.0, 1.0));
  ExpectFogged(Frame().At(32, 32), QXColorValue3D(0.5, 0.25, 0.0, 1.0), 0.5, "lit");
  m_pTarget->SetAmbientLight(QXColorValue3D(9.0, 9.0, 9.0, 1.0));
  ExpectFogged(Frame().At(32, 32), QXColorValue3D::White, 0.5, "what is brighter than white is white behind fog");
  m_pTarget->SetSunLightEnable(0);
  m_pGraphics3D->SetSelectionColor(QXColorValue3D(1.0, 0.0, 0.0, 1.0));
  pSquare->SetSelectionID(7);
  QdcArray<unsigned int> arrIDs;
  arrIDs.Add(7);
  m_pGraphics3D->SetSelectedObjects(arrIDs);
  ExpectFogged(Frame().At(32, 32), RED, 0.5, "selected");
}

TEST_F(QXOgreFog, WhatTakesNoLightTakesFog) {
  QXFog const fog = Fog(FOG_LINEAR, 0.0, 20.0, 1.0);
  SetFog(fog);
  auto const pMesh = MakeMesh({{-1.0F, 0.5F, 0.0F}, {1.0F, 0.5F, 0.0F}});
  auto* const pRange = AddRange<unsigned short>(*pMesh, {0, 1}, GREEN);
  pRange->m_eOperationType = QX_OPERATION_LINE_LIST;
  Draw(*pMesh);
  std::unique_ptr<QXBillboard> const pBillboard(m_pGraphics3D->GetRenderOperationManager()->CreateBillboard(L"3D"));
  pBillboard->SetPosition({0.0, -0.5, 5.0});
  pBillboard->SetSize(8.0, 8.0, 1);
  pBillboard->SetColor(RED);
  QXPicture const picture = Frame();
  ExpectFogged(picture.At(32, 44), RED, 0.75, "billboard");
  QXPixel line = picture.At(32, 15);
  if (line == BACKGROUND_PIXEL) line = picture.At(32, 16);
  ExpectFogged(line, GREEN, 0.5, "line");
}

TEST_F(QXOgreFog, PassesAndWideLinesTakeFog) {
  LookInPerspective();
  QXFog const fog = Fog(FOG_LINEAR, 0.0, 20.0, 1.0);
  SetFog(fog);
  QXStaticGeometryBucket faces;
  SetPositions(*faces.m_pVertexPackage, Corners(-10, -10, 10, 0));
  faces.m_mapLevelIndices[0] = {NewIndices(Rectangles(0, 0), L"pass")};
  AddPass(faces.m_mapPasses, L"pass")->m_clrDiffuse = RED;
  Show(faces);
  ExpectFogged(Frame().At(10, 50), RED, VisibleAt(fog, DistanceOf(10.0, 10, 50)), "pass");
  // From the middle of the picture, far away, to behind the eye.
  QXStaticGeometryBucket line;
  float const arrPoints[2][3] = {{0.0F, 5.0F, -90.0F}, {0.0F, 5.0F, 30.0F}};
  std::vector<float> arrCorners;
  std::vector<float> arrBefore;
  std::vector<float> arrAfter;
  for (int i = 0; i < 2; ++i) {
    for (float const fSide : {-1.0F, 1.0F}) {
      for (int k = 0; k < 3; ++k) {
        arrCorners.push_back(arrPoints[i][k]);
        arrBefore.push_back(arrPoints[0][k]);
        arrAfter.push_back(arrPoints[1][k]);
      }
      arrCorners.push_back(fSide);
    }
  }
  SetPositions(*line.m_pVertexPackage, arrCorners, 4);
  SetNormals(*line.m_pVertexPackage, arrBefore);
  SetTexCoords(*line.m_pVertexPackage, 0, arrAfter, 3);
  line.m_mapLevelIndices[0] = {NewIndices(std::vector<unsigned short>{0, 1, 2, 1, 3, 2}, L"PolyLine")};
  QXPass* const pPass = AddPass(line.m_mapPasses, L"PolyLine");
  pPass->m_clrDiffuse = GREEN;
  pPass->m_dLineWidth = 5.0;
  Show(line);
  // In the row y the line, five units above the axis, is at the depth 5 / slope.
  QXPicture const picture = Frame();
  for (unsigned int const y : {2U, 8U, 16U, 20U}) {
    double const dSlope = 1.0 - (y + 0.5) / 32.0;
    double const dDepth = 5.0 / dSlope;
    QXPixel const pixel = picture.At(32, y);
    double const dVisible = VisibleAt(fog, std::hypot(5.0, dDepth));
    EXPECT_NEAR(pixel.g, 255.0 * (0.4 + 0.6 * dVisible), 4.0) << y;
    EXPECT_NEAR(pixel.r, 255.0 * 0.2 * (1.0 - dVisible), 4.0) << y;
  }
}

TEST_F(QXOgreFog, WhatIsBlendedKeepsItsAlpha) {
  SetFog(Fog(FOG_EXPONENTIAL, 0.0, 1.0, 1.0e9));
  DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, 0.0F, QXColorValue3D(1.0, 0.0, 0.0, 0.5));
  QXPixel const pixel = Frame().At(32, 32);
  EXPECT_NEAR(pixel.r, 26, 1);
  EXPECT_NEAR(pixel.g, 51, 1);
  EXPECT_NEAR(pixel.b, 102, 1);
  EXPECT_EQ(pixel.a, 255);
}

TEST_F(QXOgreFog, WhatAddsItselfOrMultipliesVanishesInFog) {
  SetFog(Fog(FOG_EXPONENTIAL, 0.0, 1.0, 1.0e9));
  QXStaticGeometryBucket bucket;
  SetPositions(*bucket.m_pVertexPackage, Corners(-1, -1, 1, 1));
  bucket.m_mapLevelIndices[0] = {NewIndices(Rectangles(0, 0), L"pass")};
  QXPass* const pPass = AddPass(bucket.m_mapPasses, L"pass");
  pPass->m_clrDiffuse = RED;
  int const arrFactors[][2] = {{BLEND_ONE, BLEND_ONE}, {BLEND_SOURCE_ALPHA, BLEND_ONE}, {BLEND_DEST_COLOUR, BLEND_ZERO},
      {BLEND_ZERO, BLEND_SOURCE_COLOUR}};
  for (auto const& [nSource, nDest] : arrFactors) {
    pPass->m_eSourceFactor = static_cast<decltype(pPass->m_eSourceFactor)>(nSource);
    pPass->m_eDestFactor = static_cast<decltype(pPass->m_eDestFactor)>(nDest);
    QXRenderOperation3D* const pOperation = Show(bucket);
    QXPixel const pixel = Frame().At(32, 32);
    EXPECT_EQ(pixel.r, BACKGROUND_PIXEL.r) << nSource << ", " << nDest;
    EXPECT_EQ(pixel.g, BACKGROUND_PIXEL.g) << nSource << ", " << nDest;
    EXPECT_EQ(pixel.b, BACKGROUND_PIXEL.b) << nSource << ", " << nDest;
    pOperation->SetVisible(0);
  }
}

TEST_F(QXOgreFog, FarFromTheOriginItIsTheSame) {
  LookInPerspective();
  DrawStripe(20.0, 8);
  QXRenderOperation3D* const pStripe = m_arrOperations.back();
  QXFog const fog = Fog(FOG_EXPONENTIAL, 0.0, 1.0, 0.04);
  SetFog(fog);
  QXPixel const here = Frame().At(10, 20);
  ExpectFogged(here, QXColorValue3D::White, VisibleAt(fog, DistanceOf(20.0, 10, 20)), "here");
  QXVector3d const vecFar(6.0e6, 6.0e6, -6.0e6);
  QXMatrix4d mat;
  mat.SetTrans(vecFar);
  pStripe->SetModelMatrix(mat);
  m_pCamera->SetPosition(vecFar.x, vecFar.y, vecFar.z + 10.0);
  for (QXVector3d const& vecOrigin : {QXVector3d(), vecFar}) {
    m_pGraphics3D->SetRelativeOrigin(vecOrigin);
    EXPECT_EQ(Frame().At(10, 20), here) << vecOrigin.x;
  }
}

TEST_F(QXOgreFog, NumbersThatAreNoneAreNoFog) {
  LookInPerspective();
  DrawStripe(20.0, 8, RED);
  for (double const d : {NO_NUMBER, INFINITE, -INFINITE}) {
    for (QXFog const& fog : {Fog(FOG_EXPONENTIAL, 0.0, 1.0, d), Fog(FOG_EXPONENTIAL_SQUARED, 0.0, 1.0, d),
             Fog(FOG_LINEAR, d, 1.0, 1.0), Fog(FOG_LINEAR, 0.0, d, 1.0)}) {
      SetFog(fog);
      EXPECT_EQ(Frame().At(10, 20), RED_PIXEL) << "mode " << fog.GetFogMode() << ", " << d;
    }
    QXFog fog = Fog(FOG_EXPONENTIAL, 0.0, 1.0, 1.0e9);
    fog.SetFogColor(QXColorValue3D(d, 0.4, 7.0, d));
    SetFog(fog);
    EXPECT_EQ(Frame().At(10, 20), (QXPixel{0, 102, 255, 255})) << d;
  }
  for (double const d : {1.0e300, -1.0e300, 1.0e30, 3.0e38, 1.0e-300}) {
    for (QXFog const& fog : {Fog(FOG_EXPONENTIAL, 0.0, 1.0, d), Fog(FOG_EXPONENTIAL_SQUARED, 0.0, 1.0, d),
             Fog(FOG_LINEAR, d, 1.0, 1.0), Fog(FOG_LINEAR, 0.0, d, 1.0)}) {
      SetFog(fog);
      ExpectFogged(Frame().At(10, 20), RED, VisibleAt(fog, DistanceOf(20.0, 10, 20)),
          "mode " + std::to_string(fog.GetFogMode()) + ", " + std::to_string(d));
    }
  }
}

// --- Labels ---

using QXOgreFogOnLabels = QXOgreLabeling;

TEST_F(QXOgreFogOnLabels, LabelsAndTextsStayLegible) {
  QXFontsOfLabels const fonts;
  QXRenderOperation3D* const pLabel =
      DrawLabel(LayOut(BoxText(4), MakeStyle(L"Boxes", 15.0)), {0.0, 0.0, 0.0}, 0xFF0000FF);
  EXPECT_EQ(Frame().At(35, 25), RED_PIXEL);
  // At the eye this one is thickest.
  for (QXFog const& fog : {Fog(FOG_EXPONENTIAL, 0.0, 1.0, 1.0e9), Fog(FOG_LINEAR, 9.0, 2.0, 1.0)}) {
    m_pGraphics3D->SetFog(L"3D", fog);
    EXPECT_EQ(Frame().At(35, 25), RED_PIXEL) << fog.GetFogMode();
  }
  pLabel->SetVisible(0);
  EXPECT_EQ(Frame().At(35, 25), BACKGROUND_PIXEL);
}

}  // namespace QXC
