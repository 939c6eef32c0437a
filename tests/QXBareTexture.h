#pragma once

#include <QxGraphics3D/texture/QXTexture.h>

namespace QXC {

/// A texture without a device: what QXTexture does by itself.
class QXBareTexture : public QXTexture {
public:
  using QXTexture::QXTexture;

  void RendererOperation1(int, int, int) override {}
  void RendererOperation2() override {}
  void LoadTexture(unsigned char, unsigned char) override {}
  void LoadSubTexture(int, int, int, int, int, int, void const*, unsigned int) override {}
};

}  // namespace QXC
