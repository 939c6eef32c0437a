/// @file
/// The icons of a shown scene.
#pragma once

#include <apps/qx3d/QXAtlasPicture.h>
#include <apps/qx3d/QXIconPictures.h>

#include <QxGraphics3D/frame/foundation/base/QdcRect.h>

#include <string>
#include <vector>

namespace QXC {
class QXBillboard;
class QXGraphics3D;
class QXTexture;
class QXTextureImage;
}  // namespace QXC

namespace QXApp {

struct QXSceneIcon;
class QXPickTable;
class QXSceneProblems;
class QXSymbolSet;

/// Icons as billboards that show parts of few shared textures, the pages of the library's image atlas. On the rendering
/// thread.
class QXIconSet {
public:
  QXIconSet() = default;
  QXIconSet(QXIconSet const&) = delete;
  QXIconSet& operator=(QXIconSet const&) = delete;

  /// Makes the icons of a scene. Those that cannot be shown are left out and told; the scene is shown all the same. An
  /// icon of a symbol that has no picture is left out without a word: that was told.
  /// @param pictures  loaded with the same icons; their pixels go to the atlas and are gone afterwards
  void Show(QXC::QXGraphics3D& graphics3D, std::wstring const& strScene, std::vector<QXSceneIcon> const& vecIcons,
      QXIconPictures& pictures, QXSymbolSet const& symbols, QXSceneProblems& problems);

  /// Gives each icon that is shown an identifier.
  /// @param vecIcons  those of Show
  void Number(std::vector<QXSceneIcon> const& vecIcons, QXPickTable& table);

  /// Gives billboards and places back. Before the renderer goes.
  void GiveBack(QXC::QXGraphics3D& graphics3D);

  unsigned int GetCount() const { return static_cast<unsigned int>(m_vecBillboards.size()); }

  /// The pages by their numbers, with their places but without pixels.
  std::vector<QXAtlasPage> GetPages() const;

private:
  struct Place {
    /// Null for a symbol.
    QXC::QXTextureImage* m_pImage;
    /// The page, null if there is none.
    QXC::QXTexture* m_pTexture;
    /// Of the picture in the page, in texture coordinates.
    QXC::QdcRect2D m_rcPart;
    /// Of an icon that has no size of its own.
    unsigned int m_nWidth;
    unsigned int m_nHeight;
  };

  void TakePlaces(QXIconPictures& pictures, QXSceneProblems& problems);
  void FindTextures(QXC::QXGraphics3D& graphics3D, QXIconPictures& pictures, QXSceneProblems& problems);
  Place FindPlace(QXSceneIcon const& icon, int nPicture, QXSymbolSet const& symbols) const;
  bool AddIcon(
      QXC::QXGraphics3D& graphics3D, std::wstring const& strScene, QXSceneIcon const& icon, Place const& place);

  /// Of each picture.
  std::vector<Place> m_vecPlaces;
  std::vector<QXC::QXBillboard*> m_vecBillboards;
  /// Of each billboard its icon's place among the scene's.
  std::vector<std::size_t> m_vecIconNumbers;
};

/// Reads a page back from the device.
/// @return  empty, or the reason
std::string ReadAtlasPage(QXC::QXGraphics3D& graphics3D, QXAtlasPage& page);

}  // namespace QXApp
