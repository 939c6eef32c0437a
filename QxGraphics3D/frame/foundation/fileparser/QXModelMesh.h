/// @file
/// One mesh of a model: vertex data, index ranges, base colour and picture.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcArray.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>
#include <QxGraphics3D/frame/foundation/base3d/QXBoundingBox.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVertexDataPackage.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXModelTexture.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXColorValue3D.h>

namespace QXC {

class QXIndexPackage;

/// Vertex data with the index ranges over it, in a frame of its own that the nodes of a model place.
/// Shape:     positions and normals have 3 floats a vertex, texture coordinates 2 (v = 0 is the first row of the
///            image), colours one QDCRGBA word; normals, colours and coordinates are there for every vertex or not
///            at all. Ranges are triangle lists of 16-bit entries up to 65,535 vertices, of 32-bit ones above.
/// Ownership: owns its packages.
/// Copying:   deep.
/// Threads:   one at a time.
class QXGRAPHICS3D_API QXModelMesh {
public:
  QXModelMesh() = default;
  QXModelMesh(QXModelMesh const& other);
  QXModelMesh& operator=(QXModelMesh const& other);
  ~QXModelMesh();

  QdcUnicodeString m_strName;
  /// Name of the material in the file, empty if it has none.
  QdcUnicodeString m_strMaterialName;
  /// 1: the file states the base colour; 0: m_BaseColor is the default white and a host may choose another.
  unsigned char m_bBaseColorSet = 0;
  /// Colour of the material, to be multiplied with the vertex colours.
  QXColorValue3D m_BaseColor = QXColorValue3D(1.0, 1.0, 1.0, 1.0);
  /// What shines by itself, and the colour and exponent of highlights; black, black and 0 where the file states none.
  QXColorValue3D m_EmissiveColor = QXColorValue3D(0.0, 0.0, 0.0, 1.0);
  QXColorValue3D m_SpecularColor = QXColorValue3D(0.0, 0.0, 0.0, 1.0);
  double m_dShininess = 0.0;
  /// The picture on the mesh, by the coordinates of set 0. A mesh with a picture has these coordinates.
  QXModelTexture m_Texture;
  /// Null in a fresh mesh, never null in a mesh that a parser handed out.
  QXVertexDataPackage* m_pVertexPackage = nullptr;
  /// No entry is null.
  QdcArray<QXIndexPackage*> m_arrIndexPackages;
  /// Of the positions, in the mesh's own frame.
  QXBoundingBox m_Bounds;

  /// Sets m_Bounds from the positions; null bounds without any.
  void UpdateBounds();

  /// Triangles of all ranges.
  unsigned int GetTriangleCount() const;

private:
  void Swap(QXModelMesh& other);
};

}  // namespace QXC
