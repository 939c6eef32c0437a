#include <QxGraphics3D/text/QXTextureFontManager.h>

#include <QxGraphics3D/atlas/detail/QXTextureStoreLock.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMathEngine.h>
#include <QxGraphics3D/text/detail/QXGlyphAtlas.h>
#include <QxGraphics3D/texture/QXTexture.h>

#include <algorithm>
#include <vector>

namespace QXC {

template class QXSingleton<QXTextureFontManager>;

namespace {

bool IsRendererDeferred() {
  return QXMathEngine::m_msGraphics3DType == GRAPHICS3D_DEFERRED;
}

}  // namespace

QXTextureFontManager::QXTextureFontManager() : m_pAtlas(std::make_unique<detail::QXGlyphAtlas>()) {}

QXTextureFontManager::~QXTextureFontManager() {
  Clear();
}

QXTextureFontManager& QXTextureFontManager::GetSingleton() {
  return *GetSingletonPtr();
}

QXTextureFontManager* QXTextureFontManager::GetSingletonPtr() {
  if (!ms_pSingleton) ms_pSingleton = new QXTextureFontManager;
  return ms_pSingleton;
}

void QXTextureFontManager::SetTextureManager(QXTextureManager* pTextureManager) {
  QXMutexLock lock(m_Mutex);
  lock.lock();
  m_pTextureManager = pTextureManager;
}

QXTexture* QXTextureFontManager::GetTexture(QdcUnicodeString const& strName) {
  return m_pTextureManager ? m_pTextureManager->GetTexture(strName, 1) : nullptr;
}

// --- Glyphs ---

QXCharBitmapData* QXTextureFontManager::GetCharBitmapData(QXFontKey const& key, QXTextStyle const& style) {
  QXMutexLock lock(m_Mutex);
  lock.lock();
  return m_pAtlas->GetBitmap(key, style);
}

QXTextureFont* QXTextureFontManager::GetTextureFont(QXFontKey const& key, QXTextStyle const& style) {
  QXMutexLock lock(m_Mutex);
  lock.lock();
  QXTextureFont* pFont = m_pAtlas->FindFont(key);
  if (!pFont) pFont = m_pAtlas->MakeFont(key, style, [this](int nIndex) { return CreateFontTexture(nIndex); });
  if (pFont) ++pFont->m_nRefCount;
  return pFont;
}

bool QXTextureFontManager::CreateFontTexture(int nIndex) {
  if (!m_pTextureManager) return false;
  detail::QXTextureStoreLock const lock(*m_pTextureManager);
  // After Clear this may be the texture of the same number from before.
  QXTexture* const pTexture = GetTexture(detail::GetFontTextureName(nIndex));
  if (!pTexture) return false;
  constexpr int kEdge = detail::QXGlyphPage::kEdge;
  pTexture->SetTextureData(kEdge, kEdge, new unsigned char[detail::QXGlyphPage::kBytes](), 0, PF_BYTE_LA);
  // Levels would blend glyphs with their neighbours, and would have to be made anew for each glyph.
  pTexture->SetTextureMipMap(0);
  pTexture->AddRef();
  return true;
}

void QXTextureFontManager::DelTextureFont(QXFontKey const& key) {
  QXMutexLock lock(m_Mutex);
  lock.lock();
  int const nEmptyPage = m_pAtlas->DelFont(key);
  if (nEmptyPage >= 0) RemoveFontTexture(nEmptyPage);
}

void QXTextureFontManager::RemoveFontTexture(int nIndex) {
  if (!m_pTextureManager) return;
  detail::QXTextureStoreLock const lock(*m_pTextureManager);
  m_pTextureManager->RemoveTexture(GetTexture(detail::GetFontTextureName(nIndex)), 1);
}

void QXTextureFontManager::Clear() {
  QXMutexLock lock(m_Mutex);
  lock.lock();
  m_pAtlas->Clear();
}

// --- Upload ---

void QXTextureFontManager::AddCharBitmapToTexture() {
  QXMutexLock lock(m_Mutex);
  lock.lock();
  if (!m_pTextureManager) return;
  std::vector<QXTexture*> arrTouched;
  m_pAtlas->UploadPending([&](QXTextureFont const& font, QXCharBitmapData const& bitmap) {
    QXTexture* const pTexture = Upload(font, bitmap);
    if (!pTexture || std::find(arrTouched.begin(), arrTouched.end(), pTexture) != arrTouched.end()) return;
    arrTouched.push_back(pTexture);
  });
  if (IsRendererDeferred()) {
    for (QXTexture* const pTexture : arrTouched) {
      pTexture->SetIsNeedLoadTexture(1);
      pTexture->LoadTexture(0, 0);
    }
  }
  m_pAtlas->PurgeBitmaps();
}

QXTexture* QXTextureFontManager::Upload(QXTextureFont const& font, QXCharBitmapData const& bitmap) {
  detail::QXTextureStoreLock const lock(*m_pTextureManager);
  QXTexture* const pTexture = GetTexture(detail::GetFontTextureName(font.m_Key.GetTexture()));
  if (!pTexture) return nullptr;
  if (!IsRendererDeferred() && !pTexture->IsLoaded()) {
    pTexture->SetIsNeedLoadTexture(1);
    pTexture->LoadTexture(1, 0);
  }
  pTexture->LoadSubTexture(font.m_Key.GetLeft(), font.m_Key.GetTop(), bitmap.m_nWidth, bitmap.m_nHeight,
      bitmap.m_nWidth, bitmap.m_nHeight, bitmap.m_pData, 0);
  return pTexture;
}

}  // namespace QXC
