/// @file
/// What drawables know of a texture.
#pragma once

#include <unordered_set>

#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>

#include <plugins/ogre/QXOgreTextureUnits.h>

namespace QXC {

class QXOgreImage;
class QXOgreTextureManager;
class QXOgreTextureUse;
class QXTexture;

/// The side of this plug-in's textures that drawables see. It counts the drawables in the texture's users and tells
/// them when it dies.
class QXOgreTextureSource {
public:
  virtual ~QXOgreTextureSource();
  QXOgreTextureSource(QXOgreTextureSource const&) = delete;
  QXOgreTextureSource& operator=(QXOgreTextureSource const&) = delete;

  /// The texture as one of this plug-in's; null for null and for another renderer's.
  static QXOgreTextureSource* Of(QXTexture* pTexture);

  /// What is shown now; null: nothing is on the device.
  virtual QXOgreImage* GetImage() const = 0;
  /// Factors on u and v.
  virtual QXVector3d GetScale() const = 0;
  virtual bool IsReversed() const = 0;
  virtual QXOgreFilters GetFilters() const = 0;
  /// Takes everything off the device.
  virtual void LeaveDevice() = 0;

  /// Called for each drawable that shows the texture, before the frame is drawn.
  void PrepareFor(unsigned long long nFrame) {
    if (m_nFrame != nFrame) Prepare();
    m_nFrame = nFrame;
  }
  QXTexture& GetTexture() const { return m_Texture; }
  /// Whether blending is needed: pixels let something through, and nobody has said otherwise.
  bool IsTransparent() const;
  /// Whether the colours were multiplied by their alpha already, as those of what was drawn onto nothing are. They are
  /// divided again where the texture is shown, or soft edges would come out dark.
  bool IsPremultiplied() const { return m_bPremultiplied; }
  void SetPremultiplied(bool bPremultiplied) { m_bPremultiplied = bPremultiplied; }
  /// The manager goes first.
  void LeaveManager() { m_pManager = nullptr; }

protected:
  QXOgreTextureSource(QXOgreTextureManager& manager, QXTexture& texture);
  /// Once a frame: uploads what waits for it and moves an animation on.
  virtual void Prepare() = 0;
  /// Null when the renderer has gone.
  QXOgreTextureManager* GetManager() const { return m_pManager; }

private:
  friend class QXOgreTextureUse;
  void Take(QXOgreTextureUse* pUse);
  /// May delete this.
  void GiveBack(QXOgreTextureUse* pUse);
  /// Notices users beside the drawables.
  void LookForOthers();

  QXOgreTextureManager* m_pManager;
  QXTexture& m_Texture;
  std::unordered_set<QXOgreTextureUse*> m_setUses;
  unsigned long long m_nFrame;
  /// Somebody beside drawables has counted.
  bool m_bOthers;
  bool m_bPremultiplied;
};

/// One counted use of a texture by a drawable. A texture that the host counted and gave back already is deleted with
/// its last use; one that the host never counted stays, since the host may hold it still.
class QXOgreTextureUse final {
public:
  explicit QXOgreTextureUse(QXOgreTextureSource* pSource);
  ~QXOgreTextureUse();
  QXOgreTextureUse(QXOgreTextureUse const&) = delete;
  QXOgreTextureUse& operator=(QXOgreTextureUse const&) = delete;

  /// Null once the texture has died.
  QXOgreTextureSource* GetSource() const { return m_pSource; }

private:
  friend class QXOgreTextureSource;
  QXOgreTextureSource* m_pSource;
};

}  // namespace QXC
