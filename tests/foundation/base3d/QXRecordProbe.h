/// @file
/// What every record does that has a form in a stream: the bytes of a good one are cut, bent and overstated.
#pragma once

#include <QxGraphics3D/frame/foundation/base3d/QXIndexPackage.h>
#include <QxGraphics3D/frame/foundation/base3d/QXPass.h>
#include <QxGraphics3D/frame/foundation/base3d/QXSubObjectInfo.h>
#include <QxGraphics3D/frame/foundation/base3d/QXTextureUnitState.h>
#include <QxGraphics3D/frame/foundation/stream/QXMemoryStream.h>

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>

namespace QXC {

inline unsigned char LoadRecord(QXIndexPackage& record, QXStream& stream) {
  return record.Load(stream, 0);
}
inline unsigned char LoadRecord(QXPass& record, QXStream& stream) {
  return record.Load(stream, 1.0);
}
inline unsigned char LoadRecord(QXTextureUnitState& record, QXStream& stream) {
  return record.Load(stream);
}
inline unsigned char LoadRecord(QXSubObjectInfo& record, QXStream& stream) {
  return record.Load(stream);
}
inline void SaveRecord(QXIndexPackage const& record, QXStream& stream) {
  record.Save(stream, 0);
}
inline void SaveRecord(QXPass const& record, QXStream& stream) {
  record.Save(stream, 1.0);
}
inline void SaveRecord(QXTextureUnitState const& record, QXStream& stream) {
  record.Save(stream);
}
inline void SaveRecord(QXSubObjectInfo const& record, QXStream& stream) {
  record.Save(stream);
}

/// The bytes that the record writes, which must be as many as it says.
template <class Record>
std::string BytesOf(Record const& record) {
  QXMemoryStream stream;
  SaveRecord(record, stream);
  EXPECT_EQ(stream.GetSize(), static_cast<QXUInt64>(record.GetDataSize()));
  return std::string(reinterpret_cast<char const*>(stream.GetData()), static_cast<std::size_t>(stream.GetSize()));
}

/// Loads from a block of exactly these bytes, so that the address sanitizer sees a read past them.
template <class Record>
unsigned char LoadBytes(Record& record, std::string const& bytes, QXUInt64* pLeft = nullptr) {
  auto const pBlock = std::make_unique<unsigned char[]>(bytes.size());
  if (!bytes.empty()) std::memcpy(pBlock.get(), bytes.data(), bytes.size());
  QXMemoryStream stream(pBlock.get(), bytes.size());
  unsigned char const bLoaded = LoadRecord(record, stream);
  EXPECT_EQ(bLoaded, stream.IsGood());
  EXPECT_LE(stream.GetPosition(), bytes.size());
  if (pLeft) *pLeft = stream.Remaining();
  return bLoaded;
}

/// Loading takes exactly the bytes of the record, also when others follow, and gives the same record.
template <class Record>
void ExpectRoundTrip(Record const& record, Record const& old) {
  std::string const bytes = BytesOf(record);
  Record loaded(old);
  QXUInt64 nLeft = 0;
  ASSERT_EQ(LoadBytes(loaded, bytes + "tail", &nLeft), 1);
  EXPECT_EQ(nLeft, 4u);
  EXPECT_EQ(BytesOf(loaded), bytes);
}

/// Cut anywhere, the bytes give no record, and the one that was there stays.
template <class Record>
void ExpectTruncationFails(std::string const& bytes, Record const& old) {
  std::string const before = BytesOf(old);
  Record target(old);
  for (std::size_t nLength = 0; nLength < bytes.size(); ++nLength) {
    ASSERT_EQ(LoadBytes(target, bytes.substr(0, nLength)), 0) << nLength << " bytes";
    ASSERT_EQ(BytesOf(target), before) << nLength << " bytes";
  }
}

/// With any bit turned, the bytes give a whole record, which saves and loads to itself, or none, and then the one that
/// was there stays.
template <class Record>
void ExpectTurnedBitsGiveWholeRecords(std::string const& bytes, Record const& old) {
  std::string const before = BytesOf(old);
  for (std::size_t nBit = 0; nBit < 8 * bytes.size(); ++nBit) {
    std::string turned = bytes;
    turned[nBit / 8] = static_cast<char>(turned[nBit / 8] ^ 1 << nBit % 8);
    Record target(old);
    if (LoadBytes(target, turned) == 0) {
      ASSERT_EQ(BytesOf(target), before) << "bit " << nBit;
      continue;
    }
    std::string const saved = BytesOf(target);
    Record again(old);
    ASSERT_EQ(LoadBytes(again, saved), 1) << "bit " << nBit;
    ASSERT_EQ(BytesOf(again), saved) << "bit " << nBit;
  }
}

/// The count at nOffset set to what it cannot be.
template <class Record>
void ExpectHostileCountFails(std::string const& bytes, std::size_t nOffset, Record const& old) {
  std::string const before = BytesOf(old);
  for (int const nCount : {-1, -0x7FFFFFFF - 1, 0x7FFFFFFF, 0x10000000}) {
    std::string hostile = bytes;
    std::memcpy(hostile.data() + nOffset, &nCount, 4);
    Record target(old);
    EXPECT_EQ(LoadBytes(target, hostile), 0) << nCount << " at " << nOffset;
    EXPECT_EQ(BytesOf(target), before) << nCount << " at " << nOffset;
  }
}

}  // namespace QXC
