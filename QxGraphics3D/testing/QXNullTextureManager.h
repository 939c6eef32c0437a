/// @file
/// The texture store of the null renderer.
#pragma once

#include <map>
#include <memory>

#include <QxGraphics3D/testing/QXNullObject.h>
#include <QxGraphics3D/texture/QXTexture.h>
#include <QxGraphics3D/texture/QXTextureManager.h>

namespace QXC {

/// A texture of the null renderer: a name to count references by.
class QXNullTexture final : public QXTexture, public QXNullObject {
public:
  QXNullTexture(std::shared_ptr<QXCallLog> pLog, QdcUnicodeString const& strName)
      : QXNullObject(std::move(pLog), "texture " + QXCallLog::Quote(strName)) {}
  ~QXNullTexture() override { Record("destroyed"); }

  void RendererOperation1(int nMinFilter, int nMagFilter, int nMipFilter) override {
    Record("RendererOperation1", nMinFilter, nMagFilter, nMipFilter);
  }
  void RendererOperation2() override {
    Record("RendererOperation2");
    m_nBindID = 0;
  }
  void LoadTexture(unsigned char bOnlyIfNeeded, unsigned char bReleaseImage) override {
    Record("LoadTexture", bOnlyIfNeeded, bReleaseImage);
    m_nBindID = 1;
  }
  void LoadSubTexture(int nX, int nY, int nWidth, int nHeight, int nSourceWidth, int nSourceHeight,
      [[maybe_unused]] void const* pPixels, unsigned int nFlag) override {
    Record("LoadSubTexture", nX, nY, nWidth, nHeight, nSourceWidth, nSourceHeight, nFlag);
  }
};

/// Textures by name, deleted by Release and with the manager.
class QXNullTextureManager final : public QXTextureManager, public QXNullObject {
public:
  explicit QXNullTextureManager(std::shared_ptr<QXCallLog> pLog);
  ~QXNullTextureManager() override;

  QXTexture* GetTexture(QdcUnicodeString const& strName, unsigned char bCreate) override;
  unsigned char ManagerOperation2(QdcUnicodeString const& strName) const override;
  void DeleteUnusedTextures() override;
  void Release() override;
  QXTexture* CreateTexture() override;

  unsigned int GetTextureCount() const { return static_cast<unsigned int>(m_mapTextures.size()); }

private:
  std::map<QdcUnicodeString, std::unique_ptr<QXNullTexture>> m_mapTextures;
};

}  // namespace QXC
