/// @file
/// Tells the forms of CPU geometry apart that share QXRenderOperationBase.
#pragma once

namespace QXC {

/// Form of a QXRenderOperationBase. A renderer looks at it before it casts; an unknown value is kept.
enum QXRenderOperationType : int {
  /// The common header alone.
  QX_RENDER_OPERATION_SINGLE = 1,
  /// QXRenderOperationMultiIndex.
  QX_RENDER_OPERATION_MULTI_INDEX = 2
};

}  // namespace QXC
