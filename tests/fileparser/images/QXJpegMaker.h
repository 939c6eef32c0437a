/// @file
/// JPEG files made in memory.
#pragma once

#include <cstdio>  // jpeglib.h names FILE
#include <cstdlib>
#include <functional>
#include <vector>

#include <jpeglib.h>

namespace qxtest {

struct JpegForm {
  unsigned int m_nWidth;
  unsigned int m_nHeight;
  int m_nChannels;
  J_COLOR_SPACE m_eSpace;
  int m_nQuality;
  /// Called before the first row, behind the codec's defaults.
  std::function<void(jpeg_compress_struct&)> m_Setup = [](jpeg_compress_struct&) {};
};

/// Nothing of it can fail but for memory: the codec's errors end the process.
/// @param row  gives the samples of a row by its number
inline std::vector<unsigned char> MakeJpeg(
    JpegForm const& form, std::function<unsigned char const*(unsigned int)> const& row) {
  jpeg_compress_struct info{};
  jpeg_error_mgr errors{};
  info.err = jpeg_std_error(&errors);
  jpeg_create_compress(&info);
  unsigned char* pFile = nullptr;
  unsigned long nFile = 0;
  jpeg_mem_dest(&info, &pFile, &nFile);
  info.image_width = form.m_nWidth;
  info.image_height = form.m_nHeight;
  info.input_components = form.m_nChannels;
  info.in_color_space = form.m_eSpace;
  jpeg_set_defaults(&info);
  jpeg_set_quality(&info, form.m_nQuality, TRUE);
  form.m_Setup(info);
  jpeg_start_compress(&info, TRUE);
  while (info.next_scanline < info.image_height) {
    auto* pRow = const_cast<JSAMPROW>(row(info.next_scanline));
    jpeg_write_scanlines(&info, &pRow, 1);
  }
  jpeg_finish_compress(&info);
  jpeg_destroy_compress(&info);
  std::vector<unsigned char> arrFile(pFile, pFile + nFile);
  std::free(pFile);
  return arrFile;
}

}  // namespace qxtest
