#include <QxGraphics3D/model/QXHwInstancingManager.h>

namespace QXC {

QXHwInstancingManager::QXHwInstancingManager() = default;
QXHwInstancingManager::QXHwInstancingManager(QXHwInstancingManager const&) = default;
QXHwInstancingManager& QXHwInstancingManager::operator=(QXHwInstancingManager const&) = default;
QXHwInstancingManager::~QXHwInstancingManager() = default;

}  // namespace QXC
