/// @file
/// One light of a scene.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXColorValue3D.h>

namespace QXC {

/// How a light shines. Any other value survives.
enum LightTypes : int {
  LIGHT_POINT = 0,        ///< from its position in all directions
  LIGHT_DIRECTIONAL = 1,  ///< along its direction everywhere
  LIGHT_SPOTLIGHT = 2,    ///< from its position along its direction, within its angles
};

/// What a renderer needs to know of a light: a host fills it, the plug-in reads it. A value; nothing is checked.
/// Numbers of a new light are 0, attenuation and power scale included, which means that nobody has set them.
class QXGRAPHICS3D_API QXLight {
public:
  /// White light without a place, whose type wants setting: until then it is LIGHT_POINT.
  QXLight() = default;
  /// @param strName  not kept: lights are named where they are created
  explicit QXLight(QdcUnicodeString const& strName);
  QXLight(QXLight const&) = default;
  QXLight& operator=(QXLight const&) = default;

  LightTypes GetType() const { return m_eType; }
  void SetType(LightTypes eType) { m_eType = eType; }

  /// How the light fades from the inner to the outer angle: the exponent of a spotlight, 1 is linear.
  double GetSpotlightFalloff() const { return m_dSpotlightFalloff; }
  void SetSpotlightFalloff(double dFalloff) { m_dSpotlightFalloff = dFalloff; }
  /// Whole angle of full light in radians.
  double GetSpotlightInnerAngle() const { return m_dSpotlightInnerAngle; }
  void SetSpotlightInnerAngle(double dAngle) { m_dSpotlightInnerAngle = dAngle; }
  /// Whole angle beyond which there is no light, in radians.
  double GetSpotlightOuterAngle() const { return m_dSpotlightOuterAngle; }
  void SetSpotlightOuterAngle(double dAngle) { m_dSpotlightOuterAngle = dAngle; }
  /// All three at once, only for LIGHT_SPOTLIGHT: a light of another type stays as it is, so that hosts may hand one
  /// set of values to all their lights.
  void SetSpotlightRange(double dInner, double dOuter, double dFalloff);

  QXColorValue3D const& GetDiffuseColour() const { return m_DiffuseColour; }
  void SetDiffuseColour(QXColorValue3D const& colour) { m_DiffuseColour = colour; }
  /// Leaves alpha alone; so do the two below.
  void SetDiffuseColour(double dRed, double dGreen, double dBlue);
  QXColorValue3D const& GetSpecularColour() const { return m_SpecularColour; }
  void SetSpecularColour(QXColorValue3D const& colour) { m_SpecularColour = colour; }
  void SetSpecularColour(double dRed, double dGreen, double dBlue);
  QXColorValue3D const& GetAmbientColour() const { return m_AmbientColour; }
  void SetAmbientColour(QXColorValue3D const& colour) { m_AmbientColour = colour; }
  void SetAmbientColour(double dRed, double dGreen, double dBlue);

  /// Distance beyond which there is no light, in world units.
  double GetAttenuationRange() const { return m_dAttenuationRange; }
  /// The light at distance d is divided by constant + linear * d + quadric * d * d.
  double GetAttenuationConstant() const { return m_dAttenuationConstant; }
  double GetAttenuationLinear() const { return m_dAttenuationLinear; }
  double GetAttenuationQuadric() const { return m_dAttenuationQuadric; }
  /// Stores the four above. The power scale stays.
  void SetAttenuation(double dRange, double dConstant, double dLinear, double dQuadric);

  /// Factor on the light for renderers that work beyond white.
  double GetPowerScale() const { return m_dPowerScale; }
  void SetPowerScale(double dPowerScale) { m_dPowerScale = dPowerScale; }

  /// World coordinates.
  QXVector3d const& GetPosition() const { return m_vecPosition; }
  void SetPosition(QXVector3d const& vecPosition) { m_vecPosition = vecPosition; }
  void SetPosition(double dX, double dY, double dZ) { m_vecPosition = QXVector3d(dX, dY, dZ); }
  /// The way the light goes, in world coordinates; of any length.
  QXVector3d const& GetDirection() const { return m_vecDirection; }
  void SetDirection(QXVector3d const& vecDirection) { m_vecDirection = vecDirection; }
  void SetDirection(double dX, double dY, double dZ) { m_vecDirection = QXVector3d(dX, dY, dZ); }

protected:
  LightTypes m_eType = LIGHT_POINT;
  double m_dSpotlightFalloff = 0.0;
  double m_dSpotlightInnerAngle = 0.0;
  double m_dSpotlightOuterAngle = 0.0;
  QXColorValue3D m_DiffuseColour{1.0, 1.0, 1.0, 1.0};
  QXColorValue3D m_SpecularColour{1.0, 1.0, 1.0, 1.0};
  QXColorValue3D m_AmbientColour{1.0, 1.0, 1.0, 1.0};
  double m_dAttenuationRange = 0.0;
  double m_dPowerScale = 0.0;
  double m_dAttenuationConstant = 0.0;
  double m_dAttenuationLinear = 0.0;
  double m_dAttenuationQuadric = 0.0;
  QXVector3d m_vecPosition;
  QXVector3d m_vecDirection;
};

}  // namespace QXC
