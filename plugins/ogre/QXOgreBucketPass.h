/// @file
/// Passes of static geometry as the renderer draws them.
#pragma once

#include <QxGraphics3D/frame/foundation/toolkit/QXColorValue3D.h>

#include <plugins/ogre/QXOgreMaterials.h>

namespace QXC {

class QXPass;

/// How a pass looks, apart from its textures.
struct QXOgrePassLook {
  /// m_bTransparent is set where the pass asks for blending; m_strCoordSets is not read.
  QXOgreSurface m_Surface;
  /// Multiplied with the colours of vertices; alpha is the opacity.
  QXColorValue3D m_Diffuse = QXColorValue3D::White;
  /// Factor on the ambient light.
  QXColorValue3D m_Ambient = QXColorValue3D::White;
  /// Alpha: the reference of the alpha test.
  QXColorValue3D m_Emissive = QXColorValue3D(0.0, 0.0, 0.0, 0.0);
  /// Alpha: the exponent, 0 without a highlight.
  QXColorValue3D m_Highlight = QXColorValue3D(0.0, 0.0, 0.0, 0.0);
  bool m_bLight = true;
};

/// States whose numbers mean nothing to the device become the usual ones. The programs are those that the pass names
/// where this plug-in has them, else those that multiply all textures.
QXOgrePassLook LookOf(QXPass const& pass);

/// The surface of a range of a drawable whose host has said how it wants to see it: the drawable's states count where
/// they are not the usual ones, the pass's otherwise.
QXOgreSurface Combine(QXOgreSurface const& drawable, QXOgreSurface const& pass);

}  // namespace QXC
