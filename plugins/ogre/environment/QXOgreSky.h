/// @file
/// The sky of a scene.
#pragma once

#include <memory>

#include <QxGraphics3D/environment/QXSkyGraphics3D.h>
#include <QxGraphics3D/environment/QXSunPosition.h>

#include <plugins/ogre/QXOgreSceneItem.h>

namespace QXC {

class QXOgreAir;
class QXOgreGraphics3D;
class QXOgreScene;

/// A sky behind everything else in its scene: air, sun, stars and one layer of clouds, for scenes whose z is up. In a
/// parallel view, where all rays have one direction, it is of the one colour of the horizon there, or of the sky above.
///
/// A new one shows a clear sky of 2024-06-21 09:00 UTC at the place of QXSunPosition's defaults, with clouds, once there
/// are some, at 2000 and seen for 40000, and a wind from the west with a speed of 5 from 0 to 20000. It does not light
/// the scene: that is QXSunPosition::ApplyTo.
/// Cost of a frame: one draw operation of two triangles; after the sun has moved by a twentieth of a degree, some
/// 300,000 exponentials.
class QXOgreSky final : public QXSkyGraphics3D, public QXOgreSceneItem {
public:
  /// Stands in the scene until it is deleted or the scene goes.
  QXOgreSky(QXOgreGraphics3D& graphics3D, QXOgreScene& scene);
  ~QXOgreSky() override;

  void SetVisible(unsigned char bVisible) override { m_bVisible = bVisible; }
  /// Before it nothing is drawn. Where the device cannot, the renderer's error text says why.
  void Initialize() override;
  /// Kept: a sky is always behind everything.
  void SetRenderGroupID(unsigned int nID) override { m_nGroupID = nID; }
  /// Stars and sun move; clouds go as far as the wind took them since the time before. The first time counts from
  /// 1970-01-01, so that a moment has the same clouds whenever it is shown first.
  void SetTime(QdcTime time) override;
  /// Sets kind, height and sight of the clouds, speed of the wind and what falls. A number that is not named is kept
  /// and changes nothing else.
  void SetCondition(QXConditionPresets eCondition) override;
  QXConditionPresets GetCondition() const override { return m_eCondition; }
  /// Kept; nothing is seen to fall.
  void SetPrecipitationType(QXPrecipitationTypes eType, double dRate) override;
  QXPrecipitationTypes GetPrecipitationType() const override { return m_ePrecipitation; }
  /// A number that is not named has no clouds.
  void SetCloudType(QXCloudTypes eType) override { m_eCloudType = eType; }
  QXCloudTypes GetCloudType() const override { return m_eCloudType; }
  void SetCloudVisibleDistance(double dDistance) override { m_dCloudDistance = dDistance; }
  double GetCloudVisibleDistance() const override { return m_dCloudDistance; }
  /// Outside of the two the air stands still, and with it clouds that are there.
  void SetWindMinAltitude(double dAltitude) override { m_dWindMin = dAltitude; }
  double GetWindMinAltitude() const override { return m_dWindMin; }
  void SetWindMaxAltitude(double dAltitude) override { m_dWindMax = dAltitude; }
  double GetWindMaxAltitude() const override { return m_dWindMax; }
  void SetWindDirection(double dDirection) override { m_dWindDirection = dDirection; }
  double GetWindDirection() const override { return m_dWindDirection; }
  void SetWindSpeed(double dSpeed) override { m_dWindSpeed = dSpeed; }
  double GetWindSpeed() const override { return m_dWindSpeed; }
  void SetCloudAltitude(double dAltitude) override { m_dCloudAltitude = dAltitude; }
  double GetCloudAltitude() const override { return m_dCloudAltitude; }
  /// Kept: textures are drawn into as windows are.
  void SetRenderWithTextureBuffer(unsigned char bTexture) override { m_bTextureBuffer = bTexture; }

  void Queue(QXOgreView const& view, Ogre::RenderQueue& queue, std::vector<Ogre::Real>& arrDepths,
      QXOgreCounts& counts) override;
  /// Null: it is no part of the world.
  QXBoundingBox GetVisibleBounds() const override { return {}; }
  void LeaveScene() override;

  /// What an ocean under it mirrors; null while nothing is drawn.
  QXOgreAir const* UpdateAir();
  QXSunPosition const& GetSun() const { return m_Sun; }
  /// How much of the blue the clouds hide, 0 to 1, and how much of the light.
  double GetVeil() const;
  double GetDarkness() const;

private:
  class Device;

  /// The kind of clouds as the program takes it.
  struct Clouds;

  void TellAir(QXOgreAir const& air);
  void TellClouds(QXVector3d const& vecEye, Clouds const& clouds);
  static Clouds const& LookOf(QXCloudTypes eType);

  /// Null after LeaveScene.
  QXOgreGraphics3D* m_pGraphics3D;
  QXOgreScene* m_pScene;
  /// Null before Initialize and after LeaveScene.
  std::unique_ptr<Device> m_pDevice;
  QXSunPosition m_Sun;
  QXInt64 m_nTime;
  /// How far the wind took the clouds, east and north.
  double m_dDriftEast;
  double m_dDriftNorth;
  double m_dCloudDistance;
  double m_dCloudAltitude;
  double m_dWindMin;
  double m_dWindMax;
  double m_dWindDirection;
  double m_dWindSpeed;
  double m_dPrecipitationRate;
  QXConditionPresets m_eCondition;
  QXPrecipitationTypes m_ePrecipitation;
  QXCloudTypes m_eCloudType;
  unsigned int m_nGroupID;
  unsigned char m_bVisible;
  unsigned char m_bTextureBuffer;
};

}  // namespace QXC
