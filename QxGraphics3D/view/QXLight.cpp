#include <QxGraphics3D/view/QXLight.h>

namespace QXC {
namespace {

void SetRgb(QXColorValue3D& colour, double dRed, double dGreen, double dBlue) {
  colour.SetValue(dRed, dGreen, dBlue, colour.a);
}

}  // namespace

QXLight::QXLight(QdcUnicodeString const& /*strName*/) {}

void QXLight::SetSpotlightRange(double dInner, double dOuter, double dFalloff) {
  if (m_eType != LIGHT_SPOTLIGHT) return;
  m_dSpotlightInnerAngle = dInner;
  m_dSpotlightOuterAngle = dOuter;
  m_dSpotlightFalloff = dFalloff;
}

void QXLight::SetDiffuseColour(double dRed, double dGreen, double dBlue) {
  SetRgb(m_DiffuseColour, dRed, dGreen, dBlue);
}

void QXLight::SetSpecularColour(double dRed, double dGreen, double dBlue) {
  SetRgb(m_SpecularColour, dRed, dGreen, dBlue);
}

void QXLight::SetAmbientColour(double dRed, double dGreen, double dBlue) {
  SetRgb(m_AmbientColour, dRed, dGreen, dBlue);
}

void QXLight::SetAttenuation(double dRange, double dConstant, double dLinear, double dQuadric) {
  m_dAttenuationRange = dRange;
  m_dAttenuationConstant = dConstant;
  m_dAttenuationLinear = dLinear;
  m_dAttenuationQuadric = dQuadric;
}

}  // namespace QXC
