#include <plugins/ogre/QXOgreDrawable.h>

#include <algorithm>
#include <utility>

#include <OgreRenderQueue.h>

#include <QxGraphics3D/renderop/QXRenderOperationMultiIndex.h>
#include <QxGraphics3D/view/QXFrustum.h>

#include <plugins/ogre/QXOgreBucket.h>
#include <plugins/ogre/QXOgreConvert.h>
#include <plugins/ogre/QXOgreDevice.h>
#include <plugins/ogre/QXOgreRenderable.h>
#include <plugins/ogre/QXOgreScene.h>
#include <plugins/ogre/QXOgreSceneNode.h>
#include <plugins/ogre/QXOgreTextureUnits.h>
#include <plugins/ogre/effects/QXOgreSkeletonAnimation.h>
#include <plugins/ogre/effects/QXOgreSkin.h>
#include <plugins/ogre/picking/QXOgrePickFilter.h>

namespace QXC {

namespace {

QXMatrix4d Translation(QXVector3d const& vecOffset) {
  QXMatrix4d mat;
  mat.SetTrans(vecOffset);
  return mat;
}

QXBoundingBox Exaggerated(QXBoundingBox const& box, double dFactor) {
  QXVector3d vecMin = box.GetMin();
  QXVector3d vecMax = box.GetMax();
  vecMin.z *= dFactor;
  vecMax.z *= dFactor;
  if (vecMin.z > vecMax.z) std::swap(vecMin.z, vecMax.z);
  return {vecMin, vecMax};
}

/// Whether labels with anchors in a box may reach into the picture: they do so from as many pixels beyond its edges.
bool MayReach(QXBoundingBox const& box, double dReach, QXOgreView const& view) {
  QXMatrix4d const matClip = view.m_matView * view.m_matProjection;
  double const dMargin[3] = {2.0 * dReach / view.m_nWidth, 2.0 * dReach / view.m_nHeight, 0.0};
  unsigned int nOutside = 0x3F;
  for (QXVector3d const& vecCorner : box.GetCorners()) {
    QXVector3d const vecPoint = vecCorner - view.m_vecOrigin;
    double dClip[4];
    for (int k = 0; k < 4; ++k)
      dClip[k] = vecPoint.x * matClip[0][k] + vecPoint.y * matClip[1][k] + vecPoint.z * matClip[2][k] + matClip[3][k];
    unsigned int nSides = 0;
    for (unsigned int k = 0; k < 3; ++k) {
      double const dEdge = dClip[3] * (1.0 + dMargin[k]);
      if (dClip[k] < -dEdge) nSides |= 1U << (2 * k);
      if (dClip[k] > dEdge) nSides |= 2U << (2 * k);
    }
    nOutside &= nSides;
  }
  return nOutside == 0;
}

/// Of all drawables: one may come into being where another was.
unsigned long long NextVersion() {
  static unsigned long long s_nVersion = 0;
  return ++s_nVersion;
}

}  // namespace

QXOgreDrawable::QXOgreDrawable(QXOgreDevice* pDevice)
    : m_pDevice(pDevice), m_pScene(nullptr), m_pNode(nullptr), m_pSkeleton(nullptr), m_bMoved(false), m_nSelectionID(0),
      m_bVisible(1), m_nGeometryVersion(NextVersion()), m_nLookVersion(0) {
  if (m_pDevice) m_pDevice->AddDrawable(this);
}

QXOgreDrawable::~QXOgreDrawable() {
  if (m_pSkeleton) m_pSkeleton->Remove(this);
  SetScene(nullptr);
  if (m_pDevice) m_pDevice->RemoveDrawable(this);
}

void QXOgreDrawable::SetScene(QXOgreScene* pScene) {
  if (m_pScene == pScene) return;
  SetNode(nullptr);
  if (m_pScene) m_pScene->Remove(this);
  m_pScene = pScene;
  if (m_pScene) m_pScene->Add(this);
}

void QXOgreDrawable::SetNode(QXOgreSceneNode* pNode) {
  if (m_pNode) m_pNode->Remove(this);
  m_pNode = pNode;
  if (m_pNode) m_pNode->Add(this);
  UpdateWorld();
}

void QXOgreDrawable::LeaveDevice() {
  SetScene(nullptr);
  ClearGeometry();
  m_Textures = {};
  m_pDevice = nullptr;
}

void QXOgreDrawable::SetGeometry(QXRenderOperationMultiIndex const& source, QXTextureManager* pManager) {
  // Held until the new ones are: a texture that stays is never without a user.
  std::vector<QXOgreTextureSet> const arrFormer = std::move(m_arrRangeTextures);
  ClearGeometry();
  if (!m_pDevice) return;
  m_Geometry.Upload(source);
  for (QXOgreRange const& range : m_Geometry.GetRanges()) {
    m_arrRenderables.push_back(std::make_unique<QXOgreRenderable>(*m_pDevice, m_Geometry.GetVertexData(),
        range.m_pIndexData.get(), range.m_eOperationType, range.m_Color, m_Place));
  }
  m_bMoved = m_pSkeleton != nullptr;
  UpdateMovedBounds();
  SetIdentities();
  TakeTextures(source, pManager);
  if (source.GetMatrix()) m_matModel = *source.GetMatrix();
  // White is what an operation has that was given no colour.
  if (!(source.m_Color == QXColorValue3D::White)) m_Look.m_Color = source.m_Color;
  UpdateMaterials();
  UpdateWorld();
}

void QXOgreDrawable::TakeTextures(QXRenderOperationMultiIndex const& source, QXTextureManager* pManager) {
  auto const& arrPackages = source.GetTexturePackageArray();
  std::vector<QXOgreRange> const& arrRanges = m_Geometry.GetRanges();
  m_arrRangeTextures.resize(arrRanges.size());
  for (std::size_t i = 0; i < arrRanges.size(); ++i) {
    int const nPackage = arrRanges[i].m_nPackage;
    if (nPackage < 0 || static_cast<std::size_t>(nPackage) >= arrPackages.GetSize()) continue;
    QXTexturePackage const* const pPackage = arrPackages[static_cast<std::size_t>(nPackage)];
    if (pPackage) m_arrRangeTextures[i].Assign(*pPackage, pManager);
  }
}

void QXOgreDrawable::ClearGeometry() {
  m_arrRenderables.clear();
  m_arrRangeTextures.clear();
  m_pBucket.reset();
  m_Geometry.Clear();
  m_nGeometryVersion = NextVersion();
  UpdateMovedBounds();
  UpdateWorld();
}

unsigned char QXOgreDrawable::UpdatePositions(unsigned int nFirst, unsigned int nCount, float const* pPositions) {
  unsigned char const bDone = m_Geometry.UpdatePositions(nFirst, nCount, pPositions);
  m_nGeometryVersion = NextVersion();
  // They are places at rest, and those of moved vertices on the device.
  if (m_pSkeleton) m_bMoved = true;
  UpdateMovedBounds();
  UpdateWorld();
  return bDone;
}

void QXOgreDrawable::SetSkeleton(QXOgreSkeletonAnimation* pSkeleton) {
  if (m_pSkeleton == pSkeleton) return;
  if (m_pSkeleton) m_pSkeleton->Remove(this);
  m_pSkeleton = pSkeleton;
  if (m_pSkeleton) m_pSkeleton->Add(this);
  UpdateSkeleton();
}

void QXOgreDrawable::UpdateSkeleton() {
  m_bMoved = true;
  UpdateMovedBounds();
  UpdateWorld();
}

void QXOgreDrawable::UpdateMovedBounds() {
  m_MovedBounds.SetNULL();
  if (!m_pSkeleton || !m_Geometry.GetSkin()) return;
  m_MovedBounds = m_Geometry.GetSkin()->GetBounds(m_pSkeleton->GetMoves());
  m_MovedBounds.Merge(m_Bounds);
}

unsigned char QXOgreDrawable::UpdateColors(unsigned int nFirst, unsigned int nCount, unsigned int const* pColors) {
  unsigned char const bDone = m_Geometry.UpdateColors(nFirst, nCount, pColors);
  if (bDone && m_pBucket) NoteTransparent(nFirst, nCount, pColors);
  UpdateMaterials();
  return bDone;
}

void QXOgreDrawable::SetRangeVisible(unsigned int nRange, unsigned char bVisible) {
  if (nRange >= m_arrRenderables.size()) return;
  m_arrRenderables[nRange]->SetVisible(bVisible);
  ++m_nLookVersion;
}

void QXOgreDrawable::SetRangeColor(unsigned int nRange, QXColorValue3D const& color) {
  if (nRange >= m_arrRenderables.size()) return;
  m_arrRenderables[nRange]->SetColor(color);
  UpdateMaterials();
}

unsigned int QXOgreDrawable::GetTriangleCount() const {
  unsigned int nCount = 0;
  for (QXOgreRange const& range : m_Geometry.GetRanges()) nCount += range.m_nTriangleCount;
  return nCount;
}

void QXOgreDrawable::SetModelMatrix(QXMatrix4d const& matModel) {
  m_matModel = matModel;
  UpdateWorld();
}

void QXOgreDrawable::SetBounds(QXBoundingBox const& box) {
  m_Bounds = box;
  UpdateMovedBounds();
  UpdateWorld();
}

QXBoundingBox const& QXOgreDrawable::GetBounds() const {
  if (!m_MovedBounds.IsNULL()) return m_MovedBounds;
  return m_Bounds.IsNULL() ? m_Geometry.GetBounds() : m_Bounds;
}

void QXOgreDrawable::SetLook(QXOgreLook const& look) {
  m_Look = look;
  UpdateMaterials();
}

bool QXOgreDrawable::IsShown() const {
  return m_bVisible && (!m_pNode || m_pNode->IsVisible());
}

bool QXOgreDrawable::IsSeen(QXOgreView const& view) const {
  if (!IsShown() || m_arrRenderables.empty() || m_WorldBounds.IsNULL()) return false;
  if (view.m_pNode && !(m_pNode && m_pNode->IsUnder(*view.m_pNode))) return false;
  QXBoundingBox const box = Exaggerated(m_WorldBounds, view.m_dVerticalExaggeration);
  if (m_pNode || m_Look.m_dNear > 0.0 || m_Look.m_dFar > 0.0) {
    double const dDistance = (box.GetCenter() - view.m_vecOrigin).MultiplyMatrix(view.m_matView).Length();
    if (dDistance < m_Look.m_dNear || (m_Look.m_dFar > 0.0 && dDistance > m_Look.m_dFar)) return false;
    if (m_pNode && !m_pNode->IsWithin(dDistance)) return false;
  }
  if (m_pBucket && m_pBucket->HasWideLines())
    return MayReach(box, std::max(m_pBucket->GetLineReach(), static_cast<double>(m_Look.m_Surface.m_fLineWidth)), view);
  if (m_Look.m_Surface.m_eProgram == QX_OGRE_PROGRAM_LABEL) return MayReach(box, m_Geometry.GetLabelReach(), view);
  return view.m_pFrustum->IsVisible(box, 0.0) != 0;
}

void QXOgreDrawable::MoveVertices() const {
  if (!m_bMoved) return;
  static std::vector<QXMatrix4d> const s_AtRest;
  m_Geometry.Move(m_pSkeleton ? m_pSkeleton->GetMoves() : s_AtRest);
  m_bMoved = false;
}

unsigned short QXOgreDrawable::GetQueuePriority() const {
  return static_cast<unsigned short>(std::clamp(m_Look.m_nPriority, -0x8000, 0x7FFF) + PLAIN_PRIORITY);
}

void QXOgreDrawable::Queue(
    QXOgreView const& view, Ogre::RenderQueue& queue, std::vector<Ogre::Real>& arrDepths, QXOgreCounts& counts) {
  if ((view.m_pPick && !view.m_pPick->Takes(m_nSelectionID)) || !IsSeen(view)) return;
  MoveVertices();
  if (view.m_pPick && m_pBucket) NumberObjects();
  QXMatrix4d matWorld = m_matWorld;
  for (int i = 0; i < 4; ++i) matWorld[i][2] *= view.m_dVerticalExaggeration;
  // The large numbers meet in double, and what is left of them becomes float.
  QXMatrix4d const matToEye = matWorld * Translation(-view.m_vecOrigin) * view.m_matView;
  m_Place.m_matToEye = ToOgre(Translation(m_Geometry.GetZero()) * matToEye);
  if (!IsFinite(m_Place.m_matToEye)) return;
  m_Place.m_fDepth = -m_Place.m_matToEye.getTrans().z;
  double dDistance = 0.0;
  if (m_pBucket && m_pBucket->HasDistances())
    dDistance = Exaggerated(m_WorldBounds, view.m_dVerticalExaggeration).GetDistance(view.m_vecEye);
  unsigned int nRanges = 0;
  for (std::size_t i = 0; i < m_arrRenderables.size(); ++i) {
    QXOgreRenderable& renderable = *m_arrRenderables[i];
    if (!renderable.IsVisible() || (m_pBucket && !IsLevelDrawn(i, dDistance))) continue;
    if (m_pBucket) {
      PutPlace(i, matToEye);
      MoveTextures(i);
    }
    if (!renderable.PrepareTextures(m_pDevice->GetFrame())) UpdateMaterial(i);
    renderable.DrawIdentifiers(view.m_pPick != nullptr);
    queue.addRenderable(&renderable, Ogre::RENDER_QUEUE_MAIN, GetQueuePriority());
    if (renderable.IsBlended()) arrDepths.push_back(renderable.getSquaredViewDepth(nullptr));
    counts.m_nTriangles += m_Geometry.GetRanges()[i].m_nTriangleCount;
    ++nRanges;
  }
  counts.m_nDrawOperations += nRanges;
  if (nRanges > 0) counts.m_nVertices += m_Geometry.GetVertexCount();
}

void QXOgreDrawable::SetTexture(unsigned int nUnit, QXTexture* pTexture) {
  if (!m_pDevice) return;
  // They point to the use that goes.
  for (auto const& pRenderable : m_arrRenderables) pRenderable->SetBindings({});
  m_Textures.SetTexture(nUnit, pTexture);
  UpdateMaterials();
}

void QXOgreDrawable::SetTextureMatrix(unsigned int nUnit, QXMatrix4d const& matTexture) {
  m_Textures.SetMatrix(nUnit, matTexture);
  UpdateMaterials();
}

void QXOgreDrawable::UpdateMaterials() {
  if (!m_pDevice) return;
  for (std::size_t i = 0; i < m_arrRenderables.size(); ++i) UpdateMaterial(i);
}

QXColorValue3D QXOgreDrawable::GetTint() const {
  QXColorValue3D const& own = m_Look.m_Color;
  QXColorValue3D const& mark = m_Look.m_MarkColor;
  return {own.r * mark.r, own.g * mark.g, own.b * mark.b, own.a * mark.a * m_Look.m_dOpacity};
}

void QXOgreDrawable::UpdateMaterial(std::size_t nRange) {
  ++m_nLookVersion;
  if (m_pBucket) return UpdateBucketMaterial(nRange);
  QXColorValue3D const tint = GetTint();
  QXOgreRenderable& renderable = *m_arrRenderables[nRange];
  renderable.SetBindings(FindBindings(nRange));
  QXOgreSurface surface = m_Look.m_Surface;
  surface.m_strCoordSets = renderable.GetCoordSets();
  surface.m_bTransparent = tint.a * renderable.GetColor().a < 1.0 || m_Geometry.HasTransparentVertices() ||
                           renderable.HasTransparentTextures();
  renderable.SetMaterial(m_pDevice->GetMaterials().Get(surface));
  // What faces the camera has no side that the sun could shine on.
  bool const bLight = m_Look.m_bLight && surface.m_eProgram != QX_OGRE_PROGRAM_LABEL;
  renderable.SetLook(tint, m_Look.m_SelectionColor, m_Look.m_bSelected, bLight);
}

std::vector<QXOgreBinding> QXOgreDrawable::FindBindings(std::size_t nRange) const {
  bool const bOwn = m_arrRangeTextures[nRange].HasTextures();
  QXOgreTextureSet const& set = bOwn ? m_arrRangeTextures[nRange] : m_Textures;
  std::vector<QXOgreBinding> arrBindings;
  for (QXOgreTextureSet::Unit const& unit : set.GetUnits()) {
    if (!unit.GetSource()) continue;
    int const nSet = m_Geometry.FindTexCoordSet(m_pDevice->GetTextureUnits().GetCoordSet(unit.m_nUnit));
    // Without coordinates there is no place in the texture that would be the right one.
    if (nSet >= 0) arrBindings.push_back(Bind(set, unit, nSet));
  }
  return arrBindings;
}

QXOgreBinding QXOgreDrawable::Bind(QXOgreTextureSet const& set, QXOgreTextureSet::Unit const& unit, int nSet) const {
  QXOgreBinding binding;
  binding.m_pUse = unit.m_pUse.get();
  binding.m_nUnit = unit.m_nUnit;
  binding.m_nCoordSet = nSet;
  bool const bOwn = &set == &m_Textures;
  binding.m_matTexture = bOwn ? unit.m_matTexture : unit.m_matTexture * m_Textures.GetMatrix(unit.m_nUnit);
  return binding;
}

void QXOgreDrawable::UpdateWorld() {
  m_matWorld = m_pNode ? m_matModel * m_pNode->GetMatrix() : m_matModel;
  m_WorldBounds = GetBounds().GetTransformed(m_matWorld);
}

}  // namespace QXC
