#include <QxGraphics3D/atlas/detail/QXQuadtreeAtlas.h>

#include <QxGraphics3D/frame/foundation/base3d/QXMathEngine.h>

#include <bit>

namespace QXC::detail {

QXQuadtreeAtlas::Page* QXQuadtreeAtlas::FindPage(int nIndex) const {
  auto const nPlace = static_cast<std::size_t>(nIndex);
  return nIndex >= 0 && nPlace < m_arrPages.size() ? m_arrPages[nPlace].get() : nullptr;
}

int QXQuadtreeAtlas::GetUsedCount(int nIndex) const {
  Page const* const pPage = FindPage(nIndex);
  return pPage != nullptr ? pPage->m_nUsedCount : 0;
}

bool QXQuadtreeAtlas::IsPageOf(int nIndex, unsigned int nFormat, unsigned int nCompression) const {
  Page const* const pPage = FindPage(nIndex);
  return pPage != nullptr && pPage->m_Family->first == GetFamilyKey(nFormat, nCompression);
}

QXQuadtreePage const* QXQuadtreeAtlas::GetPage(int nIndex) const {
  Page const* const pPage = FindPage(nIndex);
  return pPage != nullptr ? &pPage->m_Tree : nullptr;
}

bool QXQuadtreeAtlas::Place(QXQuadtreeRequest const& request, QXQuadtreePlace& place) {
  if (!IsSize(request.m_nSize)) return false;
  int const nPower = static_cast<int>(QXMathEngine::NextLog2(request.m_nSize));
  int const nIndex = FindCandidate(request, nPower);
  if (nIndex >= 0) {
    PlaceOn(nIndex, nPower, place);
    return true;
  }
  if (!m_Rules.m_bAddsPages || GetNextIndex() > m_Rules.m_nLastIndex) return false;
  PlaceOnNew(request, place);
  return true;
}

bool QXQuadtreeAtlas::PlaceIn(int nIndex, unsigned int nSize, QXQuadtreePlace& place) {
  Page* const pPage = FindPage(nIndex);
  if (pPage == nullptr || nIndex > m_Rules.m_nLastIndex || !IsSize(nSize)) return false;
  int const nPower = static_cast<int>(QXMathEngine::NextLog2(nSize));
  if (nPower < 2 || (pPage->m_Tree.GetRefused() >> nPower & 1) != 0) return false;
  PlaceOn(nIndex, nPower, place);
  return true;
}

int QXQuadtreeAtlas::FindCandidate(QXQuadtreeRequest const& request, int nPower) const {
  auto const family = m_mapFamilies.find(GetFamilyKey(request.m_nFormat, request.m_nCompression));
  if (family == m_mapFamilies.end()) return -1;
  QXIndexSet const& setCandidates = family->second.m_arrCandidates[static_cast<std::size_t>(nPower)];
  // A current page that has gone is no place to begin at: the search then runs from the lowest index, not from the one
  // behind it.
  if (m_Rules.m_bFromCurrent && HasPage(request.m_nCurrent)) {
    int const nIndex = setCandidates.FindFrom(request.m_nCurrent);
    if (nIndex >= 0) return nIndex;
  }
  return setCandidates.FindFrom(0);
}

void QXQuadtreeAtlas::PlaceOn(int nIndex, int nPower, QXQuadtreePlace& place) {
  Page& page = *m_arrPages[static_cast<std::size_t>(nIndex)];
  page.m_Tree.Find(nPower, place.m_nRow, place.m_nCol);
  place.m_nLod = GetQuadtreeLod(m_Rules.m_nPageSize, 1U << nPower);
  place.m_nIndex = nIndex;
  SetMark(nIndex, page, place.m_nRow, place.m_nCol, true);
  if (m_Rules.m_bCountsTiles) ++page.m_nUsedCount;
}

void QXQuadtreeAtlas::PlaceOnNew(QXQuadtreeRequest const& request, QXQuadtreePlace& place) {
  int const nIndex = AddPage(request.m_nFormat, request.m_nCompression);
  Page& page = *m_arrPages[static_cast<std::size_t>(nIndex)];
  // Not rounded up: the cell of a size that is no power of two is none of its own node, and the page stays open for
  // tiles over it. Callers who mind ask for powers of two.
  place.m_nRow = static_cast<int>(request.m_nSize >> 1);
  place.m_nCol = place.m_nRow;
  place.m_nLod = GetQuadtreeLod(m_Rules.m_nPageSize, request.m_nSize);
  place.m_nIndex = nIndex;
  SetMark(nIndex, page, place.m_nRow, place.m_nCol, true);
  if (m_Rules.m_bCountsTiles) ++page.m_nUsedCount;
}

int QXQuadtreeAtlas::GetNextIndex() const {
  int const nUnused = m_setUnused.FindFrom(0);
  return nUnused >= 0 ? nUnused : static_cast<int>(m_arrPages.size());
}

int QXQuadtreeAtlas::AddPage(unsigned int nFormat, unsigned int nCompression) {
  int const nIndex = GetNextIndex();
  // Everything that may fail comes first. An empty family and spare room are no change that anyone could see.
  auto const family = m_mapFamilies.try_emplace(GetFamilyKey(nFormat, nCompression)).first;
  for (QXIndexSet& setCandidates : family->second.m_arrCandidates) {
    setCandidates.Reserve(nIndex + 1);
  }
  m_setPages.Reserve(nIndex + 1);
  m_setUnused.Reserve(nIndex + 1);
  auto pPage = std::make_unique<Page>(m_Rules, family);
  if (static_cast<std::size_t>(nIndex) == m_arrPages.size()) m_arrPages.emplace_back();

  m_setPages.Insert(nIndex);
  m_setUnused.Erase(nIndex);
  ++family->second.m_nPageCount;
  Page& page = *(m_arrPages[static_cast<std::size_t>(nIndex)] = std::move(pPage));
  UpdateCandidates(nIndex, page, (2U << std::countr_zero(static_cast<unsigned int>(m_Rules.m_nPageSize))) - 4);
  return nIndex;
}

bool QXQuadtreeAtlas::Release(QXQuadtreePlace const& place) {
  Page* const pPage = FindPage(place.m_nIndex);
  if (pPage == nullptr) return false;
  SetMark(place.m_nIndex, *pPage, place.m_nRow, place.m_nCol, false);
  return m_Rules.m_bCountsTiles && --pPage->m_nUsedCount == 0;
}

void QXQuadtreeAtlas::DropPage(int nIndex) {
  Page* const pPage = FindPage(nIndex);
  if (pPage == nullptr) return;
  auto const family = pPage->m_Family;
  for (QXIndexSet& setCandidates : family->second.m_arrCandidates) {
    setCandidates.Erase(nIndex);
  }
  if (--family->second.m_nPageCount == 0) m_mapFamilies.erase(family);
  m_arrPages[static_cast<std::size_t>(nIndex)].reset();
  m_setPages.Erase(nIndex);
  m_setUnused.Insert(nIndex);
}

void QXQuadtreeAtlas::Clear() {
  m_arrPages.clear();
  m_mapFamilies.clear();
  m_setPages = QXIndexSet();
  m_setUnused = QXIndexSet();
}

void QXQuadtreeAtlas::SetMark(int nIndex, Page& page, int nRow, int nCol, bool bMarked) {
  unsigned int const nBefore = page.m_Tree.GetRefused();
  if (bMarked)
    page.m_Tree.Mark(nRow, nCol);
  else
    page.m_Tree.Clear(nRow, nCol);
  unsigned int const nChanged = nBefore ^ page.m_Tree.GetRefused();
  if (nChanged != 0) UpdateCandidates(nIndex, page, nChanged);
}

void QXQuadtreeAtlas::UpdateCandidates(int nIndex, Page& page, unsigned int nChanged) {
  if (nIndex > m_Rules.m_nLastIndex) return;
  unsigned int const nRefused = page.m_Tree.GetRefused();
  // Bits 0 and 1 stand for no size.
  for (nChanged &= ~3U; nChanged != 0; nChanged &= nChanged - 1) {
    auto const nPower = static_cast<std::size_t>(std::countr_zero(nChanged));
    QXIndexSet& setCandidates = page.m_Family->second.m_arrCandidates[nPower];
    if ((nRefused >> nPower & 1) != 0)
      setCandidates.Erase(nIndex);
    else
      setCandidates.Insert(nIndex);
  }
}

}  // namespace QXC::detail
