#include <QxGraphics3D/texture/QXAnimationTexture.h>

#include <QxGraphics3D/frame/foundation/base3d/QXImageData.h>
#include <QxGraphics3D/frame/foundation/base3d/QXTextureDataAnimation.h>

#include <tests/QXFieldOrder.h>

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "../QXBareTexture.h"
#include "../renderop/QXSlotOf.h"
#include "QXBareAnimation.h"

namespace QXC {
namespace {

/// Writes down what is asked of a frame, and dies loudly.
class FrameSpy final : public QXBareTexture {
public:
  FrameSpy(std::string strName, std::vector<std::string>& arrCalls)
      : m_strName(std::move(strName)), m_arrCalls(arrCalls) {}
  ~FrameSpy() override { Note("destroyed"); }

  void LoadTexture(unsigned char bOnly, unsigned char bRelease) override { Note("load", +bOnly, +bRelease); }
  void LoadSubTexture(int nX, int nY, int nWidth, int nHeight, int nSourceWidth, int nSourceHeight, void const* pPixels,
      unsigned int nFlag) override {
    Note("sub", nX, nY, nWidth, nHeight, nSourceWidth, nSourceHeight, pPixels == this, nFlag);
  }
  unsigned char IsLoaded() const override { return m_bOnDevice; }
  void SetTextureData(
      int nWidth, int nHeight, unsigned char* pPixels, unsigned int nCompression, QX3DPixelFormat eFormat) override {
    Note("pixels", nWidth, nHeight, +*pPixels, nCompression, static_cast<int>(eFormat));
    delete[] pPixels;
  }
  unsigned char SetTextureData(
      QXImageData*& pImage, int nFirst, int nSecond, int nThird, unsigned char bScan) override {
    Note("image", nFirst, nSecond, nThird, +bScan);
    delete pImage;
    pImage = nullptr;
    return 1;
  }
  void FlipTexture() override { Note("flip"); }
  void BuildMipmapOffset() override { Note("offsets"); }
  void SetTextureRepeatMode(unsigned char bRepeat) override { Note("repeat", +bRepeat); }
  void SetEdgeTransparency() override { Note("edges"); }
  void ScaleImage(int nWidth, int nHeight) override { Note("scale", nWidth, nHeight); }
  void SetTextureMipMap(unsigned char bMipmap) override { Note("mipmap", +bMipmap); }
  void SetMipmapBaseLevel(int nLevel) override { Note("base", nLevel); }
  void SetMipmapMaxLevel(int nLevel) override { Note("max", nLevel); }
  void SetMipmapOffset(QdcArray<unsigned int> const& arrOffsets) override { Note("setoffsets", arrOffsets.GetSize()); }
  unsigned char AddTexLodLevel(QdcArray<QXTextureData*>& arrLevels, unsigned int nLod, unsigned char bUpload) override {
    Note("addlod", arrLevels.GetSize(), nLod, +bUpload);
    return 1;
  }
  unsigned char DelTexLodLevel(unsigned int nLod) override {
    Note("dellod", nLod);
    return 1;
  }

  unsigned char m_bOnDevice = 0;

private:
  template <class... Arguments>
  void Note(char const* szCall, Arguments... arguments) {
    std::ostringstream text;
    text << m_strName << ' ' << szCall;
    ((text << ' ' << arguments), ...);
    m_arrCalls.push_back(text.str());
  }

  std::string m_strName;
  std::vector<std::string>& m_arrCalls;
};

using Calls = std::vector<std::string>;

class QXAnimation : public testing::Test {
protected:
  /// Frames "a", "b", "c", the second null; "c" is the current one.
  void AddFrames() {
    m_pA = new FrameSpy("a", m_arrCalls);
    m_pC = new FrameSpy("c", m_arrCalls);
    m_Texture.m_arrFrameTextures.Add(m_pA);
    m_Texture.m_arrFrameTextures.Add(nullptr);
    m_Texture.m_arrFrameTextures.Add(m_pC);
    m_Texture.m_nCurrentFrame = 2;
  }
  Calls TakeCalls() { return std::exchange(m_arrCalls, Calls()); }

  Calls m_arrCalls;
  QXBareAnimation m_Texture;
  FrameSpy* m_pA = nullptr;
  FrameSpy* m_pC = nullptr;
};

TEST(QXAnimationTexture, StartsWithItsDefaults) {
  for (std::unique_ptr<QXBareAnimation> const& pTexture :
      {std::make_unique<QXBareAnimation>(), std::make_unique<QXBareAnimation>(L"/x/a.gif")}) {
    EXPECT_TRUE(pTexture->m_arrFrames.empty());
    EXPECT_EQ(pTexture->m_arrFrameTextures.GetSize(), 0u);
    EXPECT_EQ(pTexture->m_bAnimationEnabled, 1);
    EXPECT_EQ(pTexture->m_nCurrentFrame, 0u);
    EXPECT_EQ(pTexture->m_nPlayTime, 0u);
    EXPECT_EQ(pTexture->m_nTotalTime, 0u);
    EXPECT_TRUE(pTexture->m_mapFrameEndTimes.empty());
    EXPECT_TRUE(pTexture->m_mapFrameIDs.empty());
    EXPECT_EQ(pTexture->m_nLastUpdate, 0u);
    EXPECT_EQ(pTexture->m_Time, QdcTime());
    EXPECT_EQ(pTexture->m_bLoadedImage, 0);
    EXPECT_EQ(pTexture->m_bHasTransparentData, 1);
  }
  EXPECT_EQ(QXBareAnimation(L"/x/a.gif").m_strTexFilePath, QdcUnicodeString(L"/x/a.gif"));
}

TEST(QXAnimationTexture, HasItsFieldsInOrderBehindThoseOfATexture) {
  QXBareAnimation texture;
  ExpectInOrder({&texture.m_bKtx2Flag, &texture.m_arrFrames, &texture.m_arrFrameTextures, &texture.m_bAnimationEnabled,
      &texture.m_nCurrentFrame, &texture.m_nPlayTime, &texture.m_nTotalTime, &texture.m_mapFrameEndTimes,
      &texture.m_mapFrameIDs, &texture.m_nLastUpdate, &texture.m_Time});
}

TEST(QXAnimationTexture, HasFourSlotsBehindThoseOfATexture) {
  using T = QXAnimationTexture;
  EXPECT_EQ(SlotOf(static_cast<unsigned char (T::*)(QdcUnicodeString const&, unsigned char, unsigned char)>(
                &T::LoadImageData)),
      43);
  EXPECT_EQ(SlotOf(static_cast<void (T::*)(int, int, unsigned char*)>(&T::SetTextureData)), 44);
  EXPECT_EQ(SlotOf(static_cast<unsigned char (T::*)(QXImageData*&, int, int, int)>(&T::SetTextureData)), 45);
  EXPECT_EQ(SlotOf(static_cast<unsigned char (T::*)(QdcArray<QXTextureData*>&, unsigned int)>(&T::AddTexLodLevel)), 46);
  EXPECT_TRUE(std::is_abstract_v<T>);
}

TEST(QXAnimationTexture, StillHasTheHiddenOperationsOfATexture) {
  QXBareAnimation texture;
  texture.SetTextureData(2, 1, new unsigned char[8]{1}, 0, PF_A8R8G8B8);
  EXPECT_EQ(texture.m_TextureData.m_pPixels[0], 1);
  texture.SetTextureData(QXTextureData());
  EXPECT_EQ(texture.m_TextureData.m_pPixels, nullptr);
  QdcArray<unsigned int> arrOffsets;
  QXAnimationTexture::BuildMipmapOffset(4, 4, PF_A8R8G8B8, 0, arrOffsets);
  EXPECT_EQ(arrOffsets.GetSize(), 3u);
  EXPECT_EQ(QXAnimationTexture::GetTextureData(L""), nullptr);
  QdcArray<QXTextureData*> arrLevels;
  EXPECT_EQ(texture.AddTexLodLevel(arrLevels, 0, 1), 0);
  EXPECT_EQ(texture.LoadImageData(L"", 0, 0, 0), 0);
}

TEST_F(QXAnimation, GivesNothingWithoutACurrentFrame) {
  for (int nStep = 0; nStep < 3; ++nStep) {
    SCOPED_TRACE(nStep);
    m_Texture.m_nBindID = 7;
    EXPECT_EQ(m_Texture.GetBindID(), 0u);
    EXPECT_EQ(m_Texture.IsLoaded(), 0);
    EXPECT_EQ(m_Texture.GetTextureData(), nullptr);
    EXPECT_EQ(m_Texture.DelTexLodLevel(0), 0);
    QdcArray<QXTextureData*> arrLevels;
    EXPECT_EQ(m_Texture.AddTexLodLevel(arrLevels, 0), 0);
    ASSERT_EQ(m_Texture.GetMipmapOffset().GetSize(), 1u);
    unsigned char pPixels[4] = {};
    m_Texture.SetTextureData(1, 1, pPixels);
    EXPECT_EQ(m_Texture.m_bLoadedImage, 0);
    EXPECT_EQ(m_Texture.m_bNeedLoadTexture, 0);
    QXImageData image;
    QXImageData* pImage = &image;
    EXPECT_EQ(m_Texture.SetTextureData(pImage, 1, 2, 3), 0);
    EXPECT_EQ(pImage, &image);
    m_Texture.LoadSubTexture(0, 0, 1, 1, 1, 1, pPixels, 1);
    m_Texture.LoadTexture(1, 1);
    EXPECT_TRUE(TakeCalls().empty());
    // Next: a null texture is the current one; then: the index is past the end.
    if (nStep == 0) AddFrames();
    m_Texture.m_nCurrentFrame = nStep == 0 ? 1 : 3;
  }
}

TEST_F(QXAnimation, ForwardsToTheCurrentFrame) {
  AddFrames();
  m_pC->m_nBindID = 9;
  EXPECT_EQ(m_Texture.GetBindID(), 9u);
  EXPECT_EQ(m_Texture.IsLoaded(), 0);
  m_pC->m_bOnDevice = 1;
  EXPECT_EQ(m_Texture.IsLoaded(), 1);
  EXPECT_EQ(m_Texture.GetTextureData(), &m_pC->m_TextureData);
  m_pC->m_arrMipmapOffset.Add(5);
  EXPECT_EQ(m_Texture.GetMipmapOffset().GetSize(), 2u);
  m_Texture.LoadSubTexture(1, 2, 3, 4, 5, 6, static_cast<QXTexture*>(m_pC), 77);
  EXPECT_EQ(m_Texture.DelTexLodLevel(4), 1);
  QdcArray<QXTextureData*> arrLevels;
  arrLevels.Add(nullptr);
  EXPECT_EQ(m_Texture.AddTexLodLevel(arrLevels, 3), 1);
  m_Texture.LoadTexture(1, 0);
  EXPECT_EQ(TakeCalls(), (Calls{"c sub 1 2 3 4 5 6 1 0", "c dellod 4", "c addlod 1 3 0", "c load 1 0"}));
  m_Texture.m_nCurrentFrame = 0;
  m_Texture.LoadTexture(0, 1);
  EXPECT_EQ(TakeCalls(), Calls{"a load 0 1"});
}

TEST_F(QXAnimation, GivesPixelsToTheCurrentFrameInFormat12) {
  AddFrames();
  m_Texture.SetTextureData(2, 1, new unsigned char[8]{42});
  EXPECT_EQ(TakeCalls(), Calls{"c pixels 2 1 42 0 12"});
  EXPECT_EQ(m_Texture.m_bLoadedImage, 1);
  EXPECT_EQ(m_Texture.m_bNeedLoadTexture, 1);
  EXPECT_EQ(m_Texture.m_TextureData.m_pPixels, nullptr);
}

TEST_F(QXAnimation, GivesAnImageToTheCurrentFrameWithoutAScan) {
  AddFrames();
  auto* pImage = new QXImageData;
  EXPECT_EQ(m_Texture.SetTextureData(pImage, 7, 8, 9), 1);
  EXPECT_EQ(pImage, nullptr);
  EXPECT_EQ(TakeCalls(), Calls{"c image 7 8 9 0"});
  EXPECT_EQ(m_Texture.m_bLoadedImage, 0);
  EXPECT_EQ(m_Texture.m_bNeedLoadTexture, 0);
}

TEST_F(QXAnimation, SetsStateForAllFrames) {
  AddFrames();
  m_Texture.SetTextureRepeatMode(1);
  m_Texture.SetTextureMipMap(1);
  EXPECT_EQ(m_Texture.m_bRepeatMode, 1);
  EXPECT_EQ(m_Texture.m_bMipmapEnabled, 1);
  EXPECT_EQ(TakeCalls(), (Calls{"a repeat 1", "c repeat 1", "a mipmap 1", "c mipmap 1"}));
  m_Texture.SetMipmapBaseLevel(2);
  m_Texture.SetMipmapMaxLevel(3);
  QdcArray<unsigned int> arrOffsets;
  arrOffsets.SetSize(4);
  m_Texture.SetMipmapOffset(arrOffsets);
  EXPECT_EQ(m_Texture.m_arrMipmapOffset.GetSize(), 1u);
  EXPECT_EQ(TakeCalls(), (Calls{"a base 2", "c base 2", "a max 3", "c max 3", "a setoffsets 4", "c setoffsets 4"}));
  m_Texture.FlipTexture();
  m_Texture.SetEdgeTransparency();
  m_Texture.BuildMipmapOffset();
  EXPECT_EQ(TakeCalls(), (Calls{"a flip", "c flip", "a edges", "c edges", "a offsets", "c offsets"}));
}

TEST_F(QXAnimation, ScalesAllFramesAndCountsAsNotLoaded) {
  m_Texture.m_bLoadedImage = 1;
  m_Texture.ScaleImage(3, 4);
  EXPECT_EQ(m_Texture.m_bLoadedImage, 0);
  AddFrames();
  m_Texture.ScaleImage(3, 4);
  EXPECT_EQ(TakeCalls(), (Calls{"a scale 3 4", "c scale 3 4"}));
}

TEST_F(QXAnimation, DeletesItsFramesWhenItDies) {
  {
    QXBareAnimation texture;
    texture.m_arrFrameTextures.Add(new FrameSpy("x", m_arrCalls));
    texture.m_arrFrameTextures.Add(nullptr);
    texture.ReleaseImgData();
    EXPECT_TRUE(TakeCalls().empty());
  }
  EXPECT_EQ(TakeCalls(), Calls{"x destroyed"});
}

QXTextureData Block(unsigned char nValue) {
  QXTextureData data;
  data.m_nWidth = data.m_nHeight = 1;
  data.m_eFormat = PF_A8R8G8B8;
  data.m_pPixels = new unsigned char[4]{nValue};
  return data;
}

TEST_F(QXAnimation, ReleasesTheFramesAndForgetsThatTheyWereLoaded) {
  m_Texture.QXTexture::SetTextureData(Block(1));
  m_Texture.m_arrFrames.push_back(Block(2));
  m_Texture.m_bLoadedImage = 1;
  m_Texture.m_nTotalTime = 100;
  m_Texture.ReleaseImgData();
  EXPECT_EQ(m_Texture.m_TextureData.m_pPixels, nullptr);
  EXPECT_TRUE(m_Texture.m_arrFrames.empty());
  EXPECT_EQ(m_Texture.m_arrFrames.capacity(), 0u);
  EXPECT_EQ(m_Texture.m_bLoadedImage, 0);
  EXPECT_EQ(m_Texture.m_nTotalTime, 100u);
}

TEST_F(QXAnimation, TakesCopiesOfTheFramesOfAnAnimation) {
  QXTextureDataAnimation const data({Block(1), Block(2)}, {30, 70});
  QXTextureData const* const pData = &data;
  m_Texture.SetTextureData(pData);
  ASSERT_EQ(m_Texture.m_arrFrames.size(), 2u);
  EXPECT_EQ(m_Texture.m_arrFrames[1].m_pPixels[0], 2);
  EXPECT_NE(m_Texture.m_arrFrames[1].m_pPixels, data.GetFrameDataByIndex(1).m_pPixels);
  EXPECT_EQ(m_Texture.m_nTotalTime, 100u);
  EXPECT_EQ(m_Texture.m_mapFrameEndTimes, (std::map<unsigned int, unsigned int>{{0, 30}, {1, 100}}));
  EXPECT_EQ(m_Texture.m_bLoadedImage, 1);
  EXPECT_EQ(m_Texture.m_bNeedLoadTexture, 1);
  EXPECT_EQ(m_Texture.m_TextureData.m_pPixels, nullptr);
  // A second time they go on where the first ended, from index 0 again.
  m_Texture.SetTextureData(pData);
  EXPECT_EQ(m_Texture.m_arrFrames.size(), 4u);
  EXPECT_EQ(m_Texture.m_nTotalTime, 200u);
  EXPECT_EQ(m_Texture.m_mapFrameEndTimes, (std::map<unsigned int, unsigned int>{{0, 130}, {1, 200}}));
}

TEST_F(QXAnimation, TakesNoStillImage) {
  QXTextureData const still = Block(1);
  m_Texture.SetTextureData(&still);
  m_Texture.SetTextureData(static_cast<QXTextureData const*>(nullptr));
  EXPECT_TRUE(m_Texture.m_arrFrames.empty());
  EXPECT_EQ(m_Texture.m_TextureData.m_pPixels, nullptr);
  EXPECT_EQ(m_Texture.m_bLoadedImage, 0);
  EXPECT_EQ(m_Texture.m_bNeedLoadTexture, 0);
}

TEST_F(QXAnimation, AnAnimationWithoutFramesCountsAsLoaded) {
  QXTextureDataAnimation const data({}, {});
  m_Texture.SetTextureData(static_cast<QXTextureData const*>(&data));
  EXPECT_EQ(m_Texture.m_bLoadedImage, 1);
  EXPECT_EQ(m_Texture.m_nTotalTime, 0u);
}

TEST_F(QXAnimation, IsNamedAnew) {
  m_Texture.SetTexFilePath(L"/x/b.gif");
  EXPECT_EQ(m_Texture.m_strTexFilePath, QdcUnicodeString(L"/x/b.gif"));
  EXPECT_TRUE(m_Texture.m_strImgRealFilePath.IsEmpty());
}

class QXAnimationClock : public QXAnimation {
protected:
  QXAnimationClock() {
    ms_nNow = 0;
    QdcTime::SetClock([] { return ms_nNow; });
  }
  ~QXAnimationClock() override { QdcTime::SetClock(nullptr); }

  void SetTimes(std::vector<unsigned int> const& arrTimes) {
    std::vector<QXTextureData> arrFrames;
    for (std::size_t i = 0; i < arrTimes.size(); ++i) arrFrames.push_back(Block(1));
    QXTextureDataAnimation const data(std::move(arrFrames), arrTimes);
    m_Texture.SetTextureData(static_cast<QXTextureData const*>(&data));
  }
  unsigned int FrameAt(unsigned int nNow) {
    ms_nNow = nNow;
    m_Texture.UpdateAnimation();
    return m_Texture.m_nCurrentFrame;
  }

  inline static unsigned int ms_nNow = 0;
};

TEST_F(QXAnimationClock, ShowsAFrameToItsVeryEnd) {
  SetTimes({100, 100, 100});
  EXPECT_EQ(FrameAt(0), 0u);
  EXPECT_EQ(FrameAt(100), 0u);
  EXPECT_EQ(m_Texture.m_nPlayTime, 100u);
  EXPECT_EQ(FrameAt(101), 1u);
  EXPECT_EQ(FrameAt(200), 1u);
  EXPECT_EQ(FrameAt(201), 2u);
  EXPECT_EQ(FrameAt(299), 2u);
  EXPECT_EQ(FrameAt(300), 0u);
  EXPECT_EQ(m_Texture.m_nPlayTime, 0u);
  EXPECT_EQ(m_Texture.m_nLastUpdate, 300u);
  EXPECT_EQ(FrameAt(300 + 7 * 300 + 150), 1u);
}

TEST_F(QXAnimationClock, BeginsWhereTheClockStands) {
  SetTimes({100, 100, 100});
  EXPECT_EQ(FrameAt(3 * 300 + 250), 2u);
  EXPECT_EQ(m_Texture.m_nPlayTime, 250u);
}

TEST_F(QXAnimationClock, GoesOnWhenTheClockWraps) {
  SetTimes({100, 100, 100});
  m_Texture.m_nLastUpdate = 0xFFFFFFF0u;
  EXPECT_EQ(FrameAt(134), 1u);
  EXPECT_EQ(m_Texture.m_nPlayTime, 150u);
}

// The sum of the time played and the time that went by may need more than 32 bits.
TEST_F(QXAnimationClock, ComesBackFromALongSleepAtTheRightPlace) {
  SetTimes({4000000000u, 200000000u});
  m_Texture.m_nPlayTime = 4100000000u;
  m_Texture.m_nLastUpdate = 0;
  EXPECT_EQ(FrameAt(300000000u), 0u);
  EXPECT_EQ(m_Texture.m_nPlayTime, 200000000u);
}

TEST_F(QXAnimationClock, StandsStillAndJumpsByTheWholeTimeAfterwards) {
  SetTimes({100, 100, 100});
  EXPECT_EQ(FrameAt(50), 0u);
  m_Texture.SetAnimation(0);
  EXPECT_EQ(m_Texture.m_bAnimationEnabled, 0);
  EXPECT_EQ(FrameAt(150), 0u);
  EXPECT_EQ(m_Texture.m_nPlayTime, 50u);
  EXPECT_EQ(m_Texture.m_nLastUpdate, 50u);
  m_Texture.SetAnimation(1);
  EXPECT_EQ(FrameAt(250), 2u);
  EXPECT_EQ(m_Texture.m_nPlayTime, 250u);
}

TEST_F(QXAnimationClock, NeedsTimes) {
  EXPECT_EQ(FrameAt(500), 0u);
  EXPECT_EQ(m_Texture.m_nLastUpdate, 0u);
  m_Texture.m_nTotalTime = 100;
  EXPECT_EQ(FrameAt(550), 0u);
  EXPECT_EQ(m_Texture.m_nPlayTime, 50u);
  SetTimes({0, 0});
  m_Texture.m_nTotalTime = 0;
  m_Texture.m_nCurrentFrame = 1;
  EXPECT_EQ(FrameAt(600), 1u);
}

TEST_F(QXAnimationClock, NeverShowsAFrameWithoutTimeButTheFirst) {
  SetTimes({0, 50, 0, 50});
  EXPECT_EQ(FrameAt(0), 0u);
  for (unsigned int nNow = 1; nNow < 100; ++nNow) EXPECT_EQ(FrameAt(nNow), nNow <= 50 ? 1u : 3u) << nNow;
}

TEST_F(QXAnimationClock, FindsTheFrameThatASearchFromTheFrontFinds) {
  constexpr unsigned int SEED = 533;
  SCOPED_TRACE(SEED);
  std::mt19937 random(SEED);
  for (int nRun = 0; nRun < 200; ++nRun) {
    m_Texture.m_nTotalTime = 0;
    m_Texture.m_mapFrameEndTimes.clear();
    std::vector<unsigned int> arrTimes(1 + random() % 9);
    for (unsigned int& nTime : arrTimes) nTime = 1 + static_cast<unsigned int>(random() % 50);
    SetTimes(arrTimes);
    for (int nStep = 0; nStep < 50; ++nStep) {
      unsigned int const nShown = FrameAt(ms_nNow + static_cast<unsigned int>(random() % 400));
      unsigned int nExpected = 0, nEnd = arrTimes[0];
      while (m_Texture.m_nPlayTime > nEnd) nEnd += arrTimes[++nExpected];
      ASSERT_EQ(nShown, nExpected) << nRun << ' ' << nStep;
    }
  }
}

TEST_F(QXAnimationClock, AdvancesWhenItIsLoaded) {
  SetTimes({100, 100, 100});
  AddFrames();
  m_Texture.m_nCurrentFrame = 0;
  ms_nNow = 250;
  m_Texture.LoadTexture(1, 0);
  EXPECT_EQ(m_Texture.m_nCurrentFrame, 2u);
  EXPECT_EQ(TakeCalls(), Calls{"c load 1 0"});
  m_Texture.SetAnimation(0);
  ms_nNow = 310;
  m_Texture.LoadTexture(1, 0);
  EXPECT_EQ(TakeCalls(), Calls{"c load 1 0"});
  m_Texture.SetAnimation(1);
  m_Texture.LoadTexture(1, 0);
  EXPECT_EQ(TakeCalls(), Calls{"a load 1 0"});
}

TEST_F(QXAnimationClock, DoesNotAdvanceOneFrame) {
  SetTimes({100, 100});
  m_Texture.m_arrFrameTextures.Add(new FrameSpy("x", m_arrCalls));
  ms_nNow = 150;
  m_Texture.LoadTexture(0, 0);
  EXPECT_EQ(m_Texture.m_nCurrentFrame, 0u);
  EXPECT_EQ(m_Texture.m_nLastUpdate, 0u);
  EXPECT_EQ(TakeCalls(), Calls{"x load 0 0"});
}

// More times than textures: nothing is shown rather than a wrong frame.
TEST_F(QXAnimationClock, LoadsNothingForAFrameWithoutTexture) {
  SetTimes({100, 100, 100, 100});
  AddFrames();
  ms_nNow = 350;
  m_Texture.LoadTexture(0, 0);
  EXPECT_EQ(m_Texture.m_nCurrentFrame, 3u);
  EXPECT_TRUE(TakeCalls().empty());
  EXPECT_EQ(m_Texture.IsLoaded(), 0);
}

}  // namespace
}  // namespace QXC
