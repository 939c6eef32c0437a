#include <QxGraphics3D/renderop/QXRenderOperation.h>

#include <QxGraphics3D/texture/QXTexture.h>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <utility>

namespace QXC {

namespace {

// Sizes are computed in 64 bits: three floats for each of 2^32 - 1 vertices must fail in the allocator, not wrap
// round to a short array.
template <class T>
void Allocate(T*& pItems, std::size_t nItems) {
  delete[] pItems;
  pItems = nullptr;
  pItems = new T[nItems];
}

template <class T>
void Allocate(T*& pItems, unsigned int& nCount, unsigned int nNum, std::size_t nPerEntry) {
  nCount = 0;
  Allocate(pItems, nNum * nPerEntry);
  nCount = nNum;
}

// Into a fresh operation: a count without an array, or an array without a count, leaves it with neither.
template <class T>
void CopyArray(T*& pItems, unsigned int& nCount, T const* pSource, unsigned int nSourceNum, std::size_t nPerEntry) {
  if (nSourceNum == 0 || !pSource) return;
  pItems = new T[nSourceNum * nPerEntry];
  std::copy_n(pSource, nSourceNum * nPerEntry, pItems);
  nCount = nSourceNum;
}

template <class T>
void Free(T*& pItems) {
  delete[] pItems;
  pItems = nullptr;
}

}  // namespace

QXRenderOperation::QXRenderOperation() {
  QXVector3d const one(1.0, 1.0, 1.0);
  std::fill(std::begin(m_vTexVectorsA), std::end(m_vTexVectorsA), one);
  std::fill(std::begin(m_vTexVectorsB), std::end(m_vTexVectorsB), one);
}

QXRenderOperation::QXRenderOperation(unsigned char bOption, int nMode0, int nMode1, int, int nMode2)
    : QXRenderOperation() {
  m_bOption = bOption;
  m_nMode0 = nMode0;
  m_nMode1 = nMode1;
  m_nMode2 = nMode2;
}

// Delegates, so that the destructor frees what was copied when a later allocation throws. Matrix, dirty mark and
// the fields that no copy carries keep their defaults.
QXRenderOperation::QXRenderOperation(QXRenderOperation const& other) : QXRenderOperation() {
  CopyValues(other);
  CopyTexParameters(other);
  CopyArrays(other);
}

QXRenderOperation& QXRenderOperation::operator=(QXRenderOperation const& other) {
  if (this == &other) return *this;
  // The new arrays are made before the old ones go: the source may share this operation's index array, and an
  // allocation that fails leaves everything as it was.
  QXRenderOperation fresh(other);
  SwapArrays(fresh);
  // The name is an allocation too: taken over here, it is long enough for CopyValues to write in place.
  m_strName = std::move(fresh.m_strName);
  CopyValues(other);
  for (QXTexture* pTexture : m_pTextures) {
    if (pTexture) pTexture->AddRef();
  }
  return *this;
}

QXRenderOperation::~QXRenderOperation() {
  Release();
  delete[] m_pOwnIndices;
}

void QXRenderOperation::SetVertexNum(unsigned int nNum) {
  Allocate(m_pVertices, m_nVertexNum, nNum, 3);
  m_bDirty = 1;
}

void QXRenderOperation::SetVertexNormalNum(unsigned int nNum) {
  SetVertexNum(nNum);
  Allocate(m_pNormals, m_nNormalNum, nNum, 3);
}

void QXRenderOperation::SetTexVertexNum(unsigned int nNum) {
  SetVertexNum(nNum);
  Allocate(m_pTexCoords[0], m_nTexVertexNums[0], nNum, 2);
  m_nTexUnitNum = 1;
}

void QXRenderOperation::SetVertexNormTextureNum(unsigned int nNum) {
  SetVertexNormalNum(nNum);
  Allocate(m_pTexCoords[0], m_nTexVertexNums[0], nNum, 2);
  m_nTexUnitNum = 1;
}

void QXRenderOperation::SetIndexNum(unsigned int nNum) {
  FreeIndices();
  m_bIndexShared = 0;
  Allocate(m_pIndices, m_nIndexNum, nNum, 1);
  m_bDirty = 1;
}

void QXRenderOperation::SetDiffuseColorNum(unsigned int nNum) {
  // The count stays, and a copy reads that many words: never fewer than it promises.
  Allocate(m_pDiffuseColors, std::max(nNum, m_nDiffuseColorNum));
  m_bDirty = 1;
}

void QXRenderOperation::InitIndexNum(unsigned int nNum) {
  m_nIndexNum = nNum;
}

void QXRenderOperation::InitTexVertexNum(unsigned int nNum) {
  m_nVertexNum = nNum;
  m_nTexVertexNums[0] = nNum;
  m_nTexUnitNum = 1;
}

QXMatrix4d* QXRenderOperation::GetMatrix() const {
  return m_pMatrix;
}

void QXRenderOperation::SetMatrix(QXMatrix4d& matModel) {
  // The argument may be *m_pMatrix, so the old matrix lives until the copy is made.
  auto* pMatrix = new QXMatrix4d(matModel);
  delete m_pMatrix;
  m_pMatrix = pMatrix;
}

void QXRenderOperation::SetNull() {
  if (m_pOwnIndices == m_pIndices) m_pOwnIndices = nullptr;
  m_pVertices = nullptr;
  m_pNormals = nullptr;
  m_pIndices = nullptr;
  m_pDiffuseColors = nullptr;
  m_pExternalBuffer = nullptr;
  for (float*& pCoords : m_pTexCoords) pCoords = nullptr;
}

void QXRenderOperation::Release() {
  Free(m_pVertices);
  Free(m_pNormals);
  Free(m_pDiffuseColors);
  if (!m_bIndexShared) FreeIndices();
  for (unsigned int unit = 0; unit < UnitNum; ++unit) {
    m_pTextures[unit] = nullptr;
    Free(m_pTexCoords[unit]);
  }
  m_pExternalBuffer = nullptr;
  m_nNormalNum = 0;
  m_nVertexNum = 0;
  m_nIndexNum = 0;
  delete m_pMatrix;
  m_pMatrix = nullptr;
}

// What the copy constructor and operator= copy alike, the arrays and their counts aside.
void QXRenderOperation::CopyValues(QXRenderOperation const& other) {
  m_nMode0 = other.m_nMode0;
  m_nMode1 = other.m_nMode1;
  m_nMode2 = other.m_nMode2;
  m_nMode3 = other.m_nMode3;
  m_nMode4 = other.m_nMode4;
  m_bSwitch0 = other.m_bSwitch0;
  m_nVertexDim = other.m_nVertexDim;
  m_nVertexStride = other.m_nVertexStride;
  m_nNormalStride = other.m_nNormalStride;
  m_bOption = other.m_bOption;
  // Colours are laid out like the positions of the source: renderers rely on the stride that copies have here.
  m_nDiffuseStride = other.m_nVertexStride;
  m_pExternalBuffer = other.m_pExternalBuffer;
  std::copy_n(other.m_pTextures, UnitNum, m_pTextures);
  std::copy_n(other.m_nTexStrides, UnitNum, m_nTexStrides);
  m_nTexUnitNum = other.m_nTexUnitNum;
  std::copy_n(other.m_nTexDims, UnitNum, m_nTexDims);
  m_bIndexShared = other.m_bIndexShared;
  m_Color0 = other.m_Color0;
  m_Color1 = other.m_Color1;
  m_bSwitch1 = other.m_bSwitch1;
  m_nMode5 = other.m_nMode5;
  m_vVector1 = other.m_vVector1;
  m_bSwitch4 = other.m_bSwitch4;
  m_strName = other.m_strName;
  m_fFactor = other.m_fFactor;
  m_nMode6 = other.m_nMode6;
  m_bSwitch5 = other.m_bSwitch5;
  m_dFactor = other.m_dFactor;
  m_bSwitch6 = other.m_bSwitch6;
  m_nMode7 = other.m_nMode7;
  m_nMask = other.m_nMask;
  m_nMode8 = other.m_nMode8;
  m_nMode9 = other.m_nMode9;
}

void QXRenderOperation::CopyTexParameters(QXRenderOperation const& other) {
  std::copy_n(other.m_dTexParams, UnitNum, m_dTexParams);
  std::copy_n(other.m_vTexVectorsA, UnitNum, m_vTexVectorsA);
  std::copy_n(other.m_vTexVectorsB, UnitNum, m_vTexVectorsB);
  std::copy_n(other.m_vTexVectorsC, UnitNum, m_vTexVectorsC);
}

// Expects an operation without arrays.
void QXRenderOperation::CopyArrays(QXRenderOperation const& other) {
  CopyArray(m_pVertices, m_nVertexNum, other.m_pVertices, other.m_nVertexNum, 3);
  CopyArray(m_pNormals, m_nNormalNum, other.m_pNormals, other.m_nNormalNum, 3);
  CopyArray(m_pDiffuseColors, m_nDiffuseColorNum, other.m_pDiffuseColors, other.m_nDiffuseColorNum, 1);
  CopyArray(m_pIndices, m_nIndexNum, other.m_pIndices, other.m_nIndexNum, 1);
  if (m_bIndexShared) m_pOwnIndices = m_pIndices;
  for (unsigned int unit = 0; unit < UnitNum; ++unit) {
    // Two floats a vertex, whatever m_nTexDims says: renderers upload units of operations as pairs.
    CopyArray(m_pTexCoords[unit], m_nTexVertexNums[unit], other.m_pTexCoords[unit], other.m_nTexVertexNums[unit], 2);
  }
}

// The flag travels with the index array that it tells about, so that each side frees what it owns.
void QXRenderOperation::SwapArrays(QXRenderOperation& other) noexcept {
  std::swap(m_pVertices, other.m_pVertices);
  std::swap(m_nVertexNum, other.m_nVertexNum);
  std::swap(m_pNormals, other.m_pNormals);
  std::swap(m_nNormalNum, other.m_nNormalNum);
  std::swap(m_pDiffuseColors, other.m_pDiffuseColors);
  std::swap(m_nDiffuseColorNum, other.m_nDiffuseColorNum);
  std::swap(m_pIndices, other.m_pIndices);
  std::swap(m_pOwnIndices, other.m_pOwnIndices);
  std::swap(m_nIndexNum, other.m_nIndexNum);
  std::swap(m_bIndexShared, other.m_bIndexShared);
  std::swap(m_pTexCoords, other.m_pTexCoords);
  std::swap(m_nTexVertexNums, other.m_nTexVertexNums);
}

void QXRenderOperation::FreeIndices() {
  if (!m_bIndexShared) {
    // A host may have cleared the flag on a copy whose array is our own: one array, freed once.
    if (m_pOwnIndices == m_pIndices) m_pOwnIndices = nullptr;
    delete[] m_pIndices;
  }
  m_pIndices = nullptr;
  Free(m_pOwnIndices);
}

}  // namespace QXC
