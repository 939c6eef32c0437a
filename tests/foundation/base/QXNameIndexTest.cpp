// The index against the map beside it.

#include <QxGraphics3D/frame/foundation/base/detail/QXNameIndexParts.h>

#include <gtest/gtest.h>

#include <map>
#include <random>

namespace QXC {
namespace {

using Map = std::map<QdcUnicodeString, int>;
using Index = QXNameIndex<Map::iterator>;

class QXNameIndexTest : public testing::Test {
protected:
  void Enter(QdcUnicodeString const& strName, int nValue) {
    auto const [place, bNew] = m_mapItems.try_emplace(strName, nValue);
    if (!bNew) return;
    m_Index.Reserve(m_mapItems.size());
    m_Index.Add(place->first, place);
  }
  void Remove(QdcUnicodeString const& strName) {
    auto const place = m_mapItems.find(strName);
    if (place == m_mapItems.end()) return;
    m_Index.Remove(place->first);
    m_mapItems.erase(place);
  }
  /// -1: not there.
  int Ask(QdcUnicodeString const& strName) const {
    Map::iterator const* const pPlace = m_Index.Find(strName);
    return pPlace != nullptr ? (*pPlace)->second : -1;
  }

  Map m_mapItems;
  Index m_Index;
};

QdcUnicodeString NameOf(unsigned int nNumber) {
  QdcUnicodeString strName;
  strName.Format(L"/store/models/trees/level%02u/tree_%06u.gltf", nNumber % 20, nNumber);
  return strName;
}

TEST_F(QXNameIndexTest, FindsNothingWithoutNames) {
  EXPECT_EQ(Ask(L""), -1);
  EXPECT_EQ(Ask(L"a"), -1);
  m_Index.Reserve(10);
  EXPECT_EQ(Ask(L""), -1);
  EXPECT_EQ(Ask(L"a"), -1);
}

TEST_F(QXNameIndexTest, FindsTheEmptyNameAndNamesThatBeginAlike) {
  Enter(L"", 1);
  Enter(L"a", 2);
  Enter(L"ab", 3);
  EXPECT_EQ(Ask(L""), 1);
  EXPECT_EQ(Ask(L"a"), 2);
  EXPECT_EQ(Ask(L"ab"), 3);
  EXPECT_EQ(Ask(L"abc"), -1);
}

// Callers fill a string as a buffer and never cut it back.
TEST_F(QXNameIndexTest, ANameCountsUpToItsFirstZero) {
  QdcUnicodeString strLong(L"tree");
  strLong.SetLength(40);
  Enter(strLong, 1);
  EXPECT_EQ(Ask(L"tree"), 1);
  EXPECT_EQ(Ask(strLong), 1);
  QdcUnicodeString strTail(L"tree\0house", 10);
  EXPECT_EQ(Ask(strTail), 1);
  Remove(L"tree");
  EXPECT_EQ(Ask(strLong), -1);
}

TEST_F(QXNameIndexTest, RemoveAllAndFreeForgetEverything) {
  for (unsigned int i = 0; i < 500; ++i) Enter(NameOf(i), 1);
  m_Index.RemoveAll();
  EXPECT_EQ(Ask(NameOf(7)), -1);
  m_Index.Add(m_mapItems.begin()->first, m_mapItems.begin());
  EXPECT_EQ(Ask(m_mapItems.begin()->first), 1);
  m_Index.Free();
  EXPECT_EQ(Ask(m_mapItems.begin()->first), -1);
}

TEST_F(QXNameIndexTest, SwapExchangesWhatTheyFind) {
  Enter(L"tree", 4);
  Index other;
  other.Swap(m_Index);
  EXPECT_EQ(Ask(L"tree"), -1);
  ASSERT_NE(other.Find(L"tree"), nullptr);
  EXPECT_EQ((*other.Find(L"tree"))->second, 4);
}

TEST_F(QXNameIndexTest, RandomNamesStayWithTheMap) {
  constexpr unsigned int Seed = 8101;
  SCOPED_TRACE(Seed);
  std::mt19937 random(Seed);
  for (int nStep = 0; nStep < 20000; ++nStep) {
    // Grows to several hundred names, then shrinks, so that slots fill, move up and fill again.
    unsigned int const nName = static_cast<unsigned int>(random() % 900);
    bool const bGrow = random() % 100 < (nStep / 5000 % 2 == 0 ? 70u : 30u);
    if (bGrow) {
      Enter(NameOf(nName), nStep);
    } else {
      Remove(NameOf(nName));
    }
    unsigned int const nAsked = static_cast<unsigned int>(random() % 900);
    auto const expected = m_mapItems.find(NameOf(nAsked));
    ASSERT_EQ(Ask(NameOf(nAsked)), expected == m_mapItems.end() ? -1 : expected->second) << nStep;
  }
  for (auto const& [strName, nValue] : m_mapItems) ASSERT_EQ(Ask(strName), nValue);
}

}  // namespace
}  // namespace QXC
