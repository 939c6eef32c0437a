// Geometry that the tests of the null renderer hand in.
#pragma once

#include <algorithm>
#include <cstring>
#include <initializer_list>
#include <memory>
#include <vector>

#include <QxGraphics3D/renderop/QXRenderOperation3D.h>
#include <QxGraphics3D/renderop/QXRenderOperationMultiIndex.h>

namespace QXC {

/// A square of side 2 about the origin in the plane z = 0, as two triangles in one index range each.
inline std::unique_ptr<QXRenderOperationMultiIndex> MakeSquare() {
  auto pOperation = std::make_unique<QXRenderOperationMultiIndex>();
  auto* const pBlock = new QXVertexBlock;
  unsigned int const nColor = 0x80402010u;
  float fColor = 0.0F;
  std::memcpy(&fColor, &nColor, sizeof(fColor));
  float const arrVertices[] = {-1, -1, 0, fColor, 1, -1, 0, fColor, 1, 1, 0, fColor, -1, 1, 0, fColor};
  pBlock->m_pBuffer = new float[16];
  std::copy_n(arrVertices, 16, pBlock->m_pBuffer);
  pBlock->m_nVertexCount = 4;
  pBlock->m_nStride = 4;
  pBlock->m_nColorOffset = 3;
  pOperation->m_pVertexBlock = pBlock;

  auto* const pFirst = new QXVertexIndexPackage;
  pFirst->m_pIndices = new unsigned short[3]{0, 1, 2};
  pFirst->m_nIndexNum = 3;
  pOperation->SetAt(pFirst, nullptr);
  auto* const pSecond = new QXVertexIndexPackage;
  pSecond->m_nIndexType = 1;
  pSecond->m_pIndices = new unsigned int[4]{9, 0, 2, 3};
  pSecond->m_nStart = 1;
  pSecond->m_nIndexNum = 3;
  pOperation->SetAt(pSecond, nullptr);
  return pOperation;
}

/// Puts the square into a drawable, moved to a place.
inline void PlaceSquare(QXRenderOperation3D& drawable, double dX, double dY, double dZ) {
  drawable.SetRenderOperationMultiIndex(MakeSquare().get());
  QXMatrix4d matModel;
  matModel.SetTrans(QXVector3d(dX, dY, dZ));
  drawable.SetModelMatrix(matModel);
}

}  // namespace QXC
