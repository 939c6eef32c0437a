// The glow of what is bright.
#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <memory>
#include <vector>

#include <QxGraphics3D/view/QXBloomSetting.h>

#include <tests/ogre/QXOgreScenery.h>

namespace QXC {

namespace {

/// Colours of a picture, 0 to 1, row by row from the top.
struct Colors {
  int m_nWidth = 0;
  int m_nHeight = 0;
  std::vector<std::array<double, 3>> m_arrColors;

  Colors(int nWidth, int nHeight)
      : m_nWidth(nWidth), m_nHeight(nHeight), m_arrColors(static_cast<std::size_t>(nWidth * nHeight)) {}
  std::array<double, 3>& At(int x, int y) {
    return m_arrColors[static_cast<std::size_t>(
        std::clamp(y, 0, m_nHeight - 1) * m_nWidth + std::clamp(x, 0, m_nWidth - 1))];
  }
};

/// The glow as its description says, pixel by pixel in double: the mean of the bright parts over squares, blurred in both
/// directions at once by a bell of which the radius is two standard deviations, looked up between four places.
Colors Glow(Colors source, QXBloomSetting const& setting) {
  double const dRadius = setting.m_dRadius * source.m_nHeight;
  int nSide = 1;
  while (dRadius / nSide > 8.0) nSide *= 2;
  Colors bright((source.m_nWidth + nSide - 1) / nSide, (source.m_nHeight + nSide - 1) / nSide);
  for (int y = 0; y < bright.m_nHeight; ++y) {
    for (int x = 0; x < bright.m_nWidth; ++x) {
      for (int i = 0; i < nSide * nSide; ++i) {
        auto const& color = source.At(x * nSide + i % nSide, y * nSide + i / nSide);
        double const dMost = std::max({color[0], color[1], color[2]});
        double const dPart = std::clamp((dMost - setting.m_dThreshold) / (1.0 - setting.m_dThreshold), 0.0, 1.0);
        for (std::size_t k = 0; k < 3; ++k) bright.At(x, y)[k] += color[k] * dPart / (nSide * nSide);
      }
    }
  }
  double const dSmall = dRadius / nSide;
  int const nReach = static_cast<int>(std::ceil(dSmall));
  Colors blurred(bright.m_nWidth, bright.m_nHeight);
  for (int y = 0; y < bright.m_nHeight; ++y) {
    for (int x = 0; x < bright.m_nWidth; ++x) {
      double dSum = 0.0;
      for (int j = -nReach; j <= nReach; ++j) {
        for (int i = -nReach; i <= nReach; ++i) {
          double const dWeight = dSmall > 0.0 ? std::exp(-2.0 * (i * i + j * j) / (dSmall * dSmall)) : 1.0;
          dSum += dWeight;
          for (std::size_t k = 0; k < 3; ++k) blurred.At(x, y)[k] += dWeight * bright.At(x + i, y + j)[k];
        }
      }
      for (double& d : blurred.At(x, y)) d /= dSum;
    }
  }
  Colors result = source;
  for (int y = 0; y < source.m_nHeight; ++y) {
    for (int x = 0; x < source.m_nWidth; ++x) {
      double const dX = (x + 0.5) / nSide - 0.5;
      double const dY = (y + 0.5) / nSide - 0.5;
      int const nX = static_cast<int>(std::floor(dX));
      int const nY = static_cast<int>(std::floor(dY));
      double const fX = dX - nX;
      double const fY = dY - nY;
      for (std::size_t k = 0; k < 3; ++k) {
        double const dLight = (blurred.At(nX, nY)[k] * (1 - fX) + blurred.At(nX + 1, nY)[k] * fX) * (1 - fY) +
                              (blurred.At(nX, nY + 1)[k] * (1 - fX) + blurred.At(nX + 1, nY + 1)[k] * fX) * fY;
        result.At(x, y)[k] = std::min(1.0, source.At(x, y)[k] + setting.m_dIntensity * dLight);
      }
    }
  }
  return result;
}

}  // namespace

class QXOgreBloomPictures : public QXOgreScenery {
protected:
  static Colors ToColors(QXPicture const& picture, unsigned int nWidth, unsigned int nHeight) {
    Colors colors(static_cast<int>(nWidth), static_cast<int>(nHeight));
    for (unsigned int y = 0; y < nHeight; ++y) {
      for (unsigned int x = 0; x < nWidth; ++x) {
        QXPixel const p = picture.At(x, y);
        colors.At(static_cast<int>(x), static_cast<int>(y)) = {p.r / 255.0, p.g / 255.0, p.b / 255.0};
      }
    }
    return colors;
  }
  /// The target's picture with the effect must be what the description makes of the one without.
  void ExpectGlow(QXRenderTarget& target, QXBloomSetting const& setting, std::string const& strWhy) {
    unsigned int const nWidth = target.GetWidth();
    unsigned int const nHeight = target.GetHeight();
    m_pGraphics3D->RemoveCompositor(&target, L"bloom");
    Colors expected = Glow(ToColors(Frame(&target), nWidth, nHeight), setting);
    m_pGraphics3D->SetBloomSetting(setting);
    ASSERT_EQ(m_pGraphics3D->AddCompositor(&target, L"bloom"), 1) << Text(m_pGraphics3D->GetErrorText());
    QXPicture const picture = Frame(&target);
    double dWorst = 0.0;
    double dMost = 0.0;
    for (int y = 0; y < expected.m_nHeight; ++y) {
      for (int x = 0; x < expected.m_nWidth; ++x) {
        QXPixel const p = picture.At(static_cast<unsigned int>(x), static_cast<unsigned int>(y));
        std::array<int, 3> const arrIs = {p.r, p.g, p.b};
        for (std::size_t k = 0; k < 3; ++k)
          dWorst = std::max(dWorst, std::abs(arrIs[k] - 255.0 * expected.At(x, y)[k]));
        dMost = std::max(dMost, expected.At(x, y)[1]);
      }
    }
    // Three pictures of eight bits lie between: half a step each, times the intensity, and the last one's own half.
    EXPECT_LE(dWorst, 1.6 * setting.m_dIntensity + 0.6) << strWhy;
    EXPECT_GT(dMost, 0.1) << strWhy << ": there is something to compare";
  }
  /// Lights of several colours and sizes.
  void DrawLights() {
    DrawSquare(-0.5F, 0.25F, -0.25F, 0.5F, 0.0F, QXColorValue3D::White);
    DrawSquare(0.25F, 0.25F, 0.3125F, 0.3125F, 0.0F, QXColorValue3D(1.0, 0.9, 0.2, 1.0));
    DrawSquare(0.0F, -0.75F, 1.0F, -0.5F, 0.0F, QXColorValue3D(0.2, 0.8, 0.4, 1.0));
    DrawSquare(-1.0F, -1.0F, -0.5F, -0.5F, 0.0F, QXColorValue3D(0.5, 0.5, 0.5, 1.0));
  }
  static QXBloomSetting Setting(double dThreshold, double dIntensity, double dRadius) {
    QXBloomSetting setting;
    setting.m_dThreshold = dThreshold;
    setting.m_dIntensity = dIntensity;
    setting.m_dRadius = dRadius;
    return setting;
  }
};

TEST_F(QXOgreBloomPictures, BrightThingsGlowAsTheSlowWaySays) {
  DrawLights();
  ExpectGlow(*m_pTarget, QXBloomSetting(), "as it is at first");
  ExpectGlow(*m_pTarget, Setting(0.5, 2.0, 0.1), "farther");
  ExpectGlow(*m_pTarget, Setting(0.0, 1.0, 0.25), "everything, as far as it goes");
  ExpectGlow(*m_pTarget, Setting(0.7, 1.0, 0.0), "without a blur");
  ExpectGlow(*m_pTarget, Setting(0.7, 0.5, 0.01), "less than a pixel");
}

TEST_F(QXOgreBloomPictures, TargetsOfAnySizeGlow) {
  DrawLights();
  unsigned int nNumber = 0;
  for (auto const& [nWidth, nHeight] :
      {std::pair(97U, 61U), std::pair(200U, 150U), std::pair(1U, 64U), std::pair(64U, 3U)}) {
    QdcUnicodeString strName;
    strName.Format(L"target%d", static_cast<int>(++nNumber));
    QXRenderTarget* const pTarget =
        m_pGraphics3D->CreateRenderTexture(strName, PF_A8R8G8B8, nWidth, nHeight, 0, 32, L"");
    ASSERT_NE(pTarget, nullptr);
    m_pGraphics3D->AttachRenderTarget(pTarget);
    pTarget->SetActive(1);
    pTarget->SetSunLightEnable(0);
    AddViewport(*pTarget, *m_pCamera, 0, 0.0, 0.0, 1.0, 1.0);
    ExpectGlow(*pTarget, Setting(0.15, 1.0, 0.2), std::to_string(nWidth) + " x " + std::to_string(nHeight));
  }
}

TEST_F(QXOgreBloomPictures, ItFollowsAResizeAndAChangeOfSamples) {
  DrawLights();
  m_pTarget->SetSceneAntialiasValue(4);
  ASSERT_EQ(m_pTarget->GetSceneAntialiasValue(), 4);
  ExpectGlow(*m_pTarget, QXBloomSetting(), "four samples");
  m_pTarget->ReSize(90, 70);
  ExpectGlow(*m_pTarget, QXBloomSetting(), "another size");
  m_pTarget->SetSceneAntialiasValue(1);
  ExpectGlow(*m_pTarget, QXBloomSetting(), "one sample again");
}

TEST_F(QXOgreBloomPictures, ViewportsGlowIntoEachOther) {
  DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, 0.0F, QXColorValue3D::White);
  m_pTarget->RemoveAllViewports();
  AddViewport(*m_pTarget, *m_pCamera, 0, 0.0, 0.0, 0.5, 1.0);
  m_pGraphics3D->CreateScene(L"empty");
  QXCamera* const pEmpty = MakeCamera(L"dark", L"empty");
  AddViewport(*m_pTarget, *pEmpty, 1, 0.5, 0.0, 0.5, 1.0)->m_BackgroundColor = QXColorValue3D(0.0, 0.0, 0.0, 1.0);
  ExpectGlow(*m_pTarget, QXBloomSetting(), "white beside black");
  QXPicture const picture = Frame();
  EXPECT_GT(picture.At(32, 32).r, 60);
  EXPECT_EQ(picture.At(63, 32).r, 0);
}

TEST_F(QXOgreBloomPictures, AWindowGlowsAsATextureDoes) {
  DrawLights();
  QXRenderTarget* const pWindow = m_pGraphics3D->CreateRenderWindow(L"window", nullptr, SIZE, SIZE, 0);
  ASSERT_NE(pWindow, nullptr) << Text(m_pGraphics3D->GetErrorText());
  m_pGraphics3D->AttachRenderTarget(pWindow);
  pWindow->SetActive(1);
  pWindow->SetSunLightEnable(0);
  AddViewport(*pWindow, *m_pCamera, 0, 0.0, 0.0, 1.0, 1.0);
  ExpectGlow(*pWindow, Setting(0.6, 1.0, 0.1), "a window");
  pWindow->SetSceneAntialiasValue(4);
  ExpectGlow(*pWindow, Setting(0.6, 1.0, 0.1), "of four samples");
}

TEST_F(QXOgreBloomPictures, WindowsThatGlowComeAndGoInAnyOrder) {
  DrawSquare(-0.5F, -0.5F, 0.5F, 0.5F, 0.0F, QXColorValue3D::White);
  std::vector<unsigned char> const arrBefore = Frame().GetBytes();
  auto const expectGlow = [](QXRenderTarget& window, char const* szWhy) {
    window.Update();
    // Next to the left edge of the square, where there is nothing red without the glow.
    QXPixel const pixel = QXPicture(window).At(window.GetWidth() / 4 - 1, window.GetHeight() / 2);
    EXPECT_GT(pixel.r, 20) << szWhy;
    EXPECT_LT(pixel.r, 200) << szWhy;
  };
  int nNumber = 0;
  for (std::size_t const nFirst : {0U, 1U, 0U}) {
    std::array<std::unique_ptr<QXRenderTarget>, 2> arrWindows;
    for (auto& pWindow : arrWindows) {
      QdcUnicodeString strName;
      strName.Format(L"window%d", ++nNumber);
      pWindow.reset(m_pGraphics3D->CreateRenderWindow(strName, nullptr, SIZE, SIZE, 0));
      ASSERT_NE(pWindow, nullptr) << Text(m_pGraphics3D->GetErrorText());
      pWindow->SetActive(1);
      pWindow->SetSunLightEnable(0);
      AddViewport(*pWindow, *m_pCamera, 0, 0.0, 0.0, 1.0, 1.0);
      ASSERT_EQ(m_pGraphics3D->AddCompositor(pWindow.get(), L"bloom"), 1);
      expectGlow(*pWindow, "new");
    }
    for (std::size_t const i : {1U, 0U}) {
      arrWindows[i]->SetSceneAntialiasValue(4);
      expectGlow(*arrWindows[i], "four samples");
      expectGlow(*arrWindows[1 - i], "beside one of four samples");
    }
    arrWindows[1]->ReSize(80, 48);
    expectGlow(*arrWindows[1], "another size");
    arrWindows[nFirst].reset();
    expectGlow(*arrWindows[1 - nFirst], "alone");
    arrWindows[1 - nFirst].reset();
    EXPECT_EQ(Frame().GetBytes(), arrBefore) << "the windows are gone";
  }
}

TEST_F(QXOgreBloomPictures, ATargetWithoutViewportsKeepsItsPicture) {
  DrawLights();
  m_pGraphics3D->AddCompositor(m_pTarget, L"bloom");
  std::vector<unsigned char> const arrBefore = Frame().GetBytes();
  m_pTarget->RemoveAllViewports();
  EXPECT_EQ(Frame().GetBytes(), arrBefore);
  m_pGraphics3D->RemoveCompositor(m_pTarget, L"bloom");
  EXPECT_EQ(Frame().GetBytes(), arrBefore);
  m_pGraphics3D->AddCompositor(m_pTarget, L"bloom");
  EXPECT_EQ(Frame().GetBytes(), arrBefore);
}

TEST_F(QXOgreBloomPictures, WithoutItThePictureIsTheSameToTheByte) {
  DrawLights();
  DrawSquare(-0.9F, -0.3F, 0.9F, 0.0F, 1.0F, QXColorValue3D(1.0, 1.0, 1.0, 0.4));
  m_pTarget->SetSceneAntialiasValue(4);
  std::vector<unsigned char> const arrPlain = Frame().GetBytes();
  auto const expect = [&](bool bSame, char const* szWhy) { EXPECT_EQ(Frame().GetBytes() == arrPlain, bSame) << szWhy; };
  m_pGraphics3D->AddCompositor(m_pTarget, L"bloom");
  expect(false, "on");
  m_pGraphics3D->SetCompositorEnable(L"bloom", 0);
  EXPECT_EQ(m_pGraphics3D->IsCompositorEnable(L"bloom"), 0);
  expect(true, "taken out");
  m_pGraphics3D->SetCompositorEnable(L"bloom", 1);
  EXPECT_EQ(m_pGraphics3D->IsCompositorEnable(L"bloom"), 1);
  expect(false, "brought back");
  m_pGraphics3D->SetCompositorParameter(L"bloom", L"intensity", 0.0);
  expect(true, "no intensity");
  m_pGraphics3D->SetBloomSetting(Setting(1.0, 1.0, 0.1));
  expect(true, "nothing is brighter than white");
  m_pGraphics3D->SetBloomSetting(QXBloomSetting());
  m_pGraphics3D->RemoveCompositor(m_pTarget, L"bloom");
  expect(true, "removed");
}

TEST_F(QXOgreBloomPictures, ItBelongsToTheTargetThatWasGivenIt) {
  DrawLights();
  QXRenderTarget* const pOther = MakeTarget(L"other");
  AddViewport(*pOther, *m_pCamera, 0, 0.0, 0.0, 1.0, 1.0);
  m_pGraphics3D->AddCompositor(pOther, L"bloom");
  m_pGraphics3D->UpdateAllRenderTargets();
  EXPECT_NE(QXPicture(*pOther).GetBytes(), QXPicture(*m_pTarget).GetBytes());
}

TEST_F(QXOgreBloomPictures, WhatLetsTheBackgroundThroughKeepsItsAlpha) {
  m_pViewport->m_BackgroundColor = QXColorValue3D(0.0, 0.0, 0.0, 0.0);
  DrawSquare(-0.25F, -0.25F, 0.25F, 0.25F, 0.0F, QXColorValue3D::White);
  m_pGraphics3D->AddCompositor(m_pTarget, L"bloom");
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(32, 32).a, 255);
  EXPECT_EQ(picture.At(22, 32).a, 0);
  EXPECT_GT(picture.At(23, 32).r, 10) << "the glow is there";
}

TEST_F(QXOgreBloomPictures, AViewportThatDoesNotClearKeepsItsPictureUnderTheGlow) {
  QXRenderOperation3D* const p = DrawSquare(-0.5F, -0.25F, 0.0F, 0.25F, 0.0F, RED);
  m_pGraphics3D->AddCompositor(m_pTarget, L"bloom");
  Frame();
  m_pViewport->m_bClearEveryFrame = 0;
  p->SetVisible(0);
  DrawSquare(0.25F, -0.25F, 0.5F, 0.25F, 0.0F, GREEN);
  for (int i = 0; i < 3; ++i) {
    QXPicture const picture = Frame();
    EXPECT_EQ(picture.At(24, 32).r, 255);
    EXPECT_EQ(picture.At(24, 32).g, 0) << "the glow does not pile up from frame to frame";
    EXPECT_EQ(picture.At(44, 32).g, 255);
  }
}

TEST_F(QXOgreBloomPictures, NumbersAreCutToTheirRangesAndWhatIsNoneIsRefused) {
  DrawLights();
  m_pGraphics3D->AddCompositor(m_pTarget, L"bloom");
  auto const picture = [&](QXBloomSetting const& setting) {
    m_pGraphics3D->SetBloomSetting(setting);
    return Frame().GetBytes();
  };
  double const dNone = std::numeric_limits<double>::quiet_NaN();
  double const dInfinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(picture(Setting(-3.0, 1.0, 0.1)), picture(Setting(0.0, 1.0, 0.1)));
  EXPECT_EQ(picture(Setting(0.5, 99.0, 0.1)), picture(Setting(0.5, 10.0, 0.1)));
  EXPECT_EQ(picture(Setting(0.5, 1.0, dInfinity)), picture(Setting(0.5, 1.0, 0.25)));
  auto const arrBefore = picture(Setting(0.4, 2.0, 0.07));
  EXPECT_EQ(picture(Setting(dNone, dNone, dNone)), arrBefore) << "it keeps what it had";
  EXPECT_EQ(m_pGraphics3D->SetCompositorParameter(L"bloom", L"radius", dNone), 0);
  EXPECT_EQ(m_pGraphics3D->SetCompositorParameter(L"bloom", L"colour", 1.0), 0);
  EXPECT_EQ(m_pGraphics3D->SetCompositorParameter(L"haze", L"radius", 1.0), 0);
  EXPECT_EQ(Frame().GetBytes(), arrBefore);
  EXPECT_EQ(m_pGraphics3D->SetCompositorParameter(L"bloom", L"threshold", 0.2), 1);
  EXPECT_EQ(m_pGraphics3D->SetCompositorParameter(L"bloom", L"intensity", 1.5), 1);
  EXPECT_EQ(m_pGraphics3D->SetCompositorParameter(L"bloom", L"radius", 0.2), 1);
  auto const arrSingly = Frame().GetBytes();
  EXPECT_EQ(arrSingly, picture(Setting(0.2, 1.5, 0.2)));
}

TEST_F(QXOgreBloomPictures, NumbersNextToTheirEdgesDivideByNothing) {
  DrawLights();
  auto const arrWithout = Frame().GetBytes();
  m_pGraphics3D->AddCompositor(m_pTarget, L"bloom");
  m_pGraphics3D->SetBloomSetting(Setting(1.0 - 1.0e-12, 1.0, 0.1));
  EXPECT_EQ(Frame().GetBytes(), arrWithout) << "as at 1";
  m_pGraphics3D->SetBloomSetting(Setting(0.3, 1.0, 0.0));
  auto const arrSharp = Frame().GetBytes();
  EXPECT_NE(arrSharp, arrWithout);
  m_pGraphics3D->SetBloomSetting(Setting(0.3, 1.0, 1.0e-300));
  EXPECT_EQ(Frame().GetBytes(), arrSharp) << "as at 0";
}

TEST_F(QXOgreBloomPictures, UnknownEffectsAndTargetsAreRefused) {
  EXPECT_EQ(m_pGraphics3D->AddCompositor(m_pTarget, L"haze"), 0);
  EXPECT_NE(Text(m_pGraphics3D->GetErrorText()).find("haze"), std::string::npos);
  EXPECT_EQ(m_pGraphics3D->AddCompositor(nullptr, L"bloom"), 0);
  m_pGraphics3D->RemoveCompositor(nullptr, L"bloom");
  m_pGraphics3D->RemoveCompositor(m_pTarget, L"haze");
  m_pGraphics3D->SetCompositorEnable(L"haze", 1);
  EXPECT_EQ(m_pGraphics3D->IsCompositorEnable(L"haze"), 0);
  EXPECT_EQ(m_pGraphics3D->IsCompositorEnable(L"bloom"), 1) << "before anybody took it out";
}

TEST_F(QXOgreBloomPictures, TargetsWithItMayOutliveTheRenderer) {
  DrawLights();
  QXRenderTarget* const pLeft = m_pGraphics3D->CreateRenderTexture(L"left", PF_A8R8G8B8, 32, 32, 0, 32, L"");
  ASSERT_NE(pLeft, nullptr);
  AddViewport(*pLeft, *m_pCamera, 0, 0.0, 0.0, 1.0, 1.0);
  m_pGraphics3D->AddCompositor(pLeft, L"bloom");
  pLeft->Update();
  m_pGraphics3D.reset();
  pLeft->Update();
  delete pLeft;
}

}  // namespace QXC
