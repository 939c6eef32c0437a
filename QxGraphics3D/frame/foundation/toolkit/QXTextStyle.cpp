#include <QxGraphics3D/frame/foundation/toolkit/QXTextStyle.h>

namespace QXC {

QXTextStyle::QXTextStyle() = default;
QXTextStyle::QXTextStyle(QXTextStyle const& other) = default;
QXTextStyle& QXTextStyle::operator=(QXTextStyle const& other) = default;
QXTextStyle::~QXTextStyle() = default;

}  // namespace QXC
