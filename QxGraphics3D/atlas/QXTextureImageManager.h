/// @file
/// The image atlas.
#pragma once

#include <bitset>
#include <memory>

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/atlas/QXTextureImage.h>
#include <QxGraphics3D/frame/foundation/base/QdcArray.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXMutex.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXSingleton.h>

namespace QXC {

class QXTexture;
class QXTextureImageManager;
class QXTextureManager;
extern template class QXGRAPHICS3D_API QXSingleton<QXTextureImageManager>;

namespace detail {
template <class Image>
class QXImageRecords;
class QXQuadtreeAtlas;
}  // namespace detail

/// Many small named images in few big textures of 1024 by 1024 pixels, so that they can be drawn together. The road of
/// an image: GetTextureImage makes its record, the caller fills it, FindSpaceInBigTextures gives it a slot at once, and
/// the next LoadTexture sends its pixels. Images share a big texture if they have the same format and compression; where
/// nothing was sent, a big texture shows magenta, or the last colour of its blocks if it is compressed.
///
/// Threads: any, but for LoadTexture, which uploads and belongs to the rendering thread; the first use of the manager
/// and SetTextureManager come before there are others. One recursive mutex is held by every operation, and the lock of
/// the texture manager is taken under it, never before it. The thread that removes the last image of a big texture
/// deletes that texture: one that may not touch the device uses AddUselessTexture instead.
class QXGRAPHICS3D_API QXTextureImageManager : public QXSingleton<QXTextureImageManager> {
public:
  QXTextureImageManager();
  QXTextureImageManager(QXTextureImageManager const&) = delete;
  QXTextureImageManager& operator=(QXTextureImageManager const&) = delete;
  /// Clear.
  ~QXTextureImageManager();

  /// Both make the manager at first use; it lives to the end of the process.
  static QXTextureImageManager& GetSingleton();
  static QXTextureImageManager* GetSingletonPtr();

  /// The image of that name, made if there is none, with one user more. It stays the manager's; each call wants its
  /// RemoveTextureImage. A new image has no slot yet.
  QXTextureImage* GetTextureImage(QdcUnicodeString const& strName);
  /// Gives an image with pixels and size a slot and sets m_nLocation and m_bAllocated. Ask once for an image: a second
  /// call takes a second slot, and the first stays taken.
  ///
  /// Slots of a big texture are tried from the upper left corner on, quarter by quarter (upper left, upper right, lower
  /// left, lower right), big textures in the order of their index. A slot of 1 or 2 pixels always opens a big texture,
  /// and one of 1 pixel does not keep later slots off its place.
  /// Cost: one step a level of the tree; a new big texture costs its map of slots.
  /// @return  0, with the image as it was, for null, for an image without m_pTextureData, for a size of 0 or above 1024,
  ///          and if a big texture would be needed and 256 are in use
  unsigned char FindSpaceInBigTextures(QXTextureImage* pImage);
  /// Sends the pixels of the images that have a slot, in the order of their names, making big textures as needed, each
  /// with one reference an image. Then drops what AddUselessTexture listed. Called once a frame. Nothing without a
  /// texture manager. An image keeps waiting while it has no slot, no pixels or others than its slot was taken for, and
  /// while there is no texture.
  ///
  /// An image whose owner gave it new pixels and set m_bLoaded to 0, on the rendering thread, is sent once more and holds
  /// one reference more, which nobody gives back. Textures must not call back into this manager while they are loaded.
  /// Cost: the images that are not sent yet, and a look at one byte of each that is; nothing is allocated where nothing
  /// has to be done.
  void LoadTexture();
  /// One user less for the image of that name; an unknown name is ignored. The last one deletes the record and frees the
  /// slot.
  void RemoveTextureImage(QdcUnicodeString const& strName);
  /// Lists images for the next LoadTexture to remove, once for each time that they are listed. What is removed before
  /// that, and what is no image of this manager, is ignored.
  void AddUselessTexture(QdcArray<QXTextureImage*> arrImages);
  /// Where textures come from; not owned. Null before it dies. Images that wait are sent to the new one; those that
  /// were sent stay where they are, and the former one keeps their references: Clear before the change is what hosts want.
  void SetTextureManager(QXTextureManager* pTextureManager);
  /// Deletes every image whatever its users, and all slots. Big textures stay in the texture manager with the references
  /// that the images held, so clear that one first if they are to go.
  void Clear();

private:
  bool Upload(QXTextureImage& image);
  void ReleaseSlot(QXTextureImage const& image);

  QXTextureManager* m_pTextureManager = nullptr;
  std::unique_ptr<detail::QXImageRecords<QXTextureImage>> m_pImages;
  std::unique_ptr<detail::QXQuadtreeAtlas> m_pBigTextures;
  /// By index: big textures into which something was sent since they were opened.
  std::bitset<256> m_setStarted;
  QXMutex m_Mutex{1};
};

}  // namespace QXC
