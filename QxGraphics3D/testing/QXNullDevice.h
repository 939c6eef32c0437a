/// @file
/// The device side of the null renderer.
#pragma once

#include <vector>

#include <QxGraphics3D/frame/QXGraphics3D.h>
#include <QxGraphics3D/testing/QXNullObject.h>

namespace QXC {

class QXNullRenderTarget;

/// The operations of a renderer that speak to a graphics device. There is none: state that only a picture would show is
/// written down and forgotten, state that can be asked for is kept, matrices are computed truly, counters count. What
/// needs a shader, an effect or a display that is not there answers 0. QXNullGraphics3D adds scenes and their objects.
class QXNullDevice : public QXGraphics3D, public QXNullObject {
public:
  QdcUnicodeString const& GetErrorText() const override { return m_strError; }

  // Matrices. Clip space is -w..w on all axes, as the library's own.
  void SetViewMatrix(QXMatrix4d const& matView) override;
  void SetProjectionMatrix(QXMatrix4d const& matProjection) override;
  void SetWorldMatrix(QXMatrix4d const& matWorld) override;
  void PushMatrix() override;
  void PopMatrix() override;
  void MultiMatrix(QXMatrix4d const& matrix) override;
  void MakeProjectionMatrix(double dFovY, double dAspect, double dNear, double dFar, QXMatrix4d& matOut) override;
  void MakeFrustumMatrix(
      double dLeft, double dRight, double dBottom, double dTop, double dNear, double dFar, QXMatrix4d& matOut) override;
  void MakeOrthoMatrix(
      double dLeft, double dRight, double dBottom, double dTop, double dNear, double dFar, QXMatrix4d& matOut) override;
  void ConvertProjectionMatrix(QXMatrix4d const& matIn, QXMatrix4d& matOut) const override;
  void ApplyObliqueDepthProjection(QXMatrix4d& matProjection, QXPlane const& plane) const override;
  double GetMinimumDepthInputValue() const override { return -1.0; }
  double GetMaximumDepthInputValue() const override { return 1.0; }
  void BeginScreenProjection() override;
  void EndScreenProjection() override;
  unsigned char GetScreenPosition(QXVector3d const& vecWorld, QXVector3d& vecWindow) const override;
  void SetRelativeOrigin(QXVector3d const& vecOrigin) override;
  QXVector3d const& GetRelativeOrigin() const override { return m_vecRelativeOrigin; }

  // The frame and what is drawn in it.
  void SetViewport(QXViewport* pViewport) override;
  /// Clears the viewport's rectangle of a null target to its background, where its flags ask for it.
  void BeginFrame() override;
  void EndFrame() override;
  void BeginGeometryCount() override;
  unsigned int GetDrawOperationCount() const override { return m_nDrawOperationCount; }
  /// One operation of all its triangles.
  void Render(QXRenderOperation const& operation) override;
  /// What cameras tell instead of drawing.
  void CountDraw(unsigned int nOperations, unsigned int nTriangles, unsigned int nVertices);
  unsigned int BeginList() override;
  void DeleteList(unsigned int nList) override;
  unsigned int ToDisplayList(QXRenderOperation const& operation) override;
  unsigned char DeleteDisplayList(unsigned int nList) override;
  /// 1 everywhere: nothing was drawn.
  double ReadDepth(QXRenderTarget* pTarget, int nX, int nY) const override;

  // State that can be asked for.
  void SetCullingMode(CullingMode eMode) override;
  void SetInvertVertexWinding(unsigned char bInvert) override;
  void SetStereoMode(int nMode) override;
  int GetStereoMode() const override { return m_nStereoMode; }
  void SetHMDMode(HMDMode eMode) override;
  void SetCamera4QX(QXCamera* pCamera) override;
  QXCamera* GetCamera4QX() const override { return m_pCamera4QX; }
  void SetSkyDome(
      QdcUnicodeString const& strSceneName, QdcUnicodeString const& strMaterial, unsigned char bVisible) override;
  unsigned char IsSkyDomeVisible() const override { return m_bSkyDomeVisible; }
  /// QDCRGBA.
  void ConvertColourValue(QXColorValue3D const& color, unsigned int* pDest) override;
  /// 1 for a folder that exists.
  unsigned char AddResourceFolder(QdcUnicodeString const& strPath) override;
  void RemoveResourceFolder(QdcUnicodeString const& strPath) override;
  void GetRenderSystems(QdcArray<QdcUnicodeString>& arrNames) const override;
  unsigned char SelectRenderSystem(QdcUnicodeString const& strName) override;
  unsigned char IsRenderSystemSupported(QdcUnicodeString const& strName) const override;

  // There are no shaders, no effects and no display for the head.
  unsigned char BindGpuProgram(
      QdcUnicodeString const& strVertexProgram, QdcUnicodeString const& strFragmentProgram) override;
  unsigned char SetGpuProgramParameter(
      QdcUnicodeString const& strName, float const* pValues, unsigned int nCount) override;
  unsigned char AddCompositor(QXRenderTarget* pTarget, QdcUnicodeString const& strName) override;
  unsigned char SetCompositorParameter(
      QdcUnicodeString const& strName, QdcUnicodeString const& strParameter, double dValue) override;
  unsigned char IsHMDAvailable(HMDMode eMode) const override;
  unsigned char GetHMDRenderSize(unsigned int& nWidth, unsigned int& nHeight) const override;
  unsigned char InitializeVR() override;
  unsigned char GetHMDPose(int nEye, QXMatrix4d& matView, QXMatrix4d& matProjection) const override;

  // State that only a picture would show.
  void SetAmbientLight(QXColorValue3D const& color) override;
  void SetShadingMode(int nMode) override;
  void SetLightingEnable(unsigned char bEnable) override;
  void UpdateLightPos() override;
  void SetMaterialEnabled(unsigned char bEnable) override;
  void SetMaterialColor(QXColorValue3D const& ambient, QXColorValue3D const& diffuse, QXColorValue3D const& specular,
      QXColorValue3D const& emissive, double dShininess) override;
  void SetDepthCheckEnable(unsigned char bEnable) override;
  void SetDepthWriteEnable(unsigned char bEnable) override;
  void SetDepthFunction(int nFunction) override;
  void SetDepthBias(double dConstant, double dSlope) override;
  void SetColourBufferLock(unsigned char bLock) override;
  void SetColourBufferWriteEnable(
      unsigned char bRed, unsigned char bGreen, unsigned char bBlue, unsigned char bAlpha) override;
  void SetSceneBlending(int nSourceFactor, int nDestFactor) override;
  void SetAlphaRejectSettings(int nFunction, unsigned char nValue) override;
  void MakePickRadial(double dX, double dY, double dWidth, double dHeight) override;
  void UnMakePickRadial() override;
  void SetClipPlane(unsigned short nIndex, QXPlane const& plane) override;
  void SetClipPlaneEnable(unsigned short nIndex, unsigned char bEnable) override;
  void DisableTextureUnit(unsigned int nUnit) override;
  void SetTexture(unsigned int nUnit, unsigned char bEnable, QXTexture* pTexture) override;
  void SetTextureUnitFiltering(unsigned int nUnit, int nFilter0, int nFilter1, int nFilter2) override;
  void SetTextureMatrix(unsigned int nUnit, QXMatrix4d const& matTexture) override;
  void SetTextureCoordSet(unsigned int nUnit, unsigned int nSet) override;
  void SetTextureCoordCalculation(unsigned int nUnit, int nMode) override;
  void SetTextureAddressingMode(unsigned int nUnit, int nModeU, int nModeV, int nModeW) override;
  void SetTextureBorderColor(unsigned int nUnit, QXColorValue3D const& color) override;
  void SetTextureAnisotropy(unsigned int nUnit, unsigned int nMaxAnisotropy) override;
  void SetTextureMipmapBias(unsigned int nUnit, double dBias) override;
  void SetTextureBlendMode(unsigned int nUnit, int nColorMode, int nAlphaMode) override;
  void SetPolygonMode(int nMode) override;
  void SetPointAttenuation(
      double dConstant, double dLinear, double dQuadratic, double dMinSize, double dMaxSize) override;
  void SetOpacity(double dOpacity) override;
  void EnableBlendAlpha(unsigned char bEnable) override;
  void EnableBlendAlphaUseDepth(unsigned char bEnable) override;
  void CallList(unsigned int nList) override;
  void EndList() override;
  void SetStencilCheckEnable(unsigned char bEnable) override;
  void SetStencilParameters(int nFunction, unsigned int nReference, unsigned int nMask, int nOnStencilFail,
      int nOnDepthFail, int nOnPass) override;
  void TextOut2DText(QdcUnicodeString const& strText, double dX, double dY, unsigned int nColor) override;
  void SetStippleLine(unsigned char bEnable, int nFactor, unsigned short nPattern) override;
  void TextOut3DText(QdcUnicodeString const& strText, double dX, double dY, double dZ, unsigned int nColor) override;
  void SetRenderFont(QdcUnicodeString const& strFaceName, double dSize) override;
  void RenderSpritePoint(double* pPoints, int nCount, unsigned char bFixedSize, float* pColor, int nSize) override;
  void RenderSpritePoint(double dX, double dY, double dZ, unsigned char bFixedSize, float* pColor) override;
  void RenderSimplePoint(double* pPoints, int nCount, unsigned char bFixedSize, int nSize) override;
  void RenderSimplePoint(double dX, double dY, double dZ, unsigned char bFixedSize) override;
  void RenderSimpleLine(double const* pPoints, int nCount, unsigned char bClosed, float const* pColor) override;
  void RenderSimplePolygon(double const* pPoints, int nCount, float const* pColor) override;
  void SetPointSize(double dSize) override;
  void SetLineWidth(double dWidth) override;
  void SetPointSmoothEnable(unsigned char bEnable) override;
  void SetPolygonSmoothEnable(unsigned char bEnable) override;
  void SetLineSmoothEnable(unsigned char bEnable) override;
  void SetMultiSampleEnable(unsigned char bEnable) override;
  void DrawEditModelTool(QXVector3d const& vecCenter, double dRadius, int nMode) override;
  void DrawEditOverlayTool(QdcRect2D const& rcWindow, int nMode) override;
  void DrawEditOverlayToolEx(QdcRect2D const& rcWindow, double dAngle, int nMode) override;
  void ClearFrameBuffer(
      unsigned int nBuffers, QXColorValue3D const& color, double dDepth, unsigned int nStencil) override;
  void SetScissorTest(unsigned char bEnable, int nLeft, int nBottom, int nWidth, int nHeight) override;
  void SetCurrentColor(QXColorValue3D const& color) override;
  void UnbindGpuProgram() override;
  void Flush(unsigned char bWait) override;
  void SetNormalizeEnable(unsigned char bEnable) override;
  void InitTargetEnvi(QXRenderTarget* pTarget) override;
  void PrintFrame() override;
  void SetDepthBuffer(unsigned char* pDepthBuffer) override;
  void UpdateScreenTexSize(unsigned int nWidth, unsigned int nHeight) override;
  void RenderToScreen(QXRenderTarget* pTarget) override;
  void RenderToTexture(double dHalfWidth, double dHalfHeight, QXRenderTarget* pTarget) override;
  void EndSelection() override;
  void SetSelectionEnable(QdcUnicodeString const& strSceneName, unsigned char bEnable) override;
  void SetSelectionTolerance(double dPixels) override;
  void SetSelectionMode(int nMode) override;
  void SetSelectionColor(QXColorValue3D const& color) override;
  void RenderTexts() override;
  void RenderDisplayList(unsigned int nList) override;
  void RenderImage(QdcUnicodeString const& strPath, QdcRect2D const& rcWindow) override;
  void SetOverlayPosition(QdcUnicodeString const& strName, double dLeft, double dBottom) override;
  void RemappingTexture(QdcUnicodeString const& strSource, QdcUnicodeString const& strDest) override;
  void UpdateHMDPose() override;
  void SubmitHMDFrame(QXRenderTarget* pLeft, QXRenderTarget* pRight) override;
  void ProcessHTCVREvent() override;
  void SetOgreOriCameraView(QXMatrix4d const& matView) override;
  void SetHTCMoveSpeed(double dSpeed) override;
  void SetUnderGlobalDepth(double dDepth) override;
  void RemoveCompositor(QXRenderTarget* pTarget, QdcUnicodeString const& strName) override;
  void SetCompositorEnable(QdcUnicodeString const& strName, unsigned char bEnable) override;
  void SetBloomSetting(QXBloomSetting const& setting) override;
  void SetHDREnable(unsigned char bEnable) override;
  void SetExposure(double dExposure) override;
  void SetAmbientOcclusion(unsigned char bEnable, double dRadius) override;
  void SetDepthOfField(unsigned char bEnable, double dFocus, double dRange) override;
  void SetColorCorrection(double dBrightness, double dContrast, double dSaturation) override;
  void ReleaseVR() override;
  void AddPass(QdcUnicodeString const& strNodeName, QXPass const& pass) override;
  void RemovePass(QdcUnicodeString const& strNodeName, QdcUnicodeString const& strPassName) override;
  void RemoveAllPasses(QdcUnicodeString const& strNodeName) override;
  void SetSceneNodeFiltratePixSize(QdcUnicodeString const& strNodeName, double dPixels) override;
  void SetSceneType(SceneType eType) override;

protected:
  explicit QXNullDevice(std::shared_ptr<QXCallLog> pLog);
  ~QXNullDevice() override;

  /// Stores the reason and gives 0.
  unsigned char Fail(QdcUnicodeString const& strReason);

  QdcUnicodeString m_strError;

private:
  struct ScreenState {
    QXMatrix4d m_matWorld;
    QXMatrix4d m_matView;
    QXMatrix4d m_matProjection;
  };

  QXVector3d m_vecRelativeOrigin;
  /// The target of the frame that is open, if it is one of the null renderer's.
  QXNullRenderTarget* m_pNullTarget = nullptr;
  unsigned int m_nDrawOperationCount = 0;
  int m_nStereoMode = 0;
  QXCamera* m_pCamera4QX = nullptr;
  unsigned char m_bSkyDomeVisible = 0;
  unsigned int m_nLists = 0;
  std::vector<unsigned int> m_arrDisplayLists;
  std::vector<QXMatrix4d> m_arrMatrixStack;
  std::vector<ScreenState> m_arrScreenStack;
};

}  // namespace QXC
