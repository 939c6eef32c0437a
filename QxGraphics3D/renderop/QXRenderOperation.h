/// @file
/// The self-contained CPU buffers of one drawable.
#pragma once

#include <cstddef>

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcRect.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXColorValue3D.h>
#include <QxGraphics3D/renderop/TextureVertex.h>

namespace QXC {

class QXTexture;

/// Plain arrays of positions, normals, texture coordinates, colours and 16-bit indices of one drawable, and the
/// state that a renderer reads when it turns them into buffers of its own. Nothing in the library draws them.
/// The numbered state fields are fixed in order, width, default and copy rule; the renderer gives them meaning.
///
/// Shape:     positions 3 floats a vertex, whatever m_nVertexDim says; normals 3 floats; texture coordinates 2
///            floats; colours one QDCRGBA word an entry; indices one 16-bit word.
/// Units:     setters take doubles and narrow each number to float when they store it. Coordinates far from the
///            origin belong into a matrix, not into the vertices.
/// Ownership: the arrays are `new[]` and owned, the indices unless m_bIndexShared is set; textures are counted
///            by hand, see the copy operations; m_pExternalBuffer is never owned.
/// Threads:   one at a time.
/// Cost:      an array is allocated once at its final size; setters are one store a number and check nothing.
class QXGRAPHICS3D_API QXRenderOperation {
public:
  /// Units of texture coordinates and textures.
  static constexpr unsigned int UnitNum = 8;

  QXRenderOperation();
  /// @param nIgnored  kept for callers of five arguments; nothing reads it
  QXRenderOperation(unsigned char bOption, int nMode0, int nMode1, int nIgnored, int nMode2);
  /// Deep copy that starts dirty and without a matrix. It shares the textures *without* taking references: for a
  /// short-lived copy that never outlives the source.
  QXRenderOperation(QXRenderOperation const& other);
  /// Deep copy of the arrays that takes a reference on each texture; the destination keeps its own matrix and
  /// dirty mark, and releases no texture that it held. Nothing happens on self-assignment.
  QXRenderOperation& operator=(QXRenderOperation const& other);

  // Slot order is the contract with plug-ins: never reorder, never insert; append only with a major version.
  virtual ~QXRenderOperation();

  /// Each frees the arrays that it names, makes uninitialised ones of the new size and marks the operation as
  /// changed; old contents are lost, arrays not named stay. A count of 0 gives empty arrays that are not null.
  /// Failure: the allocator's exception; an array that could not be made is null and its count 0.
  ///
  /// Positions.
  void SetVertexNum(unsigned int nNum);
  /// Positions and normals.
  void SetVertexNormalNum(unsigned int nNum);
  /// Positions and coordinates of unit 0, which becomes the only unit in use.
  void SetTexVertexNum(unsigned int nNum);
  /// Positions, normals and coordinates of unit 0, which becomes the only unit in use.
  void SetVertexNormTextureNum(unsigned int nNum);
  /// Indices. A shared array is let go of, not freed, and the new one is owned.
  void SetIndexNum(unsigned int nNum);
  /// Colours. m_nDiffuseColorNum stays as it is: a host that wants the colours copied sets it by hand.
  void SetDiffuseColorNum(unsigned int nNum);

  /// Counts only, for a caller that attaches arrays of its own: allocates nothing, marks nothing.
  void InitIndexNum(unsigned int nNum);
  /// Sets the count of the vertices and of unit 0, which becomes the only unit in use.
  void InitTexVertexNum(unsigned int nNum);

  /// Store one entry into the arrays allocated above. The index is not checked.
  void SetVertexValue(unsigned int nIndex, double x, double y, double z);
  void SetIndexValue(unsigned int nIndex, unsigned short nValue);
  void SetTexVertexValue(unsigned int nIndex, TextureVertex const& vertex);
  void SetTexVertexValue(unsigned int nIndex, QXVector3d const& vecPosition, double u, double v);
  void SetTexVertexValue(unsigned int nIndex, double x, double y, double z, double u, double v);
  void SetVertexNormalValue(unsigned int nIndex, QXVector3d const& vecPosition, QXVector3d const& vecNormal);
  void SetVertexNormTextureValue(
      unsigned int nIndex, QXVector3d const& vecPosition, QXVector3d const& vecNormal, double u, double v);

  /// The model matrix; null: the geometry stands in world coordinates.
  QXMatrix4d* GetMatrix() const;
  /// Stores a new copy of the matrix, which may be the operation's own, and deletes the old one.
  void SetMatrix(QXMatrix4d& matModel);

  /// Forgets all arrays without freeing them and keeps every count: for a caller that has handed them on.
  void SetNull();

  /// Frees the arrays (a shared index array keeps its pointer) and the matrix, lets go of the textures without
  /// releasing their references, and sets the counts of vertices, normals and indices to 0. The counts of colours
  /// and texture units keep their values.
  void Release();

  int m_nMode0 = 2;
  QdcRect2D m_rcArea;
  int m_nMode1 = 0;
  int m_nMode2 = 1;
  int m_nMode3 = 3;
  int m_nMode4 = 3;
  unsigned char m_bSwitch0 = 0;
  unsigned short m_nVertexDim = 3;
  unsigned int m_nVertexNum = 0;
  float* m_pVertices = nullptr;
  unsigned short m_nVertexStride = 0;
  float* m_pNormals = nullptr;
  unsigned int m_nNormalNum = 0;
  unsigned short m_nNormalStride = 0;
  unsigned char m_bOption = 0;
  unsigned int m_nIndexNum = 0;
  unsigned short* m_pIndices = nullptr;
  unsigned int* m_pDiffuseColors = nullptr;
  /// A copy receives the source's m_nVertexStride here.
  unsigned short m_nDiffuseStride = 0;
  unsigned int m_nDiffuseColorNum = 0;
  void* m_pExternalBuffer = nullptr;
  float* m_pTexCoords[UnitNum] = {};
  QXTexture* m_pTextures[UnitNum] = {};
  unsigned short m_nTexStrides[UnitNum] = {};
  unsigned int m_nTexUnitNum = 0;
  unsigned int m_nTexVertexNums[UnitNum] = {};
  unsigned int m_nTexDims[UnitNum] = {2, 2, 2, 2, 2, 2, 2, 2};
  /// 1: m_pIndices belongs to someone else, or is a copy of what did.
  unsigned char m_bIndexShared = 0;
  QXColorValue3D m_Color0{1.0, 1.0, 1.0, 1.0};
  QXColorValue3D m_Color1{1.0, 1.0, 1.0, 1.0};
  double m_dTexParams[UnitNum] = {};
  QXVector3d m_vTexVectorsA[UnitNum];
  QXVector3d m_vTexVectorsB[UnitNum];
  QXVector3d m_vTexVectorsC[UnitNum];
  unsigned char m_bSwitch1 = 0;
  unsigned int m_nTriple[3] = {};
  unsigned char m_bSwitch2 = 0;
  unsigned char m_bSwitch3 = 0;
  QXVector3d m_vVector0;
  QXMatrix4d m_matLocal;
  int m_nMode5 = 0;
  QXVector3d m_vVector1;
  unsigned char m_bSwitch4 = 0;
  /// 1: the buffers changed and the renderer must build its own anew. Only the renderer clears it.
  unsigned char m_bDirty = 1;
  QXMatrix4d* m_pMatrix = nullptr;
  QdcUnicodeString m_strName;
  float m_fFactor = 1.0F;
  int m_nMode6 = 0;
  unsigned char m_bSwitch5 = 1;
  double m_dFactor = 1.0;
  unsigned char m_bSwitch6 = 0;
  int m_nMode7 = 1;
  unsigned short m_nMask = 65535;
  int m_nMode8 = 0;
  int m_nMode9 = 0;
  unsigned char m_bSwitch7 = 1;

private:
  static void Store2(float* pTarget, double u, double v) {
    pTarget[0] = static_cast<float>(u);
    pTarget[1] = static_cast<float>(v);
  }
  static void Store3(float* pTarget, double x, double y, double z) {
    pTarget[0] = static_cast<float>(x);
    pTarget[1] = static_cast<float>(y);
    pTarget[2] = static_cast<float>(z);
  }
  static void Store3(float* pTarget, QXVector3d const& vector) { Store3(pTarget, vector.x, vector.y, vector.z); }
  // In 64 bits: three times an index may leave the range of the index.
  static std::size_t At(unsigned int nIndex, std::size_t nPerEntry) { return nIndex * nPerEntry; }

  void CopyValues(QXRenderOperation const& other);
  void CopyTexParameters(QXRenderOperation const& other);
  void CopyArrays(QXRenderOperation const& other);
  void SwapArrays(QXRenderOperation& other) noexcept;
  void FreeIndices();

  // The copy of a shared index array is our own although m_bIndexShared stays set for the renderer to read. Kept
  // here, or nobody would ever free it.
  unsigned short* m_pOwnIndices = nullptr;
};

// The setters are inline: they run once a vertex, and a call through the library's edge costs more than they do.

inline void QXRenderOperation::SetVertexValue(unsigned int nIndex, double x, double y, double z) {
  Store3(m_pVertices + At(nIndex, 3), x, y, z);
}

inline void QXRenderOperation::SetIndexValue(unsigned int nIndex, unsigned short nValue) {
  m_pIndices[nIndex] = nValue;
}

inline void QXRenderOperation::SetTexVertexValue(
    unsigned int nIndex, double x, double y, double z, double u, double v) {
  Store3(m_pVertices + At(nIndex, 3), x, y, z);
  Store2(m_pTexCoords[0] + At(nIndex, 2), u, v);
}

inline void QXRenderOperation::SetTexVertexValue(unsigned int nIndex, TextureVertex const& vertex) {
  SetTexVertexValue(nIndex, vertex.x, vertex.y, vertex.z, vertex.u, vertex.v);
}

inline void QXRenderOperation::SetTexVertexValue(
    unsigned int nIndex, QXVector3d const& vecPosition, double u, double v) {
  SetTexVertexValue(nIndex, vecPosition.x, vecPosition.y, vecPosition.z, u, v);
}

inline void QXRenderOperation::SetVertexNormalValue(
    unsigned int nIndex, QXVector3d const& vecPosition, QXVector3d const& vecNormal) {
  Store3(m_pVertices + At(nIndex, 3), vecPosition);
  Store3(m_pNormals + At(nIndex, 3), vecNormal);
}

inline void QXRenderOperation::SetVertexNormTextureValue(
    unsigned int nIndex, QXVector3d const& vecPosition, QXVector3d const& vecNormal, double u, double v) {
  SetVertexNormalValue(nIndex, vecPosition, vecNormal);
  Store2(m_pTexCoords[0] + At(nIndex, 2), u, v);
}

}  // namespace QXC
