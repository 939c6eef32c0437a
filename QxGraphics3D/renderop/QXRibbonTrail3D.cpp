#include <QxGraphics3D/renderop/QXRibbonTrail3D.h>

namespace QXC {

// Nothing is held here: the bodies stand in the library so that all modules share one virtual table.
QXRibbonTrail3D::QXRibbonTrail3D() = default;
QXRibbonTrail3D::QXRibbonTrail3D(
    QdcUnicodeString const&, QdcUnicodeString const&, QdcUnicodeString const&, QXTextureManager*) {}
QXRibbonTrail3D::QXRibbonTrail3D(QXRibbonTrail3D const&) = default;
QXRibbonTrail3D& QXRibbonTrail3D::operator=(QXRibbonTrail3D const&) = default;
QXRibbonTrail3D::~QXRibbonTrail3D() = default;

}  // namespace QXC
