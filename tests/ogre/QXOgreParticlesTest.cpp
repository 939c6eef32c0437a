// Where particles are, without pictures.
#include <chrono>
#include <cmath>
#include <limits>
#include <numbers>
#include <random>

#include <gtest/gtest.h>

#include <plugins/ogre/effects/QXOgreParticles.h>

namespace QXC {

namespace {

constexpr std::wstring_view KINDS[] = {L"", L"smoke", L"fire", L"fountain", L"rain", L"snow"};
constexpr double NO_NUMBER = std::numeric_limits<double>::quiet_NaN();
constexpr double DEGREE = std::numbers::pi / 180.0;

QXMatrix4d Emitter(QXVector3d const& vecPlace, double dScale = 1.0) {
  QXMatrix4d mat;
  for (int i = 0; i < 3; ++i) mat[i][i] = dScale;
  mat.SetTrans(vecPlace);
  return mat;
}

void ExpectSame(QXOgreParticles const& a, QXOgreParticles const& b, double dTolerance) {
  ASSERT_EQ(a.GetCount(), b.GetCount());
  for (std::size_t i = 0; i < a.GetCount(); ++i) {
    QXOgreParticles::State const p = a.GetState(i);
    QXOgreParticles::State const q = b.GetState(i);
    ASSERT_NEAR((p.m_vecPosition - q.m_vecPosition).Length(), 0.0, dTolerance) << i;
    ASSERT_NEAR((p.m_vecVelocity - q.m_vecVelocity).Length(), 0.0, dTolerance) << i;
    ASSERT_NEAR(p.m_dSize, q.m_dSize, dTolerance) << i;
    ASSERT_NEAR(p.m_dAngle, q.m_dAngle, dTolerance) << i;
    ASSERT_NEAR(p.m_Color.a, q.m_Color.a, dTolerance) << i;
  }
}

}  // namespace

TEST(QXOgreParticles, ThereAreSixKinds) {
  for (std::wstring_view const strKind : KINDS) {
    QXOgreParticleKind const* const pKind = FindParticleKind(strKind);
    ASSERT_NE(pKind, nullptr);
    EXPECT_EQ(pKind->m_strName, strKind);
    // What a kind has in the air at once leaves room for more.
    EXPECT_LE(pKind->m_dRate * pKind->m_dMostLife, QXOgreParticles::MOST / 2.0);
    EXPECT_LE(pKind->m_dLeastLife, pKind->m_dMostLife);
    EXPECT_LE(pKind->m_dLeastSpeed, pKind->m_dMostSpeed);
  }
  EXPECT_EQ(FindParticleKind(L"Smoke"), nullptr);
}

TEST(QXOgreParticles, PlainOnesRiseEvenlyFromTheEmitter) {
  QXOgreParticles particles(*FindParticleKind(L""), 1);
  particles.SetMatrix(Emitter({5.0, 6.0, 7.0}));
  EXPECT_EQ(particles.GetCount(), 0U);
  EXPECT_TRUE(particles.GetBounds().IsNULL());
  particles.Advance(1.0);
  ASSERT_EQ(particles.GetCount(), 10U);
  for (std::size_t i = 0; i < 10; ++i) {
    QXOgreParticles::State const state = particles.GetState(i);
    EXPECT_NEAR(state.m_vecPosition.x, 5.0, 1e-12);
    EXPECT_NEAR(state.m_vecPosition.y, 6.0, 1e-12);
    EXPECT_NEAR(state.m_vecPosition.z, 7.9 - 0.1 * static_cast<double>(i), 1e-12) << "the oldest first";
    EXPECT_EQ(state.m_dSize, 0.2);
    EXPECT_EQ(state.m_Color, QXColorValue3D::White);
  }
  particles.Advance(9.0);
  EXPECT_EQ(particles.GetCount(), 20U) << "each lives for two seconds";
}

TEST(QXOgreParticles, TenTenthsMakeAsManyAsOneSecond) {
  QXOgreParticles particles(*FindParticleKind(L""), 1);
  for (int i = 0; i < 10; ++i) particles.Advance(0.1);
  EXPECT_EQ(particles.GetCount(), 10U);
}

TEST(QXOgreParticles, ShortStepsAndALongOneLeadToTheSamePlace) {
  unsigned int const nSeed = 7;
  std::mt19937 random(nSeed);
  for (std::wstring_view const strKind : KINDS) {
    QXOgreParticles once(*FindParticleKind(strKind), 3);
    QXOgreParticles often(*FindParticleKind(strKind), 3);
    once.SetMatrix(Emitter({1.0, 2.0, 3.0}, 2.0));
    often.SetMatrix(Emitter({1.0, 2.0, 3.0}, 2.0));
    double dSum = 0.0;
    while (dSum < 7.0) {
      double const dStep = std::uniform_real_distribution<double>(0.0, 0.2)(random);
      often.Advance(dStep);
      dSum += dStep;
    }
    once.Advance(dSum);
    ASSERT_GT(once.GetCount(), 9U);
    ExpectSame(once, often, 1e-7);
  }
}

TEST(QXOgreParticles, ChancesAreTheSeeds) {
  auto const make = [](std::uint64_t nSeed) {
    QXOgreParticles particles(*FindParticleKind(L"smoke"), nSeed);
    particles.Advance(3.0);
    return particles;
  };
  QXOgreParticles const first = make(1);
  ExpectSame(first, make(1), 0.0);
  QXOgreParticles const second = make(2);
  ASSERT_EQ(first.GetCount(), second.GetCount());
  EXPECT_GT((first.GetState(0).m_vecPosition - second.GetState(0).m_vecPosition).Length(), 1e-3);
}

TEST(QXOgreParticles, ThoseInTheAirStayWhereTheyAreWhenTheEmitterMoves) {
  QXOgreParticles particles(*FindParticleKind(L""), 1);
  particles.Advance(0.5);
  particles.SetMatrix(Emitter({100.0, 0.0, 0.0}));
  particles.Advance(0.5);
  ASSERT_EQ(particles.GetCount(), 10U);
  EXPECT_EQ(particles.GetState(4).m_vecPosition.x, 0.0);
  EXPECT_EQ(particles.GetState(5).m_vecPosition.x, 100.0);
  particles.SetMatrix(Emitter({NO_NUMBER, 0.0, 0.0}));
  particles.Advance(0.1);
  EXPECT_EQ(particles.GetState(10).m_vecPosition.x, 100.0) << "a place that is none is ignored";
}

TEST(QXOgreParticles, WithoutEmissionTheyLiveToTheirEnd) {
  QXOgreParticles particles(*FindParticleKind(L"smoke"), 1);
  particles.Advance(4.0);
  std::size_t const nCount = particles.GetCount();
  EXPECT_EQ(nCount, 48U);
  particles.SetEmitting(false);
  particles.Advance(2.0);
  EXPECT_LT(particles.GetCount(), nCount);
  EXPECT_GT(particles.GetCount(), 0U);
  particles.Advance(4.0);
  EXPECT_EQ(particles.GetCount(), 0U) << "none lives longer than six seconds";
  EXPECT_TRUE(particles.GetBounds().IsNULL());
  particles.SetEmitting(true);
  particles.Advance(1.0);
  EXPECT_EQ(particles.GetCount(), 12U);
}

TEST(QXOgreParticles, WaysStayInTheConeAndBeginningsInTheBox) {
  for (std::wstring_view const strKind : KINDS) {
    QXOgreParticleKind const& kind = *FindParticleKind(strKind);
    QXOgreParticles particles(kind, 5);
    // The emitter's z is the world's x.
    QXMatrix4d mat;
    mat[0][0] = 0.0, mat[0][1] = 1.0, mat[0][2] = 0.0;
    mat[1][0] = 0.0, mat[1][1] = 0.0, mat[1][2] = 1.0;
    mat[2][0] = 1.0, mat[2][1] = 0.0, mat[2][2] = 0.0;
    particles.SetMatrix(mat);
    double const dStep = 1.0e-6;
    particles.SetRate(1.0e8);
    particles.Advance(dStep);
    ASSERT_EQ(particles.GetCount(), 100U);
    double dWidest = 0.0;
    for (std::size_t i = 0; i < particles.GetCount(); ++i) {
      QXOgreParticles::State const state = particles.GetState(i);
      double const dSpeed = state.m_vecVelocity.Length();
      EXPECT_GE(dSpeed, kind.m_dLeastSpeed - 1e-4);
      EXPECT_LE(dSpeed, kind.m_dMostSpeed + 1e-4);
      double const dUp = kind.m_bDownwards ? -state.m_vecVelocity.x : state.m_vecVelocity.x;
      double const dAngle = std::acos(std::min(1.0, dUp / dSpeed));
      dWidest = std::max(dWidest, dAngle);
      EXPECT_LE(dAngle, kind.m_dSpread + 1e-4);
      EXPECT_LE(std::abs(state.m_vecPosition.y), kind.m_vecExtent.x + 1e-4);
      EXPECT_LE(std::abs(state.m_vecPosition.z), kind.m_vecExtent.y + 1e-4);
      EXPECT_LE(std::abs(state.m_vecPosition.x), kind.m_vecExtent.z + 1e-4);
    }
    EXPECT_GE(dWidest, 0.8 * kind.m_dSpread - 1e-4) << "they use the whole cone";
  }
}

TEST(QXOgreParticles, GravityPullsDownInTheWorldWhateverTheEmitterDoes) {
  QXOgreParticles particles(*FindParticleKind(L"fountain"), 1);
  QXMatrix4d matAside = Emitter({});
  matAside[2][0] = 1.0, matAside[2][2] = 0.0;
  matAside[0][0] = 0.0, matAside[0][2] = -1.0;
  particles.SetMatrix(matAside);
  particles.Advance(0.1);
  particles.SetEmitting(false);
  QXVector3d arrPlaces[3];
  for (QXVector3d& vecPlace : arrPlaces) {
    particles.Advance(0.25);
    vecPlace = particles.GetState(0).m_vecPosition;
  }
  EXPECT_NEAR(arrPlaces[0].z - 2.0 * arrPlaces[1].z + arrPlaces[2].z, -9.81 * 0.25 * 0.25, 1e-9);
  EXPECT_NEAR(arrPlaces[0].x - 2.0 * arrPlaces[1].x + arrPlaces[2].x, 0.0, 1e-9);
  EXPECT_GT(arrPlaces[0].x, 2.5) << "it starts along the emitter's z";
}

TEST(QXOgreParticles, ALargerEmitterMakesTheSameShapeLarger) {
  for (std::wstring_view const strKind : KINDS) {
    QXOgreParticles small(*FindParticleKind(strKind), 9);
    QXOgreParticles large(*FindParticleKind(strKind), 9);
    large.SetMatrix(Emitter({}, 10.0));
    small.Advance(2.0);
    large.Advance(2.0);
    ASSERT_EQ(small.GetCount(), large.GetCount());
    for (std::size_t i = 0; i < small.GetCount(); ++i) {
      QXOgreParticles::State const p = small.GetState(i);
      QXOgreParticles::State const q = large.GetState(i);
      ASSERT_NEAR(q.m_vecPosition.x, 10.0 * p.m_vecPosition.x, 1e-9);
      ASSERT_NEAR(q.m_vecPosition.z, 10.0 * p.m_vecPosition.z, 1e-9);
      ASSERT_NEAR(q.m_dSize, 10.0 * p.m_dSize, 1e-9);
      ASSERT_EQ(q.m_Color, p.m_Color) << "time does not grow";
    }
  }
}

TEST(QXOgreParticles, ColoursGoFromTheFirstThroughTheSecondToTheLast) {
  QXOgreParticleKind const& kind = *FindParticleKind(L"smoke");
  QXOgreParticles particles(kind, 1);
  particles.Advance(6.0);
  bool bEarly = false;
  bool bLate = false;
  for (std::size_t i = 0; i < particles.GetCount(); ++i) {
    QXOgreParticles::State const state = particles.GetState(i);
    // The size says how much of its life is over.
    double const dPart = (state.m_dSize - kind.m_dFirstSize) / (kind.m_dLastSize - kind.m_dFirstSize);
    ASSERT_GE(dPart, 0.0);
    ASSERT_LE(dPart, 1.0);
    bEarly = bEarly || dPart < 0.2;
    bLate = bLate || dPart > 0.8;
    auto const& c = kind.m_arrColors;
    double const dAlpha =
        dPart < 0.5 ? c[0].a + (c[1].a - c[0].a) * 2.0 * dPart : c[1].a + (c[2].a - c[1].a) * (2.0 * dPart - 1.0);
    double const dRed =
        dPart < 0.5 ? c[0].r + (c[1].r - c[0].r) * 2.0 * dPart : c[1].r + (c[2].r - c[1].r) * (2.0 * dPart - 1.0);
    EXPECT_NEAR(state.m_Color.a, dAlpha, 1e-12);
    EXPECT_NEAR(state.m_Color.r, dRed, 1e-12);
  }
  EXPECT_TRUE(bEarly && bLate) << "there were some of each age";
}

TEST(QXOgreParticles, BoundsHoldAllOfThem) {
  for (std::wstring_view const strKind : KINDS) {
    QXOgreParticleKind const& kind = *FindParticleKind(strKind);
    QXOgreParticles particles(kind, 4);
    particles.SetMatrix(Emitter({6.0e6, -6.0e6, 50.0}));
    particles.Advance(3.0);
    QXBoundingBox const& box = particles.GetBounds();
    for (std::size_t i = 0; i < particles.GetCount(); ++i) {
      QXOgreParticles::State const state = particles.GetState(i);
      double const dReach = state.m_dSize * std::sqrt(0.5);
      for (double const dBack : {0.0, kind.m_dStreak}) {
        QXVector3d const& v = state.m_vecVelocity;
        QXVector3d const vecPlace = state.m_vecPosition - QXVector3d(v.x * dBack, v.y * dBack, v.z * dBack);
        ASSERT_LE(box.GetMin().x, vecPlace.x - dReach + 1e-9);
        ASSERT_LE(box.GetMin().z, vecPlace.z - dReach + 1e-9);
        ASSERT_GE(box.GetMax().y, vecPlace.y + dReach - 1e-9);
        ASSERT_GE(box.GetMax().z, vecPlace.z + dReach - 1e-9);
      }
    }
    EXPECT_LT((box.GetMax() - box.GetMin()).Length(), 80.0) << "and not much more";
  }
}

TEST(QXOgreParticles, MoreThanTheMostLeaveTheYoungest) {
  QXOgreParticles particles(*FindParticleKind(L""), 1);
  particles.SetRate(1.0e5);
  particles.Advance(1.0);
  ASSERT_EQ(particles.GetCount(), QXOgreParticles::MOST);
  EXPECT_NEAR(particles.GetState(QXOgreParticles::MOST - 1).m_vecPosition.z, 0.0, 1e-4);
  EXPECT_NEAR(particles.GetState(0).m_vecPosition.z, QXOgreParticles::MOST / 1.0e5, 1e-4);
  for (int i = 0; i < 5; ++i) particles.Advance(0.01);
  ASSERT_EQ(particles.GetCount(), QXOgreParticles::MOST);
  EXPECT_NEAR(particles.GetState(0).m_vecPosition.z, QXOgreParticles::MOST / 1.0e5, 1e-4) << "step by step as well";
}

TEST(QXOgreParticles, NumbersThatAreNoneAndEndlessOnesDoNoHarm) {
  QXOgreParticles particles(*FindParticleKind(L""), 1);
  for (double const d : {0.0, -1.0, NO_NUMBER, HUGE_VAL}) particles.Advance(d);
  EXPECT_EQ(particles.GetCount(), 0U);
  for (double const d : {0.0, -5.0, NO_NUMBER}) {
    particles.SetRate(d);
    particles.Advance(1.0);
    EXPECT_EQ(particles.GetCount(), 0U) << d;
  }
  auto const start = std::chrono::steady_clock::now();
  particles.SetRate(HUGE_VAL);
  particles.Advance(1.0e300);
  EXPECT_EQ(particles.GetCount(), QXOgreParticles::MOST);
  particles.SetRate(10.0);
  particles.Advance(1.0e300);
  EXPECT_EQ(particles.GetCount(), 20U) << "as after any long time";
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
  particles.SetMatrix(Emitter({1.0e308, 0.0, 0.0}, 1.0e200));
  particles.Advance(1.0);
}

TEST(QXOgreParticles, ASpreadIsEvenOverTheCap) {
  // Half of the cap's area lies within an angle whose height is half of the cap's.
  QXOgreParticleKind const& kind = *FindParticleKind(L"snow");
  QXOgreParticles particles(kind, 11);
  particles.SetRate(1.0e4);
  particles.Advance(1.0);
  int nInner = 0;
  double const dHalfHeight = 1.0 - 0.5 * (1.0 - std::cos(15.0 * DEGREE));
  for (std::size_t i = 0; i < particles.GetCount(); ++i) {
    QXVector3d const v = particles.GetState(i).m_vecVelocity;
    nInner += -v.z / v.Length() > dHalfHeight;
  }
  EXPECT_NEAR(nInner, 5000, 250);
}

}  // namespace QXC
