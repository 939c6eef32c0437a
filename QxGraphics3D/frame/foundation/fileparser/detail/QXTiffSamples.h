/// @file
/// Samples of a TIFF become pixels.
#pragma once

#include <QxGraphics3D/frame/foundation/fileparser/detail/QXTiffFile.h>

#include <cstddef>
#include <vector>

namespace QXC::detail {

/// Turns rows of decoded samples into rows of B,G,R,A, B,G,R or grey. Knows no strips and tiles.
class QXTiffSamples {
public:
  /// False for pages whose samples are not read here: none of grey, RGB and palette, not whole numbers of 1 to 16 bits,
  /// or a palette that is missing.
  bool Init(TIFF* pTiff, QXTiffPage const& page);

  /// 1, 3 or 4.
  unsigned int GetBytesPerPixel() const { return m_nBytesPerPixel; }
  /// How many planes the samples lie in: 1, or as many as the colours and alpha where planes are separate.
  unsigned int GetPlanes() const { return m_nPlanes; }

  /// Bytes that may be read behind the last row of a plane, whatever they are.
  static constexpr QXUInt64 SLACK_BYTES = 2;

  /// @param arrPlanes  first byte of the row in each plane
  /// @param pRow       nCount pixels
  void Convert(unsigned char const* const* arrPlanes, unsigned char* pRow, std::size_t nCount) const;

private:
  bool ReadPalette(TIFF* pTiff);
  unsigned int Sample(unsigned char const* const* arrPlanes, std::size_t nPixel, unsigned int nSample) const;
  unsigned char Narrow(unsigned int nValue) const;
  void ConvertPixel(unsigned char const* const* arrPlanes, std::size_t nPixel, unsigned char* pPixel) const;
  void ConvertValues(unsigned char const* const* arrPlanes, unsigned char* pRow, std::size_t nCount) const;
  void ConvertBytes(unsigned char const* pSource, unsigned char* pRow, std::size_t nCount) const;

  QXTiffPage m_Page;
  unsigned int m_nColours = 1;
  unsigned int m_nPlanes = 1;
  unsigned int m_nStride = 1;
  unsigned int m_nBytesPerPixel = 1;
  unsigned int m_nMax = 255;
  bool m_bPlainBytes = false;
  std::vector<unsigned char> m_arrNarrow;
  std::vector<unsigned char> m_arrPalette;
};

}  // namespace QXC::detail
