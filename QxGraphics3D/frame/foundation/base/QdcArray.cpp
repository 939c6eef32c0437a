#include <QxGraphics3D/frame/foundation/base/QdcArray.h>

#include <stdexcept>

namespace QDC {

void QdcThrowInvalidSubscript() {
  throw std::out_of_range("invalid vector<T> subscript");
}

}  // namespace QDC
