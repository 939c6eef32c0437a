#include <QxGraphics3D/testing/QXNullTextureManager.h>

#include <QxGraphics3D/texture/QXTextureCacheEntry.h>

#include <ctime>
#include <utility>

namespace QXC {

QXNullTextureManager::QXNullTextureManager(std::shared_ptr<QXCallLog> pLog)
    : QXNullObject(std::move(pLog), "texture manager") {}

QXNullTextureManager::~QXNullTextureManager() = default;

QXTexture* QXNullTextureManager::GetTexture(QdcUnicodeString const& strName, unsigned char bCreate) {
  QXMutexLock lock(m_Mutex);
  lock.lock();
  auto const picture = m_mapPictures.find(strName);
  if (picture != m_mapPictures.end()) return picture->second;
  QXTextureCacheEntry* const pEntry = FindCacheEntry(strName);
  if (pEntry && pEntry->GetTexture()) {
    pEntry->SetLastAccess(static_cast<double>(std::clock()));
    return pEntry->GetTexture();
  }
  if (!bCreate) return nullptr;
  Record("GetTexture", strName, bCreate);
  auto pTexture = std::make_unique<QXNullTexture>(m_pLog, strName);
  if (pEntry) {
    pEntry->SetLastAccess(static_cast<double>(std::clock()));
    pEntry->SetTexture(pTexture.get());
    return pTexture.release();
  }
  auto pNewEntry = std::make_unique<QXTextureCacheEntry>();
  AddToCache(strName, pNewEntry.get());
  pNewEntry.release()->SetTexture(pTexture.get());
  return pTexture.release();
}

unsigned char QXNullTextureManager::ManagerOperation2(QdcUnicodeString const& strName) const {
  QXMutexLock lock(m_Mutex);
  lock.lock();
  QXTextureCacheEntry* const pEntry = FindCacheEntry(strName);
  return m_mapPictures.contains(strName) || (pEntry && pEntry->GetTexture()) ? 1 : 0;
}

void QXNullTextureManager::AddPicture(QdcUnicodeString const& strTarget, QXTexture* pPicture) {
  QXMutexLock lock(m_Mutex);
  lock.lock();
  m_mapPictures[strTarget] = pPicture;
}

void QXNullTextureManager::RemovePicture(QdcUnicodeString const& strTarget) {
  QXMutexLock lock(m_Mutex);
  lock.lock();
  m_mapPictures.erase(strTarget);
}

void QXNullTextureManager::DeleteUnusedTextures() {
  Record("DeleteUnusedTextures");
  QXTextureManager::DeleteUnusedTextures();
}

void QXNullTextureManager::Release() {
  Record("Release");
  QXTextureManager::Release();
}

QXTexture* QXNullTextureManager::CreateTexture() {
  Record("CreateTexture");
  return new QXNullTexture(m_pLog);
}

void QXNullTextureManager::DeleteTexture(unsigned int nBindID) {
  Record("DeleteTexture", nBindID);
  QXMutexLock lock(m_Mutex);
  lock.lock();
  for (auto const& [strName, pEntry] : m_mapCache) {
    QXTexture* const pTexture = pEntry ? pEntry->GetTexture() : nullptr;
    if (pTexture && nBindID != 0 && pTexture->GetBindID() == nBindID) pTexture->RendererOperation2();
  }
}

}  // namespace QXC
