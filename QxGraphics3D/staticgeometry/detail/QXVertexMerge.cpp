#include <QxGraphics3D/staticgeometry/detail/QXVertexMerge.h>

#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector4d.h>
#include <QxGraphics3D/staticgeometry/QXStaticGeometryBucket.h>
#include <QxGraphics3D/staticgeometry/detail/QXMappedMemory.h>

#include <algorithm>

namespace QXC::detail {

namespace {

constexpr unsigned int OpaqueWhite = 0xFFFFFFFFU;
/// Points that are transformed at a time before they are written to where they belong.
constexpr std::size_t BlockPoints = 256;

using Transform = decltype(QXMergeKernels::m_pfnTransformPoints);

/// Points of three numbers that stay points of three numbers.
void WriteThrees(QXArrayWriter<float>& writer, Transform pfnTransform, QXMatrix4d const& matrix, float const* pPoints,
    std::size_t nNum, QXAhead ahead) {
  alignas(64) float arrBlock[3 * BlockPoints];
  QXPointTransform const transform(matrix);
  for (std::size_t i = 0; i < nNum; i += BlockPoints) {
    std::size_t const num = std::min(nNum - i, BlockPoints);
    pfnTransform(transform, pPoints + 3 * i, arrBlock, num,
        {static_cast<char const*>(ahead.m_pFirst) + 12 * i, static_cast<char const*>(ahead.m_pSecond) + 8 * i});
    writer.Write(arrBlock, 3 * num);
  }
}

/// Points of any number of numbers: what a point lacks is (0, 0, 0, 1), what it has beyond four numbers is dropped.
template <class Change>
void WritePoints(QXArrayWriter<float>& writer, std::size_t nDim, float const* pPoints, std::size_t nPointDim,
    std::size_t nNum, Change change) {
  for (std::size_t i = 0; i < nNum; ++i) {
    QXVector4d point(0.0, 0.0, 0.0, 1.0);
    std::copy_n(pPoints + i * nPointDim, std::min<std::size_t>(nPointDim, 4), point.v);
    change(point);
    float const arrNumbers[4] = {static_cast<float>(point[0]), static_cast<float>(point[1]),
        static_cast<float>(point[2]), static_cast<float>(point[3])};
    writer.Write(arrNumbers, std::min<std::size_t>(nDim, 4));
    if (nDim > 4) writer.Fill(0.0F, nDim - 4);
  }
}

/// What is fetched ahead: any address does, if there is nothing to fetch.
void const* OneOf(void const* pWanted, void const* pOther) {
  return pWanted ? pWanted : pOther;
}

QXVector3d GetThree(QXVector4d const& point) {
  return {point[0], point[1], point[2]};
}

void SetThree(QXVector4d& point, QXVector3d const& three) {
  point[0] = three.x;
  point[1] = three.y;
  point[2] = three.z;
}

}  // namespace

bool IsPolyline(QXStaticGeometryBucket const& bucket) {
  return bucket.m_mapPasses.count(L"PolyLine") != 0;
}

decltype(QXMergeKernels::m_pfnStream) QXMergeOptions::ChooseStream(void const* pArray, std::size_t nBytes) const {
  return m_bStream && IsMapped(pArray, nBytes) ? m_pKernels->m_pfnStream : nullptr;
}

QXVertexMerge::QXVertexMerge(QXStaticGeometryBucket& bucket, QXMergeOptions const& options)
    : m_bucket(bucket), m_options(options), m_bPolyline(IsPolyline(bucket)) {
  QXVertexDataPackage const& p = *bucket.m_pVertexPackage;
  auto const makeWriter = [&]<class T>(T* pItems, unsigned int nNum, std::size_t nDim) {
    return QXArrayWriter<T>(pItems, nNum * nDim, options.ChooseStream(pItems, nNum * nDim * sizeof(T)));
  };
  m_positions = makeWriter(p.m_pVertices, p.m_nVertexNum, p.m_nVertexDim);
  m_normals = makeWriter(p.m_pNormals, p.m_nNormalNum, p.m_nNormalDim);
  m_colors = makeWriter(p.m_pColors, p.m_nColorNum, 1);
  m_secondColors = makeWriter(p.m_pSecondColors, p.m_nSecondColorNum, 1);
  // Written as usual: the coordinates are soon read again, to be transformed.
  for (unsigned int unit = 0; unit < QXVertexDataPackage::UnitNum; ++unit)
    m_arrCoords[unit] =
        Numbers(p.m_pTexCoords[unit], std::size_t{p.m_nTexCoordNums[unit]} * p.m_nTexDims[unit], nullptr);
}

void QXVertexMerge::Run() {
  for (std::size_t i = 0; i < m_bucket.m_vecPackages.size(); ++i) {
    QXVertexDataPackage const* const pMesh = m_bucket.m_vecPackages[i];
    if (!pMesh) continue;
    m_pNext = i + 1 < m_bucket.m_vecPackages.size() ? m_bucket.m_vecPackages[i + 1] : nullptr;
    bool const bHasMatrix = i < m_bucket.m_vecMatrices.size();
    CopyMesh(*pMesh, bHasMatrix ? m_bucket.m_vecMatrices[i] : QXMatrix4d::IDENTITY);
  }
  m_positions.Finish();
  m_normals.Finish();
  m_colors.Finish();
  m_secondColors.Finish();
  for (Numbers& coords : m_arrCoords) coords.Finish();
}

void QXVertexMerge::CopyMesh(QXVertexDataPackage const& mesh, QXMatrix4d const& matModel) {
  QXMatrix4d transform = matModel * m_options.m_matInverse;
  CopyPositions(mesh, transform);
  // Directions have no place. The directions of a polyline are points.
  if (!m_bPolyline && !m_options.m_bNoTransform) transform.SetTrans(QXVector3d::ZERO);
  CopyNormals(mesh, transform);
  CopyColors(mesh.m_pColors, mesh.m_nColorNum, mesh.m_nVertexNum, m_colors);
  CopyColors(mesh.m_pSecondColors, mesh.m_nSecondColorNum, mesh.m_nVertexNum, m_secondColors);
  for (unsigned int unit = 0; unit < QXVertexDataPackage::UnitNum; ++unit) {
    if (m_bucket.m_pVertexPackage->m_nTexCoordNums[unit] != 0) CopyCoords(mesh, unit, transform);
  }
}

void QXVertexMerge::CopyPositions(QXVertexDataPackage const& mesh, QXMatrix4d const& transform) {
  std::size_t const dim = m_bucket.m_pVertexPackage->m_nVertexDim;
  std::size_t const num = mesh.m_nVertexNum;
  bool const bThrees = dim == 3 && mesh.m_nVertexDim == 3;
  if (!mesh.m_pVertices) {
    m_positions.Fill(0.0F, num * dim);
  } else if (bThrees && m_options.m_bNoTransform) {
    m_positions.Write(mesh.m_pVertices, num * dim);
  } else if (bThrees) {
    WriteThrees(m_positions, m_options.m_pKernels->m_pfnTransformPoints, transform, mesh.m_pVertices, num,
        {OneOf(mesh.m_pNormals, mesh.m_pVertices), OneOf(mesh.m_pTexCoords[0], mesh.m_pVertices)});
  } else {
    WritePoints(m_positions, dim, mesh.m_pVertices, mesh.m_nVertexDim, num, [&](QXVector4d& point) {
      if (!m_options.m_bNoTransform) SetThree(point, QXVector3d::MultiplyMatrix(GetThree(point), transform));
    });
  }
}

void QXVertexMerge::CopyNormals(QXVertexDataPackage const& mesh, QXMatrix4d const& transform) {
  std::size_t const dim = m_bucket.m_pVertexPackage->m_nNormalDim;
  std::size_t const num = mesh.m_nNormalNum;
  bool const bThrees = dim == 3 && mesh.m_nNormalDim == 3;
  // Hosts give a type to meshes whose normals are in the base frame already.
  bool const bTransform = m_bucket.m_nType < 0 && !m_options.m_bNoTransform;
  if (!mesh.m_pNormals) {
    m_normals.Fill(0.0F, mesh.m_nVertexNum * dim);
  } else if (bThrees && !bTransform) {
    m_normals.Write(mesh.m_pNormals, num * dim, OneOf(m_pNext ? m_pNext->m_pVertices : nullptr, mesh.m_pNormals));
  } else if (bThrees) {
    QXMergeKernels const& kernels = *m_options.m_pKernels;
    WriteThrees(m_normals, m_bPolyline ? kernels.m_pfnTransformPoints : kernels.m_pfnTransformNormals, transform,
        mesh.m_pNormals, num, {OneOf(m_pNext ? m_pNext->m_pVertices : nullptr, mesh.m_pNormals), mesh.m_pNormals});
  } else {
    WritePoints(m_normals, dim, mesh.m_pNormals, mesh.m_nNormalDim, num, [&](QXVector4d& normal) {
      if (!bTransform) return;
      QXVector3d turned = QXVector3d::MultiplyMatrix(GetThree(normal), transform);
      SetThree(normal, m_bPolyline ? turned : turned.Normalize());
    });
  }
}

/// The cursor runs by what the mesh brings: a mesh with fewer colours than vertices moves the colours of all later
/// ones.
void QXVertexMerge::CopyColors(unsigned int const* pColors, std::size_t nColors, std::size_t nVertices, Words& writer) {
  if (nColors == 0)
    writer.Fill(OpaqueWhite, nVertices);
  else if (pColors)
    writer.Write(pColors, nColors);
  else
    writer.Fill(0, nColors);
}

void QXVertexMerge::CopyCoords(QXVertexDataPackage const& mesh, unsigned int nUnit, QXMatrix4d const& transform) {
  Numbers& writer = m_arrCoords[nUnit];
  std::size_t const dim = m_bucket.m_pVertexPackage->m_nTexDims[nUnit];
  std::size_t const meshDim = mesh.m_nTexDims[nUnit];
  std::size_t const num = mesh.m_nVertexNum;
  float const* const pCoords = mesh.m_pTexCoords[nUnit];
  std::size_t const there = pCoords ? std::min<std::size_t>(mesh.m_nTexCoordNums[nUnit], num) : 0;
  if (there > 0 && m_bPolyline && nUnit == 0 && meshDim == 3) {
    WritePoints(writer, dim, pCoords, meshDim, there, [&](QXVector4d& point) {
      SetThree(point, QXVector3d::MultiplyMatrix(GetThree(point), transform));
      point[3] = 0.0;
    });
  } else if (there > 0 && meshDim == dim) {
    writer.Write(pCoords, there * dim);
  } else {
    for (std::size_t i = 0; i < there; ++i) {
      writer.Write(pCoords + i * meshDim, std::min(meshDim, dim));
      if (dim > meshDim) writer.Fill(0.0F, dim - meshDim);
    }
  }
  writer.Fill(0.0F, (num - there) * dim);
}

}  // namespace QXC::detail
