#include <plugins/ogre/QXOgreSceneNode.h>

#include <algorithm>
#include <iterator>

#include <plugins/ogre/QXOgreConvert.h>
#include <plugins/ogre/QXOgreDrawable.h>

namespace QXC {

QXOgreSceneNode::QXOgreSceneNode(QdcUnicodeString const& strName, QXOgreSceneNode* pParent)
    : m_strName(strName), m_pParent(pParent), m_nIndex(0), m_vecScale(1.0, 1.0, 1.0), m_dNear(0.0), m_dFar(0.0),
      m_bVisible(1) {
  ComputeMatrix();
}

QXOgreSceneNode::~QXOgreSceneNode() {
  // From the lowest upwards: each goes when it has nothing under it any more.
  QXOgreSceneNode* pNode = this;
  while (pNode != this || !m_arrChildren.empty()) {
    if (!pNode->m_arrChildren.empty()) {
      pNode = pNode->m_arrChildren.back().get();
    } else {
      pNode = pNode->m_pParent;
      pNode->m_arrChildren.pop_back();
    }
  }
  while (!m_arrDrawables.empty()) m_arrDrawables.back()->SetNode(nullptr);
}

QXOgreSceneNode* QXOgreSceneNode::GetNext(QXOgreSceneNode const& top) const {
  if (!m_arrChildren.empty()) return m_arrChildren.front().get();
  QXOgreSceneNode const* pNode = this;
  while (pNode != &top) {
    auto const& arrSiblings = pNode->m_pParent->m_arrChildren;
    if (pNode->m_nIndex + 1 < arrSiblings.size()) return arrSiblings[pNode->m_nIndex + 1].get();
    pNode = pNode->m_pParent;
  }
  return nullptr;
}

void QXOgreSceneNode::Remove(QXOgreDrawable* pDrawable) {
  // The last one first: so they go when the node does, of which there may be very many under one.
  auto const position = std::find(m_arrDrawables.rbegin(), m_arrDrawables.rend(), pDrawable);
  if (position != m_arrDrawables.rend()) m_arrDrawables.erase(std::next(position).base());
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
  for (QXOgreSceneNode* pNode = GetNext(*this); pNode; pNode = pNode->GetNext(*this)) pNode->m_bVisible = bVisible;
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
  for (QXOgreSceneNode const* pNode = this; pNode; pNode = pNode->GetNext(*this)) {
    for (QXOgreDrawable const* const pDrawable : pNode->m_arrDrawables) {
      QXBoundingBox const& world = pDrawable->GetWorldBounds();
      if ((!bVisibleOnly || pDrawable->IsShown()) && IsFinite(world)) box.Merge(world);
    }
  }
  return box;
}

void QXOgreSceneNode::ComputeMatrix() {
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
}

void QXOgreSceneNode::UpdateMatrix() {
  // Parents come before their children, whose matrices take theirs up.
  for (QXOgreSceneNode* pNode = this; pNode; pNode = pNode->GetNext(*this)) {
    pNode->ComputeMatrix();
    for (QXOgreDrawable* const pDrawable : pNode->m_arrDrawables) pDrawable->UpdateWorld();
  }
}

unsigned char QXOgreSceneNodes::Create(QdcUnicodeString const& strParent, QdcUnicodeString const& strName) {
  QXOgreSceneNode* const pParent = strParent.IsEmpty() ? &m_Root : Find(strParent);
  if (!pParent || strName.IsEmpty() || Find(strName)) return 0;
  auto& arrChildren = pParent->m_arrChildren;
  arrChildren.push_back(std::make_unique<QXOgreSceneNode>(strName, pParent));
  arrChildren.back()->m_nIndex = arrChildren.size() - 1;
  m_mapNodes[strName] = arrChildren.back().get();
  return 1;
}

unsigned char QXOgreSceneNodes::Destroy(QdcUnicodeString const& strName) {
  QXOgreSceneNode const* const pNode = Find(strName);
  if (!pNode) return 0;
  for (QXOgreSceneNode const* p = pNode; p; p = p->GetNext(*pNode)) m_mapNodes.erase(p->m_strName);
  auto& arrSiblings = pNode->m_pParent->m_arrChildren;
  std::size_t const nIndex = pNode->m_nIndex;
  arrSiblings.erase(arrSiblings.begin() + static_cast<std::ptrdiff_t>(nIndex));
  for (std::size_t i = nIndex; i < arrSiblings.size(); ++i) arrSiblings[i]->m_nIndex = i;
  return 1;
}

QXOgreSceneNode* QXOgreSceneNodes::Find(QdcUnicodeString const& strName) const {
  auto const node = m_mapNodes.find(strName);
  return node == m_mapNodes.end() ? nullptr : node->second;
}

}  // namespace QXC
