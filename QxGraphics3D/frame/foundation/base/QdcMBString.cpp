#include <QxGraphics3D/frame/foundation/base/QdcMBString.h>

namespace QDC {

QdcMBString::QdcMBString() = default;

QdcMBString::QdcMBString(char const* szText) : m_strText(szText ? szText : "") {}

}  // namespace QDC
