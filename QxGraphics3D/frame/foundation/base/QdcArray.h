/// @file
/// Growable array with a grow step and a checked subscript.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/Namespaces.h>

#include <cstdint>
#include <new>
#include <type_traits>
#include <vector>

namespace QDC {

/// Throws std::out_of_range with the text "invalid vector<T> subscript". One function in the library, so that the
/// subscript itself stays small wherever it is inlined.
[[noreturn]] QXGRAPHICS3D_API void QdcThrowInvalidSubscript();

/// Elements by value in contiguous storage. Pointer elements are not owned: whoever stores a pointer frees it.
/// Failure: std::out_of_range from the subscript and GetAt, std::bad_alloc from what grows; nothing else.
template <class T>
class QdcArray {
  static_assert(!std::is_same_v<T, bool>, "a packed vector<bool> has no elements to refer to: use unsigned char");

public:
  std::uint64_t GetSize() const { return m_arrItems.size(); }

  /// Appends a copy of item, which may be an element of this array, and returns its index. When the array is full and
  /// a grow step is set, room for exactly that many further elements is made first; without a step the room grows
  /// geometrically, as std::vector does.
  std::uint64_t Add(T const& item);

  /// Step for Add; 0 (the initial value) leaves growth to the vector.
  void SetGrowSize(std::uint64_t nGrowSize) { m_nGrowSize = nGrowSize; }

  /// Checked: an index at or past the size raises std::out_of_range, "invalid vector<T> subscript".
  T& operator[](std::uint64_t nIndex) {
    if (nIndex >= m_arrItems.size()) QdcThrowInvalidSubscript();
    return m_arrItems[nIndex];
  }
  T const& operator[](std::uint64_t nIndex) const {
    if (nIndex >= m_arrItems.size()) QdcThrowInvalidSubscript();
    return m_arrItems[nIndex];
  }
  /// As the subscript, by value.
  T GetAt(std::uint64_t nIndex) const { return (*this)[nIndex]; }

  /// Erases up to nCount elements from nIndex on and returns how many; 0, and no change, for a count of 0 or an index
  /// at or past the size.
  std::uint64_t RemoveAt(std::uint64_t nIndex, std::uint64_t nCount = 1);
  /// Size 0; the storage stays.
  void RemoveAll() { m_arrItems.clear(); }
  /// Gives storage beyond the size back.
  void FreeExtra() {
    if (m_arrItems.capacity() > m_arrItems.size()) m_arrItems.shrink_to_fit();
  }
  /// Cuts, or lengthens with default values.
  void SetSize(std::uint64_t nSize) {
    if (nSize > m_arrItems.max_size()) throw std::bad_alloc();
    m_arrItems.resize(nSize);
  }
  /// Elements that fit without a new allocation.
  std::uint64_t GetCapacity() const { return m_arrItems.capacity(); }

  /// Unchecked access for whole-array walks; null or equal iterators when empty.
  T* GetData() { return m_arrItems.data(); }
  T const* GetData() const { return m_arrItems.data(); }
  T* begin() { return m_arrItems.data(); }
  T* end() { return m_arrItems.data() + m_arrItems.size(); }
  T const* begin() const { return m_arrItems.data(); }
  T const* end() const { return m_arrItems.data() + m_arrItems.size(); }

private:
  std::vector<T> m_arrItems;
  std::uint64_t m_nGrowSize = 0;
};

template <class T>
std::uint64_t QdcArray<T>::Add(T const& item) {
  std::uint64_t const capacity = m_arrItems.capacity();
  if (m_arrItems.size() == capacity && m_nGrowSize > 0) {
    if (m_nGrowSize > m_arrItems.max_size() - capacity) throw std::bad_alloc();
    T copy(item);  // item may live in the storage that reserve is about to free
    m_arrItems.reserve(capacity + m_nGrowSize);
    m_arrItems.push_back(static_cast<T&&>(copy));
  } else {
    m_arrItems.push_back(item);
  }
  return m_arrItems.size() - 1;
}

template <class T>
std::uint64_t QdcArray<T>::RemoveAt(std::uint64_t nIndex, std::uint64_t nCount) {
  std::uint64_t const size = m_arrItems.size();
  if (nCount == 0 || nIndex >= size) return 0;
  std::uint64_t const count = nCount < size - nIndex ? nCount : size - nIndex;
  auto const first = m_arrItems.begin() + static_cast<std::ptrdiff_t>(nIndex);
  m_arrItems.erase(first, first + static_cast<std::ptrdiff_t>(count));
  return count;
}

}  // namespace QDC
