/// @file
/// The buckets of a static geometry, one after the other.
#pragma once

#include <QxGraphics3D/frame/foundation/base3d/QXIndexPackage.h>
#include <QxGraphics3D/staticgeometry/QXStaticGeometry.h>
#include <QxGraphics3D/staticgeometry/QXStaticGeometryBucket.h>

#include <vector>

namespace QXApp {

/// All buckets in the order of the lists.
inline std::vector<QXC::QXStaticGeometryBucket*> GetBuckets(QXC::QXStaticGeometry const& geometry) {
  std::vector<QXC::QXStaticGeometryBucket*> vecBuckets;
  for (auto const* pList : {&geometry.m_vecBuckets32, &geometry.m_vecBuckets16, &geometry.m_vecTypedBuckets32,
           &geometry.m_vecTypedBuckets16})
    vecBuckets.insert(vecBuckets.end(), pList->begin(), pList->end());
  return vecBuckets;
}

inline unsigned int GetIndex(QXC::QXIndexPackage const& package, int i) {
  return package.m_nIndexType == 1 ? package.GetIndices32()[i] : package.GetIndices16()[i];
}

/// The index packages of level 0 that hold triangles.
inline std::vector<QXC::QXIndexPackage*> GetTriangleRanges(QXC::QXStaticGeometryBucket const& bucket) {
  std::vector<QXC::QXIndexPackage*> vecRanges;
  auto const it = bucket.m_mapLevelIndices.find(0);
  if (it == bucket.m_mapLevelIndices.end()) return vecRanges;
  for (QXC::QXIndexPackage* pIndices : it->second)
    if (pIndices->m_eOperationType == QXC::QX_OPERATION_TRIANGLE_LIST) vecRanges.push_back(pIndices);
  return vecRanges;
}

}  // namespace QXApp
