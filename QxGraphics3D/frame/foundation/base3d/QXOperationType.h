/// @file
/// How a renderer joins the entries of an index range into points, lines and triangles.
#pragma once

namespace QXC {

/// Primitive of an index range. The numbers are persisted with index packages and compared by value (2 marks
/// line meshes when static geometry is gathered), so they never change; an unknown value is kept and passed on.
enum QXOperationType : int {
  QX_OPERATION_POINT_LIST = 1,
  QX_OPERATION_LINE_LIST = 2,
  QX_OPERATION_LINE_STRIP = 3,
  QX_OPERATION_TRIANGLE_LIST = 4,
  QX_OPERATION_TRIANGLE_STRIP = 5,
  QX_OPERATION_TRIANGLE_FAN = 6
};

}  // namespace QXC
