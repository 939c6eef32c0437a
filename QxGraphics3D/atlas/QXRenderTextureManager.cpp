#include <QxGraphics3D/atlas/QXRenderTextureManager.h>

#include <QxGraphics3D/atlas/QXRenderTexturePatch.h>
#include <QxGraphics3D/atlas/detail/QXLiveRecords.h>
#include <QxGraphics3D/atlas/detail/QXQuadtreeAtlas.h>
#include <QxGraphics3D/frame/QXGraphics3D.h>
#include <QxGraphics3D/frame/QXRenderTarget.h>

#include <utility>

namespace QXC {

template class QXSingleton<QXRenderTextureManager>;

QXRenderTextureManager::QXRenderTextureManager()
    : m_pLivePatches(std::make_unique<LivePatches>()),
      m_pBigTextures(std::make_unique<detail::QXQuadtreeAtlas>(detail::g_RenderAtlasRules)) {}

QXRenderTextureManager::~QXRenderTextureManager() {
  Clear();
}

QXRenderTextureManager& QXRenderTextureManager::GetSingleton() {
  return *GetSingletonPtr();
}

QXRenderTextureManager* QXRenderTextureManager::GetSingletonPtr() {
  if (!ms_pSingleton) ms_pSingleton = new QXRenderTextureManager;
  return ms_pSingleton;
}

void QXRenderTextureManager::SetGraphics3D(QXGraphics3D* pGraphics) {
  m_pGraphics = pGraphics;
}

// --- Patches ---

QXRenderTexturePatch* QXRenderTextureManager::GetRenderTexturePatch(
    QdcUnicodeString const& strName, unsigned int nHeight, unsigned int nWidth) {
  QXMutexLock lock(m_Mutex);
  lock.lock();
  auto const known = m_mapPatches.find(strName);
  QXRenderTexturePatch* pPatch = known != m_mapPatches.end() ? known->second : nullptr;
  if (pPatch == nullptr) {
    std::unique_ptr<QXRenderTexturePatch> pMade(new QXRenderTexturePatch(this));
    pMade->SetName(strName);
    m_pLivePatches->Insert(pMade.get(), NoData());
    try {
      m_mapPatches.emplace(strName, pMade.get());
    } catch (...) {
      m_pLivePatches->Erase(pMade.get());
      throw;
    }
    pPatch = pMade.release();
  }
  pPatch->AddRef();
  // For a patch that was there as well: hosts ask a second time to have it elsewhere, and both places count.
  pPatch->SetSize(nHeight, nWidth);
  return pPatch;
}

void QXRenderTextureManager::RemoveRenderTexturePatch(QdcUnicodeString const& strName) {
  QXMutexLock lock(m_Mutex);
  lock.lock();
  auto const place = m_mapPatches.find(strName);
  if (place == m_mapPatches.end()) return;
  std::unique_ptr<QXRenderTexturePatch> pPatch(place->second);
  pPatch->DecRef();
  if (pPatch->GetRef() != 0) {
    pPatch.release();
    return;
  }
  // The name may be the patch's own, so it is not read again; and a target that dies may call back, so the maps are
  // in order before.
  m_mapPatches.erase(place);
  m_pLivePatches->Erase(pPatch.get());
  int const nIndex = pPatch->GetTextureIndex();
  if (ReleasePlace(*pPatch)) DropBigTexture(nIndex);
}

void QXRenderTextureManager::ResizeRenderTexturePatch(QdcUnicodeString const& strName, unsigned int, unsigned int) {
  QXRenderTexturePatch* pPatch = nullptr;
  {
    QXMutexLock lock(m_Mutex);
    lock.lock();
    auto const place = m_mapPatches.find(strName);
    if (place == m_mapPatches.end()) return;
    pPatch = place->second;
    // The big texture stays even without patches: the new place is most likely on it.
    ReleasePlace(*pPatch);
  }
  FindSpaceInBigTextures(pPatch);
}

unsigned char QXRenderTextureManager::FindSpaceInBigTextures(QXRenderTexturePatch* pPatch) {
  QXMutexLock lock(m_Mutex);
  lock.lock();
  detail::QXQuadtreePlace place;
  if (!m_pBigTextures->Place({.m_nSize = pPatch->m_nSize}, place)) return 0;
  // Kept, a place that is handed to nobody would hold its big texture for ever.
  auto const GiveBack = [&] {
    if (m_pBigTextures->Release(place)) m_pBigTextures->DropPage(place.m_nIndex);
  };
  try {
    if (!HasOrMakesTarget(place.m_nIndex)) {
      GiveBack();
      return 0;
    }
  } catch (...) {
    GiveBack();
    throw;
  }
  pPatch->m_nRow = place.m_nRow;
  pPatch->m_nCol = place.m_nCol;
  pPatch->m_nLod = place.m_nLod;
  pPatch->m_nTextureIndex = place.m_nIndex;
  pPatch->m_bPlaced = 1;
  return 1;
}

bool QXRenderTextureManager::ReleasePlace(QXRenderTexturePatch& patch) {
  if (!patch.m_bPlaced) return false;
  bool const bLast = m_pBigTextures->Release(
      {.m_nRow = patch.m_nRow, .m_nCol = patch.m_nCol, .m_nLod = patch.m_nLod, .m_nIndex = patch.m_nTextureIndex});
  patch.m_nRow = patch.m_nCol = patch.m_nLod = patch.m_nTextureIndex = 0;
  patch.m_bPlaced = 0;
  return bLast;
}

// --- Big textures ---

bool QXRenderTextureManager::HasOrMakesTarget(int nIndex) {
  if (m_mapRenderTargets.count(nIndex) != 0) return true;
  if (m_pGraphics == nullptr) return false;
  QdcUnicodeString strName;
  strName.Format(L"RenderTexture_BigTexture_%d", nIndex);
  std::unique_ptr<QXRenderTarget> pTarget(
      m_pGraphics->CreateRenderTexture(strName, PF_A8R8G8B8, 2048, 2048, 0, 32, QdcUnicodeString()));
  if (!pTarget) return false;
  m_pGraphics->CreateSceneNode(pTarget->GetSceneName(), QdcUnicodeString(), pTarget->GetName());
  m_mapRenderTargets.emplace(nIndex, pTarget.get());
  pTarget.release();
  return true;
}

void QXRenderTextureManager::DropBigTexture(int nIndex) {
  m_pBigTextures->DropPage(nIndex);
  auto const place = m_mapRenderTargets.find(nIndex);
  if (place == m_mapRenderTargets.end()) return;
  QXRenderTarget* const pTarget = place->second;
  m_mapRenderTargets.erase(place);
  DeleteTarget(pTarget);
}

void QXRenderTextureManager::DeleteTarget(QXRenderTarget* pTarget) {
  if (m_pGraphics != nullptr) m_pGraphics->DestroySceneNode(pTarget->GetSceneName(), pTarget->GetName());
  delete pTarget;
}

// --- The frame ---

void QXRenderTextureManager::SetNeedRender(QXRenderTexturePatch* pPatch) {
  if (pPatch == nullptr || !pPatch->m_bPlaced) return;
  m_mapNeedRender[pPatch->GetTextureIndex()] = true;
}

void QXRenderTextureManager::RenderToTexture() {
  if (m_pGraphics == nullptr) return;
  if (m_bHasUseless.load(std::memory_order_relaxed)) RemoveUseless();
  for (int nIndex = -1; (nIndex = m_pBigTextures->GetPageFrom(nIndex + 1)) != -1;) {
    auto const target = m_mapRenderTargets.find(nIndex);
    auto const mark = m_mapNeedRender.find(nIndex);
    if (target == m_mapRenderTargets.end() || mark == m_mapNeedRender.end() || !mark->second) continue;
    RenderBigTexture(nIndex, target->second);
  }
}

void QXRenderTextureManager::RenderBigTexture(int nIndex, QXRenderTarget* pTarget) {
  QdcUnicodeString const& strScene = pTarget->GetSceneName();
  QdcUnicodeString const& strNode = pTarget->GetName();
  // All big textures stand in one scene and one world rectangle: what belongs to the others must not show.
  m_pGraphics->SetSceneNodeVisible(strScene, strNode, 1, 1);
  m_pGraphics->RenderPatchToTexture(1024.0, 1024.0, 2048.0, 2048.0, pTarget, QdcRect2D(0.0, 0.0, 1.0, 1.0));
  m_pGraphics->SetSceneNodeVisible(strScene, strNode, 0, 1);
  m_mapNeedRender[nIndex] = false;
}

// --- Useless patches ---

void QXRenderTextureManager::AddUselessTexture(QdcArray<QXRenderTexturePatch*> arrPatches) {
  QXMutexLock lock(m_Mutex);
  lock.lock();
  m_pLivePatches->AddUseless(arrPatches);
  if (m_pLivePatches->HasUseless()) m_bHasUseless.store(true, std::memory_order_relaxed);
}

void QXRenderTextureManager::ClearUselessTexture() {
  RemoveUseless();
}

void QXRenderTextureManager::RemoveUseless() {
  QXMutexLock lock(m_Mutex);
  lock.lock();
  m_bHasUseless.store(false, std::memory_order_relaxed);
  // By the name it has now and from the one manager of the process: hosts that rename patches rely on the former. A
  // manager made beside the singleton keeps its useless patches.
  m_pLivePatches->RemoveUseless(
      [](QXRenderTexturePatch const& patch) { GetSingleton().RemoveRenderTexturePatch(patch.GetName()); });
}

void QXRenderTextureManager::Clear() {
  QXMutexLock lock(m_Mutex);
  lock.lock();
  for (auto const& [strName, pPatch] : std::exchange(m_mapPatches, {})) {
    delete pPatch;
  }
  m_pLivePatches->Clear();
  m_pBigTextures->Clear();
  for (auto const& [nIndex, pTarget] : std::exchange(m_mapRenderTargets, {})) {
    DeleteTarget(pTarget);
  }
  m_mapNeedRender.clear();
  m_pGraphics = nullptr;
}

}  // namespace QXC
