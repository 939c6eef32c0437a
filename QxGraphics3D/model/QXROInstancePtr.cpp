#include <QxGraphics3D/model/QXROInstancePtr.h>

namespace QXC {

QXROInstancePtr::QXROInstancePtr() = default;

QXROInstancePtr::QXROInstancePtr(QXRenderObjectInstance* pInstance) {
  Bind(pInstance);
}

QXROInstancePtr::QXROInstancePtr(QXROInstancePtr const& other) = default;
QXROInstancePtr::QXROInstancePtr(QXROInstancePtr&& other) noexcept = default;
QXROInstancePtr::~QXROInstancePtr() = default;
QXROInstancePtr& QXROInstancePtr::operator=(QXROInstancePtr const& other) = default;
QXROInstancePtr& QXROInstancePtr::operator=(QXROInstancePtr&& other) noexcept = default;

void QXROInstancePtr::Bind(QXRenderObjectInstance* pInstance) {
  if (pInstance) {
    BindRemembered(pInstance, pInstance->m_pUseCount);
  } else {
    SetNull();
  }
}

}  // namespace QXC
