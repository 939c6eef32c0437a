#include <plugins/ogre/QXOgreScene.h>

#include <algorithm>

#include <OgreCamera.h>
#include <OgreRenderQueue.h>
#include <OgreSceneNode.h>
#include <OgreViewport.h>

#include <plugins/ogre/QXOgreBillboardSet.h>
#include <plugins/ogre/QXOgreConvert.h>
#include <plugins/ogre/QXOgreDrawable.h>
#include <plugins/ogre/QXOgreSceneItem.h>
#include <plugins/ogre/environment/QXOgreSky.h>

namespace QXC {

namespace {

/// Whether OGRE can look through a projection. It derives a window from it and asserts that this is one, which would
/// end the host's process where the matrix has no inverse or is made of what is no number.
bool IsUsable(Ogre::Matrix4 const& matProjection) {
  if (!IsFinite(matProjection)) return false;
  Ogre::Matrix4 const matInverse = matProjection.inverse();
  return IsFinite(matInverse) && IsFinite(matInverse * Ogre::Vector3(-0.5F, 0.5F, 0.0F)) &&
         IsFinite(matInverse * Ogre::Vector3(0.5F, -0.5F, 0.0F));
}

}  // namespace

Ogre::String const QXOgreScene::TYPE_NAME = "QXOgreScene";

QXOgreScene::QXOgreScene(Ogre::String const& strName, QXOgreDevice& device)
    : Ogre::SceneManager(strName), m_pBillboards(std::make_unique<QXOgreBillboardSet>(device)), m_pCamera(nullptr),
      m_pView(nullptr) {
  m_pCamera = createCamera("view");
  getRootSceneNode()->attachObject(m_pCamera);
}

QXOgreScene::~QXOgreScene() {
  while (!m_arrDrawables.empty()) m_arrDrawables.back()->SetScene(nullptr);
  for (QXOgreSceneItem* const pItem : m_arrItems) pItem->LeaveScene();
}

void QXOgreScene::Add(QXOgreDrawable* pDrawable) {
  m_arrDrawables.push_back(pDrawable);
}

void QXOgreScene::Remove(QXOgreDrawable* pDrawable) {
  std::erase(m_arrDrawables, pDrawable);
}

void QXOgreScene::RemoveItem(QXOgreSceneItem* pItem) {
  std::erase(m_arrItems, pItem);
}

bool QXOgreScene::IsEndless() const {
  return std::any_of(m_arrItems.begin(), m_arrItems.end(), [](auto const* pItem) { return pItem->IsEndless(); });
}

QXOgreSky* QXOgreScene::FindSky() const {
  for (std::size_t i = m_arrItems.size(); i-- > 0;)
    if (auto* const pSky = dynamic_cast<QXOgreSky*>(m_arrItems[i])) return pSky;
  return nullptr;
}

QXBoundingBox QXOgreScene::GetBounds() const {
  QXBoundingBox box;
  for (QXOgreDrawable const* const pDrawable : m_arrDrawables)
    if (pDrawable->IsShown() && IsFinite(pDrawable->GetWorldBounds())) box.Merge(pDrawable->GetWorldBounds());
  for (QXOgreSceneItem const* const pItem : m_arrItems) {
    QXBoundingBox const boxItem = pItem->GetVisibleBounds();
    if (IsFinite(boxItem)) box.Merge(boxItem);
  }
  box.Merge(m_pBillboards->GetBounds());
  return box;
}

QXBoundingBox QXOgreScene::GetDrawableBounds() const {
  QXBoundingBox box;
  for (QXOgreDrawable const* const pDrawable : m_arrDrawables)
    if (IsFinite(pDrawable->GetWorldBounds())) box.Merge(pDrawable->GetWorldBounds());
  return box;
}

QXOgreCounts QXOgreScene::Draw(Ogre::Viewport& viewport, QXOgreView const& view, unsigned char bDrawables) {
  m_Counts = {};
  Ogre::Matrix4 const matView = ToOgre(view.m_matView);
  Ogre::Matrix4 const matProjection = ToOgre(view.m_matProjection);
  bool const bUsable = IsFinite(matView) && IsUsable(matProjection);
  m_pView = bDrawables && bUsable ? &view : nullptr;
  // For what OGRE brings into the queue itself; the drawables multiply their matrices in double.
  m_pCamera->setCustomViewMatrix(true, Ogre::Affine3(bUsable ? matView : Ogre::Matrix4::IDENTITY));
  m_pCamera->setCustomProjectionMatrix(true, bUsable ? matProjection : Ogre::Matrix4::IDENTITY);
  m_pCamera->setPolygonMode(view.m_ePolygonMode);
  viewport.setCamera(m_pCamera);
  viewport.update();
  m_pView = nullptr;
  // The scene may go before the viewport does, which would look for its camera then.
  m_pCamera->_notifyViewport(nullptr);
  viewport.setCamera(nullptr);
  return m_Counts;
}

Ogre::String const& QXOgreScene::getTypeName() const {
  return TYPE_NAME;
}

void QXOgreScene::_findVisibleObjects(Ogre::Camera*, Ogre::VisibleObjectsBoundsInfo*, bool) {
  if (!m_pView) return;
  m_arrDepths.clear();
  for (QXOgreDrawable* const pDrawable : m_arrDrawables)
    pDrawable->Queue(*m_pView, *getRenderQueue(), m_arrDepths, m_Counts);
  // No node has items or billboards.
  if (m_pView->m_pNode) return;
  for (QXOgreSceneItem* const pItem : m_arrItems)
    if (!m_pView->m_pPick || pItem->HasIdentifiers()) pItem->Queue(*m_pView, *getRenderQueue(), m_arrDepths, m_Counts);
  m_pBillboards->Queue(*m_pView, m_arrDepths, *getRenderQueue(), m_Counts);
}

Ogre::SceneManager* QXOgreSceneFactory::createInstance(Ogre::String const& strName) {
  return new QXOgreScene(strName, m_Device);
}

void QXOgreSceneFactory::destroyInstance(Ogre::SceneManager* pScene) {
  delete pScene;
}

void QXOgreSceneFactory::initMetaData() const {
  mMetaData.typeName = QXOgreScene::TYPE_NAME;
  mMetaData.worldGeometrySupported = false;
}

}  // namespace QXC
