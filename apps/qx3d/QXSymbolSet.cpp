#include <apps/qx3d/QXSymbolSet.h>

#include <apps/qx3d/QXMessage.h>

#include <QxGraphics3D/atlas/QXRenderTextureManager.h>
#include <QxGraphics3D/atlas/QXRenderTexturePatch.h>
#include <QxGraphics3D/frame/QXGraphics3D.h>
#include <QxGraphics3D/texture/QXTexture.h>
#include <QxGraphics3D/texture/QXTextureManager.h>

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
  return &(m_mapPlaces[strName] = place);
}

bool QXSymbolSet::Attach(
    QXC::QXGraphics3D& graphics3D, QXSymbolPlace const& place, QXC::QXRenderOperation3D* pDrawable) {
  // What is drawn into pages stands in the scene without a name, under the page's node.
  if (graphics3D.AttachToSceneNode(QdcUnicodeString(), place.m_pPatch->GetTextureName(), pDrawable) == 0) return false;
  place.m_pPatch->SetNeedRender();
  return true;
}

void QXSymbolSet::Draw(QXC::QXGraphics3D& graphics3D) {
  if (m_mapPlaces.empty()) return;
  QXRenderTextureManager::GetSingleton().RenderToTexture();
  QXC::QXTextureManager* pManager = graphics3D.GetTextureManager();
  if (pManager == nullptr) return;
  pManager->Lock();
  for (auto& [strName, place] : m_mapPlaces)
    place.m_pTexture = pManager->GetTexture(place.m_pPatch->GetTextureName(), 0);
  pManager->Unlock();
}

QXSymbolPlace const* QXSymbolSet::Find(std::string const& strName) const {
  auto const it = m_mapPlaces.find(strName);
  return it != m_mapPlaces.end() && it->second.m_pTexture != nullptr ? &it->second : nullptr;
}

void QXSymbolSet::GiveBack(QXC::QXGraphics3D& graphics3D) {
  if (m_mapPlaces.empty()) return;
  QXRenderTextureManager& manager = QXRenderTextureManager::GetSingleton();
  manager.SetGraphics3D(&graphics3D);
  for (auto const& [strName, place] : m_mapPlaces) manager.RemoveRenderTexturePatch(MakePatchName(strName));
  m_mapPlaces.clear();
  manager.SetGraphics3D(nullptr);
}

std::vector<QXAtlasPage> QXSymbolSet::GetPages() const {
  std::map<int, QXAtlasPage> mapPages;
  for (auto const& [strName, place] : m_mapPlaces) {
    if (place.m_pTexture == nullptr) continue;
    QXAtlasPage& page = mapPages[place.m_pPatch->GetTextureIndex()];
    page.m_strName = Narrow(place.m_pPatch->GetTextureName());
    page.m_nSize = PageEdge;
    page.m_strFormat = "PF_A8R8G8B8 (12)";
    page.m_bPremultiplied = true;
    unsigned int nX = 0;
    unsigned int nY = 0;
    place.m_pPatch->GetPos(nX, nY);
    page.m_vecTiles.push_back(
        {static_cast<int>(nX), static_cast<int>(nY), PageEdge >> place.m_pPatch->GetLod(), "symbol " + strName});
  }
  std::vector<QXAtlasPage> vecPages;
  for (auto& [nIndex, page] : mapPages) vecPages.push_back(std::move(page));
  return vecPages;
}

}  // namespace QXApp
