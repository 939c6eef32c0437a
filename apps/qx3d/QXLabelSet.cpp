#include <apps/qx3d/QXLabelSet.h>

#include <apps/qx3d/QXMessage.h>
#include <apps/qx3d/QXPickTable.h>
#include <apps/qx3d/QXSceneFile.h>
#include <apps/qx3d/QXSceneText.h>

#include <QxGraphics3D/frame/QXGraphics3D.h>
#include <QxGraphics3D/renderop/QXRenderOperation3D.h>
#include <QxGraphics3D/renderop/QXRenderOperationManager.h>
#include <QxGraphics3D/renderop/QXRenderOperationMultiIndex.h>
#include <QxGraphics3D/text/QXTextureFontManager.h>
#include <QxGraphics3D/texture/QXTexture.h>
#include <QxGraphics3D/texture/QXTextureManager.h>

#include <algorithm>
#include <memory>
#include <utility>

namespace QXApp {

namespace {

using QXC::QdcUnicodeString;

QXC::QXTexture* FindTexture(QXC::QXGraphics3D& graphics3D, QdcUnicodeString const& strName) {
  QXC::QXTextureManager* pManager = graphics3D.GetTextureManager();
  pManager->Lock();
  QXC::QXTexture* pTexture = pManager->GetTexture(strName, 0);
  pManager->Unlock();
  return pTexture != nullptr && pTexture->IsLoaded() != 0 ? pTexture : nullptr;
}

std::string GetReason(QXC::QXGraphics3D const& graphics3D) {
  std::string const strReason = Narrow(graphics3D.GetErrorText());
  return strReason.empty() ? strReason : ": " + strReason;
}

}  // namespace

bool QXLabelSet::AddPart(QXC::QXGraphics3D& graphics3D, std::wstring const& strScene, QXLabelPartKey const& key,
    QXLabelParts::Part& part, QXC::QXTexture& texture) {
  QXC::QXRenderOperation3D* pDrawable =
      graphics3D.GetRenderOperationManager()->CreateRenderOperation3D(strScene.c_str(), 1);
  if (pDrawable == nullptr) return false;
  m_vecDrawables.push_back(pDrawable);
  auto pPackage = std::make_unique<QXC::QXTexturePackage>();
  pPackage->m_pTextures[0] = &texture;
  pPackage->m_strTextureName = QXC::QXTextLayout::GetPageName(key.m_nPage);
  auto const pOperation = part.m_Collector.Finish(part.m_vecOrigin, std::move(pPackage));
  // A label reaches into the picture from beyond its edge, and how far, depends on the eye: drawn with the scene.
  pDrawable->SetBoundingBox(
      QXC::QXBoundingBox(m_Bounds.GetMin() - part.m_vecOrigin, m_Bounds.GetMax() - part.m_vecOrigin));
  pDrawable->SetRenderOperationMultiIndex(pOperation.get());
  pDrawable->SetLightEnable(0);
  pDrawable->SetCastShadow(0);
  pDrawable->SetReceiveShadow(0);
  pDrawable->SetCullingMode(QXC::CULLING_NONE);
  pDrawable->SetDepthWrite(0);
  pDrawable->SetDepthTest(key.m_bOverlay ? 0 : 1);
  pDrawable->SetRenderPriority(key.GetPriority());
  if (!key.m_bFacing) return true;
  return pDrawable->SetShaderPrograms(QXC::LABEL_VERTEX_PROGRAM, QXC::LABEL_FRAGMENT_PROGRAM) != 0;
}

void QXLabelSet::AddParts(QXC::QXGraphics3D& graphics3D, std::wstring const& strScene, QXLabelParts& parts, int nLine,
    QXSceneProblems& problems) {
  std::set<std::string> setTold;
  for (auto& [key, part] : parts.GetParts()) {
    QdcUnicodeString const strPage = QXC::QXTextLayout::GetPageName(key.m_nPage);
    QXC::QXTexture* pTexture = FindTexture(graphics3D, strPage);
    if (pTexture == nullptr) {
      if (setTold.insert(Narrow(strPage)).second)
        problems.Add(nLine, "the renderer cannot make the texture " + Narrow(strPage) + GetReason(graphics3D) +
                                ", so its letters are left out; choose another renderer");
      continue;
    }
    m_setPages.insert(Narrow(strPage));
    if (AddPart(graphics3D, strScene, key, part, *pTexture)) continue;
    problems.Add(nLine,
        "the renderer cannot draw labels" + GetReason(graphics3D) + ", so they are left out; choose another renderer");
    GiveBack(graphics3D);
    return;
  }
}

void QXLabelSet::Show(QXC::QXGraphics3D& graphics3D, std::wstring const& strScene,
    std::vector<QXSceneLabel> const& vecLabels, QXC::QXVector3d const& vecOrigin, QXC::QXBoundingBox const& bounds,
    QXSceneProblems& problems) {
  if (vecLabels.empty()) return;
  int const nLine = vecLabels[0].m_nLine;
  if (graphics3D.GetTextureManager() == nullptr || graphics3D.GetRenderOperationManager() == nullptr) {
    problems.Add(nLine, "the renderer keeps no textures, so that no labels are shown; choose another one");
    return;
  }
  QXC::QXTextureFontManager& manager = QXC::QXTextureFontManager::GetSingleton();
  manager.SetTextureManager(graphics3D.GetTextureManager());
  m_bTaken = true;
  m_Bounds = bounds;
  for (QXSceneLabel const& label : vecLabels)
    m_Bounds.Merge(QXC::QXBoundingBox(label.m_vecPosition, label.m_vecPosition));
  m_Glyphs.Take(manager, vecLabels, problems);
  QXLabelParts parts(vecOrigin, m_Bounds);
  QXC::QXTextLayout layout(manager);
  for (QXSceneLabel const& label : vecLabels) {
    m_Glyphs.LayOut(label, layout);
    if (layout.GetGlyphs().empty()) continue;
    if (parts.GetQuadCount() + layout.GetGlyphs().size() > m_nMaxLetters) {
      problems.Add(label.m_nLine, "the labels have more than " + std::to_string(m_nMaxLetters) +
                                      " letters, with each border counted as one more, and this label and all further "
                                      "ones are left out; shorten their texts, or make two scenes of it");
      break;
    }
    parts.Add(label, layout);
    ++m_nCount;
  }
  // Each label's own users go back; the glyphs stay held.
  layout.Clear();
  manager.AddCharBitmapToTexture();
  AddParts(graphics3D, strScene, parts, nLine, problems);
}

void QXLabelSet::Number(QXPickTable& table) {
  for (QXC::QXRenderOperation3D* pDrawable : m_vecDrawables)
    pDrawable->SetSelectionID(table.Take(QXPickKind::Label, 1, [](unsigned int) { return std::string(); }));
}

void QXLabelSet::GiveBack(QXC::QXGraphics3D& graphics3D) {
  // Before their textures.
  if (QXC::QXRenderOperationManager* pManager = graphics3D.GetRenderOperationManager())
    for (QXC::QXRenderOperation3D* pDrawable : m_vecDrawables) pManager->DestroyRenderOperation3D(pDrawable);
  m_vecDrawables.clear();
  m_setPages.clear();
  m_nCount = 0;
  if (!std::exchange(m_bTaken, false)) return;
  QXC::QXTextureFontManager& manager = QXC::QXTextureFontManager::GetSingleton();
  manager.SetTextureManager(graphics3D.GetTextureManager());
  m_Glyphs.GiveBack();
  manager.SetTextureManager(nullptr);
}

std::vector<QXAtlasPage> QXLabelSet::GetPages() const {
  std::vector<QXAtlasPage> vecPages = m_Glyphs.GetPages();
  std::erase_if(vecPages, [this](QXAtlasPage const& page) { return !m_setPages.contains(page.m_strName); });
  return vecPages;
}

}  // namespace QXApp
