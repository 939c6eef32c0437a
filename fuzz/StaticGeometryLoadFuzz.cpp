/// @file
/// Static geometry of strangers: a load ends, what it leaves can be used, saved and destroyed, and what was saved comes
/// back.
#include <QxGraphics3D/frame/foundation/base3d/QXPass.h>
#include <QxGraphics3D/frame/foundation/base3d/QXSubObjectInfo.h>

#include <cstdint>

#include "StaticGeometryChecks.h"

namespace {

using namespace QXC;
using namespace QXFuzz;

void CheckBucket(QXStaticGeometryBucket& bucket, bool& bSurvives) {
  Require(bucket.m_pVertexPackage != nullptr);
  Use(*bucket.m_pVertexPackage);
  bSurvives = bSurvives && SurvivesSaving(*bucket.m_pVertexPackage);
  std::size_t nSum = 0;
  for (auto const& [nLevel, arrPackages] : bucket.m_mapLevelIndices) {
    for (QXIndexPackage const* pPackage : arrPackages) {
      QXIndexPackage const copy(*pPackage);
      for (int i = 0; i < copy.m_nIndexNum; ++i)
        nSum += copy.m_nIndexType == 1 ? copy.GetIndices32()[i] : static_cast<unsigned short*>(copy.m_pIndices)[i];
    }
  }
  Require(nSum < (std::size_t{1} << 63));
  for (auto const& [strName, pPass] : bucket.m_mapPasses) QXPass const copy(*pPass);
  for (auto const& [nFirst, pSubObject] : bucket.m_mapSubObjects) QXSubObjectInfo const copy(*pSubObject);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* pData, std::size_t nSize) {
  QXMemoryStream stream(pData, nSize);
  QXStaticGeometry geometry;
  unsigned char const bLoaded = geometry.LoadVecData(stream, 0.0F);
  Require(bLoaded <= 1 && (!bLoaded || stream.IsGood()));
  bool bSurvives = true;
  VisitBuckets(geometry, [&](QXStaticGeometryBucket& bucket) { CheckBucket(bucket, bSurvives); });
  geometry.GetBoundingSphere(1);
  Require(geometry.GetDataSize() > 0);

  geometry.SetVersion(1.3);
  std::string const saved = Saved(geometry);
  if (saved.empty() || !bSurvives) return 0;
  QXMemoryStream again(saved.data(), saved.size());
  QXStaticGeometry read;
  Require(read.LoadVecData(again, 0.0F) == 1 && again.Remaining() == 0);
  Require(Saved(read) == saved);
  return 0;
}
