// Animated textures by the clock.
#include <map>

#include <QxGraphics3D/frame/foundation/base/QdcTime.h>
#include <QxGraphics3D/frame/foundation/base3d/QXImageData.h>
#include <QxGraphics3D/frame/foundation/base3d/QXTextureDataAnimation.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseImage.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseManager.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileType.h>
#include <QxGraphics3D/frame/foundation/geometry/QXGeoPicture.h>

#include <QxGraphics3D/texture/QXAnimationTexture.h>

#include <tests/ogre/QXOgreTexturing.h>

namespace QXC {

namespace {

unsigned int g_nNow = 0;

/// What the parser below gives for any bytes.
struct Frame {
  unsigned int m_nWidth;
  unsigned int m_nHeight;
  double m_dCenterX;
  double m_dCenterY;
  double m_dDelay;
  std::vector<unsigned char> m_arrPixel;
  unsigned int m_nDepth = 32;
};
std::vector<Frame> g_arrFrames;

class FrameParser final : public QXFileParseImage {
public:
  unsigned char Open(QXImportParams*) override { return 1; }
  unsigned char OpenBytes(unsigned char const*, QXUInt64) override { return 1; }
  QdcUnicodeString const& GetErrorText() const override { return m_strError; }
  unsigned char GetImageData(QdcArray<QXImageData*>&, unsigned char, int) override { return 0; }
  unsigned char GetDynamicIMGData(QdcArray<QXGeoPicture*>& arrPictures, unsigned char) override {
    for (Frame const& frame : g_arrFrames) {
      auto* const pImage = new QXImageData;
      pImage->m_nWidth = frame.m_nWidth;
      pImage->m_nHeight = frame.m_nHeight;
      pImage->m_nBitDepth = static_cast<unsigned char>(frame.m_nDepth);
      pImage->m_nPitch = frame.m_nWidth * frame.m_nDepth / 8;
      std::vector<unsigned char> arrBytes;
      for (unsigned int i = 0; i < frame.m_nWidth * frame.m_nHeight; ++i)
        arrBytes.insert(arrBytes.end(), frame.m_arrPixel.begin(), frame.m_arrPixel.end());
      pImage->m_pPixels = NewBlock(arrBytes);
      auto* const pPicture = new QXGeoPicture;
      pPicture->SetImage(pImage);
      pPicture->SetCenterPoint(QdcPoint2D(frame.m_dCenterX, frame.m_dCenterY));
      pPicture->SetDelayTime(frame.m_dDelay);
      arrPictures.Add(pPicture);
    }
    return 1;
  }

private:
  QdcUnicodeString m_strError;
};

}  // namespace

class QXOgreTextureFrames : public QXOgreTexturing {
protected:
  void SetUp() override {
    QXOgreTexturing::SetUp();
    g_nNow = 5000;
    g_arrFrames.clear();
    QdcTime::SetClock([] { return g_nNow; });
    QXFileParseManager::RegisterFileParser(
        QXFileType::EM_IMAGE_GIF, []() -> QXFileParser* { return new FrameParser; },
        [](QXFileParser* pParser) { delete pParser; });
  }
  void TearDown() override {
    QdcTime::SetClock(nullptr);
    QXFileParseManager::RegisterFileParser(QXFileType::EM_IMAGE_GIF, nullptr, nullptr);
    QXOgreTexturing::TearDown();
  }
  /// A texture of a file's bytes, which the parser takes for the frames above.
  QXTexture* MakeAnimated() {
    QXTextureData file;
    file.m_pPixels = NewBlock({'G', 'I', 'F', '8', '9', 'a', 0, 0, 0, 0});
    file.m_nDataSize = 10;
    file.m_nCompression = TEXTURE_COMPRESSION_RAW;
    QXTexture* const pTexture = QXOgreTexturing::MakeTexture();
    pTexture->SetTextureData(file);
    pTexture->LoadTexture(0, 1);
    return pTexture;
  }
  QXPixel At(unsigned int nTime, unsigned int x = 32, unsigned int y = 32) {
    g_nNow = 5000 + nTime;
    return QXOgreTexturing::Frame().At(x, y);
  }
};

TEST_F(QXOgreTextureFrames, FramesFollowEachOtherByTheClockAndBeginAnew) {
  g_arrFrames = {
      {2, 2, 1, 1, 10, {0, 0, 255, 255}}, {2, 2, 1, 1, 20, {0, 255, 0, 255}}, {2, 2, 1, 1, 0, {255, 0, 0, 255}}};
  QXTexture* const pTexture = MakeAnimated();
  ASSERT_EQ(pTexture->IsLoaded(), 1) << Reason();
  EXPECT_EQ(pTexture->m_TextureData.m_pPixels, nullptr);
  DrawTextured(pTexture);
  QXPixel const blue{0, 0, 255, 255};
  EXPECT_EQ(At(0), RED_PIXEL);
  EXPECT_EQ(At(100), RED_PIXEL) << "the very end of a frame is its own still";
  EXPECT_EQ(At(101), GREEN_PIXEL);
  EXPECT_EQ(At(300), GREEN_PIXEL);
  EXPECT_EQ(At(301), blue) << "no delay is a tenth of a second";
  EXPECT_EQ(At(399), blue);
  EXPECT_EQ(At(400), RED_PIXEL);
  EXPECT_EQ(At(400 * 1000 + 150), GREEN_PIXEL);
  EXPECT_EQ(pTexture->GetNumTextureFrame(), 3);
  std::map<unsigned int, unsigned int> mapTimes;
  pTexture->GetTimeTextureFrame(mapTimes);
  EXPECT_EQ(mapTimes, (std::map<unsigned int, unsigned int>{{0, 100}, {1, 200}, {2, 100}}));
  EXPECT_EQ(m_pGraphics3D->GetDrawOperationCount(), 1U);
}

TEST_F(QXOgreTextureFrames, FramesOfMoreThan49DaysPlay) {
  // 5 * 2^32 milliseconds: counted in 32 bits the whole would last no time at all.
  g_arrFrames.assign(32768, {1, 1, 0.5, 0.5, 65535, {0, 0, 255, 255}});
  g_arrFrames.push_back({1, 1, 0.5, 0.5, 32768, {0, 255, 0, 255}});
  QXTexture* const pTexture = MakeAnimated();
  ASSERT_EQ(pTexture->IsLoaded(), 1) << Reason();
  DrawTextured(pTexture);
  EXPECT_EQ(At(0), RED_PIXEL);
  EXPECT_EQ(At(4000000000U), RED_PIXEL);
}

TEST_F(QXOgreTextureFrames, AllDrawablesOfAFrameShowTheSame) {
  g_arrFrames = {{1, 1, 0.5, 0.5, 10, {0, 0, 255, 255}}, {1, 1, 0.5, 0.5, 10, {0, 255, 0, 255}}};
  QXTexture* const pTexture = MakeAnimated();
  for (float const x : {-1.0F, 0.0F}) {
    auto const pMesh = MakeTexturedMesh(1.0F, x, -1.0F, x + 1.0F, 1.0F);
    AddTexturedRange(*pMesh, pTexture);
    Draw(*pMesh);
  }
  // A clock that runs on with every look at it.
  QdcTime::SetClock([] { return g_nNow += 60; });
  for (int i = 0; i < 20; ++i) {
    QXPicture const picture = QXOgreTexturing::Frame();
    EXPECT_EQ(picture.At(16, 32), picture.At(48, 32)) << i;
  }
}

TEST_F(QXOgreTextureFrames, SmallerFramesAreLaidOntoTheCanvas) {
  // A 4 x 4 canvas; a green 2 x 2 with its centre at (3, 1); a frame beyond every edge; one half transparent.
  g_arrFrames = {{4, 4, 2, 2, 10, {0, 0, 255, 255}}, {2, 2, 3, 1, 10, {0, 255, 0, 255}},
      {6, 6, 0, 4, 10, {255, 0, 0, 255}}, {2, 2, 3, 3, 10, {255, 255, 255, 254}}};
  DrawTextured(MakeAnimated());
  EXPECT_EQ(At(150, 56, 8), GREEN_PIXEL);
  EXPECT_EQ(At(150, 40, 24), GREEN_PIXEL);
  EXPECT_EQ(At(150, 24, 8), RED_PIXEL);
  EXPECT_EQ(At(150, 56, 40), RED_PIXEL);
  QXPixel const blue{0, 0, 255, 255};
  EXPECT_EQ(At(250, 8, 56), blue);
  EXPECT_EQ(At(250, 40, 24), blue) << "rows 1 to 6 and columns -3 to 2 of it";
  EXPECT_EQ(At(250, 56, 8), GREEN_PIXEL);
  EXPECT_EQ(At(250, 8, 8), RED_PIXEL);
  EXPECT_EQ(At(350, 56, 56), RED_PIXEL) << "what is not opaque covers nothing";
}

TEST_F(QXOgreTextureFrames, AWholeFrameReplacesItsTransparencyToo) {
  DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, -1.0F, RED);
  g_arrFrames = {{2, 2, 1, 1, 10, {0, 255, 0, 255}}, {2, 2, 1, 1, 10, {0, 255, 0, 0}}};
  DrawTextured(MakeAnimated());
  EXPECT_EQ(At(50), GREEN_PIXEL);
  EXPECT_EQ(At(150), RED_PIXEL);
  EXPECT_EQ(At(250), GREEN_PIXEL);
}

TEST_F(QXOgreTextureFrames, GrayAndThreeByteFramesAreWidened) {
  g_arrFrames = {{3, 1, 1.5, 0.5, 10, {90}, 8}, {3, 1, 1.5, 0.5, 10, {1, 2, 3}, 24}};
  DrawTextured(MakeAnimated());
  EXPECT_EQ(At(50), (QXPixel{90, 90, 90, 255}));
  EXPECT_EQ(At(150), (QXPixel{3, 2, 1, 255}));
}

TEST_F(QXOgreTextureFrames, BytesThatAreNoAnimationAreRefused) {
  EXPECT_EQ(MakeAnimated()->IsLoaded(), 0);
  EXPECT_EQ(Reason(), "an animated texture has no frames");
  g_arrFrames = {{1, 1, 0, 0, 10, {0, 0, 255, 255}}};
  QXTexture* const pTexture = QXOgreTexturing::MakeTexture();
  pTexture->SetTextureData(1, 1, NewBlock({'G', 'I', 'F', '8', '9', 'a'}), TEXTURE_COMPRESSION_RAW, PF_A8R8G8B8);
  pTexture->LoadTexture(0, 0);
  EXPECT_EQ(pTexture->IsLoaded(), 0);
  EXPECT_EQ(Reason(), "the bytes of an animated texture have no length");
  pTexture->m_TextureData.SetBlockLength(3);
  pTexture->LoadTexture(0, 0);
  EXPECT_EQ(pTexture->IsLoaded(), 0);
  EXPECT_EQ(Reason().rfind("an animated texture: ", 0), 0U) << Reason();
  pTexture->m_TextureData.SetBlockLength(6);
  pTexture->LoadTexture(0, 0);
  EXPECT_EQ(pTexture->IsLoaded(), 1) << Reason();
}

TEST_F(QXOgreTextureFrames, TheRecordOfARawFilePlaysToo) {
  g_arrFrames = {{1, 1, 0.5, 0.5, 10, {0, 255, 0, 255}}};
  auto* pImage = new QXImageData;
  pImage->m_nBitDepth = IMAGE_BIT_DEPTH_RAW;
  pImage->m_nPitch = 6;
  pImage->m_pPixels = NewBlock({'G', 'I', 'F', '8', '7', 'a'});
  QXTexture* const pTexture = QXOgreTexturing::MakeTexture();
  ASSERT_EQ(pTexture->SetTextureData(pImage, 0, 0, 0, 0), 1);
  pTexture->LoadTexture(0, 0);
  ASSERT_EQ(pTexture->IsLoaded(), 1) << Reason();
  DrawTextured(pTexture);
  EXPECT_EQ(At(0), GREEN_PIXEL);
}

TEST_F(QXOgreTextureFrames, ANameOfAnAnimatedFileGivesAnAnimatedTexture) {
  // 3 x 3 pixels, which the library pads to 4 x 4.
  g_arrFrames = {{3, 3, 1.5, 1.5, 10, {0, 0, 255, 255}}, {3, 3, 1.5, 1.5, 20, {0, 255, 0, 255}},
      {1, 1, 0.5, 0.5, 10, {255, 0, 0, 255}}};
  QXTexture* const pTexture = m_pTextures->GetTexture(L"flag.GIF", 1);
  auto* const pAnimation = dynamic_cast<QXAnimationTexture*>(pTexture);
  ASSERT_NE(pAnimation, nullptr);
  EXPECT_EQ(dynamic_cast<QXAnimationTexture*>(m_pTextures->GetTexture(L"flag.png", 1)), nullptr);
  pTexture->RendererOperation1(1, 1, 0);
  pTexture->SetTextureRepeatMode(1);
  ASSERT_EQ(pAnimation->LoadAnimationImageData(L"flag.GIF", 0, 0), 1);
  ASSERT_EQ(pAnimation->m_arrFrames.size(), 3U);
  DrawTextured(pTexture, 2.0F);
  // The clock of the library starts anywhere in the loop; from here on it is known.
  At(0);
  ASSERT_EQ(pTexture->IsLoaded(), 1) << Reason();
  EXPECT_EQ(pAnimation->m_arrFrameTextures.GetSize(), 3U);
  unsigned int const nShift = 400 - pAnimation->m_nPlayTime;
  QXPixel const blue{0, 0, 255, 255};
  for (unsigned int const nTime : {50U, 250U}) {
    g_nNow = 5000 + nShift + nTime;
    QXPicture const picture = QXOgreTexturing::Frame();
    for (unsigned int const nAt : {2U, 30U, 34U, 62U})
      EXPECT_EQ(picture.At(nAt, nAt), nTime == 50 ? RED_PIXEL : GREEN_PIXEL) << "the padding is no part of the picture";
  }
  EXPECT_EQ(At(nShift + 350, 4, 4), blue);
  EXPECT_EQ(At(nShift + 350, 16, 16), GREEN_PIXEL);
  EXPECT_EQ(At(nShift + 350, 36, 36), blue);
  EXPECT_EQ(pTexture->GetBindID(), pAnimation->m_arrFrameTextures[2]->GetBindID());
  EXPECT_EQ(pTexture->GetNumTextureFrame(), 3);
  std::map<unsigned int, unsigned int> mapTimes;
  pTexture->GetTimeTextureFrame(mapTimes);
  EXPECT_EQ(mapTimes, (std::map<unsigned int, unsigned int>{{0, 100}, {1, 200}, {2, 100}}));
  // Frozen, it keeps its frame.
  pAnimation->SetAnimation(0);
  EXPECT_EQ(At(nShift + 450, 16, 16), GREEN_PIXEL);
  EXPECT_EQ(At(nShift + 450, 4, 4), blue);
  pTexture->RendererOperation2();
  EXPECT_EQ(pTexture->IsLoaded(), 0);
  EXPECT_EQ(At(nShift + 450, 4, 4), blue) << "what is shown comes back";
  m_pTextures->Release();
  EXPECT_EQ(At(nShift + 450), (QXPixel{255, 255, 255, 255}));
}

TEST_F(QXOgreTextureFrames, AnAnimatedTextureWithoutFramesIsAPlainOne) {
  QXTexture* const pTexture = m_pTextures->GetTexture(L"flag.gif", 1);
  ASSERT_NE(dynamic_cast<QXAnimationTexture*>(pTexture), nullptr);
  pTexture->RendererOperation1(1, 1, 0);
  DrawTextured(pTexture);
  EXPECT_EQ(pTexture->IsInitialGPU(), 1);
  EXPECT_EQ(pTexture->GetBindID(), 0U);
  pTexture->SetTextureData(1, 2, NewBlock({0, 0, 255, 255, 0, 255, 0, 255}), 0, PF_A8R8G8B8);
  pTexture->FlipTexture();
  EXPECT_EQ(pTexture->GetTextureData(), &pTexture->m_TextureData);
  pTexture->LoadTexture(0, 0);
  ASSERT_EQ(pTexture->IsLoaded(), 1) << Reason();
  EXPECT_GT(pTexture->GetBindID(), 0U);
  EXPECT_EQ(pTexture->GetTextureID(), static_cast<int>(pTexture->GetBindID()));
  EXPECT_EQ(At(0, 32, 8), GREEN_PIXEL);
  unsigned char const arrBlue[4] = {255, 0, 0, 255};
  pTexture->LoadSubTexture(0, 0, 1, 1, 1, 1, arrBlue, 0);
  EXPECT_EQ(At(0, 32, 8), (QXPixel{0, 0, 255, 255}));
  pTexture->SetReverse(1);
  EXPECT_EQ(At(0, 32, 8), RED_PIXEL);
  pTexture->SetReverse(0);
  // The bytes of the file play.
  g_arrFrames = {{1, 1, 0.5, 0.5, 10, {0, 0, 255, 255}}, {1, 1, 0.5, 0.5, 10, {0, 255, 0, 255}}};
  QXTextureData file;
  file.m_pPixels = NewBlock({'G', 'I', 'F', '8', '9', 'a'});
  file.m_nDataSize = 6;
  file.m_nCompression = TEXTURE_COMPRESSION_RAW;
  pTexture->SetTextureData(&file);
  pTexture->SetIsNeedLoadTexture(1);
  EXPECT_EQ(At(0), RED_PIXEL);
  EXPECT_EQ(At(150), GREEN_PIXEL);
  EXPECT_EQ(pTexture->GetNumTextureFrame(), 2);
  pTexture->LoadTexture(0, 1);
  EXPECT_EQ(pTexture->m_TextureData.m_pPixels, nullptr);
  EXPECT_EQ(At(200), RED_PIXEL);
}

TEST_F(QXOgreTextureFrames, FramesFromARecordAreShownWhole) {
  std::vector<QXTextureData> arrFrames(2);
  for (std::size_t i = 0; i < 2; ++i) {
    arrFrames[i].m_pPixels = NewBlock(i == 0 ? std::vector<unsigned char>{0, 0, 255, 255, 255, 0, 0, 255}
                                             : std::vector<unsigned char>{0, 255, 0, 255, 255, 0, 0, 255});
    arrFrames[i].m_nWidth = 2;
    arrFrames[i].m_nHeight = 1;
    arrFrames[i].m_eFormat = PF_A8R8G8B8;
  }
  QXTextureDataAnimation const data(arrFrames, {100, 100});
  QXTexture* const pTexture = m_pTextures->GetTexture(L"flag.gif", 1);
  pTexture->RendererOperation1(1, 1, 0);
  pTexture->SetTextureData(&data);
  DrawTextured(pTexture);
  At(0);
  unsigned int const nShift = 200 - static_cast<QXAnimationTexture*>(pTexture)->m_nPlayTime;
  EXPECT_EQ(At(nShift + 50, 8), RED_PIXEL);
  EXPECT_EQ(At(nShift + 150, 8), GREEN_PIXEL);
  EXPECT_EQ(At(nShift + 150, 56), (QXPixel{0, 0, 255, 255}));
}

TEST_F(QXOgreTextureFrames, AStillImageEndsAnAnimation) {
  g_arrFrames = {{1, 1, 0.5, 0.5, 10, {0, 0, 255, 255}}, {1, 1, 0.5, 0.5, 10, {0, 0, 255, 255}}};
  QXTexture* const pTexture = MakeAnimated();
  DrawTextured(pTexture);
  pTexture->SetTextureData(1, 1, NewBlock({0, 255, 0, 255}), 0, PF_A8R8G8B8);
  pTexture->LoadTexture(0, 0);
  EXPECT_EQ(At(150), GREEN_PIXEL);
  EXPECT_EQ(pTexture->GetNumTextureFrame(), 0);
}

}  // namespace QXC
