#include <QxGraphics3D/model/QXGeometryInstanceManager.h>

#include <QxGraphics3D/frame/foundation/base/QdcArray.h>
#include <QxGraphics3D/model/QXRenderObjectInstance.h>

#include <utility>

namespace QXC {

QXGeometryInstanceManager::QXGeometryInstanceManager() = default;
QXGeometryInstanceManager::QXGeometryInstanceManager(QXGeometryInstanceManager const&) = default;

QXGeometryInstanceManager& QXGeometryInstanceManager::operator=(QXGeometryInstanceManager const& other) {
  if (this == &other) return *this;
  QdcDict<QdcUnicodeString, QXROInstancePtr> copy(other.m_dictROInstances);
  RemoveAll();  // not by the dictionary's assignment: drawables die meanwhile, and may call back
  m_dictROInstances = std::move(copy);
  return *this;
}

QXGeometryInstanceManager::~QXGeometryInstanceManager() {
  RemoveAll();
}

QXROInstancePtr QXGeometryInstanceManager::AddROInstance(
    QdcUnicodeString const& strName, QXRenderObjectInstance* pInstance) {
  if (!pInstance) return GetROInstance(strName);
  QXROInstancePtr pAdded(pInstance);
  QXROInstancePtr& pEntry = m_dictROInstances[strName];
  QXROInstancePtr const pFormer = pEntry;  // dies when the new one stands
  pEntry = pAdded;
  return pAdded;
}

QXROInstancePtr QXGeometryInstanceManager::GetROInstance(QdcUnicodeString const& strName) const {
  auto const place = m_dictROInstances.Find(strName);
  return m_dictROInstances.IsEOF(place) ? QXROInstancePtr() : place->second;
}

unsigned char QXGeometryInstanceManager::IsExists(QdcUnicodeString const& strName) const {
  return static_cast<unsigned char>(!m_dictROInstances.IsEOF(m_dictROInstances.Find(strName)));
}

void QXGeometryInstanceManager::Remove(QdcUnicodeString const& strName) {
  m_dictROInstances.RemoveKey(strName);
}

void QXGeometryInstanceManager::RemoveAll() {
  // In two passes: a drawable that dies may have others removed.
  QdcArray<QdcUnicodeString> arrNames;
  auto place = m_dictROInstances.GetStartPosition();
  for (; !m_dictROInstances.IsEOF(place); ++place) arrNames.Add(place->first);
  for (QdcUnicodeString const& strName : arrNames) Remove(strName);
}

}  // namespace QXC
