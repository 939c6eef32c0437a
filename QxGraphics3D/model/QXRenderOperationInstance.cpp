#include <QxGraphics3D/model/QXRenderOperationInstance.h>

namespace QXC {

QXRenderOperationInstance::QXRenderOperationInstance() = default;
QXRenderOperationInstance::QXRenderOperationInstance(QXRenderOperationInstance const&) = default;
QXRenderOperationInstance& QXRenderOperationInstance::operator=(QXRenderOperationInstance const&) = default;
QXRenderOperationInstance::~QXRenderOperationInstance() = default;

}  // namespace QXC
