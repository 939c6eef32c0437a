#pragma once

#include <QxGraphics3D/texture/QXAnimationTexture.h>

namespace QXC {

/// An animated texture without a device: what QXAnimationTexture does by itself.
class QXBareAnimation : public QXAnimationTexture {
public:
  using QXAnimationTexture::QXAnimationTexture;

  void RendererOperation1(int, int, int) override {}
  void RendererOperation2() override {}
};

}  // namespace QXC
