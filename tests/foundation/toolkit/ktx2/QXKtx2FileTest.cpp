// The container: what is read, and what is refused before anything is allocated.
#include "QXKtx2Files.h"

#include <array>
#include <limits>

namespace {

using namespace qxtest;
using QXC::detail::QXKtx2Limits;

/// One level of counted bytes.
Ktx2Maker MakeBytes(
    std::uint32_t nFormat, std::size_t nBytesPerPixel, std::uint32_t nWidth = 3, std::uint32_t nHeight = 2) {
  Ktx2Maker maker;
  maker.m_nFormat = nFormat;
  maker.m_nWidth = nWidth;
  maker.m_nHeight = nHeight;
  maker.m_arrLevels = {CountedBytes(nBytesPerPixel * nWidth * nHeight)};
  return maker;
}

/// The four bytes of a pixel made of the channels at these places; -1 is 0, -2 is 255.
Bytes Rearranged(Bytes const& arrPixels, std::size_t nBytesPerPixel, std::array<int, 4> const& places) {
  Bytes arrResult;
  for (std::size_t i = 0; i < arrPixels.size(); i += nBytesPerPixel)
    for (int const nPlace : places)
      arrResult.push_back(nPlace == -1   ? static_cast<unsigned char>(0)
                          : nPlace == -2 ? static_cast<unsigned char>(255)
                                         : arrPixels[i + static_cast<std::size_t>(nPlace)]);
  return arrResult;
}

TEST(QXKtx2File, BytesOfEveryFormatBecomeRedGreenBlueAlpha) {
  struct Row {
    std::uint32_t m_nLinear;
    std::uint32_t m_nSrgb;
    std::size_t m_nBytes;
    std::array<int, 4> m_Places;
  };
  Row const rows[] = {{9, 15, 1, {0, -1, -1, -2}}, {16, 22, 2, {0, 1, -1, -2}}, {23, 29, 3, {0, 1, 2, -2}},
      {30, 36, 3, {2, 1, 0, -2}}, {37, 43, 4, {0, 1, 2, 3}}, {44, 50, 4, {2, 1, 0, 3}}};
  for (Row const& row : rows) {
    for (std::uint32_t const nFormat : {row.m_nLinear, row.m_nSrgb}) {
      for (std::uint32_t const nScheme : {0u, 2u, 3u}) {
        Ktx2Maker maker = MakeBytes(nFormat, row.m_nBytes);
        maker.m_nScheme = nScheme;
        Bytes const arrExpected = Rearranged(maker.m_arrLevels[0], row.m_nBytes, row.m_Places);
        EXPECT_EQ(DecodeBytes(maker.Make()), arrExpected) << nFormat << " scheme " << nScheme;
      }
    }
  }
}

TEST(QXKtx2File, OtherFormatsAreRefused) {
  // Signed and scaled bytes, four bits, 16 bits, floats, BC2, BC4 to BC6, ASTC, and numbers that mean nothing.
  for (std::uint32_t const nFormat : {1u, 2u, 10u, 11u, 13u, 24u, 38u, 41u, 51u, 70u, 97u, 109u, 130u, 135u, 136u, 139u,
           141u, 143u, 144u, 147u, 157u, 184u, 1000u, 0xFFFFFFFFu}) {
    for (std::size_t const nBytes : {1u, 2u, 3u, 4u, 8u, 16u})
      EXPECT_TRUE(DecodeBytes(MakeBytes(nFormat, nBytes).Make()).empty()) << nFormat;
  }
}

TEST(QXKtx2File, DescriptorOfAnotherColourModelIsRefused) {
  for (unsigned char const nModel : std::vector<unsigned char>{0, 2, 128, 130, 134, 163, 166}) {
    Ktx2Maker maker = MakeBytes(37, 4);
    maker.m_nModel = nModel;
    EXPECT_TRUE(DecodeBytes(maker.Make()).empty()) << int{nModel};
  }
  for (std::string const strName : {"bc1_rgb_64_srgb_mip", "bc3_rgba_64_srgb_mip_zstd", "bc7_rgba_100x60_srgb_mip"}) {
    Bytes arrFile = SampleBytes(strName);
    arrFile.at(Fetch32(arrFile, 48) + 12) = 1;
    EXPECT_TRUE(DecodeBytes(arrFile).empty()) << strName;
  }
}

TEST(QXKtx2File, OneBitOfTheIdentifierMakesItAnotherFile) {
  Bytes const arrFile = MakeBytes(37, 4).Make();
  for (std::size_t nBit = 0; nBit < 96; ++nBit) {
    Bytes arrBroken = arrFile;
    arrBroken[nBit / 8] = static_cast<unsigned char>(arrBroken[nBit / 8] ^ 1u << nBit % 8);
    EXPECT_TRUE(DecodeBytes(arrBroken).empty()) << nBit;
  }
}

TEST(QXKtx2File, TexturesOfOneAndOfThreeDimensionsAreRefused) {
  for (std::size_t const nField : {20u, 24u}) {
    Bytes arrFile = MakeBytes(37, 4, 1, 1).Make();
    ASSERT_EQ(DecodeBytes(arrFile).size(), 4u);
    Store32(arrFile, nField, 0);
    EXPECT_TRUE(DecodeBytes(arrFile).empty()) << nField;
  }
  for (std::uint32_t const nDepth : {1u, 2u, 0xFFFFFFFFu}) {
    Ktx2Maker maker = MakeBytes(37, 4);
    maker.m_nDepth = nDepth;
    EXPECT_TRUE(DecodeBytes(maker.Make()).empty()) << nDepth;
  }
}

TEST(QXKtx2File, EdgesUpToTheLimitAreRead) {
  EXPECT_EQ(DecodeBytes(MakeBytes(9, 1, 65536, 1).Make()).size(), 65536u * 4);
  EXPECT_EQ(DecodeBytes(MakeBytes(9, 1, 1, 65536).Make()).size(), 65536u * 4);
  EXPECT_TRUE(DecodeBytes(MakeBytes(9, 1, 65537, 1).Make()).empty());
  EXPECT_TRUE(DecodeBytes(MakeBytes(9, 1, 1, 65537).Make()).empty());
}

TEST(QXKtx2File, DecodedBytesOfAllLevelsCountForTheLimit) {
  Ktx2Maker maker = MakeBytes(9, 1, 5, 3);
  maker.m_nLevels = 3;
  maker.m_arrLevels = {CountedBytes(15), CountedBytes(2), CountedBytes(1)};
  QXKtx2Limits limits;
  limits.m_nMaxBytes = 4 * 18;
  EXPECT_EQ(DecodeBytes(maker.Make(), limits).size(), 72u);
  limits.m_nMaxBytes = 4 * 18 - 1;
  EXPECT_TRUE(DecodeBytes(maker.Make(), limits).empty());
}

TEST(QXKtx2File, NoLevelsMeanOne) {
  Ktx2Maker maker = MakeBytes(37, 4);
  maker.m_nLevels = 0;
  QXC::QXTestFolder const folder;
  Bytes const arrFile = maker.Make();
  Decoded const result =
      DecodeFile(folder.Write("x.ktx2", {reinterpret_cast<char const*>(arrFile.data()), arrFile.size()}));
  EXPECT_EQ(result.m_nMipCount, 1);
  EXPECT_EQ(result.m_arrBytes, maker.m_arrLevels[0]);
}

TEST(QXKtx2File, LevelsEndWhereBothEdgesAreOne) {
  // 9 x 2, 4 x 1, 2 x 1, 1 x 1.
  Ktx2Maker maker = MakeBytes(37, 4, 9, 2);
  maker.m_nLevels = 4;
  maker.m_arrLevels = {CountedBytes(72), CountedBytes(16), CountedBytes(8), CountedBytes(4)};
  Bytes arrExpected;
  for (Bytes const& level : maker.m_arrLevels) arrExpected.insert(arrExpected.end(), level.begin(), level.end());
  EXPECT_EQ(DecodeBytes(maker.Make()), arrExpected);
  maker.m_nLevels = 5;
  maker.m_arrLevels.push_back(CountedBytes(4));
  EXPECT_TRUE(DecodeBytes(maker.Make()).empty());
  for (std::uint32_t const nLevels : {6u, 32u, 33u, 0x80000000u, 0xFFFFFFFFu}) {
    maker.m_nLevels = nLevels;
    EXPECT_TRUE(DecodeBytes(maker.Make()).empty()) << nLevels;
  }
}

TEST(QXKtx2File, OfCubesAndArraysTheFirstPictureIsRead) {
  for (std::uint32_t const nScheme : {0u, 2u, 3u}) {
    for (std::uint32_t const nLayers : {0u, 1u, 3u}) {
      for (std::uint32_t const nFaces : {1u, 6u}) {
        Ktx2Maker maker;
        maker.m_nLayers = nLayers;
        maker.m_nFaces = nFaces;
        maker.m_nScheme = nScheme;
        maker.m_nLevels = 2;
        std::size_t const nImages = std::size_t{std::max(nLayers, 1u)} * nFaces;
        maker.m_arrLevels = {CountedBytes(16 * nImages), CountedBytes(4 * nImages)};
        Bytes arrExpected = CountedBytes(16);
        Bytes const arrSecond = CountedBytes(4);
        arrExpected.insert(arrExpected.end(), arrSecond.begin(), arrSecond.end());
        EXPECT_EQ(DecodeBytes(maker.Make()), arrExpected) << nScheme << ' ' << nLayers << ' ' << nFaces;
      }
    }
  }
}

TEST(QXKtx2File, FacesAreOneOrSixOfASquare) {
  for (std::uint32_t const nFaces : {0u, 2u, 5u, 7u, 12u, 0xFFFFFFFFu}) {
    Ktx2Maker maker;
    maker.m_nFaces = nFaces;
    maker.m_arrLevels = {CountedBytes(std::size_t{16} * std::min(nFaces, 12u))};
    EXPECT_TRUE(DecodeBytes(maker.Make()).empty()) << nFaces;
  }
  Ktx2Maker maker = MakeBytes(37, 4, 3, 2);
  maker.m_nFaces = 6;
  maker.m_arrLevels = {CountedBytes(24 * 6)};
  EXPECT_TRUE(DecodeBytes(maker.Make()).empty());
}

TEST(QXKtx2File, LayersThatTheBytesCannotHoldAreRefused) {
  for (std::uint32_t const nLayers : {2u, 1u << 28, 0xFFFFFFFFu}) {
    for (std::uint32_t const nScheme : {0u, 2u, 3u}) {
      Ktx2Maker maker = MakeBytes(37, 4, 2, 2);
      maker.m_nScheme = nScheme;
      maker.m_nLayers = nLayers;
      EXPECT_TRUE(DecodeBytes(maker.Make()).empty()) << nLayers;
      // Packed bytes are unpacked as far as the first picture; here the index says what no bytes can hold, and 16 bytes a
      // picture times 2^28 layers are 2^32.
      if (nScheme != 0 && nLayers == 2) continue;
      Bytes arrFile = maker.Make();
      Store64(arrFile, 96, std::uint64_t{16} * nLayers);
      EXPECT_TRUE(DecodeBytes(arrFile).empty()) << nLayers;
    }
    Bytes arrFile = SampleBytes("etc1s_rgb_64_srgb");
    Store32(arrFile, 32, nLayers);
    EXPECT_TRUE(DecodeBytes(arrFile).empty()) << nLayers;
  }
  // 2^31 + 1 layers of 30 pictures are 30 again in 32 bits.
  Bytes arrFile = SampleBytes("etc1s_cube_16_srgb_mip");
  Store32(arrFile, 32, 0x80000001u);
  EXPECT_TRUE(DecodeBytes(arrFile).empty());
}

TEST(QXKtx2File, LengthsOfALevelMustBeThoseOfItsPixels) {
  for (std::string const& strName : SampleNames()) {
    Bytes const arrFile = SampleBytes(strName);
    std::uint32_t const nLevels = std::max(Fetch32(arrFile, 40), 1u);
    for (std::size_t nLevel = 0; nLevel < nLevels; ++nLevel) {
      std::size_t const nEntry = 80 + 24 * nLevel;
      for (int const nChange : {-1, 1}) {
        Bytes arrBroken = arrFile;
        Store64(arrBroken, nEntry + 16, Fetch32(arrFile, nEntry + 16) + static_cast<std::uint64_t>(nChange));
        EXPECT_TRUE(DecodeBytes(arrBroken).empty()) << strName << " level " << nLevel << " unpacked";
        if (Fetch32(arrFile, 44) == 1) continue;  // with BasisLZ the slices say where they are
        arrBroken = arrFile;
        Store64(arrBroken, nEntry + 8, Fetch32(arrFile, nEntry + 8) + static_cast<std::uint64_t>(nChange));
        EXPECT_TRUE(DecodeBytes(arrBroken).empty()) << strName << " level " << nLevel << " packed";
      }
    }
  }
}

TEST(QXKtx2File, LevelOutsideTheFileOrInsideItsIndexIsRefused) {
  Bytes const arrFile = MakeBytes(37, 4).Make();
  std::uint64_t constexpr nMost = std::numeric_limits<std::uint64_t>::max();
  for (std::uint64_t const nOffset : {std::uint64_t{0}, std::uint64_t{80}, std::uint64_t{103},
           std::uint64_t{arrFile.size() - 23}, std::uint64_t{arrFile.size()}, nMost - 23, nMost}) {
    Bytes arrBroken = arrFile;
    Store64(arrBroken, 80, nOffset);
    EXPECT_TRUE(DecodeBytes(arrBroken).empty()) << nOffset;
  }
  for (std::uint64_t const nLength : {std::uint64_t{0}, std::uint64_t{arrFile.size()}, nMost, nMost - 100}) {
    Bytes arrBroken = arrFile;
    Store64(arrBroken, 88, nLength);
    Store64(arrBroken, 96, nLength);
    EXPECT_TRUE(DecodeBytes(arrBroken).empty()) << nLength;
  }
}

TEST(QXKtx2File, DescriptorThatContradictsItselfIsRefused) {
  Bytes const arrFile = MakeBytes(37, 4).Make();
  std::size_t const nAt = Fetch32(arrFile, 48);
  std::uint32_t const nSize = Fetch32(arrFile, 52);
  struct Change {
    std::size_t m_nPlace;
    std::uint32_t m_nValue;
  };
  Change const changes[] = {{48, 0xFFFFFFFF}, {48, static_cast<std::uint32_t>(arrFile.size())}, {52, 0}, {52, 27},
      {52, nSize - 1}, {52, nSize + 1}, {52, 0xFFFFFFFF}, {nAt, 0}, {nAt, nSize - 1}, {nAt, nSize + 1},
      {nAt + 4, 1},                       // another vendor
      {nAt + 4, 1u << 17},                // another kind
      {nAt + 8, 2},                       // a block of no bytes
      {nAt + 8, 2 | 24u << 16},           // without samples
      {nAt + 8, 2 | (nSize - 3) << 16}};  // longer than what it is in
  for (Change const& change : changes) {
    Bytes arrBroken = arrFile;
    Store32(arrBroken, change.m_nPlace, change.m_nValue);
    EXPECT_TRUE(DecodeBytes(arrBroken).empty()) << change.m_nPlace << ' ' << change.m_nValue;
  }
}

TEST(QXKtx2File, KeysAndValuesArePassedOverButLieInTheFile) {
  Bytes arrFile = SampleBytes("uastc_rgb_64_srgb");
  Bytes const arrPixels = DecodeBytes(arrFile);
  std::size_t const nKeys = Fetch32(arrFile, 56);
  for (std::size_t i = 0; i < Fetch32(arrFile, 60); ++i) arrFile[nKeys + i] = 0xFF;
  EXPECT_EQ(DecodeBytes(arrFile), arrPixels);
  Bytes arrBroken = arrFile;
  Store32(arrBroken, 60, 0xFFFFFFFF);
  EXPECT_TRUE(DecodeBytes(arrBroken).empty());
  Store32(arrFile, 56, 0xFFFFFFFF);
  EXPECT_TRUE(DecodeBytes(arrFile).empty());
}

TEST(QXKtx2File, SchemeMustFitTheFormat) {
  for (std::uint32_t const nScheme : {1u, 4u, 0x10000u, 0xFFFFFFFFu}) {
    Ktx2Maker maker = MakeBytes(37, 4);
    maker.m_nScheme = nScheme;
    EXPECT_TRUE(DecodeBytes(maker.Make()).empty()) << nScheme;
    Bytes arrFile = SampleBytes("uastc_rgb_64_srgb");
    Store32(arrFile, 44, nScheme);
    EXPECT_TRUE(DecodeBytes(arrFile).empty()) << nScheme;
  }
  for (std::uint32_t const nScheme : {0u, 2u, 3u}) {
    Bytes arrFile = SampleBytes("etc1s_rgb_64_srgb");
    Store32(arrFile, 44, nScheme);
    EXPECT_TRUE(DecodeBytes(arrFile).empty()) << nScheme;
  }
  // A format that has a number is not ETC1S, and codebooks belong to BasisLZ alone.
  Bytes arrFile = SampleBytes("etc1s_rgb_64_srgb");
  Store32(arrFile, 12, 37);
  EXPECT_TRUE(DecodeBytes(arrFile).empty());
  Ktx2Maker maker = MakeBytes(37, 4);
  maker.m_arrGlobalData = CountedBytes(40);
  EXPECT_TRUE(DecodeBytes(maker.Make()).empty());
}

TEST(QXKtx2File, CodebooksLieInTheFileAndDescribeEveryImage) {
  Bytes const arrFile = SampleBytes("etc1s_rgb_64_srgb_mip");
  for (std::uint64_t const nOffset : {std::uint64_t{arrFile.size()}, std::uint64_t{1} << 63}) {
    Bytes arrBroken = arrFile;
    Store64(arrBroken, 64, nOffset);
    EXPECT_TRUE(DecodeBytes(arrBroken).empty());
  }
  for (std::uint64_t const nLength : {std::uint64_t{0}, std::uint64_t{19}, std::uint64_t{7 * 20 - 1},
           std::uint64_t{Fetch32(arrFile, 72) - 1}, std::uint64_t{arrFile.size()}, ~std::uint64_t{0}}) {
    Bytes arrBroken = arrFile;
    Store64(arrBroken, 72, nLength);
    EXPECT_TRUE(DecodeBytes(arrBroken).empty()) << nLength;
  }
}

}  // namespace
