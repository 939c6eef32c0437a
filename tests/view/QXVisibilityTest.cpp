#include <QxGraphics3D/view/detail/QXVisibility.h>

#include <QxGraphics3D/view/QXFrustum.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>
#include <new>
#include <random>
#include <string>
#include <vector>

#if defined(__unix__)
#  include <sys/mman.h>
#  include <unistd.h>
#endif

using namespace QXC;
using QXC::detail::QXVisibilityTests;

namespace {

constexpr unsigned int kSeed = 20261121;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

using Planes = std::array<QXPlane, 6>;

/// The rule itself: a plane rejects if the distance of all eight corners is below 0.
unsigned char IsBoxVisibleByCorners(Planes const& planes, QXBoundingBox const& box) {
  std::array<QXVector3d, 8> const corners = box.GetCorners();
  for (QXPlane const& plane : planes) {
    bool const bAllBelow = std::all_of(
        corners.begin(), corners.end(), [&](QXVector3d const& corner) { return plane.GetDistance(corner) < 0.0; });
    if (bAllBelow) return 0;
  }
  return 1;
}

unsigned char IsSphereVisibleByDistance(Planes const& planes, QXBoundingSphere const& sphere) {
  for (QXPlane const& plane : planes) {
    if (plane.GetDistance(sphere.GetCenter()) <= -sphere.GetRadius()) return 0;
  }
  return 1;
}

class QXVisibility : public testing::TestWithParam<QXVisibilityTests> {
protected:
  double Uniform(double dLow, double dHigh) { return std::uniform_real_distribution<double>(dLow, dHigh)(m_engine); }
  QXVector3d Vector(double dReach) {
    return {Uniform(-dReach, dReach), Uniform(-dReach, dReach), Uniform(-dReach, dReach)};
  }
  /// Mostly ordinary values, among them zeros, infinities, NaNs, denormal and huge ones.
  double Odd() {
    static constexpr double kOdd[] = {0.0, -0.0, kInfinity, -kInfinity, kNaN, 1e-310, -1e308, 1e308, 1.0, -1.0};
    return m_engine() % 3 == 0 ? kOdd[m_engine() % std::size(kOdd)] : Uniform(-2.0, 2.0);
  }
  QXVector3d OddVector() { return {Odd(), Odd(), Odd()}; }
  /// Any bit pattern: every exponent is as likely as another, so that products and sums leave the range of doubles.
  double AnyBits() { return std::bit_cast<double>(std::uint64_t{m_engine()}); }
  QXVector3d AnyBitsVector() { return {AnyBits(), AnyBits(), AnyBits()}; }

  void ExpectAgreement(Planes const& planes, QXBoundingBox const& box) {
    unsigned char const bExpected = IsBoxVisibleByCorners(planes, box);
    ++m_nAnswers[bExpected];
    ASSERT_EQ(GetParam().m_pfnBox(planes.data(), box), bExpected) << GetParam().m_szName << ", seed " << kSeed;
  }
  void ExpectAgreement(Planes const& planes, QXBoundingSphere const& sphere) {
    unsigned char const bExpected = IsSphereVisibleByDistance(planes, sphere);
    ++m_nAnswers[bExpected];
    ASSERT_EQ(GetParam().m_pfnSphere(planes.data(), sphere), bExpected) << GetParam().m_szName << ", seed " << kSeed;
  }
  void ExpectBothAnswersOften(int nAtLeast) {
    EXPECT_GE(m_nAnswers[0], nAtLeast);
    EXPECT_GE(m_nAnswers[1], nAtLeast);
  }

  std::mt19937_64 m_engine{kSeed};
  int m_nAnswers[2] = {0, 0};
};

QXBoundingSphere MakeSphere(QXVector3d const& center, double dRadius) {
  QXBoundingSphere sphere;
  sphere.SetCenter(center);
  sphere.SetRadius(dRadius);
  return sphere;
}

/// Inward planes around the origin at a random distance, so that answers vary.
Planes MakePlanes(std::mt19937_64& engine) {
  std::uniform_real_distribution<double> unit(-1.0, 1.0);
  Planes planes;
  for (QXPlane& plane : planes) {
    plane = QXPlane({unit(engine), unit(engine), unit(engine)}, 2.0 + unit(engine));
    plane.Normalize();
  }
  return planes;
}

TEST_P(QXVisibility, AnswersForBoxesAsEightCornersDo) {
  for (int nRound = 0; nRound < 2000; ++nRound) {
    Planes const planes = MakePlanes(m_engine);
    for (int nBox = 0; nBox < 50; ++nBox) {
      QXVector3d const center = Vector(6.0);
      QXVector3d const half = Vector(2.0);  // a negative half edge makes an inverted box
      ExpectAgreement(planes, QXBoundingBox(center - half, center + half));
      if (HasFatalFailure()) return;
    }
  }
  ExpectBothAnswersOften(10000);
}

TEST_P(QXVisibility, AnswersForBoxesAtTheRoundingEdgeAsEightCornersDo) {
  // The constant is moved so that the farthest corner comes out within a few units in the last place of 0.
  for (int nRound = 0; nRound < 100000; ++nRound) {
    Planes planes = MakePlanes(m_engine);
    QXBoundingBox const box(Vector(1e3), Vector(1e3));
    unsigned int const nPlane = static_cast<unsigned int>(m_engine() % 6);
    QXPlane& edge = planes[nPlane];
    for (QXPlane& plane : planes) plane.m_dConstant = 1e6;
    edge.m_dConstant = 0.0;
    double dLargest = -kInfinity;
    for (QXVector3d const& corner : box.GetCorners()) dLargest = std::max(dLargest, edge.GetDistance(corner));
    auto const nSteps = static_cast<std::int64_t>(m_engine() % 7) - 3;
    edge.m_dConstant = std::bit_cast<double>(std::bit_cast<std::int64_t>(-dLargest) + nSteps);
    ExpectAgreement(planes, box);
    if (HasFatalFailure()) return;
  }
  ExpectBothAnswersOften(10000);
}

TEST_P(QXVisibility, AnswersForBoxesOfOddNumbersAsEightCornersDo) {
  for (int nRound = 0; nRound < 200000; ++nRound) {
    Planes planes;
    for (QXPlane& plane : planes) plane = QXPlane({0, 0, 0}, 1.0);
    // One or two planes at work: with six, nearly every answer would be 0.
    for (int nOdd = 0; nOdd < 2; ++nOdd) planes[m_engine() % 6] = QXPlane(OddVector(), Odd());
    ExpectAgreement(planes, QXBoundingBox(OddVector(), OddVector()));
    if (HasFatalFailure()) return;
  }
  ExpectBothAnswersOften(10000);
}

TEST_P(QXVisibility, AnswersForAnyBitsAsCornersAndDistancesDo) {
  for (int nRound = 0; nRound < 200000; ++nRound) {
    Planes planes;
    for (QXPlane& plane : planes) plane = QXPlane({0, 0, 0}, 1.0);
    for (int nAny = 0; nAny < 2; ++nAny) planes[m_engine() % 6] = QXPlane(AnyBitsVector(), AnyBits());
    ExpectAgreement(planes, QXBoundingBox(AnyBitsVector(), AnyBitsVector()));
    ExpectAgreement(planes, MakeSphere(AnyBitsVector(), AnyBits()));
    if (HasFatalFailure()) return;
  }
  ExpectBothAnswersOften(10000);
}

#if defined(__unix__)
/// One page of memory between two that must not be touched.
class GuardedPage {
public:
  GuardedPage() : m_nSize(static_cast<std::size_t>(sysconf(_SC_PAGESIZE))) {
    void* const pPages = mmap(nullptr, 3 * m_nSize, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (pPages == MAP_FAILED) return;
    m_pPages = static_cast<char*>(pPages);
    m_bUsable = mprotect(m_pPages + m_nSize, m_nSize, PROT_READ | PROT_WRITE) == 0;
  }
  GuardedPage(GuardedPage const&) = delete;
  GuardedPage& operator=(GuardedPage const&) = delete;
  ~GuardedPage() {
    if (m_pPages) munmap(m_pPages, 3 * m_nSize);
  }
  bool IsUsable() const { return m_bUsable; }
  /// The first place in the page for so many bytes, or the last one.
  void* GetPlace(std::size_t nBytes, bool bLast) const { return m_pPages + (bLast ? 2 * m_nSize - nBytes : m_nSize); }

private:
  std::size_t m_nSize;
  char* m_pPages = nullptr;
  bool m_bUsable = false;
};

TEST_P(QXVisibility, ReadsNothingBesidePlanesBoxAndSphere) {
  GuardedPage const page;
  ASSERT_TRUE(page.IsUsable());
  Planes const planes = MakePlanes(m_engine);
  QXBoundingBox const box({-1, -1, -1}, {1, 1, 1});
  QXBoundingSphere const sphere = MakeSphere({0, 0, 0}, 1.0);
  for (bool const bLast : {false, true}) {
    auto* const pPlanes = new (page.GetPlace(sizeof(Planes), bLast)) Planes(planes);
    EXPECT_EQ(GetParam().m_pfnBox(pPlanes->data(), box), 1);
    EXPECT_EQ(GetParam().m_pfnSphere(pPlanes->data(), sphere), 1);
    EXPECT_EQ(GetParam().m_pfnBox(planes.data(), *new (page.GetPlace(sizeof box, bLast)) QXBoundingBox(box)), 1);
    EXPECT_EQ(
        GetParam().m_pfnSphere(planes.data(), *new (page.GetPlace(sizeof sphere, bLast)) QXBoundingSphere(sphere)), 1);
  }
}
#endif

TEST_P(QXVisibility, DoesNotRejectABoxWithACornerThatIsNoNumber) {
  Planes planes;
  for (QXPlane& plane : planes) plane = QXPlane({0, 0, 0}, 1.0);
  for (int nPlane = 0; nPlane < 6; ++nPlane) {
    for (int nValue = 0; nValue < 6; ++nValue) {
      Planes rejecting = planes;
      rejecting[static_cast<unsigned int>(nPlane)] = QXPlane({1, 1, 1}, -100.0);
      QXBoundingBox box({0, 0, 0}, {1, 1, 1});
      EXPECT_EQ(GetParam().m_pfnBox(rejecting.data(), box), 0);
      (nValue < 3 ? box.m_dMin[nValue] : box.m_dMax[nValue - 3]) = kNaN;
      EXPECT_EQ(GetParam().m_pfnBox(rejecting.data(), box), 1) << "plane " << nPlane << " value " << nValue;
    }
  }
}

TEST_P(QXVisibility, LooksAtEveryPlane) {
  for (unsigned int nPlane = 0; nPlane < 6; ++nPlane) {
    Planes planes;
    for (QXPlane& plane : planes) plane = QXPlane({0, 0, 0}, 1.0);
    planes[nPlane] = QXPlane({0, 1, 0}, -2.0);
    EXPECT_EQ(GetParam().m_pfnBox(planes.data(), QXBoundingBox({-1, -1, -1}, {1, 1.999, 1})), 0);
    EXPECT_EQ(GetParam().m_pfnBox(planes.data(), QXBoundingBox({-1, -1, -1}, {1, 2.0, 1})), 1);
    EXPECT_EQ(GetParam().m_pfnSphere(planes.data(), MakeSphere({0, 1, 0}, 1.0)), 0);
    EXPECT_EQ(GetParam().m_pfnSphere(planes.data(), MakeSphere({0, 1.001, 0}, 1.0)), 1);
  }
}

TEST_P(QXVisibility, IgnoresWhetherTheBoxIsNull) {
  Planes planes;
  for (QXPlane& plane : planes) plane = QXPlane({1, 0, 0}, 0.0);
  EXPECT_EQ(GetParam().m_pfnBox(planes.data(), QXBoundingBox()), 1);
  planes[5] = QXPlane({1, 0, 0}, -1e-300);
  EXPECT_EQ(GetParam().m_pfnBox(planes.data(), QXBoundingBox()), 0);
}

TEST_P(QXVisibility, AnswersForSpheresAsDistancesDo) {
  for (int nRound = 0; nRound < 2000; ++nRound) {
    Planes const planes = MakePlanes(m_engine);
    for (int nSphere = 0; nSphere < 50; ++nSphere) {
      ExpectAgreement(planes, MakeSphere(Vector(6.0), Uniform(0.0, 2.0)));
      if (HasFatalFailure()) return;
    }
  }
  ExpectBothAnswersOften(10000);
}

TEST_P(QXVisibility, AnswersForSpheresAtTheRoundingEdgeAsDistancesDo) {
  for (int nRound = 0; nRound < 100000; ++nRound) {
    Planes planes;
    for (QXPlane& plane : planes) plane = QXPlane({0, 0, 0}, 1e6);
    QXPlane& edge = planes[m_engine() % 6];
    edge = QXPlane(Vector(1.0), Uniform(-10.0, 10.0));
    QXVector3d const center = Vector(1e3);
    auto const nSteps = static_cast<std::int64_t>(m_engine() % 7) - 3;
    double const dRadius = std::bit_cast<double>(std::bit_cast<std::int64_t>(-edge.GetDistance(center)) + nSteps);
    ExpectAgreement(planes, MakeSphere(center, dRadius));
    if (HasFatalFailure()) return;
  }
  ExpectBothAnswersOften(10000);
}

TEST_P(QXVisibility, AnswersForSpheresOfOddNumbersAsDistancesDo) {
  for (int nRound = 0; nRound < 200000; ++nRound) {
    Planes planes;
    for (QXPlane& plane : planes) plane = QXPlane({0, 0, 0}, 1e6);
    planes[m_engine() % 6] = QXPlane(OddVector(), Odd());
    ExpectAgreement(planes, MakeSphere(OddVector(), Odd()));
    if (HasFatalFailure()) return;
  }
  ExpectBothAnswersOften(10000);
}

/// The instruction sets that this processor has; the plain one is always there.
std::vector<QXVisibilityTests> GetSupported() {
  std::vector<QXVisibilityTests> arrSupported;
  std::ranges::copy_if(detail::GetVisibilityTests(), std::back_inserter(arrSupported),
      [](QXVisibilityTests const& tests) { return tests.m_pfnIsSupported() != 0; });
  return arrSupported;
}

INSTANTIATE_TEST_SUITE_P(InstructionSet, QXVisibility, testing::ValuesIn(GetSupported()),
    [](testing::TestParamInfo<QXVisibilityTests> const& set) { return std::string(set.param.m_szName); });

TEST(QXVisibilityChoice, TakesTheLastSetThatTheProcessorHas) {
  QXVisibilityTests expected = detail::GetVisibilityTests().front();
  EXPECT_STREQ(expected.m_szName, "plain");
  EXPECT_EQ(expected.m_pfnIsSupported(), 1);
  for (QXVisibilityTests const& tests : detail::GetVisibilityTests()) {
    if (tests.m_pfnIsSupported()) expected = tests;
  }
  EXPECT_EQ(detail::g_pfnBoxTest, expected.m_pfnBox);
  EXPECT_EQ(detail::g_pfnSphereTest, expected.m_pfnSphere);
}

TEST(QXVisibilityChoice, SeesPlanesAsFourNumbersInARow) {
  QXPlane const plane({1, 2, 3}, 4);
  auto const numbers = std::bit_cast<std::array<double, 4>>(plane);
  EXPECT_EQ(numbers, (std::array<double, 4>{1, 2, 3, 4}));
}

}  // namespace
