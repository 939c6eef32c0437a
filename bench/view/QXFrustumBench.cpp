// Visibility of 1,000,000 boxes and spheres streamed through QXFrustum::IsVisible, one call each.
//
// Every case times three passes over the same objects in turn, and reports the quickest pass of each: merely reading
// the objects, the tests of the case, and OGRE's Frustum::isVisible. Taking turns, each after the caches were filled
// with something else, lets all three suffer alike from whatever else the machine does; time is that of the thread.
// The answers are checked before anything is timed.

#include <QxGraphics3D/frame/foundation/base3d/QXMathEngine.h>
#include <QxGraphics3D/frame/foundation/base3d/QXQuaternion4d.h>
#include <QxGraphics3D/view/QXFrustum.h>
#include <QxGraphics3D/view/detail/QXVisibility.h>

#include <bench/QXBenchClock.h>

#include <benchmark/benchmark.h>
#if defined(QX_BENCH_OGRE)
#  include <OgreAxisAlignedBox.h>
#  include <OgreDefaultHardwareBufferManager.h>
#  include <OgreFrustum.h>
#  include <OgreLogManager.h>
#  include <OgreMaterialManager.h>
#  include <OgreRoot.h>
#  include <OgreSphere.h>
#endif

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <vector>

using namespace QXC;

namespace {

using QXBench::ThreadSeconds;

constexpr std::size_t kCount = 1000000;
constexpr unsigned int kSeed = 20261121;

/// 90 degrees of field, near 1, far 1000, looking along -z from the origin.
class Frustum : public QXFrustum {
public:
  Frustum() {
    QXMatrix4d projection = QXMatrix4d::ZERO;
    projection[0][0] = projection[1][1] = 1.0;
    projection[2][2] = -1001.0 / 999.0;
    projection[2][3] = -1.0;
    projection[3][2] = -2000.0 / 999.0;
    SetViewMatrix(QXMathEngine::MakeViewMatrix(QXVector3d::ZERO, QXQuaternion4d::IDENTITY));
    SetProjectionMatrix(projection);
    UpdateFrustum();
  }
};

enum class Kind { Mixed, Visible, Rejected, Inverted };

struct Scene {
  std::vector<QXBoundingBox> m_boxes;
  std::vector<QXBoundingSphere> m_spheres;
  std::size_t m_nVisibleBoxes = 0;
  std::size_t m_nVisibleSpheres = 0;
};

bool IsBoxVisibleByCorners(QXPlane const* pPlanes, QXBoundingBox const& box) {
  std::array<QXVector3d, 8> const corners = box.GetCorners();
  return std::none_of(pPlanes, pPlanes + 6, [&](QXPlane const& plane) {
    return std::all_of(
        corners.begin(), corners.end(), [&](QXVector3d const& corner) { return plane.GetDistance(corner) < 0.0; });
  });
}

bool IsSphereVisibleByDistance(QXPlane const* pPlanes, QXBoundingSphere const& sphere) {
  return std::none_of(pPlanes, pPlanes + 6,
      [&](QXPlane const& plane) { return plane.GetDistance(sphere.GetCenter()) <= -sphere.GetRadius(); });
}

/// Centres are drawn until the answer is the wanted one; a mixed scene takes both by turns of a random coin.
Scene MakeScene(Kind eKind) {
  Frustum const frustum;
  QXPlane const* const pPlanes = frustum.GetFrustumPlanes();
  std::mt19937_64 engine(kSeed);
  std::uniform_real_distribution<double> across(-1000.0, 1000.0);
  std::uniform_real_distribution<double> half(0.5, 15.0);
  Scene scene;
  while (scene.m_boxes.size() < kCount) {
    bool const bWanted = eKind == Kind::Visible || (eKind != Kind::Rejected && (engine() & 1U) != 0);
    for (bool bFound = false; !bFound;) {
      QXVector3d const center(across(engine), across(engine), across(engine));
      QXVector3d reach(half(engine), half(engine), half(engine));
      if (eKind == Kind::Inverted) reach = -reach;
      QXBoundingBox const box(center - reach, center + reach);
      QXBoundingSphere const sphere(box);
      if (IsBoxVisibleByCorners(pPlanes, box) != bWanted) continue;
      if (IsSphereVisibleByDistance(pPlanes, sphere) != bWanted) continue;
      scene.m_boxes.push_back(box);
      scene.m_spheres.push_back(sphere);
      scene.m_nVisibleBoxes += bWanted ? 1 : 0;
      scene.m_nVisibleSpheres += bWanted ? 1 : 0;
      bFound = true;
    }
  }
  return scene;
}

Scene const& GetScene(Kind eKind) {
  static std::array<std::unique_ptr<Scene>, 4> s_scenes;
  std::unique_ptr<Scene>& pScene = s_scenes[static_cast<std::size_t>(eKind)];
  if (!pScene) pScene = std::make_unique<Scene>(MakeScene(eKind));
  return *pScene;
}

/// Asks for what stands as far behind an object as the tests under test ask for: without it, reading is slower than
/// they are and no measure of them.
template <class Object>
void PrefetchBehind(Object const& object) {
  __builtin_prefetch(reinterpret_cast<char const*>(&object) + 4096);
}

/// The least that any test has to do: take in the six numbers of each box.
void ReadBoxes(Scene const& scene) {
  double sums[6] = {};
  for (QXBoundingBox const& box : scene.m_boxes) {
    PrefetchBehind(box);
    for (int nAxis = 0; nAxis < 3; ++nAxis) {
      sums[nAxis] += box.m_dMin[nAxis];
      sums[3 + nAxis] += box.m_dMax[nAxis];
    }
  }
  benchmark::DoNotOptimize(sums);
}

void ReadSpheres(Scene const& scene) {
  double sums[4] = {};
  for (QXBoundingSphere const& sphere : scene.m_spheres) {
    PrefetchBehind(sphere);
    sums[0] += sphere.m_vecCenter.x;
    sums[1] += sphere.m_vecCenter.y;
    sums[2] += sphere.m_vecCenter.z;
    sums[3] += sphere.m_dRadius;
  }
  benchmark::DoNotOptimize(sums);
}

// Called through pointers that the compiler cannot see through, as a call across the library's edge is.
std::size_t CountBoxes(Frustum const& frustum, Scene const& scene) {
  unsigned char (QXFrustum::*volatile pfnOpaque)(QXBoundingBox const&, double) const = &QXFrustum::IsVisible;
  auto const pfnIsVisible = pfnOpaque;
  std::size_t nVisible = 0;
  for (QXBoundingBox const& box : scene.m_boxes) nVisible += (frustum.*pfnIsVisible)(box, 0.0);
  return nVisible;
}

std::size_t CountSpheres(Frustum const& frustum, Scene const& scene) {
  unsigned char (QXFrustum::*volatile pfnOpaque)(QXBoundingSphere const&, double) const = &QXFrustum::IsVisible;
  auto const pfnIsVisible = pfnOpaque;
  std::size_t nVisible = 0;
  for (QXBoundingSphere const& sphere : scene.m_spheres) nVisible += (frustum.*pfnIsVisible)(sphere, 0.0);
  return nVisible;
}

#if defined(QX_BENCH_OGRE)
/// The rival with the same planes, set directly: computing them needs a render system, testing does not.
class OgreFrustum : public Ogre::Frustum {
public:
  explicit OgreFrustum(QXPlane const* pPlanes) {
    static constexpr int kOrder[6] = {4, 1, 3, 2, 5, 0};  // near, far, left, right, top, bottom
    for (int nPlane = 0; nPlane < 6; ++nPlane) {
      QXPlane const& plane = pPlanes[kOrder[nPlane]];
      QXVector3d const& n = plane.GetNormal();
      mFrustumPlanes[nPlane].normal =
          Ogre::Vector3(static_cast<float>(n.x), static_cast<float>(n.y), static_cast<float>(n.z));
      mFrustumPlanes[nPlane].d = static_cast<float>(plane.GetPlaneDistance());
    }
    mRecalcFrustum = mRecalcView = mRecalcFrustumPlanes = false;
  }
};

class Rival {
public:
  explicit Rival(Scene const& scene) {
    auto const toOgre = [](QXVector3d const& v) {
      return Ogre::Vector3(static_cast<float>(v.x), static_cast<float>(v.y), static_cast<float>(v.z));
    };
    for (QXBoundingBox const& box : scene.m_boxes) {
      // OGRE refuses inverted boxes; what it then is timed on are the same boxes the right way round.
      Ogre::Vector3 low = toOgre(box.GetMin());
      Ogre::Vector3 high = toOgre(box.GetMax());
      if (low.x > high.x) std::swap(low, high);
      m_boxes.emplace_back(low, high);
    }
    for (QXBoundingSphere const& sphere : scene.m_spheres) {
      m_spheres.emplace_back(toOgre(sphere.GetCenter()), static_cast<float>(sphere.GetRadius()));
    }
  }

  static Ogre::Frustum const& GetFrustum() {
    // What a frustum of OGRE wants to exist while it is made; never destroyed, as OGRE's order of that is delicate.
    [[maybe_unused]] static bool const s_bStarted = [] {
      (new Ogre::LogManager)->createLog("", true, false, true);
      new Ogre::Root("", "", "");
      new Ogre::DefaultHardwareBufferManager;
      Ogre::MaterialManager::getSingleton().initialise();
      return true;
    }();
    static OgreFrustum const s_frustum(::Frustum().GetFrustumPlanes());
    return s_frustum;
  }

  std::size_t CountBoxes() const {
    Ogre::Frustum const& frustum = GetFrustum();
    std::size_t nVisible = 0;
    for (Ogre::AxisAlignedBox const& box : m_boxes) nVisible += frustum.isVisible(box) ? 1U : 0U;
    return nVisible;
  }
  std::size_t CountSpheres() const {
    Ogre::Frustum const& frustum = GetFrustum();
    std::size_t nVisible = 0;
    for (Ogre::Sphere const& sphere : m_spheres) nVisible += frustum.isVisible(sphere) ? 1U : 0U;
    return nVisible;
  }

private:
  std::vector<Ogre::AxisAlignedBox> m_boxes;
  std::vector<Ogre::Sphere> m_spheres;
};
#endif

/// Reads through 64 MiB of other memory, so that every pass finds its objects as far away as the others do.
void ForgetCaches() {
  static std::vector<double> const s_other(std::size_t{8} << 20, 1.0);
  double dSum = 0.0;
  for (std::size_t nIndex = 0; nIndex < s_other.size(); nIndex += 8) dSum += s_other[nIndex];
  benchmark::DoNotOptimize(dSum);
}

/// Keeps the quickest of many passes.
class Stopwatch {
public:
  double Run(std::function<void()> const& pass, bool bCached) {
    bCached ? pass() : ForgetCaches();
    double const dStart = ThreadSeconds();
    pass();
    double const dSeconds = ThreadSeconds() - dStart;
    m_dBest = std::min(m_dBest, dSeconds);
    return dSeconds;
  }
  double GetNanoseconds() const { return m_dBest * 1e9 / static_cast<double>(kCount); }

private:
  double m_dBest = std::numeric_limits<double>::infinity();
};

struct Passes {
  std::function<void()> m_read;
  std::function<std::size_t()> m_test;
  std::function<std::size_t()> m_rival;
  std::size_t m_nExpected = 0;
  /// Time each pass right after another of the same, so that caches hold what they can.
  bool m_bCached = false;
};

void RunPasses(benchmark::State& state, Passes const& passes) {
  if (passes.m_test() != passes.m_nExpected) {
    state.SkipWithError("answers differ from the rule");
    return;
  }
  // OGRE computes in float from centre and half size and keeps what touches, so its answers agree all but exactly.
  if (passes.m_rival) {
    double const dApart = static_cast<double>(passes.m_rival()) - static_cast<double>(passes.m_nExpected);
    if (std::abs(dApart) > 0.001 * static_cast<double>(kCount)) {
      state.SkipWithError("the rival answers another question");
      return;
    }
  }
  Stopwatch read;
  Stopwatch test;
  Stopwatch rival;
  for (auto _ : state) {
    read.Run(passes.m_read, passes.m_bCached);
    state.SetIterationTime(test.Run([&] { benchmark::DoNotOptimize(passes.m_test()); }, passes.m_bCached));
    if (passes.m_rival) rival.Run([&] { benchmark::DoNotOptimize(passes.m_rival()); }, passes.m_bCached);
  }
  state.counters["read_ns"] = read.GetNanoseconds();
  state.counters["test_ns"] = test.GetNanoseconds();
  state.counters["x_read"] = test.GetNanoseconds() / read.GetNanoseconds();
  if (passes.m_rival) {
    state.counters["ogre_ns"] = rival.GetNanoseconds();
    state.counters["x_faster"] = rival.GetNanoseconds() / test.GetNanoseconds();
  }
}

void BenchBoxes(benchmark::State& state, detail::QXVisibilityTests const& tests, Kind eKind, bool bCached) {
  Scene const& scene = GetScene(eKind);
  Frustum const frustum;
  Passes passes;
  passes.m_bCached = bCached;
  passes.m_read = [&] { ReadBoxes(scene); };
  passes.m_test = [&] { return CountBoxes(frustum, scene); };
  passes.m_nExpected = scene.m_nVisibleBoxes;
#if defined(QX_BENCH_OGRE)
  Rival const rival(scene);
  passes.m_rival = [&] { return rival.CountBoxes(); };
#endif
  detail::g_pfnBoxTest = tests.m_pfnBox;
  RunPasses(state, passes);
}

void BenchSpheres(benchmark::State& state, detail::QXVisibilityTests const& tests, Kind eKind, bool bCached) {
  Scene const& scene = GetScene(eKind);
  Frustum const frustum;
  Passes passes;
  passes.m_bCached = bCached;
  passes.m_read = [&] { ReadSpheres(scene); };
  passes.m_test = [&] { return CountSpheres(frustum, scene); };
  passes.m_nExpected = scene.m_nVisibleSpheres;
#if defined(QX_BENCH_OGRE)
  Rival const rival(scene);
  passes.m_rival = [&] { return rival.CountSpheres(); };
#endif
  detail::g_pfnSphereTest = tests.m_pfnSphere;
  RunPasses(state, passes);
}

void RegisterAll() {
  struct Workload {
    char const* m_szName;
    Kind m_eKind;
    bool m_bCached;
  };
  static constexpr Workload kWorkloads[] = {{"mixed", Kind::Mixed, false}, {"mixed-cached", Kind::Mixed, true},
      {"all-visible", Kind::Visible, false}, {"all-rejected", Kind::Rejected, false},
      {"inverted", Kind::Inverted, false}};
  for (detail::QXVisibilityTests const& tests : detail::GetVisibilityTests()) {
    if (!tests.m_pfnIsSupported()) continue;
    for (Workload const& workload : kWorkloads) {
      std::string const strTail = std::string("/") + workload.m_szName + "/" + tests.m_szName;
      Kind const eKind = workload.m_eKind;
      bool const bCached = workload.m_bCached;
      benchmark::RegisterBenchmark(("QXFrustum/IsVisible-box" + strTail).c_str(),
          [&tests, eKind, bCached](benchmark::State& state) { BenchBoxes(state, tests, eKind, bCached); })
          ->UseManualTime()
          ->Unit(benchmark::kMillisecond);
      if (eKind == Kind::Inverted) continue;
      benchmark::RegisterBenchmark(("QXFrustum/IsVisible-sphere" + strTail).c_str(),
          [&tests, eKind, bCached](benchmark::State& state) { BenchSpheres(state, tests, eKind, bCached); })
          ->UseManualTime()
          ->Unit(benchmark::kMillisecond);
    }
  }
}

[[maybe_unused]] bool const g_bRegistered = [] {
  RegisterAll();
  return true;
}();

}  // namespace
