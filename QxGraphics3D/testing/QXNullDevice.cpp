#include <QxGraphics3D/testing/QXNullDevice.h>

#include <algorithm>
#include <filesystem>
#include <system_error>

#include <QxGraphics3D/frame/QXViewport.h>
#include <QxGraphics3D/frame/foundation/base/QdcColor.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMathEngine.h>
#include <QxGraphics3D/renderop/QXRenderOperation.h>
#include <QxGraphics3D/testing/QXNullRenderTarget.h>

namespace QXC {

QXNullDevice::QXNullDevice(std::shared_ptr<QXCallLog> pLog) : QXNullObject(std::move(pLog), "graphics") {}

QXNullDevice::~QXNullDevice() = default;

unsigned char QXNullDevice::Fail(QdcUnicodeString const& strReason) {
  m_strError = strReason;
  return 0;
}

// --- Matrices ---

void QXNullDevice::SetViewMatrix(QXMatrix4d const& matView) {
  RecordAndKeep("SetViewMatrix", matView, m_matView);
}

void QXNullDevice::SetProjectionMatrix(QXMatrix4d const& matProjection) {
  RecordAndKeep("SetProjectionMatrix", matProjection, m_matProjection);
}

void QXNullDevice::SetWorldMatrix(QXMatrix4d const& matWorld) {
  RecordAndKeep("SetWorldMatrix", matWorld, m_matWorld);
}

void QXNullDevice::PushMatrix() {
  Record("PushMatrix");
  m_arrMatrixStack.push_back(m_matWorld);
}

void QXNullDevice::PopMatrix() {
  Record("PopMatrix");
  if (!m_arrMatrixStack.empty()) {
    m_matWorld = m_arrMatrixStack.back();
    m_arrMatrixStack.pop_back();
  }
}

void QXNullDevice::MultiMatrix(QXMatrix4d const& matrix) {
  Record("MultiMatrix", matrix);
  // What is multiplied last acts first, as callers of a matrix stack expect.
  m_matWorld = matrix * m_matWorld;
}

void QXNullDevice::MakeProjectionMatrix(double dFovY, double dAspect, double dNear, double dFar, QXMatrix4d& matOut) {
  matOut = QXMathEngine::ComputePerspectiveMatrix(dFovY, dAspect, dNear, dFar);
}

void QXNullDevice::MakeFrustumMatrix(
    double dLeft, double dRight, double dBottom, double dTop, double dNear, double dFar, QXMatrix4d& matOut) {
  matOut = QXMathEngine::ComputeFrustumMatrix(dLeft, dRight, dBottom, dTop, dNear, dFar);
}

void QXNullDevice::MakeOrthoMatrix(
    double dLeft, double dRight, double dBottom, double dTop, double dNear, double dFar, QXMatrix4d& matOut) {
  matOut = QXMathEngine::ComputeOrthoMatrix(dLeft, dRight, dBottom, dTop, dNear, dFar);
}

void QXNullDevice::ConvertProjectionMatrix(QXMatrix4d const& matIn, QXMatrix4d& matOut) const {
  matOut = matIn;
}

void QXNullDevice::ApplyObliqueDepthProjection(QXMatrix4d& matProjection, QXPlane const& plane) const {
  QXMathEngine::ApplyObliqueDepth(matProjection, plane);
}

void QXNullDevice::BeginScreenProjection() {
  Record("BeginScreenProjection");
  m_arrScreenStack.push_back({m_matWorld, m_matView, m_matProjection});
  double const dWidth = m_pViewport == nullptr ? 1.0 : m_pViewport->GetActualWidth();
  double const dHeight = m_pViewport == nullptr ? 1.0 : m_pViewport->GetActualHeight();
  m_matWorld = QXMatrix4d::IDENTITY;
  m_matView = QXMatrix4d::IDENTITY;
  m_matProjection = QXMathEngine::ComputeOrthoMatrix(0.0, dWidth, 0.0, dHeight, -1.0, 1.0);
}

void QXNullDevice::EndScreenProjection() {
  Record("EndScreenProjection");
  if (m_arrScreenStack.empty()) {
    return;
  }
  m_matWorld = m_arrScreenStack.back().m_matWorld;
  m_matView = m_arrScreenStack.back().m_matView;
  m_matProjection = m_arrScreenStack.back().m_matProjection;
  m_arrScreenStack.pop_back();
}

unsigned char QXNullDevice::GetScreenPosition(QXVector3d const& vecWorld, QXVector3d& vecWindow) const {
  QXMatrix4d const mat = m_matView * m_matProjection;
  double const dW = vecWorld.x * mat[0][3] + vecWorld.y * mat[1][3] + vecWorld.z * mat[2][3] + mat[3][3];
  if (m_pViewport == nullptr || !(dW > 0.0)) {
    return 0;
  }
  Project(vecWorld, vecWindow);
  return 1;
}

void QXNullDevice::SetRelativeOrigin(QXVector3d const& vecOrigin) {
  RecordAndKeep("SetRelativeOrigin", vecOrigin, m_vecRelativeOrigin);
}

// --- The frame ---

void QXNullDevice::SetViewport(QXViewport* pViewport) {
  Record("SetViewport", pViewport);
  m_pViewport = pViewport;
  m_pNullTarget = pViewport == nullptr ? nullptr : dynamic_cast<QXNullRenderTarget*>(pViewport->GetTarget());
}

void QXNullDevice::BeginFrame() {
  Record("BeginFrame");
  constexpr unsigned int nColourBuffer = 1;
  if (m_pNullTarget == nullptr || !m_pViewport->m_bClearEveryFrame || !(m_pViewport->m_nClearBuffers & nColourBuffer)) {
    return;
  }
  m_pNullTarget->Clear(m_pViewport->m_nActLeft, m_pViewport->m_nActBottom, m_pViewport->m_nActWidth,
      m_pViewport->m_nActHeight, m_pViewport->m_BackgroundColor);
}

void QXNullDevice::EndFrame() {
  Record("EndFrame");
  // The viewport stays current for projections; its target may go before the next frame.
  m_pNullTarget = nullptr;
}

void QXNullDevice::BeginGeometryCount() {
  Record("BeginGeometryCount");
  m_nDrawOperationCount = 0;
  QXGraphics3D::BeginGeometryCount();
}

void QXNullDevice::CountDraw(unsigned int nOperations, unsigned int nTriangles, unsigned int nVertices) {
  m_nDrawOperationCount += nOperations;
  m_nFaceCount += nTriangles;
  m_nVertexCount += nVertices;
  if (m_pNullTarget != nullptr) {
    m_pNullTarget->CountDraw(nOperations, nTriangles);
  }
}

void QXNullDevice::Render(QXRenderOperation const& operation) {
  Record("Render", operation.m_nVertexNum, operation.m_nIndexNum);
  CountDraw(1, operation.m_nIndexNum / 3, operation.m_nVertexNum);
}

unsigned int QXNullDevice::BeginList() {
  Record("BeginList");
  return ++m_nLists;
}

void QXNullDevice::DeleteList(unsigned int nList) {
  Record("DeleteList", nList);
}

unsigned int QXNullDevice::ToDisplayList(QXRenderOperation const& operation) {
  Record("ToDisplayList", operation.m_nVertexNum, operation.m_nIndexNum);
  m_arrDisplayLists.push_back(++m_nLists);
  return m_nLists;
}

unsigned char QXNullDevice::DeleteDisplayList(unsigned int nList) {
  Record("DeleteDisplayList", nList);
  return static_cast<unsigned char>(std::erase(m_arrDisplayLists, nList) != 0);
}

double QXNullDevice::ReadDepth(QXRenderTarget* /*pTarget*/, int /*nX*/, int /*nY*/) const {
  return 1.0;
}

// --- State that can be asked for ---

void QXNullDevice::SetCullingMode(CullingMode eMode) {
  RecordAndKeep("SetCullingMode", eMode, m_eCullingMode);
}

void QXNullDevice::SetInvertVertexWinding(unsigned char bInvert) {
  Record("SetInvertVertexWinding", bInvert);
  QXGraphics3D::SetInvertVertexWinding(bInvert);
}

void QXNullDevice::SetStereoMode(int nMode) {
  RecordAndKeep("SetStereoMode", nMode, m_nStereoMode);
}

void QXNullDevice::SetHMDMode(HMDMode eMode) {
  RecordAndKeep("SetHMDMode", eMode, m_eHMDMode);
}

void QXNullDevice::SetCamera4QX(QXCamera* pCamera) {
  RecordAndKeep("SetCamera4QX", pCamera, m_pCamera4QX);
}

void QXNullDevice::SetSkyDome(
    QdcUnicodeString const& strSceneName, QdcUnicodeString const& strMaterial, unsigned char bVisible) {
  Record("SetSkyDome", strSceneName, strMaterial, bVisible);
  m_bSkyDomeVisible = bVisible;
}

void QXNullDevice::ConvertColourValue(QXColorValue3D const& color, unsigned int* pDest) {
  auto const ToByte = &QXNullRenderTarget::ToByte;
  *pDest = QDCRGBA(ToByte(color.r), ToByte(color.g), ToByte(color.b), ToByte(color.a));
}

unsigned char QXNullDevice::AddResourceFolder(QdcUnicodeString const& strPath) {
  Record("AddResourceFolder", strPath);
  std::error_code error;
  QdcMBString const strBytes = strPath.ToMBString();
  if (!std::filesystem::is_directory(std::filesystem::path(strBytes.Cstr()), error)) {
    return Fail(QdcUnicodeString(L"resource folder '") + strPath + L"' cannot be read");
  }
  return 1;
}

void QXNullDevice::RemoveResourceFolder(QdcUnicodeString const& strPath) {
  Record("RemoveResourceFolder", strPath);
}

void QXNullDevice::GetRenderSystems(QdcArray<QdcUnicodeString>& arrNames) const {
  arrNames.Add(L"null");
}

unsigned char QXNullDevice::SelectRenderSystem(QdcUnicodeString const& strName) {
  Record("SelectRenderSystem", strName);
  return strName == L"null" ? 1 : Fail(QdcUnicodeString(L"there is no render system '") + strName + L"', only 'null'");
}

unsigned char QXNullDevice::IsRenderSystemSupported(QdcUnicodeString const& strName) const {
  return static_cast<unsigned char>(strName == L"null");
}

// --- What is not there ---

unsigned char QXNullDevice::BindGpuProgram(
    QdcUnicodeString const& strVertexProgram, QdcUnicodeString const& strFragmentProgram) {
  Record("BindGpuProgram", strVertexProgram, strFragmentProgram);
  return Fail(L"the null renderer has no shaders");
}

unsigned char QXNullDevice::SetGpuProgramParameter(
    QdcUnicodeString const& strName, float const* pValues, unsigned int nCount) {
  Record("SetGpuProgramParameter", strName, QXLoggedMemory{pValues}, nCount);
  return Fail(L"the null renderer has no shaders");
}

unsigned char QXNullDevice::AddCompositor(QXRenderTarget* pTarget, QdcUnicodeString const& strName) {
  Record("AddCompositor", pTarget, strName);
  return Fail(L"the null renderer has no effects");
}

unsigned char QXNullDevice::SetCompositorParameter(
    QdcUnicodeString const& strName, QdcUnicodeString const& strParameter, double dValue) {
  Record("SetCompositorParameter", strName, strParameter, dValue);
  return Fail(L"the null renderer has no effects");
}

unsigned char QXNullDevice::IsHMDAvailable(HMDMode /*eMode*/) const {
  return 0;
}

unsigned char QXNullDevice::GetHMDRenderSize(unsigned int& nWidth, unsigned int& nHeight) const {
  nWidth = 0;
  nHeight = 0;
  return 0;
}

unsigned char QXNullDevice::InitializeVR() {
  Record("InitializeVR");
  return Fail(L"no head-mounted display is connected");
}

unsigned char QXNullDevice::GetHMDPose(int /*nEye*/, QXMatrix4d& /*matView*/, QXMatrix4d& /*matProjection*/) const {
  return 0;
}

}  // namespace QXC
