#include <QxGraphics3D/atlas/QXTextureImageManagerEx.h>

namespace QXC {

template class QXSingleton<QXTextureImageManagerEx>;

QXTextureImageManagerEx::QXTextureImageManagerEx() = default;
QXTextureImageManagerEx::~QXTextureImageManagerEx() = default;

QXTextureImageManagerEx& QXTextureImageManagerEx::GetSingleton() {
  return *GetSingletonPtr();
}

QXTextureImageManagerEx* QXTextureImageManagerEx::GetSingletonPtr() {
  if (!ms_pSingleton) ms_pSingleton = new QXTextureImageManagerEx;
  return ms_pSingleton;
}

void QXTextureImageManagerEx::Clear() {}

}  // namespace QXC
