#include <QxGraphics3D/texture/QXTextureMemoryManager.h>

namespace QXC {

QXTextureMemoryManager::QXTextureMemoryManager() = default;
QXTextureMemoryManager::~QXTextureMemoryManager() = default;

}  // namespace QXC
