/// @file
/// Sizes in streams before they are cut to what an int holds.
#pragma once

#include <QxGraphics3D/Platform.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVertexDataPackage.h>

namespace QXC {
struct QXStaticGeometryBucket;
}

namespace QXC::detail {

/// What GetVertexPackageSize returns, however large.
QXInt64 GetVertexPackageBytes(QXVertexDataPackage const& package);

/// What QXStaticGeometryBucket::GetDataSize returns, however large.
QXInt64 GetBucketBytes(QXStaticGeometryBucket const& bucket);

}  // namespace QXC::detail
