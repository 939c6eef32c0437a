#include <QxGraphics3D/testing/QXNullRenderOperationManager.h>

#include <algorithm>

#include <QxGraphics3D/testing/QXNullBillboard.h>
#include <QxGraphics3D/testing/QXNullGraphics3D.h>
#include <QxGraphics3D/testing/QXNullParticleSystem3D.h>
#include <QxGraphics3D/testing/QXNullQueryOperation3D.h>
#include <QxGraphics3D/testing/QXNullRenderOperation3D.h>
#include <QxGraphics3D/testing/QXNullRibbonTrail3D.h>
#include <QxGraphics3D/testing/QXNullScene.h>
#include <QxGraphics3D/testing/QXNullSkeletonAnimation.h>

namespace QXC {

QXNullRenderOperationManager::QXNullRenderOperationManager(QXNullGraphics3D& graphics, std::shared_ptr<QXCallLog> pLog)
    : QXNullObject(std::move(pLog), "manager"), m_Graphics(graphics) {}

QXNullRenderOperationManager::~QXNullRenderOperationManager() {
  for (QXNullRenderOperation3D* const pDrawable : m_arrDrawables) {
    pDrawable->m_pManager = nullptr;
  }
}

std::string QXNullRenderOperationManager::MakeLabel(char const* szKind) {
  return std::string(szKind) + " " + std::to_string(++m_nMade);
}

QXRenderOperation3D* QXNullRenderOperationManager::CreateRenderOperation3D(
    QdcUnicodeString const& strSceneName, unsigned char bAttach) {
  Record("CreateRenderOperation3D", strSceneName, bAttach);
  return MakeDrawable(strSceneName, bAttach);
}

QXNullRenderOperation3D* QXNullRenderOperationManager::MakeDrawable(
    QdcUnicodeString const& strSceneName, unsigned char bAttach) {
  auto pDrawable = std::make_unique<QXNullRenderOperation3D>(this, m_pLog, MakeLabel("drawable"));
  m_arrDrawables.push_back(pDrawable.get());
  QXNullScene* const pScene = m_Graphics.FindScene(strSceneName);
  if (bAttach && pScene != nullptr) {
    pScene->Attach(pDrawable.get());
  }
  return pDrawable.release();
}

void QXNullRenderOperationManager::DestroyRenderOperation3D(QXRenderOperation3D* pOperation) {
  if (Find(pOperation) != nullptr) {
    delete pOperation;
  }
}

unsigned char QXNullRenderOperationManager::AttachRenderOperation3D(
    QXRenderOperation3D* pOperation, QdcUnicodeString const& strSceneName) {
  QXNullRenderOperation3D* const pDrawable = Find(pOperation);
  QXNullScene* const pScene = m_Graphics.FindScene(strSceneName);
  if (pDrawable == nullptr || pScene == nullptr) {
    Record("AttachRenderOperation3D", std::string("unknown"), strSceneName);
    return 0;
  }
  Record("AttachRenderOperation3D", pDrawable->GetLabel(), strSceneName);
  pScene->Attach(pDrawable);
  return 1;
}

void QXNullRenderOperationManager::DetachRenderOperation3D(QXRenderOperation3D* pOperation) {
  QXNullRenderOperation3D* const pDrawable = Find(pOperation);
  if (pDrawable == nullptr) {
    return;
  }
  Record("DetachRenderOperation3D", pDrawable->GetLabel());
  if (pDrawable->m_pScene != nullptr) {
    pDrawable->m_pScene->Detach(pDrawable);
  }
}

QXBillboard* QXNullRenderOperationManager::CreateBillboard(QdcUnicodeString const& strSceneName) {
  Record("CreateBillboard", strSceneName);
  if (m_Graphics.FindScene(strSceneName) == nullptr) {
    return nullptr;
  }
  return new QXNullBillboard(m_pLog, MakeLabel("billboard"));
}

QXRenderOperation3D* QXNullRenderOperationManager::CreateStaticGeometry3D(QdcUnicodeString const& strSceneName,
    QXStaticGeometryBucket const& bucket, QdcArray<double> const& arrLevelDistances) {
  Record("CreateStaticGeometry3D", strSceneName, arrLevelDistances.GetSize());
  QXNullRenderOperation3D* const pDrawable = MakeDrawable(strSceneName, 1);
  pDrawable->SetBucket(bucket, arrLevelDistances, m_Graphics.GetTextureManager());
  return pDrawable;
}

QXParticleSystem3D* QXNullRenderOperationManager::CreateParticleSystem(
    QdcUnicodeString const& strSceneName, QdcUnicodeString const& strTemplate) {
  Record("CreateParticleSystem", strSceneName, strTemplate);
  return new QXNullParticleSystem3D(m_pLog, MakeLabel("particles"));
}

QXRibbonTrail3D* QXNullRenderOperationManager::CreateRibbonTrail(
    QdcUnicodeString const& strSceneName, QdcUnicodeString const& strName, QdcUnicodeString const& strMaterial) {
  Record("CreateRibbonTrail", strSceneName, strName, strMaterial);
  return new QXNullRibbonTrail3D(m_pLog, MakeLabel("trail"), strName);
}

QXQueryOperation3D* QXNullRenderOperationManager::CreateQueryOperation(QdcUnicodeString const& strName) {
  Record("CreateQueryOperation", strName);
  return new QXNullQueryOperation3D(m_pLog, MakeLabel("query"), strName);
}

QXSkeletonAnimation* QXNullRenderOperationManager::CreateSkeletonAnimation(QdcUnicodeString const& strName) {
  Record("CreateSkeletonAnimation", strName);
  return new QXNullSkeletonAnimation(m_pLog, MakeLabel("animation"), strName);
}

void QXNullRenderOperationManager::Forget(QXNullRenderOperation3D* pDrawable) {
  m_arrDrawables.erase(std::remove(m_arrDrawables.begin(), m_arrDrawables.end(), pDrawable), m_arrDrawables.end());
}

QXNullRenderOperation3D* QXNullRenderOperationManager::Find(QXRenderOperation3D* pOperation) const {
  auto* const pDrawable = dynamic_cast<QXNullRenderOperation3D*>(pOperation);
  return pDrawable != nullptr && pDrawable->m_pManager == this ? pDrawable : nullptr;
}

}  // namespace QXC
