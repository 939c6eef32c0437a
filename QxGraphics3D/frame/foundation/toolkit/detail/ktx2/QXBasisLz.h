/// @file
/// BasisLZ supercompressed ETC1S images to pixels.
#pragma once

#include <QxGraphics3D/frame/foundation/toolkit/detail/ktx2/QXEtc1s.h>
#include <QxGraphics3D/frame/foundation/toolkit/detail/ktx2/QXHuffman.h>

#include <cstdint>
#include <vector>

namespace QXC::detail {

/// The codebooks of one file, which every image of it refers to. Init once, then DecodeImage for each image that is
/// wanted, in any order: images do not depend on each other, because files with P-frames are refused.
/// Input may be hostile: all that it says is checked before it is believed. Memory is bounded by 65,535 entries a
/// codebook (2.5 MiB in all); time by the bytes given and by the pixels asked for.
class QXBasisLz {
public:
  /// Reads the global data of a file: header, image descriptions, codebooks and Huffman tables.
  /// @param pGlobalData  nSize bytes, copied as far as needed
  /// @param nImageCount  images the file has: levels x layers x faces, each at least 1
  /// @return  false if the data is cut short, contradicts itself or has a P-frame. The object then decodes nothing.
  bool Init(unsigned char const* pGlobalData, std::uint64_t nSize, unsigned int nImageCount);

  /// Decodes one image, alpha slice included.
  /// @param nImage  index in the order of the descriptions: by level, then layer, then face
  /// @param pLevel  the bytes of the image's level, nLevelSize of them
  /// @param pRgba  receives nWidth * nHeight * 4 bytes R,G,B,A, tight, top row first. Alpha is 255 in an image without
  ///               alpha slice.
  /// @return  false if a slice stands outside its level, is cut short or refers to what does not exist; pRgba then
  ///          holds part of the picture.
  /// Threads:  several images may be decoded at once.
  bool DecodeImage(unsigned int nImage, unsigned char const* pLevel, std::uint64_t nLevelSize, unsigned int nWidth,
      unsigned int nHeight, unsigned char* pRgba) const;

  /// 1 if the image has a second slice. Of an image that does not exist: 0.
  bool HasAlphaSlice(unsigned int nImage) const;

private:
  struct QXImageDesc {
    std::uint32_t m_nRgbOffset = 0;
    std::uint32_t m_nRgbLength = 0;
    std::uint32_t m_nAlphaOffset = 0;
    std::uint32_t m_nAlphaLength = 0;  ///< 0: no second slice
  };

  std::vector<QXImageDesc> m_arrImages;
  std::vector<QXEtc1sEndpoint> m_arrEndpoints;
  std::vector<std::uint32_t> m_arrSelectors;  ///< one byte a row, the left pixel in its two lowest bits
  QXHuffman m_EndpointPrediction;
  QXHuffman m_EndpointDelta;
  QXHuffman m_Selector;
  QXHuffman m_SelectorRun;
};

}  // namespace QXC::detail
