#include <plugins/ogre/effects/QXOgreParticles.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace QXC {

namespace {

constexpr double DEGREE = std::numbers::pi / 180.0;
constexpr double FASTEST_RATE = 1.0e9;
/// A longer step is taken as one of so many seconds: nothing that was in the air before it is left anyway.
constexpr double LONGEST_STEP = 1.0e9;
/// Up to so many, numbers follow each other in double.
constexpr double MOST_NEW = 0x1.0p52;
/// Sums of short steps fall short of a whole particle by as little.
constexpr double ROUNDING = 1.0e-9;

std::array<QXOgreParticleKind, 6> MakeKinds() {
  std::array<QXOgreParticleKind, 6> arrKinds;
  QXOgreParticleKind& smoke = arrKinds[1];
  smoke = {L"smoke", 12.0, 4.0, 6.0, 0.8, 1.4, 12.0 * DEGREE, {0.2, 0.2, 0.0}, false, -0.1, 0.6, 3.0, 0.4, 0.0, false,
      {{{0.3, 0.3, 0.32, 0.0}, {0.42, 0.42, 0.44, 0.4}, {0.6, 0.6, 0.62, 0.0}}}};
  QXOgreParticleKind& fire = arrKinds[2];
  fire = {L"fire", 60.0, 0.6, 1.2, 1.5, 2.5, 10.0 * DEGREE, {0.3, 0.3, 0.0}, false, -0.5, 0.9, 0.2, 1.5, 0.0, true,
      {{{1.0, 0.75, 0.3, 0.6}, {1.0, 0.35, 0.05, 0.5}, {0.5, 0.05, 0.0, 0.0}}}};
  QXOgreParticleKind& fountain = arrKinds[3];
  fountain = {L"fountain", 400.0, 1.9, 2.1, 9.0, 10.0, 6.0 * DEGREE, {0.05, 0.05, 0.0}, false, 9.81, 0.12, 0.3, 0.0,
      0.0, false, {{{0.85, 0.93, 1.0, 0.7}, {0.88, 0.95, 1.0, 0.5}, {0.9, 0.96, 1.0, 0.2}}}};
  QXOgreParticleKind& rain = arrKinds[4];
  rain = {L"rain", 1500.0, 1.6, 1.6, 9.0, 10.0, 1.0 * DEGREE, {15.0, 15.0, 0.0}, true, 0.0, 0.03, 0.03, 0.0, 0.06,
      false, {{{0.8, 0.85, 0.92, 0.5}, {0.8, 0.85, 0.92, 0.5}, {0.8, 0.85, 0.92, 0.5}}}};
  QXOgreParticleKind& snow = arrKinds[5];
  snow = {L"snow", 500.0, 10.0, 10.0, 1.2, 1.8, 15.0 * DEGREE, {15.0, 15.0, 0.0}, true, 0.0, 0.1, 0.1, 0.0, 0.0, false,
      {{{1.0, 1.0, 1.0, 0.9}, {1.0, 1.0, 1.0, 0.9}, {1.0, 1.0, 1.0, 0.9}}}};
  return arrKinds;
}

/// Chances of a particle by number, 0 to 1: a bijective mixing of bits, so that none depends on those before it.
class Chances {
public:
  Chances(std::uint64_t nSeed, std::uint64_t nNumber) : m_nState(Mix(nSeed) ^ Mix(nNumber + 0x9E3779B97F4A7C15U)) {}
  double Next() {
    m_nState += 0x9E3779B97F4A7C15U;
    return static_cast<double>(Mix(m_nState) >> 11U) * 0x1.0p-53;
  }
  double Between(double dLow, double dHigh) { return dLow + (dHigh - dLow) * Next(); }

private:
  static std::uint64_t Mix(std::uint64_t n) {
    n = (n ^ (n >> 30U)) * 0xBF58476D1CE4E5B9U;
    n = (n ^ (n >> 27U)) * 0x94D049BB133111EBU;
    return n ^ (n >> 31U);
  }
  std::uint64_t m_nState;
};

/// The part of the matrix that turns and scales.
QXVector3d Turned(QXVector3d const& v, QXMatrix4d const& mat) {
  return {v.x * mat[0][0] + v.y * mat[1][0] + v.z * mat[2][0], v.x * mat[0][1] + v.y * mat[1][1] + v.z * mat[2][1],
      v.x * mat[0][2] + v.y * mat[1][2] + v.z * mat[2][2]};
}

double ScaleOf(QXMatrix4d const& m) {
  double const dVolume = m[0][0] * (m[1][1] * m[2][2] - m[1][2] * m[2][1]) -
                         m[0][1] * (m[1][0] * m[2][2] - m[1][2] * m[2][0]) +
                         m[0][2] * (m[1][0] * m[2][1] - m[1][1] * m[2][0]);
  return std::cbrt(std::abs(dVolume));
}

double Mean(double dFrom, double dTo, double dPart) {
  return dFrom + (dTo - dFrom) * dPart;
}

QXVector3d Along(QXVector3d const& vecFrom, QXVector3d const& vecWay, double dFactor) {
  return {vecFrom.x + vecWay.x * dFactor, vecFrom.y + vecWay.y * dFactor, vecFrom.z + vecWay.z * dFactor};
}

}  // namespace

QXOgreParticleKind const* FindParticleKind(std::wstring_view strName) {
  static std::array<QXOgreParticleKind, 6> const s_arrKinds = MakeKinds();
  for (QXOgreParticleKind const& kind : s_arrKinds)
    if (kind.m_strName == strName) return &kind;
  return nullptr;
}

QXOgreParticles::QXOgreParticles(QXOgreParticleKind const& kind, std::uint64_t nSeed)
    : m_Kind(kind), m_nSeed(nSeed), m_dScale(1.0), m_dRate(kind.m_dRate), m_dTime(0.0), m_dDue(0.0), m_nMade(0),
      m_bEmitting(true) {}

void QXOgreParticles::SetMatrix(QXMatrix4d const& mat) {
  for (auto const& row : mat.m)
    for (double const d : row)
      if (!std::isfinite(d)) return;
  m_matEmitter = mat;
  m_dScale = ScaleOf(mat);
}

void QXOgreParticles::SetRate(double dRate) {
  m_dRate = dRate > 0.0 ? std::min(dRate, FASTEST_RATE) : 0.0;
}

void QXOgreParticles::Advance(double dSeconds) {
  if (!(dSeconds > 0.0) || !std::isfinite(dSeconds)) return;
  dSeconds = std::min(dSeconds, LONGEST_STEP);
  m_dTime += dSeconds;
  std::erase_if(m_arrParticles, [this](Particle const& p) { return m_dTime - p.m_dBirth >= p.m_dLife; });
  if (m_bEmitting && m_dRate > 0.0) Emit(dSeconds);
  MeasureBounds();
}

void QXOgreParticles::Emit(double dSeconds) {
  double const dDue = m_dDue + m_dRate * dSeconds;
  double const dNew = std::min(std::floor(dDue + ROUNDING), MOST_NEW);
  // When the next particle but for the share of it that was due already would have come.
  double const dStart = m_dTime - (dDue < MOST_NEW ? dSeconds : dNew / m_dRate) - m_dDue / m_dRate;
  // Of more than there is room for, only the last ones would be left.
  for (double d = std::max(0.0, dNew - static_cast<double>(MOST)) + 1.0; d <= dNew; d += 1.0) {
    double const dBirth = std::min(dStart + d / m_dRate, m_dTime);
    Particle const particle = Make(m_nMade + static_cast<std::uint64_t>(d), dBirth);
    if (m_dTime - dBirth < particle.m_dLife) m_arrParticles.push_back(particle);
  }
  m_nMade += static_cast<std::uint64_t>(dNew);
  m_dDue = std::clamp(dDue - dNew, 0.0, 1.0);
  if (m_arrParticles.size() > MOST)
    m_arrParticles.erase(m_arrParticles.begin(), m_arrParticles.end() - static_cast<std::ptrdiff_t>(MOST));
}

QXOgreParticles::Particle QXOgreParticles::Make(std::uint64_t nNumber, double dBirth) const {
  Chances chances(m_nSeed, nNumber);
  Particle particle;
  particle.m_dBirth = dBirth;
  particle.m_dLife = chances.Between(m_Kind.m_dLeastLife, m_Kind.m_dMostLife);
  double const dSpeed = chances.Between(m_Kind.m_dLeastSpeed, m_Kind.m_dMostSpeed);
  // Even over the cap of the sphere, not over the angle, which would crowd the axis.
  double const dCos = 1.0 - chances.Next() * (1.0 - std::cos(m_Kind.m_dSpread));
  double const dSin = std::sqrt(std::max(0.0, 1.0 - dCos * dCos));
  double const dTurn = chances.Between(0.0, 2.0 * std::numbers::pi);
  QXVector3d const& e = m_Kind.m_vecExtent;
  QXVector3d const vecPlace(chances.Between(-e.x, e.x), chances.Between(-e.y, e.y), chances.Between(-e.z, e.z));
  double const dUp = m_Kind.m_bDownwards ? -1.0 : 1.0;
  QXVector3d const vecWay(dSpeed * dSin * std::cos(dTurn), dSpeed * dSin * std::sin(dTurn), dSpeed * dCos * dUp);
  particle.m_vecStart = vecPlace.MultiplyMatrix(m_matEmitter);
  particle.m_vecVelocity = Turned(vecWay, m_matEmitter);
  particle.m_dScale = m_dScale;
  bool const bTurns = m_Kind.m_dSpin > 0.0;
  particle.m_dAngle = bTurns ? chances.Between(0.0, 2.0 * std::numbers::pi) : 0.0;
  particle.m_dSpin = bTurns ? chances.Between(-m_Kind.m_dSpin, m_Kind.m_dSpin) : 0.0;
  return particle;
}

QXOgreParticles::State QXOgreParticles::GetState(std::size_t nParticle) const {
  Particle const& p = m_arrParticles[nParticle];
  double const dAge = m_dTime - p.m_dBirth;
  double const dPart = dAge / p.m_dLife;
  // Gravity grows with the emitter, so that a fountain ten times as large has the same shape.
  double const dFall = m_Kind.m_dGravity * p.m_dScale;
  State state;
  state.m_vecPosition = Along(p.m_vecStart, p.m_vecVelocity, dAge);
  state.m_vecPosition.z -= 0.5 * dFall * dAge * dAge;
  state.m_vecVelocity = p.m_vecVelocity;
  state.m_vecVelocity.z -= dFall * dAge;
  state.m_dSize = p.m_dScale * Mean(m_Kind.m_dFirstSize, m_Kind.m_dLastSize, dPart);
  state.m_dAngle = p.m_dAngle + p.m_dSpin * dAge;
  bool const bLate = dPart > 0.5;
  QXColorValue3D const& from = m_Kind.m_arrColors[bLate ? 1 : 0];
  QXColorValue3D const& to = m_Kind.m_arrColors[bLate ? 2 : 1];
  double const dBetween = bLate ? 2.0 * dPart - 1.0 : 2.0 * dPart;
  state.m_Color = {Mean(from.r, to.r, dBetween), Mean(from.g, to.g, dBetween), Mean(from.b, to.b, dBetween),
      Mean(from.a, to.a, dBetween)};
  return state;
}

void QXOgreParticles::MeasureBounds() {
  m_Bounds.SetNULL();
  for (std::size_t i = 0; i < m_arrParticles.size(); ++i) {
    State const state = GetState(i);
    double const dReach = 0.5 * std::numbers::sqrt2 * state.m_dSize;
    QXVector3d const vecReach(dReach, dReach, dReach);
    QXVector3d const& vecHead = state.m_vecPosition;
    m_Bounds.Merge(QXBoundingBox(vecHead - vecReach, vecHead + vecReach));
    if (m_Kind.m_dStreak <= 0.0) continue;
    QXVector3d const vecTail = Along(vecHead, state.m_vecVelocity, -m_Kind.m_dStreak);
    m_Bounds.Merge(QXBoundingBox(vecTail - vecReach, vecTail + vecReach));
  }
}

}  // namespace QXC
