#include <QxGraphics3D/texture/detail/QXLoadSource.h>

#include <QxGraphics3D/frame/foundation/base3d/detail/QXPixelBlock.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXExchangeParamsManager.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseToolkit.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXImportParams.h>

namespace QXC::detail {

std::unique_ptr<QXImportParams> MakeLoadParams(int nType, QdcUnicodeString const& strPath) {
  std::unique_ptr<QXImportParams> pParams(QXExchangeParamsManager::MakeImportParams(nType, QdcUnicodeString()));
  if (pParams != nullptr) pParams->SetFilePathName(strPath);
  return pParams;
}

std::unique_ptr<unsigned char[]> NewTextureBlock(unsigned int nWidth, unsigned int nHeight, unsigned int nPixelSize) {
  QXUInt64 const nPixels = QXUInt64{nWidth} * nHeight;
  if (nPixels == 0 || nPixels / 4 > QXFileParseToolkit::GetImageMaxBytes() / nPixelSize) return nullptr;
  return std::unique_ptr<unsigned char[]>(NewPixelBlock(nPixels * nPixelSize));
}

}  // namespace QXC::detail
