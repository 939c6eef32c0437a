#include <apps/qx3d/QXTextureShelf.h>

#include <apps/qx3d/QXMessage.h>

#include <QxGraphics3D/frame/QXGraphics3D.h>
#include <QxGraphics3D/texture/QXTexture.h>
#include <QxGraphics3D/texture/QXTextureManager.h>

#include <algorithm>

namespace QXApp {

namespace {

/// The store's texture of a name, counted; null if it makes none.
QXC::QXTexture* TakeCounted(QXC::QXTextureManager& manager, QXC::QdcUnicodeString const& strName) {
  manager.Lock();
  QXC::QXTexture* pTexture = manager.GetTexture(strName, 1);
  if (pTexture != nullptr) pTexture->AddRef();
  manager.Unlock();
  return pTexture;
}

}  // namespace

QXC::QXTexture* QXTextureShelf::Take(
    QXC::QXGraphics3D& graphics3D, QXModelPictures const& pictures, QXTextureKey const& key, std::string& strProblem) {
  std::string const strName = pictures.GetTextureName(key);
  strProblem.clear();
  QXC::QXTextureManager* pManager = graphics3D.GetTextureManager();
  if (pManager == nullptr) {
    strProblem = "the renderer keeps no textures, so that models are shown in their colours; choose another one";
    return nullptr;
  }
  QXC::QXTexture* pTexture = TakeCounted(*pManager, QXC::QdcUnicodeString::FromUTF8(strName.c_str()));
  if (pTexture != nullptr && pTexture->IsLoaded() == 0) {
    pictures.Fill(key, *pTexture);
    pTexture->LoadTexture(1, 1);
  }
  if (pTexture != nullptr && pTexture->IsLoaded() != 0) {
    // Drawables of one texture are many; one count holds it for all of them.
    if (std::find(m_vecTextures.begin(), m_vecTextures.end(), pTexture) == m_vecTextures.end())
      m_vecTextures.push_back(pTexture);
    else
      pTexture->DecRef();
    return pTexture;
  }
  if (pTexture != nullptr) pManager->RemoveTexture(pTexture, 1);
  std::string const strReason = Narrow(graphics3D.GetErrorText());
  strProblem = "picture " + strName + ": the renderer cannot use it" + (strReason.empty() ? "" : ": " + strReason) +
               "; convert it to PNG";
  return nullptr;
}

void QXTextureShelf::GiveBack(QXC::QXGraphics3D& graphics3D) {
  QXC::QXTextureManager* pManager = graphics3D.GetTextureManager();
  for (QXC::QXTexture* pTexture : m_vecTextures)
    if (pManager != nullptr) pManager->RemoveTexture(pTexture, 1);
  m_vecTextures.clear();
}

}  // namespace QXApp
