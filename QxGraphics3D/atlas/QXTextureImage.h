/// @file
/// One image of the image atlas.
#pragma once

#include <cstdint>

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/Platform.h>
#include <QxGraphics3D/frame/foundation/base/QdcArray.h>
#include <QxGraphics3D/frame/foundation/base/QdcRect.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

namespace QXC {

class QXTextureData;
class QXTextureImageManager;

/// A named image and its square slot in a big texture of 1024 by 1024 pixels. QXTextureImageManager makes, owns and
/// deletes it. Who asked for it fills m_pTextureData and m_nSize and then calls FindSpaceInBigTextures; the fields called
/// the caller's are kept for the code that draws the image, and nothing in the library reads them.
/// Threads: after FindSpaceInBigTextures the pixels belong to the rendering thread.
class QXGRAPHICS3D_API QXTextureImage {
public:
  /// Where the slot is, valid while m_bAllocated is 1. From the lowest bit: 10 bits column and 10 bits row of the slot's
  /// centre, 4 bits level (its edge is 1024 >> level), 8 bits index of the big texture.
  std::uint32_t m_nLocation = 0;
  int m_nRefCount = 0;        ///< users; raised by GetTextureImage, lowered by RemoveTextureImage
  QdcRect2D m_FirstRect;      ///< the caller's
  QdcRect2D m_SecondRect;     ///< the caller's
  unsigned char m_bFlag = 0;  ///< the caller's
  /// Input, owned: the pixels, at most m_nSize each way, since what is larger covers the neighbours. Deleted after the
  /// upload.
  QXTextureData* m_pTextureData = nullptr;
  QXInt64 m_nOwnerID = 0;    ///< the caller's
  QXInt64 m_nUserValue = 0;  ///< the caller's
  /// Input: edge of the slot in pixels, a power of two from 1 to 1024.
  unsigned int m_nSize = 0;
  unsigned char m_bLoaded = 0;     ///< 1: the pixels are in the big texture; written by the manager
  unsigned char m_bAllocated = 0;  ///< 1: a slot is held; written by the manager
  QdcUnicodeString m_strName;      ///< the key in the manager
  unsigned int m_nUserTag = 0;     ///< the caller's
  QXTextureImageManager* m_pManager;
  unsigned int m_nCreateTime;       ///< clock() when the record was made
  unsigned char m_bUserFlagA = 0;   ///< the caller's
  unsigned char m_bUserFlagB = 0;   ///< the caller's
  QdcArray<QXInt64> m_arrUserData;  ///< the caller's

  explicit QXTextureImage(QXTextureImageManager* pManager = nullptr);
  QXTextureImage(QXTextureImage const&) = delete;
  QXTextureImage& operator=(QXTextureImage const&) = delete;
  ~QXTextureImage();

  /// Index of the big texture, whose name is "Image_BigTexture_" and this number. Of m_nLocation.
  unsigned int GetBigTextureIndex() const { return m_nLocation >> 24; }
  /// The slot in pixels of the big texture, row 0 being its first row. Of m_nLocation.
  QdcRect GetSlot() const;
};

}  // namespace QXC
