// Identifiers of drawables and of the objects in them, and what rays meet.

#include <algorithm>

#include <plugins/ogre/QXOgreBucket.h>
#include <plugins/ogre/QXOgreConvert.h>
#include <plugins/ogre/QXOgreDrawable.h>
#include <plugins/ogre/instancing/QXOgreMeshTriangles.h>

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
  // From the drawable's own on: there may be as many drawables as identifiers.
  if (m_nSelectionID == 0) return;
  for (auto position = setIDs.lower_bound(m_nSelectionID); position != setIDs.end(); ++position) {
    if (*position - m_nSelectionID > m_pBucket->GetObjects().rbegin()->first) break;
    if (FindObject(*position, nKey)) SelectObject(nKey, true);
  }
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

bool QXOgreDrawable::IsRangeMet(std::size_t nRange) const {
  return m_arrRenderables[nRange]->IsVisible() && (!m_pBucket || m_pBucket->GetRange(nRange).m_nLevel == 0);
}

bool QXOgreDrawable::Intersect(QXVector3d const& vecOrigin, QXVector3d const& vecDirection, double& dDistance) const {
  bool const bNoTriangles =
      (m_pBucket && m_pBucket->HasWideLines()) || m_Look.m_Surface.m_eProgram == QX_OGRE_PROGRAM_LABEL;
  if (!m_pDevice || bNoTriangles || m_WorldBounds.IsNULL()) return false;
  if (!QXOgreMeshTriangles::MayHit(m_WorldBounds, vecOrigin, vecDirection)) return false;
  MoveVertices();
  QXOgreMeshTriangles triangles;
  triangles.Follow(*this);
  return triangles.Intersect(*this, m_matWorld, vecOrigin, vecDirection, dDistance);
}

}  // namespace QXC
