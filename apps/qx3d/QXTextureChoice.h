/// @file
/// The texture that a mesh is drawn with.
#pragma once

#include <apps/qx3d/QXModelPictures.h>

#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>

namespace QXC {
class QXModelMesh;
}

namespace QXApp {

/// From what a model says about a mesh and its picture to a texture and coordinates on it.
class QXTextureChoice {
public:
  /// Mesh and pictures outlive this object. Cost: linear in the vertices of a mesh with a picture.
  QXTextureChoice(QXC::QXModelMesh const& mesh, QXModelPictures const& pictures);

  /// Without a picture m_nImage is -1.
  QXTextureKey const& GetKey() const { return m_Key; }
  /// Whether the texture lets something through.
  bool IsTransparent() const { return m_bTransparent; }
  /// Coordinates of a vertex on the texture; z has no meaning. Of a mesh with a picture only.
  QXC::QXVector3d GetTexCoord(unsigned int nVertex) const;

private:
  QXC::QXVector3d GetPictureCoord(unsigned int nVertex) const;
  void ChooseWrap(bool bStill);
  void ChooseAlpha(bool bStill);

  QXC::QXModelMesh const& m_Mesh;
  QXTextureKey m_Key;
  bool m_bTransparent = false;
};

}  // namespace QXApp
