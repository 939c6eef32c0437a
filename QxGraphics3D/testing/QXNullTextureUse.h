/// @file
/// One counted use of a texture.
#pragma once

#include <QxGraphics3D/texture/QXTexture.h>

namespace QXC {

/// Holds a reference on a texture and gives it back when it takes another or dies. The texture is never deleted here.
class QXNullTextureUse {
public:
  QXNullTextureUse() = default;
  QXNullTextureUse(QXNullTextureUse const&) = delete;
  QXNullTextureUse& operator=(QXNullTextureUse const&) = delete;
  ~QXNullTextureUse() { Set(nullptr); }

  /// Null only gives the former one back.
  void Set(QXTexture* pTexture) {
    // The new reference first: the same texture set again is never without a user.
    if (pTexture != nullptr) {
      pTexture->AddRef();
    }
    if (m_pTexture != nullptr) {
      m_pTexture->DecRef();
    }
    m_pTexture = pTexture;
  }
  QXTexture* Get() const { return m_pTexture; }

private:
  QXTexture* m_pTexture = nullptr;
};

}  // namespace QXC
