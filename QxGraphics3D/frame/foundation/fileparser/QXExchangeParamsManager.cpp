#include <QxGraphics3D/frame/foundation/fileparser/QXExchangeParamsManager.h>

#include <QxGraphics3D/frame/foundation/fileparser/QXImportParams.h>

#include <memory>

namespace QXC {

QXImportParams* QXExchangeParamsManager::MakeImportParams(int nType, QdcUnicodeString strText) {
  if (nType < 0) return nullptr;
  auto pParams = std::make_unique<QXImportParams>();
  pParams->SetFileType(nType);
  pParams->SetText(strText);
  return pParams.release();
}

}  // namespace QXC
