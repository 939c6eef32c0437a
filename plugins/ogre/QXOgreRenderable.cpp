#include <plugins/ogre/QXOgreRenderable.h>

#include <QxGraphics3D/frame/foundation/base3d/QXOperationType.h>

#include <plugins/ogre/QXOgreMaterials.h>

namespace QXC {

namespace {

Ogre::RenderOperation::OperationType ToOgre(int eOperationType) {
  switch (eOperationType) {
  case QX_OPERATION_POINT_LIST: return Ogre::RenderOperation::OT_POINT_LIST;
  case QX_OPERATION_LINE_LIST: return Ogre::RenderOperation::OT_LINE_LIST;
  case QX_OPERATION_LINE_STRIP: return Ogre::RenderOperation::OT_LINE_STRIP;
  case QX_OPERATION_TRIANGLE_STRIP: return Ogre::RenderOperation::OT_TRIANGLE_STRIP;
  case QX_OPERATION_TRIANGLE_FAN: return Ogre::RenderOperation::OT_TRIANGLE_FAN;
  default: return Ogre::RenderOperation::OT_TRIANGLE_LIST;
  }
}

Ogre::Vector4 ToVector4(QXColorValue3D const& color) {
  return {static_cast<float>(color.r), static_cast<float>(color.g), static_cast<float>(color.b),
      static_cast<float>(color.a)};
}

}  // namespace

QXOgreRenderable::QXOgreRenderable(Ogre::VertexData* pVertexData, Ogre::IndexData* pIndexData, int eOperationType,
    QXColorValue3D const& color, Ogre::Matrix4 const& matToEye)
    : m_matToEye(matToEye), m_Color(color), m_bVisible(1) {
  m_Operation.vertexData = pVertexData;
  m_Operation.indexData = pIndexData;
  m_Operation.useIndexes = true;
  m_Operation.operationType = ToOgre(eOperationType);
  setUseIdentityView(true);
}

void QXOgreRenderable::SetLook(QXColorValue3D const& tint, QXColorValue3D const& selection, bool bLight) {
  bool const bFaces = m_Operation.operationType >= Ogre::RenderOperation::OT_TRIANGLE_LIST;
  QXColorValue3D const product(tint.r * m_Color.r, tint.g * m_Color.g, tint.b * m_Color.b, tint.a * m_Color.a);
  setCustomParameter(QX_OGRE_TINT, ToVector4(product));
  setCustomParameter(QX_OGRE_SELECTION, ToVector4(selection));
  setCustomParameter(QX_OGRE_SHADING, Ogre::Vector4(bLight && bFaces ? 1.0F : 0.0F, 0.0F, 0.0F, 0.0F));
}

void QXOgreRenderable::getRenderOperation(Ogre::RenderOperation& operation) {
  operation = m_Operation;
  operation.srcRenderable = this;
}

Ogre::Real QXOgreRenderable::getSquaredViewDepth(Ogre::Camera const*) const {
  return m_matToEye.getTrans().squaredLength();
}

Ogre::LightList const& QXOgreRenderable::getLights() const {
  // The light comes with the viewport, as parameters of the programs.
  static Ogre::LightList const s_None;
  return s_None;
}

}  // namespace QXC
