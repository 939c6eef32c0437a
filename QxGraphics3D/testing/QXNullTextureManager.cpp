#include <QxGraphics3D/testing/QXNullTextureManager.h>

namespace QXC {

QXNullTextureManager::QXNullTextureManager(std::shared_ptr<QXCallLog> pLog)
    : QXNullObject(std::move(pLog), "texture manager") {}

QXNullTextureManager::~QXNullTextureManager() = default;

QXTexture* QXNullTextureManager::GetTexture(QdcUnicodeString const& strName, unsigned char bCreate) {
  auto const texture = m_mapTextures.find(strName);
  if (texture != m_mapTextures.end()) {
    return texture->second.get();
  }
  if (!bCreate) {
    return nullptr;
  }
  Record("GetTexture", strName, bCreate);
  return m_mapTextures.emplace(strName, std::make_unique<QXNullTexture>(m_pLog, strName)).first->second.get();
}

unsigned char QXNullTextureManager::ManagerOperation2(QdcUnicodeString const& strName) const {
  return static_cast<unsigned char>(m_mapTextures.count(strName) != 0);
}

void QXNullTextureManager::DeleteUnusedTextures() {
  Record("DeleteUnusedTextures");
  std::erase_if(m_mapTextures, [](auto const& entry) { return entry.second->GetRef() <= 0; });
}

void QXNullTextureManager::Release() {
  Record("Release");
  m_mapTextures.clear();
}

QXTexture* QXNullTextureManager::CreateTexture() {
  Record("CreateTexture");
  return new QXNullTexture(m_pLog, QdcUnicodeString());
}

}  // namespace QXC
