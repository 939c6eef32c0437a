#include <QxGraphics3D/texture/QXTexture.h>

#include <QxGraphics3D/frame/foundation/base3d/QXTextureData.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseToolkit.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileType.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXImageOperator.h>

#include <tests/foundation/toolkit/QXTestFolder.h>
#include <tests/texture/QXFedParser.h>

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <stdexcept>
#include <vector>

#include <sys/stat.h>

namespace QXC {
namespace {

constexpr wchar_t const* Path = L"/nowhere/picture.PNG";

struct ImageDelete {
  void operator()(QXImageData* pImage) const {
    delete[] static_cast<unsigned char*>(pImage->m_pPixels);
    delete pImage;
  }
};
using ImageHolder = std::unique_ptr<QXImageData, ImageDelete>;

unsigned char const* Bytes(QXImageData const& image) {
  return static_cast<unsigned char const*>(image.m_pPixels);
}

/// Pictures for ".png" come from the test.
class QXTextureStatic : public testing::Test {
protected:
  void Feed(QXImageData* pImage) {
    g_Fed.m_FillImages = [pImage](QdcArray<QXImageData*>& arrImages) { arrImages.Add(pImage); };
  }
  void FeedThree(QXImageData* pFirst) {
    g_Fed.m_FillImages = [pFirst](QdcArray<QXImageData*>& arrImages) {
      arrImages.Add(pFirst);
      arrImages.Add(nullptr);
      arrImages.Add(MakeFedImage(2, 2, 32));
    };
  }
  void FeedException() {
    g_Fed.m_FillImages = [](QdcArray<QXImageData*>& arrImages) {
      arrImages.Add(MakeFedImage(2, 2, 32));
      throw std::runtime_error("broken");
    };
  }
  static ImageHolder Load(wchar_t const* szPath, unsigned char bExpected) {
    // Whatever the caller's pointer held is not this operation's.
    QXImageData stranger;
    QXImageData* pImage = &stranger;
    EXPECT_EQ(QXTexture::LoadImageData(szPath, 0, pImage, 3), bExpected);
    EXPECT_EQ(pImage != nullptr, bExpected != 0);
    return ImageHolder(pImage == &stranger ? nullptr : pImage);
  }
  static ImageHolder LoadEx(QdcUnicodeString const& strPath) {
    return ImageHolder(QXTexture::LoadImageDataEx(strPath, nullptr));
  }
  static std::unique_ptr<QXTextureData> GetData(QdcUnicodeString const& strPath) {
    return std::unique_ptr<QXTextureData>(QXTexture::GetTextureData(strPath));
  }

  QXFedType m_Type{QXFileType::EM_IMAGE_PNG};
  QXTestFolder m_Folder;
};

using QXTextureLoadImage = QXTextureStatic;
using QXTextureLoadEx = QXTextureStatic;
using QXTextureGetData = QXTextureStatic;

TEST_F(QXTextureLoadImage, OfNoPathFails) {
  Load(L"", 0);
  EXPECT_EQ(g_Fed.m_nMade, 0);
}

TEST_F(QXTextureLoadImage, HandsPathFlagAndIndexToTheParser) {
  Load(Path, 0);
  EXPECT_TRUE(g_Fed.m_strPath == Path);
  EXPECT_EQ(g_Fed.m_nType, 123);
  EXPECT_EQ(g_Fed.m_nFlag, 3);
  EXPECT_EQ(g_Fed.m_nIndex, -1);
  EXPECT_EQ(g_Fed.m_nLiving, 0);
}

TEST_F(QXTextureLoadImage, WidensToOpaquePixelsInItsOwnSize) {
  FeedThree(MakeFedImage(5, 3, 24));
  ImageHolder const pImage = Load(Path, 1);
  EXPECT_EQ(pImage->m_nWidth, 5u);
  EXPECT_EQ(pImage->m_nHeight, 3u);
  EXPECT_EQ(pImage->m_nBitDepth, 32);
  ImageHolder const pSource(MakeFedImage(5, 3, 24));
  for (std::size_t i = 0; i < 15; ++i) {
    EXPECT_EQ(std::memcmp(Bytes(*pImage) + i * 4, Bytes(*pSource) + i * 3, 3), 0) << i;
    EXPECT_EQ(Bytes(*pImage)[i * 4 + 3], 255) << i;
  }
}

TEST_F(QXTextureLoadImage, TakesWidePixelsOver) {
  QXImageData* const pFed = MakeFedImage(5, 3, 32);
  void const* const pBlock = pFed->m_pPixels;
  Feed(pFed);
  EXPECT_EQ(Load(Path, 1)->m_pPixels, pBlock);
}

TEST_F(QXTextureLoadImage, FailsWithTheParser) {
  g_Fed.m_bReads = 0;
  FeedThree(MakeFedImage(2, 2, 32));
  Load(Path, 0);
  g_Fed.m_bOpens = 0;
  Load(Path, 0);
  Load(L"/nowhere/picture.doc", 0);
}

TEST_F(QXTextureLoadImage, FailsWithoutAnImage) {
  Load(Path, 0);
  Feed(nullptr);
  Load(Path, 0);
}

// The parser's record is the result, whatever can be made of it.
TEST_F(QXTextureLoadImage, HandsOutWhatCannotBeWidened) {
  Feed(new QXImageData);
  EXPECT_EQ(Load(Path, 1)->m_pPixels, nullptr);
  QXImageData* const pFed = MakeFedImage(4, 4, 16, 4);
  void const* const pBlock = pFed->m_pPixels;
  Feed(pFed);
  ImageHolder const pImage = Load(Path, 1);
  EXPECT_EQ(pImage->m_pPixels, pBlock);
  EXPECT_EQ(pImage->m_nBitDepth, 16);
}

TEST_F(QXTextureLoadImage, CatchesWhateverTheParserRaises) {
  FeedException();
  Load(Path, 0);
  EXPECT_EQ(g_Fed.m_nLiving, 0);
}

TEST_F(QXTextureLoadEx, OfNoFileFailsBeforeAnyParser) {
  EXPECT_EQ(LoadEx(L""), nullptr);
  EXPECT_EQ(LoadEx(Path), nullptr);
  EXPECT_EQ(LoadEx(Wide(m_Folder.GetPath())), nullptr);
  EXPECT_EQ(g_Fed.m_nMade, 0);
}

TEST_F(QXTextureLoadEx, GivesTheFirstImageAsItIs) {
  QdcUnicodeString const strPath = Wide(m_Folder.Write("a.png", "x"));
  QXImageData* const pFed = MakeFedImage(5, 3, 24);
  FeedThree(pFed);
  ImageHolder const pImage = LoadEx(strPath);
  ASSERT_EQ(pImage.get(), pFed);
  EXPECT_EQ(pImage->m_nBitDepth, 24);
  EXPECT_TRUE(g_Fed.m_strPath == strPath);
  EXPECT_EQ(g_Fed.m_nFlag, 1);
  EXPECT_EQ(g_Fed.m_nIndex, -1);
}

TEST_F(QXTextureLoadEx, ReadsAPathWithoutItsTemporaryMark) {
  QdcUnicodeString const strPath = Wide(m_Folder.Write("a.png", "x"));
  Feed(MakeFedImage(2, 2, 32));
  EXPECT_NE(LoadEx(strPath + L".|temp"), nullptr);
  EXPECT_TRUE(g_Fed.m_strPath == strPath);
  EXPECT_EQ(g_Fed.m_nType, 123);
}

TEST_F(QXTextureLoadEx, FailsWithTheParser) {
  QdcUnicodeString const strPath = Wide(m_Folder.Write("a.png", "x"));
  EXPECT_EQ(LoadEx(strPath), nullptr);
  Feed(nullptr);
  EXPECT_EQ(LoadEx(strPath), nullptr);
  FeedException();
  EXPECT_EQ(LoadEx(strPath), nullptr);
  g_Fed.m_bReads = 0;
  FeedThree(MakeFedImage(2, 2, 32));
  EXPECT_EQ(LoadEx(strPath), nullptr);
  EXPECT_EQ(LoadEx(Wide(m_Folder.Write("a.doc", "x"))), nullptr);
  EXPECT_EQ(g_Fed.m_nLiving, 0);
}

TEST_F(QXTextureLoadEx, GivesARawFileByteForByte) {
  QXFedType const type(QXFileType::EM_IMAGE_GIF);
  std::string const strBytes("not\0even\r\na picture", 19);
  for (char const* szName : {"a.gif", "b.GIF"}) {
    ImageHolder const pImage = LoadEx(Wide(m_Folder.Write(szName, strBytes)) + (szName[0] == 'b' ? L".|temp" : L""));
    ASSERT_NE(pImage, nullptr) << szName;
    EXPECT_EQ(pImage->m_nBitDepth, 16);
    EXPECT_EQ(pImage->m_nPitch, 19u);
    EXPECT_EQ(pImage->m_nWidth, 0u);
    EXPECT_EQ(pImage->m_nHeight, 0u);
    EXPECT_EQ(pImage->m_nCompression, 0);
    EXPECT_EQ(std::memcmp(Bytes(*pImage), strBytes.data(), 19), 0);
  }
  EXPECT_EQ(g_Fed.m_nMade, 0) << "the bytes travel undecoded";
}

TEST_F(QXTextureLoadEx, GivesABlockOfNoLengthForAnEmptyRawFile) {
  ImageHolder const pImage = LoadEx(Wide(m_Folder.Write("a.gif", "")));
  ASSERT_NE(pImage, nullptr);
  EXPECT_EQ(pImage->m_nPitch, 0u);
  EXPECT_NE(pImage->m_pPixels, nullptr);
}

TEST_F(QXTextureLoadEx, RefusesARawFileThatIsNone) {
  ASSERT_EQ(mkfifo((m_Folder.GetPath() / "pipe.gif").c_str(), 0600), 0);
  std::filesystem::create_directories(m_Folder.GetPath() / "folder.gif");
  for (char const* szName : {"pipe.gif", "folder.gif", "missing.gif"})
    EXPECT_EQ(LoadEx(Wide(m_Folder.GetPath() / szName)), nullptr) << szName;
}

TEST_F(QXTextureGetData, OfAnUnknownTypeFailsWithoutAParser) {
  for (wchar_t const* szPath : {L"", L"/nowhere/a", L"/nowhere/a.doc", L"/x.png/a"})
    EXPECT_EQ(GetData(szPath), nullptr) << szPath;
  EXPECT_EQ(g_Fed.m_nMade, 0);
}

TEST_F(QXTextureGetData, HandsPathFlagAndIndexToTheParser) {
  GetData(Path);
  EXPECT_TRUE(g_Fed.m_strPath == Path);
  EXPECT_EQ(g_Fed.m_nType, 123);
  EXPECT_EQ(g_Fed.m_nFlag, 1);
  EXPECT_EQ(g_Fed.m_nIndex, -1);
  EXPECT_EQ(g_Fed.m_nLiving, 0);
}

TEST_F(QXTextureGetData, WidensAndScalesToPowersOfTwo) {
  FeedThree(MakeFedImage(100, 60, 24));
  std::unique_ptr<QXTextureData> const pData = GetData(Path);
  ASSERT_NE(pData, nullptr);
  EXPECT_EQ(pData->m_eFormat, PF_A8R8G8B8);
  EXPECT_EQ(pData->m_nWidth, 128u);
  EXPECT_EQ(pData->m_nHeight, 64u);
  EXPECT_EQ(pData->m_nCompression, 0u);
  EXPECT_EQ(pData->m_nDataSize, 0u);
  ImageHolder const pSource(MakeFedImage(100, 60, 24));
  std::vector<unsigned char> vecWide(100 * 60 * 4, 255);
  for (std::size_t i = 0; i < 6000; ++i) std::memcpy(vecWide.data() + i * 4, Bytes(*pSource) + i * 3, 3);
  std::vector<unsigned char> vecExpected(128 * 64 * 4);
  ASSERT_EQ(QXImageOperator::Scale(4, 100, 60, vecWide.data(), 128, 64, vecExpected.data()), 1);
  EXPECT_EQ(std::memcmp(pData->m_pPixels, vecExpected.data(), vecExpected.size()), 0);
}

TEST_F(QXTextureGetData, ScalesWhereOneEdgeAloneIsNoPowerOfTwo) {
  for (bool const bWide : {false, true}) {
    unsigned int const nWidth = bWide ? 4 : 3;
    unsigned int const nHeight = bWide ? 3 : 4;
    Feed(MakeFedImage(nWidth, nHeight, 32));
    std::unique_ptr<QXTextureData> const pData = GetData(Path);
    ASSERT_NE(pData, nullptr);
    EXPECT_EQ(pData->m_nWidth, 4u);
    EXPECT_EQ(pData->m_nHeight, 4u);
    ImageHolder const pSource(MakeFedImage(nWidth, nHeight, 32));
    unsigned char arrExpected[64];
    auto* const pPixels = static_cast<unsigned char*>(pSource->m_pPixels);
    ASSERT_EQ(QXImageOperator::Scale(4, nWidth, nHeight, pPixels, 4, 4, arrExpected), 1);
    EXPECT_EQ(std::memcmp(pData->m_pPixels, arrExpected, 64), 0);
  }
}

TEST_F(QXTextureGetData, CopiesWhereTheEdgesArePowersOfTwo) {
  QXImageData* const pFed = MakeFedImage(8, 4, 32);
  void const* const pBlock = pFed->m_pPixels;
  std::vector<unsigned char> const vecBytes(Bytes(*pFed), Bytes(*pFed) + 8 * 4 * 4);
  Feed(pFed);
  std::unique_ptr<QXTextureData> const pData = GetData(Path);
  ASSERT_NE(pData, nullptr);
  EXPECT_NE(pData->m_pPixels, pBlock);
  EXPECT_EQ(std::memcmp(pData->m_pPixels, vecBytes.data(), vecBytes.size()), 0);
  EXPECT_EQ(pData->GetBlockLength(), vecBytes.size());
}

TEST_F(QXTextureGetData, IsEmptyWhereTheParserBringsNothing) {
  auto const expectEmpty = [] {
    std::unique_ptr<QXTextureData> const pData = GetData(Path);
    ASSERT_NE(pData, nullptr);
    EXPECT_EQ(pData->m_pPixels, nullptr);
    EXPECT_EQ(pData->m_eFormat, PF_UNKNOWN);
  };
  expectEmpty();
  Feed(nullptr);
  expectEmpty();
  Feed(new QXImageData);
  expectEmpty();
  Feed(MakeFedImage(4, 4, 16, 4));
  expectEmpty();
  g_Fed.m_bReads = 0;
  FeedThree(MakeFedImage(2, 2, 32));
  expectEmpty();
}

TEST_F(QXTextureGetData, FailsWhereTheScaledImageWouldBeTooLarge) {
  QXUInt64 const nMaxBytes = QXFileParseToolkit::GetImageMaxBytes();
  QXFileParseToolkit::SetImageLimits(65536, 4 * 4);
  Feed(MakeFedImage(5, 4, 32));
  EXPECT_EQ(GetData(Path), nullptr);
  QXFileParseToolkit::SetImageLimits(65536, nMaxBytes);
}

TEST_F(QXTextureGetData, CatchesWhateverTheParserRaises) {
  FeedException();
  EXPECT_EQ(GetData(Path), nullptr);
  EXPECT_EQ(g_Fed.m_nLiving, 0);
}

TEST_F(QXTextureGetData, GivesARawFileByteForByte) {
  QXFedType const type(QXFileType::EM_IMAGE_GIF);
  std::unique_ptr<QXTextureData> const pData = GetData(Wide(m_Folder.Write("a.Gif", "raw bytes")));
  ASSERT_NE(pData, nullptr);
  EXPECT_EQ(pData->m_nCompression, 16u);
  EXPECT_EQ(pData->m_nDataSize, 9u);
  EXPECT_EQ(pData->GetBlockLength(), 9u);
  EXPECT_EQ(std::memcmp(pData->m_pPixels, "raw bytes", 9), 0);
  EXPECT_EQ(pData->m_nWidth, 0u);
  EXPECT_EQ(pData->m_nHeight, 0u);
  EXPECT_EQ(pData->m_eFormat, PF_UNKNOWN);
  EXPECT_EQ(g_Fed.m_nMade, 0);
}

TEST_F(QXTextureGetData, RefusesARawFileThatIsNone) {
  ASSERT_EQ(mkfifo((m_Folder.GetPath() / "pipe.gif").c_str(), 0600), 0);
  std::filesystem::create_directories(m_Folder.GetPath() / "folder.gif");
  for (char const* szName : {"pipe.gif", "folder.gif", "missing.gif"})
    EXPECT_EQ(GetData(Wide(m_Folder.GetPath() / szName)), nullptr) << szName;
}

}  // namespace
}  // namespace QXC
