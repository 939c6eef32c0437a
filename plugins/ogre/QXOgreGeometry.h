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
#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXColorValue3D.h>

namespace QXC {

class QXOgreSkin;
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

/// The numbers of one kind that a source keeps for its vertices.
struct QXOgreElement {
  float const* m_pFirst = nullptr;  ///< Null: the source has none
  std::size_t m_nStride = 0;        ///< Numbers from one vertex to the next
  unsigned short m_nDim = 0;        ///< Numbers of a vertex, 1 to 4

  float const* At(std::size_t nVertex) const { return m_pFirst + nVertex * m_nStride; }
  /// Whether the vertices of so many numbers follow each other without gaps.
  bool IsDense(unsigned short nDim) const { return m_pFirst && m_nDim == nDim && m_nStride == nDim; }
};

/// The vertices of any source: everything that is there reaches all of them.
struct QXOgreVertices {
  unsigned int m_nCount = 0;
  QXOgreElement m_Position;
  QXOgreElement m_Normal;
  QXOgreElement m_Color;  ///< QDCRGBA words, looked at as numbers
  QXOgreElement m_TexCoords[8];
  /// The vertices of wide lines: the fourth number of a position is the side of the line, and normals and the first
  /// set of coordinates are the points before and after.
  bool m_bWideLines = false;
};

/// Copies of vertices and index ranges in GPU buffers. The source may die afterwards.
/// Vertices far from their coordinates' zero are moved to a zero of their own (m_vecZero): floats of four million are
/// half a metre apart, and a shader that adds a translation of minus four million to them loses what they still had.
class QXOgreGeometry final {
public:
  QXOgreGeometry();
  ~QXOgreGeometry();
  QXOgreGeometry(QXOgreGeometry const&) = delete;
  QXOgreGeometry& operator=(QXOgreGeometry const&) = delete;

  /// Vertices and ranges of a source.
  /// Cost: one pass over vertices and indices.
  void Upload(QXRenderOperationMultiIndex const& source);
  /// Vertices without ranges, in place of everything.
  void Upload(QXOgreVertices const& vertices);
  /// One more range. One with an index beyond the vertices draws nothing, since the GPU would read foreign memory; nor
  /// does one of an unknown kind, or an empty one; they keep their numbers all the same.
  void AddRange(void const* pIndices, int nIndexType, unsigned int nStart, unsigned int nCount, int eOperationType,
      QXColorValue3D const& color, int nPackage);
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
  /// Numbers of a vertex in a set of texture coordinates, 0 without the set.
  unsigned short GetTexCoordDim(unsigned int nSet) const { return nSet < SetNum ? m_nTexCoordDims[nSet] : 0; }
  /// Puts one word in place of the colours of some vertices, whether they came with colours or not. They must be there.
  void FillColor(unsigned int nFirst, unsigned int nCount, std::uint32_t nColor);
  /// Whether vertices have words for selection and objects.
  bool HasObjectWords() const { return m_pObjectBuffer != nullptr; }
  /// Gives each vertex a word for selection and objects, the first bytes of which programs know as secondary_colour.x.
  void AddObjectWords(std::vector<std::uint32_t> const& arrWords);
  /// Overwrites them. The words and the vertices must be there.
  void FillObjectWord(unsigned int nFirst, unsigned int nCount, std::uint32_t nWord);
  /// Reads positions back from the device: three numbers each, in the coordinates of the source. They must be there.
  std::vector<double> ReadPositions(unsigned int nFirst, unsigned int nCount) const;
  /// The largest number in set 1: how far the corners of labels are from their anchors, in pixels.
  float GetLabelReach() const { return m_fLabelReach; }

  /// The vertices that bones can move, null if none say which do; those of buckets do not.
  QXOgreSkin const* GetSkin() const { return m_pSkin.get(); }
  /// Puts vertices with a skin where bones take them; without bones they stand at rest. Cost: linear in the vertices.
  void Move(std::vector<QXMatrix4d> const& arrMoves);

private:
  static constexpr unsigned int SetNum = 8;

  void MeasureBounds(QXOgreElement const& position);
  // One stream for each element, so that one can be overwritten without touching the others.
  /// nDim numbers a vertex, less the geometry's zero where they are places; what the source is short of is 0.
  void UploadNumbers(QXOgreElement const& element, unsigned short nDim, bool bPlaces,
      Ogre::VertexElementSemantic eSemantic, unsigned short nIndex);
  void UploadColors(QXOgreElement const& color);
  void UploadTexCoords(QXOgreVertices const& vertices);
  void AddStream(
      Ogre::VertexElementType eType, Ogre::VertexElementSemantic eSemantic, unsigned short nIndex, void const* pData);
  void UploadRanges(QXRenderOperationMultiIndex const& source);
  void UploadIndices(QXOgreRange& range, void const* pIndices, bool bWide, unsigned int nStart, unsigned int nCount);

  std::unique_ptr<Ogre::VertexData> m_pVertexData;
  std::vector<QXOgreRange> m_arrRanges;
  QXVector3d m_vecZero;
  QXBoundingBox m_Bounds;
  std::size_t m_nDeviceMemory;
  unsigned int m_nVertexCount;
  unsigned char m_bColors;
  unsigned char m_bTransparentVertices;
  unsigned short m_nTexCoordDims[SetNum];
  float m_fLabelReach;
  std::unique_ptr<QXOgreSkin> m_pSkin;
  /// Made when vertices are first selected or picked.
  std::shared_ptr<Ogre::HardwareVertexBuffer> m_pObjectBuffer;
};

}  // namespace QXC
