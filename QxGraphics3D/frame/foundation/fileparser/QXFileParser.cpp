#include <QxGraphics3D/frame/foundation/fileparser/QXFileParser.h>

namespace QXC {

QXFileParser::~QXFileParser() = default;

}  // namespace QXC
