#include <apps/qx3d/geo/QXGeoFile.h>

#include <apps/qx3d/QXWholeFile.h>
#include <apps/qx3d/geo/QXCityGml.h>
#include <apps/qx3d/geo/QXGeoJson.h>

#include <filesystem>
#include <string_view>

namespace QXApp {

namespace {

/// The files are held in memory while they are read.
constexpr std::uintmax_t MaxFileMiB = 1024;

enum class Format { None, CityGml, GeoJson };

Format FindFormat(std::string const& strPath) {
  std::string strExtension = std::filesystem::path(strPath).extension().string();
  for (char& c : strExtension)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + 'a' - 'A');
  if (strExtension == ".gml" || strExtension == ".citygml") return Format::CityGml;
  if (strExtension == ".geojson") return Format::GeoJson;
  return Format::None;
}

}  // namespace

bool IsGeoName(std::string const& strPath) {
  return FindFormat(strPath) != Format::None;
}

QXGeoNames GetGeoNames(std::string const& strPath) {
  if (FindFormat(strPath) == Format::CityGml) return {"tekst", "hoek"};
  return {"name", ""};
}

QXGeoData ReadGeoFile(std::string const& strPath, QXGeoNames const& names, std::vector<std::string>& vecProblems,
    std::vector<std::string>& vecWarnings) {
  QXSceneProblems problems(strPath);
  QXSceneProblems warnings(strPath);
  QXGeoData data;
  std::string strBytes;
  std::string const strReason = ReadWholeFile(strPath, MaxFileMiB, "file of map data", strBytes);
  if (!strReason.empty()) {
    problems.Add(0, strReason);
  } else {
    switch (FindFormat(strPath)) {
    case Format::CityGml: data = ParseCityGml(strBytes, names, problems, warnings); break;
    case Format::GeoJson: data = ParseGeoJson(strBytes, names, problems, warnings); break;
    default: problems.Add(0, "this is no map data; known are .gml, .citygml and .geojson");
    }
  }
  vecProblems = problems.GetLines();
  vecWarnings = warnings.GetLines();
  return data;
}

}  // namespace QXApp
