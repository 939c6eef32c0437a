#include <QxGraphics3D/renderop/QXRenderOperationSet.h>

namespace QXC {

QXRenderOperationSet::QXRenderOperationSet() = default;
QXRenderOperationSet::QXRenderOperationSet(QXRenderOperationSet const& other) = default;
QXRenderOperationSet& QXRenderOperationSet::operator=(QXRenderOperationSet const& other) = default;
// The array's own destruction gives its storage back; the operations stay the host's.
QXRenderOperationSet::~QXRenderOperationSet() = default;

}  // namespace QXC
