/// @file
/// Particles as numbers, without pictures.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include <QxGraphics3D/frame/foundation/base3d/QXBoundingBox.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXColorValue3D.h>

namespace QXC {

/// What tells kinds of particles apart. Lengths are metres where a unit is one and the emitter does not scale.
struct QXOgreParticleKind {
  std::wstring_view m_strName;
  double m_dRate = 10.0;  ///< Particles a second
  double m_dLeastLife = 2.0;
  double m_dMostLife = 2.0;
  double m_dLeastSpeed = 1.0;
  double m_dMostSpeed = 1.0;
  double m_dSpread = 0.0;     ///< Radians between the emitter's axis and the outermost way
  QXVector3d m_vecExtent;     ///< Halves of the box in which particles begin
  bool m_bDownwards = false;  ///< Along the emitter's negative z instead of z
  double m_dGravity = 0.0;    ///< Metres per second squared, downwards in the world
  double m_dFirstSize = 0.2;
  double m_dLastSize = 0.2;
  double m_dSpin = 0.0;     ///< Most radians a second, either way
  double m_dStreak = 0.0;   ///< Seconds of its way that a particle is drawn along; 0: as a square
  bool m_bGlowing = false;  ///< Adds its light to what is behind instead of covering that
  /// At the beginning, the middle and the end of a life.
  std::array<QXColorValue3D, 3> m_arrColors = {QXColorValue3D::White, QXColorValue3D::White, QXColorValue3D::White};
};

/// The kind of a name; null if there is none. The plain one has the empty name.
QXOgreParticleKind const* FindParticleKind(std::wstring_view strName);

/// The particles of one emitter. Where each one is follows from its beginning alone, and its chances from its number and
/// the seed, so that many short steps and a long one lead to the same place. Allocates only while there are more
/// particles than ever before, and never for more than MOST: then the oldest go before their time.
class QXOgreParticles final {
public:
  static constexpr std::size_t MOST = 16384;

  /// A particle as it is now.
  struct State {
    QXVector3d m_vecPosition;
    QXVector3d m_vecVelocity;
    double m_dSize;
    double m_dAngle;  ///< Radians counter-clockwise
    QXColorValue3D m_Color;
  };

  QXOgreParticles(QXOgreParticleKind const& kind, std::uint64_t nSeed);

  QXOgreParticleKind const& GetKind() const { return m_Kind; }
  /// Of particles to come: place, direction, and the factor on lengths, by which everything but time grows. A matrix with
  /// numbers that are none is ignored.
  void SetMatrix(QXMatrix4d const& mat);
  void SetEmitting(bool bEmitting) { m_bEmitting = bEmitting; }
  /// What is not above 0 sets none free.
  void SetRate(double dRate);
  /// What is not above 0, or has no end, is ignored. Cost: linear in the particles, those that come included.
  void Advance(double dSeconds);

  /// In the air, the oldest first.
  std::size_t GetCount() const { return m_arrParticles.size(); }
  State GetState(std::size_t nParticle) const;
  /// Around all particles however they are turned; null without any.
  QXBoundingBox const& GetBounds() const { return m_Bounds; }

private:
  struct Particle {
    QXVector3d m_vecStart;
    QXVector3d m_vecVelocity;
    double m_dBirth;
    double m_dLife;
    double m_dScale;
    double m_dAngle;
    double m_dSpin;
  };

  void Emit(double dSeconds);
  Particle Make(std::uint64_t nNumber, double dBirth) const;
  void MeasureBounds();

  QXOgreParticleKind const& m_Kind;
  std::uint64_t m_nSeed;
  std::vector<Particle> m_arrParticles;
  QXMatrix4d m_matEmitter;
  double m_dScale;
  double m_dRate;
  double m_dTime;
  /// How much of the next particle is due, 0 to 1.
  double m_dDue;
  /// Set free since the beginning.
  std::uint64_t m_nMade;
  bool m_bEmitting;
  QXBoundingBox m_Bounds;
};

}  // namespace QXC
