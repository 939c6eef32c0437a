#include <plugins/ogre/instancing/QXOgreInstancing.h>

#include <algorithm>

#include <QxGraphics3D/model/QXRenderOperationInstance.h>
#include <QxGraphics3D/renderop/QXRenderOperationMultiIndex.h>

#include <plugins/ogre/QXOgreDrawable.h>
#include <plugins/ogre/QXOgreGraphics3D.h>
#include <plugins/ogre/QXOgreRenderOperation3D.h>
#include <plugins/ogre/QXOgreRenderOperationManager.h>
#include <plugins/ogre/QXOgreScene.h>
#include <plugins/ogre/QXOgreTextureManager.h>

namespace QXC {

namespace {

/// Static geometry has places of its own; a mesh whose ranges all draw nothing has none.
bool IsDrawable(QXOgreDrawable const& mesh) {
  auto const& arrRanges = mesh.GetGeometry().GetRanges();
  return !mesh.IsBucket() && std::any_of(arrRanges.begin(), arrRanges.end(),
                                 [](QXOgreRange const& range) { return range.m_pIndexData != nullptr; });
}

void GiveSelectionColor(QXOgreDrawable& mesh, QXColorValue3D const& color) {
  QXOgreLook look = mesh.GetLook();
  look.m_SelectionColor = color;
  mesh.SetLook(look);
}

}  // namespace

QXOgreInstancing::QXOgreInstancing(QXOgreGraphics3D& graphics3D, QXOgreScene& scene)
    : m_Graphics3D(graphics3D), m_pScene(&scene), m_Draws(*graphics3D.GetDevice()), m_dNear(0.0), m_dFar(0.0),
      m_nDrawn(0), m_bVisible(1) {
  m_pScene->AddItem(this);
}

QXOgreInstancing::~QXOgreInstancing() {
  if (m_pScene) m_pScene->RemoveItem(this);
}

void QXOgreInstancing::UpdateInstances() {
  m_Placements.Remove(0, m_Placements.GetCount());
  for (QXRenderOperationInstance const* const pInstance : m_arrInstances) {
    if (!pInstance) continue;
    for (QXMatrix4d const* const pMatrix : pInstance->GetMatrixArray())
      if (pMatrix) m_Placements.Add(pMatrix, 1);
  }
}

unsigned char QXOgreInstancing::SetMesh(QXRenderOperationMultiIndex const* pMesh) {
  std::unique_ptr<QXOgreDrawable> pDrawable;
  if (pMesh) {
    pDrawable = std::make_unique<QXOgreDrawable>(m_Graphics3D.GetDevice());
    pDrawable->SetGeometry(*pMesh, &m_Graphics3D.GetTextures());
    if (!IsDrawable(*pDrawable)) return 0;
    GiveSelectionColor(*pDrawable, m_Graphics3D.GetOperations().GetSelectionColor());
  }
  m_Draws.Clear();
  m_pSharedMesh.SetNull();
  m_pOwnMesh = std::move(pDrawable);
  return 1;
}

unsigned char QXOgreInstancing::SetSharedMesh(QXROInstancePtr const& pMesh) {
  if (pMesh.IsNull()) return SetMesh(nullptr);
  QXOgreRenderOperation3D* const pOperation = m_Graphics3D.GetOperations().Own(pMesh->GetRenderOperation3D());
  if (!pOperation || !IsDrawable(pOperation->GetDrawable())) return 0;
  // The host may give back what is held.
  QXROInstancePtr const pHeld = pMesh;
  SetMesh(nullptr);
  m_pSharedMesh = pHeld;
  return 1;
}

void QXOgreInstancing::SetSelectionColor(QXColorValue3D const& color) {
  if (m_pOwnMesh) GiveSelectionColor(*m_pOwnMesh, color);
}

void QXOgreInstancing::SetVisibleDistance(double dNear, double dFar) {
  m_dNear = dNear;
  m_dFar = dFar;
}

QXOgreDrawable* QXOgreInstancing::FindMesh() const {
  if (m_pOwnMesh) return m_pOwnMesh.get();
  if (m_pSharedMesh.IsNull()) return nullptr;
  // Asked for anew each time, since the host may have given the mesh another drawable.
  QXOgreRenderOperation3D* const pOperation = m_Graphics3D.GetOperations().Own(m_pSharedMesh->GetRenderOperation3D());
  return pOperation && IsDrawable(pOperation->GetDrawable()) ? &pOperation->GetDrawable() : nullptr;
}

void QXOgreInstancing::Refresh(QXOgreDrawable const& mesh) const {
  m_Placements.SetMesh(mesh.GetModelMatrix(), mesh.GetBounds(), mesh.GetGeometry().GetZero());
  m_Placements.Update();
}

std::size_t QXOgreInstancing::GetMost() const {
  return m_nMaxPlacements > 0 ? std::min(static_cast<unsigned int>(m_nMaxPlacements), MOST_PLACEMENTS)
                              : MOST_PLACEMENTS;
}

void QXOgreInstancing::Update() {
  QXOgreDrawable* const pMesh = FindMesh();
  if (!pMesh) return;
  Refresh(*pMesh);
  if (m_Placements.GetCount() > 0) m_Draws.Follow(*pMesh, m_Placements, GetMost());
}

void QXOgreInstancing::Queue(
    QXOgreView const& view, Ogre::RenderQueue& queue, std::vector<Ogre::Real>& arrDepths, QXOgreCounts& counts) {
  // A pick is no picture that anybody counts.
  unsigned int nPicked = 0;
  unsigned int& nDrawn = view.m_pPick ? nPicked : m_nDrawn;
  nDrawn = 0;
  QXOgreDrawable* const pMesh = m_bVisible && m_Placements.GetCount() > 0 ? FindMesh() : nullptr;
  if (!pMesh) return;
  Update();
  std::size_t const nSeen = m_Placements.Collect(view, m_dNear, m_dFar, m_Draws.IsBlended());
  nDrawn = static_cast<unsigned int>(nSeen);
  if (nSeen == 0) return;
  pMesh->MoveVertices();
  m_Draws.Queue(*pMesh, m_Placements, nSeen, view.m_pPick != nullptr, queue, arrDepths, counts);
}

QXBoundingBox QXOgreInstancing::GetVisibleBounds() const {
  QXOgreDrawable const* const pMesh = m_bVisible ? FindMesh() : nullptr;
  if (!pMesh) return {};
  Refresh(*pMesh);
  return m_Placements.GetVisibleBounds();
}

QXBoundingBox QXOgreInstancing::GetBounds() const {
  QXOgreDrawable const* const pMesh = FindMesh();
  if (!pMesh) return {};
  Refresh(*pMesh);
  return m_Placements.GetBounds();
}

unsigned char QXOgreInstancing::Intersect(
    QXVector3d const& vecOrigin, QXVector3d const& vecDirection, double& dDistance, unsigned int& nPlacement) const {
  QXOgreDrawable* const pMesh = m_bVisible ? FindMesh() : nullptr;
  if (!pMesh) return 0;
  Refresh(*pMesh);
  pMesh->MoveVertices();
  m_Triangles.Follow(*pMesh);
  unsigned char bHit = 0;
  for (unsigned int i = 0; i < m_Placements.GetCount(); ++i) {
    if (!m_Placements.IsVisible(i) || !m_Placements.HasPlace(i)) continue;
    double dHere = 0.0;
    if (!QXOgreMeshTriangles::MayHit(m_Placements.GetBounds(i), vecOrigin, vecDirection)) continue;
    if (!m_Triangles.Intersect(*pMesh, m_Placements.GetWorldMatrix(i), vecOrigin, vecDirection, dHere)) continue;
    if (bHit && !(dHere < dDistance)) continue;
    dDistance = dHere;
    nPlacement = i;
    bHit = 1;
  }
  return bHit;
}

}  // namespace QXC
