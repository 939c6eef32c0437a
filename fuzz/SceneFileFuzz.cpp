/// @file
/// Scene files: any bytes give a whole scene, or problems with their lines.
#include <apps/qx3d/QXSceneFile.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace QXApp;

void Require(bool bHolds) {
  if (!bHolds) std::abort();
}

bool IsIn(double dNumber, double dMin, double dMax) {
  return dNumber >= dMin && dNumber <= dMax;
}

bool IsPosition(QXC::QXVector3d const& vec) {
  return IsIn(vec.x, -1e15, 1e15) && IsIn(vec.y, -1e15, 1e15) && IsIn(vec.z, -1e15, 1e15);
}

void RequireWhole(QXSceneLabel const& label) {
  Require(!label.m_strText.empty() && label.m_nLine > 0 && IsPosition(label.m_vecPosition));
  Require(IsIn(label.GetSize(), 1.0, MaxLabelSize) && IsIn(label.m_dRotation, -360.0, 360.0));
  for (double const d : label.m_dOffset) Require(IsIn(d, -1e15, 1e15));
  Require(IsIn(label.m_nAlignX, -1.0, 1.0) && IsIn(label.m_nAlignY, -1.0, 1.0));
  bool const bFlat = label.m_eFacing == QXLabelFacing::Flat;
  Require(bFlat == (label.m_dHeight > 0.0) && IsIn(label.m_dHeight, 0.0, 1e15));
}

void RequireWhole(QXSceneInstances const& instances) {
  Require(!instances.m_strFile.empty() && !IsSceneName(instances.m_strFile) && instances.m_nLine > 0);
  Require(!instances.m_vecPlaces.empty() || !instances.m_strPlaces.empty() || !instances.m_strPoints.empty());
  for (QXScenePlace const& place : instances.m_vecPlaces)
    Require(IsPosition(place.m_vecPosition) && IsIn(place.m_dHeading, -360.0, 360.0) &&
            IsIn(place.m_dScale, 0.0, 1e15) && (place.m_bHeading || place.m_dScale == 0.0));
  Require(IsIn(instances.m_dScale[0], 0.0, instances.m_dScale[1]) && instances.m_dScale[0] > 0.0);
  Require(IsIn(instances.m_dScale[1], 0.0, 1e15) && IsIn(instances.m_dHeading, -360.0, 360.0));
  Require(IsIn(instances.m_dSpread, 0.0, 1e15) && IsIn(instances.m_dDistance, 0.0, 1e15));
  Require(IsPosition(instances.m_vecPosition) && IsIn(instances.m_dZ, -1e15, 1e15) && instances.m_nSeed >= 0);
  Require(instances.m_strWhere.empty() == instances.m_strWhereValue.empty());
}

void RequireWhole(QXSceneLight const& light) {
  Require(light.m_nLine > 0 && IsPosition(light.m_vecPosition) && IsPosition(light.m_vecTarget));
  Require(IsPosition(light.m_vecDirection) && (light.m_bPosition || light.m_eKind == QXLightKind::Directional));
  Require((light.m_bDirection != light.m_bTarget) == (light.m_eKind != QXLightKind::Point));
  Require(IsIn(light.m_dInner, 0.0, light.m_dOuter) && light.m_dOuter <= 180.0 && light.m_dPower > 0.0);
  Require(IsIn(light.m_dFalloff, 0.0, 1000.0) && IsIn(light.m_dRange, 0.0, 1e15));
  for (double const d : light.m_dAttenuation) Require(IsIn(d, 0.0, 1e15));
}

void RequireWhole(QXSceneFog const& fog) {
  bool const bExponential = fog.m_eKind == QXFogKind::Exponential || fog.m_eKind == QXFogKind::ExponentialSquared;
  Require(bExponential == (fog.m_dDensity > 0.0));
  Require((fog.m_eKind == QXFogKind::Linear) == (fog.m_dEnd > fog.m_dStart));
}

void RequireWhole(QXSceneFile const& scene) {
  Require(!scene.m_vecModels.empty() || !scene.m_vecIcons.empty() || !scene.m_vecLabels.empty() ||
          !scene.m_vecData.empty() || !scene.m_vecStatics.empty() || !scene.m_vecInstances.empty());
  for (QXSceneInstances const& instances : scene.m_vecInstances) RequireWhole(instances);
  for (QXSceneLight const& light : scene.m_vecLights) RequireWhole(light);
  RequireWhole(scene.m_Fog);
  Require(IsIn(scene.m_Sky.m_nCondition, -1.0, 4.0) && IsIn(scene.m_Sky.m_nClouds, -1.0, 4.0));
  Require(scene.m_Sky.m_dWindFrom <= 360.0 && IsIn(scene.m_Sky.m_dWindSpeed, 0.0, 100.0));
  Require(IsIn(scene.m_Ocean.m_dBeaufort, 0.0, 12.0) && IsIn(scene.m_Ocean.m_dLevel, -1e15, 1e15));
  Require(IsPosition(scene.m_Camera.m_vecEye) && IsPosition(scene.m_Camera.m_vecLook));
  Require(scene.m_Camera.m_dFieldOfView == 0.0 || IsIn(scene.m_Camera.m_dFieldOfView, 1.0, 150.0));
  for (QXSceneModel const& model : scene.m_vecModels) {
    Require(!model.m_strFile.empty() && !IsSceneName(model.m_strFile) && model.m_nLine > 0);
    Require(!IsStaticName(model.m_strFile));
    Require(IsPosition(model.m_vecPosition) && model.m_dScale > 0.0 && model.m_dScale <= 1e15);
    for (double const d : {model.m_dHeading, model.m_dPitch, model.m_dRoll}) Require(IsIn(d, -360.0, 360.0));
  }
  for (QXSceneIcon const& icon : scene.m_vecIcons) {
    Require(icon.m_strImage.empty() != icon.m_strSymbol.empty());
    Require(icon.m_nLine > 0 && IsPosition(icon.m_vecPosition));
    Require((icon.m_dWidth == 0.0) == (icon.m_dHeight == 0.0) && IsIn(icon.m_dWidth, 0.0, 1e15));
    Require(IsIn(icon.m_dHeight, 0.0, 1e15) && (icon.m_eUnit == QXIconUnit::Pixels || icon.m_dWidth > 0.0));
    Require(icon.m_nTolerance >= 0 && icon.m_nTolerance <= 255 && (icon.m_bColorKey || icon.m_nTolerance == 0));
  }
  for (QXSceneSymbol const& symbol : scene.m_vecSymbols) {
    Require(!symbol.m_strName.empty() && !symbol.m_strFile.empty() && symbol.m_nLine > 0);
    Require(IsIn(symbol.m_nPixels, 8.0, 512.0) && IsIn(symbol.m_dHeading, -360.0, 360.0));
    Require(IsIn(symbol.m_dElevation, 0.0, 90.0));
  }
  for (QXSceneLabel const& label : scene.m_vecLabels) RequireWhole(label);
  for (QXSceneStatic const& placed : scene.m_vecStatics)
    Require(IsStaticName(placed.m_strFile) && placed.m_nLine > 0 && IsPosition(placed.m_vecPosition));
}

std::string Number(double dNumber) {
  char szText[32];
  std::snprintf(szText, sizeof szText, "%.17g", dNumber);
  return szText;
}

std::string Position(QXC::QXVector3d const& vec) {
  return Number(vec.x) + "," + Number(vec.y) + "," + Number(vec.z) + "\n";
}

std::string Color(unsigned char const (&nColor)[3]) {
  char szText[8];
  std::snprintf(szText, sizeof szText, "#%02x%02x%02x", nColor[0], nColor[1], nColor[2]);
  return std::string(szText) + "\n";
}

char const* const Axes[] = {"auto", "y", "z"};

std::string WriteModel(QXSceneModel const& model) {
  return "[model]\nfile=" + model.m_strFile + "\nposition=" + Position(model.m_vecPosition) +
         "heading=" + Number(model.m_dHeading) + "\npitch=" + Number(model.m_dPitch) +
         "\nroll=" + Number(model.m_dRoll) + "\nscale=" + Number(model.m_dScale) +
         "\nup=" + Axes[static_cast<int>(model.m_eUp)] + "\n";
}

std::string WriteIcon(QXSceneIcon const& icon) {
  std::string strText = "[icon]\nposition=" + Position(icon.m_vecPosition);
  strText += icon.m_strSymbol.empty() ? "image=" + icon.m_strImage + "\n" : "symbol=" + icon.m_strSymbol + "\n";
  if (icon.m_dWidth > 0.0) strText += "size=" + Number(icon.m_dWidth) + "," + Number(icon.m_dHeight) + "\n";
  strText += std::string("unit=") + (icon.m_eUnit == QXIconUnit::World ? "world\n" : "pixels\n");
  if (icon.m_bColorKey)
    strText += "color-key=" + Color(icon.m_nColorKey) + "tolerance=" + std::to_string(icon.m_nTolerance) + "\n";
  return strText;
}

std::string WriteSymbol(QXSceneSymbol const& symbol) {
  return "[symbol]\nname=" + symbol.m_strName + "\nfile=" + symbol.m_strFile +
         "\npixels=" + std::to_string(symbol.m_nPixels) + "\nheading=" + Number(symbol.m_dHeading) +
         "\nelevation=" + Number(symbol.m_dElevation) + "\nup=" + Axes[static_cast<int>(symbol.m_eUp)] + "\n";
}

char const* const Aligns[] = {
    "bottom-left", "bottom", "bottom-right", "left", "center", "right", "top-left", "top", "top-right"};

std::string WriteLabel(QXSceneLabel const& label) {
  std::string strText = "[label]\ntext=" + label.m_strText + "\nposition=" + Position(label.m_vecPosition);
  if (!label.m_strFont.empty()) strText += "font=" + label.m_strFont + "\n";
  if (label.m_nSize > 0) strText += "size=" + std::to_string(label.m_nSize) + "\n";
  strText += std::string("bold=") + (label.m_bBold ? "yes" : "no") + "\nitalic=" + (label.m_bItalic ? "yes" : "no") +
             "\ncolor=" + Color(label.m_nColor);
  if (label.m_bHalo) strText += "halo=" + Color(label.m_nHalo);
  strText += "rotation=" + Number(label.m_dRotation) + "\noffset=" + Number(label.m_dOffset[0]) + "," +
             Number(label.m_dOffset[1]) + "\nalign=" + Aligns[3 * (label.m_nAlignY + 1) + label.m_nAlignX + 1] +
             "\ndepth=" + (label.m_bDepth ? "on" : "off") + "\n";
  if (label.m_eFacing == QXLabelFacing::Flat) strText += "facing=flat\nheight=" + Number(label.m_dHeight) + "\n";
  return strText;
}

std::string WritePlace(QXScenePlace const& place) {
  std::string strText = "place=" + Position(place.m_vecPosition);
  strText.pop_back();
  if (place.m_bHeading) strText += "," + Number(place.m_dHeading);
  if (place.m_dScale > 0.0) strText += "," + Number(place.m_dScale);
  return strText + "\n";
}

std::string WriteInstances(QXSceneInstances const& instances) {
  std::string strText = "[instances]\nfile=" + instances.m_strFile + "\n";
  for (QXScenePlace const& place : instances.m_vecPlaces) strText += WritePlace(place);
  auto const add = [&strText](char const* szKey, std::string const& strValue) {
    if (!strValue.empty()) strText += szKey + ("=" + strValue) + "\n";
  };
  add("places", instances.m_strPlaces);
  add("points", instances.m_strPoints);
  add("feature", instances.m_strFeature);
  add("where", instances.m_strWhere.empty() ? "" : instances.m_strWhere + "=" + instances.m_strWhereValue);
  add("heading-from", instances.m_strHeadingFrom);
  add("scale-from", instances.m_strScaleFrom);
  if (instances.m_dSpread > 0.0) add("spread", Number(instances.m_dSpread));
  if (instances.m_bZ) add("z", Number(instances.m_dZ));
  add("position", Position(instances.m_vecPosition));
  add("heading", instances.m_bRandomHeading ? "random" : Number(instances.m_dHeading));
  add("scale", Number(instances.m_dScale[0]) + "," + Number(instances.m_dScale[1]));
  add("seed", std::to_string(instances.m_nSeed));
  add("color", Color(instances.m_nColor));
  if (instances.m_dDistance > 0.0) add("distance", Number(instances.m_dDistance));
  add("up", Axes[static_cast<int>(instances.m_eUp)]);
  return strText;
}

std::string WriteLight(QXSceneLight const& light) {
  constexpr char const* Types[] = {"point", "directional", "spot"};
  std::string strText = std::string("[light]\ntype=") + Types[static_cast<int>(light.m_eKind)] + "\n";
  if (light.m_bPosition) strText += "position=" + Position(light.m_vecPosition);
  if (light.m_bDirection) strText += "direction=" + Position(light.m_vecDirection);
  if (light.m_bTarget) strText += "target=" + Position(light.m_vecTarget);
  if (light.m_bCone)
    strText += "inner=" + Number(light.m_dInner) + "\nouter=" + Number(light.m_dOuter) +
               "\nfalloff=" + Number(light.m_dFalloff) + "\n";
  if (light.m_dRange > 0.0) strText += "range=" + Number(light.m_dRange) + "\n";
  return strText + "color=" + Color(light.m_nColor) +
         "attenuation=" + Position({light.m_dAttenuation[0], light.m_dAttenuation[1], light.m_dAttenuation[2]}) +
         "power=" + Number(light.m_dPower) + "\n";
}

std::string WriteFog(QXSceneFog const& fog) {
  if (fog.m_eKind == QXFogKind::None) return std::string();
  constexpr char const* Modes[] = {"", "exp", "exp2", "linear"};
  std::string strText = std::string("[fog]\nmode=") + Modes[static_cast<int>(fog.m_eKind)] + "\n";
  if (fog.m_bColor) strText += "color=" + Color(fog.m_nColor);
  if (fog.m_eKind != QXFogKind::Linear) return strText + "density=" + Number(fog.m_dDensity) + "\n";
  return strText + "start=" + Number(fog.m_dStart) + "\nend=" + Number(fog.m_dEnd) + "\n";
}

/// With an epoch in place of the time, which has no way back into the text here.
std::string WriteWeather(QXSceneFile const& scene) {
  std::string strText = WriteFog(scene.m_Fog);
  if (scene.m_Sky.m_bSky) strText += "[sky]\ntime=1970-01-01T00:00\n";
  if (scene.m_Sky.m_dWindFrom >= 0.0)
    strText += "wind=" + Number(scene.m_Sky.m_dWindFrom) + "," + Number(scene.m_Sky.m_dWindSpeed) + "\n";
  if (scene.m_Ocean.m_bOcean)
    strText += "[ocean]\nlevel=" + Number(scene.m_Ocean.m_dLevel) + "\nbeaufort=" + Number(scene.m_Ocean.m_dBeaufort) +
               "\nwind-from=" + Number(scene.m_Ocean.m_dWindFrom) + "\n";
  return strText;
}

std::string Write(QXSceneFile const& scene) {
  std::string strText = std::string("[scene]\nground=") + (scene.m_bGround ? "yes\n" : "no\n");
  strText += std::string("sun=") + (scene.m_bSun ? "yes\n" : "no\n");
  if (scene.m_bAmbient) strText += "ambient=" + Color(scene.m_nAmbient);
  if (scene.m_bBackground) strText += "background=" + Color(scene.m_nBackground);
  strText += "[camera]\n";
  QXSceneCamera const& camera = scene.m_Camera;
  if (camera.m_bEye) strText += "eye=" + Position(camera.m_vecEye);
  if (camera.m_bLook) strText += "look=" + Position(camera.m_vecLook);
  if (camera.m_dFieldOfView > 0.0) strText += "field-of-view=" + Number(camera.m_dFieldOfView) + "\n";
  for (QXSceneModel const& model : scene.m_vecModels) strText += WriteModel(model);
  for (QXSceneIcon const& icon : scene.m_vecIcons) strText += WriteIcon(icon);
  for (QXSceneSymbol const& symbol : scene.m_vecSymbols) strText += WriteSymbol(symbol);
  for (QXSceneLabel const& label : scene.m_vecLabels) strText += WriteLabel(label);
  for (QXSceneData const& data : scene.m_vecData) strText += "[data]\nfile=" + data.m_strFile + "\n";
  for (QXSceneStatic const& placed : scene.m_vecStatics)
    strText += "[static]\nfile=" + placed.m_strFile + "\nposition=" + Position(placed.m_vecPosition);
  for (QXSceneInstances const& instances : scene.m_vecInstances) strText += WriteInstances(instances);
  for (QXSceneLight const& light : scene.m_vecLights) strText += WriteLight(light);
  return strText + WriteWeather(scene);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* pBytes, std::size_t nSize) {
  // Without a folder, so that names stay as they are.
  QXSceneProblems problems("input");
  QXSceneFile const scene =
      ParseScene(std::string_view(reinterpret_cast<char const*>(pBytes), nSize), "input", problems);
  std::vector<std::string> const vecLines = problems.GetLines();
  Require(vecLines.empty() == problems.IsEmpty() && vecLines.size() <= QXSceneProblems::ms_nMaxKept + 1);
  for (std::string const& strLine : vecLines) Require(strLine.rfind("input:", 0) == 0);
  if (!problems.IsEmpty()) return 0;
  RequireWhole(scene);

  // What was read can be written down and is read the same.
  QXSceneProblems copyProblems("copy");
  QXSceneFile const copy = ParseScene(Write(scene), "copy", copyProblems);
  Require(copyProblems.IsEmpty() && Write(copy) == Write(scene));
  return 0;
}
