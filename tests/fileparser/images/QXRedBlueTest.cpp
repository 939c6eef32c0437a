#include <QxGraphics3D/frame/foundation/fileparser/detail/QXRedBlue.h>

#include <cstddef>
#include <random>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace {

using Bytes = std::vector<unsigned char>;

// The byte behind the target must stay.
void ExpectSwapped(void (*pfnCopy)(unsigned char const*, unsigned char*, std::size_t), std::size_t nBytesPerPixel) {
  std::mt19937 random(20261121);
  for (std::size_t nCount = 0; nCount < 200; ++nCount) {
    SCOPED_TRACE(nCount);
    Bytes arrSource(nCount * nBytesPerPixel);
    for (unsigned char& nByte : arrSource) nByte = static_cast<unsigned char>(random());
    Bytes arrExpected = arrSource;
    for (std::size_t i = 0; i < nCount; ++i) {
      std::swap(arrExpected[i * nBytesPerPixel], arrExpected[i * nBytesPerPixel + 2]);
    }
    arrExpected.push_back(0x5A);
    Bytes arrTarget(arrExpected.size(), 0x5A);
    pfnCopy(arrSource.data(), arrTarget.data(), nCount);
    ASSERT_EQ(arrTarget, arrExpected);
  }
}

TEST(QXRedBlue, ThreeBytesAreSwappedAtEveryCount) {
  ExpectSwapped(QXC::detail::CopySwapped3, 3);
}

TEST(QXRedBlue, FourBytesAreSwappedAtEveryCount) {
  ExpectSwapped(QXC::detail::CopySwapped4, 4);
}

}  // namespace
