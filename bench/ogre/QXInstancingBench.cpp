// Instances of the renderer on OGRE: finding those that a view sees, and drawing them.
//
// Culling: 100,000 places, half of them in sight. Every case times passes that take turns, each after the caches were
// filled with something else, and reports the quickest of each: merely reading the boxes, finding the places in sight,
// writing them for the device too, and moving all of them before. Time is that of the thread. The places found are
// compared with those that corner after corner finds.
//
// Drawing: 10,000 instances in one operation beside the same triangles in one bucket of static geometry, frame by frame
// in turns. Time is that of all threads of the process, since the software rasteriser has several. The pictures are
// compared before anything is timed.

#include <QxGraphics3D/frame/QXGraphics3D.h>
#include <QxGraphics3D/frame/QXPluginModule.h>
#include <QxGraphics3D/frame/QXRenderTarget.h>
#include <QxGraphics3D/frame/QXViewport.h>
#include <QxGraphics3D/frame/foundation/base3d/QXIndexPackage.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMathEngine.h>
#include <QxGraphics3D/frame/foundation/base3d/QXQuaternion4d.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVertexDataPackage.h>
#include <QxGraphics3D/model/QXHwInstancingManager.h>
#include <QxGraphics3D/model/QXInstancing.h>
#include <QxGraphics3D/renderop/QXRenderOperation3D.h>
#include <QxGraphics3D/renderop/QXRenderOperationManager.h>
#include <QxGraphics3D/renderop/QXRenderOperationMultiIndex.h>
#include <QxGraphics3D/renderop/QXVertexBlock.h>
#include <QxGraphics3D/renderop/QXVertexIndexPackage.h>
#include <QxGraphics3D/staticgeometry/QXStaticGeometryBucket.h>
#include <QxGraphics3D/view/QXCamera.h>

#include <bench/QXBenchClock.h>
#include <plugins/ogre/QXOgreView.h>
#include <plugins/ogre/instancing/QXOgrePlacements.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

using namespace QXC;

namespace {

using QXBench::Quickest;

constexpr unsigned int kSeed = 20261121;

// --- Culling ---

constexpr unsigned int kPlaces = 100000;

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

bool IsBoxVisibleByCorners(QXPlane const* pPlanes, QXBoundingBox const& box) {
  std::array<QXVector3d, 8> const corners = box.GetCorners();
  return std::none_of(pPlanes, pPlanes + 6, [&](QXPlane const& plane) {
    return std::all_of(
        corners.begin(), corners.end(), [&](QXVector3d const& corner) { return plane.GetDistance(corner) < 0.0; });
  });
}

struct Places {
  Places() {
    std::mt19937_64 engine(kSeed);
    std::uniform_real_distribution<double> across(-1000.0, 1000.0);
    std::uniform_real_distribution<double> angle(0.0, 6.28);
    QXBoundingBox const boxMesh(QXVector3d(-2.0, -2.0, 0.0), QXVector3d(2.0, 2.0, 9.0));
    while (m_arrMatrices.size() < kPlaces) {
      double const dAngle = angle(engine);
      QXMatrix4d mat;
      mat[0][0] = mat[1][1] = std::cos(dAngle);
      mat[0][1] = std::sin(dAngle);
      mat[1][0] = -std::sin(dAngle);
      bool const bWanted = (engine() & 1U) != 0;
      for (bool bFound = false; !bFound;) {
        mat.SetTrans(QXVector3d(across(engine), across(engine), across(engine)));
        bFound = IsBoxVisibleByCorners(m_Frustum.GetFrustumPlanes(), boxMesh.GetTransformed(mat)) == bWanted;
      }
      m_arrMatrices.push_back(mat);
      m_nVisible += bWanted ? 1 : 0;
    }
    m_Placements.Add(m_arrMatrices.data(), kPlaces);
    m_Placements.SetMesh(QXMatrix4d(), boxMesh, QXVector3d::ZERO);
    m_Placements.Update();
    for (unsigned int i = 0; i < kPlaces; ++i) m_arrBoxes.push_back(m_Placements.GetBounds(i));
    m_arrInstances.resize(kPlaces);
    m_View.m_pFrustum = &m_Frustum;
    m_View.m_matView = m_Frustum.GetViewMatrix();
    m_View.m_vecOrigin = QXVector3d::ZERO;
    m_View.m_dVerticalExaggeration = 1.0;
  }

  /// The least that any test has to do: take in the six numbers of each box.
  void Read() const {
    double sums[6] = {};
    for (QXBoundingBox const& box : m_arrBoxes) {
      __builtin_prefetch(reinterpret_cast<char const*>(&box) + 4096);
      for (int nAxis = 0; nAxis < 3; ++nAxis) {
        sums[nAxis] += box.m_dMin[nAxis];
        sums[3 + nAxis] += box.m_dMax[nAxis];
      }
    }
    benchmark::DoNotOptimize(sums);
  }
  std::size_t Cull() { return m_Placements.Collect(m_View, 0.0, 0.0, false); }
  void CullAndWrite() {
    m_Placements.Write(0, Cull(), m_arrInstances.data());
    benchmark::ClobberMemory();
  }
  void MoveAndCull() {
    m_Placements.Set(0, m_arrMatrices.data(), kPlaces);
    m_Placements.Update();
    Cull();
  }

  Frustum m_Frustum;
  std::vector<QXMatrix4d> m_arrMatrices;
  std::vector<QXBoundingBox> m_arrBoxes;
  std::vector<QXOgreInstance> m_arrInstances;
  QXOgrePlacements m_Placements;
  QXOgreView m_View{};
  std::size_t m_nVisible = 0;
};

void FillCaches() {
  static std::vector<std::uint64_t> s_arrWords(8U << 20U);
  for (std::size_t i = 0; i < s_arrWords.size(); i += 8) ++s_arrWords[i];
  benchmark::ClobberMemory();
}

void BM_Cull(benchmark::State& state) {
  static Places s_places;
  if (s_places.Cull() != s_places.m_nVisible) {
    state.SkipWithError("the places in sight are not those that corners tell");
    return;
  }
  Quickest read;
  Quickest cull;
  Quickest write;
  Quickest move;
  for (auto _ : state) {
    FillCaches();
    read.Time([&] { s_places.Read(); });
    FillCaches();
    state.SetIterationTime(cull.Time([&] { s_places.Cull(); }));
    FillCaches();
    write.Time([&] { s_places.CullAndWrite(); });
    FillCaches();
    move.Time([&] { s_places.MoveAndCull(); });
  }
  auto const nanoseconds = [](Quickest const& quickest) { return quickest.m_dSeconds * 1.0e9 / kPlaces; };
  state.counters["read_ns"] = nanoseconds(read);
  state.counters["cull_ns"] = nanoseconds(cull);
  state.counters["cull_and_write_ns"] = nanoseconds(write);
  state.counters["move_and_cull_ns"] = nanoseconds(move);
  state.counters["cull_to_read"] = cull.m_dSeconds / read.m_dSeconds;
  state.counters["cull_and_write_to_read"] = write.m_dSeconds / read.m_dSeconds;
}
BENCHMARK(BM_Cull)->UseManualTime()->Unit(benchmark::kMicrosecond);

// --- Drawing ---

constexpr unsigned int kInstances = 10000;
constexpr unsigned int kWidth = 1280;
constexpr unsigned int kHeight = 720;

double ProcessSeconds() {
  timespec now{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

/// A ball of so many stripes and rings around the zero, as trees are made: two triangles between neighbours.
struct Ball {
  explicit Ball(unsigned int nRings) {
    unsigned int const nStripes = 2 * nRings;
    for (unsigned int i = 0; i <= nRings; ++i) {
      for (unsigned int j = 0; j <= nStripes; ++j) {
        double const dUp = 3.14159265 * i / nRings;
        double const dAround = 6.2831853 * j / nStripes;
        QXVector3d const vec(std::sin(dUp) * std::cos(dAround), std::sin(dUp) * std::sin(dAround), std::cos(dUp));
        m_arrNormals.push_back(vec);
      }
    }
    for (unsigned int i = 0; i < nRings; ++i) {
      for (unsigned int j = 0; j < nStripes; ++j) {
        unsigned int const nFirst = i * (nStripes + 1) + j;
        unsigned int const nBelow = nFirst + nStripes + 1;
        for (unsigned int const n : {nFirst, nBelow, nBelow + 1, nFirst, nBelow + 1, nFirst + 1})
          m_arrIndices.push_back(n);
      }
    }
  }
  static constexpr double RADIUS = 0.4;
  std::vector<QXVector3d> m_arrNormals;
  std::vector<unsigned int> m_arrIndices;
};

void Put(float*& p, QXVector3d const& vec) {
  for (double const d : {vec.x, vec.y, vec.z}) *p++ = static_cast<float>(d);
}

/// A field of balls, 100 by 100, from above at an angle.
class Field {
public:
  explicit Field(unsigned int nRings) : m_Ball(nRings) {
    m_pModule.reset(QXPluginModule::LoadFile(
        QdcUnicodeString::FromUTF8(QX_OGRE_MODULE), QX_PLUGIN_KIND_RENDERER, L"ogre", m_strError));
    m_pGraphics3D = m_pModule ? static_cast<QXGraphics3D*>(m_pModule->Create(m_strError)) : nullptr;
    if (!m_pGraphics3D || !m_pGraphics3D->Initialize(L"")) return;
    m_pTarget = m_pGraphics3D->CreateRenderTexture(L"picture", PF_A8R8G8B8, kWidth, kHeight, 0, 32, L"");
    m_pGraphics3D->AttachRenderTarget(m_pTarget);
    m_pTarget->SetActive(1);
    QXCamera* const pCamera = m_pGraphics3D->CreateCamera(L"camera", L"3D");
    pCamera->SetPosition(0.0, -70.0, 60.0);
    pCamera->SetDirection(QXVector3d(0.0, 70.0, -60.0));
    pCamera->SetProjectionType(PROJECTION_PERSPECTIVE);
    pCamera->SetNearDist(1.0);
    pCamera->SetFarDist(300.0);
    m_pTarget->AddViewport(pCamera, 0, 0.0, 0.0, 1.0, 1.0);
    m_arrPixels.resize(std::size_t{4} * kWidth * kHeight);
    for (unsigned int i = 0; i < kInstances; ++i)
      m_arrPlaces.emplace_back(-49.5 + i % 100, -49.5 + static_cast<double>(i / 100), 0.0);
    MakeInstances();
    MakeBucket();
  }
  ~Field() {
    delete m_pBucket;
    if (!m_pGraphics3D) return;
    m_pGraphics3D->ShutDown();
    m_pModule->Destroy(m_pGraphics3D);
  }
  Field(Field const&) = delete;
  Field& operator=(Field const&) = delete;

  bool IsReady() const { return m_pInstancing && m_pBucket; }
  unsigned int GetTriangleCount() const { return static_cast<unsigned int>(m_Ball.m_arrIndices.size() / 3); }
  /// One frame, until its pixels have come back.
  double Draw(bool bInstances) {
    m_pInstancing->SetVisible(bInstances);
    m_pBucket->SetVisible(!bInstances);
    double const dStart = ProcessSeconds();
    m_pGraphics3D->BeginGeometryCount();
    m_pGraphics3D->UpdateAllRenderTargets();
    m_pTarget->CopyToMemory(m_arrPixels.data(), static_cast<unsigned int>(m_arrPixels.size()));
    return ProcessSeconds() - dStart;
  }
  /// Pixels that differ by more than a step.
  std::size_t CountDifferences() {
    Draw(true);
    m_nOperations = m_pGraphics3D->GetDrawOperationCount();
    std::vector<unsigned char> const arrInstances = m_arrPixels;
    Draw(false);
    std::size_t nDifferent = 0;
    m_nDrawn = 0;
    for (std::size_t i = 0; i < m_arrPixels.size(); i += 4) {
      bool bSame = true;
      for (std::size_t k = 0; k < 3; ++k) bSame = bSame && std::abs(m_arrPixels[i + k] - arrInstances[i + k]) <= 1;
      nDifferent += bSame ? 0 : 1;
      m_nDrawn += m_arrPixels[i + 1] != m_arrPixels[1] ? 1 : 0;
    }
    return nDifferent;
  }

  std::size_t m_nDrawn = 0;
  unsigned int m_nOperations = 0;

private:
  void MakeInstances() {
    QXRenderOperationMultiIndex mesh;
    auto* const pBlock = mesh.m_pVertexBlock = new QXVertexBlock;
    pBlock->m_nVertexCount = static_cast<unsigned int>(m_Ball.m_arrNormals.size());
    pBlock->m_nNormalOffset = 3;
    pBlock->m_nStride = 6;
    pBlock->m_pBuffer = new float[m_Ball.m_arrNormals.size() * 6];
    float* p = pBlock->m_pBuffer;
    for (QXVector3d const& vec : m_Ball.m_arrNormals) {
      Put(p, QXVector3d(vec.x * Ball::RADIUS, vec.y * Ball::RADIUS, vec.z * Ball::RADIUS));
      Put(p, vec);
    }
    auto* const pPackage = new QXVertexIndexPackage;
    pPackage->m_nIndexType = 1;
    auto* const pIndices = new unsigned int[m_Ball.m_arrIndices.size()];
    std::copy(m_Ball.m_arrIndices.begin(), m_Ball.m_arrIndices.end(), pIndices);
    pPackage->m_pIndices = pIndices;
    pPackage->m_nIndexNum = static_cast<unsigned int>(m_Ball.m_arrIndices.size());
    mesh.SetAt(pPackage, nullptr);
    QXHwInstancingManager* const pManager = m_pGraphics3D->GetHwInstancingManager();
    m_pInstancing = pManager->CreateInstancing(L"balls", L"3D");
    pManager->SetMesh(m_pInstancing, &mesh);
    std::vector<QXMatrix4d> arrMatrices(kInstances);
    for (unsigned int i = 0; i < kInstances; ++i) arrMatrices[i].SetTrans(m_arrPlaces[i]);
    pManager->AddPlacements(m_pInstancing, arrMatrices.data(), kInstances);
  }
  void MakeBucket() {
    QXStaticGeometryBucket bucket;
    QXVertexDataPackage& package = *bucket.m_pVertexPackage;
    auto const nVertices = static_cast<unsigned int>(m_Ball.m_arrNormals.size());
    package.m_nVertexDim = 3;
    package.SetVertexNum(nVertices * kInstances, 0);
    package.m_nNormalDim = 3;
    package.SetNormalNum(nVertices * kInstances, 0);
    float* pPosition = package.m_pVertices;
    float* pNormal = package.m_pNormals;
    auto* const pIndices = new QXIndexPackage;
    pIndices->SetIndexNum32(static_cast<int>(m_Ball.m_arrIndices.size() * kInstances));
    auto* pIndex = static_cast<unsigned int*>(pIndices->m_pIndices);
    for (unsigned int i = 0; i < kInstances; ++i) {
      for (QXVector3d const& vec : m_Ball.m_arrNormals) {
        Put(pPosition, m_arrPlaces[i] + QXVector3d(vec.x * Ball::RADIUS, vec.y * Ball::RADIUS, vec.z * Ball::RADIUS));
        Put(pNormal, vec);
      }
      for (unsigned int const n : m_Ball.m_arrIndices) *pIndex++ = i * nVertices + n;
    }
    bucket.m_nIndexType = 1;
    bucket.m_mapLevelIndices[0].push_back(pIndices);
    m_pBucket = m_pGraphics3D->GetRenderOperationManager()->CreateStaticGeometry3D(L"3D", bucket, {});
  }

  Ball m_Ball;
  QdcUnicodeString m_strError;
  std::unique_ptr<QXPluginModule> m_pModule;
  QXGraphics3D* m_pGraphics3D = nullptr;
  QXRenderTarget* m_pTarget = nullptr;
  QXInstancing* m_pInstancing = nullptr;
  QXRenderOperation3D* m_pBucket = nullptr;
  std::vector<QXVector3d> m_arrPlaces;
  std::vector<unsigned char> m_arrPixels;
};

void BM_Frame(benchmark::State& state) {
  Field field(static_cast<unsigned int>(state.range(0)));
  if (!field.IsReady()) {
    state.SkipWithError("the renderer does not start: without a display, run this under tests/ogre/with-display");
    return;
  }
  std::size_t const nDifferent = field.CountDifferences();
  // Corners fall on the middles of pixels now and then, and rounding decides.
  if (field.m_nDrawn < kWidth * kHeight / 10 || nDifferent > kWidth * kHeight / 2000 || field.m_nOperations != 1) {
    state.SkipWithError("the two pictures are not one and the same");
    return;
  }
  double dInstances = HUGE_VAL;
  double dBucket = HUGE_VAL;
  for (auto _ : state) {
    double const dFrame = field.Draw(true);
    state.SetIterationTime(dFrame);
    dInstances = std::min(dInstances, dFrame);
    dBucket = std::min(dBucket, field.Draw(false));
  }
  state.counters["triangles"] = field.GetTriangleCount();
  state.counters["different_pixels"] = static_cast<double>(nDifferent);
  state.counters["instances_ms"] = 1.0e3 * dInstances;
  state.counters["bucket_ms"] = 1.0e3 * dBucket;
  state.counters["to_bucket"] = dInstances / dBucket;
}
BENCHMARK(BM_Frame)->ArgName("rings")->Arg(2)->Arg(4)->Arg(7)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace
