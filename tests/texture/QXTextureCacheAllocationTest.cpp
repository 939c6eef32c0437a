#include "../testing/QXAllocationCounter.h"
#include "QXMortalTexture.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace QXC {
namespace {

TEST(QXTextureCacheAllocation, HitsAllocateNothing) {
  QXOpenTextureManager manager;
  std::vector<QdcUnicodeString> arrNames(500);
  for (std::size_t i = 0; i < arrNames.size(); ++i) {
    arrNames[i].Format(
        L"/srv/gis/stores/somewhere/textures/facades/level17/tile_%08u.png", static_cast<unsigned int>(i));
    manager.GetTexture(arrNames[i], 1)->m_nRefCount = 1000;
  }
  long const nBefore = GetAllocationCount();
  std::size_t nFound = 0;
  for (QdcUnicodeString const& strName : arrNames) {
    nFound += manager.FindCacheEntry(strName) != nullptr;
    nFound += manager.GetTexture(strName, 1) != nullptr;
    nFound += manager.m_mapCache.count(strName);
    nFound += manager.m_mapCache[strName] != nullptr;
    manager.RemoveTexture(manager.GetTexture(strName, 0), 1);
  }
  EXPECT_EQ(GetAllocationCount(), nBefore);
  EXPECT_EQ(nFound, 4 * arrNames.size());
}

TEST(QXTextureCacheAllocation, LeavingAllocatesNothing) {
  QXOpenTextureManager manager;
  QXTexture* const pTexture = manager.GetTexture(L"/srv/gis/stores/somewhere/textures/facades/a.png", 1);
  long const nBefore = GetAllocationCount();
  manager.RemoveTexture(pTexture, 1);
  EXPECT_EQ(GetAllocationCount(), nBefore);
  EXPECT_TRUE(manager.m_mapCache.empty());
}

TEST(QXTextureCacheAllocation, MovesWithoutMemoryForAnIndexKeepTheirEntries) {
  QXTextureCacheMap::mapped_type const pEntry = nullptr;
  for (long nRefused = 1; nRefused <= 2; ++nRefused) {
    QXTextureCacheMap source{{L"a", pEntry}, {L"b", pEntry}};
    QXTextureCacheMap::Map& plain = source;
    RefuseAllocation(nRefused);
    QXTextureCacheMap moved(std::move(source));
    RefuseAllocation(0);
    // It asks for memory once.
    EXPECT_EQ(moved.IsIndexed(), nRefused == 1 ? 0 : 1);
    EXPECT_EQ(moved.count(L"b"), 1u);
    plain[L"c"] = pEntry;
    RefuseAllocation(nRefused);
    moved = std::move(source);
    RefuseAllocation(0);
    EXPECT_EQ(moved.count(L"b"), 0u);
    EXPECT_EQ(moved.count(L"c"), 1u);
    moved[L"d"] = pEntry;
    EXPECT_EQ(moved.count(L"d"), 1u);
    EXPECT_TRUE(source.empty());
  }
}

TEST(QXTextureCacheAllocation, SwapWithAPlainMapWithoutMemoryForAnIndexIsDone) {
  QXTextureCacheMap map;
  QXTextureCacheMap::Map plain{{L"a", nullptr}};
  RefuseAllocation(1);
  map.swap(plain);
  RefuseAllocation(0);
  EXPECT_EQ(map.IsIndexed(), 0);
  EXPECT_EQ(map.count(L"a"), 1u);
  EXPECT_TRUE(plain.empty());
}

}  // namespace
}  // namespace QXC
