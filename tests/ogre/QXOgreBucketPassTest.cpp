// What the fields of passes do.
#include <cmath>

#include <QxGraphics3D/frame/foundation/base/QdcColor.h>

#include <tests/ogre/QXOgreBucketing.h>

namespace QXC {

namespace {

/// One rectangle over the whole picture with one pass, under a sun that the tests switch on.
class QXOgreBucketPass : public QXOgreBucketing {
protected:
  void SetUp() override {
    QXOgreBucketing::SetUp();
    SetPositions(*m_Bucket.m_pVertexPackage, Corners(-1, -1, 1, 1));
    m_pPass = AddPass(m_Bucket.m_mapPasses, L"a");
    m_Bucket.m_mapLevelIndices[0] = {NewIndices(Rectangles(0, 0), L"a")};
    m_pTarget->SetAmbientLight(QXColorValue3D(0.2, 0.2, 0.2, 1.0));
    m_pTarget->SetDiffuseLight(QXColorValue3D(0.6, 0.6, 0.6, 1.0));
    m_pTarget->SetSunPosition({0.0, 0.0, 1000.0});
  }
  /// The middle of the picture with the pass as it is now.
  QXPixel Shown() {
    if (m_pShown) m_pShown->SetVisible(0);
    m_pShown = Show(m_Bucket);
    return PixelAt(32, 32);
  }

  QXStaticGeometryBucket m_Bucket;
  QXPass* m_pPass = nullptr;
  QXRenderOperation3D* m_pShown = nullptr;
};

}  // namespace

TEST_F(QXOgreBucketPass, ColoursOfVertexPassRangeAndDrawableMultiply) {
  SetColors(*m_Bucket.m_pVertexPackage, std::vector<unsigned int>(4, QDCRGBA(128, 255, 255, 255)));
  m_pPass->m_clrDiffuse = QXColorValue3D(1.0, 0.5, 1.0, 1.0);
  Shown();
  m_pShown->SetColor(QXColorValue3D(1.0, 1.0, 0.5, 1.0));
  m_pShown->SetIndexRangeColor(0, QXColorValue3D(0.5, 1.0, 1.0, 1.0));
  QXPixel const pixel = PixelAt(32, 32);
  EXPECT_NEAR(pixel.r, 64, 1);
  EXPECT_NEAR(pixel.g, 128, 1);
  EXPECT_NEAR(pixel.b, 128, 1);
}

TEST_F(QXOgreBucketPass, TheSunShinesOnItAndThePassMaySayNo) {
  m_pTarget->SetSunLightEnable(1);
  EXPECT_NEAR(Shown().r, 0.8 * 255, 1);
  m_pShown->SetLightEnable(0);
  EXPECT_EQ(PixelAt(32, 32).r, 255);
  m_pPass->m_bLighting = 0;
  EXPECT_EQ(Shown().r, 255);
}

TEST_F(QXOgreBucketPass, VertexNormalsLightIt) {
  m_pTarget->SetSunLightEnable(1);
  SetNormals(*m_Bucket.m_pVertexPackage, {1, 0, 1, 1, 0, 1, 1, 0, 1, 1, 0, 1});
  EXPECT_NEAR(Shown().r, (0.2 + 0.6 * std::sqrt(0.5)) * 255, 1);
}

TEST_F(QXOgreBucketPass, AmbientAndEmissiveColoursAndTheHighlightJoinTheLight) {
  m_pTarget->SetSunLightEnable(1);
  m_pPass->m_clrDiffuse = QXColorValue3D(0.5, 0.5, 0.5, 1.0);
  m_pPass->m_clrAmbient = QXColorValue3D(0.0, 1.0, 1.0, 1.0);
  m_pPass->m_clrEmissive = QXColorValue3D(0.0, 0.0, 0.25, 1.0);
  QXPixel const pixel = Shown();
  EXPECT_NEAR(pixel.r, 0.3 * 255, 1);
  EXPECT_NEAR(pixel.g, 0.4 * 255, 1);
  EXPECT_NEAR(pixel.b, 0.65 * 255, 1);
  // Straight above, the highlight is full, of the light that there is.
  m_pPass->m_clrSpecular = QXColorValue3D(0.5, 0.0, 0.0, 1.0);
  EXPECT_NEAR(Shown().r, 0.3 * 255, 1) << "an exponent of 0 is none";
  m_pPass->m_dShininess = 10.0;
  EXPECT_NEAR(Shown().r, 0.6 * 255, 2);
}

TEST_F(QXOgreBucketPass, AnAlphaBelowOneBlends) {
  m_pPass->m_clrDiffuse = QXColorValue3D(1.0, 0.0, 0.0, 0.5);
  QXPixel const pixel = Shown();
  EXPECT_NEAR(pixel.r, 128, 1);
  EXPECT_NEAR(pixel.b, 25, 1);
}

TEST_F(QXOgreBucketPass, TransparentVerticesBlendTheirRangeAlone) {
  SetPositions(*m_Bucket.m_pVertexPackage, Join({Corners(-1, -1, 0, 1), Corners(0, -1, 1, 1)}));
  SetColors(*m_Bucket.m_pVertexPackage,
      {RED_WORD, RED_WORD, RED_WORD, RED_WORD, 0x8000FF00, 0x8000FF00, 0x8000FF00, 0x8000FF00});
  m_Bucket.m_mapLevelIndices[0].push_back(NewIndices(Rectangles(1, 1), L"a"));
  // What is blended writes no depth: what is drawn after it at the same place shows that.
  Shown();
  QXRenderOperation3D* const pBehind = DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, -1.0F, QXColorValue3D(0.0, 0.0, 1.0, 0.5));
  pBehind->SetRenderPriority(1);
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(16, 32), RED_PIXEL);
  EXPECT_NEAR(picture.At(48, 32).g, 64, 2);
}

TEST_F(QXOgreBucketPass, BlendFactorsAreTaken) {
  m_pPass->m_clrDiffuse = QXColorValue3D(0.25, 0.0, 0.25, 1.0);
  m_pPass->m_eSourceFactor = BLEND_ONE;
  m_pPass->m_eDestFactor = BLEND_ONE;
  DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, -1.0F, QXColorValue3D(0.5, 0.5, 0.0, 1.0));
  QXPixel const sum = Shown();
  EXPECT_NEAR(sum.r, 191, 2);
  EXPECT_NEAR(sum.g, 128, 1);
  EXPECT_NEAR(sum.b, 64, 1);
  m_pPass->m_eSourceFactor = BLEND_DEST_COLOUR;
  m_pPass->m_eDestFactor = BLEND_ZERO;
  QXPixel const product = Shown();
  EXPECT_NEAR(product.r, 32, 1);
  EXPECT_EQ(product.g, 0);
  EXPECT_EQ(product.b, 0);
  m_pPass->m_eSourceFactor = BLEND_ZERO;
  m_pPass->m_eDestFactor = BLEND_ONE_MINUS_SOURCE_COLOUR;
  EXPECT_NEAR(Shown().r, 96, 1);
  m_pPass->m_eSourceFactor = 99;
  m_pPass->m_eDestFactor = -1;
  EXPECT_EQ(Shown().r, 64) << "factors that mean nothing are the usual ones";
}

TEST_F(QXOgreBucketPass, CullingLeavesOneSideOut) {
  m_pPass->m_clrDiffuse = RED;
  m_pPass->m_eCulling = CULLING_CLOCKWISE;
  EXPECT_EQ(Shown(), RED_PIXEL);
  m_pPass->m_eCulling = CULLING_ANTICLOCKWISE;
  EXPECT_EQ(Shown(), BACKGROUND_PIXEL);
  m_pShown->SetCullingMode(CULLING_CLOCKWISE);
  EXPECT_EQ(PixelAt(32, 32), RED_PIXEL) << "the drawable's word counts";
  m_pPass->m_eCulling = static_cast<CullingMode>(77);
  EXPECT_EQ(Shown(), RED_PIXEL);
}

TEST_F(QXOgreBucketPass, DepthIsComparedAndWrittenAsThePassSays) {
  m_pPass->m_clrDiffuse = RED;
  QXRenderOperation3D* const pGreen = DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, 1.0F, GREEN);
  pGreen->SetRenderPriority(-1);
  EXPECT_EQ(Shown(), GREEN_PIXEL);
  m_pPass->m_bDepthCheck = 0;
  EXPECT_EQ(Shown(), RED_PIXEL);
  m_pPass->m_bDepthCheck = 1;
  m_pPass->m_eDepthFunction = COMPARE_GREATER;
  EXPECT_EQ(Shown(), RED_PIXEL);
  m_pPass->m_eDepthFunction = COMPARE_NEVER;
  EXPECT_EQ(Shown(), GREEN_PIXEL);
  m_pPass->m_eDepthFunction = 1000;
  EXPECT_EQ(Shown(), GREEN_PIXEL);
  pGreen->SetVisible(0);
  EXPECT_EQ(Shown(), RED_PIXEL);
  m_pPass->m_bDepthWrite = 0;
  DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, -1.0F, GREEN)->SetRenderPriority(1);
  EXPECT_EQ(Shown(), GREEN_PIXEL);
}

TEST_F(QXOgreBucketPass, PixelsWhoseAlphaFailsAreDropped) {
  m_pPass->m_clrDiffuse = QXColorValue3D(1.0, 0.0, 0.0, 100.0 / 255.0);
  struct Case {
    int m_eFunction;
    unsigned char m_nReference;
    bool m_bDrawn;
  };
  for (Case const& entry : {Case{COMPARE_ALWAYS, 255, true}, Case{COMPARE_NEVER, 0, false},
           Case{COMPARE_LESS, 101, true}, Case{COMPARE_LESS, 99, false}, Case{COMPARE_LESS_EQUAL, 101, true},
           Case{COMPARE_LESS_EQUAL, 99, false}, Case{COMPARE_EQUAL, 100, true}, Case{COMPARE_EQUAL, 101, false},
           Case{COMPARE_NOT_EQUAL, 101, true}, Case{COMPARE_NOT_EQUAL, 100, false},
           Case{COMPARE_GREATER_EQUAL, 99, true}, Case{COMPARE_GREATER_EQUAL, 101, false},
           Case{COMPARE_GREATER, 99, true}, Case{COMPARE_GREATER, 101, false}, Case{-5, 255, true}}) {
    m_pPass->m_eAlphaFunction = entry.m_eFunction;
    m_pPass->m_nAlphaReference = entry.m_nReference;
    EXPECT_EQ(Shown() != BACKGROUND_PIXEL, entry.m_bDrawn) << entry.m_eFunction << " " << int{entry.m_nReference};
  }
}

TEST_F(QXOgreBucketPass, StatesOfTheDrawableStandBesideThoseOfThePass) {
  m_pPass->m_clrDiffuse = RED;
  QXRenderOperation3D* const pGreen = DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, 1.0F, GREEN);
  pGreen->SetRenderPriority(-1);
  Shown();
  m_pShown->SetDepthTest(0);
  EXPECT_EQ(PixelAt(32, 32), RED_PIXEL);
  pGreen->SetVisible(0);
  m_pShown->SetWireframe(1);
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(16, 50), BACKGROUND_PIXEL);
  m_pShown->SetWireframe(0);
  m_pShown->SetOpacity(0.5);
  EXPECT_NEAR(PixelAt(32, 32).r, 128, 1);
}

TEST_F(QXOgreBucketPass, PointsHaveTheSizeOfThePass) {
  m_pPass->m_clrDiffuse = RED;
  m_pPass->m_dPointSize = 6.0;
  SetPositions(*m_Bucket.m_pVertexPackage, {0, 0, 0});
  QXIndexPackage* const pPoint = NewIndices(std::vector<unsigned short>{0}, L"a");
  pPoint->m_eOperationType = QX_OPERATION_POINT_LIST;
  delete m_Bucket.m_mapLevelIndices[0][0];
  m_Bucket.m_mapLevelIndices[0][0] = pPoint;
  Shown();
  QXPicture const picture = Frame();
  int nCount = 0;
  for (unsigned int x = 0; x < SIZE; ++x) nCount += picture.At(x, 32) == RED_PIXEL ? 1 : 0;
  EXPECT_EQ(nCount, 6);
}

TEST_F(QXOgreBucketPass, BlendedPassesComeByTheDepthOfTheirVerticesNotOfTheBucket) {
  // The zero of the bucket is far away from both panes, and the nearer one comes first in every other order.
  SetPositions(*m_Bucket.m_pVertexPackage, Join({Corners(-1, -1, 1, 1, 3.0F), Corners(-1, -1, 1, 1, 1.0F)}));
  m_pPass->m_clrDiffuse = QXColorValue3D(1.0, 0.0, 0.0, 0.5);
  AddPass(m_Bucket.m_mapPasses, L"b")->m_clrDiffuse = QXColorValue3D(0.0, 1.0, 0.0, 0.5);
  m_Bucket.m_mapLevelIndices[0].push_back(NewIndices(Rectangles(1, 1), L"b"));
  QXPixel const near = Shown();
  EXPECT_NEAR(near.r, 128, 1) << "in front";
  EXPECT_NEAR(near.g, 64, 1);
  m_Bucket.m_mapLevelIndices[0] = {m_Bucket.m_mapLevelIndices[0][1], m_Bucket.m_mapLevelIndices[0][0]};
  QXPixel const swapped = Shown();
  EXPECT_NEAR(swapped.r, 128, 1);
  EXPECT_NEAR(swapped.g, 64, 1);
  // And among other drawables.
  QXMatrix4d matBetween;
  matBetween.SetTrans({0.0, 0.0, 2.0});
  DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, 0.0F, QXColorValue3D(0.0, 0.0, 1.0, 0.5))->SetModelMatrix(matBetween);
  QXPixel const between = PixelAt(32, 32);
  EXPECT_NEAR(between.r, 128, 1);
  EXPECT_NEAR(between.b, 70, 2) << "with what is left of the background";
  EXPECT_NEAR(between.g, 32, 2);
}

}  // namespace QXC
