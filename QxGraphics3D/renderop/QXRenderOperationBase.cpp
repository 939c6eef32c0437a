#include <QxGraphics3D/renderop/QXRenderOperationBase.h>

namespace QXC {

QXRenderOperationBase::QXRenderOperationBase() {
  m_Bounds.SetNULL();
}

// The state fields keep their defaults: a copy starts as an operation that no renderer has looked at.
QXRenderOperationBase::QXRenderOperationBase(QXRenderOperationBase const& other) : QXRenderOperationBase() {
  *this = other;
}

QXRenderOperationBase& QXRenderOperationBase::operator=(QXRenderOperationBase const& other) {
  if (this == &other) return *this;
  m_eType = other.m_eType;
  m_pMatrix = other.m_pMatrix;
  m_Bounds = other.m_Bounds;
  m_pVertexIndexPackage = other.m_pVertexIndexPackage;
  m_pVertexBlock = other.m_pVertexBlock;
  m_pIndexBlock = other.m_pIndexBlock;
  m_Color = other.m_Color;
  return *this;
}

QXRenderOperationBase::~QXRenderOperationBase() {
  delete m_pMatrix;
  delete m_pVertexIndexPackage;
  delete m_pVertexBlock;
  delete m_pIndexBlock;
}

QXRenderOperationType QXRenderOperationBase::GetRenderOperationType() const {
  return m_eType;
}

void QXRenderOperationBase::SetRenderOperationType(QXRenderOperationType eType) {
  m_eType = eType;
}

QXMatrix4d* QXRenderOperationBase::GetMatrix() const {
  return m_pMatrix;
}

void QXRenderOperationBase::SetMatrix(QXMatrix4d& matModel) {
  // The argument may be *m_pMatrix, so the old matrix lives until the copy is made.
  auto* pMatrix = new QXMatrix4d(matModel);
  delete m_pMatrix;
  m_pMatrix = pMatrix;
}

QXBoundingBox& QXRenderOperationBase::GetBoundingBox() {
  return m_Bounds;
}

void QXRenderOperationBase::SetBoundingBox(QXBoundingBox& box) {
  m_Bounds = box;
}

}  // namespace QXC
