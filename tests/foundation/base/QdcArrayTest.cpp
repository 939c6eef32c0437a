#include <QxGraphics3D/frame/foundation/base/QdcArray.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

namespace QXC {
namespace {

QdcArray<int> Numbers(int nCount) {
  QdcArray<int> array;
  for (int i = 0; i < nCount; ++i) array.Add(i * 10);
  return array;
}

template <class Call>
std::string OutOfRangeText(Call call) {
  try {
    call();
  } catch (std::out_of_range const& failure) {
    return failure.what();
  }
  return "nothing thrown";
}

TEST(QdcArray, IsFourWordsAndEmptyAtTheStart) {
  static_assert(sizeof(QdcArray<double>) == 4 * sizeof(void*));
  QdcArray<double> const array;
  EXPECT_EQ(array.GetSize(), 0u);
  EXPECT_EQ(array.GetCapacity(), 0u);
  EXPECT_EQ(array.begin(), array.end());
}

TEST(QdcArray, AddReturnsTheNewIndex) {
  QdcArray<int> array;
  EXPECT_EQ(array.Add(7), 0u);
  EXPECT_EQ(array.Add(8), 1u);
  EXPECT_EQ(array.GetSize(), 2u);
  EXPECT_EQ(array[1], 8);
}

TEST(QdcArray, AddWithAGrowStepReservesExactlyTheStep) {
  QdcArray<int> array;
  array.SetGrowSize(16);
  array.Add(1);
  EXPECT_EQ(array.GetCapacity(), 16u);
  for (int i = 1; i < 16; ++i) array.Add(i);
  EXPECT_EQ(array.GetCapacity(), 16u);
  array.Add(16);
  EXPECT_EQ(array.GetCapacity(), 32u);
}

TEST(QdcArray, GrowStepOfOneMakesRoomForOneAtATime) {
  QdcArray<int> array;
  array.SetGrowSize(1);
  for (int i = 0; i < 8; ++i) {
    array.Add(i);
    ASSERT_EQ(array.GetCapacity(), array.GetSize());
  }
}

TEST(QdcArray, AddWithoutAGrowStepGrowsAsAVectorDoes) {
  QdcArray<int> array;
  std::vector<int> reference;
  for (int i = 0; i < 100; ++i) {
    array.Add(i);
    reference.push_back(i);
    ASSERT_EQ(array.GetCapacity(), reference.capacity());
  }
}

TEST(QdcArray, GrowStepSetBackToZeroLeavesGrowthToTheVector) {
  QdcArray<int> array;
  array.SetGrowSize(3);
  for (int i = 0; i < 3; ++i) array.Add(i);
  array.SetGrowSize(0);
  array.Add(3);
  EXPECT_EQ(array.GetCapacity(), 6u);
}

TEST(QdcArray, AddOfItsOwnElementCopiesBeforeItGrows) {
  for (std::uint64_t const grow : {0u, 1u}) {
    QdcArray<QdcUnicodeString> array;
    array.SetGrowSize(grow);
    array.Add(L"a name that is too long to be stored inside the object");
    for (int i = 0; i < 40; ++i) array.Add(array[0]);
    for (QdcUnicodeString const& item : array) {
      ASSERT_TRUE(item == L"a name that is too long to be stored inside the object");
    }
  }
}

TEST(QdcArray, AddWithAnImpossibleStepIsAnAllocationFailure) {
  QdcArray<int> array = Numbers(1);
  array.FreeExtra();
  array.SetGrowSize(std::numeric_limits<std::uint64_t>::max());
  EXPECT_THROW(array.Add(1), std::bad_alloc);
  EXPECT_EQ(array.GetSize(), 1u);
}

TEST(QdcArray, SetSizeToAnImpossibleSizeIsAnAllocationFailure) {
  QdcArray<int> array;
  EXPECT_THROW(array.SetSize(std::numeric_limits<std::uint64_t>::max()), std::bad_alloc);
  EXPECT_EQ(array.GetSize(), 0u);
}

TEST(QdcArray, SubscriptAtTheSizeFailsWithItsText) {
  QdcArray<int> array = Numbers(3);
  QdcArray<int> const& constant = array;
  EXPECT_EQ(OutOfRangeText([&] { array[3] = 1; }), "invalid vector<T> subscript");
  EXPECT_EQ(OutOfRangeText([&] { static_cast<void>(constant[3]); }), "invalid vector<T> subscript");
  EXPECT_EQ(OutOfRangeText([&] { static_cast<void>(constant.GetAt(3)); }), "invalid vector<T> subscript");
  EXPECT_EQ(
      OutOfRangeText([&] { array[std::numeric_limits<std::uint64_t>::max()] = 1; }), "invalid vector<T> subscript");
  EXPECT_EQ(OutOfRangeText([&] { QdcArray<int>()[0] = 1; }), "invalid vector<T> subscript");
  EXPECT_EQ(array[2], 20);
  EXPECT_EQ(array.GetAt(2), 20);
}

TEST(QdcArray, RemoveAtPastTheEndReturnsZeroAndChangesNothing) {
  QdcArray<int> array = Numbers(3);
  EXPECT_EQ(array.RemoveAt(5, 1), 0u);
  EXPECT_EQ(array.RemoveAt(3, 1), 0u);
  EXPECT_EQ(array.RemoveAt(0, 0), 0u);
  EXPECT_EQ(array.GetSize(), 3u);
}

TEST(QdcArray, RemoveAtErasesAndCountsWhatItErased) {
  QdcArray<int> array = Numbers(6);
  EXPECT_EQ(array.RemoveAt(1, 2), 2u);
  EXPECT_EQ(array.GetSize(), 4u);
  EXPECT_EQ(array[1], 30);
  EXPECT_EQ(array.RemoveAt(2, 99), 2u);
  EXPECT_EQ(array.RemoveAt(1, std::numeric_limits<std::uint64_t>::max()), 1u);
  EXPECT_EQ(array.GetSize(), 1u);
  EXPECT_EQ(array.RemoveAt(0), 1u);
}

TEST(QdcArray, RemoveAllKeepsTheCapacity) {
  QdcArray<int> array = Numbers(20);
  std::uint64_t const capacity = array.GetCapacity();
  array.RemoveAll();
  EXPECT_EQ(array.GetSize(), 0u);
  EXPECT_EQ(array.GetCapacity(), capacity);
}

TEST(QdcArray, FreeExtraReallocatesDownToTheSize) {
  QdcArray<int> array = Numbers(2);
  array.SetGrowSize(64);
  array.Add(5);
  ASSERT_GT(array.GetCapacity(), 3u);
  array.FreeExtra();
  EXPECT_EQ(array.GetCapacity(), 3u);
  EXPECT_EQ(array[2], 5);
  array.RemoveAll();
  array.FreeExtra();
  EXPECT_EQ(array.GetCapacity(), 0u);
}

TEST(QdcArray, CopiesCarryTheElementsAndTheGrowStep) {
  QdcArray<int> first;
  first.SetGrowSize(5);
  first.Add(1);
  QdcArray<int> second(first);
  QdcArray<int> third;
  third = first;
  first[0] = 2;
  EXPECT_EQ(second[0], 1);
  EXPECT_EQ(third[0], 1);
  second.FreeExtra();
  second.Add(9);
  EXPECT_EQ(second.GetCapacity(), 6u);
}

TEST(QdcArray, PointerElementsAreNotFreed) {
  int number = 3;
  {
    QdcArray<int*> array;
    array.Add(&number);
    array.RemoveAll();
    array.Add(&number);
  }
  EXPECT_EQ(number, 3);
}

TEST(QdcArray, SetSizeLengthensWithDefaultValues) {
  QdcArray<QdcUnicodeString> array;
  array.Add(L"first");
  array.SetSize(4);
  EXPECT_TRUE(array[0] == L"first");
  EXPECT_EQ(array[3].IsEmpty(), 1);
  array.SetSize(1);
  EXPECT_EQ(array.GetSize(), 1u);
  QdcArray<int> numbers;
  numbers.SetSize(2);
  EXPECT_EQ(numbers[1], 0);
}

TEST(QdcArray, RandomEditsFollowAVector) {
  constexpr unsigned int seed = 77120;
  SCOPED_TRACE(seed);
  std::mt19937 random(seed);
  QdcArray<int> array;
  std::vector<int> reference;
  for (int step = 0; step < 50000; ++step) {
    auto const value = static_cast<int>(random() % 1000);
    std::uint64_t const at = random() % 40;
    switch (random() % 5) {
    case 0: array.SetGrowSize(random() % 4); break;
    case 1: {
      std::uint64_t expected = 0;
      std::uint64_t const count = random() % 3;
      while (expected < count && at < reference.size()) {
        reference.erase(reference.begin() + static_cast<std::ptrdiff_t>(at));
        ++expected;
      }
      ASSERT_EQ(array.RemoveAt(at, count), expected);
      break;
    }
    default: ASSERT_EQ(array.Add(value), reference.size()); reference.push_back(value);
    }
    ASSERT_EQ(array.GetSize(), reference.size());
    ASSERT_TRUE(std::equal(array.begin(), array.end(), reference.begin()));
    if (reference.size() > 60) {
      array.RemoveAll();
      reference.clear();
    }
  }
}

}  // namespace
}  // namespace QXC
