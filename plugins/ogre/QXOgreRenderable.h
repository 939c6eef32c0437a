/// @file
/// One draw operation as OGRE's queue takes it.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include <OgreMatrix4.h>
#include <OgreRenderOperation.h>
#include <OgreRenderable.h>

#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXColorValue3D.h>

#include <plugins/ogre/QXOgreMaterials.h>

namespace QXC {

class QXOgreDevice;
class QXOgreTextureUse;

/// One texture as a renderable shows it.
struct QXOgreBinding {
  /// Null: the place of a texture that is not there; it leaves colours as they are.
  QXOgreTextureUse const* m_pUse = nullptr;
  unsigned int m_nUnit = 0;
  int m_nCoordSet = 0;
  /// Keeps to the edge of the image along u or v even where the texture repeats itself.
  bool m_bClampU = false;
  bool m_bClampV = false;
  /// Of the coordinates; the texture's own scale and offset follow it.
  QXMatrix4d m_matTexture;
  bool m_bStack = false;
  // What the programs were told last.
  QXVector3d m_vecScale;
  QXVector3d m_vecOffset;
  bool m_bReversed = false;
  bool m_bTransparent = false;
  bool m_bPremultiplied = false;
  bool m_bTold = false;

  /// As surfaces name the set: the letters of sets whose third coordinate picks a layer follow those of plain ones.
  char GetLetter() const { return static_cast<char>((m_bStack ? 'A' : '0') + m_nCoordSet); }
};

/// Where what is drawn stands, in the view that is being drawn.
struct QXOgrePlace {
  /// From the buffers to the eye: it is multiplied in double and narrowed once, so the view matrix that OGRE has in
  /// float is left out.
  Ogre::Matrix4 m_matToEye = Ogre::Matrix4::IDENTITY;
  /// How far in front of the eye, along the view: the order in which transparent things are blended. Not the distance,
  /// which puts what lies at the side of a parallel view behind what it covers.
  Ogre::Real m_fDepth = 0.0F;
};

/// One index range of a drawable.
class QXOgreRenderable final : public Ogre::Renderable {
public:
  /// Data and place must outlive this object.
  /// @param pIndexData  null: never visible
  QXOgreRenderable(QXOgreDevice& device, Ogre::VertexData* pVertexData, Ogre::IndexData* pIndexData, int eOperationType,
      QXColorValue3D const& color, QXOgrePlace const& place);

  void SetVisible(unsigned char bVisible) { m_bVisible = bVisible; }
  unsigned char IsVisible() const { return m_bVisible && m_Operation.indexData; }
  /// Colour of the range.
  void SetColor(QXColorValue3D const& color) { m_Color = color; }
  QXColorValue3D const& GetColor() const { return m_Color; }
  void SetMaterial(Ogre::MaterialPtr const& pMaterial) { m_pMaterial = pMaterial; }
  /// Whether the material lets through what is behind it.
  bool IsBlended() const;
  /// What is drawn where identifiers are.
  void SetIdentity(unsigned int nIdentifier, QXOgreNumbering eNumbering);
  /// Whether the identifiers are drawn next, with the material for them, or the picture.
  void DrawIdentifiers(bool bIdentifiers);
  /// Hands the programs what differs from drawable to drawable. Points and lines have no face that could be lit.
  void SetLook(QXColorValue3D const& tint, QXColorValue3D const& selection, bool bSelected, bool bLight);

  /// The textures that are multiplied with the colour; the uses must outlive this object or the next call.
  void SetBindings(std::vector<QXOgreBinding> const& arrBindings);
  /// Transforms the coordinates of a unit's texture differently from now on.
  void SetTextureMatrix(unsigned int nUnit, QXMatrix4d const& matTexture);
  std::vector<QXOgreBinding> const& GetBindings() const { return m_arrBindings; }
  /// Takes over how another one looks: colours, textures and whether it is visible; not the material.
  /// @param arrSets  in which set of coordinates each of the other's is here
  void CopyLook(QXOgreRenderable const& other, std::array<int, 8> const& arrSets);
  /// Draws the range so many times; for data with buffers that count instances.
  void SetInstanceCount(std::size_t nCount) { m_Operation.numberOfInstances = nCount; }
  /// What a surface needs to know of them: the coordinate set of each.
  std::string GetCoordSets() const;
  /// Whether a texture that is shown needs blending.
  bool HasTransparentTextures() const;
  /// Lets the textures take their frame and tells the programs where they stand now. False if the material does not
  /// fit them any more: one has died, or has become transparent, opaque or a stack.
  bool PrepareTextures(unsigned long long nFrame);

  Ogre::MaterialPtr const& getMaterial() const override { return m_pMaterial; }
  Ogre::Technique* getTechnique() const override;
  void getRenderOperation(Ogre::RenderOperation& operation) override;
  void getWorldTransforms(Ogre::Matrix4* pTransform) const override { *pTransform = m_Place.m_matToEye; }
  /// The depth of the place, unsquared: OGRE only compares.
  Ogre::Real getSquaredViewDepth(Ogre::Camera const*) const override { return m_Place.m_fDepth; }
  Ogre::LightList const& getLights() const override;
  /// Binds the textures: the material has none.
  bool preRender(Ogre::SceneManager* pScene, Ogre::RenderSystem* pRenderSystem) override;

private:
  void TellProgram(std::size_t nTexture);
  void TellProgramOfNone(std::size_t nTexture);

  QXOgreDevice& m_Device;
  Ogre::RenderOperation m_Operation;
  Ogre::MaterialPtr m_pMaterial;
  /// Set while identifiers are drawn.
  Ogre::MaterialPtr m_pIdentifierMaterial;
  QXOgrePlace const& m_Place;
  QXColorValue3D m_Color;
  std::vector<QXOgreBinding> m_arrBindings;
  unsigned char m_bVisible;
  bool m_bTransparentTextures;
};

}  // namespace QXC
