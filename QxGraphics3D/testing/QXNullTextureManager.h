/// @file
/// The texture store of the null renderer.
#pragma once

#include <QxGraphics3D/testing/QXNullObject.h>
#include <QxGraphics3D/testing/QXNullTexture.h>
#include <QxGraphics3D/texture/QXTextureManager.h>

#include <map>
#include <memory>

namespace QXC {

/// A texture manager as small as a plug-in's can be: look-up and creation, and everything else as in the base.
class QXNullTextureManager final : public QXTextureManager, public QXNullObject {
public:
  explicit QXNullTextureManager(std::shared_ptr<QXCallLog> pLog);
  ~QXNullTextureManager() override;

  /// Written down when it makes a texture. Takes the lock itself too, for hosts of one thread that forgo it.
  QXTexture* GetTexture(QdcUnicodeString const& strName, unsigned char bCreate) override;
  unsigned char ManagerOperation2(QdcUnicodeString const& strName) const override;
  void DeleteUnusedTextures() override;
  void Release() override;
  /// A QXNullTexture.
  QXTexture* CreateTexture() override;
  /// Of the textures in the cache.
  void DeleteTexture(unsigned int nBindID) override;

  /// The picture of a texture target, found under the target's name and the target's own. Called by the renderer.
  void AddPicture(QdcUnicodeString const& strTarget, QXTexture* pPicture);
  void RemovePicture(QdcUnicodeString const& strTarget);

  unsigned int GetTextureCount() const { return static_cast<unsigned int>(m_mapCache.size()); }

private:
  std::map<QdcUnicodeString, QXTexture*> m_mapPictures;
};

}  // namespace QXC
