#include <QxGraphics3D/frame/foundation/base/QdcDict.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <random>
#include <utility>
#include <vector>

namespace QXC {
namespace {

template <class K, class V, class Compare>
std::vector<std::pair<K, V>> Walk(QdcDict<K, V, Compare> const& dict) {
  std::vector<std::pair<K, V>> entries;
  auto position = dict.GetStartPosition();
  while (!dict.IsEOF(position)) {
    std::pair<K, V> entry;
    dict.GetNextAssoc(position, entry.first, entry.second);
    entries.push_back(entry);
  }
  return entries;
}

TEST(QdcDict, EmptyDictionaryIsAtItsEndAtOnce) {
  QdcDict<int, int> const dict;
  EXPECT_EQ(dict.IsEOF(dict.GetStartPosition()), 1);
  EXPECT_EQ(dict.GetCount(), 0u);
}

TEST(QdcDict, WalkFollowsTheOrderOfTheStrings) {
  QdcDict<QdcUnicodeString, int> dict;
  dict[L"b"] = 1;
  dict[L"\u00e4"] = 2;
  dict[L"B"] = 3;
  dict[L""] = 4;
  auto const entries = Walk(dict);
  ASSERT_EQ(entries.size(), 4u);
  EXPECT_TRUE(entries[0].first == L"");
  EXPECT_TRUE(entries[1].first == L"B");
  EXPECT_TRUE(entries[2].first == L"b");
  EXPECT_TRUE(entries[3].first == L"\u00e4");
  EXPECT_EQ(entries[3].second, 2);
}

TEST(QdcDict, WalkFollowsTheOrderOfCompare) {
  QdcDict<unsigned char, int, std::greater<unsigned char>> dict;
  for (unsigned char key = 1; key <= 3; ++key) dict[key] = key * 10;
  auto const entries = Walk(dict);
  ASSERT_EQ(entries.size(), 3u);
  EXPECT_EQ(entries[0].second, 30);
  EXPECT_EQ(entries[2].second, 10);
}

TEST(QdcDict, StringsWithTailsAreOneKey) {
  QdcDict<QdcUnicodeString, int> dict;
  QdcUnicodeString key(L"abc");
  dict[key] = 5;
  key.SetLength(9);
  int value = 0;
  EXPECT_EQ(dict.Lookup(key, value), 1);
  EXPECT_EQ(value, 5);
  EXPECT_EQ(dict.RemoveKey(key), 1);
}

TEST(QdcDict, LookupOfAMissingKeyLeavesTheValue) {
  QdcDict<int, int> dict;
  dict[3] = 30;
  int value = 7;
  EXPECT_EQ(dict.Lookup(4, value), 0);
  EXPECT_EQ(value, 7);
  EXPECT_EQ(dict.GetCount(), 1u);
  EXPECT_EQ(dict.Lookup(3, value), 1);
  EXPECT_EQ(value, 30);
}

TEST(QdcDict, FindGivesThePlaceWithoutACopy) {
  QdcDict<int, int> dict;
  dict[3] = 30;
  EXPECT_EQ(&dict.Find(3)->second, &dict[3]);
  EXPECT_EQ(dict.IsEOF(dict.Find(4)), 1);
}

TEST(QdcDict, SubscriptEntersADefaultValue) {
  QdcDict<int, int*> dict;
  EXPECT_EQ(dict[1], nullptr);
  EXPECT_EQ(dict.GetCount(), 1u);
}

TEST(QdcDict, GetNextAssocAtTheEndChangesNothing) {
  QdcDict<int, int> dict;
  dict[1] = 10;
  auto position = dict.GetStartPosition();
  int key = 0;
  int value = 0;
  dict.GetNextAssoc(position, key, value);
  ASSERT_EQ(dict.IsEOF(position), 1);
  key = 5;
  dict.GetNextAssoc(position, key, value);
  EXPECT_EQ(key, 5);
  EXPECT_EQ(value, 10);
  EXPECT_EQ(dict.IsEOF(position), 1);
}

TEST(QdcDict, RemoveKeyTellsWhetherItFoundTheKey) {
  QdcDict<int, int> dict;
  dict[1] = 10;
  EXPECT_EQ(dict.RemoveKey(2), 0);
  EXPECT_EQ(dict.RemoveKey(1), 1);
  EXPECT_EQ(dict.RemoveKey(1), 0);
}

TEST(QdcDict, RemoveKeyTakesAReferenceToItsOwnKey) {
  QdcDict<QdcUnicodeString, int> dict;
  dict[L"a key that is too long to be stored inside the object"] = 1;
  EXPECT_EQ(dict.RemoveKey(dict.GetStartPosition()->first), 1);
  EXPECT_EQ(dict.GetCount(), 0u);
}

// A value that reaches into the dictionary while it dies, as a cached model does that takes its own key out.
struct Reentrant {
  QdcDict<int, Reentrant>* m_pDict = nullptr;
  int m_nKey = 0;
  std::vector<std::uint64_t>* m_pSeen = nullptr;

  Reentrant() = default;
  Reentrant(Reentrant const&) = default;
  Reentrant& operator=(Reentrant const&) = default;
  ~Reentrant() {
    if (!m_pDict) return;
    m_pSeen->push_back(m_pDict->GetCount());
    m_pDict->RemoveKey(m_nKey);
    for (auto position = m_pDict->GetStartPosition(); !m_pDict->IsEOF(position); ++position) {
      EXPECT_NE(position->first, m_nKey);
    }
  }
};

void Fill(QdcDict<int, Reentrant>& dict, std::vector<std::uint64_t>& arrSeen) {
  for (int key = 0; key < 5; ++key) {
    Reentrant& value = dict[key];
    value.m_pDict = &dict;
    value.m_nKey = key;
    value.m_pSeen = &arrSeen;
  }
}

TEST(QdcDict, RemoveKeyTakesTheEntryOutBeforeItsValueDies) {
  QdcDict<int, Reentrant> dict;
  std::vector<std::uint64_t> seen;
  Fill(dict, seen);
  EXPECT_EQ(dict.RemoveKey(2), 1);
  EXPECT_EQ(seen, std::vector<std::uint64_t>{4});
  EXPECT_EQ(dict.GetCount(), 4u);
  dict.RemoveAll();
}

TEST(QdcDict, RemoveAllEmptiesTheDictionaryBeforeTheValuesDie) {
  QdcDict<int, Reentrant> dict;
  std::vector<std::uint64_t> seen;
  Fill(dict, seen);
  dict.RemoveAll();
  EXPECT_EQ(seen, (std::vector<std::uint64_t>{0, 0, 0, 0, 0}));
  EXPECT_EQ(dict.GetCount(), 0u);
}

TEST(QdcDict, CopiesAreIndependent) {
  QdcDict<int, int> first;
  first[1] = 10;
  QdcDict<int, int> second(first);
  second[1] = 20;
  EXPECT_EQ(first[1], 10);
}

TEST(QdcDict, RandomEditsFollowASortedList) {
  constexpr unsigned int seed = 4409;
  SCOPED_TRACE(seed);
  std::mt19937 random(seed);
  QdcDict<int, int> dict;
  std::vector<std::pair<int, int>> reference;
  auto const place = [&reference](int nKey) {
    auto at = reference.begin();
    while (at != reference.end() && at->first < nKey) ++at;
    return at;
  };
  for (int step = 0; step < 20000; ++step) {
    auto const key = static_cast<int>(random() % 50) - 25;
    auto const at = place(key);
    bool const known = at != reference.end() && at->first == key;
    int value = -1;
    switch (random() % 3) {
    case 0:
      dict[key] = step;
      if (known)
        at->second = step;
      else
        reference.insert(at, {key, step});
      break;
    case 1:
      ASSERT_EQ(dict.RemoveKey(key), known ? 1 : 0);
      if (known) reference.erase(at);
      break;
    default: ASSERT_EQ(dict.Lookup(key, value), known ? 1 : 0); ASSERT_EQ(value, known ? at->second : -1);
    }
    ASSERT_EQ(dict.GetCount(), reference.size());
    ASSERT_EQ(Walk(dict), reference);
  }
}

TEST(QdcDict, ChangeCountGrowsWhenEntriesComeOrGo) {
  QdcDict<int, int> dict;
  std::uint64_t nLast = dict.GetChangeCount();
  auto const HasGrown = [&dict, &nLast] {
    bool const bGrown = dict.GetChangeCount() > nLast;
    nLast = dict.GetChangeCount();
    return bGrown;
  };
  dict[1] = 10;
  EXPECT_TRUE(HasGrown());
  dict[1] = 11;
  EXPECT_FALSE(HasGrown()) << "a new value in an old entry";
  int value = 0;
  dict.Lookup(1, value);
  EXPECT_EQ(dict.RemoveKey(2), 0);
  EXPECT_FALSE(HasGrown());
  EXPECT_EQ(dict.RemoveKey(1), 1);
  EXPECT_TRUE(HasGrown());
  dict[3];
  EXPECT_TRUE(HasGrown());
  dict.RemoveAll();
  EXPECT_TRUE(HasGrown());
  QdcDict<int, int> other;
  other[5] = 50;
  dict = other;
  EXPECT_TRUE(HasGrown());
  std::uint64_t const nOther = other.GetChangeCount();
  dict = std::move(other);
  EXPECT_TRUE(HasGrown());
  EXPECT_GT(other.GetChangeCount(), nOther);
  EXPECT_EQ(other.GetCount(), 0u);
  QdcDict<int, int> const taken(std::move(dict));
  EXPECT_TRUE(HasGrown());
  EXPECT_EQ(dict.GetCount(), 0u);
  EXPECT_EQ(taken.GetCount(), 1u);
}

/// A value whose copying fails from the second on.
struct QXFailingCopy {
  QXFailingCopy() = default;
  QXFailingCopy(QXFailingCopy const&) {
    if (++ms_nCopies > 1) throw std::bad_alloc();
  }
  QXFailingCopy& operator=(QXFailingCopy const&) = default;
  static inline int ms_nCopies = 0;
};

TEST(QdcDict, ChangeCountGrowsEvenIfAnAssignmentFailsHalfway) {
  QdcDict<int, QXFailingCopy> dict;
  QdcDict<int, QXFailingCopy> other;
  for (int const nKey : {1, 2, 3}) other[nKey];
  std::uint64_t const nBefore = dict.GetChangeCount();
  QXFailingCopy::ms_nCopies = 0;
  EXPECT_THROW(dict = other, std::bad_alloc);
  EXPECT_GT(dict.GetChangeCount(), nBefore) << "entries that were listed may be gone";
}

}  // namespace
}  // namespace QXC
