#include <apps/qx3d/QXInstanceModels.h>

#include <apps/qx3d/QXMessage.h>
#include <apps/qx3d/QXModelLoader.h>
#include <apps/qx3d/QXSceneModels.h>

#include <QxGraphics3D/frame/foundation/fileparser/ModelDataInfo.h>

#include <algorithm>
#include <filesystem>
#include <memory>

namespace QXApp {

namespace {

/// The model of the cache, turned; the cache keeps it as its file has it. Null with a reason.
std::unique_ptr<QXC::ModelDataInfo> TakeModel(
    QXC::QXModelManager& cache, std::string const& strPath, UpAxis eUp, std::string& strReason) {
  QXC::QXModelDataPtr pData;
  if (IsUtf8(strPath)) pData = cache.GetModelData(QXC::QdcUnicodeString::FromUTF8(strPath.c_str()));
  // The cache does not say why it has none; reading once more does.
  if (pData.IsNull() || pData->GetModelDataInfo() == nullptr) return LoadModel(strPath, eUp, strReason);
  auto pModel = std::make_unique<QXC::ModelDataInfo>(*pData->GetModelDataInfo());
  strReason = PrepareModel(*pModel, strPath, eUp);
  return strReason.empty() ? std::move(pModel) : nullptr;
}

}  // namespace

QXInstanceModels::QXInstanceModels() {
  m_Bounds.SetNULL();
}

QXInstanceModels::~QXInstanceModels() = default;

int QXInstanceModels::LoadOne(
    FileKey const& key, std::vector<std::string>& vecPictureProblems, std::string& strReason) {
  std::unique_ptr<QXC::ModelDataInfo> const pModel = TakeModel(m_Cache, key.first, key.second, strReason);
  if (pModel == nullptr) return -1;
  if (pModel->GetTriangleCount() == 0) {
    strReason = "there are no triangles in it, so that its instances show nothing; name another model";
    return -1;
  }
  QXModelPictures pictures;
  std::vector<std::string> vecProblems;
  pictures.Load(*pModel, vecProblems);
  AppendNew(vecProblems, vecPictureProblems);
  QXC::QXBoundingBox nothing;
  nothing.SetNULL();
  QXMergeOptions options;
  options.m_eMerging = QXMerging::Textures;
  m_vecModels.push_back(
      {BuildScene({{pModel.get(), &pictures, {QXC::QXMatrix4d()}}}, {}, nothing, options), pModel->GetBoundingBox()});
  for (QXScenePart& part : m_vecModels.back().m_Scene.m_vecParts)
    part.m_nModel = static_cast<int>(m_vecModels.size()) - 1;
  m_vecPictures.push_back(std::move(pictures));
  return static_cast<int>(m_vecModels.size()) - 1;
}

std::string QXInstanceModels::AddGroup(QXSceneInstances const& instances, std::size_t nSection, std::size_t nModel) {
  QXInstanceGroup group{nSection, nModel, {}};
  QXC::QXBoundingBox const& box = m_vecModels[nModel].m_Box;
  group.m_vecMatrices.reserve(instances.m_vecPlaces.size());
  for (QXScenePlace const& place : instances.m_vecPlaces) {
    QXC::QXMatrix4d const mat = MakePlacement(place);
    if (!IsShowable(box, mat))
      return "an instance is placed beyond 1e15, farther than can be shown; give a smaller scale or a nearer position";
    for (QXC::QXVector3d const& vecCorner : box.GetCorners()) {
      QXC::QXVector3d const vec = vecCorner.MultiplyMatrix(mat);
      m_Bounds.Merge(QXC::QXBoundingBox(vec, vec));
    }
    group.m_vecMatrices.push_back(mat);
  }
  unsigned long long const nCount = group.m_vecMatrices.size();
  m_nTriangles += nCount * m_vecModels[nModel].m_Scene.m_nTriangles;
  m_nVertices += nCount * m_vecModels[nModel].m_Scene.m_nVertices;
  m_vecGroups.push_back(std::move(group));
  return std::string();
}

void QXInstanceModels::Load(QXSceneFile const& scene, UpAxis eUp,
    std::function<void(std::string const&)> const& progress, QXSceneProblems& problems,
    std::vector<std::string>& vecPictureProblems) {
  for (std::size_t i = 0; i < scene.m_vecInstances.size(); ++i) {
    QXSceneInstances const& instances = scene.m_vecInstances[i];
    FileKey const key{std::filesystem::path(instances.m_strFile).lexically_normal().string(),
        instances.m_eUp == UpAxis::Auto ? eUp : instances.m_eUp};
    auto const [it, bNew] = m_mapFiles.insert({key, -1});
    std::string strReason;
    if (bNew) {
      progress("reading " + instances.m_strFile);
      it->second = LoadOne(key, vecPictureProblems, strReason);
    }
    if (it->second >= 0) strReason = AddGroup(instances, i, static_cast<std::size_t>(it->second));
    if (!strReason.empty()) problems.Add(instances.m_nLine, instances.m_strFile + ": " + strReason);
  }
  m_Cache.RemoveAll();
}

std::size_t QXInstanceModels::GetInstanceCount() const {
  std::size_t nCount = 0;
  for (QXInstanceGroup const& group : m_vecGroups) nCount += group.m_vecMatrices.size();
  return nCount;
}

bool QXInstanceModels::HasAnimated() const {
  return std::any_of(m_vecPictures.begin(), m_vecPictures.end(),
      [](QXModelPictures const& pictures) { return pictures.HasAnimated(); });
}

void QXInstanceModels::Free() {
  m_vecModels.clear();
  m_vecPictures.clear();
  m_vecGroups.clear();
  m_mapFiles.clear();
}

}  // namespace QXApp
