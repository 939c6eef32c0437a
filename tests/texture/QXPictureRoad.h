/// @file
/// Pictures of one colour on every road from a file or a block to a loaded texture.
#pragma once

#include <QxGraphics3D/frame/foundation/base/QdcColor.h>
#include <QxGraphics3D/frame/foundation/base/QdcColorDictTable.h>
#include <QxGraphics3D/frame/foundation/base3d/QXImageData.h>
#include <QxGraphics3D/frame/foundation/base3d/QXTextureDataAnimation.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileType.h>
#include <QxGraphics3D/texture/QXTexture.h>

#include <tests/foundation/toolkit/QXTestFolder.h>
#include <tests/texture/QXFedPictures.h>
#include <tests/texture/QXSmallFiles.h>

#include <gtest/gtest.h>

#include <memory>
#include <ostream>
#include <string>

namespace QXC {

struct QXPictureColor {
  char const* m_szName;
  unsigned int m_nColor;
};

inline void PrintTo(QXPictureColor const& color, std::ostream* pStream) {
  *pStream << color.m_szName;
}

inline auto PictureColors() {
  return testing::Values(QXPictureColor{"red", QDCRGBA(255, 0, 0, 255)},
      QXPictureColor{"green", QDCRGBA(0, 255, 0, 255)}, QXPictureColor{"blue", QDCRGBA(0, 0, 255, 128)},
      QXPictureColor{"other", QDCRGBA(10, 20, 30, 40)});
}

/// The roads that every renderer has. Who derives says where the picture is looked at.
class QXPictureRoad : public testing::WithParamInterface<QXPictureColor> {
protected:
  virtual ~QXPictureRoad() = default;
  /// Uploads the image of m_pTexture and expects nColor wherever it is looked at.
  virtual void ExpectShown(unsigned int nColor) = 0;

  static unsigned int Color() { return GetParam().m_nColor; }
  static unsigned int Opaque() { return QDCRGBA(QDCREDVAL(Color()), QDCGREENVAL(Color()), QDCBLUEVAL(Color()), 255); }
  static QXFedPixel Pixel() {
    return {static_cast<unsigned char>(QDCBLUEVAL(Color())), static_cast<unsigned char>(QDCGREENVAL(Color())),
        static_cast<unsigned char>(QDCREDVAL(Color())), static_cast<unsigned char>(QDCALPHAVAL(Color()))};
  }
  /// One pixel as image files have it.
  static std::string BlueGreenRedAlpha() {
    QXFedPixel const pixel = Pixel();
    return std::string(pixel.begin(), pixel.end());
  }
  QdcUnicodeString WriteTarga(unsigned int nWidth, unsigned int nHeight) {
    return Wide(m_Folder.Write("a.tga", MakeTarga(nWidth, nHeight, BlueGreenRedAlpha())));
  }
  QdcUnicodeString WriteBitmap() {
    return Wide(m_Folder.Write("a.bmp", MakeBitmap(4, 3, BlueGreenRedAlpha().substr(0, 3))));
  }
  QdcUnicodeString WriteKtx2() {
    QXFedPixel const pixel = Pixel();
    std::string const strPixel{static_cast<char>(pixel[2]), static_cast<char>(pixel[1]), static_cast<char>(pixel[0]),
        static_cast<char>(pixel[3])};
    return Wide(m_Folder.Write("a.ktx2", MakeKtx2(5, 3, strPixel)));
  }

  void GoMemberLoad() {
    ASSERT_EQ(m_pTexture->LoadImageData(WriteTarga(4, 4), 0, 0, 0), 1);
    ExpectShown(Color());
    ASSERT_EQ(m_pTexture->LoadImageData(WriteTarga(5, 3), 0, 0, 1), 1);
    ExpectShown(Color());
  }
  void GoMemberLoadOfThreeBytes() {
    for (unsigned char bWiden = 0; bWiden <= 1; ++bWiden) {
      ASSERT_EQ(m_pTexture->LoadImageData(WriteBitmap(), 0, 0, bWiden), 1);
      ExpectShown(Opaque());
    }
  }
  void GoStaticLoad() {
    QXImageData* pImage = nullptr;
    ASSERT_EQ(QXTexture::LoadImageData(WriteTarga(5, 3), 0, pImage, 0), 1);
    ASSERT_EQ(m_pTexture->SetTextureData(pImage, 0, 0, 0, 1), 1);
    EXPECT_EQ(m_pTexture->IsHasTransparentData(), QDCALPHAVAL(Color()) != 255);
    ExpectShown(Color());
    ASSERT_EQ(QXTexture::LoadImageData(WriteBitmap(), 0, pImage, 0), 1);
    ASSERT_EQ(m_pTexture->SetTextureData(pImage, 0, 0, 0, 1), 1);
    ExpectShown(Opaque());
  }
  void GoStaticLoadWithoutConversion() {
    // Nobody has looked for transparent pixels on this road.
    m_pTexture->m_bHasTransparentData = 1;
    for (QdcUnicodeString const& strPath : {WriteTarga(5, 3), WriteKtx2()}) {
      QXImageData* pImage = QXTexture::LoadImageDataEx(strPath, nullptr);
      ASSERT_EQ(m_pTexture->SetTextureData(pImage, 0, 0, 0, 0), 1);
      ExpectShown(Color());
    }
    QXImageData* pImage = QXTexture::LoadImageDataEx(WriteBitmap(), nullptr);
    ASSERT_EQ(m_pTexture->SetTextureData(pImage, 0, 0, 0, 0), 1);
    ExpectShown(Opaque());
  }
  void GoTextureData() {
    std::unique_ptr<QXTextureData> const pData(QXTexture::GetTextureData(WriteTarga(5, 3)));
    ASSERT_NE(pData, nullptr);
    m_pTexture->SetTextureData(*pData);
    ExpectShown(Color());
    m_pTexture->SetTextureData(pData.get());
    ExpectShown(Color());
  }
  void GoAnimation() {
    QXFedType const type(QXFileType::EM_IMAGE_GIF);
    FeedPictures({MakePicture(4, 4, Pixel(), 2, 2)});
    std::unique_ptr<QXTextureDataAnimation> const pData(QXTexture::GetTextureDataAnimation(L"a.gif"));
    ASSERT_NE(pData, nullptr);
    m_pTexture->SetTextureData(pData->GetFrameDataByIndex(0));
    ExpectShown(Color());
  }
  void GoColourRamp() {
    QdcColorDictTable table;
    table.Add(1.0, Color());
    ASSERT_EQ(m_pTexture->SetTextureDataByColorDictTable(&table), 1);
    ExpectShown(Color());
  }
  void GoKtx2() {
    ASSERT_EQ(m_pTexture->LoadImageData(WriteKtx2(), 0, 0, 0), 1);
    ExpectShown(Color());
  }

  QXTestFolder m_Folder;
  QXTexture* m_pTexture = nullptr;
};

}  // namespace QXC
