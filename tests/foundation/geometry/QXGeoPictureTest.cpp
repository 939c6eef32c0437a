#include <QxGraphics3D/frame/foundation/geometry/QXGeoPicture.h>

#include <QxGraphics3D/frame/foundation/base3d/QXImageData.h>

#include <gtest/gtest.h>

namespace QXC {
namespace {

QXImageData* MakeImage() {
  auto* const pImage = new QXImageData;
  pImage->m_pPixels = new unsigned char[4]{1, 2, 3, 4};
  return pImage;
}

TEST(QXGeoPicture, BeginsWithoutImagePlaceAndTime) {
  QXGeoPicture const picture;
  EXPECT_EQ(picture.GetImage(), nullptr);
  EXPECT_EQ(picture.GetCenterPoint(), QdcPoint2D(0.0, 0.0));
  EXPECT_EQ(picture.GetDelayTime(), 0.0);
}

TEST(QXGeoPicture, KeepsPlaceAndTime) {
  QXGeoPicture picture;
  picture.SetCenterPoint(QdcPoint2D(-1.5, 2.5));
  picture.SetDelayTime(-12.25);
  EXPECT_EQ(picture.GetCenterPoint(), QdcPoint2D(-1.5, 2.5));
  EXPECT_EQ(picture.GetDelayTime(), -12.25);
}

// What is deleted twice or not at all shows under the address sanitizer.
TEST(QXGeoPicture, OwnsItsImage) {
  QXGeoPicture picture;
  picture.SetImage(MakeImage());
  QXImageData* const pSecond = MakeImage();
  picture.SetImage(pSecond);
  picture.SetImage(pSecond);
  ASSERT_EQ(picture.GetImage(), pSecond);
  EXPECT_EQ(static_cast<unsigned char*>(pSecond->m_pPixels)[3], 4);
}

TEST(QXGeoPicture, LeavesABlockThatWasTakenOver) {
  unsigned char* pBlock = nullptr;
  {
    QXGeoPicture picture;
    picture.SetImage(MakeImage());
    pBlock = static_cast<unsigned char*>(picture.GetImage()->m_pPixels);
    picture.GetImage()->m_pPixels = nullptr;
  }
  EXPECT_EQ(pBlock[0], 1);
  delete[] pBlock;
}

}  // namespace
}  // namespace QXC
