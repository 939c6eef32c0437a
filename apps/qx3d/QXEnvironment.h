/// @file
/// Light and weather of a shown scene.
#pragma once

#include <apps/qx3d/QXSceneFile.h>

#include <QxGraphics3D/environment/QXSunPosition.h>

#include <memory>
#include <string>
#include <vector>

namespace QXC {
class QXGraphics3D;
class QXLight;
class QXRenderTarget;
class QXSkyGraphics3D;
class QXTritonOceanGraphics3D;
}  // namespace QXC

namespace QXApp {

/// A light of a scene as the library has it. It gives no light from everywhere: that is the scene's own.
QXC::QXLight MakeLight(QXSceneLight const& light);

/// What lies behind everything where nothing else is said: a light sky, which turns dark with the light of the whole
/// sky once there is a time.
/// @param pSun  null without a time
QXC::QXColorValue3D ChooseBackground(QXSceneFile const& scene, QXC::QXSunPosition const* pSun);

/// Lights a scene and puts it under its sky.
class QXEnvironment {
public:
  QXEnvironment();
  QXEnvironment(QXEnvironment const&) = delete;
  QXEnvironment& operator=(QXEnvironment const&) = delete;
  ~QXEnvironment();

  /// Sun and ambient light, lights, fog, sky and ocean. The sun stands in the south-west unless the scene has a time.
  /// @param problems  gets what the renderer has not
  void Show(QXC::QXGraphics3D& graphics3D, std::wstring const& strScene, QXC::QXRenderTarget& target,
      QXSceneFile const& scene, QXSceneProblems& problems);
  /// Before each frame. @param dSeconds  since the one before
  void Advance(double dSeconds);
  /// Before the renderer goes.
  void GiveBack(QXC::QXGraphics3D& graphics3D);

  unsigned int GetLightCount() const { return static_cast<unsigned int>(m_vecLights.size()); }

private:
  void LightTarget(QXC::QXGraphics3D& graphics3D, QXC::QXRenderTarget& target, QXSceneFile const& scene);
  void AddLights(
      QXC::QXGraphics3D& graphics3D, std::wstring const& strScene, QXSceneFile const& scene, QXSceneProblems& problems);
  void AddSky(
      QXC::QXGraphics3D& graphics3D, std::wstring const& strScene, QXSceneSky const& sky, QXSceneProblems& problems);
  void AddOcean(
      QXC::QXGraphics3D& graphics3D, std::wstring const& strScene, QXSceneFile const& scene, QXSceneProblems& problems);

  std::vector<std::wstring> m_vecLights;
  /// Of a scene with a time.
  std::unique_ptr<QXC::QXSunPosition> m_pSun;
  std::unique_ptr<QXC::QXSkyGraphics3D> m_pSky;
  std::unique_ptr<QXC::QXTritonOceanGraphics3D> m_pOcean;
};

}  // namespace QXApp
