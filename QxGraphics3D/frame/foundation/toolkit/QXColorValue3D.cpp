#include <QxGraphics3D/frame/foundation/toolkit/QXColorValue3D.h>

namespace QXC {

// Constant-initialised: static objects of other files and of plug-ins copy them before main.
constexpr QXColorValue3D QXColorValue3D::White{1.0, 1.0, 1.0, 1.0};
constexpr QXColorValue3D QXColorValue3D::Black{0.0, 0.0, 0.0, 1.0};

}  // namespace QXC
