#include <plugins/assimp/QXSceneConverter.h>

#include <plugins/assimp/QXMeshConverter.h>
#include <plugins/assimp/QXPictureCollector.h>

#include <QxGraphics3D/frame/foundation/fileparser/ModelDataInfo.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileType.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXModelMesh.h>

#include <assimp/scene.h>

#include <cmath>
#include <cstdint>
#include <vector>

namespace QXAssimp {

namespace {

/// A placed model is drawn triangle by triangle; more would overflow the counts of a frame long before it is shown.
constexpr std::uint64_t MaxPlacedTriangles = 500000000;

/// The importer's matrices stand in front of column vectors.
QXC::QXMatrix4d MakeMatrix(aiMatrix4x4 const& source) {
  QXC::QXMatrix4d mat;
  for (unsigned int nRow = 0; nRow < 4; ++nRow)
    for (unsigned int nColumn = 0; nColumn < 4; ++nColumn)
      mat[static_cast<int>(nRow)][nColumn] = static_cast<double>(source[nColumn][nRow]);
  return mat;
}

QXC::QXMatrix4d MakeTranslation(double const (&dOffset)[3]) {
  QXC::QXMatrix4d mat;
  mat.SetTrans(QXC::QXVector3d(dOffset[0], dOffset[1], dOffset[2]));
  return mat;
}

bool IsFinite(QXC::QXMatrix4d const& mat) {
  for (int nRow = 0; nRow < 4; ++nRow)
    for (int nColumn = 0; nColumn < 4; ++nColumn)
      if (!std::isfinite(mat[nRow][nColumn])) return false;
  return true;
}

/// y up to z up, keeping x and right-handed: a quarter turn about x.
QXC::QXMatrix4d MakeTurnToZUp() {
  QXC::QXMatrix4d mat;
  mat[1][1] = 0.0;
  mat[1][2] = 1.0;
  mat[2][1] = -1.0;
  mat[2][2] = 0.0;
  return mat;
}

/// What is done to a whole model behind all its nodes.
struct ModelFrame {
  QXC::QXMatrix4d m_matRoot;
  QXC::QXModelUpAxis m_eUpAxis = QXC::QX_UP_UNKNOWN;
  /// The importer turns some formats by the matrix of its root node; where it guesses, that is left away.
  bool m_bSkipRootNode = false;
};

ModelFrame ChooseFrame(aiScene const& scene, int nType, double const (&dOffset)[3]) {
  ModelFrame frame;
  frame.m_matRoot = MakeTranslation(dOffset);
  switch (nType) {
  case QXC::QXFileType::EM_MODEL_3DS:
    // The importer takes z for up and turns it to y. The format says nothing, and files of both kinds exist.
    frame.m_bSkipRootNode = true;
    break;
  case QXC::QXFileType::EM_MODEL_GLTF:
  case QXC::QXFileType::EM_MODEL_GLB:
  case QXC::QXFileType::EM_MODEL_COLLADA:
    frame.m_matRoot = frame.m_matRoot * MakeTurnToZUp();
    frame.m_eUpAxis = QXC::QX_UP_Z;
    break;
  case QXC::QXFileType::EM_MODEL_FBX: {
    // This importer leaves the axes of the file and tells the number of the one that is up.
    int nUpAxis = 1;
    if (scene.mMetaData != nullptr) scene.mMetaData->Get("UpAxis", nUpAxis);
    if (nUpAxis == 1) frame.m_matRoot = frame.m_matRoot * MakeTurnToZUp();
    frame.m_eUpAxis = QXC::QX_UP_Z;
    break;
  }
  default: break;
  }
  return frame;
}

/// The meshes of the scene that can be drawn: their index in the model and what their positions were moved by.
struct ConvertedMesh {
  int m_nIndex = -1;
  double m_dOffset[3] = {0.0, 0.0, 0.0};
};

std::vector<ConvertedMesh> ConvertMeshes(
    aiScene const& scene, int nType, QXMeshRules rules, QXMtlMaps const& maps, QXC::ModelDataInfo& model) {
  std::vector<ConvertedMesh> vecMeshes(scene.mNumMeshes);
  QXPictureCollector pictures(scene, nType, maps, model);
  for (unsigned int i = 0; i < scene.mNumMeshes; ++i) {
    aiMesh const* pMesh = scene.mMeshes[i];
    if (pMesh == nullptr) continue;
    aiMaterial const* pMaterial =
        pMesh->mMaterialIndex < scene.mNumMaterials ? scene.mMaterials[pMesh->mMaterialIndex] : nullptr;
    QXC::QXModelTexture texture;
    rules.m_nCoordSet = 0;
    if (pMaterial != nullptr) texture = pictures.Collect(*pMaterial, rules.m_nCoordSet);
    std::unique_ptr<QXC::QXModelMesh> pResult = ConvertMesh(*pMesh, pMaterial, rules, vecMeshes[i].m_dOffset);
    if (pResult == nullptr) continue;
    if (pResult->m_pVertexPackage->m_pTexCoords[0] != nullptr) pResult->m_Texture = texture;
    vecMeshes[i].m_nIndex = model.AddMesh(pResult.get());
    pResult.release();
  }
  return vecMeshes;
}

struct PendingNode {
  aiNode const* m_pNode;
  QXC::QXMatrix4d m_matParent;
};

/// Walks with a stack of its own: a hostile hierarchy may be deeper than the machine's.
bool PlaceMeshes(aiScene const& scene, ModelFrame const& frame, std::vector<ConvertedMesh> const& vecMeshes,
    QXC::ModelDataInfo& model) {
  std::uint64_t nTriangles = 0;
  std::vector<PendingNode> vecPending = {{scene.mRootNode, frame.m_matRoot}};
  while (!vecPending.empty()) {
    PendingNode const pending = vecPending.back();
    vecPending.pop_back();
    bool const bSkip = frame.m_bSkipRootNode && pending.m_pNode == scene.mRootNode;
    QXC::QXMatrix4d const matNode =
        bSkip ? pending.m_matParent : MakeMatrix(pending.m_pNode->mTransformation) * pending.m_matParent;
    for (unsigned int i = 0; i < pending.m_pNode->mNumMeshes; ++i) {
      unsigned int const nMesh = pending.m_pNode->mMeshes[i];
      if (nMesh >= vecMeshes.size() || vecMeshes[nMesh].m_nIndex < 0 || !IsFinite(matNode)) continue;
      QXC::QXModelNode node;
      node.m_strName = QXC::QdcUnicodeString::FromUTF8(pending.m_pNode->mName.C_Str());
      node.m_nMesh = vecMeshes[nMesh].m_nIndex;
      node.m_matWorld = MakeTranslation(vecMeshes[nMesh].m_dOffset) * matNode;
      model.AddNode(node);
      nTriangles += model.GetMesh(node.m_nMesh)->GetTriangleCount();
      if (nTriangles > MaxPlacedTriangles) return false;
    }
    // Backwards, so that nodes come out in the order of the file.
    for (unsigned int i = pending.m_pNode->mNumChildren; i > 0; --i)
      vecPending.push_back({pending.m_pNode->mChildren[i - 1], matNode});
  }
  return true;
}

}  // namespace

std::unique_ptr<QXC::ModelDataInfo> ConvertScene(
    aiScene const& scene, int nType, double const (&dOffset)[3], QXMtlMaps const& maps, std::string& strError) {
  auto pModel = std::make_unique<QXC::ModelDataInfo>();
  QXMeshRules rules;
  rules.m_bLinearColors = nType == QXC::QXFileType::EM_MODEL_GLTF || nType == QXC::QXFileType::EM_MODEL_GLB;
  rules.m_bNormalsOfFile = nType != QXC::QXFileType::EM_MODEL_3DS;
  ModelFrame const frame = ChooseFrame(scene, nType, dOffset);
  std::vector<ConvertedMesh> const vecMeshes = ConvertMeshes(scene, nType, rules, maps, *pModel);
  if (scene.mRootNode != nullptr && !PlaceMeshes(scene, frame, vecMeshes, *pModel)) {
    strError = "the model repeats its parts to more than 500 million triangles, more than can be drawn";
    return nullptr;
  }
  if (pModel->GetNodeCount() == 0) {
    strError = "the model holds no triangles; points and lines alone are not drawn";
    return nullptr;
  }
  pModel->SetUpAxis(frame.m_eUpAxis);
  return pModel;
}

}  // namespace QXAssimp
