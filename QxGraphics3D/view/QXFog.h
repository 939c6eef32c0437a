/// @file
/// Fog of a scene.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXColorValue3D.h>

namespace QXC {

/// How fog grows with the distance d from the eye. Any other value survives; renderers take it for no fog.
enum FogMode : int {
  FOG_NONE = 0,
  FOG_EXPONENTIAL = 1,          ///< what is seen through it: exp(-density * d)
  FOG_EXPONENTIAL_SQUARED = 2,  ///< exp(-(density * d)^2)
  FOG_LINEAR = 3,               ///< (end - d) / (end - start), 0 to 1
};

/// What a renderer needs to know of the fog: a host fills it, the plug-in reads it. Nothing is checked.
class QXGRAPHICS3D_API QXFog {
public:
  QXFog() = default;
  QXFog(QXFog const&) = default;
  /// Takes a copy and gives nothing, as plug-ins are compiled against it.
  void operator=(QXFog other);  // NOLINT(misc-unconventional-assign-operator)

  // Slot order is the contract with plug-ins: never reorder, never insert; append only with a major version.
  virtual ~QXFog();

  FogMode GetFogMode() const { return m_eMode; }
  void SetFogMode(FogMode eMode) { m_eMode = eMode; }
  QXColorValue3D const& GetFogColor() const { return m_Color; }
  void SetFogColor(QXColorValue3D const& color) { m_Color = color; }
  /// Distance at which linear fog begins, in world units.
  double GetFogStart() const { return m_dStart; }
  void SetFogStart(double dStart) { m_dStart = dStart; }
  /// Distance from which on linear fog hides everything.
  double GetFogEnd() const { return m_dEnd; }
  void SetFogEnd(double dEnd) { m_dEnd = dEnd; }
  /// Of the exponential modes, for one world unit.
  double GetFogDensity() const { return m_dDensity; }
  void SetFogDensity(double dDensity) { m_dDensity = dDensity; }

  /// As a new object has it: no fog, white, from 0 to 1, density 1.
  void Reset();

protected:
  FogMode m_eMode = FOG_NONE;
  QXColorValue3D m_Color = QXColorValue3D::White;
  double m_dStart = 0.0;
  double m_dEnd = 1.0;
  double m_dDensity = 1.0;
};

}  // namespace QXC
