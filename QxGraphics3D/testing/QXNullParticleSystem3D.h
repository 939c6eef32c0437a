/// @file
/// A cloud of particles of the null renderer.
#pragma once

#include <QxGraphics3D/renderop/QXParticleSystem3D.h>
#include <QxGraphics3D/testing/QXNullObject.h>
#include <QxGraphics3D/testing/QXNullTextureUse.h>

namespace QXC {

/// Sets particles free by its rate and lets them live for ever, so that a test can count them.
class QXNullParticleSystem3D final : public QXParticleSystem3D, public QXNullObject {
public:
  QXNullParticleSystem3D(std::shared_ptr<QXCallLog> pLog, std::string strLabel)
      : QXNullObject(std::move(pLog), std::move(strLabel)) {}
  ~QXNullParticleSystem3D() override { Record("destroyed"); }

  void SetVisible(unsigned char bVisible) override { Record("SetVisible", bVisible); }
  void SetModelMatrix(QXMatrix4d const& matModel) override { Record("SetModelMatrix", matModel); }
  void SetEmitting(unsigned char bEmitting) override {
    Record("SetEmitting", bEmitting);
    m_bEmitting = bEmitting;
  }
  void SetEmissionRate(double dRate) override {
    Record("SetEmissionRate", dRate);
    m_dRate = dRate;
  }
  void SetTexture(QXTexture* pTexture) override {
    Record("SetTexture", QXLoggedMemory{pTexture});
    m_Texture.Set(pTexture);
  }
  void Advance(double dSeconds) override {
    Record("Advance", dSeconds);
    // Below 0 nothing comes or goes, and the count stops where an int would.
    double const dNew = m_bEmitting ? m_dRate * dSeconds : 0.0;
    m_dParticles += dNew > 0.0 && m_dParticles + dNew < 2147483647.0 ? dNew : 0.0;
  }
  unsigned int GetParticleCount() const override { return static_cast<unsigned int>(m_dParticles); }

private:
  unsigned char m_bEmitting = 1;
  double m_dRate = 0.0;
  double m_dParticles = 0.0;
  QXNullTextureUse m_Texture;
};

}  // namespace QXC
