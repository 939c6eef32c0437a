#include <plugins/ogre/QXOgreBucket.h>

#include <algorithm>
#include <cmath>
#include <cstdint>

#include <QxGraphics3D/frame/foundation/base3d/QXIndexPackage.h>
#include <QxGraphics3D/frame/foundation/base3d/QXPass.h>
#include <QxGraphics3D/frame/foundation/base3d/QXSubObjectInfo.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVertexDataPackage.h>
#include <QxGraphics3D/staticgeometry/QXStaticGeometryBucket.h>
#include <QxGraphics3D/texture/QXTextureManager.h>

#include <plugins/ogre/QXOgreGeometry.h>

namespace QXC {

namespace {

constexpr unsigned int UNITS = 8;
/// Widths of a line by which its corners stand beside it at most.
constexpr double LINE_REACH = 1.0;
/// The key of a pass that makes lines of a whole bucket.
constexpr wchar_t LINE_PASS[] = L"PolyLine";

QXOgreElement ElementOf(float const* pFirst, unsigned int nCount, unsigned short nDim, unsigned int nVertices) {
  // What does not reach all vertices would be read beyond its end.
  if (!pFirst || nDim == 0 || nCount < nVertices) return {};
  return {pFirst, nDim, std::min<unsigned short>(nDim, 4)};
}

/// None if the package has no positions.
QXOgreVertices VerticesOf(QXVertexDataPackage const* pPackage) {
  QXOgreVertices vertices;
  if (!pPackage || !pPackage->m_pVertices || pPackage->m_nVertexDim == 0) return vertices;
  unsigned int const nCount = pPackage->m_nVertexNum;
  vertices.m_nCount = nCount;
  vertices.m_Position = ElementOf(pPackage->m_pVertices, nCount, pPackage->m_nVertexDim, nCount);
  vertices.m_Normal = ElementOf(pPackage->m_pNormals, pPackage->m_nNormalNum, pPackage->m_nNormalDim, nCount);
  auto const* const pColors = reinterpret_cast<float const*>(pPackage->m_pColors);
  vertices.m_Color = ElementOf(pColors, pPackage->m_nColorNum, 1, nCount);
  for (unsigned int i = 0; i < UNITS; ++i)
    vertices.m_TexCoords[i] =
        ElementOf(pPackage->m_pTexCoords[i], pPackage->m_nTexCoordNums[i], pPackage->m_nTexDims[i], nCount);
  return vertices;
}

/// Whether everything is there that the corners of wide lines are made of.
bool AreWideLines(QXStaticGeometryBucket const& bucket, QXOgreVertices const& vertices) {
  return bucket.m_mapPasses.contains(LINE_PASS) && vertices.m_Position.m_nDim == 4 && vertices.m_Normal.m_nDim >= 3 &&
         vertices.m_TexCoords[0].m_nDim == 3;
}

void TakeTextures(QXPass const& pass, QXTextureManager& manager, QXOgreBucketRange& range) {
  if (pass.m_pExtension) range.m_Motion = QXOgreBucketMotion(*pass.m_pExtension);
  range.m_matPass = pass.m_matPass;
  auto const nUnits = static_cast<unsigned int>(std::min<std::uint64_t>(pass.GetTextureUnitStatesSize(), UNITS));
  for (unsigned int i = 0; i < nUnits; ++i) {
    QXTextureUnitState const* const pUnit = pass.GetTextureUnitState(i);
    range.m_bClampU[i] = (pass.m_nUnitWords[i] & UNIT_WORD_CLAMP_U) != 0;
    range.m_bClampV[i] = (pass.m_nUnitWords[i] & UNIT_WORD_CLAMP_V) != 0;
    if (!pUnit || pUnit->IsBlank()) continue;
    manager.Lock();
    QXTexture* const pTexture = manager.GetTexture(pUnit->GetTextureName(), 0);
    if (pTexture) range.m_Textures.SetTexture(i, pTexture);
    manager.Unlock();
    range.m_Textures.SetMatrix(i, pass.m_matPass * pUnit->GetTextureTransform());
  }
}

QXPass const* PassOf(QXStaticGeometryBucket const& bucket, QXIndexPackage const& package) {
  if (package.m_arrPassNames.GetSize() == 0) return nullptr;
  auto const position = bucket.m_mapPasses.find(package.m_arrPassNames[0]);
  return position == bucket.m_mapPasses.end() ? nullptr : position->second;
}

template <class Index>
void MeasureVertices(
    Index const* pIndices, std::size_t nCount, QXOgreVertices const& vertices, QXOgreBucketRange& range) {
  unsigned int nFirst = pIndices[0];
  unsigned int nLast = pIndices[0];
  double dMin[3] = {HUGE_VAL, HUGE_VAL, HUGE_VAL};
  double dMax[3] = {-HUGE_VAL, -HUGE_VAL, -HUGE_VAL};
  for (std::size_t i = 0; i < nCount; ++i) {
    unsigned int const nVertex = pIndices[i];
    nFirst = std::min(nFirst, nVertex);
    nLast = std::max(nLast, nVertex);
    float const* const pPosition = vertices.m_Position.At(nVertex);
    for (int k = 0; k < 3; ++k) {
      double const d = k < vertices.m_Position.m_nDim ? static_cast<double>(pPosition[k]) : 0.0;
      dMin[k] = std::min(dMin[k], d);
      dMax[k] = std::max(dMax[k], d);
    }
    if (vertices.m_Color.m_pFirst)
      range.m_bTransparentVertices = range.m_bTransparentVertices ||
                                     reinterpret_cast<unsigned char const*>(vertices.m_Color.At(nVertex))[3] != 0xFF;
  }
  range.m_nFirstVertex = nFirst;
  range.m_nLastVertex = nLast;
  range.m_vecCenter = QXVector3d(0.5 * (dMin[0] + dMax[0]), 0.5 * (dMin[1] + dMax[1]), 0.5 * (dMin[2] + dMax[2]));
}

/// What a package draws, and which vertices it touches.
void AddRange(
    QXIndexPackage const& package, QXOgreVertices const& vertices, QXOgreGeometry& geometry, QXOgreBucketRange& range) {
  bool const bWide = package.m_nIndexType == 1;
  // An array of another type has entries of a width that nobody knows.
  void const* const pIndices = bWide || package.m_nIndexType == 0 ? package.m_pIndices : nullptr;
  auto const nCount = static_cast<unsigned int>(std::max(package.m_nIndexNum, 0));
  geometry.AddRange(pIndices, package.m_nIndexType, 0, nCount, package.m_eOperationType, QXColorValue3D::White, -1);
  if (!geometry.GetRanges().back().m_pIndexData) return;
  if (bWide) {
    MeasureVertices(static_cast<std::uint32_t const*>(pIndices), nCount, vertices, range);
  } else {
    MeasureVertices(static_cast<std::uint16_t const*>(pIndices), nCount, vertices, range);
  }
}

/// The largest of some indices of a package.
unsigned int LastVertex(QXIndexPackage const& package, std::size_t nOffset, std::size_t nCount) {
  unsigned int nLast = 0;
  for (std::size_t i = nOffset; i < nOffset + nCount; ++i) {
    bool const bWide = package.m_nIndexType == 1;
    nLast = std::max(nLast, bWide ? static_cast<std::uint32_t const*>(package.m_pIndices)[i]
                                  : static_cast<std::uint16_t const*>(package.m_pIndices)[i]);
  }
  return nLast;
}

/// The part of a package's indices that an object says is its own; a count of 0 if that is not inside them.
struct Part {
  std::size_t m_nOffset = 0;
  std::size_t m_nCount = 0;
};

Part PartOf(QXSubObjectInfo const& object, int nSlot, QXIndexPackage const& package) {
  auto const nSlots = std::min(object.m_arrOffsets.GetSize(), object.m_arrCounts.GetSize());
  if (nSlot < 0 || static_cast<std::size_t>(nSlot) >= nSlots) return {};
  int const nOffset = object.m_arrOffsets[static_cast<std::size_t>(nSlot)];
  int const nCount = object.m_arrCounts[static_cast<std::size_t>(nSlot)];
  if (nOffset < 0 || nCount <= 0 || nOffset > package.m_nIndexNum || nCount > package.m_nIndexNum - nOffset) return {};
  return {static_cast<std::size_t>(nOffset), static_cast<std::size_t>(nCount)};
}

}  // namespace

QXOgreBucket::QXOgreBucket(QXStaticGeometryBucket const& bucket, QdcArray<double> const& arrLevelDistances,
    QXTextureManager* pManager, QXOgreGeometry& geometry)
    : m_dLineReach(0.0), m_bWideLines(false) {
  for (std::size_t i = 0; i < arrLevelDistances.GetSize(); ++i) m_arrDistances.push_back(arrLevelDistances[i]);
  QXOgreVertices vertices = VerticesOf(bucket.m_pVertexPackage);
  if (vertices.m_nCount == 0) return;
  m_bWideLines = vertices.m_bWideLines = AreWideLines(bucket, vertices);
  geometry.Upload(vertices);
  // No package is an empty one: the ranges after it keep their numbers.
  QXIndexPackage const none;
  for (auto const& [nLevel, vecPackages] : bucket.m_mapLevelIndices) {
    std::size_t const nFirstRange = m_arrRanges.size();
    for (QXIndexPackage const* const pPackage : vecPackages) {
      auto pRange = std::make_unique<QXOgreBucketRange>();
      pRange->m_nLevel = nLevel;
      AddRange(pPackage ? *pPackage : none, vertices, geometry, *pRange);
      TakePass(pPackage ? PassOf(bucket, *pPackage) : nullptr, pManager, *pRange);
      m_arrRanges.push_back(std::move(pRange));
    }
    if (nLevel == 0) FindObjects(bucket, vecPackages, nFirstRange);
  }
}

QXOgreBucket::~QXOgreBucket() = default;

void QXOgreBucket::TakePass(QXPass const* pPass, QXTextureManager* pManager, QXOgreBucketRange& range) {
  range.m_Look = pPass ? LookOf(*pPass) : QXOgrePassLook();
  if (pPass && pManager && !m_bWideLines) TakeTextures(*pPass, *pManager, range);
  QXOgreSurface& surface = range.m_Look.m_Surface;
  if (!pPass) surface.m_eProgram = QX_OGRE_PROGRAM_PASS;
  if (!m_bWideLines) return;
  // The corners turn with the view: neither their winding nor a normal means anything.
  surface.m_eProgram = QX_OGRE_PROGRAM_LINES;
  surface.m_eCullingMode = CULLING_NONE;
  range.m_Look.m_bLight = false;
  m_dLineReach = std::max(m_dLineReach, LINE_REACH * static_cast<double>(surface.m_fLineWidth));
}

void QXOgreBucket::FindObjects(
    QXStaticGeometryBucket const& bucket, std::vector<QXIndexPackage*> const& vecPackages, std::size_t nFirstRange) {
  // Objects share no index. Those of a broken file may all claim everything, and looking through that would not end.
  std::size_t nLeft = 0;
  for (QXIndexPackage const* const pPackage : vecPackages)
    if (pPackage) nLeft += static_cast<std::size_t>(std::max(pPackage->m_nIndexNum, 0));
  for (auto const& [nKey, pObject] : bucket.m_mapSubObjects) {
    if (nKey < 0 || !pObject) continue;
    auto const nFirst = static_cast<unsigned int>(nKey);
    unsigned int nLast = 0;
    bool bFound = false;
    for (auto const& [nPackage, nSlot] : pObject->m_mapPassSlots) {
      if (nPackage < 0 || static_cast<std::size_t>(nPackage) >= vecPackages.size()) continue;
      auto const nPlace = static_cast<std::size_t>(nPackage);
      if (!m_arrRanges[nFirstRange + nPlace]->IsDrawn()) continue;
      Part const part = PartOf(*pObject, nSlot, *vecPackages[nPlace]);
      if (part.m_nCount == 0 || part.m_nCount > nLeft) continue;
      nLeft -= part.m_nCount;
      nLast = std::max(nLast, LastVertex(*vecPackages[nPlace], part.m_nOffset, part.m_nCount));
      bFound = true;
    }
    if (bFound && nLast >= nFirst) m_mapObjects[nFirst] = {nFirst, nLast - nFirst + 1};
  }
}

bool QXOgreBucket::IsLevelDrawn(int nLevel, double dDistance) const {
  if (m_arrDistances.empty()) return nLevel == 0;
  if (nLevel < 0 || static_cast<std::size_t>(nLevel) >= m_arrDistances.size()) return false;
  auto const n = static_cast<std::size_t>(nLevel);
  return dDistance >= m_arrDistances[n] && (n + 1 == m_arrDistances.size() || dDistance < m_arrDistances[n + 1]);
}

QXOgreBucket::Span const* QXOgreBucket::FindObject(unsigned int nKey) const {
  auto const position = m_mapObjects.find(nKey);
  return position == m_mapObjects.end() ? nullptr : &position->second;
}

void QXOgreBucket::NoteTransparent(Span const& span) {
  unsigned int const nLast = span.m_nFirst + span.m_nCount - 1;
  for (auto const& pRange : m_arrRanges)
    if (pRange->IsDrawn() && pRange->m_nFirstVertex <= nLast && pRange->m_nLastVertex >= span.m_nFirst)
      pRange->m_bTransparentVertices = true;
}

}  // namespace QXC
