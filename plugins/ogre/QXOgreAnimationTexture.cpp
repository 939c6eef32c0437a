#include <plugins/ogre/QXOgreAnimationTexture.h>

#include <algorithm>
#include <cmath>
#include <cstring>

#include <QxGraphics3D/frame/foundation/base3d/QXTextureDataAnimation.h>

#include <plugins/ogre/QXOgreTextureManager.h>

namespace QXC {

namespace {

constexpr std::size_t PIXEL = 4;

unsigned int Share(unsigned int nEdge, double dShare) {
  if (!(dShare > 0.0 && dShare < 1.0)) return nEdge;
  return std::clamp(static_cast<unsigned int>(std::lround(nEdge * dShare)), 1U, nEdge);
}

/// The picture of a frame whose edges were padded to powers of two: repeated, the padding would show.
QXTextureData WithoutPadding(QXTextureData const& frame, QXVector3d const& vecShare) {
  unsigned int const nWidth = Share(frame.m_nWidth, vecShare.x);
  unsigned int const nHeight = Share(frame.m_nHeight, vecShare.y);
  bool const bPlain = frame.m_pPixels && frame.m_eFormat == PF_A8R8G8B8 &&
                      frame.m_nCompression == TEXTURE_COMPRESSION_NONE &&
                      frame.GetBlockLength() >= QXUInt64{frame.m_nWidth} * frame.m_nHeight * PIXEL;
  if (!bPlain || (nWidth == frame.m_nWidth && nHeight == frame.m_nHeight)) return frame;
  QXTextureData result;
  std::size_t const nRow = std::size_t{nWidth} * PIXEL;
  result.m_pPixels = new unsigned char[nRow * nHeight];
  for (std::size_t y = 0; y < nHeight; ++y)
    std::memcpy(result.m_pPixels + y * nRow, frame.m_pPixels + y * frame.m_nWidth * PIXEL, nRow);
  result.m_nWidth = nWidth;
  result.m_nHeight = nHeight;
  result.m_eFormat = frame.m_eFormat;
  result.SetBlockLength(nRow * nHeight);
  return result;
}

}  // namespace

// Without frames the plain texture's operation is meant, not that of the animated one between them.
// NOLINTBEGIN(bugprone-parent-virtual-call)

QXOgreAnimationTexture::QXOgreAnimationTexture(QXOgreTextureManager& manager)
    : QXOgreTextureSource(manager, *this), m_Still(manager), m_vecCut(1.0, 1.0, 1.0) {}

QXOgreAnimationTexture::~QXOgreAnimationTexture() = default;

QXTexture* QXOgreAnimationTexture::GetShown() const {
  return IsAnimated() ? GetCurrentTexture() : &m_Still;
}

void QXOgreAnimationTexture::RendererOperation1(int nMinFilter, int nMagFilter, int nMipFilter) {
  m_Still.RendererOperation1(nMinFilter, nMagFilter, nMipFilter);
}

void QXOgreAnimationTexture::MakeFrameTextures() {
  if (m_arrFrameTextures.GetSize() == 0) m_vecCut = m_vecScale;
  for (std::size_t i = m_arrFrameTextures.GetSize(); i < m_arrFrames.size(); ++i) {
    auto pTexture = std::make_unique<QXOgreTexture>(*GetManager());
    static_cast<QXTexture&>(*pTexture).SetTextureData(WithoutPadding(m_arrFrames[i], m_vecCut));
    pTexture->SetTextureMipMap(m_bMipmapEnabled);
    pTexture->SetTextureRepeatMode(m_bRepeatMode);
    pTexture->SetMipmapBaseLevel(m_Still.GetMipmapBaseLevel());
    pTexture->SetMipmapMaxLevel(m_Still.GetMipmapMaxLevel());
    m_arrFrameTextures.Add(pTexture.get());
    pTexture.release();
  }
}

void QXOgreAnimationTexture::LoadStill(unsigned char bOnlyIfNeeded) {
  if (bOnlyIfNeeded && m_Still.IsLoaded() && !m_bNeedLoadTexture) return;
  static_cast<QXTexture&>(m_Still).SetTextureData(m_TextureData);
  m_Still.m_bMipmapEnabled = m_bMipmapEnabled;
  m_Still.m_bKtx2Flag = m_bKtx2Flag;
  m_Still.m_arrMipmapOffset = m_arrMipmapOffset;
  m_Still.LoadTexture(0, 1);
}

void QXOgreAnimationTexture::LoadTexture(unsigned char bOnlyIfNeeded, unsigned char bReleaseImage) {
  if (!GetManager()) return;
  if (!IsAnimated()) {
    LoadStill(bOnlyIfNeeded);
    if (bReleaseImage && m_Still.IsLoaded()) QXTexture::ReleaseImgData();
  } else {
    m_Still.RendererOperation2();
    MakeFrameTextures();
    for (std::size_t i = 0; m_bNeedLoadTexture && i < m_arrFrameTextures.GetSize(); ++i)
      if (m_arrFrameTextures[i]) m_arrFrameTextures[i]->SetIsNeedLoadTexture(1);
    QXAnimationTexture::LoadTexture(bOnlyIfNeeded, bReleaseImage);
  }
  m_bNeedLoadTexture = 0;
}

void QXOgreAnimationTexture::LoadSubTexture(int nX, int nY, int nWidth, int nHeight, int nSourceWidth,
    int nSourceHeight, void const* pPixels, unsigned int nFlag) {
  if (IsAnimated())
    QXAnimationTexture::LoadSubTexture(nX, nY, nWidth, nHeight, nSourceWidth, nSourceHeight, pPixels, nFlag);
  else
    m_Still.LoadSubTexture(nX, nY, nWidth, nHeight, nSourceWidth, nSourceHeight, pPixels, 0);
}

void QXOgreAnimationTexture::ReleaseImgData() {
  if (IsAnimated())
    QXAnimationTexture::ReleaseImgData();
  else
    QXTexture::ReleaseImgData();
}

void QXOgreAnimationTexture::SetTextureData(QXTextureData const* pData) {
  if (IsAnimated() || dynamic_cast<QXTextureDataAnimation const*>(pData))
    QXAnimationTexture::SetTextureData(pData);
  else
    QXTexture::SetTextureData(pData);
}

void QXOgreAnimationTexture::FlipTexture() {
  if (IsAnimated())
    QXAnimationTexture::FlipTexture();
  else
    QXTexture::FlipTexture();
}

unsigned int QXOgreAnimationTexture::GetBindID() const {
  QXTexture const* const pShown = GetShown();
  return pShown ? pShown->GetBindID() : 0;
}

void QXOgreAnimationTexture::BuildMipmapOffset() {
  if (IsAnimated())
    QXAnimationTexture::BuildMipmapOffset();
  else
    QXTexture::BuildMipmapOffset();
}

QXTextureData* QXOgreAnimationTexture::GetTextureData() {
  return IsAnimated() ? QXAnimationTexture::GetTextureData() : QXTexture::GetTextureData();
}

void QXOgreAnimationTexture::SetEdgeTransparency() {
  if (IsAnimated())
    QXAnimationTexture::SetEdgeTransparency();
  else
    QXTexture::SetEdgeTransparency();
}

void QXOgreAnimationTexture::ScaleImage(int nNewWidth, int nNewHeight) {
  if (IsAnimated())
    QXAnimationTexture::ScaleImage(nNewWidth, nNewHeight);
  else
    QXTexture::ScaleImage(nNewWidth, nNewHeight);
}

void QXOgreAnimationTexture::SetMipmapBaseLevel(int nLevel) {
  m_Still.SetMipmapBaseLevel(nLevel);
  QXAnimationTexture::SetMipmapBaseLevel(nLevel);
}

void QXOgreAnimationTexture::SetMipmapMaxLevel(int nLevel) {
  m_Still.SetMipmapMaxLevel(nLevel);
  QXAnimationTexture::SetMipmapMaxLevel(nLevel);
}

void QXOgreAnimationTexture::SetMipmapOffset(QdcArray<unsigned int> const& arrOffsets) {
  if (IsAnimated())
    QXAnimationTexture::SetMipmapOffset(arrOffsets);
  else
    QXTexture::SetMipmapOffset(arrOffsets);
}

int QXOgreAnimationTexture::GetNumTextureFrame() const {
  if (!IsAnimated()) return m_Still.GetNumTextureFrame();
  return static_cast<int>(std::max<std::size_t>(m_arrFrames.size(), m_arrFrameTextures.GetSize()));
}

void QXOgreAnimationTexture::GetTimeTextureFrame(std::map<unsigned int, unsigned int>& mapTimes) const {
  if (!IsAnimated()) return m_Still.GetTimeTextureFrame(mapTimes);
  unsigned int nBegin = 0;
  for (auto const& [nFrame, nEnd] : m_mapFrameEndTimes) {
    mapTimes[nFrame] = nEnd - nBegin;
    nBegin = nEnd;
  }
}

QXImageData* QXOgreAnimationTexture::BlitToMemory() {
  QXTexture* const pShown = GetShown();
  return pShown ? pShown->BlitToMemory() : nullptr;
}

int QXOgreAnimationTexture::GetTextureID() const {
  QXTexture const* const pShown = GetShown();
  return pShown ? pShown->GetTextureID() : -1;
}

QXOgreImage* QXOgreAnimationTexture::GetImage() const {
  QXOgreTextureSource const* const pSource = QXOgreTextureSource::Of(GetShown());
  return pSource ? pSource->GetImage() : nullptr;
}

QXVector3d QXOgreAnimationTexture::GetScale() const {
  if (!IsAnimated()) return m_vecScale;
  auto const factor = [](double dScale, double dCut) { return dCut > 0.0 && dCut < 1.0 ? dScale / dCut : dScale; };
  return {factor(m_vecScale.x, m_vecCut.x), factor(m_vecScale.y, m_vecCut.y), 1.0};
}

void QXOgreAnimationTexture::Prepare() {
  if (IsAnimated()) return LoadTexture(1, 0);
  if (m_bNeedLoadTexture) LoadTexture(1, 0);
  if (GetManager() && GetManager()->GetDevice()) m_Still.PrepareFor(GetManager()->GetDevice()->GetFrame());
}

void QXOgreAnimationTexture::LeaveDevice() {
  m_Still.RendererOperation2();
  for (std::size_t i = 0; i < m_arrFrameTextures.GetSize(); ++i)
    if (m_arrFrameTextures[i]) m_arrFrameTextures[i]->RendererOperation2();
}

// NOLINTEND(bugprone-parent-virtual-call)

}  // namespace QXC
