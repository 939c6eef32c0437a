// The sample files through every road that the library has for them.
#include "QXKtx2Files.h"
#include "QXSha256.h"

#include <QxGraphics3D/frame/foundation/base3d/QXImageData.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseToolkit.h>
#include <QxGraphics3D/texture/QXTexture.h>
#include <tests/QXBareTexture.h>

#include <map>
#include <sstream>

namespace {

using namespace qxtest;

struct Level {
  int m_nWidth = 0;
  int m_nHeight = 0;
  std::string m_strDigest;
};

/// Levels of the first face of each file.
std::map<std::string, std::vector<Level>> ExpectedLevels() {
  std::map<std::string, std::vector<Level>> levels;
  std::ifstream file(Ktx2Folder() / "levels.tsv");
  std::string strLine;
  std::getline(file, strLine);
  while (std::getline(file, strLine)) {
    std::istringstream line(strLine);
    std::string strName;
    int nLevel = 0;
    int nFace = 0;
    int nBytes = 0;
    Level level;
    line >> strName >> nLevel >> nFace >> level.m_nWidth >> level.m_nHeight >> nBytes >> level.m_strDigest;
    EXPECT_EQ(nBytes, level.m_nWidth * level.m_nHeight * 4) << strLine;
    if (nFace == 0) levels[strName].push_back(level);
  }
  return levels;
}

bool IsBc7(std::string const& strName) {
  return strName.rfind("bc7", 0) == 0;
}

TEST(QXSha256, GivesThePublishedDigest) {
  EXPECT_EQ(QXSha256::Of(reinterpret_cast<unsigned char const*>("abc"), 3),
      "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
}

TEST(QXKtx2Samples, AreAllListed) {
  auto const levels = ExpectedLevels();
  EXPECT_EQ(SampleNames().size(), 28u);
  for (std::string const& strName : SampleNames()) EXPECT_EQ(levels.count(strName), 1u) << strName;
}

TEST(QXKtx2Samples, EveryLevelHasTheExpectedPixels) {
  for (auto const& [strName, levels] : ExpectedLevels()) {
    if (IsBc7(strName)) continue;
    Decoded const result = DecodeFile(Ktx2Folder() / (strName + ".ktx2"));
    ASSERT_GT(result.m_nLength, 0) << strName;
    EXPECT_EQ(result.m_nWidth, levels[0].m_nWidth) << strName;
    EXPECT_EQ(result.m_nHeight, levels[0].m_nHeight) << strName;
    EXPECT_EQ(result.m_nIgnored, 0) << strName;
    EXPECT_EQ(result.m_nMipCount, static_cast<int>(levels.size())) << strName;
    EXPECT_EQ(result.m_nKind, 13) << strName;
    EXPECT_EQ(result.m_nFormat, 13) << strName;
    std::size_t nAt = 0;
    for (std::size_t i = 0; i < levels.size(); ++i) {
      std::size_t const nBytes = static_cast<std::size_t>(levels[i].m_nWidth * levels[i].m_nHeight) * 4;
      ASSERT_LE(nAt + nBytes, result.m_arrBytes.size()) << strName << " level " << i;
      std::string const strDigest = QXSha256::Of(&result.m_arrBytes[nAt], nBytes);
      EXPECT_EQ(strDigest.substr(0, 16), levels[i].m_strDigest) << strName << " level " << i;
      nAt += nBytes;
    }
    EXPECT_EQ(nAt, result.m_arrBytes.size()) << strName;
  }
}

TEST(QXKtx2Samples, Bc7BlocksGoThroughUnpackedLargestLevelFirst) {
  Decoded const chain = DecodeFile(Ktx2Folder() / "bc7_rgba_100x60_srgb_mip.ktx2");
  Bytes const arrFile = SampleBytes("bc7_rgba_100x60_srgb_mip");
  Bytes arrBlocks;
  int nWidth = 100;
  int nHeight = 60;
  for (std::size_t nLevel = 0; nLevel < 7; ++nLevel) {
    int const nSize = ((nWidth + 3) / 4) * ((nHeight + 3) / 4) * 16;
    ASSERT_EQ(Fetch32(arrFile, 88 + 24 * nLevel), static_cast<std::uint32_t>(nSize));
    auto const itLevel = arrFile.begin() + Fetch32(arrFile, 80 + 24 * nLevel);
    arrBlocks.insert(arrBlocks.end(), itLevel, itLevel + nSize);
    nWidth = std::max(nWidth / 2, 1);
    nHeight = std::max(nHeight / 2, 1);
  }
  EXPECT_EQ(chain.m_arrBytes, arrBlocks);
  EXPECT_EQ(chain.m_nKind, 6);
  EXPECT_EQ(chain.m_nFormat, 12);
  EXPECT_EQ(chain.m_nMipCount, 7);
  EXPECT_EQ(chain.m_nWidth, 100);
  EXPECT_EQ(chain.m_nHeight, 60);
  EXPECT_EQ(chain.m_nIgnored, 0);

  Decoded const packed = DecodeFile(Ktx2Folder() / "bc7_rgba_128_mixed_linear_zlib.ktx2");
  Bytes const arrPacked = SampleBytes("bc7_rgba_128_mixed_linear_zlib");
  Bytes arrUnpacked(128 * 128);
  uLongf nUnpacked = arrUnpacked.size();
  ASSERT_EQ(
      uncompress(arrUnpacked.data(), &nUnpacked, &arrPacked[Fetch32(arrPacked, 80)], Fetch32(arrPacked, 88)), Z_OK);
  EXPECT_EQ(packed.m_arrBytes, arrUnpacked);
  EXPECT_EQ(packed.m_nKind, 6);
}

TEST(QXKtx2Samples, TextureTakesThePixelsAndTheFlag) {
  for (auto const& [strName, levels] : ExpectedLevels()) {
    Decoded const result = DecodeFile(Ktx2Folder() / (strName + ".ktx2"));
    QXC::QXBareTexture texture;
    ASSERT_EQ(texture.LoadKTX2(QXC::Wide(Ktx2Folder() / (strName + ".ktx2"))), 1) << strName;
    QXC::QXTextureData const& data = texture.m_TextureData;
    EXPECT_EQ(data.m_nWidth, static_cast<unsigned int>(levels[0].m_nWidth)) << strName;
    EXPECT_EQ(data.m_nHeight, static_cast<unsigned int>(levels[0].m_nHeight)) << strName;
    EXPECT_EQ(data.m_eFormat, IsBc7(strName) ? QXC::PF_A8R8G8B8 : QXC::PF_A8B8G8R8) << strName;
    EXPECT_EQ(data.m_nDataSize, static_cast<unsigned int>(result.m_nLength)) << strName;
    auto const* const pPixels = static_cast<unsigned char const*>(data.m_pPixels);
    EXPECT_EQ(Bytes(pPixels, pPixels + result.m_nLength), result.m_arrBytes) << strName;
    EXPECT_EQ(texture.m_arrMipmapOffset.GetSize(), levels.size()) << strName;
    EXPECT_EQ(texture.m_bKtx2Flag, IsBc7(strName) ? 1 : 0) << strName;
    EXPECT_EQ(texture.m_bLoadedImage, 1) << strName;
  }
}

TEST(QXKtx2Samples, ImageIsTheFirstLevelInTheOrderOfImages) {
  for (auto const& [strName, levels] : ExpectedLevels()) {
    Bytes const arrFile = SampleBytes(strName);
    QXC::QdcArray<QXC::QXImageData*> arrImages;
    unsigned char const bRead =
        QXC::QXFileParseToolkit::GetImageDataFromMemory(arrFile.data(), arrFile.size(), arrImages);
    ASSERT_EQ(bRead, IsBc7(strName) ? 0 : 1) << strName;
    ASSERT_EQ(arrImages.GetSize(), IsBc7(strName) ? 0u : 1u) << strName;
    if (IsBc7(strName)) continue;
    std::unique_ptr<QXC::QXImageData> const pImage(arrImages[0]);
    std::unique_ptr<unsigned char[]> const pPixels(static_cast<unsigned char*>(pImage->m_pPixels));
    ASSERT_EQ(pImage->m_nWidth, static_cast<unsigned int>(levels[0].m_nWidth)) << strName;
    ASSERT_EQ(pImage->m_nHeight, static_cast<unsigned int>(levels[0].m_nHeight)) << strName;
    EXPECT_EQ(pImage->m_nPitch, pImage->m_nWidth * 4) << strName;
    EXPECT_EQ(pImage->m_nBitDepth, 32) << strName;
    EXPECT_EQ(pImage->m_nCompression, 0) << strName;
    std::size_t const nBytes = std::size_t{pImage->m_nPitch} * pImage->m_nHeight;
    for (std::size_t i = 0; i < nBytes; i += 4) std::swap(pPixels[i], pPixels[i + 2]);
    EXPECT_EQ(QXSha256::Of(pPixels.get(), nBytes).substr(0, 16), levels[0].m_strDigest) << strName;
  }
}

}  // namespace
