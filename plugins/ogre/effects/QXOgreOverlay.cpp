#include <plugins/ogre/effects/QXOgreOverlay.h>

#include <algorithm>
#include <cmath>

namespace QXC {

namespace {

/// One direction of a rectangle: its ends in pixels and the coordinates there. What lies beyond the target is cut off
/// here, where there are digits enough: a device may lose its way between corners that are far out.
bool CutOff(double& dStart, double& dEnd, double& dFrom, double& dTo, int nPixels) {
  dStart = std::round(dStart);
  dEnd = std::round(dEnd);
  // Written so that what is no number is not drawn either.
  if (!(dStart < dEnd && dEnd > 0.0 && dStart < nPixels)) return false;
  double const dStep = (dTo - dFrom) / (dEnd - dStart);
  double const dFirst = std::max(dStart, 0.0);
  double const dLast = std::min(dEnd, static_cast<double>(nPixels));
  dTo = dFrom + dStep * (dLast - dStart);
  dFrom += dStep * (dFirst - dStart);
  dStart = dFirst;
  dEnd = dLast;
  return true;
}

}  // namespace

QXOgreOverlay::QXOgreOverlay(QdcUnicodeString const& strName)
    : m_strName(strName), m_dLeft(0.0), m_dDistance(0.0), m_dWidth(0.0), m_dHeight(0.0), m_rcPart(0.0, 0.0, 1.0, 1.0),
      m_Color(QXColorValue3D::White), m_nZOrder(0), m_bVisible(1), m_bFromBottom(false) {}

void QXOgreOverlay::SetRect(QdcRect2D const& rcArea) {
  m_dLeft = rcArea.left;
  m_dDistance = rcArea.top;
  m_dWidth = rcArea.right - rcArea.left;
  m_dHeight = rcArea.bottom - rcArea.top;
  m_bFromBottom = false;
}

void QXOgreOverlay::SetPosition(double dLeft, double dBottom) {
  m_dLeft = dLeft;
  m_dDistance = dBottom;
  m_bFromBottom = true;
}

void QXOgreOverlay::SetTexture(QXTexture* pTexture, QdcRect2D const& rcPart) {
  m_rcPart = rcPart;
  QXOgreTextureSource* const pSource = QXOgreTextureSource::Of(pTexture);
  // Made before the former one is given back, which may be the same.
  auto pUse = pSource ? std::make_unique<QXOgreTextureUse>(pSource) : nullptr;
  m_pUse.swap(pUse);
}

bool QXOgreOverlay::Place(int nWidth, int nHeight, QdcRect2D& rcPixels, QdcRect2D& rcPart) const {
  double const dTop = m_bFromBottom ? nHeight - m_dDistance - m_dHeight : m_dDistance;
  rcPixels = {m_dLeft, dTop, m_dLeft + m_dWidth, dTop + m_dHeight};
  rcPart = m_rcPart;
  return CutOff(rcPixels.left, rcPixels.right, rcPart.left, rcPart.right, nWidth) &&
         CutOff(rcPixels.top, rcPixels.bottom, rcPart.top, rcPart.bottom, nHeight);
}

}  // namespace QXC
