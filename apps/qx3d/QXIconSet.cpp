#include <apps/qx3d/QXIconSet.h>

#include <apps/qx3d/QXMessage.h>
#include <apps/qx3d/QXPickTable.h>
#include <apps/qx3d/QXSceneFile.h>
#include <apps/qx3d/QXSceneText.h>
#include <apps/qx3d/QXSymbolSet.h>

#include <QxGraphics3D/atlas/QXTextureImageManager.h>
#include <QxGraphics3D/frame/QXGraphics3D.h>
#include <QxGraphics3D/frame/foundation/base3d/QXImageData.h>
#include <QxGraphics3D/frame/foundation/base3d/QXTextureData.h>
#include <QxGraphics3D/renderop/QXBillboard.h>
#include <QxGraphics3D/renderop/QXRenderOperationManager.h>
#include <QxGraphics3D/texture/QXTexture.h>
#include <QxGraphics3D/texture/QXTextureManager.h>

#include <algorithm>
#include <map>
#include <memory>
#include <numeric>
#include <set>

namespace QXApp {

namespace {

using QXC::QdcUnicodeString;
using QXC::QXTextureImageManager;

/// Edge of a page of the image atlas.
constexpr int PageEdge = 1024;

QdcUnicodeString Widen(std::string const& strText) {
  return QdcUnicodeString::FromUTF8(strText.c_str());
}

std::string GetPageName(unsigned int nIndex) {
  return "Image_BigTexture_" + std::to_string(nIndex);
}

QXC::QXTexture* FindTexture(QXC::QXTextureManager& manager, std::string const& strName) {
  manager.Lock();
  QXC::QXTexture* pTexture = manager.GetTexture(Widen(strName), 0);
  manager.Unlock();
  return pTexture;
}

/// The pixels go to the record, which is the atlas's from then on.
void Fill(QXC::QXTextureImage& image, QXIconTile& tile) {
  auto pData = std::make_unique<QXC::QXTextureData>();
  pData->m_nWidth = tile.m_Pixels.m_nWidth;
  pData->m_nHeight = tile.m_Pixels.m_nHeight;
  pData->m_eFormat = QXC::PF_A8R8G8B8;
  pData->m_nDataSize = static_cast<unsigned int>(4 * tile.m_Pixels.GetPixelCount());
  pData->m_pPixels = tile.m_Pixels.m_pBytes.release();
  delete image.m_pTextureData;
  image.m_pTextureData = pData.release();
  image.m_nSize = tile.m_Pixels.m_nWidth;
}

/// Pictures by falling size: squares of powers of two then fill a page without gaps.
std::vector<std::size_t> OrderBySize(std::vector<QXIconPicture> const& vecPictures) {
  std::vector<std::size_t> vecOrder(vecPictures.size());
  std::iota(vecOrder.begin(), vecOrder.end(), std::size_t{0});
  auto const size = [&](std::size_t i) {
    return std::max(vecPictures[i].m_Pixels.m_nWidth, vecPictures[i].m_Pixels.m_nHeight);
  };
  std::ranges::stable_sort(vecOrder, [&](std::size_t a, std::size_t b) { return size(a) > size(b); });
  return vecOrder;
}

}  // namespace

void QXIconSet::TakePlaces(QXIconPictures& pictures, QXSceneProblems& problems) {
  QXTextureImageManager& manager = QXTextureImageManager::GetSingleton();
  std::vector<QXIconPicture>& vecPictures = pictures.GetPictures();
  m_vecPlaces.assign(vecPictures.size(), {});
  for (std::size_t const nPicture : OrderBySize(vecPictures)) {
    QXIconPicture& picture = vecPictures[nPicture];
    QXIconTile tile = MakeIconTile(picture.m_Pixels);
    QXC::QXTextureImage* pImage = manager.GetTextureImage(Widen(picture.m_strName));
    // Another scene of this process may have brought it already.
    if (pImage->m_bAllocated == 0) {
      Fill(*pImage, tile);
      if (manager.FindSpaceInBigTextures(pImage) == 0)
        problems.Add(picture.m_nLine, "the atlas has no place for its image; use fewer or smaller images");
    }
    QXC::QdcRect const slot = pImage->GetSlot();
    double const dLeft = slot.left + static_cast<double>(tile.m_nLeft);
    double const dTop = slot.top + static_cast<double>(tile.m_nTop);
    m_vecPlaces[nPicture] = {pImage, nullptr,
        QXC::QdcRect2D(dLeft / PageEdge, dTop / PageEdge, (dLeft + picture.m_Pixels.m_nWidth) / PageEdge,
            (dTop + picture.m_Pixels.m_nHeight) / PageEdge),
        picture.m_nFileWidth, picture.m_nFileHeight};
    picture.m_Pixels.m_pBytes.reset();
  }
}

void QXIconSet::FindTextures(QXC::QXGraphics3D& graphics3D, QXIconPictures& pictures, QXSceneProblems& problems) {
  QXC::QXTextureManager* pManager = graphics3D.GetTextureManager();
  std::set<std::string> setTold;
  for (std::size_t i = 0; i < m_vecPlaces.size(); ++i) {
    Place& place = m_vecPlaces[i];
    if (place.m_pImage->m_bAllocated == 0) continue;
    std::string const strPage = GetPageName(place.m_pImage->GetBigTextureIndex());
    if (place.m_pImage->m_bLoaded != 0) place.m_pTexture = FindTexture(*pManager, strPage);
    if (place.m_pTexture != nullptr && place.m_pTexture->IsLoaded() == 0) place.m_pTexture = nullptr;
    if (place.m_pTexture != nullptr || !setTold.insert(strPage).second) continue;
    std::string const strReason = Narrow(graphics3D.GetErrorText());
    problems.Add(pictures.GetPictures()[i].m_nLine, "the renderer cannot make the texture " + strPage +
                                                        (strReason.empty() ? "" : ": " + strReason) +
                                                        ", so its icons are left out; choose another renderer");
  }
}

bool QXIconSet::AddIcon(
    QXC::QXGraphics3D& graphics3D, std::wstring const& strScene, QXSceneIcon const& icon, Place const& place) {
  QXC::QXBillboard* pBillboard = graphics3D.GetRenderOperationManager()->CreateBillboard(strScene.c_str());
  if (pBillboard == nullptr) return false;
  m_vecBillboards.push_back(pBillboard);
  bool const bPixels = icon.m_eUnit == QXIconUnit::Pixels;
  bool const bOwnSize = icon.m_dWidth == 0.0;
  pBillboard->SetPosition(icon.m_vecPosition);
  pBillboard->SetSize(
      bOwnSize ? place.m_nWidth : icon.m_dWidth, bOwnSize ? place.m_nHeight : icon.m_dHeight, bPixels ? 1 : 0);
  pBillboard->SetTexture(place.m_pTexture, place.m_rcPart);
  return true;
}

QXIconSet::Place QXIconSet::FindPlace(QXSceneIcon const& icon, int nPicture, QXSymbolSet const& symbols) const {
  if (nPicture >= 0) return m_vecPlaces[static_cast<std::size_t>(nPicture)];
  QXSymbolPlace const* pSymbol = icon.m_strSymbol.empty() ? nullptr : symbols.Find(icon.m_strSymbol);
  if (pSymbol == nullptr) return {nullptr, nullptr, {}, 0, 0};
  auto const nPixels = static_cast<unsigned int>(pSymbol->m_nPixels);
  return {nullptr, pSymbol->m_pTexture, pSymbol->m_rcPart, nPixels, nPixels};
}

void QXIconSet::Show(QXC::QXGraphics3D& graphics3D, std::wstring const& strScene,
    std::vector<QXSceneIcon> const& vecIcons, QXIconPictures& pictures, QXSymbolSet const& symbols,
    QXSceneProblems& problems) {
  if (vecIcons.empty()) return;
  QXC::QXTextureManager* pManager = graphics3D.GetTextureManager();
  if (pManager == nullptr || graphics3D.GetRenderOperationManager() == nullptr) {
    problems.Add(0, "the renderer keeps no textures, so that no icons are shown; choose another one");
    return;
  }
  QXTextureImageManager& manager = QXTextureImageManager::GetSingleton();
  manager.SetTextureManager(pManager);
  TakePlaces(pictures, problems);
  manager.LoadTexture();
  FindTextures(graphics3D, pictures, problems);
  for (std::size_t i = 0; i < vecIcons.size(); ++i) {
    Place const place = FindPlace(vecIcons[i], pictures.GetChoices()[i], symbols);
    if (place.m_pTexture == nullptr) continue;
    if (AddIcon(graphics3D, strScene, vecIcons[i], place)) {
      m_vecIconNumbers.push_back(i);
      continue;
    }
    std::string const strReason = Narrow(graphics3D.GetErrorText());
    problems.Add(vecIcons[i].m_nLine, "the renderer cannot make an icon" +
                                          (strReason.empty() ? std::string() : ": " + strReason) +
                                          ", so those from here on are left out; choose another renderer");
    return;
  }
}

void QXIconSet::Number(std::vector<QXSceneIcon> const& vecIcons, QXPickTable& table) {
  for (std::size_t i = 0; i < m_vecIconNumbers.size(); ++i) {
    QXSceneIcon const& icon = vecIcons[m_vecIconNumbers[i]];
    std::string const strText = icon.m_strSymbol.empty() ? icon.m_strImage : "symbol " + icon.m_strSymbol;
    m_vecBillboards[i]->SetSelectionID(
        table.Take(QXPickKind::Icon, 1, [strText](unsigned int) { return MakeOneLine(strText); }));
  }
}

void QXIconSet::GiveBack(QXC::QXGraphics3D& graphics3D) {
  // Before their textures.
  for (QXC::QXBillboard* pBillboard : m_vecBillboards) delete pBillboard;
  m_vecBillboards.clear();
  m_vecIconNumbers.clear();
  if (m_vecPlaces.empty()) return;
  QXTextureImageManager& manager = QXTextureImageManager::GetSingleton();
  manager.SetTextureManager(graphics3D.GetTextureManager());
  for (Place const& place : m_vecPlaces) manager.RemoveTextureImage(QdcUnicodeString(place.m_pImage->m_strName));
  m_vecPlaces.clear();
  manager.SetTextureManager(nullptr);
}

std::vector<QXAtlasPage> QXIconSet::GetPages() const {
  std::map<unsigned int, QXAtlasPage> mapPages;
  for (Place const& place : m_vecPlaces) {
    if (place.m_pTexture == nullptr) continue;
    unsigned int const nIndex = place.m_pImage->GetBigTextureIndex();
    QXAtlasPage& page = mapPages[nIndex];
    page.m_strName = GetPageName(nIndex);
    page.m_nSize = PageEdge;
    page.m_strFormat = "PF_A8R8G8B8 (12)";
    QXC::QdcRect const slot = place.m_pImage->GetSlot();
    page.m_vecTiles.push_back({slot.left, slot.top, slot.right - slot.left, Narrow(place.m_pImage->m_strName)});
  }
  std::vector<QXAtlasPage> vecPages;
  for (auto& [nIndex, page] : mapPages) {
    std::ranges::sort(page.m_vecTiles, {}, [](QXAtlasTile const& t) { return std::pair(t.m_nY, t.m_nX); });
    vecPages.push_back(std::move(page));
  }
  return vecPages;
}

std::string ReadAtlasPage(QXC::QXGraphics3D& graphics3D, QXAtlasPage& page) {
  QXC::QXTextureManager* pManager = graphics3D.GetTextureManager();
  QXC::QXTexture* pTexture = pManager != nullptr ? FindTexture(*pManager, page.m_strName) : nullptr;
  QXC::QXImageData* pImage = pTexture != nullptr ? pTexture->BlitToMemory() : nullptr;
  QXPixels pixels;
  if (pImage != nullptr) pixels = TakePixels(*pImage);
  DisposeImage(pImage);
  auto const nEdge = static_cast<unsigned int>(page.m_nSize);
  if (pixels.m_pBytes == nullptr || pixels.m_nWidth != nEdge || pixels.m_nHeight != nEdge)
    return "the renderer does not give the texture " + page.m_strName + " back; choose another renderer";
  page.m_vecPixels.assign(pixels.m_pBytes.get(), pixels.m_pBytes.get() + 4 * pixels.GetPixelCount());
  return std::string();
}

}  // namespace QXApp
