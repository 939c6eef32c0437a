#include <QxGraphics3D/frame/foundation/stream/detail/QXSwappedArray.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <vector>

namespace QXC::detail {
namespace {

TEST(QXSwappedArray, TurnsEveryElementRound) {
  std::uint16_t shorts[3] = {0x0102, 0xFF00, 7};
  SwapArray(shorts, 3);
  EXPECT_EQ(shorts[0], 0x0201);
  EXPECT_EQ(shorts[1], 0x00FF);
  EXPECT_EQ(shorts[2], 0x0700);
}

// Lengths around that of a piece: nothing may be missing or come twice where one ends.
TEST(QXSwappedArray, GivesTheWholeArrayPieceByPieceAndLeavesItAlone) {
  for (std::size_t const nCount : {0u, 1u, 511u, 512u, 513u, 1024u, 1500u}) {
    std::vector<unsigned int> values(nCount);
    for (std::size_t i = 0; i < nCount; ++i) values[i] = static_cast<unsigned int>(0x01020304u + i);
    std::vector<unsigned int> const before = values;
    std::vector<unsigned int> written;
    ForEachSwapped(values.data(), nCount, [&written](unsigned int const* pPiece, std::size_t nPart) {
      written.insert(written.end(), pPiece, pPiece + nPart);
    });
    EXPECT_EQ(values, before);
    ASSERT_EQ(written.size(), nCount);
    for (std::size_t i = 0; i < nCount; ++i) ASSERT_EQ(written[i], __builtin_bswap32(before[i]));
  }
}

TEST(QXSwappedArray, SwapsFloatsWithoutCalculatingWithThem) {
  // Turned round, this pattern is a signalling NaN, whose bits a register of the coprocessor would change.
  std::uint32_t const nPattern = 0x0100817Fu;
  float fValue = 0;
  std::memcpy(&fValue, &nPattern, 4);
  SwapArray(&fValue, 1);
  std::uint32_t nSwapped = 0;
  std::memcpy(&nSwapped, &fValue, 4);
  EXPECT_EQ(nSwapped, 0x7F810001u);
}

}  // namespace
}  // namespace QXC::detail
