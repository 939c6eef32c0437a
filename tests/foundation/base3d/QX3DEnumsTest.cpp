#include <QxGraphics3D/frame/foundation/base3d/QX3DEnums.h>

#include <gtest/gtest.h>

#include <type_traits>

using namespace QXC;

namespace {

template <class T>
constexpr bool IsInt = std::is_same_v<std::underlying_type_t<T>, int>;

TEST(QX3DEnums, AreThirtyTwoBitsWideSoThatAnyValueSurvives) {
  EXPECT_TRUE(IsInt<SceneType> && IsInt<RenderStateSet> && IsInt<QXMaterialSystemType> && IsInt<CullingMode> &&
              IsInt<_Graphics3DType> && IsInt<QX3DPixelFormat>);
  EXPECT_TRUE((std::is_same_v<std::underlying_type_t<QXTextureCompression>, unsigned int>));
  EXPECT_EQ(static_cast<int>(static_cast<SceneType>(-77)), -77);
  EXPECT_EQ(static_cast<int>(static_cast<QX3DPixelFormat>(0x7FFFFFFF)), 0x7FFFFFFF);
}

TEST(QX3DEnums, NumberTheValuesThatOtherClassesStoreAndPersist) {
  EXPECT_EQ(SCENE_PLANE, 2);
  EXPECT_EQ(RENDER_STATE_SOLID, 1);
  EXPECT_EQ(CULLING_NONE, 1);
  EXPECT_EQ(GRAPHICS3D_DEFERRED, 7);
}

TEST(QX3DEnums, NumberPixelFormatsAsTheRendererIsToldThem) {
  EXPECT_EQ(PF_L8, 1);
  EXPECT_EQ(PF_BYTE_LA, 5);
  EXPECT_EQ(PF_R8G8B8, 10);
  EXPECT_EQ(PF_B8G8R8, 11);
  EXPECT_EQ(PF_A8R8G8B8, 12);
  EXPECT_EQ(PF_A8B8G8R8, 13);
  EXPECT_EQ(PF_B8G8R8A8, 14);
  EXPECT_EQ(PF_R8G8B8A8, 28);
}

TEST(QX3DEnums, NumberTheWaysToPackPixels) {
  EXPECT_EQ(TEXTURE_COMPRESSION_NONE, 0U);
  EXPECT_EQ(TEXTURE_COMPRESSION_BLOCK, 14U);
  EXPECT_EQ(TEXTURE_COMPRESSION_RAW, 16U);
  EXPECT_EQ(TEXTURE_COMPRESSION_BLOCK_ALPHA, 19U);
  EXPECT_EQ(TEXTURE_COMPRESSION_BLOCK_ALPHA_SMOOTH, 20U);
}

}  // namespace
