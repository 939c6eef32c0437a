#include <QxGraphics3D/texture/QXTexture.h>

#include <QxGraphics3D/frame/foundation/base3d/QXMathEngine.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseToolkit.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileType.h>

#include <tests/QXBareTexture.h>
#include <tests/foundation/toolkit/QXTestFolder.h>
#include <tests/texture/QXFedParser.h>
#include <tests/texture/QXSmallFiles.h>

#include <gtest/gtest.h>

#include <cstring>
#include <stdexcept>
#include <vector>

#include <pthread.h>

namespace QXC {
namespace {

/// Pictures for ".png" come from the test.
class QXTextureLoad : public testing::Test {
protected:
  static constexpr wchar_t const* Path = L"/nowhere/picture.PNG";

  void Feed(QXImageData* pImage) {
    g_Fed.m_FillImages = [pImage](QdcArray<QXImageData*>& arrImages) { arrImages.Add(pImage); };
  }
  unsigned char Load(unsigned char bWiden = 0) { return m_Texture.LoadImageData(Path, 0, 0, bWiden); }
  void ExpectFormat(QX3DPixelFormat eFormat, unsigned int nWidth, unsigned int nHeight) {
    EXPECT_EQ(m_Texture.m_bLoadedImage, 1);
    EXPECT_EQ(m_Texture.m_TextureData.m_eFormat, eFormat);
    EXPECT_EQ(m_Texture.m_TextureData.m_nWidth, nWidth);
    EXPECT_EQ(m_Texture.m_TextureData.m_nHeight, nHeight);
    EXPECT_NE(m_Texture.m_TextureData.m_pPixels, nullptr);
  }
  /// The result of a parser that brought nothing: the paths are told, the image is not there.
  void ExpectNothingCame(unsigned char bLoadedImage) {
    EXPECT_EQ(m_Texture.m_TextureData.m_pPixels, nullptr);
    EXPECT_EQ(m_Texture.m_bLoadedImage, bLoadedImage);
    EXPECT_TRUE(m_Texture.m_strTexFilePath == Path);
    EXPECT_TRUE(m_Texture.m_strImgRealFilePath == Path);
  }
  void ExpectFailed() {
    EXPECT_EQ(m_Texture.m_bLoadedImage, 0);
    EXPECT_TRUE(m_Texture.m_strTexFilePath == L"name");
    EXPECT_TRUE(m_Texture.m_strImgRealFilePath == L"name");
  }

  QXFedType m_Type{QXFileType::EM_IMAGE_PNG};
  QXBareTexture m_Texture{L"name"};
};

TEST_F(QXTextureLoad, OfNoPathFailsWithoutAParser) {
  EXPECT_EQ(m_Texture.LoadImageData(L"", 0, 1, 1), 0);
  EXPECT_EQ(g_Fed.m_nMade, 0);
  ExpectFailed();
}

TEST_F(QXTextureLoad, HandsPathTypeFlagAndIndexToTheParser) {
  EXPECT_EQ(m_Texture.LoadImageData(Path, 9, 5, 0), 1);
  EXPECT_TRUE(g_Fed.m_strPath == Path);
  EXPECT_EQ(g_Fed.m_nType, 123);
  EXPECT_EQ(g_Fed.m_strText.IsEmpty(), 1);
  EXPECT_EQ(g_Fed.m_nFlag, 5);
  EXPECT_EQ(g_Fed.m_nIndex, -1);
  EXPECT_EQ(g_Fed.m_nMade, 1);
  EXPECT_EQ(g_Fed.m_nLiving, 0);
}

TEST_F(QXTextureLoad, StoresThePathTwice) {
  Feed(MakeFedImage(4, 4, 32));
  EXPECT_EQ(Load(), 1);
  EXPECT_TRUE(m_Texture.m_strTexFilePath == Path);
  EXPECT_TRUE(m_Texture.m_strImgRealFilePath == Path);
}

TEST_F(QXTextureLoad, ScalesTo128By64WhatHas100By60) {
  QXImageData* const pImage = MakeFedImage(100, 60, 24);
  std::vector<unsigned char> vecExpected(128 * 64 * 3);
  ASSERT_EQ(QXMathEngine::ScaleImageInternal(
                3, 100, 60, static_cast<unsigned char*>(pImage->m_pPixels), 128, 64, vecExpected.data(), 100 * 60 * 3),
      1);
  Feed(pImage);
  EXPECT_EQ(Load(), 1);
  ExpectFormat(PF_R8G8B8, 128, 64);
  EXPECT_EQ(m_Texture.m_TextureData.GetBlockLength(), vecExpected.size());
  EXPECT_EQ(std::memcmp(m_Texture.m_TextureData.m_pPixels, vecExpected.data(), vecExpected.size()), 0);
}

TEST_F(QXTextureLoad, TakesABlockOverWhoseEdgesArePowersOfTwo) {
  QXImageData* const pImage = MakeFedImage(256, 256, 8);
  void const* const pBlock = pImage->m_pPixels;
  Feed(pImage);
  EXPECT_EQ(Load(), 1);
  ExpectFormat(PF_L8, 256, 256);
  EXPECT_EQ(m_Texture.m_TextureData.m_pPixels, pBlock);
  EXPECT_EQ(m_Texture.m_TextureData.GetBlockLength(), 65536u);
}

TEST_F(QXTextureLoad, ForgetsTheDataSizeOfAFormerBlock) {
  m_Texture.m_TextureData.m_nDataSize = 1000000;
  Feed(MakeFedImage(4, 4, 24));
  EXPECT_EQ(m_Texture.LoadImageData(Path, 0, 0, 1), 1);
  ExpectFormat(PF_A8R8G8B8, 4, 4);
  EXPECT_EQ(m_Texture.m_TextureData.m_nDataSize, 0u);
  EXPECT_EQ(m_Texture.m_TextureData.GetBlockLength(), 64u);
}

TEST_F(QXTextureLoad, ScalesWhereOneEdgeAloneIsNoPowerOfTwo) {
  Feed(MakeFedImage(64, 33, 32));
  EXPECT_EQ(Load(), 1);
  ExpectFormat(PF_A8R8G8B8, 64, 64);
  Feed(MakeFedImage(33, 64, 32));
  EXPECT_EQ(Load(), 1);
  ExpectFormat(PF_A8R8G8B8, 64, 64);
}

struct DepthCase {
  unsigned char m_nBitDepth;
  unsigned int m_nPixelBytes;
  QX3DPixelFormat m_eFormat;
};

class QXTextureLoadDepths : public QXTextureLoad, public testing::WithParamInterface<DepthCase> {};

TEST_P(QXTextureLoadDepths, DecideFormatAndPixelSize) {
  DepthCase const& depth = GetParam();
  Feed(MakeFedImage(8, 4, depth.m_nBitDepth, depth.m_nPixelBytes));
  EXPECT_EQ(Load(), 1);
  ExpectFormat(depth.m_eFormat, 8, 4);
  Feed(MakeFedImage(5, 3, depth.m_nBitDepth, depth.m_nPixelBytes));
  EXPECT_EQ(Load(), 1);
  ExpectFormat(depth.m_eFormat, 8, 4);
  EXPECT_EQ(m_Texture.m_TextureData.GetBlockLength(), 8 * 4 * depth.m_nPixelBytes);
}

INSTANTIATE_TEST_SUITE_P(Depths, QXTextureLoadDepths,
    testing::Values(DepthCase{8, 1, PF_L8}, DepthCase{24, 3, PF_R8G8B8}, DepthCase{32, 4, PF_A8R8G8B8},
        DepthCase{80, 1, PF_L8}, DepthCase{16, 4, PF_A8R8G8B8}, DepthCase{0, 4, PF_A8R8G8B8},
        DepthCase{99, 4, PF_A8R8G8B8}));

TEST_F(QXTextureLoad, WidensThreeBytesWhereAsked) {
  QXImageData* const pImage = MakeFedImage(2, 2, 24);
  auto const* const pBlock = static_cast<unsigned char*>(pImage->m_pPixels);
  std::vector<unsigned char> const vecBytes(pBlock, pBlock + 12);
  Feed(pImage);
  EXPECT_EQ(Load(1), 1);
  ExpectFormat(PF_A8R8G8B8, 2, 2);
  unsigned char const* pPixel = m_Texture.m_TextureData.m_pPixels;
  for (std::size_t i = 0; i < 4; ++i, pPixel += 4) {
    EXPECT_EQ(std::memcmp(pPixel, vecBytes.data() + i * 3, 3), 0) << i;
    EXPECT_EQ(pPixel[3], 255) << i;
  }
}

TEST_F(QXTextureLoad, WidensNothingElse) {
  constexpr unsigned char Depths[] = {8, 32};
  for (unsigned char const nDepth : Depths) {
    QXImageData* const pImage = MakeFedImage(2, 2, nDepth);
    void const* const pBlock = pImage->m_pPixels;
    Feed(pImage);
    EXPECT_EQ(Load(1), 1);
    EXPECT_EQ(m_Texture.m_TextureData.m_pPixels, pBlock) << int{nDepth};
  }
}

// A texture that once carried a file's bytes keeps their code: nothing resets it, and what comes later is not widened.
TEST_F(QXTextureLoad, WidensByTheTexturesCompressionAndNotTheImages) {
  QXImageData* const pImage = MakeFedImage(2, 2, 24);
  pImage->m_nCompression = 16;
  Feed(pImage);
  EXPECT_EQ(Load(1), 1);
  ExpectFormat(PF_A8R8G8B8, 2, 2);
  EXPECT_EQ(m_Texture.m_TextureData.m_nCompression, 0u);

  m_Texture.m_TextureData.m_nCompression = 16;
  Feed(MakeFedImage(2, 2, 24));
  EXPECT_EQ(Load(1), 1);
  ExpectFormat(PF_R8G8B8, 2, 2);
  EXPECT_EQ(m_Texture.m_TextureData.m_nCompression, 16u);
}

TEST_F(QXTextureLoad, ReleasesTheOldImageBeforeTheParserReads) {
  m_Texture.m_TextureData.m_pPixels = new unsigned char[16];
  unsigned char const* pSeen = m_Texture.m_TextureData.m_pPixels;
  g_Fed.m_OnOpen = [&] { pSeen = m_Texture.m_TextureData.m_pPixels; };
  Feed(MakeFedImage(2, 2, 32));
  EXPECT_EQ(Load(), 1);
  EXPECT_EQ(pSeen, nullptr);
}

TEST_F(QXTextureLoad, TakesTheFirstOfManyImages) {
  QXImageData* const pFirst = MakeFedImage(2, 2, 32);
  void const* const pBlock = pFirst->m_pPixels;
  g_Fed.m_FillImages = [=](QdcArray<QXImageData*>& arrImages) {
    arrImages.Add(pFirst);
    arrImages.Add(MakeFedImage(4, 4, 32));
    arrImages.Add(nullptr);
    arrImages.Add(MakeFedImage(8, 8, 8));
  };
  EXPECT_EQ(Load(), 1);
  EXPECT_EQ(m_Texture.m_TextureData.m_pPixels, pBlock);
}

TEST_F(QXTextureLoad, SucceedsWithoutAnImageWhereTheParserFails) {
  g_Fed.m_bReads = 0;
  Feed(MakeFedImage(2, 2, 32));
  EXPECT_EQ(Load(), 1);
  ExpectNothingCame(0);
}

TEST_F(QXTextureLoad, SucceedsWithoutAnImageWhereTheParserCannotOpen) {
  g_Fed.m_bOpens = 0;
  Feed(nullptr);
  EXPECT_EQ(Load(), 1);
  EXPECT_EQ(g_Fed.m_nIndex, 12345) << "nothing is read from a file that is not open";
  ExpectNothingCame(0);
}

TEST_F(QXTextureLoad, KeepsTheFlagOfAnEarlierImage) {
  Feed(MakeFedImage(2, 2, 32));
  EXPECT_EQ(Load(), 1);
  g_Fed.m_bReads = 0;
  Feed(MakeFedImage(2, 2, 32));
  EXPECT_EQ(Load(), 1);
  ExpectNothingCame(1);
}

TEST_F(QXTextureLoad, TakesAnEmptyListForNothing) {
  EXPECT_EQ(Load(), 1);
  ExpectNothingCame(0);
}

TEST_F(QXTextureLoad, TakesARecordThatIsNoImageForNothing) {
  Feed(nullptr);
  EXPECT_EQ(Load(), 1);
  ExpectNothingCame(0);
  Feed(new QXImageData);
  EXPECT_EQ(Load(), 1);
  ExpectNothingCame(0);
  for (bool const bWidth : {false, true}) {
    QXImageData* const pImage = MakeFedImage(4, 4, 32);
    (bWidth ? pImage->m_nWidth : pImage->m_nHeight) = 0;
    Feed(pImage);
    EXPECT_EQ(Load(), 1);
    ExpectNothingCame(0);
  }
  for (unsigned int const nEdge : {4u, 5u}) {
    auto* const pImage = new QXImageData;
    pImage->m_nWidth = pImage->m_nHeight = nEdge;
    pImage->m_nBitDepth = 32;
    pImage->m_nPitch = nEdge * 4;
    Feed(pImage);
    EXPECT_EQ(Load(), 1);
    ExpectNothingCame(0);
  }
}

TEST_F(QXTextureLoad, OfATypeThatNobodyReadsLeavesTheTextureAlone) {
  auto* const pOld = new unsigned char[16];
  m_Texture.m_TextureData.m_pPixels = pOld;
  for (wchar_t const* szPath : {L"/nowhere/picture.doc", L"/nowhere/picture", L"/x.png/picture", L"a.png.|temp"}) {
    EXPECT_EQ(m_Texture.LoadImageData(szPath, 0, 0, 0), 0) << szPath;
    ExpectFailed();
    EXPECT_EQ(m_Texture.m_TextureData.m_pPixels, pOld) << szPath;
  }
  EXPECT_EQ(g_Fed.m_nMade, 0);
}

TEST_F(QXTextureLoad, CatchesWhateverTheParserRaises) {
  g_Fed.m_FillImages = [](QdcArray<QXImageData*>& arrImages) {
    arrImages.Add(MakeFedImage(2, 2, 32));
    throw std::runtime_error("broken");
  };
  EXPECT_EQ(Load(), 0);
  ExpectFailed();
  EXPECT_EQ(g_Fed.m_nLiving, 0);
  g_Fed.m_OnOpen = [] { throw 5; };
  EXPECT_EQ(Load(), 0);
  ExpectFailed();
  EXPECT_EQ(g_Fed.m_nLiving, 0);
  EXPECT_EQ(g_Fed.m_nMade, 2);
}

// Ending a thread unwinds its stack with an exception that must not be swallowed: the process would be aborted.
TEST_F(QXTextureLoad, LetsAThreadEndInsideTheParser) {
  g_Fed.m_FillImages = [](QdcArray<QXImageData*>& arrImages) {
    arrImages.Add(MakeFedImage(2, 2, 32));
    pthread_exit(&g_Fed);
  };
  pthread_t thread{};
  auto const pfnLoad = [](void* pTexture) -> void* {
    static_cast<QXTexture*>(pTexture)->LoadImageData(Path, 0, 0, 0);
    return nullptr;
  };
  ASSERT_EQ(pthread_create(&thread, nullptr, pfnLoad, &m_Texture), 0);
  void* pResult = nullptr;
  ASSERT_EQ(pthread_join(thread, &pResult), 0);
  EXPECT_EQ(pResult, &g_Fed);
  EXPECT_EQ(g_Fed.m_nLiving, 0);
  ExpectFailed();
}

/// Limits of the readers while it lives.
class LimitsGuard {
public:
  LimitsGuard(unsigned int nMaxEdge, QXUInt64 nMaxBytes) { QXFileParseToolkit::SetImageLimits(nMaxEdge, nMaxBytes); }
  ~LimitsGuard() { QXFileParseToolkit::SetImageLimits(m_nMaxEdge, m_nMaxBytes); }

private:
  unsigned int m_nMaxEdge = QXFileParseToolkit::GetImageMaxEdge();
  QXUInt64 m_nMaxBytes = QXFileParseToolkit::GetImageMaxBytes();
};

TEST_F(QXTextureLoad, FailsWhereTheScaledImageWouldBeTooLarge) {
  LimitsGuard const limits(65536, 4 * 4);
  Feed(MakeFedImage(3, 4, 32));
  EXPECT_EQ(Load(), 1);
  ExpectFormat(PF_A8R8G8B8, 4, 4);
  m_Texture.m_bLoadedImage = 0;
  m_Texture.m_strTexFilePath = L"name";
  m_Texture.m_strImgRealFilePath = L"name";
  Feed(MakeFedImage(5, 4, 32));
  EXPECT_EQ(Load(), 0);
  ExpectFailed();
  EXPECT_EQ(m_Texture.m_TextureData.m_pPixels, nullptr);
}

TEST_F(QXTextureLoad, FailsWhereThereCanBeNoSuchBlock) {
  QXImageData* const pImage = MakeFedImage(3, 3, 32);
  pImage->m_nWidth = 0xC0000000u;
  pImage->m_nHeight = 0x7FFFFFFFu;
  Feed(pImage);
  EXPECT_EQ(Load(), 0);
  ExpectFailed();
}

// The resampler is told how long the block is and does not read behind it.
TEST_F(QXTextureLoad, FailsWhereTheBlockIsShorterThanItsSize) {
  QXImageData* const pImage = MakeFedImage(5, 3, 32);
  pImage->m_nHeight = 5;
  pImage->m_nPitch = 12;
  Feed(pImage);
  EXPECT_EQ(Load(), 0);
  ExpectFailed();
  EXPECT_EQ(m_Texture.m_TextureData.m_pPixels, nullptr);
}

TEST_F(QXTextureLoad, KnowsHowShortABlockIsThatItTakesOver) {
  QXImageData* const pImage = MakeFedImage(4, 4, 8);
  pImage->m_nBitDepth = 32;
  Feed(pImage);
  EXPECT_EQ(Load(), 1);
  ExpectFormat(PF_A8R8G8B8, 4, 4);
  EXPECT_EQ(m_Texture.m_TextureData.GetBlockLength(), 16u);
  m_Texture.FlipTexture();
}

TEST_F(QXTextureLoad, ByItsOwnPathReadsTheTexturesFile) {
  m_Texture.m_strTexFilePath = Path;
  EXPECT_EQ(m_Texture.LoadImageData(9, 5, 0), 1);
  EXPECT_TRUE(g_Fed.m_strPath == Path);
  EXPECT_EQ(g_Fed.m_nFlag, 5);
  EXPECT_TRUE(m_Texture.m_strTexFilePath == Path);
  Feed(MakeFedImage(2, 2, 24));
  EXPECT_EQ(m_Texture.LoadImageData(0, 0, 1), 1);
  ExpectFormat(PF_A8R8G8B8, 2, 2);
}

TEST_F(QXTextureLoad, ByItsOwnPathReadsNothingTwice) {
  m_Texture.m_strTexFilePath = Path;
  m_Texture.m_bLoadedImage = 1;
  EXPECT_EQ(m_Texture.LoadImageData(0, 0, 0), 1);
  m_Texture.m_bLoadedImage = 0;
  m_Texture.m_nBindID = 1;
  EXPECT_EQ(m_Texture.LoadImageData(0, 0, 0), 1);
  EXPECT_EQ(g_Fed.m_nMade, 0);
  EXPECT_EQ(m_Texture.m_bLoadedImage, 0);
}

TEST_F(QXTextureLoad, ByAnEmptyOwnPathFails) {
  QXBareTexture texture;
  EXPECT_EQ(texture.LoadImageData(0, 0, 0), 0);
}

class QXTextureLoadKtx2 : public testing::Test {
protected:
  /// Levels of 4 by 2, 2 by 1 and 1 by 1.
  QdcUnicodeString Write(char const* szName) { return Wide(m_Folder.Write(szName, MakeKtx2(4, 2, "rgba"))); }
  void ExpectLevels() {
    QXTextureData const& data = m_Texture.m_TextureData;
    EXPECT_EQ(data.m_eFormat, PF_A8B8G8R8);
    EXPECT_EQ(data.m_nWidth, 4u);
    EXPECT_EQ(data.m_nHeight, 2u);
    EXPECT_EQ(data.m_nDataSize, 44u);
    EXPECT_EQ(data.GetBlockLength(), 44u);
    ASSERT_NE(data.m_pPixels, nullptr);
    for (std::size_t i = 0; i < 44; ++i) EXPECT_EQ(data.m_pPixels[i], "rgba"[i % 4]) << i;
    EXPECT_EQ(m_Texture.m_arrMipmapOffset.GetSize(), 3u);
    EXPECT_EQ(m_Texture.m_bLoadedImage, 1);
    EXPECT_EQ(m_Texture.m_bKtx2Flag, 0);
  }

  QXFedType m_Type{QXFileType::EM_IMAGE_KTX2};
  QXTestFolder m_Folder;
  QXBareTexture m_Texture{L"name"};
};

TEST_F(QXTextureLoadKtx2, KeepsTheNameAndStoresTheFile) {
  for (char const* szName : {"a.ktx2", "b.KTX2", "c.kTx2"}) {
    QdcUnicodeString const strPath = Write(szName);
    EXPECT_EQ(m_Texture.LoadImageData(strPath, 0, 0, 1), 1) << szName;
    EXPECT_EQ(g_Fed.m_nMade, 0) << szName;
    ExpectLevels();
    EXPECT_TRUE(m_Texture.m_strTexFilePath == L"name");
    EXPECT_TRUE(m_Texture.m_strImgRealFilePath == strPath);
  }
}

TEST_F(QXTextureLoadKtx2, ByItselfTouchesNoPath) {
  m_Texture.m_TextureData.m_pPixels = new unsigned char[16];
  m_Texture.m_TextureData.m_nCompression = 16;
  m_Texture.m_bKtx2Flag = 1;
  EXPECT_EQ(m_Texture.LoadKTX2(Write("a.ktx2")), 1);
  ExpectLevels();
  EXPECT_EQ(m_Texture.m_TextureData.m_nCompression, 16u) << "only the decoder's results are stored";
  EXPECT_TRUE(m_Texture.m_strTexFilePath == L"name");
  EXPECT_TRUE(m_Texture.m_strImgRealFilePath == L"name");
}

TEST_F(QXTextureLoadKtx2, ReadsWhateverTheFileIsCalled) {
  EXPECT_EQ(m_Texture.LoadKTX2(Write("a.png")), 1);
  ExpectLevels();
}

TEST_F(QXTextureLoadKtx2, LeavesTheTextureAloneWhereItFails) {
  m_Texture.m_TextureData.m_pPixels = new unsigned char[16];
  m_Texture.m_bKtx2Flag = 1;
  QdcUnicodeString const strBroken = Wide(m_Folder.Write("broken.KTX2", MakeKtx2(4, 2, "rgba").substr(0, 287)));
  for (QdcUnicodeString const& strPath : {QdcUnicodeString(L"/nowhere/a.KTX2"), strBroken}) {
    EXPECT_EQ(m_Texture.LoadImageData(strPath, 0, 0, 0), 0);
    EXPECT_EQ(m_Texture.LoadKTX2(strPath), 0);
    EXPECT_TRUE(m_Texture.m_strTexFilePath == L"name");
    EXPECT_TRUE(m_Texture.m_strImgRealFilePath == L"name");
    EXPECT_EQ(m_Texture.m_bLoadedImage, 0);
    EXPECT_EQ(m_Texture.m_bKtx2Flag, 1);
    EXPECT_NE(m_Texture.m_TextureData.m_pPixels, nullptr);
    EXPECT_EQ(m_Texture.m_arrMipmapOffset.GetSize(), 1u);
  }
  EXPECT_EQ(m_Texture.LoadKTX2(L""), 0);
  EXPECT_EQ(g_Fed.m_nMade, 0);
}

TEST_F(QXTextureLoadKtx2, FlagsBlocksThatStayCompressed) {
  QdcUnicodeString const strPath =
      QdcUnicodeString::FromUTF8(QX_SOURCE_DIR "/tests/data/ktx2/bc7_rgba_128_mixed_linear_zlib.ktx2");
  EXPECT_EQ(m_Texture.LoadKTX2(strPath), 1);
  EXPECT_EQ(m_Texture.m_bKtx2Flag, 1);
  EXPECT_EQ(m_Texture.m_TextureData.m_eFormat, PF_A8R8G8B8);
  EXPECT_EQ(m_Texture.m_TextureData.m_nDataSize, 128u * 128u);
  EXPECT_EQ(m_Texture.m_arrMipmapOffset.GetSize(), 1u);
  EXPECT_EQ(m_Texture.LoadKTX2(Write("a.ktx2")), 1);
  ExpectLevels();
}

}  // namespace
}  // namespace QXC
