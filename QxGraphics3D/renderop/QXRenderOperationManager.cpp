#include <QxGraphics3D/renderop/QXRenderOperationManager.h>

namespace QXC {

// Nothing is held here: the bodies stand in the library so that all modules share one virtual table.
QXRenderOperationManager::QXRenderOperationManager() = default;
QXRenderOperationManager::QXRenderOperationManager(QXRenderOperationManager const&) = default;
QXRenderOperationManager& QXRenderOperationManager::operator=(QXRenderOperationManager const&) = default;
QXRenderOperationManager::~QXRenderOperationManager() = default;

}  // namespace QXC
