#include <QxGraphics3D/texture/QXAnimationTexture.h>

#include <QxGraphics3D/frame/foundation/base3d/QXTextureDataAnimation.h>

#include <cstdint>
#include <iterator>
#include <utility>

namespace QXC {

namespace {

/// Calls work(texture) for each texture that is there.
template <class Work>
void ForEachTexture(QdcArray<QXTexture*> const& arrTextures, Work work) {
  for (QXTexture* const pTexture : arrTextures) {
    if (pTexture != nullptr) work(*pTexture);
  }
}

}  // namespace

QXAnimationTexture::QXAnimationTexture() = default;

QXAnimationTexture::QXAnimationTexture(QdcUnicodeString const& strPath) : QXTexture(strPath) {}

QXAnimationTexture::~QXAnimationTexture() {
  QXAnimationTexture::ReleaseImgData();
  for (QXTexture* const pTexture : m_arrFrameTextures) delete pTexture;
}

QXTexture* QXAnimationTexture::GetCurrentTexture() const {
  return m_nCurrentFrame < m_arrFrameTextures.GetSize() ? m_arrFrameTextures[m_nCurrentFrame] : nullptr;
}

void QXAnimationTexture::LoadTexture(unsigned char bOnlyIfNeeded, unsigned char bReleaseImage) {
  if (m_nTotalTime != 0 && m_bAnimationEnabled && m_arrFrameTextures.GetSize() > 1) UpdateAnimation();
  if (QXTexture* const pTexture = GetCurrentTexture()) pTexture->LoadTexture(bOnlyIfNeeded, bReleaseImage);
}

void QXAnimationTexture::LoadSubTexture(int nX, int nY, int nWidth, int nHeight, int nSourceWidth, int nSourceHeight,
    void const* pPixels, unsigned int /*nFlag*/) {
  if (QXTexture* const pTexture = GetCurrentTexture())
    pTexture->LoadSubTexture(nX, nY, nWidth, nHeight, nSourceWidth, nSourceHeight, pPixels, 0);
}

unsigned char QXAnimationTexture::IsLoaded() const {
  QXTexture const* const pTexture = GetCurrentTexture();
  return pTexture != nullptr ? pTexture->IsLoaded() : static_cast<unsigned char>(0);
}

void QXAnimationTexture::ReleaseImgData() {
  QXTexture::ReleaseImgData();
  for (QXTextureData& frame : m_arrFrames) frame.Release();
  m_arrFrames.clear();
  m_arrFrames.shrink_to_fit();
  m_bLoadedImage = 0;
}

void QXAnimationTexture::SetTextureData(QXTextureData const* pData) {
  auto const* const pAnimation = dynamic_cast<QXTextureDataAnimation const*>(pData);
  if (pAnimation == nullptr) return;
  std::vector<QXTextureData> vecFrames;
  std::vector<unsigned int> vecDelays;
  for (int i = 0; i < pAnimation->GetNumFrame(); ++i) {
    vecFrames.push_back(pAnimation->GetFrameDataByIndex(i));
    vecDelays.push_back(pAnimation->GetFrameTimeByIndex(i));
  }
  AppendFrames(std::move(vecFrames), vecDelays);
}

void QXAnimationTexture::FlipTexture() {
  ForEachTexture(m_arrFrameTextures, [](QXTexture& texture) { texture.FlipTexture(); });
}

unsigned int QXAnimationTexture::GetBindID() const {
  QXTexture const* const pTexture = GetCurrentTexture();
  return pTexture != nullptr ? pTexture->GetBindID() : 0;
}

void QXAnimationTexture::BuildMipmapOffset() {
  ForEachTexture(m_arrFrameTextures, [](QXTexture& texture) { texture.BuildMipmapOffset(); });
}

void QXAnimationTexture::SetTextureRepeatMode(unsigned char bRepeatMode) {
  QXTexture::SetTextureRepeatMode(bRepeatMode);
  ForEachTexture(m_arrFrameTextures, [=](QXTexture& texture) { texture.SetTextureRepeatMode(bRepeatMode); });
}

QXTextureData* QXAnimationTexture::GetTextureData() {
  QXTexture* const pTexture = GetCurrentTexture();
  return pTexture != nullptr ? pTexture->GetTextureData() : nullptr;
}

void QXAnimationTexture::SetEdgeTransparency() {
  ForEachTexture(m_arrFrameTextures, [](QXTexture& texture) { texture.SetEdgeTransparency(); });
}

void QXAnimationTexture::ScaleImage(int nNewWidth, int nNewHeight) {
  m_bLoadedImage = 0;
  ForEachTexture(m_arrFrameTextures, [=](QXTexture& texture) { texture.ScaleImage(nNewWidth, nNewHeight); });
}

void QXAnimationTexture::SetTextureMipMap(unsigned char bMipmapEnabled) {
  QXTexture::SetTextureMipMap(bMipmapEnabled);
  ForEachTexture(m_arrFrameTextures, [=](QXTexture& texture) { texture.SetTextureMipMap(bMipmapEnabled); });
}

void QXAnimationTexture::SetMipmapBaseLevel(int nLevel) {
  ForEachTexture(m_arrFrameTextures, [=](QXTexture& texture) { texture.SetMipmapBaseLevel(nLevel); });
}

void QXAnimationTexture::SetMipmapMaxLevel(int nLevel) {
  ForEachTexture(m_arrFrameTextures, [=](QXTexture& texture) { texture.SetMipmapMaxLevel(nLevel); });
}

void QXAnimationTexture::SetMipmapOffset(QdcArray<unsigned int> const& arrOffsets) {
  ForEachTexture(m_arrFrameTextures, [&](QXTexture& texture) { texture.SetMipmapOffset(arrOffsets); });
}

QdcArray<unsigned int> QXAnimationTexture::GetMipmapOffset() const {
  QXTexture const* const pTexture = GetCurrentTexture();
  return pTexture != nullptr ? pTexture->GetMipmapOffset() : QXTexture::GetMipmapOffset();
}

unsigned char QXAnimationTexture::DelTexLodLevel(unsigned int nLod) {
  QXTexture* const pTexture = GetCurrentTexture();
  return pTexture != nullptr ? pTexture->DelTexLodLevel(nLod) : static_cast<unsigned char>(0);
}

unsigned char QXAnimationTexture::LoadImageData(
    QdcUnicodeString const& strPath, unsigned char bUnused, unsigned char bFlip) {
  return m_bLoadedImage ? static_cast<unsigned char>(1) : LoadAnimationImageData(strPath, bUnused, bFlip);
}

void QXAnimationTexture::SetTextureData(int nWidth, int nHeight, unsigned char* pPixels) {
  QXTexture* const pTexture = GetCurrentTexture();
  if (pTexture == nullptr) return;
  pTexture->SetTextureData(nWidth, nHeight, pPixels, TEXTURE_COMPRESSION_NONE, PF_A8R8G8B8);
  m_bLoadedImage = 1;
  m_bNeedLoadTexture = 1;
}

unsigned char QXAnimationTexture::SetTextureData(QXImageData*& pImage, int nFirst, int nSecond, int nThird) {
  QXTexture* const pTexture = GetCurrentTexture();
  return pTexture != nullptr ? pTexture->SetTextureData(pImage, nFirst, nSecond, nThird, 0)
                             : static_cast<unsigned char>(0);
}

unsigned char QXAnimationTexture::AddTexLodLevel(QdcArray<QXTextureData*>& arrLevels, unsigned int nLod) {
  QXTexture* const pTexture = GetCurrentTexture();
  return pTexture != nullptr ? pTexture->AddTexLodLevel(arrLevels, nLod, 0) : static_cast<unsigned char>(0);
}

void QXAnimationTexture::UpdateAnimation() {
  if (m_nTotalTime == 0 || !m_bAnimationEnabled) return;
  unsigned int const nNow = QdcTime::GetMillisecond();
  // The clock wraps, so the difference is taken in its 32 bits; the sum may need more.
  unsigned int const nElapsed = nNow - m_nLastUpdate;
  m_nPlayTime = static_cast<unsigned int>((std::uint64_t{m_nPlayTime} + nElapsed) % m_nTotalTime);
  // From the last frame back to the one whose predecessor is over.
  unsigned int nFrame = 0;
  if (!m_mapFrameEndTimes.empty()) {
    nFrame = static_cast<unsigned int>(m_mapFrameEndTimes.size() - 1);
    for (auto it = std::next(m_mapFrameEndTimes.rbegin()); nFrame != 0 && m_nPlayTime <= it->second; ++it) --nFrame;
  }
  m_nCurrentFrame = nFrame;
  m_nLastUpdate = nNow;
}

void QXAnimationTexture::SetAnimation(unsigned char bEnabled) {
  m_bAnimationEnabled = bEnabled;
}

void QXAnimationTexture::SetTexFilePath(QdcUnicodeString strPath) {
  QXTexture::SetTexFilePath(std::move(strPath));
}

}  // namespace QXC
