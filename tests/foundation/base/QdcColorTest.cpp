#include <QxGraphics3D/frame/foundation/base/QdcColor.h>

#include <gtest/gtest.h>

namespace QXC {
namespace {

TEST(QdcColor, PacksAlphaHighestAndRedLowest) {
  EXPECT_EQ(QDCRGBA(0x11, 0x22, 0x33, 0x44), 0x44332211u);
  EXPECT_EQ(QDCRGBA(255, 255, 255, 255), 0xFFFFFFFFu);
  EXPECT_EQ(QDCRGBA(0, 0, 0, 0), 0u);
}

TEST(QdcColor, UnpacksEachByte) {
  EXPECT_EQ(QDCREDVAL(0x44332211u), 0x11);
  EXPECT_EQ(QDCGREENVAL(0x44332211u), 0x22);
  EXPECT_EQ(QDCBLUEVAL(0x44332211u), 0x33);
  EXPECT_EQ(QDCALPHAVAL(0xFF332211u), 0xFF);
}

}  // namespace
}  // namespace QXC
