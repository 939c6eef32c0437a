#include <QxGraphics3D/testing/QXNullAnimationTexture.h>

#include <QxGraphics3D/testing/QXNullTexture.h>

#include <utility>

namespace QXC {

QXNullAnimationTexture::QXNullAnimationTexture(std::shared_ptr<QXCallLog> pLog, QdcUnicodeString const& strName)
    : QXAnimationTexture(strName), QXNullObject(std::move(pLog), "animation " + QXCallLog::Quote(strName)) {}

QXNullAnimationTexture::~QXNullAnimationTexture() {
  Record("destroyed");
}

void QXNullAnimationTexture::RendererOperation1(int nMinFilter, int nMagFilter, int nMipFilter) {
  Record("RendererOperation1", nMinFilter, nMagFilter, nMipFilter);
  m_nFilters[0] = nMinFilter;
  m_nFilters[1] = nMagFilter;
  m_nFilters[2] = nMipFilter;
  for (QXTexture* const pTexture : m_arrFrameTextures) {
    if (pTexture != nullptr) pTexture->RendererOperation1(nMinFilter, nMagFilter, nMipFilter);
  }
}

void QXNullAnimationTexture::RendererOperation2() {
  Record("RendererOperation2");
  for (QXTexture* const pTexture : m_arrFrameTextures) {
    if (pTexture != nullptr) pTexture->RendererOperation2();
  }
}

void QXNullAnimationTexture::LoadTexture(unsigned char bOnlyIfNeeded, unsigned char bReleaseImage) {
  Record("LoadTexture", bOnlyIfNeeded, bReleaseImage);
  MakeFrameTextures();
  if (QXTexture* const pTexture = GetCurrentTexture(); pTexture != nullptr && m_bNeedLoadTexture) {
    pTexture->SetIsNeedLoadTexture(1);
    m_bNeedLoadTexture = 0;
  }
  QXAnimationTexture::LoadTexture(bOnlyIfNeeded, bReleaseImage);
}

void QXNullAnimationTexture::MakeFrameTextures() {
  for (QXUInt64 i = m_arrFrameTextures.GetSize(); i < m_arrFrames.size(); ++i) {
    QdcUnicodeString strName;
    strName.Format(L"%s#%u", m_strTexFilePath.Cstr(), static_cast<unsigned int>(i));
    auto pTexture = std::make_unique<QXNullTexture>(m_pLog, strName);
    static_cast<QXTexture&>(*pTexture).SetTextureData(m_arrFrames[i]);
    pTexture->SetTextureRepeatMode(m_bRepeatMode);
    pTexture->SetTextureMipMap(m_bMipmapEnabled);
    pTexture->SetSRGB(m_bSRGB);
    if (m_nFilters[0] != -1) pTexture->RendererOperation1(m_nFilters[0], m_nFilters[1], m_nFilters[2]);
    m_arrFrameTextures.Add(pTexture.get());
    pTexture.release();
  }
}

}  // namespace QXC
