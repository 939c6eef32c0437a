#include <apps/qx3d/QXInstanceSet.h>

#include <apps/qx3d/QXInstanceModels.h>
#include <apps/qx3d/QXMessage.h>

#include <QxGraphics3D/frame/QXGraphics3D.h>
#include <QxGraphics3D/model/QXHwInstancingManager.h>
#include <QxGraphics3D/model/QXInstancing.h>
#include <QxGraphics3D/renderop/QXRenderOperation3D.h>
#include <QxGraphics3D/renderop/QXRenderOperationManager.h>
#include <QxGraphics3D/renderop/QXRenderOperationMultiIndex.h>

#include <algorithm>

namespace QXApp {

namespace {

QXC::QXColorValue3D MakeColor(unsigned char const (&nColor)[3]) {
  return QXC::QXColorValue3D(nColor[0] / 255.0, nColor[1] / 255.0, nColor[2] / 255.0, 1.0);
}

std::string Describe(QXC::QXGraphics3D const& graphics3D, std::string const& strWhat) {
  std::string const strReason = Narrow(graphics3D.GetErrorText());
  return "the renderer " + strWhat + (strReason.empty() ? "" : ": " + strReason);
}

}  // namespace

std::string QXInstanceSet::Add(QXC::QXGraphics3D& graphics3D, std::wstring const& strScene,
    QXC::QXRenderOperationMultiIndex& mesh, QXInstanceGroup const& group, QXSceneInstances const& section,
    unsigned int nFirstID) {
  ++m_nMeshes;
  QXC::QXHwInstancingManager* pManager = graphics3D.GetHwInstancingManager();
  if (pManager == nullptr) return AddDrawables(graphics3D, strScene, mesh, group, section, nFirstID);
  QXC::QdcUnicodeString strName;
  strName.Format(L"Instances%d", static_cast<int>(m_vecInstancings.size()));
  QXC::QXInstancing* pInstancing = pManager->CreateInstancing(strName, strScene.c_str());
  if (pInstancing == nullptr) return Describe(graphics3D, "makes no instances");
  m_vecInstancings.push_back(pInstancing);
  if (pManager->SetMesh(pInstancing, &mesh) == 0) return Describe(graphics3D, "cannot draw the mesh of instances");
  auto const nCount = static_cast<unsigned int>(group.m_vecMatrices.size());
  pManager->AddPlacements(pInstancing, group.m_vecMatrices.data(), nCount);
  if (std::any_of(section.m_nColor, section.m_nColor + 3, [](unsigned char n) { return n != 255; }))
    for (unsigned int i = 0; i < nCount; ++i) pManager->SetPlacementColor(pInstancing, i, MakeColor(section.m_nColor));
  if (section.m_dDistance > 0.0) pManager->SetVisibleDistance(pInstancing, 0.0, section.m_dDistance);
  for (unsigned int i = 0; i < nCount && nFirstID != 0; ++i)
    pManager->SetPlacementSelectionID(pInstancing, i, nFirstID + i);
  return std::string();
}

std::string QXInstanceSet::AddDrawables(QXC::QXGraphics3D& graphics3D, std::wstring const& strScene,
    QXC::QXRenderOperationMultiIndex& mesh, QXInstanceGroup const& group, QXSceneInstances const& section,
    unsigned int nFirstID) {
  if (group.m_vecMatrices.size() > ms_nMaxDrawables - std::min(ms_nMaxDrawables, m_vecDrawables.size()))
    return "the renderer has no instancing, and these would be more than " + std::to_string(ms_nMaxDrawables) +
           " drawables; choose another renderer, or leave some out";
  unsigned int nID = nFirstID;
  for (QXC::QXMatrix4d const& mat : group.m_vecMatrices) {
    QXC::QXRenderOperation3D* pDrawable =
        graphics3D.GetRenderOperationManager()->CreateRenderOperation3D(strScene.c_str(), 1);
    if (pDrawable == nullptr) return Describe(graphics3D, "makes no drawable");
    m_vecDrawables.push_back(pDrawable);
    pDrawable->SetBoundingBox(mesh.GetBoundingBox());
    pDrawable->SetRenderOperationMultiIndex(&mesh);
    pDrawable->SetModelMatrix(*mesh.GetMatrix() * mat);
    pDrawable->SetColor(MakeColor(section.m_nColor));
    if (nFirstID != 0) pDrawable->SetSelectionID(nID++);
    if (section.m_dDistance > 0.0) pDrawable->SetVisibleDistance(0.0, section.m_dDistance);
  }
  return std::string();
}

void QXInstanceSet::GiveBack(QXC::QXGraphics3D& graphics3D) {
  if (QXC::QXHwInstancingManager* pManager = graphics3D.GetHwInstancingManager())
    for (QXC::QXInstancing* pInstancing : m_vecInstancings) pManager->DestroyInstancing(pInstancing);
  if (QXC::QXRenderOperationManager* pManager = graphics3D.GetRenderOperationManager())
    for (QXC::QXRenderOperation3D* pDrawable : m_vecDrawables) pManager->DestroyRenderOperation3D(pDrawable);
  m_vecInstancings.clear();
  m_vecDrawables.clear();
}

std::size_t QXInstanceSet::CountDrawn(QXC::QXGraphics3D& graphics3D) const {
  std::size_t nDrawn = 0;
  if (QXC::QXHwInstancingManager const* pManager = graphics3D.GetHwInstancingManager())
    for (QXC::QXInstancing* pInstancing : m_vecInstancings) nDrawn += pManager->GetDrawnPlacementCount(pInstancing);
  return nDrawn;
}

}  // namespace QXApp
