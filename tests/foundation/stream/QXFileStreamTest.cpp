#include <QxGraphics3D/frame/foundation/stream/QXFileStream.h>
#include <QxGraphics3D/frame/foundation/stream/QXMemoryStream.h>

#include <tests/foundation/stream/QXByteWriter.h>
#include <tests/foundation/stream/QXUnprivileged.h>
#include <tests/foundation/toolkit/QXTestFolder.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <csignal>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include <sys/resource.h>
#include <sys/stat.h>

namespace QXC {
namespace {

// Longer arrays bypass the buffer.
constexpr unsigned int BufferSize = 65536;

std::string Contents(std::filesystem::path const& path) {
  std::ifstream file(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), {});
}

/// Calls of read and write that this process has made.
struct Calls {
  Calls() {
    std::ifstream file("/proc/self/io");
    std::string strName;
    long nValue = 0;
    while (file >> strName >> nValue) {
      if (strName == "syscr:") m_nReads = nValue;
      if (strName == "syscw:") m_nWrites = nValue;
    }
  }

  long m_nReads = 0;
  long m_nWrites = 0;
};

std::vector<unsigned char> Noise(std::size_t nSize, unsigned int nSeed) {
  std::mt19937 random(nSeed);
  std::vector<unsigned char> bytes(nSize);
  for (unsigned char& nByte : bytes) nByte = static_cast<unsigned char>(random());
  return bytes;
}

/// A limit on the length of files, for one test.
class QXFileLimit {
public:
  explicit QXFileLimit(rlim_t nBytes) : m_pOldHandler(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &m_Old);
    rlimit const limit = {nBytes, m_Old.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  QXFileLimit(QXFileLimit const&) = delete;
  QXFileLimit& operator=(QXFileLimit const&) = delete;
  ~QXFileLimit() {
    setrlimit(RLIMIT_FSIZE, &m_Old);
    std::signal(SIGXFSZ, m_pOldHandler);
  }

private:
  void (*m_pOldHandler)(int);
  rlimit m_Old = {};
};

TEST(QXFileStream, IsClosedAtFirst) {
  QXFileStream stream;
  EXPECT_EQ(stream.IsGood(), 0);
  EXPECT_EQ(stream.GetProblem(), STREAM_NOT_OPEN);
  EXPECT_TRUE(stream.GetErrorText() == L"it is not open for this");
  EXPECT_EQ(stream.Close(), 0);
  EXPECT_EQ(stream.Remaining(), 0u);
  EXPECT_EQ(stream.GetSize(), 0u);
  int nValue = 5;
  stream << 3;
  stream >> nValue;
  EXPECT_EQ(nValue, 0);
}

TEST(QXFileStream, WritesAndReadsByPathsInUtf8) {
  QXTestFolder const folder;
  std::filesystem::path const path = folder.GetPath() / "stra\xC3\x9F"
                                                        "e \xE4\xB8\xAD.bin";
  {
    QXFileStream stream;
    ASSERT_EQ(stream.OpenForWriting(Wide(path)), 1);
    stream << 0x04030201 << QdcUnicodeString(L"\x00E4") << 2.5;
    EXPECT_EQ(stream.GetSize(), 4u + 6 + 8);
    EXPECT_EQ(stream.Remaining(), 0u);
    EXPECT_EQ(stream.Close(), 1);
  }
  EXPECT_EQ(Contents(path), QXByteWriter().Int(0x04030201).Text("\xC3\xA4").Double(2.5).GetBytes());
  QXFileStream stream;
  ASSERT_EQ(stream.OpenForReading(Wide(path)), 1);
  EXPECT_EQ(stream.GetSize(), 18u);
  EXPECT_EQ(stream.Remaining(), 18u);
  int nValue = 0;
  QdcUnicodeString strText;
  double dValue = 0;
  stream >> nValue >> strText;
  EXPECT_EQ(stream.GetPosition(), 10u);
  EXPECT_EQ(stream.Remaining(), 8u);
  stream >> dValue;
  EXPECT_EQ(nValue, 0x04030201);
  EXPECT_TRUE(strText == L"\x00E4");
  EXPECT_EQ(dValue, 2.5);
  EXPECT_EQ(stream.Close(), 1);
  EXPECT_EQ(stream.IsGood(), 0);
}

TEST(QXFileStream, WritesItsBufferWhenItDies) {
  QXTestFolder const folder;
  std::filesystem::path const path = folder.GetPath() / "a";
  {
    QXFileStream stream;
    stream.OpenForWriting(Wide(path));
    stream << 7;
  }
  EXPECT_EQ(Contents(path).size(), 4u);
}

TEST(QXFileStream, EmptiesTheFileThatStandsThere) {
  QXTestFolder const folder;
  std::filesystem::path const path = folder.Write("a", "a long old text");
  QXFileStream stream;
  ASSERT_EQ(stream.OpenForWriting(Wide(path)), 1);
  stream << static_cast<unsigned char>('x');
  EXPECT_EQ(stream.Close(), 1);
  EXPECT_EQ(Contents(path), "x");
}

TEST(QXFileStream, OpensOneFileAfterTheOther) {
  QXTestFolder const folder;
  std::filesystem::path const first = folder.GetPath() / "first";
  QXFileStream stream;
  ASSERT_EQ(stream.OpenForWriting(Wide(first)), 1);
  stream << 1 << 2;
  ASSERT_EQ(stream.OpenForWriting(Wide(folder.GetPath() / "second")), 1);
  EXPECT_EQ(stream.GetSize(), 0u);
  EXPECT_EQ(Contents(first).size(), 8u);
  stream << 3;
  ASSERT_EQ(stream.OpenForReading(Wide(first)), 1);
  int nValue = 0;
  stream >> nValue >> nValue >> nValue;
  EXPECT_EQ(stream.IsGood(), 0);
  ASSERT_EQ(stream.OpenForReading(Wide(folder.GetPath() / "second")), 1) << "a failure ends with the file";
  EXPECT_EQ(stream.GetPosition(), 0u);
  stream >> nValue;
  EXPECT_EQ(nValue, 3);
}

TEST(QXFileStream, TellsWhyAFileDoesNotOpen) {
  QXTestFolder const folder;
  QXFileStream stream;
  EXPECT_EQ(stream.OpenForReading(Wide(folder.GetPath() / "missing")), 0);
  EXPECT_EQ(stream.GetProblem(), STREAM_SYSTEM);
  EXPECT_TRUE(stream.GetErrorText() == QdcUnicodeString::FromUTF8(std::strerror(ENOENT)));
  EXPECT_EQ(stream.OpenForReading(L""), 0);
  EXPECT_EQ(stream.OpenForWriting(L""), 0);
  EXPECT_EQ(stream.OpenForWriting(Wide(folder.GetPath() / "no" / "folder")), 0);
  EXPECT_EQ(stream.OpenForReading(Wide(folder.GetPath())), 0);
  EXPECT_EQ(stream.GetProblem(), STREAM_NOT_A_FILE);
  EXPECT_TRUE(stream.GetErrorText() == L"it is no regular file");
  EXPECT_EQ(stream.OpenForWriting(Wide(folder.GetPath())), 0);
  EXPECT_EQ(stream.GetProblem(), STREAM_SYSTEM);
  EXPECT_EQ(stream.Close(), 0);
}

TEST(QXFileStream, TouchesNeitherDevicesNorPipes) {
  QXTestFolder const folder;
  std::filesystem::path const pipe = folder.GetPath() / "pipe";
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  QXFileStream stream;
  EXPECT_EQ(stream.OpenForReading(Wide(pipe)), 0) << "and does not wait for the other end";
  EXPECT_EQ(stream.OpenForWriting(Wide(pipe)), 0);
  EXPECT_EQ(stream.OpenForReading(L"/dev/zero"), 0);
  EXPECT_EQ(stream.GetProblem(), STREAM_NOT_A_FILE);
  EXPECT_EQ(stream.OpenForWriting(L"/dev/null"), 0);
  EXPECT_EQ(stream.GetProblem(), STREAM_NOT_A_FILE);
}

TEST(QXFileStream, RespectsTheRightsOfFiles) {
  QXTestFolder const folder;
  std::filesystem::permissions(folder.GetPath(), std::filesystem::perms::all);
  std::filesystem::path const path = folder.Write("secret", "data");
  std::filesystem::permissions(path, std::filesystem::perms::none);
  QXUnprivileged const nobody;
  QXFileStream stream;
  EXPECT_EQ(stream.OpenForReading(Wide(path)), 0);
  EXPECT_TRUE(stream.GetErrorText() == QdcUnicodeString::FromUTF8(std::strerror(EACCES)));
  EXPECT_EQ(stream.OpenForWriting(Wide(path)), 0);
  EXPECT_EQ(std::filesystem::file_size(path), 4u);
}

TEST(QXFileStream, MovesInOneDirectionOnly) {
  QXTestFolder const folder;
  std::filesystem::path const path = folder.Write("a", std::string(8, '\1'));
  QXFileStream stream;
  ASSERT_EQ(stream.OpenForReading(Wide(path)), 1);
  stream << 5;
  EXPECT_EQ(stream.GetProblem(), STREAM_NOT_OPEN);
  EXPECT_EQ(stream.Close(), 0);
  EXPECT_EQ(Contents(path), std::string(8, '\1'));
  ASSERT_EQ(stream.OpenForWriting(Wide(path)), 1);
  int nValue = 9;
  stream >> nValue;
  EXPECT_EQ(nValue, 0);
  EXPECT_EQ(stream.GetProblem(), STREAM_NOT_OPEN);
  EXPECT_EQ(stream.Close(), 0);
}

TEST(QXFileStream, FailsWhereTheFileEnds) {
  QXTestFolder const folder;
  QXFileStream stream;
  ASSERT_EQ(stream.OpenForReading(Wide(folder.Write("a", std::string(BufferSize + 10, 'x')))), 1);
  std::vector<unsigned char> bytes(BufferSize);
  stream.Load(bytes.data(), BufferSize);
  double dValue = 1;
  stream >> dValue;
  EXPECT_EQ(stream.IsGood(), 1);
  stream >> dValue;
  EXPECT_EQ(dValue, 0.0);
  EXPECT_EQ(stream.GetProblem(), STREAM_ENDED);
  EXPECT_EQ(stream.GetPosition(), BufferSize + 8u);
  EXPECT_EQ(stream.Close(), 0);
}

TEST(QXFileStream, FailsWhereOneByteIsMissing) {
  QXTestFolder const folder;
  std::filesystem::path const path = folder.Write("a", std::string(2 * BufferSize - 1, 'x'));
  for (unsigned int const nCount : {8u, BufferSize, 2 * BufferSize}) {
    QXFileStream stream;
    ASSERT_EQ(stream.OpenForReading(Wide(path)), 1);
    std::vector<unsigned char> bytes(2 * BufferSize, 1);
    stream.Load(bytes.data(), 2 * BufferSize - nCount);
    ASSERT_EQ(stream.IsGood(), 1);
    stream.Load(bytes.data(), nCount);
    EXPECT_EQ(stream.GetProblem(), STREAM_ENDED) << nCount;
    EXPECT_EQ(stream.GetPosition(), 2 * BufferSize - nCount);
    EXPECT_EQ(bytes[nCount - 1], 0);
  }
}

TEST(QXFileStream, FailsWhenTheFileBecomesShorter) {
  QXTestFolder const folder;
  std::filesystem::path const path = folder.Write("a", std::string(4 * BufferSize, 'x'));
  for (unsigned int const nCount : {BufferSize, 1u}) {
    std::filesystem::resize_file(path, 4 * BufferSize);
    QXFileStream stream;
    ASSERT_EQ(stream.OpenForReading(Wide(path)), 1);
    std::vector<unsigned char> bytes(BufferSize, 1);
    stream.Load(bytes.data(), BufferSize);
    EXPECT_EQ(stream.IsGood(), 1);
    std::filesystem::resize_file(path, BufferSize + 1);
    stream.Load(bytes.data(), nCount);
    EXPECT_EQ(stream.IsGood(), 0);
    EXPECT_EQ(stream.GetPosition(), BufferSize);
    EXPECT_EQ(bytes[0], 0);
  }
}

TEST(QXFileStream, TellsThatTheDiskIsFull) {
  QXTestFolder const folder;
  std::vector<unsigned char> const bytes(BufferSize, 1);
  for (int const nArrays : {1, 3}) {
    QXFileStream stream;
    ASSERT_EQ(stream.OpenForWriting(Wide(folder.GetPath() / "a")), 1);
    QXFileLimit const limit(BufferSize + 3);
    stream << 1;
    for (int i = 0; i < nArrays; ++i) stream.Save(bytes.data(), BufferSize);
    EXPECT_EQ(stream.IsGood(), 0);
    EXPECT_TRUE(stream.GetErrorText() == QdcUnicodeString::FromUTF8(std::strerror(EFBIG)));
    EXPECT_EQ(stream.Close(), 0);
    EXPECT_EQ(stream.GetProblem(), STREAM_SYSTEM);
  }
}

TEST(QXFileStream, DoesNotLengthenAReservedFileThatMissesBytes) {
  QXTestFolder const folder;
  std::filesystem::path const path = folder.GetPath() / "a";
  QXFileStream stream;
  ASSERT_EQ(stream.OpenForWriting(Wide(path)), 1);
  stream.Reserve(4u << 20);
  {
    QXFileLimit const limit(10);
    for (unsigned int i = 0; i < BufferSize; ++i) stream << i;
    EXPECT_EQ(stream.IsGood(), 0);
  }
  EXPECT_EQ(stream.Close(), 0);
  EXPECT_EQ(std::filesystem::file_size(path), 10u);
}

TEST(QXFileStream, TellsAtClosingThatTheLastBytesDidNotFit) {
  QXTestFolder const folder;
  QXFileStream stream;
  ASSERT_EQ(stream.OpenForWriting(Wide(folder.GetPath() / "a")), 1);
  QXFileLimit const limit(2);
  stream << 1;
  EXPECT_EQ(stream.IsGood(), 1);
  EXPECT_EQ(stream.Close(), 0);
  EXPECT_TRUE(stream.GetErrorText() == QdcUnicodeString::FromUTF8(std::strerror(EFBIG)));
}

/// Calls of a kind that some work makes. The fewest of three times, beside the fewest of doing nothing: telling the
/// calls takes some, and sanitizers look at an object by calls of their own when they meet its type for the first time.
template <class Work>
long CountCalls(long Calls::*pKind, Work work) {
  auto const countOnce = [pKind](auto const& act) {
    Calls const before;
    act();
    Calls const after;
    return after.*pKind - before.*pKind;
  };
  long nWork = LONG_MAX;
  long nNothing = LONG_MAX;
  for (int i = 0; i < 3; ++i) {
    nWork = std::min(nWork, countOnce(work));
    nNothing = std::min(nNothing, countOnce([] {}));
  }
  return nWork - nNothing;
}

TEST(QXFileStream, MovesALargeArrayWithOneCallOfTheSystem) {
  QXTestFolder const folder;
  std::filesystem::path const path = folder.GetPath() / "a";
  std::vector<unsigned char> const bytes = Noise(3u << 20, 1);
  auto const nSize = static_cast<unsigned int>(bytes.size());
  QXFileStream writer;
  ASSERT_EQ(writer.OpenForWriting(Wide(path)), 1);
  EXPECT_EQ(CountCalls(&Calls::m_nWrites, [&] { writer.Save(bytes.data(), nSize); }), 1);
  EXPECT_EQ(std::filesystem::file_size(path), 3 * bytes.size()) << "nothing waits in the buffer";
  ASSERT_EQ(writer.Close(), 1);

  std::vector<unsigned char> back(bytes.size());
  QXFileStream reader;
  ASSERT_EQ(reader.OpenForReading(Wide(path)), 1);
  EXPECT_EQ(CountCalls(&Calls::m_nReads, [&] { reader.Load(back.data(), nSize); }), 1);
  EXPECT_EQ(back, bytes);
}

TEST(QXFileStream, MovesSmallValuesByTheBuffer) {
  QXTestFolder const folder;
  std::filesystem::path const path = folder.GetPath() / "a";
  QXFileStream writer;
  ASSERT_EQ(writer.OpenForWriting(Wide(path)), 1);
  auto const writeAll = [&] {
    for (int i = 0; i < 100000; ++i) writer << i;
  };
  EXPECT_LE(CountCalls(&Calls::m_nWrites, writeAll), 400000 / static_cast<long>(BufferSize) + 1);
  ASSERT_EQ(writer.Close(), 1);
  QXFileStream reader;
  ASSERT_EQ(reader.OpenForReading(Wide(path)), 1);
  for (int i = 0; i < 300000; ++i) {
    int nValue = -1;
    reader >> nValue;
    ASSERT_EQ(nValue, i % 100000);
  }
  EXPECT_EQ(reader.Remaining(), 0u);
}

/// One step of a sequence: a number, a text or an array of any length around the size of the buffer.
template <class Act>
void ForEachStep(unsigned int nSeed, Act act) {
  std::mt19937 random(nSeed);
  for (int i = 0; i < 60; ++i) {
    auto const nKind = static_cast<int>(random() % 4);
    auto const nValue = static_cast<unsigned int>(random());
    unsigned int nCount = nValue % 100;
    if (random() % 3 == 0) nCount = BufferSize - 20 + nValue % 40;
    if (random() % 8 == 0) nCount = nValue % (3 * BufferSize);
    act(nKind, nValue, nCount);
  }
}

void Write(QXStream& stream, unsigned int nSeed) {
  ForEachStep(nSeed, [&](int nKind, unsigned int nValue, unsigned int nCount) {
    std::vector<unsigned char> const bytes = Noise(nKind == 3 ? nCount : 0, nValue);
    if (nKind == 0) stream << nValue;
    if (nKind == 1) stream << static_cast<double>(nValue);
    if (nKind == 2) stream << QdcUnicodeString(L"\x00E4\x4E2D") + QdcUnicodeString(L"x");
    if (nKind == 3) stream.Save(bytes.data(), nCount);
  });
}

void Check(QXStream& stream, unsigned int nSeed) {
  ForEachStep(nSeed, [&](int nKind, unsigned int nValue, unsigned int nCount) {
    unsigned int nRead = 0;
    double dRead = 0;
    QdcUnicodeString strRead;
    std::vector<unsigned char> bytes(nKind == 3 ? nCount : 0);
    if (nKind == 0) stream >> nRead;
    if (nKind == 1) stream >> dRead;
    if (nKind == 2) stream >> strRead;
    if (nKind == 3) stream.Load(bytes.data(), nCount);
    ASSERT_EQ(nRead, nKind == 0 ? nValue : 0);
    ASSERT_EQ(dRead, nKind == 1 ? static_cast<double>(nValue) : 0);
    ASSERT_TRUE(strRead == (nKind == 2 ? L"\x00E4\x4E2Dx" : L""));
    ASSERT_EQ(bytes, Noise(bytes.size(), nValue));
  });
}

// The stream in memory is the reference: it has no buffer that a value could lie across the end of.
TEST(QXFileStream, HoldsWhatAStreamInMemoryHoldsOnRandomSequences) {
  QXTestFolder const folder;
  std::filesystem::path const path = folder.GetPath() / "a";
  for (unsigned int nSeed = 1; nSeed <= 8; ++nSeed) {
    SCOPED_TRACE(nSeed);
    QXMemoryStream memory;
    Write(memory, nSeed);
    QXFileStream writer;
    ASSERT_EQ(writer.OpenForWriting(Wide(path)), 1);
    Write(writer, nSeed);
    EXPECT_EQ(writer.GetSize(), memory.GetSize());
    ASSERT_EQ(writer.Close(), 1);
    std::string const bytes = Contents(path);
    ASSERT_EQ(bytes.size(), memory.GetSize());
    ASSERT_EQ(std::memcmp(bytes.data(), memory.GetData(), bytes.size()), 0);
    QXFileStream reader;
    ASSERT_EQ(reader.OpenForReading(Wide(path)), 1);
    Check(reader, nSeed);
    EXPECT_EQ(reader.Remaining(), 0u);
    Check(memory, nSeed);
    EXPECT_EQ(memory.Remaining(), 0u);
  }
}

TEST(QXFileStream, ReadsFilesLongerThan32BitsCanTell) {
  QXTestFolder const folder;
  std::filesystem::path const path = folder.Write("sparse", "ab");
  QXUInt64 const nSize = (QXUInt64{1} << 32) + 6;
  std::filesystem::resize_file(path, nSize);
  QXFileStream stream;
  ASSERT_EQ(stream.OpenForReading(Wide(path)), 1);
  EXPECT_EQ(stream.GetSize(), nSize);
  EXPECT_EQ(stream.Remaining(), nSize);
  unsigned short nValue = 0;
  stream >> nValue;
  EXPECT_EQ(nValue, 'a' | 'b' << 8);
  EXPECT_EQ(stream.Remaining(), nSize - 2);
}

}  // namespace
}  // namespace QXC
