/// @file
/// What must hold of geometry whatever the bytes were that it came from.
#pragma once

#include <QxGraphics3D/frame/foundation/base3d/QXIndexPackage.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVertexDataPackage.h>
#include <QxGraphics3D/frame/foundation/stream/QXMemoryStream.h>
#include <QxGraphics3D/staticgeometry/QXStaticGeometry.h>
#include <QxGraphics3D/staticgeometry/QXStaticGeometryBucket.h>
#include <QxGraphics3D/staticgeometry/QXVertexPackageStream.h>

#include <cstddef>
#include <cstdlib>
#include <string>

namespace QXFuzz {

inline void Require(bool bHolds) {
  if (!bHolds) std::abort();
}

/// The bytes that write(stream) writes.
template <class Action>
std::string Written(Action write) {
  QXC::QXMemoryStream stream;
  write(stream);
  return {reinterpret_cast<char const*>(stream.GetData()), stream.GetSize()};
}

inline std::string Saved(QXC::QXVertexDataPackage const& package, unsigned char bWide) {
  return Written([&](QXC::QXStream& stream) { QXC::SaveVertexPackage(package, stream, bWide); });
}
inline std::string Saved(QXC::QXStaticGeometry& geometry) {
  return Written([&](QXC::QXStream& stream) { geometry.SaveVecData(stream, 0.0F); });
}

/// Whether the pair of dimensions comes back from the one word that holds both.
inline bool SurvivesSaving(QXC::QXVertexDataPackage const& package) {
  if (package.m_nVertexDim == package.m_nNormalDim) return package.m_nVertexDim < 5;
  return package.m_nVertexDim > 0 && package.m_nVertexDim < 16 && package.m_nNormalDim > 0;
}

/// Reads all numbers, three for each position as bounds scans do, and the copy's.
inline void Use(QXC::QXVertexDataPackage const& package) {
  QXC::QXVertexDataPackage const copy(package);
  double volatile dSum = 0.0;
  auto const add = [&](auto const* pItems, std::size_t nNum) {
    for (std::size_t i = 0; pItems && i < nNum; ++i) dSum = dSum + static_cast<double>(pItems[i]);
  };
  std::size_t const nPositions = std::size_t{copy.m_nVertexNum} * copy.m_nVertexDim;
  Require((copy.m_pVertices != nullptr) == (nPositions != 0));
  add(copy.m_pVertices, copy.m_pVertices ? nPositions - copy.m_nVertexDim + 3 : 0);
  add(copy.m_pNormals, std::size_t{copy.m_nNormalNum} * copy.m_nNormalDim);
  add(copy.m_pColors, copy.m_nColorNum);
  add(copy.m_pSecondColors, copy.m_nSecondColorNum);
  for (unsigned int unit = 0; unit < QXC::QXVertexDataPackage::UnitNum; ++unit)
    add(copy.m_pTexCoords[unit], std::size_t{copy.m_nTexCoordNums[unit]} * copy.m_nTexDims[unit]);
}

/// Calls visit(bucket) for all buckets in their order.
template <class Visitor>
void VisitBuckets(QXC::QXStaticGeometry const& geometry, Visitor visit) {
  for (auto const* pList : {&geometry.m_vecBuckets32, &geometry.m_vecBuckets16, &geometry.m_vecTypedBuckets32,
           &geometry.m_vecTypedBuckets16}) {
    for (QXC::QXStaticGeometryBucket* pBucket : *pList) visit(*pBucket);
  }
}

}  // namespace QXFuzz
