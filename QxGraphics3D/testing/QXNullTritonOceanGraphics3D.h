/// @file
/// An ocean of the null renderer.
#pragma once

#include <map>

#include <QxGraphics3D/environment/QXOceanParameters.h>
#include <QxGraphics3D/environment/QXTritonOceanGraphics3D.h>
#include <QxGraphics3D/testing/QXNullObject.h>

namespace QXC {

/// A ship, rotor or pier: where it is and how it moves.
struct QXNullDisturbance {
  QXVector3d m_vecPosition;
  QXVector3d m_vecDirection;
  double m_dSpeed = 0.0;
};

/// Flat water: keeps what it is told, counts its disturbances, and is as high as the sea level everywhere.
class QXNullTritonOceanGraphics3D final : public QXTritonOceanGraphics3D, public QXNullObject {
public:
  /// @param pLog  null: calls are not written down
  QXNullTritonOceanGraphics3D(
      std::shared_ptr<QXCallLog> pLog, QdcUnicodeString const& strSceneName, SceneType eSceneType)
      : QXTritonOceanGraphics3D(strSceneName, eSceneType),
        QXNullObject(std::move(pLog), "ocean " + QXCallLog::Quote(strSceneName)) {}
  ~QXNullTritonOceanGraphics3D() override { Record("destroyed"); }

  unsigned char Initialize() override {
    Record("Initialize");
    m_bInitialized = 1;
    return 1;
  }
  void SetVisible(unsigned char bVisible) override { RecordAndKeep("SetVisible", bVisible, m_bVisible); }
  unsigned char IsVisible() const override { return m_bVisible; }
  void SetRenderGroupID(unsigned int nID) override { Record("SetRenderGroupID", nID); }
  void SetTime(QdcTime time) override { Record("SetTime", time.GetMillisecondsUTC()); }
  void SetSeaLevel(double dHeight) override { RecordAndKeep("SetSeaLevel", dHeight, m_dSeaLevel); }
  double GetSeaLevel() const override { return m_dSeaLevel; }
  void SetWindDirection(double dDirection) override { RecordAndKeep("SetWindDirection", dDirection, m_dWindDirection); }
  double GetWindDirection() const override { return m_dWindDirection; }
  void SetWindSpeed(double dSpeed) override { RecordAndKeep("SetWindSpeed", dSpeed, m_dWindSpeed); }
  double GetWindSpeed() const override { return m_dWindSpeed; }
  void SetSeaState(double dBeaufort) override { RecordAndKeep("SetSeaState", dBeaufort, m_dSeaState); }
  double GetSeaState() const override { return m_dSeaState; }
  void SetChoppiness(double dChoppiness) override { RecordAndKeep("SetChoppiness", dChoppiness, m_dChoppiness); }
  double GetChoppiness() const override { return m_dChoppiness; }
  void SetWaterColor(QXColorValue3D const& color) override { RecordAndKeep("SetWaterColor", color, m_WaterColor); }
  QXColorValue3D GetWaterColor() const override { return m_WaterColor; }
  void SetUnderwaterVisibility(double dDistance) override { Record("SetUnderwaterVisibility", dDistance); }
  void SetFoamEnable(unsigned char bEnable) override { Record("SetFoamEnable", bEnable); }
  void SetReflectionEnable(unsigned char bEnable) override { Record("SetReflectionEnable", bEnable); }
  void SetLight(QXVector3d const& vecDirection, QXColorValue3D const& sun, QXColorValue3D const& ambient) override {
    Record("SetLight", vecDirection, sun, ambient);
  }
  void AddSwell(double dDirection, double dWaveLength, double dWaveHeight, double dPhase) override {
    Record("AddSwell", dDirection, dWaveLength, dWaveHeight, dPhase);
    ++m_nSwells;
  }
  void RemoveAllSwells() override {
    Record("RemoveAllSwells");
    m_nSwells = 0;
  }
  /// 0 before Initialize.
  unsigned char GetHeight(QXVector3d const& /*vecPosition*/, double& dHeight, QXVector3d& vecNormal) const override {
    if (!m_bInitialized) {
      return 0;
    }
    dHeight = m_dSeaLevel;
    vecNormal = QXVector3d::UNIT_Z;
    return 1;
  }
  unsigned int CreateWakeGenerator(QXWakeGeneratorParameters const& /*parameters*/) override {
    return AddDisturbance("CreateWakeGenerator");
  }
  unsigned int CreateRotorWash(QXRotorWashParameters const& /*parameters*/) override {
    return AddDisturbance("CreateRotorWash");
  }
  unsigned int CreateTidalStreamWake(QXTidalStreamWakeParameters const& /*parameters*/) override {
    return AddDisturbance("CreateTidalStreamWake");
  }
  void AddWaterImpact(QXWaterImpactParameters const& /*parameters*/, QXVector3d const& vecPosition,
      QXVector3d const& vecDirection, double dSpeed) override {
    Record("AddWaterImpact", vecPosition, vecDirection, dSpeed);
    ++m_nImpacts;
  }
  void MoveDisturbance(
      unsigned int nNumber, QXVector3d const& vecPosition, QXVector3d const& vecDirection, double dSpeed) override {
    Record("MoveDisturbance", nNumber, vecPosition, vecDirection, dSpeed);
    auto const disturbance = m_mapDisturbances.find(nNumber);
    if (disturbance != m_mapDisturbances.end()) {
      disturbance->second = QXNullDisturbance{vecPosition, vecDirection, dSpeed};
    }
  }
  void RemoveDisturbance(unsigned int nNumber) override {
    Record("RemoveDisturbance", nNumber);
    m_mapDisturbances.erase(nNumber);
  }
  void Update(double dSeconds) override {
    Record("Update", dSeconds);
    m_dSeconds += dSeconds;
  }
  void SetRenderWithTextureBuffer(unsigned char bTexture) override { Record("SetRenderWithTextureBuffer", bTexture); }

  /// By number.
  std::map<unsigned int, QXNullDisturbance> const& GetDisturbances() const { return m_mapDisturbances; }
  unsigned int GetSwellCount() const { return m_nSwells; }
  unsigned int GetImpactCount() const { return m_nImpacts; }
  /// What all updates together moved the clock on.
  double GetSeconds() const { return m_dSeconds; }

private:
  unsigned int AddDisturbance(char const* szCall) {
    Record(szCall);
    m_mapDisturbances.emplace(++m_nLastNumber, QXNullDisturbance());
    return m_nLastNumber;
  }

  unsigned char m_bInitialized = 0;
  unsigned char m_bVisible = 1;
  double m_dSeaLevel = 0.0;
  double m_dWindDirection = 0.0;
  double m_dWindSpeed = 0.0;
  double m_dSeaState = -1.0;
  double m_dChoppiness = 1.0;
  double m_dSeconds = 0.0;
  QXColorValue3D m_WaterColor;
  unsigned int m_nSwells = 0;
  unsigned int m_nImpacts = 0;
  unsigned int m_nLastNumber = 0;
  std::map<unsigned int, QXNullDisturbance> m_mapDisturbances;
};

}  // namespace QXC
