/// @file
/// Names and listings of files.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcArray.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

namespace QXC {

/// Questions about paths and folders. Paths separate their parts with '/'; the file system gets them as UTF-8.
/// Threads: any number at once; nothing is kept between calls.
class QXGRAPHICS3D_API QXFile {
public:
  /// ListFiles goes into sub-folders.
  static constexpr int LIST_SUB_FOLDERS = 128;

  /// Extension of a path with its dot: ".png". Empty where there is none; a dot in a folder's name or at the start of
  /// a file's name begins no extension.
  static QdcUnicodeString GetExt(QdcUnicodeString const& strPath);

  /// The path without what GetExt gives.
  static QdcUnicodeString StripExt(QdcUnicodeString const& strPath);

  /// 1 if there is a file at the path, of whatever kind but a folder. A path that ends in ".|temp" names the file
  /// without that ending: callers mark pictures that way which they are going to delete.
  static unsigned char IsExist(QdcUnicodeString const& strPath);

  /// Appends the regular files of a folder whose names match a filter.
  /// @param strFolder  the folder, with or without a '/' at its end
  /// @param arrFiles   gets the paths relative to the folder; earlier elements stay, before the new ones. The new ones
  ///                   are sorted by the path without its extension and then by the whole path, in the order of the
  ///                   character codes, so that the order is the same on every machine
  /// @param strFilter  the name, '*' for any characters and '?' for one, letters without case: "*.ttf". Empty:
  ///                   every file
  /// @param nFlags     LIST_SUB_FOLDERS or 0
  /// Links to files count as files, links to folders are never followed. What cannot be read is left out.
  static void ListFiles(QdcUnicodeString const& strFolder, QdcArray<QdcUnicodeString>& arrFiles,
      QdcUnicodeString const& strFilter, int nFlags);
};

}  // namespace QXC
