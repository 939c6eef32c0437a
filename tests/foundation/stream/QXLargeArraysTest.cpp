// Arrays that are large enough to go their own ways: past the caches in memory, past the buffer in files.
#include <filesystem>
#include <string>
#include <vector>

#include <sys/stat.h>

#include <gtest/gtest.h>

#include <QxGraphics3D/frame/foundation/stream/QXFileStream.h>
#include <QxGraphics3D/frame/foundation/stream/QXMemoryStream.h>

namespace QXC {
namespace {

constexpr std::size_t BlockSize = std::size_t{5} << 20;

std::vector<unsigned char> Pattern(std::size_t nSize) {
  std::vector<unsigned char> arrBytes(nSize);
  unsigned int nState = 1;
  for (unsigned char& nByte : arrBytes) {
    nState = nState * 1664525 + 1013904223;
    nByte = static_cast<unsigned char>(nState >> 24);
  }
  return arrBytes;
}

TEST(QXLargeArrays, AreCopiedWholeAtEveryOffsetAndLength) {
  std::vector<unsigned char> const arrBytes = Pattern(200000);
  std::vector<unsigned char> arrRoom(BlockSize);
  std::vector<unsigned char> arrRead(arrBytes.size() + 64);
  for (unsigned int nOffset = 0; nOffset < 66; ++nOffset) {
    unsigned int const nCount = 65536 + nOffset * 1999;
    QXMemoryStream stream(QXMemoryStream::Room{arrRoom.data(), arrRoom.size()});
    for (unsigned int i = 0; i < nOffset; ++i) stream << static_cast<unsigned char>(7);
    stream.Save(arrBytes.data() + nOffset % 5, nCount);
    stream << static_cast<unsigned char>(99);
    ASSERT_EQ(stream.GetSize(), nOffset + nCount + 1);
    ASSERT_TRUE(
        std::equal(arrRoom.begin() + nOffset, arrRoom.begin() + nOffset + nCount, arrBytes.begin() + nOffset % 5))
        << nOffset;

    QXMemoryStream read(arrRoom.data(), arrRoom.size());
    unsigned char nByte = 0;
    for (unsigned int i = 0; i < nOffset; ++i) read >> nByte;
    arrRead[nOffset % 7 + nCount] = 55;
    read.Load(arrRead.data() + nOffset % 7, nCount);
    read >> nByte;
    ASSERT_EQ(nByte, 99);
    ASSERT_EQ(arrRead[nOffset % 7 + nCount], 55);
    ASSERT_TRUE(std::equal(
        arrRead.begin() + nOffset % 7, arrRead.begin() + nOffset % 7 + nCount, arrBytes.begin() + nOffset % 5))
        << nOffset;
  }
}

TEST(QXLargeArrays, ThatDoNotFitFailAndChangeNothing) {
  std::vector<unsigned char> const arrBytes = Pattern(BlockSize);
  std::vector<unsigned char> arrRoom(BlockSize - 1, 3);
  QXMemoryStream stream(QXMemoryStream::Room{arrRoom.data(), arrRoom.size()});
  stream.Save(arrBytes.data(), static_cast<unsigned int>(arrBytes.size()));
  EXPECT_FALSE(stream.IsGood());
  EXPECT_EQ(arrRoom[0], 3);
  QXMemoryStream read(arrRoom.data(), arrRoom.size());
  std::vector<unsigned char> arrRead(BlockSize, 1);
  read.Load(arrRead.data(), static_cast<unsigned int>(arrRead.size()));
  EXPECT_FALSE(read.IsGood());
  EXPECT_EQ(arrRead[0], 0);
}

// More may follow than was reserved, or less: the file is as long as what was written, and takes no more of the disk.
TEST(QXLargeArrays, ReservedFilesAreAsLongAsWhatWasWritten) {
  std::string const strPath = testing::TempDir() + "qx_large_arrays.bin";
  std::vector<unsigned char> const arrBytes = Pattern(BlockSize);
  for (QXUInt64 const nReserved : {QXUInt64{0}, QXUInt64{3} << 20, QXUInt64{64} << 20, ~QXUInt64{0}}) {
    QXFileStream file;
    ASSERT_TRUE(file.OpenForWriting(QdcUnicodeString::FromUTF8(strPath.c_str())));
    file.Reserve(nReserved);
    EXPECT_TRUE(file.IsGood());
    file << static_cast<unsigned char>(1);
    file.Save(arrBytes.data(), static_cast<unsigned int>(arrBytes.size()));
    ASSERT_TRUE(file.Close());
    struct stat status = {};
    ASSERT_EQ(::stat(strPath.c_str(), &status), 0);
    EXPECT_EQ(static_cast<std::size_t>(status.st_size), arrBytes.size() + 1);
    EXPECT_LE(static_cast<std::size_t>(status.st_blocks) * 512, arrBytes.size() + (1 << 20));
    ASSERT_TRUE(file.OpenForReading(QdcUnicodeString::FromUTF8(strPath.c_str())));
    file.Reserve(nReserved);
    unsigned char nByte = 0;
    std::vector<unsigned char> arrRead(arrBytes.size());
    file >> nByte;
    file.Load(arrRead.data(), static_cast<unsigned int>(arrRead.size()));
    EXPECT_TRUE(file.IsGood() && arrRead == arrBytes);
    file.Close();
  }
  std::filesystem::remove(strPath);
}

}  // namespace
}  // namespace QXC
