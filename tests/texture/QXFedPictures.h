/// @file
/// Pictures of one colour for the parser that hands out what a test feeds it.
#pragma once

#include <tests/texture/QXFedParser.h>

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace QXC {

/// Blue, green, red, alpha.
using QXFedPixel = std::array<unsigned char, 4>;

/// A picture around the point (dX, dY) of its canvas.
inline QXGeoPicture* MakePicture(
    unsigned int nWidth, unsigned int nHeight, QXFedPixel const& pixel, double dX, double dY) {
  QXImageData* const pImage = MakeFedImage(nWidth, nHeight, 32);
  for (std::size_t i = 0; i < std::size_t{nWidth} * nHeight; ++i)
    std::copy(pixel.begin(), pixel.end(), static_cast<unsigned char*>(pImage->m_pPixels) + i * 4);
  auto* const pPicture = new QXGeoPicture;
  pPicture->SetImage(pImage);
  pPicture->SetCenterPoint(QdcPoint2D(dX, dY));
  return pPicture;
}

/// The next file has these pictures, which belong to its reader then; the ones after it have none.
inline void FeedPictures(std::vector<QXGeoPicture*> arrPictures) {
  g_Fed.m_FillPictures = [arrFed = std::move(arrPictures)](QdcArray<QXGeoPicture*>& arrTarget) mutable {
    for (QXGeoPicture* const pPicture : std::exchange(arrFed, {})) arrTarget.Add(pPicture);
  };
}

inline QXFedPixel PixelOf(QXTextureData const& frame, unsigned int nX, unsigned int nY) {
  unsigned char const* const p = frame.m_pPixels + (std::size_t{nY} * frame.m_nWidth + nX) * 4;
  return {p[0], p[1], p[2], p[3]};
}

}  // namespace QXC
