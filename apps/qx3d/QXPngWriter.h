/// @file
/// Pictures to files.
#pragma once

#include <string>

namespace QXApp {

/// Writes PNG files, each whole or not at all.
class QXPngWriter {
public:
  /// Whether a picture could be written to the path, asked before the work of drawing it: its folder exists and may be
  /// written to, and what stands there already is a regular file.
  /// @return  empty, or the reason
  static std::string Check(std::string const& strPath);

  /// Writes a picture to a new file beside the target and then puts it into the target's place, so that no reader and
  /// no failure ever leaves half a picture under the name. A link is followed.
  /// @param pPixels  4 bytes a pixel, blue, green, red and one that is not looked at; top row first, no padding
  /// @return  empty, or the reason; the path then holds what it held before
  static std::string Write(std::string const& strPath, int nWidth, int nHeight, unsigned char const* pPixels);
  /// The same with the fourth byte, for pictures that are to be read again.
  static std::string WriteWithAlpha(std::string const& strPath, int nWidth, int nHeight, unsigned char const* pPixels);

private:
  static std::string WritePacked(
      std::string const& strPath, int nWidth, int nHeight, unsigned int nFormat, unsigned char const* pPixels);
};

}  // namespace QXApp
