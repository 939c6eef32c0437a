/// @file
/// An animated texture of the null renderer.
#pragma once

#include <QxGraphics3D/testing/QXNullObject.h>
#include <QxGraphics3D/texture/QXAnimationTexture.h>

#include <memory>

namespace QXC {

/// Makes a QXNullTexture for each frame when it is loaded, called by its own name and the frame's index; the frames in
/// memory stay until they are released. What each frame's texture holds is read from there.
class QXNullAnimationTexture final : public QXAnimationTexture, public QXNullObject {
public:
  explicit QXNullAnimationTexture(
      std::shared_ptr<QXCallLog> pLog, QdcUnicodeString const& strName = QdcUnicodeString());
  ~QXNullAnimationTexture() override;

  /// Every frame texture, and those made later.
  void RendererOperation1(int nMinFilter, int nMagFilter, int nMipFilter) override;
  /// Every frame texture.
  void RendererOperation2() override;
  /// Makes the textures that are missing, with this texture's settings, and goes on as in the base. With
  /// m_bNeedLoadTexture the current frame is made anew on the device; the flag is 0 afterwards.
  void LoadTexture(unsigned char bOnlyIfNeeded, unsigned char bReleaseImage) override;

private:
  void MakeFrameTextures();

  int m_nFilters[3] = {-1, -1, -1};  // as given to RendererOperation1, -1 for never
};

}  // namespace QXC
