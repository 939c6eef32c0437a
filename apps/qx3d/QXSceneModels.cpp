#include <apps/qx3d/QXSceneModels.h>

#include <apps/qx3d/QXModelLoader.h>
#include <apps/qx3d/QXStaticFile.h>

#include <QxGraphics3D/frame/foundation/fileparser/ModelDataInfo.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <numbers>
#include <utility>

namespace QXApp {

namespace {

using QXC::QXMatrix4d;
using QXC::QXVector3d;

/// Sine and cosine, exact at quarter turns: walls along the axes stay along them.
struct Angle {
  explicit Angle(double dDegrees) {
    double const dQuarters = dDegrees / 90.0;
    if (dQuarters == std::floor(dQuarters)) {
      constexpr double Sines[] = {0.0, 1.0, 0.0, -1.0};
      auto const nQuarter = static_cast<unsigned int>(static_cast<int>(dQuarters) & 3);
      m_dSin = Sines[nQuarter];
      m_dCos = Sines[(nQuarter + 1) & 3];
      return;
    }
    double const dRadians = dDegrees * std::numbers::pi / 180.0;
    m_dSin = std::sin(dRadians);
    m_dCos = std::cos(dRadians);
  }
  double m_dSin;
  double m_dCos;
};

/// Turns axis nFrom towards axis nTo.
QXMatrix4d MakeTurn(Angle const& angle, int nFrom, int nTo) {
  QXMatrix4d mat;
  mat[nFrom][nFrom] = angle.m_dCos;
  mat[nFrom][nTo] = angle.m_dSin;
  mat[nTo][nFrom] = -angle.m_dSin;
  mat[nTo][nTo] = angle.m_dCos;
  return mat;
}

}  // namespace

bool IsShowable(QXC::QXBoundingBox const& box, QXMatrix4d const& matPlace) {
  constexpr double Max = 1e15;
  for (QXVector3d const& vecCorner : box.GetCorners()) {
    QXVector3d const vec = vecCorner.MultiplyMatrix(matPlace);
    if (!(std::abs(vec.x) <= Max && std::abs(vec.y) <= Max && std::abs(vec.z) <= Max)) return false;
  }
  return true;
}

void AppendNew(std::vector<std::string> const& vecLines, std::vector<std::string>& vecAll) {
  for (std::string const& strLine : vecLines)
    if (std::find(vecAll.begin(), vecAll.end(), strLine) == vecAll.end()) vecAll.push_back(strLine);
}

QXMatrix4d MakePlacement(QXScenePlace const& place) {
  QXMatrix4d mat;
  for (int i = 0; i < 3; ++i) mat[i][i] = place.m_dScale;
  mat = mat * MakeTurn(Angle(place.m_dHeading), 1, 0);
  mat.SetTrans(place.m_vecPosition);
  return mat;
}

QXMatrix4d MakePlacement(QXSceneModel const& model) {
  QXMatrix4d mat;
  for (int i = 0; i < 3; ++i) mat[i][i] = model.m_dScale;
  mat = mat * MakeTurn(Angle(model.m_dRoll), 2, 0) * MakeTurn(Angle(model.m_dPitch), 1, 2) *
        MakeTurn(Angle(model.m_dHeading), 1, 0);
  mat.SetTrans(model.m_vecPosition);
  return mat;
}

QXC::QXBoundingBox GetIconBounds(QXSceneFile const& scene) {
  QXC::QXBoundingBox bounds;
  bounds.SetNULL();
  for (QXSceneIcon const& icon : scene.m_vecIcons) {
    // It stands on its position and turns to the eye, so that its upper corners may reach to all directions.
    double const dReach = icon.m_eUnit == QXIconUnit::World ? std::hypot(0.5 * icon.m_dWidth, icon.m_dHeight) : 0.0;
    QXVector3d const vecReach(dReach, dReach, dReach);
    bounds.Merge(QXC::QXBoundingBox(icon.m_vecPosition - vecReach, icon.m_vecPosition + vecReach));
  }
  return bounds;
}

QXC::QXBoundingBox GetLabelBounds(QXSceneFile const& scene) {
  QXC::QXBoundingBox bounds;
  bounds.SetNULL();
  for (QXSceneLabel const& label : scene.m_vecLabels) {
    QXVector3d vecReach;
    if (label.m_eFacing == QXLabelFacing::Flat) {
      // Fonts are first opened with a renderer; until then half the height for half a letter is near enough.
      auto const nLetters = std::count_if(
          label.m_strText.begin(), label.m_strText.end(), [](char c) { return (static_cast<int>(c) & 0xC0) != 0x80; });
      double const dReach = std::hypot(label.m_dOffset[0], label.m_dOffset[1]) +
                            0.5 * label.m_dHeight * static_cast<double>(std::max<std::ptrdiff_t>(nLetters, 2));
      vecReach = QXVector3d(dReach, dReach, 0.0);
    }
    bounds.Merge(QXC::QXBoundingBox(label.m_vecPosition - vecReach, label.m_vecPosition + vecReach));
  }
  return bounds;
}

QXSceneModels::QXSceneModels() = default;
QXSceneModels::~QXSceneModels() = default;

void QXSceneModels::LoadOne(
    std::string const& strPath, UpAxis eUp, std::vector<std::string>& vecPictureProblems, std::string& strError) {
  std::unique_ptr<QXC::ModelDataInfo> pModel = LoadModel(strPath, eUp, strError);
  if (pModel == nullptr) return;
  QXModelPictures pictures;
  std::vector<std::string> vecProblems;
  pictures.Load(*pModel, vecProblems);
  AppendNew(vecProblems, vecPictureProblems);
  QXC::QXBoundingBox const box = pModel->GetBoundingBox();
  m_vecModels.push_back({std::move(pModel), box, {}, strPath});
  m_vecPictures.push_back(std::move(pictures));
}

std::string QXSceneModels::Add(std::unique_ptr<QXC::ModelDataInfo> pModel, std::string const& strFile) {
  QXC::QXBoundingBox const box = pModel->GetBoundingBox();
  m_vecModels.push_back({std::move(pModel), box, {}, strFile});
  m_vecPictures.emplace_back();
  return Place(m_vecModels.back(), QXMatrix4d());
}

std::string QXSceneModels::Place(Model& model, QXMatrix4d const& matPlace) {
  if (!IsShowable(model.m_Box, matPlace))
    return "it is placed beyond 1e15, farther than can be shown; give a smaller scale or a nearer position";
  std::string strReason = Count(model.m_pModel->GetTriangleCount(), model.m_pModel->GetVertexCount());
  if (strReason.empty()) model.m_vecPlaces.push_back(matPlace);
  return strReason;
}

std::string QXSceneModels::Count(unsigned long long nTriangles, unsigned long long nVertices) {
  m_nTriangles += nTriangles;
  m_nVertices += nVertices;
  if (std::max(m_nTriangles, m_nVertices) <= ms_nMaxPlaced) return std::string();
  return "from here on the models have more than " + std::to_string(ms_nMaxPlaced) +
         " triangles or vertices together, more than can be shown; leave some out";
}

std::string QXSceneModels::LoadStatic(QXSceneStatic const& placed, std::vector<std::string>& vecPictureProblems) {
  std::string strReason;
  std::unique_ptr<QXC::QXStaticGeometry> pGeometry = LoadStaticFile(placed.m_strFile, strReason);
  if (pGeometry == nullptr) return strReason;
  QXMatrix4d matPlace;
  matPlace.SetTrans(placed.m_vecPosition);
  pGeometry->SetLocalViewMatrix(matPlace);
  QXC::QXBoundingBox const bounds = FindStaticBounds(*pGeometry);
  if (bounds.IsNULL() != 0) return "there are no vertices in it; bake it again";
  if (!IsShowable(bounds, matPlace))
    return "it is placed beyond 1e15, farther than can be shown; give a nearer position";
  strReason = Count(CountTriangles(*pGeometry), CountVertices(*pGeometry));
  if (!strReason.empty()) return strReason;
  QXModelPictures pictures;
  std::vector<std::string> vecProblems;
  LoadStaticTextures(
      placed.m_strFile, *pGeometry, pictures, static_cast<int>(m_vecMerged.size()), m_vecMergedTextures, vecProblems);
  AppendNew(vecProblems, vecPictureProblems);
  m_vecMergedPictures.push_back(std::move(pictures));
  m_vecMerged.push_back(std::move(pGeometry));
  m_vecMergedFiles.push_back(placed.m_strFile);
  return std::string();
}

void QXSceneModels::LoadStatics(QXSceneFile const& scene, std::function<void(std::string const&)> const& progress,
    QXSceneProblems& problems, std::vector<std::string>& vecPictureProblems) {
  for (QXSceneStatic const& placed : scene.m_vecStatics) {
    progress("reading " + placed.m_strFile);
    std::string const strReason = LoadStatic(placed, vecPictureProblems);
    if (strReason.empty()) continue;
    problems.Add(placed.m_nLine, placed.m_nLine > 0 ? placed.m_strFile + ": " + strReason : strReason);
    if (IsFull()) return;
  }
}

int QXSceneModels::FindOrLoad(std::string const& strFile, UpAxis eUp,
    std::function<void(std::string const&)> const& progress, std::vector<std::string>& vecPictureProblems,
    std::string& strReason) {
  FileKey const key{std::filesystem::path(strFile).lexically_normal().string(), eUp};
  auto const [it, bNew] = m_mapFiles.insert({key, -1});
  if (!bNew) return it->second;
  progress("reading " + strFile);
  LoadOne(strFile, eUp, vecPictureProblems, strReason);
  if (strReason.empty()) it->second = static_cast<int>(m_vecModels.size()) - 1;
  return it->second;
}

void QXSceneModels::Load(QXSceneFile const& scene, UpAxis eUp, std::function<void(std::string const&)> const& progress,
    QXSceneProblems& problems, std::vector<std::string>& vecPictureProblems) {
  for (QXSceneModel const& placed : scene.m_vecModels) {
    std::string strReason;
    int const nModel = FindOrLoad(
        placed.m_strFile, placed.m_eUp == UpAxis::Auto ? eUp : placed.m_eUp, progress, vecPictureProblems, strReason);
    if (nModel >= 0) strReason = Place(m_vecModels[static_cast<std::size_t>(nModel)], MakePlacement(placed));
    if (strReason.empty()) continue;
    // A model that is shown alone has no line, and its path is the problems' own.
    problems.Add(placed.m_nLine, placed.m_nLine > 0 ? placed.m_strFile + ": " + strReason : strReason);
    if (IsFull()) return;
  }
}

void QXSceneModels::LoadInstances(QXSceneFile const& scene, UpAxis eUp,
    std::function<void(std::string const&)> const& progress, QXSceneProblems& problems,
    std::vector<std::string>& vecPictureProblems) {
  for (QXSceneInstances const& instances : scene.m_vecInstances) {
    std::string strReason;
    int const nModel = FindOrLoad(instances.m_strFile, instances.m_eUp == UpAxis::Auto ? eUp : instances.m_eUp,
        progress, vecPictureProblems, strReason);
    for (QXScenePlace const& place : instances.m_vecPlaces) {
      if (nModel < 0 || !strReason.empty()) break;
      strReason = Place(m_vecModels[static_cast<std::size_t>(nModel)], MakePlacement(place));
    }
    if (!strReason.empty()) problems.Add(instances.m_nLine, instances.m_strFile + ": " + strReason);
    if (IsFull()) return;
  }
}

QXScene QXSceneModels::Build(QXC::QXBoundingBox const& others, QXMergeOptions const& options) {
  std::vector<QXPlacedModel> vecPlaced;
  for (std::size_t i = 0; i < m_vecModels.size(); ++i)
    vecPlaced.push_back({m_vecModels[i].m_pModel.get(), &m_vecPictures[i], std::move(m_vecModels[i].m_vecPlaces)});
  QXScene scene = BuildScene(vecPlaced, std::move(m_vecMerged), others, options);
  m_vecMerged.clear();
  if (scene.m_pNames) {
    for (std::size_t i = 0; i < m_vecModels.size(); ++i)
      scene.m_pNames->m_vecModels.push_back({m_vecModels[i].m_strFile, m_vecModels[i].m_pModel->GetNodeCount(),
          static_cast<int>(vecPlaced[i].m_vecPlaces.size())});
    scene.m_pNames->m_vecStatics = std::move(m_vecMergedFiles);
  }
  m_vecMergedFiles.clear();
  // Behind those of the models, whose number is known only now.
  for (QXSceneTexture texture : m_vecMergedTextures) {
    texture.m_nModel += static_cast<int>(m_vecPictures.size());
    scene.m_vecTextures.push_back(texture);
  }
  for (QXModelPictures& pictures : m_vecMergedPictures) m_vecPictures.push_back(std::move(pictures));
  m_vecMergedPictures.clear();
  m_vecModels.clear();
  return scene;
}

bool QXSceneModels::HasAnimated() const {
  auto const hasAnimated = [](QXModelPictures const& pictures) { return pictures.HasAnimated(); };
  return std::any_of(m_vecPictures.begin(), m_vecPictures.end(), hasAnimated) ||
         std::any_of(m_vecMergedPictures.begin(), m_vecMergedPictures.end(), hasAnimated);
}

}  // namespace QXApp
