#include <QxGraphics3D/frame/QXPluginImageOperator.h>

int QXPluginImageOperator::GetExtNameCount() const {
  return 1;
}
