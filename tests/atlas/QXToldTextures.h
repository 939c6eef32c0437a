// Textures and their manager that write down what is asked of them, together with the locks that are taken: one list of
// lines, in order.
#pragma once

#include "../QXNarrow.h"

#include <QxGraphics3D/frame/foundation/base3d/QXTextureData.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXMutex.h>
#include <QxGraphics3D/texture/QXTexture.h>
#include <QxGraphics3D/texture/QXTextureCacheEntry.h>
#include <QxGraphics3D/texture/QXTextureManager.h>

#include <cstdio>
#include <functional>
#include <string>
#include <vector>

namespace QXC {

using QXTold = std::vector<std::string>;

inline QXTold& GetTold() {
  static QXTold ms_arrTold;
  return ms_arrTold;
}

template <class... Numbers>
void Tell(QdcUnicodeString const& strObject, char const* szFormat, Numbers... numbers) {
  char szText[200];
  // NOLINTNEXTLINE(clang-diagnostic-format-security): the formats stand in this file
  std::snprintf(szText, sizeof szText, szFormat, numbers...);
  GetTold().push_back(Narrow(strObject) + ": " + szText);
}

class QXToldTexture : public QXTexture {
public:
  explicit QXToldTexture(QdcUnicodeString const& strName) : QXTexture(strName) {}
  ~QXToldTexture() override {
    GetTold().push_back(Narrow(m_strTexFilePath) + ": dies");
    if (m_Dies) m_Dies();
  }

  void RendererOperation1(int, int, int) override {}
  void RendererOperation2() override { m_nBindID = 0; }
  void LoadTexture(unsigned char bOnlyIfNeeded, unsigned char bReleaseImage) override {
    Tell(m_strTexFilePath, "LoadTexture(%d, %d) need %d", bOnlyIfNeeded, bReleaseImage, m_bNeedLoadTexture);
    m_nBindID = 1;
    m_bNeedLoadTexture = 0;
  }
  void LoadSubTexture(int nX, int nY, int nWidth, int nHeight, int nSourceWidth, int nSourceHeight, void const* pPixels,
      unsigned int nFlag) override {
    // The first byte stands for the image that it is.
    Tell(m_strTexFilePath, "LoadSubTexture(%d, %d, %d, %d, %d, %d, pixels of %d, %u)", nX, nY, nWidth, nHeight,
        nSourceWidth, nSourceHeight, *static_cast<unsigned char const*>(pPixels), nFlag);
  }
  using QXTexture::SetTextureData;
  void SetTextureData(QXTextureData const* pData) override {
    Tell(m_strTexFilePath, "SetTextureData(%u x %u, format %d, compression %u, size %u)", pData->m_nWidth,
        pData->m_nHeight, pData->m_eFormat, pData->m_nCompression, pData->m_nDataSize);
    // Not the base's, whose own mutex would be told too.
    QXTexture::SetTextureData(*pData);
  }
  void SetTextureData(
      int nWidth, int nHeight, unsigned char* pPixels, unsigned int nCompression, QX3DPixelFormat eFormat) override {
    Tell(m_strTexFilePath, "SetTextureData(%d, %d, pixels, %u, %d)", nWidth, nHeight, nCompression, eFormat);
    QXTexture::SetTextureData(nWidth, nHeight, pPixels, nCompression, eFormat);
  }
  void SetTextureMipMap(unsigned char bMipmapEnabled) override {
    Tell(m_strTexFilePath, "SetTextureMipMap(%d)", bMipmapEnabled);
    QXTexture::SetTextureMipMap(bMipmapEnabled);
  }

  std::function<void()> m_Dies;
};

class QXToldTextureManager : public QXTextureManager {
public:
  using QXTextureManager::m_Mutex;

  QXTexture* GetTexture(QdcUnicodeString const& strName, unsigned char bCreate) override {
    Tell(strName, "GetTexture(%d)", bCreate);
    if (m_bEmpty) return nullptr;
    if (QXTextureCacheEntry* const pEntry = FindCacheEntry(strName)) return pEntry->GetTexture();
    if (!bCreate) return nullptr;
    auto* const pTexture = new QXToldTexture(strName);
    AddToCache(strName, new QXTextureCacheEntry(pTexture));
    return pTexture;
  }
  unsigned char ManagerOperation2(QdcUnicodeString const& strName) const override {
    return FindCacheEntry(strName) ? 1 : 0;
  }
  /// Without a word.
  QXToldTexture* Find(QdcUnicodeString const& strName) {
    QXTextureCacheEntry* const pEntry = FindCacheEntry(strName);
    return pEntry ? static_cast<QXToldTexture*>(pEntry->GetTexture()) : nullptr;
  }
  std::size_t GetCount() const { return m_mapCache.size(); }

  unsigned char m_bEmpty = 0;  ///< no texture for anybody
};

/// Writes locks down while it lives: the texture manager's as "store", any other as "atlas".
class QXToldLocks {
public:
  explicit QXToldLocks(QXToldTextureManager const& manager) {
    ms_pStore = &manager.m_Mutex;
    QXMutex::SetObserver([](QXMutex const& mutex, unsigned char bLocked) {
      GetTold().push_back(std::string(&mutex == ms_pStore ? "store" : "atlas") + (bLocked ? "(" : ")"));
    });
  }
  QXToldLocks(QXToldLocks const&) = delete;
  QXToldLocks& operator=(QXToldLocks const&) = delete;
  ~QXToldLocks() { QXMutex::SetObserver(nullptr); }

private:
  static inline QXMutex const* ms_pStore = nullptr;
};

/// An image whose pixels all have one value.
inline QXTextureData* MakeData(
    unsigned int nWidth, unsigned int nHeight, int nFormat, unsigned char nValue, unsigned int nCompression = 0) {
  auto* const pData = new QXTextureData;
  pData->m_nWidth = nWidth;
  pData->m_nHeight = nHeight;
  pData->m_eFormat = static_cast<QX3DPixelFormat>(nFormat);
  pData->m_nCompression = nCompression;
  unsigned int const nPixelSize = nFormat == 10 || nFormat == 11 ? 3 : 4;
  // In blocks of 4 by 4 pixels, 8 bytes for pixels of 3 bytes and 16 for pixels of 4.
  pData->m_nDataSize = nCompression == 0 ? nWidth * nHeight * nPixelSize
                                         : (nWidth + 3) / 4 * ((nHeight + 3) / 4) * (nPixelSize == 3 ? 8 : 16);
  pData->m_pPixels = new unsigned char[pData->m_nDataSize];
  for (unsigned int i = 0; i < pData->m_nDataSize; ++i) pData->m_pPixels[i] = nValue;
  return pData;
}

/// Makes an object the one of its class, as hosts know it, while this lives.
template <class T>
class QXAsSingleton {
public:
  explicit QXAsSingleton(T& object) : m_pKept(T::ms_pSingleton) { T::ms_pSingleton = &object; }
  QXAsSingleton(QXAsSingleton const&) = delete;
  QXAsSingleton& operator=(QXAsSingleton const&) = delete;
  ~QXAsSingleton() { T::ms_pSingleton = m_pKept; }

private:
  T* m_pKept;
};

}  // namespace QXC
