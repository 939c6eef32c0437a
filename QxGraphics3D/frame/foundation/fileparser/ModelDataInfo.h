/// @file
/// A model as its parser hands it out.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcArray.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>
#include <QxGraphics3D/frame/foundation/base3d/QXBoundingBox.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXModelNode.h>

#include <map>

namespace QXC {

class QXModelMesh;
class QXPass;
struct QXModelImage;

/// Which way is up in the coordinates of a model.
enum QXModelUpAxis : int {
  /// The format does not say: the coordinates are those of the file, and a host chooses.
  QX_UP_UNKNOWN = 0,
  /// The model was turned so that z is up, as maps have it.
  QX_UP_Z = 1
};

/// Meshes with their placements, the pictures on them and the passes that draw them.
/// Ownership: owns its meshes, pictures and passes.
/// Copying:   deep, so that a cache and its caller hold independent models.
/// Threads:   one at a time.
class QXGRAPHICS3D_API ModelDataInfo {
public:
  ModelDataInfo() = default;
  ModelDataInfo(ModelDataInfo const& other);
  ModelDataInfo& operator=(ModelDataInfo const& other);
  ~ModelDataInfo();

  /// The path for a model that a parser read, so that a cache that keeps models by path finds it again.
  QdcUnicodeString GetName() const { return m_strName; }
  void SetName(QdcUnicodeString const& strName) { m_strName = strName; }

  QXModelUpAxis GetUpAxis() const { return m_eUpAxis; }
  void SetUpAxis(QXModelUpAxis eUpAxis) { m_eUpAxis = eUpAxis; }

  /// Takes the mesh over. @return  its index, or -1 for null
  int AddMesh(QXModelMesh* pMesh);
  int GetMeshCount() const;
  /// Null for an index out of range. The mesh stays the model's.
  QXModelMesh* GetMesh(int nIndex) const;

  /// Takes the picture over; the textures of meshes name it by its index. @return  the index, or -1 for null
  int AddImage(QXModelImage* pImage);
  int GetImageCount() const;
  /// Null for an index out of range. The picture stays the model's.
  QXModelImage* GetImage(int nIndex) const;

  /// Stores a copy. @return  its index, or -1 if the node's mesh does not exist
  int AddNode(QXModelNode const& node);
  int GetNodeCount() const;
  /// Null for an index out of range; the pointer dies with the next AddNode.
  QXModelNode* GetNode(int nIndex);
  QXModelNode const* GetNode(int nIndex) const;

  /// Makes the passes anew from the materials of the meshes, one for all meshes that look the same, and writes its name
  /// into their index packages. Parsers call it last; a host does for a model that it built or changed.
  ///
  /// The base colour becomes ambient and diffuse (white under a picture that replaces it), the picture unit 0 with its
  /// transform and clamping; a mirrored repetition is a plain one, since no state mirrors. Alpha masks become an alpha
  /// function; blended materials and colours that let something through are blended by their alpha and leave the depths
  /// alone. A picture that may have an alpha, of which the file says nothing, is blended too, but writes its depths, and
  /// pixels without opacity are dropped. Both sides are drawn: files do not agree on which one is the front.
  ///
  /// A pass is called after model and material: "name|material", with "#2" and so on where one material draws meshes
  /// that look different. A texture is called as its file's path, one that the model carries "name|" and the picture's
  /// index; every picture gets that name. The names stay what they are if the model is renamed.
  /// Failure: the allocator's exception; names and passes then need not agree until the next call.
  /// Cost: n log n in the meshes; no vertex is read.
  void MakePasses();
  /// The passes by the names in the index packages, as QXStaticGeometry::AddVertexDataAndIndexPackage takes them.
  /// A host may add passes of its own, which then are the model's.
  std::map<QdcUnicodeString, QXPass*>& GetPasses() { return m_mapPasses; }
  std::map<QdcUnicodeString, QXPass*> const& GetPasses() const { return m_mapPasses; }

  /// Multiplies every node's matrix by a matrix on the right: turns or moves the whole model.
  void Transform(QXMatrix4d const& matTransform);

  /// Box of all placed positions, each transformed in double; a null box without any.
  /// Cost: linear in the placed vertices.
  QXBoundingBox GetBoundingBox() const;

  /// Triangles and vertices as drawn: a mesh counts once for each node that places it.
  unsigned int GetTriangleCount() const;
  unsigned int GetVertexCount() const;

private:
  void Swap(ModelDataInfo& other);
  /// @param mapLast  by the name without a number the last number that was tried: files have thousands of materials
  ///                 without a name, which would each try all numbers before theirs
  QdcUnicodeString FindFreePassName(
      QdcUnicodeString const& strMaterial, std::map<QdcUnicodeString, int>& mapLast) const;

  QdcUnicodeString m_strName;
  QXModelUpAxis m_eUpAxis = QX_UP_UNKNOWN;
  QdcArray<QXModelMesh*> m_arrMeshes;
  QdcArray<QXModelImage*> m_arrImages;
  QdcArray<QXModelNode> m_arrNodes;
  std::map<QdcUnicodeString, QXPass*> m_mapPasses;
};

}  // namespace QXC
