/// @file
/// Arrays in the byte order of files, on machines that have the other one.
#pragma once

#include <QxGraphics3D/frame/foundation/base/QdcByteOrder.h>

#include <algorithm>
#include <cstddef>

namespace QXC::detail {

/// Turns the bytes of each element round.
template <class T>
void SwapArray(T* pValues, std::size_t nCount) {
  for (std::size_t i = 0; i < nCount; ++i) pValues[i] = QDC::qdcswapbytes(pValues[i]);
}

/// Hands copies with their bytes turned round to a writer, piece by piece: the caller's array is not to be changed and
/// a copy of all of it is not to be made. write(T const*, std::size_t).
template <class T, class Write>
void ForEachSwapped(T const* pValues, std::size_t nCount, Write write) {
  constexpr std::size_t PieceSize = 512;
  T piece[PieceSize];
  for (std::size_t nDone = 0; nDone < nCount;) {
    std::size_t const nPart = std::min(nCount - nDone, PieceSize);
    std::copy_n(pValues + nDone, nPart, piece);
    SwapArray(piece, nPart);
    write(piece, nPart);
    nDone += nPart;
  }
}

}  // namespace QXC::detail
