/// @file
/// Texture coordinates of a multi-index operation.
#pragma once

#include <QxGraphics3D/Export.h>

namespace QXC {

/// Up to 8 sets of texture coordinates over one vertex block, one buffer a set.
/// Shape:     set i is m_nCounts[i] entries, m_nStrides[i] floats apart, of m_nDims[i] floats each; a stride of 0
///            means that they stand without gaps.
/// Ownership: a buffer is `new float[]` and is freed with the block only if its byte in m_bBuffersOwned is set,
///            so that several drawables can share one set.
class QXGRAPHICS3D_API QXTexCoordBlock {
public:
  static constexpr unsigned int UnitNum = 8;

  QXTexCoordBlock() = default;
  ~QXTexCoordBlock();

  QXTexCoordBlock(QXTexCoordBlock const&) = delete;
  QXTexCoordBlock& operator=(QXTexCoordBlock const&) = delete;

  float* m_pBuffers[UnitNum] = {};
  unsigned short m_nDims[UnitNum] = {2, 2, 2, 2, 2, 2, 2, 2};
  unsigned short m_nStrides[UnitNum] = {};
  unsigned int m_nCounts[UnitNum] = {};
  unsigned char m_bBuffersOwned[UnitNum] = {1, 1, 1, 1, 1, 1, 1, 1};
};

}  // namespace QXC
