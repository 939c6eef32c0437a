/// @file
/// Frames of an animation laid onto its canvas.
#pragma once

#include <QxGraphics3D/frame/foundation/base/QdcArray.h>
#include <QxGraphics3D/frame/foundation/base/QdcNumeric.h>
#include <QxGraphics3D/frame/foundation/base3d/QXImageData.h>
#include <QxGraphics3D/frame/foundation/base3d/QXTextureData.h>
#include <QxGraphics3D/frame/foundation/geometry/QXGeoPicture.h>

#include <algorithm>
#include <cstdint>
#include <utility>

namespace QXC::detail {

/// The pictures that a parser hands out, deleted at the end.
struct QXPictureList {
  QXPictureList() = default;
  QXPictureList(QXPictureList const&) = delete;
  QXPictureList& operator=(QXPictureList const&) = delete;
  ~QXPictureList() {
    for (QXGeoPicture* pPicture : m_arrPictures) delete pPicture;
  }

  /// The image that gives all frames their size; null if there is none.
  QXImageData* GetFirstImage() const {
    return m_arrPictures.GetSize() == 0 || m_arrPictures[0] == nullptr ? nullptr : m_arrPictures[0]->GetImage();
  }

  QdcArray<QXGeoPicture*> m_arrPictures;
};

/// Whether the image can be laid onto a canvas, or be one.
inline bool IsWideImage(QXImageData const& image) {
  return image.m_pPixels != nullptr && image.m_nBitDepth == 32;
}

/// The image as a frame, which takes its block.
inline QXTextureData TakeFrame(QXImageData& image) {
  QXTextureData frame;
  frame.m_pPixels = static_cast<unsigned char*>(std::exchange(image.m_pPixels, nullptr));
  frame.m_nWidth = image.m_nWidth;
  frame.m_nHeight = image.m_nHeight;
  frame.m_eFormat = image.m_nBitDepth == 32 ? PF_A8R8G8B8 : PF_R8G8B8;
  frame.SetBlockLength(QXUInt64{image.m_nPitch} * image.m_nHeight);
  return frame;
}

/// First column or row of a frame whose centre lies at dCenter.
inline int FrameStart(double dCenter, unsigned int nSize) {
  return ToInt(dCenter - nSize / 2.0);
}

/// Calls copyUnit(canvas pixel, frame pixel), 4 bytes each, for every pixel of the frame that lies on the canvas. Both
/// images have 32 bits. A frame's place comes from the file and may lie anywhere: what hangs over is left out.
template <class CopyUnit>
void ComposeFrame(QXImageData& canvas, QXImageData const& frame, int nColumn, int nRow, CopyUnit copyUnit) {
  std::int64_t const nLeft = std::max(nColumn, 0);
  std::int64_t const nTop = std::max(nRow, 0);
  std::int64_t const nRight = std::min<std::int64_t>(canvas.m_nWidth, std::int64_t{nColumn} + frame.m_nWidth);
  std::int64_t const nBottom = std::min<std::int64_t>(canvas.m_nHeight, std::int64_t{nRow} + frame.m_nHeight);
  for (std::int64_t nY = nTop; nY < nBottom; ++nY) {
    unsigned char* pCanvas = static_cast<unsigned char*>(canvas.m_pPixels) + nY * canvas.m_nPitch + nLeft * 4;
    unsigned char const* pFrame =
        static_cast<unsigned char const*>(frame.m_pPixels) + (nY - nRow) * frame.m_nPitch + (nLeft - nColumn) * 4;
    for (std::int64_t nX = nLeft; nX < nRight; ++nX, pCanvas += 4, pFrame += 4) copyUnit(pCanvas, pFrame);
  }
}

}  // namespace QXC::detail
