#include <gtest/gtest.h>

#include <QxGraphics3D/view/QXBloomSetting.h>

namespace QXC {

TEST(QXBloomSetting, FreshOneLetsBrightColoursGlowALittleWay) {
  QXBloomSetting const setting;
  EXPECT_EQ(setting.m_dThreshold, 0.7);
  EXPECT_EQ(setting.m_dIntensity, 1.0);
  EXPECT_EQ(setting.m_dRadius, 0.04);
}

}  // namespace QXC
