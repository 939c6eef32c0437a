/// @file
/// The pages of an atlas and the search for a place among them.
#pragma once

#include <QxGraphics3D/atlas/detail/QXIndexSet.h>
#include <QxGraphics3D/atlas/detail/QXQuadtreePage.h>
#include <QxGraphics3D/atlas/detail/QXQuadtreeRules.h>

#include <array>
#include <map>
#include <memory>
#include <utility>
#include <vector>

namespace QXC::detail {

/// What is asked for.
struct QXQuadtreeRequest {
  /// Edge in pixels. The search rounds it up to a power of two; a tile that opens a page takes it as it is.
  unsigned int m_nSize = 0;
  /// Read where the rules go by format.
  unsigned int m_nFormat = 0;
  unsigned int m_nCompression = 0;
  /// Index of the page where the search begins. Read where the rules begin at the current page.
  int m_nCurrent = 0;
};

/// Pages by texture index, and for each size the pages that can take one more tile of it.
///
/// Threads: none of its own; the manager's mutex is held in every operation.
/// Failure: std::bad_alloc while a page is made; nothing has changed then.
/// Cost: place and release take one step a level of the tree, however many pages there are and however full. Only a new
/// page allocates.
class QXQuadtreeAtlas {
public:
  /// The rules outlive the atlas.
  explicit QXQuadtreeAtlas(QXQuadtreeRules const& rules) : m_Rules(rules) {}
  explicit QXQuadtreeAtlas(QXQuadtreeRules const&&) = delete;
  QXQuadtreeAtlas(QXQuadtreeAtlas const&) = delete;
  QXQuadtreeAtlas& operator=(QXQuadtreeAtlas const&) = delete;

  /// Finds a place, marks it and counts it. If nothing fits and the rules add pages, the tile opens a new one, in its
  /// upper left corner, under the smallest index that is not in use. Tiles of 1 and 2 pixels never fit a page that is
  /// there, since no node is that small: each opens its own.
  /// @return false, with nothing changed, for a size of 0 or past the page's edge, if nothing fits and no page is to be
  ///         made, and if its index would pass the last one
  bool Place(QXQuadtreeRequest const& request, QXQuadtreePlace& place);
  /// As above on one page only, without a new one and without a look at its format.
  bool PlaceIn(int nIndex, unsigned int nSize, QXQuadtreePlace& place);

  /// The index that the next page gets: the smallest from 0 on that is not in use.
  int GetNextIndex() const;
  /// Makes an empty page under that index, which is returned. Past the last index of the rules no tile is ever placed
  /// on it.
  int AddPage(unsigned int nFormat = 0, unsigned int nCompression = 0);

  /// Clears the mark of a tile and takes it off its page's count. An unknown page is ignored, and so is a cell outside.
  /// @return true if the page has no tiles left by that count: its manager may drop it
  bool Release(QXQuadtreePlace const& place);
  /// Deletes a page with all that stands on it. An unknown one is ignored.
  void DropPage(int nIndex);
  /// Deletes all pages.
  void Clear();

  bool HasPage(int nIndex) const { return FindPage(nIndex) != nullptr; }
  /// Tiles that were placed and not released; 0 for an unknown page and where the rules do not count.
  int GetUsedCount(int nIndex) const;
  /// True if the page is there and takes tiles of that format and compression.
  bool IsPageOf(int nIndex, unsigned int nFormat, unsigned int nCompression) const;
  /// The marks of a page; null for an unknown one.
  QXQuadtreePage const* GetPage(int nIndex) const;
  /// The smallest index of a page that is not below nFirst, or -1: for (i = 0; (i = GetPageFrom(i)) != -1; ++i).
  int GetPageFrom(int nFirst) const { return m_setPages.FindFrom(nFirst); }

private:
  /// Pages that share a format.
  struct Family {
    /// By the power of the size: the pages that can take a tile of it.
    std::array<QXIndexSet, 12> m_arrCandidates;
    int m_nPageCount = 0;
  };
  using FamilyMap = std::map<std::pair<unsigned int, unsigned int>, Family>;

  struct Page {
    Page(QXQuadtreeRules const& rules, FamilyMap::iterator family)
        : m_Tree(rules.m_nPageSize, rules.m_bTopLeftOnly), m_Family(family) {}

    QXQuadtreePage m_Tree;
    int m_nUsedCount = 0;
    FamilyMap::iterator m_Family;
  };

  bool IsSize(unsigned int nSize) const {
    return nSize != 0 && nSize <= static_cast<unsigned int>(m_Rules.m_nPageSize);
  }
  Page* FindPage(int nIndex) const;
  /// The page for a tile of 2^nPower pixels, or -1.
  int FindCandidate(QXQuadtreeRequest const& request, int nPower) const;
  void PlaceOn(int nIndex, int nPower, QXQuadtreePlace& place);
  void PlaceOnNew(QXQuadtreeRequest const& request, QXQuadtreePlace& place);
  /// Marks or clears a cell and lets the candidates follow.
  void SetMark(int nIndex, Page& page, int nRow, int nCol, bool bMarked);
  /// Enters the page under the sizes whose bits are set in nChanged, or takes it out, by what it can take now.
  void UpdateCandidates(int nIndex, Page& page, unsigned int nChanged);
  FamilyMap::key_type GetFamilyKey(unsigned int nFormat, unsigned int nCompression) const {
    return m_Rules.m_bByFormat ? FamilyMap::key_type(nFormat, nCompression) : FamilyMap::key_type(0, 0);
  }

  QXQuadtreeRules const& m_Rules;
  /// By index; null where there is none.
  std::vector<std::unique_ptr<Page>> m_arrPages;
  QXIndexSet m_setPages;
  /// Indexes below the size of m_arrPages without a page.
  QXIndexSet m_setUnused;
  FamilyMap m_mapFamilies;
};

}  // namespace QXC::detail
