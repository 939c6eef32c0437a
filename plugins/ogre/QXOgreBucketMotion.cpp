#include <plugins/ogre/QXOgreBucketMotion.h>

#include <cmath>

#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>

namespace QXC {

bool QXOgreBucketMotion::Moves(unsigned int nUnit) const {
  if (nUnit >= UNITS || m_Extension.GetType() != MATERIAL_EXTENSION_MOVING_TEXTURES) return false;
  return m_Extension.m_fSlides[nUnit][4] > 0.0F || m_Extension.m_fTurns[nUnit][4] > 0.0F;
}

QXMatrix4d QXOgreBucketMotion::GetTransform(unsigned int nUnit, unsigned int nTime) const {
  float const* const pSlide = m_Extension.m_fSlides[nUnit];
  float const* const pTurn = m_Extension.m_fTurns[nUnit];
  double const dSeconds = nTime / 1000.0;
  double const dWay = pSlide[4] > 0.0F ? pSlide[4] * dSeconds : 0.0;
  double const dAngle = pTurn[3] + (pTurn[4] > 0.0F ? pTurn[4] * dSeconds : 0.0);
  // A picture of twice the size takes half of the coordinates.
  double const dScale = pTurn[2] == 0.0F ? 1.0 : 1.0 / static_cast<double>(pTurn[2]);
  double const dCos = std::cos(dAngle) * dScale;
  double const dSin = std::sin(dAngle) * dScale;
  double const u = pTurn[0];
  double const v = pTurn[1];
  QXMatrix4d mat;
  mat[0][0] = dCos;
  mat[0][1] = dSin;
  mat[1][0] = -dSin;
  mat[1][1] = dCos;
  mat.SetTrans({u - u * dCos + v * dSin + pSlide[2] + std::fmod(pSlide[0] * dWay, 1.0),
      v - u * dSin - v * dCos + pSlide[3] + std::fmod(pSlide[1] * dWay, 1.0), 0.0});
  return mat;
}

}  // namespace QXC
