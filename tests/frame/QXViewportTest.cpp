#include <algorithm>
#include <cstddef>
#include <cstring>
#include <functional>
#include <limits>
#include <new>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <QxGraphics3D/frame/QXViewport.h>
#include <QxGraphics3D/view/QXCamera.h>

#include "QXTestTarget.h"

namespace QXC {
namespace {

void ExpectColor(QXColorValue3D const& color, double dRed, double dGreen, double dBlue, double dAlpha) {
  EXPECT_EQ(color.r, dRed);
  EXPECT_EQ(color.g, dGreen);
  EXPECT_EQ(color.b, dBlue);
  EXPECT_EQ(color.a, dAlpha);
}

void ExpectSharedDefaults(QXViewport const& viewport) {
  EXPECT_EQ(viewport.m_nMinZ, 0);
  EXPECT_EQ(viewport.m_nMaxZ, 1);
  EXPECT_EQ(viewport.m_bClearEveryFrame, 1);
  EXPECT_EQ(viewport.m_nClearBuffers, 3u);
  EXPECT_EQ(viewport.m_bFlagA, 0);
  EXPECT_EQ(viewport.m_bRenderSceneFlag, 1);
  EXPECT_EQ(viewport.m_bFlagB, 1);
  EXPECT_EQ(viewport.m_bFlagC, 1);
  EXPECT_TRUE(viewport.m_strName.IsEmpty());
  EXPECT_EQ(viewport.m_pDepthBuffer, nullptr);
  EXPECT_EQ(viewport.m_bBufferCacheValid, 0);
}

TEST(QXViewport, DefaultConstructionLeavesAnUnfinishedWhiteViewport) {
  alignas(QXViewport) static unsigned char arrMemory[sizeof(QXViewport)];
  std::memset(arrMemory, 0xCD, sizeof arrMemory);  // whatever stood in the memory
  auto* const pViewport = new (arrMemory) QXViewport;
  QXViewport const& viewport = *pViewport;
  ExpectSharedDefaults(viewport);
  ExpectColor(viewport.m_BackgroundColor, 1.0, 1.0, 1.0, 1.0);
  EXPECT_EQ(viewport.GetCamera(), nullptr);
  EXPECT_EQ(viewport.GetTarget(), nullptr);
  EXPECT_EQ(viewport.m_dRelLeft, 0.0);
  EXPECT_EQ(viewport.m_dRelBottom, 0.0);
  EXPECT_EQ(viewport.m_dRelWidth, 0.0);
  EXPECT_EQ(viewport.m_dRelHeight, 0.0);
  EXPECT_EQ(viewport.m_nActLeft, 0);
  EXPECT_EQ(viewport.m_nActBottom, 0);
  EXPECT_EQ(viewport.m_nActWidth, 0);
  EXPECT_EQ(viewport.m_nActHeight, 0);
  EXPECT_EQ(viewport.m_nZOrder, 0);
  EXPECT_EQ(viewport.m_nOriZOrder, 0);
  pViewport->~QXViewport();
}

TEST(QXViewport, MembersStandInTheOrderThatPluginsWereCompiledAgainst) {
  QXViewport const viewport;
  std::vector<void const*> const arrMembers = {&viewport.m_pCamera, &viewport.m_pTarget, &viewport.m_dRelLeft,
      &viewport.m_dRelBottom, &viewport.m_dRelWidth, &viewport.m_dRelHeight, &viewport.m_nActLeft,
      &viewport.m_nActBottom, &viewport.m_nActWidth, &viewport.m_nActHeight, &viewport.m_nZOrder, &viewport.m_nMinZ,
      &viewport.m_nMaxZ, &viewport.m_BackgroundColor, &viewport.m_bClearEveryFrame, &viewport.m_nClearBuffers,
      &viewport.m_bFlagA, &viewport.m_bRenderSceneFlag, &viewport.m_bFlagB, &viewport.m_bFlagC, &viewport.m_strName,
      &viewport.m_pDepthBuffer, &viewport.m_bBufferCacheValid, &viewport.m_nOriZOrder};
  EXPECT_TRUE(std::is_sorted(arrMembers.begin(), arrMembers.end(), std::less<void const*>()));
}

TEST(QXViewport, FullConstructionStoresItsArgumentsOverABlackBackground) {
  QXTestLog log;
  QXTestTarget target(log);
  QXTestCamera camera(log);
  target.m_nWidth = 640;
  target.m_nHeight = 480;
  QXViewport const viewport(&camera, &target, 0.25, 0.5, 0.5, 0.5, 7);
  ExpectSharedDefaults(viewport);
  ExpectColor(viewport.m_BackgroundColor, 0.0, 0.0, 0.0, 1.0);
  EXPECT_EQ(viewport.GetCamera(), &camera);
  EXPECT_EQ(viewport.GetTarget(), &target);
  EXPECT_EQ(viewport.GetLeft(), 0.25);
  EXPECT_EQ(viewport.GetBottom(), 0.5);
  EXPECT_EQ(viewport.GetWidth(), 0.5);
  EXPECT_EQ(viewport.GetHeight(), 0.5);
  EXPECT_EQ(viewport.GetZOrder(), 7);
  EXPECT_EQ(viewport.GetOriZOrder(), 7);
  EXPECT_EQ(viewport.GetMinZ(), 0);
  EXPECT_EQ(viewport.GetMaxZ(), 1);
}

TEST(QXViewport, FullConstructionDerivesThePixelRectangle) {
  QXTestLog log;
  QXTestTarget target(log);
  QXTestCamera camera(log);
  target.m_nWidth = 640;
  target.m_nHeight = 480;
  QXViewport const viewport(&camera, &target, 0.25, 0.5, 0.5, 0.5, 0);
  EXPECT_EQ(viewport.GetActualLeft(), 160);
  EXPECT_EQ(viewport.GetActualBottom(), 240);
  EXPECT_EQ(viewport.GetActualWidth(), 320);
  EXPECT_EQ(viewport.GetActualHeight(), 240);
}

TEST(QXViewport, FullConstructionTellsTheCameraOnceThePixelRectangleStands) {
  QXTestLog log;
  QXTestTarget target(log);
  target.m_nWidth = 640;
  target.m_nHeight = 480;
  QXTestCamera camera(log);
  QXViewport const viewport(&camera, &target, 0.0, 0.0, 0.5, 1.0, 0);
  EXPECT_EQ(camera.GetViewport(), &viewport);
  EXPECT_EQ(log.m_arrLines, (std::vector<std::string>{"camera view 320x480", "camera projection"}));
}

TEST(QXViewport, ConstructionWithoutCameraOrTargetStoresTheRest) {
  QXViewport const viewport(nullptr, nullptr, 0.25, 0.5, 0.75, 1.0, 3);
  EXPECT_EQ(viewport.GetCamera(), nullptr);
  EXPECT_EQ(viewport.GetLeft(), 0.25);
  EXPECT_EQ(viewport.m_nActWidth, 0);
  EXPECT_EQ(viewport.GetZOrder(), 3);
}

TEST(QXViewport, PixelConstructionPutsItsArgumentsIntoThePixelRectangle) {
  QXViewport const viewport(1, 2, 3, 4);
  ExpectSharedDefaults(viewport);
  ExpectColor(viewport.m_BackgroundColor, 1.0, 1.0, 1.0, 1.0);
  EXPECT_EQ(viewport.GetActualLeft(), 1);
  EXPECT_EQ(viewport.GetActualBottom(), 2);
  EXPECT_EQ(viewport.GetActualWidth(), 3);
  EXPECT_EQ(viewport.GetActualHeight(), 4);
  EXPECT_EQ(viewport.GetCamera(), nullptr);
  EXPECT_EQ(viewport.GetTarget(), nullptr);
  EXPECT_EQ(viewport.m_dRelWidth, 0.0);
}

TEST(QXViewport, ZeroRelativeSizeReadsOneButStaysZeroPixels) {
  QXTestLog log;
  QXTestTarget target(log);
  target.m_nWidth = 640;
  target.m_nHeight = 480;
  QXViewport const viewport(nullptr, &target, 0.0, 0.0, 0.0, 0.0, 0);
  EXPECT_EQ(viewport.GetWidth(), 1.0);
  EXPECT_EQ(viewport.GetHeight(), 1.0);
  EXPECT_EQ(viewport.m_nActWidth, 0);
  EXPECT_EQ(viewport.m_nActHeight, 0);
  EXPECT_EQ(viewport.GetActualWidth(), 1);
  EXPECT_EQ(viewport.GetActualHeight(), 1);
}

TEST(QXViewport, TinyRelativeSizeReadsAsItIs) {
  QXViewport viewport;
  viewport.SetRelWidth(1e-300);
  viewport.SetRelHeight(-1e-300);
  EXPECT_EQ(viewport.GetWidth(), 1e-300);
  EXPECT_EQ(viewport.GetHeight(), -1e-300);
}

TEST(QXViewport, SettersStoreAndDeriveNothing) {
  QXTestLog log;
  QXTestTarget target(log);
  target.m_nWidth = 100;
  target.m_nHeight = 100;
  QXViewport viewport(nullptr, &target, 0.0, 0.0, 1.0, 1.0, 0);
  ASSERT_NE(viewport.GetDepthBuffer(), nullptr);
  viewport.SetRelLeft(0.1);
  viewport.SetRelBottom(0.2);
  viewport.SetRelWidth(0.3);
  viewport.SetRelHeight(0.4);
  EXPECT_EQ(viewport.GetLeft(), 0.1);
  EXPECT_EQ(viewport.GetBottom(), 0.2);
  EXPECT_EQ(viewport.GetWidth(), 0.3);
  EXPECT_EQ(viewport.GetHeight(), 0.4);
  EXPECT_EQ(viewport.GetActualWidth(), 100);
  viewport.SetActualLeft(11);
  viewport.SetActualBottom(12);
  viewport.SetActualWidth(13);
  viewport.SetActualHeight(14);
  EXPECT_EQ(viewport.GetActualLeft(), 11);
  EXPECT_EQ(viewport.GetActualBottom(), 12);
  EXPECT_EQ(viewport.GetActualWidth(), 13);
  EXPECT_EQ(viewport.GetActualHeight(), 14);
  viewport.SetZOrder(5);
  EXPECT_EQ(viewport.GetZOrder(), 5);
  EXPECT_EQ(viewport.GetOriZOrder(), 0);
  viewport.SetOriZOrder(6);
  EXPECT_EQ(viewport.GetZOrder(), 5);
  EXPECT_EQ(viewport.GetOriZOrder(), 6);
  EXPECT_EQ(viewport.m_bBufferCacheValid, 1);
}

TEST(QXViewport, UpdateDimensionsTruncatesEachEdgeTowardZero) {
  QXTestLog log;
  QXTestTarget target(log);
  target.m_nWidth = 10;
  target.m_nHeight = 7;
  QXViewport viewport(nullptr, &target, -0.19, 0.99, 0.59, 0.5, 0);
  EXPECT_EQ(viewport.m_nActLeft, -1);
  EXPECT_EQ(viewport.m_nActBottom, 6);
  EXPECT_EQ(viewport.m_nActWidth, 5);
  EXPECT_EQ(viewport.m_nActHeight, 3);
}

TEST(QXViewport, UpdateDimensionsOfATargetOfNoSizeCountsItAsOnePixel) {
  QXTestLog log;
  QXTestTarget target(log);
  target.m_nWidth = 0;
  target.m_nHeight = 0;
  QXViewport const viewport(nullptr, &target, 0.0, 0.0, 1.0, 2.0, 0);
  EXPECT_EQ(viewport.m_nActWidth, 1);
  EXPECT_EQ(viewport.m_nActHeight, 2);
}

TEST(QXViewport, UpdateDimensionsStopsAtTheEndsOfInt) {
  QXTestLog log;
  QXTestTarget target(log);
  target.m_nWidth = 4000000000u;
  target.m_nHeight = 4000000000u;
  QXViewport const viewport(nullptr, &target, -1.0, 1e300, 1.0, std::numeric_limits<double>::infinity(), 0);
  EXPECT_EQ(viewport.m_nActLeft, std::numeric_limits<int>::min());
  EXPECT_EQ(viewport.m_nActBottom, std::numeric_limits<int>::max());
  EXPECT_EQ(viewport.m_nActWidth, std::numeric_limits<int>::max());
  EXPECT_EQ(viewport.m_nActHeight, std::numeric_limits<int>::max());
}

TEST(QXViewport, UpdateDimensionsTakesWhatIsNotANumberForZero) {
  QXTestLog log;
  QXTestTarget target(log);
  target.m_nWidth = 640;
  target.m_nHeight = 480;
  double const dNone = std::numeric_limits<double>::quiet_NaN();
  QXViewport viewport(nullptr, &target, dNone, 0.5, dNone, 0.5, 0);
  EXPECT_EQ(viewport.m_nActLeft, 0);
  EXPECT_EQ(viewport.m_nActBottom, 240);
  EXPECT_EQ(viewport.m_nActWidth, 0);
  EXPECT_EQ(viewport.m_nActHeight, 240);
  EXPECT_NE(viewport.GetDepthBuffer(), nullptr);
}

TEST(QXViewport, UpdateDimensionsWithoutATargetChangesNothing) {
  QXViewport viewport(1, 2, 3, 4);
  unsigned char* const pBuffer = viewport.GetDepthBuffer();
  viewport.UpdateDimensions();
  EXPECT_EQ(viewport.GetActualWidth(), 3);
  EXPECT_EQ(viewport.GetDepthBuffer(), pBuffer);
}

TEST(QXViewport, UpdateAsksTheCameraWithItselfAndTheFlag) {
  QXTestLog log;
  QXTestTarget target(log);
  QXTestCamera camera(log);
  QXViewport viewport(&camera, &target, 0.0, 0.0, 1.0, 1.0, 4);
  log.m_arrLines.clear();
  viewport.Update();
  viewport.m_bRenderSceneFlag = 0;
  viewport.Update();
  EXPECT_EQ(log.m_arrLines, (std::vector<std::string>{"camera render z4 flag1", "camera render z4 flag0"}));
}

TEST(QXViewport, UpdateWithoutACameraDoesNothing) {
  QXViewport viewport(0, 0, 2, 2);
  viewport.Update();
  EXPECT_EQ(viewport.GetCamera(), nullptr);
}

TEST(QXViewport, SetCameraStoresAndTellsTheCamera) {
  QXTestLog log;
  QXTestCamera camera(log);
  QXViewport viewport(0, 0, 20, 10);
  viewport.SetCamera(&camera);
  EXPECT_EQ(viewport.GetCamera(), &camera);
  EXPECT_EQ(camera.GetViewport(), &viewport);
  EXPECT_EQ(log.m_arrLines, (std::vector<std::string>{"camera view 20x10", "camera projection"}));
  viewport.SetCamera(nullptr);
  EXPECT_EQ(viewport.GetCamera(), nullptr);
}

TEST(QXViewport, DepthBufferIsZeroedAndStaysUntilUpdateDimensions) {
  QXTestLog log;
  QXTestTarget target(log);
  target.m_nWidth = 2;
  target.m_nHeight = 3;
  QXViewport viewport(nullptr, &target, 0.0, 0.0, 1.0, 1.0, 0);
  unsigned char* const pBuffer = viewport.GetDepthBuffer();
  ASSERT_NE(pBuffer, nullptr);
  for (std::size_t i = 0; i < 24; ++i) {
    EXPECT_EQ(pBuffer[i], 0) << i;
  }
  pBuffer[23] = 9;
  viewport.InitBufferCache();
  EXPECT_EQ(viewport.GetDepthBuffer(), pBuffer);
  EXPECT_EQ(pBuffer[23], 9);
  viewport.UpdateDimensions();
  EXPECT_EQ(viewport.m_bBufferCacheValid, 0);
  unsigned char const* const pFresh = viewport.GetDepthBuffer();
  ASSERT_NE(pFresh, nullptr);
  EXPECT_EQ(pFresh[23], 0);
}

TEST(QXViewport, DepthBufferOfNoPixelsIsStillABuffer) {
  QXViewport viewport;
  EXPECT_NE(viewport.GetDepthBuffer(), nullptr);
  EXPECT_EQ(viewport.m_bBufferCacheValid, 1);
}

TEST(QXViewport, DepthBufferOfANegativeOrImpossibleSizeIsNull) {
  int const nMost = std::numeric_limits<int>::max();
  for (auto const& [nWidth, nHeight] :
      {std::pair{-1, 5}, std::pair{5, -1}, std::pair{-2, -2}, std::pair{nMost, nMost}}) {
    QXViewport viewport(0, 0, nWidth, nHeight);
    EXPECT_EQ(viewport.GetDepthBuffer(), nullptr) << nWidth << " x " << nHeight;
    EXPECT_EQ(viewport.m_bBufferCacheValid, 0);
  }
}

TEST(QXViewport, DepthBufferThatNoLongerFitsGoesEvenIfNoNewOneComes) {
  QXViewport viewport(0, 0, 2, 2);
  ASSERT_NE(viewport.GetDepthBuffer(), nullptr);
  viewport.SetActualWidth(-1);
  viewport.m_bBufferCacheValid = 0;
  EXPECT_EQ(viewport.GetDepthBuffer(), nullptr);
  EXPECT_EQ(viewport.m_pDepthBuffer, nullptr);
}

TEST(QXViewport, CopiesShareTheDepthBufferUntilOneRenewsIt) {
  QXTestLog log;
  QXTestTarget target(log);
  target.m_nWidth = 2;
  target.m_nHeight = 2;
  QXTestCamera camera(log);
  QXViewport original(&camera, &target, 0.0, 0.0, 1.0, 1.0, 3);
  original.m_strName = L"inset";
  unsigned char* const pBuffer = original.GetDepthBuffer();
  QXViewport copy(original);
  EXPECT_EQ(copy.GetCamera(), &camera);
  EXPECT_EQ(copy.GetTarget(), &target);
  EXPECT_EQ(copy.GetOriZOrder(), 3);
  EXPECT_TRUE(copy.m_strName == L"inset");
  EXPECT_EQ(copy.GetDepthBuffer(), pBuffer);
  ExpectColor(copy.m_BackgroundColor, 0.0, 0.0, 0.0, 1.0);
  {
    QXViewport assigned;
    assigned = copy;
    EXPECT_EQ(assigned.GetDepthBuffer(), pBuffer);
    EXPECT_EQ(camera.GetViewport(), &original) << "copying does not speak to the camera";
  }
  copy.UpdateDimensions();
  EXPECT_NE(copy.GetDepthBuffer(), pBuffer);
  EXPECT_EQ(original.GetDepthBuffer(), pBuffer);
  pBuffer[15] = 1;  // the address sanitizer tells if a copy freed it
}

TEST(QXViewport, StaticSwitchesStandAtTheirValuesAtLoad) {
  EXPECT_EQ(QXViewport::ms_bSceneRenderAllow, 0);
  EXPECT_EQ(QXViewport::ms_bSceneUpdateAllow, 0);
  EXPECT_EQ(QXViewport::ms_nThrottleFpsHz, 30);
}

}  // namespace
}  // namespace QXC
