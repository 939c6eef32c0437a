#include <memory>

#include <gtest/gtest.h>

#include <QxGraphics3D/frame/QXRenderTarget.h>
#include <QxGraphics3D/frame/QXViewport.h>
#include <QxGraphics3D/renderop/QXRenderOperationManager.h>
#include <QxGraphics3D/testing/QXRecordingGraphics3D.h>
#include <QxGraphics3D/view/QXCamera.h>
#include <QxGraphics3D/view/QXFog.h>

#include "QXTestGeometry.h"

namespace QXC {
namespace {

void RunAFrame(QXRecordingGraphics3D& graphics) {
  graphics.Initialize(L"media");
  QXRenderTarget* const pTarget = graphics.CreateRenderWindow(L"main", nullptr, 4, 4, 0);
  graphics.AttachRenderTarget(pTarget);
  QXCamera* const pCamera = graphics.CreateCamera(L"eye", L"Scene3D");
  pCamera->SetPosition(0.0, 0.0, 10.0);
  pCamera->SetProjectionMatrix(QXMatrix4d::IDENTITY);
  pTarget->AddViewport(pCamera, 0, 0.0, 0.0, 1.0, 1.0);
  std::unique_ptr<QXRenderOperation3D> const pDrawable(
      graphics.GetRenderOperationManager()->CreateRenderOperation3D(L"Scene3D", 1));
  PlaceSquare(*pDrawable, 0.0, 0.0, 9.5);
  graphics.UpdateAllRenderTargets();
  graphics.SwapAllRenderTargetBuffers(0);
}

/// The life of a renderer with one frame and one drawable, as text.
std::string RecordAFrame() {
  std::shared_ptr<QXCallLog> pLog;
  {
    QXRecordingGraphics3D graphics;
    pLog = graphics.ShareLog();
    RunAFrame(graphics);
    graphics.ShutDown();
  }
  return pLog->GetText();
}

TEST(QXRecordingGraphics3D, WritesTheRoadOfAFrame) {
  char const* const szView = "[(1 0 0 0)(0 1 0 0)(0 0 1 0)(-0 -0 -10 1)]";
  char const* const szIdentity = "[(1 0 0 0)(0 1 0 0)(0 0 1 0)(0 0 0 1)]";
  std::string const strExpected = std::string() +
                                  "graphics: Initialize(\"media\")\n"
                                  "graphics: CreateRenderWindow(\"main\", no memory, 4, 4, 0)\n"
                                  "graphics: AttachRenderTarget(target \"main\")\n"
                                  "graphics: CreateCamera(\"eye\", \"Scene3D\")\n"
                                  "camera \"eye\": UpdateViewMatrix(viewport 0 of target \"main\")\n"
                                  "graphics: SetViewMatrix(" +
                                  szView +
                                  ")\n"
                                  "camera \"eye\": UpdateProMatrix()\n"
                                  "graphics: SetProjectionMatrix(" +
                                  szIdentity +
                                  ")\n"
                                  "manager: CreateRenderOperation3D(\"Scene3D\", 1)\n"
                                  "drawable 1: SetRenderOperationMultiIndex(4, 2, 2)\n"
                                  "drawable 1: SetModelMatrix([(1 0 0 0)(0 1 0 0)(0 0 1 0)(0 0 9.5 1)])\n"
                                  "graphics: UpdateAllRenderTargets()\n"
                                  "target \"main\": Update()\n"
                                  "target \"main\": BeginViewportUpdate()\n"
                                  "camera \"eye\": RenderScene(viewport 0 of target \"main\", 1)\n"
                                  "graphics: SetViewport(viewport 0 of target \"main\")\n"
                                  "graphics: BeginFrame()\n"
                                  "graphics: SetViewMatrix(" +
                                  szView +
                                  ")\n"
                                  "graphics: SetProjectionMatrix(" +
                                  szIdentity +
                                  ")\n"
                                  "camera \"eye\": draw(drawable 1)\n"
                                  "graphics: EndFrame()\n"
                                  "target \"main\": NotifyCameraStateChange(1)\n"
                                  "graphics: SwapAllRenderTargetBuffers(0)\n"
                                  "target \"main\": SwapBuffers(0)\n"
                                  "drawable 1: destroyed()\n"
                                  "graphics: ShutDown()\n"
                                  "graphics: SetViewport(no viewport)\n"
                                  "target \"main\": destroyed()\n"
                                  "camera \"eye\": destroyed()\n";
  EXPECT_EQ(RecordAFrame(), strExpected);
}

TEST(QXRecordingGraphics3D, TheSameProgramGivesTheSameRecord) {
  EXPECT_EQ(RecordAFrame(), RecordAFrame());
}

TEST(QXRecordingGraphics3D, WritesStateThatNothingElseShows) {
  QXRecordingGraphics3D graphics;
  QXFog fog;
  fog.SetFogMode(FOG_EXPONENTIAL);
  fog.SetFogColor(QXColorValue3D(0.5, 0.5, 0.5, 1.0));
  fog.SetFogDensity(0.25);
  fog.SetFogStart(1.0);
  fog.SetFogEnd(100.0);
  graphics.SetFog(L"city", fog);
  graphics.SetTextureMipmapBias(3, -0.5);
  graphics.SetTexture(2, 1, nullptr);
  graphics.RenderTexts();
  graphics.SubmitHMDFrame(nullptr, nullptr);
  graphics.RenderSimplePoint(1.0, 2.0, 3.0, 1);
  EXPECT_EQ(graphics.GetLog().GetText(), "graphics: SetFog(\"city\", fog 1 (0.5 0.5 0.5 1)(0.25 1 100))\n"
                                         "graphics: SetTextureMipmapBias(3, -0.5)\n"
                                         "graphics: SetTexture(2, 1, no memory)\n"
                                         "graphics: RenderTexts()\n"
                                         "graphics: SubmitHMDFrame(no target, no target)\n"
                                         "graphics: RenderSimplePoint(1, 2, 3, 1)\n");
}

TEST(QXRecordingGraphics3D, LibraryRulesShowInTheRecord) {
  QXRecordingGraphics3D graphics;
  QXMatrix4d const arrMatrices[2];
  graphics.SetWorldMatrices(arrMatrices, 2);
  QXGraphics3D::m_Capabilities.SetNumTextureUnits(4);
  graphics.DisableTextureUnitsFrom(2);
  EXPECT_EQ(graphics.GetLog().GetText(), "graphics: SetWorldMatrix([(1 0 0 0)(0 1 0 0)(0 0 1 0)(0 0 0 1)])\n"
                                         "graphics: DisableTextureUnit(2)\n"
                                         "graphics: DisableTextureUnit(3)\n");
}

TEST(QXRecordingGraphics3D, QuestionsLeaveNoTrace) {
  QXRecordingGraphics3D graphics;
  graphics.Initialize(L"");
  graphics.GetLog().Clear();
  graphics.GetName();
  graphics.GetErrorText();
  graphics.HasScene(L"Scene3D");
  graphics.ReadDepth(nullptr, 0, 0);
  graphics.GetSceneName(0);
  EXPECT_TRUE(graphics.GetLog().GetLines().empty());
}

}  // namespace
}  // namespace QXC
