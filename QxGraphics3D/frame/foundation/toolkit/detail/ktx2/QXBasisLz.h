/// @file
/// BasisLZ supercompressed ETC1S images to pixels.
#pragma once

#include <QxGraphics3D/frame/foundation/toolkit/detail/ktx2/QXEtc1sSlice.h>

#include <cstdint>
#include <vector>

namespace QXC::detail {

/// The codebooks of one file, which every image of it refers to. Init once, then DecodeImage for each image that is
/// wanted, in any order: those that depend on others, the P-frames of animations, are not decoded.
/// Input may be hostile: all that it says is checked before it is believed. Memory is bounded by 65,535 entries a
/// codebook (1.3 MiB in all) and four Huffman tables (2.2 MiB); time by the bytes given and the pixels asked for.
class QXBasisLz {
public:
  /// Reads the global data of a file: header, image descriptions, codebooks and Huffman tables.
  /// @param pGlobalData  nSize bytes, copied as far as needed
  /// @param nImageCount  images the file has: levels x layers x faces, each at least 1
  /// @return  false if the data is cut short or contradicts itself. The object then decodes nothing.
  /// Source:  KTX 2.0 text, appendices on BasisLZ global data and on the BasisLZ/ETC1S bit stream.
  bool Init(unsigned char const* pGlobalData, std::uint64_t nSize, unsigned int nImageCount);

  /// Decodes one image, alpha slice included.
  /// @param nImage  index in the order of the descriptions: by level, then layer, then face
  /// @param pLevel  the bytes of the image's level, nLevelSize of them
  /// @param pRgba  receives nWidth * nHeight * 4 bytes R,G,B,A, tight, top row first. Alpha is 255 in an image without
  ///               alpha slice, else the green of that slice, which is grey in every proper file.
  /// @return  false if the image is a P-frame, or if a slice stands outside its level, is cut short or refers to what
  ///          does not exist; pRgba then holds part of the picture.
  /// Threads:  several images may be decoded at once.
  bool DecodeImage(unsigned int nImage, unsigned char const* pLevel, std::uint64_t nLevelSize, unsigned int nWidth,
      unsigned int nHeight, unsigned char* pRgba) const;

  /// Whether the image has a second slice. Of an image that does not exist: false.
  bool HasAlphaSlice(unsigned int nImage) const;

private:
  struct QXImageDesc {
    std::uint32_t m_nRgbOffset = 0;
    std::uint32_t m_nRgbLength = 0;
    std::uint32_t m_nAlphaOffset = 0;
    std::uint32_t m_nAlphaLength = 0;  ///< 0: no second slice
    bool m_bPFrame = false;            ///< holds what changed since the image before it
  };

  bool Read(unsigned char const* pGlobalData, std::uint64_t nSize, unsigned int nImageCount);
  bool ReadImages(unsigned char const* pDescs, unsigned int nImageCount);
  bool ReadEndpoints(QXBitReader reader, std::uint64_t nBits, unsigned int nCount);
  bool ReadSelectors(QXBitReader reader, std::uint64_t nBits, unsigned int nCount);
  bool ReadSliceTables(QXBitReader reader);

  std::vector<QXImageDesc> m_arrImages;
  QXBasisLzTables m_Tables;
};

}  // namespace QXC::detail
