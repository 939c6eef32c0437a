/// @file
/// The operations of QXNameIndex, for the sources of the containers that have one.
#pragma once

#include <QxGraphics3D/frame/foundation/base/QXNameIndex.h>
#include <QxGraphics3D/frame/foundation/base/detail/QXTextHash.h>

#include <cstring>
#include <cwchar>

namespace QXC {
namespace detail {

constexpr std::size_t FewestSlots = 64;

/// At most two thirds of the slots are taken, so that a search ends after a slot or two.
inline bool IsTooFull(std::size_t nNames, std::size_t nSlots) {
  return nNames > nSlots - nSlots / 3;
}

/// The length of the text, where GetLength counts a tail of zeros too.
inline std::size_t GetTextLength(QdcUnicodeString const& strName) {
  return std::wcslen(strName.Cstr());
}

}  // namespace detail

template <class Place>
typename QXNameIndex<Place>::Slot const* QXNameIndex<Place>::FindSlot(wchar_t const* pText, std::size_t nLength) const {
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

template <class Place>
Place const* QXNameIndex<Place>::Find(QdcUnicodeString const& strName) const {
  if (m_arrSlots.empty()) return nullptr;
  std::size_t const nLength = static_cast<std::size_t>(strName.GetLength());
  Slot const* pSlot = FindSlot(strName.Cstr(), nLength);
  if (pSlot == nullptr) {
    // Texts in the index have no zero inside, so a name with one is found by its text alone. Measuring it waits until
    // here because it would cost every hit a walk over the name.
    std::size_t const nTextLength = detail::GetTextLength(strName);
    if (nTextLength != nLength) pSlot = FindSlot(strName.Cstr(), nTextLength);
  }
  return pSlot != nullptr ? &pSlot->m_Place : nullptr;
}

template <class Place>
void QXNameIndex<Place>::Reserve(std::size_t nNames) {
  if (!detail::IsTooFull(nNames, m_arrSlots.size())) return;
  std::size_t nSlots = detail::FewestSlots;
  while (detail::IsTooFull(nNames, nSlots)) nSlots *= 2;
  std::vector<Slot> former(nSlots, Slot{0, nullptr, 0, Place()});
  m_arrSlots.swap(former);
  for (Slot const& slot : former) {
    if (slot.m_pText != nullptr) Enter(slot);
  }
}

template <class Place>
void QXNameIndex<Place>::Enter(Slot const& slot) {
  std::size_t const nMask = m_arrSlots.size() - 1;
  std::size_t i = slot.m_nHash & nMask;
  while (m_arrSlots[i].m_pText != nullptr) i = (i + 1) & nMask;
  m_arrSlots[i] = slot;
}

template <class Place>
void QXNameIndex<Place>::Add(QdcUnicodeString const& strName, Place place) {
  std::size_t const nLength = detail::GetTextLength(strName);
  Enter(Slot{detail::HashText(strName.Cstr(), nLength), strName.Cstr(), nLength, place});
}

template <class Place>
void QXNameIndex<Place>::Remove(QdcUnicodeString const& strName) {
  std::size_t const nMask = m_arrSlots.size() - 1;
  Slot const* const pSlot = FindSlot(strName.Cstr(), detail::GetTextLength(strName));
  auto nFree = static_cast<std::size_t>(pSlot - m_arrSlots.data());
  // Slots behind move up over the gap, unless they would come to stand before their home: a search stops at a free
  // slot, and marks of removed names would pile up in a cache that changes all the time.
  for (std::size_t i = (nFree + 1) & nMask; m_arrSlots[i].m_pText != nullptr; i = (i + 1) & nMask) {
    std::size_t const nHome = m_arrSlots[i].m_nHash & nMask;
    if (((i - nHome) & nMask) >= ((i - nFree) & nMask)) {
      m_arrSlots[nFree] = m_arrSlots[i];
      nFree = i;
    }
  }
  m_arrSlots[nFree].m_pText = nullptr;
}

template <class Place>
void QXNameIndex<Place>::RemoveAll() {
  for (Slot& slot : m_arrSlots) slot.m_pText = nullptr;
}

}  // namespace QXC
