#include <QxGraphics3D/text/QXMemoryTextureFontManager.h>

#include <QxGraphics3D/text/detail/QXGlyphAtlas.h>

#include <cstring>

namespace QXC {

template class QXSingleton<QXMemoryTextureFontManager>;

QXMemoryTextureFontManager::QXMemoryTextureFontManager() : m_pAtlas(std::make_unique<detail::QXGlyphAtlas>()) {}

QXMemoryTextureFontManager::~QXMemoryTextureFontManager() {
  Clear();
}

QXMemoryTextureFontManager& QXMemoryTextureFontManager::GetSingleton() {
  return *GetSingletonPtr();
}

QXMemoryTextureFontManager* QXMemoryTextureFontManager::GetSingletonPtr() {
  if (!ms_pSingleton) ms_pSingleton = new QXMemoryTextureFontManager;
  return ms_pSingleton;
}

QXTextureData* QXMemoryTextureFontManager::GetTextureDataFromMemory(QdcUnicodeString const& strName) {
  auto const data = m_mapTextureDatas.find(strName);
  return data != m_mapTextureDatas.end() ? data->second.get() : nullptr;
}

QXCharBitmapData* QXMemoryTextureFontManager::GetCharBitmapData(QXFontKey const& key, QXTextStyle const& style) {
  QXMutexLock lock(m_Mutex);
  lock.lock();
  return m_pAtlas->GetBitmap(key, style);
}

QXTextureFont* QXMemoryTextureFontManager::GetTextureFont(QXFontKey const& key, QXTextStyle const& style) {
  QXMutexLock lock(m_Mutex);
  lock.lock();
  QXTextureFont* pFont = m_pAtlas->FindFont(key);
  if (!pFont) pFont = m_pAtlas->MakeFont(key, style, [this](int nIndex) { return CreateFontTexture(nIndex); });
  if (pFont) ++pFont->m_nRefCount;
  return pFont;
}

bool QXMemoryTextureFontManager::CreateFontTexture(int nIndex) {
  auto pData = std::make_unique<QXTextureData>();
  pData->m_pPixels = new unsigned char[detail::QXGlyphPage::kBytes]();
  pData->m_nWidth = detail::QXGlyphPage::kEdge;
  pData->m_nHeight = detail::QXGlyphPage::kEdge;
  pData->m_eFormat = PF_BYTE_LA;
  pData->m_nCompression = 0;
  m_mapTextureDatas[detail::GetFontTextureName(nIndex)] = std::move(pData);
  return true;
}

void QXMemoryTextureFontManager::DelTextureFont(QXFontKey const& key) {
  QXMutexLock lock(m_Mutex);
  lock.lock();
  int const nEmptyPage = m_pAtlas->DelFont(key);
  if (nEmptyPage >= 0) m_mapTextureDatas.erase(detail::GetFontTextureName(nEmptyPage));
}

void QXMemoryTextureFontManager::AddCharBitmapToTexture() {
  QXMutexLock lock(m_Mutex);
  lock.lock();
  m_pAtlas->UploadPending([this](QXTextureFont const& font, QXCharBitmapData const& bitmap) { Upload(font, bitmap); });
  m_pAtlas->PurgeBitmaps();
}

void QXMemoryTextureFontManager::Upload(QXTextureFont const& font, QXCharBitmapData const& bitmap) {
  QXTextureData const* const pData = GetTextureDataFromMemory(detail::GetFontTextureName(font.m_Key.GetTexture()));
  if (!pData) return;
  using Page = detail::QXGlyphPage;
  auto const nRowBytes = static_cast<std::size_t>(bitmap.m_nWidth) * Page::kPixelSize;
  for (int i = 0; i < bitmap.m_nHeight; ++i) {
    auto const nPixel = static_cast<std::size_t>((font.m_Key.GetTop() + i) * Page::kEdge + font.m_Key.GetLeft());
    std::memcpy(pData->m_pPixels + nPixel * Page::kPixelSize, bitmap.m_pData + static_cast<std::size_t>(i) * nRowBytes,
        nRowBytes);
  }
}

void QXMemoryTextureFontManager::Clear() {
  QXMutexLock lock(m_Mutex);
  lock.lock();
  m_pAtlas->Clear();
  m_mapTextureDatas.clear();
}

}  // namespace QXC
