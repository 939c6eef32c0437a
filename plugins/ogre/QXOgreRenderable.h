/// @file
/// One draw operation as OGRE's queue takes it.
#pragma once

#include <OgreMatrix4.h>
#include <OgreRenderOperation.h>
#include <OgreRenderable.h>

#include <QxGraphics3D/frame/foundation/toolkit/QXColorValue3D.h>

namespace QXC {

/// One index range of a drawable.
class QXOgreRenderable final : public Ogre::Renderable {
public:
  /// Data and matrix must outlive this object. The matrix goes from the buffers to the eye: it is multiplied in double
  /// and narrowed once, so the view matrix that OGRE has in float is left out.
  /// @param pIndexData  null: never visible
  QXOgreRenderable(Ogre::VertexData* pVertexData, Ogre::IndexData* pIndexData, int eOperationType,
      QXColorValue3D const& color, Ogre::Matrix4 const& matToEye);

  void SetVisible(unsigned char bVisible) { m_bVisible = bVisible; }
  unsigned char IsVisible() const { return m_bVisible && m_Operation.indexData; }
  /// Colour of the range.
  void SetColor(QXColorValue3D const& color) { m_Color = color; }
  QXColorValue3D const& GetColor() const { return m_Color; }
  void SetMaterial(Ogre::MaterialPtr const& pMaterial) { m_pMaterial = pMaterial; }
  /// Hands the programs what differs from drawable to drawable. Points and lines have no face that could be lit.
  void SetLook(QXColorValue3D const& tint, QXColorValue3D const& selection, bool bLight);

  Ogre::MaterialPtr const& getMaterial() const override { return m_pMaterial; }
  void getRenderOperation(Ogre::RenderOperation& operation) override;
  void getWorldTransforms(Ogre::Matrix4* pTransform) const override { *pTransform = m_matToEye; }
  /// Of the buffers' zero: the order in which transparent ranges are blended.
  Ogre::Real getSquaredViewDepth(Ogre::Camera const* pCamera) const override;
  Ogre::LightList const& getLights() const override;

private:
  Ogre::RenderOperation m_Operation;
  Ogre::MaterialPtr m_pMaterial;
  Ogre::Matrix4 const& m_matToEye;
  QXColorValue3D m_Color;
  unsigned char m_bVisible;
};

}  // namespace QXC
