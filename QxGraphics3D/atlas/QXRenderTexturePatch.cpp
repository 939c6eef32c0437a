#include <QxGraphics3D/atlas/QXRenderTexturePatch.h>

#include <QxGraphics3D/atlas/QXRenderTextureManager.h>

#include <algorithm>
#include <bit>

namespace QXC {

QXRenderTexturePatch::QXRenderTexturePatch(QXRenderTextureManager* pManager) : m_pManager(pManager) {}
QXRenderTexturePatch::QXRenderTexturePatch(QXRenderTexturePatch const& other) = default;
QXRenderTexturePatch& QXRenderTexturePatch::operator=(QXRenderTexturePatch const& other) = default;
QXRenderTexturePatch::~QXRenderTexturePatch() = default;

void QXRenderTexturePatch::SetSize(unsigned int nHeight, unsigned int nWidth) {
  StoreSize(nWidth, nHeight);
  m_pManager->FindSpaceInBigTextures(this);
}

void QXRenderTexturePatch::Resize(unsigned int nWidth, unsigned int nHeight) {
  StoreSize(nWidth, nHeight);
  m_pManager->ResizeRenderTexturePatch(m_strName, nWidth, nHeight);
}

void QXRenderTexturePatch::StoreSize(unsigned int nWidth, unsigned int nHeight) {
  m_nWidth = nWidth;
  m_nHeight = nHeight;
  // No power of two of 32 bits holds more than 2^31; the allocator refuses that one as it would the next.
  unsigned int const nLargest = 1U << 31;
  m_nSize = std::bit_ceil(std::min(std::max(nWidth, nHeight), nLargest));
}

void QXRenderTexturePatch::GetPos(unsigned int& nX, unsigned int& nY) const {
  unsigned int const nSize = m_nLod >= 0 && m_nLod < 12 ? 2048U >> m_nLod : 0;
  nX = static_cast<unsigned int>(m_nCol) - nSize / 2;
  nY = static_cast<unsigned int>(m_nRow) - nSize / 2;
}

QdcUnicodeString QXRenderTexturePatch::GetTextureName() const {
  QdcUnicodeString strName;
  strName.Format(L"RenderTexture_BigTexture_%d", m_nTextureIndex);
  return strName;
}

void QXRenderTexturePatch::SetNeedRender() {
  m_pManager->SetNeedRender(this);
}

}  // namespace QXC
