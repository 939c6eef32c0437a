/// @file
/// A TIFF in memory, opened by libtiff.
#pragma once

#include <QxGraphics3D/frame/foundation/fileparser/detail/QXByteSource.h>
#include <QxGraphics3D/frame/foundation/fileparser/detail/QXImageReader.h>

#include <cstdint>

#include <tiffio.h>

namespace QXC::detail {

/// The tags of the first page that decide how it is read, with the defaults of the format where they are missing.
struct QXTiffPage {
  std::uint32_t m_nWidth = 0;
  std::uint32_t m_nHeight = 0;
  std::uint16_t m_nBits = 1;
  std::uint16_t m_nSamples = 1;
  std::uint16_t m_nPhotometric = 0;
  std::uint16_t m_nPlanar = PLANARCONFIG_CONTIG;
  std::uint16_t m_nSampleFormat = SAMPLEFORMAT_UINT;
  std::uint16_t m_nOrientation = ORIENTATION_TOPLEFT;
  /// Meaning of the first sample beyond the colours: one of EXTRASAMPLE_..., or -1 where there is none. A sample of
  /// unspecified meaning is no alpha: aerial pictures carry near infrared there.
  int m_nExtra = -1;
  bool m_bTiled = false;

  bool IsGrey() const { return m_nPhotometric == PHOTOMETRIC_MINISBLACK || m_nPhotometric == PHOTOMETRIC_MINISWHITE; }
  bool HasPlainColours() const {
    return IsGrey() || m_nPhotometric == PHOTOMETRIC_PALETTE || m_nPhotometric == PHOTOMETRIC_RGB;
  }
  bool HasWholeSamples() const { return m_nSampleFormat == SAMPLEFORMAT_UINT || m_nSampleFormat == SAMPLEFORMAT_VOID; }
  unsigned int GetColourSamples() const { return m_nPhotometric == PHOTOMETRIC_RGB ? 3 : 1; }
  bool HasAlpha() const { return m_nExtra == EXTRASAMPLE_ASSOCALPHA || m_nExtra == EXTRASAMPLE_UNASSALPHA; }
};

/// Opens and closes. The codec takes no block at once that the limits do not leave room for, and says nothing.
class QXTiffFile {
public:
  QXTiffFile(unsigned char const* pBytes, QXUInt64 nSize, QXImageLimits const& limits);
  QXTiffFile(QXTiffFile const&) = delete;
  QXTiffFile& operator=(QXTiffFile const&) = delete;
  ~QXTiffFile();

  /// Null if the bytes are no TIFF.
  TIFF* Get() const { return m_pTiff; }

  /// Whether all values of the first page's tags stand in the file. The codec goes on without those that it cannot read,
  /// and takes indexes for grey where the colours are missing.
  bool HasWholeDirectory() const;

  /// False without a size.
  bool ReadPage(QXTiffPage& page) const;

  /// Most bytes of one strip or tile, decoded: a picture at the limit in one strip of 16 bits a sample.
  static QXUInt64 MaxChunkBytes(QXImageLimits const& limits);

private:
  QXByteSource m_Source;
  TIFF* m_pTiff = nullptr;
};

}  // namespace QXC::detail
