#include <apps/qx3d/geo/QXGeoFile.h>

#include <apps/qx3d/QXWholeFile.h>
#include <apps/qx3d/geo/QXCityGml.h>
#include <apps/qx3d/geo/QXGeoJson.h>
#include <apps/qx3d/geo/QXGeoNames.h>
#include <apps/qx3d/geo/QXShapefile.h>

#include <filesystem>
#include <system_error>
#include <utility>

namespace QXApp {

namespace {

/// The files are held in memory while they are read.
constexpr std::uintmax_t MaxFileMiB = 1024;

/// The file beside a shapefile with another extension, in small letters or, as older programs wrote it, in large ones.
std::string FindBeside(std::string const& strPath, std::string const& strExtension) {
  std::filesystem::path path(strPath);
  path.replace_extension(strExtension);
  std::error_code error;
  if (std::filesystem::exists(path, error)) return path.string();
  std::string strLarge = strExtension;
  for (char& c : strLarge)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c + 'A' - 'a');
  std::filesystem::path large(strPath);
  large.replace_extension(strLarge);
  return std::filesystem::exists(large, error) ? large.string() : path.string();
}

QXGeoData ReadShapefile(std::string const& strPath, std::string const& strShapes, QXGeoNames const& names,
    QXSceneProblems& problems, QXSceneProblems& warnings) {
  std::string strIndex;
  std::string strAttributes;
  std::string strCodePage;
  for (auto const& [szExtension, pBytes] : {std::pair(".shx", &strIndex), std::pair(".dbf", &strAttributes)}) {
    std::string const strBeside = FindBeside(strPath, szExtension);
    std::string const strReason = ReadWholeFile(strBeside, MaxFileMiB, "shapefile", *pBytes);
    if (!strReason.empty()) problems.Add(0, strBeside + ", which belongs to it: " + strReason);
  }
  // Few shapefiles have one.
  static_cast<void>(ReadWholeFile(FindBeside(strPath, ".cpg"), 1, "code page", strCodePage));
  if (!problems.IsEmpty()) return QXGeoData();
  return ParseShapefile({strShapes, strIndex, strAttributes, strCodePage}, names, problems, warnings);
}

}  // namespace

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
    switch (FindGeoFormat(strPath)) {
    case QXGeoFormat::CityGml: data = ParseCityGml(strBytes, names, problems, warnings); break;
    case QXGeoFormat::GeoJson: data = ParseGeoJson(strBytes, names, problems, warnings); break;
    case QXGeoFormat::Shapefile: data = ReadShapefile(strPath, strBytes, names, problems, warnings); break;
    default: problems.Add(0, "this is no map data by its name; known are .gml, .citygml, .geojson and .shp");
    }
  }
  vecProblems = problems.GetLines();
  vecWarnings = warnings.GetLines();
  return data;
}

}  // namespace QXApp
