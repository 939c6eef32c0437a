// Texts that are drawn once, over the picture.
#include <limits>
#include <numbers>

#include <tests/ogre/QXOgreLabeling.h>

namespace QXC {

namespace {

constexpr unsigned int RED_WORD = 0xFF0000FF;
constexpr unsigned int GREEN_WORD = 0xFF00FF00;

}  // namespace

class QXOgreTextOut : public QXOgreLabeling {
protected:
  void SetUp() override {
    QXOgreLabeling::SetUp();
    // 15 points.
    m_pGraphics3D->SetRenderFont(L"Boxes", 20.0);
  }
  /// One frame with texts over it.
  QXPicture FrameWithTexts(QXRenderTarget* pTarget = nullptr) {
    m_pGraphics3D->UpdateAllRenderTargets();
    m_pGraphics3D->RenderTexts();
    return QXPicture(pTarget ? *pTarget : *m_pTarget);
  }
  /// Users of the glyph of a box at 15 points, without counting itself.
  static int GetUsers(int nGlyph) {
    QXTextureFontManager& manager = QXTextureFontManager::GetSingleton();
    QXTextStyle const style = MakeStyle(L"Boxes", 15);
    QXFontKey const key = QXTextLayout::MakeKey(static_cast<unsigned int>(0x4DFF + nGlyph), style, 0);
    QXTextureFont* const pFont = manager.GetTextureFont(key, style);
    int const nUsers = pFont ? pFont->m_nRefCount - 1 : -1;
    if (pFont) manager.DelTextureFont(key);
    return nUsers;
  }
};

TEST_F(QXOgreTextOut, AWindowPositionCountsFromTheLowerLeftCorner) {
  m_pGraphics3D->TextOut2DText(BoxText(4), 10.0, 20.0, RED_WORD);
  QXPicture const picture = FrameWithTexts();
  // The baseline is 20 pixels above the lower edge, and the box one pixel behind the pen.
  EXPECT_EQ(Words(Ink(picture)), "11 30 19 44");
  EXPECT_EQ(picture.At(11, 30), RED_PIXEL);
  EXPECT_EQ(picture.At(18, 43), RED_PIXEL);
}

TEST_F(QXOgreTextOut, AWorldPositionIsWhereTheBaselineBegins) {
  m_pGraphics3D->TextOut3DText(BoxText(4), -0.5, 0.25, 3.0, GREEN_WORD);
  QXPicture const picture = FrameWithTexts();
  EXPECT_EQ(Words(Ink(picture)), "17 10 25 24");
  EXPECT_EQ(picture.At(20, 20), GREEN_PIXEL);
}

TEST_F(QXOgreTextOut, LettersFollowEachOtherByTheirAdvance) {
  m_pGraphics3D->TextOut2DText(BoxText(1) + BoxText(2), 10.0, 20.0, RED_WORD);
  QXPicture const picture = FrameWithTexts();
  EXPECT_EQ(Words(Ink(picture)), "11 30 19 44");
  // Two columns, two between them, and four more.
  for (unsigned int x = 11; x < 19; ++x)
    EXPECT_EQ(picture.At(x, 35), x == 13 || x == 14 ? BACKGROUND_PIXEL : RED_PIXEL) << x;
}

TEST_F(QXOgreTextOut, AllOfThemAreDrawnWhateverStandsInFront) {
  DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, 5.0F, GREEN);
  m_pGraphics3D->TextOut3DText(BoxText(4), 0.0, 0.0, 0.0, RED_WORD);
  m_pGraphics3D->TextOut2DText(BoxText(4), 2.0, 2.0, RED_WORD);
  QXPicture const picture = FrameWithTexts();
  EXPECT_EQ(picture.At(36, 24), RED_PIXEL);
  EXPECT_EQ(picture.At(5, 55), RED_PIXEL);
  EXPECT_EQ(picture.At(50, 50), GREEN_PIXEL) << "the picture stays below them";
}

TEST_F(QXOgreTextOut, WindowTextsStandOverWorldTexts) {
  m_pGraphics3D->TextOut2DText(BoxText(4), 32.0, 32.0, RED_WORD);
  m_pGraphics3D->TextOut3DText(BoxText(4), 0.0, 0.0, 0.0, GREEN_WORD);
  EXPECT_EQ(FrameWithTexts().At(36, 24), RED_PIXEL);
}

TEST_F(QXOgreTextOut, TheyAreDrawnOnceOnly) {
  m_pGraphics3D->TextOut2DText(BoxText(4), 10.0, 20.0, RED_WORD);
  EXPECT_EQ(Words(Ink(Frame())), "64 64 0 0") << "RenderTexts has not been called";
  m_pGraphics3D->RenderTexts();
  EXPECT_EQ(Words(Ink(QXPicture(*m_pTarget))), "11 30 19 44");
  EXPECT_EQ(Words(Ink(FrameWithTexts())), "64 64 0 0") << "the text is gone";
}

TEST_F(QXOgreTextOut, TheFontCountsFromTheNextTextOn) {
  m_pGraphics3D->TextOut2DText(BoxText(1), 4.0, 40.0, RED_WORD);
  // 7.4 pixels are 5.55 points, so 6 of them, which are 8 pixels.
  m_pGraphics3D->SetRenderFont(L"Letters", 7.4);
  m_pGraphics3D->SetRenderFont(L"Boxes", 7.4);
  m_pGraphics3D->TextOut2DText(BoxText(10), 4.0, 10.0, GREEN_WORD);
  QXPicture const picture = FrameWithTexts();
  EXPECT_EQ(picture.At(5, 10), RED_PIXEL);
  EXPECT_EQ(picture.At(5, 23), RED_PIXEL);
  // A box of 8 by 5.6 pixels.
  EXPECT_EQ(picture.At(8, 53), GREEN_PIXEL);
  EXPECT_EQ(picture.At(8, 49), GREEN_PIXEL);
  EXPECT_EQ(picture.At(8, 47), BACKGROUND_PIXEL);
}

TEST_F(QXOgreTextOut, ThePictureIsThatOfTheViewportThatWasDrawnLast) {
  QXRenderTarget* const pWide = MakeTarget(L"wide", 128, 64);
  AddViewport(*pWide, *m_pCamera, 0, 0.0, 0.0, 0.5, 1.0);
  AddViewport(*pWide, *m_pCamera, 1, 0.5, 0.5, 0.5, 0.5);
  m_pGraphics3D->TextOut3DText(BoxText(4), 0.0, 0.0, 0.0, RED_WORD);
  m_pGraphics3D->TextOut2DText(BoxText(2), 70.0, 37.0, GREEN_WORD);
  m_pGraphics3D->TextOut2DText(BoxText(2), 14.0, 37.0, GREEN_WORD);
  m_pGraphics3D->TextOut2DText(BoxText(2), 110.0, 5.0, GREEN_WORD);
  QXPicture const picture = FrameWithTexts(pWide);
  EXPECT_EQ(picture.At(97, 2), RED_PIXEL) << "the middle of the second viewport";
  EXPECT_EQ(picture.At(71, 26), GREEN_PIXEL) << "positions count from the window's corner, not the viewport's";
  EXPECT_EQ(picture.At(15, 26), BACKGROUND_PIXEL) << "outside of the viewport";
  EXPECT_EQ(picture.At(79, 26), BACKGROUND_PIXEL) << "the same from its left edge";
  EXPECT_EQ(picture.At(111, 26), BACKGROUND_PIXEL) << "and from its lower one";
}

TEST_F(QXOgreTextOut, WorldTextsRiseWithTheHeights) {
  m_pCamera->SetProjectionType(PROJECTION_PERSPECTIVE);
  m_pCamera->SetProjectionMatrix(QXMathEngine::ComputePerspectiveMatrix(std::numbers::pi / 2.0, 1.0, 0.1, 1000.0));
  m_pTarget->SetVerticalExaggeration(2.0);
  // 4 below the eye, not 7: 32 x 1 / 4 pixels from the middle.
  m_pGraphics3D->TextOut3DText(BoxText(4), 1.0, 0.0, 3.0, RED_WORD);
  EXPECT_EQ(Words(Ink(FrameWithTexts())), "41 18 49 32");
}

TEST_F(QXOgreTextOut, FarFromTheOriginWorldTextsStandInTheirPlace) {
  QXVector3d const vecFar(4.0e6, 3.0e6, 0.0);
  m_pGraphics3D->SetRelativeOrigin(vecFar);
  m_pCamera->SetPosition(vecFar + QXVector3d(0.0, 0.0, 10.0));
  m_pGraphics3D->TextOut3DText(BoxText(4), 0.0, 0.0, 0.0, GREEN_WORD);
  m_pGraphics3D->TextOut3DText(BoxText(4), vecFar.x, vecFar.y, 0.0, RED_WORD);
  QXPicture const picture = FrameWithTexts();
  EXPECT_EQ(picture.At(36, 24), RED_PIXEL);
}

TEST_F(QXOgreTextOut, NothingIsDrawnAtWhatIsNoPlace) {
  double const dNone = std::numeric_limits<double>::quiet_NaN();
  m_pGraphics3D->TextOut3DText(BoxText(4), dNone, 0.0, 0.0, RED_WORD);
  m_pGraphics3D->TextOut2DText(BoxText(4), 0.0, std::numeric_limits<double>::infinity(), RED_WORD);
  m_pGraphics3D->TextOut3DText(BoxText(4), 0.0, 0.0, 0.0, RED_WORD);
  EXPECT_EQ(Words(Ink(FrameWithTexts())), "33 18 41 32") << "the others are drawn all the same";
}

TEST_F(QXOgreTextOut, CharactersWithoutGlyphsAreLeftOut) {
  m_pGraphics3D->TextOut2DText(L"\x10FFFF", 10.0, 20.0, RED_WORD);
  m_pGraphics3D->SetRenderFont(L"Boxes", 0.0);
  m_pGraphics3D->TextOut2DText(BoxText(4), 10.0, 20.0, RED_WORD);
  m_pGraphics3D->SetRenderFont(L"Boxes", std::numeric_limits<double>::quiet_NaN());
  m_pGraphics3D->TextOut2DText(BoxText(4), 10.0, 20.0, RED_WORD);
  EXPECT_EQ(Words(Ink(FrameWithTexts())), "64 64 0 0");
}

TEST_F(QXOgreTextOut, ASizeThatIsNoNumberShowsNoOtherText) {
  m_pGraphics3D->TextOut2DText(BoxText(4), 10.0, 20.0, GREEN_WORD);
  std::string const strAlone = Words(Ink(FrameWithTexts()));
  for (double const dSize : {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()}) {
    m_pGraphics3D->SetRenderFont(L"Boxes", 20.0);
    m_pGraphics3D->TextOut2DText(BoxText(4), 10.0, 20.0, GREEN_WORD);
    m_pGraphics3D->SetRenderFont(L"Boxes", dSize);
    m_pGraphics3D->TextOut2DText(BoxText(4), 10.0, 44.0, RED_WORD);
    EXPECT_EQ(Words(Ink(FrameWithTexts())), strAlone) << dSize;
  }
}

TEST_F(QXOgreTextOut, GlyphsStayAsLongAsTheTextIsSaidAgain) {
  m_pGraphics3D->TextOut2DText(BoxText(4), 10.0, 20.0, RED_WORD);
  m_pGraphics3D->TextOut2DText(BoxText(4), 10.0, 40.0, RED_WORD);
  FrameWithTexts();
  EXPECT_EQ(GetUsers(4), 1) << "one text in two places is laid out once";
  m_pGraphics3D->TextOut2DText(BoxText(4), 10.0, 20.0, GREEN_WORD);
  EXPECT_EQ(FrameWithTexts().At(15, 35), GREEN_PIXEL);
  EXPECT_EQ(GetUsers(4), 1);
  FrameWithTexts();
  EXPECT_EQ(GetUsers(4), 0);
}

TEST_F(QXOgreTextOut, ClearingTheResourcesGivesTheGlyphsBack) {
  m_pGraphics3D->TextOut2DText(BoxText(4), 10.0, 20.0, RED_WORD);
  FrameWithTexts();
  m_pGraphics3D->ClearResource();
  EXPECT_EQ(GetUsers(4), 0);
  m_pGraphics3D->TextOut2DText(BoxText(4), 10.0, 20.0, RED_WORD);
  EXPECT_EQ(FrameWithTexts().At(15, 35), RED_PIXEL) << "it can be drawn again";
}

TEST_F(QXOgreTextOut, AViewportThatHasGoneIsNotDrawnInto) {
  QXRenderTarget* const pOther = MakeTarget(L"z", 32, 32);
  AddViewport(*pOther, *m_pCamera, 0, 0.0, 0.0, 1.0, 1.0);
  m_pGraphics3D->UpdateAllRenderTargets();
  m_pGraphics3D->TextOut2DText(BoxText(4), 10.0, 10.0, RED_WORD);
  m_pGraphics3D->DeleteRenderTarget(pOther);
  m_pGraphics3D->RenderTexts();
  EXPECT_EQ(Words(Ink(QXPicture(*m_pTarget))), "64 64 0 0");
  EXPECT_EQ(Words(Ink(FrameWithTexts())), "64 64 0 0") << "the text went with the picture that it was meant for";
}

TEST_F(QXOgreTextOut, TheyCountAmongWhatIsDrawn) {
  m_pGraphics3D->TextOut2DText(BoxText(4) + BoxText(5), 10.0, 10.0, RED_WORD);
  Frame();
  EXPECT_EQ(m_pGraphics3D->GetFaceCount(), 0U);
  m_pGraphics3D->RenderTexts();
  EXPECT_EQ(m_pGraphics3D->GetFaceCount(), 4U);
  EXPECT_EQ(m_pGraphics3D->GetDrawOperationCount(), 1U);
}

TEST_F(QXOgreTextOut, TextsInSeveralSamplesAPixelAreThere) {
  m_pTarget->SetSceneAntialias(1);
  m_pGraphics3D->TextOut2DText(BoxText(4), 10.0, 20.0, RED_WORD);
  EXPECT_EQ(FrameWithTexts().At(15, 35), RED_PIXEL);
}

TEST(QXOgreTextOutWithoutDevice, ARendererThatIsNotInitialisedTakesTextsAndDrawsNone) {
  QXOgrePtr const pGraphics3D = MakeRenderer();
  pGraphics3D->SetRenderFont(L"Boxes", 20.0);
  pGraphics3D->TextOut2DText(L"text", 1.0, 2.0, 0xFFFFFFFF);
  pGraphics3D->TextOut3DText(L"text", 1.0, 2.0, 3.0, 0xFFFFFFFF);
  pGraphics3D->RenderTexts();
  EXPECT_EQ(pGraphics3D->IsInitialized(), 0);
}

}  // namespace QXC
