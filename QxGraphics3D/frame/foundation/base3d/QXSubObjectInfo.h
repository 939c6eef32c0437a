/// @file
/// Where one object stands in geometry that was merged from many.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcArray.h>
#include <QxGraphics3D/frame/foundation/base3d/QXBoundingSphere.h>

#include <map>

namespace QXC {

class QXStream;

/// Bounds of one merged object and its range in each merged index array, so that a renderer can select, colour or hide
/// it alone. Copies are complete.
class QXGRAPHICS3D_API QXSubObjectInfo {
public:
  /// Bounds in the frame of the host; invalid at first.
  QXBoundingSphere m_BoundingSphere;
  /// Position of an index array among those of its level to a slot of the two arrays below.
  std::map<int, int> m_mapPassSlots;
  /// First index and number of indices of the object, a slot each.
  QdcArray<int> m_arrOffsets;
  QdcArray<int> m_arrCounts;

  /// Replaces the record by what Save wrote. Nothing is checked against anything: a slot may lie past the arrays, and
  /// the arrays may differ in length, as they may in a record that was filled by hand.
  /// @return  0 if the stream ended early or makes no sense; the record is then as it was
  /// Failure: the allocator's exception; memory only as far as the bytes that remain could fill it.
  unsigned char Load(QXStream& stream);
  /// Writes GetDataSize bytes.
  void Save(QXStream& stream) const;
  /// Bytes that Save writes.
  int GetDataSize() const;
};

}  // namespace QXC
