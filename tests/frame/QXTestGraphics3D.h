// A renderer without any device: every pure operation is filled and does nothing, and what the frame itself calls on a
// renderer is written down. The tests of the frame need the base class as it is, so nothing else is overridden.
#pragma once

#include <vector>

#include <QxGraphics3D/frame/QXGraphics3D.h>

namespace QXC {

class QXTestGraphics3D : public QXGraphics3D {
public:
  unsigned char Initialize(QdcUnicodeString const&) override { return 0; }
  QdcUnicodeString const& GetName() const override { return m_strText; }
  QdcUnicodeString const& GetErrorText() const override { return m_strText; }
  unsigned char CreateScene(QdcUnicodeString const&) override { return 0; }
  void DestroyScene(QdcUnicodeString const&) override {}
  QXRenderTarget* CreateRenderWindow(
      QdcUnicodeString const&, HWND, unsigned int, unsigned int, unsigned char) override {
    return nullptr;
  }
  QXCamera* CreateCamera(QdcUnicodeString const&, QdcUnicodeString const&) override { return nullptr; }
  void DestroyCamera(QXCamera*) override {}
  QXCamera* GetCamera(QdcUnicodeString const&) const override { return nullptr; }
  unsigned char IsInitialized() const override { return 0; }
  unsigned char HasScene(QdcUnicodeString const&) const override { return 0; }
  void SetViewport(QXViewport*) override {}
  void BeginFrame() override {}
  void EndFrame() override {}
  void SetAmbientLight(QXColorValue3D const&) override {}
  void SetShadingMode(int) override {}
  void SetLightingEnable(unsigned char) override {}
  void SwapAllRenderTargetBuffers(unsigned char) override {}
  void UpdatePrioritisedRenderTargets() override {}
  unsigned char CreateLight(QdcUnicodeString const&, QdcUnicodeString const&) override { return 0; }
  void DestroyLight(QdcUnicodeString const&) override {}
  void SetLightEnable(QdcUnicodeString const&, unsigned char) override {}
  unsigned char SetLight(QdcUnicodeString const&, QXLight const&) override { return 0; }
  void SetMaterialColor(
      QXColorValue3D const&, QXColorValue3D const&, QXColorValue3D const&, QXColorValue3D const&, double) override {}
  void SetDepthCheckEnable(unsigned char) override {}
  void SetDepthWriteEnable(unsigned char) override {}
  void SetDepthFunction(int) override {}
  void SetDepthBias(double, double) override {}
  void SetColourBufferWriteEnable(unsigned char, unsigned char, unsigned char, unsigned char) override {}
  void SetSceneBlending(int, int) override {}
  void SetAlphaRejectSettings(int, unsigned char) override {}
  void SetFog(QdcUnicodeString const&, QXFog const&) override {}
  void SetViewMatrix(QXMatrix4d const&) override {}
  void SetProjectionMatrix(QXMatrix4d const&) override {}
  void SetWorldMatrix(QXMatrix4d const& matWorld) override { m_arrWorldMatricesSet.push_back(matWorld); }
  void MakeProjectionMatrix(double, double, double, double, QXMatrix4d&) override {}
  void MakeFrustumMatrix(double, double, double, double, double, double, QXMatrix4d&) override {}
  void ConvertProjectionMatrix(QXMatrix4d const&, QXMatrix4d&) const override {}
  void ApplyObliqueDepthProjection(QXMatrix4d&, QXPlane const&) const override {}
  double GetMinimumDepthInputValue() const override { return 0.0; }
  double GetMaximumDepthInputValue() const override { return 0.0; }
  void BeginScreenProjection() override {}
  void EndScreenProjection() override {}
  void SetClipPlaneEnable(unsigned short, unsigned char) override {}
  void SetTexture(unsigned int, unsigned char, QXTexture*) override {}
  void SetTextureMatrix(unsigned int, QXMatrix4d const&) override {}
  void SetTextureCoordSet(unsigned int, unsigned int) override {}
  void SetTextureCoordCalculation(unsigned int, int) override {}
  void SetTextureAddressingMode(unsigned int, int, int, int) override {}
  void SetTextureBorderColor(unsigned int, QXColorValue3D const&) override {}
  void SetTextureAnisotropy(unsigned int, unsigned int) override {}
  void SetTextureMipmapBias(unsigned int, double) override {}
  void SetTextureBlendMode(unsigned int, int, int) override {}
  void SetPolygonMode(int) override {}
  void SetPointAttenuation(double, double, double, double, double) override {}
  unsigned int BeginList() override { return 0; }
  void EndList() override {}
  void SetCullingMode(CullingMode) override {}
  void SetStencilCheckEnable(unsigned char) override {}
  void SetStencilParameters(int, unsigned int, unsigned int, int, int, int) override {}
  QXVector3d const& GetRelativeOrigin() const override { return QXVector3d::ZERO; }
  unsigned int GetDrawOperationCount() const override { return 0; }
  void Render(QXRenderOperation const&) override {}
  void RenderSimpleLine(double const*, int, unsigned char, float const*) override {}
  void RenderSimplePolygon(double const*, int, float const*) override {}
  void SetPointSize(double) override {}
  void SetLineWidth(double) override {}
  void SetLineSmoothEnable(unsigned char) override {}
  void SetMultiSampleEnable(unsigned char) override {}
  void ClearFrameBuffer(unsigned int, QXColorValue3D const&, double, unsigned int) override {}
  void SetScissorTest(unsigned char, int, int, int, int) override {}
  void SetCurrentColor(QXColorValue3D const&) override {}
  unsigned char BindGpuProgram(QdcUnicodeString const&, QdcUnicodeString const&) override { return 0; }
  void UnbindGpuProgram() override {}
  unsigned char SetGpuProgramParameter(QdcUnicodeString const&, float const*, unsigned int) override { return 0; }
  void Flush(unsigned char) override {}
  QXTexture* GetRenderTargetTexture(QXRenderTarget*) const override { return nullptr; }
  void RenderPatchToTexture(double, double, double, double, QXRenderTarget*, QdcRect2D const&) override {}
  unsigned char BeginSelection(QXRenderTarget*, int, int, int, int) override { return 0; }
  void EndSelection() override {}
  unsigned int ReadSelectionID(int, int) const override { return 0; }
  void ReadSelectionIDs(QdcRect const&, QdcArray<unsigned int>&) const override {}
  void SetSelectionEnable(QdcUnicodeString const&, unsigned char) override {}
  void SetSelectionTolerance(double) override {}
  void SetSelectionMode(int) override {}
  void SetSelectedObjects(QdcArray<unsigned int> const&) override {}
  void ClearSelectedObjects() override {}
  void SetSelectionColor(QXColorValue3D const&) override {}
  unsigned int PickObject(double, double, QXVector3d&) const override { return 0; }
  unsigned int PickObjectByRay(
      QdcUnicodeString const&, QXVector3d const&, QXVector3d const&, QXVector3d&) const override {
    return 0;
  }
  unsigned char GetObjectBoundingBox(unsigned int, QXBoundingBox&) const override { return 0; }
  void SetObjectVisible(unsigned int, unsigned char) override {}
  unsigned char IsObjectVisible(unsigned int) const override { return 0; }
  void SetObjectColor(unsigned int, QXColorValue3D const&) override {}
  void ResetObjectColor(unsigned int) override {}
  void GetRenderSystems(QdcArray<QdcUnicodeString>&) const override {}
  unsigned char SelectRenderSystem(QdcUnicodeString const&) override { return 0; }
  QdcUnicodeString GetRenderSystemName() const override { return QdcUnicodeString(); }
  QdcUnicodeString GetRenderSystemVersion() const override { return QdcUnicodeString(); }
  void SetStereoMode(int) override {}
  int GetStereoMode() const override { return 0; }
  void DestroyOverlay(QdcUnicodeString const&) override {}
  void SetOverlayPosition(QdcUnicodeString const&, double, double) override {}
  void SetOverlayZOrder(QdcUnicodeString const&, int) override {}
  void SetSceneNodePosition(QdcUnicodeString const&, QdcUnicodeString const&, QXVector3d const&) override {}
  void SetSceneNodeOrientation(QdcUnicodeString const&, QdcUnicodeString const&, QXQuaternion4d const&) override {}
  void SetSceneNodeScale(QdcUnicodeString const&, QdcUnicodeString const&, QXVector3d const&) override {}
  unsigned char AttachToSceneNode(QdcUnicodeString const&, QdcUnicodeString const&, QXRenderOperation3D*) override {
    return 0;
  }
  void DetachFromSceneNode(QdcUnicodeString const&, QXRenderOperation3D*) override {}
  void GetSceneNodeBoundingBox(QdcUnicodeString const&, QdcUnicodeString const&, QXBoundingBox&) const override {}
  unsigned char AddResourceFolder(QdcUnicodeString const&) override { return 0; }
  void RemoveResourceFolder(QdcUnicodeString const&) override {}
  unsigned char ReadPixels(QXRenderTarget*, QdcRect const&, unsigned char*, unsigned int) override { return 0; }
  double ReadDepth(QXRenderTarget*, int, int) const override { return 0.0; }
  unsigned char GetScreenPosition(QXVector3d const&, QXVector3d&) const override { return 0; }
  unsigned char IsHMDAvailable(HMDMode) const override { return 0; }
  unsigned char GetHMDRenderSize(unsigned int&, unsigned int&) const override { return 0; }
  unsigned char InitializeVR() override { return 0; }
  void UpdateHMDPose() override {}
  unsigned char GetHMDPose(int, QXMatrix4d&, QXMatrix4d&) const override { return 0; }
  void SubmitHMDFrame(QXRenderTarget*, QXRenderTarget*) override {}
  void SetCamera4QX(QXCamera*) override {}
  unsigned char AddCompositor(QXRenderTarget*, QdcUnicodeString const&) override { return 0; }
  void RemoveCompositor(QXRenderTarget*, QdcUnicodeString const&) override {}
  unsigned char SetCompositorParameter(QdcUnicodeString const&, QdcUnicodeString const&, double) override { return 0; }
  void SetHDREnable(unsigned char) override {}
  void SetExposure(double) override {}
  void SetAmbientOcclusion(unsigned char, double) override {}
  void SetDepthOfField(unsigned char, double, double) override {}
  void SetColorCorrection(double, double, double) override {}
  QXRenderTarget* CreateReflectRenderTarget(
      QdcUnicodeString const&, unsigned int, unsigned int, QdcUnicodeString const&) override {
    return nullptr;
  }
  QXRenderTarget* CreateSelectionRenderTarget(
      QdcUnicodeString const&, unsigned int, unsigned int, QdcUnicodeString const&) override {
    return nullptr;
  }
  QXRenderTarget* CreateVertexSelectionRenderTarget(
      QdcUnicodeString const&, unsigned int, unsigned int, QdcUnicodeString const&) override {
    return nullptr;
  }
  QXRenderTarget* CreateMultiRenderTarget(QdcUnicodeString const&, unsigned int, unsigned int, unsigned int) override {
    return nullptr;
  }
  QXRenderTarget* CreateRenderTexture(QdcUnicodeString const&, QX3DPixelFormat, unsigned int, unsigned int, int,
      unsigned int, QdcUnicodeString const&) override {
    return nullptr;
  }
  QXSkyGraphics3D* CreateSky(QdcUnicodeString const&, SceneType) override { return nullptr; }
  QXTritonOceanGraphics3D* CreateOcean(QdcUnicodeString const&, SceneType) override { return nullptr; }

  /// Arguments of every SetWorldMatrix.
  std::vector<QXMatrix4d> m_arrWorldMatricesSet;

private:
  QdcUnicodeString m_strText;
};

}  // namespace QXC
