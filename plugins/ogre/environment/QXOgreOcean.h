/// @file
/// The ocean of a scene.
#pragma once

#include <memory>
#include <vector>

#include <QxGraphics3D/environment/QXSunPosition.h>
#include <QxGraphics3D/environment/QXTritonOceanGraphics3D.h>

#include <plugins/ogre/QXOgreSceneItem.h>
#include <plugins/ogre/environment/QXOgreWaves.h>

namespace QXC {

class QXOgreAir;
class QXOgreGraphics3D;
class QXOgreScene;
struct QXOgreRays;

/// Water from the eye to the horizon, for scenes whose z is up and whose unit is a metre. It mirrors the light of the
/// scene's sky, or where none is seen, of a clear sky at its own time; the sun on it is the sky's unless SetLight says
/// otherwise. What stands in it is seen through it as far as its colour's alpha lets; underwater is not drawn otherwise
/// than above. No disturbance can be made.
///
/// A new one lies at 0 without wind under 2024-06-21 09:00 UTC, dark blue-green and nearly opaque, with choppiness 1 and
/// foam.
/// Cost of a frame: one draw operation of 65,000 triangles, each corner and each pixel a sum over the waves (up to 24).
class QXOgreOcean final : public QXTritonOceanGraphics3D, public QXOgreSceneItem {
public:
  /// Stands in the scene until it is deleted or the scene goes.
  QXOgreOcean(QXOgreGraphics3D& graphics3D, QXOgreScene& scene);
  ~QXOgreOcean() override;

  /// Where the device cannot, the renderer's error text says why.
  unsigned char Initialize() override;
  void SetVisible(unsigned char bVisible) override { m_bVisible = bVisible != 0 ? 1 : 0; }
  unsigned char IsVisible() const override { return m_bVisible; }
  /// Kept: water is drawn after what hides what is behind it, and before everything that does not.
  void SetRenderGroupID(unsigned int nID) override { m_nGroupID = nID; }
  /// For the light alone: there are no tides.
  void SetTime(QdcTime time) override { m_Sun = QXSunPosition(time); }
  void SetSeaLevel(double dHeight) override { m_dLevel = dHeight; }
  double GetSeaLevel() const override { return m_dLevel; }
  void SetWindDirection(double dDirection) override;
  double GetWindDirection() const override { return m_dWindDirection; }
  void SetWindSpeed(double dSpeed) override;
  double GetWindSpeed() const override { return m_dWindSpeed; }
  void SetSeaState(double dBeaufort) override;
  double GetSeaState() const override { return m_dSeaState; }
  void SetChoppiness(double dChoppiness) override;
  double GetChoppiness() const override { return m_dChoppiness; }
  void SetWaterColor(QXColorValue3D const& color) override { m_WaterColor = color; }
  QXColorValue3D GetWaterColor() const override { return m_WaterColor; }
  /// Kept.
  void SetUnderwaterVisibility(double dDistance) override { m_dUnderwaterVisibility = dDistance; }
  void SetFoamEnable(unsigned char bEnable) override { m_bFoam = bEnable; }
  /// Kept: it is the sky's light alone.
  void SetReflectionEnable(unsigned char bEnable) override { m_bReflection = bEnable; }
  /// Without a direction the light is the sky's again. Colours lie between 0 and 1e6.
  void SetLight(QXVector3d const& vecDirection, QXColorValue3D const& sun, QXColorValue3D const& ambient) override;
  /// A ninth one is left out, and what is no wave: shorter than 0.01, longer than 1e7 or higher than 1e4.
  void AddSwell(double dDirection, double dWaveLength, double dWaveHeight, double dPhase) override;
  void RemoveAllSwells() override;
  /// By the sum that is drawn near the eye; far away short waves are left out of the picture.
  unsigned char GetHeight(QXVector3d const& vecPosition, double& dHeight, QXVector3d& vecNormal) const override;
  /// 0, as the two below.
  unsigned int CreateWakeGenerator(QXWakeGeneratorParameters const& parameters) override;
  unsigned int CreateRotorWash(QXRotorWashParameters const& parameters) override;
  unsigned int CreateTidalStreamWake(QXTidalStreamWakeParameters const& parameters) override;
  void AddWaterImpact(QXWaterImpactParameters const&, QXVector3d const&, QXVector3d const&, double) override {}
  void MoveDisturbance(unsigned int, QXVector3d const&, QXVector3d const&, double) override {}
  void RemoveDisturbance(unsigned int) override {}
  void Update(double dSeconds) override;
  /// Kept: textures are drawn into as windows are.
  void SetRenderWithTextureBuffer(unsigned char bTexture) override { m_bTextureBuffer = bTexture; }

  void Queue(QXOgreView const& view, Ogre::RenderQueue& queue, std::vector<Ogre::Real>& arrDepths,
      QXOgreCounts& counts) override;
  /// Null: it has no end.
  QXBoundingBox GetVisibleBounds() const override { return {}; }
  bool IsEndless() const override { return m_pDevice && m_bVisible; }
  void LeaveScene() override;

private:
  class Device;

  void MakeWaves();
  unsigned int RefuseDisturbance();
  void TellWaves(QXOgreRays const& rays);
  void TellPlace(QXOgreView const& view, QXOgreRays const& rays);
  void TellLook(QXOgreRays const& rays);
  /// Of the scene's sky, else its own.
  void TellAir();

  /// Null after LeaveScene.
  QXOgreGraphics3D* m_pGraphics3D;
  QXOgreScene* m_pScene;
  /// Null before Initialize and after LeaveScene.
  std::unique_ptr<Device> m_pDevice;
  QXOgreWaves m_Waves;
  std::vector<QXOgreSwell> m_arrSwells;
  QXSunPosition m_Sun;
  /// Set by SetLight: towards the sun; zero before.
  QXVector3d m_vecToSun;
  QXColorValue3D m_SunColor;
  QXColorValue3D m_AmbientColor;
  QXColorValue3D m_WaterColor;
  double m_dLevel;
  double m_dWindDirection;
  double m_dWindSpeed;
  double m_dSeaState;
  double m_dChoppiness;
  double m_dUnderwaterVisibility;
  /// Seconds.
  double m_dClock;
  unsigned int m_nGroupID;
  unsigned char m_bVisible;
  unsigned char m_bFoam;
  unsigned char m_bReflection;
  unsigned char m_bTextureBuffer;
};

}  // namespace QXC
