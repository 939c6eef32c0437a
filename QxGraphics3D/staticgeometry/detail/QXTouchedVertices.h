/// @file
/// Which vertices an index array uses.
#pragma once

#include <QxGraphics3D/staticgeometry/detail/QXMergeKernels.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace QXC::detail {

/// A set of the vertices of one bucket, filled anew for each index array at a cost that follows the number of its
/// indices and not that of the bucket's vertices.
///
/// A mesh uses most of a narrow range of vertices; then it is a byte a vertex, which is quicker to mark than bits. Wide
/// ranges take bits, so that the set stays small beside the vertices. Few indices far apart are kept as a list.
class QXTouchedVertices {
public:
  /// Bytes for up to this many vertices.
  static constexpr std::size_t MaxBytes = 65536;
  /// A list where the range is wider than this many vertices an index.
  static constexpr std::size_t MaxGap = 64;

  /// Empties the set.
  /// @param range         of all indices that Add will bring
  /// @param nVertices     of the bucket: indices from there on are no vertices and are left out
  /// @param nIndices      how many Add will bring
  void Begin(QXIndexRange range, std::size_t nVertices, std::size_t nIndices);

  /// @param pAhead  memory of the indices' size that is read soon: marking leaves time to fetch it
  template <class T>
  void Add(T const* pIndices, std::size_t nNum, T const* pAhead);

  /// Calls visit(first vertex, bytes of 0 or 1, number of vertices) for stretches of vertices in ascending order; each
  /// vertex of the set has a 1 in one of them.
  template <class Visitor>
  void Visit(Visitor visit);

private:
  enum Form : int { FORM_BYTES, FORM_BITS, FORM_LIST };

  template <class T>
  static void MarkBytes(
      unsigned char* pBytes, std::uint32_t nFirst, T const* pIndices, std::size_t nNum, T const* pAhead);
  template <class Visitor>
  void VisitBits(Visitor visit) const;
  template <class Visitor>
  void VisitList(Visitor visit);

  Form m_eForm = FORM_LIST;
  std::uint32_t m_nFirst = 0;
  std::size_t m_nNum = 0;
  bool m_bClipped = false;
  std::vector<unsigned char> m_arrBytes;
  std::vector<std::uint64_t> m_arrBits;
  std::vector<std::uint32_t> m_arrList;
};

inline void QXTouchedVertices::Begin(QXIndexRange range, std::size_t nVertices, std::size_t nIndices) {
  std::size_t const end = std::min(std::size_t{range.m_nLast} + 1, nVertices);
  m_nFirst = range.m_nFirst;
  m_nNum = end > m_nFirst ? end - m_nFirst : 0;
  m_bClipped = range.m_nLast >= nVertices;
  m_arrList.clear();
  if (m_nNum / MaxGap > nIndices) {
    m_eForm = FORM_LIST;
  } else if (m_nNum <= MaxBytes) {
    m_eForm = FORM_BYTES;
    m_arrBytes.assign(m_nNum, 0);
  } else {
    m_eForm = FORM_BITS;
    m_arrBits.assign(m_nNum / 64 + 1, 0);
  }
}

template <class T>
void QXTouchedVertices::MarkBytes(
    unsigned char* pBytes, std::uint32_t nFirst, T const* pIndices, std::size_t nNum, T const* pAhead) {
  constexpr std::size_t LineIndices = 64 / sizeof(T);
  std::size_t i = 0;
  for (; i + LineIndices <= nNum; i += LineIndices) {
    Prefetch(pAhead + i);
    // Unrolled by hand: with one index a turn, the turns cost more than the marks.
    for (std::size_t k = i; k < i + LineIndices; k += 8) {
      for (std::size_t n = 0; n < 8; ++n) pBytes[static_cast<T>(pIndices[k + n] - nFirst)] = 1;
    }
  }
  for (; i < nNum; ++i) pBytes[static_cast<T>(pIndices[i] - nFirst)] = 1;
}

template <class T>
void QXTouchedVertices::Add(T const* pIndices, std::size_t nNum, T const* pAhead) {
  std::uint32_t const first = m_nFirst;
  std::size_t const num = m_nNum;
  unsigned char* const pBytes = m_arrBytes.data();
  if (m_eForm == FORM_BYTES && !m_bClipped) {
    MarkBytes(pBytes, first, pIndices, nNum, pAhead);
    return;
  }
  for (std::size_t i = 0; i < nNum; ++i) {
    std::uint32_t const place = pIndices[i] - first;
    if (place >= num) continue;
    if (m_eForm == FORM_BYTES) pBytes[place] = 1;
    if (m_eForm == FORM_BITS) m_arrBits[place / 64] |= std::uint64_t{1} << (place % 64);
    if (m_eForm == FORM_LIST) m_arrList.push_back(pIndices[i]);
  }
}

template <class Visitor>
void QXTouchedVertices::Visit(Visitor visit) {
  if (m_eForm == FORM_BYTES) {
    if (m_nNum > 0) visit(std::size_t{m_nFirst}, m_arrBytes.data(), m_nNum);
  } else if (m_eForm == FORM_BITS) {
    VisitBits(visit);
  } else {
    VisitList(visit);
  }
}

template <class Visitor>
void QXTouchedVertices::VisitBits(Visitor visit) const {
  unsigned char arrBytes[64];
  for (std::size_t nWord = 0; nWord * 64 < m_nNum; ++nWord) {
    std::uint64_t const bits = m_arrBits[nWord];
    if (bits == 0) continue;
    for (unsigned int i = 0; i < 64; ++i) arrBytes[i] = static_cast<unsigned char>(bits >> i & 1);
    visit(m_nFirst + nWord * 64, arrBytes, std::min(m_nNum - nWord * 64, std::size_t{64}));
  }
}

template <class Visitor>
void QXTouchedVertices::VisitList(Visitor visit) {
  std::sort(m_arrList.begin(), m_arrList.end());
  m_arrList.erase(std::unique(m_arrList.begin(), m_arrList.end()), m_arrList.end());
  unsigned char const nTouched = 1;
  for (std::uint32_t const nVertex : m_arrList) visit(std::size_t{nVertex}, &nTouched, std::size_t{1});
}

}  // namespace QXC::detail
