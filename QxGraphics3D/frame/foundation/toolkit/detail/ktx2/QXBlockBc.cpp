#include <QxGraphics3D/frame/foundation/toolkit/detail/ktx2/QXBlockBc.h>

#include <cstdint>
#include <cstring>

namespace QXC::detail {

namespace {

std::uint32_t Load16(unsigned char const* pBytes) {
  return pBytes[0] | std::uint32_t{pBytes[1]} << 8;
}

void Widen565(std::uint32_t nColor, unsigned char* pRgba) {
  std::uint32_t const nRed = nColor >> 11;
  std::uint32_t const nGreen = nColor >> 5 & 63;
  std::uint32_t const nBlue = nColor & 31;
  pRgba[0] = static_cast<unsigned char>(nRed << 3 | nRed >> 2);
  pRgba[1] = static_cast<unsigned char>(nGreen << 2 | nGreen >> 4);
  pRgba[2] = static_cast<unsigned char>(nBlue << 3 | nBlue >> 2);
  pRgba[3] = 255;
}

/// (nFirst * first + nSecond * second) / (nFirst + nSecond), each channel.
void Mix(unsigned char const* pFirst, unsigned int nFirst, unsigned char const* pSecond, unsigned int nSecond,
    unsigned char* pRgba) {
  for (int i = 0; i < 3; ++i)
    pRgba[i] = static_cast<unsigned char>((nFirst * pFirst[i] + nSecond * pSecond[i]) / (nFirst + nSecond));
  pRgba[3] = 255;
}

void DecodeColors(unsigned char const* pBlock, bool bFour, QXBc1Alpha eAlpha, unsigned char* pRgba) {
  unsigned char colors[4][4] = {};
  Widen565(Load16(pBlock), colors[0]);
  Widen565(Load16(pBlock + 2), colors[1]);
  if (bFour) {
    Mix(colors[0], 2, colors[1], 1, colors[2]);
    Mix(colors[0], 1, colors[1], 2, colors[3]);
  } else {
    Mix(colors[0], 1, colors[1], 1, colors[2]);
    colors[3][3] = eAlpha == QXBc1Alpha::Punched ? 0 : 255;
  }
  std::uint32_t nIndices = Load16(pBlock + 4) | Load16(pBlock + 6) << 16;
  for (int nPixel = 0; nPixel < 16; ++nPixel, nIndices >>= 2) std::memcpy(pRgba + 4 * nPixel, colors[nIndices & 3], 4);
}

void DecodeAlpha(unsigned char const* pBlock, unsigned char* pRgba) {
  unsigned int const nFirst = pBlock[0];
  unsigned int const nSecond = pBlock[1];
  unsigned char alphas[8] = {pBlock[0], pBlock[1], 0, 0, 0, 0, 0, 255};
  unsigned int const nSteps = nFirst > nSecond ? 7 : 5;
  for (unsigned int i = 1; i < nSteps; ++i)
    alphas[i + 1] = static_cast<unsigned char>(((nSteps - i) * nFirst + i * nSecond) / nSteps);
  std::uint64_t nIndices = 0;
  for (int i = 7; i >= 2; --i) nIndices = nIndices << 8 | pBlock[i];
  for (int nPixel = 0; nPixel < 16; ++nPixel, nIndices >>= 3) pRgba[4 * nPixel + 3] = alphas[nIndices & 7];
}

}  // namespace

void DecodeBc1Block(unsigned char const pBlock[8], QXBc1Alpha eAlpha, unsigned char pRgba[64]) {
  DecodeColors(pBlock, Load16(pBlock) > Load16(pBlock + 2), eAlpha, pRgba);
}

void DecodeBc3Block(unsigned char const pBlock[16], unsigned char pRgba[64]) {
  DecodeColors(pBlock + 8, true, QXBc1Alpha::Opaque, pRgba);
  DecodeAlpha(pBlock, pRgba);
}

}  // namespace QXC::detail
