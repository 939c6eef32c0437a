#include <QxGraphics3D/renderop/QXVertexIndexPackage.h>

#include <QxGraphics3D/frame/foundation/base3d/detail/QXIndexArray.h>

namespace QXC {

QXVertexIndexPackage::~QXVertexIndexPackage() {
  if (m_bBufferOwned) detail::FreeIndexArray(m_pIndices, m_nIndexType);
}

}  // namespace QXC
