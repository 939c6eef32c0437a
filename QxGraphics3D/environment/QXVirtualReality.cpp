#include <QxGraphics3D/environment/QXVirtualReality.h>

namespace QXC {

QXVirtualReality::~QXVirtualReality() = default;

}  // namespace QXC
