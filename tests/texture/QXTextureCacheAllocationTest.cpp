#include "../testing/QXAllocationCounter.h"
#include "QXMortalTexture.h"

#include <gtest/gtest.h>

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

}  // namespace
}  // namespace QXC
