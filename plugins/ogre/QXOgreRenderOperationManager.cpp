#include <plugins/ogre/QXOgreRenderOperationManager.h>

#include <algorithm>
#include <cmath>

#include <QxGraphics3D/texture/QXTexture.h>

#include <plugins/ogre/QXOgreBillboard.h>
#include <plugins/ogre/QXOgreConvert.h>
#include <plugins/ogre/QXOgreGraphics3D.h>
#include <plugins/ogre/QXOgreRenderOperation3D.h>
#include <plugins/ogre/QXOgreScene.h>
#include <plugins/ogre/QXOgreTextureManager.h>
#include <plugins/ogre/effects/QXOgreParticleSystem.h>
#include <plugins/ogre/effects/QXOgreQueryOperation3D.h>
#include <plugins/ogre/effects/QXOgreRibbonTrail.h>
#include <plugins/ogre/effects/QXOgreSkeletonAnimation.h>

namespace QXC {

QXOgreRenderOperationManager::QXOgreRenderOperationManager(QXOgreGraphics3D& graphics3D)
    : m_Graphics3D(graphics3D), m_SelectionColor(QXOgreLook().m_SelectionColor), m_nMade(0) {}

QXOgreRenderOperationManager::~QXOgreRenderOperationManager() {
  for (QXOgreRenderOperation3D* const pOperation : m_setOperations) pOperation->LeaveManager();
  for (QXOgreQueryOperation3D* const pQuery : m_setQueries) pQuery->LeaveManager();
}

unsigned long long QXOgreRenderOperationManager::Add(QXOgreRenderOperation3D* pOperation) {
  m_setOperations.insert(pOperation);
  return m_nMade++;
}

QXOgreRenderOperation3D* QXOgreRenderOperationManager::Find(unsigned int nSelectionID) const {
  if (nSelectionID == 0) return nullptr;
  QXOgreRenderOperation3D* pFirst = nullptr;
  for (QXOgreRenderOperation3D* const pOperation : m_setOperations) {
    bool const bEarlier = !pFirst || pOperation->GetNumber() < pFirst->GetNumber();
    if (pOperation->GetSelectionID() == nSelectionID && bEarlier) pFirst = pOperation;
  }
  return pFirst;
}

QXOgreRenderOperation3D* QXOgreRenderOperationManager::FindWithObject(
    unsigned int nSelectionID, unsigned int& nKey) const {
  QXOgreRenderOperation3D* pFirst = nullptr;
  for (QXOgreRenderOperation3D* const pOperation : m_setOperations) {
    unsigned int nFound = 0;
    bool const bEarlier = !pFirst || pOperation->GetNumber() < pFirst->GetNumber();
    if (!bEarlier || !pOperation->GetDrawable().FindObject(nSelectionID, nFound)) continue;
    pFirst = pOperation;
    nKey = nFound;
  }
  return pFirst;
}

void QXOgreRenderOperationManager::SetSelectionColor(QXColorValue3D const& color) {
  m_SelectionColor = color;
  for (QXOgreRenderOperation3D* const pOperation : m_setOperations) pOperation->SetSelectionColor(color);
}

unsigned int QXOgreRenderOperationManager::GetRenderOperationCount() const {
  return static_cast<unsigned int>(m_setOperations.size());
}

QXOgreRenderOperation3D* QXOgreRenderOperationManager::Make(QdcUnicodeString const& strSceneName, bool bAttach) {
  auto* const pOperation = new QXOgreRenderOperation3D(*this, m_Graphics3D.GetDevice());
  pOperation->SetSelectionColor(m_SelectionColor);
  if (bAttach) pOperation->GetDrawable().SetScene(m_Graphics3D.FindScene(strSceneName));
  return pOperation;
}

QXRenderOperation3D* QXOgreRenderOperationManager::CreateRenderOperation3D(
    QdcUnicodeString const& strSceneName, unsigned char bAttach) {
  return Make(strSceneName, bAttach != 0);
}

void QXOgreRenderOperationManager::DestroyRenderOperation3D(QXRenderOperation3D* pOperation) {
  delete Own(pOperation);
}

unsigned char QXOgreRenderOperationManager::AttachRenderOperation3D(
    QXRenderOperation3D* pOperation, QdcUnicodeString const& strSceneName) {
  QXOgreRenderOperation3D* const pOwn = Own(pOperation);
  QXOgreScene* const pScene = m_Graphics3D.FindScene(strSceneName);
  if (!pOwn || !pScene) return 0;
  pOwn->GetDrawable().SetScene(pScene);
  return 1;
}

void QXOgreRenderOperationManager::DetachRenderOperation3D(QXRenderOperation3D* pOperation) {
  if (QXOgreRenderOperation3D* const pOwn = Own(pOperation)) pOwn->GetDrawable().SetScene(nullptr);
}

QXRenderOperation3D* QXOgreRenderOperationManager::CreateStaticGeometry3D(QdcUnicodeString const& strSceneName,
    QXStaticGeometryBucket const& bucket, QdcArray<double> const& arrLevelDistances) {
  QXOgreRenderOperation3D* const pOperation = Make(strSceneName, true);
  pOperation->SetBucket(bucket, arrLevelDistances);
  return pOperation;
}

QXBillboard* QXOgreRenderOperationManager::CreateBillboard(QdcUnicodeString const& strSceneName) {
  if (QXOgreScene* const pScene = m_Graphics3D.FindScene(strSceneName))
    return new QXOgreBillboard(pScene->GetBillboards());
  m_Graphics3D.SetErrorText("a billboard needs a scene that exists: '" + ToUtf8(strSceneName) + "'");
  return nullptr;
}

QXParticleSystem3D* QXOgreRenderOperationManager::CreateParticleSystem(
    QdcUnicodeString const& strSceneName, QdcUnicodeString const& strTemplate) {
  QXOgreScene* const pScene = m_Graphics3D.FindScene(strSceneName);
  QXOgreParticleKind const* const pKind = FindParticleKind(strTemplate.Cstr());
  if (!pScene || !pKind) {
    m_Graphics3D.SetErrorText("particles need a scene that exists and a kind that there is: '" + ToUtf8(strSceneName) +
                              "', '" + ToUtf8(strTemplate) + "'");
    return nullptr;
  }
  return new QXOgreParticleSystem(*m_Graphics3D.GetDevice(), *pScene, *pKind, ++m_nParticleSystemsMade, GetDisc());
}

QXTexture* QXOgreRenderOperationManager::GetDisc() {
  if (m_pDisc) return m_pDisc.get();
  constexpr int SIDE = 32;
  auto* const pPixels = new unsigned char[std::size_t{SIDE} * SIDE * 4];
  for (int i = 0; i < SIDE * SIDE; ++i) {
    double const dX = (i % SIDE + 0.5) / (0.5 * SIDE) - 1.0;
    double const dY = (i / SIDE + 0.5) / (0.5 * SIDE) - 1.0;
    double const dInside = std::max(0.0, 1.0 - dX * dX - dY * dY);
    std::fill_n(pPixels + 4 * i, 3, static_cast<unsigned char>(255));
    pPixels[4 * i + 3] = static_cast<unsigned char>(std::lround(255.0 * dInside * dInside));
  }
  m_pDisc.reset(m_Graphics3D.GetTextures().CreateTexture());
  m_pDisc->SetTextureData(SIDE, SIDE, pPixels, 0, PF_A8R8G8B8);
  m_pDisc->LoadTexture(0, 1);
  return m_pDisc.get();
}

QXSkeletonAnimation* QXOgreRenderOperationManager::CreateSkeletonAnimation(QdcUnicodeString const& strName) {
  return new QXOgreSkeletonAnimation(strName);
}

QXRibbonTrail3D* QXOgreRenderOperationManager::CreateRibbonTrail(
    QdcUnicodeString const& strSceneName, QdcUnicodeString const& strName, QdcUnicodeString const& strMaterial) {
  QXOgreScene* const pScene = m_Graphics3D.FindScene(strSceneName);
  if (!pScene) {
    m_Graphics3D.SetErrorText("a ribbon needs a scene that exists: '" + ToUtf8(strSceneName) + "'");
    return nullptr;
  }
  auto* const pTrail = new QXOgreRibbonTrail(*m_Graphics3D.GetDevice(), *pScene, strName);
  if (!strMaterial.IsEmpty()) {
    QXTextureManager& textures = m_Graphics3D.GetTextures();
    textures.Lock();
    pTrail->SetTexture(textures.GetTexture(strMaterial, 0));
    textures.Unlock();
  }
  return pTrail;
}

QXQueryOperation3D* QXOgreRenderOperationManager::CreateQueryOperation(QdcUnicodeString const& strName) {
  return new QXOgreQueryOperation3D(*this, strName);
}

QXOgreRenderOperation3D* QXOgreRenderOperationManager::Own(QXRenderOperation3D* pOperation) const {
  // Looked up before it is cast: the pointer may be another renderer's.
  auto* const pOwn = static_cast<QXOgreRenderOperation3D*>(pOperation);
  return m_setOperations.contains(pOwn) ? pOwn : nullptr;
}

}  // namespace QXC
