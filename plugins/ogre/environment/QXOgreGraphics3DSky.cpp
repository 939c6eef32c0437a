// Skies and oceans of scenes.

#include <plugins/ogre/QXOgreConvert.h>
#include <plugins/ogre/QXOgreGraphics3D.h>
#include <plugins/ogre/environment/QXOgreOcean.h>
#include <plugins/ogre/environment/QXOgreSky.h>

namespace QXC {

QXOgreScene* QXOgreGraphics3D::FindPlaneScene(QdcUnicodeString const& strSceneName, SceneType eSceneType) {
  QXOgreScene* const pScene = FindScene(strSceneName);
  if (!pScene) SetErrorText("there is no scene '" + ToUtf8(strSceneName) + "'");
  if (pScene && eSceneType == SCENE_GLOBE) Refuse("skies and oceans around a globe");
  return eSceneType == SCENE_GLOBE ? nullptr : pScene;
}

QXSkyGraphics3D* QXOgreGraphics3D::CreateSky(QdcUnicodeString const& strSceneName, SceneType eSceneType) {
  QXOgreScene* const pScene = FindPlaneScene(strSceneName, eSceneType);
  return pScene ? new QXOgreSky(*this, *pScene) : nullptr;
}

QXTritonOceanGraphics3D* QXOgreGraphics3D::CreateOcean(QdcUnicodeString const& strSceneName, SceneType eSceneType) {
  QXOgreScene* const pScene = FindPlaneScene(strSceneName, eSceneType);
  return pScene ? new QXOgreOcean(*this, *pScene) : nullptr;
}

}  // namespace QXC
