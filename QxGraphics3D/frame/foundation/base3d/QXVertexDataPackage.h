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

/// Vertex arrays of a mesh, each of its own count and dimension, as model readers fill them and static geometry
/// merges them. The template's operations are compiled into the library for
/// QXVertexDataPackageTemplate<float, QXVertexDeclaration>, the one form that exists.
///
/// Shape:     an array of count n and dimension d holds n x d numbers without gaps, whatever its stride says;
///            colours and other word arrays hold one word a vertex.
/// Ownership: every array is `new[]` and owned; the records in m_arrAttributes are `new` and owned.
/// Copying:   deep; the copy owns arrays of its own.
/// Threads:   one at a time.
template <class F, class D>
class QXVertexDataPackageTemplate {
public:
  /// Units of texture coordinates and extra declarations.
  static constexpr unsigned int UnitNum = 8;

  QXVertexDataPackageTemplate();
  QXVertexDataPackageTemplate(QXVertexDataPackageTemplate const& other);
  QXVertexDataPackageTemplate& operator=(QXVertexDataPackageTemplate const& other);
  ~QXVertexDataPackageTemplate();

  /// Sets every field to its default and forgets the arrays and records *without* freeing them: for one who has
  /// taken them over. Clear frees first.
  void Reset();

  /// Frees all arrays and records, then resets.
  void Clear();

  /// Each frees the old array, stores count and stride and makes a zero-filled array of count x dimension
  /// numbers: the dimension must be set before. A count of 0 gives an empty array that is not null.
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
  /// @return 0 with no effect for a unit of 8 or more, else 1.
  unsigned char SetTexCoordNum(unsigned int nUnit, unsigned int nCount, unsigned short nStride);

  /// Bit mask of what the reader of the mesh wants kept. 0x400 survives a merge; the renderer reads the rest.
  unsigned int m_nOptions;
  /// State of the renderer that draws the package.
  unsigned int m_nState;
  /// Numbers a vertex in the arrays of the same name.
  unsigned short m_nVertexDim;
  unsigned short m_nNormalDim;
  unsigned short m_nTangentDim;
  unsigned short m_nBinormalDim;
  unsigned short m_nTexDims[UnitNum];

  F* m_pVertices;
  unsigned int m_nVertexNum;
  unsigned short m_nVertexStride;
  /// First vertex of this package in a larger buffer that a renderer keeps.
  unsigned int m_nVertexStart;
  F* m_pNormals;
  unsigned int m_nNormalNum;
  unsigned short m_nNormalStride;
  F* m_pTangents;
  unsigned int m_nTangentNum;
  unsigned short m_nTangentStride;
  F* m_pBinormals;
  unsigned int m_nBinormalNum;
  unsigned short m_nBinormalStride;
  unsigned int* m_pColors;
  unsigned int m_nColorNum;
  unsigned short m_nColorStride;
  unsigned int* m_pSecondColors;
  unsigned int m_nSecondColorNum;
  unsigned short m_nSecondColorStride;
  /// Identifiers that picking draws, one a vertex.
  unsigned int* m_pSelectionIDs;
  unsigned int m_nSelectionIDNum;
  unsigned short m_nSelectionIDStride;
  /// Four packed bone weights of a byte each, one word a vertex.
  unsigned int* m_pBlendWeights;
  unsigned int m_nBlendWeightNum;
  unsigned short m_nBlendWeightStride;
  F* m_pTexCoords[UnitNum];
  unsigned int m_nTexCoordNums[UnitNum];
  unsigned short m_nTexCoordStrides[UnitNum];

  /// Extra elements for a vertex program, one record a unit.
  D m_Declarations[UnitNum];
  /// Layer of an array texture that a unit reads, -1: the unit's texture has no layers.
  float m_fTexLayers[UnitNum];
  /// Version of the vertex program's contract that the declarations follow.
  unsigned int m_nDeclarationVersion;

  /// Index of each record of m_arrAttributes by its name.
  std::map<QdcUnicodeString, int> m_mapAttributeIndices;
  /// The objects that share this package: identifier, first vertex and vertex count of each.
  std::vector<unsigned int> m_vecObjectIDs;
  std::vector<unsigned int> m_vecObjectStarts;
  std::vector<unsigned int> m_vecObjectNums;
  QdcArray<QXVertexAttribute*> m_arrAttributes;
  /// 1: some colour is not opaque, so the mesh is drawn with blending.
  unsigned char m_bTransparent;

private:
  void Free();
  void CopyArrays(QXVertexDataPackageTemplate const& other);
  void CopyRecords(QXVertexDataPackageTemplate const& other);
};

extern template class QXGRAPHICS3D_API QXVertexDataPackageTemplate<float, QXVertexDeclaration>;

/// The form in use everywhere.
using QXVertexDataPackage = QXVertexDataPackageTemplate<float, QXVertexDeclaration>;

}  // namespace QXC
