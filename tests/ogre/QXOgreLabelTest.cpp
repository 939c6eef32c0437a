// Label drawables: glyphs that face the camera or lie in the world.
#include <cmath>
#include <cstdlib>
#include <numbers>

#include <tests/ogre/QXOgreLabeling.h>

namespace QXC {

namespace {

constexpr QXPixel WHITE_PIXEL{255, 255, 255, 255};
constexpr unsigned int RED_WORD = 0xFF0000FF;
constexpr unsigned int GREEN_WORD = 0xFF00FF00;

/// The font engine's picture of a character, and where it begins to the right of the pen and above the baseline.
struct QXDrawnGlyph {
  QXDrawnGlyph(unsigned int nCharacter, QXTextStyle const& style, unsigned char bHalo = 0) {
    QXTrueType& fonts = QXTrueType::GetSingleton();
    fonts.SetTextStyle(style);
    m_pBitmap.reset(fonts.GetBitmapData(static_cast<int>(nCharacter), bHalo));
  }
  int At(int x, int y) const { return m_pBitmap->m_pData[(y * m_pBitmap->m_nWidth + x) * 2 + 1]; }
  std::unique_ptr<QXCharBitmapData> m_pBitmap;
};

}  // namespace

// --- Pages ---

TEST_F(QXOgreLabeling, APageHasLuminanceAndAlpha) {
  QXTexture* const pTexture = MakeTexture(3, 2, PF_BYTE_LA, {255, 0, 128, 255, 0, 7, 1, 2, 200, 100, 255, 255});
  QXTexels const texels(pTexture);
  EXPECT_EQ(texels.At(0, 0), (QXPixel{255, 255, 255, 0}));
  EXPECT_EQ(texels.At(1, 0), (QXPixel{128, 128, 128, 255}));
  EXPECT_EQ(texels.At(2, 0), (QXPixel{0, 0, 0, 7}));
  EXPECT_EQ(texels.At(0, 1), (QXPixel{1, 1, 1, 2}));
  EXPECT_EQ(texels.At(1, 1), (QXPixel{200, 200, 200, 100}));
  EXPECT_EQ(texels.At(2, 1), WHITE_PIXEL);
}

TEST_F(QXOgreLabeling, APartOfOddWidthOfAPageStandsInItsPlace) {
  QXTexture* const pTexture = MakeTexture(5, 4, PF_BYTE_LA, std::vector<unsigned char>(40, 0));
  unsigned char const arrPart[] = {255, 1, 255, 2, 255, 3, 255, 4, 255, 5, 255, 6, 255, 7, 255, 8, 255, 9};
  pTexture->LoadSubTexture(1, 1, 3, 3, 3, 3, arrPart, 0);
  QXTexels const texels(pTexture);
  for (int y = 0; y < 4; ++y)
    for (int x = 0; x < 5; ++x) {
      bool const bInside = x >= 1 && x <= 3 && y >= 1;
      int const nAlpha = bInside ? 3 * (y - 1) + x : 0;
      int const nGray = bInside ? 255 : 0;
      EXPECT_EQ(texels.At(static_cast<unsigned int>(x), static_cast<unsigned int>(y)),
          (QXPixel{nGray, nGray, nGray, nAlpha}));
    }
}

TEST_F(QXOgreLabeling, APageIsDrawnAsColourTimesLuminanceAndBlendedByItsAlpha) {
  QXTexture* const pTexture = MakeTexture(2, 1, PF_BYTE_LA, {255, 128, 128, 255});
  auto const pMesh = MakeTexturedMesh();
  AddTexturedRange(*pMesh, pTexture, RED);
  Draw(*pMesh);
  QXPicture const picture = Frame();
  EXPECT_NEAR(picture.At(10, 32).r, 128, 1);
  EXPECT_NEAR(picture.At(10, 32).b, 26, 1) << "half of the background";
  EXPECT_NEAR(picture.At(50, 32).r, 128, 1);
  EXPECT_EQ(picture.At(50, 32).b, 0);
}

TEST_F(QXOgreLabeling, GlyphsReachTheirPageWithTheNextPicture) {
  QXTextLayout const& layout = LayOut(BoxText(2), MakeStyle(L"Boxes", 15));
  Frame();
  QXTextureFont::TexCoords const& part = layout.GetGlyphs().at(0).m_TexCoords;
  auto const x = static_cast<unsigned int>(std::lround(part.m_fLeft * 1024));
  auto const y = static_cast<unsigned int>(std::lround(part.m_fBottom * 1024));
  QXTexels const texels(GetPage());
  EXPECT_EQ(texels.At(x + 1, y + 1), WHITE_PIXEL);
  EXPECT_EQ(texels.At(x + 4, y + 14), WHITE_PIXEL);
  EXPECT_EQ(texels.At(x, y + 1).a, 0) << "the margin";
  EXPECT_EQ(texels.At(x + 5, y + 14).a, 0);
}

// --- Labels that face the camera ---

TEST_F(QXOgreLabeling, ABoxStandsOnItsAnchorPixelByPixel) {
  DrawLabel(LayOut(BoxText(4), MakeStyle(L"Boxes", 15)), {0.0, 0.0, 0.0});
  QXPicture const picture = Frame();
  // One pixel behind the pen, 8 wide, and 14 high above the baseline in the middle of the picture.
  EXPECT_EQ(Words(Ink(picture)), "33 18 41 32");
  for (unsigned int y = 18; y < 32; ++y)
    for (unsigned int x = 33; x < 41; ++x) EXPECT_EQ(picture.At(x, y), WHITE_PIXEL) << x << ", " << y;
}

TEST_F(QXOgreLabeling, ALetterIsUprightAndAsSharpAsItWasDrawn) {
  QXTextStyle const style = MakeStyle(L"Letters", 24);
  for (wchar_t const nCharacter : {L'F', L'g', L'7'}) {
    wchar_t const szText[] = {nCharacter, 0};
    QXTextLayout const& layout = LayOut(szText, style);
    QXRenderOperation3D* const pLabel = DrawLabel(layout, {-0.5, 0.0, 0.0});
    QXPicture const picture = Frame();
    QXDrawnGlyph const drawn(static_cast<unsigned int>(nCharacter), style);
    QXTextGlyph const& glyph = layout.GetGlyphs().at(0);
    int nFaults = 0;
    for (int y = 0; y < drawn.m_pBitmap->m_nHeight; ++y)
      for (int x = 0; x < drawn.m_pBitmap->m_nWidth; ++x) {
        QXPixel const pixel = picture.At(
            static_cast<unsigned int>(16 + glyph.m_nLeft + x), static_cast<unsigned int>(32 - glyph.m_nTop + y));
        // White over black: what is red is covered.
        if (std::abs(pixel.r - drawn.At(x, y)) > 1) ++nFaults;
      }
    EXPECT_EQ(nFaults, 0) << static_cast<char>(nCharacter);
    pLabel->SetVisible(0);
  }
}

TEST_F(QXOgreLabeling, AnAnchorBetweenPixelsMovesToTheNearestCorner) {
  QXRenderOperation3D* const p = DrawLabel(LayOut(BoxText(4), MakeStyle(L"Boxes", 15)), {0.0, 0.0, 0.0});
  auto const at = [&](double dPixelsX, double dPixelsY) {
    QXMatrix4d mat;
    mat.SetTrans({dPixelsX / 32.0, dPixelsY / 32.0, 0.0});
    p->SetModelMatrix(mat);
    QXPicture const picture = Frame();
    QdcRect const rc = Ink(picture);
    EXPECT_EQ(picture.At(static_cast<unsigned int>(rc.left), static_cast<unsigned int>(rc.top)), WHITE_PIXEL);
    return Words(rc);
  };
  EXPECT_EQ(at(0.3, 0.4), "33 18 41 32");
  EXPECT_EQ(at(0.7, -0.3), "34 18 42 32");
  EXPECT_EQ(at(-0.7, 0.7), "32 17 40 31");
}

TEST_F(QXOgreLabeling, ALabelKeepsItsSizeAtEveryDistance) {
  m_pCamera->SetProjectionType(PROJECTION_PERSPECTIVE);
  m_pCamera->SetProjectionMatrix(QXMathEngine::ComputePerspectiveMatrix(std::numbers::pi / 2.0, 1.0, 0.1, 1000.0));
  for (double const dZ : {9.0, 5.0, -500.0}) {
    QXRenderOperation3D* const p = DrawLabel(LayOut(BoxText(4), MakeStyle(L"Boxes", 15)), {0.0, 0.0, dZ});
    EXPECT_EQ(Words(Ink(Frame())), "33 18 41 32") << dZ;
    p->SetVisible(0);
  }
}

TEST_F(QXOgreLabeling, NothingIsDrawnAtTheEyeAndBehindIt) {
  m_pCamera->SetProjectionType(PROJECTION_PERSPECTIVE);
  m_pCamera->SetProjectionMatrix(QXMathEngine::ComputePerspectiveMatrix(std::numbers::pi / 2.0, 1.0, 0.1, 100.0));
  QXTextLayout const& layout = LayOut(BoxText(4), MakeStyle(L"Boxes", 15));
  Quads quads;
  // One drawable, so that the one in front lets the others through the culling.
  quads.Add(layout, {0.0, 0.0, 12.0}, RED_WORD, 0);
  quads.Add(layout, {0.0, 0.0, 10.0}, RED_WORD, 0);
  quads.Add(layout, {0.0, 0.0, 5.0}, GREEN_WORD, 0);
  QXRenderOperation3D* const p = DrawQuads(quads);
  p->SetDepthTest(0);
  QXPicture const picture = Frame();
  EXPECT_EQ(Words(Ink(picture)), "33 18 41 32");
  EXPECT_EQ(picture.At(36, 24), GREEN_PIXEL);
}

TEST_F(QXOgreLabeling, ALabelReachesIntoThePictureFromBeyondItsEdge) {
  // 5 pixels to the left of the picture: 4 columns of the 8 are seen.
  QXRenderOperation3D* const p = DrawLabel(LayOut(BoxText(4), MakeStyle(L"Boxes", 15)), {-1.0 - 5.0 / 32.0, 0.0, 0.0});
  EXPECT_EQ(Words(Ink(Frame())), "0 18 4 32");
  EXPECT_EQ(m_pGraphics3D->GetDrawOperationCount(), 1U);
  QXMatrix4d mat;
  mat.SetTrans({-12.0 / 32.0, 0.0, 0.0});
  p->SetModelMatrix(mat);
  Frame();
  EXPECT_EQ(m_pGraphics3D->GetDrawOperationCount(), 0U) << "out of reach";
  // 5 below the lower edge: 9 rows of the 14 are seen.
  mat.SetTrans({1.0 + 5.0 / 32.0, -1.0 - 5.0 / 32.0, 0.0});
  p->SetModelMatrix(mat);
  EXPECT_EQ(Words(Ink(Frame())), "33 55 41 64");
}

TEST_F(QXOgreLabeling, EachViewportHasItsOwnPixels) {
  QXRenderTarget* const pWide = MakeTarget(L"wide", 128, 64);
  AddViewport(*pWide, *m_pCamera, 0, 0.0, 0.0, 0.5, 1.0);
  AddViewport(*pWide, *m_pCamera, 1, 0.5, 0.0, 0.5, 0.5);
  DrawLabel(LayOut(BoxText(4), MakeStyle(L"Boxes", 15)), {0.0, 0.0, 0.0});
  QXPicture const picture = Frame(pWide);
  // The second viewport's middle is at (96, 48): its background is there too.
  EXPECT_EQ(picture.At(33, 18), WHITE_PIXEL);
  EXPECT_EQ(picture.At(40, 31), WHITE_PIXEL);
  EXPECT_EQ(picture.At(41, 31), BACKGROUND_PIXEL);
  EXPECT_EQ(picture.At(97, 34), WHITE_PIXEL);
  EXPECT_EQ(picture.At(104, 47), WHITE_PIXEL);
  EXPECT_EQ(picture.At(105, 47), BACKGROUND_PIXEL);
  EXPECT_EQ(picture.At(97, 48), BACKGROUND_PIXEL);
}

TEST_F(QXOgreLabeling, ALabelStandsUprightInAWindowToo) {
  QXRenderTarget* const pWindow = m_pGraphics3D->CreateRenderWindow(L"window", nullptr, SIZE, SIZE, 0);
  ASSERT_NE(pWindow, nullptr) << Reason();
  m_pGraphics3D->AttachRenderTarget(pWindow);
  pWindow->SetSunLightEnable(0);
  AddViewport(*pWindow, *m_pCamera, 0, 0.0, 0.0, 1.0, 1.0);
  DrawLabel(LayOut(BoxText(4), MakeStyle(L"Boxes", 15)), {0.0, 0.0, 0.0});
  QXPicture const picture = Frame(pWindow);
  for (unsigned int const y : {18U, 31U})
    for (unsigned int const x : {33U, 40U}) EXPECT_EQ(picture.At(x, y), WHITE_PIXEL) << x << ", " << y;
  for (unsigned int const y : {17U, 32U}) EXPECT_FALSE(picture.At(36, y) == WHITE_PIXEL) << y;
}

TEST_F(QXOgreLabeling, FarFromTheOriginItIsAsSharp) {
  QXVector3d const vecFar(4.0e6, 3.0e6, 0.0);
  m_pGraphics3D->SetRelativeOrigin(vecFar);
  m_pCamera->SetPosition(vecFar + QXVector3d(0.0, 0.0, 10.0));
  QXRenderOperation3D* const p = DrawLabel(LayOut(BoxText(4), MakeStyle(L"Boxes", 15)), {0.0, 0.0, 0.0});
  QXMatrix4d mat;
  mat.SetTrans(vecFar);
  p->SetModelMatrix(mat);
  EXPECT_EQ(Words(Ink(Frame())), "33 18 41 32");
}

TEST_F(QXOgreLabeling, ColoursAreThoseOfTheVerticesWhateverTheSunDoes) {
  m_pTarget->SetSunLightEnable(1);
  QXRenderOperation3D* const p = DrawLabel(LayOut(BoxText(4), MakeStyle(L"Boxes", 15)), {0.0, 0.0, 0.0}, RED_WORD);
  p->SetLightEnable(1);
  EXPECT_EQ(Frame().At(36, 24), RED_PIXEL);
  p->SetColor(QXColorValue3D(0.5, 1.0, 1.0, 1.0));
  EXPECT_NEAR(Frame().At(36, 24).r, 128, 1);
  p->SetOpacity(0.5);
  EXPECT_NEAR(Frame().At(36, 24).b, 26, 1) << "half of the background shows through";
}

TEST_F(QXOgreLabeling, AHaloSurroundsItsTextAndNothingElse) {
  QXTextStyle const style = MakeStyle(L"Letters", 24);
  QXTextLayout const& layout = LayOut(L"R", style, 1);
  ASSERT_EQ(layout.GetGlyphs().size(), 2U);
  DrawLabel(layout, {-0.5, 0.0, 0.0}, RED_WORD, GREEN_WORD);
  QXPicture const picture = Frame();
  QXDrawnGlyph const text(L'R', style);
  QXDrawnGlyph const halo(L'R', style, 1);
  QXTextGlyph const& glyph = layout.GetGlyphs().at(1);
  int nHalo = 0;
  for (int y = 0; y < text.m_pBitmap->m_nHeight; ++y)
    for (int x = 0; x < text.m_pBitmap->m_nWidth; ++x) {
      double const dText = text.At(x, y) / 255.0;
      double const dHalo = halo.At(x, y) / 255.0;
      QXPixel const pixel = picture.At(
          static_cast<unsigned int>(16 + glyph.m_nLeft + x), static_cast<unsigned int>(32 - glyph.m_nTop + y));
      EXPECT_NEAR(pixel.r, 255.0 * dText, 2.0) << x << ", " << y;
      EXPECT_NEAR(pixel.g, 255.0 * dHalo * (1.0 - dText), 2.0) << x << ", " << y;
      nHalo += dText == 0.0 && dHalo > 0.5;
    }
  EXPECT_GT(nHalo, 40) << "a border is there";
}

TEST_F(QXOgreLabeling, HalosOfALowerPriorityStandUnderAllTexts) {
  QXTextStyle const style = MakeStyle(L"Boxes", 15);
  QXTextLayout const& layout = LayOut(BoxText(4), style, 1);
  ASSERT_EQ(layout.GetGlyphs().size(), 2U);
  // The halo of a label that is nearer, so it would be blended last.
  Quads halo;
  halo.Add(layout, {0.0, 0.0, 5.0}, 0, GREEN_WORD);
  Quads text;
  text.Add(layout, {0.0, 0.0, 0.0}, RED_WORD, 0);
  QXRenderOperation3D* const pHalo = DrawQuads(halo);
  QXRenderOperation3D* const pText = DrawQuads(text);
  EXPECT_EQ(Frame().At(36, 24), GREEN_PIXEL);
  pHalo->SetRenderPriority(1);
  pText->SetRenderPriority(2);
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(36, 24), RED_PIXEL);
  EXPECT_EQ(picture.At(32, 24), GREEN_PIXEL) << "the border beside the box";
}

TEST_F(QXOgreLabeling, ItIsHiddenByWhatStandsInFrontUnlessTheDepthIsNotTested) {
  QXRenderOperation3D* const p = DrawLabel(LayOut(BoxText(4), MakeStyle(L"Boxes", 15)), {0.0, 0.0, 0.0});
  DrawSquare(-1.0F, -1.0F, 4.0F / 32.0F, 1.0F, 5.0F, RED);
  QXPicture const hidden = Frame();
  EXPECT_EQ(hidden.At(34, 24), RED_PIXEL) << "behind the square";
  EXPECT_EQ(hidden.At(38, 24), WHITE_PIXEL) << "beside it";
  p->SetDepthTest(0);
  EXPECT_EQ(Frame().At(34, 24), WHITE_PIXEL);
}

TEST_F(QXOgreLabeling, ThousandLabelsAreOneDrawOperation) {
  QXTextLayout const& layout = LayOut(BoxText(1), MakeStyle(L"Boxes", 15));
  Quads quads;
  for (int i = 0; i < 1000; ++i)
    quads.Add(layout, {-1.0 + 2.0 * (i % 40) / 40, -1.0 + 2.0 * (i / 40) / 25, 0.0}, RED_WORD, 0);
  DrawQuads(quads);
  QXPicture const picture = Frame();
  EXPECT_EQ(m_pGraphics3D->GetDrawOperationCount(), 1U);
  EXPECT_EQ(m_pGraphics3D->GetFaceCount(), 2000U);
  EXPECT_EQ(picture.At(2, 62), RED_PIXEL);
}

TEST_F(QXOgreLabeling, OtherProgramsAreRefusedAndNoneIsAPlainDrawable) {
  QXRenderOperation3D* const p = DrawLabel(LayOut(BoxText(4), MakeStyle(L"Boxes", 15)), {0.0, 0.0, 0.0});
  EXPECT_EQ(p->SetShaderPrograms(L"Other.glsl", LABEL_FRAGMENT_PROGRAM), 0);
  EXPECT_EQ(p->SetShaderPrograms(LABEL_VERTEX_PROGRAM, L""), 0);
  EXPECT_EQ(Words(Ink(Frame())), "33 18 41 32") << "it keeps what it had";
  EXPECT_EQ(p->SetShaderPrograms(L"", L""), 1);
  EXPECT_EQ(Words(Ink(Frame())), "64 64 0 0") << "quads of no size";
}

// --- Flat labels ---

TEST_F(QXOgreLabeling, AFlatLabelLiesInTheWorld) {
  Quads quads;
  // Two pixels for each of the glyph's.
  quads.Add(LayOut(BoxText(4), MakeStyle(L"Boxes", 15)), {0.0, 0.0, 0.0}, RED_WORD, 0, true, 2.0F / 32.0F);
  QXRenderOperation3D* const p = DrawQuads(quads, true);
  QXPicture const picture = Frame();
  // Columns 34 to 49 and rows 4 to 31, but for the pixels at the edge, which are filtered.
  EXPECT_EQ(picture.At(35, 5), RED_PIXEL);
  EXPECT_EQ(picture.At(48, 30), RED_PIXEL);
  EXPECT_EQ(picture.At(32, 20), BACKGROUND_PIXEL);
  EXPECT_EQ(picture.At(51, 20), BACKGROUND_PIXEL);
  EXPECT_EQ(picture.At(40, 33), BACKGROUND_PIXEL);
  QXMatrix4d mat = QXMatrix4d::IDENTITY;
  mat[0][0] = 0.5;
  mat[1][1] = 0.5;
  p->SetModelMatrix(mat);
  EXPECT_EQ(Words(Ink(Frame())), "33 18 41 32") << "it shrinks with the world";
}

}  // namespace QXC
