#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseToolkit.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileType.h>
#include <QxGraphics3D/texture/QXAnimationTexture.h>

#include <tests/fileparser/images/QXTestGif.h>
#include <tests/foundation/toolkit/QXTestFolder.h>
#include <tests/texture/QXBareAnimation.h>
#include <tests/texture/QXFedPictures.h>

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <stdexcept>
#include <vector>

#include "../QXBareTexture.h"

namespace QXC {
namespace {

using Pixel = QXFedPixel;

constexpr Pixel Red{9, 0, 200, 255};
constexpr Pixel Blue{0, 0, 9, 255};
constexpr Pixel Faint{200, 100, 9, 254};
constexpr Pixel Clear{1, 2, 3, 0};

/// Counts those that live.
class MortalTexture final : public QXBareTexture {
public:
  MortalTexture() { ++ms_nLiving; }
  ~MortalTexture() override { --ms_nLiving; }
  inline static int ms_nLiving = 0;
};

class QXAnimationLoad : public testing::Test {
protected:
  /// Into a texture without frames.
  unsigned char Load(unsigned char bFlip = 0) {
    m_pTexture = std::make_unique<QXBareAnimation>();
    return m_pTexture->LoadAnimationImageData(L"/nowhere/a.gif", 1, bFlip);
  }
  Pixel PixelAt(std::size_t nFrame, int nX, int nY) const {
    return PixelOf(m_pTexture->m_arrFrames[nFrame], static_cast<unsigned int>(nX), static_cast<unsigned int>(nY));
  }
  /// A canvas of 4 by 4 red pixels, the picture laid onto it, and where it then shows.
  void ExpectPlace(QXGeoPicture* pPicture, Pixel const& pixel, int nLeft, int nTop, int nRight, int nBottom,
      unsigned char bFlip = 0) {
    FeedPictures({MakePicture(4, 4, Red, 2, 2), pPicture});
    ASSERT_EQ(Load(bFlip), 1);
    ASSERT_EQ(m_pTexture->m_arrFrames.size(), 2u);
    for (int nY = 0; nY < 4; ++nY) {
      for (int nX = 0; nX < 4; ++nX) {
        bool const bInside = nX >= nLeft && nX < nRight && nY >= nTop && nY < nBottom;
        EXPECT_EQ(PixelAt(1, nX, nY), bInside ? pixel : Red) << nX << ' ' << nY;
      }
    }
  }
  void ExpectNothingLoaded() const {
    EXPECT_TRUE(m_pTexture->m_arrFrames.empty());
    EXPECT_EQ(m_pTexture->m_bLoadedImage, 0);
    EXPECT_EQ(m_pTexture->m_bNeedLoadTexture, 0);
    EXPECT_EQ(m_pTexture->m_nTotalTime, 0u);
    EXPECT_TRUE(m_pTexture->m_strTexFilePath.IsEmpty());
  }

  QXFedType m_Type{QXFileType::EM_IMAGE_GIF};
  std::unique_ptr<QXBareAnimation> m_pTexture;
};

TEST_F(QXAnimationLoad, HandsPathAndFlipToTheParser) {
  FeedPictures({MakePicture(2, 2, Red, 1, 1)});
  EXPECT_EQ(Load(1), 1);
  EXPECT_TRUE(g_Fed.m_strPath == L"/nowhere/a.gif");
  EXPECT_EQ(g_Fed.m_nFlip, 1);
  EXPECT_EQ(g_Fed.m_nLiving, 0);
}

TEST_F(QXAnimationLoad, StoresFlagsPathAndTimes) {
  FeedPictures({MakePicture(4, 2, Red, 2, 1), MakePicture(1, 1, Blue, 0.5, 0.5)});
  ASSERT_EQ(Load(), 1);
  EXPECT_EQ(m_pTexture->m_bLoadedImage, 1);
  EXPECT_EQ(m_pTexture->m_bNeedLoadTexture, 1);
  EXPECT_TRUE(m_pTexture->m_strTexFilePath == L"/nowhere/a.gif");
  EXPECT_TRUE(m_pTexture->m_strImgRealFilePath.IsEmpty());
  EXPECT_EQ(m_pTexture->m_TextureData.m_pPixels, nullptr);
  EXPECT_EQ(m_pTexture->m_nTotalTime, 200u);
  EXPECT_EQ(m_pTexture->m_mapFrameEndTimes, (std::map<unsigned int, unsigned int>{{0, 100}, {1, 200}}));
  for (QXTextureData const& frame : m_pTexture->m_arrFrames) {
    EXPECT_EQ(frame.m_nWidth, 4u);
    EXPECT_EQ(frame.m_nHeight, 2u);
    EXPECT_EQ(frame.m_eFormat, PF_A8R8G8B8);
    EXPECT_EQ(frame.m_nCompression, 0u);
    EXPECT_EQ(frame.GetBlockLength(), 32u);
  }
}

TEST_F(QXAnimationLoad, RefusesAnEmptyPathAndKeepsItsTextures) {
  m_pTexture = std::make_unique<QXBareAnimation>();
  m_pTexture->m_arrFrameTextures.Add(new MortalTexture);
  EXPECT_EQ(m_pTexture->LoadAnimationImageData(L"", 0, 0), 0);
  EXPECT_EQ(MortalTexture::ms_nLiving, 1);
  EXPECT_EQ(g_Fed.m_nMade, 0);
}

TEST_F(QXAnimationLoad, RefusesOtherTypesAndHasNoTexturesThen) {
  for (wchar_t const* szPath : {L"/x/a.png", L"/x/a.ktx2", L"/x/a", L"/x/a.doc"}) {
    m_pTexture = std::make_unique<QXBareAnimation>();
    m_pTexture->m_nTotalTime = 77;
    m_pTexture->m_arrFrameTextures.Add(new MortalTexture);
    m_pTexture->m_arrFrameTextures.Add(nullptr);
    EXPECT_EQ(m_pTexture->LoadAnimationImageData(szPath, 0, 0), 0);
    EXPECT_EQ(MortalTexture::ms_nLiving, 0);
    EXPECT_EQ(m_pTexture->m_arrFrameTextures.GetSize(), 0u);
    EXPECT_EQ(m_pTexture->m_nTotalTime, 77u);
    EXPECT_TRUE(m_pTexture->m_strTexFilePath.IsEmpty());
  }
  EXPECT_EQ(g_Fed.m_nMade, 0);
}

TEST_F(QXAnimationLoad, TakesTheExtensionInAnyCase) {
  FeedPictures({MakePicture(2, 2, Red, 1, 1)});
  m_pTexture = std::make_unique<QXBareAnimation>();
  EXPECT_EQ(m_pTexture->LoadAnimationImageData(L"/x/a.GIF", 0, 0), 1);
  EXPECT_EQ(m_pTexture->m_arrFrames.size(), 1u);
}

TEST_F(QXAnimationLoad, SucceedsWithoutPictures) {
  EXPECT_EQ(Load(), 1);
  ExpectNothingLoaded();
  g_Fed.m_bReads = 0;
  EXPECT_EQ(Load(), 1);
  ExpectNothingLoaded();
  g_Fed.m_bReads = 1;
  FeedPictures({nullptr});
  EXPECT_EQ(Load(), 1);
  ExpectNothingLoaded();
  FeedPictures({new QXGeoPicture});
  EXPECT_EQ(Load(), 1);
  ExpectNothingLoaded();
  auto* const pUnknown = new QXGeoPicture;
  pUnknown->SetImage(MakeFedImage(4, 4, 16, 4));
  FeedPictures({pUnknown});
  EXPECT_EQ(Load(), 1);
  ExpectNothingLoaded();
}

TEST_F(QXAnimationLoad, FindsNothingWhereTheParserRaises) {
  g_Fed.m_FillPictures = [](QdcArray<QXGeoPicture*>& arrPictures) {
    arrPictures.Add(MakePicture(2, 2, Red, 1, 1));
    throw std::runtime_error("broken");
  };
  EXPECT_EQ(Load(), 1);
  ExpectNothingLoaded();
  EXPECT_EQ(g_Fed.m_nLiving, 0);
}

TEST_F(QXAnimationLoad, BeginsTheTimeAnewButKeepsEarlierFrames) {
  FeedPictures({MakePicture(2, 2, Red, 1, 1), MakePicture(2, 2, Blue, 1, 1)});
  ASSERT_EQ(Load(), 1);
  auto* const pPicture = MakePicture(2, 2, Blue, 1, 1);
  pPicture->SetDelayTime(5);
  FeedPictures({pPicture});
  ASSERT_EQ(m_pTexture->LoadAnimationImageData(L"/nowhere/a.gif", 0, 0), 1);
  EXPECT_EQ(m_pTexture->m_arrFrames.size(), 3u);
  EXPECT_EQ(m_pTexture->m_nTotalTime, 50u);
  EXPECT_EQ(m_pTexture->m_mapFrameEndTimes, (std::map<unsigned int, unsigned int>{{0, 50}, {1, 200}}));
}

TEST_F(QXAnimationLoad, ShowsNothingOfEarlierFramesThatWereReleased) {
  FeedPictures(std::vector<QXGeoPicture*>{MakePicture(2, 2, Red, 1, 1), MakePicture(2, 2, Red, 1, 1),
      MakePicture(2, 2, Red, 1, 1), MakePicture(2, 2, Red, 1, 1)});
  ASSERT_EQ(Load(), 1);
  m_pTexture->m_nCurrentFrame = 3;
  m_pTexture->ReleaseImgData();
  EXPECT_EQ(m_pTexture->m_mapFrameEndTimes.size(), 4u);
  auto* const pLong = MakePicture(2, 2, Blue, 1, 1);
  pLong->SetDelayTime(200);
  FeedPictures({MakePicture(2, 2, Blue, 1, 1), pLong});
  ASSERT_EQ(m_pTexture->LoadImageData(L"/nowhere/b.gif", 0, 0), 1);
  EXPECT_EQ(m_pTexture->m_mapFrameEndTimes, (std::map<unsigned int, unsigned int>{{0, 100}, {1, 2100}}));
  EXPECT_EQ(m_pTexture->m_nCurrentFrame, 0u);
  QdcTime::SetClock([] { return 2000u; });
  m_pTexture->UpdateAnimation();
  QdcTime::SetClock(nullptr);
  EXPECT_EQ(m_pTexture->m_nCurrentFrame, 1u);
  // A current frame that is still there stays.
  FeedPictures({MakePicture(2, 2, Blue, 1, 1), MakePicture(2, 2, Blue, 1, 1)});
  ASSERT_EQ(m_pTexture->LoadAnimationImageData(L"/nowhere/c.gif", 0, 0), 1);
  EXPECT_EQ(m_pTexture->m_nCurrentFrame, 1u);
}

TEST_F(QXAnimationLoad, LoadsOnlyWithoutAnImage) {
  m_pTexture = std::make_unique<QXBareAnimation>();
  m_pTexture->m_bLoadedImage = 1;
  EXPECT_EQ(m_pTexture->LoadImageData(L"", 0, 0), 1);
  EXPECT_EQ(m_pTexture->LoadImageData(L"/nowhere/a.gif", 0, 0), 1);
  EXPECT_EQ(g_Fed.m_nMade, 0);
  m_pTexture->m_bLoadedImage = 0;
  EXPECT_EQ(m_pTexture->LoadImageData(L"", 0, 0), 0);
  FeedPictures({MakePicture(2, 2, Red, 1, 1)});
  EXPECT_EQ(m_pTexture->LoadImageData(L"/nowhere/a.gif", 0, 1), 1);
  EXPECT_EQ(g_Fed.m_nFlip, 1);
  EXPECT_EQ(m_pTexture->m_arrFrames.size(), 1u);
}

TEST_F(QXAnimationLoad, CopiesOnlyWhatIsOpaqueOfASmallerPicture) {
  ExpectPlace(MakePicture(2, 2, Blue, 2, 2), Blue, 1, 1, 3, 3);
  ExpectPlace(MakePicture(2, 2, Faint, 2, 2), Faint, 0, 0, 0, 0);
  ExpectPlace(MakePicture(2, 2, Clear, 2, 2), Clear, 0, 0, 0, 0);
}

TEST_F(QXAnimationLoad, CopiesEveryPixelOfAPictureAsLargeAsTheCanvas) {
  for (Pixel const& pixel : {Blue, Faint, Clear}) ExpectPlace(MakePicture(4, 4, pixel, 2, 2), pixel, 0, 0, 4, 4);
  ExpectPlace(MakePicture(4, 4, Clear, 3, 4), Clear, 1, 2, 4, 4);
}

// Neither as large nor smaller: it counts as smaller.
TEST_F(QXAnimationLoad, CopiesOnlyWhatIsOpaqueOfALargerPicture) {
  ExpectPlace(MakePicture(8, 8, Blue, 2, 2), Blue, 0, 0, 4, 4);
  ExpectPlace(MakePicture(8, 8, Faint, 2, 2), Faint, 0, 0, 0, 0);
  ExpectPlace(MakePicture(4, 5, Faint, 2, 2), Faint, 0, 0, 0, 0);
  ExpectPlace(MakePicture(9, 1, Blue, 2, 0.5), Blue, 0, 0, 4, 1);
}

TEST_F(QXAnimationLoad, TruncatesThePlaceTowardsZero) {
  ExpectPlace(MakePicture(1, 1, Blue, 1.4, 2.9), Blue, 0, 2, 1, 3);
  ExpectPlace(MakePicture(2, 2, Blue, 0.2, 1), Blue, 0, 0, 2, 2);
}

TEST_F(QXAnimationLoad, CountsTheRowFromTheOtherEndWhereItIsTurned) {
  ExpectPlace(MakePicture(2, 1, Blue, 1, 0.5), Blue, 0, 3, 2, 4, 1);
  ExpectPlace(MakePicture(1, 2, Blue, 3.5, 3), Blue, 3, 0, 4, 2, 1);
  ExpectPlace(MakePicture(1, 1, Blue, 0.5, 1.6), Blue, 0, 1, 1, 2, 1);
  ExpectPlace(MakePicture(4, 4, Clear, 2, 2), Clear, 0, 0, 4, 4, 200);
}

TEST_F(QXAnimationLoad, ClipsAtTheCanvas) {
  ExpectPlace(MakePicture(2, 2, Blue, 0, 0), Blue, 0, 0, 1, 1);
  ExpectPlace(MakePicture(2, 2, Blue, 4, 4), Blue, 3, 3, 4, 4);
  ExpectPlace(MakePicture(2, 2, Blue, 6, 2), Blue, 0, 0, 0, 0);
  ExpectPlace(MakePicture(2, 2, Blue, -2, 2), Blue, 0, 0, 0, 0);
  ExpectPlace(MakePicture(4, 4, Clear, -1, 2), Clear, 0, 0, 1, 4);
  double const dHuge = std::numeric_limits<double>::max();
  double const dInfinite = std::numeric_limits<double>::infinity();
  double const dNone = std::numeric_limits<double>::quiet_NaN();
  for (unsigned char bFlip = 0; bFlip <= 1; ++bFlip) {
    ExpectPlace(MakePicture(4, 4, Blue, dHuge, -dHuge), Blue, 0, 0, 0, 0, bFlip);
    ExpectPlace(MakePicture(2, 2, Blue, -dInfinite, dInfinite), Blue, 0, 0, 0, 0, bFlip);
    ExpectPlace(MakePicture(1, 1, Blue, dNone, dNone), Blue, 0, 0, 1, 1, bFlip);
  }
}

TEST_F(QXAnimationLoad, PadsFramesToPowersOfTwoAndTellsTheirScale) {
  FeedPictures({MakePicture(5, 3, Red, 2.5, 1.5), MakePicture(5, 3, Blue, 2.5, 1.5)});
  ASSERT_EQ(Load(), 1);
  EXPECT_EQ(m_pTexture->m_vecScale, QXVector3d(5.0 / 8.0, 3.0 / 4.0, 1.0));
  for (std::size_t i = 0; i < 2; ++i) {
    EXPECT_EQ(m_pTexture->m_arrFrames[i].m_nWidth, 8u);
    EXPECT_EQ(m_pTexture->m_arrFrames[i].m_nHeight, 4u);
    EXPECT_EQ(m_pTexture->m_arrFrames[i].GetBlockLength(), 128u);
    EXPECT_EQ(PixelAt(i, 7, 3), i == 0 ? Red : Blue);
  }
}

TEST_F(QXAnimationLoad, ScalesNothingWhereTheEdgesArePowersOfTwo) {
  FeedPictures({MakePicture(4, 1, Red, 2, 0.5)});
  ASSERT_EQ(Load(), 1);
  EXPECT_EQ(m_pTexture->m_vecScale, QXVector3d(1, 1, 1));
}

TEST_F(QXAnimationLoad, WidensPicturesWithOpaqueAlpha) {
  for (unsigned char nBitDepth : {static_cast<unsigned char>(8), static_cast<unsigned char>(24)}) {
    auto* const pSmall = new QXGeoPicture;
    pSmall->SetImage(MakeFedImage(1, 1, nBitDepth));
    pSmall->SetCenterPoint(QdcPoint2D(1.5, 0.5));
    auto* const pFirst = new QXGeoPicture;
    pFirst->SetImage(MakeFedImage(2, 2, nBitDepth));
    pFirst->SetCenterPoint(QdcPoint2D(1, 1));
    auto const* const p = static_cast<unsigned char const*>(pSmall->GetImage()->m_pPixels);
    Pixel const pixel = nBitDepth == 8 ? Pixel{p[0], p[0], p[0], 255} : Pixel{p[0], p[1], p[2], 255};
    FeedPictures({pFirst, pSmall});
    ASSERT_EQ(Load(), 1);
    EXPECT_EQ(m_pTexture->m_arrFrames[0].m_eFormat, PF_A8R8G8B8);
    EXPECT_EQ(PixelAt(1, 1, 0), pixel);
  }
}

TEST_F(QXAnimationLoad, KeepsTheCanvasWhereAPictureHasNoImage) {
  auto* const pUnknown = new QXGeoPicture;
  pUnknown->SetImage(MakeFedImage(4, 4, 16, 4));
  pUnknown->SetCenterPoint(QdcPoint2D(2, 2));
  FeedPictures({MakePicture(4, 4, Red, 2, 2), new QXGeoPicture, nullptr, pUnknown});
  ASSERT_EQ(Load(), 1);
  ASSERT_EQ(m_pTexture->m_arrFrames.size(), 3u);
  EXPECT_EQ(m_pTexture->m_mapFrameEndTimes.size(), 3u);
  EXPECT_EQ(PixelAt(1, 3, 3), Red);
  EXPECT_EQ(PixelAt(2, 3, 3), Red);
}

TEST_F(QXAnimationLoad, TakesDelaysAsTwoBytesWithSign) {
  struct Delay {
    double m_dHundredths;
    unsigned int m_nMilliseconds;
  };
  std::vector<Delay> const arrDelays{{0, 100}, {5, 50}, {1, 10}, {0.5, 100}, {-0.9, 100}, {7.9, 70}, {-3, 30},
      {32767, 327670}, {32768, 327680}, {65535, 10}, {65536, 100}, {-32768, 327680},
      {std::numeric_limits<double>::quiet_NaN(), 100}, {1e-10, 100}};
  std::vector<QXGeoPicture*> arrPictures;
  for (Delay const& delay : arrDelays) {
    arrPictures.push_back(MakePicture(1, 1, Red, 0.5, 0.5));
    arrPictures.back()->SetDelayTime(delay.m_dHundredths);
  }
  FeedPictures(arrPictures);
  ASSERT_EQ(Load(), 1);
  unsigned int nEnd = 0;
  for (std::size_t i = 0; i < arrDelays.size(); ++i) {
    nEnd += arrDelays[i].m_nMilliseconds;
    EXPECT_EQ(m_pTexture->m_mapFrameEndTimes[static_cast<unsigned int>(i)], nEnd) << arrDelays[i].m_dHundredths;
  }
  EXPECT_EQ(m_pTexture->m_nTotalTime, nEnd);
}

/// Files, by the library's own reader.
class QXAnimationFile : public testing::Test {
protected:
  QdcUnicodeString Write(char const* szName, qxtest::GifBytes const& arrBytes) {
    return QdcUnicodeString(m_Folder.Write(szName, std::string(arrBytes.begin(), arrBytes.end())).wstring().c_str());
  }
  /// Compares every frame with what a player shows.
  void ExpectPlayed(int nWidth, int nHeight, std::vector<qxtest::GifFrame> const& arrFrames, unsigned char bFlip) {
    std::vector<qxtest::GifCanvas> const arrShown = qxtest::PlayGif(nWidth, nHeight, arrFrames);
    QXBareAnimation texture;
    ASSERT_EQ(texture.LoadImageData(Write("a.gif", qxtest::MakeGif(nWidth, nHeight, arrFrames)), 0, bFlip), 1);
    ASSERT_EQ(texture.m_arrFrames.size(), arrShown.size());
    for (std::size_t i = 0; i < arrShown.size(); ++i) {
      QXTextureData const& frame = texture.m_arrFrames[i];
      for (int nY = 0; nY < nHeight; ++nY) {
        for (int nX = 0; nX < nWidth; ++nX) {
          auto const nRow = static_cast<std::size_t>(bFlip ? nHeight - 1 - nY : nY);
          unsigned char const* const p = frame.m_pPixels + (nRow * frame.m_nWidth + static_cast<std::size_t>(nX)) * 4;
          qxtest::GifPixel const& shown = arrShown[i][qxtest::PlaceOf(nX, nY, nWidth)];
          ASSERT_TRUE(std::equal(shown.begin(), shown.end(), p)) << i << ": " << nX << ' ' << nY;
        }
      }
    }
  }

  QXTestFolder m_Folder;
};

TEST_F(QXAnimationFile, ShowsWhatAPlayerShows) {
  qxtest::GifFrame first = qxtest::MakeFrame(0, 0, 6, 5, 1);
  qxtest::GifFrame second = qxtest::MakeFrame(1, 0, 3, 2, 2);
  second.m_nDisposal = 2;
  second.m_nDelay = 12;
  qxtest::GifFrame third = qxtest::MakeFrame(4, 3, 9, 9, 3);
  third.m_nDisposal = 3;
  qxtest::GifFrame fourth = qxtest::MakeFrame(0, 4, 2, 1, 0);
  fourth.m_nTransparent = 0;
  fourth.m_arrIndexes = {0, 5};
  for (unsigned char bFlip = 0; bFlip <= 1; ++bFlip) ExpectPlayed(6, 5, {first, second, third, fourth}, bFlip);
}

TEST_F(QXAnimationFile, OfAnotherOrABrokenKindBringsNothing) {
  qxtest::GifBytes const arrGood = qxtest::MakeGif(2, 2, {qxtest::MakeFrame(0, 0, 2, 2, 1)});
  QXBareAnimation texture;
  EXPECT_EQ(texture.LoadImageData(Write("a.png", arrGood), 0, 0), 0);
  qxtest::GifBytes arrBad = arrGood;
  arrBad.resize(arrBad.size() / 2);
  EXPECT_EQ(texture.LoadImageData(Write("b.gif", arrBad), 0, 0), 1);
  EXPECT_EQ(texture.LoadImageData(L"/no/such.gif", 0, 0), 1);
  EXPECT_EQ(texture.m_bLoadedImage, 0);
  EXPECT_EQ(texture.LoadImageData(Write("c.gif", arrGood), 0, 0), 1);
  EXPECT_EQ(texture.m_bLoadedImage, 1);
}

}  // namespace
}  // namespace QXC
