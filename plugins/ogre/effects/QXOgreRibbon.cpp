#include <plugins/ogre/effects/QXOgreRibbon.h>

#include <algorithm>

namespace QXC {

namespace {

void Lose(double& dValue, double dLoss) {
  dValue = std::max(dValue - dLoss, 0.0);
}

double Between(double dFrom, double dTo, double dPart) {
  return dFrom + (dTo - dFrom) * dPart;
}

QXOgreRibbonPoint Between(QXOgreRibbonPoint const& from, QXOgreRibbonPoint const& to, double dPart) {
  QXVector3d const& a = from.m_vecPosition;
  QXVector3d const& b = to.m_vecPosition;
  return {{Between(a.x, b.x, dPart), Between(a.y, b.y, dPart), Between(a.z, b.z, dPart)},
      {Between(from.m_Color.r, to.m_Color.r, dPart), Between(from.m_Color.g, to.m_Color.g, dPart),
          Between(from.m_Color.b, to.m_Color.b, dPart), Between(from.m_Color.a, to.m_Color.a, dPart)},
      Between(from.m_dWidth, to.m_dWidth, dPart)};
}

}  // namespace

void QXOgreRibbon::Add(QXVector3d const& vecPosition, std::size_t nMaxPoints) {
  QXOgreRibbonPoint const point{vecPosition, m_Color, std::max(m_dWidth, 0.0)};
  if (m_arrPoints.size() < nMaxPoints) {
    m_arrPoints.push_back(point);
  } else if (nMaxPoints > 0) {
    m_arrPoints[m_nOldest] = point;
    m_nOldest = (m_nOldest + 1) % m_arrPoints.size();
  }
}

void QXOgreRibbon::Limit(std::size_t nMaxPoints) {
  std::rotate(m_arrPoints.begin(), m_arrPoints.begin() + static_cast<std::ptrdiff_t>(m_nOldest), m_arrPoints.end());
  m_nOldest = 0;
  if (m_arrPoints.size() > nMaxPoints)
    m_arrPoints.erase(m_arrPoints.begin(), m_arrPoints.end() - static_cast<std::ptrdiff_t>(nMaxPoints));
}

void QXOgreRibbon::Clear() {
  m_arrPoints.clear();
  m_nOldest = 0;
}

QXOgreRibbonPoint const& QXOgreRibbon::GetPoint(std::size_t nAge) const {
  return m_arrPoints[(m_nOldest + m_arrPoints.size() - 1 - nAge) % m_arrPoints.size()];
}

void QXOgreRibbon::Advance(double dSeconds) {
  for (QXOgreRibbonPoint& point : m_arrPoints) {
    Lose(point.m_Color.r, m_ColorChange.r * dSeconds);
    Lose(point.m_Color.g, m_ColorChange.g * dSeconds);
    Lose(point.m_Color.b, m_ColorChange.b * dSeconds);
    Lose(point.m_Color.a, m_ColorChange.a * dSeconds);
    Lose(point.m_dWidth, m_dWidthChange * dSeconds);
  }
}

void QXOgreRibbon::CollectHead(double dLength, std::vector<QXOgreRibbonPoint>& arrPoints) const {
  double dLeft = dLength;
  std::size_t const nBefore = arrPoints.size();
  for (std::size_t i = 0; i < GetCount(); ++i) {
    QXOgreRibbonPoint const& point = GetPoint(i);
    if (arrPoints.size() > nBefore) {
      double const dStep = (point.m_vecPosition - arrPoints.back().m_vecPosition).Length();
      if (dStep == 0.0) continue;
      if (dLength > 0.0 && dStep >= dLeft) {
        arrPoints.push_back(Between(arrPoints.back(), point, dLeft / dStep));
        return;
      }
      dLeft -= dStep;
    }
    arrPoints.push_back(point);
  }
}

}  // namespace QXC
