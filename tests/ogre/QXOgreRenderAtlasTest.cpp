// Patches of shared render textures, really drawn and read back.
#include <algorithm>
#include <memory>
#include <vector>

#include <QxGraphics3D/atlas/QXRenderTextureManager.h>
#include <QxGraphics3D/atlas/QXRenderTexturePatch.h>
#include <QxGraphics3D/frame/foundation/base3d/QXTextureUnitState.h>
#include <QxGraphics3D/renderop/QXBillboard.h>

#include <tests/ogre/QXOgreTexturing.h>

namespace QXC {

namespace {

constexpr int PAGE = 2048;
constexpr QXPixel NOTHING{0, 0, 0, 0};
constexpr wchar_t const* FIRST_PAGE = L"RenderTexture_BigTexture_0";
constexpr wchar_t const* SECOND_PAGE = L"RenderTexture_BigTexture_1";

QXRenderTextureManager& Atlas() {
  return QXRenderTextureManager::GetSingleton();
}

}  // namespace

class QXOgreRenderAtlas : public QXOgreTexturing {
protected:
  void SetUp() override {
    QXOgreTexturing::SetUp();
    Atlas().Clear();
    Atlas().SetGraphics3D(m_pGraphics3D.get());
  }
  void TearDown() override {
    m_pBillboard.reset();
    Atlas().Clear();
    QXOgreTexturing::TearDown();
  }
  /// A square that fills a patch but for nMargin pixels on each side, under the node of its page.
  QXRenderOperation3D* Fill(QXRenderTexturePatch& patch, int nMargin, QXColorValue3D const& color) {
    unsigned int nX = 0;
    unsigned int nY = 0;
    patch.GetPos(nX, nY);
    int const nSize = PAGE >> patch.GetLod();
    auto const fLeft = static_cast<float>(static_cast<int>(nX) + nMargin);
    auto const fBottom = static_cast<float>(PAGE - static_cast<int>(nY) - nSize + nMargin);
    auto const fSide = static_cast<float>(nSize - 2 * nMargin);
    QXRenderOperation3D* const pSquare = DrawSquare(fLeft, fBottom, fLeft + fSide, fBottom + fSide, 0.0F, color);
    pSquare->SetLightEnable(0);
    EXPECT_EQ(m_pGraphics3D->AttachToSceneNode(L"", patch.GetTextureName(), pSquare), 1) << Reason();
    patch.SetNeedRender();
    return pSquare;
  }
  QXTexels Read(wchar_t const* szPage) {
    QXTexels texels(m_pTextures->GetTexture(szPage, 0));
    EXPECT_EQ(texels.GetWidth(), 2048U);
    return texels;
  }

  std::unique_ptr<QXBillboard> m_pBillboard;
};

TEST_F(QXOgreRenderAtlas, APatchIsDrawnIntoItsPlaceAndNothingBesideIt) {
  QXRenderTexturePatch* const pFirst = Atlas().GetRenderTexturePatch(L"first", 200, 256);
  QXRenderTexturePatch* const pSecond = Atlas().GetRenderTexturePatch(L"second", 64, 64);
  ASSERT_EQ(pSecond->IsPlaced(), 1) << Reason();
  unsigned int nX = 0;
  unsigned int nY = 0;
  pSecond->GetPos(nX, nY);
  ASSERT_EQ(nX, 256U);
  ASSERT_EQ(nY, 0U);
  Fill(*pFirst, 4, RED);
  Fill(*pSecond, 0, GREEN);
  Atlas().RenderToTexture();
  QXTexels const page = Read(FIRST_PAGE);
  for (auto const& [x, y] : {std::pair{4U, 4U}, std::pair{251U, 4U}, std::pair{4U, 251U}, std::pair{251U, 251U}})
    EXPECT_EQ(page.At(x, y), RED_PIXEL) << x << ", " << y;
  for (auto const& [x, y] : {std::pair{3U, 128U}, std::pair{252U, 128U}, std::pair{128U, 3U}, std::pair{128U, 252U}})
    EXPECT_EQ(page.At(x, y), NOTHING) << x << ", " << y;
  for (auto const& [x, y] : {std::pair{256U, 0U}, std::pair{319U, 0U}, std::pair{256U, 63U}, std::pair{319U, 63U}})
    EXPECT_EQ(page.At(x, y), GREEN_PIXEL) << x << ", " << y;
  for (auto const& [x, y] : {std::pair{255U, 32U}, std::pair{320U, 32U}, std::pair{288U, 64U}, std::pair{2047U, 2047U}})
    EXPECT_EQ(page.At(x, y), NOTHING) << x << ", " << y;
}

TEST_F(QXOgreRenderAtlas, APictureInAPatchStandsUpright) {
  QXRenderTexturePatch* const pPatch = Atlas().GetRenderTexturePatch(L"lower", 1024, 1024);
  pPatch->SetSize(1024, 1024);
  pPatch->SetSize(1024, 1024);
  unsigned int nX = 0;
  unsigned int nY = 0;
  pPatch->GetPos(nX, nY);
  ASSERT_EQ(nX, 0U);
  ASSERT_EQ(nY, 1024U);
  // The whole patch, and its lower right corner in another colour, above it.
  Fill(*pPatch, 0, RED);
  QXRenderOperation3D* const pCorner = DrawSquare(824.0F, 0.0F, 1024.0F, 100.0F, 50.0F, GREEN);
  pCorner->SetLightEnable(0);
  m_pGraphics3D->AttachToSceneNode(L"", FIRST_PAGE, pCorner);
  Atlas().RenderToTexture();
  QXTexels const page = Read(FIRST_PAGE);
  EXPECT_EQ(page.At(0, 1024), RED_PIXEL);
  EXPECT_EQ(page.At(0, 1023), NOTHING);
  EXPECT_EQ(page.At(823, 2047), RED_PIXEL);
  EXPECT_EQ(page.At(824, 2047), GREEN_PIXEL);
  EXPECT_EQ(page.At(1023, 1948), GREEN_PIXEL);
  EXPECT_EQ(page.At(1023, 1947), RED_PIXEL);
  EXPECT_EQ(page.At(1024, 2047), NOTHING);
}

TEST_F(QXOgreRenderAtlas, EarlierPatchesStayWhenALaterOneIsDrawn) {
  QXRenderTexturePatch* const pFirst = Atlas().GetRenderTexturePatch(L"first", 64, 64);
  QXRenderOperation3D* const pSquare = Fill(*pFirst, 0, RED);
  Atlas().RenderToTexture();
  EXPECT_EQ(Read(FIRST_PAGE).At(32, 32), RED_PIXEL);
  QXRenderTexturePatch* const pSecond = Atlas().GetRenderTexturePatch(L"second", 64, 64);
  Fill(*pSecond, 0, GREEN);
  EXPECT_EQ(Read(FIRST_PAGE).At(96, 32), NOTHING) << "before the next rendering";
  Atlas().RenderToTexture();
  EXPECT_EQ(Read(FIRST_PAGE).At(32, 32), RED_PIXEL);
  EXPECT_EQ(Read(FIRST_PAGE).At(96, 32), GREEN_PIXEL);
  pSquare->SetColor(GREEN);
  Atlas().RenderToTexture();
  EXPECT_EQ(Read(FIRST_PAGE).At(32, 32), RED_PIXEL) << "nobody marked it";
  pSquare->SetColor(QXColorValue3D(0.0, 0.0, 0.0, 1.0));
  pFirst->SetNeedRender();
  Atlas().RenderToTexture();
  EXPECT_EQ(Read(FIRST_PAGE).At(32, 32), (QXPixel{0, 0, 0, 255}));
}

TEST_F(QXOgreRenderAtlas, ThePageAndTheWorldAreApart) {
  // Red would fill the picture of the world and green the page.
  DrawSquare(-4000.0F, -4000.0F, 4000.0F, 4000.0F, 5.0F, RED);
  QXRenderTexturePatch* const pPatch = Atlas().GetRenderTexturePatch(L"patch", 64, 64);
  m_pCamera->SetPosition(32.0, 2048.0 - 32.0, 10.0);
  Fill(*pPatch, 0, GREEN);
  EXPECT_EQ(Frame().At(32, 32), RED_PIXEL) << "the node is visible until its first rendering";
  m_arrOperations.front()->SetVisible(0);
  EXPECT_EQ(Frame().At(32, 32), BACKGROUND_PIXEL);
  m_arrOperations.front()->SetVisible(1);
  Atlas().RenderToTexture();
  QXTexels const page = Read(FIRST_PAGE);
  EXPECT_EQ(page.At(32, 32), GREEN_PIXEL);
  EXPECT_EQ(page.At(96, 32), NOTHING);
}

TEST_F(QXOgreRenderAtlas, APageShowsItsOwnNodeOnly) {
  QXRenderTexturePatch* const pSmall = Atlas().GetRenderTexturePatch(L"small", 64, 64);
  QXRenderTexturePatch* const pWhole = Atlas().GetRenderTexturePatch(L"whole", 2048, 2048);
  ASSERT_EQ(Text(pWhole->GetTextureName()), "RenderTexture_BigTexture_1");
  Fill(*pWhole, 8, GREEN);
  Fill(*pSmall, 0, RED);
  // The second page is made and not drawn yet, so its node still shows.
  QXRenderOperation3D* const pOther = DrawSquare(0.0F, 0.0F, 2048.0F, 2048.0F, 1.0F, GREEN);
  m_pGraphics3D->CreateSceneNode(L"", L"", L"other");
  m_pGraphics3D->AttachToSceneNode(L"", L"other", pOther);
  Atlas().RenderToTexture();
  QXTexels const first = Read(FIRST_PAGE);
  EXPECT_EQ(first.At(63, 63), RED_PIXEL);
  EXPECT_EQ(first.At(64, 64), NOTHING);
  QXTexels const second = Read(SECOND_PAGE);
  EXPECT_EQ(second.At(7, 7), NOTHING);
  EXPECT_EQ(second.At(8, 8), GREEN_PIXEL);
  EXPECT_EQ(second.At(2039, 2039), GREEN_PIXEL);
  EXPECT_EQ(m_pGraphics3D->DestroySceneNode(L"", L"other"), 1);
}

TEST_F(QXOgreRenderAtlas, WhatIsHiddenUnderTheNodeIsNotDrawn) {
  QXRenderTexturePatch* const pPatch = Atlas().GetRenderTexturePatch(L"patch", 64, 64);
  Fill(*pPatch, 0, RED)->SetVisible(0);
  m_pGraphics3D->CreateSceneNode(L"", FIRST_PAGE, L"below");
  QXRenderOperation3D* const pBelow = DrawSquare(0.0F, 2016.0F, 32.0F, 2048.0F, 0.0F, GREEN);
  pBelow->SetLightEnable(0);
  m_pGraphics3D->AttachToSceneNode(L"", L"below", pBelow);
  Atlas().RenderToTexture();
  EXPECT_EQ(Read(FIRST_PAGE).At(16, 16), GREEN_PIXEL);
  EXPECT_EQ(Read(FIRST_PAGE).At(48, 48), NOTHING);
}

TEST_F(QXOgreRenderAtlas, APageIsATextureOfItsName) {
  EXPECT_EQ(m_pTextures->GetTexture(FIRST_PAGE, 0), nullptr);
  EXPECT_EQ(m_pTextures->ManagerOperation2(FIRST_PAGE), 0);
  Atlas().GetRenderTexturePatch(L"other", 64, 64);
  QXRenderTexturePatch* const pPatch = Atlas().GetRenderTexturePatch(L"patch", 64, 64);
  Fill(*pPatch, 0, RED);
  QXTexture* const pPage = m_pTextures->GetTexture(pPatch->GetTextureName(), 1);
  ASSERT_NE(pPage, nullptr);
  EXPECT_EQ(m_pTextures->ManagerOperation2(FIRST_PAGE), 1);
  EXPECT_EQ(m_pTextures->GetTexture(FIRST_PAGE, 0), pPage);
  EXPECT_EQ(pPage->IsLoaded(), 1);
  // What shows it shows what is drawn later.
  unsigned int nX = 0;
  unsigned int nY = 0;
  pPatch->GetPos(nX, nY);
  QdcRect2D const rcPart(nX / 2048.0, nY / 2048.0, (nX + 64.0) / 2048.0, (nY + 64.0) / 2048.0);
  m_pBillboard.reset(m_pGraphics3D->GetRenderOperationManager()->CreateBillboard(L"3D"));
  m_pBillboard->SetPosition({0.0, -1.0, 0.0});
  m_pBillboard->SetSize(64.0, 64.0, 1);
  m_pBillboard->SetTexture(pPage, rcPart);
  m_pBillboard->SetColor(QXColorValue3D(1.0, 1.0, 1.0, 1.0));
  EXPECT_EQ(pPage->GetRef(), 1);
  EXPECT_NE(Frame().At(32, 32), RED_PIXEL);
  Atlas().RenderToTexture();
  QXPicture const picture = Frame();
  for (unsigned int const n : {1U, 62U}) EXPECT_EQ(picture.At(n, 63 - n), RED_PIXEL) << n;
  // A drawable finds it by the name in its package.
  auto const pMesh = MakeTexturedMesh(1.0F, -1.0F, -1.0F, 0.0F, 0.0F);
  AddTexturedRange(*pMesh, nullptr)->m_strTextureName = FIRST_PAGE;
  QXMatrix4d matPart;
  matPart[0][0] = matPart[1][1] = 1.0 / 32.0;
  matPart.SetTrans(QXVector3d(rcPart.left, rcPart.top, 0.0));
  QXRenderOperation3D* const pDrawable = Draw(*pMesh);
  pDrawable->SetTextureMatrix(0, matPart);
  m_pBillboard->SetVisible(0);
  EXPECT_EQ(Frame().At(16, 48), RED_PIXEL);
  EXPECT_EQ(pPage->GetRef(), 2);
  // The page goes with its last patch; what showed it keeps its colour.
  Atlas().RemoveRenderTexturePatch(L"patch");
  EXPECT_EQ(m_pTextures->GetTexture(FIRST_PAGE, 0), pPage);
  Atlas().RemoveRenderTexturePatch(L"other");
  EXPECT_EQ(m_pTextures->GetTexture(FIRST_PAGE, 0), nullptr);
  EXPECT_EQ(Frame().At(16, 48), (QXPixel{255, 255, 255, 255}));
}

TEST_F(QXOgreRenderAtlas, ThePageGoesWithItsNodeAndTheNextOneTakesItsName) {
  QXRenderTexturePatch* pPatch = Atlas().GetRenderTexturePatch(L"patch", 64, 64);
  QXRenderOperation3D* const pFormer = Fill(*pPatch, 0, RED);
  Atlas().RenderToTexture();
  Atlas().RemoveRenderTexturePatch(L"patch");
  EXPECT_EQ(m_pGraphics3D->AttachToSceneNode(L"", FIRST_PAGE, pFormer), 0);
  pPatch = Atlas().GetRenderTexturePatch(L"next", 64, 64);
  ASSERT_EQ(pPatch->IsPlaced(), 1) << Reason();
  pPatch->SetNeedRender();
  Atlas().RenderToTexture();
  EXPECT_EQ(Read(FIRST_PAGE).At(32, 32), NOTHING) << "what hung under the former node is not drawn into the new page";
  EXPECT_EQ(m_pGraphics3D->AttachToSceneNode(L"", FIRST_PAGE, pFormer), 1);
  pPatch->SetNeedRender();
  Atlas().RenderToTexture();
  EXPECT_EQ(Read(FIRST_PAGE).At(32, 32), RED_PIXEL);
}

TEST_F(QXOgreRenderAtlas, TheSizeOfATextureTargetChangesUnderItsName) {
  m_pTarget->ReSize(32, 32);
  QXTexture* const pTexture = m_pTextures->GetTexture(L"picture", 0);
  EXPECT_EQ(pTexture, m_pGraphics3D->GetRenderTargetTexture(m_pTarget));
  ASSERT_NE(pTexture, nullptr);
  EXPECT_EQ(pTexture->IsLoaded(), 1);
  EXPECT_EQ(m_pTextures->GetTexture(L"Picture", 0), nullptr) << "names are told apart by case";
}

TEST_F(QXOgreRenderAtlas, WhatLetsThroughInAPatchIsAsBrightAsDrawnDirectly) {
  QXRenderTexturePatch* const pPatch = Atlas().GetRenderTexturePatch(L"patch", 64, 64);
  Fill(*pPatch, 16, QXColorValue3D(1.0, 1.0, 1.0, 0.5));
  Atlas().RenderToTexture();
  QXTexture* const pPage = m_pTextures->GetTexture(pPatch->GetTextureName(), 1);
  ASSERT_NE(pPage, nullptr);
  EXPECT_EQ(Read(FIRST_PAGE).At(32, 32), (QXPixel{128, 128, 128, 128})) << "multiplied by its alpha";
  // Filtered, and enlarged so that its edges are many pixels of the screen.
  pPage->RendererOperation1(TEXTURE_FILTER_LINEAR, TEXTURE_FILTER_LINEAR, TEXTURE_FILTER_NONE);
  DrawSquare(-4.0F, -4.0F, 4.0F, 4.0F, -5.0F, QXColorValue3D::White)->SetLightEnable(0);
  m_pBillboard.reset(m_pGraphics3D->GetRenderOperationManager()->CreateBillboard(L"3D"));
  m_pBillboard->SetPosition({0.0, -1.0, 0.0});
  m_pBillboard->SetSize(64.0, 64.0, 1);
  m_pBillboard->SetTexture(pPage, QdcRect2D(12.0 / 2048.0, 12.0 / 2048.0, 20.0 / 2048.0, 20.0 / 2048.0));
  QXPicture const picture = Frame();
  for (unsigned int n = 0; n < 64; ++n) {
    QXPixel const pixel = picture.At(n, n);
    EXPECT_GE(std::min({pixel.r, pixel.g, pixel.b}), 253) << "white over white, but " << pixel.r << " at " << n;
  }
}

TEST_F(QXOgreRenderAtlas, OnlyWhatWasDrawnOntoNothingIsDivided) {
  std::unique_ptr<QXRenderTarget> const pTarget(
      m_pGraphics3D->CreateRenderTexture(L"own", PF_A8R8G8B8, 64, 64, 0, 32, L""));
  ASSERT_NE(pTarget, nullptr) << Reason();
  m_pGraphics3D->CreateSceneNode(L"", L"", L"own");
  QXRenderOperation3D* const pSquare = DrawSquare(0.0F, 0.0F, 64.0F, 64.0F, 0.0F, QXColorValue3D(1.0, 1.0, 1.0, 0.5));
  pSquare->SetLightEnable(0);
  m_pGraphics3D->AttachToSceneNode(L"", L"own", pSquare);
  m_pGraphics3D->RenderPatchToTexture(32.0, 32.0, 64.0, 64.0, pTarget.get(), QdcRect2D(0.0, 0.0, 1.0, 1.0));
  m_pBillboard.reset(m_pGraphics3D->GetRenderOperationManager()->CreateBillboard(L"3D"));
  m_pBillboard->SetPosition({0.0, -1.0, 0.0});
  m_pBillboard->SetSize(64.0, 64.0, 1);
  m_pBillboard->SetTexture(pTarget->GetTexture(), QdcRect2D(0.0, 0.0, 1.0, 1.0));
  EXPECT_NEAR(Frame().At(32, 32).r, 128, 1) << "white, half of it";
  // Pixels of a host are as they are: grey, half of it.
  std::vector<unsigned char> const arrGrey(64 * 64 * 4, 128);
  pTarget->CopyFromMemory(arrGrey.data(), 64 * 64 * 4);
  EXPECT_NEAR(Frame().At(32, 32).r, 64, 1);
  m_pBillboard.reset();
  m_pGraphics3D->DestroySceneNode(L"", L"own");
}

TEST_F(QXOgreRenderAtlas, PatchesAreLitFromTheUpperLeftWhereverTheWorldIs) {
  QXRenderTexturePatch* const pPatch = Atlas().GetRenderTexturePatch(L"patch", 64, 64);
  Fill(*pPatch, 0, QXColorValue3D::White)->SetLightEnable(1);
  // A roof of four sides in the middle, and the flat place around it.
  auto const pMesh = MakeMesh({{16, 2000, 1}, {48, 2000, 1}, {48, 2032, 1}, {16, 2032, 1}, {32, 2016, 17}});
  AddRange<unsigned short>(*pMesh, {0, 1, 4, 1, 2, 4, 2, 3, 4, 3, 0, 4}, QXColorValue3D::White);
  m_pGraphics3D->AttachToSceneNode(L"", FIRST_PAGE, Draw(*pMesh));
  for (double const dOrigin : {0.0, 5.8e6}) {
    m_pGraphics3D->SetRelativeOrigin(QXVector3d(604000.0, dOrigin, 70.0));
    pPatch->SetNeedRender();
    Atlas().RenderToTexture();
    QXTexels const page = Read(FIRST_PAGE);
    EXPECT_GE(page.At(8, 8).r, 254) << "what faces the viewer keeps its colour";
    int const nWest = page.At(24, 32).r;
    int const nNorth = page.At(32, 24).r;
    int const nEast = page.At(40, 32).r;
    int const nSouth = page.At(32, 40).r;
    EXPECT_GT(nWest, nEast + 50) << dOrigin;
    EXPECT_GT(nNorth, nSouth + 50) << dOrigin;
  }
  m_pGraphics3D->SetRelativeOrigin(QXVector3d::ZERO);
}

}  // namespace QXC
