#include <QxGraphics3D/renderop/QXRenderOperationOverlay.h>

namespace QXC {

// Nothing is held here: the bodies stand in the library so that all modules share one virtual table.
QXRenderOperationOverlay::QXRenderOperationOverlay() = default;
QXRenderOperationOverlay::QXRenderOperationOverlay(QXRenderOperationOverlay const&) = default;
QXRenderOperationOverlay& QXRenderOperationOverlay::operator=(QXRenderOperationOverlay const&) = default;
QXRenderOperationOverlay::~QXRenderOperationOverlay() = default;

}  // namespace QXC
