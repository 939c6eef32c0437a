#include <QxGraphics3D/texture/QXTexture.h>

#include <utility>

namespace QXC {

QXTexture::QXTexture() {
  m_arrMipmapOffset.Add(0);
}

QXTexture::QXTexture(QdcUnicodeString const& strPath) : m_strTexFilePath(strPath), m_strImgRealFilePath(strPath) {
  m_arrMipmapOffset.Add(0);
}

QXTexture::~QXTexture() {
  QXTexture::ReleaseImgData();
}

void QXTexture::LoadTextureArray(QXTextureData*, unsigned int, unsigned int) {}

void QXTexture::LoadTextureArray(unsigned char) {}

unsigned char QXTexture::IsLoaded() const {
  return static_cast<unsigned char>(m_nBindID > 0);
}

unsigned char QXTexture::IsInitialGPU() const {
  return 1;
}

void QXTexture::ReleaseImgData() {
  m_TextureData.Release();
  for (QXTextureData* const pLevel : m_arrLodLevels) {
    if (pLevel != nullptr) {
      pLevel->Release();
      delete pLevel;
    }
  }
  m_arrLodLevels.RemoveAll();
  m_arrLodLevels.FreeExtra();
}

unsigned int QXTexture::GetBindID() const {
  return m_nBindID;
}

void QXTexture::SetTextureRepeatMode(unsigned char bRepeatMode) {
  m_bRepeatMode = bRepeatMode;
}

QXTextureData* QXTexture::GetTextureData() {
  return &m_TextureData;
}

unsigned char QXTexture::GetTextureRepeatMode() const {
  return m_bRepeatMode;
}

void QXTexture::SetTextureMipMap(unsigned char bMipmapEnabled) {
  m_bMipmapEnabled = bMipmapEnabled;
}

void QXTexture::SetMipmapBaseLevel(int) {}

void QXTexture::SetMipmapMaxLevel(int) {}

int QXTexture::GetMipmapBaseLevel() const {
  return 0;
}

int QXTexture::GetMipmapMaxLevel() const {
  return 0;
}

QdcArray<unsigned int> QXTexture::GetMipmapOffset() const {
  return m_arrMipmapOffset;
}

unsigned char QXTexture::AddTexLodLevel(QdcArray<QXTextureData*>&, unsigned int, unsigned char) {
  return 0;
}

unsigned char QXTexture::DelTexLodLevel(unsigned int) {
  return 0;
}

void QXTexture::SetReverse(unsigned char) {}

int QXTexture::GetNumTextureFrame() const {
  return 0;
}

void QXTexture::GetTimeTextureFrame(std::map<unsigned int, unsigned int>&) const {}

unsigned char QXTexture::GetIsFinished() const {
  return m_bIsFinished;
}

void QXTexture::SetIsFinished(unsigned char bIsFinished) {
  m_bIsFinished = bIsFinished;
}

QXImageData* QXTexture::BlitToMemory() {
  return nullptr;
}

int QXTexture::GetTextureID() const {
  return -1;
}

void QXTexture::SetTextureFlagOgreV2(unsigned int) {}

unsigned int QXTexture::GetTextureFlagOgreV2() const {
  return 0;
}

void QXTexture::AddRef() {
  ++m_nRefCount;
}

void QXTexture::DecRef() {
  --m_nRefCount;
}

int QXTexture::GetRef() const {
  return m_nRefCount;
}

unsigned char QXTexture::IsLoadedImage() const {
  return m_bLoadedImage;
}

unsigned char QXTexture::IsHasTransparentData() const {
  return m_bHasTransparentData;
}

unsigned char QXTexture::GetSRGB() const {
  return m_bSRGB;
}

void QXTexture::SetSRGB(unsigned char bSRGB) {
  m_bSRGB = bSRGB;
}

unsigned char QXTexture::IsTextureRepeatMode() const {
  return m_bRepeatMode;
}

unsigned char QXTexture::IsNeedLoadTexture() const {
  return m_bNeedLoadTexture;
}

void QXTexture::SetIsNeedLoadTexture(unsigned char bNeedLoadTexture) {
  m_bNeedLoadTexture = bNeedLoadTexture;
}

unsigned char QXTexture::GetIsNeedLoadImg() const {
  return m_bNeedLoadImg;
}

void QXTexture::SetIsNeedLoadImg(unsigned char bNeedLoadImg) {
  m_bNeedLoadImg = bNeedLoadImg;
}

QdcUnicodeString QXTexture::GetImgRealFilePath() const {
  return m_strImgRealFilePath;
}

void QXTexture::SetImgRealFilePath(QdcUnicodeString const& strPath) {
  m_strImgRealFilePath = strPath;
}

void QXTexture::SetTexFilePath(QdcUnicodeString strPath) {
  m_strTexFilePath = std::move(strPath);
}

}  // namespace QXC
