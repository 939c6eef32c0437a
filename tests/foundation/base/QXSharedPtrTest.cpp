#include <QxGraphics3D/frame/foundation/base/QXSharedPtr.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <type_traits>
#include <utility>
#include <vector>

namespace QXC {
namespace {

int nLiving = 0;

struct Item {
  int m_nNumber = 0;
  QXSharedPtr<Item> m_pNext;

  explicit Item(int nNumber = 0) : m_nNumber(nNumber) { ++nLiving; }
  Item(Item const&) = delete;
  Item& operator=(Item const&) = delete;
  ~Item() { --nLiving; }
};

using ItemPtr = QXSharedPtr<Item>;

class QXSharedPtrTest : public testing::Test {
protected:
  void SetUp() override { nLiving = 0; }
  void TearDown() override { EXPECT_EQ(nLiving, 0); }
};

TEST_F(QXSharedPtrTest, DefaultIsNull) {
  static_assert(std::has_virtual_destructor_v<ItemPtr>);
  ItemPtr const pointer;
  EXPECT_EQ(pointer.IsNull(), 1);
  EXPECT_EQ(pointer.GetPointer(), nullptr);
  EXPECT_EQ(pointer.UseCount(), 0u);
}

TEST_F(QXSharedPtrTest, NullPointeeIsTheNullPointer) {
  ItemPtr const pointer(nullptr);
  EXPECT_EQ(pointer.IsNull(), 1);
  EXPECT_EQ(pointer.UseCount(), 0u);
}

TEST_F(QXSharedPtrTest, BindStartsTheCountAtOne) {
  ItemPtr pointer;
  pointer.Bind(new Item(4));
  EXPECT_EQ(pointer.UseCount(), 1u);
  EXPECT_EQ(pointer.IsNull(), 0);
  EXPECT_EQ(pointer->m_nNumber, 4);
  EXPECT_EQ((*pointer).m_nNumber, 4);
}

TEST_F(QXSharedPtrTest, CopiesShareAndTheLastOneFrees) {
  ItemPtr first(new Item(1));
  {
    ItemPtr const second(first);
    ItemPtr third;
    third = second;
    EXPECT_EQ(first.UseCount(), 3u);
    EXPECT_EQ(third.GetPointer(), first.GetPointer());
  }
  EXPECT_EQ(first.UseCount(), 1u);
  EXPECT_EQ(nLiving, 1);
  first.SetNull();
  EXPECT_EQ(nLiving, 0);
  EXPECT_EQ(first.IsNull(), 1);
}

TEST_F(QXSharedPtrTest, CopyOfNullStaysNull) {
  ItemPtr const first;
  ItemPtr second(first);
  second = first;
  EXPECT_EQ(second.UseCount(), 0u);
}

TEST_F(QXSharedPtrTest, MoveLeavesNullBehindAndTheCountAsItWas) {
  ItemPtr first(new Item(1));
  ItemPtr second(std::move(first));
  EXPECT_EQ(first.IsNull(), 1);
  EXPECT_EQ(second.UseCount(), 1u);
  ItemPtr third(new Item(2));
  third = std::move(second);
  EXPECT_EQ(nLiving, 1);
  EXPECT_EQ(third->m_nNumber, 1);
  EXPECT_EQ(second.IsNull(), 1);
}

TEST_F(QXSharedPtrTest, AssignmentToItselfKeepsTheObject) {
  ItemPtr pointer(new Item(1));
  ItemPtr& same = pointer;
  pointer = same;
  EXPECT_EQ(pointer.UseCount(), 1u);
  pointer = std::move(same);
  EXPECT_EQ(pointer.UseCount(), 1u);
  EXPECT_EQ(nLiving, 1);
}

TEST_F(QXSharedPtrTest, BindLetsGoOfTheFormerObject) {
  ItemPtr first(new Item(1));
  ItemPtr const second(first);
  first.Bind(new Item(2));
  EXPECT_EQ(second.UseCount(), 1u);
  EXPECT_EQ(first->m_nNumber, 2);
  first.Bind(nullptr);
  EXPECT_EQ(first.IsNull(), 1);
  EXPECT_EQ(nLiving, 1);
}

TEST_F(QXSharedPtrTest, BindOfTheObjectHeldKeepsIt) {
  auto* const pItem = new Item(1);
  ItemPtr first(pItem);
  ItemPtr const second(first);
  first.Bind(pItem);
  EXPECT_EQ(first.UseCount(), 2u);
  EXPECT_EQ(nLiving, 1);
}

TEST_F(QXSharedPtrTest, AssignmentFromInsideTheReleasedObjectIsSafe) {
  ItemPtr list(new Item(1));
  list->m_pNext.Bind(new Item(2));
  list = list->m_pNext;
  EXPECT_EQ(list->m_nNumber, 2);
  EXPECT_EQ(nLiving, 1);
}

struct Reentrant {
  QXSharedPtr<Reentrant>* m_pHolder = nullptr;
  unsigned char* m_pResult = nullptr;
  ~Reentrant() { *m_pResult = m_pHolder->IsNull(); }
};

TEST_F(QXSharedPtrTest, HolderIsNullWhileItsObjectDies) {
  unsigned char result = 0;
  QXSharedPtr<Reentrant> pointer(new Reentrant);
  pointer->m_pHolder = &pointer;
  pointer->m_pResult = &result;
  pointer.SetNull();
  EXPECT_EQ(result, 1);
}

TEST_F(QXSharedPtrTest, DestroyFreesWhatIsHeldAloneAndOnlyLetsGoOfWhatIsShared) {
  ItemPtr first(new Item(1));
  ItemPtr second(first);
  first.Destroy();
  EXPECT_EQ(first.IsNull(), 1);
  EXPECT_EQ(second.UseCount(), 1u);
  EXPECT_EQ(second->m_nNumber, 1);
  second.Destroy();
  EXPECT_EQ(second.IsNull(), 1);
  EXPECT_EQ(nLiving, 0);
  second.Destroy();
}

class CountingPtr : public ItemPtr {
public:
  int m_nDestroyed = 0;

  void Destroy() override {
    ++m_nDestroyed;
    ItemPtr::Destroy();
  }
};

TEST_F(QXSharedPtrTest, LastReleaseGoesThroughTheVirtualDestroy) {
  CountingPtr pointer;
  pointer.Bind(new Item(1));
  {
    ItemPtr const copy(pointer);
    pointer.SetNull();
    EXPECT_EQ(pointer.m_nDestroyed, 0);
  }
  pointer.Bind(new Item(2));
  pointer.SetNull();
  EXPECT_EQ(pointer.m_nDestroyed, 1);
}

TEST_F(QXSharedPtrTest, RandomCopiesKeepTheCountsOfASlowReference) {
  constexpr unsigned int seed = 90125;
  SCOPED_TRACE(seed);
  std::mt19937 random(seed);
  std::vector<ItemPtr> pointers(12);
  std::vector<int> held(pointers.size(), -1);
  int next = 0;
  for (int step = 0; step < 20000; ++step) {
    std::size_t const to = random() % pointers.size();
    std::size_t const from = random() % pointers.size();
    switch (random() % 4) {
    case 0:
      pointers[to].Bind(new Item(next));
      held[to] = next++;
      break;
    case 1:
      pointers[to].SetNull();
      held[to] = -1;
      break;
    case 2:
      pointers[to] = pointers[from];
      held[to] = held[from];
      break;
    default:
      pointers[to] = std::move(pointers[from]);
      held[to] = std::exchange(held[from], -1);
      // Moving a pointer onto itself keeps it.
      if (to == from && !pointers[to].IsNull()) held[to] = pointers[to]->m_nNumber;
    }
    for (std::size_t i = 0; i < pointers.size(); ++i) {
      ASSERT_EQ(pointers[i].IsNull() ? -1 : pointers[i]->m_nNumber, held[i]);
      auto const users = held[i] < 0 ? 0 : std::count(held.begin(), held.end(), held[i]);
      ASSERT_EQ(pointers[i].UseCount(), static_cast<unsigned int>(users));
    }
  }
}

}  // namespace
}  // namespace QXC
