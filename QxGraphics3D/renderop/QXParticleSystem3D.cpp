#include <QxGraphics3D/renderop/QXParticleSystem3D.h>

namespace QXC {

// Nothing is held here: the bodies stand in the library so that all modules share one virtual table.
QXParticleSystem3D::QXParticleSystem3D() = default;
QXParticleSystem3D::~QXParticleSystem3D() = default;

}  // namespace QXC
