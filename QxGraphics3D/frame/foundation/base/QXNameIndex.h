/// @file
/// Hash index beside an ordered container of named things.
#pragma once

#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace QXC {

/// Finds the place of a name in an ordered container with one hash and one comparison, however many names there are,
/// and without allocating. In the container alone each look-up compares the name with some fifteen long paths that
/// begin alike.
///
/// The container is the truth: its owner enters every place that comes and takes out every place that goes. The texts
/// stay the container's and must not move or change while they stand here, as keys of nodes do not.
///
/// Place is what the container calls its iterator. The operations are defined for the library's own containers, in
/// detail/QXNameIndexParts.h. Threads: like a container of the standard library; looking up changes nothing.
template <class Place>
class QXNameIndex {
public:
  /// Null if there is none; valid until the next name comes or goes. A text counts up to its first zero, as it does
  /// when names are compared.
  Place const* Find(QdcUnicodeString const& strName) const;

  /// Makes room for so many names, those that stand here included. Failure: bad_alloc before anything has changed.
  void Reserve(std::size_t nNames);
  /// Enters a name for which there is room and which does not stand here yet.
  void Add(QdcUnicodeString const& strName, Place place);
  /// Takes a name out that stands here. The text must still be there.
  void Remove(QdcUnicodeString const& strName);
  /// Takes all names out and keeps the room. The texts may be gone already.
  void RemoveAll();
  /// Takes all names out and gives the room back.
  void Free() { m_arrSlots = std::vector<Slot>(); }

  void Swap(QXNameIndex& other) noexcept { m_arrSlots.swap(other.m_arrSlots); }

private:
  /// Open addressing: the place of a hash stands in the first free slot from its home slot on.
  struct Slot {
    std::uint64_t m_nHash;
    /// The text in the container's own key; null in a free slot.
    wchar_t const* m_pText;
    std::size_t m_nLength;
    Place m_Place;
  };

  Slot const* FindSlot(wchar_t const* pText, std::size_t nLength) const;
  void Enter(Slot const& slot);

  /// A power of two of slots, or none.
  std::vector<Slot> m_arrSlots;
};

}  // namespace QXC
