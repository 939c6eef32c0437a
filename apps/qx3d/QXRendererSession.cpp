#include <apps/qx3d/QXRendererSession.h>

#include <apps/qx3d/QXBuckets.h>
#include <apps/qx3d/QXInstanceModels.h>
#include <apps/qx3d/QXMessage.h>
#include <apps/qx3d/QXSceneBuilder.h>
#include <apps/qx3d/QXSceneText.h>
#include <apps/qx3d/QXSymbolModels.h>

#include <QxGraphics3D/frame/QXGraphics3D.h>
#include <QxGraphics3D/frame/QXPluginConfigs.h>
#include <QxGraphics3D/frame/QXPluginModule.h>
#include <QxGraphics3D/frame/QXRenderTarget.h>
#include <QxGraphics3D/frame/QXViewport.h>
#include <QxGraphics3D/renderop/QXBatchSelAndVertexColor.h>
#include <QxGraphics3D/renderop/QXRenderOperation3D.h>
#include <QxGraphics3D/renderop/QXRenderOperationManager.h>
#include <QxGraphics3D/renderop/QXRenderOperationMultiIndex.h>
#include <QxGraphics3D/view/QXCamera.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <memory>
#include <utility>

namespace QXApp {

namespace {

using QXC::QdcUnicodeString;

/// Format of the picture: 4 bytes blue, green, red, alpha.
constexpr QXC::QX3DPixelFormat PictureFormat = static_cast<QXC::QX3DPixelFormat>(12);

QdcUnicodeString Widen(std::string const& strText) {
  return QdcUnicodeString::FromUTF8(strText.c_str());
}

/// What a person needs when a renderer is not found: the broken configuration that may have named it.
std::string AppendProblems(std::string strReason, QXC::QXPluginConfigs const& configs) {
  for (QdcUnicodeString const& strProblem : configs.GetProblems()) {
    std::string const strLine = Narrow(strProblem);
    if (strReason.find(strLine) == std::string::npos) strReason += "; " + strLine;
  }
  return strReason;
}

}  // namespace

QXRendererSession::~QXRendererSession() {
  if (m_pGraphics3D == nullptr) return;
  m_Environment.GiveBack(*m_pGraphics3D);
  m_Instances.GiveBack(*m_pGraphics3D);
  m_Labels.GiveBack(*m_pGraphics3D);
  m_Icons.GiveBack(*m_pGraphics3D);
  if (QXC::QXRenderOperationManager* pManager = m_pGraphics3D->GetRenderOperationManager())
    for (QXC::QXRenderOperation3D* pDrawable : m_vecDrawables) pManager->DestroyRenderOperation3D(pDrawable);
  m_Symbols.GiveBack(*m_pGraphics3D);
  m_Textures.GiveBack(*m_pGraphics3D);
  // Targets before cameras: a viewport holds its camera.
  m_pGraphics3D->ShutDown();
  for (View const& view : m_vecViews) m_pGraphics3D->DestroyCamera(view.m_pCamera);
  m_pModule->Destroy(m_pGraphics3D);
}

std::string QXRendererSession::DescribeFailure(char const* szWhat) const {
  std::string strText = std::string("renderer '") + GetRendererName() + "': " + szWhat;
  std::string const strReason = Narrow(m_pGraphics3D->GetErrorText());
  if (!strReason.empty()) strText += ": " + strReason;
  return strText;
}

std::string QXRendererSession::Start(std::string const& strName) {
  QXC::QXPluginConfigs const configs;
  QdcUnicodeString strError;
  m_pModule.reset(QXC::QXPluginModule::Load(configs, QXC::QX_PLUGIN_KIND_RENDERER, Widen(strName), strError));
  if (m_pModule == nullptr) return AppendProblems(Narrow(strError), configs);
  m_pGraphics3D = static_cast<QXC::QXGraphics3D*>(m_pModule->Create(strError));
  if (m_pGraphics3D == nullptr) return Narrow(strError);
  // The empty path: media beside the module.
  if (m_pGraphics3D->Initialize(QdcUnicodeString()) == 0) {
    std::string strText = DescribeFailure("the device cannot be started");
    char const* szDisplay = std::getenv("DISPLAY");
    if ((szDisplay == nullptr || *szDisplay == 0) && strText.find("xvfb-run") == std::string::npos)
      strText += "; there is no display, so start the program through 'xvfb-run -a'";
    return strText;
  }
  return PrepareScene();
}

std::string QXRendererSession::PrepareScene() {
  QdcUnicodeString strScene = m_pGraphics3D->GetSceneName(0);
  if (strScene.IsEmpty()) {
    strScene = L"Scene";
    if (m_pGraphics3D->CreateScene(strScene) == 0) return DescribeFailure("no scene can be made");
  }
  m_strScene = strScene.Cstr();
  if (m_pGraphics3D->GetRenderOperationManager() == nullptr) return DescribeFailure("it makes no drawables");
  return std::string();
}

std::string QXRendererSession::AttachTarget(QXC::QXRenderTarget* pTarget) {
  if (pTarget == nullptr) return DescribeFailure("no picture of this size can be opened");
  m_pTarget = pTarget;
  m_pGraphics3D->AttachRenderTarget(pTarget);
  pTarget->SetActive(1);
  pTarget->SetSceneAntialias(1);
  return std::string();
}

std::string QXRendererSession::OpenTexture(int nWidth, int nHeight) {
  return AttachTarget(m_pGraphics3D->CreateRenderTexture(L"Picture", PictureFormat, static_cast<unsigned int>(nWidth),
      static_cast<unsigned int>(nHeight), 0, 32, m_strScene.c_str()));
}

std::string QXRendererSession::OpenWindow(HWND hWindow, int nWidth, int nHeight) {
  return AttachTarget(m_pGraphics3D->CreateRenderWindow(
      L"Window", hWindow, static_cast<unsigned int>(nWidth), static_cast<unsigned int>(nHeight), 0));
}

std::string QXRendererSession::AddPart(QXScenePart& part, QXC::QXMatrix4d const& matPlace) {
  QXC::QXRenderOperation3D* pDrawable =
      m_pGraphics3D->GetRenderOperationManager()->CreateRenderOperation3D(m_strScene.c_str(), 1);
  if (pDrawable == nullptr) return DescribeFailure("no drawable can be made");
  m_vecDrawables.push_back(pDrawable);
  pDrawable->SetBoundingBox(part.m_pOperation->GetBoundingBox());
  pDrawable->SetRenderOperationMultiIndex(part.m_pOperation.get());
  pDrawable->SetModelMatrix(*part.m_pOperation->GetMatrix() * matPlace);
  part.m_pOperation.reset();  // the drawable has copied it
  return std::string();
}

std::string QXRendererSession::AddGeometry(QXC::QXStaticGeometry const& geometry, QXC::QXMatrix4d const& matPlace) {
  QXC::QXRenderOperationManager& manager = *m_pGraphics3D->GetRenderOperationManager();
  for (QXC::QXStaticGeometryBucket const* pBucket : GetBuckets(geometry)) {
    if (pBucket->m_pVertexPackage->m_nVertexNum == 0) continue;
    QXC::QXRenderOperation3D* pDrawable =
        manager.CreateStaticGeometry3D(m_strScene.c_str(), *pBucket, QXC::QdcArray<double>());
    if (pDrawable == nullptr) return DescribeFailure("no drawable can be made");
    m_vecDrawables.push_back(pDrawable);
    pDrawable->SetModelMatrix(geometry.GetLocalViewMatrix() * matPlace);
    Highlight(*pBucket, *pDrawable);
  }
  return std::string();
}

void QXRendererSession::Highlight(QXC::QXStaticGeometryBucket const& bucket, QXC::QXRenderOperation3D& drawable) {
  auto const nObjects = static_cast<long>(bucket.m_mapSubObjects.size());
  if (m_nHighlight >= 0 && m_nHighlight < nObjects) {
    QXC::QXBatchSelAndVertexColor state;
    state.m_mapSelections[static_cast<unsigned int>(std::next(bucket.m_mapSubObjects.begin(), m_nHighlight)->first)] =
        1;
    drawable.SetBatchState(state);
  }
  m_nHighlight -= nObjects;
}

std::string QXRendererSession::AddGround(QXScene const& scene) {
  m_dGroundReach = GetGroundRadius(scene);
  std::unique_ptr<QXC::QXStaticGeometry> const pGround = BuildGround(scene);
  m_SceneFigures.m_nGroundTriangles = CountTriangles(*pGround);
  m_SceneFigures.m_nGroundVertices = CountVertices(*pGround);
  std::string strReason = AddGeometry(*pGround);
  if (strReason.empty() && m_bPicking)
    m_vecDrawables.back()->SetSelectionID(
        m_PickTable.Take(QXPickKind::Ground, 1, [](unsigned int) { return std::string("the ground plane"); }));
  return strReason;
}

void QXRendererSession::NumberGeometry(
    QXC::QXStaticGeometry const& geometry, QXScene const& scene, int nStatic, std::size_t nFirstDrawable) {
  // What an identifier adds to its drawable's is the first vertex of the object.
  using Keys = std::vector<std::pair<unsigned int, QXSceneObject>>;
  std::size_t nDrawable = nFirstDrawable;
  int nBefore = 0;
  for (QXC::QXStaticGeometryBucket const* pBucket : GetBuckets(geometry)) {
    if (pBucket->m_pVertexPackage->m_nVertexNum == 0) continue;
    auto pKeys = std::make_shared<Keys>();
    for (auto const& [nKey, pObject] : pBucket->m_mapSubObjects) {
      auto const it = scene.m_mapObjects.find(pObject);
      QXSceneObject const object = it != scene.m_mapObjects.end() ? it->second : QXSceneObject{-1, nBefore, 0};
      pKeys->emplace_back(static_cast<unsigned int>(nKey), object);
      ++nBefore;
    }
    std::string const strStatic = nStatic >= 0 ? scene.m_pNames->m_vecStatics[static_cast<std::size_t>(nStatic)] : "";
    auto const describe = [pKeys, strStatic, pNames = scene.m_pNames](unsigned int nVertex) {
      auto const next = std::upper_bound(
          pKeys->begin(), pKeys->end(), nVertex, [](unsigned int n, auto const& entry) { return n < entry.first; });
      if (next == pKeys->begin()) return strStatic;
      QXSceneObject const& object = std::prev(next)->second;
      if (object.m_nModel >= 0) return pNames->Describe(object);
      return MakeOneLine(strStatic + ", object " + std::to_string(object.m_nNode + 1));
    };
    m_vecDrawables[nDrawable++]->SetSelectionID(m_PickTable.Take(
        nStatic >= 0 ? QXPickKind::Static : QXPickKind::Model, pBucket->m_pVertexPackage->m_nVertexNum, describe));
  }
}

unsigned int QXRendererSession::Pick(int nX, int nY, QXPickedThing& thing, QXC::QXVector3d& vecPosition) {
  m_pGraphics3D->SetSelectionTolerance(2.0);
  // The library counts from the lower edge.
  unsigned int const nID =
      m_pGraphics3D->PickObject(nX + 0.5, static_cast<int>(m_pTarget->GetHeight()) - 1 - nY + 0.5, vecPosition);
  return nID != 0 && m_PickTable.Find(nID, thing) ? nID : 0;
}

void QXRendererSession::HighlightPicked(unsigned int nID) {
  QXPickedThing thing;
  bool const bThing = m_PickTable.Find(nID, thing);
  QXC::QdcArray<unsigned int> arrIDs;
  if (bThing && thing.m_eKind != QXPickKind::Label && thing.m_eKind != QXPickKind::Ground) arrIDs.Add(nID);
  m_pGraphics3D->SetSelectedObjects(arrIDs);
}

QXC::QXTexture* QXRendererSession::TakeTexture(int nModel, QXTextureKey const& key,
    std::vector<QXModelPictures> const& vecPictures, std::vector<std::string>& vecProblems) {
  QXModelPictures const& pictures = vecPictures[static_cast<std::size_t>(nModel)];
  std::string strProblem;
  QXC::QXTexture* pTexture = m_Textures.Take(*m_pGraphics3D, pictures, key, strProblem);
  // Models share pictures.
  if (!strProblem.empty() && std::find(vecProblems.begin(), vecProblems.end(), strProblem) == vecProblems.end())
    vecProblems.push_back(strProblem);
  return pTexture;
}

void QXRendererSession::AddTexture(
    QXScenePart& part, std::vector<QXModelPictures> const& vecPictures, std::vector<std::string>& vecProblems) {
  if (part.m_Texture.m_nImage < 0) return;
  QXC::QXTexturePackage& package = *part.m_pOperation->GetTexturePackageArray()[0];
  package.m_pTextures[0] = TakeTexture(part.m_nModel, part.m_Texture, vecPictures, vecProblems);
}

std::string QXRendererSession::AddScene(QXScene& scene, std::vector<QXModelPictures> const& vecPictures,
    std::vector<std::string>& vecProblems, QXC::QXMatrix4d const& matPlace) {
  // Drawables of merged meshes find their textures by name, so those go first.
  for (QXSceneTexture const& texture : scene.m_vecTextures)
    TakeTexture(texture.m_nModel, texture.m_Key, vecPictures, vecProblems);
  std::size_t const nStatics = scene.m_pNames ? scene.m_pNames->m_vecStatics.size() : 0;
  int nStatic = static_cast<int>(nStatics) - static_cast<int>(scene.m_vecGeometries.size());
  for (std::unique_ptr<QXC::QXStaticGeometry>& pGeometry : scene.m_vecGeometries) {
    std::size_t const nFirst = m_vecDrawables.size();
    std::string strReason = AddGeometry(*pGeometry, matPlace);
    if (!strReason.empty()) return strReason;
    if (m_bPicking && scene.m_pNames) NumberGeometry(*pGeometry, scene, nStatic, nFirst);
    ++nStatic;
    pGeometry.reset();  // the drawables have copied it
  }
  scene.m_vecGeometries.clear();
  for (QXScenePart& part : scene.m_vecParts) {
    AddTexture(part, vecPictures, vecProblems);
    std::string strReason = AddPart(part, matPlace);
    if (!strReason.empty()) return strReason;
    if (!m_bPicking || !scene.m_pNames) continue;
    m_vecDrawables.back()->SetSelectionID(m_PickTable.Take(QXPickKind::Model, 1,
        [pNames = scene.m_pNames, object = part.m_Object](unsigned int) { return pNames->Describe(object); }));
  }
  return std::string();
}

std::string QXRendererSession::Show(QXScene& scene, std::vector<QXModelPictures> const& vecPictures, bool bGround,
    std::vector<std::string>& vecProblems) {
  m_Bounds = scene.m_Bounds;
  m_vecOrigin = scene.m_vecOrigin;
  m_pGraphics3D->SetRelativeOrigin(m_vecOrigin);
  m_SceneFigures.m_nModelTriangles = scene.m_nTriangles;
  m_SceneFigures.m_nModelVertices = scene.m_nVertices;
  m_SceneFigures.m_nMeshes = scene.m_nMeshes;
  std::string strGround = bGround ? AddGround(scene) : std::string();
  if (!strGround.empty()) return strGround;
  std::size_t const nBefore = m_vecDrawables.size();
  std::string strReason = AddScene(scene, vecPictures, vecProblems);
  if (!strReason.empty()) return strReason;
  for (std::size_t i = nBefore; i < m_vecDrawables.size(); ++i)
    m_SceneFigures.m_nRanges += m_vecDrawables[i]->GetIndexRangeCount();
  return std::string();
}

void QXRendererSession::ShowInstances(QXSceneFile const& scene, QXInstanceModels& models, QXSceneProblems& problems) {
  for (QXInstanceGroup const& group : models.GetGroups()) {
    QXSceneInstances const& section = scene.m_vecInstances[group.m_nSection];
    std::vector<std::string> vecLines;
    std::string strReason;
    auto const nPlaces = static_cast<unsigned int>(group.m_vecMatrices.size());
    auto const describe = [strFile = section.m_strFile, nPlaces](unsigned int i) {
      return MakeOneLine(strFile + ", place " + std::to_string(i + 1) + " of " + std::to_string(nPlaces));
    };
    unsigned int const nFirstID = m_bPicking ? m_PickTable.Take(QXPickKind::Instance, nPlaces, describe) : 0;
    for (QXScenePart& part : models.GetModel(group.m_nModel).m_vecParts) {
      AddTexture(part, models.GetPictures(), vecLines);
      if (strReason.empty())
        strReason = m_Instances.Add(*m_pGraphics3D, m_strScene, *part.m_pOperation, group, section, nFirstID);
    }
    if (!strReason.empty()) vecLines.push_back(strReason);
    for (std::string const& strLine : vecLines) problems.Add(section.m_nLine, strLine);
  }
  m_SceneFigures.m_nInstances = models.GetInstanceCount();
  m_SceneFigures.m_nInstanceTriangles = models.GetTriangleCount();
  m_SceneFigures.m_nInstanceVertices = models.GetVertexCount();
  models.Free();
}

bool QXRendererSession::HasInstancing() const {
  return m_pGraphics3D->GetHwInstancingManager() != nullptr;
}

void QXRendererSession::ShowEnvironment(QXSceneFile const& scene, QXSceneProblems& problems) {
  m_Environment.Show(*m_pGraphics3D, m_strScene, *m_pTarget, scene, problems);
}

void QXRendererSession::SetBackground(double dRed, double dGreen, double dBlue) {
  m_dBackground[0] = dRed;
  m_dBackground[1] = dGreen;
  m_dBackground[2] = dBlue;
}

std::string QXRendererSession::AddSymbol(
    QXSymbolModel& symbol, QXSymbolPlace const& place, std::vector<std::string>& vecProblems) {
  double dLeft = 0.0;
  double dBottom = 0.0;
  double dEdge = 0.0;
  place.GetSquare(dLeft, dBottom, dEdge);
  QXC::QXMatrix4d const matView = symbol.MakeView(dLeft, dBottom, dEdge);
  std::size_t const nBefore = m_vecDrawables.size();
  std::string strReason = AddScene(symbol.m_Scene, symbol.m_vecPictures, vecProblems, matView);
  if (!strReason.empty()) return strReason;
  for (std::size_t i = nBefore; i < m_vecDrawables.size(); ++i)
    if (!m_Symbols.Attach(*m_pGraphics3D, place, m_vecDrawables[i]))
      return DescribeFailure("nothing can be drawn into a page of symbols");
  return std::string();
}

void QXRendererSession::ShowSymbols(std::vector<QXSymbolModel>& vecSymbols, QXSceneProblems& problems) {
  for (QXSymbolModel& symbol : vecSymbols) {
    QXSymbolPlace const* pPlace = m_Symbols.Take(*m_pGraphics3D, symbol.m_Symbol.m_strName, symbol.m_Symbol.m_nPixels);
    std::vector<std::string> vecLines;
    if (pPlace == nullptr)
      vecLines.push_back(DescribeFailure("no page can be made for symbols"));
    else if (std::string const strReason = AddSymbol(symbol, *pPlace, vecLines); !strReason.empty())
      vecLines.push_back(strReason);
    for (std::string const& strLine : vecLines) problems.Add(symbol.m_Symbol.m_nLine, strLine);
  }
  m_Symbols.Draw(*m_pGraphics3D);
}

void QXRendererSession::ShowIcons(
    std::vector<QXSceneIcon> const& vecIcons, QXIconPictures& pictures, QXSceneProblems& problems) {
  m_Icons.Show(*m_pGraphics3D, m_strScene, vecIcons, pictures, m_Symbols, problems);
  if (m_bPicking) m_Icons.Number(vecIcons, m_PickTable);
}

void QXRendererSession::ShowLabels(std::vector<QXSceneLabel> const& vecLabels, QXSceneProblems& problems) {
  m_Labels.Show(*m_pGraphics3D, m_strScene, vecLabels, m_vecOrigin, m_Bounds, problems);
  if (m_bPicking) m_Labels.Number(m_PickTable);
}

std::vector<QXAtlasPage> QXRendererSession::GetIconPages() const {
  std::vector<QXAtlasPage> vecPages = m_Icons.GetPages();
  for (QXAtlasPage& page : m_Symbols.GetPages()) vecPages.push_back(std::move(page));
  return vecPages;
}

std::string QXRendererSession::AddView(QXCell const& cell) {
  int const nView = static_cast<int>(m_vecViews.size());
  QdcUnicodeString strName;
  strName.Format(L"View%d", nView);
  QXC::QXCamera* pCamera = m_pGraphics3D->CreateCamera(strName, m_strScene.c_str());
  if (pCamera == nullptr) return DescribeFailure("no camera can be made");
  // Kept before the viewport: whatever fails from here on, the camera goes back with the others.
  m_vecViews.push_back({pCamera, nullptr});
  QXC::QXViewport* pViewport =
      m_pTarget->AddViewport(pCamera, nView, cell.m_dLeft, cell.m_dBottom, cell.m_dWidth, cell.m_dHeight);
  if (pViewport == nullptr) return DescribeFailure("no viewport can be made");
  pViewport->m_BackgroundColor = QXC::QXColorValue3D(m_dBackground[0], m_dBackground[1], m_dBackground[2], 1.0);
  m_vecViews.back().m_pViewport = pViewport;
  return std::string();
}

double QXRendererSession::GetAspect(int nView) const {
  QXC::QXViewport const* pViewport = m_vecViews[static_cast<std::size_t>(nView)].m_pViewport;
  return static_cast<double>(pViewport->GetActualWidth()) / static_cast<double>(pViewport->GetActualHeight());
}

void QXRendererSession::SetPose(int nView, QXPose const& pose) {
  QXC::QXCamera& camera = *m_vecViews[static_cast<std::size_t>(nView)].m_pCamera;
  double dNear = 0.0;
  double dFar = 0.0;
  ComputeNearFar(pose, m_Bounds, m_dGroundReach, dNear, dFar);
  double const dAspect = GetAspect(nView);
  camera.SetAspect(dAspect);
  camera.SetFov(m_dFov);
  camera.SetNearDist(dNear);
  camera.SetFarDist(dFar);
  camera.SetProjectionMatrix(MakePerspective(m_dFov, dAspect, dNear, dFar));
  camera.SetRelativeOrigin(m_pGraphics3D->GetRelativeOrigin());
  camera.SetPosition(pose.GetEye());
  camera.SetOrientation(pose.GetOrientation());
  // The planes follow the matrices only when they are asked to, and the view matrix when it is read.
  camera.GetViewMatrix();
  camera.UpdateFrustum();
  camera.Refresh();
}

void QXRendererSession::Resize(int nWidth, int nHeight) {
  m_pTarget->ReSize(static_cast<unsigned int>(nWidth), static_cast<unsigned int>(nHeight));
}

void QXRendererSession::SetCell(int nView, QXCell const& cell) {
  QXC::QXViewport& viewport = *m_vecViews[static_cast<std::size_t>(nView)].m_pViewport;
  viewport.SetRelLeft(cell.m_dLeft);
  viewport.SetRelBottom(cell.m_dBottom);
  viewport.SetRelWidth(cell.m_dWidth);
  viewport.SetRelHeight(cell.m_dHeight);
  viewport.UpdateDimensions();
}

void QXRendererSession::DrawFrame(double dSeconds) {
  m_Environment.Advance(dSeconds);
  m_pGraphics3D->BeginGeometryCount();
  m_pGraphics3D->UpdateAllRenderTargets();
  if (m_pTarget->IsTextureTarget() == 0) m_pTarget->SwapBuffers(m_pGraphics3D->GetWaitForVerticalBlank());
  m_Figures.m_nTriangles = static_cast<unsigned int>(m_pTarget->GetTriangleCount());
  m_Figures.m_nVertices = m_pGraphics3D->GetVertexCount();
  m_Figures.m_nDrawOperations = m_pGraphics3D->GetDrawOperationCount();
}

std::string QXRendererSession::ReadPicture(std::vector<unsigned char>& vecPixels) {
  std::size_t const nBytes = std::size_t{4} * m_pTarget->GetWidth() * m_pTarget->GetHeight();
  vecPixels.resize(nBytes);
  if (nBytes > std::numeric_limits<unsigned int>::max() ||
      m_pTarget->CopyToMemory(vecPixels.data(), static_cast<unsigned int>(nBytes)) == 0)
    return DescribeFailure("the picture cannot be read back");
  return std::string();
}

std::string QXRendererSession::GetRendererName() const {
  return Narrow(m_pModule->GetName());
}

}  // namespace QXApp
