/// @file
/// What a drawable of static geometry knows beside its geometry.
#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <set>
#include <vector>

#include <QxGraphics3D/frame/foundation/base/QdcArray.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>

#include <plugins/ogre/QXOgreBucketMotion.h>
#include <plugins/ogre/QXOgreBucketPass.h>
#include <plugins/ogre/QXOgreRenderable.h>
#include <plugins/ogre/QXOgreTextureSet.h>

namespace QXC {

class QXIndexPackage;
class QXOgreGeometry;
class QXPass;
class QXTextureManager;
struct QXStaticGeometryBucket;

/// One index range of a bucket: a package of a level.
struct QXOgreBucketRange {
  int m_nLevel = 0;
  QXOgrePassLook m_Look;
  QXOgreTextureSet m_Textures;
  QXOgreBucketMotion m_Motion;
  /// Of the pass, before the transform of a unit.
  QXMatrix4d m_matPass;
  bool m_bClampU[8] = {};
  bool m_bClampV[8] = {};
  /// First and last vertex that it touches; the first is above the last in a range that draws nothing.
  unsigned int m_nFirstVertex = 1;
  unsigned int m_nLastVertex = 0;
  /// Of the touched vertices, in the coordinates of the bucket.
  QXVector3d m_vecCenter;
  bool m_bTransparentVertices = false;
  /// What is blended is sorted by the middle of its range: the middle of a city says nothing about its windows.
  QXOgrePlace m_Place;

  /// Whether there is anything to draw.
  bool IsDrawn() const { return m_nFirstVertex <= m_nLastVertex; }
};

/// Levels, passes and objects of a bucket of static geometry, copied: the bucket may die.
class QXOgreBucket final {
public:
  /// Puts vertices and ranges of the bucket into the geometry and keeps what they look like. What is not whole is left
  /// out; ranges keep their numbers.
  /// @param pManager  knows textures by name; may be null
  /// Cost: one pass over vertices and indices.
  QXOgreBucket(QXStaticGeometryBucket const& bucket, QdcArray<double> const& arrLevelDistances,
      QXTextureManager* pManager, QXOgreGeometry& geometry);
  ~QXOgreBucket();
  QXOgreBucket(QXOgreBucket const&) = delete;
  QXOgreBucket& operator=(QXOgreBucket const&) = delete;

  std::vector<std::unique_ptr<QXOgreBucketRange>> const& GetRanges() const { return m_arrRanges; }
  QXOgreBucketRange& GetRange(std::size_t nRange) const { return *m_arrRanges[nRange]; }
  /// Whether levels come and go with the distance.
  bool HasDistances() const { return !m_arrDistances.empty(); }
  /// Whether a level is drawn while the eye is so far from the bounds.
  bool IsLevelDrawn(int nLevel, double dDistance) const;
  /// How far the corners of wide lines are from their points at most, in pixels.
  double GetLineReach() const { return m_dLineReach; }
  bool HasWideLines() const { return m_bWideLines; }

  /// The vertices of an object: from its key to the last one that its indices touch.
  struct Span {
    unsigned int m_nFirst;
    unsigned int m_nCount;
  };
  /// Null for an object that the bucket does not have.
  Span const* FindObject(unsigned int nKey) const;
  /// By their keys.
  std::map<unsigned int, Span> const& GetObjects() const { return m_mapObjects; }
  /// Keys of the objects that are selected; the geometry shows them so.
  std::set<unsigned int>& GetSelected() { return m_setSelected; }
  /// The object's vertices have become transparent, and with them the ranges that touch any of them.
  void NoteTransparent(Span const& span);

private:
  void TakePass(QXPass const* pPass, QXTextureManager* pManager, QXOgreBucketRange& range);
  /// @param nFirstRange  that of the first of the packages, which are those of level 0
  void FindObjects(
      QXStaticGeometryBucket const& bucket, std::vector<QXIndexPackage*> const& vecPackages, std::size_t nFirstRange);

  std::vector<std::unique_ptr<QXOgreBucketRange>> m_arrRanges;
  std::vector<double> m_arrDistances;
  std::map<unsigned int, Span> m_mapObjects;
  std::set<unsigned int> m_setSelected;
  double m_dLineReach;
  bool m_bWideLines;
};

}  // namespace QXC
