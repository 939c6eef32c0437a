/// @file
/// Pieces that several records have in a stream.
#pragma once

#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>
#include <QxGraphics3D/frame/foundation/stream/QXStream.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXColorValue3D.h>

namespace QXC::detail {

/// Bytes of a matrix, and of a colour.
constexpr int MatrixSize = 16 * 8;
constexpr int ColourSize = 4 * 8;

/// Reads a count of elements of at least nLeastSize bytes each. A count that the rest of the stream cannot fill, or a
/// negative one, fails the stream where the count stands, before anything is allocated for it.
/// @return  0 if the stream failed, now or before
unsigned char LoadCount(QXStream& stream, int& nCount, unsigned int nLeastSize);

/// The size that a record tells its callers: 2 GiB - 1 for what is longer, instead of a negative number.
int ToDataSize(QXInt64 nBytes);

/// Sixteen doubles, row after row.
void LoadMatrix(QXStream& stream, QXMatrix4d& matrix);
void SaveMatrix(QXStream& stream, QXMatrix4d const& matrix);

/// Red, green, blue and alpha as doubles.
void LoadColour(QXStream& stream, QXColorValue3D& colour);
void SaveColour(QXStream& stream, QXColorValue3D const& colour);

}  // namespace QXC::detail
