#include <plugins/ogre/QXOgreRenderOperation3D.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <vector>

#include <QxGraphics3D/renderop/QXRenderOperationMultiIndex.h>
#include <QxGraphics3D/renderop/QXRenderOperationSet.h>
#include <QxGraphics3D/text/QXTextLayout.h>

#include <plugins/ogre/QXOgreGraphics3D.h>
#include <plugins/ogre/QXOgreMerge.h>
#include <plugins/ogre/QXOgreRenderOperationManager.h>
#include <plugins/ogre/QXOgreTextureManager.h>
#include <plugins/ogre/effects/QXOgreSkeletonAnimation.h>

namespace QXC {

QXOgreRenderOperation3D::QXOgreRenderOperation3D(QXOgreRenderOperationManager& manager, QXOgreDevice* pDevice)
    : m_pManager(&manager), m_Drawable(pDevice), m_nNumber(manager.Add(this)) {}

QXOgreRenderOperation3D::~QXOgreRenderOperation3D() {
  if (m_pManager) m_pManager->Remove(this);
}

template <class Change>
unsigned char QXOgreRenderOperation3D::ChangeLook(Change&& change) {
  QXOgreLook look = m_Drawable.GetLook();
  change(look);
  return Try([&] { m_Drawable.SetLook(look); });
}

template <class Work>
unsigned char QXOgreRenderOperation3D::Try(Work&& work) {
  if (m_pManager) return m_pManager->GetGraphics3D().Try(work);
  // Without a renderer there is no device that could fail.
  work();
  return 1;
}

void QXOgreRenderOperation3D::SetGeometry(QXRenderOperationMultiIndex const& source) {
  // Half of a geometry is worse than none.
  QXTextureManager* const pTextures = m_pManager ? &m_pManager->GetGraphics3D().GetTextures() : nullptr;
  if (!Try([&] { m_Drawable.SetGeometry(source, pTextures); })) m_Drawable.ClearGeometry();
}

void QXOgreRenderOperation3D::SetBucket(
    QXStaticGeometryBucket const& bucket, QdcArray<double> const& arrLevelDistances) {
  QXTextureManager* const pTextures = m_pManager ? &m_pManager->GetGraphics3D().GetTextures() : nullptr;
  if (!Try([&] { m_Drawable.SetBucket(bucket, arrLevelDistances, pTextures); })) m_Drawable.ClearGeometry();
}

void QXOgreRenderOperation3D::SetBatchState(QXBatchSelAndVertexColor const& state) {
  Try([&] { m_Drawable.SetBatchState(state); });
}

void QXOgreRenderOperation3D::SetMarkColor(QXColorValue3D const& color) {
  ChangeLook([&](QXOgreLook& look) { look.m_MarkColor = color; });
}

void QXOgreRenderOperation3D::SetColor(QXColorValue3D const& color) {
  ChangeLook([&](QXOgreLook& look) { look.m_Color = color; });
}

void QXOgreRenderOperation3D::SetOpacity(double dOpacity) {
  ChangeLook([&](QXOgreLook& look) { look.m_dOpacity = dOpacity; });
}

void QXOgreRenderOperation3D::SetSelected(unsigned char bSelected) {
  ChangeLook([&](QXOgreLook& look) { look.m_bSelected = bSelected != 0; });
}

void QXOgreRenderOperation3D::SetSelectionColor(QXColorValue3D const& color) {
  ChangeLook([&](QXOgreLook& look) { look.m_SelectionColor = color; });
}

void QXOgreRenderOperation3D::SetVisibleDistance(double dNear, double dFar) {
  ChangeLook([&](QXOgreLook& look) {
    look.m_dNear = dNear;
    look.m_dFar = dFar;
  });
}

void QXOgreRenderOperation3D::SetRenderPriority(int nPriority) {
  ChangeLook([&](QXOgreLook& look) { look.m_nPriority = nPriority; });
}

void QXOgreRenderOperation3D::SetLightEnable(unsigned char bEnable) {
  ChangeLook([&](QXOgreLook& look) { look.m_bLight = bEnable != 0; });
}

void QXOgreRenderOperation3D::SetWireframe(unsigned char bWireframe) {
  ChangeLook([&](QXOgreLook& look) { look.m_Surface.m_bWireframe = bWireframe != 0; });
}

void QXOgreRenderOperation3D::SetCullingMode(CullingMode eMode) {
  // Other numbers mean nothing to the device.
  int const nMode = eMode == CULLING_CLOCKWISE || eMode == CULLING_ANTICLOCKWISE ? eMode : CULLING_NONE;
  ChangeLook([&](QXOgreLook& look) { look.m_Surface.m_eCullingMode = nMode; });
}

void QXOgreRenderOperation3D::SetDepthTest(unsigned char bTest) {
  ChangeLook([&](QXOgreLook& look) { look.m_Surface.m_bDepthTest = bTest != 0; });
}

void QXOgreRenderOperation3D::SetDepthWrite(unsigned char bWrite) {
  ChangeLook([&](QXOgreLook& look) { look.m_Surface.m_bDepthWrite = bWrite != 0; });
}

void QXOgreRenderOperation3D::SetDepthBias(double dConstant, double dSlope) {
  ChangeLook([&](QXOgreLook& look) {
    look.m_Surface.m_fDepthBias = static_cast<float>(dConstant);
    look.m_Surface.m_fDepthBiasSlope = static_cast<float>(dSlope);
  });
}

void QXOgreRenderOperation3D::SetLineWidth(double dPixels) {
  ChangeLook([&](QXOgreLook& look) { look.m_Surface.m_fLineWidth = static_cast<float>(dPixels); });
}

void QXOgreRenderOperation3D::SetPointSize(double dPixels) {
  ChangeLook([&](QXOgreLook& look) { look.m_Surface.m_fPointSize = static_cast<float>(dPixels); });
}

unsigned char QXOgreRenderOperation3D::SetShaderPrograms(
    QdcUnicodeString const& strVertex, QdcUnicodeString const& strFragment) {
  bool const bLabel = strVertex == LABEL_VERTEX_PROGRAM && strFragment == LABEL_FRAGMENT_PROGRAM;
  if (!bLabel && !(strVertex.IsEmpty() && strFragment.IsEmpty())) return 0;
  return ChangeLook(
      [&](QXOgreLook& look) { look.m_Surface.m_eProgram = bLabel ? QX_OGRE_PROGRAM_LABEL : QX_OGRE_PROGRAM_PLAIN; });
}

void QXOgreRenderOperation3D::SetRenderOperation(QXRenderOperation const* pOperation) {
  if (!pOperation) return m_Drawable.ClearGeometry();
  SetGeometry(*Merge({pOperation}));
}

void QXOgreRenderOperation3D::SetRenderOperationMultiIndex(QXRenderOperationMultiIndex* pOperation) {
  if (!pOperation) return m_Drawable.ClearGeometry();
  SetGeometry(*pOperation);
}

void QXOgreRenderOperation3D::SetRenderOperationSet(QXRenderOperationSet const& set) {
  std::vector<QXRenderOperation const*> arrOperations;
  for (std::size_t i = 0; i < set.m_arrRenderOperations.GetSize(); ++i)
    if (set.m_arrRenderOperations[i]) arrOperations.push_back(set.m_arrRenderOperations[i]);
  SetGeometry(*Merge(arrOperations));
}

void QXOgreRenderOperation3D::SetTexture(unsigned int nUnit, QXTexture* pTexture) {
  Try([&] { m_Drawable.SetTexture(nUnit, pTexture); });
}

void QXOgreRenderOperation3D::SetTextureMatrix(unsigned int nUnit, QXMatrix4d const& matTexture) {
  Try([&] { m_Drawable.SetTextureMatrix(nUnit, matTexture); });
}

void QXOgreRenderOperation3D::SetSkeletonAnimation(QXSkeletonAnimation* pAnimation) {
  m_Drawable.SetSkeleton(dynamic_cast<QXOgreSkeletonAnimation*>(pAnimation));
}

QXSkeletonAnimation* QXOgreRenderOperation3D::GetSkeletonAnimation() const {
  return m_Drawable.GetSkeleton();
}

unsigned char QXOgreRenderOperation3D::Intersect(
    QXVector3d const& vecOrigin, QXVector3d const& vecDirection, double& dDistance) const {
  if (!m_pManager) return 0;
  unsigned char bHit = 0;
  m_pManager->GetGraphics3D().Try([&] { bHit = m_Drawable.Intersect(vecOrigin, vecDirection, dDistance); });
  return bHit;
}

unsigned int QXOgreRenderOperation3D::GetIndexRangeCount() const {
  return static_cast<unsigned int>(m_Drawable.GetGeometry().GetRanges().size());
}

unsigned char QXOgreRenderOperation3D::UpdatePositions(
    unsigned int nFirst, unsigned int nCount, float const* pPositions) {
  unsigned char bDone = 0;
  Try([&] { bDone = m_Drawable.UpdatePositions(nFirst, nCount, pPositions); });
  return bDone;
}

unsigned char QXOgreRenderOperation3D::UpdateColors(
    unsigned int nFirst, unsigned int nCount, unsigned int const* pColors) {
  unsigned char bDone = 0;
  Try([&] { bDone = m_Drawable.UpdateColors(nFirst, nCount, pColors); });
  return bDone;
}

void QXOgreRenderOperation3D::SetIndexRangeVisible(unsigned int nRange, unsigned char bVisible) {
  m_Drawable.SetRangeVisible(nRange, bVisible);
}

void QXOgreRenderOperation3D::SetIndexRangeColor(unsigned int nRange, QXColorValue3D const& color) {
  Try([&] { m_Drawable.SetRangeColor(nRange, color); });
}

unsigned int QXOgreRenderOperation3D::GetDeviceMemory() const {
  std::size_t const nLimit = std::numeric_limits<unsigned int>::max();
  return static_cast<unsigned int>(std::min(m_Drawable.GetGeometry().GetDeviceMemory(), nLimit));
}

}  // namespace QXC
