#include <plugins/ogre/instancing/QXOgrePlacements.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include <QxGraphics3D/view/QXFrustum.h>

#include <plugins/ogre/QXOgreView.h>
#include <plugins/ogre/picking/QXOgrePickFilter.h>

namespace QXC {

namespace {

constexpr double MOST = std::numeric_limits<float>::max();

/// False for what is no number, too.
bool IsFloat(double d) {
  return std::abs(d) <= MOST;
}

bool IsPlacement(QXMatrix4d const& mat) {
  if (mat[0][3] != 0.0 || mat[1][3] != 0.0 || mat[2][3] != 0.0 || mat[3][3] != 1.0) return false;
  for (int nRow = 0; nRow < 4; ++nRow)
    for (int nColumn = 0; nColumn < 3; ++nColumn)
      if (!IsFloat(mat[nRow][nColumn])) return false;
  return true;
}

bool IsFloat(QXBoundingBox const& box) {
  return std::all_of(box.m_dMin, box.m_dMin + 3, [](double d) { return IsFloat(d); }) &&
         std::all_of(box.m_dMax, box.m_dMax + 3, [](double d) { return IsFloat(d); });
}

/// The same box as around the eight transformed corners: each of them takes, axis by axis, the lower or the upper
/// product.
QXBoundingBox Transformed(QXBoundingBox const& box, QXMatrix4d const& mat) {
  QXBoundingBox result;
  for (int nAxis = 0; nAxis < 3; ++nAxis) {
    double dMin = mat[3][nAxis];
    double dMax = mat[3][nAxis];
    for (int nRow = 0; nRow < 3; ++nRow) {
      double const dFirst = box.m_dMin[nRow] * mat[nRow][nAxis];
      double const dSecond = box.m_dMax[nRow] * mat[nRow][nAxis];
      dMin += std::min(dFirst, dSecond);
      dMax += std::max(dFirst, dSecond);
    }
    result.m_dMin[nAxis] = dMin;
    result.m_dMax[nAxis] = dMax;
  }
  return result;
}

/// What heights of the world become in the picture.
void Exaggerate(QXBoundingBox& box, double dFactor) {
  box.m_dMin[2] *= dFactor;
  box.m_dMax[2] *= dFactor;
  if (box.m_dMin[2] > box.m_dMax[2]) std::swap(box.m_dMin[2], box.m_dMax[2]);
}

/// Whether no part of a box can be out of sight.
bool IsWhollySeen(QXFrustum const& frustum, QXBoundingBox const& box) {
  QXPlane const* const pPlanes = frustum.GetFrustumPlanes();
  for (QXVector3d const& vecCorner : box.GetCorners())
    for (int i = 0; i < 6; ++i)
      if (!(pPlanes[i].GetDistance(vecCorner) >= 0.0)) return false;
  return true;
}

}  // namespace

void QXOgrePlacements::Touch(std::size_t nFirst, std::size_t nEnd) {
  bool const bNone = m_nFirstMoved == m_nMovedEnd;
  m_nFirstMoved = bNone ? nFirst : std::min(m_nFirstMoved, nFirst);
  m_nMovedEnd = bNone ? nEnd : std::max(m_nMovedEnd, nEnd);
  m_bBoundsKnown = false;
}

void QXOgrePlacements::Add(QXMatrix4d const* pMatrices, unsigned int nCount) {
  std::size_t const nFirst = m_arrMatrices.size();
  std::size_t const nEnd = nFirst + nCount;
  // All room first, so that what cannot be had leaves everything as it was; twice as much as there was, or single
  // additions would copy all of them each time.
  std::size_t const nRoom = nEnd > m_arrMatrices.capacity() ? std::max(nEnd, 2 * m_arrMatrices.capacity()) : 0;
  m_arrIdentifiers.reserve(nRoom);
  m_arrStates.reserve(nRoom);
  m_arrBoxes.reserve(nRoom);
  m_arrPlaces.reserve(nRoom);
  m_arrInstances.reserve(nRoom);
  m_arrSeen.reserve(nRoom + 1);
  m_arrDepths.reserve(nRoom);
  m_arrMatrices.reserve(nRoom);
  m_arrMatrices.insert(m_arrMatrices.end(), pMatrices, pMatrices + nCount);
  m_arrIdentifiers.resize(nEnd, 0);
  m_arrStates.resize(nEnd, SHOWN);
  m_arrBoxes.resize(nEnd);
  m_arrPlaces.resize(nEnd);
  m_arrInstances.resize(nEnd, {{}, {1.0F, 1.0F, 1.0F, 1.0F}, {}});
  m_arrSeen.resize(nEnd + 1);
  m_arrDepths.resize(nEnd);
  Touch(nFirst, nEnd);
}

void QXOgrePlacements::Set(unsigned int nFirst, QXMatrix4d const* pMatrices, unsigned int nCount) {
  std::copy_n(pMatrices, nCount, m_arrMatrices.begin() + nFirst);
  Touch(nFirst, std::size_t{nFirst} + nCount);
}

void QXOgrePlacements::Remove(unsigned int nFirst, unsigned int nCount) {
  // What has not been computed yet moves up; it is computed where it stands then.
  Update();
  std::size_t const nEnd = std::size_t{nFirst} + nCount;
  for (std::size_t i = nFirst; i < nEnd; ++i) m_nTransparent -= m_arrInstances[i].m_fColor[3] < 1.0F ? 1 : 0;
  auto const erase = [&](auto& arr) {
    arr.erase(arr.begin() + static_cast<std::ptrdiff_t>(nFirst), arr.begin() + static_cast<std::ptrdiff_t>(nEnd));
  };
  erase(m_arrMatrices);
  erase(m_arrIdentifiers);
  erase(m_arrStates);
  erase(m_arrBoxes);
  erase(m_arrPlaces);
  erase(m_arrInstances);
  m_nSeen = 0;
  m_bBoundsKnown = false;
}

void QXOgrePlacements::SetVisible(unsigned int nPlacement, unsigned char bVisible) {
  unsigned char& nState = m_arrStates[nPlacement];
  nState = static_cast<unsigned char>(bVisible ? nState | SHOWN : nState & ~SHOWN);
  m_bBoundsKnown = false;
}

void QXOgrePlacements::SetColor(unsigned int nPlacement, QXColorValue3D const& color) {
  float* const pColor = m_arrInstances[nPlacement].m_fColor;
  m_nTransparent -= pColor[3] < 1.0F ? 1 : 0;
  pColor[0] = static_cast<float>(color.r);
  pColor[1] = static_cast<float>(color.g);
  pColor[2] = static_cast<float>(color.b);
  pColor[3] = static_cast<float>(color.a);
  m_nTransparent += pColor[3] < 1.0F ? 1 : 0;
}

void QXOgrePlacements::SetIdentifier(unsigned int nPlacement, unsigned int nID) {
  m_arrIdentifiers[nPlacement] = nID;
  unsigned char* const pBytes = m_arrInstances[nPlacement].m_nIdentifier;
  pBytes[0] = static_cast<unsigned char>(nID >> 16U);
  pBytes[1] = static_cast<unsigned char>(nID >> 8U);
  pBytes[2] = static_cast<unsigned char>(nID);
  pBytes[3] = static_cast<unsigned char>(nID >> 24U);
}

void QXOgrePlacements::SelectObjects(std::set<unsigned int> const& setIDs) {
  for (std::size_t i = 0; i < m_arrStates.size(); ++i) {
    bool const bSelected = m_arrIdentifiers[i] != 0 && setIDs.contains(m_arrIdentifiers[i]);
    m_arrStates[i] = static_cast<unsigned char>(bSelected ? m_arrStates[i] | SELECTED : m_arrStates[i] & ~SELECTED);
  }
}

void QXOgrePlacements::SetModelMatrix(QXMatrix4d const& matModel) {
  if (m_matModel == matModel) return;
  m_matModel = matModel;
  m_bModelMatrix = !(matModel == QXMatrix4d());
  Touch(0, m_arrMatrices.size());
}

void QXOgrePlacements::SetMesh(QXMatrix4d const& matMesh, QXBoundingBox const& boxMesh, QXVector3d const& vecZero) {
  bool const bSame = std::equal(boxMesh.m_dMin, boxMesh.m_dMin + 3, m_MeshBounds.m_dMin) &&
                     std::equal(boxMesh.m_dMax, boxMesh.m_dMax + 3, m_MeshBounds.m_dMax) &&
                     boxMesh.IsNULL() == m_MeshBounds.IsNULL() && vecZero == m_vecZero && matMesh == m_matMesh;
  if (bSame) return;
  m_matMesh = matMesh;
  m_bMeshMatrix = !(matMesh == QXMatrix4d());
  m_MeshBounds = boxMesh;
  m_vecZero = vecZero;
  Touch(0, m_arrMatrices.size());
}

QXMatrix4d QXOgrePlacements::GetWorldMatrix(unsigned int nPlacement) const {
  QXMatrix4d const& mat = m_arrMatrices[nPlacement];
  // Most have neither, and a multiplication takes longer than all the rest.
  if (!m_bMeshMatrix && !m_bModelMatrix) return mat;
  if (!m_bModelMatrix) return m_matMesh * mat;
  return m_bMeshMatrix ? m_matMesh * mat * m_matModel : mat * m_matModel;
}

void QXOgrePlacements::Update() {
  for (std::size_t i = m_nFirstMoved; i < m_nMovedEnd; ++i) Compute(i);
  m_nFirstMoved = 0;
  m_nMovedEnd = 0;
}

void QXOgrePlacements::Compute(std::size_t nPlacement) {
  QXMatrix4d const mat = GetWorldMatrix(static_cast<unsigned int>(nPlacement));
  unsigned char& nState = m_arrStates[nPlacement];
  QXBoundingBox& box = m_arrBoxes[nPlacement];
  nState &= static_cast<unsigned char>(~PLACED);
  if (m_MeshBounds.IsNULL() || !IsPlacement(mat)) return;
  box = Transformed(m_MeshBounds, mat);
  QXVector3d const vecPlace = m_vecZero.MultiplyMatrix(mat);
  if (!IsFloat(box) || !IsFloat(vecPlace.x) || !IsFloat(vecPlace.y) || !IsFloat(vecPlace.z)) return;
  nState |= PLACED;
  m_arrPlaces[nPlacement] = {vecPlace.x, vecPlace.y, vecPlace.z};
  for (int nAxis = 0; nAxis < 3; ++nAxis)
    for (int nRow = 0; nRow < 3; ++nRow)
      m_arrInstances[nPlacement].m_fRows[nAxis][nRow] = static_cast<float>(mat[nRow][nAxis]);
}

void QXOgrePlacements::MeasureBounds() const {
  m_Bounds.SetNULL();
  m_VisibleBounds.SetNULL();
  for (std::size_t i = 0; i < m_arrBoxes.size(); ++i) {
    if ((m_arrStates[i] & PLACED) == 0) continue;
    m_Bounds.Merge(m_arrBoxes[i]);
    if ((m_arrStates[i] & DRAWN) == DRAWN) m_VisibleBounds.Merge(m_arrBoxes[i]);
  }
  m_bBoundsKnown = true;
}

QXBoundingBox const& QXOgrePlacements::GetBounds() const {
  if (!m_bBoundsKnown) MeasureBounds();
  return m_Bounds;
}

QXBoundingBox const& QXOgrePlacements::GetVisibleBounds() const {
  if (!m_bBoundsKnown) MeasureBounds();
  return m_VisibleBounds;
}

template <class See>
std::size_t QXOgrePlacements::Select(See see) {
  std::size_t const nCount = m_arrBoxes.size();
  unsigned char const* const pStates = m_arrStates.data();
  QXBoundingBox const* const pBoxes = m_arrBoxes.data();
  unsigned int* const pSeen = m_arrSeen.data();
  std::size_t nSeen = 0;
  for (std::size_t i = 0; i < nCount; ++i) {
    if ((pStates[i] & DRAWN) != DRAWN) continue;
    // Written in any case, so that the answer is no branch that the processor guesses.
    pSeen[nSeen] = static_cast<unsigned int>(i);
    nSeen += see(pBoxes[i]);
  }
  return nSeen;
}

void QXOgrePlacements::SelectSeen(QXOgreView const& view) {
  QXFrustum const& frustum = *view.m_pFrustum;
  double const dFactor = view.m_dVerticalExaggeration;
  if (m_bBoundsKnown) {
    QXBoundingBox boxAll = m_VisibleBounds;
    Exaggerate(boxAll, dFactor);
    m_nSeen = 0;
    if (m_VisibleBounds.IsNULL() || !frustum.IsVisible(boxAll, 0.0)) return;
    if (IsWhollySeen(frustum, boxAll)) {
      m_nSeen = Select([](QXBoundingBox const&) { return std::size_t{1}; });
      return;
    }
  }
  if (dFactor == 1.0) {
    m_nSeen = Select([&](QXBoundingBox const& box) { return std::size_t{frustum.IsVisible(box, 0.0)}; });
    return;
  }
  m_nSeen = Select([&](QXBoundingBox box) {
    Exaggerate(box, dFactor);
    return std::size_t{frustum.IsVisible(box, 0.0)};
  });
}

void QXOgrePlacements::DropDistant(double dNear, double dFar) {
  auto const isDistant = [&](unsigned int nPlacement) {
    double const dDistance = m_arrBoxes[nPlacement].GetCenter().MultiplyMatrix(m_matToEye).Length();
    return dDistance < dNear || (dFar > 0.0 && dDistance > dFar);
  };
  auto const first = m_arrSeen.begin();
  m_nSeen =
      static_cast<std::size_t>(std::remove_if(first, first + static_cast<std::ptrdiff_t>(m_nSeen), isDistant) - first);
}

void QXOgrePlacements::DropOthers(QXOgrePickFilter const& filter) {
  auto const isOther = [&](unsigned int nPlacement) { return !filter.Takes(m_arrIdentifiers[nPlacement]); };
  auto const first = m_arrSeen.begin();
  m_nSeen =
      static_cast<std::size_t>(std::remove_if(first, first + static_cast<std::ptrdiff_t>(m_nSeen), isOther) - first);
}

void QXOgrePlacements::SortByDepth() {
  for (std::size_t i = 0; i < m_nSeen; ++i) {
    std::array<double, 3> const& place = m_arrPlaces[m_arrSeen[i]];
    m_arrDepths[m_arrSeen[i]] =
        -static_cast<float>(QXVector3d(place[0], place[1], place[2]).MultiplyMatrix(m_matToEye).z);
  }
  std::sort(
      m_arrSeen.begin(), m_arrSeen.begin() + static_cast<std::ptrdiff_t>(m_nSeen), [&](unsigned int a, unsigned int b) {
        return m_arrDepths[a] != m_arrDepths[b] ? m_arrDepths[a] > m_arrDepths[b] : a < b;
      });
}

std::size_t QXOgrePlacements::Collect(QXOgreView const& view, double dNear, double dFar, bool bSort) {
  QXMatrix4d matOrigin;
  matOrigin.SetTrans(-view.m_vecOrigin);
  matOrigin[2][2] = view.m_dVerticalExaggeration;
  m_matToEye = matOrigin * view.m_matView;
  m_nSeen = 0;
  if (!IsPlacement(m_matToEye)) return 0;
  SelectSeen(view);
  if (dNear > 0.0 || dFar > 0.0) DropDistant(dNear, dFar);
  if (view.m_pPick) DropOthers(*view.m_pPick);
  if (bSort) SortByDepth();
  return m_nSeen;
}

void QXOgrePlacements::Write(
    std::size_t nFirst, std::size_t nCount, QXOgreInstance* pInstances, bool bIdentifiers) const {
  QXMatrix4d const& mat = m_matToEye;
  for (std::size_t i = 0; i < nCount; ++i) {
    unsigned int const nPlacement = m_arrSeen[nFirst + i];
    std::array<double, 3> const& place = m_arrPlaces[nPlacement];
    QXOgreInstance instance = m_arrInstances[nPlacement];
    // The large numbers meet in double, and what is left of them becomes float.
    for (int k = 0; k < 3; ++k)
      instance.m_fRows[k][3] =
          static_cast<float>(place[0] * mat[0][k] + place[1] * mat[1][k] + place[2] * mat[2][k] + mat[3][k]);
    unsigned char const nMark = (m_arrStates[nPlacement] & SELECTED) != 0 ? 0xFF : 0;
    if (!bIdentifiers) std::fill_n(instance.m_nIdentifier, 4, nMark);
    pInstances[i] = instance;
  }
}

}  // namespace QXC
