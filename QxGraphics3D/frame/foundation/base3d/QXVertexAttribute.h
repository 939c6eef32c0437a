/// @file
/// A named list of floats, one entry a vertex, beside the fixed arrays of a vertex package.
#pragma once

#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

#include <vector>

namespace QXC {

/// Extra per-vertex values under a name that a vertex program knows.
struct QXVertexAttribute {
  QdcUnicodeString m_strName;
  /// Floats a vertex.
  unsigned short m_nDim = 1;
  /// Vertex count times m_nDim values.
  std::vector<float> m_vecValues;
};

}  // namespace QXC
