/// @file
/// What a record of a bucket has to say about the indices of one level.
#pragma once

#include <QxGraphics3D/frame/foundation/base3d/QXIndexPackage.h>
#include <QxGraphics3D/frame/foundation/base3d/detail/QXIndexArray.h>
#include <QxGraphics3D/staticgeometry/QXBucketIndexPackage.h>

#include <algorithm>
#include <cstddef>

namespace QXC::detail {

/// Null where the record has no entry for the level: it then adds nothing to it.
inline QXIndexPackage const* GetLevelPackage(QXBucketIndexPackage const& record, long long nLevel) {
  auto const nPlace = static_cast<std::size_t>(nLevel);
  return nPlace < record.m_vecIndexPackages.size() ? record.m_vecIndexPackages[nPlace] : nullptr;
}

inline std::size_t GetIndexNum(QXIndexPackage const* pPackage) {
  return pPackage && pPackage->m_nIndexNum > 0 ? static_cast<std::size_t>(pPackage->m_nIndexNum) : 0;
}

/// Words of nWordSize bytes that the package's array holds, of those that its count promises: the width of the bucket
/// may be another than the package's.
inline std::size_t GetWordNum(QXIndexPackage const* pPackage, std::size_t nWordSize) {
  if (!pPackage || !pPackage->m_pIndices) return 0;
  std::size_t const num = GetIndexNum(pPackage);
  return std::min(num, num * GetIndexSize(pPackage->m_nIndexType) / nWordSize);
}

}  // namespace QXC::detail
