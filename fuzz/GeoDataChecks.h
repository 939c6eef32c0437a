/// @file
/// What holds of map data whatever the bytes of its file.
#pragma once

#include <apps/qx3d/QXMessage.h>
#include <apps/qx3d/QXSceneText.h>
#include <apps/qx3d/geo/QXFootprintModel.h>
#include <apps/qx3d/geo/QXGeoText.h>

#include <QxGraphics3D/frame/foundation/fileparser/ModelDataInfo.h>

#include <cstdlib>

inline void Require(bool bHolds) {
  if (!bHolds) std::abort();
}

inline void RequirePlace(QXC::QXVector3d const& vec) {
  Require(QXApp::IsGeoCoordinate(vec.x) && QXApp::IsGeoCoordinate(vec.y) && QXApp::IsGeoCoordinate(vec.z));
}

/// Either the data is good or there is none and a problem says why.
inline void RequireGood(QXApp::QXGeoData const& data, QXApp::QXSceneProblems const& problems) {
  Require(problems.IsEmpty() || (data.m_vecPoints.empty() && data.m_vecFootprints.empty()));
  for (QXApp::QXGeoPoint const& point : data.m_vecPoints) {
    Require(!point.m_strText.empty() && point.m_strText.size() <= QXApp::MaxGeoText && QXApp::IsUtf8(point.m_strText));
    Require(QXApp::IsGeoCoordinate(point.m_dAngle));
    RequirePlace(point.m_vecPosition);
  }
  for (QXApp::QXGeoFootprint const& footprint : data.m_vecFootprints) {
    Require(!footprint.m_vecRings.empty());
    for (auto const& vecRing : footprint.m_vecRings) {
      Require(vecRing.size() >= 3);
      for (QXC::QXVector3d const& vec : vecRing) RequirePlace(vec);
    }
    Require(QXApp::GetBuildingHeight(footprint) > 0.0);
  }
  std::string strWarning;
  auto const pModel = QXApp::MakeFootprintModel(data.m_vecFootprints, QXC::QXVector3d(), strWarning);
  Require(pModel != nullptr || data.m_vecFootprints.empty() || !strWarning.empty());
}
