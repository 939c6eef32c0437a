#include <type_traits>

#include <gtest/gtest.h>

#include <QxGraphics3D/renderop/TextureVertex.h>

namespace QXC {
namespace {

TEST(TextureVertex, FreshIsAllZero) {
  TextureVertex const vertex;
  EXPECT_EQ(vertex.x, 0.0);
  EXPECT_EQ(vertex.y, 0.0);
  EXPECT_EQ(vertex.z, 0.0);
  EXPECT_EQ(vertex.u, 0.0);
  EXPECT_EQ(vertex.v, 0.0);
}

TEST(TextureVertex, CopiesCarryAllFiveNumbers) {
  TextureVertex source;
  source.x = 1.0;
  source.y = 2.0;
  source.z = 3.0;
  source.u = 4.0;
  source.v = 5.0;
  TextureVertex const copy(source);
  TextureVertex assigned;
  assigned = source;
  for (TextureVertex const* pVertex : {&copy, static_cast<TextureVertex const*>(&assigned)}) {
    EXPECT_EQ(pVertex->x, 1.0);
    EXPECT_EQ(pVertex->y, 2.0);
    EXPECT_EQ(pVertex->z, 3.0);
    EXPECT_EQ(pVertex->u, 4.0);
    EXPECT_EQ(pVertex->v, 5.0);
  }
}

TEST(TextureVertex, FieldsFollowEachOther) {
  TextureVertex const vertex;
  EXPECT_EQ(&vertex.y - &vertex.x, 1);
  EXPECT_EQ(&vertex.z - &vertex.x, 2);
  EXPECT_EQ(&vertex.u - &vertex.x, 3);
  EXPECT_EQ(&vertex.v - &vertex.x, 4);
}

TEST(TextureVertex, IsDeletedThroughItsBase) {
  EXPECT_TRUE(std::has_virtual_destructor_v<TextureVertex>);
}

}  // namespace
}  // namespace QXC
