#include <QxGraphics3D/frame/QXUniformBuffer.h>

namespace QXC {

QXUniformBuffer::~QXUniformBuffer() {}

void QXUniformBuffer::AddUniformDefinition(QdcUnicodeString const&, unsigned int, unsigned int) {}

void QXUniformBuffer::Initialize() {}

}  // namespace QXC
