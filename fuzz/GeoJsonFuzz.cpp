/// @file
/// GeoJSON: any bytes give good data, or none and a problem.
#include <apps/qx3d/geo/QXGeoJson.h>

#include <fuzz/GeoDataChecks.h>

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* pData, std::size_t nSize) {
  QXApp::QXSceneProblems problems("input");
  QXApp::QXSceneProblems warnings("input");
  RequireGood(QXApp::ParseGeoJson({reinterpret_cast<char const*>(pData), nSize}, {"name", "turn"}, problems, warnings),
      problems);
  return 0;
}
