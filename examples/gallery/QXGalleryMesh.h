/// @file
/// Simple solids for the pictures.
#pragma once

#include <memory>
#include <vector>

#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXColorValue3D.h>
#include <QxGraphics3D/renderop/QXRenderOperationMultiIndex.h>

namespace QXGallery {

inline constexpr QXC::QXColorValue3D BRICK(0.78, 0.42, 0.3, 1.0);
inline constexpr QXC::QXColorValue3D SLATE(0.35, 0.42, 0.52, 1.0);
inline constexpr QXC::QXColorValue3D LEAF(0.3, 0.55, 0.25, 1.0);
inline constexpr QXC::QXColorValue3D CHALK(0.95, 0.93, 0.88, 1.0);

/// Triangles with normals, colours and one set of texture coordinates, gathered solid by solid. Coordinates become
/// float: what stands far from the origin is built around zero and moved there by its drawable's model matrix.
class QXGalleryMesh {
public:
  /// Four corners counter-clockwise, seen from where the normal points. Texture coordinates: (0, 1) at the first, (1, 1)
  /// at the second, (1, 0) at the third.
  QXGalleryMesh& AddQuad(QXC::QXVector3d const& a, QXC::QXVector3d const& b, QXC::QXVector3d const& c,
      QXC::QXVector3d const& d, QXC::QXColorValue3D const& color);
  QXGalleryMesh& AddBox(QXC::QXVector3d const& vecMin, QXC::QXVector3d const& vecMax, QXC::QXColorValue3D const& color);
  /// A square floor around zero at the height 0, in fields of one unit of two colours by turns.
  QXGalleryMesh& AddFloor(int nHalfSize, QXC::QXColorValue3D const& light, QXC::QXColorValue3D const& dark);
  QXGalleryMesh& AddSphere(QXC::QXVector3d const& vecCenter, double dRadius, QXC::QXColorValue3D const& color);
  /// Upright, with a lid and without a bottom; a radius of 0 at the top makes it a cone.
  QXGalleryMesh& AddCylinder(QXC::QXVector3d const& vecFoot, double dRadius, double dTopRadius, double dHeight,
      QXC::QXColorValue3D const& color);

  /// A copy of everything in one range of indices.
  std::unique_ptr<QXC::QXRenderOperationMultiIndex> MakeOperation() const;

private:
  struct Corner {
    QXC::QXVector3d m_vecPosition;
    QXC::QXVector3d m_vecNormal;
    unsigned int m_nColor;
    float m_fU;
    float m_fV;
  };

  unsigned int AddCorner(QXC::QXVector3d const& vecPosition, QXC::QXVector3d const& vecNormal,
      QXC::QXColorValue3D const& color, double dU, double dV);
  /// Fields between two neighbouring rows of corners.
  void AddStrip(unsigned int nLower, unsigned int nUpper, unsigned int nCount);

  std::vector<Corner> m_arrCorners;
  std::vector<unsigned int> m_arrIndices;
};

/// A floor of 12 by 12 fields around zero with a house, a tower, a tree and a ball: what most pictures show.
QXGalleryMesh MakeYard();

}  // namespace QXGallery
