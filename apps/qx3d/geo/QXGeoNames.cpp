#include <apps/qx3d/geo/QXGeoNames.h>

#include <filesystem>

namespace QXApp {

std::string GetLowerExtension(std::string const& strPath) {
  std::string strExtension = std::filesystem::path(strPath).extension().string();
  for (char& c : strExtension)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + 'a' - 'A');
  return strExtension;
}

QXGeoFormat FindGeoFormat(std::string const& strPath) {
  std::string const strExtension = GetLowerExtension(strPath);
  if (strExtension == ".gml" || strExtension == ".citygml") return QXGeoFormat::CityGml;
  if (strExtension == ".geojson") return QXGeoFormat::GeoJson;
  if (strExtension == ".shp") return QXGeoFormat::Shapefile;
  return QXGeoFormat::None;
}

bool IsGeoName(std::string const& strPath) {
  return FindGeoFormat(strPath) != QXGeoFormat::None;
}

QXGeoNames GetGeoNames(std::string const& strPath) {
  if (FindGeoFormat(strPath) == QXGeoFormat::CityGml) return {"tekst", "hoek"};
  return {"name", ""};
}

}  // namespace QXApp
