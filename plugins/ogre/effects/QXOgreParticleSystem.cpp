#include <plugins/ogre/effects/QXOgreParticleSystem.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include <OgreBlendMode.h>

#include <QxGraphics3D/view/QXFrustum.h>

#include <plugins/ogre/QXOgreDevice.h>
#include <plugins/ogre/QXOgreScene.h>

namespace QXC {

namespace {

QXVector3d Turned(QXVector3d const& v, QXMatrix4d const& mat) {
  return {v.x * mat[0][0] + v.y * mat[1][0] + v.z * mat[2][0], v.x * mat[0][1] + v.y * mat[1][1] + v.z * mat[2][1],
      v.x * mat[0][2] + v.y * mat[1][2] + v.z * mat[2][2]};
}

/// The four corners around a place: one axis of the picture to each side, the other up and down.
void SetCorners(QXOgreQuads::Corners& arrCorners, QXVector3d const& vecPlace, QXVector3d const& vecSide,
    QXVector3d const& vecUp, QXColorValue3D const& color) {
  constexpr int SIDES[] = {-1, 1, 1, -1};
  constexpr int HEIGHTS[] = {-1, -1, 1, 1};
  for (std::size_t i = 0; i < arrCorners.size(); ++i) {
    QXOgreQuads::Vertex& vertex = arrCorners[i];
    vertex.m_fPosition[0] = static_cast<float>(vecPlace.x + SIDES[i] * vecSide.x + HEIGHTS[i] * vecUp.x);
    vertex.m_fPosition[1] = static_cast<float>(vecPlace.y + SIDES[i] * vecSide.y + HEIGHTS[i] * vecUp.y);
    vertex.m_fPosition[2] = static_cast<float>(vecPlace.z + SIDES[i] * vecSide.z + HEIGHTS[i] * vecUp.z);
    double const arrColor[] = {color.r, color.g, color.b, color.a};
    for (std::size_t k = 0; k < 4; ++k) vertex.m_fColor[k] = static_cast<float>(arrColor[k]);
    vertex.m_fTexCoord[0] = SIDES[i] > 0 ? 1.0F : 0.0F;
    vertex.m_fTexCoord[1] = HEIGHTS[i] > 0 ? 0.0F : 1.0F;
  }
}

bool IsDrawable(QXOgreQuads::Corners const& arrCorners) {
  for (QXOgreQuads::Vertex const& vertex : arrCorners)
    for (float const f : vertex.m_fPosition)
      if (!std::isfinite(f)) return false;
  return true;
}

}  // namespace

QXOgreParticleSystem::QXOgreParticleSystem(
    QXOgreDevice& device, QXOgreScene& scene, QXOgreParticleKind const& kind, std::uint64_t nSeed, QXTexture* pDisc)
    : m_Device(device), m_pScene(&scene), m_Particles(kind, nSeed), m_pQuads(std::make_unique<QXOgreQuads>(device)),
      m_pDisc(std::make_unique<QXOgreTextureUse>(QXOgreTextureSource::Of(pDisc))), m_bVisible(1) {
  m_pScene->AddItem(this);
}

QXOgreParticleSystem::~QXOgreParticleSystem() {
  if (m_pScene) m_pScene->RemoveItem(this);
}

void QXOgreParticleSystem::LeaveScene() {
  m_pScene = nullptr;
  m_pQuads.reset();
}

void QXOgreParticleSystem::SetTexture(QXTexture* pTexture) {
  QXOgreTextureSource* const pSource = QXOgreTextureSource::Of(pTexture);
  // Made before the former one is given back, which may be the same.
  auto pUse = pSource ? std::make_unique<QXOgreTextureUse>(pSource) : nullptr;
  m_pUse.swap(pUse);
}

QXBoundingBox QXOgreParticleSystem::GetVisibleBounds() const {
  return m_bVisible ? m_Particles.GetBounds() : QXBoundingBox();
}

bool QXOgreParticleSystem::IsSeen(QXOgreView const& view) const {
  if (!m_bVisible || !m_pQuads || m_Particles.GetCount() == 0) return false;
  QXMatrix4d matExaggerated;
  matExaggerated[2][2] = view.m_dVerticalExaggeration;
  QXBoundingBox box = m_Particles.GetBounds().GetTransformed(matExaggerated);
  // Sizes are not exaggerated; where heights shrink, what stands above the lowered box is still seen.
  double const dReach = (m_Particles.GetBounds().GetMax() - m_Particles.GetBounds().GetMin()).Length();
  if (std::abs(view.m_dVerticalExaggeration) < 1.0) {
    QXVector3d const vecReach(0.0, 0.0, dReach);
    box.Merge(QXBoundingBox(box.GetMin() - vecReach, box.GetMax() + vecReach));
  }
  return view.m_pFrustum->IsVisible(box, 0.0) != 0;
}

bool QXOgreParticleSystem::Place(QXOgreParticles::State const& state, QXOgreView const& view, Item& item) const {
  QXVector3d vecPosition = state.m_vecPosition;
  vecPosition.z *= view.m_dVerticalExaggeration;
  QXVector3d const vecEye = (vecPosition - view.m_vecOrigin).MultiplyMatrix(view.m_matView);
  QXMatrix4d const& mat = view.m_matProjection;
  double const dW = vecEye.x * mat[0][3] + vecEye.y * mat[1][3] + vecEye.z * mat[2][3] + mat[3][3];
  // Written so that what is no number is not drawn either.
  if (!(dW > 0.0 && state.m_dSize > 0.0)) return false;
  double const dHalf = 0.5 * state.m_dSize;
  item.m_dDepth = -vecEye.z;
  if (m_Particles.GetKind().m_dStreak > 0.0) {
    QXVector3d vecVelocity = state.m_vecVelocity;
    vecVelocity.z *= view.m_dVerticalExaggeration;
    double const dBack = -0.5 * m_Particles.GetKind().m_dStreak;
    QXVector3d const v = Turned(vecVelocity, view.m_matView);
    QXVector3d const vecUp(v.x * dBack, v.y * dBack, v.z * dBack);
    QXVector3d const vecToEye =
        view.IsParallel() ? QXVector3d(0.0, 0.0, 1.0) : QXVector3d(-vecEye.x, -vecEye.y, -vecEye.z);
    QXVector3d vecSide = vecUp.CrossProduct(vecToEye);
    double const dLength = vecSide.Length();
    // What flies straight to the eye is a point.
    if (!(dLength > 0.0)) return false;
    vecSide = {vecSide.x * dHalf / dLength, vecSide.y * dHalf / dLength, vecSide.z * dHalf / dLength};
    SetCorners(item.m_arrCorners, vecEye + vecUp, vecSide, vecUp, state.m_Color);
  } else {
    double const dCos = dHalf * std::cos(state.m_dAngle);
    double const dSin = dHalf * std::sin(state.m_dAngle);
    SetCorners(item.m_arrCorners, vecEye, {dCos, dSin, 0.0}, {-dSin, dCos, 0.0}, state.m_Color);
  }
  return IsDrawable(item.m_arrCorners);
}

void QXOgreParticleSystem::CollectItems(QXOgreView const& view) {
  m_arrItems.clear();
  Item item;
  for (std::size_t i = 0; i < m_Particles.GetCount(); ++i)
    if (Place(m_Particles.GetState(i), view, item)) m_arrItems.push_back(item);
}

QXOgreSurface QXOgreParticleSystem::MakeSurface() const {
  QXOgreParticleKind const& kind = m_Particles.GetKind();
  QXOgreTextureSource const* const pSource = (m_pUse && m_pUse->GetSource() ? *m_pUse : *m_pDisc).GetSource();
  bool const bClear = std::any_of(
      kind.m_arrColors.begin(), kind.m_arrColors.end(), [](QXColorValue3D const& color) { return color.a < 1.0; });
  QXOgreSurface surface;
  surface.m_bTransparent = kind.m_bGlowing || bClear || (pSource && pSource->IsTransparent());
  if (kind.m_bGlowing) surface.m_eDestFactor = Ogre::SBF_ONE;
  return surface;
}

void QXOgreParticleSystem::Queue(
    QXOgreView const& view, Ogre::RenderQueue& queue, std::vector<Ogre::Real>& arrDepths, QXOgreCounts& counts) {
  if (!IsSeen(view)) return;
  CollectItems(view);
  if (m_arrItems.empty()) return;
  QXOgreQuads::Run run;
  run.m_pUse = m_pUse && m_pUse->GetSource() ? m_pUse.get() : m_pDisc.get();
  if (QXOgreTextureSource* const pSource = run.m_pUse->GetSource()) {
    pSource->PrepareFor(m_Device.GetFrame());
  } else {
    run.m_pUse = nullptr;
  }
  run.m_Surface = MakeSurface();
  // Sums of light come out alike in any order.
  if (run.m_Surface.m_bTransparent && !m_Particles.GetKind().m_bGlowing)
    std::sort(
        m_arrItems.begin(), m_arrItems.end(), [](Item const& a, Item const& b) { return a.m_dDepth > b.m_dDepth; });
  m_pQuads->Clear();
  double dNearest = std::numeric_limits<double>::infinity();
  double dFarthest = -dNearest;
  for (Item const& item : m_arrItems) {
    m_pQuads->Add(item.m_arrCorners);
    dNearest = std::min(dNearest, item.m_dDepth);
    dFarthest = std::max(dFarthest, item.m_dDepth);
  }
  m_pQuads->Upload();
  run.m_nEnd = m_pQuads->GetCount();
  run.m_fDepth = static_cast<Ogre::Real>(0.5 * (dNearest + dFarthest));
  m_pQuads->Queue(run, queue);
  if (run.m_Surface.m_bTransparent) arrDepths.push_back(run.m_fDepth);
  auto const nCount = static_cast<unsigned int>(m_arrItems.size());
  ++counts.m_nDrawOperations;
  counts.m_nTriangles += 2 * nCount;
  counts.m_nVertices += 4 * nCount;
}

}  // namespace QXC
