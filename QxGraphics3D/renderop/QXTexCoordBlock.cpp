#include <QxGraphics3D/renderop/QXTexCoordBlock.h>

namespace QXC {

QXTexCoordBlock::~QXTexCoordBlock() {
  for (unsigned int unit = 0; unit < UnitNum; ++unit) {
    if (m_bBuffersOwned[unit]) delete[] m_pBuffers[unit];
  }
}

}  // namespace QXC
