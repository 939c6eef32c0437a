/// @file
/// Many small meshes merged into a few large arrays.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcArray.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>
#include <QxGraphics3D/frame/foundation/base3d/QXBoundingSphere.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVertexDataPackage.h>

#include <map>
#include <vector>

namespace QXC {

class QXBoundingBox;
class QXIndexPackage;
class QXPass;
class QXStream;
class QXSubObjectInfo;
struct QXStaticGeometryBucket;

/// Gathers meshes, merges them under one base frame and keeps the result in buckets, each of which a renderer draws
/// with few calls. Nothing here calls a renderer.
///
/// A host calls, in this order:
///  1. AddVertexDataAndIndexPackage for each mesh;
///  2. AssginMutiTexture, if passes that differ only in their texture shall be drawn as one;
///  3. AssignStaticGeometry, after which the meshes may go;
///  4. SetLocalViewMatrix with the base frame, which the merged coordinates are relative to;
///  5. SaveVecData, or a renderer's drawables from the buckets' members.
///
/// Ownership: the buckets are owned, made with `new` and deleted by the destructor.
/// Copying:   shallow: the copies share the buckets, and an assignment deletes none. Only one of two copies may be
///            destroyed as it is: empty the four lists of the other first.
/// Threads:   one at a time.
class QXGRAPHICS3D_API QXStaticGeometry {
public:
  QXStaticGeometry();
  QXStaticGeometry(QXStaticGeometry const& other);
  QXStaticGeometry& operator=(QXStaticGeometry const& other);
  ~QXStaticGeometry();

  /// Files a mesh in a bucket. Only type and number of vertices choose the bucket: more than 65,535 vertices go to the
  /// first bucket of the type's 32-bit list, however large it grows; others to the last of its 16-bit list, or to a
  /// new one at its end if that would get more than 65,535. An earlier bucket with room is not looked for.
  ///
  /// Each pass name of each index package gives one record in the bucket, filed under the own name of the pass that
  /// mapPasses has for it; under "" if it has none. The bucket copies a pass that it does not have by that name yet;
  /// one that it has stays, whatever this mesh's looks like. The copy's matrices, those of its units included, become
  /// the identity, because the merge applies the units' transformations to the coordinates. A pass whose extension of
  /// type 1 moves a texture over time (one of its fifth floats is above 0) keeps its matrices instead, and its records
  /// have identities. The copy's m_nPassWord becomes 0.
  ///
  /// @param pVertexPackage    the host's, read and kept until the merge; null: nothing happens
  /// @param arrIndexPackages  the host's, kept until the merge; nulls are skipped. A package of a line list (operation
  ///                          type 2) without pass names gets the name "TempLine", in the host's own package. A package
  ///                          of another type without names is not drawn, though the vertices count.
  /// @param mapPasses         the host's passes by the names in the index packages, copied
  /// @param matModel          the mesh's frame in the world, copied
  /// @param pSubObject        taken over, even where memory runs out; null for none. It is kept under the mesh's first
  ///                          vertex in the bucket; a record that is there already, of a mesh without vertices, is
  ///                          deleted. Its sphere is added to m_mapTextureSpheres, once a texture name that the mesh
  ///                          uses.
  /// @param nType             1 selects the typed lists, any other value the first two; the bucket keeps the value of
  ///                          the mesh added last
  /// Failure: the allocator's exception. The geometry can then only be destroyed.
  /// Cost: a few map operations and one record a pass name; no vertex and no index is read.
  void AddVertexDataAndIndexPackage(QXVertexDataPackageTemplate<float, QXVertexDeclaration>* pVertexPackage,
      QdcArray<QXIndexPackage*>& arrIndexPackages, std::map<QdcUnicodeString, QXPass*>& mapPasses, QXMatrix4d& matModel,
      QXSubObjectInfo* pSubObject, int nType);

  /// Merges every bucket: vertices relative to the base frame, narrowed to float only then, and one index package for
  /// each pass key and level. Merge once: a second call makes the vertices anew and appends second index packages.
  /// @param matBase       the base frame in the world; near the meshes, since floats lose 0.5 mm at 16 km
  /// @param bNoTransform  not 0: the vertices are in the base frame already and copied as they are, texture
  ///                      coordinates included; only unit 0 of polylines is transformed all the same
  /// Failure: the allocator's exception. Buckets may then be half merged, though nothing in them is unfilled memory;
  ///          the geometry can only be destroyed.
  /// Cost: one pass over the meshes; each array is allocated once at its final size.
  void AssignStaticGeometry(QXMatrix4d matBase, unsigned char bNoTransform);

  /// Folds passes with one texture into passes with up to eight, and passes with two textures into passes with up to
  /// four pairs, in the 32-bit and the 16-bit list but not in the typed ones. The first pass of each eight (of each
  /// four) in the order of the keys becomes the master: it gets the program names "RenderModelSecVP.glsl" and
  /// "RenderModelSecFP.glsl" ("MutiRenderModelSecVP.glsl" and "MutiRenderModelSecFP.glsl" for pairs), the others'
  /// texture names in new units, their words in m_nUnitWords, and their records, each before the first record of the
  /// same mesh. Layer k of a record says that its texture is unit k of the master; of pairs, units k and k + 1.
  /// Further units of a pass that joins are lost; those of a master stay, and the new ones come behind them, so that
  /// its layers and units no longer agree.
  ///
  /// Left alone are passes whose fixed-function mode (QXPass::GetPFFMode) is 1, whose first texture is a GIF, which may
  /// be an animation with a texture object of its own, and passes without units. Call it after the meshes are added and
  /// before they are merged.
  /// @param nA, nB  printed into the master's new name, "FirTex_nA_nB_address_" ("SecTex_" for pairs) before its own,
  ///                and nothing else. The address is the bucket's: the name differs from run to run, the key stays.
  /// Failure: the allocator's exception. The geometry can then only be destroyed.
  /// Cost: linear in the records.
  void AssginMutiTexture(int nA, int nB);

  /// Appends what SaveVecData wrote to what is here; a texture name that m_mapTextureSpheres has gets the file's
  /// spheres instead. The bounding sphere and the local view matrix are not in the file: call GetBoundingSphere(1).
  /// @param fVersion  not looked at: the file says its version, which becomes m_dVersion
  /// @return 1; 0 when the stream ends, a count or a bucket in it is wrong or memory runs out. What was read before
  ///         stays, whole buckets and textures only. Indices are not compared with the vertices.
  /// Cost: one call of the stream an array; memory below 64 MiB and eight times what was left of the stream.
  unsigned char LoadVecData(QXStream& stream, float fVersion);
  /// Writes the merged buckets. All sections are written whatever m_dVersion says, and the number itself is written:
  /// after loading an older file call SetVersion(1.3) first, or nobody reads the result.
  /// @param fVersion  not looked at
  /// @return 1; 0 with nothing written if there is no bucket in any list, and 0 if the stream fails
  unsigned char SaveVecData(QXStream& stream, float fVersion);
  /// Bytes to reserve for SaveVecData, with the surplus of each bucket (QXStaticGeometryBucket::GetDataSize) and
  /// texture names counted as one byte a character. The greatest int for what is beyond it.
  int GetDataSize();

  double GetVersion() const;
  void SetVersion(double dVersion);
  QdcArray<int>& GetArrayID();
  QXMatrix4d const& GetLocalViewMatrix() const;
  void SetLocalViewMatrix(QXMatrix4d& matLocalView);
  void SetBoundingSphere(QXBoundingSphere sphere);
  /// The sphere as it stands if it is valid or bCompute is 0. Otherwise it is computed first, from a box around all
  /// vertices: centre of the box times the local view matrix, radius half the diagonal of the box. The matrix does not
  /// scale the radius. Without vertices that is the centre of a null box with radius 0, which counts as valid: to
  /// compute anew, set an invalid sphere first.
  ///
  /// A bucket of a single vertex counts as a cube of 20 units. Three numbers a vertex are read whatever the position
  /// dimension: with two dimensions the third number is the next vertex's first.
  /// Cost: reads every vertex if it computes.
  QXBoundingSphere& GetBoundingSphere(unsigned char bCompute);

  // The four lists are always visited in this order.

  /// Of the meshes with more than 65,535 vertices, at most one bucket; each load appends those of its file.
  std::vector<QXStaticGeometryBucket*> m_vecBuckets32;
  /// Buckets of at most 65,535 vertices.
  std::vector<QXStaticGeometryBucket*> m_vecBuckets16;
  /// The same for meshes added with type 1.
  std::vector<QXStaticGeometryBucket*> m_vecTypedBuckets32;
  std::vector<QXStaticGeometryBucket*> m_vecTypedBuckets16;
  /// Texture name to the spheres of the sub-objects that use it: from them a host knows how near a texture is seen.
  std::map<QdcUnicodeString, QdcArray<QXBoundingSphere>> m_mapTextureSpheres;
  /// Version of the persisted form; the one read last after LoadVecData.
  double m_dVersion = 1.3;
  /// Invalid until it is set or computed.
  QXBoundingSphere m_BoundingSphere;
  /// Maps the buckets' coordinates into the world.
  QXMatrix4d m_matLocalView;
  /// Identifiers of the objects in the geometry; the host's to fill, kept in the file.
  QdcArray<int> m_arrID;

private:
  void AssignStaticGeometry(
      std::vector<QXStaticGeometryBucket*> vecBuckets, QXMatrix4d matBase, unsigned char bNoTransform);
  void AssginMutiTextureStaticGeometry(int nA, int nB, std::vector<QXStaticGeometryBucket*> vecBuckets);
  void CalculateBoundingSphere(std::vector<QXStaticGeometryBucket*> vecBuckets, QXBoundingBox& box);
};

}  // namespace QXC
