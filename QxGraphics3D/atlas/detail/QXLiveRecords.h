/// @file
/// Which addresses are records of an atlas, and which of these are listed as useless.
#pragma once

#include <unordered_map>
#include <utility>
#include <vector>

#include <QxGraphics3D/Platform.h>
#include <QxGraphics3D/frame/foundation/base/QdcArray.h>

namespace QXC::detail {

/// Users list records as useless by their address and may do so twice, or after the record went. So each live record has
/// a serial number here, which tells it from a later one that got the same address, and something of its owner's.
/// Threads: the manager's mutex is held.
template <class Record, class Data>
class QXLiveRecords {
public:
  /// Failure: std::bad_alloc, nothing changed.
  void Insert(Record const* pRecord, Data data) {
    m_mapLive.emplace(pRecord, Live{m_nLastSerial + 1, std::move(data)});
    ++m_nLastSerial;
  }
  /// What is not live is ignored.
  void Erase(Record const* pRecord) { m_mapLive.erase(pRecord); }
  /// What was listed stays listed, and is no record any more.
  void Clear() { m_mapLive.clear(); }
  /// What Insert was given; null for what is not live.
  Data* Find(Record const* pRecord) {
    auto const live = m_mapLive.find(pRecord);
    return live != m_mapLive.end() ? &live->second.m_Data : nullptr;
  }
  std::size_t GetCount() const { return m_mapLive.size(); }

  /// Lists records. Addresses that are no records are left out.
  void AddUseless(QdcArray<Record*> const& arrRecords) {
    for (Record* const pRecord : arrRecords) {
      auto const live = m_mapLive.find(pRecord);
      if (live != m_mapLive.end()) m_arrUseless.emplace_back(pRecord, live->second.m_nSerial);
    }
  }
  /// Empties the list and gives its storage back, calling remove with each entry that is still live when its turn comes.
  /// What is listed meanwhile stays for the next time.
  template <class Remove>
  void RemoveUseless(Remove remove) {
    std::vector<Useless> const arrUseless = std::exchange(m_arrUseless, std::vector<Useless>());
    for (auto const& [pRecord, nSerial] : arrUseless) {
      auto const live = m_mapLive.find(pRecord);
      if (live != m_mapLive.end() && live->second.m_nSerial == nSerial) remove(*pRecord);
    }
  }
  void ForgetUseless() { m_arrUseless = std::vector<Useless>(); }
  bool HasUseless() const { return !m_arrUseless.empty(); }

private:
  struct Live {
    QXUInt64 m_nSerial;
    Data m_Data;
  };
  using Useless = std::pair<Record*, QXUInt64>;

  std::unordered_map<Record const*, Live> m_mapLive;
  std::vector<Useless> m_arrUseless;
  QXUInt64 m_nLastSerial = 0;
};

}  // namespace QXC::detail
