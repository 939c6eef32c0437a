/// @file
/// A cloud of particles.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>

namespace QXC {

class QXTexture;

/// Smoke, fountains, rain: many small pictures that an emitter sets free. Made by
/// QXRenderOperationManager::CreateParticleSystem, deleted by the host. It moves only by Advance, so that a
/// recorded flight gives the same pictures each time.
/// Threads: the render thread, outside a frame.
class QXGRAPHICS3D_API QXParticleSystem3D {
public:
  QXParticleSystem3D();
  /// The particles are the renderer's: there is nothing that a copy could hold.
  QXParticleSystem3D(QXParticleSystem3D const&) = delete;
  QXParticleSystem3D& operator=(QXParticleSystem3D const&) = delete;

  // Slot order is the contract with plug-ins: never reorder, never insert; append only with a major version.
  virtual ~QXParticleSystem3D();

  /// 1: drawn (the default).
  virtual void SetVisible(unsigned char bVisible) = 0;
  /// Place and direction of the emitter; particles already free stay where they are.
  virtual void SetModelMatrix(QXMatrix4d const& matModel) = 0;
  /// 0: no new particles, those in the air live on.
  virtual void SetEmitting(unsigned char bEmitting) = 0;
  /// Particles a second.
  virtual void SetEmissionRate(double dRate) = 0;
  /// Picture of a particle; the system takes a reference.
  virtual void SetTexture(QXTexture* pTexture) = 0;
  /// Lets the time pass, in seconds. Once a frame, before the targets are updated.
  virtual void Advance(double dSeconds) = 0;
  /// Particles in the air.
  virtual unsigned int GetParticleCount() const = 0;
};

}  // namespace QXC
