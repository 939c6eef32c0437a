#include <QxGraphics3D/frame/foundation/toolkit/QXHash.h>

#include <gtest/gtest.h>

namespace QXC {
namespace {

TEST(QXHash, LookupOfAMissingKeyLeavesTheValueAndEntersNothing) {
  QXHash<QdcUnicodeString> hash;
  QdcUnicodeString value(L"before");
  EXPECT_EQ(hash.Lookup(L"key", value), 0);
  EXPECT_TRUE(value == L"before");
  EXPECT_EQ(hash.GetCount(), 0u);
}

TEST(QXHash, SubscriptEntersAnEmptyValueAndChangesIt) {
  QXHash<QdcUnicodeString> hash;
  EXPECT_EQ(hash[L"key"].IsEmpty(), 1);
  hash[L"key"] = L"value";
  hash[L"Key"] = L"other";
  QdcUnicodeString value;
  EXPECT_EQ(hash.Lookup(L"key", value), 1);
  EXPECT_TRUE(value == L"value");
  EXPECT_EQ(hash.GetCount(), 2u);
}

TEST(QXHash, KeysCountAsTextWhateverTheirLength) {
  QXHash<QdcUnicodeString> hash;
  QdcUnicodeString key(L"abc");
  hash[key] = L"value";
  key.SetLength(20);
  QdcUnicodeString value;
  EXPECT_EQ(hash.Lookup(key, value), 1);
  EXPECT_EQ(QXTextHash()(key), QXTextHash()(L"abc"));
}

TEST(QXHash, ValuesStayInPlaceWhileItGrows) {
  QXHash<QdcUnicodeString> hash;
  QdcUnicodeString& first = hash[L"first"];
  for (int i = 0; i < 2000; ++i) {
    QdcUnicodeString key;
    key.Format(L"%d", i);
    hash[key] = key;
  }
  EXPECT_EQ(&first, &hash[L"first"]);
  QdcUnicodeString value;
  EXPECT_EQ(hash.Lookup(L"1999", value), 1);
  EXPECT_TRUE(value == L"1999");
  hash.RemoveAll();
  EXPECT_EQ(hash.GetCount(), 0u);
}

}  // namespace
}  // namespace QXC
