#include <QxGraphics3D/texture/QXTexture.h>

namespace QXC {

unsigned char QXTexture::LoadImageData(QdcUnicodeString const&, unsigned char, unsigned char, unsigned char) {
  return 0;
}

unsigned char QXTexture::LoadImageData(unsigned char bUnused, unsigned char bFlag, unsigned char bWiden) {
  if (m_bLoadedImage || IsLoaded()) {
    return 1;
  }
  return LoadImageData(m_strTexFilePath, bUnused, bFlag, bWiden);
}

}  // namespace QXC
