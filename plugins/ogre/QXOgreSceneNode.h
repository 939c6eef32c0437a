/// @file
/// Nodes of a scene.
#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <vector>

#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>
#include <QxGraphics3D/frame/foundation/base3d/QXBoundingBox.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>
#include <QxGraphics3D/frame/foundation/base3d/QXQuaternion4d.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>

namespace QXC {

class QXOgreDrawable;

/// Place, turn and scale relative to a parent, and whether the drawables that hang under it are drawn. The matrices are
/// ours, in double, and not OGRE's: its nodes have floats. Drawables are told when one above them moves.
class QXOgreSceneNode final {
public:
  /// @param pParent  null: the root
  QXOgreSceneNode(QdcUnicodeString const& strName, QXOgreSceneNode* pParent);
  /// Its drawables, and those of the nodes under it, hang under the root afterwards.
  ~QXOgreSceneNode();
  QXOgreSceneNode(QXOgreSceneNode const&) = delete;
  QXOgreSceneNode& operator=(QXOgreSceneNode const&) = delete;

  void SetPosition(QXVector3d const& vecPosition);
  void SetOrientation(QXQuaternion4d const& qOrientation);
  void SetScale(QXVector3d const& vecScale);
  /// @param bCascade  0: what hangs under the nodes below is drawn as those say
  void SetVisible(unsigned char bVisible, unsigned char bCascade);
  /// A far distance of 0 is without limit.
  void SetVisibleDistance(double dNear, double dFar);

  /// From the node to the world.
  QXMatrix4d const& GetMatrix() const { return m_matWorld; }
  unsigned char IsVisible() const { return m_bVisible; }
  /// Whether drawables at a distance from the eye are drawn.
  bool IsWithin(double dDistance) const { return dDistance >= m_dNear && !(m_dFar > 0.0 && dDistance > m_dFar); }
  /// Whether this is the other one or stands under it.
  bool IsUnder(QXOgreSceneNode const& other) const;
  /// Around the drawables here and below, in world coordinates; null without any.
  QXBoundingBox GetBounds(bool bVisibleOnly) const;

  /// Called by the drawables themselves.
  void Add(QXOgreDrawable* pDrawable) { m_arrDrawables.push_back(pDrawable); }
  void Remove(QXOgreDrawable* pDrawable);

private:
  friend class QXOgreSceneNodes;
  /// The node that follows where each comes before those under it; null behind the last one under top. Hosts may hang
  /// nodes one under the other as deep as they like, so nothing here calls itself once for each level.
  QXOgreSceneNode* GetNext(QXOgreSceneNode const& top) const;
  /// Of this node alone.
  void ComputeMatrix();
  /// Of this node and all below.
  void UpdateMatrix();

  QdcUnicodeString m_strName;
  QXOgreSceneNode* m_pParent;
  /// Among the children of the parent.
  std::size_t m_nIndex;
  std::vector<std::unique_ptr<QXOgreSceneNode>> m_arrChildren;
  std::vector<QXOgreDrawable*> m_arrDrawables;
  QXVector3d m_vecPosition;
  QXQuaternion4d m_qOrientation;
  QXVector3d m_vecScale;
  QXMatrix4d m_matWorld;
  double m_dNear;
  double m_dFar;
  unsigned char m_bVisible;
};

/// The nodes of one scene by name.
class QXOgreSceneNodes final {
public:
  QXOgreSceneNodes() : m_Root({}, nullptr) {}

  /// 0 if the name is empty or taken, or the parent (empty: the root) unknown.
  unsigned char Create(QdcUnicodeString const& strParent, QdcUnicodeString const& strName);
  /// Deletes a node and those under it. 0 if there is none of that name.
  unsigned char Destroy(QdcUnicodeString const& strName);
  /// Null if there is none, as for the root, which nobody moves or hides.
  QXOgreSceneNode* Find(QdcUnicodeString const& strName) const;

private:
  QXOgreSceneNode m_Root;
  std::map<QdcUnicodeString, QXOgreSceneNode*> m_mapNodes;
};

}  // namespace QXC
