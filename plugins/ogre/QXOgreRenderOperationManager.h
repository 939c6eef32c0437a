/// @file
/// Maker of the plug-in's drawables.
#pragma once

#include <memory>
#include <unordered_set>
#include <vector>

#include <QxGraphics3D/frame/foundation/toolkit/QXColorValue3D.h>
#include <QxGraphics3D/renderop/QXRenderOperationManager.h>

namespace QXC {

class QXOgreGraphics3D;
class QXOgreQueryOperation3D;
class QXOgreRenderOperation3D;
class QXTexture;

/// Makes drawables, and knows those that exist, billboards, particles, ribbons, queries and skeletons.
class QXOgreRenderOperationManager final : public QXRenderOperationManager {
public:
  explicit QXOgreRenderOperationManager(QXOgreGraphics3D& graphics3D);
  ~QXOgreRenderOperationManager() override;
  QXOgreRenderOperationManager(QXOgreRenderOperationManager const&) = delete;
  QXOgreRenderOperationManager& operator=(QXOgreRenderOperationManager const&) = delete;

  /// Called by the drawables themselves. Add gives the drawable's number.
  unsigned long long Add(QXOgreRenderOperation3D* pOperation);
  void Remove(QXOgreRenderOperation3D* pOperation) { m_setOperations.erase(pOperation); }
  std::unordered_set<QXOgreRenderOperation3D*> const& GetOperations() const { return m_setOperations; }
  /// The drawable with a selection identifier, the one made first where several have it; null if there is none.
  /// Cost: linear.
  QXOgreRenderOperation3D* Find(unsigned int nSelectionID) const;
  /// The drawable of static geometry that has an object with that identifier, the one made first where several have it.
  /// @param nKey  receives the object's key
  QXOgreRenderOperation3D* FindWithObject(unsigned int nSelectionID, unsigned int& nKey) const;

  /// Called by the queries themselves: all of them, and those that run.
  void AddQuery(QXOgreQueryOperation3D* pQuery) { m_setQueries.insert(pQuery); }
  void RemoveQuery(QXOgreQueryOperation3D* pQuery) { m_setQueries.erase(pQuery); }
  void StartQuery(QXOgreQueryOperation3D* pQuery) { m_arrRunning.push_back(pQuery); }
  void StopQuery(QXOgreQueryOperation3D* pQuery) { std::erase(m_arrRunning, pQuery); }
  std::vector<QXOgreQueryOperation3D*> const& GetRunningQueries() const { return m_arrRunning; }

  QXOgreGraphics3D& GetGraphics3D() const { return m_Graphics3D; }
  /// The drawable as this plug-in's own, null if it is another's.
  QXOgreRenderOperation3D* Own(QXRenderOperation3D* pOperation) const;
  /// Of the drawables that exist and of those to come.
  void SetSelectionColor(QXColorValue3D const& color);
  QXColorValue3D const& GetSelectionColor() const { return m_SelectionColor; }

  unsigned int GetRenderOperationCount() const override;
  QXRenderOperation3D* CreateRenderOperation3D(QdcUnicodeString const& strSceneName, unsigned char bAttach) override;
  void DestroyRenderOperation3D(QXRenderOperation3D* pOperation) override;
  unsigned char AttachRenderOperation3D(QXRenderOperation3D* pOperation, QdcUnicodeString const& strSceneName) override;
  void DetachRenderOperation3D(QXRenderOperation3D* pOperation) override;
  /// Null for a scene that does not exist, since nobody could put it into another one later.
  QXBillboard* CreateBillboard(QdcUnicodeString const& strSceneName) override;
  QXRenderOperation3D* CreateStaticGeometry3D(QdcUnicodeString const& strSceneName,
      QXStaticGeometryBucket const& bucket, QdcArray<double> const& arrLevelDistances) override;
  /// Kinds: empty (plain), "smoke", "fire", "fountain", "rain", "snow". Each system has chances of its own, the same
  /// ones in each run of a program that makes its systems in the same order. Null for others and for a scene that does
  /// not exist.
  QXParticleSystem3D* CreateParticleSystem(
      QdcUnicodeString const& strSceneName, QdcUnicodeString const& strTemplate) override;
  /// Null for a scene that does not exist. The material is the name of a texture in the renderer's texture manager;
  /// one that it does not have makes a trail of plain colours.
  QXRibbonTrail3D* CreateRibbonTrail(QdcUnicodeString const& strSceneName, QdcUnicodeString const& strName,
      QdcUnicodeString const& strMaterial) override;
  QXQueryOperation3D* CreateQueryOperation(QdcUnicodeString const& strName) override;
  QXSkeletonAnimation* CreateSkeletonAnimation(QdcUnicodeString const& strName) override;

private:
  QXOgreRenderOperation3D* Make(QdcUnicodeString const& strSceneName, bool bAttach);

  /// A white disc that fades towards its edge; null if the device has no room for it.
  QXTexture* GetDisc();

  QXOgreGraphics3D& m_Graphics3D;
  std::unique_ptr<QXTexture> m_pDisc;
  unsigned long long m_nParticleSystemsMade = 0;
  std::unordered_set<QXOgreRenderOperation3D*> m_setOperations;
  std::unordered_set<QXOgreQueryOperation3D*> m_setQueries;
  std::vector<QXOgreQueryOperation3D*> m_arrRunning;
  QXColorValue3D m_SelectionColor;
  unsigned long long m_nMade;
};

}  // namespace QXC
