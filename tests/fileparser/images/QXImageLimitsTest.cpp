#include "QXTestImages.h"

#include <sys/resource.h>

namespace {

using namespace qxtest;
using QXC::detail::QXImageLimits;

// A file with some bytes replaced.
struct Lie {
  char const* m_szName;
  std::size_t m_nPlace;
  std::string m_strBytes;
};

Image ReadLie(Lie const& lie, QXImageLimits const& limits = {}) {
  Bytes arrBytes = FileBytes(lie.m_szName);
  std::copy(lie.m_strBytes.begin(), lie.m_strBytes.end(), arrBytes.begin() + static_cast<std::ptrdiff_t>(lie.m_nPlace));
  return ReadBytes(TypeOf(lie.m_szName), arrBytes, limits);
}

long PeakKilobytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

TEST(QXImageLimits, BothEdgesAndTheSizeMustFit) {
  QXImageLimits limits;
  EXPECT_TRUE(limits.Allow(65536, 1, 4));
  EXPECT_FALSE(limits.Allow(65537, 1, 1));
  EXPECT_FALSE(limits.Allow(1, 65537, 1));
  EXPECT_FALSE(limits.Allow(0, 1, 1));
  EXPECT_FALSE(limits.Allow(1, 0, 1));
  EXPECT_TRUE(limits.Allow(16384, 16384, 4));
  EXPECT_FALSE(limits.Allow(16385, 16384, 4));
  EXPECT_TRUE(limits.Allow(32768, 32768, 1));
  limits.m_nMaxEdge = 0xFFFFFFFF;
  EXPECT_FALSE(limits.Allow(0xFFFFFFFF, 0xFFFFFFFF, 4));
  limits.m_nMaxBytes = ~0ULL;
  EXPECT_TRUE(limits.Allow(0xFFFFFFFF, 0x40000000, 4));
}

// Every file is read at limits that just hold it, and not one below.
TEST(QXImageLimits, EveryReaderKeepsThem) {
  for (std::string const& strName : ImageNames()) {
    SCOPED_TRACE(strName);
    Image const pImage = ReadFile(strName);
    if (!pImage) continue;
    QXImageLimits limits;
    limits.m_nMaxEdge = std::max(pImage->m_nWidth, pImage->m_nHeight);
    limits.m_nMaxBytes = PixelsOf(*pImage).size();
    EXPECT_NE(ReadFile(strName, limits), nullptr);
    QXImageLimits edge = limits, bytes = limits;
    --edge.m_nMaxEdge;
    --bytes.m_nMaxBytes;
    EXPECT_EQ(ReadFile(strName, edge), nullptr);
    EXPECT_EQ(ReadFile(strName, bytes), nullptr);
  }
}

TEST(QXImageLimits, AZeroEdgeIsNoPicture) {
  std::string const strTwo(2, '\0'), strFour(4, '\0');
  // The checksum of the PNG is another reason; that of a picture without rows stands in its own test of the codec.
  for (Lie const& lie : {Lie{"rgb8.png", 16, strFour}, Lie{"rgb8.png", 20, strFour}, Lie{"bits24.bmp", 18, strFour},
           Lie{"bits24.bmp", 22, strFour}, Lie{"bits8.bmp", 18, strFour}, Lie{"bits8.bmp", 22, strFour},
           Lie{"bits24-core.bmp", 18, strTwo}, Lie{"bits24-core.bmp", 20, strTwo}, Lie{"rgb24.tga", 12, strTwo},
           Lie{"rgb24.tga", 14, strTwo}, Lie{"rgb24-runs.tga", 12, strTwo}, Lie{"rgb8.psd", 14, strFour},
           Lie{"rgb8.psd", 18, strFour}, Lie{"plain.gif", 6, strTwo}, Lie{"plain.gif", 8, strTwo}}) {
    EXPECT_EQ(ReadLie(lie), nullptr) << lie.m_szName << " " << lie.m_nPlace;
  }
}

// Sizes inside the limits that the bytes cannot hold, and sizes beyond them: neither takes memory.
TEST(QXImageLimits, SizesThatTheBytesCannotHoldCostNoMemory) {
  long const nBefore = PeakKilobytes();
  for (char const* szName : {"bomb-edges.png", "bomb-size.png", "bomb-size.tif", "bomb-canvas.gif"}) {
    EXPECT_EQ(ReadFile(szName), nullptr) << szName;
  }
  std::string const strLittle("\0\x40", 2), strLittleWide("\0\x40\0\0", 4), strBigWide("\0\0\x40\0", 4);
  for (Lie const& lie : {Lie{"rgb24.tga", 12, strLittle + strLittle}, Lie{"rgb24-runs.tga", 12, strLittle + strLittle},
           Lie{"bits24.bmp", 18, strLittleWide + strLittleWide}, Lie{"bits8.bmp", 18, strLittleWide + strLittleWide},
           Lie{"rgb8.psd", 14, strBigWide + strBigWide}, Lie{"rgb8-packed.psd", 14, strBigWide + strBigWide}}) {
    EXPECT_EQ(ReadLie(lie), nullptr) << lie.m_szName;
  }
  std::string const strHdr = "#?RADIANCE\nFORMAT=32-bit_rle_rgbe\n\n-Y 16384 +X 16384\n";
  EXPECT_EQ(ReadBytes(TypeOf("a.hdr"), Bytes(strHdr.begin(), strHdr.end())), nullptr);
  EXPECT_LT(PeakKilobytes() - nBefore, 64 * 1024);
}

TEST(QXImageLimits, AJpegThatNamesMoreBlocksThanItHasBitsCostsNoMemory) {
  long const nBefore = PeakKilobytes();
  for (char const* szName : {"ycbcr444.jpg", "progressive.jpg", "grey.jpg"}) {
    Bytes arrBytes = FileBytes(szName);
    // The frame header: its marker, length and precision stand before height and width.
    std::size_t nFrame = 0;
    while (arrBytes[nFrame] != 0xFF || (arrBytes[nFrame + 1] != 0xC0 && arrBytes[nFrame + 1] != 0xC2)) ++nFrame;
    std::fill_n(arrBytes.begin() + static_cast<std::ptrdiff_t>(nFrame) + 5, 4, static_cast<unsigned char>(0x40));
    EXPECT_EQ(ReadBytes(TypeOf(szName), arrBytes), nullptr) << szName;
  }
  EXPECT_LT(PeakKilobytes() - nBefore, 64 * 1024);
}

}  // namespace
