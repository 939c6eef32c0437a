/// @file
/// What a scene draws beside its drawables and billboards.
#pragma once

#include <vector>

#include <OgrePrerequisites.h>

#include <QxGraphics3D/frame/foundation/base3d/QXBoundingBox.h>

#include <plugins/ogre/QXOgreView.h>

namespace QXC {

/// Stands in one scene from QXOgreScene::AddItem to RemoveItem, or until the scene goes. No node has items: what hangs
/// under one node alone is drawn without them.
class QXOgreSceneItem {
public:
  QXOgreSceneItem() = default;
  QXOgreSceneItem(QXOgreSceneItem const&) = delete;
  QXOgreSceneItem& operator=(QXOgreSceneItem const&) = delete;
  virtual ~QXOgreSceneItem() = default;

  /// Puts what the view sees into the queue and counts it. Called once a viewport, before that is drawn.
  /// @param arrDepths  receives the depth of each renderable that is blended
  virtual void Queue(
      QXOgreView const& view, Ogre::RenderQueue& queue, std::vector<Ogre::Real>& arrDepths, QXOgreCounts& counts) = 0;
  /// Whether Queue puts what has identifiers into the queue where the view asks for them. What does not, skies and smoke,
  /// is seen through by picks.
  virtual bool HasIdentifiers() const { return false; }
  /// Around what is visible, in world coordinates; null if there is nothing. Cameras set near and far by it.
  virtual QXBoundingBox GetVisibleBounds() const = 0;
  /// Whether it reaches from the eye to the horizon, so that cameras see from near on.
  virtual bool IsEndless() const { return false; }
  /// The scene goes: it calls nothing here any more.
  virtual void LeaveScene() = 0;
};

}  // namespace QXC
