// Nodes of the scenes.

#include <plugins/ogre/QXOgreConvert.h>
#include <plugins/ogre/QXOgreGraphics3D.h>
#include <plugins/ogre/QXOgreRenderOperation3D.h>
#include <plugins/ogre/QXOgreRenderOperationManager.h>
#include <plugins/ogre/QXOgreScene.h>
#include <plugins/ogre/QXOgreSceneNode.h>

namespace QXC {

QXOgreSceneNode* QXOgreGraphics3D::FindNode(
    QdcUnicodeString const& strSceneName, QdcUnicodeString const& strNodeName) const {
  QXOgreScene* const pScene = FindNodeScene(strSceneName);
  return pScene ? pScene->GetNodes().Find(strNodeName) : nullptr;
}

unsigned char QXOgreGraphics3D::CreateSceneNode(
    QdcUnicodeString const& strSceneName, QdcUnicodeString const& strParentName, QdcUnicodeString const& strNodeName) {
  QXOgreScene* const pScene = FindNodeScene(strSceneName);
  if (pScene && pScene->GetNodes().Create(strParentName, strNodeName)) return 1;
  SetErrorText("a node needs a scene, a parent in it and a name of its own: '" + ToUtf8(strNodeName) + "' under '" +
               ToUtf8(strParentName) + "' in '" + ToUtf8(strSceneName) + "'");
  return 0;
}

QdcUnicodeString QXOgreGraphics3D::CreateSceneNode() {
  QXOgreScene* const pScene = FindScene(GetSceneName(0));
  if (!pScene) {
    SetErrorText("a node needs an initialised renderer");
    return {};
  }
  QdcUnicodeString strName;
  do {
    strName.Format(L"Node%d", ++m_nNodesMade);
  } while (!pScene->GetNodes().Create({}, strName));
  return strName;
}

unsigned char QXOgreGraphics3D::DestroySceneNode(
    QdcUnicodeString const& strSceneName, QdcUnicodeString const& strNodeName) {
  QXOgreScene* const pScene = FindNodeScene(strSceneName);
  if (pScene && pScene->GetNodes().Destroy(strNodeName)) return 1;
  SetErrorText("there is no node '" + ToUtf8(strNodeName) + "' in '" + ToUtf8(strSceneName) + "'");
  return 0;
}

void QXOgreGraphics3D::DestroySceneNode(QdcUnicodeString strNodeName) {
  DestroySceneNode(GetSceneName(0), strNodeName);
}

void QXOgreGraphics3D::SetSceneNodePosition(
    QdcUnicodeString const& strSceneName, QdcUnicodeString const& strNodeName, QXVector3d const& vecPosition) {
  if (QXOgreSceneNode* const pNode = FindNode(strSceneName, strNodeName)) pNode->SetPosition(vecPosition);
}

void QXOgreGraphics3D::SetSceneNodeOrientation(
    QdcUnicodeString const& strSceneName, QdcUnicodeString const& strNodeName, QXQuaternion4d const& orientation) {
  if (QXOgreSceneNode* const pNode = FindNode(strSceneName, strNodeName)) pNode->SetOrientation(orientation);
}

void QXOgreGraphics3D::SetSceneNodeScale(
    QdcUnicodeString const& strSceneName, QdcUnicodeString const& strNodeName, QXVector3d const& vecScale) {
  if (QXOgreSceneNode* const pNode = FindNode(strSceneName, strNodeName)) pNode->SetScale(vecScale);
}

void QXOgreGraphics3D::SetSceneNodeVisible(QdcUnicodeString const& strSceneName, QdcUnicodeString const& strNodeName,
    unsigned char bVisible, unsigned char bCascade) {
  if (QXOgreSceneNode* const pNode = FindNode(strSceneName, strNodeName)) pNode->SetVisible(bVisible, bCascade);
}

void QXOgreGraphics3D::SetSceneNodeVisible(QdcUnicodeString const& strNodeName, unsigned char bVisible) {
  SetSceneNodeVisible(GetSceneName(0), strNodeName, bVisible, 1);
}

void QXOgreGraphics3D::SetSceneNodeVisibleDistance(QdcUnicodeString const& strNodeName, double dNear, double dFar) {
  if (QXOgreSceneNode* const pNode = FindNode(GetSceneName(0), strNodeName)) pNode->SetVisibleDistance(dNear, dFar);
}

unsigned char QXOgreGraphics3D::AttachToSceneNode(
    QdcUnicodeString const& strSceneName, QdcUnicodeString const& strNodeName, QXRenderOperation3D* pRenderOperation) {
  QXOgreRenderOperation3D* const pOwn = m_pManager->Own(pRenderOperation);
  QXOgreSceneNode* const pNode = FindNode(strSceneName, strNodeName);
  if (!pOwn || !pNode) {
    SetErrorText(pOwn ? "there is no node '" + ToUtf8(strNodeName) + "' in '" + ToUtf8(strSceneName) + "'"
                      : "what hangs under a node must be a drawable of this renderer");
    return 0;
  }
  pOwn->GetDrawable().SetScene(FindNodeScene(strSceneName));
  pOwn->GetDrawable().SetNode(pNode);
  return 1;
}

void QXOgreGraphics3D::DetachFromSceneNode(
    QdcUnicodeString const& strSceneName, QXRenderOperation3D* pRenderOperation) {
  QXOgreRenderOperation3D* const pOwn = m_pManager->Own(pRenderOperation);
  if (pOwn && pOwn->GetDrawable().GetScene() == FindNodeScene(strSceneName)) pOwn->GetDrawable().SetNode(nullptr);
}

void QXOgreGraphics3D::GetSceneNodeBoundingBox(
    QdcUnicodeString const& strSceneName, QdcUnicodeString const& strNodeName, QXBoundingBox& box) const {
  box.SetNULL();
  QXOgreScene* const pScene = FindNodeScene(strSceneName);
  QXOgreSceneNode const* const pNode = FindNode(strSceneName, strNodeName);
  if (pNode) {
    box = pNode->GetBounds(false);
  } else if (pScene && strNodeName.IsEmpty()) {
    box = pScene->GetDrawableBounds();
  }
}

}  // namespace QXC
