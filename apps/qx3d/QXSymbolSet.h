/// @file
/// The symbols of a shown scene.
#pragma once

#include <apps/qx3d/QXAtlasPicture.h>

#include <QxGraphics3D/frame/foundation/base/QdcRect.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

#include <map>
#include <string>
#include <vector>

namespace QXC {
class QXGraphics3D;
class QXRenderOperation3D;
class QXRenderTexturePatch;
class QXTexture;
}  // namespace QXC

namespace QXApp {

/// Where a symbol's picture stands.
struct QXSymbolPlace {
  /// Pixels on the screen. The picture has twice as many each way, so that its edges come out smooth.
  int m_nPixels = 0;
  QXC::QXRenderTexturePatch* m_pPatch = nullptr;
  /// The page, null until it is drawn.
  QXC::QXTexture* m_pTexture = nullptr;
  /// Of the picture in the page, in texture coordinates.
  QXC::QdcRect2D m_rcPart;

  /// Square of the page that the picture covers, in the coordinates of what stands under its node.
  void GetSquare(double& dLeft, double& dBottom, double& dEdge) const;
};

/// Squares of the library's render textures, into which models are drawn once and shown by icons many times. On the
/// rendering thread.
class QXSymbolSet {
public:
  QXSymbolSet() = default;
  QXSymbolSet(QXSymbolSet const&) = delete;
  QXSymbolSet& operator=(QXSymbolSet const&) = delete;

  /// Takes a square for a symbol, of another name than those before. Null where the renderer can make none.
  QXSymbolPlace* Take(QXC::QXGraphics3D& graphics3D, std::string const& strName, int nPixels);
  /// Makes a drawable part of what is seen in the symbol. It stays its owner's, and lives until GiveBack.
  bool Attach(QXC::QXGraphics3D& graphics3D, QXSymbolPlace const& place, QXC::QXRenderOperation3D* pDrawable);
  /// Draws all of them. The textures are there afterwards.
  void Draw(QXC::QXGraphics3D& graphics3D);

  /// Null for a name without a picture.
  QXSymbolPlace const* Find(std::string const& strName) const;

  /// Gives the squares back, after the icons that show them. Before the renderer goes.
  void GiveBack(QXC::QXGraphics3D& graphics3D);

  /// The pages by their names, with their places but without pixels.
  std::vector<QXAtlasPage> GetPages() const;

private:
  /// By name: icons look theirs up, and there may be many of both.
  std::map<std::string, QXSymbolPlace> m_mapPlaces;
};

}  // namespace QXApp
