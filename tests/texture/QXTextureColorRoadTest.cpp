/// @file
/// A red, a green and a half-transparent blue picture go down every road to the device, and their colours are read back
/// from it.
#include <QxGraphics3D/frame/foundation/base/QdcColor.h>
#include <QxGraphics3D/frame/foundation/base/QdcColorDictTable.h>
#include <QxGraphics3D/frame/foundation/base3d/QXImageData.h>
#include <QxGraphics3D/frame/foundation/base3d/QXTextureDataAnimation.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileType.h>
#include <QxGraphics3D/testing/QXNullAnimationTexture.h>
#include <QxGraphics3D/testing/QXNullGraphics3D.h>
#include <QxGraphics3D/testing/QXNullTexture.h>
#include <QxGraphics3D/texture/QXPixelFormatLayout.h>

#include <tests/foundation/toolkit/QXTestFolder.h>
#include <tests/texture/QXFedParser.h>
#include <tests/texture/QXSmallFiles.h>

#include <gtest/gtest.h>

#include <memory>

namespace QXC {
namespace {

struct PictureColor {
  char const* m_szName;
  unsigned int m_nColor;
};

void PrintTo(PictureColor const& color, std::ostream* pStream) {
  *pStream << color.m_szName;
}

class QXTextureColorRoad : public testing::TestWithParam<PictureColor> {
protected:
  QXTextureColorRoad() : m_pTexture(MakeTexture()) {}

  static unsigned int Color() { return GetParam().m_nColor; }
  /// One pixel as image files and readers have it.
  static std::string BlueGreenRed() {
    return {static_cast<char>(QDCBLUEVAL(Color())), static_cast<char>(QDCGREENVAL(Color())),
        static_cast<char>(QDCREDVAL(Color()))};
  }
  static std::string BlueGreenRedAlpha() { return BlueGreenRed() + static_cast<char>(QDCALPHAVAL(Color())); }
  static unsigned int Opaque(unsigned int nColor) {
    return QDCRGBA(QDCREDVAL(nColor), QDCGREENVAL(nColor), QDCBLUEVAL(nColor), 255);
  }

  QXNullTexture* MakeTexture() {
    return static_cast<QXNullTexture*>(
        m_Renderer.m_pTextureManager->GetTexture(QdcUnicodeString::FromUTF8(GetParam().m_szName), 1));
  }
  QdcUnicodeString WriteTarga(unsigned int nWidth, unsigned int nHeight) {
    return Wide(m_Folder.Write("a.tga", MakeTarga(nWidth, nHeight, BlueGreenRedAlpha())));
  }
  QdcUnicodeString WriteBitmap() { return Wide(m_Folder.Write("a.bmp", MakeBitmap(4, 3, BlueGreenRed()))); }

  /// Uploads the image and reads every pixel of the device back.
  void ExpectOnDevice(unsigned int nColor) {
    m_pTexture->LoadTexture(0, 0);
    ExpectOnDevice(*m_pTexture, nColor);
  }
  static void ExpectOnDevice(QXNullTexture const& texture, unsigned int nColor) {
    ASSERT_EQ(texture.IsLoaded(), 1);
    QXPixelFormatLayout const layout = QXPixelFormatLayout::Of(texture.GetDeviceFormat());
    std::size_t const nPixels = std::size_t{texture.GetDeviceWidth()} * texture.GetDeviceHeight();
    ASSERT_GT(nPixels, 0u);
    ASSERT_GT(layout.m_nPixelBytes, 0);
    ASSERT_GE(texture.GetDevicePixels().size(), nPixels * layout.m_nPixelBytes);
    for (std::size_t i = 0; i < nPixels; ++i)
      ASSERT_EQ(layout.ReadColor(texture.GetDevicePixels().data() + i * layout.m_nPixelBytes), nColor) << i;
  }
  /// A picture of one colour, centred on a canvas of 4 by 4.
  static QXGeoPicture* MakePicture(unsigned int nWidth, unsigned int nHeight, std::string const& strPixel) {
    auto* const pPicture = new QXGeoPicture;
    pPicture->SetImage(MakeFedImage(nWidth, nHeight, 32));
    pPicture->SetCenterPoint(QdcPoint2D(2, 2));
    std::string strPixels;
    PutPixels(strPixels, nWidth * nHeight, strPixel);
    std::copy(strPixels.begin(), strPixels.end(), static_cast<char*>(pPicture->GetImage()->m_pPixels));
    return pPicture;
  }

  QXNullGraphics3D m_Renderer;
  QXTestFolder m_Folder;
  QXNullTexture* m_pTexture;
};

TEST_P(QXTextureColorRoad, MemberLoad) {
  ASSERT_EQ(m_pTexture->LoadImageData(WriteTarga(4, 4), 0, 0, 0), 1);
  ExpectOnDevice(Color());
  ASSERT_EQ(m_pTexture->LoadImageData(WriteTarga(5, 3), 0, 0, 1), 1);
  ExpectOnDevice(Color());
}

TEST_P(QXTextureColorRoad, MemberLoadOfThreeBytes) {
  for (unsigned char bWiden = 0; bWiden <= 1; ++bWiden) {
    ASSERT_EQ(m_pTexture->LoadImageData(WriteBitmap(), 0, 0, bWiden), 1);
    ExpectOnDevice(Opaque(Color()));
  }
}

TEST_P(QXTextureColorRoad, StaticLoad) {
  QXImageData* pImage = nullptr;
  ASSERT_EQ(QXTexture::LoadImageData(WriteTarga(5, 3), 0, pImage, 0), 1);
  ASSERT_EQ(m_pTexture->SetTextureData(pImage, 0, 0, 0, 1), 1);
  EXPECT_EQ(m_pTexture->IsHasTransparentData(), QDCALPHAVAL(Color()) != 255);
  ExpectOnDevice(Color());
  ASSERT_EQ(QXTexture::LoadImageData(WriteBitmap(), 0, pImage, 0), 1);
  ASSERT_EQ(m_pTexture->SetTextureData(pImage, 0, 0, 0, 1), 1);
  ExpectOnDevice(Opaque(Color()));
}

TEST_P(QXTextureColorRoad, StaticLoadWithoutConversion) {
  QXImageData* pImage = QXTexture::LoadImageDataEx(WriteTarga(5, 3), nullptr);
  ASSERT_EQ(m_pTexture->SetTextureData(pImage, 0, 0, 0, 0), 1);
  ExpectOnDevice(Color());
  pImage = QXTexture::LoadImageDataEx(WriteBitmap(), nullptr);
  ASSERT_EQ(m_pTexture->SetTextureData(pImage, 0, 0, 0, 0), 1);
  ExpectOnDevice(Opaque(Color()));
}

TEST_P(QXTextureColorRoad, TextureData) {
  std::unique_ptr<QXTextureData> const pData(QXTexture::GetTextureData(WriteTarga(5, 3)));
  ASSERT_NE(pData, nullptr);
  m_pTexture->SetTextureData(*pData);
  ExpectOnDevice(Color());
  m_pTexture->SetTextureData(pData.get());
  ExpectOnDevice(Color());
}

TEST_P(QXTextureColorRoad, Animation) {
  QXFedType const type(QXFileType::EM_IMAGE_GIF);
  g_Fed.m_FillPictures = [](QdcArray<QXGeoPicture*>& arrPictures) {
    arrPictures.Add(MakePicture(4, 4, BlueGreenRedAlpha()));
  };
  std::unique_ptr<QXTextureDataAnimation> const pData(QXTexture::GetTextureDataAnimation(L"a.gif"));
  ASSERT_NE(pData, nullptr);
  m_pTexture->SetTextureData(pData->GetFrameDataByIndex(0));
  ExpectOnDevice(Color());
}

// The second frame covers the first, whatever its alpha; of the third only opaque pixels would show.
TEST_P(QXTextureColorRoad, AnimatedTexture) {
  QXFedType const type(QXFileType::EM_IMAGE_GIF);
  g_Fed.m_FillPictures = [](QdcArray<QXGeoPicture*>& arrPictures) {
    arrPictures.Add(MakePicture(4, 4, "\x01\x02\x03\xFF"));
    arrPictures.Add(MakePicture(4, 4, BlueGreenRedAlpha()));
    arrPictures.Add(MakePicture(2, 2, "\x01\x02\x03\x7F"));
  };
  QXNullAnimationTexture texture(nullptr, L"a.gif");
  QdcTime::SetClock([]() -> unsigned int { return 150; });
  ASSERT_EQ(texture.LoadImageData(L"a.gif", 0, 0), 1);
  texture.LoadTexture(1, 0);
  EXPECT_EQ(texture.m_nCurrentFrame, 1u);
  ExpectOnDevice(static_cast<QXNullTexture&>(*texture.m_arrFrameTextures[1]), Color());
  QdcTime::SetClock([]() -> unsigned int { return 299; });
  texture.LoadTexture(1, 0);
  QdcTime::SetClock(nullptr);
  EXPECT_EQ(texture.m_nCurrentFrame, 2u);
  ExpectOnDevice(static_cast<QXNullTexture&>(*texture.m_arrFrameTextures[2]), Color());
}

TEST_P(QXTextureColorRoad, ColourRamp) {
  QdcColorDictTable table;
  table.Add(1.0, Color());
  ASSERT_EQ(m_pTexture->SetTextureDataByColorDictTable(&table), 1);
  ExpectOnDevice(Color());
}

TEST_P(QXTextureColorRoad, Ktx2) {
  std::string const strPixel{static_cast<char>(QDCREDVAL(Color())), static_cast<char>(QDCGREENVAL(Color())),
      static_cast<char>(QDCBLUEVAL(Color())), static_cast<char>(QDCALPHAVAL(Color()))};
  QdcUnicodeString const strPath = Wide(m_Folder.Write("a.ktx2", MakeKtx2(5, 3, strPixel)));
  ASSERT_EQ(m_pTexture->LoadImageData(strPath, 0, 0, 0), 1);
  ExpectOnDevice(Color());
  QXImageData* pImage = QXTexture::LoadImageDataEx(strPath, nullptr);
  ASSERT_EQ(m_pTexture->SetTextureData(pImage, 0, 0, 0, 0), 1);
  ExpectOnDevice(Color());
}

TEST_P(QXTextureColorRoad, PixelsOfEachFormat) {
  for (QX3DPixelFormat const eFormat : {PF_R8G8B8, PF_B8G8R8, PF_A8R8G8B8, PF_A8B8G8R8, PF_B8G8R8A8, PF_R8G8B8A8}) {
    QXPixelFormatLayout const layout = QXPixelFormatLayout::Of(eFormat);
    std::string strPixel(layout.m_nPixelBytes, '\0');
    strPixel[static_cast<std::size_t>(layout.m_nRed)] = static_cast<char>(QDCREDVAL(Color()));
    strPixel[static_cast<std::size_t>(layout.m_nGreen)] = static_cast<char>(QDCGREENVAL(Color()));
    strPixel[static_cast<std::size_t>(layout.m_nBlue)] = static_cast<char>(QDCBLUEVAL(Color()));
    if (layout.m_nAlpha >= 0)
      strPixel[static_cast<std::size_t>(layout.m_nAlpha)] = static_cast<char>(QDCALPHAVAL(Color()));
    std::string strPixels;
    PutPixels(strPixels, 8, strPixel);
    auto* const pPixels = new unsigned char[strPixels.size()];
    std::copy(strPixels.begin(), strPixels.end(), pPixels);
    m_pTexture->SetTextureData(4, 2, pPixels, 0, eFormat);
    SCOPED_TRACE(eFormat);
    ExpectOnDevice(layout.m_nAlpha >= 0 ? Color() : Opaque(Color()));
  }
}

INSTANTIATE_TEST_SUITE_P(Pictures, QXTextureColorRoad,
    testing::Values(PictureColor{"red", QDCRGBA(255, 0, 0, 255)}, PictureColor{"green", QDCRGBA(0, 255, 0, 255)},
        PictureColor{"blue", QDCRGBA(0, 0, 255, 128)}, PictureColor{"other", QDCRGBA(10, 20, 30, 40)}));

}  // namespace
}  // namespace QXC
