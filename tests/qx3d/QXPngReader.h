/// @file
/// Pictures back from files.
#pragma once

#include <png.h>

#include <string>
#include <vector>

namespace QXApp {

/// A picture as 3 bytes a pixel, red, green, blue; width 0 if the file is none.
struct QXPicture {
  int m_nWidth = 0;
  int m_nHeight = 0;
  std::vector<unsigned char> m_vecPixels;
};

inline QXPicture ReadPicture(std::string const& strPath) {
  QXPicture picture;
  png_image image = {};
  image.version = PNG_IMAGE_VERSION;
  if (png_image_begin_read_from_file(&image, strPath.c_str()) == 0) return picture;
  image.format = PNG_FORMAT_RGB;
  picture.m_vecPixels.resize(PNG_IMAGE_SIZE(image));
  if (png_image_finish_read(&image, nullptr, picture.m_vecPixels.data(), 0, nullptr) == 0) return picture;
  picture.m_nWidth = static_cast<int>(image.width);
  picture.m_nHeight = static_cast<int>(image.height);
  return picture;
}

}  // namespace QXApp
