// The side of the renderer that lights its scenes.
#include <plugins/ogre/QXOgreGraphics3D.h>

#include <QxGraphics3D/view/QXFog.h>

#include <plugins/ogre/QXOgreConvert.h>
#include <plugins/ogre/QXOgreScene.h>

namespace QXC {

QXOgreLights::Entry* QXOgreGraphics3D::FindLight(QdcUnicodeString const& strName) const {
  for (auto const& [strScene, pScene] : m_mapScenes)
    if (QXOgreLights::Entry* const pLight = pScene->GetLights().Find(strName)) return pLight;
  return nullptr;
}

unsigned char QXOgreGraphics3D::CreateLight(QdcUnicodeString const& strName, QdcUnicodeString const& strSceneName) {
  QXOgreScene* const pScene = FindScene(strSceneName);
  if (!pScene || strName.IsEmpty() || FindLight(strName)) {
    SetErrorText("a light needs a name of its own and a scene that exists: '" + ToUtf8(strName) + "' in '" +
                 ToUtf8(strSceneName) + "'");
    return 0;
  }
  pScene->GetLights().Create(strName);
  return 1;
}

void QXOgreGraphics3D::DestroyLight(QdcUnicodeString const& strName) {
  for (auto const& [strScene, pScene] : m_mapScenes)
    if (pScene->GetLights().Destroy(strName)) return;
}

void QXOgreGraphics3D::SetLightEnable(QdcUnicodeString const& strName, unsigned char bEnable) {
  if (QXOgreLights::Entry* const pLight = FindLight(strName)) pLight->m_bEnable = bEnable != 0;
}

unsigned char QXOgreGraphics3D::SetLight(QdcUnicodeString const& strName, QXLight const& light) {
  QXOgreLights::Entry* const pLight = FindLight(strName);
  if (!pLight) {
    SetErrorText("there is no light '" + ToUtf8(strName) + "'");
    return 0;
  }
  QXOgreLights::Set(*pLight, light);
  return 1;
}

void QXOgreGraphics3D::SetLightPos(QdcUnicodeString const& strName, QXVector3d const& vecPosition) {
  QXOgreLights::Entry* const pLight = FindLight(strName);
  if (!pLight) return;
  QXLight light = pLight->m_Light;
  light.SetPosition(vecPosition);
  QXOgreLights::Set(*pLight, light);
}

void QXOgreGraphics3D::SetFog(QdcUnicodeString const& strSceneName, QXFog const& fog) {
  if (QXOgreScene* const pScene = FindScene(strSceneName)) pScene->SetFog(fog);
}

}  // namespace QXC
