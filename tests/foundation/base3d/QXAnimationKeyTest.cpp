#include <QxGraphics3D/frame/foundation/base3d/QXAnimationKey.h>
#include <QxGraphics3D/frame/foundation/stream/QXMemoryStream.h>

#include <gtest/gtest.h>

#include <stdexcept>
#include <type_traits>

namespace QXC {

namespace {

class TimedKey : public QXAnimationKey {
public:
  explicit TimedKey(int& nLog) : m_nLog(nLog) {}
  ~TimedKey() override { m_nLog += 100; }
  unsigned char Load(QXStream&) override {
    m_nLog += 1;
    return 0;
  }
  void Save(QXStream&) override { m_nLog += 10; }

private:
  int& m_nLog;
};

TEST(QXAnimationKey, IsACopyableValueWithVirtualDestructor) {
  static_assert(std::has_virtual_destructor_v<QXAnimationKey>);
  static_assert(std::is_copy_constructible_v<QXAnimationKey> && std::is_copy_assignable_v<QXAnimationKey>);
  QXMemoryStream stream;
  QXAnimationKey key;
  QXAnimationKey copy(key);
  copy = key;
  copy.Save(stream);
  EXPECT_EQ(copy.Load(stream), 1);
}

TEST(QXAnimationKey, KindsOverrideEveryOperation) {
  int log = 0;
  QXMemoryStream stream;
  QXAnimationKey* pKey = new TimedKey(log);
  EXPECT_EQ(pKey->Load(stream), 0);
  pKey->Save(stream);
  delete pKey;
  EXPECT_EQ(log, 111);
}

class PlacedKey : public QXAnimationKey {
public:
  unsigned char Load(QXStream& stream) override {
    stream >> m_nTime >> m_dPlace;
    return stream.IsGood();
  }
  void Save(QXStream& stream) override { stream << m_nTime << m_dPlace; }

  unsigned int m_nTime = 0;
  double m_dPlace = 0.0;
};

TEST(QXAnimationKey, TravelsThroughAStream) {
  PlacedKey key;
  key.m_nTime = 40;
  key.m_dPlace = 0.125;
  QXMemoryStream stream;
  QXAnimationKey().Save(stream);
  EXPECT_EQ(stream.GetSize(), 0u) << "the base has no fields";
  key.Save(stream);
  PlacedKey loaded;
  ASSERT_EQ(loaded.Load(stream), 1);
  EXPECT_EQ(loaded.m_nTime, 40u);
  EXPECT_EQ(loaded.m_dPlace, 0.125);
  EXPECT_EQ(loaded.Load(stream), 0);
}

TEST(QXAnimationKey, ArraysOfKeysAndOfPointersStand) {
  QdcArray<QXAnimationKey> arrKeys;
  EXPECT_EQ(arrKeys.Add(QXAnimationKey()), 0U);
  EXPECT_EQ(arrKeys.GetSize(), 1U);
  EXPECT_THROW(arrKeys[1], std::out_of_range);

  QXAnimationKey key;
  QdcArray<QXAnimationKey*> arrPointers;
  EXPECT_EQ(arrPointers.Add(&key), 0U);
  EXPECT_EQ(arrPointers.GetAt(0), &key);
}

}  // namespace
}  // namespace QXC
