// Rectangles over the pictures of targets.
#include <limits>

#include <QxGraphics3D/renderop/QXRenderOperationOverlay.h>
#include <QxGraphics3D/view/QXBloomSetting.h>

#include <tests/ogre/QXOgreTexturing.h>

namespace QXC {

namespace {

constexpr QXPixel BLUE_PIXEL{0, 0, 255, 255};
constexpr QXPixel WHITE_PIXEL{255, 255, 255, 255};
constexpr QdcRect2D WHOLE(0.0, 0.0, 1.0, 1.0);

class QXOgreOverlays : public QXOgreTexturing {
protected:
  QXRenderOperationOverlay* Make(wchar_t const* szName, QdcRect2D const& rcArea, QXColorValue3D const& color) {
    QXRenderOperationOverlay* const pOverlay = m_pGraphics3D->CreateOverlay(szName);
    EXPECT_NE(pOverlay, nullptr) << Text(m_pGraphics3D->GetErrorText());
    pOverlay->SetRect(rcArea);
    pOverlay->SetColor(color);
    return pOverlay;
  }
  /// The rectangle of that colour in a picture, right and bottom behind it, and nothing else of it.
  static QdcRect Find(QXPicture const& picture, QXPixel const& pixel, int nWidth = SIZE, int nHeight = SIZE) {
    QdcRect rc(nWidth, nHeight, 0, 0);
    int nCount = 0;
    for (int y = 0; y < nHeight; ++y)
      for (int x = 0; x < nWidth; ++x) {
        if (!(picture.At(static_cast<unsigned int>(x), static_cast<unsigned int>(y)) == pixel)) continue;
        rc = QdcRect(std::min(rc.left, x), std::min(rc.top, y), std::max(rc.right, x + 1), std::max(rc.bottom, y + 1));
        ++nCount;
      }
    if (nCount == 0) return {};
    EXPECT_EQ(nCount, (rc.right - rc.left) * (rc.bottom - rc.top)) << "the rectangle has holes";
    return rc;
  }
  /// 4 x 4 pixels, each another colour.
  QXTexture* MakeSixteenColors() {
    std::vector<unsigned char> arrBytes;
    for (unsigned int i = 0; i < 16; ++i)
      for (unsigned int const n : {17 * i, 255 - 17 * i, 80U, 255U}) arrBytes.push_back(static_cast<unsigned char>(n));
    QXTexture* const pTexture = MakeTexture(4, 4, PF_A8R8G8B8, arrBytes);
    // As hosts get them: linear, which must not show where pixels meet texels.
    pTexture->RendererOperation1(2, 2, 2);
    return pTexture;
  }
  static QXPixel ColorOf(int i) { return {80, 255 - 17 * i, 17 * i, 255}; }
};

}  // namespace

TEST_F(QXOgreOverlays, AFreshOneIsVisibleWhiteAndNowhere) {
  QXRenderOperationOverlay* const pOverlay = m_pGraphics3D->CreateOverlay(L"fresh");
  ASSERT_NE(pOverlay, nullptr);
  EXPECT_EQ(pOverlay->GetName(), L"fresh");
  EXPECT_EQ(pOverlay->IsVisible(), 1);
  EXPECT_EQ(Find(Frame(), BACKGROUND_PIXEL), QdcRect(0, 0, 64, 64));
  pOverlay->SetRect({10.0, 4.0, 20.0, 8.0});
  EXPECT_EQ(Find(Frame(), WHITE_PIXEL), QdcRect(10, 4, 20, 8));
}

TEST_F(QXOgreOverlays, TheRectangleCountsFromTheUpperLeftCornerToWholePixels) {
  QXRenderOperationOverlay* const pOverlay = Make(L"a", {10.0, 4.0, 20.0, 8.0}, RED);
  EXPECT_EQ(Find(Frame(), RED_PIXEL), QdcRect(10, 4, 20, 8));
  pOverlay->SetRect({10.4, 3.6, 19.6, 8.4});
  EXPECT_EQ(Find(Frame(), RED_PIXEL), QdcRect(10, 4, 20, 8));
  pOverlay->SetRect({-5.0, 60.0, 3.0, 90.0});
  EXPECT_EQ(Find(Frame(), RED_PIXEL), QdcRect(0, 60, 3, 64));
  pOverlay->SetRect({0.0, 0.0, 64.0, 64.0});
  EXPECT_EQ(Find(Frame(), RED_PIXEL), QdcRect(0, 0, 64, 64));
  // What is not wider or higher than nothing, and what lies outside.
  for (QdcRect2D const& rc : {QdcRect2D(8.0, 8.0, 8.0, 12.0), QdcRect2D(8.0, 8.0, 12.0, 8.0),
           QdcRect2D(12.0, 8.0, 8.0, 12.0), QdcRect2D(64.0, 0.0, 70.0, 9.0), QdcRect2D(0.0, -9.0, 9.0, 0.0)}) {
    pOverlay->SetRect(rc);
    EXPECT_EQ(Find(Frame(), RED_PIXEL), QdcRect()) << rc.left << ", " << rc.top;
  }
}

TEST_F(QXOgreOverlays, ThePositionIsTheLowerLeftCornerAndKeepsTheSize) {
  Make(L"a", {10.0, 4.0, 20.0, 8.0}, RED);
  m_pGraphics3D->SetOverlayPosition(L"a", 3.0, 5.0);
  EXPECT_EQ(Find(Frame(), RED_PIXEL), QdcRect(3, 55, 13, 59));
  m_pGraphics3D->SetOverlayPosition(L"a", 3.4, 4.6);
  EXPECT_EQ(Find(Frame(), RED_PIXEL), QdcRect(3, 55, 13, 59));
}

TEST_F(QXOgreOverlays, EachKeepsItsDistanceFromTheCornerThatItWasPlacedFrom) {
  QXRenderOperationOverlay* const pTop = Make(L"top", {10.0, 4.0, 20.0, 8.0}, RED);
  Make(L"bottom", {0.0, 0.0, 10.0, 4.0}, GREEN);
  m_pGraphics3D->SetOverlayPosition(L"bottom", 3.0, 5.0);
  m_pTarget->ReSize(100, 80);
  QXPicture const picture = Frame();
  EXPECT_EQ(Find(picture, RED_PIXEL, 100, 80), QdcRect(10, 4, 20, 8));
  EXPECT_EQ(Find(picture, GREEN_PIXEL, 100, 80), QdcRect(3, 71, 13, 75));
  // Whichever is said last counts.
  m_pGraphics3D->SetOverlayPosition(L"top", 0.0, 0.0);
  EXPECT_EQ(Find(Frame(), RED_PIXEL, 100, 80), QdcRect(0, 76, 10, 80));
  pTop->SetRect({1.0, 2.0, 3.0, 4.0});
  m_pTarget->ReSize(64, 40);
  EXPECT_EQ(Find(Frame(), RED_PIXEL, 64, 40), QdcRect(1, 2, 3, 4));
}

TEST_F(QXOgreOverlays, HigherNumbersLieOnTopAndEqualOnesByName) {
  // Made in the other order than that of their names.
  QXRenderOperationOverlay* const pB = Make(L"b", {0.0, 0.0, 10.0, 10.0}, GREEN);
  QXRenderOperationOverlay* const pA = Make(L"a", {0.0, 0.0, 10.0, 10.0}, RED);
  EXPECT_EQ(Frame().At(5, 5), GREEN_PIXEL);
  m_pGraphics3D->SetOverlayZOrder(L"a", 1);
  EXPECT_EQ(Frame().At(5, 5), RED_PIXEL);
  pB->SetZOrder(2);
  EXPECT_EQ(Frame().At(5, 5), GREEN_PIXEL);
  pB->SetZOrder(std::numeric_limits<int>::min());
  EXPECT_EQ(Frame().At(5, 5), RED_PIXEL);
  pA->SetZOrder(std::numeric_limits<int>::min());
  EXPECT_EQ(Frame().At(5, 5), GREEN_PIXEL);
}

TEST_F(QXOgreOverlays, APictureOfItsSizeIsDrawnTexelByTexel) {
  QXTexture* const pTexture = MakeSixteenColors();
  QXRenderOperationOverlay* const pOverlay = Make(L"a", {7.0, 9.0, 11.0, 13.0}, QXColorValue3D::White);
  pOverlay->SetTexture(pTexture, WHOLE);
  QXPicture const whole = Frame();
  for (unsigned int i = 0; i < 16; ++i) EXPECT_EQ(whole.At(7 + i % 4, 9 + i / 4), ColorOf(static_cast<int>(i))) << i;
  // The lower right quarter.
  pOverlay->SetRect({7.0, 9.0, 9.0, 11.0});
  pOverlay->SetTexture(pTexture, {0.5, 0.5, 1.0, 1.0});
  QXPicture const part = Frame();
  EXPECT_EQ(part.At(7, 9), ColorOf(10));
  EXPECT_EQ(part.At(8, 9), ColorOf(11));
  EXPECT_EQ(part.At(7, 10), ColorOf(14));
  EXPECT_EQ(part.At(8, 10), ColorOf(15));
  // What is cut off at the edge of the target takes its texels with it.
  pOverlay->SetRect({-2.0, 62.0, 2.0, 66.0});
  pOverlay->SetTexture(pTexture, WHOLE);
  QXPicture const cut = Frame();
  EXPECT_EQ(cut.At(0, 62), ColorOf(2));
  EXPECT_EQ(cut.At(1, 63), ColorOf(7));
}

TEST_F(QXOgreOverlays, TheColourIsAFactorAndAnAlphaBlends) {
  QXTexture* const pWhite = MakeTexture(1, 1, PF_A8R8G8B8, {255, 255, 255, 255});
  QXTexture* const pClear = MakeTexture(1, 1, PF_A8R8G8B8, {0, 255, 0, 0});
  QXRenderOperationOverlay* const pOverlay = Make(L"a", {0.0, 0.0, 8.0, 8.0}, RED);
  pOverlay->SetTexture(pWhite, WHOLE);
  EXPECT_EQ(Frame().At(4, 4), RED_PIXEL);
  pOverlay->SetColor({1.0, 0.0, 0.0, 0.5});
  QXPixel const half = Frame().At(4, 4);
  EXPECT_NEAR(half.r, 128, 1);
  EXPECT_NEAR(half.b, 26, 1);
  EXPECT_EQ(half.a, 255) << "what is seen through a pane stays solid";
  pOverlay->SetColor(QXColorValue3D::White);
  pOverlay->SetTexture(pClear, WHOLE);
  EXPECT_EQ(Frame().At(4, 4), BACKGROUND_PIXEL);
  pOverlay->SetTexture(nullptr, WHOLE);
  EXPECT_EQ(Frame().At(4, 4), WHITE_PIXEL);
}

TEST_F(QXOgreOverlays, ATextureIsCountedAndMayDieFirst) {
  QXTexture* const pTexture = MakeTexture(1, 1, PF_A8R8G8B8, {255, 0, 0, 255});
  int const nBefore = pTexture->GetRef();
  QXRenderOperationOverlay* const pOverlay = Make(L"a", {0.0, 0.0, 8.0, 8.0}, QXColorValue3D::White);
  pOverlay->SetTexture(pTexture, WHOLE);
  EXPECT_EQ(pTexture->GetRef(), nBefore + 1);
  pOverlay->SetTexture(pTexture, WHOLE);
  EXPECT_EQ(pTexture->GetRef(), nBefore + 1);
  EXPECT_EQ(Frame().At(4, 4), BLUE_PIXEL);
  Delete(pTexture);
  EXPECT_EQ(Frame().At(4, 4), WHITE_PIXEL);
}

TEST_F(QXOgreOverlays, WhatIsHiddenIsNeitherDrawnNorCounted) {
  QXRenderOperationOverlay* const pOverlay = Make(L"a", {0.0, 0.0, 8.0, 8.0}, RED);
  Frame();
  EXPECT_EQ(m_pGraphics3D->GetDrawOperationCount(), 1U);
  EXPECT_EQ(m_pTarget->GetTriangleCount(), 2);
  m_pGraphics3D->SetOverlayVisible(L"a", 0);
  EXPECT_EQ(pOverlay->IsVisible(), 0);
  EXPECT_EQ(Frame().At(4, 4), BACKGROUND_PIXEL);
  EXPECT_EQ(m_pGraphics3D->GetDrawOperationCount(), 0U);
  pOverlay->SetVisible(1);
  EXPECT_EQ(Frame().At(4, 4), RED_PIXEL);
}

TEST_F(QXOgreOverlays, NeighboursInTheirOrderWithOneTextureAreOneOperation) {
  QXTexture* const pTexture = MakeSixteenColors();
  for (int i = 0; i < 100; ++i) {
    QdcUnicodeString strName;
    strName.Format(L"%03d", i);
    QXRenderOperationOverlay* const pOverlay = m_pGraphics3D->CreateOverlay(strName);
    pOverlay->SetRect({6.0 * (i % 10), 6.0 * (i / 10), 6.0 * (i % 10) + 4.0, 6.0 * (i / 10) + 4.0});
    pOverlay->SetTexture(pTexture, WHOLE);
  }
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(54, 54), ColorOf(0));
  EXPECT_EQ(picture.At(57, 57), ColorOf(15));
  EXPECT_EQ(m_pGraphics3D->GetDrawOperationCount(), 1U);
  EXPECT_EQ(m_pTarget->GetTriangleCount(), 200);
  Make(L"050 plain", {0.0, 0.0, 1.0, 1.0}, RED);
  Frame();
  EXPECT_EQ(m_pGraphics3D->GetDrawOperationCount(), 3U);
}

TEST_F(QXOgreOverlays, TheyLieOverEverythingInTheSceneAndOverAllViewports) {
  // As near as can be seen, and a view of its own in the right half.
  DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, 10.0F, RED);
  AddViewport(*m_pTarget, *m_pCamera, 1, 0.5, 0.0, 0.5, 1.0);
  Make(L"a", {20.0, 20.0, 44.0, 30.0}, {0.0, 1.0, 0.0, 0.5});
  m_pTarget->SetVerticalExaggeration(0.5);
  QXPicture const picture = Frame();
  for (unsigned int const x : {20U, 31U, 32U, 43U}) {
    EXPECT_NEAR(picture.At(x, 25).r, 127, 1) << "blended once, at " << x;
    EXPECT_NEAR(picture.At(x, 25).g, 128, 1) << x;
  }
}

TEST_F(QXOgreOverlays, TheLinesOfATargetInWireframeLeaveThemFilled) {
  Make(L"a", {20.0, 20.0, 44.0, 30.0}, GREEN);
  m_pTarget->SetRenderState(RENDER_STATE_LINE);
  EXPECT_EQ(Find(Frame(), GREEN_PIXEL), QdcRect(20, 20, 44, 30));
}

TEST_F(QXOgreOverlays, EachTargetThatIsLookedAtShowsThem) {
  Make(L"a", {0.0, 0.0, 8.0, 8.0}, RED);
  QXRenderTarget* const pSecond = MakeTarget(L"second", 32, 16);
  AddViewport(*pSecond, *m_pCamera, 0, 0.0, 0.0, 1.0, 1.0);
  QXRenderTarget* const pMirror = m_pGraphics3D->CreateReflectRenderTarget(L"mirror", 32, 32, L"3D");
  ASSERT_NE(pMirror, nullptr);
  m_pGraphics3D->AttachRenderTarget(pMirror);
  pMirror->SetActive(1);
  AddViewport(*pMirror, *m_pCamera, 0, 0.0, 0.0, 1.0, 1.0);
  QXRenderTarget* const pSelection = m_pGraphics3D->CreateSelectionRenderTarget(L"selection", 32, 32, L"3D");
  ASSERT_NE(pSelection, nullptr) << Text(m_pGraphics3D->GetErrorText());
  m_pGraphics3D->AttachRenderTarget(pSelection);
  pSelection->SetActive(1);
  AddViewport(*pSelection, *m_pCamera, 0, 0.0, 0.0, 1.0, 1.0);
  QXRenderTarget* const pWindow = m_pGraphics3D->CreateRenderWindow(L"window", nullptr, 40, 31, 0);
  ASSERT_NE(pWindow, nullptr) << Text(m_pGraphics3D->GetErrorText());
  m_pGraphics3D->AttachRenderTarget(pWindow);
  AddViewport(*pWindow, *m_pCamera, 0, 0.0, 0.0, 1.0, 1.0);
  QXRenderTarget* const pWithoutViewport = MakeTarget(L"page");
  std::vector<unsigned char> const arrBlue(64 * 64 * 4, 200);
  pWithoutViewport->CopyFromMemory(arrBlue.data(), 64 * 64 * 4);
  EXPECT_EQ(Find(Frame(), RED_PIXEL), QdcRect(0, 0, 8, 8));
  EXPECT_EQ(Find(QXPicture(*pSecond), RED_PIXEL, 32, 16), QdcRect(0, 0, 8, 8));
  EXPECT_EQ(Find(QXPicture(*pWindow), RED_PIXEL, 40, 31), QdcRect(0, 0, 8, 8));
  EXPECT_EQ(Find(QXPicture(*pMirror), BACKGROUND_PIXEL, 32, 32), QdcRect(0, 0, 32, 32));
  EXPECT_EQ(Find(QXPicture(*pSelection), QXPixel{0, 0, 0, 0}, 32, 32), QdcRect(0, 0, 32, 32));
  EXPECT_EQ(QXPicture(*pWithoutViewport).At(4, 4), (QXPixel{200, 200, 200, 200}));
}

TEST_F(QXOgreOverlays, TheyLieOverTheGlowAndDoNotGlow) {
  DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, 0.0F, RED);
  Make(L"a", {10.0, 4.0, 20.0, 8.0}, GREEN);
  QXBloomSetting setting;
  setting.m_dThreshold = 0.0;
  m_pGraphics3D->SetBloomSetting(setting);
  ASSERT_EQ(m_pGraphics3D->AddCompositor(m_pTarget, L"bloom"), 1) << Text(m_pGraphics3D->GetErrorText());
  QXPicture const picture = Frame();
  EXPECT_EQ(Find(picture, GREEN_PIXEL), QdcRect(10, 4, 20, 8));
  EXPECT_EQ(picture.At(15, 9), RED_PIXEL) << "nothing of the overlay's green shines beside it";
}

TEST_F(QXOgreOverlays, EdgesStaySharpWithSeveralSamplesAPixel) {
  m_pTarget->SetSceneAntialias(1);
  Make(L"a", {10.0, 4.0, 20.0, 8.0}, RED);
  EXPECT_EQ(Find(Frame(), RED_PIXEL), QdcRect(10, 4, 20, 8));
}

TEST_F(QXOgreOverlays, NamesAreTheirOwn) {
  auto const reason = [this] { return Text(m_pGraphics3D->GetErrorText()); };
  QXRenderOperationOverlay* const pFirst = Make(L"a", {0.0, 0.0, 8.0, 8.0}, RED);
  EXPECT_EQ(m_pGraphics3D->CreateOverlay(L"a"), nullptr);
  EXPECT_EQ(reason(), "an overlay needs an initialised renderer and a name of its own: 'a'");
  EXPECT_EQ(m_pGraphics3D->CreateOverlay(L""), nullptr);
  // Unknown ones are ignored.
  m_pGraphics3D->SetOverlayVisible(L"b", 0);
  m_pGraphics3D->SetOverlayPosition(L"b", 1.0, 1.0);
  m_pGraphics3D->SetOverlayZOrder(L"b", 1);
  m_pGraphics3D->DestroyOverlay(L"b");
  EXPECT_EQ(pFirst->IsVisible(), 1);
  EXPECT_EQ(Find(Frame(), RED_PIXEL), QdcRect(0, 0, 8, 8));
  m_pGraphics3D->DestroyOverlay(L"a");
  EXPECT_EQ(Frame().At(4, 4), BACKGROUND_PIXEL);
  Make(L"a", {0.0, 0.0, 8.0, 8.0}, GREEN);
  EXPECT_EQ(Frame().At(4, 4), GREEN_PIXEL);
}

TEST(QXOgreOverlay, NeedsARunningRenderer) {
  QXOgrePtr const pGraphics3D = MakeRenderer();
  EXPECT_EQ(pGraphics3D->CreateOverlay(L"a"), nullptr);
  EXPECT_EQ(Text(pGraphics3D->GetErrorText()), "an overlay needs an initialised renderer and a name of its own: 'a'");
  pGraphics3D->SetOverlayVisible(L"a", 1);
  pGraphics3D->SetOverlayPosition(L"a", 1.0, 1.0);
  pGraphics3D->SetOverlayZOrder(L"a", 1);
  pGraphics3D->DestroyOverlay(L"a");
}

TEST_F(QXOgreOverlays, PlacesFarOutAreCutOffExactlyAndThoseThatAreNoNumbersAreNone) {
  constexpr double NO_NUMBER = std::numeric_limits<double>::quiet_NaN();
  constexpr double INFINITE = std::numeric_limits<double>::infinity();
  QXRenderOperationOverlay* const pOverlay = Make(L"a", {-1.0e15, 10.0, 32.0, 1.0e15}, RED);
  EXPECT_EQ(Find(Frame(), RED_PIXEL), QdcRect(0, 10, 32, 64));
  for (QdcRect2D const& rc : {QdcRect2D(NO_NUMBER, 0.0, 8.0, 8.0), QdcRect2D(0.0, 0.0, 8.0, NO_NUMBER)}) {
    pOverlay->SetRect(rc);
    EXPECT_EQ(Find(Frame(), RED_PIXEL), QdcRect());
  }
  pOverlay->SetRect({0.0, -INFINITE, INFINITE, INFINITE});
  Frame();
  m_pGraphics3D->SetOverlayPosition(L"a", NO_NUMBER, INFINITE);
  EXPECT_EQ(Find(Frame(), RED_PIXEL), QdcRect());
  pOverlay->SetRect({0.0, 0.0, 8.0, 8.0});
  EXPECT_EQ(Find(Frame(), RED_PIXEL), QdcRect(0, 0, 8, 8));
}

}  // namespace QXC
