#include <examples/gallery/QXGalleryMesh.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <numbers>

#include <QxGraphics3D/frame/foundation/base/QdcColor.h>
#include <QxGraphics3D/renderop/QXTexCoordBlock.h>
#include <QxGraphics3D/renderop/QXVertexBlock.h>
#include <QxGraphics3D/renderop/QXVertexIndexPackage.h>

namespace QXGallery {

using QXC::QXColorValue3D;
using QXC::QXVector3d;

namespace {

constexpr int SLICES = 48;
constexpr int RINGS = 24;
constexpr unsigned short STRIDE = 7;

unsigned int ToWord(QXColorValue3D const& color) {
  auto const channel = [](double d) {
    return static_cast<unsigned char>(std::lround(std::clamp(d, 0.0, 1.0) * 255.0));
  };
  return QDC::QDCRGBA(channel(color.r), channel(color.g), channel(color.b), channel(color.a));
}

double AngleOf(int nPart, int nParts) {
  return 2.0 * std::numbers::pi * nPart / nParts;
}

}  // namespace

unsigned int QXGalleryMesh::AddCorner(
    QXVector3d const& vecPosition, QXVector3d const& vecNormal, QXColorValue3D const& color, double dU, double dV) {
  m_arrCorners.push_back({vecPosition, vecNormal, ToWord(color), static_cast<float>(dU), static_cast<float>(dV)});
  return static_cast<unsigned int>(m_arrCorners.size() - 1);
}

void QXGalleryMesh::AddStrip(unsigned int nLower, unsigned int nUpper, unsigned int nCount) {
  for (unsigned int i = 0; i + 1 < nCount; ++i)
    for (unsigned int const n : {nLower + i, nLower + i + 1, nUpper + i + 1, nLower + i, nUpper + i + 1, nUpper + i})
      m_arrIndices.push_back(n);
}

QXGalleryMesh& QXGalleryMesh::AddQuad(
    QXVector3d const& a, QXVector3d const& b, QXVector3d const& c, QXVector3d const& d, QXColorValue3D const& color) {
  QXVector3d vecNormal = (b - a).CrossProduct(d - a);
  vecNormal.Normalize();
  unsigned int const nFirst = AddCorner(a, vecNormal, color, 0.0, 1.0);
  AddCorner(b, vecNormal, color, 1.0, 1.0);
  AddCorner(c, vecNormal, color, 1.0, 0.0);
  AddCorner(d, vecNormal, color, 0.0, 0.0);
  for (unsigned int const n : {0U, 1U, 2U, 0U, 2U, 3U}) m_arrIndices.push_back(nFirst + n);
  return *this;
}

QXGalleryMesh& QXGalleryMesh::AddBox(QXVector3d const& vecMin, QXVector3d const& vecMax, QXColorValue3D const& color) {
  auto const corner = [&](int nX, int nY, int nZ) {
    return QXVector3d(nX ? vecMax.x : vecMin.x, nY ? vecMax.y : vecMin.y, nZ ? vecMax.z : vecMin.z);
  };
  AddQuad(corner(0, 0, 0), corner(1, 0, 0), corner(1, 0, 1), corner(0, 0, 1), color);
  AddQuad(corner(1, 0, 0), corner(1, 1, 0), corner(1, 1, 1), corner(1, 0, 1), color);
  AddQuad(corner(1, 1, 0), corner(0, 1, 0), corner(0, 1, 1), corner(1, 1, 1), color);
  AddQuad(corner(0, 1, 0), corner(0, 0, 0), corner(0, 0, 1), corner(0, 1, 1), color);
  AddQuad(corner(0, 0, 1), corner(1, 0, 1), corner(1, 1, 1), corner(0, 1, 1), color);
  return AddQuad(corner(0, 1, 0), corner(1, 1, 0), corner(1, 0, 0), corner(0, 0, 0), color);
}

QXGalleryMesh& QXGalleryMesh::AddFloor(int nHalfSize, QXColorValue3D const& light, QXColorValue3D const& dark) {
  for (int y = -nHalfSize; y < nHalfSize; ++y)
    for (int x = -nHalfSize; x < nHalfSize; ++x)
      AddQuad({1.0 * x, 1.0 * y, 0.0}, {x + 1.0, 1.0 * y, 0.0}, {x + 1.0, y + 1.0, 0.0}, {1.0 * x, y + 1.0, 0.0},
          (x + y) % 2 == 0 ? light : dark);
  return *this;
}

QXGalleryMesh& QXGalleryMesh::AddSphere(QXVector3d const& vecCenter, double dRadius, QXColorValue3D const& color) {
  auto const nFirst = static_cast<unsigned int>(m_arrCorners.size());
  for (int i = 0; i <= RINGS; ++i) {
    double const dLatitude = std::numbers::pi * i / RINGS - 0.5 * std::numbers::pi;
    for (int k = 0; k <= SLICES; ++k) {
      double const dAngle = AngleOf(k, SLICES);
      QXVector3d const vecOut(
          std::cos(dLatitude) * std::cos(dAngle), std::cos(dLatitude) * std::sin(dAngle), std::sin(dLatitude));
      QXVector3d const vecPoint(dRadius * vecOut.x, dRadius * vecOut.y, dRadius * vecOut.z);
      AddCorner(vecCenter + vecPoint, vecOut, color, 1.0 * k / SLICES, 1.0 - 1.0 * i / RINGS);
    }
  }
  constexpr unsigned int ROW = SLICES + 1;
  for (unsigned int i = 0; i < RINGS; ++i) AddStrip(nFirst + i * ROW, nFirst + (i + 1) * ROW, ROW);
  return *this;
}

QXGalleryMesh& QXGalleryMesh::AddCylinder(
    QXVector3d const& vecFoot, double dRadius, double dTopRadius, double dHeight, QXColorValue3D const& color) {
  auto const nFirst = static_cast<unsigned int>(m_arrCorners.size());
  constexpr unsigned int ROW = SLICES + 1;
  // The side's two rows, then the lid's edge and its middle.
  for (unsigned int nRow = 0; nRow < 4; ++nRow) {
    double const dAround = nRow == 0 ? dRadius : nRow < 3 ? dTopRadius : 0.0;
    for (int k = 0; k <= SLICES; ++k) {
      double const dCos = std::cos(AngleOf(k, SLICES));
      double const dSin = std::sin(AngleOf(k, SLICES));
      QXVector3d vecNormal =
          nRow < 2 ? QXVector3d(dHeight * dCos, dHeight * dSin, dRadius - dTopRadius) : QXVector3d(0, 0, 1);
      vecNormal.Normalize();
      QXVector3d const vecPoint(dAround * dCos, dAround * dSin, nRow == 0 ? 0.0 : dHeight);
      AddCorner(vecFoot + vecPoint, vecNormal, color, 1.0 * k / SLICES, nRow == 0 ? 1.0 : 0.0);
    }
  }
  AddStrip(nFirst, nFirst + ROW, ROW);
  AddStrip(nFirst + 2 * ROW, nFirst + 3 * ROW, ROW);
  return *this;
}

std::unique_ptr<QXC::QXRenderOperationMultiIndex> QXGalleryMesh::MakeOperation() const {
  auto pOperation = std::make_unique<QXC::QXRenderOperationMultiIndex>();
  auto const nVertices = static_cast<unsigned int>(m_arrCorners.size());
  // The operation owns what it is given, arrays from new among it.
  auto* const pBlock = pOperation->m_pVertexBlock = new QXC::QXVertexBlock;
  pBlock->m_nVertexCount = nVertices;
  pBlock->m_nStride = STRIDE;
  pBlock->m_nNormalOffset = 3;
  pBlock->m_nColorOffset = 6;
  float* pVertex = pBlock->m_pBuffer = new float[m_arrCorners.size() * STRIDE];
  auto* const pCoords = pOperation->m_pTexCoordBlock = new QXC::QXTexCoordBlock;
  float* pCoord = pCoords->m_pBuffers[0] = new float[m_arrCorners.size() * 2];
  pCoords->m_nCounts[0] = nVertices;
  for (Corner const& corner : m_arrCorners) {
    for (QXVector3d const& vec : {corner.m_vecPosition, corner.m_vecNormal})
      for (double const d : {vec.x, vec.y, vec.z}) *pVertex++ = static_cast<float>(d);
    *pVertex++ = std::bit_cast<float>(corner.m_nColor);
    *pCoord++ = corner.m_fU;
    *pCoord++ = corner.m_fV;
  }
  auto* const pRange = new QXC::QXVertexIndexPackage;
  pRange->m_nIndexType = 1;
  pRange->m_nIndexNum = static_cast<unsigned int>(m_arrIndices.size());
  auto* const pIndices = new unsigned int[m_arrIndices.size()];
  std::copy(m_arrIndices.begin(), m_arrIndices.end(), pIndices);
  pRange->m_pIndices = pIndices;
  pOperation->SetAt(pRange, nullptr);
  return pOperation;
}

QXGalleryMesh MakeYard() {
  QXGalleryMesh mesh;
  mesh.AddFloor(6, {0.8, 0.82, 0.78, 1.0}, {0.62, 0.66, 0.6, 1.0}).AddBox({-3.0, -1.0, 0.0}, {-1.0, 1.0, 1.6}, BRICK);
  mesh.AddCylinder({2.0, 1.5, 0.0}, 0.8, 0.8, 2.0, CHALK).AddCylinder({2.0, 1.5, 2.0}, 1.0, 0.0, 1.2, SLATE);
  return mesh.AddCylinder({0.5, -2.0, 0.0}, 0.7, 0.0, 2.2, LEAF).AddSphere({3.2, -1.6, 0.7}, 0.7, SLATE);
}

}  // namespace QXGallery
