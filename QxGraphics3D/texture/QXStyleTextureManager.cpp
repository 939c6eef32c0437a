#include <QxGraphics3D/texture/QXStyleTextureManager.h>

#include <QxGraphics3D/frame/foundation/base3d/QXTextureData.h>
#include <QxGraphics3D/frame/foundation/base3d/QXTextureInfo.h>

#include <memory>

namespace QXC {

QXStyleTextureManager g_styletexturemanager;

QXStyleTextureManager::QXStyleTextureManager() = default;

QXStyleTextureManager::~QXStyleTextureManager() {
  for (auto position = m_dictTextures.GetStartPosition(); !m_dictTextures.IsEOF(position); ++position) {
    delete position->second;
  }
  m_dictTextures.RemoveAll();
}

unsigned char QXStyleTextureManager::AddStyleTexture(QXTextureInfo const* pInfo) {
  if (!pInfo || pInfo->m_strName.IsEmpty()) return 0;
  auto pData = std::make_unique<QXTextureData>(*pInfo);
  g_styletexturemanager.m_dictTextures[pInfo->m_strName] = pData.get();
  pData.release();
  return 1;
}

QXTextureData* QXStyleTextureManager::GetStyleTexture(QdcUnicodeString strName) {
  QXTextureData* pData = nullptr;
  g_styletexturemanager.m_dictTextures.Lookup(strName, pData);
  return pData;
}

}  // namespace QXC
