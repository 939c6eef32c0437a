#include <QxGraphics3D/renderop/QXRenderOperation3D.h>

namespace QXC {

// Nothing is held here: the bodies stand in the library so that all modules share one virtual table.
QXRenderOperation3D::QXRenderOperation3D() = default;
QXRenderOperation3D::QXRenderOperation3D(QdcUnicodeString const&) {}
QXRenderOperation3D::QXRenderOperation3D(QXRenderOperation3D const&) = default;
QXRenderOperation3D& QXRenderOperation3D::operator=(QXRenderOperation3D const&) = default;
QXRenderOperation3D::~QXRenderOperation3D() = default;

void QXRenderOperation3D::SetRenderStatePass(RenderStateSet, QXPass&) {}

void QXRenderOperation3D::SetMaterialSystemType(QXMaterialSystemType) {}

}  // namespace QXC
