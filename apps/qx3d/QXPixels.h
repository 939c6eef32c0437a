/// @file
/// Still pictures in memory.
#pragma once

#include <cstddef>
#include <memory>
#include <string>

namespace QXC {
struct QXImageData;
}

namespace QXApp {

/// A picture of 4 bytes a pixel, blue, green, red, alpha, top row first, without gaps. Without a block it is none.
struct QXPixels {
  unsigned int m_nWidth = 0;
  unsigned int m_nHeight = 0;
  std::unique_ptr<unsigned char[]> m_pBytes;

  std::size_t GetPixelCount() const { return std::size_t{m_nWidth} * m_nHeight; }
  unsigned char* At(unsigned int nX, unsigned int nY) { return m_pBytes.get() + 4 * (std::size_t{nY} * m_nWidth + nX); }
  unsigned char const* At(unsigned int nX, unsigned int nY) const {
    return m_pBytes.get() + 4 * (std::size_t{nY} * m_nWidth + nX);
  }
};

/// A block of that size with undefined pixels.
QXPixels MakePixels(unsigned int nWidth, unsigned int nHeight);

/// Takes the block out of an image record, widened to 4 bytes a pixel. Without a block if that cannot be.
QXPixels TakePixels(QXC::QXImageData& image);

/// Frees a record with its block; null is ignored.
void DisposeImage(QXC::QXImageData* pImage);

/// Whether any pixel has another alpha than 255.
bool HasTransparentPixels(QXPixels const& pixels);

/// Why the library could not read the picture that it was asked for last; it does not say so everywhere.
std::string TakePictureReason();

/// A reason without advice gets the usual one.
std::string AddPictureAdvice(std::string const& strReason);

/// Reads a picture from a file in its own size; of one that moves the first frame.
/// @return  empty, or the reason with what to do about it
std::string ReadPixels(std::string const& strPath, QXPixels& pixels);

}  // namespace QXApp
