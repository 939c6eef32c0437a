/// @file
/// Ordered dictionary.
#pragma once

#include <QxGraphics3D/frame/foundation/base/Namespaces.h>

#include <cstdint>
#include <functional>
#include <map>
#include <utility>

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

  QdcDict() = default;
  QdcDict(QdcDict const& other) : m_mapItems(other.m_mapItems) {}
  QdcDict(QdcDict&& other) noexcept : m_mapItems(std::move(other.m_mapItems)) { other.ForgetAll(); }
  QdcDict& operator=(QdcDict const& other) {
    ++m_nChangeCount;  // before: entries are gone even if copying fails halfway
    m_mapItems = other.m_mapItems;
    return *this;
  }
  QdcDict& operator=(QdcDict&& other) noexcept {
    if (this != &other) {
      m_mapItems = std::move(other.m_mapItems);
      ++m_nChangeCount;
      other.ForgetAll();
    }
    return *this;
  }
  ~QdcDict() = default;

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
  V& operator[](K const& key) {
    auto const [item, bNew] = m_mapItems.try_emplace(key);
    m_nChangeCount += bNew;
    return item->second;
  }

  /// 1 if there was such an entry. key may be the entry's own key.
  unsigned char RemoveKey(K const& key) {
    auto const node = m_mapItems.extract(key);  // dies at the end of the scope, when the tree is whole again
    m_nChangeCount += !node.empty();
    return static_cast<unsigned char>(!node.empty());
  }
  /// Empties the dictionary first, then destroys the values: what a value enters while it dies stays.
  void RemoveAll() {
    std::map<K, V, Compare> dying;
    dying.swap(m_mapItems);
    ++m_nChangeCount;
  }
  std::uint64_t GetCount() const { return m_mapItems.size(); }

  /// Grows whenever an entry comes or goes, and is not copied: whoever keeps places of entries (a walk of every frame
  /// is faster over a list of them) looks again when it has changed. A new value in an old entry does not count.
  std::uint64_t GetChangeCount() const { return m_nChangeCount; }

private:
  /// What was moved from may hold anything.
  void ForgetAll() {
    m_mapItems.clear();
    ++m_nChangeCount;
  }

  std::map<K, V, Compare> m_mapItems;
  std::uint64_t m_nChangeCount = 0;
};

}  // namespace QDC
