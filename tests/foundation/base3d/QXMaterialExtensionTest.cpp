#include <QxGraphics3D/frame/foundation/base3d/QXMaterialExtension.h>

#include <gtest/gtest.h>

namespace QXC {
namespace {

TEST(QXMaterialExtension, MovesTexturesNowhereAtFirst) {
  QXMaterialExtension const extension;
  EXPECT_EQ(extension.GetType(), 1);
  for (int nUnit = 0; nUnit < 2; ++nUnit) {
    for (int i = 0; i < QXMaterialExtension::GROUP_SIZE; ++i) {
      EXPECT_EQ(extension.m_fSlides[nUnit][i], 0.0f);
      EXPECT_EQ(extension.m_fTurns[nUnit][i], 0.0f);
    }
  }
}

TEST(QXMaterialExtension, HasFourGroupsOfFiveNumbersPairBesidePair) {
  QXMaterialExtension extension;
  EXPECT_EQ(sizeof(extension.m_fSlides), 10 * sizeof(float));
  EXPECT_EQ(sizeof(extension.m_fTurns), 10 * sizeof(float));
  EXPECT_EQ(&extension.m_fSlides[1][0], &extension.m_fSlides[0][0] + 5);
}

TEST(QXMaterialExtension, KeepsTypesThatHaveNoName) {
  EXPECT_EQ(QXMaterialExtension(0).GetType(), 0);
  EXPECT_EQ(QXMaterialExtension(-5).GetType(), -5);
  QXMaterialExtension copy(QXMaterialExtension(9));
  EXPECT_EQ(copy.GetType(), 9);
}

}  // namespace
}  // namespace QXC
