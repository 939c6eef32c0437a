#include <QxGraphics3D/renderop/QXBillboard.h>

namespace QXC {

// Nothing is held here: the bodies stand in the library so that all modules share one virtual table.
QXBillboard::QXBillboard() = default;
QXBillboard::QXBillboard(QXBillboard const&) = default;
QXBillboard& QXBillboard::operator=(QXBillboard const&) = default;
QXBillboard::~QXBillboard() = default;

}  // namespace QXC
