#include <QxGraphics3D/frame/foundation/base3d/QXImageData.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseToolkit.h>
#include <QxGraphics3D/frame/foundation/fileparser/detail/QXGifReader.h>
#include <QxGraphics3D/frame/foundation/geometry/QXGeoPicture.h>

#include "QXTestGif.h"
#include "QXTestImages.h"

#include <algorithm>
#include <random>

namespace {

using namespace qxtest;
using QXC::QXGeoPicture;
using QXC::detail::QXImageLimits;

constexpr GifPixel CLEAR{0, 0, 0, 0};

class Pictures {
public:
  Pictures() = default;
  explicit Pictures(GifBytes const& arrBytes, unsigned char bFlip = 0, QXImageLimits const& limits = {}) {
    // A block of exactly these bytes, so that the address sanitizer sees a read past the end.
    std::unique_ptr<unsigned char[]> const pExact(new unsigned char[arrBytes.size()]);
    std::copy(arrBytes.begin(), arrBytes.end(), pExact.get());
    m_bRead = QXC::detail::ReadGifPictures(pExact.get(), arrBytes.size(), m_arrPictures, bFlip, limits);
    EXPECT_EQ(m_bRead, m_arrPictures.GetSize() > 0 ? 1 : 0);
  }
  Pictures(Pictures const&) = delete;
  Pictures& operator=(Pictures const&) = delete;
  ~Pictures() {
    for (QXGeoPicture* pPicture : m_arrPictures) delete pPicture;
  }

  int GetCount() const { return static_cast<int>(m_arrPictures.GetSize()); }
  QXGeoPicture const& At(int i) const { return *m_arrPictures[static_cast<QXUInt64>(i)]; }
  GifCanvas PixelsAt(int i) const {
    QXC::QXImageData const& image = *At(i).GetImage();
    ExpectWholeRecord(image);
    EXPECT_EQ(image.m_nBitDepth, 32);
    Bytes const arrBytes = PixelsOf(image);
    GifCanvas arrPixels(arrBytes.size() / 4);
    for (std::size_t n = 0; n < arrBytes.size(); ++n) arrPixels[n / 4][n % 4] = arrBytes[n];
    return arrPixels;
  }

  unsigned char m_bRead = 0;
  QXC::QdcArray<QXGeoPicture*> m_arrPictures;
};

/// Reads the frames on a canvas of that size and compares all pixels with what a player shows.
void ExpectPlayed(int nWidth, int nHeight, std::vector<GifFrame> const& arrFrames) {
  Pictures const pictures(MakeGif(nWidth, nHeight, arrFrames));
  std::vector<GifCanvas> const arrShown = PlayGif(nWidth, nHeight, arrFrames);
  ASSERT_EQ(pictures.GetCount(), static_cast<int>(arrShown.size()));
  for (int i = 0; i < pictures.GetCount(); ++i) {
    SCOPED_TRACE(i);
    ASSERT_EQ(pictures.At(i).GetImage()->m_nWidth, static_cast<unsigned int>(nWidth));
    ASSERT_EQ(pictures.At(i).GetImage()->m_nHeight, static_cast<unsigned int>(nHeight));
    ASSERT_EQ(pictures.PixelsAt(i), arrShown[static_cast<std::size_t>(i)]);
  }
}

GifFrame Disposed(GifFrame frame, int nDisposal) {
  frame.m_nDisposal = nDisposal;
  return frame;
}

GifFrame Delayed(GifFrame frame, int nDelay) {
  frame.m_nDelay = nDelay;
  return frame;
}

GifCanvas Row(std::initializer_list<GifPixel> arrPixels) {
  return GifCanvas(arrPixels);
}

TEST(QXGifPictures, HaveTheSizeAndTheCentreOfTheCanvasAndTheDelaysOfTheFile) {
  GifFrame const plain = MakeFrame(0, 0, 1, 1, 3);
  Pictures const pictures(MakeGif(5, 4, {Delayed(plain, 7), plain, Delayed(plain, 65535)}));
  ASSERT_EQ(pictures.GetCount(), 3);
  double const arrDelays[] = {7, 0, 65535};
  for (int i = 0; i < 3; ++i) {
    QXGeoPicture const& picture = pictures.At(i);
    EXPECT_EQ(picture.GetImage()->m_nWidth, 5u);
    EXPECT_EQ(picture.GetImage()->m_nHeight, 4u);
    EXPECT_EQ(picture.GetCenterPoint().x, 2.5);
    EXPECT_EQ(picture.GetCenterPoint().y, 2.0);
    EXPECT_EQ(picture.GetDelayTime(), arrDelays[i]);
  }
}

TEST(QXGifPictures, LieAtTheirPlaceOverTheFramesBefore) {
  Pictures const pictures(MakeGif(3, 1, {MakeFrame(0, 0, 2, 1, 1), MakeFrame(1, 0, 1, 1, 2)}));
  ASSERT_EQ(pictures.GetCount(), 2);
  EXPECT_EQ(pictures.PixelsAt(0), Row({ColourOf(1), ColourOf(1), CLEAR}));
  EXPECT_EQ(pictures.PixelsAt(1), Row({ColourOf(1), ColourOf(2), CLEAR}));
}

TEST(QXGifPictures, AreSeenThroughAtTheirTransparentColour) {
  GifFrame second = MakeFrame(0, 0, 3, 1, 0);
  second.m_arrIndexes = {5, 6, 5};
  second.m_nTransparent = 5;
  Pictures const pictures(MakeGif(3, 1, {MakeFrame(0, 0, 2, 1, 1), second}));
  ASSERT_EQ(pictures.GetCount(), 2);
  EXPECT_EQ(pictures.PixelsAt(1), Row({ColourOf(1), ColourOf(6), CLEAR}));
}

TEST(QXGifPictures, StayUnlessTheyAskForMore) {
  for (int nDisposal : {0, 1, 4, 5, 6, 7}) {
    Pictures const pictures(MakeGif(2, 1, {Disposed(MakeFrame(0, 0, 1, 1, 1), nDisposal), MakeFrame(1, 0, 1, 1, 2)}));
    ASSERT_EQ(pictures.GetCount(), 2);
    EXPECT_EQ(pictures.PixelsAt(1), Row({ColourOf(1), ColourOf(2)})) << nDisposal;
  }
}

TEST(QXGifPictures, LeaveNothingBehindWhereTheyAskForBackground) {
  GifFrame second = Disposed(MakeFrame(1, 0, 2, 1, 0), 2);
  // Its clear pixel shows the first frame and takes it away afterwards.
  second.m_arrIndexes = {2, 9};
  second.m_nTransparent = 9;
  Pictures const pictures(MakeGif(4, 1, {MakeFrame(0, 0, 4, 1, 1), second, MakeFrame(3, 0, 1, 1, 3)}));
  ASSERT_EQ(pictures.GetCount(), 3);
  EXPECT_EQ(pictures.PixelsAt(1), Row({ColourOf(1), ColourOf(2), ColourOf(1), ColourOf(1)}));
  EXPECT_EQ(pictures.PixelsAt(2), Row({ColourOf(1), CLEAR, CLEAR, ColourOf(3)}));
}

TEST(QXGifPictures, BringBackWhatTheyCoveredWhereTheyAskForIt) {
  Pictures const pictures(MakeGif(3, 1,
      {Disposed(MakeFrame(0, 0, 3, 1, 7), 3), MakeFrame(0, 0, 2, 1, 1), Disposed(MakeFrame(1, 0, 2, 1, 2), 3),
          Disposed(MakeFrame(0, 0, 1, 1, 3), 3), MakeFrame(2, 0, 1, 1, 4)}));
  ASSERT_EQ(pictures.GetCount(), 5);
  EXPECT_EQ(pictures.PixelsAt(1), Row({ColourOf(1), ColourOf(1), CLEAR}));
  EXPECT_EQ(pictures.PixelsAt(2), Row({ColourOf(1), ColourOf(2), ColourOf(2)}));
  EXPECT_EQ(pictures.PixelsAt(3), Row({ColourOf(3), ColourOf(1), CLEAR}));
  EXPECT_EQ(pictures.PixelsAt(4), Row({ColourOf(1), ColourOf(1), ColourOf(4)}));
}

TEST(QXGifPictures, ControlCountsForOneFrameOnly) {
  GifFrame first = Delayed(Disposed(MakeFrame(0, 0, 2, 1, 5), 2), 30);
  first.m_nTransparent = 5;
  GifFrame second = MakeFrame(0, 0, 1, 1, 5);
  second.m_bControl = false;
  Pictures const pictures(MakeGif(2, 1, {first, second, MakeFrame(1, 0, 1, 1, 6)}));
  ASSERT_EQ(pictures.GetCount(), 3);
  EXPECT_EQ(pictures.PixelsAt(0), Row({CLEAR, CLEAR}));
  EXPECT_EQ(pictures.PixelsAt(1), Row({ColourOf(5), CLEAR}));
  EXPECT_EQ(pictures.PixelsAt(2), Row({ColourOf(5), ColourOf(6)}));
  EXPECT_EQ(pictures.At(1).GetDelayTime(), 0.0);
}

TEST(QXGifPictures, MayBringTheirColours) {
  GifFrame first = MakeFrame(0, 0, 1, 1, 4);
  first.m_bLocalColours = true;
  Pictures const pictures(MakeGif(2, 1, {first, MakeFrame(1, 0, 1, 1, 4)}));
  ASSERT_EQ(pictures.GetCount(), 2);
  EXPECT_EQ(pictures.PixelsAt(1), Row({ColourOf(4, true), ColourOf(4)}));
}

TEST(QXGifPictures, ComeInterlacedInAnyHeight) {
  for (int nHeight = 1; nHeight <= 20; ++nHeight) {
    GifFrame frame = MakeFrame(1, 2, 3, nHeight, 0);
    for (std::size_t i = 0; i < frame.m_arrIndexes.size(); ++i)
      frame.m_arrIndexes[i] = static_cast<unsigned char>(i % 16);
    frame.m_bInterlaced = true;
    SCOPED_TRACE(nHeight);
    ExpectPlayed(5, 18, {frame});
  }
}

TEST(QXGifPictures, AreCutAtTheCanvas) {
  ExpectPlayed(4, 3,
      {Disposed(MakeFrame(2, 1, 9, 9, 1), 2), Disposed(MakeFrame(4, 0, 2, 2, 2), 2),
          Disposed(MakeFrame(0, 3, 2, 2, 3), 2), Disposed(MakeFrame(60000, 60000, 3, 3, 4), 2),
          MakeFrame(0, 0, 200, 1, 5)});
}

TEST(QXGifPictures, TurnedHaveTheirRowsFromBottomToTopAndTheSameCentre) {
  std::vector<GifFrame> const arrFrames{MakeFrame(0, 0, 2, 1, 1), MakeFrame(0, 2, 1, 1, 2)};
  for (unsigned char const bFlip : std::array<unsigned char, 2>{1, 200}) {
    Pictures const pictures(MakeGif(2, 3, arrFrames), bFlip);
    ASSERT_EQ(pictures.GetCount(), 2);
    EXPECT_EQ(pictures.PixelsAt(0), Row({CLEAR, CLEAR, CLEAR, CLEAR, ColourOf(1), ColourOf(1)}));
    EXPECT_EQ(pictures.PixelsAt(1), Row({ColourOf(2), CLEAR, CLEAR, CLEAR, ColourOf(1), ColourOf(1)}));
    EXPECT_EQ(pictures.At(1).GetCenterPoint().x, 1.0);
    EXPECT_EQ(pictures.At(1).GetCenterPoint().y, 1.5);
  }
}

TEST(QXGifPictures, FollowEachOtherAsASlowPlayerShowsThem) {
  constexpr unsigned int SEED = 20260;
  SCOPED_TRACE(SEED);
  std::mt19937 random(SEED);
  auto const Upto = [&](int nMax) { return static_cast<int>(random() % static_cast<unsigned int>(nMax + 1)); };
  for (int nRun = 0; nRun < 300; ++nRun) {
    int const nWidth = 1 + Upto(11), nHeight = 1 + Upto(11);
    std::vector<GifFrame> arrFrames;
    for (int i = Upto(7); i >= 0; --i) {
      GifFrame frame = MakeFrame(Upto(nWidth), Upto(nHeight), 1 + Upto(12), 1 + Upto(12), 0);
      for (unsigned char& nIndex : frame.m_arrIndexes) nIndex = static_cast<unsigned char>(Upto(15));
      frame.m_nTransparent = Upto(31) - 16;
      frame.m_nDisposal = Upto(7);
      frame.m_bControl = Upto(5) != 0;
      frame.m_bInterlaced = Upto(1) != 0;
      frame.m_bLocalColours = Upto(3) == 0;
      arrFrames.push_back(frame);
    }
    SCOPED_TRACE(nRun);
    ExpectPlayed(nWidth, nHeight, arrFrames);
    if (HasFatalFailure()) return;
  }
}

TEST(QXGifPictures, SkipCommentsLoopCountsAndTexts) {
  GifBytes arrBytes = MakeGifHead(1, 1);
  for (unsigned char const nKind : std::array<unsigned char, 4>{0xFE, 0xFF, 0x01, 0x77})
    arrBytes.insert(arrBytes.end(), {0x21, nKind, 3, 'a', 'b', 'c', 2, 'd', 'e', 0});
  PutFrame(arrBytes, MakeFrame(0, 0, 1, 1, 1));
  // A control of another length says nothing.
  arrBytes.insert(arrBytes.end(), {0x21, 0xF9, 3, 9, 9, 9, 0, 0x21, 0xFE, 0});
  PutFrame(arrBytes, MakeFrame(0, 0, 1, 1, 2));
  // What stands behind the end is no frame any more.
  arrBytes.push_back(0x3B);
  PutFrame(arrBytes, MakeFrame(0, 0, 1, 1, 3));
  Pictures const pictures(arrBytes);
  ASSERT_EQ(pictures.GetCount(), 2);
  EXPECT_EQ(pictures.PixelsAt(1), Row({ColourOf(2)}));
}

std::vector<GifFrame> ThreeFrames() {
  GifFrame first = Disposed(MakeFrame(0, 0, 7, 5, 1), 1);
  GifFrame second = Disposed(MakeFrame(2, 1, 9, 3, 2), 3);
  second.m_bLocalColours = true;
  GifFrame third = MakeFrame(1, 1, 4, 4, 3);
  third.m_bInterlaced = true;
  return {first, second, third};
}

TEST(QXGifPictures, OfACutFileAreThoseBeforeTheCut) {
  std::vector<std::size_t> arrEnds;
  GifBytes const arrBytes = MakeGif(7, 5, ThreeFrames(), &arrEnds);
  Pictures const whole(arrBytes);
  ASSERT_EQ(whole.GetCount(), 3);
  for (std::size_t nSize = 0; nSize < arrBytes.size(); ++nSize) {
    Pictures const pictures(GifBytes(arrBytes.begin(), arrBytes.begin() + static_cast<std::ptrdiff_t>(nSize)));
    auto const nWhole = std::count_if(arrEnds.begin(), arrEnds.end(), [=](std::size_t nEnd) { return nEnd <= nSize; });
    ASSERT_EQ(pictures.GetCount(), nWhole) << nSize;
    for (int i = 0; i < pictures.GetCount(); ++i) ASSERT_EQ(pictures.PixelsAt(i), whole.PixelsAt(i)) << nSize;
  }
}

TEST(QXGifPictures, OfAFileWithAnyWrongBitStayWithinTheLimits) {
  constexpr QXImageLimits LIMITS{65536, 8u << 20};
  GifBytes arrBytes = MakeGif(7, 5, ThreeFrames());
  for (std::size_t i = 0; i < arrBytes.size(); ++i) {
    for (int nBit = 0; nBit < 8; ++nBit) {
      arrBytes[i] = static_cast<unsigned char>(arrBytes[i] ^ 1 << nBit);
      Pictures const pictures(arrBytes, 0, LIMITS);
      QXUInt64 nBytes = 0;
      for (int n = 0; n < pictures.GetCount(); ++n) {
        QXC::QXImageData const& image = *pictures.At(n).GetImage();
        ExpectWholeRecord(image);
        nBytes += QXUInt64{image.m_nPitch} * image.m_nHeight;
      }
      ASSERT_LE(nBytes, LIMITS.m_nMaxBytes);
      arrBytes[i] = static_cast<unsigned char>(arrBytes[i] ^ 1 << nBit);
    }
  }
}

TEST(QXGifPictures, AreNoneWithoutMagicCanvasColoursOrAFrame) {
  GifBytes const arrGood = MakeGif(1, 1, {MakeFrame(0, 0, 1, 1, 1)});
  ASSERT_EQ(Pictures(arrGood).GetCount(), 1);
  GifBytes arrOther = arrGood;
  arrOther[4] = '8';
  EXPECT_EQ(Pictures(arrOther).GetCount(), 0);
  EXPECT_EQ(Pictures(MakeGif(1, 1, {})).GetCount(), 0);
  EXPECT_EQ(Pictures(MakeGif(0, 1, {MakeFrame(0, 0, 1, 1, 1)})).GetCount(), 0);
  EXPECT_EQ(Pictures(MakeGif(1, 0, {MakeFrame(0, 0, 1, 1, 1)})).GetCount(), 0);
  EXPECT_EQ(Pictures(MakeGif(1, 1, {MakeFrame(0, 0, 0, 1, 1)})).GetCount(), 0);
  EXPECT_EQ(Pictures(MakeGif(1, 1, {MakeFrame(0, 0, 1, 0, 1)})).GetCount(), 0);
  for (char const* szName : {"no-colours.gif", "no-frame.gif", "no-canvas.gif", "bomb-canvas.gif"})
    EXPECT_EQ(Pictures(FileBytes(szName)).GetCount(), 0) << szName;
  Pictures none;
  EXPECT_EQ(QXC::detail::ReadGifPictures(nullptr, 100, none.m_arrPictures, 0, {}), 0);
  EXPECT_EQ(none.GetCount(), 0);
}

TEST(QXGifPictures, EndBeforeAFrameWithoutSize) {
  Pictures const pictures(
      MakeGif(1, 1, {MakeFrame(0, 0, 1, 1, 1), MakeFrame(0, 0, 0, 1, 1), MakeFrame(0, 0, 1, 1, 2)}));
  EXPECT_EQ(pictures.GetCount(), 1);
}

TEST(QXGifPictures, AreNoneBeyondTheLimitOfBytesForAllOfThem) {
  std::vector<GifFrame> arrFrames(3, MakeFrame(0, 0, 1, 1, 1));
  for (bool const bLocalColours : {false, true}) {
    for (GifFrame& frame : arrFrames) frame.m_bLocalColours = bLocalColours;
    GifBytes const arrBytes = MakeGif(16, 8, arrFrames);
    EXPECT_EQ(Pictures(arrBytes, 0, QXImageLimits{16, 1536}).GetCount(), 3);
    EXPECT_EQ(Pictures(arrBytes, 0, QXImageLimits{16, 1535}).GetCount(), 0);
    EXPECT_EQ(Pictures(arrBytes, 0, QXImageLimits{15, 1536}).GetCount(), 0);
  }
}

// Each costs more than its pixels.
TEST(QXGifPictures, TinyAsTheyAreCountAs256Bytes) {
  GifBytes const arrBytes = MakeGif(1, 1, std::vector<GifFrame>(3, MakeFrame(0, 0, 1, 1, 1)));
  EXPECT_EQ(Pictures(arrBytes, 0, QXImageLimits{1, 768}).GetCount(), 3);
  EXPECT_EQ(Pictures(arrBytes, 0, QXImageLimits{1, 767}).GetCount(), 0);
}

// What lies beyond the canvas is decoded like the rest of the frame: a small file could keep a reader busy for minutes.
TEST(QXGifPictures, BeyondTheCanvasCountWithAllTheirPixels) {
  GifBytes const arrBytes = MakeGif(1, 1, {MakeFrame(0, 0, 20, 10, 1), MakeFrame(0, 0, 1, 1, 2)});
  EXPECT_EQ(Pictures(arrBytes, 0, QXImageLimits{16, 800 + 256}).GetCount(), 2);
  EXPECT_EQ(Pictures(arrBytes, 0, QXImageLimits{16, 800 + 255}).GetCount(), 0);
  // In the still reader the one frame, which covers the canvas and has 3 bytes a pixel then.
  auto const isRead = [&](QXUInt64 nMaxBytes) {
    QXImageLimits const limits{16, nMaxBytes};
    return Image(QXC::detail::ReadGif(arrBytes.data(), arrBytes.size(), limits)) != nullptr;
  };
  EXPECT_TRUE(isRead(600));
  EXPECT_FALSE(isRead(599));
}

// 40,000 frames of 16 bytes on a canvas of 1 MiB would be 40 GiB.
TEST(QXGifPictures, AreCountedBeforeTheFirstIsMade) {
  std::vector<GifFrame> const arrFrames(40000, MakeFrame(0, 0, 1, 1, 1));
  EXPECT_EQ(Pictures(MakeGif(512, 512, arrFrames)).GetCount(), 0);
}

TEST(QXGifPictures, GoBehindWhatTheListHolds) {
  GifBytes const arrBytes = MakeGif(1, 1, {MakeFrame(0, 0, 1, 1, 1)});
  Pictures pictures(arrBytes);
  QXGeoPicture const* const pFirst = &pictures.At(0);
  ASSERT_EQ(QXC::detail::ReadGifPictures(arrBytes.data(), arrBytes.size(), pictures.m_arrPictures, 0, {}), 1);
  ASSERT_EQ(QXC::detail::ReadGifPictures(arrBytes.data(), 20, pictures.m_arrPictures, 0, {}), 0);
  ASSERT_EQ(pictures.GetCount(), 2);
  EXPECT_EQ(&pictures.At(0), pFirst);
}

TEST(QXGifPictures, OfTheStillSamplesShowTheSameAsTheStillReader) {
  for (char const* szName :
      {"plain.gif", "interlaced.gif", "transparent.gif", "placed.gif", "beyond.gif", "local.gif", "two.gif"}) {
    Image const pStill = ReadFile(szName);
    Pictures const pictures(FileBytes(szName));
    ASSERT_TRUE(pStill) << szName;
    ASSERT_EQ(pictures.GetCount(), std::string(szName) == "two.gif" ? 2 : 1) << szName;
    GifCanvas const arrPixels = pictures.PixelsAt(0);
    Bytes const arrStill = PixelsOf(*pStill);
    std::size_t const nStep = pStill->m_nBitDepth / 8u;
    for (std::size_t i = 0; i < arrPixels.size(); ++i)
      ASSERT_TRUE(std::equal(arrStill.begin() + static_cast<std::ptrdiff_t>(i * nStep),
          arrStill.begin() + static_cast<std::ptrdiff_t>((i + 1) * nStep), arrPixels[i].begin()))
          << szName << ' ' << i;
  }
}

TEST(QXGifPictures, ComeThroughTheToolkitFromFilesAndFromMemory) {
  using QXC::QXFileParseToolkit;
  Pictures pictures;
  auto const strPath = QXC::QdcUnicodeString((ImageFolder() / "two.gif").wstring().c_str());
  ASSERT_EQ(QXFileParseToolkit::GetDynamicIMGData(strPath, pictures.m_arrPictures, 0), 1);
  ASSERT_EQ(pictures.GetCount(), 2);
  GifBytes const arrBytes = MakeGif(1, 2, {MakeFrame(0, 0, 1, 1, 1)});
  ASSERT_EQ(
      QXFileParseToolkit::GetDynamicIMGDataFromMemory(arrBytes.data(), arrBytes.size(), pictures.m_arrPictures, 1), 1);
  ASSERT_EQ(pictures.GetCount(), 3);
  EXPECT_EQ(pictures.PixelsAt(2), Row({CLEAR, ColourOf(1)}));
  EXPECT_TRUE(QXFileParseToolkit::GetErrorText().IsEmpty());
}

TEST(QXGifPictures, AreNotWhatOtherTypesHold) {
  using QXC::QXFileParseToolkit;
  Pictures pictures;
  for (char const* szName : {"rgb8.png", "bits24.bmp", "bomb-canvas.gif", "no-frame.gif", "missing.gif"}) {
    auto const strPath = QXC::QdcUnicodeString((ImageFolder() / szName).wstring().c_str());
    EXPECT_EQ(QXFileParseToolkit::GetDynamicIMGData(strPath, pictures.m_arrPictures, 0), 0) << szName;
    EXPECT_FALSE(QXFileParseToolkit::GetErrorText().IsEmpty()) << szName;
  }
  EXPECT_EQ(pictures.GetCount(), 0);
}

TEST(QXGifPictures, KeepToTheLimitsThatTheHostSets) {
  using QXC::QXFileParseToolkit;
  GifBytes const arrBytes = MakeGif(8, 8, {MakeFrame(0, 0, 1, 1, 1), MakeFrame(0, 0, 1, 1, 2)});
  unsigned int const nEdge = QXFileParseToolkit::GetImageMaxEdge();
  QXUInt64 const nMax = QXFileParseToolkit::GetImageMaxBytes();
  Pictures pictures;
  QXFileParseToolkit::SetImageLimits(nEdge, 511);
  EXPECT_EQ(
      QXFileParseToolkit::GetDynamicIMGDataFromMemory(arrBytes.data(), arrBytes.size(), pictures.m_arrPictures, 0), 0);
  QXFileParseToolkit::SetImageLimits(nEdge, 512);
  EXPECT_EQ(
      QXFileParseToolkit::GetDynamicIMGDataFromMemory(arrBytes.data(), arrBytes.size(), pictures.m_arrPictures, 0), 1);
  QXFileParseToolkit::SetImageLimits(nEdge, nMax);
}

}  // namespace
