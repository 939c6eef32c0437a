#include <QxGraphics3D/frame/foundation/toolkit/QXImageOperator.h>

namespace QXC {

int QXImageOperator::DecodeKTX2(QdcUnicodeString const& /*path*/, int /*nOption*/, unsigned char** pData,
    int& /*nWidth*/, int& /*nHeight*/, int& /*nIgnored*/, int& /*nMipCount*/, int& /*nKind*/, int& /*nFormat*/) {
  if (pData != nullptr) *pData = nullptr;
  return 0;
}

}  // namespace QXC
