/// @file
/// Growing vertex and index buffers of one drawable.
#pragma once

#include <QxGraphics3D/frame/foundation/base3d/QXBoundingBox.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>

#include <QxGraphics3D/renderop/QXTexturePackage.h>

#include <memory>
#include <vector>

namespace QXC {
class QXRenderOperationMultiIndex;
}

namespace QXApp {

/// Collects vertices of position, normal, colour and, for those with a picture, texture coordinates, and hands them over as one operation.
class QXVertexCollector {
public:
  /// Floats a vertex: three of position, three of normal, one slot with the bits of the colour.
  static constexpr unsigned short Stride = 7;

  unsigned int GetVertexCount() const { return static_cast<unsigned int>(m_vecFloats.size() / Stride); }
  bool IsEmpty() const { return m_vecIndices.empty(); }

  /// @param nColor  packed by QDCRGBA
  /// @return  the number of the vertex
  unsigned int AddVertex(QXC::QXVector3d const& vecPosition, QXC::QXVector3d const& vecNormal, unsigned int nColor);
  /// Coordinates on the picture, of the vertex added last; for all vertices of an operation or for none.
  void AddTexCoord(double dU, double dV) {
    m_vecTexCoords.push_back(static_cast<float>(dU));
    m_vecTexCoords.push_back(static_cast<float>(dV));
  }
  /// Pixels from the position on the screen, to the right and up, of the vertex added last; for all vertices of an
  /// operation, which then has texture coordinates as well, or for none.
  void AddOffset(double dRight, double dUp) {
    m_vecOffsets.push_back(static_cast<float>(dRight));
    m_vecOffsets.push_back(static_cast<float>(dUp));
  }
  void AddIndex(unsigned int nVertex) { m_vecIndices.push_back(nVertex); }

  /// Makes the operation and starts anew. Indices have 16 bits up to 65,535 vertices and 32 above.
  /// @param vecOrigin  where the positions' zero stands in the world
  /// @param pTexture   what the operation is covered with, its own from then on; null for nothing
  std::unique_ptr<QXC::QXRenderOperationMultiIndex> Finish(
      QXC::QXVector3d const& vecOrigin, std::unique_ptr<QXC::QXTexturePackage> pTexture);

private:
  std::vector<float> m_vecFloats;
  std::vector<float> m_vecTexCoords;
  std::vector<float> m_vecOffsets;
  std::vector<unsigned int> m_vecIndices;
};

}  // namespace QXApp
