#include <QxGraphics3D/renderop/QXQueryOperation3D.h>

namespace QXC {

// Nothing is held here: the bodies stand in the library so that all modules share one virtual table.
QXQueryOperation3D::QXQueryOperation3D() = default;
QXQueryOperation3D::QXQueryOperation3D(QXQueryOperation3D const&) = default;
QXQueryOperation3D& QXQueryOperation3D::operator=(QXQueryOperation3D const&) = default;
QXQueryOperation3D::~QXQueryOperation3D() = default;

}  // namespace QXC
