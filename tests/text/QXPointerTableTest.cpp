// The hash table beside an ordered one, with hashes that collide.
#include <QxGraphics3D/text/detail/QXPointerTable.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <memory>
#include <random>
#include <set>
#include <vector>

namespace QXC::detail {
namespace {

struct QXThing {
  std::uint32_t m_nHash;
  int m_nName;
};

class QXPointerTableTest : public testing::Test {
protected:
  void Insert(std::uint32_t nHash, int nName) {
    auto pThing = std::make_unique<QXThing>(QXThing{nHash, nName});
    m_Table.ReserveOne();
    m_Table.Insert(nHash, pThing.get());
    m_mapThings[nName] = std::move(pThing);
  }
  void Erase(int nName) {
    auto const thing = m_mapThings.find(nName);
    m_Table.Erase(thing->second->m_nHash, thing->second.get());
    m_mapThings.erase(thing);
  }
  QXThing* Find(std::uint32_t nHash, int nName) const {
    return m_Table.Find(nHash, [nName](QXThing const& thing) { return thing.m_nName == nName; });
  }

  QXPointerTable<QXThing> m_Table;
  std::map<int, std::unique_ptr<QXThing>> m_mapThings;
};

TEST_F(QXPointerTableTest, EmptyTableFindsNothing) {
  EXPECT_EQ(Find(0, 0), nullptr);
  EXPECT_EQ(m_Table.GetCount(), 0u);
}

TEST_F(QXPointerTableTest, EqualHashesAreToldApartByTheObjects) {
  Insert(7, 1);
  Insert(7, 2);
  EXPECT_EQ(Find(7, 1), m_mapThings[1].get());
  EXPECT_EQ(Find(7, 2), m_mapThings[2].get());
  EXPECT_EQ(Find(7, 3), nullptr);
  EXPECT_EQ(Find(23, 1), nullptr) << "the same slot, another hash";
}

TEST_F(QXPointerTableTest, ClearedTableIsEmptyAndTakesMore) {
  Insert(7, 1);
  m_Table.Clear();
  EXPECT_EQ(Find(7, 1), nullptr);
  EXPECT_EQ(m_Table.GetCount(), 0u);
  Insert(7, 2);
  EXPECT_EQ(Find(7, 2), m_mapThings[2].get());
}

TEST_F(QXPointerTableTest, AllObjectsAreListedOnce) {
  EXPECT_TRUE(m_Table.GetAll().empty());
  for (int i = 0; i < 100; ++i) Insert(static_cast<std::uint32_t>(i % 7), i);
  Erase(50);
  std::vector<QXThing*> const arrAll = m_Table.GetAll();
  EXPECT_EQ(arrAll.size(), 99u);
  EXPECT_EQ((std::set<QXThing*>(arrAll.begin(), arrAll.end())).size(), 99u);
}

// Mask 0 puts all in one slot, 7 makes long chains, the last values wrap round the end of the table.
TEST_F(QXPointerTableTest, RandomLivesFindWhatAnOrderedMapFinds) {
  std::printf("seeds 20 to 23\n");
  unsigned int nSeed = 20;
  for (std::uint32_t nMask : {0u, 7u, 0xFFFFFFF8u, 0xFFFFFFFFu}) {
    std::mt19937 random(nSeed++);
    std::size_t nMost = nMask == 0 ? 20 : 300;
    for (int i = 0; i < 20000; ++i) {
      int const nName = static_cast<int>(random() % nMost);
      auto const thing = m_mapThings.find(nName);
      if (thing != m_mapThings.end()) {
        ASSERT_EQ(Find(thing->second->m_nHash, nName), thing->second.get());
        Erase(nName);
      } else {
        Insert(static_cast<std::uint32_t>(random()) & nMask, nName);
      }
      ASSERT_EQ(m_Table.GetCount(), m_mapThings.size());
      if (i % 500 != 0) continue;
      for (auto const& [nOther, pThing] : m_mapThings) ASSERT_EQ(Find(pThing->m_nHash, nOther), pThing.get());
    }
    while (!m_mapThings.empty()) Erase(m_mapThings.begin()->first);
  }
}

}  // namespace
}  // namespace QXC::detail
