/// @file
/// Textures for tests with many threads: nothing is written down, only counted.
#pragma once

#include "QXBareTexture.h"

#include <QxGraphics3D/texture/QXTextureCacheEntry.h>
#include <QxGraphics3D/texture/QXTextureManager.h>

#include <atomic>
#include <cstddef>

namespace QXC {

/// A texture that reads the pixels it is sent, as a device does: what writes them meanwhile shows in the thread
/// sanitizer.
template <int nPixelSize>
class QXSentTexture : public QXBareTexture {
public:
  using QXBareTexture::QXBareTexture;

  void LoadTexture(unsigned char, unsigned char) override { m_nBindID = 1; }
  void LoadSubTexture(int, int, int nWidth, int nHeight, int, int, void const* pPixels, unsigned int) override {
    auto const* const pBytes = static_cast<unsigned char const*>(pPixels);
    for (int i = 0; i < nWidth * nHeight * nPixelSize; ++i) m_nSum += pBytes[i];
    ++ms_nSent;
  }

  static inline std::atomic<int> ms_nSent{0};
  unsigned int m_nSum = 0;
};

/// Makes the textures that are asked for and keeps them while they have users.
template <class Texture>
class QXSentTextureManager : public QXTextureManager {
public:
  QXTexture* GetTexture(QdcUnicodeString const& strName, unsigned char bCreate) override {
    if (QXTextureCacheEntry* const pEntry = FindCacheEntry(strName)) return pEntry->GetTexture();
    if (!bCreate) return nullptr;
    auto* const pTexture = new Texture(strName);
    AddToCache(strName, new QXTextureCacheEntry(pTexture));
    return pTexture;
  }
  unsigned char ManagerOperation2(QdcUnicodeString const& strName) const override {
    return FindCacheEntry(strName) ? 1 : 0;
  }
  std::size_t GetCount() const { return m_mapCache.size(); }
};

}  // namespace QXC
