#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseModel.h>

#include <QxGraphics3D/frame/foundation/fileparser/ModelDataInfo.h>

#include <utility>

namespace QXC {

QXFileParseModel::~QXFileParseModel() {
  delete m_pModelDataInfo;
}

ModelDataInfo* QXFileParseModel::GetModelDataInfo() {
  return std::exchange(m_pModelDataInfo, nullptr);
}

void QXFileParseModel::SetModelDataInfo(ModelDataInfo* pModelDataInfo) {
  if (pModelDataInfo == m_pModelDataInfo) return;
  delete m_pModelDataInfo;
  m_pModelDataInfo = pModelDataInfo;
}

}  // namespace QXC
