/// @file
/// CityGML: any bytes give good data, or none and a problem.
#include <apps/qx3d/geo/QXCityGml.h>

#include <fuzz/GeoDataChecks.h>

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* pData, std::size_t nSize) {
  QXApp::QXSceneProblems problems("input");
  QXApp::QXSceneProblems warnings("input");
  RequireGood(QXApp::ParseCityGml({reinterpret_cast<char const*>(pData), nSize}, {"tekst", "hoek"}, problems, warnings),
      problems);
  return 0;
}
