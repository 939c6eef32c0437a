#include <QxGraphics3D/testing/QXNullRibbonTrail3D.h>

namespace QXC {
namespace {

void DropOldest(std::vector<QXVector3d>& arrPoints, std::size_t nKeep) {
  if (arrPoints.size() > nKeep) {
    arrPoints.erase(arrPoints.begin(), arrPoints.end() - static_cast<std::ptrdiff_t>(nKeep));
  }
}

}  // namespace

QXNullRibbonTrail3D::QXNullRibbonTrail3D(
    std::shared_ptr<QXCallLog> pLog, std::string strLabel, QdcUnicodeString const& strName)
    : QXNullObject(std::move(pLog), std::move(strLabel)), m_strName(strName) {}

QXNullRibbonTrail3D::~QXNullRibbonTrail3D() {
  Record("destroyed");
}

QXNullRibbonTrail3D::Trail const& QXNullRibbonTrail3D::Find(unsigned int nTrail) const {
  static Trail const ms_New;
  return nTrail < GetTrailCount() ? m_arrTrails[nTrail] : ms_New;
}

void QXNullRibbonTrail3D::SetVisible(unsigned char bVisible) {
  Record("SetVisible", bVisible);
  m_bVisible = bVisible;
}

void QXNullRibbonTrail3D::SetTexture(QXTexture* pTexture) {
  Record("SetTexture", QXLoggedMemory{pTexture});
  m_Texture.Set(pTexture);
}

void QXNullRibbonTrail3D::SetTrailCount(unsigned int nCount) {
  Record("SetTrailCount", nCount);
  m_arrTrails.resize(nCount);
}

void QXNullRibbonTrail3D::SetMaxPointCount(unsigned int nCount) {
  Record("SetMaxPointCount", nCount);
  m_nMaxPoints = nCount;
  for (Trail& trail : m_arrTrails) {
    DropOldest(trail.m_arrPoints, nCount);
  }
}

void QXNullRibbonTrail3D::SetTrailLength(double dLength) {
  Record("SetTrailLength", dLength);
  m_dLength = dLength;
}

void QXNullRibbonTrail3D::AddPoint(unsigned int nTrail, QXVector3d const& vecPoint) {
  Record("AddPoint", nTrail, vecPoint);
  if (nTrail < GetTrailCount()) {
    m_arrTrails[nTrail].m_arrPoints.push_back(vecPoint);
    DropOldest(m_arrTrails[nTrail].m_arrPoints, m_nMaxPoints);
  }
}

void QXNullRibbonTrail3D::ClearTrail(unsigned int nTrail) {
  Record("ClearTrail", nTrail);
  if (nTrail < GetTrailCount()) {
    m_arrTrails[nTrail].m_arrPoints.clear();
  }
}

void QXNullRibbonTrail3D::ClearAllTrails() {
  Record("ClearAllTrails");
  for (Trail& trail : m_arrTrails) {
    trail.m_arrPoints.clear();
  }
}

void QXNullRibbonTrail3D::SetInitialColor(unsigned int nTrail, QXColorValue3D const& color) {
  Record("SetInitialColor", nTrail, color);
  if (nTrail < GetTrailCount()) {
    m_arrTrails[nTrail].m_Color = color;
  }
}

void QXNullRibbonTrail3D::SetColorChange(unsigned int nTrail, QXColorValue3D const& colorPerSecond) {
  Record("SetColorChange", nTrail, colorPerSecond);
  if (nTrail < GetTrailCount()) {
    m_arrTrails[nTrail].m_ColorChange = colorPerSecond;
  }
}

void QXNullRibbonTrail3D::SetInitialWidth(unsigned int nTrail, double dWidth) {
  Record("SetInitialWidth", nTrail, dWidth);
  if (nTrail < GetTrailCount()) {
    m_arrTrails[nTrail].m_dWidth = dWidth;
  }
}

void QXNullRibbonTrail3D::SetWidthChange(unsigned int nTrail, double dWidthPerSecond) {
  Record("SetWidthChange", nTrail, dWidthPerSecond);
  if (nTrail < GetTrailCount()) {
    m_arrTrails[nTrail].m_dWidthChange = dWidthPerSecond;
  }
}

void QXNullRibbonTrail3D::SetFaceCamera(unsigned char bFaceCamera, QXVector3d const& vecNormal) {
  Record("SetFaceCamera", bFaceCamera, vecNormal);
}

void QXNullRibbonTrail3D::Advance(double dSeconds) {
  Record("Advance", dSeconds);
}

}  // namespace QXC
