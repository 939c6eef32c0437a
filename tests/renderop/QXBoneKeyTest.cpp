#include <memory>

#include <gtest/gtest.h>

#include <QxGraphics3D/frame/foundation/stream/QXMemoryStream.h>
#include <QxGraphics3D/renderop/QXBoneKey.h>

namespace QXC {
namespace {

TEST(QXBoneKey, FreshOneChangesNothing) {
  QXBoneKey const key;
  EXPECT_EQ(key.m_dTime, 0.0);
  EXPECT_EQ(key.m_vecPosition, QXVector3d(0.0, 0.0, 0.0));
  EXPECT_EQ(key.m_qRotation, QXQuaternion4d::IDENTITY);
  EXPECT_EQ(key.m_vecScale, QXVector3d(1.0, 1.0, 1.0));
}

TEST(QXBoneKey, TravelsThroughAStreamAsAKeyOfAnyKind) {
  QXBoneKey key;
  key.m_dTime = 1.5;
  key.m_vecPosition = QXVector3d(2.0, 3.0, 4.0);
  key.m_qRotation = QXQuaternion4d(0.5, -0.5, 0.5, -0.5);
  key.m_vecScale = QXVector3d(5.0, 6.0, 7.0);
  QXMemoryStream stream;
  key.Save(stream);
  EXPECT_EQ(stream.GetSize(), 88U);
  std::unique_ptr<QXAnimationKey> const pLoaded = std::make_unique<QXBoneKey>();
  ASSERT_EQ(pLoaded->Load(stream), 1);
  auto const* const pBone = dynamic_cast<QXBoneKey const*>(pLoaded.get());
  ASSERT_NE(pBone, nullptr);
  EXPECT_EQ(pBone->m_dTime, 1.5);
  EXPECT_EQ(pBone->m_vecPosition, key.m_vecPosition);
  EXPECT_EQ(pBone->m_qRotation, key.m_qRotation);
  EXPECT_EQ(pBone->m_vecScale, key.m_vecScale);
}

TEST(QXBoneKey, AnEarlyEndLeavesTheKeyAsItWas) {
  QXMemoryStream stream;
  for (int i = 0; i < 10; ++i) stream << 9.0;
  QXBoneKey key;
  key.m_dTime = 3.0;
  EXPECT_EQ(key.Load(stream), 0);
  EXPECT_EQ(key.m_dTime, 3.0);
  EXPECT_EQ(key.m_vecScale, QXVector3d(1.0, 1.0, 1.0));
}

TEST(QXBoneKey, CopiesAllFields) {
  QXBoneKey key;
  key.m_dTime = 2.0;
  key.m_vecPosition.x = 1.0;
  key.m_qRotation.z = 0.25;
  key.m_vecScale.y = 3.0;
  QXBoneKey const copy(key);
  QXBoneKey assigned;
  assigned = key;
  for (QXBoneKey const* const p : {&copy, static_cast<QXBoneKey const*>(&assigned)}) {
    EXPECT_EQ(p->m_dTime, 2.0);
    EXPECT_EQ(p->m_vecPosition.x, 1.0);
    EXPECT_EQ(p->m_qRotation.z, 0.25);
    EXPECT_EQ(p->m_vecScale.y, 3.0);
  }
}

}  // namespace
}  // namespace QXC
