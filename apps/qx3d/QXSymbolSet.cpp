#include <apps/qx3d/QXSymbolSet.h>

#include <apps/qx3d/QXMessage.h>

#include <QxGraphics3D/atlas/QXRenderTextureManager.h>
#include <QxGraphics3D/atlas/QXRenderTexturePatch.h>
#include <QxGraphics3D/frame/QXGraphics3D.h>
#include <QxGraphics3D/texture/QXTexture.h>
#include <QxGraphics3D/texture/QXTextureManager.h>

#include <algorithm>
#include <map>

namespace QXApp {

namespace {

using QXC::QdcUnicodeString;
using QXC::QXRenderTextureManager;

/// Edge of a page of the render atlas.
constexpr int PageEdge = 2048;

/// Pictures of symbols beside those of other users of the atlas.
QdcUnicodeString MakePatchName(std::string const& strName) {
  return QdcUnicodeString::FromUTF8(("symbol|" + strName).c_str());
}

}  // namespace

void QXSymbolPlace::GetSquare(double& dLeft, double& dBottom, double& dEdge) const {
  dLeft = m_rcPart.left * PageEdge;
  dBottom = (1.0 - m_rcPart.bottom) * PageEdge;
  dEdge = 2.0 * m_nPixels;
}

QXSymbolPlace* QXSymbolSet::Take(QXC::QXGraphics3D& graphics3D, std::string const& strName, int nPixels) {
  QXRenderTextureManager& manager = QXRenderTextureManager::GetSingleton();
  manager.SetGraphics3D(&graphics3D);
  auto const nEdge = static_cast<unsigned int>(2 * nPixels);
  QXSymbolPlace place;
  place.m_strName = strName;
  place.m_nPixels = nPixels;
  place.m_pPatch = manager.GetRenderTexturePatch(MakePatchName(strName), nEdge, nEdge);
  if (place.m_pPatch->IsPlaced() == 0) {
    manager.RemoveRenderTexturePatch(MakePatchName(strName));
    return nullptr;
  }
  unsigned int nX = 0;
  unsigned int nY = 0;
  place.m_pPatch->GetPos(nX, nY);
  place.m_rcPart = QXC::QdcRect2D(static_cast<double>(nX) / PageEdge, static_cast<double>(nY) / PageEdge,
      static_cast<double>(nX + nEdge) / PageEdge, static_cast<double>(nY + nEdge) / PageEdge);
  m_vecPlaces.push_back(place);
  return &m_vecPlaces.back();
}

bool QXSymbolSet::Attach(
    QXC::QXGraphics3D& graphics3D, QXSymbolPlace const& place, QXC::QXRenderOperation3D* pDrawable) {
  // What is drawn into pages stands in the scene without a name, under the page's node.
  if (graphics3D.AttachToSceneNode(QdcUnicodeString(), place.m_pPatch->GetTextureName(), pDrawable) == 0) return false;
  place.m_pPatch->SetNeedRender();
  return true;
}

void QXSymbolSet::Draw(QXC::QXGraphics3D& graphics3D) {
  if (m_vecPlaces.empty()) return;
  QXRenderTextureManager::GetSingleton().RenderToTexture();
  QXC::QXTextureManager* pManager = graphics3D.GetTextureManager();
  if (pManager == nullptr) return;
  pManager->Lock();
  for (QXSymbolPlace& place : m_vecPlaces) place.m_pTexture = pManager->GetTexture(place.m_pPatch->GetTextureName(), 0);
  pManager->Unlock();
}

QXSymbolPlace const* QXSymbolSet::Find(std::string const& strName) const {
  auto const it = std::ranges::find(m_vecPlaces, strName, &QXSymbolPlace::m_strName);
  return it != m_vecPlaces.end() && it->m_pTexture != nullptr ? &*it : nullptr;
}

void QXSymbolSet::GiveBack(QXC::QXGraphics3D& graphics3D) {
  if (m_vecPlaces.empty()) return;
  QXRenderTextureManager& manager = QXRenderTextureManager::GetSingleton();
  manager.SetGraphics3D(&graphics3D);
  for (QXSymbolPlace const& place : m_vecPlaces) manager.RemoveRenderTexturePatch(MakePatchName(place.m_strName));
  m_vecPlaces.clear();
  manager.SetGraphics3D(nullptr);
}

std::vector<QXAtlasPage> QXSymbolSet::GetPages() const {
  std::map<int, QXAtlasPage> mapPages;
  for (QXSymbolPlace const& place : m_vecPlaces) {
    if (place.m_pTexture == nullptr) continue;
    QXAtlasPage& page = mapPages[place.m_pPatch->GetTextureIndex()];
    page.m_strName = Narrow(place.m_pPatch->GetTextureName());
    page.m_nSize = PageEdge;
    page.m_strFormat = "PF_A8R8G8B8 (12)";
    unsigned int nX = 0;
    unsigned int nY = 0;
    place.m_pPatch->GetPos(nX, nY);
    page.m_vecTiles.push_back({static_cast<int>(nX), static_cast<int>(nY), PageEdge >> place.m_pPatch->GetLod(),
        "symbol " + place.m_strName});
  }
  std::vector<QXAtlasPage> vecPages;
  for (auto& [nIndex, page] : mapPages) vecPages.push_back(std::move(page));
  return vecPages;
}

}  // namespace QXApp
