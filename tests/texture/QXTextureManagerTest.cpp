#include "QXMortalTexture.h"

#include <QxGraphics3D/texture/QXTextureMemoryManager.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace QXC {
namespace {

class QXTextureManagerTest : public testing::Test {
protected:
  QXMortalTexture::Report Dies() {
    return [this](QXMortalTexture& texture) { m_arrDead.emplace_back(texture.m_strTexFilePath.Cstr()); };
  }
  QXTexture* Enter(wchar_t const* szName, int nRef) {
    QXTexture* const pTexture = m_Manager.Enter(new QXMortalTexture(szName, Dies()));
    pTexture->m_nRefCount = nRef;
    return pTexture;
  }

  std::vector<std::wstring> m_arrDead;
  QXOpenTextureManager m_Manager;
};

using Names = std::vector<std::wstring>;

TEST_F(QXTextureManagerTest, NewManagerHoldsNothing) {
  EXPECT_TRUE(m_Manager.m_mapCache.empty());
  EXPECT_EQ(m_Manager.m_arrUnusedTextures.GetSize(), 0u);
  EXPECT_EQ(m_Manager.CreateTexture(), nullptr);
  m_Manager.DeleteTexture(1);
  m_Manager.DelNoUseTexture();
}

TEST_F(QXTextureManagerTest, HasItsFieldsInOrder) {
  EXPECT_LT(static_cast<void const*>(&m_Manager.m_arrUnusedTextures), static_cast<void const*>(&m_Manager.m_mapCache));
  EXPECT_LT(static_cast<void const*>(&m_Manager.m_mapCache), static_cast<void const*>(&m_Manager.m_Mutex));
}

TEST_F(QXTextureManagerTest, AdviceOnTheCacheSizeIsReadByNobody) {
  EXPECT_EQ(QXTextureManager::ms_nCacheSize, 20000);
  QXTextureManager::ms_nCacheSize = 1;
  Enter(L"a", 0);
  Enter(L"b", 0);
  QXTextureManager::ms_nCacheSize = 20000;
  EXPECT_EQ(m_Manager.m_mapCache.size(), 2u);
  EXPECT_TRUE(m_arrDead.empty());
}

// --- AddToCache ---

TEST_F(QXTextureManagerTest, NullEntryIsNotEntered) {
  m_Manager.AddToCache(L"a", nullptr);
  EXPECT_TRUE(m_Manager.m_mapCache.empty());
}

TEST_F(QXTextureManagerTest, ReplacedEntryIsNotDeleted) {
  auto const pFormer = std::make_unique<QXTextureCacheEntry>(new QXMortalTexture(L"a", Dies()));
  m_Manager.AddToCache(L"a", pFormer.get());
  auto* const pNext = new QXTextureCacheEntry(new QXMortalTexture(L"a"));
  m_Manager.AddToCache(L"a", pNext);
  EXPECT_TRUE(m_arrDead.empty());
  EXPECT_EQ(m_Manager.FindCacheEntry(L"a"), pNext);
  EXPECT_EQ(m_Manager.m_mapCache.size(), 1u);
}

TEST_F(QXTextureManagerTest, LookUpFindsByTheNameGivenNotByTheTexture) {
  auto* const pEntry = new QXTextureCacheEntry(new QXMortalTexture(L"path"));
  m_Manager.AddToCache(L"name", pEntry);
  EXPECT_EQ(m_Manager.FindCacheEntry(L"name"), pEntry);
  EXPECT_EQ(m_Manager.FindCacheEntry(L"path"), nullptr);
}

// --- RemoveTexture ---

TEST_F(QXTextureManagerTest, LastUserDeletesEntryAndTexture) {
  QXTexture* const pTexture = Enter(L"a", 1);
  m_Manager.RemoveTexture(pTexture, 1);
  EXPECT_EQ(m_arrDead, Names{L"a"});
  EXPECT_TRUE(m_Manager.m_mapCache.empty());
}

TEST_F(QXTextureManagerTest, TextureWithAnotherUserStays) {
  QXTexture* const pTexture = Enter(L"a", 2);
  m_Manager.RemoveTexture(pTexture, 1);
  EXPECT_EQ(pTexture->GetRef(), 1);
  EXPECT_EQ(m_Manager.GetTexture(L"a", 0), pTexture);
  EXPECT_TRUE(m_arrDead.empty());
}

TEST_F(QXTextureManagerTest, WithoutDeletingTheEntryBelongsToItsHolder) {
  QXTexture* const pTexture = Enter(L"a", 1);
  std::unique_ptr<QXTextureCacheEntry> const pEntry(m_Manager.FindCacheEntry(L"a"));
  m_Manager.RemoveTexture(pTexture, 0);
  EXPECT_TRUE(m_Manager.m_mapCache.empty());
  EXPECT_TRUE(m_arrDead.empty());
  EXPECT_EQ(pEntry->GetTexture(), pTexture);
  EXPECT_EQ(pTexture->GetRef(), 0);
}

TEST_F(QXTextureManagerTest, TextureThatNobodyTookLeavesToo) {
  m_Manager.RemoveTexture(Enter(L"a", 0), 1);
  m_Manager.RemoveTexture(Enter(L"b", -5), 1);
  EXPECT_EQ(m_arrDead, (Names{L"a", L"b"}));
}

TEST_F(QXTextureManagerTest, NullAndUnknownTexturesAreIgnored) {
  QXTexture* const pKept = Enter(L"a", 1);
  QXMortalTexture stranger(L"b");
  stranger.AddRef();
  m_Manager.RemoveTexture(nullptr, 1);
  m_Manager.RemoveTexture(&stranger, 1);
  EXPECT_EQ(stranger.GetRef(), 1);
  EXPECT_EQ(pKept->GetRef(), 1);
}

TEST_F(QXTextureManagerTest, EntriesWithoutTextureAreIgnored) {
  QXMortalTexture texture(L"a");
  m_Manager.m_mapCache[L"a"] = nullptr;
  m_Manager.RemoveTexture(&texture, 1);
  EXPECT_EQ(m_Manager.m_mapCache.size(), 1u);
  m_Manager.m_mapCache[L"a"] = new QXTextureCacheEntry();
  m_Manager.RemoveTexture(&texture, 1);
  EXPECT_EQ(m_Manager.m_mapCache.size(), 1u);
  EXPECT_EQ(texture.GetRef(), 0);
}

TEST_F(QXTextureManagerTest, UserIsTakenOffTheCachedTextureOfThatName) {
  QXTexture* const pCached = Enter(L"a", 3);
  QXMortalTexture namesake(L"a");
  namesake.AddRef();
  m_Manager.RemoveTexture(&namesake, 1);
  EXPECT_EQ(pCached->GetRef(), 2);
  EXPECT_EQ(namesake.GetRef(), 1);
}

TEST_F(QXTextureManagerTest, TextureIsNotLookedAtWhileTheCacheIsEmpty) {
  // Reading through this address would end the program.
  auto* const pGone = reinterpret_cast<QXTexture*>(sizeof(void*));
  m_Manager.RemoveTexture(pGone, 1);
  Enter(L"a", 0);
  m_Manager.Release();
  m_Manager.RemoveTexture(pGone, 1);
  EXPECT_EQ(m_arrDead, Names{L"a"});
  // A cache that emptied name by name still has the storage of its index, where a name would be looked up.
  m_Manager.RemoveTexture(Enter(L"b", 1), 1);
  m_Manager.RemoveTexture(pGone, 1);
  EXPECT_EQ(m_arrDead, (Names{L"a", L"b"}));
}

TEST_F(QXTextureManagerTest, TextureThatDiesFindsItsNameFreeAndGivesOthersBack) {
  QXTexture* const pOther = Enter(L"b", 1);
  QXTexture* pFound = pOther;
  QXTexture* const pTexture = m_Manager.Enter(new QXMortalTexture(L"a", [&](QXMortalTexture& dying) {
    pFound = m_Manager.GetTexture(L"a", 0);
    m_Manager.RemoveTexture(&dying, 1);
    m_Manager.RemoveTexture(pOther, 1);
  }));
  pTexture->AddRef();
  m_Manager.RemoveTexture(pTexture, 1);
  EXPECT_EQ(pFound, nullptr);
  EXPECT_EQ(m_arrDead, Names{L"b"});
  EXPECT_TRUE(m_Manager.m_mapCache.empty());
}

// --- Unused textures ---

TEST_F(QXTextureManagerTest, UnusedTextureWaitsAndTheCallersPointerIsCleared) {
  QXTexture* pTexture = new QXMortalTexture(L"a", Dies());
  m_Manager.AddUnusedTextures(pTexture);
  EXPECT_EQ(pTexture, nullptr);
  EXPECT_TRUE(m_arrDead.empty());
  ASSERT_EQ(m_Manager.m_arrUnusedTextures.GetSize(), 1u);
  m_Manager.DeleteUnusedTextures();
  EXPECT_EQ(m_arrDead, Names{L"a"});
}

TEST_F(QXTextureManagerTest, UnusedTexturesGoInTheirOrderAndTheListGivesItsStorageBack) {
  for (wchar_t const* const szName : {L"c", L"", L"a", L"b"}) {
    QXTexture* pTexture = *szName ? new QXMortalTexture(szName, Dies()) : nullptr;
    m_Manager.AddUnusedTextures(pTexture);
  }
  EXPECT_EQ(m_Manager.m_arrUnusedTextures.GetSize(), 4u);
  m_Manager.DeleteUnusedTextures();
  EXPECT_EQ(m_arrDead, (Names{L"c", L"a", L"b"}));
  EXPECT_EQ(m_Manager.m_arrUnusedTextures.GetSize(), 0u);
  EXPECT_EQ(m_Manager.m_arrUnusedTextures.GetCapacity(), 0u);
}

TEST_F(QXTextureManagerTest, TextureHandedOverByADyingOneWaitsForTheNextTime) {
  QXTexture* pSecond = new QXMortalTexture(L"second", Dies());
  QXTexture* pFirst = new QXMortalTexture(L"first", [&](QXTexture&) { m_Manager.AddUnusedTextures(pSecond); });
  m_Manager.AddUnusedTextures(pFirst);
  m_Manager.DeleteUnusedTextures();
  EXPECT_EQ(m_Manager.m_arrUnusedTextures.GetSize(), 1u);
  EXPECT_TRUE(m_arrDead.empty());
  m_Manager.DeleteUnusedTextures();
  EXPECT_EQ(m_arrDead, Names{L"second"});
}

TEST_F(QXTextureManagerTest, DeletingUnusedTexturesLeavesTheCacheAlone) {
  Enter(L"a", 0);
  m_Manager.DeleteUnusedTextures();
  EXPECT_EQ(m_Manager.m_mapCache.size(), 1u);
}

// --- Release ---

TEST_F(QXTextureManagerTest, ReleaseDeletesByNameThenTheUnusedOnes) {
  QXTexture* pUnused = new QXMortalTexture(L"0", Dies());
  m_Manager.AddUnusedTextures(pUnused);
  Enter(L"b", 7);
  Enter(L"a", 0);
  Enter(L"\u00e4", 0);
  Enter(L"B", -1);
  m_Manager.m_mapCache[L"c"] = nullptr;
  m_Manager.Release();
  EXPECT_EQ(m_arrDead, (Names{L"B", L"a", L"b", L"\u00e4", L"0"}));
  EXPECT_TRUE(m_Manager.m_mapCache.empty());
  EXPECT_EQ(m_Manager.GetTexture(L"a", 0), nullptr);
}

TEST_F(QXTextureManagerTest, ReleaseOfAnEmptyCacheEmptiesTheUnusedList) {
  QXTexture* pUnused = new QXMortalTexture(L"a", Dies());
  m_Manager.AddUnusedTextures(pUnused);
  m_Manager.Release();
  EXPECT_EQ(m_arrDead, Names{L"a"});
}

TEST_F(QXTextureManagerTest, ReleasedTextureThatCallsBackFindsAnEmptyCache) {
  std::vector<QXTexture*> arrFound;
  QXTexture* const pSecond = Enter(L"b", 1);
  m_Manager.Enter(new QXMortalTexture(L"a", [&](QXMortalTexture& dying) {
    arrFound = {m_Manager.GetTexture(L"a", 0), m_Manager.GetTexture(L"b", 0)};
    m_Manager.RemoveTexture(&dying, 1);
    m_Manager.RemoveTexture(pSecond, 1);
  }));
  m_Manager.Release();
  EXPECT_EQ(arrFound, (std::vector<QXTexture*>{nullptr, nullptr}));
  EXPECT_EQ(m_arrDead, Names{L"b"});
}

TEST_F(QXTextureManagerTest, WhatADyingTextureEntersIsReleasedToo) {
  m_Manager.Enter(new QXMortalTexture(L"a", [&](QXTexture&) {
    m_arrDead.emplace_back(L"a");
    Enter(L"late", 1);
  }));
  Enter(L"b", 0);
  m_Manager.Release();
  EXPECT_EQ(m_arrDead, (Names{L"a", L"b", L"late"}));
  EXPECT_TRUE(m_Manager.m_mapCache.empty());
}

class QXOverridingManager : public QXOpenTextureManager {
public:
  explicit QXOverridingManager(int& nCalls) : m_nCalls(nCalls) {}
  void DeleteUnusedTextures() override { ++m_nCalls; }
  void Release() override { m_nCalls += 100; }
  int& m_nCalls;
};

TEST_F(QXTextureManagerTest, ReleaseCallsTheOverriddenDeletingOfUnusedTextures) {
  int nCalls = 0;
  QXOverridingManager manager(nCalls);
  manager.QXTextureManager::Release();
  EXPECT_EQ(nCalls, 1);
}

TEST_F(QXTextureManagerTest, DestructorReleasesAsTheBaseDoes) {
  int nCalls = 0;
  {
    QXOverridingManager manager(nCalls);
    manager.Enter(new QXMortalTexture(L"a", Dies()));
    QXTexture* pUnused = new QXMortalTexture(L"0", Dies());
    manager.AddUnusedTextures(pUnused);
  }
  EXPECT_EQ(m_arrDead, (Names{L"a", L"0"}));
  EXPECT_EQ(nCalls, 0);
}

TEST_F(QXTextureManagerTest, DestructorDeletesWhatAnUnusedTextureHandsOverWhileItDies) {
  {
    QXOpenTextureManager manager;
    QXTextureManager& base = manager;  // all that is left by then
    QXTexture* pFirst = new QXMortalTexture(L"first", [&](QXTexture&) {
      m_arrDead.emplace_back(L"first");
      QXTexture* pSecond = new QXMortalTexture(L"second", Dies());
      base.AddUnusedTextures(pSecond);
      base.AddToCache(L"third", new QXTextureCacheEntry(new QXMortalTexture(L"third", Dies())));
    });
    manager.AddUnusedTextures(pFirst);
  }
  EXPECT_EQ(m_arrDead, (Names{L"first", L"third", L"second"}));
}

// --- Editing the map ---

TEST_F(QXTextureManagerTest, LookUpFollowsEditsOfTheMap) {
  Enter(L"a", 0);
  QXTextureCacheEntry* const pEntry = m_Manager.m_mapCache.at(L"a");
  m_Manager.m_mapCache.erase(L"a");
  m_Manager.m_mapCache[L"b"] = pEntry;
  EXPECT_EQ(m_Manager.FindCacheEntry(L"a"), nullptr);
  EXPECT_EQ(m_Manager.FindCacheEntry(L"b"), pEntry);
  m_Manager.m_mapCache.begin()->second = nullptr;
  EXPECT_EQ(m_Manager.FindCacheEntry(L"b"), nullptr);
  std::map<QdcUnicodeString, QXTextureCacheEntry*>& mapPlain = m_Manager.m_mapCache;
  mapPlain.clear();
  mapPlain[L"c"] = pEntry;
  EXPECT_EQ(m_Manager.FindCacheEntry(L"b"), nullptr);
  EXPECT_EQ(m_Manager.FindCacheEntry(L"c"), pEntry);
}

// --- Memory manager ---

TEST(QXTextureMemoryManager, KnowsTheManagerThatWasSet) {
  class Policy : public QXTextureMemoryManager {
  public:
    void MemoryOperation1(QXTexture*, unsigned int) override {}
    void MemoryOperation2(QXTexture*) override {}
    void MemoryOperation3(int) override {}
    unsigned int MemoryOperation4() override { return 0; }
    unsigned char MemoryOperation5(unsigned int) const override { return 1; }
    QXTextureManager* Get() const { return m_pTextureManager; }
  };
  Policy policy;
  EXPECT_EQ(policy.Get(), nullptr);
  QXOpenTextureManager manager;
  policy.SetTextureManager(&manager);
  EXPECT_EQ(policy.Get(), &manager);
}

}  // namespace
}  // namespace QXC
