// What the renderer's base gives where a plug-in overrides nothing.
#include <cstring>
#include <map>
#include <set>

#include <gtest/gtest.h>

#include <QxGraphics3D/renderop/QXRenderOperation.h>

#include "QXTestGraphics3D.h"

namespace QXC {
namespace {

TEST(QXGraphics3DDefaults, QuestionsAnswerNo) {
  QXTestGraphics3D graphics;
  EXPECT_EQ(graphics.HasRenderableObjects(L"scene"), 0);
  EXPECT_EQ(graphics.IsCompositorEnable(L"bloom"), 0);
  EXPECT_EQ(graphics.IsActiveStereoSupported(), 0);
  EXPECT_EQ(graphics.IsRenderSystemSupported(L"any"), 0);
  EXPECT_EQ(graphics.IsSkyDomeVisible(), 0);
  EXPECT_EQ(graphics.DeleteDisplayList(1), 0);
  EXPECT_EQ(graphics.setDrawBuffer(1), 0);
  EXPECT_EQ(graphics.setReadBuffer(1), 0);
}

TEST(QXGraphics3DDefaults, SceneNodesAreAcceptedSilently) {
  QXTestGraphics3D graphics;
  EXPECT_EQ(graphics.CreateSceneNode(L"scene", L"", L"node"), 1);
  EXPECT_EQ(graphics.DestroySceneNode(L"scene", L"node"), 1);
  graphics.DestroySceneNode(QdcUnicodeString(L"node"));
  graphics.SetSceneNodeVisible(L"scene", L"node", 1, 1);
  graphics.SetSceneNodeVisible(L"node", 1);
}

TEST(QXGraphics3DDefaults, NumbersAndPointersAreZero) {
  QXTestGraphics3D graphics;
  QXRenderOperation operation;
  EXPECT_EQ(static_cast<int>(graphics.GetType()), 0);
  EXPECT_EQ(graphics.ToDisplayList(operation), 0u);
  EXPECT_EQ(graphics.CreateUniformBuffer(L"block"), nullptr);
  EXPECT_EQ(graphics.GetUniformBuffer(L"block"), nullptr);
  EXPECT_EQ(graphics.GetCamera4QX(), nullptr);
  EXPECT_EQ(graphics.GetDepthBuffer(), nullptr);
  EXPECT_EQ(graphics.CreateOverlay(L"overlay"), nullptr);
}

TEST(QXGraphics3DDefaults, NamesAreEmpty) {
  QXTestGraphics3D graphics;
  EXPECT_TRUE(graphics.CreateSceneNode().IsEmpty());
  EXPECT_TRUE(graphics.GetSceneName(0).IsEmpty());
  EXPECT_TRUE(graphics.GetGlobalTextureName(0).IsEmpty());
  EXPECT_TRUE(graphics.UpdateManualRenderObject(nullptr, L"scene").IsEmpty());
}

TEST(QXGraphics3DDefaults, FixedValuesAreThoseOfAnEmptyScreen) {
  QXTestGraphics3D graphics;
  EXPECT_TRUE(graphics.GetPixelPosition(nullptr, 3, 4) == QXVector3d(0.0, 0.0, 0.0));
  EXPECT_TRUE(graphics.ScreenToCartesian(3, 4) == QXVector3d(0.0, 0.0, 0.0));
  QXColorValue3D const color = graphics.ScreenToColor(3, 4);
  EXPECT_EQ(color.r, 1.0);
  EXPECT_EQ(color.g, 1.0);
  EXPECT_EQ(color.b, 1.0);
  EXPECT_EQ(color.a, 1.0);
  EXPECT_TRUE(graphics.GetGameViewProjMatrix() == QXMatrix4d::IDENTITY);
}

TEST(QXGraphics3DDefaults, SelectionFindsNothing) {
  QXTestGraphics3D graphics;
  QdcArray<QXGeometry*> arrGeometries;
  std::set<int> setLayerIDs = {1};
  std::map<int, QdcRect2D> const mapBounds;
  int nLayerID = 7;
  int nObjectID = 8;
  EXPECT_TRUE(graphics.GetSelInfo(1.0f, 2.0f, nLayerID, nObjectID, arrGeometries, setLayerIDs, 1, &mapBounds) ==
              QXVector3d::ZERO);
  EXPECT_EQ(nLayerID, 0);
  EXPECT_EQ(nObjectID, 0);
  EXPECT_EQ(arrGeometries.GetSize(), 0u);
  nLayerID = 7;
  nObjectID = 8;
  EXPECT_TRUE(graphics.GetSelInfo(1.0f, 2.0f, nLayerID, nObjectID, 1) == QXVector3d::ZERO);
  EXPECT_EQ(nLayerID, 0);
  EXPECT_EQ(nObjectID, 0);
}

TEST(QXGraphics3DDefaults, EmptyOperationsLeaveTheirOutputsAlone) {
  QXTestGraphics3D graphics;
  QXMatrix4d matrix;
  matrix[0][0] = 42.0;
  QXMatrix4d const before = matrix;
  graphics.MakeOrthoMatrix(0.0, 1.0, 0.0, 1.0, 0.0, 1.0, matrix);
  EXPECT_TRUE(matrix == before);
  unsigned int nColor = 0x12345678u;
  graphics.ConvertColourValue(QXColorValue3D(1.0, 1.0, 1.0, 1.0), &nColor);
  EXPECT_EQ(nColor, 0x12345678u);
}

/// The members that an empty operation could have changed, as far as they compare.
struct Snapshot {
  explicit Snapshot(QXGraphics3D const& graphics)
      : m_arrPointers{graphics.m_pActiveRenderTarget, graphics.m_pReflectRenderTarget,
            graphics.m_pSelectionRenderTarget, graphics.m_pVertexSelectionRenderTarget, graphics.m_pMultiRenderTarget,
            graphics.m_pTextureManager, graphics.m_pViewport, graphics.m_pModelManager, graphics.m_pHwInstancingManager,
            graphics.m_pRenderOperationManager, graphics.m_pResourceHolder},
        m_arrNumbers{graphics.m_nVertexCount, graphics.m_nFaceCount, graphics.m_nRenderBufferTarget,
            static_cast<unsigned int>(graphics.m_eHMDMode), graphics.m_bInvertVertexWinding,
            static_cast<unsigned int>(graphics.m_eCullingMode), graphics.m_bResetQXCameraForVR,
            static_cast<unsigned int>(graphics.m_nWorldMatrixCount)},
        m_matWorld(graphics.m_matWorld), m_matView(graphics.m_matView), m_matProjection(graphics.m_matProjection),
        m_matPalette(graphics.m_arrWorldMatrices[0]) {}
  bool operator==(Snapshot const&) const = default;

  std::vector<void const*> m_arrPointers;
  std::vector<unsigned int> m_arrNumbers;
  QXMatrix4d m_matWorld;
  QXMatrix4d m_matView;
  QXMatrix4d m_matProjection;
  QXMatrix4d m_matPalette;
};

TEST(QXGraphics3DDefaults, EmptyOperationsChangeNothingInTheRenderer) {
  QXTestGraphics3D graphics;
  Snapshot const before(graphics);
  graphics.RemoveManualRenderObject(L"object", L"scene");
  graphics.SetManualRenderObjectVisible(L"object", 1);
  graphics.SetLightPos(L"light", QXVector3d::UNIT_X);
  graphics.UpdateLightPos();
  graphics.SetMaterialEnabled(1);
  graphics.SetColourBufferLock(1);
  graphics.MakePickRadial(1.0, 2.0, 3.0, 4.0);
  graphics.UnMakePickRadial();
  graphics.SetClipPlane(0, QXPlane(QXVector3d::UNIT_Z, 1.0));
  graphics.DisableTextureUnit(0);
  graphics.SetTextureUnitFiltering(0, 1, 2, 3);
  graphics.SetOpacity(0.5);
  graphics.EnableBlendAlpha(1);
  graphics.EnableBlendAlphaUseDepth(1);
  graphics.DeleteList(1);
  graphics.CallList(1);
  graphics.SetRelativeOrigin(QXVector3d::UNIT_X);
  graphics.TextOut2DText(L"text", 1.0, 2.0, 0xFFFFFFFFu);
  graphics.SetStippleLine(1, 2, 0xAAAA);
  graphics.TextOut3DText(L"text", 1.0, 2.0, 3.0, 0xFFFFFFFFu);
  graphics.SetRenderFont(L"face", 12.0);
  double arrPoint[3] = {1.0, 2.0, 3.0};
  float arrColor[4] = {1.0f, 1.0f, 1.0f, 1.0f};
  graphics.RenderSpritePoint(arrPoint, 1, 1, arrColor, 8);
  graphics.RenderSpritePoint(1.0, 2.0, 3.0, 1, arrColor);
  graphics.RenderSimplePoint(arrPoint, 1, 1, 8);
  graphics.RenderSimplePoint(1.0, 2.0, 3.0, 1);
  graphics.SetPointSmoothEnable(1);
  graphics.SetPolygonSmoothEnable(1);
  graphics.DrawEditModelTool(QXVector3d::ZERO, 1.0, 2);
  graphics.DrawEditOverlayTool(QdcRect2D(), 2);
  graphics.DrawEditOverlayToolEx(QdcRect2D(), 1.0, 2);
  graphics.SetNormalizeEnable(1);
  graphics.InitTargetEnvi(nullptr);
  graphics.PrintFrame();
  unsigned char nDepth = 0;
  graphics.SetDepthBuffer(&nDepth);
  graphics.UpdateScreenTexSize(640, 480);
  graphics.RenderToScreen(nullptr);
  graphics.RenderToTexture(1.0, 2.0, nullptr);
  graphics.RenderTexts();
  graphics.RenderDisplayList(1);
  graphics.PushMatrix();
  graphics.MultiMatrix(QXMatrix4d::IDENTITY);
  graphics.PopMatrix();
  graphics.RenderImage(L"image.png", QdcRect2D());
  graphics.SetOverlayVisible(L"overlay", 1);
  graphics.RemappingTexture(L"source", L"dest");
  graphics.SetHMDMode(HMD_HTC);
  graphics.ProcessHTCVREvent();
  graphics.SetOgreOriCameraView(QXMatrix4d::IDENTITY);
  graphics.SetHTCMoveSpeed(1.0);
  graphics.SetUnderGlobalDepth(1.0);
  graphics.SetCompositorEnable(L"bloom", 1);
  graphics.ReleaseVR();
  graphics.SetSkyDome(L"scene", L"sky", 1);
  graphics.RemovePass(L"node", L"pass");
  graphics.RemoveAllPasses(L"node");
  graphics.SetSceneNodeVisibleDistance(L"node", 1.0, 2.0);
  graphics.SetSceneNodeFiltratePixSize(L"node", 1.0);
  graphics.SetSceneType(SCENE_GLOBE);
  graphics.DestroyUniformBuffer(L"block");
  EXPECT_TRUE(Snapshot(graphics) == before);
  EXPECT_TRUE(graphics.m_arrWorldMatricesSet.empty());
  EXPECT_EQ(graphics.GetDepthBuffer(), nullptr);
}

}  // namespace
}  // namespace QXC
