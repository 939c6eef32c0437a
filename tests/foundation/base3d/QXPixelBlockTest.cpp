#include <QxGraphics3D/frame/foundation/base3d/detail/QXPixelBlock.h>

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <memory>

using QXC::detail::NewPixelBlock;

namespace {

TEST(QXPixelBlock, IsWritableToItsEnds) {
  for (std::uint64_t const nBytes : {std::uint64_t{1}, std::uint64_t{4095}, std::uint64_t{4} << 20,
           (std::uint64_t{4} << 20) + 1, (std::uint64_t{9} << 20) + 12345}) {
    std::unique_ptr<unsigned char[]> const pBlock(NewPixelBlock(nBytes));
    ASSERT_NE(pBlock, nullptr) << nBytes;
    std::memset(pBlock.get(), 3, nBytes);
    EXPECT_EQ(pBlock[nBytes - 1], 3);
  }
}

TEST(QXPixelBlock, OfNoBytesIsABlockToo) {
  std::unique_ptr<unsigned char[]> const pBlock(NewPixelBlock(0));
  EXPECT_NE(pBlock, nullptr);
}

TEST(QXPixelBlock, BeyondAllAddressesIsNull) {
  EXPECT_EQ(NewPixelBlock(std::uint64_t{1} << 63), nullptr);
  EXPECT_EQ(NewPixelBlock(std::numeric_limits<std::uint64_t>::max()), nullptr);
}

}  // namespace
