/// @file
/// Small animations for tests.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace QXApp {

/// A GIF of frames of one colour each, 8 x 8 pixels, that repeats for ever.
/// @param vecColors  0 red, 1 green, 2 blue, 3 clear
/// @param nDelay     of each frame, hundredths of a second
inline std::vector<unsigned char> MakeGif(std::vector<int> const& vecColors, unsigned short nDelay) {
  std::string strBytes("GIF89a\x08\0\x08\0\xF1\0\0\xFF\0\0\0\xFF\0\0\0\xFF\0\0\0", 25);
  strBytes += std::string("\x21\xFF\x0BNETSCAPE2.0\x03\x01\0\0\0", 19);
  for (int nColor : vecColors) {
    strBytes += std::string("\x21\xF9\x04\x09", 4) + static_cast<char>(nDelay & 255u) +
                static_cast<char>(nDelay >> 8u) + std::string("\x03\0", 2);
    strBytes += std::string("\x2C\0\0\0\0\x08\0\x08\0\0\x02", 11);
    // Codes of three bits: the table is cleared before it grows to a fourth one.
    std::vector<unsigned int> vecCodes;
    for (int i = 0; i < 64; i += 2)
      vecCodes.insert(vecCodes.end(), {4u, static_cast<unsigned int>(nColor), static_cast<unsigned int>(nColor)});
    vecCodes.push_back(5u);
    std::string strData((3 * vecCodes.size() + 7) / 8, '\0');
    for (std::size_t nBit = 0; nBit < 3 * vecCodes.size(); ++nBit)
      if ((vecCodes[nBit / 3] >> (nBit % 3) & 1u) != 0)
        strData[nBit / 8] = static_cast<char>(static_cast<unsigned char>(strData[nBit / 8]) | 1u << (nBit % 8));
    strBytes += static_cast<char>(strData.size()) + strData + '\0';
  }
  strBytes += '\x3B';
  return std::vector<unsigned char>(strBytes.begin(), strBytes.end());
}

}  // namespace QXApp
