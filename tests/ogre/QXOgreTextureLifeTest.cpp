// Who owns a texture, who counts it, and when it leaves the device.
#include <thread>

#include <QxGraphics3D/texture/QXTextureMemory.h>

#include <tests/ogre/QXOgreTexturing.h>

namespace QXC {

namespace {

constexpr int MEGABYTE = 1048576;

/// The counter's bytes, of which it tells only the megabytes: it is filled up to the next one.
int CountedBytes() {
  QXTextureMemory& memory = QXTextureMemory::GetSingleton();
  int const nMegabytes = memory.GetCurrentMemory();
  int nLow = 0;
  int nHigh = MEGABYTE;
  while (nHigh - nLow > 1) {
    int const nMiddle = (nLow + nHigh) / 2;
    memory.AddMemory(nMiddle);
    (memory.GetCurrentMemory() > nMegabytes ? nHigh : nLow) = nMiddle;
    memory.DelMemory(nMiddle);
  }
  return (nMegabytes + 1) * MEGABYTE - nHigh;
}

}  // namespace

class QXOgreTextureLife : public QXOgreTexturing {
protected:
  QXTexture* MakeCached(wchar_t const* szName) {
    QXTexture* const pTexture = m_pTextures->GetTexture(szName, 1);
    pTexture->SetTextureData(1, 1, NewBlock({0, 255, 0, 255}), 0, PF_A8R8G8B8);
    pTexture->LoadTexture(0, 0);
    return pTexture;
  }
};

TEST_F(QXOgreTextureLife, TheManagerFindsAndMakesTexturesByName) {
  EXPECT_EQ(m_pTextures->GetTexture(L"brick", 0), nullptr);
  EXPECT_EQ(m_pTextures->ManagerOperation2(L"brick"), 0);
  QXTexture* const pTexture = m_pTextures->GetTexture(L"brick", 1);
  ASSERT_NE(pTexture, nullptr);
  EXPECT_EQ(pTexture->m_strTexFilePath, QdcUnicodeString(L"brick"));
  EXPECT_EQ(pTexture->GetRef(), 0) << "counting is the caller's";
  EXPECT_EQ(pTexture->IsLoaded(), 0);
  EXPECT_EQ(pTexture->IsInitialGPU(), 1);
  EXPECT_EQ(m_pTextures->GetTexture(L"brick", 0), pTexture);
  EXPECT_EQ(m_pTextures->GetTexture(L"brick", 1), pTexture);
  EXPECT_EQ(m_pTextures->ManagerOperation2(L"brick"), 1);
  EXPECT_NE(m_pTextures->GetTexture(L"wood", 1), pTexture);
  pTexture->AddRef();
  m_pTextures->RemoveTexture(pTexture, 1);
  EXPECT_EQ(m_pTextures->GetTexture(L"brick", 0), nullptr);
}

TEST_F(QXOgreTextureLife, ADrawableIsAUserOfEachTextureThatItShows) {
  QXTexture* const pTexture = MakeCached(L"a");
  pTexture->AddRef();
  auto const pMesh = MakeTexturedMesh();
  AddTexturedRange(*pMesh, pTexture);
  QXRenderOperation3D* const pOperation = Draw(*pMesh);
  EXPECT_EQ(pTexture->GetRef(), 2);
  pOperation->SetTexture(3, pTexture);
  EXPECT_EQ(pTexture->GetRef(), 3);
  pOperation->SetTexture(3, pTexture);
  EXPECT_EQ(pTexture->GetRef(), 3);
  pOperation->SetRenderOperationMultiIndex(pMesh.get());
  EXPECT_EQ(pTexture->GetRef(), 3);
  pOperation->ClearGeometry();
  EXPECT_EQ(pTexture->GetRef(), 2);
  pOperation->SetTexture(3, nullptr);
  EXPECT_EQ(pTexture->GetRef(), 1);
  EXPECT_EQ(m_pTextures->GetTexture(L"a", 0), pTexture);
}

TEST_F(QXOgreTextureLife, WhatTheHostGaveBackLeavesWithItsLastDrawable) {
  int const nBefore = CountedBytes();
  QXTexture* const pTexture = MakeCached(L"a");
  pTexture->AddRef();
  DrawTextured(pTexture);
  DrawTextured(pTexture);
  m_pTextures->RemoveTexture(pTexture, 1);
  EXPECT_EQ(Frame().At(32, 32), GREEN_PIXEL);
  m_arrOperations[0]->ClearGeometry();
  EXPECT_EQ(m_pTextures->GetTexture(L"a", 0), pTexture);
  EXPECT_EQ(Frame().At(32, 32), GREEN_PIXEL);
  m_arrOperations[1]->ClearGeometry();
  EXPECT_EQ(m_pTextures->GetTexture(L"a", 0), nullptr);
  EXPECT_EQ(CountedBytes(), nBefore);
}

TEST_F(QXOgreTextureLife, WhatTheHostNeverCountedStays) {
  QXTexture* const pTexture = MakeCached(L"a");
  QXRenderOperation3D* const pOperation = DrawTextured(pTexture);
  EXPECT_EQ(pTexture->GetRef(), 1);
  pOperation->ClearGeometry();
  EXPECT_EQ(pTexture->GetRef(), 0);
  EXPECT_EQ(m_pTextures->GetTexture(L"a", 0), pTexture);
  DrawTextured(pTexture);
  EXPECT_EQ(Frame().At(32, 32), GREEN_PIXEL);
}

TEST_F(QXOgreTextureLife, ATextureDeletedInUseLeavesTheColour) {
  QXTexture* const pTexture = MakeTexture(1, 1, PF_A8R8G8B8, {0, 255, 0, 255});
  auto const pMesh = MakeTexturedMesh();
  AddTexturedRange(*pMesh, pTexture, RED);
  QXRenderOperation3D* const pOperation = Draw(*pMesh);
  QXRenderOperation3D* const pSecond = DrawSquare(-1.0F, -1.0F, 0.0F, 1.0F, 1.0F, RED);
  pSecond->SetTexture(0, pTexture);
  EXPECT_EQ(Frame().At(48, 32), (QXPixel{0, 0, 0, 255})) << "red by green";
  Delete(pTexture);
  EXPECT_EQ(Frame().At(48, 32), RED_PIXEL);
  pOperation->SetColor(QXColorValue3D(0.0, 1.0, 0.0, 1.0));
  EXPECT_EQ(Frame().At(48, 32), (QXPixel{0, 0, 0, 255}));
  EXPECT_EQ(m_pGraphics3D->GetDrawOperationCount(), 2U);
}

TEST_F(QXOgreTextureLife, ReleaseOfTheManagerTakesTexturesFromDrawables) {
  int const nBefore = CountedBytes();
  QXTexture* const pTexture = MakeCached(L"a");
  DrawTextured(pTexture);
  EXPECT_EQ(Frame().At(32, 32), GREEN_PIXEL);
  m_pTextures->Release();
  EXPECT_EQ(Frame().At(32, 32), (QXPixel{255, 255, 255, 255}));
  EXPECT_EQ(CountedBytes(), nBefore);
}

TEST_F(QXOgreTextureLife, TheCounterHasTheBytesOfAllLevels) {
  int const nBefore = CountedBytes();
  QXTexture* const pTexture = MakeTexture(5, 3, PF_A8R8G8B8, std::vector<unsigned char>(60, 0xFF));
  EXPECT_EQ(CountedBytes() - nBefore, 60);
  pTexture->SetTextureMipMap(1);
  pTexture->LoadTexture(0, 0);
  EXPECT_EQ(CountedBytes() - nBefore, 60 + 2 * 1 * 4 + 4);
  QXTexture* const pGray = MakeTexture(4, 4, PF_L8, std::vector<unsigned char>(16, 0xFF));
  EXPECT_EQ(CountedBytes() - nBefore, 72 + 16);
  MakeTexture(5, 5, PF_B8G8R8, std::vector<unsigned char>(32), TEXTURE_COMPRESSION_BLOCK);
  EXPECT_EQ(CountedBytes() - nBefore, 88 + 32);
  pTexture->RendererOperation2();
  EXPECT_EQ(CountedBytes() - nBefore, 48);
  pTexture->RendererOperation2();
  Delete(pGray);
  EXPECT_EQ(CountedBytes() - nBefore, 32);
  pTexture->SetTextureData(1, 1, NewBlock({0}), 99, PF_A8R8G8B8);
  pTexture->LoadTexture(0, 0);
  EXPECT_EQ(CountedBytes() - nBefore, 32) << "what is refused counts nothing";
}

TEST_F(QXOgreTextureLife, DeleteTextureTakesTheOneWithThatNumberOffTheDevice) {
  QXTexture* const pFirst = MakeTexture(1, 1, PF_A8R8G8B8, {0, 0, 255, 255});
  QXTexture* const pSecond = MakeCached(L"a");
  EXPECT_NE(pFirst->GetBindID(), pSecond->GetBindID());
  EXPECT_EQ(pSecond->GetTextureID(), static_cast<int>(pSecond->GetBindID()));
  m_pTextures->DeleteTexture(pSecond->GetBindID());
  EXPECT_EQ(pSecond->IsLoaded(), 0);
  EXPECT_EQ(pSecond->GetBindID(), 0U);
  EXPECT_EQ(pSecond->GetTextureID(), -1);
  EXPECT_EQ(pFirst->IsLoaded(), 1);
  EXPECT_EQ(m_pTextures->GetTexture(L"a", 0), pSecond);
  m_pTextures->DeleteTexture(0);
  m_pTextures->DeleteTexture(12345678);
  EXPECT_EQ(pFirst->IsLoaded(), 1);
}

TEST_F(QXOgreTextureLife, AnotherThreadMayDeleteATexture) {
  int const nBefore = CountedBytes();
  QXTexture* const pTexture = MakeCached(L"a");
  pTexture->AddRef();
  std::thread([&] { m_pTextures->RemoveTexture(pTexture, 1); }).join();
  EXPECT_EQ(m_pTextures->ManagerOperation2(L"a"), 0);
  Frame();
  EXPECT_EQ(CountedBytes(), nBefore) << "gone with the next frame";
}

TEST_F(QXOgreTextureLife, UnusedTexturesGoWhenTheyAreToldTo) {
  int const nBefore = CountedBytes();
  QXTexture* pTexture = MakeTexture(1, 1, PF_A8R8G8B8, {0, 0, 255, 255});
  std::erase(m_arrTextures, pTexture);
  m_pTextures->AddUnusedTextures(pTexture);
  EXPECT_EQ(pTexture, nullptr);
  EXPECT_EQ(CountedBytes(), nBefore + 4);
  m_pTextures->DeleteUnusedTextures();
  EXPECT_EQ(CountedBytes(), nBefore);
}

TEST(QXOgreTextureEnd, TexturesDrawablesAndTheRendererGoInAnyOrder) {
  int const nBefore = CountedBytes();
  for (int nOrder = 0; nOrder < 6; ++nOrder) {
    QXOgrePtr pGraphics3D = MakeRenderer();
    ASSERT_EQ(pGraphics3D->Initialize(L""), 1) << Text(pGraphics3D->GetErrorText());
    QXTexture* const pCached = pGraphics3D->GetTextureManager()->GetTexture(L"a", 1);
    QXTexture* const pOwn = pGraphics3D->GetTextureManager()->CreateTexture();
    std::unique_ptr<QXRenderOperation3D> pOperation(
        pGraphics3D->GetRenderOperationManager()->CreateRenderOperation3D(L"3D", 1));
    for (QXTexture* const pTexture : {pCached, pOwn}) {
      pTexture->SetTextureData(1, 1, NewBlock({1, 2, 3, 4}), 0, PF_A8R8G8B8);
      pTexture->LoadTexture(0, 0);
      EXPECT_EQ(pTexture->IsLoaded(), 1);
    }
    pOperation->SetTexture(0, pCached);
    pOperation->SetTexture(1, pOwn);
    std::unique_ptr<QXTexture> pTexture(pOwn);
    constexpr int ORDERS[6][3] = {{0, 1, 2}, {0, 2, 1}, {1, 0, 2}, {1, 2, 0}, {2, 0, 1}, {2, 1, 0}};
    for (int const nStep : ORDERS[nOrder]) {
      if (nStep == 0) pTexture.reset();
      if (nStep == 1) pOperation.reset();
      if (nStep == 2) pGraphics3D.reset();
      if (nStep != 2 || !pTexture) continue;
      EXPECT_EQ(pTexture->IsLoaded(), 0) << "without a renderer there is no device";
      EXPECT_EQ(pTexture->IsInitialGPU(), 0);
      pTexture->LoadTexture(0, 0);
      pTexture->SetMipmapBaseLevel(1);
      unsigned char const arrPixel[4] = {};
      pTexture->LoadSubTexture(0, 0, 1, 1, 1, 1, arrPixel, 1);
      EXPECT_EQ(pTexture->BlitToMemory(), nullptr);
    }
    EXPECT_EQ(CountedBytes(), nBefore) << nOrder;
  }
}

TEST(QXOgreTextureEnd, BeforeInitializeNothingCanBeLoaded) {
  QXOgrePtr const pGraphics3D = MakeRenderer();
  QXTexture* const pTexture = pGraphics3D->GetTextureManager()->GetTexture(L"a", 1);
  pTexture->SetTextureData(1, 1, NewBlock({1, 2, 3, 4}), 0, PF_A8R8G8B8);
  EXPECT_EQ(pTexture->IsInitialGPU(), 0);
  pTexture->LoadTexture(0, 0);
  EXPECT_EQ(pTexture->IsLoaded(), 0);
  EXPECT_EQ(Text(pGraphics3D->GetErrorText()), "a texture needs an initialised renderer");
  pGraphics3D->SetTextureUnitFiltering(0, 1, 1, 1);
  pGraphics3D->SetTextureCoordSet(0, 1);
  pGraphics3D->SetTextureAnisotropy(0, 4);
  pGraphics3D->SetTextureMipmapBias(0, 1.0);
}

}  // namespace QXC
