#include <QxGraphics3D/renderop/QXRenderOperationMultiIndex.h>

#include <algorithm>
#include <cstdint>

namespace QXC {

namespace {

// Deletes the first nCount packages whose ownership byte is 1 and empties the array down to its storage. The destructor
// comes here, so no subscript that throws.
template <class T>
void DeleteOwned(QdcArray<T*>& arrPackages, std::uint64_t nCount, unsigned char T::*pOwned) {
  T** const pSlots = arrPackages.GetData();
  for (std::uint64_t i = 0; i < std::min(nCount, arrPackages.GetSize()); ++i) {
    if (pSlots[i] && pSlots[i]->*pOwned == 1) delete pSlots[i];
    pSlots[i] = nullptr;
  }
  arrPackages.RemoveAll();
  arrPackages.FreeExtra();
}

}  // namespace

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
  // m_nSize says how many pairs this operation answers for: a host that destroys both of two copies disarms one by
  // setting it to 0. The arrays bound the walk, since a host may have emptied them instead. A slot that a host has
  // emptied holds nothing to delete, and an untextured range has no texture package.
  auto const size = static_cast<std::uint64_t>(std::max(m_nSize, 0));
  DeleteOwned(m_arrIndexPackages, size, &QXVertexIndexPackage::m_bPackageOwned);
  DeleteOwned(m_arrTexturePackages, size, &QXTexturePackage::m_bOwned);
  m_nSize = 0;
}

}  // namespace QXC
