/// @file
/// The renderer on OGRE.
#pragma once

#include <exception>
#include <map>
#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

#include <QxGraphics3D/view/QXBloomSetting.h>

#include <plugins/ogre/QXOgreDevice.h>
#include <plugins/ogre/QXOgreUnsupported.h>
#include <plugins/ogre/QXOgreView.h>
#include <plugins/ogre/environment/QXOgreLights.h>

namespace QXC {

class QXOgreCamera;
class QXOgreHwInstancingManager;
class QXOgreOverlays;
class QXOgreRenderOperationManager;
class QXOgreRenderTarget;
class QXOgreScene;
class QXOgreSceneNode;
class QXOgreSelection;
class QXOgreTexts;
class QXOgreTextureManager;

/// The renderer. It owns the device, the scenes and the cameras, and knows its targets and drawables, which hosts own:
/// at its end it takes the device's part away from those that are left.
class QXOgreGraphics3D final : public QXOgreUnsupported {
public:
  QXOgreGraphics3D();
  ~QXOgreGraphics3D() override;

  // What the plug-in's own classes ask.

  /// Null before Initialize.
  QXOgreDevice* GetDevice() const { return m_pDevice.get(); }
  /// The device; throws std::runtime_error before Initialize.
  QXOgreDevice& RequireDevice() const;
  QXOgreTextureManager& GetTextures() const { return *m_pTextures; }
  QXOgreRenderOperationManager& GetOperations() const { return *m_pManager; }
  /// Only while there is a device.
  QXOgreOverlays& GetOverlays() const { return *m_pOverlays; }
  /// Null if there is none of that name.
  QXOgreScene* FindScene(QdcUnicodeString const& strName) const;
  /// The scene in which nodes of a name stand. The empty one is that of the textures that are drawn: their targets have
  /// no scene's name, and what is drawn into them would be seen in any other.
  QXOgreScene* FindNodeScene(QdcUnicodeString const& strName) const;
  /// Null if there is none of that name.
  QXOgreRenderTarget* FindTarget(QdcUnicodeString const& strName) const;
  /// Called by the targets themselves.
  void AddTarget(QXOgreRenderTarget* pTarget) { m_setTargets.insert(pTarget); }
  void RemoveTarget(QXOgreRenderTarget* pTarget) { m_setTargets.erase(pTarget); }
  /// Inside its ranges.
  QXBloomSetting const& GetBloomSetting() const { return m_BloomSetting; }
  bool IsBloomEnabled() const { return m_bBloomEnabled; }
  /// The target as this renderer's own; null if it is none of its living ones.
  QXOgreRenderTarget* OwnTarget(QXRenderTarget* pTarget) const;
  QXOgreSelection* GetSelection() const { return m_pSelection.get(); }
  /// Adds to the counters of the frame.
  void Count(QXOgreCounts const& counts);
  void SetErrorText(std::string const& strText);
  /// Whether the device can make a target of that size; sets the error text if not.
  unsigned char IsTargetSize(unsigned int nWidth, unsigned int nHeight);
  /// Runs a piece of work with OGRE, whose exceptions must not reach the host: 1, or 0 with the reason as error text.
  template <class Work>
  unsigned char Try(Work&& work);

  unsigned char Initialize(QdcUnicodeString const& strResourcePath) override;
  QdcUnicodeString const& GetName() const override { return m_strName; }
  QdcUnicodeString const& GetErrorText() const override { return m_strError; }
  unsigned char CreateScene(QdcUnicodeString const& strName) override;
  void DestroyScene(QdcUnicodeString const& strName) override;
  QXRenderTarget* CreateRenderWindow(QdcUnicodeString const& strName, HWND hWindow, unsigned int nWidth,
      unsigned int nHeight, unsigned char bFullScreen) override;
  QXCamera* CreateCamera(QdcUnicodeString const& strName, QdcUnicodeString const& strSceneName) override;
  void DestroyCamera(QXCamera* pCamera) override;
  QXCamera* GetCamera(QdcUnicodeString const& strName) const override;
  unsigned char IsInitialized() const override { return m_pDevice != nullptr; }
  unsigned char HasScene(QdcUnicodeString const& strName) const override { return FindScene(strName) != nullptr; }
  void SetViewport(QXViewport* pViewport) override { m_pViewport = pViewport; }
  void SwapAllRenderTargetBuffers(unsigned char bWaitForVerticalBlank) override;
  unsigned char CreateLight(QdcUnicodeString const& strName, QdcUnicodeString const& strSceneName) override;
  void DestroyLight(QdcUnicodeString const& strName) override;
  void SetLightEnable(QdcUnicodeString const& strName, unsigned char bEnable) override;
  unsigned char SetLight(QdcUnicodeString const& strName, QXLight const& light) override;
  void SetLightPos(QdcUnicodeString const& strName, QXVector3d const& vecPosition) override;
  void SetFog(QdcUnicodeString const& strSceneName, QXFog const& fog) override;
  void UpdateAllRenderTargets() override;
  void UpdatePrioritisedRenderTargets() override;
  /// The instancings go first: their meshes have textures too.
  void ClearResource() override;
  void SetViewMatrix(QXMatrix4d const& matView) override { m_matView = matView; }
  void SetProjectionMatrix(QXMatrix4d const& matProjection) override { m_matProjection = matProjection; }
  void SetWorldMatrix(QXMatrix4d const& matWorld) override { m_matWorld = matWorld; }
  void MakeProjectionMatrix(double dFovY, double dAspect, double dNear, double dFar, QXMatrix4d& matOut) override;
  void MakeFrustumMatrix(
      double dLeft, double dRight, double dBottom, double dTop, double dNear, double dFar, QXMatrix4d& matOut) override;
  void ConvertProjectionMatrix(QXMatrix4d const& matIn, QXMatrix4d& matOut) const override { matOut = matIn; }
  void ApplyObliqueDepthProjection(QXMatrix4d& matProjection, QXPlane const& plane) const override;
  double GetMinimumDepthInputValue() const override { return -1.0; }
  double GetMaximumDepthInputValue() const override { return 1.0; }
  void MakeOrthoMatrix(
      double dLeft, double dRight, double dBottom, double dTop, double dNear, double dFar, QXMatrix4d& matOut) override;
  void SetCullingMode(CullingMode eMode) override { m_eCullingMode = eMode; }
  void SetTextureUnitFiltering(unsigned int nUnit, int nFilter0, int nFilter1, int nFilter2) override;
  void SetTextureCoordSet(unsigned int nUnit, unsigned int nSet) override;
  void SetTextureAnisotropy(unsigned int nUnit, unsigned int nMaxAnisotropy) override;
  void SetTextureMipmapBias(unsigned int nUnit, double dBias) override;
  void SetRelativeOrigin(QXVector3d const& vecOrigin) override;
  QXVector3d const& GetRelativeOrigin() const override { return m_vecRelativeOrigin; }
  unsigned int GetDrawOperationCount() const override { return m_nDrawOperationCount; }
  void BeginGeometryCount() override;
  void RenderPatchToTexture(double dHalfWidth, double dHalfHeight, double dWidth, double dHeight,
      QXRenderTarget* pTarget, QdcRect2D const& rcPatch) override;
  QXTexture* GetRenderTargetTexture(QXRenderTarget* pTarget) const override;
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
  unsigned char BeginSelection(QXRenderTarget* pTarget, int nLeft, int nBottom, int nWidth, int nHeight) override;
  void EndSelection() override;
  unsigned int ReadSelectionID(int nX, int nY) const override;
  void ReadSelectionIDs(QdcRect const& rcPixels, QdcArray<unsigned int>& arrIDs) const override;
  void SetSelectionEnable(QdcUnicodeString const& strSceneName, unsigned char bEnable) override;
  void SetSelectionTolerance(double dPixels) override;
  QXVector3d GetSelInfo(float fX, float fY, int& nLayerID, int& nObjectID, QdcArray<QXGeometry*>& arrGeometries,
      std::set<int>& setLayerIDs, unsigned char bAll, std::map<int, QdcRect2D> const* pMapBounds) override;
  QXVector3d GetSelInfo(float fX, float fY, int& nLayerID, int& nObjectID, unsigned char bAll) override;
  unsigned int PickObject(double dX, double dY, QXVector3d& vecHit) const override;
  unsigned int PickObjectByRay(QdcUnicodeString const& strSceneName, QXVector3d const& vecOrigin,
      QXVector3d const& vecDirection, QXVector3d& vecHit) const override;
  QXRenderTarget* CreateSelectionRenderTarget(QdcUnicodeString const& strName, unsigned int nWidth,
      unsigned int nHeight, QdcUnicodeString const& strSceneName) override;
  double ReadDepth(QXRenderTarget* pTarget, int nX, int nY) const override;
  QXVector3d ScreenToCartesian(int nX, int nY) const override;
  QXVector3d GetPixelPosition(QXRenderTarget* pTarget, int nX, int nY) const override;
  QXColorValue3D ScreenToColor(int nX, int nY) const override;
  void SetSelectedObjects(QdcArray<unsigned int> const& arrIDs) override;
  void ClearSelectedObjects() override;
  void SetSelectionColor(QXColorValue3D const& color) override;
  unsigned char GetObjectBoundingBox(unsigned int nID, QXBoundingBox& box) const override;
  void SetObjectVisible(unsigned int nID, unsigned char bVisible) override;
  unsigned char IsObjectVisible(unsigned int nID) const override;
  void SetObjectColor(unsigned int nID, QXColorValue3D const& color) override;
  void ResetObjectColor(unsigned int nID) override;
  /// The effect "bloom" is the only one.
  unsigned char AddCompositor(QXRenderTarget* pTarget, QdcUnicodeString const& strName) override;
  void RemoveCompositor(QXRenderTarget* pTarget, QdcUnicodeString const& strName) override;
  /// "threshold", "intensity" and "radius" of "bloom", as QXBloomSetting has them.
  unsigned char SetCompositorParameter(
      QdcUnicodeString const& strName, QdcUnicodeString const& strParameter, double dValue) override;
  void SetCompositorEnable(QdcUnicodeString const& strName, unsigned char bEnable) override;
  unsigned char IsCompositorEnable(QdcUnicodeString const& strName) const override;
  void SetBloomSetting(QXBloomSetting const& setting) override;
  void GetRenderSystems(QdcArray<QdcUnicodeString>& arrNames) const override;
  void TextOut2DText(QdcUnicodeString const& strText, double dX, double dY, unsigned int nColor) override;
  void TextOut3DText(QdcUnicodeString const& strText, double dX, double dY, double dZ, unsigned int nColor) override;
  void SetRenderFont(QdcUnicodeString const& strFaceName, double dSize) override;
  /// Over the picture of the viewport that was drawn last.
  void RenderTexts() override;
  /// Null before Initialize, and for a name that is empty or taken.
  QXRenderOperationOverlay* CreateOverlay(QdcUnicodeString const& strName) override;
  void DestroyOverlay(QdcUnicodeString const& strName) override;
  void SetOverlayVisible(QdcUnicodeString const& strName, unsigned char bVisible) override;
  void SetOverlayPosition(QdcUnicodeString const& strName, double dLeft, double dBottom) override;
  void SetOverlayZOrder(QdcUnicodeString const& strName, int nZOrder) override;
  unsigned char SelectRenderSystem(QdcUnicodeString const& strName) override;
  QdcUnicodeString GetRenderSystemName() const override;
  QdcUnicodeString GetRenderSystemVersion() const override;
  unsigned char IsRenderSystemSupported(QdcUnicodeString const& strName) const override;
  QdcUnicodeString GetSceneName(int nSceneManagerType) const override;
  unsigned char ReadPixels(
      QXRenderTarget* pTarget, QdcRect const& rcPixels, unsigned char* pPixels, unsigned int nByteCount) override;
  unsigned char GetScreenPosition(QXVector3d const& vecWorld, QXVector3d& vecWindow) const override;
  unsigned char HasRenderableObjects(QdcUnicodeString const& strSceneName) const override;
  QXRenderTarget* CreateReflectRenderTarget(QdcUnicodeString const& strName, unsigned int nWidth, unsigned int nHeight,
      QdcUnicodeString const& strSceneName) override;
  QXRenderTarget* CreateRenderTexture(QdcUnicodeString const& strName, QX3DPixelFormat eFormat, unsigned int nWidth,
      unsigned int nHeight, int nMipmaps, unsigned int nColourDepth, QdcUnicodeString const& strSceneName) override;
  /// For scenes whose z is up.
  QXSkyGraphics3D* CreateSky(QdcUnicodeString const& strSceneName, SceneType eSceneType) override;
  QXTritonOceanGraphics3D* CreateOcean(QdcUnicodeString const& strSceneName, SceneType eSceneType) override;

protected:
  unsigned char Refuse(char const* szWhat) override;

private:
  /// In any scene; null if there is none.
  QXOgreLights::Entry* FindLight(QdcUnicodeString const& strName) const;
  /// Null if there is none.
  QXOgreSceneNode* FindNode(QdcUnicodeString const& strSceneName, QdcUnicodeString const& strNodeName) const;
  /// Whether a target may be made; sets the error text if not.
  unsigned char CanMakeTarget(QdcUnicodeString const& strName, unsigned int nWidth, unsigned int nHeight);
  /// Makes a target of a kind; null with the reason as error text if OGRE cannot.
  template <class Target, class... Arguments>
  QXRenderTarget* MakeTarget(Arguments const&... arguments);
  /// A scene that can have sky and ocean; null with the reason as error text if it cannot.
  QXOgreScene* FindPlaneScene(QdcUnicodeString const& strSceneName, SceneType eSceneType);
  /// Those that no host knows of.
  void MakeOwnScenes();
  void FillCapabilities();
  void Fail(std::exception const& exception);

  std::unique_ptr<QXOgreDevice> m_pDevice;
  std::map<QdcUnicodeString, QXOgreScene*> m_mapScenes;
  std::vector<std::unique_ptr<QXOgreCamera>> m_arrCameras;
  std::unordered_set<QXOgreRenderTarget*> m_setTargets;
  std::unique_ptr<QXOgreRenderOperationManager> m_pManager;
  std::unique_ptr<QXOgreTextureManager> m_pTextures;
  std::unique_ptr<QXOgreHwInstancingManager> m_pInstancings;
  QXOgreScene* m_pTextureScene;
  QXOgreScene* m_pTextScene;
  QXOgreScene* m_pOverlayScene;
  std::unique_ptr<QXOgreTexts> m_pTexts;
  std::unique_ptr<QXOgreOverlays> m_pOverlays;
  QXBloomSetting m_BloomSetting;
  bool m_bBloomEnabled = true;
  std::unique_ptr<QXOgreSelection> m_pSelection;
  QXVector3d m_vecRelativeOrigin;
  QdcUnicodeString m_strName;
  QdcUnicodeString m_strError;
  unsigned int m_nDrawOperationCount;
  int m_nNodesMade;
};

template <class Work>
unsigned char QXOgreGraphics3D::Try(Work&& work) {
  try {
    work();
    return 1;
  } catch (std::exception const& exception) {
    Fail(exception);
    return 0;
  }
}

}  // namespace QXC
