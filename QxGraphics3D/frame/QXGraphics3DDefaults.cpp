// What QXGraphics3D gives for operations that a plug-in may leave as they are: nothing happens, and the result is the
// one that tells a caller so. In slot order.
#include <QxGraphics3D/frame/QXGraphics3D.h>

namespace QXC {

_Graphics3DType QXGraphics3D::GetType() const {
  return static_cast<_Graphics3DType>(0);
}

void QXGraphics3D::RemoveManualRenderObject(QdcUnicodeString const&, QdcUnicodeString const&) {}

QdcUnicodeString QXGraphics3D::UpdateManualRenderObject(QXRenderOperation3D*, QdcUnicodeString const&) {
  return QdcUnicodeString();
}

void QXGraphics3D::SetManualRenderObjectVisible(QdcUnicodeString const&, unsigned char) {}

void QXGraphics3D::SetLightPos(QdcUnicodeString const&, QXVector3d const&) {}

void QXGraphics3D::UpdateLightPos() {}

void QXGraphics3D::SetMaterialEnabled(unsigned char) {}

void QXGraphics3D::SetColourBufferLock(unsigned char) {}

void QXGraphics3D::MakeOrthoMatrix(double, double, double, double, double, double, QXMatrix4d&) {}

void QXGraphics3D::MakePickRadial(double, double, double, double) {}

void QXGraphics3D::UnMakePickRadial() {}

void QXGraphics3D::SetClipPlane(unsigned short, QXPlane const&) {}

void QXGraphics3D::DisableTextureUnit(unsigned int) {}

void QXGraphics3D::SetTextureUnitFiltering(unsigned int, int, int, int) {}

void QXGraphics3D::SetOpacity(double) {}

void QXGraphics3D::EnableBlendAlpha(unsigned char) {}

void QXGraphics3D::EnableBlendAlphaUseDepth(unsigned char) {}

void QXGraphics3D::DeleteList(unsigned int) {}

void QXGraphics3D::CallList(unsigned int) {}

void QXGraphics3D::SetRelativeOrigin(QXVector3d const&) {}

void QXGraphics3D::ConvertColourValue(QXColorValue3D const&, unsigned int*) {}

void QXGraphics3D::TextOut2DText(QdcUnicodeString const&, double, double, unsigned int) {}

void QXGraphics3D::SetStippleLine(unsigned char, int, unsigned short) {}

void QXGraphics3D::TextOut3DText(QdcUnicodeString const&, double, double, double, unsigned int) {}

void QXGraphics3D::SetRenderFont(QdcUnicodeString const&, double) {}

void QXGraphics3D::RenderSpritePoint(double*, int, unsigned char, float*, int) {}

void QXGraphics3D::RenderSpritePoint(double, double, double, unsigned char, float*) {}

void QXGraphics3D::RenderSimplePoint(double*, int, unsigned char, int) {}

void QXGraphics3D::RenderSimplePoint(double, double, double, unsigned char) {}

void QXGraphics3D::SetPointSmoothEnable(unsigned char) {}

void QXGraphics3D::SetPolygonSmoothEnable(unsigned char) {}

void QXGraphics3D::DrawEditModelTool(QXVector3d const&, double, int) {}

void QXGraphics3D::DrawEditOverlayTool(QdcRect2D const&, int) {}

void QXGraphics3D::DrawEditOverlayToolEx(QdcRect2D const&, double, int) {}

void QXGraphics3D::SetNormalizeEnable(unsigned char) {}

void QXGraphics3D::InitTargetEnvi(QXRenderTarget*) {}

void QXGraphics3D::PrintFrame() {}

void QXGraphics3D::SetDepthBuffer(unsigned char*) {}

unsigned char* QXGraphics3D::GetDepthBuffer() const {
  return nullptr;
}

void QXGraphics3D::UpdateScreenTexSize(unsigned int, unsigned int) {}

void QXGraphics3D::RenderToScreen(QXRenderTarget*) {}

void QXGraphics3D::RenderToTexture(double, double, QXRenderTarget*) {}

QXVector3d QXGraphics3D::GetSelInfo(float, float, int& nLayerID, int& nObjectID, QdcArray<QXGeometry*>&, std::set<int>&,
    unsigned char, std::map<int, QdcRect2D> const*) {
  nLayerID = 0;
  nObjectID = 0;
  return QXVector3d::ZERO;
}

QXVector3d QXGraphics3D::GetSelInfo(float, float, int& nLayerID, int& nObjectID, unsigned char) {
  nLayerID = 0;
  nObjectID = 0;
  return QXVector3d::ZERO;
}

unsigned char QXGraphics3D::IsRenderSystemSupported(QdcUnicodeString const&) const {
  return 0;
}

unsigned char QXGraphics3D::IsActiveStereoSupported() const {
  return 0;
}

void QXGraphics3D::RenderTexts() {}

void QXGraphics3D::RenderDisplayList(unsigned int) {}

unsigned int QXGraphics3D::ToDisplayList(QXRenderOperation const&) {
  return 0;
}

unsigned char QXGraphics3D::DeleteDisplayList(unsigned int) {
  return 0;
}

void QXGraphics3D::PushMatrix() {}

void QXGraphics3D::PopMatrix() {}

void QXGraphics3D::MultiMatrix(QXMatrix4d const&) {}

unsigned char QXGraphics3D::CreateSceneNode(QdcUnicodeString const&, QdcUnicodeString const&, QdcUnicodeString const&) {
  return 1;
}

QdcUnicodeString QXGraphics3D::CreateSceneNode() {
  return QdcUnicodeString();
}

unsigned char QXGraphics3D::DestroySceneNode(QdcUnicodeString const&, QdcUnicodeString const&) {
  return 1;
}

void QXGraphics3D::DestroySceneNode(QdcUnicodeString) {}

QdcUnicodeString QXGraphics3D::GetSceneName(int) const {
  return QdcUnicodeString();
}

QdcUnicodeString QXGraphics3D::GetGlobalTextureName(int) const {
  return QdcUnicodeString();
}

QXRenderOperationOverlay* QXGraphics3D::CreateOverlay(QdcUnicodeString const&) {
  return nullptr;
}

void QXGraphics3D::RenderImage(QdcUnicodeString const&, QdcRect2D const&) {}

void QXGraphics3D::SetOverlayVisible(QdcUnicodeString const&, unsigned char) {}

QXVector3d QXGraphics3D::ScreenToCartesian(int, int) const {
  return QXVector3d(0.0, 0.0, 0.0);
}

QXVector3d QXGraphics3D::GetPixelPosition(QXRenderTarget*, int, int) const {
  return QXVector3d(0.0, 0.0, 0.0);
}

QXColorValue3D QXGraphics3D::ScreenToColor(int, int) const {
  return QXColorValue3D(1.0, 1.0, 1.0, 1.0);
}

void QXGraphics3D::RemappingTexture(QdcUnicodeString const&, QdcUnicodeString const&) {}

void QXGraphics3D::SetHMDMode(HMDMode) {}

void QXGraphics3D::ProcessHTCVREvent() {}

QXCamera* QXGraphics3D::GetCamera4QX() const {
  return nullptr;
}

void QXGraphics3D::SetOgreOriCameraView(QXMatrix4d const&) {}

void QXGraphics3D::SetHTCMoveSpeed(double) {}

void QXGraphics3D::SetUnderGlobalDepth(double) {}

void QXGraphics3D::SetCompositorEnable(QdcUnicodeString const&, unsigned char) {}

unsigned char QXGraphics3D::IsCompositorEnable(QdcUnicodeString const&) const {
  return 0;
}

void QXGraphics3D::SetBloomSetting(QXBloomSetting const&) {}

void QXGraphics3D::ReleaseVR() {}

QXMatrix4d QXGraphics3D::GetGameViewProjMatrix() const {
  return QXMatrix4d::IDENTITY;
}

void QXGraphics3D::SetSkyDome(QdcUnicodeString const&, QdcUnicodeString const&, unsigned char) {}

unsigned char QXGraphics3D::IsSkyDomeVisible() const {
  return 0;
}

void QXGraphics3D::SetSceneNodeVisible(QdcUnicodeString const&, QdcUnicodeString const&, unsigned char, unsigned char) {
}

void QXGraphics3D::SetSceneNodeVisible(QdcUnicodeString const&, unsigned char) {}

void QXGraphics3D::AddPass(QdcUnicodeString const&, QXPass const&) {}

void QXGraphics3D::RemovePass(QdcUnicodeString const&, QdcUnicodeString const&) {}

void QXGraphics3D::RemoveAllPasses(QdcUnicodeString const&) {}

void QXGraphics3D::SetSceneNodeVisibleDistance(QdcUnicodeString const&, double, double) {}

void QXGraphics3D::SetSceneNodeFiltratePixSize(QdcUnicodeString const&, double) {}

unsigned char QXGraphics3D::HasRenderableObjects(QdcUnicodeString const&) const {
  return 0;
}

void QXGraphics3D::SetSceneType(SceneType) {}

QXUniformBuffer* QXGraphics3D::CreateUniformBuffer(QdcUnicodeString const&) {
  return nullptr;
}

QXUniformBuffer* QXGraphics3D::GetUniformBuffer(QdcUnicodeString const&) const {
  return nullptr;
}

void QXGraphics3D::DestroyUniformBuffer(QdcUnicodeString const&) {}

unsigned char QXGraphics3D::setDrawBuffer(int) {
  return 0;
}

unsigned char QXGraphics3D::setReadBuffer(int) {
  return 0;
}

}  // namespace QXC
