/// @file
/// Whole files in memory, read with the care that files of strangers need.
#pragma once

#include <QxGraphics3D/Platform.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

namespace QXC::detail {

/// Why a file was not read.
enum class QXFileProblem {
  None,
  Missing,
  Forbidden,
  Folder,
  /// A pipe would wait for its other end, a device has no end.
  NotRegular,
  TooLarge,
  /// The file ended before the length that it had when it was opened.
  Shrunk,
  NoMemory,
  Other
};

/// Most bytes of a file: lengths are carried in 32 bits.
constexpr QXUInt64 MaxWholeFile = 0xFFFFFFFFu;

/// Reads a regular file whole. Nothing is raised.
/// @param nSize     gets the length; 0 if the result is null
/// @param pProblem  may be null; gets the reason
/// @return  a new block of unsigned char[] that the caller deletes; an empty file gives a block too. Null on any failure
unsigned char* ReadWholeFile(QdcUnicodeString const& strPath, QXUInt64& nSize, QXFileProblem* pProblem = nullptr);

/// Reads from an open file until nSize bytes are there, whatever pieces they come in.
/// @return  None; Shrunk if the file ends before; Other if reading fails
QXFileProblem ReadExactly(int nHandle, unsigned char* pBytes, QXUInt64 nSize);

}  // namespace QXC::detail
