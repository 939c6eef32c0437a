#include <QxGraphics3D/texture/QXTexture.h>

#include <QxGraphics3D/frame/foundation/base3d/QXTextureDataAnimation.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileType.h>

#include <tests/texture/QXFedPictures.h>

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <stdexcept>
#include <vector>

namespace QXC {
namespace {

using Pixel = QXFedPixel;

constexpr Pixel Red{9, 0, 200, 255};
constexpr Pixel Blue{200, 0, 9, 77};
constexpr Pixel Nothing{0, 50, 60, 255};
constexpr Pixel Eraser{0, 50, 60, 128};
constexpr Pixel Clear{0, 0, 0, 0};

QXGeoPicture* Delayed(QXGeoPicture* pPicture, double dDelayTime) {
  pPicture->SetDelayTime(dDelayTime);
  return pPicture;
}

class QXTextureAnimation : public testing::Test {
protected:
  void Read() { m_pData.reset(QXTexture::GetTextureDataAnimation(L"/nowhere/a.gif")); }
  Pixel PixelAt(int nFrame, unsigned int nX, unsigned int nY) {
    return PixelOf(m_pData->GetFrameDataByIndex(nFrame), nX, nY);
  }
  /// A canvas of 4 by 4 red pixels, the picture laid onto it, and where it then shows.
  void ExpectPlace(QXGeoPicture* pPicture, Pixel const& pixel, int nLeft, int nTop, int nRight, int nBottom) {
    FeedPictures({MakePicture(4, 4, Red, 2, 2), pPicture});
    Read();
    ASSERT_EQ(m_pData->GetNumFrame(), 2);
    for (int nY = 0; nY < 4; ++nY) {
      for (int nX = 0; nX < 4; ++nX) {
        bool const bInside = nX >= nLeft && nX < nRight && nY >= nTop && nY < nBottom;
        Pixel const found = PixelAt(1, static_cast<unsigned int>(nX), static_cast<unsigned int>(nY));
        EXPECT_EQ(found, bInside ? pixel : Red) << nX << ' ' << nY;
      }
    }
  }

  QXFedType m_Type{QXFileType::EM_IMAGE_GIF};
  std::unique_ptr<QXTextureDataAnimation> m_pData;
};

TEST_F(QXTextureAnimation, HandsPathAndNoFlipToTheParser) {
  Read();
  EXPECT_TRUE(g_Fed.m_strPath == L"/nowhere/a.gif");
  EXPECT_EQ(g_Fed.m_nFlip, 0);
  EXPECT_EQ(g_Fed.m_nLiving, 0);
}

TEST_F(QXTextureAnimation, WithoutPicturesIsNone) {
  Read();
  EXPECT_EQ(m_pData, nullptr);
  FeedPictures({nullptr});
  Read();
  EXPECT_EQ(m_pData, nullptr);
  FeedPictures({new QXGeoPicture});
  Read();
  EXPECT_EQ(m_pData, nullptr);
  g_Fed.m_bReads = 0;
  FeedPictures({MakePicture(2, 2, Red, 1, 1)});
  Read();
  EXPECT_EQ(m_pData, nullptr);
  EXPECT_EQ(QXTexture::GetTextureDataAnimation(L""), nullptr);
}

TEST_F(QXTextureAnimation, CatchesWhateverTheParserRaises) {
  g_Fed.m_FillPictures = [](QdcArray<QXGeoPicture*>& arrPictures) {
    arrPictures.Add(MakePicture(2, 2, Red, 1, 1));
    throw std::runtime_error("broken");
  };
  Read();
  EXPECT_EQ(m_pData, nullptr);
  EXPECT_EQ(g_Fed.m_nLiving, 0);
}

TEST_F(QXTextureAnimation, HasTheSizeOfTheFirstPictureInEachFrame) {
  FeedPictures({MakePicture(5, 3, Red, 2.5, 1.5), MakePicture(1, 2, Blue, 0.5, 1)});
  Read();
  ASSERT_NE(m_pData, nullptr);
  EXPECT_EQ(m_pData->m_nCompression, 16u);
  EXPECT_EQ(m_pData->m_pPixels, nullptr);
  ASSERT_EQ(m_pData->GetNumFrame(), 2);
  for (int i = 0; i < 2; ++i) {
    QXTextureData const& frame = m_pData->GetFrameDataByIndex(i);
    EXPECT_EQ(frame.m_nWidth, 5u);
    EXPECT_EQ(frame.m_nHeight, 3u);
    EXPECT_EQ(frame.m_eFormat, PF_A8R8G8B8);
    EXPECT_EQ(frame.m_nCompression, 0u);
    EXPECT_EQ(frame.GetBlockLength(), 60u);
  }
  EXPECT_EQ(PixelAt(0, 0, 0), Red);
  EXPECT_EQ(PixelAt(1, 0, 0), Blue);
  EXPECT_EQ(PixelAt(1, 0, 1), Blue);
  EXPECT_EQ(PixelAt(1, 0, 2), Red);
  EXPECT_EQ(PixelAt(1, 1, 0), Red);
}

TEST_F(QXTextureAnimation, CopiesAPixelWhoseFirstByteIsNotZero) {
  ExpectPlace(MakePicture(2, 2, Blue, 2, 2), Blue, 1, 1, 3, 3);
}

TEST_F(QXTextureAnimation, ClearsUnderAnAlphaOf128) {
  ExpectPlace(MakePicture(2, 2, Eraser, 2, 2), Clear, 1, 1, 3, 3);
}

TEST_F(QXTextureAnimation, ShowsThePictureBelowUnderAnyOtherPixel) {
  ExpectPlace(MakePicture(2, 2, Nothing, 2, 2), Red, 0, 0, 0, 0);
  ExpectPlace(MakePicture(2, 2, Clear, 2, 2), Red, 0, 0, 0, 0);
}

// Unlike playback, no picture covers the canvas only because it is as large.
TEST_F(QXTextureAnimation, GoesPixelByPixelInFullSizeToo) {
  ExpectPlace(MakePicture(4, 4, Nothing, 2, 2), Red, 0, 0, 0, 0);
}

TEST_F(QXTextureAnimation, TruncatesThePlaceTowardsZero) {
  ExpectPlace(MakePicture(1, 1, Blue, 1.4, 2.9), Blue, 0, 2, 1, 3);
  ExpectPlace(MakePicture(2, 2, Blue, 0.2, 1), Blue, 0, 0, 2, 2);
}

TEST_F(QXTextureAnimation, ClipsAtTheCanvas) {
  ExpectPlace(MakePicture(2, 2, Blue, 0, 0), Blue, 0, 0, 1, 1);
  ExpectPlace(MakePicture(2, 2, Blue, 4, 4), Blue, 3, 3, 4, 4);
  ExpectPlace(MakePicture(9, 1, Blue, 2, 0.5), Blue, 0, 0, 4, 1);
  ExpectPlace(MakePicture(8, 8, Blue, 2, 2), Blue, 0, 0, 4, 4);
  ExpectPlace(MakePicture(2, 2, Blue, 6, 2), Blue, 0, 0, 0, 0);
  ExpectPlace(MakePicture(2, 2, Blue, -2, 2), Blue, 0, 0, 0, 0);
  double const dHuge = std::numeric_limits<double>::max();
  ExpectPlace(MakePicture(2, 2, Blue, dHuge, -dHuge), Blue, 0, 0, 0, 0);
  ExpectPlace(MakePicture(2, 2, Blue, -std::numeric_limits<double>::infinity(), 1), Blue, 0, 0, 0, 0);
}

TEST_F(QXTextureAnimation, WidensPicturesWithOpaqueAlpha) {
  auto* const pPicture = new QXGeoPicture;
  pPicture->SetImage(MakeFedImage(4, 4, 24));
  pPicture->SetCenterPoint(QdcPoint2D(2, 2));
  auto const* const p = static_cast<unsigned char const*>(pPicture->GetImage()->m_pPixels);
  Pixel const first{p[0], p[1], p[2], 255};
  FeedPictures({pPicture});
  Read();
  ASSERT_NE(m_pData, nullptr);
  EXPECT_EQ(m_pData->GetFrameDataByIndex(0).m_eFormat, PF_A8R8G8B8);
  EXPECT_EQ(PixelAt(0, 0, 0), first);
}

TEST_F(QXTextureAnimation, KeepsTheCanvasWhereAPictureHasNoImage) {
  auto* const pUnknown = new QXGeoPicture;
  pUnknown->SetImage(MakeFedImage(4, 4, 16, 4));
  pUnknown->SetCenterPoint(QdcPoint2D(2, 2));
  FeedPictures({MakePicture(4, 4, Red, 2, 2), new QXGeoPicture, nullptr, pUnknown});
  Read();
  ASSERT_NE(m_pData, nullptr);
  ASSERT_EQ(m_pData->GetNumFrame(), 3);
  EXPECT_EQ(PixelAt(1, 3, 3), Red);
  EXPECT_EQ(PixelAt(2, 3, 3), Red);
}

TEST_F(QXTextureAnimation, CountsMillisecondsAndTakes100ForNone) {
  auto const make = [](double dDelayTime) { return Delayed(MakePicture(1, 1, Red, 0.5, 0.5), dDelayTime); };
  FeedPictures({make(7.0), make(0.0), make(0.5e-10), make(-0.5e-10), make(2.55), make(1e-10), make(-3.0), make(1e300)});
  Read();
  ASSERT_NE(m_pData, nullptr);
  ASSERT_EQ(m_pData->GetNumFrame(), 8);
  unsigned int const nExpected[] = {70, 100, 100, 100, 25, 0, 0, 2147483647};
  for (int i = 0; i < 8; ++i) EXPECT_EQ(m_pData->GetFrameTimeByIndex(i), nExpected[i]) << i;
}

}  // namespace
}  // namespace QXC
