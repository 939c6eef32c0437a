/// @file
/// The colours in which a model is shown.
#pragma once

#include <QxGraphics3D/frame/foundation/base3d/QXBoundingBox.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXColorValue3D.h>

namespace QXC {
class ModelDataInfo;
class QXModelMesh;
}  // namespace QXC

namespace QXApp {

class QXModelPictures;

/// Chooses the colour of each vertex of a model.
class QXModelColors {
public:
  /// @param box       bounds of the model, which tell how high a face lies
  /// @param pictures  of the model; outlive this object
  QXModelColors(QXC::ModelDataInfo const& model, QXC::QXBoundingBox const& box, QXModelPictures const& pictures);

  /// Whether a mesh is coloured by where its faces lie and look.
  bool UsesPlace(QXC::QXModelMesh const& mesh) const { return !HasPicture(mesh) && !HasColors(mesh); }

  /// Colour of a vertex, packed by QDCRGBA; on a mesh with a picture what the picture is multiplied with.
  /// @param vecPosition  in the model; read if UsesPlace
  /// @param vecNormal    in the model, of length 1; read if UsesPlace
  unsigned int GetColor(QXC::QXModelMesh const& mesh, unsigned int nVertex, QXC::QXVector3d const& vecPosition,
      QXC::QXVector3d const& vecNormal) const;

  /// Whether a mesh has anything to look through, its picture aside.
  bool IsTransparent(QXC::QXModelMesh const& mesh) const;

  /// Whether all colours that the file states are dark, so that they are drawn lighter.
  bool IsDark() const { return m_bDark; }

private:
  bool HasPicture(QXC::QXModelMesh const& mesh) const;
  bool HasColors(QXC::QXModelMesh const& mesh) const;
  /// Whether alpha counts: a picture's material may say that it does not.
  bool IsOpaque(QXC::QXModelMesh const& mesh) const;

  QXModelPictures const& m_Pictures;
  bool m_bDark = false;
  double m_dBottom;
  double m_dHeight;
};

}  // namespace QXApp
