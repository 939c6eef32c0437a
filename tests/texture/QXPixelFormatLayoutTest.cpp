#include <QxGraphics3D/texture/QXPixelFormatLayout.h>

#include <QxGraphics3D/frame/foundation/base/QdcColor.h>

#include <gtest/gtest.h>

namespace QXC {
namespace {

struct LayoutCase {
  QX3DPixelFormat m_eFormat;
  int m_nPixelBytes;
  /// Of the bytes 10, 20, 30, 40.
  unsigned int m_nColor;
};

class QXPixelFormatLayouts : public testing::TestWithParam<LayoutCase> {};

TEST_P(QXPixelFormatLayouts, AreTheBytesInMemory) {
  QXPixelFormatLayout const layout = QXPixelFormatLayout::Of(GetParam().m_eFormat);
  EXPECT_EQ(layout.m_nPixelBytes, GetParam().m_nPixelBytes);
  unsigned char const bytes[] = {10, 20, 30, 40};
  EXPECT_EQ(layout.ReadColor(bytes), GetParam().m_nColor);
}

INSTANTIATE_TEST_SUITE_P(Formats, QXPixelFormatLayouts,
    testing::Values(LayoutCase{PF_L8, 1, QDCRGBA(10, 10, 10, 255)}, LayoutCase{PF_BYTE_LA, 2, QDCRGBA(10, 10, 10, 20)},
        LayoutCase{PF_R8G8B8, 3, QDCRGBA(30, 20, 10, 255)}, LayoutCase{PF_B8G8R8, 3, QDCRGBA(30, 20, 10, 255)},
        LayoutCase{PF_A8R8G8B8, 4, QDCRGBA(30, 20, 10, 40)}, LayoutCase{PF_R8G8B8A8, 4, QDCRGBA(30, 20, 10, 40)},
        LayoutCase{PF_A8B8G8R8, 4, QDCRGBA(10, 20, 30, 40)}, LayoutCase{PF_B8G8R8A8, 4, QDCRGBA(20, 30, 40, 10)}));

TEST(QXPixelFormatLayout, OfAnyOtherFormatIsEmpty) {
  for (int const nFormat : {-1, 0, 2, 6, 15, 27, 29, 1000}) {
    QXPixelFormatLayout const layout = QXPixelFormatLayout::Of(static_cast<QX3DPixelFormat>(nFormat));
    EXPECT_EQ(layout.m_nPixelBytes, 0) << nFormat;
    EXPECT_EQ(layout.ReadColor(nullptr), 0u) << nFormat;
  }
}

}  // namespace
}  // namespace QXC
