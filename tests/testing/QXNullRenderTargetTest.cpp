#include <array>
#include <vector>

#include <gtest/gtest.h>

#include <QxGraphics3D/frame/QXViewport.h>
#include <QxGraphics3D/testing/QXNullRenderTarget.h>

namespace QXC {
namespace {

std::vector<unsigned char> Read(QXNullRenderTarget& target) {
  std::vector<unsigned char> arrPixels(std::size_t{4} * target.GetWidth() * target.GetHeight(), 0xEE);
  EXPECT_EQ(target.CopyToMemory(arrPixels.data(), static_cast<unsigned int>(arrPixels.size())), 1);
  return arrPixels;
}

/// The picture as one letter a pixel: r, g, b, w for pure colours, '.' for transparent black.
std::string Draw(QXNullRenderTarget& target) {
  std::vector<unsigned char> const arrPixels = Read(target);
  std::string strPicture;
  for (std::size_t i = 0; i < arrPixels.size(); i += 4) {
    std::array<int, 4> const pixel = {arrPixels[i], arrPixels[i + 1], arrPixels[i + 2], arrPixels[i + 3]};
    strPicture += pixel == std::array{0, 0, 255, 255}       ? 'r'
                  : pixel == std::array{0, 255, 0, 255}     ? 'g'
                  : pixel == std::array{255, 0, 0, 255}     ? 'b'
                  : pixel == std::array{255, 255, 255, 255} ? 'w'
                  : pixel == std::array{0, 0, 0, 0}         ? '.'
                                                            : '?';
    if ((i / 4 + 1) % target.GetWidth() == 0) {
      strPicture += '\n';
    }
  }
  return strPicture;
}

QXColorValue3D const Red(1.0, 0.0, 0.0, 1.0);
QXColorValue3D const Green(0.0, 1.0, 0.0, 1.0);
QXColorValue3D const Blue(0.0, 0.0, 1.0, 1.0);

TEST(QXNullRenderTarget, ShowsWhatWasClearedCountedFromTheBottomLeft) {
  QXNullRenderTarget target(L"t", 4, 3, 1);
  EXPECT_EQ(Draw(target), "....\n....\n....\n");
  target.Clear(0, 0, 4, 3, Red);
  target.Clear(0, 0, 2, 1, Green);
  target.Clear(3, 2, 1, 1, Blue);
  EXPECT_EQ(Draw(target), "rrrb\nrrrr\nggrr\n");
}

TEST(QXNullRenderTarget, ClearingOutsideIsCutOff) {
  QXNullRenderTarget target(L"t", 3, 2, 1);
  target.Clear(-5, -5, 6, 6, Red);
  target.Clear(2, 1, 2147483647, 2147483647, Green);
  target.Clear(3, 0, 1, 1, Blue);
  target.Clear(0, 1, 0, 1, Blue);
  target.Clear(0, 1, -1, 1, Blue);
  EXPECT_EQ(Draw(target), "..g\nr..\n");
}

TEST(QXNullRenderTarget, LaterRectanglesLieOverEarlierOnesWhateverTheirNumber) {
  QXNullRenderTarget target(L"t", 100, 1, 1);
  target.Clear(0, 0, 100, 1, Red);
  for (int i = 0; i < 99; ++i) {
    target.Clear(i, 0, 2, 1, i % 2 == 0 ? Green : Blue);
  }
  std::string strExpected;
  for (int i = 0; i < 98; ++i) {
    strExpected += i % 2 == 0 ? 'g' : 'b';
  }
  EXPECT_EQ(Draw(target), strExpected + "gg\n");
  target.Clear(0, 0, 100, 1, Red);
  EXPECT_EQ(Draw(target), std::string(100, 'r') + "\n");
}

TEST(QXNullRenderTarget, ChannelsAreBlueGreenRedAlphaRoundedAndHeldInRange) {
  QXNullRenderTarget target(L"t", 1, 1, 1);
  target.Clear(0, 0, 1, 1, QXColorValue3D(0.2, 0.5, 7.0, -1.0));
  EXPECT_EQ(Read(target), (std::vector<unsigned char>{255, 128, 51, 0}));
  EXPECT_EQ(QXNullRenderTarget::ToByte(std::numeric_limits<double>::quiet_NaN()), 0);
}

TEST(QXNullRenderTarget, ReadsBackWhatWasWritten) {
  QXNullRenderTarget target(L"t", 2, 1, 1);
  target.Clear(0, 0, 2, 1, Red);
  std::vector<unsigned char> const arrWritten = {1, 2, 3, 4, 5, 6, 7, 8};
  target.CopyFromMemory(arrWritten.data(), 7);
  EXPECT_EQ(Draw(target), "rr\n") << "a wrong size changes nothing";
  target.CopyFromMemory(nullptr, 8);
  target.CopyFromMemory(arrWritten.data(), 8);
  EXPECT_EQ(Read(target), arrWritten);
}

TEST(QXNullRenderTarget, RefusesToReadIntoTooLittleMemory) {
  QXNullRenderTarget target(L"t", 2, 1, 1);
  std::vector<unsigned char> arrPixels(8, 0xEE);
  EXPECT_EQ(target.CopyToMemory(arrPixels.data(), 7), 0);
  EXPECT_EQ(target.CopyToMemory(nullptr, 8), 0);
  EXPECT_EQ(arrPixels, std::vector<unsigned char>(8, 0xEE));
}

TEST(QXNullRenderTarget, DepthIsFarEverywhereOnceAskedFor) {
  QXNullRenderTarget target(L"t", 2, 2, 1);
  std::vector<float> arrDepths(5, 0.5F);
  EXPECT_EQ(target.IsRenderDepth(), 0);
  EXPECT_EQ(target.CopyDepthToMemory(arrDepths.data(), 4), 0);
  target.SetRenderDepth(1);
  EXPECT_EQ(target.IsRenderDepth(), 1);
  EXPECT_EQ(target.CopyDepthToMemory(arrDepths.data(), 3), 0);
  EXPECT_EQ(target.CopyDepthToMemory(nullptr, 4), 0);
  EXPECT_EQ(target.CopyDepthToMemory(arrDepths.data(), 4), 1);
  EXPECT_EQ(arrDepths, (std::vector<float>{1.0F, 1.0F, 1.0F, 1.0F, 0.5F}));
}

TEST(QXNullRenderTarget, ReSizeMovesTheViewportsAndForgetsThePicture) {
  QXNullRenderTarget target(L"t", 4, 4, 0);
  QXViewport* const pViewport = target.AddViewport(nullptr, 0, 0.0, 0.0, 0.5, 1.0);
  target.Clear(0, 0, 4, 4, Red);
  target.ReSize(0, 2);
  EXPECT_EQ(target.GetWidth(), 4u);
  target.ReSize(2, 2);
  EXPECT_EQ(pViewport->GetActualWidth(), 1);
  EXPECT_EQ(pViewport->GetActualHeight(), 2);
  EXPECT_EQ(Draw(target), "..\n..\n");
}

TEST(QXNullRenderTarget, ASmallerSizeSetByHandCutsWhatWasClearedBefore) {
  QXNullRenderTarget target(L"t", 4, 4, 0);
  target.Clear(0, 0, 4, 4, Red);
  target.SetWidth(2);
  target.SetHeight(1);
  EXPECT_EQ(Draw(target), "rr\n");
}

TEST(QXNullRenderTarget, BackgroundAndClearingReachEveryViewport) {
  QXNullRenderTarget target(L"t", 4, 4, 0);
  QXViewport const* const pFirst = target.AddViewport(nullptr, 0, 0.0, 0.0, 1.0, 1.0);
  QXViewport const* const pSecond = target.AddViewport(nullptr, 3, 0.0, 0.0, 1.0, 1.0);
  target.SetBackgroundColor(Green);
  target.SetClearEveryFrame(0, 2);
  for (QXViewport const* const pViewport : {pFirst, pSecond}) {
    EXPECT_EQ(pViewport->m_BackgroundColor, Green);
    EXPECT_EQ(pViewport->m_bClearEveryFrame, 0);
    EXPECT_EQ(pViewport->m_nClearBuffers, 2u);
  }
}

TEST(QXNullRenderTarget, KeepsTheSun) {
  QXNullRenderTarget target(L"t", 4, 4, 0);
  EXPECT_EQ(target.GetSunLightEnable(), 1);
  target.SetSunPosition(QXVector3d(1.0, 2.0, 3.0));
  target.SetSunLightEnable(0);
  EXPECT_TRUE(target.GetSunPosition() == QXVector3d(1.0, 2.0, 3.0));
  EXPECT_EQ(target.GetSunLightEnable(), 0);
}

TEST(QXNullRenderTarget, TellsItsListenerAroundTheFrame) {
  struct Listener : QXRenderTargetListener {
    explicit Listener(QXNullRenderTarget& target) : m_Target(target) {}
    void BeforeRender() override { m_arrUpdates.push_back(m_Target.m_nFrameCount); }
    void PostRender() override { m_arrUpdates.push_back(m_Target.m_nFrameCount); }
    QXNullRenderTarget& m_Target;
    std::vector<unsigned int> m_arrUpdates;
  };
  QXNullRenderTarget target(L"t", 4, 4, 0);
  Listener listener(target);
  target.SetListener(&listener);
  target.Update();
  EXPECT_EQ(listener.m_arrUpdates, (std::vector<unsigned int>{0, 1}));
  target.SetListener(nullptr);
  target.Update();
  EXPECT_EQ(listener.m_arrUpdates.size(), 2u);
  EXPECT_EQ(target.GetUpdateCount(), 2u);
}

TEST(QXNullRenderTarget, CountsDrawsOfTheLastFrameAlone) {
  QXNullRenderTarget target(L"t", 4, 4, 0);
  target.CountDraw(2, 10);
  target.CountDraw(1, 5);
  EXPECT_EQ(target.GetTriangleCount(), 15);
  EXPECT_EQ(target.GetDrawOperationCount(), 3u);
  target.Update();
  EXPECT_EQ(target.GetTriangleCount(), 0);
  EXPECT_EQ(target.GetDrawOperationCount(), 0u);
}

}  // namespace
}  // namespace QXC
