// Textures as they come out of a frame.
#include <cstring>

#include <QxGraphics3D/texture/QXTexture.h>
#include <QxGraphics3D/texture/QXTextureManager.h>

#include <tests/ogre/QXOgreTexturing.h>

namespace QXC {

using QXOgreTexture = QXOgreTexturing;

TEST_F(QXOgreTexture, TheFirstRowStandsWhereVIsZero) {
  QXTexture* const pTexture = MakeTexture(2, 2, PF_A8R8G8B8,
      {0, 0, 255, 255, 0, 255, 0, 255,           // red, green
          255, 0, 0, 255, 255, 255, 255, 255});  // blue, white
  DrawTextured(pTexture);
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(8, 8), RED_PIXEL);
  EXPECT_EQ(picture.At(56, 8), GREEN_PIXEL);
  EXPECT_EQ(picture.At(8, 56), (QXPixel{0, 0, 255, 255}));
  EXPECT_EQ(picture.At(56, 56), (QXPixel{255, 255, 255, 255}));
}

}  // namespace QXC
