/// @file
/// The records of an image atlas.
#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <set>
#include <vector>

#include <QxGraphics3D/atlas/detail/QXLiveRecords.h>
#include <QxGraphics3D/frame/foundation/base/QdcArray.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

namespace QXC::detail {

/// Records by name, owned, with two things beside them that keep a frame short and safe: which records still wait for
/// their upload, so that a frame without new images does not walk through the names of all those that are uploaded, and
/// which addresses are records, so that a list of useless ones can name what was deleted meanwhile.
///
/// A record waits from its making until UploadWaiting is told that it was uploaded, whatever its fields say: owners may
/// change those without a call. It waits again when m_bLoaded was taken back: of uploaded records a frame looks at this
/// one byte. Threads: the manager's mutex is held.
template <class Image>
class QXImageRecords {
  using Map = std::map<QdcUnicodeString, std::unique_ptr<Image>>;

public:
  using Place = typename Map::iterator;

  /// The record of that name, made for pManager if there is none. Failure: std::bad_alloc, nothing changed.
  template <class Manager>
  Image& Get(QdcUnicodeString const& strName, Manager* pManager) {
    auto [place, bNew] = m_mapImages.try_emplace(strName);
    try {
      if (bNew) {
        place->second = std::make_unique<Image>(pManager);
        place->second->m_strName = strName;
        // Room for it among the uploaded ones before it is one: after an upload nothing may fail any more.
        if (m_arrUploaded.capacity() <= m_Live.GetCount()) m_arrUploaded.reserve(2 * m_Live.GetCount() + 16);
        m_Live.Insert(place->second.get(), Live{place});
        m_setWaiting.insert(place);
      }
    } catch (...) {
      if (bNew) Take(place);
      throw;
    }
    return *place->second;
  }

  /// The place of the record of that name; IsEnd of it if there is none.
  Place Find(QdcUnicodeString const& strName) { return m_mapImages.find(strName); }
  bool IsEnd(Place place) const { return place == m_mapImages.end(); }

  /// Hands a record to the caller. Before anything that it holds is given back: a texture that calls back while it dies
  /// must not find the record any more.
  std::unique_ptr<Image> Take(Place place) {
    std::unique_ptr<Image> pImage = std::move(place->second);
    if (Live const* const pLive = m_Live.Find(pImage.get())) {
      if (pLive->m_nUploaded != kWaits) TakeFromUploaded(pLive->m_nUploaded);
      m_Live.Erase(pImage.get());
    }
    m_setWaiting.erase(place);
    m_mapImages.erase(place);
    return pImage;
  }

  /// Deletes every record, in the order of the names, after release has seen it. What was listed as useless stays
  /// listed, and is no record any more.
  template <class Release>
  void Clear(Release release) {
    while (!m_mapImages.empty()) release(*Take(m_mapImages.begin()));
  }

  /// Calls upload for each waiting record, in the order of the names; those for which it returns true wait no more.
  /// It may make records but not erase any.
  template <class Upload>
  void UploadWaiting(Upload upload) {
    FindTakenBack();
    for (auto waiting = m_setWaiting.begin(); waiting != m_setWaiting.end();) {
      Image* const pImage = (*waiting)->second.get();
      if (!upload(*pImage)) {
        ++waiting;
        continue;
      }
      m_Live.Find(pImage)->m_nUploaded = m_arrUploaded.size();
      m_arrUploaded.push_back(pImage);
      waiting = m_setWaiting.erase(waiting);
    }
  }

  /// Lists records as useless. Addresses that are no records are left out.
  void AddUseless(QdcArray<Image*> const& arrImages) { m_Live.AddUseless(arrImages); }

  /// Empties the list, calling remove with the name of each entry that is still a record when its turn comes. What is
  /// listed meanwhile stays for the next time.
  template <class Remove>
  void RemoveUseless(Remove remove) {
    m_Live.RemoveUseless([&](Image const& image) {
      // A copy: the record dies while its name is still in use.
      QdcUnicodeString const strName = image.m_strName;
      remove(strName);
    });
  }

  void ForgetUseless() { m_Live.ForgetUseless(); }

private:
  static constexpr std::size_t kWaits = ~std::size_t{0};

  struct Live {
    Place m_Place;
    std::size_t m_nUploaded = kWaits;  // index in m_arrUploaded
  };

  struct ByName {
    bool operator()(Place first, Place second) const { return first->first < second->first; }
  };

  void FindTakenBack() {
    for (std::size_t i = 0; i < m_arrUploaded.size();) {
      if (m_arrUploaded[i]->m_bLoaded) {
        ++i;
        continue;
      }
      Live& live = *m_Live.Find(m_arrUploaded[i]);
      m_setWaiting.insert(live.m_Place);
      live.m_nUploaded = kWaits;
      TakeFromUploaded(i);
    }
  }
  void TakeFromUploaded(std::size_t nUploaded) {
    Image* const pLast = m_arrUploaded.back();
    m_arrUploaded.pop_back();
    if (nUploaded == m_arrUploaded.size()) return;
    m_arrUploaded[nUploaded] = pLast;
    m_Live.Find(pLast)->m_nUploaded = nUploaded;
  }

  Map m_mapImages;
  std::set<Place, ByName> m_setWaiting;
  QXLiveRecords<Image, Live> m_Live;
  std::vector<Image*> m_arrUploaded;  // in no order
};

}  // namespace QXC::detail
