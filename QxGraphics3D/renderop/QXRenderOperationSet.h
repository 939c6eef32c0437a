/// @file
/// A plain list of render operations.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcArray.h>

namespace QXC {

class QXRenderOperation;

/// Render operations that belong together, with three state numbers for the renderer.
/// Ownership: the operations are not owned; destroying the set deletes none of them.
/// Copying:   the numbers and the pointers.
class QXGRAPHICS3D_API QXRenderOperationSet {
public:
  QXRenderOperationSet();
  QXRenderOperationSet(QXRenderOperationSet const& other);
  QXRenderOperationSet& operator=(QXRenderOperationSet const& other);
  ~QXRenderOperationSet();

  int m_nMode0 = 0;
  int m_nMode1 = 3;
  int m_nMode2 = 3;
  QdcArray<QXRenderOperation*> m_arrRenderOperations;
};

}  // namespace QXC
