#include <plugins/ogre/QXOgreBillboard.h>

#include <plugins/ogre/QXOgreBillboardSet.h>

namespace QXC {

QXOgreBillboard::QXOgreBillboard(QXOgreBillboardSet& set)
    : m_pSet(&set), m_rcPart(0.0, 0.0, 1.0, 1.0), m_Color(QXColorValue3D::White), m_dWidth(1.0), m_dHeight(1.0),
      m_dRotation(0.0), m_dNear(0.0), m_dFar(0.0), m_nIndex(0), m_nNumber(0), m_nSelectionID(0), m_bVisible(1),
      m_bSelected(0), m_bPixels(0) {
  set.Add(this);
}

QXOgreBillboard::~QXOgreBillboard() {
  if (m_pSet) m_pSet->Remove(this);
}

void QXOgreBillboard::SetSize(double dWidth, double dHeight, unsigned char bPixels) {
  m_dWidth = dWidth;
  m_dHeight = dHeight;
  m_bPixels = bPixels;
}

void QXOgreBillboard::SetTexture(QXTexture* pTexture, QdcRect2D const& rcPart) {
  m_rcPart = rcPart;
  QXOgreTextureSource* const pSource = QXOgreTextureSource::Of(pTexture);
  // Made before the former one is given back, which may be the same.
  auto pUse = pSource ? std::make_unique<QXOgreTextureUse>(pSource) : nullptr;
  m_pUse.swap(pUse);
}

void QXOgreBillboard::SetVisibleDistance(double dNear, double dFar) {
  m_dNear = dNear;
  m_dFar = dFar;
}

}  // namespace QXC
