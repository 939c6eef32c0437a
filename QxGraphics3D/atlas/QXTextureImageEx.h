/// @file
/// One image with a texture of its own.
#pragma once

#include <atomic>

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/Platform.h>
#include <QxGraphics3D/frame/foundation/base/QdcArray.h>
#include <QxGraphics3D/frame/foundation/base/QdcRect.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

namespace QXC {

class QXTexture;
class QXTextureData;
class QXTextureImageManagerEx;

/// A named image that gets a whole texture. QXTextureImageManagerEx makes, owns and deletes it. Who asked for it fills
/// m_pTextureData, size, format and compression and sets m_bReady last; the fields called the caller's are kept for the
/// code that draws the image, and nothing in the library reads them.
class QXGRAPHICS3D_API QXTextureImageEx {
public:
  int m_nRefCount = 0;                      ///< users; raised by GetTextureImage, lowered by RemoveTextureImage
  QdcRect2D m_FirstRect;                    ///< the caller's
  QdcRect2D m_SecondRect;                   ///< the caller's
  unsigned char m_bFlag = 0;                ///< the caller's
  QXTextureData* m_pTextureData = nullptr;  ///< input, owned: the pixels; deleted after the upload
  QXInt64 m_nOwnerID = 0;                   ///< the caller's
  QXInt64 m_nUserValue = 0;                 ///< the caller's
  unsigned int m_nHeight = 0;               ///< input: rows of m_pTextureData
  unsigned int m_nWidth = 0;                ///< input: columns of m_pTextureData
  unsigned char m_bLoaded = 0;              ///< 1: the texture holds the pixels; written by the manager
  /// Input: 1 hands the record to the rendering thread, which uploads it in one of its next frames. Atomic, so that the
  /// thread that read the pixels may set it.
  std::atomic<unsigned char> m_bReady{0};
  QdcUnicodeString m_strName;   ///< the key in the manager
  unsigned int m_nUserTag = 0;  ///< the caller's
  QXTextureImageManagerEx* m_pManager;
  unsigned int m_nCreateTime;       ///< clock() when the record was made
  unsigned char m_bUserFlagA = 0;   ///< the caller's
  unsigned char m_bUserFlagB = 0;   ///< the caller's
  QdcArray<QXInt64> m_arrUserData;  ///< the caller's
  unsigned int m_nFormat = 0;       ///< input: pixel format of m_pTextureData
  unsigned int m_nCompression = 0;  ///< input: compression of m_pTextureData
  QXTexture* m_pTexture = nullptr;  ///< the image's own texture, null until the upload; written by the manager

  explicit QXTextureImageEx(QXTextureImageManagerEx* pManager = nullptr);
  QXTextureImageEx(QXTextureImageEx const&) = delete;
  QXTextureImageEx& operator=(QXTextureImageEx const&) = delete;
  ~QXTextureImageEx();
};

}  // namespace QXC
