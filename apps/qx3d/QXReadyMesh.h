/// @file
/// A mesh of a model, ready to be placed in a scene.
#pragma once

#include <QxGraphics3D/frame/foundation/base3d/QXIndexPackage.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVertexDataPackage.h>
#include <QxGraphics3D/renderop/QXTexturePackage.h>

#include <memory>

namespace QXC {
class QXModelMesh;
class QXRenderOperationMultiIndex;
}  // namespace QXC

namespace QXApp {

class QXModelColors;
class QXTextureChoice;
class QXVertexCollector;

/// Positions, normals and colours of a mesh with one range of triangles, in the mesh's own frame. One with a texture
/// has coordinates of unit 0 with four numbers a vertex: the place on the texture, a zero, and room for the number by
/// which a vertex of merged meshes finds its texture among several.
struct QXReadyMesh {
  std::unique_ptr<QXC::QXVertexDataPackage> m_pVertices;
  /// 16 bits up to 65,535 vertices, 32 above. Without a triangle for a mesh that shows nothing.
  std::unique_ptr<QXC::QXIndexPackage> m_pIndices;

  unsigned int GetTriangleCount() const { return static_cast<unsigned int>(m_pIndices->m_nIndexNum) / 3; }
};

/// @param matNode  from the mesh into its model, by which colours without a material are chosen
QXReadyMesh MakeReadyMesh(QXC::QXModelMesh const& mesh, QXC::QXMatrix4d const& matNode, QXModelColors const& colors,
    QXTextureChoice const& texture);

/// Whether a matrix moves, turns and scales by one factor for all axes, without a mirror: such a matrix may turn
/// normals as it turns positions.
bool IsSimilarity(QXC::QXMatrix4d const& mat);

/// A copy in the directions of the world, relative to an origin. Normals stay upright under uneven scales, and
/// triangles keep their front under a mirror.
QXReadyMesh PlaceReadyMesh(QXReadyMesh const& mesh, QXC::QXMatrix4d const& matWorld, QXC::QXVector3d const& vecOrigin);

/// Adds a placed mesh to a growing drawable.
void AppendReadyMesh(QXReadyMesh const& placed, QXVertexCollector& collector);

/// A drawable of one placed mesh.
/// @param vecOrigin  where the zero of its coordinates stands, by which the renderer sorts what is transparent
/// @param pTexture   what it is covered with, the operation's own from then on; null for nothing
std::unique_ptr<QXC::QXRenderOperationMultiIndex> MakeOperation(QXReadyMesh const& mesh,
    QXC::QXMatrix4d const& matWorld, QXC::QXVector3d const& vecOrigin, std::unique_ptr<QXC::QXTexturePackage> pTexture);

}  // namespace QXApp
