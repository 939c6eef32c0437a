/// @file
/// Interleaved vertices of a render operation.
#pragma once

#include <QxGraphics3D/Export.h>

namespace QXC {

/// Positions, normals and colours of one drawable, interleaved in one float buffer.
/// Shape:     m_nVertexCount vertices of m_nStride floats; an element stands at its offset inside each vertex.
/// Ownership: the buffer is `new float[]` and is always freed with the block.
class QXGRAPHICS3D_API QXVertexBlock {
public:
  QXVertexBlock() = default;
  ~QXVertexBlock();

  QXVertexBlock(QXVertexBlock const&) = delete;
  QXVertexBlock& operator=(QXVertexBlock const&) = delete;

  float* m_pBuffer = nullptr;
  unsigned int m_nVertexCount = 0;
  /// Floats a vertex.
  unsigned short m_nStride = 0;
  /// Offsets in floats, -1 where the element is absent. Positions and normals are three floats. A colour is one
  /// QDCRGBA word copied bit by bit into one float slot: read it back the same way, never as a number.
  short m_nPositionOffset = 0;
  short m_nNormalOffset = -1;
  short m_nColorOffset = -1;
};

}  // namespace QXC
