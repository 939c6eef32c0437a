/// @file
/// A forward cursor over an array that is filled once.
#pragma once

#include <QxGraphics3D/staticgeometry/detail/QXMergeKernels.h>

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace QXC::detail {

/// Writes an array from front to back. What would go past its end is dropped, because meshes may bring more than they
/// told when they were added; Finish zeroes what nobody wrote, because the memory comes uninitialised: filling it with
/// zeros first would be a second pass over all of it.
template <class T>
class QXArrayWriter {
public:
  /// Of an array without room.
  QXArrayWriter() = default;
  /// @param pTarget    null for no array
  /// @param pfnStream  QXMergeKernels::m_pfnStream to write past the caches, null to write as usual
  QXArrayWriter(T* pTarget, std::size_t nNum, decltype(QXMergeKernels::m_pfnStream) pfnStream)
      : m_pTarget(pTarget), m_nLeft(pTarget ? nNum : 0), m_pfnStream(pfnStream) {}

  /// Where the next item goes.
  T* GetTarget() const { return m_pTarget; }
  std::size_t GetLeft() const { return m_nLeft; }

  void Write(T const* pItems, std::size_t nNum) { Write(pItems, nNum, pItems); }

  /// @param pAhead  as large as the items and read soon; see QXAhead
  void Write(T const* pItems, std::size_t nNum, void const* pAhead) {
    std::size_t const num = std::min(nNum, m_nLeft);
    if (num == 0) return;
    if (m_pfnStream)
      m_pfnStream(m_pTarget, pItems, num * sizeof(T), pAhead);
    else
      std::memcpy(m_pTarget, pItems, num * sizeof(T));
    Advance(num);
  }

  void Fill(T value, std::size_t nNum) {
    std::size_t const num = std::min(nNum, m_nLeft);
    std::fill_n(m_pTarget, num, value);
    Advance(num);
  }

  void Finish() { Fill(T{}, m_nLeft); }

private:
  void Advance(std::size_t nNum) {
    m_pTarget += nNum;
    m_nLeft -= nNum;
  }

  T* m_pTarget = nullptr;
  std::size_t m_nLeft = 0;
  decltype(QXMergeKernels::m_pfnStream) m_pfnStream = nullptr;
};

}  // namespace QXC::detail
