#include <QxGraphics3D/frame/foundation/base3d/QXAnimationKey.h>

template class QDC::QdcArray<QXC::QXAnimationKey>;
template class QDC::QdcArray<QXC::QXAnimationKey*>;

namespace QXC {

QXAnimationKey::QXAnimationKey() = default;
QXAnimationKey::QXAnimationKey(QXAnimationKey const& other) = default;
QXAnimationKey& QXAnimationKey::operator=(QXAnimationKey const& other) = default;
QXAnimationKey::~QXAnimationKey() = default;

unsigned char QXAnimationKey::Load(QXStream&) {
  return 1;
}

void QXAnimationKey::Save(QXStream&) {}

}  // namespace QXC
