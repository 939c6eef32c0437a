/// @file
/// Ordered dictionary.
#pragma once

#include <QxGraphics3D/frame/foundation/base/Namespaces.h>

#include <cstdint>
#include <functional>
#include <map>

namespace QDC {

/// Unique keys in Compare order, over a balanced tree. References and positions stay valid until their own entry is
/// removed. Pointer values are not owned.
///
/// Values may call back into the dictionary while they die: an entry is out of the tree before its value is destroyed.
template <class K, class V, class Compare = std::less<K>>
class QdcDict {
public:
  /// Place of one entry, `->first` the key and `->second` the value. Reading through it copies nothing, where
  /// GetNextAssoc copies key and value (a text key can allocate): walk a frame's dictionaries by `++position`.
  using Position = typename std::map<K, V, Compare>::const_iterator;

  Position GetStartPosition() const { return m_mapItems.begin(); }
  /// 1 if the position stands behind the last entry.
  unsigned char IsEOF(Position const& position) const {
    return static_cast<unsigned char>(position == m_mapItems.end());
  }
  /// Copies the entry at the position out and advances. At the end nothing changes.
  void GetNextAssoc(Position& position, K& key, V& value) const {
    if (position == m_mapItems.end()) return;
    key = position->first;
    value = position->second;
    ++position;
  }

  /// 1 and a copy of the value when found; else 0, and value keeps what it held.
  unsigned char Lookup(K const& key, V& value) const {
    auto const found = m_mapItems.find(key);
    if (found == m_mapItems.end()) return 0;
    value = found->second;
    return 1;
  }
  /// The entry's place, without a copy; IsEOF tells that there is none.
  Position Find(K const& key) const { return m_mapItems.find(key); }
  /// The value of the key; a missing key is entered with a value-initialised value.
  V& operator[](K const& key) { return m_mapItems[key]; }

  /// 1 if there was such an entry. key may be the entry's own key.
  unsigned char RemoveKey(K const& key) {
    auto const node = m_mapItems.extract(key);  // dies at the end of the scope, when the tree is whole again
    return static_cast<unsigned char>(!node.empty());
  }
  /// Empties the dictionary first, then destroys the values: what a value enters while it dies stays.
  void RemoveAll() {
    std::map<K, V, Compare> dying;
    dying.swap(m_mapItems);
  }
  std::uint64_t GetCount() const { return m_mapItems.size(); }

private:
  std::map<K, V, Compare> m_mapItems;
};

}  // namespace QDC
