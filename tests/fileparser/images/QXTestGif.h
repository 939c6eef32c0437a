/// @file
/// GIF files put together byte by byte, and what a player shows of them.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace qxtest {

using GifBytes = std::vector<unsigned char>;
/// Blue, green, red, alpha.
using GifPixel = std::array<unsigned char, 4>;

struct GifFrame {
  int m_nLeft = 0;
  int m_nTop = 0;
  int m_nWidth = 1;
  int m_nHeight = 1;
  std::vector<unsigned char> m_arrIndexes{};  ///< rows top down; below 16
  int m_nTransparent = -1;
  int m_nDisposal = 0;
  int m_nDelay = 0;
  bool m_bControl = true;  ///< false: no control stands before it
  bool m_bInterlaced = false;
  bool m_bLocalColours = false;
};

/// Index of a pixel in an image of that width.
inline std::size_t PlaceOf(int nX, int nY, int nWidth) {
  return static_cast<std::size_t>(nY) * static_cast<std::size_t>(nWidth) + static_cast<std::size_t>(nX);
}

/// One index all over.
inline GifFrame MakeFrame(int nLeft, int nTop, int nWidth, int nHeight, unsigned char nIndex) {
  GifFrame frame;
  frame.m_nLeft = nLeft;
  frame.m_nTop = nTop;
  frame.m_nWidth = nWidth;
  frame.m_nHeight = nHeight;
  frame.m_arrIndexes.assign(static_cast<std::size_t>(nWidth) * static_cast<std::size_t>(nHeight), nIndex);
  return frame;
}

/// The colour of an index, in the file's palette or in a frame's own.
inline GifPixel ColourOf(int nIndex, bool bLocal = false) {
  int const nShift = bLocal ? 7 : 0;
  return {static_cast<unsigned char>(nIndex * 16 + nShift), static_cast<unsigned char>(200 - nIndex * 5 - nShift),
      static_cast<unsigned char>(nIndex * 3 + 20 + nShift), 255};
}

inline void PutWord(GifBytes& arrBytes, int nValue) {
  arrBytes.push_back(static_cast<unsigned char>(nValue & 255));
  arrBytes.push_back(static_cast<unsigned char>(nValue >> 8 & 255));
}

inline void PutColours(GifBytes& arrBytes, bool bLocal) {
  for (int i = 0; i < 16; ++i) {
    GifPixel const colour = ColourOf(i, bLocal);
    for (std::size_t c : {2u, 1u, 0u}) arrBytes.push_back(colour[c]);
  }
}

/// Rows in the order in which an interlaced file has them.
inline std::vector<int> RowOrder(int nHeight, bool bInterlaced) {
  std::vector<int> arrRows;
  if (!bInterlaced) {
    for (int y = 0; y < nHeight; ++y) arrRows.push_back(y);
    return arrRows;
  }
  for (auto const& [nStart, nStep] : {std::array{0, 8}, std::array{4, 8}, std::array{2, 4}, std::array{1, 2}})
    for (int y = nStart; y < nHeight; y += nStep) arrRows.push_back(y);
  return arrRows;
}

/// Codes of 5 bits: the table is emptied before it asks for longer ones.
class GifCodes {
public:
  GifBytes Encode(GifFrame const& frame) {
    Put(CLEAR);
    int nSince = 0;
    for (int y : RowOrder(frame.m_nHeight, frame.m_bInterlaced)) {
      for (int x = 0; x < frame.m_nWidth; ++x) {
        if (nSince++ == CLEAR - 2) {
          Put(CLEAR);
          nSince = 1;
        }
        Put(frame.m_arrIndexes[PlaceOf(x, y, frame.m_nWidth)]);
      }
    }
    Put(CLEAR + 1);
    if (m_nBits > 0) m_arrCodes.push_back(static_cast<unsigned char>(m_nPending));
    return m_arrCodes;
  }

private:
  static constexpr int CLEAR = 16;
  void Put(int nCode) {
    m_nPending |= static_cast<unsigned int>(nCode) << m_nBits;
    for (m_nBits += 5; m_nBits >= 8; m_nBits -= 8, m_nPending >>= 8)
      m_arrCodes.push_back(static_cast<unsigned char>(m_nPending & 255));
  }
  GifBytes m_arrCodes;
  unsigned int m_nPending = 0;
  unsigned int m_nBits = 0;
};

inline void PutFrame(GifBytes& arrBytes, GifFrame const& frame) {
  if (frame.m_bControl) {
    bool const bClear = frame.m_nTransparent >= 0;
    arrBytes.insert(arrBytes.end(), {0x21, 0xF9, 4, static_cast<unsigned char>(frame.m_nDisposal << 2 | bClear)});
    PutWord(arrBytes, frame.m_nDelay);
    arrBytes.insert(arrBytes.end(), {static_cast<unsigned char>(bClear ? frame.m_nTransparent : 0), 0});
  }
  arrBytes.push_back(0x2C);
  for (int n : {frame.m_nLeft, frame.m_nTop, frame.m_nWidth, frame.m_nHeight}) PutWord(arrBytes, n);
  arrBytes.push_back(static_cast<unsigned char>((frame.m_bLocalColours ? 0x83 : 0) | (frame.m_bInterlaced ? 0x40 : 0)));
  if (frame.m_bLocalColours) PutColours(arrBytes, true);
  arrBytes.push_back(4);
  GifBytes const arrCodes = GifCodes().Encode(frame);
  for (std::size_t i = 0; i < arrCodes.size(); i += 255) {
    std::size_t const nCount = std::min<std::size_t>(255, arrCodes.size() - i);
    arrBytes.push_back(static_cast<unsigned char>(nCount));
    arrBytes.insert(arrBytes.end(), arrCodes.begin() + static_cast<std::ptrdiff_t>(i),
        arrCodes.begin() + static_cast<std::ptrdiff_t>(i + nCount));
  }
  arrBytes.push_back(0);
}

inline GifBytes MakeGifHead(int nWidth, int nHeight) {
  GifBytes arrBytes{'G', 'I', 'F', '8', '9', 'a'};
  PutWord(arrBytes, nWidth);
  PutWord(arrBytes, nHeight);
  arrBytes.insert(arrBytes.end(), {0x83, 0, 0});
  PutColours(arrBytes, false);
  return arrBytes;
}

/// The file, and where each frame ends in it.
inline GifBytes MakeGif(
    int nWidth, int nHeight, std::vector<GifFrame> const& arrFrames, std::vector<std::size_t>* pEnds = nullptr) {
  GifBytes arrBytes = MakeGifHead(nWidth, nHeight);
  for (GifFrame const& frame : arrFrames) {
    PutFrame(arrBytes, frame);
    if (pEnds) pEnds->push_back(arrBytes.size());
  }
  arrBytes.push_back(0x3B);
  return arrBytes;
}

using GifCanvas = std::vector<GifPixel>;

/// What a player shows while each frame is up, pixel by pixel and as slowly as it can be said.
inline std::vector<GifCanvas> PlayGif(int nWidth, int nHeight, std::vector<GifFrame> const& arrFrames) {
  GifCanvas canvas(PlaceOf(0, nHeight, nWidth), GifPixel{0, 0, 0, 0});
  std::vector<GifCanvas> arrShown;
  for (GifFrame const& frame : arrFrames) {
    GifCanvas const before = canvas;
    GifCanvas after = canvas;
    for (int y = 0; y < nHeight; ++y) {
      for (int x = 0; x < nWidth; ++x) {
        int const nColumn = x - frame.m_nLeft, nRow = y - frame.m_nTop;
        if (nColumn < 0 || nColumn >= frame.m_nWidth || nRow < 0 || nRow >= frame.m_nHeight) continue;
        auto const nPlace = PlaceOf(x, y, nWidth);
        int const nIndex = frame.m_arrIndexes[PlaceOf(nColumn, nRow, frame.m_nWidth)];
        bool const bClear = frame.m_bControl && nIndex == frame.m_nTransparent;
        if (!bClear) canvas[nPlace] = ColourOf(nIndex, frame.m_bLocalColours);
        after[nPlace] = GifPixel{0, 0, 0, 0};
      }
    }
    arrShown.push_back(canvas);
    if (frame.m_bControl && frame.m_nDisposal == 2) {
      // Cleared is the frame's place, whatever the frame itself shows there.
      for (std::size_t i = 0; i < canvas.size(); ++i)
        if (after[i] == GifPixel{0, 0, 0, 0}) canvas[i] = after[i];
    } else if (frame.m_bControl && frame.m_nDisposal == 3) {
      canvas = before;
    }
  }
  return arrShown;
}

}  // namespace qxtest
