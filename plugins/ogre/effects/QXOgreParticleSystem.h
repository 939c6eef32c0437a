/// @file
/// The cloud of particles that hosts hold.
#pragma once

#include <memory>
#include <vector>

#include <QxGraphics3D/renderop/QXParticleSystem3D.h>

#include <plugins/ogre/QXOgreSceneItem.h>
#include <plugins/ogre/QXOgreTextureSource.h>
#include <plugins/ogre/effects/QXOgreParticles.h>
#include <plugins/ogre/effects/QXOgreQuads.h>

namespace QXC {

class QXOgreScene;

/// Particles of a kind in a scene: pictures that face the camera, computed in double for each view, from back to front
/// where they cover each other in part, and drawn in one operation. Without a texture each is a soft disc of its colour.
/// Where it outlives its scene it draws nothing any more; its particles go on.
/// Cost: of Advance linear in the particles; of a view that sees them the same, and sorting.
class QXOgreParticleSystem final : public QXParticleSystem3D, public QXOgreSceneItem {
public:
  /// Stands in the scene from now on.
  /// @param pDisc  shown without another texture; lives as long as the renderer
  QXOgreParticleSystem(
      QXOgreDevice& device, QXOgreScene& scene, QXOgreParticleKind const& kind, std::uint64_t nSeed, QXTexture* pDisc);
  ~QXOgreParticleSystem() override;
  QXOgreParticleSystem(QXOgreParticleSystem const&) = delete;
  QXOgreParticleSystem& operator=(QXOgreParticleSystem const&) = delete;

  void SetVisible(unsigned char bVisible) override { m_bVisible = bVisible; }
  void SetModelMatrix(QXMatrix4d const& matModel) override { m_Particles.SetMatrix(matModel); }
  void SetEmitting(unsigned char bEmitting) override { m_Particles.SetEmitting(bEmitting != 0); }
  void SetEmissionRate(double dRate) override { m_Particles.SetRate(dRate); }
  void SetTexture(QXTexture* pTexture) override;
  void Advance(double dSeconds) override { m_Particles.Advance(dSeconds); }
  unsigned int GetParticleCount() const override { return static_cast<unsigned int>(m_Particles.GetCount()); }

  void Queue(QXOgreView const& view, Ogre::RenderQueue& queue, std::vector<Ogre::Real>& arrDepths,
      QXOgreCounts& counts) override;
  QXBoundingBox GetVisibleBounds() const override;
  void LeaveScene() override;

private:
  /// A particle that is seen, in the coordinates of the eye.
  struct Item {
    double m_dDepth;
    QXOgreQuads::Corners m_arrCorners;
  };

  bool IsSeen(QXOgreView const& view) const;
  void CollectItems(QXOgreView const& view);
  /// False if it lies behind the eye.
  bool Place(QXOgreParticles::State const& state, QXOgreView const& view, Item& item) const;
  QXOgreSurface MakeSurface() const;

  QXOgreDevice& m_Device;
  QXOgreScene* m_pScene;
  QXOgreParticles m_Particles;
  std::unique_ptr<QXOgreQuads> m_pQuads;
  std::unique_ptr<QXOgreTextureUse> m_pDisc;
  std::unique_ptr<QXOgreTextureUse> m_pUse;
  std::vector<Item> m_arrItems;
  unsigned char m_bVisible;
};

}  // namespace QXC
