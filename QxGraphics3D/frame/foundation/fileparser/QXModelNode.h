/// @file
/// One placement of a mesh in a model.
#pragma once

#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>

namespace QXC {

/// Places one mesh of a model. A mesh that stands in several places has one node for each, so that its vertices
/// are held once.
struct QXModelNode {
  QdcUnicodeString m_strName;
  /// Index of the mesh in its model.
  int m_nMesh = 0;
  /// From the mesh's frame to the model's, for row vectors. In double: the offset of a mesh with map coordinates
  /// stands here and not in the float positions.
  QXMatrix4d m_matWorld;
};

}  // namespace QXC
