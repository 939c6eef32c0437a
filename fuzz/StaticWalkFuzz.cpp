/// @file
/// The program's look at files of static geometry: what has no fault for it, the library loads whole, and every index
/// and number in it may be believed.
#include <apps/qx3d/QXBuckets.h>
#include <apps/qx3d/QXStaticWalk.h>

#include <cmath>
#include <cstdint>

#include "StaticGeometryChecks.h"

namespace {

using namespace QXC;
using namespace QXFuzz;

void RequireWhole(QXStaticGeometryBucket const& bucket) {
  Require(bucket.m_pVertexPackage != nullptr);
  QXVertexDataPackage const& vertices = *bucket.m_pVertexPackage;
  std::size_t const nNumbers = std::size_t{vertices.m_nVertexNum} * vertices.m_nVertexDim;
  Require(nNumbers == 0 || vertices.m_pVertices != nullptr);
  for (std::size_t i = 0; i < nNumbers; ++i) Require(std::isfinite(vertices.m_pVertices[i]));
  for (auto const& [nLevel, vecPackages] : bucket.m_mapLevelIndices)
    for (QXIndexPackage const* pPackage : vecPackages)
      for (int i = 0; i < pPackage->m_nIndexNum; ++i) Require(QXApp::GetIndex(*pPackage, i) < vertices.m_nVertexNum);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* pData, std::size_t nSize) {
  QXMemoryStream stream(pData, nSize);
  QXApp::QXStaticContents const contents = QXApp::WalkStatic(stream);
  Require(contents.m_nFaultOffset <= nSize && contents.m_nSize == nSize);
  if (!contents.m_strFault.empty()) return 0;
  QXMemoryStream again(pData, nSize);
  QXStaticGeometry geometry;
  Require(geometry.LoadVecData(again, 0.0F) == 1 && again.Remaining() == 0);
  for (QXStaticGeometryBucket const* pBucket : QXApp::GetBuckets(geometry)) RequireWhole(*pBucket);
  return 0;
}
