#include <QxGraphics3D/frame/foundation/stream/detail/QXFileBytes.h>

#include <tests/foundation/stream/QXUnprivileged.h>
#include <tests/foundation/toolkit/QXTestFolder.h>

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>
#include <thread>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace QXC::detail {
namespace {

struct Read {
  explicit Read(QdcUnicodeString const& strPath) : m_pBytes(ReadWholeFile(strPath, m_nSize, &m_eProblem)) {}

  QXUInt64 m_nSize = 77;
  QXFileProblem m_eProblem = QXFileProblem::Other;
  std::unique_ptr<unsigned char[]> m_pBytes;
};

void ExpectProblem(QdcUnicodeString const& strPath, QXFileProblem eProblem) {
  Read const read(strPath);
  EXPECT_EQ(read.m_pBytes, nullptr);
  EXPECT_EQ(read.m_nSize, 0u);
  EXPECT_EQ(read.m_eProblem, eProblem);
}

TEST(QXFileBytes, AreTheWholeFile) {
  QXTestFolder const folder;
  std::string strBytes(300000, '\0');
  for (std::size_t i = 0; i < strBytes.size(); ++i) strBytes[i] = static_cast<char>(i * 7 + i / 251);
  Read const read(Wide(folder.Write("\xC3\xA4.bin", strBytes)));
  ASSERT_NE(read.m_pBytes, nullptr);
  EXPECT_EQ(read.m_eProblem, QXFileProblem::None);
  ASSERT_EQ(read.m_nSize, strBytes.size());
  EXPECT_EQ(std::string(reinterpret_cast<char const*>(read.m_pBytes.get()), strBytes.size()), strBytes);
}

TEST(QXFileBytes, OfAnEmptyFileAreABlockOfNoLength) {
  QXTestFolder const folder;
  Read const read(Wide(folder.Write("empty", "")));
  EXPECT_NE(read.m_pBytes, nullptr);
  EXPECT_EQ(read.m_nSize, 0u);
}

TEST(QXFileBytes, OfWhatIsNoFileAreNone) {
  QXTestFolder const folder;
  ExpectProblem(Wide(folder.GetPath() / "missing"), QXFileProblem::Missing);
  ExpectProblem(Wide(folder.Write("file", "x")) + L"/below", QXFileProblem::Missing);
  ExpectProblem(L"", QXFileProblem::Missing);
  ExpectProblem(Wide(folder.GetPath()), QXFileProblem::Folder);
  ExpectProblem(L"/dev/zero", QXFileProblem::NotRegular);
}

TEST(QXFileBytes, OfAPipeAreRefusedWithoutWaiting) {
  QXTestFolder const folder;
  std::filesystem::path const path = folder.GetPath() / "pipe";
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  auto const start = std::chrono::steady_clock::now();
  ExpectProblem(Wide(path), QXFileProblem::NotRegular);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
}

TEST(QXFileBytes, OfAForbiddenFileAreNone) {
  QXTestFolder const folder;
  std::filesystem::path const path = folder.Write("secret", "x");
  ASSERT_EQ(chmod(folder.GetPath().c_str(), 0755), 0);
  ASSERT_EQ(chmod(path.c_str(), 0), 0);
  QXUnprivileged const user;
  ExpectProblem(Wide(path), QXFileProblem::Forbidden);
}

TEST(QXFileBytes, BeyondThirtyTwoBitsOfLengthAreRefused) {
  QXTestFolder const folder;
  std::filesystem::path const path = folder.Write("huge", "");
  // A hole: nothing of it lies on the disk.
  std::error_code error;
  std::filesystem::resize_file(path, 1ULL << 32, error);
  ASSERT_FALSE(error) << "the file system of " << path << " has no files of 4 GiB";
  ExpectProblem(Wide(path), QXFileProblem::TooLarge);
}

TEST(QXFileBytes, OfAFileThatEndsEarlierThanItSaidAreAFailure) {
  QXTestFolder const folder;
  int const nHandle = open(folder.Write("short", "12345").c_str(), O_RDONLY | O_CLOEXEC);
  ASSERT_GE(nHandle, 0);
  unsigned char bytes[8] = {};
  EXPECT_EQ(ReadExactly(nHandle, bytes, 6), QXFileProblem::Shrunk);
  ASSERT_EQ(lseek(nHandle, 0, SEEK_SET), 0);
  EXPECT_EQ(ReadExactly(nHandle, bytes, 5), QXFileProblem::None);
  EXPECT_EQ(ReadExactly(nHandle, bytes, 0), QXFileProblem::None);
  close(nHandle);
  EXPECT_EQ(ReadExactly(-1, bytes, 1), QXFileProblem::Other);
}

TEST(QXFileBytes, ThatComeInPiecesAreJoined) {
  int nEnds[2];
  ASSERT_EQ(pipe(nEnds), 0);
  std::string const strBytes = "piece by piece";
  std::thread writer([&] {
    for (char const nByte : strBytes) {
      EXPECT_EQ(write(nEnds[1], &nByte, 1), 1);
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    close(nEnds[1]);
  });
  std::string strRead(strBytes.size(), '\0');
  EXPECT_EQ(
      ReadExactly(nEnds[0], reinterpret_cast<unsigned char*>(strRead.data()), strRead.size()), QXFileProblem::None);
  EXPECT_EQ(strRead, strBytes);
  writer.join();
  close(nEnds[0]);
}

}  // namespace
}  // namespace QXC::detail
