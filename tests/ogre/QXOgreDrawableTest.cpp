#include <tests/ogre/QXOgreScenery.h>

namespace QXC {

using QXOgreDrawable = QXOgreScenery;

TEST_F(QXOgreDrawable, ATriangleCoversItsPixelsAndNoOthers) {
  auto const pMesh = MakeMesh({{-1.0F, -1.0F, 0.0F}, {1.0F, -1.0F, 0.0F}, {-1.0F, 1.0F, 0.0F}});
  AddRange<unsigned short>(*pMesh, {0, 1, 2}, RED);
  Draw(*pMesh);
  QXPicture const picture = Frame();
  // The lower left half: y counts downwards in the picture.
  EXPECT_EQ(picture.At(1, 62), RED_PIXEL);
  EXPECT_EQ(picture.At(20, 40), RED_PIXEL);
  EXPECT_EQ(picture.At(62, 1), BACKGROUND_PIXEL);
  EXPECT_EQ(picture.At(40, 20), BACKGROUND_PIXEL);
}

}  // namespace QXC
