// The map with its index against a std::map that gets the same calls.

#include <QxGraphics3D/texture/QXTextureCacheEntry.h>
#include <QxGraphics3D/texture/QXTextureCacheMap.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

namespace QXC {
namespace {

using Map = QXTextureCacheMap::Map;

/// Entries to tell apart; nobody looks inside.
QXTextureCacheEntry* EntryOf(std::size_t nNumber) {
  static QXTextureCacheEntry ms_arrEntries[16];
  return &ms_arrEntries[nNumber % std::size(ms_arrEntries)];
}

QdcUnicodeString NameOf(unsigned int nNumber) {
  QdcUnicodeString strName;
  strName.Format(L"/store/city/textures/facades/level%02u/tile_%08u.png", nNumber % 20, nNumber);
  return strName;
}

/// Everything that can be asked, for a name that may be there or not.
void ExpectSameAnswers(QXTextureCacheMap& map, Map& expected, QdcUnicodeString const& strName) {
  auto const wanted = expected.find(strName);
  auto const found = map.find(strName);
  ASSERT_EQ(found == map.end(), wanted == expected.end()) << strName.ToMBString().Cstr();
  auto const foundConst = std::as_const(map).find(strName);
  ASSERT_TRUE(foundConst == found);
  ASSERT_EQ(map.count(strName), expected.count(strName));
  ASSERT_EQ(map.contains(strName), expected.contains(strName));
  if (wanted == expected.end()) return;
  ASSERT_TRUE(found->first == wanted->first);
  ASSERT_EQ(found->second, wanted->second);
  ASSERT_EQ(std::distance(map.begin(), found), std::distance(expected.begin(), wanted));
}

void ExpectSame(QXTextureCacheMap& map, Map& expected) {
  ASSERT_EQ(map.size(), expected.size());
  ASSERT_EQ(map.empty(), expected.empty());
  ASSERT_TRUE(std::equal(map.begin(), map.end(), expected.begin(), expected.end()));
  for (auto const& [strName, pEntry] : expected) {
    auto const found = map.find(strName);
    ASSERT_TRUE(found != map.end());
    ASSERT_EQ(found->second, pEntry);
  }
}

TEST(QXTextureCacheMap, EmptyMapFindsNothing) {
  QXTextureCacheMap map;
  EXPECT_TRUE(map.find(L"") == map.end());
  EXPECT_TRUE(map.find(L"a") == map.end());
  EXPECT_EQ(map.erase(L"a"), 0u);
  EXPECT_TRUE(map.extract(L"a").empty());
  EXPECT_THROW(map.at(L"a"), std::out_of_range);
  EXPECT_THROW(std::as_const(map).at(L"a"), std::out_of_range);
  EXPECT_EQ(map.IsIndexed(), 1);
}

TEST(QXTextureCacheMap, WalksByName) {
  QXTextureCacheMap const map{{L"b", EntryOf(1)}, {L"", EntryOf(2)}, {L"a", EntryOf(3)}};
  std::vector<QXTextureCacheEntry*> arrEntries;
  for (auto const& [strName, pEntry] : map) arrEntries.push_back(pEntry);
  EXPECT_EQ(arrEntries, (std::vector{EntryOf(2), EntryOf(3), EntryOf(1)}));
  EXPECT_EQ(map.rbegin()->second, EntryOf(1));
  EXPECT_EQ(map.lower_bound(L"aa")->second, EntryOf(1));
  EXPECT_EQ(map.upper_bound(L"a")->second, EntryOf(1));
  EXPECT_EQ(map.equal_range(L"a").first->second, EntryOf(3));
}

TEST(QXTextureCacheMap, NamesAreTextsWithoutTheirTails) {
  QdcUnicodeString strTailed(L"road");
  strTailed.SetLength(9);
  QXTextureCacheMap map;
  map[L"road"] = EntryOf(1);
  EXPECT_EQ(map.at(strTailed), EntryOf(1));
  EXPECT_TRUE(map.find(strTailed) == map.begin());
  EXPECT_EQ(map.count(strTailed), 1u);
  map[strTailed] = EntryOf(2);
  EXPECT_EQ(map.size(), 1u);
  map.clear();
  map[strTailed] = EntryOf(3);
  EXPECT_EQ(map.at(L"road"), EntryOf(3));
  EXPECT_EQ(map.at(strTailed), EntryOf(3));
  EXPECT_EQ(map.erase(L"road"), 1u);
  EXPECT_TRUE(map.find(strTailed) == map.end());
  // Text behind the zero belongs to the tail.
  QdcUnicodeString const strCut(L"road\0map", 8);
  map[L"road"] = EntryOf(4);
  EXPECT_EQ(map.at(strCut), EntryOf(4));
  EXPECT_TRUE(map.contains(strCut));
  EXPECT_TRUE(map.find(L"roadmap") == map.end());
}

TEST(QXTextureCacheMap, NewEntriesDoNotReplaceUnlessTheyAreAssigned) {
  QXTextureCacheMap map;
  EXPECT_TRUE(map.try_emplace(L"a", EntryOf(1)).second);
  EXPECT_FALSE(map.try_emplace(L"a", EntryOf(2)).second);
  EXPECT_FALSE(map.insert({L"a", EntryOf(2)}).second);
  EXPECT_FALSE(map.emplace(L"a", EntryOf(2)).second);
  EXPECT_EQ(map.emplace_hint(map.end(), L"a", EntryOf(2))->second, EntryOf(1));
  EXPECT_EQ(map.at(L"a"), EntryOf(1));
  EXPECT_FALSE(map.insert_or_assign(L"a", EntryOf(2)).second);
  EXPECT_EQ(map.at(L"a"), EntryOf(2));
  EXPECT_EQ(map[L"b"], nullptr);
  EXPECT_TRUE(map.insert_or_assign(L"c", EntryOf(3)).second);
  EXPECT_EQ(map.at(L"c"), EntryOf(3));
}

TEST(QXTextureCacheMap, RefusedNodeStaysWithTheCaller) {
  QXTextureCacheMap map{{L"a", EntryOf(1)}};
  QXTextureCacheMap other{{L"a", EntryOf(2)}};
  auto const result = map.insert(other.extract(L"a"));
  EXPECT_FALSE(result.inserted);
  EXPECT_EQ(result.node.mapped(), EntryOf(2));
  EXPECT_EQ(map.at(L"a"), EntryOf(1));
}

TEST(QXTextureCacheMap, ExtractedNodeComesBackUnderAnotherName) {
  QXTextureCacheMap map{{L"a", EntryOf(1)}, {L"b", EntryOf(2)}};
  auto node = map.extract(L"a");
  EXPECT_TRUE(map.find(L"a") == map.end());
  node.key() = L"c";
  EXPECT_TRUE(map.insert(std::move(node)).inserted);
  EXPECT_EQ(map.at(L"c"), EntryOf(1));
  EXPECT_TRUE(map.find(L"a") == map.end());
}

TEST(QXTextureCacheMap, HintsChangeNothingButTheResult) {
  QXTextureCacheMap map{{L"a", EntryOf(1)}};
  EXPECT_EQ(map.try_emplace(map.end(), L"a", EntryOf(2))->second, EntryOf(1));
  EXPECT_EQ(map.try_emplace(map.begin(), L"b")->second, nullptr);
  EXPECT_EQ(map.insert_or_assign(map.begin(), L"a", EntryOf(3))->second, EntryOf(3));
  EXPECT_TRUE(map.insert_or_assign(map.begin(), L"c", EntryOf(4))->first == L"c");
  EXPECT_EQ(map.at(L"c"), EntryOf(4));
  EXPECT_EQ(map.size(), 3u);
}

TEST(QXTextureCacheMap, NodeRefusedAtAHintStaysWithTheCaller) {
  QXTextureCacheMap map{{L"a", EntryOf(1)}};
  QXTextureCacheMap other{{L"a", EntryOf(2)}, {L"b", EntryOf(3)}};
  auto node = other.extract(L"a");
  EXPECT_EQ(map.insert(map.begin(), std::move(node))->second, EntryOf(1));
  ASSERT_FALSE(node.empty());  // NOLINT(bugprone-use-after-move): what is left is promised
  EXPECT_EQ(node.mapped(), EntryOf(2));
  auto taken = other.extract(L"b");
  EXPECT_EQ(map.insert(map.begin(), std::move(taken))->second, EntryOf(3));
  EXPECT_TRUE(taken.empty());  // NOLINT(bugprone-use-after-move)
  EXPECT_EQ(map.at(L"b"), EntryOf(3));
  EXPECT_TRUE(map.insert(map.begin(), QXTextureCacheMap::node_type()) == map.end());
}

// As a plug-in writes it that knows the cache for the std::map that it is documented as.
TEST(QXTextureCacheMap, ServesCodeWrittenForAStdMap) {
  QXTextureCacheMap map;
  map.insert(std::make_pair(QdcUnicodeString(L"b"), EntryOf(2)));
  map.insert(Map::value_type(L"a", EntryOf(1)));
  map.insert({{L"c", EntryOf(3)}, {L"d", nullptr}});
  map.emplace(std::piecewise_construct, std::forward_as_tuple(L"e"), std::forward_as_tuple(EntryOf(5)));
  Map::iterator place = map.find(L"b");
  ASSERT_TRUE(place != map.end());
  EXPECT_EQ(place->second, EntryOf(2));
  for (Map::iterator item = map.begin(); item != map.end();) {
    if (item->second == nullptr) {
      map.erase(item++);
    } else {
      ++item;
    }
  }
  std::wstring strNames;
  for (Map::const_reverse_iterator item = map.crbegin(); item != map.crend(); ++item) strNames += item->first.Cstr();
  EXPECT_EQ(strNames, L"ecba");
  EXPECT_TRUE(map.value_comp()(*map.find(L"a"), *map.find(L"b")));
  EXPECT_TRUE(map.key_comp()(L"a", L"b"));
  EXPECT_EQ(map.max_size(), Map().max_size());
  EXPECT_TRUE(map.get_allocator() == Map::allocator_type());
  EXPECT_EQ(map.IsIndexed(), 1);
  Map const copy = map;
  EXPECT_EQ(copy.size(), 4u);
  EXPECT_TRUE(map == copy);
}

TEST(QXTextureCacheMap, EraseIfRemovesWhatThePredicateNames) {
  QXTextureCacheMap map;
  for (unsigned int i = 0; i < 100; ++i) map[NameOf(i)] = EntryOf(i % 2);
  EXPECT_EQ(erase_if(map, [](auto const& item) { return item.second == EntryOf(1); }), 50u);
  for (unsigned int i = 0; i < 100; ++i) EXPECT_EQ(map.count(NameOf(i)), 1 - i % 2);
}

// A container that holds such maps moves them when it grows only if nothing can be thrown on the way.
TEST(QXTextureCacheMap, MovesThrowNothing) {
  EXPECT_TRUE(std::is_nothrow_move_constructible_v<QXTextureCacheMap>);
  EXPECT_TRUE(std::is_nothrow_move_assignable_v<QXTextureCacheMap>);
  EXPECT_TRUE(std::is_nothrow_swappable_v<QXTextureCacheMap>);
}

TEST(QXTextureCacheMap, CopiesAndMovesFindTheirOwnEntries) {
  QXTextureCacheMap map{{L"a", EntryOf(1)}, {L"b", EntryOf(2)}};
  QXTextureCacheMap copy(map);
  EXPECT_TRUE(copy == map);
  map.erase(L"a");
  map[L"b"] = EntryOf(3);
  EXPECT_EQ(copy.at(L"a"), EntryOf(1));
  EXPECT_EQ(copy.at(L"b"), EntryOf(2));
  QXTextureCacheMap moved(std::move(copy));
  EXPECT_EQ(moved.at(L"a"), EntryOf(1));
  copy = map;
  EXPECT_EQ(copy.at(L"b"), EntryOf(3));
  EXPECT_TRUE(copy.find(L"a") == copy.end());
  map = std::move(moved);
  EXPECT_EQ(map.at(L"b"), EntryOf(2));
  map = Map{{L"z", EntryOf(9)}};
  EXPECT_EQ(map.at(L"z"), EntryOf(9));
  EXPECT_EQ(map.size(), 1u);
}

TEST(QXTextureCacheMap, MergeMovesWhatIsMissing) {
  QXTextureCacheMap map{{L"a", EntryOf(1)}};
  QXTextureCacheMap source{{L"a", EntryOf(2)}, {L"b", EntryOf(3)}};
  map.merge(source);
  EXPECT_EQ(map.at(L"a"), EntryOf(1));
  EXPECT_EQ(map.at(L"b"), EntryOf(3));
  EXPECT_EQ(source.at(L"a"), EntryOf(2));
  EXPECT_TRUE(source.find(L"b") == source.end());
  Map plain{{L"b", EntryOf(4)}, {L"c", EntryOf(5)}};
  map.merge(plain);
  EXPECT_EQ(map.at(L"c"), EntryOf(5));
  EXPECT_EQ(plain.size(), 1u);
  map.merge(map);
  EXPECT_EQ(map.size(), 3u);
}

// --- The plain map ---

TEST(QXTextureCacheMap, LookingAtThePlainMapKeepsTheIndex) {
  QXTextureCacheMap map{{L"a", EntryOf(1)}};
  Map const& plain = std::as_const(map);
  EXPECT_EQ(plain.size(), 1u);
  EXPECT_EQ(map.IsIndexed(), 1);
}

TEST(QXTextureCacheMap, EditsThroughThePlainMapAreSeen) {
  QXTextureCacheMap map{{L"a", EntryOf(1)}, {L"b", EntryOf(2)}};
  EXPECT_EQ(map.at(L"a"), EntryOf(1));
  Map& plain = map;
  EXPECT_EQ(map.IsIndexed(), 0);
  // The size is the same before and behind.
  plain.erase(L"a");
  plain[L"c"] = EntryOf(3);
  EXPECT_TRUE(map.find(L"a") == map.end());
  EXPECT_EQ(map.at(L"c"), EntryOf(3));
  map.erase(L"b");
  map[L"d"] = EntryOf(4);
  EXPECT_TRUE(plain.find(L"b") == plain.end());
  EXPECT_EQ(plain.at(L"d"), EntryOf(4));
  map.clear();
  plain[L"e"] = EntryOf(5);
  EXPECT_EQ(map.at(L"e"), EntryOf(5));
}

TEST(QXTextureCacheMap, ObjectWithAReferenceOutStaysWithoutIndexWhateverItHolds) {
  QXTextureCacheMap seen{{L"a", EntryOf(1)}};
  Map& plain = seen;
  QXTextureCacheMap other{{L"b", EntryOf(2)}};
  seen.swap(other);
  EXPECT_EQ(seen.IsIndexed(), 0);
  EXPECT_EQ(other.IsIndexed(), 1);
  EXPECT_EQ(other.at(L"a"), EntryOf(1));
  plain.clear();
  plain[L"c"] = EntryOf(3);
  EXPECT_EQ(seen.at(L"c"), EntryOf(3));
  EXPECT_TRUE(seen.find(L"b") == seen.end());
  QXTextureCacheMap const moved(std::move(seen));
  EXPECT_EQ(moved.at(L"c"), EntryOf(3));
  EXPECT_EQ(moved.IsIndexed(), 1);
  plain[L"d"] = EntryOf(4);
  EXPECT_EQ(seen.at(L"d"), EntryOf(4));
  EXPECT_TRUE(moved.find(L"d") == moved.end());
}

TEST(QXTextureCacheMap, SwapWithAPlainMapIsFollowed) {
  QXTextureCacheMap map{{L"a", EntryOf(1)}};
  Map plain{{L"b", EntryOf(2)}, {L"c", EntryOf(3)}};
  map.swap(plain);
  EXPECT_EQ(map.IsIndexed(), 1);
  EXPECT_EQ(map.at(L"c"), EntryOf(3));
  EXPECT_TRUE(map.find(L"a") == map.end());
  EXPECT_EQ(plain.at(L"a"), EntryOf(1));
  std::swap(map, map);
  EXPECT_EQ(map.at(L"b"), EntryOf(2));
}

// --- Many entries ---

TEST(QXTextureCacheMap, ManyEntriesComeAndGoByAllWays) {
  constexpr unsigned int kNames = 3000;
  std::mt19937 random(20261121);
  SCOPED_TRACE("seed 20261121");
  QXTextureCacheMap map;
  Map expected;
  for (int nRound = 0; nRound < 60000; ++nRound) {
    QdcUnicodeString const strName = NameOf(static_cast<unsigned int>(random()) % kNames);
    QXTextureCacheEntry* const pEntry = EntryOf(random());
    switch (random() % 16) {
    case 0:
    case 1: map[strName] = expected[strName] = pEntry; break;
    case 2: ASSERT_EQ(map.try_emplace(strName, pEntry).second, expected.try_emplace(strName, pEntry).second); break;
    case 3: ASSERT_EQ(map.insert({strName, pEntry}).second, expected.insert({strName, pEntry}).second); break;
    case 4:
      ASSERT_EQ(map.insert_or_assign(strName, pEntry).second, expected.insert_or_assign(strName, pEntry).second);
      break;
    case 5: {
      auto const hint = map.lower_bound(NameOf(static_cast<unsigned int>(random()) % kNames));
      ASSERT_EQ(map.emplace_hint(hint, strName, pEntry)->second, expected.try_emplace(strName, pEntry).first->second);
      break;
    }
    case 6:
    case 7: ASSERT_EQ(map.erase(strName), expected.erase(strName)); break;
    case 8: {
      auto const found = map.find(strName);
      if (found == map.end()) break;
      auto const next = map.erase(found);
      auto const nextExpected = expected.erase(expected.find(strName));
      ASSERT_EQ(std::distance(map.begin(), next), std::distance(expected.begin(), nextExpected));
      break;
    }
    case 9: {
      auto node = map.extract(strName);
      ASSERT_EQ(node.empty(), expected.extract(strName).empty());
      if (node.empty()) break;
      QdcUnicodeString const strOther = NameOf(static_cast<unsigned int>(random()) % kNames);
      node.key() = strOther;
      expected.try_emplace(strOther, node.mapped());
      map.insert(std::move(node));
      break;
    }
    case 10:
      if (auto const found = map.find(strName); found != map.end()) {
        found->second = expected[strName] = pEntry;
      }
      break;
    case 11: {
      if (random() % 16) break;
      QdcUnicodeString const strLast = NameOf(static_cast<unsigned int>(random()) % kNames);
      auto const& [strFirst, strEnd] = std::minmax(strName, strLast);
      ASSERT_TRUE(map.erase(map.lower_bound(strFirst), map.lower_bound(strEnd)) == map.lower_bound(strEnd));
      expected.erase(expected.lower_bound(strFirst), expected.lower_bound(strEnd));
      break;
    }
    case 12: {
      if (random() % 500) break;
      QXTextureCacheMap other(map);
      map.clear();
      ASSERT_TRUE(map.find(strName) == map.end());
      map.swap(other);
      break;
    }
    default: break;
    }
    if (nRound % 16 == 0) ExpectSameAnswers(map, expected, NameOf(static_cast<unsigned int>(random()) % kNames));
    ASSERT_EQ(map.size(), expected.size());
    if (nRound % 6000 == 0) ExpectSame(map, expected);
    if (testing::Test::HasFatalFailure()) return;
  }
  EXPECT_EQ(map.IsIndexed(), 1);
  ExpectSame(map, expected);
}

TEST(QXTextureCacheMap, EveryEntryIsFoundWhileTheMapShrinks) {
  std::mt19937 random(5);
  std::vector<unsigned int> arrNumbers(5000);
  for (unsigned int i = 0; i < arrNumbers.size(); ++i) arrNumbers[i] = i;
  std::shuffle(arrNumbers.begin(), arrNumbers.end(), random);
  QXTextureCacheMap map;
  for (unsigned int const nNumber : arrNumbers) map[NameOf(nNumber)] = EntryOf(nNumber);
  std::shuffle(arrNumbers.begin(), arrNumbers.end(), random);
  while (!arrNumbers.empty()) {
    ASSERT_EQ(map.erase(NameOf(arrNumbers.back())), 1u);
    arrNumbers.pop_back();
    if (arrNumbers.size() % 500 != 0) continue;
    for (unsigned int const nNumber : arrNumbers) ASSERT_EQ(map.at(NameOf(nNumber)), EntryOf(nNumber));
  }
  EXPECT_TRUE(map.empty());
}

}  // namespace
}  // namespace QXC
