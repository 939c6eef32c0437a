#include <QxGraphics3D/testing/QXNullScene.h>

#include <algorithm>

#include <QxGraphics3D/testing/QXNullHwInstancingManager.h>
#include <QxGraphics3D/testing/QXNullRenderOperation3D.h>

namespace QXC {
namespace {

/// Scale, then turn, then shift, for row vectors: the rows are the scaled axes.
QXMatrix4d ToMatrix(QXNullSceneNode const& node) {
  QXVector3d axes[3];
  node.m_qOrientation.ToAxes(axes);
  double const scales[3] = {node.m_vecScale.x, node.m_vecScale.y, node.m_vecScale.z};
  QXMatrix4d matrix;
  for (int i = 0; i < 3; ++i) {
    matrix[i][0] = axes[i].x * scales[i];
    matrix[i][1] = axes[i].y * scales[i];
    matrix[i][2] = axes[i].z * scales[i];
  }
  matrix.SetTrans(node.m_vecPosition);
  return matrix;
}

}  // namespace

QXNullScene::~QXNullScene() {
  for (QXNullRenderOperation3D* const pDrawable : m_arrDrawables) {
    pDrawable->m_pScene = nullptr;
  }
  for (QXNullInstancing* const pInstancing : m_arrInstancings) {
    pInstancing->m_pScene = nullptr;
  }
}

unsigned char QXNullScene::CreateNode(QdcUnicodeString const& strParent, QdcUnicodeString const& strName) {
  if (strName.IsEmpty() || (!strParent.IsEmpty() && m_mapNodes.count(strParent) == 0)) {
    return 0;
  }
  QXNullSceneNode node;
  node.m_strParent = strParent;
  return static_cast<unsigned char>(m_mapNodes.emplace(strName, node).second);
}

unsigned char QXNullScene::DestroyNode(QdcUnicodeString const& strName) {
  if (m_mapNodes.count(strName) == 0) {
    return 0;
  }
  // All of them are found before the first goes: the way from a node to its ancestor leads over those between.
  std::vector<QdcUnicodeString> arrDoomed;
  for (auto const& [strNode, node] : m_mapNodes) {
    if (IsUnder(strNode, strName)) {
      arrDoomed.push_back(strNode);
    }
  }
  for (QXNullRenderOperation3D* const pDrawable : m_arrDrawables) {
    if (IsUnder(pDrawable->m_strNode, strName)) {
      pDrawable->m_strNode = QdcUnicodeString();
    }
  }
  for (QdcUnicodeString const& strNode : arrDoomed) {
    m_mapNodes.erase(strNode);
  }
  return 1;
}

bool QXNullScene::IsUnder(QdcUnicodeString strName, QdcUnicodeString const& strAncestor) const {
  while (strName != strAncestor) {
    auto const node = m_mapNodes.find(strName);
    if (node == m_mapNodes.end()) {
      return false;
    }
    strName = node->second.m_strParent;
  }
  return true;
}

QXNullSceneNode* QXNullScene::FindNode(QdcUnicodeString const& strName) {
  auto const node = m_mapNodes.find(strName);
  return node == m_mapNodes.end() ? nullptr : &node->second;
}

QXNullSceneNode const* QXNullScene::FindNode(QdcUnicodeString const& strName) const {
  auto const node = m_mapNodes.find(strName);
  return node == m_mapNodes.end() ? nullptr : &node->second;
}

void QXNullScene::SetNodeVisible(QdcUnicodeString const& strName, unsigned char bVisible, unsigned char bCascade) {
  for (auto& [strNode, node] : m_mapNodes) {
    if (strNode == strName || (bCascade && IsUnder(strNode, strName))) {
      node.m_bVisible = bVisible;
    }
  }
}

QXMatrix4d QXNullScene::GetNodeMatrix(QdcUnicodeString const& strName) const {
  QXMatrix4d matrix;
  for (QXNullSceneNode const* pNode = FindNode(strName); pNode != nullptr; pNode = FindNode(pNode->m_strParent)) {
    matrix = matrix * ToMatrix(*pNode);
  }
  return matrix;
}

QXBoundingBox QXNullScene::GetNodeBounds(QdcUnicodeString const& strName) const {
  QXBoundingBox bounds;
  for (QXNullRenderOperation3D const* const pDrawable : m_arrDrawables) {
    if (IsUnder(pDrawable->m_strNode, strName)) {
      bounds.Merge(pDrawable->GetWorldBoundingBox());
    }
  }
  return bounds;
}

void QXNullScene::Attach(QXNullRenderOperation3D* pDrawable) {
  if (pDrawable->m_pScene != nullptr) {
    pDrawable->m_pScene->Detach(pDrawable);
  }
  m_arrDrawables.push_back(pDrawable);
  pDrawable->m_pScene = this;
}

void QXNullScene::Detach(QXNullRenderOperation3D* pDrawable) {
  m_arrDrawables.erase(std::remove(m_arrDrawables.begin(), m_arrDrawables.end(), pDrawable), m_arrDrawables.end());
  pDrawable->m_pScene = nullptr;
  pDrawable->m_strNode = QdcUnicodeString();
}

void QXNullScene::RemoveInstancing(QXNullInstancing* pInstancing) {
  std::erase(m_arrInstancings, pInstancing);
}

}  // namespace QXC
