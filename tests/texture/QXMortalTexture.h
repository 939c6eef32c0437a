// A texture that tells of its end, and a manager that opens what it protects.
#pragma once

#include <QxGraphics3D/texture/QXTexture.h>
#include <QxGraphics3D/texture/QXTextureCacheEntry.h>
#include <QxGraphics3D/texture/QXTextureManager.h>

#include <functional>
#include <string>
#include <utility>

namespace QXC {

class QXMortalTexture : public QXTexture {
public:
  using Report = std::function<void(QXMortalTexture&)>;

  explicit QXMortalTexture(QdcUnicodeString const& strName, Report report = Report())
      : QXTexture(strName), m_Report(std::move(report)) {}
  ~QXMortalTexture() override {
    if (m_Report) m_Report(*this);
  }

  void RendererOperation1(int, int, int) override {}
  void RendererOperation2() override { m_nBindID = 0; }
  void LoadTexture(unsigned char, unsigned char) override { m_nBindID = 1; }
  void LoadSubTexture(int, int, int, int, int, int, void const*, unsigned int) override {}

private:
  Report m_Report;
};

class QXOpenTextureManager : public QXTextureManager {
public:
  using QXTextureManager::DelNoUseTexture;
  using QXTextureManager::FindCacheEntry;
  using QXTextureManager::m_arrUnusedTextures;
  using QXTextureManager::m_mapCache;
  using QXTextureManager::m_Mutex;

  /// As plug-ins do it.
  QXTexture* GetTexture(QdcUnicodeString const& strName, unsigned char bCreate) override {
    if (QXTextureCacheEntry* const pEntry = FindCacheEntry(strName)) return pEntry->GetTexture();
    return bCreate ? Enter(new QXMortalTexture(strName, m_Report)) : nullptr;
  }
  unsigned char ManagerOperation2(QdcUnicodeString const& strName) const override {
    return FindCacheEntry(strName) ? 1 : 0;
  }

  QXTexture* Enter(QXTexture* pTexture) {
    AddToCache(pTexture->m_strTexFilePath, new QXTextureCacheEntry(pTexture));
    return pTexture;
  }

  /// Of the textures that GetTexture makes.
  QXMortalTexture::Report m_Report;
};

}  // namespace QXC
