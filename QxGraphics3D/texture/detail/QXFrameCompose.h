/// @file
/// Frames of an animation laid onto its canvas.
#pragma once

#include <QxGraphics3D/frame/foundation/base/QdcNumeric.h>
#include <QxGraphics3D/frame/foundation/base3d/QXImageData.h>

#include <algorithm>
#include <cstdint>

namespace QXC::detail {

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
