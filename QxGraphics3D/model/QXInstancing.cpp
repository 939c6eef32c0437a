#include <QxGraphics3D/model/QXInstancing.h>

namespace QXC {

QXInstancing::QXInstancing() = default;
QXInstancing::QXInstancing(QXInstancing const&) = default;
QXInstancing& QXInstancing::operator=(QXInstancing const&) = default;
QXInstancing::~QXInstancing() = default;

void QXInstancing::SetVisible(unsigned char) {}

}  // namespace QXC
