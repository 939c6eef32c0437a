#include <QxGraphics3D/renderop/TextureVertex.h>

namespace QXC {

// Out of line, so that the virtual table stands in the library alone.
TextureVertex::~TextureVertex() = default;

}  // namespace QXC
