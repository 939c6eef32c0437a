#include <QxGraphics3D/testing/QXNullAnimationTexture.h>

#include <QxGraphics3D/frame/foundation/base3d/QXTextureDataAnimation.h>
#include <QxGraphics3D/testing/QXCallLog.h>
#include <QxGraphics3D/testing/QXNullTexture.h>

#include <tests/fileparser/images/QXTestGif.h>
#include <tests/foundation/toolkit/QXTestFolder.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace QXC {
namespace {

class QXNullAnimation : public testing::Test {
protected:
  QXNullAnimation() : m_nObjectsBefore(QXNullObject::GetLiveCount()) {
    ms_nNow = 0;
    QdcTime::SetClock([] { return ms_nNow; });
    m_pTexture = std::make_unique<QXNullAnimationTexture>(m_pLog, L"flag");
  }
  ~QXNullAnimation() override { QdcTime::SetClock(nullptr); }

  /// One pixel a frame, of that value, each shown for 100 milliseconds.
  void SetFrames(std::vector<unsigned char> const& arrValues) {
    std::vector<QXTextureData> arrFrames(arrValues.size());
    for (std::size_t i = 0; i < arrValues.size(); ++i) {
      arrFrames[i].m_nWidth = arrFrames[i].m_nHeight = 1;
      arrFrames[i].m_eFormat = PF_A8R8G8B8;
      arrFrames[i].m_pPixels = new unsigned char[4]{arrValues[i], 0, 0, 255};
    }
    QXTextureDataAnimation const data(std::move(arrFrames), std::vector<unsigned int>(arrValues.size(), 100));
    m_pTexture->SetTextureData(static_cast<QXTextureData const*>(&data));
  }
  QXNullTexture& FrameAt(QXUInt64 i) { return static_cast<QXNullTexture&>(*m_pTexture->m_arrFrameTextures[i]); }
  /// First byte of what the device shows at that time.
  int ShownAt(unsigned int nNow) {
    ms_nNow = nNow;
    m_pTexture->LoadTexture(1, 0);
    std::vector<unsigned char> const& arrPixels = FrameAt(m_pTexture->m_nCurrentFrame).GetDevicePixels();
    return arrPixels.empty() ? -1 : arrPixels[0];
  }

  inline static unsigned int ms_nNow = 0;
  std::shared_ptr<QXCallLog> m_pLog = std::make_shared<QXCallLog>();
  int m_nObjectsBefore;
  std::unique_ptr<QXNullAnimationTexture> m_pTexture;
};

TEST_F(QXNullAnimation, LoadsAFrameWhenItIsShown) {
  SetFrames({11, 22, 33});
  EXPECT_EQ(ShownAt(50), 11);
  EXPECT_EQ(m_pTexture->m_bNeedLoadTexture, 0);
  ASSERT_EQ(m_pTexture->m_arrFrameTextures.GetSize(), 3u);
  EXPECT_EQ(FrameAt(1).IsLoaded(), 0);
  EXPECT_EQ(ShownAt(150), 22);
  EXPECT_EQ(ShownAt(250), 33);
  EXPECT_EQ(ShownAt(350), 11);
  EXPECT_EQ(m_pTexture->IsLoaded(), 1);
  EXPECT_EQ(m_pTexture->GetBindID(), FrameAt(0).GetBindID());
  EXPECT_EQ(QXNullObject::GetLiveCount(), m_nObjectsBefore + 4);
  m_pTexture.reset();
  EXPECT_EQ(QXNullObject::GetLiveCount(), m_nObjectsBefore);
}

TEST_F(QXNullAnimation, PassesItsSettingsToFramesThatItMakes) {
  m_pTexture->SetTextureRepeatMode(1);
  m_pTexture->SetTextureMipMap(1);
  m_pTexture->SetSRGB(0);
  m_pTexture->RendererOperation1(1, 2, 0);
  SetFrames({11});
  m_pTexture->LoadTexture(0, 0);
  EXPECT_EQ(FrameAt(0).m_bRepeatMode, 1);
  EXPECT_EQ(FrameAt(0).m_bMipmapEnabled, 1);
  EXPECT_EQ(FrameAt(0).m_bSRGB, 0);
  EXPECT_EQ(FrameAt(0).m_strTexFilePath, QdcUnicodeString(L"flag#0"));
  auto const& arrLines = m_pLog->GetLines();
  EXPECT_NE(
      std::find(arrLines.begin(), arrLines.end(), "texture \"flag#0\": RendererOperation1(1, 2, 0)"), arrLines.end());
}

TEST_F(QXNullAnimation, MakesTexturesForFramesThatCameLater) {
  SetFrames({11});
  EXPECT_EQ(ShownAt(50), 11);
  QXTexture const* const pFirst = m_pTexture->m_arrFrameTextures[0];
  SetFrames({22, 33});
  m_pTexture->LoadTexture(1, 0);
  ASSERT_EQ(m_pTexture->m_arrFrameTextures.GetSize(), 3u);
  EXPECT_EQ(m_pTexture->m_arrFrameTextures[0], pFirst);
  EXPECT_EQ(FrameAt(2).m_TextureData.m_pPixels[0], 33);
}

TEST_F(QXNullAnimation, BringsNewPixelsOfTheShownFrameToTheDevice) {
  SetFrames({11, 22});
  EXPECT_EQ(ShownAt(10), 11);
  m_pTexture->SetTextureData(1, 1, new unsigned char[4]{99, 0, 0, 255});
  EXPECT_EQ(ShownAt(20), 99);
  EXPECT_EQ(ShownAt(150), 22);
  EXPECT_EQ(ShownAt(220), 99);
}

TEST_F(QXNullAnimation, TakesAllFramesOffTheDevice) {
  SetFrames({11, 22});
  EXPECT_EQ(ShownAt(50), 11);
  EXPECT_EQ(ShownAt(150), 22);
  m_pTexture->m_arrFrameTextures.Add(nullptr);
  m_pTexture->RendererOperation1(1, 1, 1);
  m_pTexture->RendererOperation2();
  EXPECT_EQ(FrameAt(0).IsLoaded(), 0);
  EXPECT_EQ(FrameAt(1).IsLoaded(), 0);
}

TEST_F(QXNullAnimation, PlaysAFile) {
  QXTestFolder const folder;
  qxtest::GifFrame first = qxtest::MakeFrame(0, 0, 3, 3, 1);
  first.m_nDelay = 5;
  qxtest::GifBytes const arrBytes = qxtest::MakeGif(3, 3, {first, qxtest::MakeFrame(0, 0, 1, 1, 2)});
  auto const path = folder.Write("a.gif", std::string(arrBytes.begin(), arrBytes.end()));
  ASSERT_EQ(m_pTexture->LoadImageData(Wide(path), 0, 0), 1);
  EXPECT_EQ(m_pTexture->m_nTotalTime, 150u);
  EXPECT_EQ(ShownAt(50), qxtest::ColourOf(1)[0]);
  EXPECT_EQ(FrameAt(0).GetDeviceWidth(), 4u);
  EXPECT_EQ(ShownAt(51), qxtest::ColourOf(2)[0]);
  EXPECT_EQ(ShownAt(150), qxtest::ColourOf(1)[0]);
}

}  // namespace
}  // namespace QXC
