/// @file
/// One vertex with the texture coordinates of one unit.
#pragma once

#include <QxGraphics3D/Export.h>

namespace QXC {

/// Position and unit-0 texture coordinates, in double precision until a setter stores them.
class QXGRAPHICS3D_API TextureVertex {
public:
  TextureVertex() = default;
  TextureVertex(TextureVertex const&) = default;
  TextureVertex& operator=(TextureVertex const&) = default;
  virtual ~TextureVertex();

  double x = 0.0;
  double y = 0.0;
  double z = 0.0;
  double u = 0.0;
  double v = 0.0;
};

}  // namespace QXC
