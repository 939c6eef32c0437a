#include "../testing/QXAllocationCounter.h"

#include <QxGraphics3D/frame/foundation/fileparser/ModelDataInfo.h>
#include <QxGraphics3D/model/QXModelData.h>
#include <QxGraphics3D/model/QXModelManager.h>

#include <gtest/gtest.h>

#include <vector>

namespace QXC {
namespace {

QdcUnicodeString PathOf(unsigned int nNumber) {
  QdcUnicodeString strPath;
  strPath.Format(L"/srv/gis/stores/somewhere/models/trees/level17/tree_%08u.gltf", nNumber);
  return strPath;
}

TEST(QXModelManagerAllocation, HitsAllocateNothing) {
  QXModelManager manager;
  ModelDataInfo info;
  std::vector<QdcUnicodeString> arrNames;
  for (unsigned int i = 0; i < 500; ++i) {
    arrNames.push_back(PathOf(i));
    manager.CreateManual(arrNames.back(), &info);
  }
  long const nBefore = GetAllocationCount();
  std::size_t nFound = 0;
  for (QdcUnicodeString const& strName : arrNames) {
    nFound += !manager.GetModelData(strName).IsNull();
    nFound += !manager.GetByFileName(strName).IsNull();
    nFound += manager.IsExists(strName);
  }
  EXPECT_EQ(GetAllocationCount(), nBefore);
  EXPECT_EQ(nFound, 3 * arrNames.size());
}

// Look-ups go on without an index: the dictionary is the truth.
TEST(QXModelManagerAllocation, WithoutMemoryForAnIndexNamesAreFoundAllTheSame) {
  QXModelManager source;
  ModelDataInfo info;
  for (unsigned int i = 0; i < 100; ++i) source.CreateManual(PathOf(i), &info);
  QXModelManager const copy(source);
  QdcUnicodeString const strName = PathOf(42);
  QdcUnicodeString const strOther = PathOf(100);
  RefuseAllocation(1);
  unsigned char const bFound = copy.IsExists(strName);
  RefuseAllocation(1);
  unsigned char const bOther = copy.IsExists(strOther);
  RefuseAllocation(0);
  EXPECT_EQ(bFound, 1);
  EXPECT_EQ(bOther, 0);
  EXPECT_EQ(copy.GetByFileName(strName)->GetModelDataInfo()->GetName(), strName);
}

// Whichever allocation fails, the cache is whole afterwards and holds the former model, the new one or none.
TEST(QXModelManagerAllocation, CreatingWithoutMemoryLeavesAWholeCache) {
  ModelDataInfo info;
  QdcUnicodeString const strName = PathOf(1);
  for (long nRefused = 1; nRefused < 40; ++nRefused) {
    QXModelManager manager;
    QXModelDataPtr const pFormer = manager.CreateManual(strName, &info);
    manager.CreateManual(PathOf(2), &info);
    bool bRefused = false;
    RefuseAllocation(nRefused);
    try {
      manager.CreateManual(strName, &info);
    } catch (std::bad_alloc const&) {
      bRefused = true;
    }
    RefuseAllocation(0);
    QXModelDataPtr const pEntry = manager.GetByFileName(strName);
    EXPECT_EQ(pEntry.IsNull(), !manager.IsExists(strName)) << nRefused;
    EXPECT_EQ(manager.IsExists(PathOf(2)), 1) << nRefused;
    EXPECT_NE(pFormer->GetModelDataInfo(), nullptr) << nRefused;
    if (!bRefused) {
      EXPECT_NE(pEntry.GetPointer(), pFormer.GetPointer()) << nRefused;
      return;
    }
  }
  FAIL() << "it always ran out of memory";
}

}  // namespace
}  // namespace QXC
