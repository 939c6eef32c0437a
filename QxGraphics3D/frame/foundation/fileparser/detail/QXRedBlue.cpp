#include <QxGraphics3D/frame/foundation/fileparser/detail/QXRedBlue.h>

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

namespace QXC::detail {
namespace {

// Sixteen bytes, which every machine of this library has instructions for; elsewhere the compiler takes them apart.
using Lanes = unsigned char __attribute__((vector_size(16)));
constexpr std::size_t LANES = sizeof(Lanes);

Lanes Load(unsigned char const* pBytes) {
  Lanes lanes;
  std::memcpy(&lanes, pBytes, LANES);
  return lanes;
}

// 255 at each third byte, long enough that a mask for any lane begins in it.
constexpr auto EVERY_THIRD = [] {
  std::array<unsigned char, LANES + 3> arrBytes{};
  for (std::size_t i = 0; i < arrBytes.size(); i += 3) arrBytes[i] = 255;
  return arrBytes;
}();

// 255 at each third lane from nFirst on, which is below 3.
Lanes MaskFrom(std::size_t nFirst) {
  return Load(EVERY_THIRD.data() + (3 - nFirst) % 3);
}

// Each byte comes from where it is, or from two before or behind: three loads, of which each gives a third. In pieces of
// three times sixteen bytes the thirds fall on the same lanes again.
void SwapPiece(unsigned char const* pSource, unsigned char* pTarget) {
  for (std::size_t nPart = 0; nPart < 3; ++nPart) {
    std::size_t const nPlace = nPart * LANES;
    // The first lane is byte nPlace of the piece; nPlace % 3 is nPart.
    Lanes const firsts = MaskFrom((3 - nPart) % 3), seconds = MaskFrom((4 - nPart) % 3),
                thirds = MaskFrom((5 - nPart) % 3);
    Lanes const swapped = (Load(pSource + nPlace + 2) & firsts) | (Load(pSource + nPlace) & seconds) |
                          (Load(pSource + nPlace - 2) & thirds);
    std::memcpy(pTarget + nPlace, &swapped, LANES);
  }
}

}  // namespace

void CopySwapped3(unsigned char const* pSource, unsigned char* pTarget, std::size_t nCount) {
  constexpr std::size_t PIECE = LANES;
  std::size_t i = 0;
  auto const CopyOne = [&] {
    pTarget[3 * i] = pSource[3 * i + 2];
    pTarget[3 * i + 1] = pSource[3 * i + 1];
    pTarget[3 * i + 2] = pSource[3 * i];
    ++i;
  };
  // A piece reads two bytes before itself and two behind.
  if (i < nCount) CopyOne();
  for (; i + PIECE < nCount; i += PIECE) SwapPiece(pSource + 3 * i, pTarget + 3 * i);
  while (i < nCount) CopyOne();
}

void CopySwapped4(unsigned char const* pSource, unsigned char* pTarget, std::size_t nCount) {
  for (std::size_t i = 0; i < nCount; ++i) {
    std::uint32_t nPixel;
    std::memcpy(&nPixel, pSource + 4 * i, 4);
    // The first byte and the third change places whichever end comes first.
    constexpr std::uint32_t KEPT = std::endian::native == std::endian::little ? 0xFF00FF00 : 0x00FF00FF;
    nPixel = (nPixel & KEPT) | std::rotl(nPixel & ~KEPT, 16);
    std::memcpy(pTarget + 4 * i, &nPixel, 4);
  }
}

}  // namespace QXC::detail
