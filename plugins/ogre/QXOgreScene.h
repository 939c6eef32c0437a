/// @file
/// A scene of drawables as OGRE sees it.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <OgreSceneManager.h>

#include <QxGraphics3D/frame/foundation/base3d/QXBoundingBox.h>
#include <QxGraphics3D/view/QXFog.h>

#include <plugins/ogre/QXOgreSceneNode.h>
#include <plugins/ogre/QXOgreView.h>
#include <plugins/ogre/environment/QXOgreLights.h>

namespace QXC {

class QXOgreBillboardSet;
class QXOgreDevice;
class QXOgreDrawable;
class QXOgreSceneItem;
class QXOgreSky;

/// OGRE's scene manager with the drawables in place of OGRE's own objects: culling is the library's, on world bounds in
/// double, and OGRE sorts and draws what is left. Made and deleted by the device.
class QXOgreScene final : public Ogre::SceneManager {
public:
  QXOgreScene(Ogre::String const& strName, QXOgreDevice& device);
  ~QXOgreScene() override;

  void Add(QXOgreDrawable* pDrawable);
  /// The drawables keep no order among themselves. Cost: linear.
  void Remove(QXOgreDrawable* pDrawable);
  /// Items are drawn in the order of their coming, where that matters.
  void AddItem(QXOgreSceneItem* pItem) { m_arrItems.push_back(pItem); }
  void RemoveItem(QXOgreSceneItem* pItem);
  /// Whether something that is drawn reaches from the eye to the horizon.
  bool IsEndless() const;
  /// The sky that came last; null if there is none.
  QXOgreSky* FindSky() const;
  QXOgreBillboardSet& GetBillboards() { return *m_pBillboards; }
  QXOgreSceneNodes& GetNodes() { return m_Nodes; }
  QXOgreLights& GetLights() { return m_Lights; }
  QXFog const& GetFog() const { return m_Fog; }
  void SetFog(QXFog const& fog) { m_Fog = fog; }
  /// Around everything visible, in world coordinates; null if there is nothing. A drawable whose bounds are no numbers
  /// is left out: it would take all others out of sight. Cost: linear in the drawables.
  QXBoundingBox GetBounds() const;
  /// Around every drawable, visible or not.
  QXBoundingBox GetDrawableBounds() const;

  /// Clears the viewport as it says and draws into it what the view sees.
  /// Without an inverse of the projection, or with entries that are no numbers, nothing can be seen: it clears only.
  /// @param bDrawables  0: clear only
  QXOgreCounts Draw(Ogre::Viewport& viewport, QXOgreView const& view, unsigned char bDrawables);

  Ogre::String const& getTypeName() const override;
  void _findVisibleObjects(
      Ogre::Camera* pCamera, Ogre::VisibleObjectsBoundsInfo* pBounds, bool bOnlyShadowCasters) override;

  /// The type name under which the factory makes scenes.
  static Ogre::String const TYPE_NAME;

private:
  QXOgreSceneNodes m_Nodes;
  QXOgreLights m_Lights;
  QXFog m_Fog;
  std::vector<QXOgreDrawable*> m_arrDrawables;
  std::vector<QXOgreSceneItem*> m_arrItems;
  std::unique_ptr<QXOgreBillboardSet> m_pBillboards;
  /// Of the transparent drawables in OGRE's queue.
  std::vector<Ogre::Real> m_arrDepths;
  Ogre::Camera* m_pCamera;
  /// Set while Draw runs.
  QXOgreView const* m_pView;
  QXOgreCounts m_Counts;
};

/// Makes scenes for OGRE's root.
class QXOgreSceneFactory final : public Ogre::SceneManagerFactory {
public:
  explicit QXOgreSceneFactory(QXOgreDevice& device) : m_Device(device) {}
  Ogre::SceneManager* createInstance(Ogre::String const& strName) override;
  void destroyInstance(Ogre::SceneManager* pScene) override;

protected:
  void initMetaData() const override;

private:
  QXOgreDevice& m_Device;
};

}  // namespace QXC
