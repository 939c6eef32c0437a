#include <QxGraphics3D/renderop/QXVertexBlock.h>

namespace QXC {

QXVertexBlock::~QXVertexBlock() {
  delete[] m_pBuffer;
}

}  // namespace QXC
