/// @file
/// Doubly linked list of imported structures.
#pragma once

#include <QxGraphics3D/frame/foundation/base/Namespaces.h>

#include <cstdint>
#include <list>

namespace QXC {
/// Listener of imported structures; the library stores and copies pointers to it and nothing more.
class QXListener;
}  // namespace QXC

namespace QDC {

/// The library copies and destroys such lists inside imported structures and walks them no further; who fills a
/// structure adds to its tail. Pointer elements are not owned.
template <class T>
class QdcList {
public:
  void AddTail(T const& item) { m_lstItems.push_back(item); }
  void RemoveAll() { m_lstItems.clear(); }
  std::uint64_t GetCount() const { return m_lstItems.size(); }

  auto begin() const { return m_lstItems.begin(); }
  auto end() const { return m_lstItems.end(); }

private:
  std::list<T> m_lstItems;
};

}  // namespace QDC
