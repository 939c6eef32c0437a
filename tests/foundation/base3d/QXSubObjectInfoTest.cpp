#include <QxGraphics3D/frame/foundation/base3d/QXSubObjectInfo.h>

#include <tests/foundation/base3d/QXRecordProbe.h>
#include <tests/foundation/stream/QXByteWriter.h>

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <string>

namespace QXC {
namespace {

QXSubObjectInfo MakeInfo() {
  QXSubObjectInfo info;
  info.m_BoundingSphere.SetCenter(QXVector3d(1.0, -2.0, 6378137.25));
  info.m_BoundingSphere.SetRadius(12.5);
  info.m_mapPassSlots = {{4, 0}, {-1, 1}};
  info.m_arrOffsets.Add(30);
  info.m_arrOffsets.Add(-7);
  info.m_arrCounts.Add(6);
  info.m_arrCounts.Add(9);
  info.m_arrCounts.Add(12);
  return info;
}

QXSubObjectInfo MakeOld() {
  QXSubObjectInfo info;
  info.m_mapPassSlots = {{0, 0}, {1, 1}, {2, 2}};
  info.m_arrOffsets.Add(1);
  return info;
}

std::string InfoBytes() {
  return QXByteWriter()
      .Double(1.0)
      .Double(-2.0)
      .Double(6378137.25)
      .Double(12.5)
      .Int(2)
      .Int(-1)
      .Int(1)
      .Int(4)
      .Int(0)
      .Int(2)
      .Int(30)
      .Int(-7)
      .Int(3)
      .Int(6)
      .Int(9)
      .Int(12)
      .GetBytes();
}

TEST(QXSubObjectInfo, IsEmptyWithAnInvalidSphereAtFirst) {
  QXSubObjectInfo const info;
  EXPECT_EQ(info.m_BoundingSphere.valid(), 0);
  EXPECT_TRUE(info.m_mapPassSlots.empty());
  EXPECT_EQ(info.m_arrOffsets.GetSize(), 0u);
  EXPECT_EQ(info.m_arrCounts.GetSize(), 0u);
  EXPECT_EQ(info.GetDataSize(), 44);
}

TEST(QXSubObjectInfo, IsWrittenSphereSlotsOffsetsCounts) {
  EXPECT_EQ(BytesOf(MakeInfo()), InfoBytes());
}

TEST(QXSubObjectInfo, ReplacesWhatItHeld) {
  QXSubObjectInfo info = MakeOld();
  ASSERT_EQ(LoadBytes(info, InfoBytes()), 1);
  EXPECT_EQ(info.m_BoundingSphere.GetCenter(), QXVector3d(1.0, -2.0, 6378137.25));
  EXPECT_EQ(info.m_BoundingSphere.GetRadius(), 12.5);
  EXPECT_EQ(info.m_mapPassSlots, (std::map<int, int>{{-1, 1}, {4, 0}}));
  ASSERT_EQ(info.m_arrOffsets.GetSize(), 2u);
  EXPECT_EQ(info.m_arrOffsets[1], -7);
  ASSERT_EQ(info.m_arrCounts.GetSize(), 3u);
  EXPECT_EQ(info.m_arrCounts[2], 12);
}

TEST(QXSubObjectInfo, ComesBackAsItWas) {
  ExpectRoundTrip(MakeInfo(), MakeOld());
  ExpectRoundTrip(QXSubObjectInfo(), MakeInfo());
}

TEST(QXSubObjectInfo, KeepsASphereThatIsNoNumber) {
  QXSubObjectInfo info;
  info.m_BoundingSphere.m_vecCenter.x = std::bit_cast<double>(std::uint64_t{0x7FF0000000001234u});
  info.m_BoundingSphere.SetRadius(-INFINITY);
  ExpectRoundTrip(info, MakeOld());
}

TEST(QXSubObjectInfo, TakesTheLaterOfTwoSlotsOfAPass) {
  std::string const bytes = QXByteWriter()
                                .Double(0)
                                .Double(0)
                                .Double(0)
                                .Double(1)
                                .Int(3)
                                .Int(5)
                                .Int(1)
                                .Int(2)
                                .Int(8)
                                .Int(5)
                                .Int(3)
                                .Int(0)
                                .Int(0)
                                .GetBytes();
  QXSubObjectInfo info;
  ASSERT_EQ(LoadBytes(info, bytes), 1);
  EXPECT_EQ(info.m_mapPassSlots, (std::map<int, int>{{2, 8}, {5, 3}}));
}

TEST(QXSubObjectInfo, CutAnywhereIsNone) {
  ExpectTruncationFails(InfoBytes(), MakeOld());
}

TEST(QXSubObjectInfo, WithAnyBitTurnedIsWholeOrNone) {
  ExpectTurnedBitsGiveWholeRecords(InfoBytes(), MakeOld());
}

TEST(QXSubObjectInfo, RefusesCountsThatTheBytesCannotFill) {
  for (std::size_t const nOffset : {32u, 52u, 64u}) ExpectHostileCountFails(InfoBytes(), nOffset, MakeOld());
}

TEST(QXSubObjectInfo, IsCopiedWhole) {
  QXSubObjectInfo const info = MakeInfo();
  QXSubObjectInfo copy(info);
  copy.m_arrCounts[0] = 99;
  EXPECT_EQ(BytesOf(info), InfoBytes());
  copy = info;
  EXPECT_EQ(BytesOf(copy), InfoBytes());
}

}  // namespace
}  // namespace QXC
