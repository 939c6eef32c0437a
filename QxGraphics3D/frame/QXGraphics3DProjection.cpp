// The arithmetic of QXGraphics3D between world, window and viewport.
#include <QxGraphics3D/frame/QXGraphics3D.h>

#include <QxGraphics3D/frame/QXRenderTarget.h>
#include <QxGraphics3D/frame/QXViewport.h>
#include <QxGraphics3D/frame/foundation/base/QdcNumeric.h>

namespace QXC {

namespace {

// A point that close to the eye plane has no position: dividing would give an arbitrary huge one. The bound itself is
// still accepted.
bool IsDegenerate(double dW) {
  return dW > -1e-10 && dW < 1e-10;
}

struct FlatView {
  double m_arrModel[16];
  double m_arrProjection[16];
  int m_arrViewport[4];

  FlatView(QXGraphics3D const& graphics, QXViewport const& viewport)
      : m_arrViewport{viewport.GetActualLeft(), viewport.GetActualBottom(), viewport.GetActualWidth(),
            viewport.GetActualHeight()} {
    QXGraphics3D::MakeRowGLMatrix(m_arrModel, graphics.m_matView);
    QXGraphics3D::MakeRowGLMatrix(m_arrProjection, graphics.m_matProjection);
  }
};

// Edges that leave the range of int are held at its end, where no pixel can be.
QdcRect PixelRect(QXViewport const& viewport) {
  int const nLeft = viewport.GetActualLeft();
  int const nBottom = viewport.GetActualBottom();
  return QdcRect(nLeft, nBottom, ToInt(static_cast<double>(nLeft) + viewport.GetActualWidth()),
      ToInt(static_cast<double>(nBottom) + viewport.GetActualHeight()));
}

}  // namespace

void QXGraphics3D::MakeColGLMatrix(double* pOut, QXMatrix4d const& matrix) {
  for (int nRow = 0; nRow < 4; ++nRow) {
    for (int nColumn = 0; nColumn < 4; ++nColumn) pOut[4 * nRow + nColumn] = matrix[nColumn][nRow];
  }
}

void QXGraphics3D::MakeRowGLMatrix(double* pOut, QXMatrix4d const& matrix) {
  for (int nRow = 0; nRow < 4; ++nRow) {
    for (int nColumn = 0; nColumn < 4; ++nColumn) pOut[4 * nRow + nColumn] = matrix[nRow][nColumn];
  }
}

int QXGraphics3D::Project(double dX, double dY, double dZ, double const* pModel, double const* pProjection,
    int const* pViewport, double* pWinX, double* pWinY, double* pWinZ) {
  double const arrPoint[4] = {dX, dY, dZ, 1.0};
  double arrEye[4];
  double arrClip[4];
  QXMatrix4d::MultMatrixVecd(pModel, arrPoint, arrEye);
  QXMatrix4d::MultMatrixVecd(pProjection, arrEye, arrClip);
  if (IsDegenerate(arrClip[3])) return 0;
  double const dUnitX = arrClip[0] / arrClip[3] * 0.5 + 0.5;
  double const dUnitY = arrClip[1] / arrClip[3] * 0.5 + 0.5;
  *pWinX = dUnitX * pViewport[2] + pViewport[0];
  *pWinY = dUnitY * pViewport[3] + pViewport[1];
  *pWinZ = arrClip[2] / arrClip[3] * 0.5 + 0.5;
  return 1;
}

void QXGraphics3D::Project(QXVector3d const& vecWorld, QXVector3d& vecWindow) const {
  if (!m_pViewport) return;
  FlatView const view(*this, *m_pViewport);
  double dWinX = 0.0;
  double dWinY = 0.0;
  double dWinZ = 0.0;
  Project(vecWorld.x, vecWorld.y, vecWorld.z, view.m_arrModel, view.m_arrProjection, view.m_arrViewport, &dWinX, &dWinY,
      &dWinZ);
  vecWindow = QXVector3d(dWinX, dWinY, dWinZ);
}

int QXGraphics3D::UnProject(double dWinX, double dWinY, double dWinZ, double const* pModel, double const* pProjection,
    int const* pViewport, double* pObjX, double* pObjY, double* pObjZ) {
  double arrInverse[16];
  QXMatrix4d::MultMatricesd(pModel, pProjection, arrInverse);
  if (QXMatrix4d::InvertMatrixd(arrInverse, arrInverse) == 0) return 0;
  double const dUnitX = (dWinX - pViewport[0]) / pViewport[2];
  double const dUnitY = (dWinY - pViewport[1]) / pViewport[3];
  double const arrClip[4] = {dUnitX * 2.0 - 1.0, dUnitY * 2.0 - 1.0, dWinZ * 2.0 - 1.0, 1.0};
  double arrPoint[4];
  QXMatrix4d::MultMatrixVecd(arrInverse, arrClip, arrPoint);
  if (IsDegenerate(arrPoint[3])) return 0;
  *pObjX = arrPoint[0] / arrPoint[3];
  *pObjY = arrPoint[1] / arrPoint[3];
  *pObjZ = arrPoint[2] / arrPoint[3];
  return 1;
}

void QXGraphics3D::UnProject(QXVector3d const& vecWindow, QXVector3d& vecWorld) const {
  QXViewport* pViewport = nullptr;
  if (m_pActiveRenderTarget) {
    pViewport = GetViewportByLogicalPosition(QdcPoint(ToInt(vecWindow.x), ToInt(vecWindow.y)));
  }
  if (!pViewport) pViewport = m_pViewport;
  if (!pViewport) return;
  FlatView const view(*this, *pViewport);
  double dX = 0.0;
  double dY = 0.0;
  double dZ = 0.0;
  UnProject(
      vecWindow.x, vecWindow.y, vecWindow.z, view.m_arrModel, view.m_arrProjection, view.m_arrViewport, &dX, &dY, &dZ);
  vecWorld = QXVector3d(dX, dY, dZ);
}

double QXGraphics3D::ComputerOnePix2RealLength(QXVector3d const& vecPoint) const {
  QXVector3d vecWindow;
  QXVector3d vecWorld;
  Project(vecPoint, vecWindow);
  vecWindow.y -= 1.0;
  UnProject(vecWindow, vecWorld);
  return (vecPoint - vecWorld).Length();
}

QXViewport* QXGraphics3D::GetViewportByLogicalPosition(QdcPoint const& pntLogical) const {
  unsigned int const nCount = m_pActiveRenderTarget->GetNumViewports();
  for (unsigned int nIndex = 0; nIndex < nCount; ++nIndex) {
    QXViewport* const pViewport = m_pActiveRenderTarget->GetViewport(static_cast<unsigned short>(nIndex));
    if (pViewport && PixelRect(*pViewport).PtInRect(pntLogical)) return pViewport;
  }
  return nullptr;
}

QXViewport* QXGraphics3D::GetViewportByMousePosition(QdcPoint const& pntMouse) const {
  double const dY = static_cast<double>(m_pActiveRenderTarget->GetHeight()) - pntMouse.y - 1.0;
  return GetViewportByLogicalPosition(QdcPoint(pntMouse.x, ToInt(dY)));
}

}  // namespace QXC
