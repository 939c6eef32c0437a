/// @file
/// The one index range of a render operation that has no list of them.
#pragma once

#include <QxGraphics3D/Export.h>

namespace QXC {

/// Indices over the whole vertex block.
/// Ownership: the buffer is `new unsigned short[]` or `new unsigned int[]` as m_nIndexType says, and is freed
///            with the block only if m_bBufferOwned is set.
class QXGRAPHICS3D_API QXIndexBlock {
public:
  QXIndexBlock() = default;
  ~QXIndexBlock();

  QXIndexBlock(QXIndexBlock const&) = delete;
  QXIndexBlock& operator=(QXIndexBlock const&) = delete;

  void* m_pBuffer = nullptr;
  unsigned int m_nIndexNum = 0;
  /// 0: 16-bit entries, 1: 32-bit entries.
  int m_nIndexType = 0;
  unsigned char m_bBufferOwned = 1;
};

}  // namespace QXC
