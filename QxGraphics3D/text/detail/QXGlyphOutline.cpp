#include <QxGraphics3D/text/detail/QXGlyphOutline.h>

#include <algorithm>

namespace QXC::detail {

namespace {

constexpr std::size_t MostOutlines = 64;
constexpr std::size_t MostRoom = 65536;

std::size_t CountOf(int nCount) {
  return static_cast<std::size_t>(std::max(nCount, 0));
}

}  // namespace

FT_Outline* QXOutlineBlock::Make(std::size_t nPoints, std::size_t nContours) {
  m_Outline = FT_Outline();
  m_arrPoints.resize(nPoints);
  m_arrTags.resize(nPoints);
  m_arrContours.resize(nContours);
  m_Outline.points = m_arrPoints.data();
  m_Outline.tags = m_arrTags.data();
  m_Outline.contours = m_arrContours.data();
  return &m_Outline;
}

FT_Outline* QXOutlineBlock::Copy(FT_Outline const& outline) {
  Make(CountOf(outline.n_points), CountOf(outline.n_contours));
  std::copy_n(outline.points, m_arrPoints.size(), m_arrPoints.begin());
  std::copy_n(outline.tags, m_arrTags.size(), m_arrTags.begin());
  std::copy_n(outline.contours, m_arrContours.size(), m_arrContours.begin());
  m_Outline.n_points = outline.n_points;
  m_Outline.n_contours = outline.n_contours;
  m_Outline.flags = outline.flags & ~FT_OUTLINE_OWNER;
  return &m_Outline;
}

bool QXOutlineBlock::Assign(std::vector<FT_Vector> const& arrPoints, std::vector<char> const& arrTags,
    std::vector<std::size_t> const& arrEnds) {
  if (arrPoints.size() > MostPoints) return false;
  Make(arrPoints.size(), arrEnds.size());
  std::copy(arrPoints.begin(), arrPoints.end(), m_arrPoints.begin());
  std::copy(arrTags.begin(), arrTags.end(), m_arrTags.begin());
  std::transform(
      arrEnds.begin(), arrEnds.end(), m_arrContours.begin(), [](std::size_t nEnd) { return static_cast<short>(nEnd); });
  m_Outline.n_points = static_cast<short>(arrPoints.size());
  m_Outline.n_contours = static_cast<short>(arrEnds.size());
  return true;
}

bool QXOutlineBlock::operator==(QXOutlineBlock const& other) const {
  auto const same = [](FT_Vector const& a, FT_Vector const& b) { return a.x == b.x && a.y == b.y; };
  return std::equal(m_arrPoints.begin(), m_arrPoints.end(), other.m_arrPoints.begin(), other.m_arrPoints.end(), same) &&
         m_arrTags == other.m_arrTags && m_arrContours == other.m_arrContours;
}

QXGlyphOutline* QXGlyphOutlineCache::Find(QXGlyphKey const& key) {
  for (QXGlyphOutline& outline : m_arrOutlines) {
    if (outline.m_Key == key) return &outline;
  }
  return nullptr;
}

QXGlyphOutline& QXGlyphOutlineCache::Add() {
  std::size_t room = 0;
  for (QXGlyphOutline const& outline : m_arrOutlines) room += outline.GetRoom();
  if (room > MostRoom) m_arrOutlines.clear();
  // In turn, each over the one that has been there longest; its arrays mostly have the room already.
  if (m_arrOutlines.size() < MostOutlines) {
    m_arrOutlines.emplace_back();
    m_nNext = m_arrOutlines.size() - 1;
  }
  QXGlyphOutline& added = m_arrOutlines[m_nNext];
  m_nNext = (m_nNext + 1) % MostOutlines;
  added.m_Key = QXGlyphKey();
  return added;
}

}  // namespace QXC::detail
