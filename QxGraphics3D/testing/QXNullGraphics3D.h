/// @file
/// A renderer that draws nothing.
#pragma once

#include <map>
#include <memory>
#include <vector>

#include <QxGraphics3D/testing/QXNullDevice.h>
#include <QxGraphics3D/testing/QXNullHwInstancingManager.h>
#include <QxGraphics3D/testing/QXNullRenderOperationManager.h>
#include <QxGraphics3D/testing/QXNullTextureManager.h>
#include <QxGraphics3D/view/QXLight.h>

namespace QXC {

class QXNullCamera;
class QXNullRenderOperationOverlay;
class QXNullRenderTarget;
class QXNullScene;
class QXNullUniformBuffer;

/// A light of the null renderer.
struct QXNullLight {
  QdcUnicodeString m_strSceneName;
  QXLight m_Light;
  unsigned char m_bEnable = 1;
};

/// A whole renderer without a device, for tests of hosts and libraries and as the start of a plug-in: scenes, targets,
/// cameras and drawables exist and follow every rule of QXGraphics3D, frames run, cameras cull and count, and nothing
/// is ever drawn. Targets read back what was cleared. QXRecordingGraphics3D is the same with a log.
/// Everything made before Initialize, a name that is empty or taken, an unknown scene and a size of 0 or past 16384 are
/// refused with a reason in GetErrorText, so that a host's mistake shows here and not first on a device.
class QXNullGraphics3D : public QXNullDevice {
public:
  QXNullGraphics3D();
  /// Deletes scenes, cameras, overlays and textures. Attached targets live on unless ShutDown came first.
  ~QXNullGraphics3D() override;

  /// Makes the 3D scene. The folder is not looked at.
  unsigned char Initialize(QdcUnicodeString const& strResourcePath) override;
  unsigned char IsInitialized() const override { return m_bInitialized; }
  /// "null"
  QdcUnicodeString const& GetName() const override { return m_strName; }
  QdcUnicodeString GetRenderSystemName() const override;
  QdcUnicodeString GetRenderSystemVersion() const override;
  void ClearResource() override;

  // Scenes.
  unsigned char CreateScene(QdcUnicodeString const& strName) override;
  void DestroyScene(QdcUnicodeString const& strName) override;
  unsigned char HasScene(QdcUnicodeString const& strName) const override;
  /// "Scene3D" for 0 once initialised, else empty.
  QdcUnicodeString GetSceneName(int nSceneManagerType) const override;
  unsigned char HasRenderableObjects(QdcUnicodeString const& strSceneName) const override;
  unsigned char CreateLight(QdcUnicodeString const& strName, QdcUnicodeString const& strSceneName) override;
  void DestroyLight(QdcUnicodeString const& strName) override;
  void SetLightEnable(QdcUnicodeString const& strName, unsigned char bEnable) override;
  unsigned char SetLight(QdcUnicodeString const& strName, QXLight const& light) override;
  void SetLightPos(QdcUnicodeString const& strName, QXVector3d const& vecPosition) override;
  /// As it was told last; null if there is none. Good until the light or its scene goes.
  QXNullLight const* FindLight(QdcUnicodeString const& strName) const;
  /// The scene keeps it (QXNullScene::GetFog).
  void SetFog(QdcUnicodeString const& strSceneName, QXFog const& fog) override;
  /// A QXNullSkyGraphics3D.
  QXSkyGraphics3D* CreateSky(QdcUnicodeString const& strSceneName, SceneType eSceneType) override;
  /// A QXNullTritonOceanGraphics3D.
  QXTritonOceanGraphics3D* CreateOcean(QdcUnicodeString const& strSceneName, SceneType eSceneType) override;
  /// Makes all cameras' positions relative to the origin, of those to come too.
  void SetRelativeOrigin(QXVector3d const& vecOrigin) override;
  /// Null if there is none.
  QXNullScene* FindScene(QdcUnicodeString const& strName) const;
  /// Where nodes of a scene name stand: the empty one is that of what is drawn into textures. Null if there is none.
  QXNullScene* FindNodeScene(QdcUnicodeString const& strName) const;

  // Cameras.
  QXCamera* CreateCamera(QdcUnicodeString const& strName, QdcUnicodeString const& strSceneName) override;
  void DestroyCamera(QXCamera* pCamera) override;
  QXCamera* GetCamera(QdcUnicodeString const& strName) const override;

  // Targets.
  QXRenderTarget* CreateRenderWindow(QdcUnicodeString const& strName, HWND hWindow, unsigned int nWidth,
      unsigned int nHeight, unsigned char bFullScreen) override;
  QXRenderTarget* CreateRenderTexture(QdcUnicodeString const& strName, QX3DPixelFormat eFormat, unsigned int nWidth,
      unsigned int nHeight, int nMipmaps, unsigned int nColourDepth, QdcUnicodeString const& strSceneName) override;
  QXRenderTarget* CreateReflectRenderTarget(QdcUnicodeString const& strName, unsigned int nWidth, unsigned int nHeight,
      QdcUnicodeString const& strSceneName) override;
  QXRenderTarget* CreateSelectionRenderTarget(QdcUnicodeString const& strName, unsigned int nWidth,
      unsigned int nHeight, QdcUnicodeString const& strSceneName) override;
  QXRenderTarget* CreateVertexSelectionRenderTarget(QdcUnicodeString const& strName, unsigned int nWidth,
      unsigned int nHeight, QdcUnicodeString const& strSceneName) override;
  QXRenderTarget* CreateMultiRenderTarget(
      QdcUnicodeString const& strName, unsigned int nWidth, unsigned int nHeight, unsigned int nCount) override;
  void AttachRenderTarget(QXRenderTarget* pTarget) override;
  void DeleteRenderTarget(QXRenderTarget* pTarget) override;
  void ShutDown() override;
  void AttachReflectRenderTarget(QXRenderTarget* pTarget) override;
  void AttachSelectionRenderTarget(QXRenderTarget* pTarget) override;
  void AttachVertexSelectionRenderTarget(QXRenderTarget* pTarget) override;
  void AttachMultiRenderTarget(QXRenderTarget* pTarget) override;
  /// Called by the targets themselves.
  void Forget(QXNullRenderTarget* pTarget);
  QXTexture* GetRenderTargetTexture(QXRenderTarget* pTarget) const override;
  unsigned char ReadPixels(
      QXRenderTarget* pTarget, QdcRect const& rcPixels, unsigned char* pPixels, unsigned int nByteCount) override;
  /// The patch is cleared to transparent black.
  void RenderPatchToTexture(double dHalfWidth, double dHalfHeight, double dWidth, double dHeight,
      QXRenderTarget* pTarget, QdcRect2D const& rcPatch) override;

  // The frame.
  void UpdateAllRenderTargets() override;
  void UpdatePrioritisedRenderTargets() override;
  void SwapAllRenderTargetBuffers(unsigned char bWaitForVerticalBlank) override;
  /// A selection pass finds no pixel, since none is drawn; the Pick operations ask the geometry instead.
  unsigned char BeginSelection(QXRenderTarget* pTarget, int nLeft, int nBottom, int nWidth, int nHeight) override;
  unsigned int ReadSelectionID(int nX, int nY) const override;
  void ReadSelectionIDs(QdcRect const& rcPixels, QdcArray<unsigned int>& arrIDs) const override;

  // Nodes. CreateSceneNode and its relatives without a scene name work in the 3D scene.
  unsigned char CreateSceneNode(QdcUnicodeString const& strSceneName, QdcUnicodeString const& strParentName,
      QdcUnicodeString const& strNodeName) override;
  QdcUnicodeString CreateSceneNode() override;
  unsigned char DestroySceneNode(QdcUnicodeString const& strSceneName, QdcUnicodeString const& strNodeName) override;
  void DestroySceneNode(QdcUnicodeString strNodeName) override;
  void SetSceneNodePosition(QdcUnicodeString const& strSceneName, QdcUnicodeString const& strNodeName,
      QXVector3d const& vecPosition) override;
  void SetSceneNodeOrientation(QdcUnicodeString const& strSceneName, QdcUnicodeString const& strNodeName,
      QXQuaternion4d const& orientation) override;
  void SetSceneNodeScale(
      QdcUnicodeString const& strSceneName, QdcUnicodeString const& strNodeName, QXVector3d const& vecScale) override;
  void SetSceneNodeVisible(QdcUnicodeString const& strSceneName, QdcUnicodeString const& strNodeName,
      unsigned char bVisible, unsigned char bCascade) override;
  void SetSceneNodeVisible(QdcUnicodeString const& strNodeName, unsigned char bVisible) override;
  void SetSceneNodeVisibleDistance(QdcUnicodeString const& strNodeName, double dNear, double dFar) override;
  unsigned char AttachToSceneNode(QdcUnicodeString const& strSceneName, QdcUnicodeString const& strNodeName,
      QXRenderOperation3D* pRenderOperation) override;
  void DetachFromSceneNode(QdcUnicodeString const& strSceneName, QXRenderOperation3D* pRenderOperation) override;
  void GetSceneNodeBoundingBox(
      QdcUnicodeString const& strSceneName, QdcUnicodeString const& strNodeName, QXBoundingBox& box) const override;

  // Objects by selection identifier, and those drawn by hand.
  void SetSelectedObjects(QdcArray<unsigned int> const& arrIDs) override;
  void ClearSelectedObjects() override;
  unsigned int PickObject(double dX, double dY, QXVector3d& vecHit) const override;
  unsigned int PickObjectByRay(QdcUnicodeString const& strSceneName, QXVector3d const& vecOrigin,
      QXVector3d const& vecDirection, QXVector3d& vecHit) const override;
  unsigned char GetObjectBoundingBox(unsigned int nID, QXBoundingBox& box) const override;
  void SetObjectVisible(unsigned int nID, unsigned char bVisible) override;
  unsigned char IsObjectVisible(unsigned int nID) const override;
  void SetObjectColor(unsigned int nID, QXColorValue3D const& color) override;
  void ResetObjectColor(unsigned int nID) override;
  QdcUnicodeString UpdateManualRenderObject(
      QXRenderOperation3D* pRenderOperation, QdcUnicodeString const& strSceneName) override;
  void RemoveManualRenderObject(QdcUnicodeString const& strName, QdcUnicodeString const& strSceneName) override;
  void SetManualRenderObjectVisible(QdcUnicodeString const& strName, unsigned char bVisible) override;

  // Overlays and uniform buffers, which the renderer keeps.
  QXRenderOperationOverlay* CreateOverlay(QdcUnicodeString const& strName) override;
  void DestroyOverlay(QdcUnicodeString const& strName) override;
  void SetOverlayVisible(QdcUnicodeString const& strName, unsigned char bVisible) override;
  void SetOverlayZOrder(QdcUnicodeString const& strName, int nZOrder) override;
  QXUniformBuffer* CreateUniformBuffer(QdcUnicodeString const& strName) override;
  QXUniformBuffer* GetUniformBuffer(QdcUnicodeString const& strName) const override;
  void DestroyUniformBuffer(QdcUnicodeString const& strName) override;

protected:
  /// With a log, which may be null.
  explicit QXNullGraphics3D(std::shared_ptr<QXCallLog> pLog);

private:
  /// 0 with a reason if a target of this name and size cannot be made.
  unsigned char CheckTarget(QdcUnicodeString const& strName, unsigned int nWidth, unsigned int nHeight);
  QXRenderTarget* MakeTarget(QdcUnicodeString const& strName, unsigned int nWidth, unsigned int nHeight,
      unsigned char bTexture, QdcUnicodeString const& strSceneName);
  void DeleteCamera(std::map<QdcUnicodeString, std::unique_ptr<QXNullCamera>>::iterator camera);
  QXNullRenderOperation3D* FindObject(unsigned int nID) const;
  QXNullRenderOperation3D* FindManualObject(QdcUnicodeString const& strName) const;

  QdcUnicodeString m_strName;
  unsigned char m_bInitialized = 0;
  int m_nNodesMade = 0;
  std::map<QdcUnicodeString, std::unique_ptr<QXNullScene>> m_mapScenes;
  /// Null before Initialize.
  std::unique_ptr<QXNullScene> m_pTextureScene;
  std::map<QdcUnicodeString, std::unique_ptr<QXNullCamera>> m_mapCameras;
  /// Not owned; in the order in which they were made.
  std::vector<QXNullRenderTarget*> m_arrTargets;
  std::map<QdcUnicodeString, QXNullLight> m_mapLights;
  std::map<QdcUnicodeString, std::unique_ptr<QXNullRenderOperationOverlay>> m_mapOverlays;
  std::map<QdcUnicodeString, std::unique_ptr<QXNullUniformBuffer>> m_mapUniformBuffers;
  /// Own colours of the objects that SetObjectColor changed.
  std::map<unsigned int, QXColorValue3D> m_mapFormerColors;
  QXNullTextureManager m_TextureManager;
  QXNullRenderOperationManager m_Manager;
  QXNullHwInstancingManager m_HwInstancingManager;
};

}  // namespace QXC
