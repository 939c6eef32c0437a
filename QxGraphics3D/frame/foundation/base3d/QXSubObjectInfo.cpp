#include <QxGraphics3D/frame/foundation/base3d/QXSubObjectInfo.h>

#include <QxGraphics3D/frame/foundation/base3d/detail/QXStreamRecords.h>

#include <utility>

namespace QXC {

namespace {

unsigned char LoadArray(QXStream& stream, QdcArray<int>& arrValues) {
  int nCount = 0;
  if (!detail::LoadCount(stream, nCount, sizeof(int))) return 0;
  arrValues.SetSize(static_cast<std::uint64_t>(nCount));
  stream.Load(arrValues.GetData(), static_cast<unsigned int>(nCount));
  return stream.IsGood();
}

void SaveArray(QXStream& stream, QdcArray<int> const& arrValues) {
  stream << static_cast<int>(arrValues.GetSize());
  stream.Save(arrValues.GetData(), static_cast<unsigned int>(arrValues.GetSize()));
}

}  // namespace

unsigned char QXSubObjectInfo::Load(QXStream& stream) {
  constexpr unsigned int SlotSize = 8;
  QXSubObjectInfo loaded;
  QXVector3d& center = loaded.m_BoundingSphere.m_vecCenter;
  int nSlots = 0;
  stream >> center.x >> center.y >> center.z >> loaded.m_BoundingSphere.m_dRadius;
  if (!detail::LoadCount(stream, nSlots, SlotSize)) return 0;
  for (int i = 0; i < nSlots; ++i) {
    int nPass = 0;
    int nSlot = 0;
    stream >> nPass >> nSlot;
    // Written in the order of the keys, so the end is where the next one belongs.
    loaded.m_mapPassSlots.insert_or_assign(loaded.m_mapPassSlots.end(), nPass, nSlot);
  }
  if (!LoadArray(stream, loaded.m_arrOffsets) || !LoadArray(stream, loaded.m_arrCounts)) return 0;
  *this = std::move(loaded);
  return 1;
}

void QXSubObjectInfo::Save(QXStream& stream) const {
  QXVector3d const& center = m_BoundingSphere.GetCenter();
  stream << center.x << center.y << center.z << m_BoundingSphere.GetRadius();
  stream << static_cast<int>(m_mapPassSlots.size());
  for (auto const& [nPass, nSlot] : m_mapPassSlots) stream << nPass << nSlot;
  SaveArray(stream, m_arrOffsets);
  SaveArray(stream, m_arrCounts);
}

int QXSubObjectInfo::GetDataSize() const {
  constexpr QXInt64 FixedSize = 4 * 8 + 3 * 4;
  auto const nSlots = static_cast<QXInt64>(m_mapPassSlots.size());
  auto const nOffsets = static_cast<QXInt64>(m_arrOffsets.GetSize());
  auto const nCounts = static_cast<QXInt64>(m_arrCounts.GetSize());
  return detail::ToDataSize(FixedSize + 8 * nSlots + 4 * nOffsets + 4 * nCounts);
}

}  // namespace QXC
