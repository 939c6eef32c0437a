/// @file
/// What the tests of render operations are made of.
#pragma once

#include <QxGraphics3D/renderop/QXRenderOperation.h>
#include <QxGraphics3D/renderop/QXRenderOperationBase.h>

namespace QXC {

inline QXMatrix4d MakeTranslation(double x, double y, double z) {
  QXMatrix4d matrix;
  matrix.SetTrans(QXVector3d(x, y, z));
  return matrix;
}

/// Takes out of a copy what the other copy will free.
inline void Detach(QXRenderOperationBase& operation) {
  operation.m_pMatrix = nullptr;
  operation.m_pVertexIndexPackage = nullptr;
  operation.m_pVertexBlock = nullptr;
  operation.m_pIndexBlock = nullptr;
}

/// An operation whose indices belong to somebody else.
struct QXSharedIndices {
  QXSharedIndices() {
    m_Operation.m_pIndices = m_arrIndices;
    m_Operation.m_nIndexNum = 3;
    m_Operation.m_bIndexShared = 1;
  }
  QXSharedIndices(QXSharedIndices const&) = delete;
  QXSharedIndices& operator=(QXSharedIndices const&) = delete;

  unsigned short m_arrIndices[3] = {1, 2, 3};
  QXRenderOperation m_Operation;
};

}  // namespace QXC
