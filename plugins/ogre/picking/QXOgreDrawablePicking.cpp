// Identifiers of drawables and of the objects in them, and what rays meet.

#include <algorithm>
#include <cmath>

#include <QxGraphics3D/frame/foundation/base3d/QXOperationType.h>

#include <plugins/ogre/QXOgreBucket.h>
#include <plugins/ogre/QXOgreConvert.h>
#include <plugins/ogre/QXOgreDrawable.h>

namespace QXC {

namespace {

/// What a vertex of no object has in place of a key.
constexpr std::uint32_t NO_KEY = 0xFFFFFF;

/// The mark of the selection in the first byte, the key from the second to the last, as programs read them.
std::uint32_t WordOf(bool bSelected, std::uint32_t nKey) {
  nKey = std::min(nKey, NO_KEY);
  return (bSelected ? 0xFFU : 0U) | (nKey >> 16U & 0xFFU) << 8U | (nKey >> 8U & 0xFFU) << 16U | (nKey & 0xFFU) << 24U;
}

QXVector3d At(std::vector<double> const& arrPositions, std::uint32_t nVertex) {
  double const* const p = arrPositions.data() + std::size_t{3} * nVertex;
  return {p[0], p[1], p[2]};
}

/// Where along a ray a triangle is met, after Moeller and Trumbore; not in front of it.
bool MeetsTriangle(QXVector3d const& vecOrigin, QXVector3d const& vecDirection, QXVector3d const& a,
    QXVector3d const& b, QXVector3d const& c, double& dDistance) {
  QXVector3d const vecFirst = b - a;
  QXVector3d const vecSecond = c - a;
  QXVector3d const vecCross = vecDirection.CrossProduct(vecSecond);
  double const dDeterminant = vecFirst.DotProduct(vecCross);
  if (dDeterminant == 0.0 || !std::isfinite(dDeterminant)) return false;
  QXVector3d const vecToOrigin = vecOrigin - a;
  double const u = vecToOrigin.DotProduct(vecCross) / dDeterminant;
  if (!(u >= 0.0 && u <= 1.0)) return false;
  QXVector3d const vecAcross = vecToOrigin.CrossProduct(vecFirst);
  double const v = vecDirection.DotProduct(vecAcross) / dDeterminant;
  if (!(v >= 0.0 && u + v <= 1.0)) return false;
  dDistance = vecSecond.DotProduct(vecAcross) / dDeterminant;
  return dDistance >= 0.0;
}

/// The three corners of a triangle of a range.
void CornersOf(int eOperationType, std::vector<std::uint32_t> const& arrIndices, std::size_t nTriangle,
    std::uint32_t (&nCorners)[3]) {
  bool const bList = eOperationType == QX_OPERATION_TRIANGLE_LIST;
  bool const bFan = eOperationType == QX_OPERATION_TRIANGLE_FAN;
  std::size_t const nFirst = bList ? 3 * nTriangle : nTriangle;
  nCorners[0] = arrIndices[bFan ? 0 : nFirst];
  nCorners[1] = arrIndices[nFirst + 1];
  nCorners[2] = arrIndices[nFirst + 2];
}

/// Whether a ray meets a box at all.
bool MeetsBox(QXVector3d const& vecOrigin, QXVector3d const& vecDirection, QXBoundingBox const& box) {
  double dFrom = 0.0;
  double dTo = HUGE_VAL;
  double const dOrigin[3] = {vecOrigin.x, vecOrigin.y, vecOrigin.z};
  double const dDirection[3] = {vecDirection.x, vecDirection.y, vecDirection.z};
  for (int k = 0; k < 3; ++k) {
    // A hair more: what lies flat on the box is met.
    double const dMargin = 1.0e-9 * (std::abs(box.m_dMin[k]) + std::abs(box.m_dMax[k])) + 1.0e-12;
    if (dDirection[k] == 0.0) {
      if (dOrigin[k] < box.m_dMin[k] - dMargin || dOrigin[k] > box.m_dMax[k] + dMargin) return false;
      continue;
    }
    double dNear = (box.m_dMin[k] - dMargin - dOrigin[k]) / dDirection[k];
    double dFar = (box.m_dMax[k] + dMargin - dOrigin[k]) / dDirection[k];
    if (dNear > dFar) std::swap(dNear, dFar);
    dFrom = std::max(dFrom, dNear);
    dTo = std::min(dTo, dFar);
  }
  return dFrom <= dTo;
}

}  // namespace

void QXOgreDrawable::SetSelectionID(unsigned int nID) {
  m_nSelectionID = nID;
  SetIdentities();
}

void QXOgreDrawable::SetIdentities() {
  QXOgreNumbering const eNumbering = HasObjects() ? QX_OGRE_NUMBERING_ADDED : QX_OGRE_NUMBERING_NONE;
  for (auto const& pRenderable : m_arrRenderables) pRenderable->SetIdentity(m_nSelectionID, eNumbering);
}

bool QXOgreDrawable::HasObjects() const {
  return m_pBucket && !m_pBucket->GetObjects().empty();
}

bool QXOgreDrawable::FindObject(unsigned int nID, unsigned int& nKey) const {
  if (!m_pBucket || m_nSelectionID == 0 || nID < m_nSelectionID || nID - m_nSelectionID >= NO_KEY) return false;
  nKey = nID - m_nSelectionID;
  return m_pBucket->FindObject(nKey) != nullptr;
}

void QXOgreDrawable::NumberObjects() {
  if (m_Geometry.HasObjectWords() || !HasObjects()) return;
  std::vector<std::uint32_t> arrWords(m_Geometry.GetVertexCount(), WordOf(false, NO_KEY));
  for (auto const& [nKey, span] : m_pBucket->GetObjects())
    std::fill_n(arrWords.begin() + span.m_nFirst, span.m_nCount, WordOf(false, nKey));
  m_Geometry.AddObjectWords(arrWords);
}

void QXOgreDrawable::SelectObject(unsigned int nKey, bool bSelected) {
  QXOgreBucket::Span const* const pSpan = m_pBucket->FindObject(nKey);
  std::set<unsigned int>& setSelected = m_pBucket->GetSelected();
  if (!pSpan || setSelected.contains(nKey) == bSelected) return;
  NumberObjects();
  m_Geometry.FillObjectWord(pSpan->m_nFirst, pSpan->m_nCount, WordOf(bSelected, nKey));
  if (bSelected) {
    setSelected.insert(nKey);
  } else {
    setSelected.erase(nKey);
  }
}

void QXOgreDrawable::SelectObjects(std::set<unsigned int> const& setIDs) {
  unsigned int nKey = 0;
  bool const bOwn = m_nSelectionID != 0 && setIDs.contains(m_nSelectionID) && !FindObject(m_nSelectionID, nKey);
  if (m_Look.m_bSelected != bOwn) {
    m_Look.m_bSelected = bOwn;
    UpdateMaterials();
  }
  if (!HasObjects()) return;
  std::set<unsigned int> const setFormer = m_pBucket->GetSelected();
  for (unsigned int const nFormer : setFormer)
    if (m_nSelectionID == 0 || !setIDs.contains(m_nSelectionID + nFormer)) SelectObject(nFormer, false);
  for (unsigned int const nID : setIDs)
    if (FindObject(nID, nKey)) SelectObject(nKey, true);
}

QXBoundingBox QXOgreDrawable::GetObjectBounds(unsigned int nKey) const {
  QXOgreBucket::Span const* const pSpan = m_pBucket ? m_pBucket->FindObject(nKey) : nullptr;
  QXBoundingBox box;
  if (!pSpan) return box;
  std::vector<double> const arrPositions = m_Geometry.ReadPositions(pSpan->m_nFirst, pSpan->m_nCount);
  for (std::uint32_t i = 0; i < pSpan->m_nCount; ++i) {
    QXVector3d const vecPoint = At(arrPositions, i).MultiplyMatrix(m_matWorld);
    box.Merge(QXBoundingBox(vecPoint, vecPoint));
  }
  return box;
}

bool QXOgreDrawable::Intersect(QXVector3d const& vecOrigin, QXVector3d const& vecDirection, double& dDistance) const {
  bool const bNoTriangles =
      (m_pBucket && m_pBucket->HasWideLines()) || m_Look.m_Surface.m_eProgram == QX_OGRE_PROGRAM_LABEL;
  if (!m_pDevice || bNoTriangles || m_Geometry.GetVertexCount() == 0 || m_WorldBounds.IsNULL()) return false;
  if (!MeetsBox(vecOrigin, vecDirection, m_WorldBounds)) return false;
  // The ray goes to the vertices and not the vertices to the ray; lengths along it stay what they are.
  QXMatrix4d const matInverse = m_matWorld.Invert();
  QXVector3d const vecFrom = vecOrigin.MultiplyMatrix(matInverse);
  QXMatrix4d matTurn = matInverse;
  matTurn.SetTrans(QXVector3d::ZERO);
  QXVector3d const vecAlong = vecDirection.MultiplyMatrix(matTurn);
  std::vector<double> const arrPositions = m_Geometry.ReadPositions(0, m_Geometry.GetVertexCount());
  bool bHit = false;
  for (std::size_t i = 0; i < m_arrRenderables.size(); ++i) {
    bool const bLevel = !m_pBucket || m_pBucket->GetRange(i).m_nLevel == 0;
    if (!bLevel || !m_arrRenderables[i]->IsVisible()) continue;
    QXOgreRange const& range = m_Geometry.GetRanges()[i];
    std::vector<std::uint32_t> const arrIndices = m_Geometry.ReadIndices(i);
    for (std::size_t nTriangle = 0; nTriangle < range.m_nTriangleCount; ++nTriangle) {
      std::uint32_t nCorners[3];
      CornersOf(range.m_eOperationType, arrIndices, nTriangle, nCorners);
      double dMet = 0.0;
      if (!MeetsTriangle(vecFrom, vecAlong, At(arrPositions, nCorners[0]), At(arrPositions, nCorners[1]),
              At(arrPositions, nCorners[2]), dMet))
        continue;
      if (!bHit || dMet < dDistance) dDistance = dMet;
      bHit = true;
    }
  }
  return bHit;
}

}  // namespace QXC
