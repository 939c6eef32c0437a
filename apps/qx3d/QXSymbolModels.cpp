#include <apps/qx3d/QXSymbolModels.h>

#include <apps/qx3d/QXBuckets.h>
#include <apps/qx3d/QXModelLoader.h>
#include <apps/qx3d/QXSceneModels.h>

#include <QxGraphics3D/frame/foundation/fileparser/ModelDataInfo.h>
#include <QxGraphics3D/renderop/QXVertexBlock.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <numbers>
#include <set>

namespace QXApp {

namespace {

using QXC::QXMatrix4d;
using QXC::QXVector3d;

/// Seen from the south, so far above the horizon: the rows are where x, y and z come to lie.
QXMatrix4d MakeObliqueView(double dElevation) {
  double const dSin = std::sin(dElevation * std::numbers::pi / 180.0);
  double const dCos = std::cos(dElevation * std::numbers::pi / 180.0);
  QXMatrix4d mat;
  mat[1][1] = dSin;
  mat[1][2] = -dCos;
  mat[2][1] = dCos;
  mat[2][2] = dSin;
  return mat;
}

void MergePoint(QXVector3d const& vecPoint, QXMatrix4d const& matView, QXC::QXBoundingBox& seen) {
  QXVector3d const vec = vecPoint.MultiplyMatrix(matView);
  seen.Merge(QXC::QXBoundingBox(vec, vec));
}

/// Of the vertices: the corners of the box, where mostly nothing is, would leave a slanted view half empty, and the
/// symbol floating above its position.
QXC::QXBoundingBox GetSeenBounds(QXScene const& scene, QXMatrix4d const& matView) {
  QXC::QXBoundingBox seen;
  seen.SetNULL();
  for (QXScenePart const& part : scene.m_vecParts) {
    QXC::QXVertexBlock const& block = *part.m_pOperation->m_pVertexBlock;
    QXMatrix4d const mat = *part.m_pOperation->GetMatrix() * matView;
    for (std::size_t i = 0; i < block.m_nVertexCount; ++i) {
      float const* p = block.m_pBuffer + i * block.m_nStride + block.m_nPositionOffset;
      MergePoint(QXVector3d(p[0], p[1], p[2]), mat, seen);
    }
  }
  for (auto const& pGeometry : scene.m_vecGeometries) {
    QXMatrix4d const mat = pGeometry->GetLocalViewMatrix() * matView;
    for (QXC::QXStaticGeometryBucket const* pBucket : GetBuckets(*pGeometry)) {
      QXC::QXVertexDataPackage const& vertices = *pBucket->m_pVertexPackage;
      for (std::size_t i = 0; i < vertices.m_nVertexNum; ++i) {
        float const* p = vertices.m_pVertices + i * vertices.m_nVertexDim;
        MergePoint(QXVector3d(p[0], p[1], p[2]), mat, seen);
      }
    }
  }
  if (seen.IsNULL())
    for (QXVector3d const& vecCorner : scene.m_Bounds.GetCorners()) MergePoint(vecCorner, matView, seen);
  return seen;
}

/// The turn alone: the place follows from the square.
QXMatrix4d MakeTurn(QXSceneSymbol const& symbol) {
  QXSceneModel placed;
  placed.m_dHeading = symbol.m_dHeading;
  return MakePlacement(placed);
}

/// @return  empty, or the reason
std::string Load(QXSymbolModel& symbol, UpAxis eUp, std::vector<std::string>& vecPictureProblems) {
  std::string strReason;
  std::unique_ptr<QXC::ModelDataInfo> const pModel = LoadModel(
      symbol.m_Symbol.m_strFile, symbol.m_Symbol.m_eUp == UpAxis::Auto ? eUp : symbol.m_Symbol.m_eUp, strReason);
  if (pModel == nullptr) return strReason;
  symbol.m_vecPictures.emplace_back();
  std::vector<std::string> vecProblems;
  symbol.m_vecPictures.back().Load(*pModel, vecProblems);
  for (std::string const& strProblem : vecProblems)
    if (std::ranges::find(vecPictureProblems, strProblem) == vecPictureProblems.end())
      vecPictureProblems.push_back(strProblem);
  QXC::QXBoundingBox nothing;
  nothing.SetNULL();
  symbol.m_Scene = BuildScene({{pModel.get(), &symbol.m_vecPictures.back(), {MakeTurn(symbol.m_Symbol)}}}, {}, nothing);
  return std::string();
}

}  // namespace

QXMatrix4d QXSymbolModel::MakeView(double dLeft, double dBottom, double dEdge) const {
  QXMatrix4d mat = MakeObliqueView(m_Symbol.m_dElevation);
  QXC::QXBoundingBox const seen = GetSeenBounds(m_Scene, mat);
  double const dSize = std::max(seen.m_dMax[0] - seen.m_dMin[0], seen.m_dMax[1] - seen.m_dMin[1]);
  double const dScale = dSize > 0.0 ? (dEdge - 2.0) / dSize : 1.0;
  QXMatrix4d matScale;
  for (int i = 0; i < 3; ++i) matScale[i][i] = dScale;
  mat = mat * matScale;
  QXVector3d const vecCenter = seen.GetCenter();
  mat.SetTrans(QXVector3d(
      dLeft + 0.5 * dEdge - vecCenter.x * dScale, dBottom + 0.5 * dEdge - vecCenter.y * dScale, -vecCenter.z * dScale));
  return mat;
}

std::vector<QXSymbolModel> LoadSymbols(QXSceneFile const& scene, UpAxis eUp,
    std::function<void(std::string const&)> const& progress, QXSceneProblems& problems,
    std::vector<std::string>& vecPictureProblems) {
  std::set<std::string> setShown;
  for (QXSceneIcon const& icon : scene.m_vecIcons) setShown.insert(icon.m_strSymbol);
  std::vector<QXSymbolModel> vecSymbols;
  for (QXSceneSymbol const& symbol : scene.m_vecSymbols) {
    if (!setShown.contains(symbol.m_strName)) continue;
    progress("reading " + symbol.m_strFile);
    QXSymbolModel model;
    model.m_Symbol = symbol;
    std::string const strReason = Load(model, eUp, vecPictureProblems);
    if (strReason.empty())
      vecSymbols.push_back(std::move(model));
    else
      problems.Add(symbol.m_nLine, symbol.m_strFile + ": " + strReason);
  }
  return vecSymbols;
}

}  // namespace QXApp
