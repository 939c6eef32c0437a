/// @file
/// The merge of static geometry as it is told, step by step, with no thought of speed.
#pragma once

#include <QxGraphics3D/staticgeometry/QXStaticGeometry.h>

#include <string>

namespace QXC {

/// What QXStaticGeometry::AssignStaticGeometry must give, to the bit.
void MergeByReference(QXStaticGeometry& geometry, QXMatrix4d const& matBase, unsigned char bNoTransform);

/// Compares all that a merge makes and tells the first difference; empty for none. Results that are not numbers are
/// equal whatever their bits.
std::string CompareMerged(QXStaticGeometry const& a, QXStaticGeometry const& b);

}  // namespace QXC
