#include <QxGraphics3D/texture/QXTextureManager.h>

#include <QxGraphics3D/texture/QXTexture.h>
#include <QxGraphics3D/texture/QXTextureCacheEntry.h>

#include <memory>
#include <utility>

namespace QXC {

int QXTextureManager::ms_nCacheSize = 20000;

QXTextureManager::QXTextureManager() = default;

QXTextureManager::~QXTextureManager() {
  // A derived class's part is gone, and its Release with it. Again where an unused texture handed something over while
  // it died: there is no next time for it.
  do {
    QXTextureManager::Release();
  } while (!m_mapCache.empty() || m_arrUnusedTextures.GetSize() != 0);
}

void QXTextureManager::DeleteUnusedTextures() {
  if (m_arrUnusedTextures.GetSize() == 0) return;
  // Taken out first: a texture may hand over others while it dies.
  QdcArray<QXTexture*> const arrDying(std::move(m_arrUnusedTextures));
  m_arrUnusedTextures.RemoveAll();
  m_arrUnusedTextures.FreeExtra();
  for (QXTexture* const pTexture : arrDying) delete pTexture;
}

void QXTextureManager::Release() {
  QXMutexLock lock(m_Mutex);
  lock.lock();
  // Taken out first: a texture that calls back while it dies must not meet a map that is being taken apart. What it
  // enters goes the same way.
  while (!m_mapCache.empty()) {
    QXTextureCacheMap dying;
    dying.swap(m_mapCache);
    for (auto const& [strName, pEntry] : dying) delete pEntry;
  }
  DeleteUnusedTextures();
}

QXTexture* QXTextureManager::CreateTexture() {
  return nullptr;
}

void QXTextureManager::DeleteTexture(unsigned int) {}

void QXTextureManager::AddToCache(QdcUnicodeString const& strName, QXTextureCacheEntry* pEntry) {
  if (pEntry) m_mapCache[strName] = pEntry;
}

void QXTextureManager::RemoveTexture(QXTexture* pTexture, unsigned char bDeleteEntry) {
  if (!pTexture) return;
  QXMutexLock lock(m_Mutex);
  lock.lock();
  // After Release the texture may be gone already, so not even its name can be read.
  if (m_mapCache.empty()) return;
  auto const place = m_mapCache.find(pTexture->m_strTexFilePath);
  if (place == m_mapCache.end() || !place->second || !place->second->GetTexture()) return;
  QXTextureCacheEntry* const pEntry = place->second;
  pEntry->GetTexture()->DecRef();
  if (pEntry->GetTexture()->GetRef() >= 1) return;
  // Out of the cache before it dies: its texture's destructor may look its own name up.
  m_mapCache.erase(place);
  if (bDeleteEntry) delete pEntry;
}

unsigned char QXTextureManager::HoldsTexture(QdcUnicodeString const& strName, QXTexture const* pTexture) const {
  QXMutexLock lock(m_Mutex);
  lock.lock();
  QXTextureCacheEntry const* const pEntry = FindCacheEntry(strName);
  return static_cast<unsigned char>(pEntry && pTexture && pEntry->GetTexture() == pTexture);
}

void QXTextureManager::AddUnusedTextures(QXTexture*& pTexture) {
  m_arrUnusedTextures.Add(pTexture);
  pTexture = nullptr;
}

void QXTextureManager::DelNoUseTexture() {}

}  // namespace QXC
