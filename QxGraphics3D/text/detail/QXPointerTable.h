/// @file
/// Hash table of pointers.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace QXC::detail {

/// Pointers to objects that live elsewhere, found by a hash that the caller makes. The hash stands beside its pointer in
/// one flat array: a look-up goes to the objects only for those whose whole hash is equal, which is all but always the
/// one wanted.
template <class T>
class QXPointerTable {
public:
  /// The object of that hash for which isWanted says true, or null.
  template <class IsWanted>
  T* Find(std::uint32_t nHash, IsWanted isWanted) const {
    if (m_arrSlots.empty()) return nullptr;
    for (std::size_t i = GetHome(nHash); m_arrSlots[i].m_pObject; i = GetNext(i)) {
      if (m_arrSlots[i].m_nHash == nHash && isWanted(*m_arrSlots[i].m_pObject)) return m_arrSlots[i].m_pObject;
    }
    return nullptr;
  }

  /// Makes room for one more. What this class allocates, it allocates here.
  void ReserveOne() {
    if ((m_nCount + 1) * 2 <= m_arrSlots.size()) return;
    std::vector<Slot> const arrFormer = std::exchange(m_arrSlots, std::vector<Slot>(NextSize()));
    for (Slot const& slot : arrFormer) {
      if (slot.m_pObject) Put(slot);
    }
  }
  /// The object is not in the table, and room was made for it.
  void Insert(std::uint32_t nHash, T* pObject) {
    Put({pObject, nHash});
    ++m_nCount;
  }
  /// The object is in the table, under that hash.
  void Erase(std::uint32_t nHash, T* pObject) {
    std::size_t nHole = GetHome(nHash);
    while (m_arrSlots[nHole].m_pObject != pObject) nHole = GetNext(nHole);
    --m_nCount;
    // What stands behind the hole and would have stood in it or before it moves up: a search ends at the first empty
    // slot.
    for (std::size_t i = GetNext(nHole); m_arrSlots[i].m_pObject; i = GetNext(i)) {
      if (GetDistance(GetHome(m_arrSlots[i].m_nHash), i) < GetDistance(nHole, i)) continue;
      m_arrSlots[nHole] = m_arrSlots[i];
      nHole = i;
    }
    m_arrSlots[nHole] = Slot();
  }
  void Clear() {
    m_arrSlots = std::vector<Slot>();
    m_nCount = 0;
  }
  std::size_t GetCount() const { return m_nCount; }
  /// In no order that means anything.
  std::vector<T*> GetAll() const {
    std::vector<T*> arrObjects;
    arrObjects.reserve(m_nCount);
    for (Slot const& slot : m_arrSlots) {
      if (slot.m_pObject) arrObjects.push_back(slot.m_pObject);
    }
    return arrObjects;
  }

private:
  struct Slot {
    T* m_pObject = nullptr;
    std::uint32_t m_nHash = 0;
  };

  std::size_t NextSize() const { return m_arrSlots.empty() ? 16 : m_arrSlots.size() * 2; }
  // The size is a power of two.
  std::size_t GetHome(std::uint32_t nHash) const { return nHash & (m_arrSlots.size() - 1); }
  std::size_t GetNext(std::size_t nSlot) const { return (nSlot + 1) & (m_arrSlots.size() - 1); }
  std::size_t GetDistance(std::size_t nFrom, std::size_t nTo) const { return (nTo - nFrom) & (m_arrSlots.size() - 1); }

  void Put(Slot const& slot) {
    std::size_t i = GetHome(slot.m_nHash);
    while (m_arrSlots[i].m_pObject) i = GetNext(i);
    m_arrSlots[i] = slot;
  }

  /// At least half of them empty.
  std::vector<Slot> m_arrSlots;
  std::size_t m_nCount = 0;
};

}  // namespace QXC::detail
