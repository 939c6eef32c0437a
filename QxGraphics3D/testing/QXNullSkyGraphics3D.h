/// @file
/// A sky of the null renderer.
#pragma once

#include <QxGraphics3D/environment/QXSkyGraphics3D.h>
#include <QxGraphics3D/testing/QXNullObject.h>

namespace QXC {

/// Keeps what can be asked for, where the base class of all skies forgets it.
class QXNullSkyGraphics3D final : public QXSkyGraphics3D, public QXNullObject {
public:
  /// @param pLog  null: calls are not written down
  QXNullSkyGraphics3D(std::shared_ptr<QXCallLog> pLog, QdcUnicodeString const& strSceneName, SceneType eSceneType)
      : QXSkyGraphics3D(strSceneName, eSceneType),
        QXNullObject(std::move(pLog), "sky " + QXCallLog::Quote(strSceneName)) {}
  ~QXNullSkyGraphics3D() override { Record("destroyed"); }

  void SetVisible(unsigned char bVisible) override { RecordAndKeep("SetVisible", bVisible, m_bVisible); }
  void Initialize() override {
    Record("Initialize");
    m_bInitialized = 1;
  }
  void SetRenderGroupID(unsigned int nID) override { Record("SetRenderGroupID", nID); }
  void SetTime(QdcTime time) override {
    Record("SetTime", time.GetMillisecondsUTC());
    m_Time = time;
  }
  void SetCondition(QXConditionPresets eCondition) override { RecordAndKeep("SetCondition", eCondition, m_eCondition); }
  QXConditionPresets GetCondition() const override { return m_eCondition; }
  void SetPrecipitationType(QXPrecipitationTypes eType, double dRate) override {
    Record("SetPrecipitationType", eType, dRate);
    m_ePrecipitation = eType;
  }
  QXPrecipitationTypes GetPrecipitationType() const override { return m_ePrecipitation; }
  void SetCloudType(QXCloudTypes eType) override { RecordAndKeep("SetCloudType", eType, m_eCloudType); }
  QXCloudTypes GetCloudType() const override { return m_eCloudType; }
  void SetCloudVisibleDistance(double dDistance) override {
    RecordAndKeep("SetCloudVisibleDistance", dDistance, m_dCloudVisibleDistance);
  }
  double GetCloudVisibleDistance() const override { return m_dCloudVisibleDistance; }
  void SetWindMinAltitude(double dAltitude) override {
    RecordAndKeep("SetWindMinAltitude", dAltitude, m_dWindMinAltitude);
  }
  double GetWindMinAltitude() const override { return m_dWindMinAltitude; }
  void SetWindMaxAltitude(double dAltitude) override {
    RecordAndKeep("SetWindMaxAltitude", dAltitude, m_dWindMaxAltitude);
  }
  double GetWindMaxAltitude() const override { return m_dWindMaxAltitude; }
  void SetWindDirection(double dDirection) override { RecordAndKeep("SetWindDirection", dDirection, m_dWindDirection); }
  double GetWindDirection() const override { return m_dWindDirection; }
  void SetWindSpeed(double dSpeed) override { RecordAndKeep("SetWindSpeed", dSpeed, m_dWindSpeed); }
  double GetWindSpeed() const override { return m_dWindSpeed; }
  void SetCloudAltitude(double dAltitude) override { RecordAndKeep("SetCloudAltitude", dAltitude, m_dCloudAltitude); }
  double GetCloudAltitude() const override { return m_dCloudAltitude; }
  void SetRenderWithTextureBuffer(unsigned char bTexture) override { Record("SetRenderWithTextureBuffer", bTexture); }

  unsigned char IsVisible() const { return m_bVisible; }
  unsigned char IsInitialized() const { return m_bInitialized; }
  QdcTime GetTime() const { return m_Time; }

private:
  unsigned char m_bVisible = 1;
  unsigned char m_bInitialized = 0;
  QdcTime m_Time;
  QXConditionPresets m_eCondition = CONDITION_CLEAR;
  QXPrecipitationTypes m_ePrecipitation = PRECIPITATION_NONE;
  QXCloudTypes m_eCloudType = CLOUD_NONE;
  double m_dCloudVisibleDistance = 0.0;
  double m_dWindMinAltitude = 0.0;
  double m_dWindMaxAltitude = 0.0;
  double m_dWindDirection = 0.0;
  double m_dWindSpeed = 0.0;
  double m_dCloudAltitude = 0.0;
};

}  // namespace QXC
