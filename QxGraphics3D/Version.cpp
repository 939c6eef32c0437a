#include <QxGraphics3D/Version.h>

namespace QXC {

char const* GetLibraryVersion() {
  return QXGRAPHICS3D_VERSION;
}

}  // namespace QXC
