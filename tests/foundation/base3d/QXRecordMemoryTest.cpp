#include <tests/foundation/base3d/QXRecordProbe.h>
#include <tests/testing/QXAllocationCounter.h>

#include <gtest/gtest.h>

#include <cstring>
#include <new>
#include <string>

namespace QXC {
namespace {

QXIndexPackage MakePackage() {
  QXIndexPackage package;
  package.m_arrPassNames.Add(L"a name too long to stand inside a string object");
  package.SetIndexNum(3);
  return package;
}

QXSubObjectInfo MakeInfo() {
  QXSubObjectInfo info;
  info.m_mapPassSlots = {{1, 0}};
  info.m_arrOffsets.Add(0);
  info.m_arrCounts.Add(3);
  return info;
}

QXPass MakePass() {
  QXPass pass;
  pass.SetName(L"a name too long to stand inside a string object");
  pass.m_pExtension = new QXMaterialExtension;
  QXTextureUnitState* const pUnit = pass.CreateTextureUnitState();
  pUnit->SetTextureName(L"a picture whose name is too long as well.png");
  pUnit->SetEffect({TEXTURE_EFFECT_PROJECTIVE, 1});
  return pass;
}

/// Puts every number of the list over every four bytes of a record: somewhere among them stand its counts.
template <class Record>
void ExpectLiesCostNoMemory(Record const& record) {
  std::string const bytes = BytesOf(record) + std::string(1000, '\0');
  for (std::size_t nOffset = 0; nOffset + 4 <= bytes.size() - 1000; ++nOffset) {
    for (int const nCount : {0x7FFFFFFF, 0x01000000, -1}) {
      std::string hostile = bytes;
      std::memcpy(hostile.data() + nOffset, &nCount, 4);
      QXMemoryStream stream(hostile.data(), hostile.size());
      Record target;
      ForgetLargestAllocation();
      LoadRecord(target, stream);
      ASSERT_LE(GetLargestAllocation(), 8 * hostile.size() + 64) << nCount << " at " << nOffset;
    }
  }
}

TEST(QXRecordMemory, IsBoundedByWhatRemainsWhateverACountSays) {
  ExpectLiesCostNoMemory(MakePackage());
  ExpectLiesCostNoMemory(MakeInfo());
  ExpectLiesCostNoMemory(MakePass());
  ExpectLiesCostNoMemory(*MakePass().GetTextureUnitState(0));
}

/// Refuses one allocation after the other until the load succeeds.
template <class Record>
void ExpectRefusalsChangeNothing(Record const& record, Record const& old) {
  std::string const bytes = BytesOf(record);
  std::string const before = BytesOf(old);
  Record target(old);
  for (long nRefused = 1;; ++nRefused) {
    ASSERT_LT(nRefused, 100);
    QXMemoryStream stream(bytes.data(), bytes.size());
    unsigned char bLoaded = 0;
    RefuseAllocation(nRefused);
    try {
      bLoaded = LoadRecord(target, stream);
    } catch (std::bad_alloc const&) {}
    RefuseAllocation(0);
    if (bLoaded != 0) break;
    ASSERT_EQ(BytesOf(target), before) << "refused: allocation " << nRefused;
  }
  EXPECT_EQ(BytesOf(target), bytes);
}

TEST(QXRecordMemory, MissingLeavesTheRecordThatWasThere) {
  QXIndexPackage wide;
  wide.SetIndexNum32(4);
  ExpectRefusalsChangeNothing(MakePackage(), wide);
  ExpectRefusalsChangeNothing(MakeInfo(), QXSubObjectInfo());
  ExpectRefusalsChangeNothing(MakePass(), QXPass());
  ExpectRefusalsChangeNothing(*MakePass().GetTextureUnitState(0), QXTextureUnitState());
}

TEST(QXRecordMemory, MissingForTheEntriesOfAPackageIsAFailureWithoutAnException) {
  QXIndexPackage source;
  source.SetIndexNum32(1000);
  std::string const bytes = BytesOf(source);
  QXMemoryStream stream(bytes.data(), bytes.size());
  QXIndexPackage target;
  RefuseAllocation(1);
  unsigned char bLoaded = 1;
  EXPECT_NO_THROW(bLoaded = target.Load(stream, 0));
  RefuseAllocation(0);
  EXPECT_EQ(bLoaded, 0);
  EXPECT_EQ(target.m_nIndexNum, 0);
}

TEST(QXRecordMemory, TheSizeOfAMissingTextIsNotAllocated) {
  std::string const bytes("\xFF\xFF\xFF\x7F"
                          "abc",
      7);
  QXMemoryStream stream(bytes.data(), bytes.size());
  QdcUnicodeString strText;
  ForgetLargestAllocation();
  stream >> strText;
  EXPECT_EQ(GetLargestAllocation(), 0u);
  EXPECT_EQ(stream.IsGood(), 0);
}

}  // namespace
}  // namespace QXC
