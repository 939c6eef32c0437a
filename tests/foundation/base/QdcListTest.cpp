#include <QxGraphics3D/frame/foundation/base/QdcList.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

#include <gtest/gtest.h>

namespace QXC {
namespace {

TEST(QdcList, CopiesHoldTheSameElementsInOrder) {
  QdcList<QdcUnicodeString> first;
  first.AddTail(L"a");
  first.AddTail(L"b");
  QdcList<QdcUnicodeString> second(first);
  QdcList<QdcUnicodeString> third;
  third = first;
  first.RemoveAll();
  EXPECT_EQ(first.GetCount(), 0u);
  ASSERT_EQ(second.GetCount(), 2u);
  ASSERT_EQ(third.GetCount(), 2u);
  EXPECT_TRUE(*second.begin() == L"a");
  EXPECT_TRUE(*std::next(third.begin()) == L"b");
}

TEST(QdcList, PointersAreNotFreed) {
  // The type is never complete here: a list that freed its elements would not compile.
  auto* const pListener = reinterpret_cast<QXListener*>(0x10);
  QdcList<QXListener*> list;
  list.AddTail(pListener);
  EXPECT_EQ(*list.begin(), pListener);
}

}  // namespace
}  // namespace QXC
