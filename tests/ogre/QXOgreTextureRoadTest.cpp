// Every road from a file or a block to pixels of a rendered frame.
#include <fstream>
#include <map>
#include <sstream>

#include <QxGraphics3D/frame/foundation/base/QdcColor.h>
#include <QxGraphics3D/frame/foundation/base/QdcColorDictTable.h>
#include <QxGraphics3D/frame/foundation/base3d/QXImageData.h>
#include <QxGraphics3D/frame/foundation/base3d/QXTextureDataAnimation.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileType.h>

#include <tests/foundation/toolkit/QXTestFolder.h>
#include <tests/foundation/toolkit/ktx2/QXSha256.h>
#include <tests/ogre/QXOgreTexturing.h>
#include <tests/texture/QXFedParser.h>
#include <tests/texture/QXSmallFiles.h>

namespace QXC {

namespace {

struct PictureColor {
  char const* m_szName;
  unsigned int m_nColor;
};

void PrintTo(PictureColor const& color, std::ostream* pStream) {
  *pStream << color.m_szName;
}

}  // namespace

/// A picture of one colour before a ground of (200, 100, 40), through which it shows where it is transparent.
class QXOgreTextureRoad : public QXOgreTexturing, public testing::WithParamInterface<PictureColor> {
protected:
  void SetUp() override {
    QXOgreTexturing::SetUp();
    m_pViewport->m_BackgroundColor = QXColorValue3D(200 / 255.0, 100 / 255.0, 40 / 255.0, 1.0);
    m_pTexture = m_pTextures->GetTexture(QdcUnicodeString::FromUTF8(GetParam().m_szName), 1);
    DrawTextured(m_pTexture);
  }

  static unsigned int Color() { return GetParam().m_nColor; }
  static int Alpha() { return static_cast<int>(QDCALPHAVAL(Color())); }
  /// One pixel as image files and readers have it.
  static std::string BlueGreenRed() {
    return {static_cast<char>(QDCBLUEVAL(Color())), static_cast<char>(QDCGREENVAL(Color())),
        static_cast<char>(QDCREDVAL(Color()))};
  }
  static std::string BlueGreenRedAlpha() { return BlueGreenRed() + static_cast<char>(Alpha()); }
  QdcUnicodeString WriteTarga(unsigned int nWidth, unsigned int nHeight) {
    return Wide(m_Folder.Write("a.tga", MakeTarga(nWidth, nHeight, BlueGreenRedAlpha())));
  }
  QdcUnicodeString WriteBitmap() { return Wide(m_Folder.Write("a.bmp", MakeBitmap(4, 3, BlueGreenRed()))); }

  /// Uploads the image, and looks at four places of the frame.
  void ExpectOnScreen(int nAlpha) {
    m_pTexture->LoadTexture(0, 0);
    ASSERT_EQ(m_pTexture->IsLoaded(), 1) << Reason();
    QXPicture const picture = Frame();
    double const dAlpha = nAlpha / 255.0;
    for (unsigned int const nAt : {1U, 20U, 40U, 62U}) {
      QXPixel const pixel = picture.At(nAt, nAt);
      EXPECT_NEAR(pixel.r, QDCREDVAL(Color()) * dAlpha + 200 * (1.0 - dAlpha), 1.01);
      EXPECT_NEAR(pixel.g, QDCGREENVAL(Color()) * dAlpha + 100 * (1.0 - dAlpha), 1.01);
      EXPECT_NEAR(pixel.b, QDCBLUEVAL(Color()) * dAlpha + 40 * (1.0 - dAlpha), 1.01);
      EXPECT_EQ(pixel.a, 255);
    }
  }

  QXTestFolder m_Folder;
  QXTexture* m_pTexture = nullptr;
};

TEST_P(QXOgreTextureRoad, MemberLoad) {
  ASSERT_EQ(m_pTexture->LoadImageData(WriteTarga(4, 4), 0, 0, 0), 1);
  ExpectOnScreen(Alpha());
  ASSERT_EQ(m_pTexture->LoadImageData(WriteTarga(5, 3), 0, 0, 1), 1);
  ExpectOnScreen(Alpha());
}

TEST_P(QXOgreTextureRoad, MemberLoadOfThreeBytes) {
  for (unsigned char bWiden = 0; bWiden <= 1; ++bWiden) {
    ASSERT_EQ(m_pTexture->LoadImageData(WriteBitmap(), 0, 0, bWiden), 1);
    ExpectOnScreen(255);
  }
}

TEST_P(QXOgreTextureRoad, StaticLoad) {
  QXImageData* pImage = nullptr;
  ASSERT_EQ(QXTexture::LoadImageData(WriteTarga(5, 3), 0, pImage, 0), 1);
  ASSERT_EQ(m_pTexture->SetTextureData(pImage, 0, 0, 0, 1), 1);
  ExpectOnScreen(Alpha());
  pImage = QXTexture::LoadImageDataEx(WriteBitmap(), nullptr);
  ASSERT_EQ(m_pTexture->SetTextureData(pImage, 0, 0, 0, 0), 1);
  m_pTexture->m_bHasTransparentData = 1;
  ExpectOnScreen(255);
}

TEST_P(QXOgreTextureRoad, TextureData) {
  std::unique_ptr<QXTextureData> const pData(QXTexture::GetTextureData(WriteTarga(5, 3)));
  ASSERT_NE(pData, nullptr);
  m_pTexture->SetTextureData(*pData);
  ExpectOnScreen(Alpha());
  m_pTexture->SetTextureData(pData.get());
  ExpectOnScreen(Alpha());
}

TEST_P(QXOgreTextureRoad, FramesOfAnAnimation) {
  QXFedType const type(QXFileType::EM_IMAGE_GIF);
  g_Fed.m_FillPictures = [](QdcArray<QXGeoPicture*>& arrPictures) {
    auto* const pPicture = new QXGeoPicture;
    pPicture->SetImage(MakeFedImage(4, 4, 32));
    pPicture->SetCenterPoint(QdcPoint2D(2, 2));
    std::string strPixels;
    PutPixels(strPixels, 16, BlueGreenRedAlpha());
    std::copy(strPixels.begin(), strPixels.end(), static_cast<char*>(pPicture->GetImage()->m_pPixels));
    arrPictures.Add(pPicture);
  };
  std::unique_ptr<QXTextureDataAnimation> const pData(QXTexture::GetTextureDataAnimation(L"a.gif"));
  ASSERT_NE(pData, nullptr);
  m_pTexture->SetTextureData(pData->GetFrameDataByIndex(0));
  ExpectOnScreen(Alpha());
  // The bytes of the file, which the plug-in takes apart.
  std::unique_ptr<QXTextureData> const pRaw(
      QXTexture::GetTextureData(Wide(m_Folder.Write("b.gif", "GIF89a as the parser likes it"))));
  ASSERT_NE(pRaw, nullptr);
  m_pTexture->SetTextureData(*pRaw);
  ExpectOnScreen(Alpha());
}

TEST_P(QXOgreTextureRoad, ColourRamp) {
  QdcColorDictTable table;
  table.Add(1.0, Color());
  ASSERT_EQ(m_pTexture->SetTextureDataByColorDictTable(&table), 1);
  ExpectOnScreen(Alpha());
}

TEST_P(QXOgreTextureRoad, Ktx2) {
  std::string const strPixel{static_cast<char>(QDCREDVAL(Color())), static_cast<char>(QDCGREENVAL(Color())),
      static_cast<char>(QDCBLUEVAL(Color())), static_cast<char>(Alpha())};
  QdcUnicodeString const strPath = Wide(m_Folder.Write("a.ktx2", MakeKtx2(5, 3, strPixel)));
  ASSERT_EQ(m_pTexture->LoadImageData(strPath, 0, 0, 0), 1);
  ExpectOnScreen(Alpha());
  for (int const nLevel : {1, 2}) {
    m_pTexture->SetMipmapBaseLevel(nLevel);
    ExpectOnScreen(Alpha());
  }
}

INSTANTIATE_TEST_SUITE_P(Pictures, QXOgreTextureRoad,
    testing::Values(PictureColor{"red", QDCRGBA(255, 0, 0, 255)}, PictureColor{"green", QDCRGBA(0, 255, 0, 255)},
        PictureColor{"blue", QDCRGBA(0, 0, 255, 128)}, PictureColor{"other", QDCRGBA(10, 20, 30, 40)}));

/// A ramp from the lowest colour in the first row to the highest in the last one.
using QXOgreTextureFile = QXOgreTexturing;

TEST_F(QXOgreTextureFile, ARampRisesWithV) {
  QdcColorDictTable table;
  table.Add(0.0, QDCRGBA(255, 0, 0, 255));
  table.Add(10.0, QDCRGBA(0, 0, 255, 255));
  QXTexture* const pTexture = MakeTexture();
  ASSERT_EQ(pTexture->SetTextureDataByColorDictTable(&table), 1);
  pTexture->LoadTexture(0, 0);
  DrawTextured(pTexture);
  QXPicture const picture = Frame();
  for (unsigned int y = 0; y < SIZE; ++y) EXPECT_NEAR(picture.At(5, y).b, 255.0 * (y + 0.5) / SIZE, 2.0) << y;
}

TEST_F(QXOgreTextureFile, EveryLevelOfEverySampleHasItsPixelsOnTheScreen) {
  std::filesystem::path const folder = std::filesystem::path(QX_SOURCE_DIR) / "tests/data/ktx2";
  std::ifstream file(folder / "levels.tsv");
  std::string strLine;
  std::getline(file, strLine);
  QXRenderOperation3D* const pOperation = DrawTextured(nullptr);
  m_pViewport->m_BackgroundColor = QXColorValue3D(0.0, 0.0, 0.0, 0.0);
  std::map<std::string, QXTexture*> mapTextures;
  int nSeen = 0;
  int nRefused = 0;
  while (std::getline(file, strLine)) {
    std::istringstream line(strLine);
    std::string strName;
    std::string strDigest;
    unsigned int nLevel = 0, nFace = 0, nWidth = 0, nHeight = 0, nBytes = 0;
    line >> strName >> nLevel >> nFace >> nWidth >> nHeight >> nBytes >> strDigest;
    if (nFace != 0) continue;
    QXTexture*& pTexture = mapTextures[strName];
    if (!pTexture) {
      pTexture = MakeTexture();
      ASSERT_EQ(pTexture->LoadImageData(Wide(folder / (strName + ".ktx2")), 0, 0, 0), 1) << strName;
      pTexture->LoadTexture(0, 0);
    }
    if (!pTexture->IsLoaded()) {
      EXPECT_EQ(Reason(), "the device does not take blocks of PF_BC7_UNORM") << strName;
      ++nRefused;
      continue;
    }
    pTexture->SetMipmapBaseLevel(static_cast<int>(nLevel));
    pOperation->SetTexture(0, pTexture);
    m_pTarget->ReSize(nWidth, nHeight);
    // The colours as they are, then the alpha before a ground that has none.
    pTexture->m_bHasTransparentData = 0;
    std::vector<unsigned char> arrPixels = Frame().GetBytes();
    pTexture->m_bHasTransparentData = 1;
    std::vector<unsigned char> const arrBlended = Frame().GetBytes();
    for (std::size_t i = 0; i < arrPixels.size(); i += 4) {
      std::swap(arrPixels[i], arrPixels[i + 2]);
      arrPixels[i + 3] = arrBlended[i + 3];
    }
    ASSERT_EQ(arrPixels.size(), nBytes) << strName;
    EXPECT_EQ(qxtest::QXSha256::Of(arrPixels.data(), arrPixels.size()).substr(0, 16), strDigest)
        << strName << " level " << nLevel;
    ++nSeen;
  }
  EXPECT_EQ(nSeen + nRefused, 123);
  RecordProperty("refused", nRefused);
}

}  // namespace QXC
