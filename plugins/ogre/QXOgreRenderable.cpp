#include <plugins/ogre/QXOgreRenderable.h>

#include <OgreMaterial.h>
#include <OgreRenderSystem.h>

#include <QxGraphics3D/frame/foundation/base3d/QXOperationType.h>
#include <QxGraphics3D/texture/QXTexture.h>

#include <plugins/ogre/QXOgreDevice.h>
#include <plugins/ogre/QXOgreImage.h>
#include <plugins/ogre/QXOgreMaterials.h>
#include <plugins/ogre/QXOgreTextureSource.h>
#include <plugins/ogre/QXOgreTextureUnits.h>

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

/// What the four coordinates are multiplied with to give one of the transformed ones.
Ogre::Vector4 Column(QXMatrix4d const& mat, int nColumn, double dScale, double dOffset) {
  return {static_cast<float>(mat[0][nColumn] * dScale), static_cast<float>(mat[1][nColumn] * dScale),
      static_cast<float>(mat[2][nColumn] * dScale), static_cast<float>(mat[3][nColumn] * dScale + dOffset)};
}

QXOgreTextureSource* SourceOf(QXOgreBinding const& binding) {
  return binding.m_pUse ? binding.m_pUse->GetSource() : nullptr;
}

bool IsTransparent(QXOgreBinding const& binding) {
  QXOgreTextureSource const* const pSource = SourceOf(binding);
  return pSource && pSource->IsTransparent();
}

bool IsStack(QXOgreBinding const& binding) {
  QXOgreTextureSource const* const pSource = SourceOf(binding);
  return pSource && pSource->GetImage() && pSource->GetImage()->IsStack();
}

}  // namespace

QXOgreRenderable::QXOgreRenderable(QXOgreDevice& device, Ogre::VertexData* pVertexData, Ogre::IndexData* pIndexData,
    int eOperationType, QXColorValue3D const& color, QXOgrePlace const& place)
    : m_Device(device), m_Place(place), m_Color(color), m_bVisible(1), m_bTransparentTextures(false) {
  m_Operation.vertexData = pVertexData;
  m_Operation.indexData = pIndexData;
  m_Operation.useIndexes = true;
  m_Operation.operationType = ToOgre(eOperationType);
  setUseIdentityView(true);
}

bool QXOgreRenderable::IsBlended() const {
  return m_pMaterial && m_pMaterial->isTransparent();
}

void QXOgreRenderable::SetIdentity(unsigned int nIdentifier, QXOgreNumbering eNumbering) {
  setCustomParameter(
      QX_OGRE_IDENTITY, Ogre::Vector4(static_cast<float>(nIdentifier >> 16U), static_cast<float>(nIdentifier & 0xFFFFU),
                            static_cast<float>(eNumbering), 0.0F));
}

void QXOgreRenderable::DrawIdentifiers(bool bIdentifiers) {
  m_pIdentifierMaterial = bIdentifiers ? m_Device.GetMaterials().GetForIdentifiers(m_pMaterial) : Ogre::MaterialPtr();
}

Ogre::Technique* QXOgreRenderable::getTechnique() const {
  if (m_pIdentifierMaterial) return m_pIdentifierMaterial->getBestTechnique(0, this);
  return m_pMaterial->getTechnique(m_Device.GetMaterials().GetLight().GetTechnique());
}

void QXOgreRenderable::SetLook(
    QXColorValue3D const& tint, QXColorValue3D const& selection, bool bSelected, bool bLight) {
  bool const bFaces = m_Operation.operationType >= Ogre::RenderOperation::OT_TRIANGLE_LIST;
  QXColorValue3D const product(tint.r * m_Color.r, tint.g * m_Color.g, tint.b * m_Color.b, tint.a * m_Color.a);
  setCustomParameter(QX_OGRE_TINT, ToVector4(product));
  setCustomParameter(QX_OGRE_SELECTION, ToVector4(selection));
  setCustomParameter(
      QX_OGRE_SHADING, Ogre::Vector4(bLight && bFaces ? 1.0F : 0.0F, bSelected ? 1.0F : 0.0F, 0.0F, 0.0F));
}

void QXOgreRenderable::SetBindings(std::vector<QXOgreBinding> const& arrBindings) {
  m_arrBindings = arrBindings;
  m_bTransparentTextures = false;
  for (std::size_t i = 0; i < m_arrBindings.size(); ++i) {
    m_bTransparentTextures = m_bTransparentTextures || IsTransparent(m_arrBindings[i]);
    m_arrBindings[i].m_bStack = IsStack(m_arrBindings[i]);
    if (SourceOf(m_arrBindings[i])) TellProgram(i);
    if (!m_arrBindings[i].m_pUse) TellProgramOfNone(i);
  }
}

void QXOgreRenderable::CopyLook(QXOgreRenderable const& other, std::array<int, 8> const& arrSets) {
  m_Color = other.m_Color;
  m_bVisible = other.m_bVisible;
  m_arrBindings = other.m_arrBindings;
  m_bTransparentTextures = other.m_bTransparentTextures;
  mCustomParameters = other.mCustomParameters;
  for (QXOgreBinding& binding : m_arrBindings)
    binding.m_nCoordSet = arrSets[static_cast<std::size_t>(binding.m_nCoordSet)];
}

void QXOgreRenderable::SetTextureMatrix(unsigned int nUnit, QXMatrix4d const& matTexture) {
  for (QXOgreBinding& binding : m_arrBindings) {
    if (!binding.m_pUse || binding.m_nUnit != nUnit) continue;
    binding.m_matTexture = matTexture;
    binding.m_bTold = false;
  }
}

std::string QXOgreRenderable::GetCoordSets() const {
  std::string strSets;
  for (QXOgreBinding const& binding : m_arrBindings) strSets += binding.GetLetter();
  return strSets;
}

bool QXOgreRenderable::PrepareTextures(unsigned long long nFrame) {
  bool bFits = true;
  bool bTransparent = false;
  for (std::size_t i = 0; i < m_arrBindings.size(); ++i) {
    if (!m_arrBindings[i].m_pUse) continue;
    QXOgreTextureSource* const pSource = SourceOf(m_arrBindings[i]);
    if (!pSource) return false;
    pSource->PrepareFor(nFrame);
    bTransparent = bTransparent || pSource->IsTransparent();
    bFits = bFits && m_arrBindings[i].m_bStack == IsStack(m_arrBindings[i]);
    TellProgram(i);
  }
  return bFits && bTransparent == m_bTransparentTextures;
}

bool QXOgreRenderable::HasTransparentTextures() const {
  return m_bTransparentTextures;
}

void QXOgreRenderable::TellProgramOfNone(std::size_t nTexture) {
  std::size_t const nFirst = QX_OGRE_TEXTURES + 3 * nTexture;
  setCustomParameter(nFirst, Ogre::Vector4::ZERO);
  setCustomParameter(nFirst + 1, Ogre::Vector4::ZERO);
  setCustomParameter(nFirst + 2, Ogre::Vector4(1.0F, 0.0F, 0.0F, 0.0F));
}

void QXOgreRenderable::TellProgram(std::size_t nTexture) {
  QXOgreBinding& binding = m_arrBindings[nTexture];
  QXOgreTextureSource const& source = *binding.m_pUse->GetSource();
  QXVector3d const vecScale = source.GetScale();
  QXVector3d const& vecOffset = source.GetTexture().m_vecOffset;
  bool const bReversed = source.IsReversed();
  bool const bTransparent = source.IsTransparent();
  bool const bPremultiplied = source.IsPremultiplied();
  if (binding.m_bTold && binding.m_vecScale == vecScale && binding.m_vecOffset == vecOffset &&
      binding.m_bReversed == bReversed && binding.m_bTransparent == bTransparent &&
      binding.m_bPremultiplied == bPremultiplied)
    return;
  binding.m_bTold = true;
  binding.m_vecScale = vecScale;
  binding.m_vecOffset = vecOffset;
  binding.m_bReversed = bReversed;
  binding.m_bTransparent = bTransparent;
  binding.m_bPremultiplied = bPremultiplied;
  std::size_t const nFirst = QX_OGRE_TEXTURES + 3 * nTexture;
  double const dScaleV = bReversed ? -vecScale.y : vecScale.y;
  double const dOffsetV = bReversed ? 1.0 - vecOffset.y : vecOffset.y;
  setCustomParameter(nFirst, Column(binding.m_matTexture, 0, vecScale.x, vecOffset.x));
  setCustomParameter(nFirst + 1, Column(binding.m_matTexture, 1, dScaleV, dOffsetV));
  // What is not blended is drawn as if it had no alpha: pictures keep it otherwise, and show through where they are
  // put.
  float const fDivide = bTransparent && bPremultiplied ? 1.0F : 0.0F;
  setCustomParameter(nFirst + 2, Ogre::Vector4(bTransparent ? 0.0F : 1.0F, fDivide, 0.0F, 0.0F));
}

bool QXOgreRenderable::preRender(Ogre::SceneManager*, Ogre::RenderSystem* pRenderSystem) {
  for (std::size_t i = 0; i < m_arrBindings.size(); ++i) {
    QXOgreBinding const& binding = m_arrBindings[i];
    QXOgreTextureSource const* const pSource = SourceOf(binding);
    QXOgreImage const* const pImage = pSource ? pSource->GetImage() : nullptr;
    bool const bRepeat = pSource && pSource->GetTexture().GetTextureRepeatMode() != 0;
    pRenderSystem->_setTexture(i, true, (pImage ? *pImage : m_Device.GetWhiteImage()).GetOgreTexture());
    pRenderSystem->_setSampler(
        i, m_Device.GetTextureUnits().GetSampler(binding.m_nUnit, pSource ? pSource->GetFilters() : QXOgreFilters(),
               bRepeat && !binding.m_bClampU, bRepeat && !binding.m_bClampV));
  }
  return true;
}

void QXOgreRenderable::getRenderOperation(Ogre::RenderOperation& operation) {
  operation = m_Operation;
  operation.srcRenderable = this;
}

Ogre::LightList const& QXOgreRenderable::getLights() const {
  // The light comes with the viewport, as parameters of the programs.
  static Ogre::LightList const s_None;
  return s_None;
}

}  // namespace QXC
