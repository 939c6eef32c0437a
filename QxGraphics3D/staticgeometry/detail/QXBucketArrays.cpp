#include <QxGraphics3D/staticgeometry/detail/QXBucketArrays.h>

#include <QxGraphics3D/frame/foundation/base3d/detail/QXPositionSlack.h>
#include <QxGraphics3D/staticgeometry/QXStaticGeometryBucket.h>
#include <QxGraphics3D/staticgeometry/detail/QXRecordIndices.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <memory>

namespace QXC::detail {

namespace {

constexpr unsigned int Max16BitVertices = 65535;

}  // namespace

template <class T>
T* QXBucketArrays::MakeArray(std::size_t nNum) {
  m_arrUnfilled.emplace_back(nullptr, 0);
  T* const pItems = new T[nNum];
  m_arrUnfilled.back() = {pItems, nNum * sizeof(T)};
  return pItems;
}

template <class T>
void QXBucketArrays::Remake(
    T*& pItems, unsigned int& nNum, unsigned short& nStride, unsigned int nCount, std::size_t nSize) {
  delete[] pItems;
  pItems = nullptr;
  nNum = 0;
  pItems = MakeArray<T>(nSize);
  nNum = nCount;
  nStride = 0;
}

void QXBucketArrays::MakeVertices() {
  QXVertexDataPackage& p = *m_bucket.m_pVertexPackage;
  unsigned int const num = p.m_nVertexNum;
  std::size_t const size = num;
  std::size_t const positions = size * p.m_nVertexDim;
  Remake(p.m_pVertices, p.m_nVertexNum, p.m_nVertexStride, num, positions + kPositionSlack);
  std::fill_n(p.m_pVertices + positions, kPositionSlack, 0.0F);
  if (p.m_nNormalNum != 0) {
    if (num == 0)
      p.SetNormalNum(0, 0);
    else
      Remake(p.m_pNormals, p.m_nNormalNum, p.m_nNormalStride, num, size * p.m_nNormalDim);
  }
  if (p.m_nSecondColorNum != 0) Remake(p.m_pSecondColors, p.m_nSecondColorNum, p.m_nSecondColorStride, num, size);
  if (p.m_nColorNum != 0) Remake(p.m_pColors, p.m_nColorNum, p.m_nColorStride, num, size);
  for (unsigned int unit = 0; unit < QXVertexDataPackage::UnitNum; ++unit) {
    if (p.m_nTexCoordNums[unit] == 0) continue;
    Remake(p.m_pTexCoords[unit], p.m_nTexCoordNums[unit], p.m_nTexCoordStrides[unit], num, size * p.m_nTexDims[unit]);
  }
}

std::size_t QXBucketArrays::GetVertexBytes(QXStaticGeometryBucket const& bucket) {
  QXVertexDataPackage const& p = *bucket.m_pVertexPackage;
  std::size_t numbers = p.m_nVertexDim;
  if (p.m_nNormalNum != 0) numbers += p.m_nNormalDim;
  if (p.m_nSecondColorNum != 0) ++numbers;
  if (p.m_nColorNum != 0) ++numbers;
  for (unsigned int unit = 0; unit < QXVertexDataPackage::UnitNum; ++unit) {
    if (p.m_nTexCoordNums[unit] != 0) numbers += p.m_nTexDims[unit];
  }
  return sizeof(float) * numbers * p.m_nVertexNum;
}

void QXBucketArrays::MakeIndexArray(QXIndexPackage& package, std::size_t nSum, bool bFilled) {
  std::size_t const num = std::min(nSum, std::size_t{INT_MAX});
  int const nIndexType = m_bucket.m_pVertexPackage->m_nVertexNum > Max16BitVertices ? 1 : 0;
  // Words of another width than the array's may leave an end.
  if (!bFilled || m_bucket.m_nIndexType != nIndexType)
    package.m_pIndices = NewIndexArray(num, nIndexType);
  else if (nIndexType == 1)
    package.m_pIndices = MakeArray<unsigned int>(num);
  else
    package.m_pIndices = MakeArray<unsigned short>(num);
  package.m_nIndexType = nIndexType;
  package.m_nIndexNum = static_cast<int>(num);
}

void QXBucketArrays::MakeIndices() {
  std::size_t nKey = 0;
  for (auto const& [key, records] : m_bucket.m_mapPassIndices) {
    for (long long nLevel = 0; nLevel <= m_bucket.m_nMaxLevel; ++nLevel) {
      auto package = std::make_unique<QXIndexPackage>();
      package->m_arrPassNames.Add(key);
      QXIndexPackage const* const pFirst = records.empty() ? nullptr : GetLevelPackage(records.front(), 0);
      if (pFirst) package->m_eOperationType = pFirst->m_eOperationType;
      std::size_t sum = 0;
      for (QXBucketIndexPackage const& record : records) sum += GetIndexNum(GetLevelPackage(record, nLevel));
      std::vector<QXIndexPackage*>& arrPackages = m_bucket.m_mapLevelIndices[static_cast<int>(nLevel)];
      bool const bFirstSet = arrPackages.size() == nKey;
      arrPackages.push_back(package.get());
      QXIndexPackage& owned = *package.release();
      if (m_bucket.m_pVertexPackage->m_nVertexNum != 0) MakeIndexArray(owned, sum, bFirstSet);
    }
    ++nKey;
  }
}

void QXBucketArrays::ZeroAll() {
  for (auto const& [pItems, nBytes] : m_arrUnfilled) {
    if (pItems) std::memset(pItems, 0, nBytes);
  }
}

}  // namespace QXC::detail
