#include <QxGraphics3D/texture/QXTextureCacheMap.h>

#include <QxGraphics3D/frame/foundation/base/detail/QXNameIndexParts.h>

#include <new>
#include <stdexcept>

namespace QXC {

QXTextureCacheMap::QXTextureCacheMap() = default;

QXTextureCacheMap::QXTextureCacheMap(Map mapItems) {
  Reserve(mapItems.size());
  m_mapItems.swap(mapItems);
  Refill();
}

QXTextureCacheMap::QXTextureCacheMap(std::initializer_list<value_type> items) : QXTextureCacheMap(Map(items)) {}

QXTextureCacheMap::QXTextureCacheMap(QXTextureCacheMap const& other) : QXTextureCacheMap(other.m_mapItems) {}

QXTextureCacheMap::QXTextureCacheMap(QXTextureCacheMap&& other) noexcept {
  swap(other);
}

QXTextureCacheMap& QXTextureCacheMap::operator=(QXTextureCacheMap const& other) {
  QXTextureCacheMap copy(other);
  swap(copy);
  return *this;
}

QXTextureCacheMap& QXTextureCacheMap::operator=(QXTextureCacheMap&& other) noexcept {
  QXTextureCacheMap moved(std::move(other));
  swap(moved);
  return *this;
}

QXTextureCacheMap::~QXTextureCacheMap() = default;

QXTextureCacheMap::operator Map&() {
  GiveUpIndex();
  return m_mapItems;
}

// --- The index ---

void QXTextureCacheMap::Reserve(std::size_t nItems) {
  if (m_bIndexed) m_Index.Reserve(nItems);
}

void QXTextureCacheMap::AddPlace(iterator place) {
  if (m_bIndexed) m_Index.Add(place->first, place);
}

void QXTextureCacheMap::RemovePlace(const_iterator place) {
  if (m_bIndexed) m_Index.Remove(place->first);
}

void QXTextureCacheMap::Refill() {
  m_Index.RemoveAll();
  for (iterator place = m_mapItems.begin(); place != m_mapItems.end(); ++place) AddPlace(place);
}

void QXTextureCacheMap::BuildIndex() noexcept {
  try {
    Reserve(size());
    Refill();
  } catch (std::bad_alloc const&) {
    GiveUpIndex();
  }
}

void QXTextureCacheMap::GiveUpIndex() {
  m_bIndexed = 0;
  m_Index.Free();
}

// --- Looking up ---

QXTextureCacheMap::iterator QXTextureCacheMap::find(key_type const& strName) {
  if (!m_bIndexed) return m_mapItems.find(strName);
  iterator const* const pPlace = m_Index.Find(strName);
  return pPlace != nullptr ? *pPlace : m_mapItems.end();
}

QXTextureCacheMap::const_iterator QXTextureCacheMap::find(key_type const& strName) const {
  if (!m_bIndexed) return m_mapItems.find(strName);
  iterator const* const pPlace = m_Index.Find(strName);
  return pPlace != nullptr ? const_iterator(*pPlace) : m_mapItems.end();
}

QXTextureCacheMap::mapped_type& QXTextureCacheMap::at(key_type const& strName) {
  iterator const place = find(strName);
  return place != end() ? place->second : m_mapItems.at(strName);
}

QXTextureCacheMap::mapped_type const& QXTextureCacheMap::at(key_type const& strName) const {
  const_iterator const place = find(strName);
  return place != end() ? place->second : m_mapItems.at(strName);
}

// --- Adding ---

QXTextureCacheMap::mapped_type& QXTextureCacheMap::operator[](key_type const& strName) {
  return try_emplace(strName).first->second;
}

std::pair<QXTextureCacheMap::iterator, bool> QXTextureCacheMap::insert(value_type const& item) {
  return try_emplace(item.first, item.second);
}

QXTextureCacheMap::iterator QXTextureCacheMap::insert(const_iterator hint, value_type const& item) {
  Reserve(size() + 1);
  size_type const nBefore = size();
  iterator const place = m_mapItems.insert(hint, item);
  if (size() != nBefore) AddPlace(place);
  return place;
}

QXTextureCacheMap::insert_return_type QXTextureCacheMap::insert(node_type&& node) {
  Reserve(size() + 1);
  insert_return_type result = m_mapItems.insert(std::move(node));
  if (result.inserted) AddPlace(result.position);
  return result;
}

QXTextureCacheMap::iterator QXTextureCacheMap::insert(const_iterator, node_type&& node) {
  insert_return_type result = insert(std::move(node));
  // As in std::map, a node that is refused stays where it was: its entry has no other owner.
  node = std::move(result.node);
  return result.position;
}

std::pair<QXTextureCacheMap::iterator, bool> QXTextureCacheMap::insert_or_assign(
    key_type const& strName, mapped_type pEntry) {
  auto const result = try_emplace(strName, pEntry);
  result.first->second = pEntry;
  return result;
}

std::pair<QXTextureCacheMap::iterator, bool> QXTextureCacheMap::try_emplace(
    key_type const& strName, mapped_type pEntry) {
  iterator const found = find(strName);
  if (found != end()) return {found, false};
  Reserve(size() + 1);
  auto const result = m_mapItems.try_emplace(strName, pEntry);
  AddPlace(result.first);
  return result;
}

void QXTextureCacheMap::merge(Map& source) {
  Reserve(size() + source.size());
  m_mapItems.merge(source);
  Refill();
}

void QXTextureCacheMap::merge(QXTextureCacheMap& source) {
  if (this == &source) return;
  Reserve(size() + source.size());
  m_mapItems.merge(source.m_mapItems);
  Refill();
  source.Refill();
}

// --- Removing ---

QXTextureCacheMap::iterator QXTextureCacheMap::erase(const_iterator position) {
  RemovePlace(position);
  return m_mapItems.erase(position);
}

QXTextureCacheMap::iterator QXTextureCacheMap::erase(const_iterator first, const_iterator last) {
  while (first != last) first = erase(first);
  // An empty range, which turns a place to look at into one to change.
  return m_mapItems.erase(last, last);
}

QXTextureCacheMap::size_type QXTextureCacheMap::erase(key_type const& strName) {
  iterator const place = find(strName);
  if (place == end()) return 0;
  erase(place);
  return 1;
}

QXTextureCacheMap::node_type QXTextureCacheMap::extract(const_iterator position) {
  RemovePlace(position);
  return m_mapItems.extract(position);
}

QXTextureCacheMap::node_type QXTextureCacheMap::extract(key_type const& strName) {
  iterator const place = find(strName);
  return place != end() ? extract(place) : node_type();
}

void QXTextureCacheMap::clear() {
  m_Index.RemoveAll();
  m_mapItems.clear();
}

void QXTextureCacheMap::swap(QXTextureCacheMap& other) noexcept {
  if (this == &other) return;
  m_mapItems.swap(other.m_mapItems);
  if (m_bIndexed && other.m_bIndexed) {
    m_Index.Swap(other.m_Index);
    return;
  }
  // Whoever holds a reference holds it on one of the two objects: that one stays without an index, whatever it holds.
  BuildIndex();
  other.BuildIndex();
}

void QXTextureCacheMap::swap(Map& other) noexcept {
  m_mapItems.swap(other);
  BuildIndex();
}

}  // namespace QXC
