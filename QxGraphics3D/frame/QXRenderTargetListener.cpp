#include <QxGraphics3D/frame/QXRenderTargetListener.h>

namespace QXC {

void QXRenderTargetListener::BeforeRender() {}
void QXRenderTargetListener::PostRender() {}

}  // namespace QXC
