#include <QxGraphics3D/texture/QXTextureCacheMap.h>

#include <QxGraphics3D/texture/detail/QXTextHash.h>

#include <cstring>
#include <cwchar>
#include <new>
#include <stdexcept>

namespace QXC {
namespace {

constexpr std::size_t kFewestSlots = 64;

/// At most two thirds of the slots are taken, so that a search ends after a slot or two.
bool IsTooFull(std::size_t nItems, std::size_t nSlots) {
  return nItems > nSlots - nSlots / 3;
}

/// The length of the text, where GetLength counts a tail of zeros too: the map compares texts.
std::size_t GetTextLength(QdcUnicodeString const& strName) {
  return std::wcslen(strName.Cstr());
}

}  // namespace

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

QXTextureCacheMap::Slot const* QXTextureCacheMap::FindSlot(wchar_t const* pText, std::size_t nLength) const {
  std::uint64_t const nHash = detail::HashText(pText, nLength);
  std::size_t const nMask = m_arrSlots.size() - 1;
  for (std::size_t i = nHash & nMask; m_arrSlots[i].m_pText != nullptr; i = (i + 1) & nMask) {
    Slot const& slot = m_arrSlots[i];
    if (slot.m_nHash == nHash && slot.m_nLength == nLength &&
        std::memcmp(slot.m_pText, pText, nLength * sizeof(wchar_t)) == 0) {
      return &slot;
    }
  }
  return nullptr;
}

QXTextureCacheMap::Slot const* QXTextureCacheMap::FindSlot(key_type const& strName) const {
  if (m_arrSlots.empty()) return nullptr;
  std::size_t const nLength = static_cast<std::size_t>(strName.GetLength());
  Slot const* const pSlot = FindSlot(strName.Cstr(), nLength);
  if (pSlot != nullptr) return pSlot;
  // Texts in the index have no zero inside, so a name with one is found by its text alone. Measuring it waits until
  // here because it would cost every hit a walk over the name.
  std::size_t const nTextLength = GetTextLength(strName);
  return nTextLength == nLength ? nullptr : FindSlot(strName.Cstr(), nTextLength);
}

void QXTextureCacheMap::Reserve(std::size_t nItems) {
  if (!m_bIndexed || !IsTooFull(nItems, m_arrSlots.size())) return;
  std::size_t nSlots = kFewestSlots;
  while (IsTooFull(nItems, nSlots)) nSlots *= 2;
  std::vector<Slot> slots(nSlots, Slot{0, nullptr, 0, iterator()});
  m_arrSlots.swap(slots);
  Refill();
}

void QXTextureCacheMap::AddPlace(iterator place) {
  if (!m_bIndexed) return;
  std::size_t const nLength = GetTextLength(place->first);
  Slot const slot{detail::HashText(place->first.Cstr(), nLength), place->first.Cstr(), nLength, place};
  std::size_t const nMask = m_arrSlots.size() - 1;
  std::size_t i = slot.m_nHash & nMask;
  while (m_arrSlots[i].m_pText != nullptr) i = (i + 1) & nMask;
  m_arrSlots[i] = slot;
}

void QXTextureCacheMap::RemovePlace(const_iterator place) {
  if (!m_bIndexed) return;
  std::size_t const nMask = m_arrSlots.size() - 1;
  auto nFree = static_cast<std::size_t>(FindSlot(place->first.Cstr(), GetTextLength(place->first)) - m_arrSlots.data());
  // Slots behind move up over the gap, unless they would come to stand before their home: a search stops at a free
  // slot, and marks of removed entries would pile up in a cache that changes all the time.
  for (std::size_t i = (nFree + 1) & nMask; m_arrSlots[i].m_pText != nullptr; i = (i + 1) & nMask) {
    std::size_t const nHome = m_arrSlots[i].m_nHash & nMask;
    if (((i - nHome) & nMask) >= ((i - nFree) & nMask)) {
      m_arrSlots[nFree] = m_arrSlots[i];
      nFree = i;
    }
  }
  m_arrSlots[nFree].m_pText = nullptr;
}

void QXTextureCacheMap::Refill() {
  for (Slot& slot : m_arrSlots) slot.m_pText = nullptr;
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
  m_arrSlots = std::vector<Slot>();
}

// --- Looking up ---

QXTextureCacheMap::iterator QXTextureCacheMap::find(key_type const& strName) {
  if (!m_bIndexed) return m_mapItems.find(strName);
  Slot const* const pSlot = FindSlot(strName);
  return pSlot != nullptr ? pSlot->m_Place : m_mapItems.end();
}

QXTextureCacheMap::const_iterator QXTextureCacheMap::find(key_type const& strName) const {
  if (!m_bIndexed) return m_mapItems.find(strName);
  Slot const* const pSlot = FindSlot(strName);
  return pSlot != nullptr ? const_iterator(pSlot->m_Place) : m_mapItems.end();
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
  m_arrSlots.clear();
  m_mapItems.clear();
}

void QXTextureCacheMap::swap(QXTextureCacheMap& other) noexcept {
  if (this == &other) return;
  m_mapItems.swap(other.m_mapItems);
  if (m_bIndexed && other.m_bIndexed) {
    m_arrSlots.swap(other.m_arrSlots);
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
