/// @file
/// A scene of the null renderer.
#pragma once

#include <map>
#include <vector>

#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>
#include <QxGraphics3D/frame/foundation/base3d/QXBoundingBox.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>
#include <QxGraphics3D/frame/foundation/base3d/QXQuaternion4d.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>
#include <QxGraphics3D/view/QXFog.h>

namespace QXC {

class QXNullInstancing;
class QXNullRenderOperation3D;

/// Place, turn and scale relative to the parent, and whether what hangs under the node is drawn.
struct QXNullSceneNode {
  /// Empty: the root.
  QdcUnicodeString m_strParent;
  QXVector3d m_vecPosition;
  QXQuaternion4d m_qOrientation;
  QXVector3d m_vecScale{1.0, 1.0, 1.0};
  unsigned char m_bVisible = 1;
  /// Distances from the eye between which the node is drawn; a far distance of 0 means without limit.
  double m_dNearDist = 0.0;
  double m_dFarDist = 0.0;
};

/// Nodes by name and the drawables that stand in the scene, which belong to their hosts. Drawables hang under the root
/// (the empty name) until they are put under a node.
class QXNullScene {
public:
  explicit QXNullScene(QdcUnicodeString const& strName) : m_strName(strName) {}
  QXNullScene(QXNullScene const&) = delete;
  QXNullScene& operator=(QXNullScene const&) = delete;
  /// Takes its drawables out first.
  ~QXNullScene();

  QdcUnicodeString const& GetName() const { return m_strName; }

  /// 0 if the name is empty or taken, or the parent unknown.
  unsigned char CreateNode(QdcUnicodeString const& strParent, QdcUnicodeString const& strName);
  /// Deletes a node and those under it; their drawables hang under the root afterwards. 0 if there is none.
  unsigned char DestroyNode(QdcUnicodeString const& strName);
  /// Null if there is none, as for the root, which cannot be moved or hidden.
  QXNullSceneNode* FindNode(QdcUnicodeString const& strName);
  QXNullSceneNode const* FindNode(QdcUnicodeString const& strName) const;
  /// @param bCascade  1: the nodes under it too
  void SetNodeVisible(QdcUnicodeString const& strName, unsigned char bVisible, unsigned char bCascade);
  /// From the node to the world; the identity for the root.
  QXMatrix4d GetNodeMatrix(QdcUnicodeString const& strName) const;
  /// World bounds of the drawables of a node and of the nodes under it; null without any.
  QXBoundingBox GetNodeBounds(QdcUnicodeString const& strName) const;

  /// Both keep the drawable's own pointer in step.
  void Attach(QXNullRenderOperation3D* pDrawable);
  void Detach(QXNullRenderOperation3D* pDrawable);
  /// In the order in which they came.
  std::vector<QXNullRenderOperation3D*> const& GetDrawables() const { return m_arrDrawables; }

  /// Instancings stand in one scene all their lives and call both themselves.
  void AddInstancing(QXNullInstancing* pInstancing) { m_arrInstancings.push_back(pInstancing); }
  void RemoveInstancing(QXNullInstancing* pInstancing);
  std::vector<QXNullInstancing*> const& GetInstancings() const { return m_arrInstancings; }

  void SetFog(QXFog const& fog) { m_Fog = fog; }
  QXFog const& GetFog() const { return m_Fog; }

private:
  /// Whether strName is strAncestor or stands under it.
  bool IsUnder(QdcUnicodeString strName, QdcUnicodeString const& strAncestor) const;

  QdcUnicodeString m_strName;
  std::map<QdcUnicodeString, QXNullSceneNode> m_mapNodes;
  std::vector<QXNullRenderOperation3D*> m_arrDrawables;
  std::vector<QXNullInstancing*> m_arrInstancings;
  QXFog m_Fog;
};

}  // namespace QXC
