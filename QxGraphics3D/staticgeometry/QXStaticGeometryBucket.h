/// @file
/// Meshes that share one vertex array, before and after they are merged.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVertexDataPackage.h>
#include <QxGraphics3D/staticgeometry/QXBucketIndexPackage.h>

#include <map>
#include <vector>

namespace QXC {

class QXIndexPackage;
class QXPass;
class QXStream;
class QXSubObjectInfo;

/// One vertex array and the index arrays over it. A renderer reads the public members and makes its drawables of them.
///
/// A bucket is in one of three states. Nothing in it says which.
///  - Gathering: m_vecPackages, m_vecMatrices and m_mapPassIndices grow; m_pVertexPackage holds counts without arrays.
///  - Merged:    m_pVertexPackage holds the arrays and m_mapLevelIndices the indices; the gathering members are still
///               there and no longer needed.
///  - Loaded:    only m_pVertexPackage, m_mapLevelIndices, m_mapPasses, m_nIndexType, m_nType and m_mapSubObjects hold
///               anything.
///
/// Ownership: as each member says; what is owned is made with `new` and deleted by the destructor.
/// Copying:   shallow, the pointers as pointers, and an assignment deletes nothing. Only one of two copies may be
///            destroyed as it is: empty the owning members of the other first.
/// Threads:   one at a time.
struct QXGRAPHICS3D_API QXStaticGeometryBucket {
  /// Makes the empty package.
  QXStaticGeometryBucket();
  QXStaticGeometryBucket(QXStaticGeometryBucket const& other);
  QXStaticGeometryBucket& operator=(QXStaticGeometryBucket const& other);
  ~QXStaticGeometryBucket();

  /// Reads a bucket that Save wrote, into a fresh bucket.
  /// @param dVersion  version of the file: the sub-objects are there above 1.0, m_nType above 1.1
  /// @return 1, or 0 when the bucket has no package, when the stream ends or a record in it is wrong, or when memory
  ///         runs out. What was stored before stays; a package that could not be read is deleted and the pointer null.
  unsigned char Load(QXStream& stream, double dVersion);
  /// Writes the merged members. A bucket without a package writes nothing at all, so that a reader of the file loses
  /// its place: take such a bucket out of its list before saving.
  /// @param dVersion  not looked at: the newest form is written
  void Save(QXStream& stream, double dVersion);
  /// Bytes to reserve for Save; 0 without a package. The vertex package counts as in GetVertexPackageSize, at least 4
  /// more than is written, but the keys of passes count one byte a character: many that are not ASCII need more.
  int GetDataSize();

  /// The vertices, owned. While gathering it holds what the merge allocates: the sums of the vertices, normals, colours
  /// and coordinates added, the greatest dimensions among them, and option bit 0x400 if one of the meshes had it.
  QXVertexDataPackage* m_pVertexPackage;
  /// Level number to merged index packages, all owned: one a key of m_mapPassIndices, in the order of the keys.
  std::map<int, std::vector<QXIndexPackage*>> m_mapLevelIndices;
  /// The bucket's own copies of the passes, owned. After folding a pass has another name than its key here; the keys
  /// are what the index packages name. A host that takes a pass out takes the records under its key out as well.
  std::map<QdcUnicodeString, QXPass*> m_mapPasses;
  /// Model matrix of each added mesh.
  std::vector<QXMatrix4d> m_vecMatrices;
  /// Vertices of each added mesh; the host's.
  std::vector<QXVertexDataPackage*> m_vecPackages;
  /// Pass key to records in the order of drawing. The key "" holds what has no pass.
  std::map<QdcUnicodeString, std::vector<QXBucketIndexPackage>> m_mapPassIndices;
  /// Highest level of detail to merge; levels 0 to this one. Nothing in the library raises it: a host that gives its
  /// records more levels sets it before the merge, and again after loading.
  int m_nMaxLevel = 0;
  /// Width of the merged indices: 0 for 16 bits, with at most 65,535 vertices; 1 for 32 bits.
  int m_nIndexType = 0;
  /// First vertex of a sub-object to its record, owned.
  std::map<int, QXSubObjectInfo*> m_mapSubObjects;
  /// The type given with the mesh added last, -1 before. The merge turns normals only while it is negative.
  int m_nType = -1;
  /// Room for the host; nothing here reads it.
  float m_fReserved = 0.0F;
};

}  // namespace QXC
