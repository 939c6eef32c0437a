#include <plugins/ogre/QXOgreTextureSource.h>

#include <QxGraphics3D/texture/QXTexture.h>

#include <plugins/ogre/QXOgreImage.h>
#include <plugins/ogre/QXOgreTextureManager.h>

namespace QXC {

QXOgreTextureSource::QXOgreTextureSource(QXOgreTextureManager& manager, QXTexture& texture)
    : m_pManager(&manager), m_Texture(texture), m_nFrame(0), m_bOthers(false), m_bPremultiplied(false) {
  manager.Add(this);
}

QXOgreTextureSource::~QXOgreTextureSource() {
  for (QXOgreTextureUse* const pUse : m_setUses) pUse->m_pSource = nullptr;
  if (m_pManager) m_pManager->Remove(this);
}

QXOgreTextureSource* QXOgreTextureSource::Of(QXTexture* pTexture) {
  return dynamic_cast<QXOgreTextureSource*>(pTexture);
}

bool QXOgreTextureSource::IsTransparent() const {
  QXOgreImage const* const pImage = GetImage();
  return pImage && pImage->IsTransparent() && m_Texture.IsHasTransparentData() != 0;
}

void QXOgreTextureSource::LookForOthers() {
  if (m_Texture.GetRef() > static_cast<int>(m_setUses.size())) m_bOthers = true;
}

void QXOgreTextureSource::Take(QXOgreTextureUse* pUse) {
  if (m_pManager) m_pManager->Lock();
  LookForOthers();
  m_setUses.insert(pUse);
  m_Texture.AddRef();
  if (m_pManager) m_pManager->Unlock();
}

void QXOgreTextureSource::GiveBack(QXOgreTextureUse* pUse) {
  QXOgreTextureManager* const pManager = m_pManager;
  if (pManager) pManager->Lock();
  LookForOthers();
  m_setUses.erase(pUse);
  if (pManager && m_bOthers && pManager->IsCached(m_Texture)) {
    pManager->RemoveTexture(&m_Texture, 1);
  } else {
    m_Texture.DecRef();
  }
  if (pManager) pManager->Unlock();
}

QXOgreTextureUse::QXOgreTextureUse(QXOgreTextureSource* pSource) : m_pSource(pSource) {
  if (m_pSource) m_pSource->Take(this);
}

QXOgreTextureUse::~QXOgreTextureUse() {
  if (m_pSource) m_pSource->GiveBack(this);
}

}  // namespace QXC
