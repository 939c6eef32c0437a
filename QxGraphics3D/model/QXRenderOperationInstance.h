/// @file
/// One use of a shared mesh.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcArray.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>
#include <QxGraphics3D/model/QXROInstancePtr.h>

namespace QXC {

class QXMatrix4d;

/// A name, a shared mesh and the places where it stands.
/// Ownership: the mesh is shared, the matrices stay their owner's and must live as long as they stand here.
/// Copying:   the mesh is shared, the list is copied, the matrices are the same.
/// Threads:   the render thread, as the mesh.
class QXGRAPHICS3D_API QXRenderOperationInstance {
public:
  QXRenderOperationInstance();
  QXRenderOperationInstance(QXRenderOperationInstance const& other);
  QXRenderOperationInstance& operator=(QXRenderOperationInstance const& other);
  /// Deletes no matrix.
  ~QXRenderOperationInstance();

  QdcUnicodeString& GetName() { return m_strName; }
  QdcUnicodeString const& GetName() const { return m_strName; }
  void SetName(QdcUnicodeString strName) { m_strName = static_cast<QdcUnicodeString&&>(strName); }
  QXROInstancePtr& GetROInstancePtr() { return m_ROInstancePtr; }
  QXROInstancePtr const& GetROInstancePtr() const { return m_ROInstancePtr; }
  void SetROInstancePtr(QXROInstancePtr const& pInstance) { m_ROInstancePtr = pInstance; }
  /// World matrices, row vectors.
  QdcArray<QXMatrix4d*>& GetMatrixArray() { return m_arrMatrices; }
  QdcArray<QXMatrix4d*> const& GetMatrixArray() const { return m_arrMatrices; }
  void SetMatrixArray(QdcArray<QXMatrix4d*> const& arrMatrices) { m_arrMatrices = arrMatrices; }
  void AddMatrix(QXMatrix4d* pMatrix) { m_arrMatrices.Add(pMatrix); }

protected:
  QdcUnicodeString m_strName;
  QXROInstancePtr m_ROInstancePtr;
  QdcArray<QXMatrix4d*> m_arrMatrices;
};

}  // namespace QXC
