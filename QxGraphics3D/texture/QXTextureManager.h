/// @file
/// The renderer's texture store.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcArray.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXMutex.h>
#include <QxGraphics3D/texture/QXTextureCacheMap.h>

namespace QXC {

class QXTexture;
class QXTextureCacheEntry;

/// Textures of one renderer by name, each with the count of its users, and a list of textures that wait to be deleted.
/// The plug-in derives from it, sets QXGraphics3D::m_pTextureManager, and sets that member to null before it deletes
/// the object. There is no limit and no clock here: a texture leaves when its last user gives it back, and a policy
/// beyond that is the plug-in's.
///
/// A user takes a texture with Lock, GetTexture, AddRef of the texture, Unlock, and gives it back with RemoveTexture.
///
/// Threads: one recursive mutex. RemoveTexture and Release take it; the look-up, AddToCache, AddUnusedTextures and
/// DeleteUnusedTextures want it held by the caller, through Lock. Whoever also holds an atlas manager's mutex took
/// that one first. Textures are deleted by the thread that gives the last reference back; one that may not touch the
/// device hands the texture to AddUnusedTextures instead.
class QXGRAPHICS3D_API QXTextureManager {
public:
  QXTextureManager();
  QXTextureManager(QXTextureManager const&) = delete;
  QXTextureManager& operator=(QXTextureManager const&) = delete;

  // Slot order is the contract with plug-ins: never reorder, never insert; append only with a major version.

  /// Deletes everything held. A plug-in whose textures need its own members while they die calls Release in its
  /// destructor.
  virtual ~QXTextureManager();
  /// The texture of that name; if there is none and bCreate is 1, a new one, which the manager owns. Else null. Its
  /// count of users is left to the caller.
  ///
  /// A plug-in looks the name up with FindCacheEntry, and on a hit sets the entry's last access to clock(). On a miss
  /// with bCreate it makes a texture with CreateTexture, names it (QXTexture::SetTexFilePath), and enters it with
  /// AddToCache. Lock held by the caller.
  virtual QXTexture* GetTexture(QdcUnicodeString const& strName, unsigned char bCreate) = 0;
  /// 1 if a texture of that name is held. Called by hosts that only want to know: no last access changes.
  virtual unsigned char ManagerOperation2(QdcUnicodeString const& strName) const = 0;
  /// Deletes the textures that AddUnusedTextures brought, in that order, and gives the list's storage back.
  virtual void DeleteUnusedTextures();
  /// Deletes every texture: those of the cache in the order of their names, whatever their count, then the unused ones.
  /// Called by QXGraphics3D::ClearResource. A texture may call back while it dies: it finds an empty cache.
  virtual void Release();
  /// A new texture without a name, the caller's. Base: null.
  virtual QXTexture* CreateTexture();
  /// Takes the texture with this identifier off the device. Base: nothing.
  virtual void DeleteTexture(unsigned int nBindID);

  /// Enters an entry, which the manager then owns. A null entry is ignored. An entry that the name had is replaced and
  /// not deleted: look the name up first. Lock held by the caller.
  void AddToCache(QdcUnicodeString const& strName, QXTextureCacheEntry* pEntry);
  /// One user less for the texture that stands under this texture's name. With none left the name leaves the cache, and
  /// if bDeleteEntry is 1 entry and texture are deleted; else the entry belongs to whoever holds it.
  ///
  /// The argument only gives the name. Null and an unknown name are ignored, and with an empty cache the texture is not
  /// even looked at: after Release, users still give textures back that are gone.
  void RemoveTexture(QXTexture* pTexture, unsigned char bDeleteEntry);
  /// 1 if the name stands for this very texture, which is not looked at: who shares a texture asks before giving it
  /// back whether another user's return has ended it already. Cost: that of a look-up by name.
  unsigned char HoldsTexture(QdcUnicodeString const& strName, QXTexture const* pTexture) const;
  /// Takes a texture over until DeleteUnusedTextures and sets the caller's pointer to null. Lock held by the caller.
  void AddUnusedTextures(QXTexture*& pTexture);

  /// Recursive; each Lock wants its Unlock on the same thread.
  void Lock() { m_Mutex.lock(); }
  void Unlock() { m_Mutex.unlock(); }

  /// How many textures a plug-in should keep, as advice to its policy: nothing here reads it.
  static int ms_nCacheSize;

protected:
  /// A place for a plug-in's policy to be called from. Does nothing.
  void DelNoUseTexture();

  /// The entry of that name, or null. Cost of a hit: one hash and one comparison of the name, no allocation. Lock held
  /// by the caller.
  QXTextureCacheEntry* FindCacheEntry(QdcUnicodeString const& strName) const {
    auto const place = m_mapCache.find(strName);
    return place != m_mapCache.end() ? place->second : nullptr;
  }

  /// Owned.
  QdcArray<QXTexture*> m_arrUnusedTextures;
  /// By the name of the texture; entries owned. Plug-ins may edit it as they would a std::map.
  QXTextureCacheMap m_mapCache;
  mutable QXMutex m_Mutex{1};
};

}  // namespace QXC
