/// @file
/// Selection and colour of single objects inside one batched drawable.
#pragma once

#include <QxGraphics3D/Export.h>

#include <map>

namespace QXC {

/// What a host changes on single objects of a batch without rebuilding it, by the object's identifier.
struct QXGRAPHICS3D_API QXBatchSelAndVertexColor {
  QXBatchSelAndVertexColor();
  QXBatchSelAndVertexColor(QXBatchSelAndVertexColor const& other);
  QXBatchSelAndVertexColor(QXBatchSelAndVertexColor&& other) noexcept;
  QXBatchSelAndVertexColor& operator=(QXBatchSelAndVertexColor const& other);
  QXBatchSelAndVertexColor& operator=(QXBatchSelAndVertexColor&& other) noexcept;
  ~QXBatchSelAndVertexColor();

  /// 1: selected. Objects that are not named keep their state.
  std::map<unsigned int, unsigned char> m_mapSelections;
  /// QDCRGBA word that replaces the vertex colours of the object.
  std::map<unsigned int, unsigned int> m_mapVertexColors;
};

}  // namespace QXC
