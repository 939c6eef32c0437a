/// @file
/// Text-to-text hash, the base of the registry.
#pragma once

#include <QxGraphics3D/frame/foundation/base/Namespaces.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

#include <cstdint>
#include <unordered_map>

namespace QXC {

/// Hash of the zero-terminated text, so that keys that compare equal hash equal (FNV-1a over the character codes).
struct QXTextHash {
  std::size_t operator()(QdcUnicodeString const& strText) const {
    std::uint64_t hash = 14695981039346656037u;
    for (wchar_t const* pText = strText.Cstr(); *pText; ++pText) {
      hash = (hash ^ static_cast<std::uint32_t>(*pText)) * 1099511628211u;
    }
    return static_cast<std::size_t>(hash);
  }
};

/// Keys to values of the same text type. Its order shows nowhere: there is no walk.
template <class T>
class QXHash {
public:
  /// The value of the key; a missing key is entered with an empty value. Valid until the key is removed.
  T& operator[](T const& key) { return m_mapItems[key]; }
  /// 1 and a copy of the value when found; else 0, and value keeps what it held.
  unsigned char Lookup(T const& key, T& value) const {
    auto const found = m_mapItems.find(key);
    if (found == m_mapItems.end()) return 0;
    value = found->second;
    return 1;
  }
  std::uint64_t GetCount() const { return m_mapItems.size(); }
  void RemoveAll() { m_mapItems.clear(); }

private:
  std::unordered_map<T, T, QXTextHash> m_mapItems;
};

}  // namespace QXC
