/// @file
/// The GPU's copy of a drawable's vertices and index ranges.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include <OgreHardwareVertexBuffer.h>
#include <OgrePrerequisites.h>

#include <QxGraphics3D/frame/foundation/base3d/QXBoundingBox.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXColorValue3D.h>

namespace QXC {

class QXRenderOperationMultiIndex;
struct QXVertexIndexPackage;

/// One index range on the GPU.
struct QXOgreRange {
  std::unique_ptr<Ogre::IndexData> m_pIndexData;  ///< Null: draws nothing
  int m_eOperationType;                           ///< QXOperationType
  QXColorValue3D m_Color;                         ///< Of the range; that of the operation is the drawable's
  unsigned int m_nTriangleCount;
  /// Place of its packages in the source's arrays, -1 for a range that stands in none.
  int m_nPackage;
};

/// Copies of everything that a QXRenderOperationMultiIndex holds, in GPU buffers. The source may die afterwards.
/// Vertices far from their coordinates' zero are moved to a zero of their own (m_vecZero): floats of four million are
/// half a metre apart, and a shader that adds a translation of minus four million to them loses what they still had.
class QXOgreGeometry final {
public:
  QXOgreGeometry();
  ~QXOgreGeometry();
  QXOgreGeometry(QXOgreGeometry const&) = delete;
  QXOgreGeometry& operator=(QXOgreGeometry const&) = delete;

  /// A range with an index beyond the vertices draws nothing, since the GPU would read foreign memory; nor does one of
  /// an unknown kind, or an empty one.
  /// Cost: one pass over vertices and indices.
  void Upload(QXRenderOperationMultiIndex const& source);
  /// Releases the buffers.
  void Clear();

  /// Null if there are no vertices.
  Ogre::VertexData* GetVertexData() const { return m_pVertexData.get(); }
  std::vector<QXOgreRange> const& GetRanges() const { return m_arrRanges; }
  unsigned int GetVertexCount() const { return m_nVertexCount; }
  /// Where the zero of the buffers stands in the coordinates of the source.
  QXVector3d const& GetZero() const { return m_vecZero; }
  /// In the coordinates of the source; null without vertices.
  QXBoundingBox const& GetBounds() const { return m_Bounds; }
  /// Bytes in GPU buffers.
  std::size_t GetDeviceMemory() const { return m_nDeviceMemory; }
  /// Overwrites positions (three floats each) and lets the bounds grow by them. 0 if the vertices are not all there.
  unsigned char UpdatePositions(unsigned int nFirst, unsigned int nCount, float const* pPositions);
  /// Overwrites colours (QDCRGBA words). 0 if the vertices are not all there or came without colours.
  unsigned char UpdateColors(unsigned int nFirst, unsigned int nCount, std::uint32_t const* pColors);
  /// 1 if a vertex colour lets something through.
  unsigned char HasTransparentVertices() const { return m_bTransparentVertices; }
  /// The set of texture coordinates that stands in for a wanted one: itself where the geometry has it, else the first
  /// that there is; -1 without any.
  int FindTexCoordSet(unsigned int nWanted) const;
  /// The largest number in set 1: how far the corners of labels are from their anchors, in pixels.
  float GetLabelReach() const { return m_fLabelReach; }

private:
  void MeasureBounds(QXRenderOperationMultiIndex const& source);
  /// One stream for each element, so that one can be overwritten without touching the others.
  void UploadVertices(QXRenderOperationMultiIndex const& source);
  void AddStream(
      Ogre::VertexElementType eType, Ogre::VertexElementSemantic eSemantic, unsigned short nIndex, void const* pData);
  void UploadTexCoords(QXRenderOperationMultiIndex const& source);
  void UploadRanges(QXRenderOperationMultiIndex const& source);
  void AddRange(void const* pIndices, int nIndexType, unsigned int nStart, unsigned int nCount, int eOperationType,
      QXColorValue3D const& color, int nPackage);
  void UploadIndices(QXOgreRange& range, void const* pIndices, bool bWide, unsigned int nStart, unsigned int nCount);

  std::unique_ptr<Ogre::VertexData> m_pVertexData;
  std::vector<QXOgreRange> m_arrRanges;
  QXVector3d m_vecZero;
  QXBoundingBox m_Bounds;
  std::size_t m_nDeviceMemory;
  unsigned int m_nVertexCount;
  unsigned char m_bColors;
  unsigned char m_bTransparentVertices;
  /// One bit a set of texture coordinates.
  unsigned int m_nTexCoordSets;
  float m_fLabelReach;
};

}  // namespace QXC
