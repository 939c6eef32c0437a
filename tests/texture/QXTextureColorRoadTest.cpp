/// @file
/// A red, a green and a half-transparent blue picture go down every road to the device, and their colours are read back
/// from it.
#include <QxGraphics3D/testing/QXNullAnimationTexture.h>
#include <QxGraphics3D/testing/QXNullGraphics3D.h>
#include <QxGraphics3D/testing/QXNullTexture.h>
#include <QxGraphics3D/texture/QXPixelFormatLayout.h>

#include <tests/texture/QXPictureRoad.h>

namespace QXC {
namespace {

class QXTextureColorRoad : public testing::Test, public QXPictureRoad {
protected:
  QXTextureColorRoad() {
    m_pTexture = m_Renderer.m_pTextureManager->GetTexture(QdcUnicodeString::FromUTF8(GetParam().m_szName), 1);
  }

  /// In every pixel of the device.
  void ExpectShown(unsigned int nColor) override {
    m_pTexture->LoadTexture(0, 0);
    ExpectOnDevice(static_cast<QXNullTexture&>(*m_pTexture), nColor);
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

  QXNullGraphics3D m_Renderer;
};

TEST_P(QXTextureColorRoad, MemberLoad) {
  GoMemberLoad();
}

TEST_P(QXTextureColorRoad, MemberLoadOfThreeBytes) {
  GoMemberLoadOfThreeBytes();
}

TEST_P(QXTextureColorRoad, StaticLoad) {
  GoStaticLoad();
}

TEST_P(QXTextureColorRoad, StaticLoadWithoutConversion) {
  GoStaticLoadWithoutConversion();
}

TEST_P(QXTextureColorRoad, TextureData) {
  GoTextureData();
}

TEST_P(QXTextureColorRoad, Animation) {
  GoAnimation();
}

TEST_P(QXTextureColorRoad, ColourRamp) {
  GoColourRamp();
}

TEST_P(QXTextureColorRoad, Ktx2) {
  GoKtx2();
}

// The second frame covers the first, whatever its alpha; of the third only opaque pixels would show.
TEST_P(QXTextureColorRoad, AnimatedTexture) {
  QXFedType const type(QXFileType::EM_IMAGE_GIF);
  FeedPictures({MakePicture(4, 4, {1, 2, 3, 255}, 2, 2), MakePicture(4, 4, Pixel(), 2, 2),
      MakePicture(2, 2, {1, 2, 3, 127}, 2, 2)});
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
    ExpectShown(layout.m_nAlpha >= 0 ? Color() : Opaque());
  }
}

INSTANTIATE_TEST_SUITE_P(Pictures, QXTextureColorRoad, PictureColors());

}  // namespace
}  // namespace QXC
