#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseImage.h>

#include <QxGraphics3D/frame/foundation/base3d/QXImageData.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXExchangeParamsManager.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseModel.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseToolkit.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileType.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXImportParams.h>

#include <tests/foundation/toolkit/QXTestFolder.h>
#include <tests/texture/QXFedParser.h>
#include <tests/texture/QXSmallFiles.h>

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

#include <pthread.h>
#include <sys/stat.h>

namespace QXC {
namespace {

/// Images and their blocks, deleted at the end.
class ImageArray : public QdcArray<QXImageData*> {
public:
  ImageArray() = default;
  ~ImageArray() {
    for (QXImageData* pImage : *this) {
      if (pImage != nullptr) delete[] static_cast<unsigned char*>(pImage->m_pPixels);
      delete pImage;
    }
  }
};

/// The same for pictures.
class PictureArray : public QdcArray<QXGeoPicture*> {
public:
  PictureArray() = default;
  ~PictureArray() {
    for (QXGeoPicture* pPicture : *this) delete pPicture;
  }
};

std::unique_ptr<QXImportParams> ParamsOf(QdcUnicodeString const& strPath) {
  std::unique_ptr<QXImportParams> pParams(
      QXExchangeParamsManager::MakeImportParams(QXFileParseToolkit::GetFileTypeByExtName(strPath), L""));
  pParams->SetFilePathName(strPath);
  return pParams;
}

unsigned char Read(QdcUnicodeString const& strPath, QdcArray<QXImageData*>& arrImages) {
  return QXFileParseToolkit::GetImageData(ParamsOf(strPath).get(), arrImages, 0, -1);
}

unsigned char const* Bytes(std::string const& strBytes) {
  return reinterpret_cast<unsigned char const*>(strBytes.data());
}

void ExpectReason(wchar_t const* szPart) {
  EXPECT_NE(std::wcsstr(QXFileParseToolkit::GetErrorText().Cstr(), szPart), nullptr)
      << QXFileParseToolkit::GetErrorText().ToMBString().Cstr();
}

TEST(QXFileParseImage, AppendsTheImageOfAFile) {
  QXTestFolder const folder;
  ImageArray arrImages;
  arrImages.Add(nullptr);
  EXPECT_EQ(Read(Wide(folder.Write("a.bmp", MakeBitmap(4, 3, "abc"))), arrImages), 1);
  EXPECT_EQ(QXFileParseToolkit::GetErrorText().IsEmpty(), 1);
  ASSERT_EQ(arrImages.GetSize(), 2u);
  EXPECT_EQ(arrImages[0], nullptr);
  EXPECT_EQ(arrImages[1]->m_nWidth, 4u);
  EXPECT_EQ(arrImages[1]->m_nHeight, 3u);
  EXPECT_EQ(arrImages[1]->m_nPitch, 12u);
  EXPECT_EQ(arrImages[1]->m_nBitDepth, 24);
}

TEST(QXFileParseImage, ReadsTheSameFromMemory) {
  std::string const strTarga = MakeTarga(3, 2, "bgra");
  ImageArray arrImages;
  EXPECT_EQ(QXFileParseToolkit::GetImageDataFromMemory(Bytes(strTarga), strTarga.size(), arrImages), 1);
  ASSERT_EQ(arrImages.GetSize(), 1u);
  EXPECT_EQ(arrImages[0]->m_nBitDepth, 32);
  EXPECT_EQ(static_cast<unsigned char*>(arrImages[0]->m_pPixels)[3], 'a');
  std::string const strNoise = "no picture";
  EXPECT_EQ(QXFileParseToolkit::GetImageDataFromMemory(Bytes(strNoise), strNoise.size(), arrImages), 0);
  EXPECT_EQ(QXFileParseToolkit::GetImageDataFromMemory(nullptr, 10, arrImages), 0);
  std::string const strCut = strTarga.substr(0, strTarga.size() - 1);
  EXPECT_EQ(QXFileParseToolkit::GetImageDataFromMemory(Bytes(strCut), strCut.size(), arrImages), 0);
  EXPECT_EQ(arrImages.GetSize(), 1u);
}

TEST(QXFileParseImage, SaysWhyThereIsNone) {
  QXTestFolder const folder;
  ImageArray arrImages;
  EXPECT_EQ(QXFileParseToolkit::GetImageData(nullptr, arrImages, 0, -1), 0);
  ExpectReason(L"nothing to open");
  EXPECT_EQ(Read(Wide(folder.GetPath() / "missing.png"), arrImages), 0);
  ExpectReason(L"no such file");
  std::filesystem::create_directories(folder.GetPath() / "folder.png");
  EXPECT_EQ(Read(Wide(folder.GetPath() / "folder.png"), arrImages), 0);
  ExpectReason(L"directory");
  ASSERT_EQ(mkfifo((folder.GetPath() / "pipe.png").c_str(), 0600), 0);
  EXPECT_EQ(Read(Wide(folder.GetPath() / "pipe.png"), arrImages), 0);
  ExpectReason(L"no regular file");
  EXPECT_EQ(Read(Wide(folder.Write("a.png", MakeBitmap(4, 4, "abc"))), arrImages), 0);
  ExpectReason(L"this is no .png file: it begins as a .bmp file does");
  EXPECT_EQ(Read(Wide(folder.Write("b.png", "??")), arrImages), 0);
  EXPECT_TRUE(QXFileParseToolkit::GetErrorText() == L"this is no .png file");
  EXPECT_EQ(Read(Wide(folder.Write("c.bmp", "BM")), arrImages), 0);
  ExpectReason(L"damaged");
  QXImportParams params;
  params.SetFilePathName(Wide(folder.Write("a.doc", "??")));
  EXPECT_EQ(QXFileParseToolkit::GetImageData(&params, arrImages, 0, -1), 0);
  ExpectReason(L"no parser for file type -1");
  EXPECT_EQ(arrImages.GetSize(), 0u);
}

TEST(QXFileParseImage, IsRefusedBeyondTheLimits) {
  QXTestFolder const folder;
  QdcUnicodeString const strPath = Wide(folder.Write("a.bmp", MakeBitmap(8, 4, "abc")));
  EXPECT_EQ(QXFileParseToolkit::GetImageMaxEdge(), 65536u);
  EXPECT_EQ(QXFileParseToolkit::GetImageMaxBytes(), 1u << 30);
  ImageArray arrImages;
  auto const read = [&](unsigned int nMaxEdge, QXUInt64 nMaxBytes) {
    QXFileParseToolkit::SetImageLimits(nMaxEdge, nMaxBytes);
    unsigned char const bRead = Read(strPath, arrImages);
    QXFileParseToolkit::SetImageLimits(65536, 1u << 30);
    return bRead;
  };
  EXPECT_EQ(read(7, 1000), 0);
  EXPECT_EQ(read(8, 95), 0);
  EXPECT_EQ(read(8, 96), 1);
}

TEST(QXFileParseImage, LeavesTheArrayAloneWhereTheParserFails) {
  QXFedType const type(QXFileType::EM_IMAGE_PNG);
  g_Fed.m_bReads = 0;
  g_Fed.m_FillImages = [](QdcArray<QXImageData*>& arrImages) {
    EXPECT_EQ(arrImages.GetSize(), 0u) << "what others put there is no parser's business";
    arrImages.Add(MakeFedImage(2, 2, 32));
  };
  ImageArray arrImages;
  arrImages.Add(nullptr);
  EXPECT_EQ(Read(L"a.png", arrImages), 0);
  EXPECT_EQ(arrImages.GetSize(), 1u);
  EXPECT_TRUE(QXFileParseToolkit::GetErrorText() == L"as the test wants it");
  g_Fed.m_bReads = 1;
  EXPECT_EQ(Read(L"a.png", arrImages), 1);
  EXPECT_EQ(arrImages.GetSize(), 2u);
}

TEST(QXFileParseImage, MayRaiseThroughTheToolkitFromAFile) {
  QXFedType const type(QXFileType::EM_IMAGE_PNG);
  g_Fed.m_FillImages = [](QdcArray<QXImageData*>& arrImages) {
    arrImages.Add(MakeFedImage(2, 2, 32));
    throw std::runtime_error("broken");
  };
  ImageArray arrImages;
  EXPECT_THROW(Read(L"a.png", arrImages), std::runtime_error);
  EXPECT_EQ(g_Fed.m_nLiving, 0);
  EXPECT_EQ(arrImages.GetSize(), 0u);
  std::string const strPng = "\x89PNG\r\n\x1A\n";
  EXPECT_EQ(QXFileParseToolkit::GetImageDataFromMemory(Bytes(strPng), strPng.size(), arrImages), 0);
  ExpectReason(L"the parser failed");
}

// Ending a thread unwinds its stack with an exception that must not be swallowed: the process would be aborted.
TEST(QXFileParseImage, LetsAThreadEndInsideTheParser) {
  QXFedType const type(QXFileType::EM_IMAGE_GIF);
  g_Fed.m_FillPictures = [](QdcArray<QXGeoPicture*>& arrPictures) {
    arrPictures.Add(new QXGeoPicture);
    pthread_exit(&g_Fed);
  };
  PictureArray arrPictures;
  auto const pfnRead = [](void* pPictures) -> void* {
    QXFileParseToolkit::GetDynamicIMGData(L"/x/a.gif", *static_cast<PictureArray*>(pPictures), 0);
    return nullptr;
  };
  pthread_t thread{};
  ASSERT_EQ(pthread_create(&thread, nullptr, pfnRead, &arrPictures), 0);
  void* pResult = nullptr;
  ASSERT_EQ(pthread_join(thread, &pResult), 0);
  EXPECT_EQ(pResult, &g_Fed);
  EXPECT_EQ(g_Fed.m_nLiving, 0);
  EXPECT_EQ(arrPictures.GetSize(), 0u);
}

class PictureFreeParser : public QXFileParseImage {
public:
  unsigned char Open(QXImportParams*) override { return 1; }
  QdcUnicodeString const& GetErrorText() const override { return m_strError; }
  unsigned char GetImageData(QdcArray<QXImageData*>&, unsigned char, int) override { return 1; }

private:
  QdcUnicodeString m_strError;
};

TEST(QXFileParseImage, ReadsNeitherAnimationsNorMemoryByItself) {
  PictureFreeParser parser;
  PictureArray arrPictures;
  EXPECT_EQ(parser.GetDynamicIMGData(arrPictures, 0), 0);
  unsigned char nByte = 0;
  EXPECT_EQ(parser.OpenBytes(&nByte, 1), 0);
}

TEST(QXFileParseImage, HandsOutPicturesFromFileAndMemory) {
  QXFedType const type(QXFileType::EM_IMAGE_GIF);
  g_Fed.m_FillPictures = [](QdcArray<QXGeoPicture*>& arrPictures) { arrPictures.Add(new QXGeoPicture); };
  PictureArray arrPictures;
  EXPECT_EQ(QXFileParseToolkit::GetDynamicIMGData(L"/x/a.gif", arrPictures, 1), 1);
  EXPECT_TRUE(g_Fed.m_strPath == L"/x/a.gif");
  EXPECT_EQ(g_Fed.m_nFlip, 1);
  std::string const strGif = "GIF89a";
  EXPECT_EQ(QXFileParseToolkit::GetDynamicIMGDataFromMemory(Bytes(strGif), strGif.size(), arrPictures, 0), 1);
  EXPECT_EQ(g_Fed.m_nFlip, 0);
  EXPECT_EQ(arrPictures.GetSize(), 2u);
  g_Fed.m_FillPictures = [](QdcArray<QXGeoPicture*>& arrOthers) {
    arrOthers.Add(new QXGeoPicture);
    throw 1;
  };
  EXPECT_EQ(QXFileParseToolkit::GetDynamicIMGData(L"/x/a.gif", arrPictures, 1), 0);
  EXPECT_EQ(QXFileParseToolkit::GetDynamicIMGDataFromMemory(Bytes(strGif), strGif.size(), arrPictures, 0), 0);
  EXPECT_EQ(QXFileParseToolkit::GetDynamicIMGData(L"/x/a.doc", arrPictures, 1), 0);
  EXPECT_EQ(arrPictures.GetSize(), 2u);
  EXPECT_EQ(g_Fed.m_nLiving, 0);
}

class ModelParser : public QXFileParseModel {
public:
  unsigned char Open(QXImportParams*) override { return 1; }
  QdcUnicodeString const& GetErrorText() const override { return m_strError; }

private:
  QdcUnicodeString m_strError;
};

TEST(QXFileParseImage, IsNotWhatAModelsParserIs) {
  QXFileParseManager::RegisterFileParser(
      QXFileType::EM_MODEL_OBJ, []() -> QXFileParser* { return new ModelParser; },
      [](QXFileParser* pParser) { delete pParser; });
  ImageArray arrImages;
  EXPECT_EQ(Read(L"a.obj", arrImages), 0);
  ExpectReason(L"no images");
  QXFileParseManager::RegisterFileParser(QXFileType::EM_MODEL_OBJ, nullptr, nullptr);
}

TEST(QXFileParseImage, OpensOneFileAfterAnother) {
  QXTestFolder const folder;
  std::unique_ptr<QXImportParams> const pParams = ParamsOf(Wide(folder.Write("a.bmp", MakeBitmap(4, 3, "abc"))));
  auto* const pParser =
      dynamic_cast<QXFileParseImage*>(QXFileParseManager::CreateFileParser(QXFileType::EM_IMAGE_BMP, 0));
  ASSERT_NE(pParser, nullptr);
  ImageArray arrImages;
  EXPECT_EQ(pParser->GetImageData(arrImages, 0, -1), 0);
  EXPECT_EQ(pParser->Open(pParams.get()), 1);
  EXPECT_EQ(pParser->GetImageData(arrImages, 0, -1), 1);
  EXPECT_EQ(pParser->Open(nullptr), 0);
  EXPECT_EQ(pParser->GetErrorText().IsEmpty(), 0);
  EXPECT_EQ(pParser->GetImageData(arrImages, 0, -1), 0) << "the earlier file is dropped";
  std::string const strOther = MakeBitmap(8, 1, "abc");
  EXPECT_EQ(pParser->OpenBytes(Bytes(strOther), strOther.size()), 1);
  EXPECT_EQ(pParser->GetErrorText().IsEmpty(), 1);
  EXPECT_EQ(pParser->GetImageData(arrImages, 0, -1), 1);
  ASSERT_EQ(arrImages.GetSize(), 2u);
  EXPECT_EQ(arrImages[1]->m_nWidth, 8u);
  QXFileParseManager::DestroyFileParser(pParser);
}

TEST(QXFileParseImage, IsReadByManyThreads) {
  QXTestFolder const folder;
  QdcUnicodeString const strGood = Wide(folder.Write("a.bmp", MakeBitmap(4, 3, "abc")));
  QdcUnicodeString const strBad = Wide(folder.GetPath() / "missing.bmp");
  std::vector<std::thread> vecThreads;
  for (int nThread = 0; nThread < 4; ++nThread) {
    vecThreads.emplace_back([&, nThread] {
      bool const bGood = nThread % 2 == 0;
      for (int i = 0; i < 100; ++i) {
        ImageArray arrImages;
        EXPECT_EQ(Read(bGood ? strGood : strBad, arrImages), bGood);
        EXPECT_EQ(QXFileParseToolkit::GetErrorText().IsEmpty(), bGood);
      }
    });
  }
  for (std::thread& thread : vecThreads) thread.join();
}

}  // namespace
}  // namespace QXC
