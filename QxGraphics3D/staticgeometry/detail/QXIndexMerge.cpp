#include <QxGraphics3D/staticgeometry/detail/QXIndexMerge.h>

#include <QxGraphics3D/frame/foundation/base3d/QXIndexPackage.h>
#include <QxGraphics3D/frame/foundation/base3d/QXSubObjectInfo.h>
#include <QxGraphics3D/staticgeometry/QXStaticGeometryBucket.h>
#include <QxGraphics3D/staticgeometry/detail/QXMergeLoops.h>
#include <QxGraphics3D/staticgeometry/detail/QXRecordIndices.h>

#include <algorithm>
#include <cstdint>

namespace QXC::detail {

namespace {

/// Indices that are shifted at a time before they are written to where they belong.
constexpr std::size_t BlockIndices = 4096;

QXIndexRange Shift(QXMergeKernels const& kernels, std::uint16_t nStart, std::uint16_t const* pSource,
    std::uint16_t* pTarget, std::size_t nNum) {
  return kernels.m_pfnShift16(nStart, pSource, pTarget, nNum);
}

QXIndexRange Shift(QXMergeKernels const& kernels, std::uint32_t nStart, std::uint32_t const* pSource,
    std::uint32_t* pTarget, std::size_t nNum) {
  return kernels.m_pfnShift32(nStart, pSource, pTarget, nNum);
}

/// Counts are ints that wrap, where a host makes them absurd.
int AddCounts(int nA, std::size_t nB) {
  return static_cast<int>(static_cast<unsigned int>(nA) + static_cast<unsigned int>(nB));
}

/// Indices of one record, sums of what the package holds and the record's first vertex, block by block. Indices that
/// the package promises but does not hold are 0.
template <class Word>
class ShiftedBlocks {
public:
  ShiftedBlocks(QXMergeKernels const& kernels, QXIndexPackage const& source, int nVertexStart)
      : m_kernels(kernels), m_pSource(static_cast<Word const*>(source.m_pIndices)),
        m_nThere(GetWordNum(&source, sizeof(Word))), m_nNum(GetIndexNum(&source)),
        m_nStart(static_cast<Word>(nVertexStart)) {}

  std::size_t GetNum() const { return m_nNum; }

  /// Calls take(indices, number) block by block; returns the range of all.
  template <class Taker>
  QXIndexRange Take(Taker take) {
    QXIndexRange range;
    for (std::size_t i = 0; i < m_nNum; i += BlockIndices) {
      std::size_t const num = std::min(m_nNum - i, BlockIndices);
      std::size_t const there = i < m_nThere ? std::min(m_nThere - i, num) : 0;
      if (there > 0) range.Add(Shift(m_kernels, m_nStart, m_pSource + i, m_arrBlock, there));
      if (there < num) {
        std::fill_n(m_arrBlock + there, num - there, m_nStart);
        range.Add(m_nStart);
      }
      take(m_arrBlock, num);
    }
    return range;
  }

  /// As the last block of Take, which is all of them if there was but one.
  Word const* GetBlock() const { return m_arrBlock; }

private:
  QXMergeKernels const& m_kernels;
  Word const* m_pSource;
  std::size_t m_nThere;
  std::size_t m_nNum;
  Word m_nStart;
  alignas(64) Word m_arrBlock[BlockIndices];
};

}  // namespace

QXIndexMerge::QXIndexMerge(QXStaticGeometryBucket& bucket, QXMergeOptions const& options)
    : m_bucket(bucket), m_options(options) {
  if (options.m_bNoTransform || IsPolyline(bucket)) return;
  for (unsigned int unit = 0; unit < QXVertexDataPackage::UnitNum; ++unit)
    m_bTransforms = m_bTransforms || IsUnitTransformed(unit);
}

void QXIndexMerge::Run() {
  int nKey = 0;
  for (auto const& [key, records] : m_bucket.m_mapPassIndices) {
    for (long long nLevel = 0; nLevel <= m_bucket.m_nMaxLevel; ++nLevel) {
      // After a former merge these are the packages of that one; what does not fit into them is dropped.
      QXIndexPackage* const pMerged =
          m_bucket.m_mapLevelIndices[static_cast<int>(nLevel)][static_cast<std::size_t>(nKey)];
      if (!pMerged) continue;
      if (m_bucket.m_nIndexType == 0)
        CopyRecords<std::uint16_t>(records, nKey, nLevel, *pMerged);
      else
        CopyRecords<std::uint32_t>(records, nKey, nLevel, *pMerged);
    }
    ++nKey;
  }
}

template <class Word>
void QXIndexMerge::CopyRecords(
    std::vector<QXBucketIndexPackage> const& arrRecords, int nKey, long long nLevel, QXIndexPackage& merged) {
  std::size_t const words = GetWordNum(&merged, sizeof(Word));
  QXArrayWriter<Word> writer(
      static_cast<Word*>(merged.m_pIndices), words, m_options.ChooseStream(merged.m_pIndices, words * sizeof(Word)));
  std::size_t offset = 0;
  for (std::size_t i = 0; i < arrRecords.size(); ++i) {
    QXBucketIndexPackage const& record = arrRecords[i];
    QXIndexPackage const* const pSource = GetLevelPackage(record, nLevel);
    std::size_t const num = GetIndexNum(pSource);
    if (nLevel == 0) CountForSubObject(record.m_nVertexStart, nKey, offset, num);
    if (!pSource) continue;
    merged.m_bFlag = pSource->m_bFlag;
    merged.m_eOperationType = pSource->m_eOperationType;
    QXIndexPackage const* const pNext =
        i + 1 < arrRecords.size() ? GetLevelPackage(arrRecords[i + 1], nLevel) : nullptr;
    m_pAhead = pNext ? pNext->m_pIndices : nullptr;
    CopyRecord(record, *pSource, m_bTransforms && nLevel == 0, writer);
    offset += num;
  }
}

template <class Word>
void QXIndexMerge::CopyRecord(
    QXBucketIndexPackage const& record, QXIndexPackage const& source, bool bTransform, QXArrayWriter<Word>& writer) {
  ShiftedBlocks<Word> blocks(*m_options.m_pKernels, source, record.m_nVertexStart);
  QXIndexRange const range = blocks.Take([&](Word const* pIndices, std::size_t nNum) { writer.Write(pIndices, nNum); });
  if (!bTransform || blocks.GetNum() == 0) return;
  m_touched.Begin(range, m_bucket.m_pVertexPackage->m_nVertexNum, blocks.GetNum());
  // Without a record behind this one anything may be fetched, but nothing may be added to a null pointer.
  if (blocks.GetNum() <= BlockIndices)
    m_touched.Add(
        blocks.GetBlock(), blocks.GetNum(), m_pAhead ? static_cast<Word const*>(m_pAhead) : blocks.GetBlock());
  else
    blocks.Take([&](Word const* pIndices, std::size_t nNum) { m_touched.Add(pIndices, nNum, pIndices); });
  TransformTouched(record);
}

void QXIndexMerge::CountForSubObject(int nVertexStart, int nKey, std::size_t nOffset, std::size_t nNum) {
  auto const found = m_bucket.m_mapSubObjects.find(nVertexStart);
  if (found == m_bucket.m_mapSubObjects.end() || !found->second) return;
  QXSubObjectInfo& subObject = *found->second;
  auto const slot = subObject.m_mapPassSlots.find(nKey);
  if (slot == subObject.m_mapPassSlots.end()) {
    subObject.m_mapPassSlots[nKey] = static_cast<int>(subObject.m_arrOffsets.GetSize());
    subObject.m_arrOffsets.Add(AddCounts(0, nOffset));
    subObject.m_arrCounts.Add(AddCounts(0, nNum));
    return;
  }
  auto const place = static_cast<std::uint64_t>(slot->second);
  if (place < subObject.m_arrOffsets.GetSize() && place < subObject.m_arrCounts.GetSize())
    subObject.m_arrCounts[place] = AddCounts(subObject.m_arrCounts[place], nNum);
}

bool QXIndexMerge::IsUnitTransformed(unsigned int nUnit) const {
  QXVertexDataPackage const& package = *m_bucket.m_pVertexPackage;
  if (package.m_nTexCoordNums[nUnit] == 0 || !package.m_pTexCoords[nUnit]) return false;
  // Four numbers in the units from 2 on are no place in a texture: whoever fills them wants them kept.
  return nUnit < 2 || package.m_nTexDims[nUnit] != 4;
}

void QXIndexMerge::TransformTouched(QXBucketIndexPackage const& record) {
  for (unsigned int unit = 0; unit < QXVertexDataPackage::UnitNum; ++unit) {
    if (IsUnitTransformed(unit)) TransformUnit(record, unit);
  }
}

void QXIndexMerge::TransformUnit(QXBucketIndexPackage const& record, unsigned int nUnit) {
  float* const pCoords = m_bucket.m_pVertexPackage->m_pTexCoords[nUnit];
  std::size_t const dim = m_bucket.m_pVertexPackage->m_nTexDims[nUnit];
  QXCoordTransform const transform(record.m_matTextures[nUnit]);
  if (dim == 2) {
    m_touched.Visit([&](std::size_t nFirst, unsigned char const* pTouched, std::size_t nNum) {
      m_options.m_pKernels->m_pfnTransformPairs(transform, pCoords + 2 * nFirst, pTouched, nNum);
    });
    return;
  }
  m_touched.Visit([&](std::size_t nFirst, unsigned char const* pTouched, std::size_t nNum) {
    for (std::size_t i = 0; i < nNum; ++i) {
      if (!pTouched[i]) continue;
      float* const pCoord = pCoords + dim * (nFirst + i);
      float arrPair[2] = {};
      std::copy_n(pCoord, std::min<std::size_t>(dim, 2), arrPair);
      TransformPair(transform, arrPair);
      std::copy_n(arrPair, std::min<std::size_t>(dim, 2), pCoord);
      if (dim == 4) pCoord[3] = record.m_fTextureLayer;
    }
  });
}

}  // namespace QXC::detail
