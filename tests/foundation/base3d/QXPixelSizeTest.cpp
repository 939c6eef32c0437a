#include <QxGraphics3D/frame/foundation/base3d/detail/QXPixelSize.h>

#include <gtest/gtest.h>

using namespace QXC;

namespace {

struct Sizes {
  int m_nFormat;
  unsigned int m_nRow;
  unsigned int m_nMipmap;
  unsigned int m_nAtlas;
  unsigned int m_nStored;
};

TEST(QXPixelSize, DiffersByWhatItIsAskedFor) {
  Sizes const arrSizes[]{{0, 4, 4, 4, 4}, {1, 1, 4, 4, 1}, {5, 4, 4, 4, 2}, {10, 3, 4, 3, 3}, {11, 4, 3, 3, 3},
      {12, 4, 4, 4, 4}, {13, 4, 4, 4, 4}, {14, 4, 4, 4, 4}, {28, 4, 4, 4, 4}, {99, 4, 4, 4, 4}, {-1, 4, 4, 4, 4}};
  for (Sizes const& sizes : arrSizes) {
    auto const eFormat = static_cast<QX3DPixelFormat>(sizes.m_nFormat);
    EXPECT_EQ(detail::RowPixelSize(eFormat), sizes.m_nRow) << sizes.m_nFormat;
    EXPECT_EQ(detail::MipmapPixelSize(eFormat), sizes.m_nMipmap) << sizes.m_nFormat;
    EXPECT_EQ(detail::AtlasPixelSize(eFormat), sizes.m_nAtlas) << sizes.m_nFormat;
    EXPECT_EQ(detail::StoredPixelSize(eFormat), sizes.m_nStored) << sizes.m_nFormat;
    EXPECT_EQ(detail::MipmapBlockSize(eFormat), sizes.m_nFormat == 11 ? 8U : 16U) << sizes.m_nFormat;
    EXPECT_EQ(detail::StoredBlockSize(eFormat), sizes.m_nStored == 3 ? 8U : 16U) << sizes.m_nFormat;
  }
}

TEST(QXPixelSize, RoundsAnImageUpToWholeBlocks) {
  EXPECT_EQ(detail::BlockImageSize(0, 5, 8), 0U);
  EXPECT_EQ(detail::BlockImageSize(1, 1, 8), 8U);
  EXPECT_EQ(detail::BlockImageSize(4, 4, 16), 16U);
  EXPECT_EQ(detail::BlockImageSize(5, 4, 16), 32U);
  EXPECT_EQ(detail::BlockImageSize(0xFFFFFFFF, 1, 16), 0x400000000U);
}

}  // namespace
