// Files of strangers: cut, bent and lying ones, and paths that are no files.
#include "QXKtx2Files.h"

#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseToolkit.h>
#include <QxGraphics3D/texture/QXTexture.h>
#include <tests/QXBareTexture.h>

#include <sys/stat.h>

#include <random>

namespace {

using namespace qxtest;
using QXC::detail::QXKtx2File;
using QXC::detail::QXKtx2Limits;

// Small, so that a lie about the size is cheap to believe.
QXKtx2Limits SmallLimits() {
  QXKtx2Limits limits;
  limits.m_nMaxBytes = 1 << 17;
  return limits;
}

/// Samples that can be decoded thousands of times.
std::vector<std::string> SmallSamples() {
  std::vector<std::string> arrNames;
  for (std::string const& strName : SampleNames())
    if (SampleBytes(strName).size() <= 4500) arrNames.push_back(strName);
  EXPECT_GE(arrNames.size(), 14u);
  return arrNames;
}

/// Header, index of the levels and descriptor. Behind them stand the keys, which are passed over.
std::size_t HeadSize(Bytes const& arrFile) {
  return Fetch32(arrFile, 56);
}

TEST(QXKtx2Broken, ACutAtAnyByteIsRefused) {
  for (std::string const& strName : SampleNames()) {
    Bytes const arrFile = SampleBytes(strName);
    std::size_t const nStep = arrFile.size() > 9000 ? 97 : 1;
    for (std::size_t nSize = 0; nSize < arrFile.size(); nSize += nStep)
      ASSERT_TRUE(DecodeBytes(arrFile.data(), nSize).empty()) << strName << " cut to " << nSize;
    ASSERT_TRUE(DecodeBytes(arrFile.data(), arrFile.size() - 1).empty()) << strName;
  }
}

TEST(QXKtx2Broken, AnyBitOfTheHeadFlippedIsRefusedOrBounded) {
  for (std::string const& strName : SmallSamples()) {
    Bytes const arrFile = SampleBytes(strName);
    for (std::size_t nBit = 0; nBit < HeadSize(arrFile) * 8; ++nBit) {
      Bytes arrBroken = arrFile;
      arrBroken[nBit / 8] = static_cast<unsigned char>(arrBroken[nBit / 8] ^ 1u << nBit % 8);
      ASSERT_LE(DecodeBytes(arrBroken, SmallLimits()).size(), SmallLimits().m_nMaxBytes) << strName << ' ' << nBit;
    }
  }
}

TEST(QXKtx2Broken, SizeOfThePictureCannotBeBent) {
  for (std::string const& strName : SmallSamples()) {
    Bytes const arrFile = SampleBytes(strName);
    if (Fetch32(arrFile, 44) == 1) continue;  // of ETC1S any size may be right
    for (std::size_t const nField : {20u, 24u}) {
      for (std::size_t nBit = 0; nBit < 32; ++nBit) {
        // Below the bits that count the blocks it is the same number of blocks.
        if (nBit < 2 && Fetch32(arrFile, 12) - 9 > 41) continue;
        Bytes arrBroken = arrFile;
        Store32(arrBroken, nField, Fetch32(arrFile, nField) ^ 1u << nBit);
        EXPECT_TRUE(DecodeBytes(arrBroken, SmallLimits()).empty()) << strName << ' ' << nField << ' ' << nBit;
      }
    }
  }
}

TEST(QXKtx2Broken, RandomDamageIsRefusedOrBounded) {
  constexpr unsigned int nSeed = 20261121;
  SCOPED_TRACE(nSeed);
  std::mt19937 random(nSeed);
  for (std::string const& strName : SmallSamples()) {
    Bytes const arrFile = SampleBytes(strName);
    for (int nRound = 0; nRound < 300; ++nRound) {
      Bytes arrBroken = arrFile;
      for (std::size_t n = 1 + random() % 4; n > 0; --n)
        arrBroken[80 + random() % (arrFile.size() - 80)] = static_cast<unsigned char>(random());
      ASSERT_LE(DecodeBytes(arrBroken, SmallLimits()).size(), SmallLimits().m_nMaxBytes) << strName << ' ' << nRound;
    }
  }
}

TEST(QXKtx2Broken, WhatIsNoFileIsRefused) {
  QXC::QXTestFolder const folder;
  EXPECT_EQ(DecodeFile(folder.GetPath()).m_nLength, 0);
  EXPECT_EQ(DecodeFile(folder.GetPath() / "missing.ktx2").m_nLength, 0);
  EXPECT_EQ(DecodeFile(folder.Write("empty.ktx2", "")).m_nLength, 0);
  EXPECT_EQ(DecodeFile("").m_nLength, 0);
  std::filesystem::path const pipe = folder.GetPath() / "pipe.ktx2";
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_EQ(DecodeFile(pipe).m_nLength, 0);
}

TEST(QXKtx2Broken, FailureLeavesTheNumbersAlone) {
  QXC::QXTestFolder const folder;
  Decoded const result = DecodeFile(folder.Write("x.ktx2", "no texture"));
  EXPECT_EQ(result.m_nLength, 0);
  for (int const nNumber :
      {result.m_nWidth, result.m_nHeight, result.m_nIgnored, result.m_nMipCount, result.m_nKind, result.m_nFormat})
    EXPECT_EQ(nNumber, -1);
}

TEST(QXKtx2Broken, OnlyFourBytesAPixelAreKnown) {
  std::filesystem::path const path = Ktx2Folder() / "raw_r8_64_linear.ktx2";
  EXPECT_EQ(DecodeFile(path, 4).m_nLength, 64 * 64 * 4);
  for (int const nOption : {-4, 0, 1, 2, 3, 5, 8, 16}) EXPECT_EQ(DecodeFile(path, nOption).m_nLength, 0) << nOption;
}

TEST(QXKtx2Broken, NoPlaceForTheBlockIsAFailure) {
  int n = 0;
  EXPECT_EQ(
      QXC::QXImageOperator::DecodeKTX2(QXC::Wide(Ktx2Folder() / "raw_r8_64_linear.ktx2"), 4, nullptr, n, n, n, n, n, n),
      0);
}

/// Gives the library's limits back.
class QXKtx2HostLimits : public testing::Test {
protected:
  void TearDown() override { QXC::QXFileParseToolkit::SetImageLimits(m_nEdge, m_nBytes); }

  unsigned int m_nEdge = QXC::QXFileParseToolkit::GetImageMaxEdge();
  QXUInt64 m_nBytes = QXC::QXFileParseToolkit::GetImageMaxBytes();
};

TEST_F(QXKtx2HostLimits, AreThoseOfAllImages) {
  std::filesystem::path const path = Ktx2Folder() / "raw_rgba8_64_srgb_mip.ktx2";
  int const nLength = DecodeFile(path).m_nLength;
  ASSERT_EQ(nLength, 4 * (4096 + 1024 + 256 + 64 + 16 + 4 + 1));
  QXC::QXFileParseToolkit::SetImageLimits(64, static_cast<QXUInt64>(nLength));
  EXPECT_EQ(DecodeFile(path).m_nLength, nLength);
  QXC::QXFileParseToolkit::SetImageLimits(63, static_cast<QXUInt64>(nLength));
  EXPECT_EQ(DecodeFile(path).m_nLength, 0);
  QXC::QXFileParseToolkit::SetImageLimits(64, static_cast<QXUInt64>(nLength) - 1);
  EXPECT_EQ(DecodeFile(path).m_nLength, 0);
}

TEST_F(QXKtx2HostLimits, CannotPassWhatTheLengthCanSay) {
  // 32768 x 16384 pixels of one byte are 2^31 bytes decoded. The level is a frame of 4096 blocks of Zstandard, each one
  // byte 128 KiB times over.
  Bytes arrLevel = {0x28, 0xB5, 0x2F, 0xFD, 0x00, 0x38};
  for (std::uint32_t nBlock = 0; nBlock < 4096; ++nBlock) {
    std::uint32_t const nHead = (nBlock == 4095 ? 1u : 0u) | 1u << 1 | 131072u << 3;
    for (unsigned int nShift = 0; nShift < 32; nShift += 8)
      arrLevel.push_back(static_cast<unsigned char>(nHead >> nShift));
  }
  Ktx2Maker maker;
  maker.m_nFormat = 9;
  maker.m_nWidth = 2;
  maker.m_nHeight = 1;
  maker.m_arrLevels = {arrLevel};
  Bytes arrFile = maker.Make();
  Store32(arrFile, 20, 32768);
  Store32(arrFile, 24, 16384);
  Store32(arrFile, 44, 2);
  Store64(arrFile, 96, 1u << 29);
  QXKtx2Limits limits;
  limits.m_nMaxBytes = 1ULL << 31;
  ASSERT_TRUE(QXKtx2File().Open(arrFile.data(), arrFile.size(), limits));

  QXC::QXTestFolder const folder;
  std::string_view const bytes(reinterpret_cast<char const*>(arrFile.data()), arrFile.size());
  std::filesystem::path const path = folder.Write("x.ktx2", bytes);
  QXC::QXFileParseToolkit::SetImageLimits(65536, 1ULL << 31);
  EXPECT_EQ(DecodeFile(path).m_nLength, 0);
}

TEST(QXKtx2Broken, TextureKeepsWhatItHad) {
  QXC::QXTestFolder const folder;
  QXC::QXBareTexture texture;
  ASSERT_EQ(texture.LoadKTX2(QXC::Wide(Ktx2Folder() / "bc7_rgba_100x60_srgb_mip.ktx2")), 1);
  void const* const pPixels = texture.m_TextureData.m_pPixels;
  EXPECT_EQ(texture.LoadKTX2(QXC::Wide(folder.Write("x.ktx2", "no texture"))), 0);
  EXPECT_EQ(texture.LoadKTX2(QXC::Wide(folder.GetPath() / "missing.ktx2")), 0);
  EXPECT_EQ(texture.LoadKTX2(QXC::QdcUnicodeString()), 0);
  EXPECT_EQ(texture.m_TextureData.m_pPixels, pPixels);
  EXPECT_EQ(texture.m_TextureData.m_nWidth, 100u);
  EXPECT_EQ(texture.m_arrMipmapOffset.GetSize(), 7u);
  EXPECT_EQ(texture.m_bKtx2Flag, 1);
  // The flag follows the next file.
  ASSERT_EQ(texture.LoadKTX2(QXC::Wide(Ktx2Folder() / "raw_r8_64_linear.ktx2")), 1);
  EXPECT_EQ(texture.m_bKtx2Flag, 0);
  EXPECT_EQ(texture.m_arrMipmapOffset.GetSize(), 1u);
}

}  // namespace
