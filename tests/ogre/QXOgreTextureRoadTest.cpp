// Every road from a file or a block to pixels of a rendered frame.
#include <fstream>
#include <map>
#include <sstream>

#include <tests/foundation/toolkit/ktx2/QXSha256.h>
#include <tests/ogre/QXOgreTexturing.h>
#include <tests/texture/QXPictureRoad.h>

namespace QXC {

/// A picture of one colour before a ground of (200, 100, 40), through which it shows where it is transparent.
class QXOgreTextureRoad : public QXOgreTexturing, public QXPictureRoad {
protected:
  void SetUp() override {
    QXOgreTexturing::SetUp();
    m_pViewport->m_BackgroundColor = QXColorValue3D(200 / 255.0, 100 / 255.0, 40 / 255.0, 1.0);
    m_pTexture = m_pTextures->GetTexture(QdcUnicodeString::FromUTF8(GetParam().m_szName), 1);
    DrawTextured(m_pTexture);
  }

  /// At four places of the frame.
  void ExpectShown(unsigned int nColor) override {
    m_pTexture->LoadTexture(0, 0);
    ASSERT_EQ(m_pTexture->IsLoaded(), 1) << Reason();
    QXPicture const picture = Frame();
    double const dAlpha = QDCALPHAVAL(nColor) / 255.0;
    for (unsigned int const nAt : {1U, 20U, 40U, 62U}) {
      QXPixel const pixel = picture.At(nAt, nAt);
      EXPECT_NEAR(pixel.r, QDCREDVAL(nColor) * dAlpha + 200 * (1.0 - dAlpha), 1.01);
      EXPECT_NEAR(pixel.g, QDCGREENVAL(nColor) * dAlpha + 100 * (1.0 - dAlpha), 1.01);
      EXPECT_NEAR(pixel.b, QDCBLUEVAL(nColor) * dAlpha + 40 * (1.0 - dAlpha), 1.01);
      EXPECT_EQ(pixel.a, 255);
    }
  }
};

TEST_P(QXOgreTextureRoad, MemberLoad) {
  GoMemberLoad();
}

TEST_P(QXOgreTextureRoad, MemberLoadOfThreeBytes) {
  GoMemberLoadOfThreeBytes();
}

TEST_P(QXOgreTextureRoad, StaticLoad) {
  GoStaticLoad();
}

TEST_P(QXOgreTextureRoad, StaticLoadWithoutConversion) {
  GoStaticLoadWithoutConversion();
}

TEST_P(QXOgreTextureRoad, TextureData) {
  GoTextureData();
}

TEST_P(QXOgreTextureRoad, ColourRamp) {
  GoColourRamp();
}

TEST_P(QXOgreTextureRoad, FramesOfAnAnimation) {
  GoAnimation();
}

// The bytes of the file, which the plug-in takes apart.
TEST_P(QXOgreTextureRoad, BytesOfAnAnimation) {
  QXFedType const type(QXFileType::EM_IMAGE_GIF);
  FeedPictures({MakePicture(4, 4, Pixel(), 2, 2)});
  std::unique_ptr<QXTextureData> const pRaw(
      QXTexture::GetTextureData(Wide(m_Folder.Write("b.gif", "GIF89a as the parser likes it"))));
  ASSERT_NE(pRaw, nullptr);
  m_pTexture->SetTextureData(*pRaw);
  ExpectShown(Color());
}

TEST_P(QXOgreTextureRoad, Ktx2) {
  GoKtx2();
  for (int const nLevel : {1, 2}) {
    m_pTexture->SetMipmapBaseLevel(nLevel);
    ExpectShown(Color());
  }
}

INSTANTIATE_TEST_SUITE_P(Pictures, QXOgreTextureRoad, PictureColors());

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
