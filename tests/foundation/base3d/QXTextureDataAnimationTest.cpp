#include <QxGraphics3D/frame/foundation/base3d/QXTextureDataAnimation.h>

#include <memory>
#include <stdexcept>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

using namespace QXC;

namespace {

QXTextureData Frame(unsigned char nGray) {
  QXTextureData data;
  data.m_nWidth = data.m_nHeight = 1;
  data.m_eFormat = PF_L8;
  data.m_pPixels = new unsigned char[1]{nGray};
  return data;
}

TEST(QXTextureDataAnimation, HoldsCopiesOfFramesWithTheirDelays) {
  std::vector<QXTextureData> const arrFrames{Frame(10), Frame(20)};
  QXTextureDataAnimation animation(arrFrames, {100, 50});
  ASSERT_EQ(animation.GetNumFrame(), 2);
  EXPECT_NE(animation.GetFrameDataByIndex(0).m_pPixels, arrFrames[0].m_pPixels);
  EXPECT_EQ(animation.GetFrameDataByIndex(0).m_pPixels[0], 10);
  EXPECT_EQ(animation.GetFrameDataByIndex(1).m_pPixels[0], 20);
  EXPECT_EQ(animation.GetFrameTimeByIndex(0), 100U);
  EXPECT_EQ(animation.GetFrameTimeByIndex(1), 50U);
  EXPECT_EQ(animation.m_pPixels, nullptr);
  EXPECT_EQ(animation.m_nCompression, 0U);
}

TEST(QXTextureDataAnimation, MayTakeTheFramesInsteadOfCopyingThem) {
  std::vector<QXTextureData> arrFrames;
  arrFrames.push_back(Frame(10));
  unsigned char const* const pPixels = arrFrames[0].m_pPixels;
  QXTextureDataAnimation animation(std::move(arrFrames), {7});
  EXPECT_EQ(animation.GetFrameDataByIndex(0).m_pPixels, pPixels);
  EXPECT_EQ(animation.GetFrameTimeByIndex(0), 7U);
}

TEST(QXTextureDataAnimation, GivesEachFrameOneDelay) {
  QXTextureDataAnimation const fewer({Frame(1), Frame(2)}, {30});
  EXPECT_EQ(fewer.GetFrameTimeByIndex(0), 30U);
  EXPECT_EQ(fewer.GetFrameTimeByIndex(1), 0U);
  QXTextureDataAnimation const more({Frame(1)}, {30, 40});
  EXPECT_EQ(more.GetNumFrame(), 1);
  EXPECT_THROW(more.GetFrameTimeByIndex(1), std::out_of_range);
}

TEST(QXTextureDataAnimation, RefusesAFrameThatItDoesNotHaveAsACheckedSubscriptDoes) {
  QXTextureDataAnimation animation({Frame(1)}, {30});
  EXPECT_THROW(animation.GetFrameDataByIndex(-1), std::out_of_range);
  EXPECT_THROW(animation.GetFrameDataByIndex(1), std::out_of_range);
  EXPECT_THROW(animation.GetFrameTimeByIndex(-1), std::out_of_range);
  EXPECT_THROW(animation.GetFrameTimeByIndex(1), std::out_of_range);
  QXTextureDataAnimation empty({}, {});
  EXPECT_EQ(empty.GetNumFrame(), 0);
  try {
    empty.GetFrameDataByIndex(0);
    FAIL();
  } catch (std::out_of_range const& error) {
    EXPECT_STREQ(error.what(), "invalid vector<T> subscript");
  }
}

TEST(QXTextureDataAnimation, HandsItsFramesOutToBeChanged) {
  QXTextureDataAnimation animation({Frame(1)}, {30});
  animation.GetFrameDataByIndex(0).m_pPixels[0] = 99;
  EXPECT_EQ(animation.GetFrameDataByIndex(0).m_pPixels[0], 99);
}

TEST(QXTextureDataAnimation, IsToldFromAStillImageByADynamicCast) {
  QXTextureDataAnimation animation({Frame(1)}, {30});
  QXTextureData still;
  QXTextureData* pData = &animation;
  EXPECT_EQ(dynamic_cast<QXTextureDataAnimation*>(pData), &animation);
  pData = &still;
  EXPECT_EQ(dynamic_cast<QXTextureDataAnimation*>(pData), nullptr);
}

TEST(QXTextureDataAnimation, IsClonedThroughItsBaseWithItsFrames) {
  QXTextureDataAnimation animation({Frame(1), Frame(2)}, {30, 40});
  animation.m_nCompression = TEXTURE_COMPRESSION_RAW;
  std::unique_ptr<QXTextureData> const pClone(static_cast<QXTextureData&>(animation).Clone());
  auto* const pAnimation = dynamic_cast<QXTextureDataAnimation*>(pClone.get());
  ASSERT_NE(pAnimation, nullptr);
  EXPECT_EQ(pAnimation->m_nCompression, 16U);
  ASSERT_EQ(pAnimation->GetNumFrame(), 2);
  EXPECT_NE(pAnimation->GetFrameDataByIndex(1).m_pPixels, animation.GetFrameDataByIndex(1).m_pPixels);
  EXPECT_EQ(pAnimation->GetFrameDataByIndex(1).m_pPixels[0], 2);
  EXPECT_EQ(pAnimation->GetFrameTimeByIndex(1), 40U);
}

TEST(QXTextureDataAnimation, IsAssignedWithItsFrames) {
  QXTextureDataAnimation const animation({Frame(1), Frame(2)}, {30, 40});
  QXTextureDataAnimation other({Frame(9)}, {1});
  other = animation;
  ASSERT_EQ(other.GetNumFrame(), 2);
  EXPECT_EQ(other.GetFrameDataByIndex(0).m_pPixels[0], 1);
  EXPECT_EQ(other.GetFrameTimeByIndex(1), 40U);
}

}  // namespace
