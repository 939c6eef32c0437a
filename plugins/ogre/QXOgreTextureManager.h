/// @file
/// Textures of this renderer by name.
#pragma once

#include <map>
#include <unordered_set>

#include <QxGraphics3D/texture/QXTextureManager.h>

#include <plugins/ogre/QXOgreGraphics3D.h>

namespace QXC {

class QXOgreTextureSource;

/// The renderer's texture store. It also knows the textures that stand in no cache, so that none keeps anything on the
/// device when that goes.
class QXOgreTextureManager final : public QXTextureManager {
public:
  explicit QXOgreTextureManager(QXOgreGraphics3D& graphics3D);
  ~QXOgreTextureManager() override;
  QXOgreTextureManager(QXOgreTextureManager const&) = delete;
  QXOgreTextureManager& operator=(QXOgreTextureManager const&) = delete;

  /// A name with the extension of an animated file gives a QXAnimationTexture, that of a texture target its picture.
  QXTexture* GetTexture(QdcUnicodeString const& strName, unsigned char bCreate) override;
  unsigned char ManagerOperation2(QdcUnicodeString const& strName) const override;
  QXTexture* CreateTexture() override;
  void DeleteTexture(unsigned int nBindID) override;

  /// Whether the cache holds this texture under its name.
  bool IsCached(QXTexture const& texture) const;
  /// Called by the textures themselves.
  void Add(QXOgreTextureSource* pSource);
  void Remove(QXOgreTextureSource* pSource);
  /// The picture of a texture target, found under the target's name: whoever draws with what was drawn knows that alone.
  /// It is the target's, so no cache holds it. Called by the targets themselves.
  void AddPicture(QdcUnicodeString const& strTarget, QXTexture* pPicture);
  void RemovePicture(QdcUnicodeString const& strTarget);
  /// Takes all textures off the device, which goes.
  void LeaveDevice();

  /// Null before Initialize.
  QXOgreDevice* GetDevice() const { return m_Graphics3D.GetDevice(); }
  /// Runs a piece of work on the device: 1, or 0 with the reason as the renderer's error text.
  template <class Work>
  unsigned char Try(Work&& work) {
    return m_Graphics3D.Try([&] { work(m_Graphics3D.RequireDevice()); });
  }

private:
  QXOgreGraphics3D& m_Graphics3D;
  std::unordered_set<QXOgreTextureSource*> m_setSources;
  std::map<QdcUnicodeString, QXTexture*> m_mapPictures;
};

}  // namespace QXC
