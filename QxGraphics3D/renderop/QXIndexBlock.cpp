#include <QxGraphics3D/renderop/QXIndexBlock.h>

#include <QxGraphics3D/frame/foundation/base3d/detail/QXIndexArray.h>

namespace QXC {

QXIndexBlock::~QXIndexBlock() {
  if (m_bBufferOwned) detail::FreeIndexArray(m_pBuffer, m_nIndexType);
}

}  // namespace QXC
