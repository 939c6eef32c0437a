#include <plugins/ogre/QXOgreSceneNode.h>

#include <plugins/ogre/QXOgreConvert.h>
#include <plugins/ogre/QXOgreDrawable.h>

namespace QXC {

QXOgreSceneNode::QXOgreSceneNode(QdcUnicodeString const& strName, QXOgreSceneNode* pParent)
    : m_strName(strName), m_pParent(pParent), m_vecScale(1.0, 1.0, 1.0), m_dNear(0.0), m_dFar(0.0), m_bVisible(1) {
  UpdateMatrix();
}

QXOgreSceneNode::~QXOgreSceneNode() {
  while (!m_arrDrawables.empty()) m_arrDrawables.back()->SetNode(nullptr);
}

void QXOgreSceneNode::SetPosition(QXVector3d const& vecPosition) {
  m_vecPosition = vecPosition;
  UpdateMatrix();
}

void QXOgreSceneNode::SetOrientation(QXQuaternion4d const& qOrientation) {
  m_qOrientation = qOrientation;
  UpdateMatrix();
}

void QXOgreSceneNode::SetScale(QXVector3d const& vecScale) {
  m_vecScale = vecScale;
  UpdateMatrix();
}

void QXOgreSceneNode::SetVisible(unsigned char bVisible, unsigned char bCascade) {
  m_bVisible = bVisible;
  if (!bCascade) return;
  for (auto const& pChild : m_arrChildren) pChild->SetVisible(bVisible, 1);
}

void QXOgreSceneNode::SetVisibleDistance(double dNear, double dFar) {
  m_dNear = dNear;
  m_dFar = dFar;
}

bool QXOgreSceneNode::IsUnder(QXOgreSceneNode const& other) const {
  QXOgreSceneNode const* pNode = this;
  while (pNode && pNode != &other) pNode = pNode->m_pParent;
  return pNode != nullptr;
}

QXBoundingBox QXOgreSceneNode::GetBounds(bool bVisibleOnly) const {
  QXBoundingBox box;
  for (QXOgreDrawable const* const pDrawable : m_arrDrawables) {
    QXBoundingBox const& world = pDrawable->GetWorldBounds();
    if ((!bVisibleOnly || pDrawable->IsShown()) && IsFinite(world)) box.Merge(world);
  }
  for (auto const& pChild : m_arrChildren) box.Merge(pChild->GetBounds(bVisibleOnly));
  return box;
}

void QXOgreSceneNode::UpdateMatrix() {
  // Scaled, then turned, then moved; for row vectors the rows are the turned and scaled axes.
  QXVector3d arrAxes[3];
  m_qOrientation.ToAxes(arrAxes);
  double const arrScales[3] = {m_vecScale.x, m_vecScale.y, m_vecScale.z};
  QXMatrix4d mat;
  for (int i = 0; i < 3; ++i) {
    mat[i][0] = arrAxes[i].x * arrScales[i];
    mat[i][1] = arrAxes[i].y * arrScales[i];
    mat[i][2] = arrAxes[i].z * arrScales[i];
  }
  mat.SetTrans(m_vecPosition);
  m_matWorld = m_pParent ? mat * m_pParent->m_matWorld : mat;
  for (QXOgreDrawable* const pDrawable : m_arrDrawables) pDrawable->UpdateWorld();
  for (auto const& pChild : m_arrChildren) pChild->UpdateMatrix();
}

unsigned char QXOgreSceneNodes::Create(QdcUnicodeString const& strParent, QdcUnicodeString const& strName) {
  QXOgreSceneNode* const pParent = strParent.IsEmpty() ? &m_Root : Find(strParent);
  if (!pParent || strName.IsEmpty() || Find(strName)) return 0;
  auto& arrChildren = pParent->m_arrChildren;
  arrChildren.push_back(std::make_unique<QXOgreSceneNode>(strName, pParent));
  m_mapNodes[strName] = arrChildren.back().get();
  return 1;
}

unsigned char QXOgreSceneNodes::Destroy(QdcUnicodeString const& strName) {
  QXOgreSceneNode const* const pNode = Find(strName);
  if (!pNode) return 0;
  Forget(*pNode);
  std::erase_if(pNode->m_pParent->m_arrChildren, [&](auto const& pChild) { return pChild.get() == pNode; });
  return 1;
}

void QXOgreSceneNodes::Forget(QXOgreSceneNode const& node) {
  m_mapNodes.erase(node.m_strName);
  for (auto const& pChild : node.m_arrChildren) Forget(*pChild);
}

QXOgreSceneNode* QXOgreSceneNodes::Find(QdcUnicodeString const& strName) const {
  auto const node = m_mapNodes.find(strName);
  return node == m_mapNodes.end() ? nullptr : node->second;
}

}  // namespace QXC
