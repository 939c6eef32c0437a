/// @file
/// Reading one bucket under a budget that it shares with its neighbours.
#pragma once

#include <QxGraphics3D/staticgeometry/detail/QXLoadBudget.h>

namespace QXC {
struct QXStaticGeometryBucket;
}

namespace QXC::detail {

/// QXStaticGeometryBucket::Load, but for the allocator's exceptions, which pass.
bool ReadBucket(QXStaticGeometryBucket& bucket, QXStream& stream, double dVersion, QXLoadBudget& budget);

}  // namespace QXC::detail
