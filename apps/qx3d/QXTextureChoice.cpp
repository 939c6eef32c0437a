#include <apps/qx3d/QXTextureChoice.h>

#include <QxGraphics3D/frame/foundation/fileparser/QXModelMesh.h>

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace QXApp {

using QXC::QXVector3d;

QXTextureChoice::QXTextureChoice(QXC::QXModelMesh const& mesh, QXModelPictures const& pictures) : m_Mesh(mesh) {
  int const nImage = mesh.m_Texture.m_nImage;
  if (!pictures.IsUsable(nImage)) return;
  m_Key.m_nImage = nImage;
  m_bTransparent = pictures.IsTransparent(nImage);
  bool const bStill = pictures.IsStill(nImage);
  ChooseWrap(bStill);
  ChooseAlpha(bStill);
}

QXVector3d QXTextureChoice::GetPictureCoord(unsigned int nVertex) const {
  float const* p = m_Mesh.m_pVertexPackage->m_pTexCoords[0] + 2 * std::size_t{nVertex};
  return QXVector3d(static_cast<double>(p[0]), static_cast<double>(p[1]), 0.0)
      .MultiplyMatrix(m_Mesh.m_Texture.m_matTransform);
}

QXVector3d QXTextureChoice::GetTexCoord(unsigned int nVertex) const {
  QXVector3d vec = GetPictureCoord(nVertex);
  if (m_Key.m_bMirrorU) vec.x *= 0.5;
  if (m_Key.m_bMirrorV) vec.y *= 0.5;
  return vec;
}

void QXTextureChoice::ChooseWrap(bool bStill) {
  QXC::QXModelTexture const& texture = m_Mesh.m_Texture;
  bool const bRepeatU = texture.m_eWrapU != QXC::QX_WRAP_CLAMP;
  bool const bRepeatV = texture.m_eWrapV != QXC::QX_WRAP_CLAMP;
  m_Key.m_bMirrorU = bStill && texture.m_eWrapU == QXC::QX_WRAP_MIRROR;
  m_Key.m_bMirrorV = bStill && texture.m_eWrapV == QXC::QX_WRAP_MIRROR;
  m_Key.m_bRepeat = bRepeatU || bRepeatV;
  if (bRepeatU == bRepeatV || m_Key.m_bMirrorU || m_Key.m_bMirrorV) return;
  // One of each: clamped unless the mesh needs the repetition.
  m_Key.m_bRepeat = false;
  for (unsigned int i = 0; i < m_Mesh.m_pVertexPackage->m_nVertexNum && !m_Key.m_bRepeat; ++i) {
    QXVector3d const vec = GetPictureCoord(i);
    double const d = bRepeatU ? vec.x : vec.y;
    m_Key.m_bRepeat = d < 0.0 || d > 1.0;
  }
}

void QXTextureChoice::ChooseAlpha(bool bStill) {
  // One form of an opaque picture is enough, whatever its materials say. Nothing is known of a KTX2 file.
  if (bStill && !m_bTransparent) return;
  QXC::QXModelTexture const& texture = m_Mesh.m_Texture;
  double const dThreshold = std::ceil(std::clamp(texture.m_dAlphaCutoff, 0.0, 2.0) * 255.0);
  if (texture.m_eAlpha == QXC::QX_ALPHA_OPAQUE || (texture.m_eAlpha == QXC::QX_ALPHA_MASK && dThreshold < 1.0)) {
    m_Key.m_eAlpha = QXC::QX_ALPHA_OPAQUE;
    m_bTransparent = false;
  } else if (texture.m_eAlpha == QXC::QX_ALPHA_MASK && bStill) {
    m_Key.m_eAlpha = QXC::QX_ALPHA_MASK;
    m_Key.m_nThreshold = static_cast<int>(std::min(dThreshold, 256.0));
  }
}

}  // namespace QXApp
