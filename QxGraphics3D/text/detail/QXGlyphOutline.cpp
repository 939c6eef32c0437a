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
  // They never shrink: what grows again would be cleared again.
  if (m_arrPoints.size() < nPoints) m_arrPoints.resize(nPoints);
  if (m_arrTags.size() < nPoints) m_arrTags.resize(nPoints);
  if (m_arrContours.size() < nContours) m_arrContours.resize(nContours);
  m_Outline = FT_Outline();
  m_Outline.points = m_arrPoints.data();
  m_Outline.tags = m_arrTags.data();
  m_Outline.contours = m_arrContours.data();
  return &m_Outline;
}

FT_Outline* QXOutlineBlock::Copy(FT_Outline const& outline) {
  std::size_t const points = CountOf(outline.n_points);
  std::size_t const contours = CountOf(outline.n_contours);
  Make(points, contours);
  std::copy_n(outline.points, points, m_arrPoints.begin());
  std::copy_n(outline.tags, points, m_arrTags.begin());
  std::copy_n(outline.contours, contours, m_arrContours.begin());
  m_Outline.n_points = outline.n_points;
  m_Outline.n_contours = outline.n_contours;
  m_Outline.flags = 0;
  return &m_Outline;
}

QXGlyphOutline* QXGlyphOutlineCache::Find(QXGlyphKey const& key) {
  for (QXGlyphOutline& outline : m_arrOutlines) {
    if (outline.m_Key == key) return &outline;
  }
  return nullptr;
}

QXGlyphOutline& QXGlyphOutlineCache::Add() {
  // The glyph added last was made since then, and only its arrays can have grown.
  if (m_pLast != nullptr) m_nRoom += m_pLast->GetRoom() - m_nLastRoom;
  m_pLast = nullptr;
  if (m_nRoom > MostRoom) {
    m_arrOutlines.clear();
    m_nRoom = 0;
  }
  // In turn, each over the one that has been there longest; its arrays mostly have the room already.
  if (m_arrOutlines.size() < MostOutlines) {
    m_arrOutlines.emplace_back();
    m_nNext = m_arrOutlines.size() - 1;
  }
  m_pLast = &m_arrOutlines[m_nNext];
  m_nLastRoom = m_pLast->GetRoom();
  m_nNext = (m_nNext + 1) % MostOutlines;
  m_pLast->m_Key = QXGlyphKey();
  return *m_pLast;
}

}  // namespace QXC::detail
