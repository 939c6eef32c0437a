#include <QxGraphics3D/renderop/QXRenderOperationMultiIndex.h>

namespace QXC {

QXRenderOperationMultiIndex::QXRenderOperationMultiIndex() {
  m_eType = QX_RENDER_OPERATION_MULTI_INDEX;
  m_dFactor1 = 1.0;
  m_nCount1 = 1;
  m_dFactor2 = 1.0;
  m_nCount2 = 1;
}

QXRenderOperationMultiIndex::QXRenderOperationMultiIndex(QXRenderOperationMultiIndex const& other)
    : QXRenderOperationMultiIndex() {
  // Pointers last: should an array fail to grow, this object must not free what the other one owns.
  m_arrIndexPackages = other.m_arrIndexPackages;
  m_arrTexturePackages = other.m_arrTexturePackages;
  QXRenderOperationBase::operator=(other);
  m_pTexCoordBlock = other.m_pTexCoordBlock;
  m_nSize = other.m_nSize;
}

QXRenderOperationMultiIndex& QXRenderOperationMultiIndex::operator=(QXRenderOperationMultiIndex const& other) {
  if (this == &other) return *this;
  QXRenderOperationBase::operator=(other);
  m_pTexCoordBlock = other.m_pTexCoordBlock;
  m_nSize = other.m_nSize;
  m_arrIndexPackages = other.m_arrIndexPackages;
  m_arrTexturePackages = other.m_arrTexturePackages;
  return *this;
}

QXRenderOperationMultiIndex::~QXRenderOperationMultiIndex() {
  delete m_pTexCoordBlock;
  RemoveAll();
}

void QXRenderOperationMultiIndex::SetAt(QXVertexIndexPackage* pIndex, QXTexturePackage* pTexture) {
  if (!pIndex) return;
  m_arrIndexPackages.Add(pIndex);
  m_arrTexturePackages.Add(pTexture);
  ++m_nSize;
  m_bDirty = 1;
}

int QXRenderOperationMultiIndex::GetSize() const {
  return m_nSize;
}

QdcArray<QXVertexIndexPackage*> const& QXRenderOperationMultiIndex::GetIndexPackageArray() const {
  return m_arrIndexPackages;
}

QdcArray<QXTexturePackage*> const& QXRenderOperationMultiIndex::GetTexturePackageArray() const {
  return m_arrTexturePackages;
}

void QXRenderOperationMultiIndex::RemoveAll() {
  // Each slot is nulled as soon as its package is gone. A slot that a host has emptied holds nothing to delete,
  // and an untextured range has no texture package.
  for (QXVertexIndexPackage*& pIndex : m_arrIndexPackages) {
    if (pIndex && pIndex->m_bPackageOwned == 1) delete pIndex;
    pIndex = nullptr;
  }
  for (QXTexturePackage*& pTexture : m_arrTexturePackages) {
    if (pTexture && pTexture->m_bOwned == 1) delete pTexture;
    pTexture = nullptr;
  }
  m_arrIndexPackages.RemoveAll();
  m_arrIndexPackages.FreeExtra();
  m_arrTexturePackages.RemoveAll();
  m_arrTexturePackages.FreeExtra();
  m_nSize = 0;
}

}  // namespace QXC
