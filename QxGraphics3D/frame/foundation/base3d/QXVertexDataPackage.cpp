#include <QxGraphics3D/frame/foundation/base3d/QXVertexDataPackage.h>

#include <QxGraphics3D/frame/foundation/base3d/detail/QXPositionSlack.h>

#include <cstddef>
#include <cstring>
#include <memory>

namespace QXC {

namespace {

template <class T>
void Allocate(T*& pItems, unsigned int& nNum, unsigned int nCount, unsigned short nDim, std::size_t nSlack = 0) {
  delete[] pItems;
  pItems = nullptr;
  nNum = 0;
  pItems = new T[static_cast<std::size_t>(nCount) * nDim + nSlack]();
  nNum = nCount;
}

// The one list of the package's arrays: calls visit(pointer of a, pointer of b, numbers in b's array, slack).
template <class Target, class Source, class Visitor>
void VisitArrays(Target& a, Source& b, Visitor visit) {
  auto const size = [](unsigned int nNum, unsigned short nDim) { return static_cast<std::size_t>(nNum) * nDim; };
  visit(a.m_pVertices, b.m_pVertices, size(b.m_nVertexNum, b.m_nVertexDim), detail::kPositionSlack);
  visit(a.m_pNormals, b.m_pNormals, size(b.m_nNormalNum, b.m_nNormalDim), 0);
  visit(a.m_pTangents, b.m_pTangents, size(b.m_nTangentNum, b.m_nTangentDim), 0);
  visit(a.m_pBinormals, b.m_pBinormals, size(b.m_nBinormalNum, b.m_nBinormalDim), 0);
  visit(a.m_pColors, b.m_pColors, b.m_nColorNum, 0);
  visit(a.m_pSecondColors, b.m_pSecondColors, b.m_nSecondColorNum, 0);
  visit(a.m_pSelectionIDs, b.m_pSelectionIDs, b.m_nSelectionIDNum, 0);
  visit(a.m_pBlendWeights, b.m_pBlendWeights, b.m_nBlendWeightNum, 0);
  for (unsigned int unit = 0; unit < Source::UnitNum; ++unit)
    visit(a.m_pTexCoords[unit], b.m_pTexCoords[unit], size(b.m_nTexCoordNums[unit], b.m_nTexDims[unit]), 0);
}

}  // namespace

template <class F, class D>
QXVertexDataPackageTemplate<F, D>::QXVertexDataPackageTemplate() = default;

// Delegates, so that the destructor frees what was copied when a later allocation throws.
template <class F, class D>
QXVertexDataPackageTemplate<F, D>::QXVertexDataPackageTemplate(QXVertexDataPackageTemplate const& other)
    : QXVertexDataPackageTemplate() {
  CopyArrays(other);
  CopyRecords(other);
}

template <class F, class D>
QXVertexDataPackageTemplate<F, D>& QXVertexDataPackageTemplate<F, D>::operator=(
    QXVertexDataPackageTemplate const& other) {
  if (this == &other) return *this;
  Reset();
  CopyArrays(other);
  CopyRecords(other);
  return *this;
}

template <class F, class D>
QXVertexDataPackageTemplate<F, D>::~QXVertexDataPackageTemplate() {
  Free();
}

template <class F, class D>
void QXVertexDataPackageTemplate<F, D>::Reset() {
  Free();
  static_cast<Fields&>(*this) = Fields();
  m_bTransparent = 0;
}

template <class F, class D>
void QXVertexDataPackageTemplate<F, D>::SetVertexNum(unsigned int nCount, unsigned short nStride) {
  Allocate(this->m_pVertices, this->m_nVertexNum, nCount, this->m_nVertexDim, detail::kPositionSlack);
  this->m_nVertexStride = nStride;
}

template <class F, class D>
void QXVertexDataPackageTemplate<F, D>::SetNormalNum(unsigned int nCount, unsigned short nStride) {
  if (nCount == 0) {
    delete[] this->m_pNormals;
    this->m_pNormals = nullptr;
    this->m_nNormalNum = 0;
  } else {
    Allocate(this->m_pNormals, this->m_nNormalNum, nCount, this->m_nNormalDim);
  }
  this->m_nNormalStride = nStride;
}

template <class F, class D>
void QXVertexDataPackageTemplate<F, D>::SetColorNum(unsigned int nCount, unsigned short nStride) {
  Allocate(this->m_pColors, this->m_nColorNum, nCount, 1);
  this->m_nColorStride = nStride;
}

template <class F, class D>
void QXVertexDataPackageTemplate<F, D>::SetSecondColorNum(unsigned int nCount, unsigned short nStride) {
  Allocate(this->m_pSecondColors, this->m_nSecondColorNum, nCount, 1);
  this->m_nSecondColorStride = nStride;
}

template <class F, class D>
unsigned char QXVertexDataPackageTemplate<F, D>::SetTexCoordNum(
    unsigned int nUnit, unsigned int nCount, unsigned short nStride) {
  if (nUnit >= Fields::UnitNum) return 0;
  Allocate(this->m_pTexCoords[nUnit], this->m_nTexCoordNums[nUnit], nCount, this->m_nTexDims[nUnit]);
  this->m_nTexCoordStrides[nUnit] = nStride;
  return 1;
}

template <class F, class D>
void QXVertexDataPackageTemplate<F, D>::Free() {
  VisitArrays(*this, *this, [](auto*& pItems, auto*&, std::size_t, std::size_t) {
    delete[] pItems;
    pItems = nullptr;
  });
  m_mapAttributeIndices.clear();
  m_vecObjectIDs.clear();
  m_vecObjectStarts.clear();
  m_vecObjectNums.clear();
  for (QXVertexAttribute* pAttribute : m_arrAttributes) delete pAttribute;
  m_arrAttributes.RemoveAll();
}

// Expects a package without arrays. Pointers are nulled before anything is allocated: were the other's pointers
// still here when an allocation throws, the destructor would free them.
template <class F, class D>
void QXVertexDataPackageTemplate<F, D>::CopyArrays(QXVertexDataPackageTemplate const& other) {
  Fields fields = other;
  VisitArrays(fields, fields, [](auto*& pItems, auto*&, std::size_t, std::size_t) { pItems = nullptr; });
  static_cast<Fields&>(*this) = fields;
  VisitArrays(*this, other, []<class T>(T*& pItems, T* pSource, std::size_t nNum, std::size_t nSlack) {
    if (!pSource) return;
    pItems = new T[nNum + nSlack];
    std::memcpy(pItems, pSource, nNum * sizeof(T));
    std::memset(pItems + nNum, 0, nSlack * sizeof(T));
  });
}

template <class F, class D>
void QXVertexDataPackageTemplate<F, D>::CopyRecords(QXVertexDataPackageTemplate const& other) {
  m_mapAttributeIndices = other.m_mapAttributeIndices;
  m_vecObjectIDs = other.m_vecObjectIDs;
  m_vecObjectStarts = other.m_vecObjectStarts;
  m_vecObjectNums = other.m_vecObjectNums;
  for (QXVertexAttribute const* pSource : other.m_arrAttributes) {
    auto attribute = pSource ? std::make_unique<QXVertexAttribute>(*pSource) : nullptr;
    m_arrAttributes.Add(attribute.get());
    attribute.release();
  }
  m_bTransparent = other.m_bTransparent;
}

template class QXVertexDataPackageTemplate<float, QXVertexDeclaration>;

}  // namespace QXC
