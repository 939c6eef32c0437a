#include <QxGraphics3D/frame/foundation/fileparser/QXExchangeParams.h>

#include <QxGraphics3D/frame/foundation/fileparser/QXImportParams.h>

namespace QXC {

// Out of line, so that the virtual tables stand in the library once and not in every module.
QXExchangeParams::~QXExchangeParams() = default;
QXImportParams::~QXImportParams() = default;

}  // namespace QXC
