/// @file
/// The second image atlas.
#pragma once

#include <map>
#include <memory>
#include <unordered_map>
#include <utility>

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/atlas/QXTextureImageEx.h>
#include <QxGraphics3D/frame/foundation/base/QdcArray.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>
#include <QxGraphics3D/frame/foundation/base3d/QX3DEnums.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXMutex.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXSingleton.h>

namespace QXC {

class QXTextureImageManagerEx;
class QXTextureManager;
extern template class QXGRAPHICS3D_API QXSingleton<QXTextureImageManagerEx>;

namespace detail {
template <class Image>
class QXImageRecords;
}

/// Named images, each in a texture of its own. Textures that fall free can be kept by format, compression and size: the
/// next image of that kind then needs no new texture, as with tiles that stream by.
///
/// Threads: any, but for LoadTexture, which uploads and belongs to the rendering thread; the first use of the manager
/// and SetTextureManager come before there are others. One recursive mutex is held by every operation, and the lock of
/// the texture manager is taken under it, never before it. A thread that removes an image without keeping its texture
/// deletes that texture: one that may not touch the device uses AddUselessTexture instead.
class QXGRAPHICS3D_API QXTextureImageManagerEx : public QXSingleton<QXTextureImageManagerEx> {
public:
  QXTextureImageManagerEx();
  QXTextureImageManagerEx(QXTextureImageManagerEx const&) = delete;
  QXTextureImageManagerEx& operator=(QXTextureImageManagerEx const&) = delete;
  /// Clear; without a texture manager the records go all the same.
  ~QXTextureImageManagerEx();

  /// Both make the manager at first use; it lives to the end of the process.
  static QXTextureImageManagerEx& GetSingleton();
  static QXTextureImageManagerEx* GetSingletonPtr();

  /// The image of that name, made if there is none, with one user more. It stays the manager's; each call wants its
  /// RemoveTextureImage.
  QXTextureImageEx* GetTextureImage(QdcUnicodeString const& strName);
  /// Uploads the images that are ready and have no texture yet, in the order of their names: into the texture of their
  /// kind that waits longest, else into a new one named "TextureImage_" and the next number. Then drops what
  /// AddUselessTexture listed. Called once a frame. Nothing without a texture manager. An image without pixels, or for
  /// which there is no texture, keeps waiting.
  ///
  /// An image whose owner gave its texture back and set m_pTexture to null and m_bLoaded to 0, on the rendering thread,
  /// is uploaded once more. Textures must not call back into this manager while they are loaded.
  /// Cost: the images that are not uploaded yet, and a look at one byte of each that is; nothing is allocated where
  /// nothing has to be done.
  /// @param bKeepTextures  for the listed images, as in RemoveTextureImage
  void LoadTexture(unsigned char bKeepTextures);
  /// One user less for the image of that name; an unknown name is ignored. The last one deletes the record.
  /// @param bKeepTextures  1: its texture waits for the next image of its kind; 0: it goes back to the texture manager
  void RemoveTextureImage(QdcUnicodeString const& strName, unsigned char bKeepTextures);
  /// Lists images for the next LoadTexture to remove, once for each time that they are listed. What is removed before
  /// that, and what is no image of this manager, is ignored.
  void AddUselessTexture(QdcArray<QXTextureImageEx*> arrImages);
  /// Where textures come from; not owned. Null before it dies. Images and kept textures stay those of the former one:
  /// Clear before the change, and before the former one's textures die.
  void SetTextureManager(QXTextureManager* pTextureManager) { m_pTextureManager = pTextureManager; }
  /// Deletes every image whatever its users, gives all textures back, those that were kept too, and forgets the useless
  /// ones; without a texture manager only that last. Called by QXGraphics3D::ClearResource. Numbers go on where they
  /// were.
  void Clear();

private:
  bool Upload(QXTextureImageEx& image);
  bool UploadToKept(QXTextureImageEx& image);
  bool UploadToNew(QXTextureImageEx& image);

  QXTextureManager* m_pTextureManager = nullptr;
  std::unique_ptr<detail::QXImageRecords<QXTextureImageEx>> m_pImages;
  QXMutex m_Mutex{1};
  /// Textures that wait for an image, by kind and, in one kind, in the order in which they came. Each keeps the
  /// reference that its image had.
  std::multimap<QdcUnicodeString, QXTexture*> m_mapTexturePools;
  /// Format and compression of the pixels that each texture was made from: what the records say are their owners' words,
  /// and the renderer reads as many bytes as the texture wants.
  std::unordered_map<QXTexture const*, std::pair<QX3DPixelFormat, unsigned int>> m_mapKinds;
  int m_nTextureCounter = 0;  ///< the next new texture's number
};

}  // namespace QXC
