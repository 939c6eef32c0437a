#include <QxGraphics3D/model/QXRenderObjectInstance.h>

#include <QxGraphics3D/model/QXROInstancePtr.h>
#include <QxGraphics3D/renderop/QXRenderOperationManager.h>
#include <QxGraphics3D/testing/QXNullTexture.h>
#include <QxGraphics3D/testing/QXRecordingGraphics3D.h>
#include <QxGraphics3D/texture/QXTextureCacheEntry.h>

#include "../testing/QXTestGeometry.h"

#include <tests/QXFieldOrder.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace QXC {
namespace {

/// Takes everything from a copy, whose source frees it.
void LetGo(QXRenderObjectInstance& copy) {
  copy.m_pRenderOperation3D = nullptr;
  copy.m_pROMultiIndex = nullptr;
  copy.m_arrTextures.RemoveAll();
}

/// A range whose textures stand in the given places.
void AddRange(
    QXRenderOperationMultiIndex& mesh, std::vector<std::pair<int, QXTexture*>> const& arrPlaces, unsigned char bFlag) {
  auto* const pPackage = new QXTexturePackage;
  for (auto const& [nPlace, pTexture] : arrPlaces) pPackage->m_pTextures[nPlace] = pTexture;
  pPackage->m_bFlag = bFlag;
  mesh.SetAt(new QXVertexIndexPackage, pPackage);
}

class QXRenderObjectInstanceTest : public testing::Test {
protected:
  QXRenderObjectInstanceTest() : m_pGraphics(std::make_unique<QXRecordingGraphics3D>()) {
    m_pGraphics->Initialize(L"");
  }
  /// A texture with pixels, of which a host has taken nRefs references.
  QXTexture* MakeTexture(wchar_t const* szName, int nRefs) {
    QXTexture* const pTexture = m_pGraphics->GetTextureManager()->GetTexture(szName, 1);
    pTexture->SetTextureData(1, 1, new unsigned char[4](), 0, PF_A8R8G8B8);
    for (int i = 0; i < nRefs; ++i) pTexture->AddRef();
    return pTexture;
  }
  bool HasTexture(wchar_t const* szName) { return m_pGraphics->GetTextureManager()->GetTexture(szName, 0) != nullptr; }
  unsigned int CountDrawables() { return m_pGraphics->GetRenderOperationManager()->GetRenderOperationCount(); }
  /// Place of the first line that holds the text; a high number if there is none.
  std::size_t LineOf(std::string const& strText) {
    std::vector<std::string> const& arrLines = m_pGraphics->GetLog().GetLines();
    for (std::size_t i = 0; i < arrLines.size(); ++i) {
      if (arrLines[i].find(strText) != std::string::npos) return i;
    }
    return 1000000;
  }
  std::vector<QXTexture*> TexturesOf(QXRenderObjectInstance const& instance) {
    return std::vector<QXTexture*>(instance.m_arrTextures.begin(), instance.m_arrTextures.end());
  }

  std::unique_ptr<QXRecordingGraphics3D> m_pGraphics;
};

TEST_F(QXRenderObjectInstanceTest, ANewOneHasNothingAndGivesNoDrawable) {
  QXRenderObjectInstance instance;
  EXPECT_EQ(instance.GetRenderOperation3D(), nullptr);
  instance.Initialize();
  EXPECT_EQ(instance.m_pRenderOperation3D, nullptr);
  EXPECT_EQ(instance.m_pROMultiIndex, nullptr);
  EXPECT_EQ(instance.m_pGraphics3D, nullptr);
  EXPECT_EQ(instance.m_arrTextures.GetSize(), 0u);
}

TEST_F(QXRenderObjectInstanceTest, FieldsStandInTheirOrderBehindTheTable) {
  QXRenderObjectInstance const instance;
  ExpectInOrder({&instance, &instance.m_pRenderOperation3D, &instance.m_pROMultiIndex, &instance.m_arrTextures,
      &instance.m_pGraphics3D});
  EXPECT_TRUE(std::has_virtual_destructor_v<QXRenderObjectInstance>);
}

TEST_F(QXRenderObjectInstanceTest, GeometryOrRendererAloneGiveNoDrawable) {
  auto* const pMesh = MakeSquare().release();
  QXRenderObjectInstance withoutRenderer(pMesh, nullptr);
  EXPECT_EQ(withoutRenderer.GetRenderOperation3D(), nullptr);
  EXPECT_EQ(withoutRenderer.m_pROMultiIndex, pMesh);
  QXRenderObjectInstance withoutMesh(nullptr, m_pGraphics.get());
  EXPECT_EQ(withoutMesh.GetRenderOperation3D(), nullptr);
  EXPECT_EQ(CountDrawables(), 0u);
}

TEST_F(QXRenderObjectInstanceTest, ARendererWithoutDrawablesKeepsTheGeometry) {
  QXRenderObjectInstance instance(MakeSquare().release(), m_pGraphics.get());
  QXRenderOperationManager* const pManager = std::exchange(m_pGraphics->m_pRenderOperationManager, nullptr);
  EXPECT_EQ(instance.GetRenderOperation3D(), nullptr);
  EXPECT_NE(instance.m_pROMultiIndex, nullptr);
  m_pGraphics->m_pRenderOperationManager = pManager;
  EXPECT_NE(instance.GetRenderOperation3D(), nullptr);
}

TEST_F(QXRenderObjectInstanceTest, TheFirstUseMakesTheDrawableAndGivesTheGeometryUp) {
  auto pMesh = MakeSquare();
  QXBoundingBox const bounds(QXVector3d(-5.0, -6.0, -7.0), QXVector3d(5.0, 6.0, 7.0));
  pMesh->m_Bounds = bounds;
  QXRenderObjectInstance instance(pMesh.release(), m_pGraphics.get());
  EXPECT_EQ(CountDrawables(), 0u);
  QXRenderOperation3D* const pDrawable = instance.GetRenderOperation3D();
  ASSERT_NE(pDrawable, nullptr);
  EXPECT_EQ(instance.m_pRenderOperation3D, pDrawable);
  EXPECT_EQ(instance.m_pROMultiIndex, nullptr);
  EXPECT_EQ(pDrawable->GetTriangleCount(), 2u);
  EXPECT_EQ(pDrawable->GetBoundingBox().GetMin(), bounds.GetMin());
  EXPECT_EQ(pDrawable->GetBoundingBox().GetMax(), bounds.GetMax());
  EXPECT_LT(LineOf("CreateRenderOperation3D(\"Scene3D\", 1)"), 1000000u);
  EXPECT_LT(LineOf("SetRenderOperationMultiIndex"), LineOf("SetBoundingBox"));
}

TEST_F(QXRenderObjectInstanceTest, ASecondUseMakesNothing) {
  QXRenderObjectInstance instance(MakeSquare().release(), m_pGraphics.get());
  QXRenderOperation3D* const pDrawable = instance.GetRenderOperation3D();
  instance.Initialize();
  EXPECT_EQ(instance.GetRenderOperation3D(), pDrawable);
  EXPECT_EQ(CountDrawables(), 1u);
}

TEST_F(QXRenderObjectInstanceTest, NewGeometryWaitsForInitializeAndReplacesTheDrawable) {
  QXRenderObjectInstance instance(MakeSquare().release(), m_pGraphics.get());
  QXRenderOperation3D* const pDrawable = instance.GetRenderOperation3D();
  instance.m_pROMultiIndex = MakeSquare().release();
  EXPECT_EQ(instance.GetRenderOperation3D(), pDrawable);
  EXPECT_NE(instance.m_pROMultiIndex, nullptr);
  instance.Initialize();
  EXPECT_NE(instance.m_pRenderOperation3D, nullptr);
  EXPECT_EQ(instance.m_pROMultiIndex, nullptr);
  EXPECT_EQ(CountDrawables(), 1u);
}

// --- Textures ---

TEST_F(QXRenderObjectInstanceTest, APackageGivesItsFirstTextureUnlessItIsFlagged) {
  QXTexture* const pA = MakeTexture(L"a", 1);
  QXTexture* const pB = MakeTexture(L"b", 1);
  QXTexture* const pC = MakeTexture(L"c", 1);
  QXTexture* const pD = MakeTexture(L"d", 1);
  QXTexture* const pE = MakeTexture(L"e", 1);
  auto pMesh = MakeSquare();
  pMesh->RemoveAll();
  pMesh->m_nSize = 0;
  AddRange(*pMesh, {{2, pB}, {5, pA}}, 0);
  AddRange(*pMesh, {}, 0);
  AddRange(*pMesh, {{7, pE}, {0, pC}, {3, pD}}, 2);  // any flag but 0
  QXRenderObjectInstance instance(pMesh.release(), m_pGraphics.get());
  instance.Initialize();
  EXPECT_EQ(TexturesOf(instance), (std::vector{pB, pC, pD, pE}));
  EXPECT_EQ(pA->IsLoaded(), 0);
  EXPECT_EQ(pB->IsLoaded(), 1);
  EXPECT_EQ(pE->IsLoaded(), 1);
}

TEST_F(QXRenderObjectInstanceTest, TexturesAreLoadedIfNeededAndKeepTheirImage) {
  QXTexture* const pTexture = MakeTexture(L"bark", 1);
  auto pMesh = MakeSquare();
  AddRange(*pMesh, {{0, pTexture}}, 0);
  QXRenderObjectInstance instance(pMesh.release(), m_pGraphics.get());
  instance.Initialize();
  EXPECT_LT(LineOf("LoadTexture(1, 0)"), LineOf("SetRenderOperationMultiIndex"));
  EXPECT_NE(pTexture->m_TextureData.m_pPixels, nullptr);
}

TEST_F(QXRenderObjectInstanceTest, RangesWithoutAPackageAndNumbersThatLieAreSurvived) {
  QXTexture* const pTexture = MakeTexture(L"bark", 3);
  for (int const nSize : {-1, 0, 2, 3, 100}) {
    auto pMesh = MakeSquare();  // two ranges without a package
    AddRange(*pMesh, {{0, pTexture}}, 0);
    QdcArray<QXVertexIndexPackage*> const arrIndices = pMesh->GetIndexPackageArray();
    QdcArray<QXTexturePackage*> const arrTextures = pMesh->GetTexturePackageArray();
    pMesh->m_nSize = nSize;
    QXRenderObjectInstance instance(pMesh.release(), m_pGraphics.get());
    instance.Initialize();
    EXPECT_EQ(instance.m_arrTextures.GetSize(), nSize >= 3 ? 1u : 0u) << nSize;
    // The mesh frees as many packages as m_nSize says.
    for (auto i = static_cast<std::uint64_t>(std::max(nSize, 0)); i < arrIndices.GetSize(); ++i) {
      delete arrIndices[i];
      delete arrTextures[i];
    }
  }
}

TEST_F(QXRenderObjectInstanceTest, ATextureInTwoRangesStandsInTheListTwice) {
  QXTexture* const pTexture = MakeTexture(L"bark", 3);
  auto pMesh = MakeSquare();
  AddRange(*pMesh, {{0, pTexture}}, 0);
  AddRange(*pMesh, {{0, pTexture}}, 0);
  {
    QXRenderObjectInstance instance(pMesh.release(), m_pGraphics.get());
    instance.Initialize();
    EXPECT_EQ(TexturesOf(instance), (std::vector{pTexture, pTexture}));
  }
  ASSERT_TRUE(HasTexture(L"bark"));
  EXPECT_EQ(pTexture->GetRef(), 1);
}

// --- Ends ---

TEST_F(QXRenderObjectInstanceTest, AnInstanceThatWasNeverDrawnTouchesNoTexture) {
  QXTexture* const pTexture = MakeTexture(L"bark", 1);
  auto pMesh = MakeSquare();
  AddRange(*pMesh, {{0, pTexture}}, 0);
  m_pGraphics->GetLog().Clear();
  { QXRenderObjectInstance const instance(pMesh.release(), m_pGraphics.get()); }
  ASSERT_TRUE(HasTexture(L"bark"));
  EXPECT_EQ(pTexture->GetRef(), 1);
  EXPECT_EQ(m_pGraphics->GetLog().GetText(), "");
}

TEST_F(QXRenderObjectInstanceTest, TheEndDeletesTheDrawableAndGivesTexturesBack) {
  QXTexture* const pKept = MakeTexture(L"kept", 2);
  QXTexture* const pLast = MakeTexture(L"last", 1);
  auto pMesh = MakeSquare();
  AddRange(*pMesh, {{0, pKept}, {1, pLast}}, 1);
  {
    QXRenderObjectInstance instance(pMesh.release(), m_pGraphics.get());
    instance.Initialize();
    m_pGraphics->GetLog().Clear();
  }
  EXPECT_EQ(CountDrawables(), 0u);
  ASSERT_TRUE(HasTexture(L"kept"));
  EXPECT_EQ(pKept->GetRef(), 1);
  EXPECT_FALSE(HasTexture(L"last"));
  EXPECT_LT(LineOf("drawable 1: destroyed"), LineOf("texture \"last\": destroyed"));
  EXPECT_LT(LineOf("texture \"last\": destroyed"), 1000000u);
}

// Hosts take a reference for each instance. Where one forgot, the second instance must not look at what is gone.
TEST_F(QXRenderObjectInstanceTest, TwoInstancesWithOneReferenceDeleteTheTextureOnce) {
  QXTexture* const pTexture = MakeTexture(L"bark", 1);
  std::vector<std::unique_ptr<QXRenderObjectInstance>> arrInstances;
  for (int i = 0; i < 2; ++i) {
    auto pMesh = MakeSquare();
    AddRange(*pMesh, {{0, pTexture}}, 0);
    arrInstances.push_back(std::make_unique<QXRenderObjectInstance>(pMesh.release(), m_pGraphics.get()));
    arrInstances.back()->Initialize();
  }
  // The drawables' own references would hide what is asked here.
  for (auto const& pInstance : arrInstances) pInstance->m_pRenderOperation3D->ClearGeometry();
  EXPECT_EQ(pTexture->GetRef(), 1);
  arrInstances[0].reset();
  EXPECT_FALSE(HasTexture(L"bark"));
  arrInstances[1].reset();
  EXPECT_EQ(CountDrawables(), 0u);
}

// The instance itself, a copy of it, and one that it was assigned to.
TEST_F(QXRenderObjectInstanceTest, ANewTextureOfTheSameNameIsLeftAlone) {
  QXTextureManager& manager = *m_pGraphics->GetTextureManager();
  for (int nWay = 0; nWay < 3; ++nWay) {
    QXTexture* const pTexture = manager.CreateTexture();
    pTexture->SetTexFilePath(L"bark");
    pTexture->AddRef();
    auto const pEntry = std::make_unique<QXTextureCacheEntry>(pTexture);
    manager.AddToCache(L"bark", pEntry.get());
    auto pMesh = MakeSquare();
    AddRange(*pMesh, {{0, pTexture}}, 0);
    auto pInstance = std::make_unique<QXRenderObjectInstance>(pMesh.release(), m_pGraphics.get());
    pInstance->Initialize();
    pInstance->m_pRenderOperation3D->ClearGeometry();
    if (nWay > 0) {
      auto pTaken =
          nWay == 1 ? std::make_unique<QXRenderObjectInstance>(*pInstance) : std::make_unique<QXRenderObjectInstance>();
      if (nWay == 2) *pTaken = *pInstance;
      LetGo(*pInstance);
      pInstance = std::move(pTaken);
    }
    // Out of the cache, but not gone: its place in memory stays taken while the next one is made.
    manager.RemoveTexture(pTexture, 0);
    QXTexture* const pNext = MakeTexture(L"bark", 2);
    ASSERT_NE(pNext, pTexture);
    pInstance.reset();
    EXPECT_EQ(pNext->GetRef(), 2) << nWay;
    manager.RemoveTexture(pNext, 1);
    manager.RemoveTexture(pNext, 1);
  }
}

// The list is open to hosts: one that stood in it before gives its reference back too, and shifts no other.
TEST_F(QXRenderObjectInstanceTest, TexturesThatAHostAddedAreGivenBackToo) {
  QXTexture* const pBefore = MakeTexture(L"before", 2);
  QXTexture* const pLoaded = MakeTexture(L"loaded", 2);
  QXTexture* const pAfter = MakeTexture(L"after", 2);
  {
    auto pMesh = MakeSquare();
    AddRange(*pMesh, {{0, pLoaded}}, 0);
    QXRenderObjectInstance instance(pMesh.release(), m_pGraphics.get());
    instance.m_arrTextures.Add(pBefore);
    instance.m_arrTextures.Add(nullptr);
    instance.Initialize();
    instance.m_arrTextures.Add(pAfter);
  }
  EXPECT_EQ(pBefore->GetRef(), 1);
  EXPECT_EQ(pLoaded->GetRef(), 1);
  EXPECT_EQ(pAfter->GetRef(), 1);
}

TEST_F(QXRenderObjectInstanceTest, WithoutATextureManagerTexturesAreLeftAlone) {
  QXTexture* const pTexture = MakeTexture(L"bark", 1);
  auto pMesh = MakeSquare();
  AddRange(*pMesh, {{0, pTexture}}, 0);
  QXTextureManager* const pManager = m_pGraphics->m_pTextureManager;
  {
    QXRenderObjectInstance instance(pMesh.release(), m_pGraphics.get());
    instance.Initialize();
    m_pGraphics->m_pTextureManager = nullptr;
  }
  m_pGraphics->m_pTextureManager = pManager;
  ASSERT_TRUE(HasTexture(L"bark"));
  EXPECT_EQ(pTexture->GetRef(), 1);
}

TEST_F(QXRenderObjectInstanceTest, PlacesOfTheListMayBeNull) {
  QXRenderObjectInstance instance(MakeSquare().release(), m_pGraphics.get());
  instance.m_arrTextures.Add(nullptr);
  EXPECT_EQ(CountDrawables(), 0u);
}

// --- Copies ---

TEST_F(QXRenderObjectInstanceTest, CopiesAreShallow) {
  QXTexture* const pTexture = MakeTexture(L"bark", 1);
  auto pMesh = MakeSquare();
  AddRange(*pMesh, {{0, pTexture}}, 0);
  QXRenderObjectInstance source(pMesh.release(), m_pGraphics.get());
  QXRenderObjectInstance early(source);
  EXPECT_EQ(early.m_pROMultiIndex, source.m_pROMultiIndex);
  LetGo(early);
  source.Initialize();
  QXRenderObjectInstance copy(source);
  QXRenderObjectInstance assigned;
  assigned = source;
  for (QXRenderObjectInstance* const pTaken : {&copy, &assigned}) {
    EXPECT_EQ(pTaken->m_pRenderOperation3D, source.m_pRenderOperation3D);
    EXPECT_EQ(pTaken->m_pGraphics3D, m_pGraphics.get());
    EXPECT_EQ(TexturesOf(*pTaken), (std::vector{pTexture}));
    LetGo(*pTaken);
  }
}

// --- The pointer ---

TEST(QXROInstancePtr, SharesAPlainAddressThatIsHeldAlready) {
  EXPECT_TRUE((std::is_base_of_v<QXSharedPtr<QXRenderObjectInstance>, QXROInstancePtr>));
  EXPECT_EQ(sizeof(QXROInstancePtr), sizeof(QXSharedPtr<QXRenderObjectInstance>));
  EXPECT_EQ(QXROInstancePtr().IsNull(), 1);
  EXPECT_EQ(QXROInstancePtr(nullptr).IsNull(), 1);
  QXROInstancePtr pFirst(new QXRenderObjectInstance);
  QXROInstancePtr pSecond(pFirst.GetPointer());
  QXROInstancePtr pThird;
  pThird = pSecond;
  EXPECT_EQ(pFirst.UseCount(), 3u);
  QXROInstancePtr pMoved(std::move(pThird));
  EXPECT_EQ(pFirst.UseCount(), 3u);
  pThird = std::move(pMoved);
  pFirst.SetNull();
  pSecond.Bind(nullptr);
  EXPECT_EQ(pThird.UseCount(), 1u);
}

TEST(QXROInstancePtr, CopiesOfAMeshAreCountedApart) {
  QXROInstancePtr const pFirst(new QXRenderObjectInstance);
  QXROInstancePtr const pCopy(new QXRenderObjectInstance(*pFirst));
  *pCopy = *pFirst;
  QXROInstancePtr const pAgain(pCopy.GetPointer());
  EXPECT_EQ(pFirst.UseCount(), 1u);
  EXPECT_EQ(pCopy.UseCount(), 2u);
}

}  // namespace
}  // namespace QXC
