#include <QxGraphics3D/atlas/QXRenderTextureManager.h>

#include <QxGraphics3D/atlas/QXRenderTexturePatch.h>
#include <QxGraphics3D/frame/QXRenderTarget.h>
#include <QxGraphics3D/testing/QXRecordingGraphics3D.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <ostream>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace QXC {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct QXPlace {
  int m_nRow;
  int m_nCol;
  int m_nLod;
  int m_nIndex;
  bool operator==(QXPlace const&) const = default;
};

void PrintTo(QXPlace const& place, std::ostream* pOut) {
  *pOut << "row " << place.m_nRow << ", column " << place.m_nCol << ", level " << place.m_nLod << ", texture "
        << place.m_nIndex;
}

QXPlace PlaceOf(QXRenderTexturePatch const* pPatch) {
  return {pPatch->GetRow(), pPatch->GetCol(), pPatch->GetLod(), pPatch->GetTextureIndex()};
}

// What the manager asks of the renderer for one big texture.
std::string BigName(int nIndex) {
  return "\"RenderTexture_BigTexture_" + std::to_string(nIndex) + "\"";
}
std::string Created(int nIndex) {
  return "graphics: CreateRenderTexture(" + BigName(nIndex) + ", 12, 2048, 2048, 0, 32, \"\")";
}
std::string NodeCreated(int nIndex) {
  return "graphics: CreateSceneNode(\"\", \"\", " + BigName(nIndex) + ")";
}
std::string NodeDestroyed(int nIndex) {
  return "graphics: DestroySceneNode(\"\", " + BigName(nIndex) + ")";
}
std::string Destroyed(int nIndex) {
  return "target " + BigName(nIndex) + ": destroyed()";
}
std::string Shown(int nIndex, int nShown) {
  return "graphics: SetSceneNodeVisible(\"\", " + BigName(nIndex) + ", " + std::to_string(nShown) + ", 1)";
}
std::string Rendered(int nIndex) {
  return "graphics: RenderPatchToTexture(1024, 1024, 2048, 2048, target " + BigName(nIndex) + ", (0 0 1 1))";
}

class QXRenderTextureManagerTest : public testing::Test {
protected:
  QXRenderTextureManagerTest() {
    m_Graphics.Initialize(QdcUnicodeString());
    m_Manager.SetGraphics3D(&m_Graphics);
    Calls();
  }
  ~QXRenderTextureManagerTest() override { m_Manager.Clear(); }

  QXRenderTexturePatch* Get(wchar_t const* szName, unsigned int nSize) {
    return m_Manager.GetRenderTexturePatch(szName, nSize, nSize);
  }
  /// Since the last time, without what happens inside of a null target.
  std::vector<std::string> Calls() {
    std::vector<std::string> arrCalls = m_Graphics.GetLog().GetLines();
    m_Graphics.GetLog().Clear();
    std::erase_if(arrCalls, [](std::string const& strCall) { return strCall.starts_with("texture "); });
    return arrCalls;
  }

  QXRecordingGraphics3D m_Graphics;
  QXRenderTextureManager& m_Manager = QXRenderTextureManager::GetSingleton();
};

TEST(QXRenderTextureManager, IsOneForTheProcess) {
  EXPECT_EQ(&QXRenderTextureManager::GetSingleton(), QXRenderTextureManager::GetSingletonPtr());
  EXPECT_EQ(QXSingleton<QXRenderTextureManager>::ms_pSingleton, QXRenderTextureManager::GetSingletonPtr());
}

TEST_F(QXRenderTextureManagerTest, FirstPatchMakesTargetAndNode) {
  EXPECT_EQ(PlaceOf(Get(L"a", 256)), (QXPlace{128, 128, 3, 0}));
  EXPECT_THAT(Calls(), ElementsAre(Created(0), NodeCreated(0)));
}

TEST_F(QXRenderTextureManagerTest, FurtherPatchesGrowByColumnFirstAndAskNothing) {
  Get(L"a", 256);
  Calls();
  EXPECT_EQ(PlaceOf(Get(L"b", 256)), (QXPlace{128, 384, 3, 0}));
  EXPECT_EQ(PlaceOf(Get(L"c", 256)), (QXPlace{384, 128, 3, 0}));
  EXPECT_EQ(PlaceOf(Get(L"d", 256)), (QXPlace{384, 384, 3, 0}));
  EXPECT_THAT(Calls(), IsEmpty());
}

TEST_F(QXRenderTextureManagerTest, FullBigTextureIsFollowedByAnother) {
  EXPECT_EQ(PlaceOf(Get(L"a", 2048)), (QXPlace{1024, 1024, 0, 0}));
  EXPECT_EQ(PlaceOf(Get(L"b", 4)), (QXPlace{2, 2, 9, 1}));
  EXPECT_EQ(PlaceOf(Get(L"c", 2048)), (QXPlace{1024, 1024, 0, 2}));
  EXPECT_THAT(Calls(), ElementsAre(Created(0), NodeCreated(0), Created(1), NodeCreated(1), Created(2), NodeCreated(2)));
}

TEST_F(QXRenderTextureManagerTest, SecondRequestOfANameTakesANewPlaceAndCounts) {
  QXRenderTexturePatch* const pPatch = Get(L"a", 256);
  EXPECT_EQ(Get(L"a", 256), pPatch);
  EXPECT_EQ(pPatch->GetRef(), 2);
  EXPECT_EQ(PlaceOf(pPatch), (QXPlace{128, 384, 3, 0}));
  EXPECT_EQ(m_Manager.GetRenderTexturePatch(L"a", 60, 500), pPatch);
  EXPECT_EQ(pPatch->GetHeight(), 60U);
  EXPECT_EQ(pPatch->GetWidth(), 500U);
  EXPECT_EQ(PlaceOf(pPatch), (QXPlace{256, 768, 2, 0}));
}

TEST_F(QXRenderTextureManagerTest, EveryRequestWantsItsRemovalAndOnlyTheLastPlaceIsFreed) {
  Get(L"a", 256);
  Get(L"a", 256);
  Calls();
  m_Manager.RemoveRenderTexturePatch(L"a");
  EXPECT_EQ(PlaceOf(Get(L"b", 256)), (QXPlace{384, 128, 3, 0}));
  m_Manager.RemoveRenderTexturePatch(L"a");
  EXPECT_EQ(PlaceOf(Get(L"c", 256)), (QXPlace{128, 384, 3, 0}));
  EXPECT_EQ(PlaceOf(Get(L"d", 256)), (QXPlace{384, 384, 3, 0}));
  // The first place was counted twice and freed once: the big texture stays to the end.
  for (wchar_t const* const szName : {L"b", L"c", L"d"}) m_Manager.RemoveRenderTexturePatch(szName);
  EXPECT_THAT(Calls(), IsEmpty());
  EXPECT_EQ(PlaceOf(Get(L"e", 2048)), (QXPlace{1024, 1024, 0, 1}));
}

TEST_F(QXRenderTextureManagerTest, RemovedPatchGivesItsPlaceBack) {
  Get(L"a", 256);
  Get(L"b", 256);
  m_Manager.RemoveRenderTexturePatch(L"a");
  EXPECT_EQ(PlaceOf(Get(L"c", 512)), (QXPlace{256, 768, 2, 0}));
  EXPECT_EQ(PlaceOf(Get(L"d", 256)), (QXPlace{128, 128, 3, 0}));
  EXPECT_EQ(Get(L"a", 256)->GetRef(), 1);
}

TEST_F(QXRenderTextureManagerTest, LastPatchTakesNodeAndTargetAlong) {
  Get(L"a", 2048);
  Get(L"b", 2048);
  Get(L"c", 2048);
  Calls();
  m_Manager.RemoveRenderTexturePatch(L"b");
  EXPECT_THAT(Calls(), ElementsAre(NodeDestroyed(1), Destroyed(1)));
  EXPECT_EQ(Get(L"d", 2048)->GetTextureIndex(), 1);
  EXPECT_THAT(Calls(), ElementsAre(Created(1), NodeCreated(1)));
  EXPECT_EQ(Get(L"e", 2048)->GetTextureIndex(), 3);
}

TEST_F(QXRenderTextureManagerTest, NameOfThePatchItselfMayBeGivenToRemove) {
  QXRenderTexturePatch* const pPatch = Get(L"a name that is too long to stand inside the text object", 64);
  m_Manager.RemoveRenderTexturePatch(pPatch->GetName());
  Calls();
  EXPECT_EQ(Get(L"b", 64)->GetTextureIndex(), 0);
  EXPECT_THAT(Calls(), ElementsAre(Created(0), NodeCreated(0)));
}

TEST_F(QXRenderTextureManagerTest, UnknownNamesAreIgnored) {
  m_Manager.RemoveRenderTexturePatch(L"nobody");
  m_Manager.ResizeRenderTexturePatch(L"nobody", 4, 4);
  m_Manager.RemoveRenderTexturePatch(L"");
  Get(L"a", 64);
  m_Manager.RemoveRenderTexturePatch(L"a");
  Calls();
  m_Manager.RemoveRenderTexturePatch(L"a");
  EXPECT_THAT(Calls(), IsEmpty());
}

TEST_F(QXRenderTextureManagerTest, EmptyAndVeryLongNamesAreNamesLikeOthers) {
  QdcUnicodeString const strLong(std::wstring(100000, L'x').c_str());
  QXRenderTexturePatch* const pEmpty = Get(L"", 64);
  QXRenderTexturePatch* const pLong = Get(strLong, 64);
  EXPECT_NE(pEmpty, pLong);
  EXPECT_EQ(pLong->GetName().GetLength(), 100000);
  m_Manager.RemoveRenderTexturePatch(L"");
  EXPECT_EQ(PlaceOf(Get(L"a", 64)), (QXPlace{32, 32, 5, 0}));
  m_Manager.RemoveRenderTexturePatch(strLong);
  EXPECT_EQ(PlaceOf(Get(L"b", 64)), (QXPlace{32, 96, 5, 0}));
}

TEST_F(QXRenderTextureManagerTest, CountThatWasPushedBelowZeroNeverComesBack) {
  QXRenderTexturePatch* const pPatch = Get(L"a", 64);
  pPatch->DecRef();
  m_Manager.RemoveRenderTexturePatch(L"a");
  EXPECT_EQ(pPatch->GetRef(), -1);
  EXPECT_EQ(Get(L"a", 64), pPatch);
  // Still the same one, not a new one at its address.
  EXPECT_EQ(pPatch->GetRef(), 0);
}

// --- Resizing ---

TEST_F(QXRenderTextureManagerTest, ResizedPatchGivesItsPlaceBackFirst) {
  QXRenderTexturePatch* const pPatch = Get(L"a", 256);
  pPatch->Resize(200, 256);
  EXPECT_EQ(PlaceOf(pPatch), (QXPlace{128, 128, 3, 0}));
  pPatch->Resize(600, 20);
  EXPECT_EQ(PlaceOf(pPatch), (QXPlace{512, 512, 1, 0}));
  EXPECT_EQ(PlaceOf(Get(L"b", 256)), (QXPlace{128, 1152, 3, 0}));
  pPatch->Resize(16, 16);
  EXPECT_EQ(PlaceOf(pPatch), (QXPlace{8, 8, 7, 0}));
  EXPECT_EQ(pPatch->GetRef(), 1);
}

TEST_F(QXRenderTextureManagerTest, BigTextureThatAResizeEmptiesStays) {
  Get(L"full", 2048);
  QXRenderTexturePatch* const pPatch = Get(L"a", 1024);
  Get(L"b", 2048);
  EXPECT_EQ(pPatch->GetTextureIndex(), 1);
  m_Manager.RemoveRenderTexturePatch(L"full");
  Calls();
  // Texture 0 has gone, so the whole one that is asked for now stands on 1, which the patch itself has emptied.
  pPatch->Resize(2048, 2048);
  EXPECT_EQ(PlaceOf(pPatch), (QXPlace{1024, 1024, 0, 1}));
  pPatch->Resize(2, 2);
  EXPECT_EQ(PlaceOf(pPatch), (QXPlace{1, 1, 10, 0}));
  EXPECT_THAT(Calls(), ElementsAre(Created(0), NodeCreated(0)));
  EXPECT_EQ(Get(L"c", 1024)->GetTextureIndex(), 0);
  EXPECT_EQ(Get(L"d", 2048)->GetTextureIndex(), 1);
}

TEST_F(QXRenderTextureManagerTest, NumbersOfAResizeByNameAreNotRead) {
  QXRenderTexturePatch* const pPatch = Get(L"a", 256);
  Get(L"b", 128);
  m_Manager.ResizeRenderTexturePatch(L"a", 5000, 7);
  EXPECT_EQ(PlaceOf(pPatch), (QXPlace{128, 128, 3, 0}));
  EXPECT_EQ(pPatch->GetWidth(), 256U);
}

// --- Rendering ---

TEST_F(QXRenderTextureManagerTest, MarkedBigTexturesAreRenderedOnceByIndex) {
  QXRenderTexturePatch* const pFirst = Get(L"a", 1024);
  QXRenderTexturePatch* const pSecond = Get(L"b", 1024);
  Get(L"c", 2048);
  QXRenderTexturePatch* const pThird = Get(L"d", 2048);
  Calls();
  m_Manager.RenderToTexture();
  EXPECT_THAT(Calls(), IsEmpty());
  pThird->SetNeedRender();
  pSecond->SetNeedRender();
  m_Manager.SetNeedRender(pFirst);
  EXPECT_THAT(Calls(), IsEmpty());
  m_Manager.RenderToTexture();
  EXPECT_THAT(Calls(), ElementsAre(Shown(0, 1), Rendered(0), Shown(0, 0), Shown(2, 1), Rendered(2), Shown(2, 0)));
  m_Manager.RenderToTexture();
  EXPECT_THAT(Calls(), IsEmpty());
  pFirst->SetNeedRender();
  m_Manager.RenderToTexture();
  EXPECT_THAT(Calls(), ElementsAre(Shown(0, 1), Rendered(0), Shown(0, 0)));
}

TEST_F(QXRenderTextureManagerTest, MarkOutlivesItsBigTexture) {
  Get(L"a", 64)->SetNeedRender();
  m_Manager.RemoveRenderTexturePatch(L"a");
  m_Manager.RenderToTexture();
  Get(L"b", 64);
  Calls();
  m_Manager.RenderToTexture();
  EXPECT_THAT(Calls(), ElementsAre(Shown(0, 1), Rendered(0), Shown(0, 0)));
}

TEST_F(QXRenderTextureManagerTest, MarksOfTexturesThatAreNotThereAreSkipped) {
  QXRenderTexturePatch* const pPatch = Get(L"a", 64);
  pPatch->SetTextureIndex(5);
  pPatch->SetNeedRender();
  m_Manager.SetNeedRender(nullptr);
  Calls();
  m_Manager.RenderToTexture();
  EXPECT_THAT(Calls(), IsEmpty());
}

TEST_F(QXRenderTextureManagerTest, NothingIsRenderedWithoutARenderer) {
  Get(L"a", 64)->SetNeedRender();
  Calls();
  m_Manager.SetGraphics3D(nullptr);
  m_Manager.RenderToTexture();
  EXPECT_THAT(Calls(), IsEmpty());
  m_Manager.SetGraphics3D(&m_Graphics);
  m_Manager.RenderToTexture();
  EXPECT_THAT(Calls(), ElementsAre(Shown(0, 1), Rendered(0), Shown(0, 0)));
}

// --- Useless patches ---

QdcArray<QXRenderTexturePatch*> ListOf(std::initializer_list<QXRenderTexturePatch*> listPatches) {
  QdcArray<QXRenderTexturePatch*> arrPatches;
  for (QXRenderTexturePatch* const pPatch : listPatches) arrPatches.Add(pPatch);
  return arrPatches;
}

TEST_F(QXRenderTextureManagerTest, UselessPatchesWaitForTheNextRendering) {
  QXRenderTexturePatch* const pFirst = Get(L"a", 2048);
  QXRenderTexturePatch* const pSecond = Get(L"b", 2048);
  pSecond->SetNeedRender();
  Calls();
  m_Manager.AddUselessTexture(ListOf({pSecond}));
  m_Manager.AddUselessTexture(ListOf({pFirst}));
  EXPECT_THAT(Calls(), IsEmpty());
  m_Manager.RenderToTexture();
  EXPECT_THAT(Calls(), ElementsAre(NodeDestroyed(1), Destroyed(1), NodeDestroyed(0), Destroyed(0)));
  m_Manager.RenderToTexture();
  EXPECT_THAT(Calls(), IsEmpty());
}

TEST_F(QXRenderTextureManagerTest, UselessPatchesCanBeDroppedAtOnce) {
  QXRenderTexturePatch* const pPatch = Get(L"a", 64);
  m_Manager.AddUselessTexture(ListOf({pPatch}));
  Calls();
  m_Manager.ClearUselessTexture();
  EXPECT_THAT(Calls(), ElementsAre(NodeDestroyed(0), Destroyed(0)));
  m_Manager.ClearUselessTexture();
  EXPECT_THAT(Calls(), IsEmpty());
}

TEST_F(QXRenderTextureManagerTest, UselessPatchesWaitWhileThereIsNoRenderer) {
  QXRenderTexturePatch* const pPatch = Get(L"a", 64);
  m_Manager.AddUselessTexture(ListOf({pPatch}));
  m_Manager.SetGraphics3D(nullptr);
  m_Manager.RenderToTexture();
  EXPECT_EQ(pPatch->GetRef(), 1);
  m_Manager.SetGraphics3D(&m_Graphics);
  Calls();
  m_Manager.RenderToTexture();
  EXPECT_THAT(Calls(), ElementsAre(NodeDestroyed(0), Destroyed(0)));
}

TEST_F(QXRenderTextureManagerTest, UselessEntryTakesOneUserEach) {
  QXRenderTexturePatch* const pPatch = Get(L"a", 64);
  Get(L"a", 64);
  Get(L"a", 64);
  m_Manager.AddUselessTexture(ListOf({pPatch, pPatch}));
  m_Manager.RenderToTexture();
  EXPECT_EQ(pPatch->GetRef(), 1);
  // The list is empty now.
  m_Manager.ClearUselessTexture();
  EXPECT_EQ(pPatch->GetRef(), 1);
}

TEST_F(QXRenderTextureManagerTest, UselessPatchesThatAreGoneArePassedOver) {
  QXRenderTexturePatch* const pTwice = Get(L"twice", 64);
  QXRenderTexturePatch* const pRemoved = Get(L"removed", 64);
  Get(L"stays", 64);
  int nOther = 0;
  m_Manager.AddUselessTexture(ListOf({pTwice, pTwice, nullptr, pRemoved}));
  m_Manager.AddUselessTexture(ListOf({reinterpret_cast<QXRenderTexturePatch*>(&nOther)}));
  m_Manager.RemoveRenderTexturePatch(L"removed");
  m_Manager.RenderToTexture();
  EXPECT_EQ(PlaceOf(Get(L"a", 64)), (QXPlace{32, 32, 5, 0}));
  EXPECT_EQ(PlaceOf(Get(L"b", 64)), (QXPlace{32, 96, 5, 0}));
  EXPECT_EQ(PlaceOf(Get(L"c", 64)), (QXPlace{96, 96, 5, 0}));
}

TEST_F(QXRenderTextureManagerTest, PatchAtTheAddressOfAUselessOneIsNotTakenForIt) {
  QXRenderTexturePatch* pPatch = Get(L"a", 64);
  m_Manager.AddUselessTexture(ListOf({pPatch}));
  m_Manager.RemoveRenderTexturePatch(L"a");
  // Until the allocator hands the address out again; where it does not, nothing is tested but nothing wrong either.
  for (int i = 0; i < 100 && Get(L"b", 64) != pPatch; ++i) m_Manager.RemoveRenderTexturePatch(L"b");
  QXRenderTexturePatch* const pNew = Get(L"b", 64);
  int const nUsers = pNew->GetRef();
  m_Manager.RenderToTexture();
  EXPECT_EQ(pNew->GetRef(), nUsers);
}

TEST_F(QXRenderTextureManagerTest, UselessListOutlivesAClearAndFindsNothing) {
  QXRenderTexturePatch* const pPatch = Get(L"a", 64);
  m_Manager.AddUselessTexture(ListOf({pPatch}));
  m_Manager.Clear();
  m_Manager.SetGraphics3D(&m_Graphics);
  Get(L"a", 64);
  Calls();
  m_Manager.RenderToTexture();
  EXPECT_THAT(Calls(), IsEmpty());
}

// --- The end, and renderers that fail ---

TEST_F(QXRenderTextureManagerTest, ClearDeletesAllAndForgetsTheRenderer) {
  Get(L"a", 2048);
  Get(L"b", 2048)->SetNeedRender();
  Get(L"b", 2048)->SetNeedRender();
  Calls();
  m_Manager.Clear();
  EXPECT_THAT(Calls(),
      ElementsAre(NodeDestroyed(0), Destroyed(0), NodeDestroyed(1), Destroyed(1), NodeDestroyed(2), Destroyed(2)));
  EXPECT_EQ(Get(L"c", 64)->IsPlaced(), 0);
  m_Manager.Clear();
  m_Manager.SetGraphics3D(&m_Graphics);
  EXPECT_EQ(PlaceOf(Get(L"b", 2048)), (QXPlace{1024, 1024, 0, 0}));
  EXPECT_EQ(Get(L"a", 2048)->GetRef(), 1);
  Calls();
  // The marks went as well.
  m_Manager.RenderToTexture();
  EXPECT_THAT(Calls(), IsEmpty());
}

TEST_F(QXRenderTextureManagerTest, DestructorClears) {
  {
    QXRenderTextureManager manager;
    manager.SetGraphics3D(&m_Graphics);
    manager.GetRenderTexturePatch(L"a", 4, 4);
    Calls();
  }
  EXPECT_THAT(Calls(), ElementsAre(NodeDestroyed(0), Destroyed(0)));
}

TEST_F(QXRenderTextureManagerTest, RendererTakenAwayLosesTargetsWithoutACall) {
  Get(L"a", 64);
  Get(L"b", 2048);
  Calls();
  m_Manager.SetGraphics3D(nullptr);
  m_Manager.RemoveRenderTexturePatch(L"a");
  EXPECT_THAT(Calls(), ElementsAre(Destroyed(0)));
  m_Manager.Clear();
  EXPECT_THAT(Calls(), ElementsAre(Destroyed(1)));
}

TEST_F(QXRenderTextureManagerTest, WithoutARendererNoPlaceIsKept) {
  m_Manager.SetGraphics3D(nullptr);
  QXRenderTexturePatch* const pPatch = Get(L"a", 64);
  ASSERT_NE(pPatch, nullptr);
  EXPECT_EQ(pPatch->GetRef(), 1);
  EXPECT_EQ(pPatch->IsPlaced(), 0);
  EXPECT_EQ(PlaceOf(pPatch), (QXPlace{0, 0, 0, 0}));
  pPatch->Resize(30, 30);
  EXPECT_EQ(pPatch->IsPlaced(), 0);
  m_Manager.SetGraphics3D(&m_Graphics);
  EXPECT_EQ(PlaceOf(Get(L"b", 64)), (QXPlace{32, 32, 5, 0}));
  // The patch without a place frees none, and marks no texture.
  pPatch->SetNeedRender();
  Calls();
  m_Manager.RenderToTexture();
  m_Manager.RemoveRenderTexturePatch(L"a");
  EXPECT_THAT(Calls(), IsEmpty());
  EXPECT_EQ(PlaceOf(Get(L"c", 64)), (QXPlace{32, 96, 5, 0}));
}

TEST_F(QXRenderTextureManagerTest, RendererThatGivesNoTargetLeavesNoPlace) {
  QXNullGraphics3D notInitialised;
  Get(L"a", 2048);
  m_Manager.SetGraphics3D(&notInitialised);
  QXRenderTexturePatch* const pPatch = Get(L"b", 64);
  EXPECT_EQ(pPatch->IsPlaced(), 0);
  m_Manager.SetGraphics3D(&m_Graphics);
  EXPECT_EQ(PlaceOf(Get(L"c", 64)), (QXPlace{32, 32, 5, 1}));
  // A patch that had a place keeps it when no other can be made.
  m_Manager.SetGraphics3D(&notInitialised);
  EXPECT_EQ(PlaceOf(Get(L"c", 2048)), (QXPlace{32, 32, 5, 1}));
  m_Manager.SetGraphics3D(&m_Graphics);
}

TEST_F(QXRenderTextureManagerTest, TooLargePatchesFreeNothingWhenTheyGo) {
  Get(L"small", 64);
  QXRenderTexturePatch* const pHuge = Get(L"huge", 8192);
  EXPECT_EQ(pHuge->IsPlaced(), 0);
  m_Manager.RemoveRenderTexturePatch(L"huge");
  EXPECT_EQ(PlaceOf(Get(L"a", 64)), (QXPlace{32, 96, 5, 0}));
  // One that grows too large loses its place, and gets another when it is small again.
  QXRenderTexturePatch* const pPatch = Get(L"b", 64);
  pPatch->Resize(4000, 1);
  EXPECT_EQ(pPatch->IsPlaced(), 0);
  EXPECT_EQ(PlaceOf(pPatch), (QXPlace{0, 0, 0, 0}));
  pPatch->Resize(1, 50);
  EXPECT_EQ(PlaceOf(pPatch), (QXPlace{96, 32, 5, 0}));
}

TEST_F(QXRenderTextureManagerTest, LocationsThatCallersBentFreeNothingOfOthers) {
  QXRenderTexturePatch* const pPatch = Get(L"a", 64);
  Get(L"b", 64);
  pPatch->SetRow(1 << 20);
  pPatch->SetCol(-5);
  m_Manager.RemoveRenderTexturePatch(L"a");
  Get(L"a", 64)->SetTextureIndex(77);
  m_Manager.RemoveRenderTexturePatch(L"a");
  EXPECT_EQ(PlaceOf(Get(L"c", 64)), (QXPlace{96, 96, 5, 0}));
}

TEST_F(QXRenderTextureManagerTest, NameIsTheKeyFromWhenThePatchWasMade) {
  QXRenderTexturePatch* const pPatch = Get(L"a", 64);
  pPatch->SetName(L"b");
  m_Manager.RemoveRenderTexturePatch(L"b");
  EXPECT_EQ(pPatch->GetRef(), 1);
  m_Manager.RemoveRenderTexturePatch(L"a");
  EXPECT_EQ(PlaceOf(Get(L"c", 64)), (QXPlace{32, 32, 5, 0}));
}

// --- Locks ---

QXMutex const* g_pWatched = nullptr;
std::string g_strLocks;

TEST_F(QXRenderTextureManagerTest, LocksWhereOthersMayCome) {
  // The first one locked is the manager's; the renderer has some of its own.
  g_pWatched = nullptr;
  QXMutex::SetObserver([](QXMutex const& mutex, unsigned char bLocked) {
    if (g_pWatched == nullptr) g_pWatched = &mutex;
    if (g_pWatched == &mutex) g_strLocks += bLocked ? '(' : ')';
  });
  auto const Locks = [] { return std::exchange(g_strLocks, std::string()); };
  m_Manager.RemoveRenderTexturePatch(L"nobody");
  EXPECT_EQ(Locks(), "()");
  QXRenderTexturePatch* const pPatch = Get(L"a", 64);
  EXPECT_EQ(Locks(), "(())");
  pPatch->Resize(100, 100);
  EXPECT_EQ(Locks(), "()()");
  m_Manager.ResizeRenderTexturePatch(L"nobody", 1, 1);
  EXPECT_EQ(Locks(), "()");
  m_Manager.RemoveRenderTexturePatch(L"nobody");
  EXPECT_EQ(Locks(), "()");
  pPatch->SetNeedRender();
  m_Manager.RenderToTexture();
  EXPECT_EQ(Locks(), "");
  m_Manager.AddUselessTexture(ListOf({pPatch}));
  EXPECT_EQ(Locks(), "()");
  m_Manager.ClearUselessTexture();
  EXPECT_EQ(Locks(), "(())");
  m_Manager.Clear();
  EXPECT_EQ(Locks(), "()");
  QXMutex::SetObserver(nullptr);
}

// --- Any order of calls ---

TEST_F(QXRenderTextureManagerTest, RandomLivesLeaveNothingBehind) {
  constexpr unsigned int nSeed = 614;
  std::printf("seed %u\n", nSeed);
  std::mt19937 random(nSeed);
  auto const Below = [&](unsigned int nCount) { return static_cast<unsigned int>(random() % nCount); };
  std::vector<QXRenderTexturePatch*> arrPatches(40);
  auto const NameOf = [](std::size_t nPatch) {
    QdcUnicodeString strName;
    strName.Format(L"patch %d", static_cast<int>(nPatch));
    return strName;
  };
  for (int i = 0; i < 20000; ++i) {
    std::size_t const nPatch = Below(40);
    QXRenderTexturePatch*& pPatch = arrPatches[nPatch];
    // Powers, so that live ones can be told apart; now and then one that fits nowhere.
    unsigned int const nSize = Below(30) == 0 ? 5000 : 4U << Below(9);
    if (pPatch == nullptr) {
      pPatch = m_Manager.GetRenderTexturePatch(NameOf(nPatch), nSize, 1 + Below(nSize));
      ASSERT_EQ(pPatch->GetRef(), 1);
    } else if (Below(3) == 0) {
      pPatch->Resize(nSize, 1 + Below(nSize));
    } else if (Below(3) == 0) {
      m_Manager.AddUselessTexture(ListOf({pPatch}));
      pPatch = nullptr;
      m_Manager.RenderToTexture();
    } else {
      if (Below(4) == 0) pPatch->SetNeedRender();
      m_Manager.RemoveRenderTexturePatch(NameOf(nPatch));
      pPatch = nullptr;
    }
    if (i % 50 != 0) continue;
    for (std::size_t j = 0; j < 40; ++j) {
      for (std::size_t k = 0; k < j; ++k) {
        QXRenderTexturePatch const* const pFirst = arrPatches[j];
        QXRenderTexturePatch const* const pSecond = arrPatches[k];
        if (pFirst == nullptr || pSecond == nullptr || !pFirst->IsPlaced() || !pSecond->IsPlaced()) continue;
        int const nReach = (2048 >> pFirst->GetLod()) / 2 + (2048 >> pSecond->GetLod()) / 2;
        ASSERT_TRUE(pFirst->GetTextureIndex() != pSecond->GetTextureIndex() ||
                    std::abs(pFirst->GetRow() - pSecond->GetRow()) >= nReach ||
                    std::abs(pFirst->GetCol() - pSecond->GetCol()) >= nReach)
            << "step " << i;
      }
    }
    m_Graphics.GetLog().Clear();
  }
  for (std::size_t nPatch = 0; nPatch < 40; ++nPatch) m_Manager.RemoveRenderTexturePatch(NameOf(nPatch));
  // Big textures that a resize emptied still stand, but nothing stands on them: whole patches take them and then the
  // indexes between.
  std::set<int> setIndexes;
  for (std::size_t nPatch = 0; nPatch < 30; ++nPatch) {
    QXRenderTexturePatch const* const pPatch = m_Manager.GetRenderTexturePatch(NameOf(nPatch), 2048, 2048);
    ASSERT_EQ(pPatch->IsPlaced(), 1);
    setIndexes.insert(pPatch->GetTextureIndex());
  }
  EXPECT_EQ(setIndexes.size(), 30U);
  EXPECT_EQ(*setIndexes.rbegin(), 29);
}

}  // namespace
}  // namespace QXC
