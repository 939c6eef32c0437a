/// @file
/// Vertex data of one mesh: plain arrays with their counts, dimensions and strides.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcArray.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVertexAttribute.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVertexDeclaration.h>

#include <map>
#include <vector>

namespace QXC {

/// The plain fields of a vertex package, in the order that renderers and streams know.
/// Copying: field by field, pointers as pointers; the package above it makes copies deep.
template <class F, class D>
struct QXVertexDataFields {
  /// Units of texture coordinates and extra declarations.
  static constexpr unsigned int UnitNum = 8;

  /// Bit mask of what the reader of the mesh wants kept. 0x400 survives a merge; the renderer reads the rest.
  unsigned int m_nOptions = 7;
  /// State of the renderer that draws the package.
  unsigned int m_nState = 0;
  /// Numbers a vertex in the arrays of the same name.
  unsigned short m_nVertexDim = 3;
  unsigned short m_nNormalDim = 3;
  unsigned short m_nTangentDim = 3;
  unsigned short m_nBinormalDim = 3;
  unsigned short m_nTexDims[UnitNum] = {2, 2, 2, 2, 2, 2, 2, 2};

  F* m_pVertices = nullptr;
  unsigned int m_nVertexNum = 0;
  unsigned short m_nVertexStride = 0;
  /// First vertex of this package in a larger buffer that a renderer keeps.
  unsigned int m_nVertexStart = 0;
  F* m_pNormals = nullptr;
  unsigned int m_nNormalNum = 0;
  unsigned short m_nNormalStride = 0;
  F* m_pTangents = nullptr;
  unsigned int m_nTangentNum = 0;
  unsigned short m_nTangentStride = 0;
  F* m_pBinormals = nullptr;
  unsigned int m_nBinormalNum = 0;
  unsigned short m_nBinormalStride = 0;
  unsigned int* m_pColors = nullptr;
  unsigned int m_nColorNum = 0;
  unsigned short m_nColorStride = 0;
  unsigned int* m_pSecondColors = nullptr;
  unsigned int m_nSecondColorNum = 0;
  unsigned short m_nSecondColorStride = 0;
  /// Identifiers that picking draws, one a vertex.
  unsigned int* m_pSelectionIDs = nullptr;
  unsigned int m_nSelectionIDNum = 0;
  unsigned short m_nSelectionIDStride = 0;
  /// Four packed bone weights of a byte each, one word a vertex.
  unsigned int* m_pBlendWeights = nullptr;
  unsigned int m_nBlendWeightNum = 0;
  unsigned short m_nBlendWeightStride = 0;
  F* m_pTexCoords[UnitNum] = {};
  unsigned int m_nTexCoordNums[UnitNum] = {};
  unsigned short m_nTexCoordStrides[UnitNum] = {};

  /// Extra elements for a vertex program, one record a unit.
  D m_Declarations[UnitNum];
  /// Layer of an array texture that a unit reads, -1: the unit's texture has no layers.
  float m_fTexLayers[UnitNum] = {-1.0F, -1.0F, -1.0F, -1.0F, -1.0F, -1.0F, -1.0F, -1.0F};
  /// Version of the vertex program's contract that the declarations follow.
  unsigned int m_nDeclarationVersion = 0;
};

/// Vertex arrays of a mesh, each of its own count and dimension, as model readers fill them and static geometry
/// merges them. The operations are compiled into the library for
/// QXVertexDataPackageTemplate<float, QXVertexDeclaration>, the one form that exists.
///
/// Shape:     an array of count n and dimension d holds n x d numbers without gaps, whatever its stride says;
///            colours and other word arrays hold one word a vertex.
/// Ownership: every array is `new[]` and owned; the records in m_arrAttributes are `new` and owned.
/// Copying:   deep; counts without an array stay counts without an array.
/// Threads:   one at a time.
template <class F, class D>
class QXVertexDataPackageTemplate : public QXVertexDataFields<F, D> {
public:
  using Fields = QXVertexDataFields<F, D>;

  QXVertexDataPackageTemplate();
  QXVertexDataPackageTemplate(QXVertexDataPackageTemplate const& other);
  QXVertexDataPackageTemplate& operator=(QXVertexDataPackageTemplate const& other);
  ~QXVertexDataPackageTemplate();

  /// Frees all arrays and records and sets every field to its default.
  void Reset();

  /// Each frees the old array, stores count and stride and makes a zero-filled array of count x dimension
  /// numbers: set the dimension before. A count of 0 gives an empty array that is not null.
  /// Failure: the allocator's exception; the array is then null and its count 0.
  ///
  /// Positions have four zeroed numbers of slack behind the last vertex, because readers take three numbers a
  /// vertex even where the position dimension is 2.
  void SetVertexNum(unsigned int nCount, unsigned short nStride);
  /// A count of 0 leaves the array null.
  void SetNormalNum(unsigned int nCount, unsigned short nStride);
  /// One word a vertex, packed by QDCRGBA.
  void SetColorNum(unsigned int nCount, unsigned short nStride);
  void SetSecondColorNum(unsigned int nCount, unsigned short nStride);
  /// @return 0 with no effect for a unit of 8 or more, else 1
  unsigned char SetTexCoordNum(unsigned int nUnit, unsigned int nCount, unsigned short nStride);

  /// Index of each record of m_arrAttributes by its name.
  std::map<QdcUnicodeString, int> m_mapAttributeIndices;
  /// The objects that share this package: identifier, first vertex and vertex count of each.
  std::vector<unsigned int> m_vecObjectIDs;
  std::vector<unsigned int> m_vecObjectStarts;
  std::vector<unsigned int> m_vecObjectNums;
  QdcArray<QXVertexAttribute*> m_arrAttributes;
  /// 1: some colour is not opaque, so the mesh is drawn with blending.
  unsigned char m_bTransparent = 0;

private:
  void Free();
  void CopyArrays(QXVertexDataPackageTemplate const& other);
  void CopyRecords(QXVertexDataPackageTemplate const& other);
};

extern template class QXGRAPHICS3D_API QXVertexDataPackageTemplate<float, QXVertexDeclaration>;

/// The form in use everywhere.
using QXVertexDataPackage = QXVertexDataPackageTemplate<float, QXVertexDeclaration>;

}  // namespace QXC
