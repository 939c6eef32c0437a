#include <QxGraphics3D/model/QXModelData.h>

#include <QxGraphics3D/frame/foundation/fileparser/ModelDataInfo.h>
#include <QxGraphics3D/model/QXModelManager.h>

#include <memory>
#include <utility>

namespace QXC {

QXModelData::QXModelData() = default;

QXModelData::QXModelData(QXModelManager* pModelManager, ModelDataInfo* pModelDataInfo)
    : m_pModelDataInfo(pModelDataInfo) {
  SetModelManager(pModelManager);
}

QXModelData::QXModelData(QXModelData const& other) {
  CopyInfo(other);
  SetModelManager(other.m_pModelManager);
}

QXModelData& QXModelData::operator=(QXModelData const& other) {
  if (this == &other) return *this;
  CopyInfo(other);
  SetModelManager(other.m_pModelManager);
  return *this;
}

QXModelData::~QXModelData() {
  Release();
}

void QXModelData::CopyInfo(QXModelData const& other) {
  if (!other.m_pModelDataInfo) return;
  if (m_pModelDataInfo) {
    *m_pModelDataInfo = *other.m_pModelDataInfo;
  } else {
    m_pModelDataInfo = new ModelDataInfo(*other.m_pModelDataInfo);
  }
}

void QXModelData::SetModelDataInfo(ModelDataInfo* pModelDataInfo) {
  if (pModelDataInfo == m_pModelDataInfo) return;
  delete std::exchange(m_pModelDataInfo, pModelDataInfo);
}

void QXModelData::SetModelManager(QXModelManager* pModelManager) {
  m_pModelManager = pModelManager;
  if (pModelManager == m_pListedIn) return;
  if (m_pListedIn) m_pListedIn->Unlist(*this);
  m_pListedIn = pModelManager;
  if (m_pListedIn) m_pListedIn->List(*this);
}

void QXModelData::Release() {
  // Held until the end: the cache may have the only pointer to this object.
  QXModelDataPtr pEntry;
  if (m_pModelManager) {
    if (m_pModelDataInfo) pEntry = m_pModelManager->GetByFileName(m_pModelDataInfo->GetName());
    m_pModelManager->NotifyModelManager(this);
  }
  SetModelManager(nullptr);
  delete std::exchange(m_pModelDataInfo, nullptr);
}

}  // namespace QXC
