#include <apps/qx3d/QXSceneData.h>

#include <apps/qx3d/QXSceneModels.h>
#include <apps/qx3d/QXSceneValue.h>
#include <apps/qx3d/geo/QXFootprintModel.h>
#include <apps/qx3d/geo/QXGeoFile.h>
#include <apps/qx3d/geo/QXGeoNames.h>

#include <QxGraphics3D/frame/foundation/fileparser/ModelDataInfo.h>

#include <cmath>
#include <memory>
#include <utility>

namespace QXApp {

namespace {

using QXC::QXVector3d;

/// Turns a label that would read from right to left by half a circle about its own middle: what stood on the position
/// at its left end then does at its right end.
void MakeReadable(QXSceneLabel& label) {
  double const dTurned = std::remainder(label.m_dRotation, 360.0);
  label.m_dRotation = dTurned;
  if (dTurned > -90.0 && dTurned <= 90.0) return;
  label.m_dRotation = dTurned > 0.0 ? dTurned - 180.0 : dTurned + 180.0;
  label.m_nAlignX = -label.m_nAlignX;
  label.m_nAlignY = -label.m_nAlignY;
  for (double& dOffset : label.m_dOffset) dOffset = -dOffset;
}

bool IsShowable(QXVector3d const& vec) {
  for (double const d : {vec.x, vec.y, vec.z})
    if (!(std::abs(d) <= MaxSceneCoordinate)) return false;
  return true;
}

QXGeoNames ChooseNames(QXSceneData const& data) {
  QXGeoNames names = GetGeoNames(data.m_strFile);
  if (!data.m_strLabel.empty()) names.m_strLabel = data.m_strLabel;
  if (!data.m_strAngle.empty()) names.m_strAngle = data.m_strAngle;
  return names;
}

class Loader {
public:
  Loader(QXSceneFile& scene, QXSceneModels* pModels, std::vector<std::string>& vecProblems,
      std::vector<std::string>& vecWarnings)
      : m_Scene(scene), m_pModels(pModels), m_vecProblems(vecProblems), m_vecWarnings(vecWarnings) {}

  void Load(QXSceneData const& data) {
    QXGeoNames const names = ChooseNames(data);
    std::vector<std::string> vecWarnings;
    QXGeoData geo = ReadGeoFile(data.m_strFile, names, m_vecProblems, vecWarnings);
    m_vecWarnings.insert(m_vecWarnings.end(), vecWarnings.begin(), vecWarnings.end());
    if (!m_vecProblems.empty()) return;
    if (!data.m_bLabels) geo.m_vecPoints.clear();
    if (!data.m_bBuildings) geo.m_vecFootprints.clear();
    if (geo.m_vecPoints.empty() && geo.m_vecFootprints.empty()) {
      m_vecProblems.push_back(data.m_strFile + ": there is nothing to show: neither points with an attribute '" +
                              names.m_strLabel +
                              "' nor footprints; name the attribute of the labels with label = ... in a scene");
      return;
    }
    Warn(data, AppendDataLabels(data, geo.m_vecPoints, m_Scene.m_vecLabels));
    if (m_pModels != nullptr) AddBuildings(data, geo.m_vecFootprints);
  }

private:
  void AddBuildings(QXSceneData const& data, std::vector<QXGeoFootprint> const& vecFootprints) {
    std::string strWarning;
    std::unique_ptr<QXC::ModelDataInfo> pModel = MakeFootprintModel(vecFootprints, data.m_vecPosition, strWarning);
    Warn(data, strWarning);
    if (pModel == nullptr) return;
    std::string const strReason = m_pModels->Add(std::move(pModel), data.m_strFile);
    if (!strReason.empty()) m_vecProblems.push_back(data.m_strFile + ": " + strReason);
  }

  void Warn(QXSceneData const& data, std::string const& strText) {
    if (!strText.empty()) m_vecWarnings.push_back(data.m_strFile + ": " + strText);
  }

  QXSceneFile& m_Scene;
  QXSceneModels* m_pModels;
  std::vector<std::string>& m_vecProblems;
  std::vector<std::string>& m_vecWarnings;
};

}  // namespace

std::string AppendDataLabels(
    QXSceneData const& data, std::vector<QXGeoPoint> const& vecPoints, std::vector<QXSceneLabel>& vecLabels) {
  std::string strReason;
  for (QXGeoPoint const& point : vecPoints) {
    if (vecLabels.size() >= MaxScenePlacements)
      return "a scene has at most " + std::to_string(MaxScenePlacements) +
             " labels, and the further ones are left out; cut the file into parts";
    QXSceneLabel label = data.m_Style;
    label.m_strText = point.m_strText;
    label.m_nLine = data.m_nLine;
    label.m_vecPosition = point.m_vecPosition + data.m_vecPosition + QXVector3d(0.0, 0.0, data.m_dLift);
    if (!IsShowable(label.m_vecPosition)) {
      strReason = "some labels stand beyond 1e15 and are left out; give a nearer position";
      continue;
    }
    if (!data.m_bFacing)
      label.m_eFacing = point.m_bAngle || data.m_Style.m_dHeight > 0.0 ? QXLabelFacing::Flat : QXLabelFacing::Camera;
    if (label.m_eFacing == QXLabelFacing::Flat) {
      if (point.m_bAngle) {
        label.m_dRotation = point.m_dAngle;
        if (!data.m_bAlign) label.m_nAlignX = -1;
        MakeReadable(label);
      }
      if (label.m_dHeight == 0.0) label.m_dHeight = DataLabelHeight;
    }
    vecLabels.push_back(std::move(label));
  }
  return strReason;
}

void LoadSceneData(QXSceneFile& scene, QXSceneModels* pModels, std::function<void(std::string const&)> const& progress,
    std::vector<std::string>& vecProblems, std::vector<std::string>& vecWarnings) {
  Loader loader(scene, pModels, vecProblems, vecWarnings);
  for (QXSceneData const& data : scene.m_vecData) {
    progress("reading " + data.m_strFile);
    loader.Load(data);
    if (!vecProblems.empty()) return;
  }
}

}  // namespace QXApp
