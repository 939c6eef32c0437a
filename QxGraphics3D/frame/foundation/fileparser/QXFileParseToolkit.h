/// @file
/// What callers ask about files and images without holding a parser.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/Platform.h>
#include <QxGraphics3D/frame/foundation/base/QdcArray.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

namespace QXC {

struct QXImageData;
class QXGeoPicture;
class QXImportParams;

/// Image files in one call. Images and pictures that are handed out are the caller's, blocks (new unsigned char[])
/// and records; an array grows only where the result is 1.
/// Threads: any number at once.
class QXGRAPHICS3D_API QXFileParseToolkit {
public:
  /// File type of a path by its extension, -1 for an unknown or missing one. The file is not looked at; a dot in
  /// a folder's name or at the start of a file's name begins no extension.
  static int GetFileTypeByExtName(QdcUnicodeString strPath);

  /// File type by what a file begins with, -1 if it is none that is known that way. Models are not.
  /// @param pBytes  the file or at least its first 64 bytes; null counts as nothing
  static int GetFileTypeByContent(unsigned char const* pBytes, QXUInt64 nSize);

  /// Reads the images of a file with the parser of its type. A file whose bytes are of another type than its extension
  /// says is a failure: nothing is guessed.
  /// @param pParams  borrowed; path and type are read from them. Null is a failure
  /// @param bFlag    handed to the parser
  /// @param nIndex   handed to the parser; -1: the image that stands for the file
  /// @return  1, even where the parser found no image; 0 with the reason in GetErrorText
  /// What a registered parser raises passes through; its object and its images are gone by then.
  static unsigned char GetImageData(
      QXImportParams* pParams, QdcArray<QXImageData*>& arrImages, unsigned char bFlag, int nIndex);

  /// The same for bytes in memory, whose type their beginning tells. Nothing is raised.
  static unsigned char GetImageDataFromMemory(
      unsigned char const* pBytes, QXUInt64 nSize, QdcArray<QXImageData*>& arrImages);

  /// Reads the frames of an animated file; the type is that of the extension. Nothing is raised.
  /// @param bFlip  1: the rows of every frame from bottom to top, centre points as they are
  static unsigned char GetDynamicIMGData(
      QdcUnicodeString const& strPath, QdcArray<QXGeoPicture*>& arrPictures, unsigned char bFlip);

  /// The same for bytes in memory, whose type their beginning tells.
  static unsigned char GetDynamicIMGDataFromMemory(
      unsigned char const* pBytes, QXUInt64 nSize, QdcArray<QXGeoPicture*>& arrPictures, unsigned char bFlip);

  /// Why the calling thread's last operation above gave 0: one line without the path. Empty after a success. Valid
  /// until the thread's next call or its end.
  static QdcUnicodeString const& GetErrorText();

  /// Sets what the library's readers refuse before they allocate anything: images with an edge of more pixels
  /// (65,536 at first) or with more bytes when decoded (1 GiB at first; all frames of an animation together). Counts
  /// from the next file on, for all threads.
  static void SetImageLimits(unsigned int nMaxEdge, QXUInt64 nMaxBytes);
  static unsigned int GetImageMaxEdge();
  static QXUInt64 GetImageMaxBytes();
};

}  // namespace QXC
