/// @file
/// The overlays of a renderer.
#pragma once

#include <map>
#include <memory>
#include <vector>

#include <plugins/ogre/QXOgreSceneItem.h>
#include <plugins/ogre/effects/QXOgreOverlay.h>
#include <plugins/ogre/effects/QXOgreQuads.h>

namespace QXC {

class QXOgreDevice;
class QXOgreRenderTarget;
class QXOgreScene;

/// Keeps the overlays and draws them over the picture of one target after the other, from the lowest to the highest,
/// equal ones by name. Neighbours in that order that show one texture are one draw operation.
class QXOgreOverlays final : public QXOgreSceneItem {
public:
  /// @param scene  for the overlays alone; must outlive this object, as must the device
  QXOgreOverlays(QXOgreDevice& device, QXOgreScene& scene);
  ~QXOgreOverlays() override;

  /// Null if the name is empty or taken.
  QXOgreOverlay* Create(QdcUnicodeString const& strName);
  void Destroy(QdcUnicodeString const& strName) { m_mapOverlays.erase(strName); }
  /// Null if there is none of that name.
  QXOgreOverlay* Find(QdcUnicodeString const& strName) const;
  /// Called while the target is updated, after its viewports. Cost: n log n in the overlays.
  void DrawInto(QXOgreRenderTarget& target);

  void Queue(QXOgreView const& view, Ogre::RenderQueue& queue, std::vector<Ogre::Real>& arrDepths,
      QXOgreCounts& counts) override;
  QXBoundingBox GetVisibleBounds() const override { return {}; }
  void LeaveScene() override {}

private:
  void Sort();
  void CollectQuads(QXOgreView const& view);
  Ogre::Real QueueRun(std::size_t nFirst, std::size_t nEnd, Ogre::RenderQueue& queue);

  QXOgreDevice& m_Device;
  QXOgreScene& m_Scene;
  QXOgreQuads m_Quads;
  std::map<QdcUnicodeString, std::unique_ptr<QXOgreOverlay>> m_mapOverlays;
  std::vector<QXOgreOverlay const*> m_arrSorted;
  /// The texture of each quad; null for a plain one.
  std::vector<QXOgreTextureUse const*> m_arrUses;
};

}  // namespace QXC
