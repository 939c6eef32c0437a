/// @file
/// Vertex packages in streams.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVertexDataPackage.h>

namespace QXC {

class QXStream;

// Two layouts. The plain one is what buckets of static geometry hold: positions, normals, colours and texture
// coordinates as they lie in memory. The wide one has padding that keeps numbers at multiples of four, colours as four
// floats each and secondary colours; doc/staticgeometry.md has both byte by byte. In both, tangents, binormals,
// identifiers, weights, extra declarations and attributes are left out.
//
// A package that comes back as it was has its count 0 wherever the array is null, and one of these dimensions: position
// and normal equal and below 5, or different with neither 0, the position below 16 and the normal below 256. Units
// behind the first without coordinates are lost.

/// Reads a package. Arrays that the layout has replace those in the package, which are freed; the others stay.
/// @param bWide  0: plain layout; else wide
/// @return 1, or 0 when the stream ends or is bad before the package is whole, when a count is beyond what the stream
///         still holds, when items have no numbers, when there are more than 8 units, or when memory runs out. Arrays
///         that were read before stay in the package, which can be used and destroyed.
/// Cost: one call of the stream an array, into memory that is not filled before; wide colours in blocks of 128.
QXGRAPHICS3D_API unsigned char LoadVertexPackage(QXVertexDataPackage& package, QXStream& stream, unsigned char bWide);
/// The same; 0 for a null package.
QXGRAPHICS3D_API unsigned char LoadVertexPackage(QXVertexDataPackage* pPackage, QXStream& stream, unsigned char bWide);

/// Writes a package. A unit without coordinates, by its count or for want of an array, ends the units. Another count
/// without an array is written as it stands, and a reader then takes what follows for the array: use 0.
/// @param bWide  0: plain layout; else wide
QXGRAPHICS3D_API void SaveVertexPackage(QXVertexDataPackage const& package, QXStream& stream, unsigned char bWide);
/// The same; a null package writes nothing.
QXGRAPHICS3D_API void SaveVertexPackage(QXVertexDataPackage const* pPackage, QXStream& stream, unsigned char bWide);

/// Bytes to reserve for the package in the plain layout. At least 4 more than is written: the secondary colours count,
/// and tangents and binormals where there are some, though the plain layout has none. Hosts reserve by this number, so
/// it stays. What is beyond an int becomes the greatest int.
QXGRAPHICS3D_API int GetVertexPackageSize(QXVertexDataPackage const& package);
/// The same; 0 for a null package.
QXGRAPHICS3D_API int GetVertexPackageSize(QXVertexDataPackage const* pPackage);

}  // namespace QXC
