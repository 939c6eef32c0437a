/// @file
/// The renderer's texture store.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

namespace QXC {

class QXTexture;

/// Textures of one renderer by name. The plug-in derives from it, sets QXGraphics3D::m_pTextureManager, and sets that
/// member to null before it deletes the object. Rendering thread.
class QXGRAPHICS3D_API QXTextureManager {
public:
  QXTextureManager();
  QXTextureManager(QXTextureManager const&) = delete;
  QXTextureManager& operator=(QXTextureManager const&) = delete;

  // Slot order is the contract with plug-ins: never reorder, never insert; append only with a major version.

  virtual ~QXTextureManager();
  /// The texture of that name; if there is none and bCreate is 1, a new one, which the manager owns. Else null.
  virtual QXTexture* GetTexture(QdcUnicodeString const& strName, unsigned char bCreate) = 0;
  /// 1 if a texture of that name is held. Called by hosts that only want to know.
  virtual unsigned char ManagerOperation2(QdcUnicodeString const& strName) const = 0;
  /// Deletes the textures that nobody uses any more. Base: holds none.
  virtual void DeleteUnusedTextures();
  /// Deletes every texture. Called by QXGraphics3D::ClearResource. Base: holds none.
  virtual void Release();
  /// A new texture without a name, the caller's. Base: null.
  virtual QXTexture* CreateTexture();
  /// Deletes the texture of a device identifier. Base: nothing.
  virtual void DeleteTexture(unsigned int nBindID);
};

}  // namespace QXC
