#include <apps/qx3d/geo/QXFootprintModel.h>

#include <apps/qx3d/geo/QXRoofCutter.h>

#include <QxGraphics3D/frame/foundation/base3d/QXIndexPackage.h>
#include <QxGraphics3D/frame/foundation/fileparser/ModelDataInfo.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXModelMesh.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace QXApp {

namespace {

using QXC::QXVector3d;
using Corner = QXRoofCutter::Corner;

/// Crossing edges make new corners, up to the square of the old ones: a building has a few of them by mistake.
constexpr std::size_t MaxCorners = 2000;
constexpr std::size_t MaxCrossings = 1000000;

/// Twice the area, positive when the ring runs counter-clockwise seen from above. Relative to the first corner: map
/// coordinates are large beside a building.
template <class Ring>
double GetDoubleArea(Ring const& vecRing) {
  double dArea = 0.0;
  for (std::size_t i = 1; i + 1 < vecRing.size(); ++i)
    dArea += (vecRing[i].x - vecRing[0].x) * (vecRing[i + 1].y - vecRing[0].y) -
             (vecRing[i + 1].x - vecRing[0].x) * (vecRing[i].y - vecRing[0].y);
  return dArea;
}

/// Growing arrays of one building.
struct Buffers {
  std::vector<float> m_vecPositions;
  std::vector<float> m_vecNormals;
  std::vector<unsigned int> m_vecIndices;

  std::size_t GetVertexCount() const { return m_vecPositions.size() / 3; }
  unsigned int AddVertex(Corner const& corner, double z, QXVector3d const& vecNormal) {
    for (double const d : {corner.x, corner.y, z}) m_vecPositions.push_back(static_cast<float>(d));
    for (double const d : {vecNormal.x, vecNormal.y, vecNormal.z}) m_vecNormals.push_back(static_cast<float>(d));
    return static_cast<unsigned int>(GetVertexCount() - 1);
  }
};

void AddMesh(Buffers const& buffers, QXVector3d const& vecOrigin, std::size_t nNumber, QXC::ModelDataInfo& model) {
  auto pMesh = std::make_unique<QXC::QXModelMesh>();
  pMesh->m_strName = QXC::QdcUnicodeString::FromUTF8(("building " + std::to_string(nNumber)).c_str());
  pMesh->m_pVertexPackage = new QXC::QXVertexDataPackage;
  auto const nVertices = static_cast<unsigned int>(buffers.GetVertexCount());
  pMesh->m_pVertexPackage->SetVertexNum(nVertices, 0);
  pMesh->m_pVertexPackage->SetNormalNum(nVertices, 0);
  std::copy(buffers.m_vecPositions.begin(), buffers.m_vecPositions.end(), pMesh->m_pVertexPackage->m_pVertices);
  std::copy(buffers.m_vecNormals.begin(), buffers.m_vecNormals.end(), pMesh->m_pVertexPackage->m_pNormals);
  auto pIndices = std::make_unique<QXC::QXIndexPackage>();
  auto const nIndices = static_cast<int>(buffers.m_vecIndices.size());
  // Corners and crossings are limited, so that 16 bits are enough.
  pIndices->SetIndexNum(nIndices);
  std::transform(buffers.m_vecIndices.begin(), buffers.m_vecIndices.end(), pIndices->GetIndices16(),
      [](unsigned int nVertex) { return static_cast<unsigned short>(nVertex); });
  pMesh->m_arrIndexPackages.Add(pIndices.get());
  pIndices.release();
  pMesh->UpdateBounds();
  QXC::QXModelNode node;
  node.m_nMesh = model.AddMesh(pMesh.release());
  node.m_matWorld.SetTrans(vecOrigin);
  model.AddNode(node);
}

class Builder {
public:
  explicit Builder(QXVector3d const& vecShift) : m_vecShift(vecShift), m_pModel(new QXC::ModelDataInfo) {}

  void Add(QXGeoFootprint const& footprint) {
    ++m_nNumber;
    std::size_t nCorners = 0;
    for (auto const& vecRing : footprint.m_vecRings) nCorners += vecRing.size();
    if (nCorners > MaxCorners || m_Cutter.GetCrossingCount() > MaxCrossings || footprint.m_vecRings.empty()) {
      ++m_nLeftOut;
      return;
    }
    QXVector3d const vecFirst = footprint.m_vecRings[0][0] + m_vecShift;
    QXVector3d const vecOrigin(std::floor(vecFirst.x), std::floor(vecFirst.y), std::floor(vecFirst.z));
    std::vector<std::vector<Corner>> const vecRings = MakeRings(footprint, vecOrigin);
    // Before the walls: those of what has no roof would be fences.
    if (!m_Cutter.Cut(vecRings) || m_Cutter.GetTriangles().empty()) {
      ++m_nLeftOut;
      return;
    }
    double dBase = vecFirst.z;
    for (QXVector3d const& vec : footprint.m_vecRings[0]) dBase = std::min(dBase, vec.z + m_vecShift.z);
    dBase -= vecOrigin.z;
    double const dTop = dBase + GetBuildingHeight(footprint);
    Buffers buffers;
    AddRoof(dTop, buffers);
    for (auto const& vecRing : vecRings) AddWalls(vecRing, dBase, dTop, buffers);
    AddMesh(buffers, vecOrigin, m_nNumber, *m_pModel);
  }

  std::unique_ptr<QXC::ModelDataInfo> Finish() {
    m_pModel->SetUpAxis(QXC::QX_UP_Z);
    return m_pModel->GetMeshCount() > 0 ? std::move(m_pModel) : nullptr;
  }

  std::size_t GetLeftOutCount() const { return m_nLeftOut; }

private:
  /// Relative to an origin, the outer ring counter-clockwise and the others clockwise: walls look away from what is on
  /// their left.
  std::vector<std::vector<Corner>> MakeRings(QXGeoFootprint const& footprint, QXVector3d const& vecOrigin) const {
    std::vector<std::vector<Corner>> vecRings;
    for (auto const& vecRing : footprint.m_vecRings) {
      std::vector<Corner>& vecCorners = vecRings.emplace_back();
      for (QXVector3d const& vec : vecRing)
        vecCorners.push_back({vec.x + m_vecShift.x - vecOrigin.x, vec.y + m_vecShift.y - vecOrigin.y});
      bool const bOuter = vecRings.size() == 1;
      if ((GetDoubleArea(vecCorners) > 0.0) != bOuter) std::reverse(vecCorners.begin(), vecCorners.end());
    }
    return vecRings;
  }

  void AddRoof(double dTop, Buffers& buffers) const {
    auto const nBase = static_cast<unsigned int>(buffers.GetVertexCount());
    for (Corner const& corner : m_Cutter.GetCorners()) buffers.AddVertex(corner, dTop, QXVector3d::UNIT_Z);
    for (unsigned int const nCorner : m_Cutter.GetTriangles()) buffers.m_vecIndices.push_back(nBase + nCorner);
  }

  static void AddWalls(std::vector<Corner> const& vecRing, double dBase, double dTop, Buffers& buffers) {
    for (std::size_t i = 0; i < vecRing.size(); ++i) {
      Corner const& a = vecRing[i];
      Corner const& b = vecRing[(i + 1) % vecRing.size()];
      QXVector3d const vecNormal = QXVector3d(b.y - a.y, a.x - b.x, 0.0).Normalize();
      unsigned int const nFirst = buffers.AddVertex(a, dBase, vecNormal);
      buffers.AddVertex(b, dBase, vecNormal);
      buffers.AddVertex(b, dTop, vecNormal);
      buffers.AddVertex(a, dTop, vecNormal);
      for (unsigned int const n : {0U, 1U, 2U, 0U, 2U, 3U}) buffers.m_vecIndices.push_back(nFirst + n);
    }
  }

  QXVector3d const m_vecShift;
  std::unique_ptr<QXC::ModelDataInfo> m_pModel;
  QXRoofCutter m_Cutter;
  std::size_t m_nLeftOut = 0;
  /// Of the footprint among those of the file, from 1.
  std::size_t m_nNumber = 0;
};

}  // namespace

double GetFootprintArea(QXGeoFootprint const& footprint) {
  double dArea = 0.0;
  for (std::size_t i = 0; i < footprint.m_vecRings.size(); ++i) {
    double const dRing = 0.5 * std::abs(GetDoubleArea(footprint.m_vecRings[i]));
    dArea += i == 0 ? dRing : -dRing;
  }
  return std::max(dArea, 0.0);
}

double GetBuildingHeight(QXGeoFootprint const& footprint) {
  constexpr double Storey = 3.0;
  if (footprint.m_dHeight > 0.0) return footprint.m_dHeight;
  if (footprint.m_dStoreys > 0.0) return Storey * footprint.m_dStoreys;
  double const dArea = GetFootprintArea(footprint);
  return dArea < 40.0 ? Storey : (dArea < 400.0 ? 3.0 * Storey : 4.0 * Storey);
}

std::unique_ptr<QXC::ModelDataInfo> MakeFootprintModel(
    std::vector<QXGeoFootprint> const& vecFootprints, QXVector3d const& vecShift, std::string& strWarning) {
  Builder builder(vecShift);
  for (QXGeoFootprint const& footprint : vecFootprints) builder.Add(footprint);
  if (builder.GetLeftOutCount() > 0)
    strWarning = std::to_string(builder.GetLeftOutCount()) +
                 " footprints have no area, more than 2000 corners or too many crossing edges, and are left out; "
                 "correct them";
  return builder.Finish();
}

}  // namespace QXApp
