#include <QxGraphics3D/frame/foundation/base/QdcByteOrder.h>

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>

namespace QDC {
namespace {

TEST(QdcByteOrder, TurnsNumbersRound) {
  static_assert(qdcswapbytes(static_cast<unsigned char>(7)) == 7);
  static_assert(qdcswapbytes(static_cast<unsigned short>(0x0102)) == 0x0201);
  static_assert(qdcswapbytes(0x01020304u) == 0x04030201u);
  EXPECT_EQ(qdcswapbytes(-2), static_cast<int>(0xFEFFFFFFu));
  EXPECT_EQ(qdcswapbytes(std::int64_t{1}), std::int64_t{1} << 56);
}

TEST(QdcByteOrder, TurnsTheBitsOfFloatsRound) {
  double const dSwapped = qdcswapbytes(std::bit_cast<double>(std::uint64_t{0x0102030405060708u}));
  EXPECT_EQ(std::bit_cast<std::uint64_t>(dSwapped), 0x0807060504030201u);
  EXPECT_EQ(qdcswapbytes(qdcswapbytes(1.5f)), 1.5f);
}

}  // namespace
}  // namespace QDC
