#include <QxGraphics3D/model/QXModelDataPtr.h>

namespace QXC {

QXModelDataPtr::QXModelDataPtr() = default;

QXModelDataPtr::QXModelDataPtr(QXModelData* pModelData) {
  Bind(pModelData);
}

QXModelDataPtr::QXModelDataPtr(QXModelDataPtr const& other) = default;
QXModelDataPtr::QXModelDataPtr(QXModelDataPtr&& other) noexcept = default;
QXModelDataPtr::~QXModelDataPtr() = default;
QXModelDataPtr& QXModelDataPtr::operator=(QXModelDataPtr const& other) = default;
QXModelDataPtr& QXModelDataPtr::operator=(QXModelDataPtr&& other) noexcept = default;

void QXModelDataPtr::Bind(QXModelData* pModelData) {
  if (pModelData) {
    BindRemembered(pModelData, pModelData->m_pUseCount);
  } else {
    SetNull();
  }
}

}  // namespace QXC
