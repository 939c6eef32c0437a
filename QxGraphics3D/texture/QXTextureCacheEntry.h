/// @file
/// One texture in the cache of a texture manager.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

namespace QXC {

class QXTexture;

/// Owns one texture and remembers when it was last asked for. Threads: under the lock of the manager.
class QXGRAPHICS3D_API QXTextureCacheEntry {
public:
  QXTextureCacheEntry();
  /// Takes the texture over; null is no texture.
  explicit QXTextureCacheEntry(QXTexture* pTexture);
  QXTextureCacheEntry(QXTextureCacheEntry const&) = delete;
  QXTextureCacheEntry& operator=(QXTextureCacheEntry const&) = delete;
  /// Deletes the texture, whatever its count.
  ~QXTextureCacheEntry();

  /// Null if there is none.
  QXTexture* GetTexture() const { return m_pTexture; }
  /// Takes the texture over and deletes the former one, unless it is the same or its reference count is below 0: a
  /// negative count says that somebody else deletes it.
  void SetTexture(QXTexture* pTexture);

  /// Ticks of the C clock; the time of construction until something else is set.
  double GetLastAccess() const { return m_dLastAccess; }
  void SetLastAccess(double dLastAccess) { m_dLastAccess = dLastAccess; }

  /// This entry's last access minus the other's, so above 0 when this one was asked for later. -1 if the other is
  /// null or one of the two has no texture.
  double CompareAccessTime(QXTextureCacheEntry* pOther) const;

  /// 0 if the path is that of the texture; the difference of the last two characters that differ (the texture's minus
  /// the other's) where the lengths are equal; -1 without a texture or with another length. An order for sorting it is
  /// not.
  int ComparePath(QdcUnicodeString const& strPath) const;
  /// With the other's texture; -1 if there is none.
  int ComparePath(QXTextureCacheEntry* pOther) const;

protected:
  double m_dLastAccess;
  QXTexture* m_pTexture;
};

}  // namespace QXC
