/// @file
/// A texture without a device.
#pragma once

#include <QxGraphics3D/texture/QXTexture.h>

namespace QXApp {

/// What the library makes of an image before any renderer sees it.
class QXHostTexture final : public QXC::QXTexture {
public:
  void RendererOperation1(int, int, int) override {}
  void RendererOperation2() override {}
  void LoadTexture(unsigned char, unsigned char) override {}
  void LoadSubTexture(int, int, int, int, int, int, void const*, unsigned int) override {}
};

}  // namespace QXApp
