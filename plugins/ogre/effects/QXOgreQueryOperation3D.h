/// @file
/// The visibility query that hosts hold.
#pragma once

#include <memory>
#include <vector>

#include <QxGraphics3D/renderop/QXQueryOperation3D.h>

namespace QXC {

class QXOgreRenderOperationManager;
class QXOgreSampleCount;

/// Counts the drawing of viewports: of those that are drawn between BeginQuery and EndQuery, each as a whole. To ask for
/// one thing alone, a host draws it with a viewport of its own that clears nothing, over the depths of the one before.
/// Several queries may run at a time. A pixel that is drawn twice counts twice, and so does one of two viewports. With
/// several samples a pixel those that are visible are counted and divided by their number in a pixel.
class QXOgreQueryOperation3D final : public QXQueryOperation3D {
public:
  QXOgreQueryOperation3D(QXOgreRenderOperationManager& manager, QdcUnicodeString const& strName);
  ~QXOgreQueryOperation3D() override;
  QXOgreQueryOperation3D(QXOgreQueryOperation3D const&) = delete;
  QXOgreQueryOperation3D& operator=(QXOgreQueryOperation3D const&) = delete;

  QdcUnicodeString const& GetName() const override { return m_strName; }
  /// Begins anew where the query runs already.
  void BeginQuery() override;
  /// Nothing where it does not run.
  void EndQuery() override;
  unsigned char IsResultReady() const override;
  /// 0 while it runs, and before it first ran.
  unsigned int GetPixelCount() override;

  /// Called for each viewport that is drawn while the query runs.
  void Add(std::shared_ptr<QXOgreSampleCount> const& pCount) { m_arrCounts.push_back(pCount); }
  /// The renderer goes: nothing is counted any more.
  void LeaveManager() { m_pManager = nullptr; }

private:
  QdcUnicodeString m_strName;
  /// Null once the renderer has gone.
  QXOgreRenderOperationManager* m_pManager;
  std::vector<std::shared_ptr<QXOgreSampleCount>> m_arrCounts;
  bool m_bRunning;
  bool m_bFinished;
};

}  // namespace QXC
