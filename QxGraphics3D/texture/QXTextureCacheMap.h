/// @file
/// Ordered map of cache entries with a fast look-up by name.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QXNameIndex.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

#include <cstddef>
#include <initializer_list>
#include <map>
#include <utility>

namespace QXC {

class QXTextureCacheEntry;

/// The std::map from name to entry that a texture manager keeps, under std::map's own names, with a hash index beside
/// it. Walks and deletions run in the map's order; find, count, contains, at and the subscript of a name that is there
/// cost one hash and one comparison of the name, however many entries there are, and allocate nothing. In an ordered
/// map alone each look-up compares the name with some fifteen long paths that begin alike.
///
/// The map is the truth: the index holds places in it, never entries, and every operation here that adds or removes
/// keeps both in step. A reference to the plain map (the conversion to Map&) can be edited unseen, so that taking one
/// gives the index of this object up for good, and look-ups go through the map.
///
/// Entries are not owned. Iterators stay valid as those of std::map do. Failure: bad_alloc before anything has changed.
/// Threads: like a container of the standard library; looking up a const map changes nothing.
class QXGRAPHICS3D_API QXTextureCacheMap {
public:
  using Map = std::map<QdcUnicodeString, QXTextureCacheEntry*>;
  using key_type = Map::key_type;
  using mapped_type = Map::mapped_type;
  using value_type = Map::value_type;
  using key_compare = Map::key_compare;
  using value_compare = Map::value_compare;
  using allocator_type = Map::allocator_type;
  using pointer = Map::pointer;
  using const_pointer = Map::const_pointer;
  using size_type = Map::size_type;
  using difference_type = Map::difference_type;
  using reference = Map::reference;
  using const_reference = Map::const_reference;
  using iterator = Map::iterator;
  using const_iterator = Map::const_iterator;
  using reverse_iterator = Map::reverse_iterator;
  using const_reverse_iterator = Map::const_reverse_iterator;
  using node_type = Map::node_type;
  using insert_return_type = Map::insert_return_type;

  QXTextureCacheMap();
  QXTextureCacheMap(Map mapItems);
  QXTextureCacheMap(std::initializer_list<value_type> items);
  QXTextureCacheMap(QXTextureCacheMap const& other);
  /// The other is empty afterwards. Where the other had given up its index, this object builds one anew; without memory
  /// for it, look-ups go through the map from then on. The same holds for assignment and swapping.
  QXTextureCacheMap(QXTextureCacheMap&& other) noexcept;
  QXTextureCacheMap& operator=(QXTextureCacheMap const& other);
  QXTextureCacheMap& operator=(QXTextureCacheMap&& other) noexcept;
  ~QXTextureCacheMap();

  /// The plain map, to look at.
  operator Map const&() const { return m_mapItems; }
  /// The plain map, to edit: what happens to it through the reference is not seen, so the index is given up. Where a
  /// Map const& is wanted of an object that is not const, std::as_const keeps the index.
  operator Map&();
  /// 1 while look-ups use the index.
  unsigned char IsIndexed() const { return m_bIndexed; }

  iterator begin() { return m_mapItems.begin(); }
  const_iterator begin() const { return m_mapItems.begin(); }
  const_iterator cbegin() const { return m_mapItems.begin(); }
  iterator end() { return m_mapItems.end(); }
  const_iterator end() const { return m_mapItems.end(); }
  const_iterator cend() const { return m_mapItems.end(); }
  reverse_iterator rbegin() { return m_mapItems.rbegin(); }
  const_reverse_iterator rbegin() const { return m_mapItems.rbegin(); }
  reverse_iterator rend() { return m_mapItems.rend(); }
  const_reverse_iterator rend() const { return m_mapItems.rend(); }
  const_reverse_iterator crbegin() const { return m_mapItems.rbegin(); }
  const_reverse_iterator crend() const { return m_mapItems.rend(); }
  size_type size() const { return m_mapItems.size(); }
  size_type max_size() const { return m_mapItems.max_size(); }
  bool empty() const { return m_mapItems.empty(); }
  key_compare key_comp() const { return m_mapItems.key_comp(); }
  value_compare value_comp() const { return m_mapItems.value_comp(); }
  allocator_type get_allocator() const { return m_mapItems.get_allocator(); }

  iterator find(key_type const& strName);
  const_iterator find(key_type const& strName) const;
  size_type count(key_type const& strName) const { return find(strName) != end() ? 1 : 0; }
  bool contains(key_type const& strName) const { return find(strName) != end(); }
  /// std::out_of_range without such a name.
  mapped_type& at(key_type const& strName);
  mapped_type const& at(key_type const& strName) const;
  iterator lower_bound(key_type const& strName) { return m_mapItems.lower_bound(strName); }
  const_iterator lower_bound(key_type const& strName) const { return m_mapItems.lower_bound(strName); }
  iterator upper_bound(key_type const& strName) { return m_mapItems.upper_bound(strName); }
  const_iterator upper_bound(key_type const& strName) const { return m_mapItems.upper_bound(strName); }
  std::pair<iterator, iterator> equal_range(key_type const& strName) { return m_mapItems.equal_range(strName); }
  std::pair<const_iterator, const_iterator> equal_range(key_type const& strName) const {
    return m_mapItems.equal_range(strName);
  }

  mapped_type& operator[](key_type const& strName);
  std::pair<iterator, bool> insert(value_type const& item);
  iterator insert(const_iterator hint, value_type const& item);
  template <class Iterator>
  void insert(Iterator first, Iterator last) {
    for (; first != last; ++first) insert(value_type(*first));
  }
  void insert(std::initializer_list<value_type> items) { insert(items.begin(), items.end()); }
  insert_return_type insert(node_type&& node);
  iterator insert(const_iterator hint, node_type&& node);
  std::pair<iterator, bool> insert_or_assign(key_type const& strName, mapped_type pEntry);
  std::pair<iterator, bool> try_emplace(key_type const& strName, mapped_type pEntry = nullptr);
  /// The index is as quick as any hint.
  iterator insert_or_assign(const_iterator, key_type const& strName, mapped_type pEntry) {
    return insert_or_assign(strName, pEntry).first;
  }
  iterator try_emplace(const_iterator, key_type const& strName, mapped_type pEntry = nullptr) {
    return try_emplace(strName, pEntry).first;
  }
  template <class... Arguments>
  std::pair<iterator, bool> emplace(Arguments&&... arguments) {
    return insert(value_type(std::forward<Arguments>(arguments)...));
  }
  template <class... Arguments>
  iterator emplace_hint(const_iterator hint, Arguments&&... arguments) {
    return insert(hint, value_type(std::forward<Arguments>(arguments)...));
  }
  /// Moves what the source has and this map has not over.
  void merge(Map& source);
  void merge(QXTextureCacheMap& source);

  iterator erase(const_iterator position);
  iterator erase(iterator position) { return erase(const_iterator(position)); }
  iterator erase(const_iterator first, const_iterator last);
  size_type erase(key_type const& strName);
  node_type extract(const_iterator position);
  node_type extract(key_type const& strName);
  void clear();
  void swap(QXTextureCacheMap& other) noexcept;
  void swap(Map& other) noexcept;

  friend void swap(QXTextureCacheMap& first, QXTextureCacheMap& second) noexcept { first.swap(second); }
  friend bool operator==(QXTextureCacheMap const& first, QXTextureCacheMap const& second) {
    return first.m_mapItems == second.m_mapItems;
  }

private:
  void Reserve(std::size_t nItems);
  void AddPlace(iterator place);
  void RemovePlace(const_iterator place);
  /// Fills the slots from the map; there must be enough of them.
  void Refill();
  /// The index of whatever the map holds now, or none if memory is short.
  void BuildIndex() noexcept;
  void GiveUpIndex();

  Map m_mapItems;
  /// Empty once it is given up.
  QXNameIndex<iterator> m_Index;
  unsigned char m_bIndexed = 1;
};

/// Removes the items for which the predicate holds; returns how many.
template <class Predicate>
QXTextureCacheMap::size_type erase_if(QXTextureCacheMap& mapCache, Predicate predicate) {
  auto const nBefore = mapCache.size();
  for (auto item = mapCache.begin(); item != mapCache.end();) {
    item = predicate(*item) ? mapCache.erase(item) : std::next(item);
  }
  return nBefore - mapCache.size();
}

}  // namespace QXC
