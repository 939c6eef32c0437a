#include <QxGraphics3D/model/QXRenderObjectInstance.h>

#include <QxGraphics3D/frame/QXGraphics3D.h>
#include <QxGraphics3D/renderop/QXRenderOperation3D.h>
#include <QxGraphics3D/renderop/QXRenderOperationManager.h>
#include <QxGraphics3D/renderop/QXRenderOperationMultiIndex.h>
#include <QxGraphics3D/texture/QXTexture.h>
#include <QxGraphics3D/texture/QXTextureManager.h>

#include <algorithm>
#include <cstdint>
#include <utility>

namespace QXC {

QXRenderObjectInstance::QXRenderObjectInstance() = default;

QXRenderObjectInstance::QXRenderObjectInstance(QXRenderOperationMultiIndex* pROMultiIndex, QXGraphics3D* pGraphics3D)
    : m_pROMultiIndex(pROMultiIndex), m_pGraphics3D(pGraphics3D) {}

QXRenderObjectInstance::QXRenderObjectInstance(QXRenderObjectInstance const& other)
    : m_pRenderOperation3D(other.m_pRenderOperation3D), m_pROMultiIndex(other.m_pROMultiIndex),
      m_arrTextures(other.m_arrTextures), m_pGraphics3D(other.m_pGraphics3D),
      m_dictTextureNames(other.m_dictTextureNames) {}

QXRenderObjectInstance& QXRenderObjectInstance::operator=(QXRenderObjectInstance const& other) {
  if (this == &other) return *this;
  // What was held is dropped, not deleted, and the pointers that hold this object keep their counter.
  m_pRenderOperation3D = other.m_pRenderOperation3D;
  m_pROMultiIndex = other.m_pROMultiIndex;
  m_arrTextures = other.m_arrTextures;
  m_pGraphics3D = other.m_pGraphics3D;
  m_dictTextureNames = other.m_dictTextureNames;
  return *this;
}

QXRenderObjectInstance::~QXRenderObjectInstance() {
  delete m_pRenderOperation3D;
  m_pRenderOperation3D = nullptr;
  delete m_pROMultiIndex;
  m_pROMultiIndex = nullptr;
  ReleaseTextures();
  m_pGraphics3D = nullptr;
}

QXRenderOperation3D* QXRenderObjectInstance::GetRenderOperation3D() {
  if (!m_pRenderOperation3D) Initialize();
  return m_pRenderOperation3D;
}

void QXRenderObjectInstance::Initialize() {
  if (!m_pGraphics3D || !m_pROMultiIndex) return;
  QXRenderOperationManager* const pManager = m_pGraphics3D->GetRenderOperationManager();
  if (!pManager) return;
  QXRenderOperation3D* const pDrawable = pManager->CreateRenderOperation3D(m_pGraphics3D->GetSceneName(0), 1);
  if (!pDrawable) return;
  delete std::exchange(m_pRenderOperation3D, pDrawable);
  LoadTextures();
  m_pRenderOperation3D->SetRenderOperationMultiIndex(m_pROMultiIndex);
  m_pRenderOperation3D->SetBoundingBox(m_pROMultiIndex->m_Bounds);
  delete std::exchange(m_pROMultiIndex, nullptr);
}

void QXRenderObjectInstance::LoadTextures() {
  QdcArray<QXTexturePackage*> const& arrPackages = m_pROMultiIndex->m_arrTexturePackages;
  auto const nSize = static_cast<std::uint64_t>(std::max(m_pROMultiIndex->m_nSize, 0));
  for (std::uint64_t i = 0; i < std::min(nSize, arrPackages.GetSize()); ++i) {
    QXTexturePackage const* const pPackage = arrPackages[i];
    if (!pPackage) continue;
    for (QXTexture* const pTexture : pPackage->m_pTextures) {
      if (!pTexture) continue;
      pTexture->LoadTexture(1, 0);
      m_arrTextures.Add(pTexture);
      m_dictTextureNames[pTexture] = pTexture->m_strTexFilePath;
      if (!pPackage->m_bFlag) break;
    }
  }
}

void QXRenderObjectInstance::ReleaseTextures() {
  QXTextureManager* const pManager = m_pGraphics3D ? m_pGraphics3D->GetTextureManager() : nullptr;
  for (std::uint64_t i = 0; pManager && i < m_arrTextures.GetSize(); ++i) {
    QXTexture* const pTexture = m_arrTextures[i];
    // By the name that it had: the object itself may be gone. Only one that was not loaded here has no name.
    auto const place = m_dictTextureNames.Find(pTexture);
    if (!m_dictTextureNames.IsEOF(place) && !pManager->HoldsTexture(place->second, pTexture)) continue;
    pManager->RemoveTexture(pTexture, 1);
  }
  m_arrTextures.RemoveAll();
  m_arrTextures.FreeExtra();
}

}  // namespace QXC
