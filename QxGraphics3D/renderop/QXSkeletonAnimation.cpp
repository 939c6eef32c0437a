#include <QxGraphics3D/renderop/QXSkeletonAnimation.h>

namespace QXC {

// Nothing is held here: the bodies stand in the library so that all modules share one virtual table.
QXSkeletonAnimation::QXSkeletonAnimation() = default;
QXSkeletonAnimation::QXSkeletonAnimation(QXSkeletonAnimation const&) = default;
QXSkeletonAnimation& QXSkeletonAnimation::operator=(QXSkeletonAnimation const&) = default;
QXSkeletonAnimation::~QXSkeletonAnimation() = default;

}  // namespace QXC
