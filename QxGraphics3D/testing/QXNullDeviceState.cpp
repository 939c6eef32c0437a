// State that only a picture would show: written down, and nothing else. In slot order.
#include <QxGraphics3D/frame/QXViewport.h>
#include <QxGraphics3D/testing/QXNullDevice.h>

namespace QXC {

void QXNullDevice::SetAmbientLight(QXColorValue3D const& color) {
  Record("SetAmbientLight", color);
}
void QXNullDevice::SetShadingMode(int nMode) {
  Record("SetShadingMode", nMode);
}
void QXNullDevice::SetLightingEnable(unsigned char bEnable) {
  Record("SetLightingEnable", bEnable);
}
void QXNullDevice::UpdateLightPos() {
  Record("UpdateLightPos");
}
void QXNullDevice::SetMaterialEnabled(unsigned char bEnable) {
  Record("SetMaterialEnabled", bEnable);
}
void QXNullDevice::SetMaterialColor(QXColorValue3D const& ambient, QXColorValue3D const& diffuse,
    QXColorValue3D const& specular, QXColorValue3D const& emissive, double dShininess) {
  Record("SetMaterialColor", ambient, diffuse, specular, emissive, dShininess);
}
void QXNullDevice::SetDepthCheckEnable(unsigned char bEnable) {
  Record("SetDepthCheckEnable", bEnable);
}
void QXNullDevice::SetDepthWriteEnable(unsigned char bEnable) {
  Record("SetDepthWriteEnable", bEnable);
}
void QXNullDevice::SetDepthFunction(int nFunction) {
  Record("SetDepthFunction", nFunction);
}
void QXNullDevice::SetDepthBias(double dConstant, double dSlope) {
  Record("SetDepthBias", dConstant, dSlope);
}
void QXNullDevice::SetColourBufferLock(unsigned char bLock) {
  Record("SetColourBufferLock", bLock);
}
void QXNullDevice::SetColourBufferWriteEnable(
    unsigned char bRed, unsigned char bGreen, unsigned char bBlue, unsigned char bAlpha) {
  Record("SetColourBufferWriteEnable", bRed, bGreen, bBlue, bAlpha);
}
void QXNullDevice::SetSceneBlending(int nSourceFactor, int nDestFactor) {
  Record("SetSceneBlending", nSourceFactor, nDestFactor);
}
void QXNullDevice::SetAlphaRejectSettings(int nFunction, unsigned char nValue) {
  Record("SetAlphaRejectSettings", nFunction, nValue);
}
void QXNullDevice::MakePickRadial(double dX, double dY, double dWidth, double dHeight) {
  Record("MakePickRadial", dX, dY, dWidth, dHeight);
}
void QXNullDevice::UnMakePickRadial() {
  Record("UnMakePickRadial");
}
void QXNullDevice::SetClipPlane(unsigned short nIndex, QXPlane const& plane) {
  Record("SetClipPlane", nIndex, plane);
}
void QXNullDevice::SetClipPlaneEnable(unsigned short nIndex, unsigned char bEnable) {
  Record("SetClipPlaneEnable", nIndex, bEnable);
}
void QXNullDevice::DisableTextureUnit(unsigned int nUnit) {
  Record("DisableTextureUnit", nUnit);
}
void QXNullDevice::SetTexture(unsigned int nUnit, unsigned char bEnable, QXTexture* pTexture) {
  Record("SetTexture", nUnit, bEnable, QXLoggedMemory{pTexture});
}
void QXNullDevice::SetTextureUnitFiltering(unsigned int nUnit, int nFilter0, int nFilter1, int nFilter2) {
  Record("SetTextureUnitFiltering", nUnit, nFilter0, nFilter1, nFilter2);
}
void QXNullDevice::SetTextureMatrix(unsigned int nUnit, QXMatrix4d const& matTexture) {
  Record("SetTextureMatrix", nUnit, matTexture);
}
void QXNullDevice::SetTextureCoordSet(unsigned int nUnit, unsigned int nSet) {
  Record("SetTextureCoordSet", nUnit, nSet);
}
void QXNullDevice::SetTextureCoordCalculation(unsigned int nUnit, int nMode) {
  Record("SetTextureCoordCalculation", nUnit, nMode);
}
void QXNullDevice::SetTextureAddressingMode(unsigned int nUnit, int nModeU, int nModeV, int nModeW) {
  Record("SetTextureAddressingMode", nUnit, nModeU, nModeV, nModeW);
}
void QXNullDevice::SetTextureBorderColor(unsigned int nUnit, QXColorValue3D const& color) {
  Record("SetTextureBorderColor", nUnit, color);
}
void QXNullDevice::SetTextureAnisotropy(unsigned int nUnit, unsigned int nMaxAnisotropy) {
  Record("SetTextureAnisotropy", nUnit, nMaxAnisotropy);
}
void QXNullDevice::SetTextureMipmapBias(unsigned int nUnit, double dBias) {
  Record("SetTextureMipmapBias", nUnit, dBias);
}
void QXNullDevice::SetTextureBlendMode(unsigned int nUnit, int nColorMode, int nAlphaMode) {
  Record("SetTextureBlendMode", nUnit, nColorMode, nAlphaMode);
}
void QXNullDevice::SetPolygonMode(int nMode) {
  Record("SetPolygonMode", nMode);
}
void QXNullDevice::SetPointAttenuation(
    double dConstant, double dLinear, double dQuadratic, double dMinSize, double dMaxSize) {
  Record("SetPointAttenuation", dConstant, dLinear, dQuadratic, dMinSize, dMaxSize);
}
void QXNullDevice::SetOpacity(double dOpacity) {
  Record("SetOpacity", dOpacity);
}
void QXNullDevice::EnableBlendAlpha(unsigned char bEnable) {
  Record("EnableBlendAlpha", bEnable);
}
void QXNullDevice::EnableBlendAlphaUseDepth(unsigned char bEnable) {
  Record("EnableBlendAlphaUseDepth", bEnable);
}
void QXNullDevice::CallList(unsigned int nList) {
  Record("CallList", nList);
}
void QXNullDevice::EndList() {
  Record("EndList");
}
void QXNullDevice::SetStencilCheckEnable(unsigned char bEnable) {
  Record("SetStencilCheckEnable", bEnable);
}
void QXNullDevice::SetStencilParameters(
    int nFunction, unsigned int nReference, unsigned int nMask, int nOnStencilFail, int nOnDepthFail, int nOnPass) {
  Record("SetStencilParameters", nFunction, nReference, nMask, nOnStencilFail, nOnDepthFail, nOnPass);
}
void QXNullDevice::TextOut2DText(QdcUnicodeString const& strText, double dX, double dY, unsigned int nColor) {
  Record("TextOut2DText", strText, dX, dY, nColor);
}
void QXNullDevice::SetStippleLine(unsigned char bEnable, int nFactor, unsigned short nPattern) {
  Record("SetStippleLine", bEnable, nFactor, nPattern);
}
void QXNullDevice::TextOut3DText(
    QdcUnicodeString const& strText, double dX, double dY, double dZ, unsigned int nColor) {
  Record("TextOut3DText", strText, dX, dY, dZ, nColor);
}
void QXNullDevice::SetRenderFont(QdcUnicodeString const& strFaceName, double dSize) {
  Record("SetRenderFont", strFaceName, dSize);
}
void QXNullDevice::RenderSpritePoint(double* pPoints, int nCount, unsigned char bFixedSize, float* pColor, int nSize) {
  Record("RenderSpritePoint", QXLoggedMemory{pPoints}, nCount, bFixedSize, QXLoggedMemory{pColor}, nSize);
}
void QXNullDevice::RenderSpritePoint(double dX, double dY, double dZ, unsigned char bFixedSize, float* pColor) {
  Record("RenderSpritePoint", dX, dY, dZ, bFixedSize, QXLoggedMemory{pColor});
}
void QXNullDevice::RenderSimplePoint(double* pPoints, int nCount, unsigned char bFixedSize, int nSize) {
  Record("RenderSimplePoint", QXLoggedMemory{pPoints}, nCount, bFixedSize, nSize);
}
void QXNullDevice::RenderSimplePoint(double dX, double dY, double dZ, unsigned char bFixedSize) {
  Record("RenderSimplePoint", dX, dY, dZ, bFixedSize);
}
void QXNullDevice::RenderSimpleLine(double const* pPoints, int nCount, unsigned char bClosed, float const* pColor) {
  Record("RenderSimpleLine", QXLoggedMemory{pPoints}, nCount, bClosed, QXLoggedMemory{pColor});
}
void QXNullDevice::RenderSimplePolygon(double const* pPoints, int nCount, float const* pColor) {
  Record("RenderSimplePolygon", QXLoggedMemory{pPoints}, nCount, QXLoggedMemory{pColor});
}
void QXNullDevice::SetPointSize(double dSize) {
  Record("SetPointSize", dSize);
}
void QXNullDevice::SetLineWidth(double dWidth) {
  Record("SetLineWidth", dWidth);
}
void QXNullDevice::SetPointSmoothEnable(unsigned char bEnable) {
  Record("SetPointSmoothEnable", bEnable);
}
void QXNullDevice::SetPolygonSmoothEnable(unsigned char bEnable) {
  Record("SetPolygonSmoothEnable", bEnable);
}
void QXNullDevice::SetLineSmoothEnable(unsigned char bEnable) {
  Record("SetLineSmoothEnable", bEnable);
}
void QXNullDevice::SetMultiSampleEnable(unsigned char bEnable) {
  Record("SetMultiSampleEnable", bEnable);
}
void QXNullDevice::DrawEditModelTool(QXVector3d const& vecCenter, double dRadius, int nMode) {
  Record("DrawEditModelTool", vecCenter, dRadius, nMode);
}
void QXNullDevice::DrawEditOverlayTool(QdcRect2D const& rcWindow, int nMode) {
  Record("DrawEditOverlayTool", rcWindow, nMode);
}
void QXNullDevice::DrawEditOverlayToolEx(QdcRect2D const& rcWindow, double dAngle, int nMode) {
  Record("DrawEditOverlayToolEx", rcWindow, dAngle, nMode);
}
void QXNullDevice::ClearFrameBuffer(
    unsigned int nBuffers, QXColorValue3D const& color, double dDepth, unsigned int nStencil) {
  Record("ClearFrameBuffer", nBuffers, color, dDepth, nStencil);
}
void QXNullDevice::SetScissorTest(unsigned char bEnable, int nLeft, int nBottom, int nWidth, int nHeight) {
  Record("SetScissorTest", bEnable, nLeft, nBottom, nWidth, nHeight);
}
void QXNullDevice::SetCurrentColor(QXColorValue3D const& color) {
  Record("SetCurrentColor", color);
}
void QXNullDevice::UnbindGpuProgram() {
  Record("UnbindGpuProgram");
}
void QXNullDevice::Flush(unsigned char bWait) {
  Record("Flush", bWait);
}
void QXNullDevice::SetNormalizeEnable(unsigned char bEnable) {
  Record("SetNormalizeEnable", bEnable);
}
void QXNullDevice::InitTargetEnvi(QXRenderTarget* pTarget) {
  Record("InitTargetEnvi", pTarget);
}
void QXNullDevice::PrintFrame() {
  Record("PrintFrame");
}
void QXNullDevice::SetDepthBuffer(unsigned char* pDepthBuffer) {
  Record("SetDepthBuffer", QXLoggedMemory{pDepthBuffer});
}
void QXNullDevice::UpdateScreenTexSize(unsigned int nWidth, unsigned int nHeight) {
  Record("UpdateScreenTexSize", nWidth, nHeight);
}
void QXNullDevice::RenderToScreen(QXRenderTarget* pTarget) {
  Record("RenderToScreen", pTarget);
}
void QXNullDevice::RenderToTexture(double dHalfWidth, double dHalfHeight, QXRenderTarget* pTarget) {
  Record("RenderToTexture", dHalfWidth, dHalfHeight, pTarget);
}
void QXNullDevice::EndSelection() {
  Record("EndSelection");
}
void QXNullDevice::SetSelectionEnable(QdcUnicodeString const& strSceneName, unsigned char bEnable) {
  Record("SetSelectionEnable", strSceneName, bEnable);
}
void QXNullDevice::SetSelectionTolerance(double dPixels) {
  Record("SetSelectionTolerance", dPixels);
}
void QXNullDevice::SetSelectionMode(int nMode) {
  Record("SetSelectionMode", nMode);
}
void QXNullDevice::SetSelectionColor(QXColorValue3D const& color) {
  Record("SetSelectionColor", color);
}
void QXNullDevice::RenderTexts() {
  Record("RenderTexts");
}
void QXNullDevice::RenderDisplayList(unsigned int nList) {
  Record("RenderDisplayList", nList);
}
void QXNullDevice::RenderImage(QdcUnicodeString const& strPath, QdcRect2D const& rcWindow) {
  Record("RenderImage", strPath, rcWindow);
}
void QXNullDevice::SetOverlayPosition(QdcUnicodeString const& strName, double dLeft, double dBottom) {
  Record("SetOverlayPosition", strName, dLeft, dBottom);
}
void QXNullDevice::RemappingTexture(QdcUnicodeString const& strSource, QdcUnicodeString const& strDest) {
  Record("RemappingTexture", strSource, strDest);
}
void QXNullDevice::UpdateHMDPose() {
  Record("UpdateHMDPose");
}
void QXNullDevice::SubmitHMDFrame(QXRenderTarget* pLeft, QXRenderTarget* pRight) {
  Record("SubmitHMDFrame", pLeft, pRight);
}
void QXNullDevice::ProcessHTCVREvent() {
  Record("ProcessHTCVREvent");
}
void QXNullDevice::SetOgreOriCameraView(QXMatrix4d const& matView) {
  Record("SetOgreOriCameraView", matView);
}
void QXNullDevice::SetHTCMoveSpeed(double dSpeed) {
  Record("SetHTCMoveSpeed", dSpeed);
}
void QXNullDevice::SetUnderGlobalDepth(double dDepth) {
  Record("SetUnderGlobalDepth", dDepth);
}
void QXNullDevice::RemoveCompositor(QXRenderTarget* pTarget, QdcUnicodeString const& strName) {
  Record("RemoveCompositor", pTarget, strName);
}
void QXNullDevice::SetCompositorEnable(QdcUnicodeString const& strName, unsigned char bEnable) {
  Record("SetCompositorEnable", strName, bEnable);
}
void QXNullDevice::SetBloomSetting(QXBloomSetting const& /*setting*/) {
  Record("SetBloomSetting");
}
void QXNullDevice::SetHDREnable(unsigned char bEnable) {
  Record("SetHDREnable", bEnable);
}
void QXNullDevice::SetExposure(double dExposure) {
  Record("SetExposure", dExposure);
}
void QXNullDevice::SetAmbientOcclusion(unsigned char bEnable, double dRadius) {
  Record("SetAmbientOcclusion", bEnable, dRadius);
}
void QXNullDevice::SetDepthOfField(unsigned char bEnable, double dFocus, double dRange) {
  Record("SetDepthOfField", bEnable, dFocus, dRange);
}
void QXNullDevice::SetColorCorrection(double dBrightness, double dContrast, double dSaturation) {
  Record("SetColorCorrection", dBrightness, dContrast, dSaturation);
}
void QXNullDevice::ReleaseVR() {
  Record("ReleaseVR");
}
void QXNullDevice::AddPass(QdcUnicodeString const& strNodeName, QXPass const& /*pass*/) {
  Record("AddPass", strNodeName);
}
void QXNullDevice::RemovePass(QdcUnicodeString const& strNodeName, QdcUnicodeString const& strPassName) {
  Record("RemovePass", strNodeName, strPassName);
}
void QXNullDevice::RemoveAllPasses(QdcUnicodeString const& strNodeName) {
  Record("RemoveAllPasses", strNodeName);
}
void QXNullDevice::SetSceneNodeFiltratePixSize(QdcUnicodeString const& strNodeName, double dPixels) {
  Record("SetSceneNodeFiltratePixSize", strNodeName, dPixels);
}
void QXNullDevice::SetSceneType(SceneType eType) {
  Record("SetSceneType", eType);
}

}  // namespace QXC
