#include <plugins/ogre/QXOgreTextureManager.h>

#include <ctime>
#include <memory>
#include <mutex>

#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseToolkit.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileType.h>
#include <QxGraphics3D/texture/QXTextureCacheEntry.h>

#include <plugins/ogre/QXOgreAnimationTexture.h>
#include <plugins/ogre/QXOgreTexture.h>

namespace QXC {

QXOgreTextureManager::QXOgreTextureManager(QXOgreGraphics3D& graphics3D) : m_Graphics3D(graphics3D) {}

QXOgreTextureManager::~QXOgreTextureManager() {
  // While there is still somebody whom they can tell.
  Release();
  for (QXOgreTextureSource* const pSource : m_setSources) pSource->LeaveManager();
}

QXTexture* QXOgreTextureManager::GetTexture(QdcUnicodeString const& strName, unsigned char bCreate) {
  std::scoped_lock const lock(m_Mutex);
  auto const picture = m_mapPictures.find(strName);
  if (picture != m_mapPictures.end()) return picture->second;
  if (QXTextureCacheEntry* const pEntry = FindCacheEntry(strName)) {
    pEntry->SetLastAccess(static_cast<double>(std::clock()));
    return pEntry->GetTexture();
  }
  if (!bCreate) return nullptr;
  bool const bAnimated = QXFileParseToolkit::GetFileTypeByExtName(strName) == QXFileType::EM_IMAGE_GIF;
  std::unique_ptr<QXTexture> pTexture(bAnimated ? new QXOgreAnimationTexture(*this) : CreateTexture());
  pTexture->SetTexFilePath(strName);
  auto pEntry = std::make_unique<QXTextureCacheEntry>(pTexture.release());
  AddToCache(strName, pEntry.get());
  return pEntry.release()->GetTexture();
}

unsigned char QXOgreTextureManager::ManagerOperation2(QdcUnicodeString const& strName) const {
  std::scoped_lock const lock(m_Mutex);
  return m_mapPictures.contains(strName) || FindCacheEntry(strName) != nullptr;
}

QXTexture* QXOgreTextureManager::CreateTexture() {
  return new QXOgreTexture(*this);
}

void QXOgreTextureManager::DeleteTexture(unsigned int nBindID) {
  if (nBindID == 0) return;
  // Threads that ask for glyphs make textures of pages.
  std::scoped_lock const lock(m_Mutex);
  for (QXOgreTextureSource* const pSource : m_setSources) {
    if (pSource->GetTexture().GetBindID() == nBindID) return pSource->LeaveDevice();
  }
}

bool QXOgreTextureManager::IsCached(QXTexture const& texture) const {
  std::scoped_lock const lock(m_Mutex);
  QXTextureCacheEntry const* const pEntry = FindCacheEntry(texture.m_strTexFilePath);
  return pEntry && pEntry->GetTexture() == &texture;
}

void QXOgreTextureManager::Add(QXOgreTextureSource* pSource) {
  std::scoped_lock const lock(m_Mutex);
  m_setSources.insert(pSource);
}

void QXOgreTextureManager::Remove(QXOgreTextureSource* pSource) {
  std::scoped_lock const lock(m_Mutex);
  m_setSources.erase(pSource);
}

void QXOgreTextureManager::AddPicture(QdcUnicodeString const& strTarget, QXTexture* pPicture) {
  std::scoped_lock const lock(m_Mutex);
  m_mapPictures[strTarget] = pPicture;
}

void QXOgreTextureManager::RemovePicture(QdcUnicodeString const& strTarget) {
  std::scoped_lock const lock(m_Mutex);
  m_mapPictures.erase(strTarget);
}

void QXOgreTextureManager::LeaveDevice() {
  std::scoped_lock const lock(m_Mutex);
  for (QXOgreTextureSource* const pSource : m_setSources) pSource->LeaveDevice();
}

}  // namespace QXC
