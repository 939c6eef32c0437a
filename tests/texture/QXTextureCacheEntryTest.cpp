#include "QXMortalTexture.h"

#include <gtest/gtest.h>

#include <ctime>
#include <limits>

namespace QXC {
namespace {

TEST(QXTextureCacheEntry, NewEntryHasTheTicksOfItsConstruction) {
  double const dBefore = static_cast<double>(std::clock());
  QXTextureCacheEntry const empty;
  auto* const pTexture = new QXMortalTexture(L"a");
  QXTextureCacheEntry const full(pTexture);
  double const dBehind = static_cast<double>(std::clock());
  EXPECT_EQ(empty.GetTexture(), nullptr);
  EXPECT_EQ(full.GetTexture(), pTexture);
  EXPECT_GE(empty.GetLastAccess(), dBefore);
  EXPECT_LE(full.GetLastAccess(), dBehind);
  EXPECT_LE(empty.GetLastAccess(), full.GetLastAccess());
}

TEST(QXTextureCacheEntry, LastAccessIsWhatWasSet) {
  QXTextureCacheEntry entry;
  entry.SetLastAccess(-12.5);
  EXPECT_EQ(entry.GetLastAccess(), -12.5);
}

TEST(QXTextureCacheEntry, DestructorDeletesTheTextureWhateverItsCount) {
  for (int const nRef : {-1, 0, 3}) {
    int nDead = 0;
    {
      QXTextureCacheEntry const entry(new QXMortalTexture(L"a", [&](QXTexture&) { ++nDead; }));
      entry.GetTexture()->m_nRefCount = nRef;
    }
    EXPECT_EQ(nDead, 1) << nRef;
  }
}

TEST(QXTextureCacheEntry, SetTextureDeletesTheFormerOneUnlessItsCountIsNegative) {
  for (int const nRef : {-1, 0, 2}) {
    int nDead = 0;
    auto* const pFormer = new QXMortalTexture(L"a", [&](QXTexture&) { ++nDead; });
    pFormer->m_nRefCount = nRef;
    QXTextureCacheEntry entry(pFormer);
    entry.SetTexture(nullptr);
    EXPECT_EQ(entry.GetTexture(), nullptr);
    EXPECT_EQ(nDead, nRef < 0 ? 0 : 1) << nRef;
    if (nRef < 0) delete pFormer;
  }
}

TEST(QXTextureCacheEntry, SetTextureKeepsTheSameOneAlive) {
  int nDead = 0;
  {
    auto* const pTexture = new QXMortalTexture(L"a", [&](QXTexture&) { ++nDead; });
    QXTextureCacheEntry entry(pTexture);
    entry.SetTexture(pTexture);
    EXPECT_EQ(nDead, 0);
    EXPECT_EQ(entry.GetTexture(), pTexture);
  }
  EXPECT_EQ(nDead, 1);
}

TEST(QXTextureCacheEntry, DyingTextureFindsItsSuccessorInTheEntry) {
  QXTexture* pFound = nullptr;
  QXTextureCacheEntry entry;
  entry.SetTexture(new QXMortalTexture(L"a", [&](QXTexture&) { pFound = entry.GetTexture(); }));
  auto* const pNext = new QXMortalTexture(L"b");
  entry.SetTexture(pNext);
  EXPECT_EQ(pFound, pNext);
}

TEST(QXTextureCacheEntry, LaterAccessComparesPositive) {
  QXTextureCacheEntry first(new QXMortalTexture(L"a"));
  QXTextureCacheEntry second(new QXMortalTexture(L"b"));
  first.SetLastAccess(100.0);
  second.SetLastAccess(70.0);
  EXPECT_EQ(first.CompareAccessTime(&second), 30.0);
  EXPECT_EQ(second.CompareAccessTime(&first), -30.0);
  EXPECT_EQ(first.CompareAccessTime(&first), 0.0);
}

TEST(QXTextureCacheEntry, AccessTimesOfEntriesWithoutTextureDoNotCompare) {
  QXTextureCacheEntry full(new QXMortalTexture(L"a"));
  QXTextureCacheEntry empty;
  full.SetLastAccess(100.0);
  empty.SetLastAccess(70.0);
  EXPECT_EQ(full.CompareAccessTime(nullptr), -1.0);
  EXPECT_EQ(full.CompareAccessTime(&empty), -1.0);
  EXPECT_EQ(empty.CompareAccessTime(&full), -1.0);
}

TEST(QXTextureCacheEntry, PathsOfEqualLengthCompareByTheLastDifference) {
  QXTextureCacheEntry const entry(new QXMortalTexture(L"store/aXc1"));
  EXPECT_EQ(entry.ComparePath(L"store/aXc1"), 0);
  EXPECT_EQ(entry.ComparePath(L"store/aXc3"), '1' - '3');
  // The first difference says the opposite.
  EXPECT_EQ(entry.ComparePath(L"store/zXa1"), 'c' - 'a');
  EXPECT_EQ(entry.ComparePath(L"Xtore/aXc1"), 's' - 'X');
}

TEST(QXTextureCacheEntry, DifferenceOfWhatIsNoCharacterGoesRound) {
  wchar_t const szHighest[] = {std::numeric_limits<wchar_t>::max(), L'\0'};
  wchar_t const szLowest[] = {std::numeric_limits<wchar_t>::min(), L'\0'};
  QXTextureCacheEntry const entry(new QXMortalTexture(szHighest));
  if constexpr (sizeof(wchar_t) == sizeof(int)) {
    EXPECT_EQ(entry.ComparePath(szLowest), -1);
  }
  EXPECT_EQ(entry.ComparePath(szHighest), 0);
}

TEST(QXTextureCacheEntry, HasItsFieldsInOrder) {
  struct Open : QXTextureCacheEntry {
    using QXTextureCacheEntry::m_dLastAccess;
    using QXTextureCacheEntry::m_pTexture;
  };
  Open const entry;
  EXPECT_LT(static_cast<void const*>(&entry.m_dLastAccess), static_cast<void const*>(&entry.m_pTexture));
}

TEST(QXTextureCacheEntry, PathsOfUnlikeLengthDiffer) {
  QXTextureCacheEntry const entry(new QXMortalTexture(L"store/b"));
  EXPECT_EQ(entry.ComparePath(L"store/"), -1);
  EXPECT_EQ(entry.ComparePath(L"store/ba"), -1);
  EXPECT_EQ(entry.ComparePath(L""), -1);
  EXPECT_EQ(QXTextureCacheEntry(new QXMortalTexture(L"")).ComparePath(L""), 0);
}

TEST(QXTextureCacheEntry, LengthCountsATailBehindTheText) {
  QdcUnicodeString strTailed(L"store/b");
  strTailed.SetLength(9);
  QXTextureCacheEntry const entry(new QXMortalTexture(L"store/b"));
  EXPECT_EQ(entry.ComparePath(strTailed), -1);
}

TEST(QXTextureCacheEntry, PathWithoutTextureIsUnlikeAny) {
  QXTextureCacheEntry empty;
  QXTextureCacheEntry full(new QXMortalTexture(L"a"));
  QXTextureCacheEntry other(new QXMortalTexture(L"c"));
  EXPECT_EQ(empty.ComparePath(L""), -1);
  EXPECT_EQ(empty.ComparePath(&full), -1);
  EXPECT_EQ(full.ComparePath(&empty), -1);
  EXPECT_EQ(full.ComparePath(static_cast<QXTextureCacheEntry*>(nullptr)), -1);
  EXPECT_EQ(full.ComparePath(&other), 'a' - 'c');
  EXPECT_EQ(full.ComparePath(&full), 0);
}

}  // namespace
}  // namespace QXC
