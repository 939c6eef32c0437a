#include <cmath>

#include <QxGraphics3D/frame/QXRenderTargetListener.h>

#include <tests/ogre/QXOgreScenery.h>

namespace QXC {

namespace {

struct QXCountingListener final : QXRenderTargetListener {
  explicit QXCountingListener(QXRenderTarget& target) : m_Target(target) {}
  void BeforeRender() override {
    ++m_nBefore;
    m_nTrianglesAfter = -1;
  }
  void PostRender() override {
    ++m_nAfter;
    m_nTrianglesAfter = m_Target.GetTriangleCount();
  }
  QXRenderTarget& m_Target;
  int m_nBefore = 0;
  int m_nAfter = 0;
  int m_nTrianglesAfter = -1;
};

}  // namespace

using QXOgreRenderTarget = QXOgreScenery;

TEST_F(QXOgreRenderTarget, AnEmptySceneShowsTheBackgroundOfTheViewport) {
  m_pViewport->m_BackgroundColor = QXColorValue3D(0.2, 0.4, 0.6, 1.0);
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(0, 0), (QXPixel{51, 102, 153, 255}));
  EXPECT_EQ(picture.At(63, 63), (QXPixel{51, 102, 153, 255}));
}

TEST_F(QXOgreRenderTarget, PicturesAreReadTopDownAsBlueGreenRedAlpha) {
  DrawSquare(0.5F, 0.5F, 1.0F, 1.0F, 0.0F, QXColorValue3D(1.0, 0.8, 0.6, 1.0));
  m_pGraphics3D->UpdateAllRenderTargets();
  std::vector<unsigned char> arrBytes(SIZE * SIZE * 4);
  ASSERT_EQ(m_pTarget->CopyToMemory(arrBytes.data(), SIZE * SIZE * 4), 1);
  // The upper right corner ends the first row.
  unsigned char const* const p = arrBytes.data() + (SIZE - 1) * 4;
  EXPECT_EQ(p[0], 153);
  EXPECT_EQ(p[1], 204);
  EXPECT_EQ(p[2], 255);
  EXPECT_EQ(p[3], 255);
  EXPECT_EQ(arrBytes[0], 51);
}

TEST_F(QXOgreRenderTarget, TooLittleMemoryIsRefusedUntouched) {
  m_pGraphics3D->UpdateAllRenderTargets();
  std::vector<unsigned char> arrBytes(SIZE * SIZE * 4, 0xAB);
  EXPECT_EQ(m_pTarget->CopyToMemory(arrBytes.data(), SIZE * SIZE * 4 - 1), 0);
  EXPECT_EQ(m_pTarget->CopyToMemory(nullptr, SIZE * SIZE * 4), 0);
  EXPECT_EQ(arrBytes, std::vector<unsigned char>(SIZE * SIZE * 4, 0xAB));
  EXPECT_FALSE(m_pGraphics3D->GetErrorText().IsEmpty());
}

TEST_F(QXOgreRenderTarget, ViewportsFillTheirPixelsExactly) {
  // Widths that leave fractions of pixels behind.
  QXRenderTarget* const pTarget = MakeTarget(L"odd", 101, 67);
  struct Place {
    double dLeft, dBottom, dWidth, dHeight;
    QXColorValue3D color;
  } const arrPlaces[] = {{0.0, 0.0, 1.0 / 3.0, 0.5, RED}, {1.0 / 3.0, 0.0, 2.0 / 3.0, 0.5, GREEN},
      {0.0, 0.5, 0.7, 0.5, QXColorValue3D::White}};
  int nZOrder = 0;
  for (Place const& place : arrPlaces) {
    AddViewport(*pTarget, *m_pCamera, nZOrder++, place.dLeft, place.dBottom, place.dWidth, place.dHeight)
        ->m_BackgroundColor = place.color;
  }
  QXPicture const picture = Frame(pTarget);
  for (unsigned short i = 0; i < 3; ++i) {
    QXViewport const* const pViewport = pTarget->GetViewport(i);
    int const nLeft = pViewport->GetActualLeft();
    int const nRight = nLeft + pViewport->GetActualWidth() - 1;
    int const nTop = 67 - pViewport->GetActualBottom() - pViewport->GetActualHeight();
    int const nLow = 67 - pViewport->GetActualBottom() - 1;
    QXColorValue3D const& color = pViewport->m_BackgroundColor;
    QXPixel const pixel{
        static_cast<int>(color.r * 255), static_cast<int>(color.g * 255), static_cast<int>(color.b * 255), 255};
    auto const at = [&](int x, int y) {
      return picture.At(static_cast<unsigned int>(x), static_cast<unsigned int>(y));
    };
    EXPECT_EQ(at(nLeft, nTop), pixel) << i;
    EXPECT_EQ(at(nRight, nTop), pixel) << i;
    EXPECT_EQ(at(nLeft, nLow), pixel) << i;
    EXPECT_EQ(at(nRight, nLow), pixel) << i;
    if (nLeft > 0) {
      EXPECT_NE(at(nLeft - 1, nLow), pixel) << i;
    }
    if (nTop > 0) {
      EXPECT_NE(at(nRight, nTop - 1), pixel) << i;
    }
  }
}

TEST_F(QXOgreRenderTarget, EachViewportShowsTheSceneThroughItsCamera) {
  QXCamera* const pBeside = MakeCamera(L"beside");
  pBeside->SetPosition(2.0, 0.0, 10.0);
  DrawSquare(-0.9F, -1.0F, 0.9F, 1.0F, 0.0F, RED);
  DrawSquare(1.1F, -1.0F, 2.9F, 1.0F, 0.0F, GREEN);
  AddViewport(*m_pTarget, *pBeside, 1, 0.5, 0.0, 0.5, 1.0);
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(16, 32), RED_PIXEL);
  EXPECT_EQ(picture.At(48, 32), GREEN_PIXEL);
  EXPECT_EQ(m_pTarget->GetTriangleCount(), 4);
}

TEST_F(QXOgreRenderTarget, HigherZOrdersAreDrawnOnTop) {
  AddViewport(*m_pTarget, *m_pCamera, 7, 0.25, 0.25, 0.5, 0.5)->m_BackgroundColor = GREEN;
  AddViewport(*m_pTarget, *m_pCamera, 3, 0.0, 0.0, 0.5, 0.5)->m_BackgroundColor = RED;
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(4, 60), RED_PIXEL);
  EXPECT_EQ(picture.At(24, 40), GREEN_PIXEL);
  EXPECT_EQ(picture.At(4, 4), BACKGROUND_PIXEL);
}

TEST_F(QXOgreRenderTarget, InTheOrderedModeOneCameraServesSeveralViewports) {
  m_pTarget->SetMultiViewportMode(MVM_ORDERED);
  m_pCamera->SetProjectionMatrix(QXMatrix4d::ZERO);
  m_pCamera->SetOrthoWindowHeight(2.0);
  AddViewport(*m_pTarget, *m_pCamera, 5, 0.0, 0.0, 0.5, 1.0);
  DrawSquare(-0.4F, -0.4F, 0.4F, 0.4F, 0.0F, RED);
  QXPicture const picture = Frame();
  // The narrow viewport lies on the left half: its square keeps its shape, 25.6 pixels wide, about x = 16.
  EXPECT_EQ(picture.At(16, 32), RED_PIXEL);
  EXPECT_EQ(picture.At(5, 32), RED_PIXEL);
  EXPECT_EQ(picture.At(1, 32), BACKGROUND_PIXEL);
  EXPECT_EQ(m_pTarget->GetViewport(1)->GetZOrder(), 1);
}

TEST_F(QXOgreRenderTarget, WithoutClearingTheFormerPictureStays) {
  QXRenderOperation3D* const pOperation = DrawSquare(-1.0F, -1.0F, 0.0F, 1.0F, 0.0F, RED);
  Frame();
  m_pViewport->m_bClearEveryFrame = 0;
  QXMatrix4d mat;
  mat.SetTrans({1.0, 0.0, 0.0});
  pOperation->SetModelMatrix(mat);
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(16, 32), RED_PIXEL);
  EXPECT_EQ(picture.At(48, 32), RED_PIXEL);
}

TEST_F(QXOgreRenderTarget, ColourAndDepthAreClearedAsTheirBitsSay) {
  QXRenderOperation3D* const pNear = DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, 5.0F, RED);
  QXRenderOperation3D* const pFar = DrawSquare(-0.5F, -0.5F, 0.5F, 0.5F, 0.0F, GREEN);
  Frame();
  pNear->SetVisible(0);
  // Colour alone: the depth of the near square still hides the far one.
  m_pViewport->m_nClearBuffers = 1;
  EXPECT_EQ(Frame().At(32, 32), BACKGROUND_PIXEL);
  // Depth alone: the far square shows, on what stood there.
  m_pViewport->m_nClearBuffers = 2;
  m_pViewport->m_BackgroundColor = QXColorValue3D::White;
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(32, 32), GREEN_PIXEL);
  EXPECT_EQ(picture.At(2, 2), BACKGROUND_PIXEL);
  pFar->SetVisible(0);
}

TEST_F(QXOgreRenderTarget, AnOverlayViewportMayClearDepthAloneAndDrawOverTheOther) {
  ASSERT_EQ(m_pGraphics3D->CreateScene(L"over"), 1);
  QXCamera* const pOver = MakeCamera(L"over", L"over");
  AddViewport(*m_pTarget, *pOver, 1, 0.0, 0.0, 1.0, 1.0)->m_nClearBuffers = 2;
  DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, 5.0F, RED);
  auto const pMesh = MakeMesh({{-0.5F, -0.5F, 0.0F}, {0.5F, -0.5F, 0.0F}, {0.5F, 0.5F, 0.0F}});
  AddRange<unsigned short>(*pMesh, {0, 1, 2}, GREEN);
  Draw(*pMesh, L"over");
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(40, 40), GREEN_PIXEL);
  EXPECT_EQ(picture.At(4, 4), RED_PIXEL);
}

TEST_F(QXOgreRenderTarget, AViewportWithoutTheSceneFlagIsClearedOnly) {
  DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, 0.0F, RED);
  m_pViewport->m_bRenderSceneFlag = 0;
  EXPECT_EQ(Frame().At(32, 32), BACKGROUND_PIXEL);
  EXPECT_EQ(m_pGraphics3D->GetDrawOperationCount(), 0U);
}

TEST_F(QXOgreRenderTarget, TwoTargetsShowTwoPictures) {
  ASSERT_EQ(m_pGraphics3D->CreateScene(L"other"), 1);
  QXRenderTarget* const pOther = MakeTarget(L"other", 32, 16);
  QXCamera* const pCamera = MakeCamera(L"other", L"other");
  AddViewport(*pOther, *pCamera, 0, 0.0, 0.0, 1.0, 1.0);
  DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, 0.0F, RED);
  auto const pMesh = MakeMesh({{-1.0F, -1.0F, 0.0F}, {1.0F, -1.0F, 0.0F}, {1.0F, 1.0F, 0.0F}});
  AddRange<unsigned short>(*pMesh, {0, 1, 2}, GREEN);
  Draw(*pMesh, L"other");
  QXPicture const first = Frame();
  QXPicture const second(*pOther);
  EXPECT_EQ(first.At(32, 32), RED_PIXEL);
  EXPECT_EQ(second.At(30, 14), GREEN_PIXEL);
  EXPECT_EQ(second.At(1, 1), BACKGROUND_PIXEL);
  EXPECT_EQ(m_pTarget->GetTriangleCount(), 2);
  EXPECT_EQ(pOther->GetTriangleCount(), 1);
  EXPECT_EQ(m_pGraphics3D->GetFaceCount(), 3U);
}

TEST_F(QXOgreRenderTarget, AnInactiveTargetKeepsItsPicture) {
  QXRenderOperation3D* const pOperation = DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, 0.0F, RED);
  Frame();
  m_pTarget->SetActive(0);
  pOperation->SetVisible(0);
  EXPECT_EQ(Frame().At(32, 32), RED_PIXEL);
  m_pTarget->SetCurTargetRefresh(1);
  EXPECT_EQ(Frame().At(32, 32), BACKGROUND_PIXEL);
}

TEST_F(QXOgreRenderTarget, ResizingTakesTheViewportsAlong) {
  DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, 0.0F, RED);
  m_pTarget->ReSize(100, 30);
  EXPECT_EQ(m_pTarget->GetWidth(), 100U);
  EXPECT_EQ(m_pTarget->GetHeight(), 30U);
  EXPECT_EQ(m_pViewport->GetActualWidth(), 100);
  EXPECT_EQ(Frame().At(99, 29), RED_PIXEL);
  m_pTarget->ReSize(0, 30);
  m_pTarget->ReSize(100, 1000000);
  EXPECT_EQ(m_pTarget->GetWidth(), 100U);
  EXPECT_EQ(Frame().At(99, 29), RED_PIXEL);
}

TEST_F(QXOgreRenderTarget, SeveralSamplesAPixelSmoothEdges) {
  auto const pMesh = MakeMesh({{-1.0F, -1.0F, 0.0F}, {1.0F, -1.0F, 0.0F}, {-1.0F, 0.8F, 0.0F}});
  AddRange<unsigned short>(*pMesh, {0, 1, 2}, RED);
  Draw(*pMesh);
  auto const mixed = [](QXPicture const& picture) {
    int nMixed = 0;
    for (unsigned int y = 0; y < SIZE; ++y)
      for (unsigned int x = 0; x < SIZE; ++x) nMixed += picture.At(x, y).r > 10 && picture.At(x, y).r < 245;
    return nMixed;
  };
  EXPECT_EQ(m_pTarget->GetSceneAntialias(), 0);
  EXPECT_EQ(m_pTarget->GetSceneAntialiasValue(), 1);
  EXPECT_EQ(mixed(Frame()), 0);
  m_pTarget->SetSceneAntialias(1);
  EXPECT_EQ(m_pTarget->GetSceneAntialias(), 1);
  EXPECT_EQ(m_pTarget->GetSceneAntialiasValue(), 4);
  QXPicture const smooth = Frame();
  EXPECT_GT(mixed(smooth), 20);
  EXPECT_EQ(smooth.At(4, 60), RED_PIXEL);
  m_pTarget->SetSceneAntialiasValue(0);
  EXPECT_EQ(m_pTarget->GetSceneAntialiasValue(), 1);
  EXPECT_EQ(mixed(Frame()), 0);
}

TEST_F(QXOgreRenderTarget, AViewportTurnedInsideOutDrawsNothing) {
  m_pViewport->SetActualWidth(-10);
  m_pGraphics3D->UpdateAllRenderTargets();
  EXPECT_EQ(m_pGraphics3D->GetDrawOperationCount(), 0U);
  m_pViewport->UpdateDimensions();
  EXPECT_EQ(Frame().At(32, 32), BACKGROUND_PIXEL);
}

TEST_F(QXOgreRenderTarget, AViewportBeyondTheTargetIsCutAtItsEdge) {
  AddViewport(*m_pTarget, *m_pCamera, 1, 0.5, 0.5, 1.0, 1.0)->m_BackgroundColor = GREEN;
  AddViewport(*m_pTarget, *m_pCamera, 2, -0.5, -0.5, 1.0, 1.0)->m_BackgroundColor = RED;
  DrawSquare(-0.2F, -0.2F, 0.2F, 0.2F, 0.0F, QXColorValue3D::White);
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(40, 28), GREEN_PIXEL);
  EXPECT_EQ(picture.At(62, 2), (QXPixel{255, 255, 255, 255}));
  EXPECT_EQ(picture.At(1, 62), (QXPixel{255, 255, 255, 255}));
  EXPECT_EQ(picture.At(30, 34), RED_PIXEL);
  EXPECT_EQ(picture.At(20, 20), BACKGROUND_PIXEL);
}

TEST_F(QXOgreRenderTarget, APictureWrittenIsThePictureRead) {
  std::vector<unsigned char> arrBytes(SIZE * SIZE * 4);
  for (std::size_t i = 0; i < arrBytes.size(); ++i) arrBytes[i] = static_cast<unsigned char>(i * 7 + i / 256);
  m_pGraphics3D->UpdateAllRenderTargets();
  m_pTarget->CopyFromMemory(arrBytes.data(), SIZE * SIZE * 4 - 1);
  EXPECT_NE(QXPicture(*m_pTarget).GetBytes(), arrBytes);
  m_pTarget->CopyFromMemory(arrBytes.data(), SIZE * SIZE * 4);
  EXPECT_EQ(QXPicture(*m_pTarget).GetBytes(), arrBytes);
}

TEST_F(QXOgreRenderTarget, BackgroundAndClearingOfAllViewportsAreSetAtOnce) {
  QXViewport const* const pSecond = AddViewport(*m_pTarget, *m_pCamera, 1, 0.0, 0.0, 0.5, 0.5);
  m_pTarget->SetBackgroundColor(GREEN);
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(4, 60), GREEN_PIXEL);
  EXPECT_EQ(picture.At(60, 4), GREEN_PIXEL);
  unsigned char bClear = 0;
  unsigned int nBuffers = 0;
  m_pTarget->GetClearEveryFrame(bClear, nBuffers);
  EXPECT_EQ(bClear, 1);
  EXPECT_EQ(nBuffers, 3U);
  m_pTarget->SetClearEveryFrame(0, 2);
  m_pTarget->GetClearEveryFrame(bClear, nBuffers);
  EXPECT_EQ(bClear, 0);
  EXPECT_EQ(nBuffers, 2U);
  EXPECT_EQ(pSecond->m_nClearBuffers, 2U);
  MakeTarget(L"bare")->GetClearEveryFrame(bClear, nBuffers);
  EXPECT_EQ(bClear, 1);
  EXPECT_EQ(nBuffers, 3U);
}

TEST_F(QXOgreRenderTarget, TheListenerIsCalledAroundTheDrawing) {
  DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, 0.0F, RED);
  QXCountingListener listener(*m_pTarget);
  m_pTarget->SetListener(&listener);
  Frame();
  m_pTarget->SetListener(nullptr);
  Frame();
  EXPECT_EQ(listener.m_nBefore, 1);
  EXPECT_EQ(listener.m_nAfter, 1);
  EXPECT_EQ(listener.m_nTrianglesAfter, 2);
}

TEST_F(QXOgreRenderTarget, ThePendingStateOfTheCameraIsPassedOnOnce) {
  m_pCamera->m_bTargetNotifyPending = 1;
  Frame();
  EXPECT_EQ(m_pCamera->m_bTargetNotifyPending, 0);
}

TEST_F(QXOgreRenderTarget, TheRenderStateShowsEdgesOrCornersOfEverything) {
  auto const pMesh = MakeMesh({{-0.5F, -0.5F, 0.0F}, {0.5F, -0.5F, 0.0F}, {0.5F, 0.5F, 0.0F}});
  AddRange<unsigned short>(*pMesh, {0, 1, 2}, RED);
  Draw(*pMesh);
  auto const red = [this] {
    QXPicture const picture = Frame();
    int nRed = 0;
    for (unsigned int y = 0; y < SIZE; ++y)
      for (unsigned int x = 0; x < SIZE; ++x) nRed += picture.At(x, y) == RED_PIXEL;
    return nRed;
  };
  int const nSolid = red();
  EXPECT_EQ(m_pTarget->SetRenderState(RENDER_STATE_LINE), RENDER_STATE_SOLID);
  int const nLine = red();
  m_pTarget->SetRenderState(RENDER_STATE_POINT);
  int const nPoint = red();
  EXPECT_NEAR(nSolid, 512, 40);
  EXPECT_NEAR(nLine, 96, 10);
  EXPECT_EQ(nPoint, 3);
}

TEST_F(QXOgreRenderTarget, ExaggeratedHeightsAreCountedFromZero) {
  // Seen from the south: height is up in the picture.
  m_pCamera->SetPosition(0.0, -10.0, 0.0);
  m_pCamera->Pitch(std::acos(0.0));
  auto const pMesh = MakeMesh({{-1.0F, 0.0F, 0.2F}, {1.0F, 0.0F, 0.2F}, {1.0F, 0.0F, 0.3F}, {-1.0F, 0.0F, 0.3F}});
  AddRange<unsigned short>(*pMesh, {0, 1, 2, 0, 2, 3}, RED);
  QXRenderOperation3D* const pOperation = Draw(*pMesh);
  // 0.2..0.3 is 6.4..9.6 pixels above the middle; at three times the height 19.2..28.8.
  EXPECT_EQ(Frame().At(32, 24), RED_PIXEL);
  m_pTarget->SetVerticalExaggeration(3.0);
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(32, 24), BACKGROUND_PIXEL);
  EXPECT_EQ(picture.At(32, 8), RED_PIXEL);
  EXPECT_EQ(picture.At(32, 14), BACKGROUND_PIXEL);
  // The factor is on heights above zero, wherever the origin and the drawable stand.
  m_pGraphics3D->SetRelativeOrigin({10.0, 10.0, 5.0});
  QXMatrix4d mat;
  mat.SetTrans({0.0, 0.0, -0.5});
  pOperation->SetModelMatrix(mat);
  EXPECT_EQ(Frame().At(32, 56), RED_PIXEL);
}

TEST_F(QXOgreRenderTarget, ExaggerationMovesWhatIsCulledToo) {
  m_pCamera->SetPosition(0.0, -10.0, 3.0);
  m_pCamera->Pitch(std::acos(0.0));
  auto const pMesh = MakeMesh({{-1.0F, 0.0F, 0.9F}, {1.0F, 0.0F, 0.9F}, {1.0F, 0.0F, 1.1F}, {-1.0F, 0.0F, 1.1F}});
  AddRange<unsigned short>(*pMesh, {0, 1, 2, 0, 2, 3}, RED);
  Draw(*pMesh);
  Frame();
  EXPECT_EQ(m_pGraphics3D->GetDrawOperationCount(), 0U);
  m_pTarget->SetVerticalExaggeration(3.0);
  EXPECT_EQ(Frame().At(32, 32), RED_PIXEL);
}

TEST_F(QXOgreRenderTarget, APatchIsDrawnFromAboveAndTheRestStays) {
  QXRenderTarget* const pBig = m_pGraphics3D->CreateRenderTexture(L"big", PF_A8R8G8B8, 64, 64, 0, 32, L"");
  ASSERT_NE(pBig, nullptr);
  pBig->SetSunLightEnable(0);
  std::vector<unsigned char> const arrWhite(64 * 64 * 4, 0xFF);
  pBig->CopyFromMemory(arrWhite.data(), 64 * 64 * 4);
  auto const pMesh = MakeMesh({{0.0F, 0.0F, 3.0F}, {16.0F, 0.0F, 3.0F}, {16.0F, 8.0F, -2.0F}, {0.0F, 8.0F, -2.0F}});
  AddRange<unsigned short>(*pMesh, {0, 1, 2, 0, 2, 3}, RED);
  Draw(*pMesh);
  QXViewport* const pBefore = m_pGraphics3D->GetViewport();
  // The lower right quarter shows 16 x 16 units about (8, 8): the quad fills its lower half.
  m_pGraphics3D->RenderPatchToTexture(8.0, 8.0, 16.0, 16.0, pBig, QdcRect2D(0.5, 0.0, 1.0, 0.5));
  QXPicture const picture(*pBig);
  EXPECT_EQ(picture.At(34, 62), RED_PIXEL);
  EXPECT_EQ(picture.At(62, 49), RED_PIXEL);
  EXPECT_EQ(picture.At(62, 46), (QXPixel{0, 0, 0, 0}));
  EXPECT_EQ(picture.At(34, 33), (QXPixel{0, 0, 0, 0}));
  EXPECT_EQ(picture.At(30, 62), (QXPixel{255, 255, 255, 255}));
  EXPECT_EQ(picture.At(34, 30), (QXPixel{255, 255, 255, 255}));
  EXPECT_EQ(m_pGraphics3D->GetViewport(), pBefore);
  m_pGraphics3D->RenderPatchToTexture(8.0, 8.0, 16.0, 16.0, nullptr, QdcRect2D(0.0, 0.0, 1.0, 1.0));
  delete pBig;
}

TEST_F(QXOgreRenderTarget, APixelRectangleCountsFromTheBottomAndIsReadTopDown) {
  DrawSquare(-1.0F, -1.0F, 0.0F, 0.0F, 0.0F, RED);
  m_pGraphics3D->UpdateAllRenderTargets();
  std::vector<unsigned char> arrBytes(2 * 3 * 4, 0xAB);
  // Columns 31 and 32, three rows of which the upper one lies above the square.
  ASSERT_EQ(m_pGraphics3D->ReadPixels(m_pTarget, QdcRect(31, 30, 33, 33), arrBytes.data(), 24), 1);
  EXPECT_EQ(arrBytes[2], 0);
  EXPECT_EQ(arrBytes[8 + 2], 255);
  EXPECT_EQ(arrBytes[12 + 2], 0);
  EXPECT_EQ(arrBytes[16 + 2], 255);
  EXPECT_EQ(m_pGraphics3D->ReadPixels(m_pTarget, QdcRect(31, 30, 33, 33), arrBytes.data(), 23), 0);
  EXPECT_EQ(m_pGraphics3D->ReadPixels(m_pTarget, QdcRect(62, 0, 65, 2), arrBytes.data(), 24), 0);
  EXPECT_EQ(m_pGraphics3D->ReadPixels(m_pTarget, QdcRect(3, 3, 2, 4), arrBytes.data(), 24), 0);
  EXPECT_EQ(m_pGraphics3D->ReadPixels(m_pTarget, QdcRect(3, 3, 3, 4), arrBytes.data(), 0), 1) << "no pixels, all read";
  EXPECT_EQ(m_pGraphics3D->ReadPixels(nullptr, QdcRect(0, 0, 1, 1), arrBytes.data(), 24), 0);
}

}  // namespace QXC
