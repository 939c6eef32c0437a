/// @file
/// Shapefiles: any bytes give good data, or none and a problem. The first two pairs of bytes are the lengths of the
/// .shp and the .shx file, lowest byte first; the rest is the .dbf file.
#include <apps/qx3d/geo/QXShapefile.h>

#include <fuzz/GeoDataChecks.h>

#include <cstddef>
#include <cstdint>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* pData, std::size_t nSize) {
  if (nSize < 4) return 0;
  std::string_view rest(reinterpret_cast<char const*>(pData) + 4, nSize - 4);
  std::string_view files[2];
  for (std::size_t i = 0; i < 2; ++i) {
    std::size_t const nLength = pData[2 * i] | static_cast<std::size_t>(pData[2 * i + 1]) << 8;
    files[i] = rest.substr(0, nLength);
    rest.remove_prefix(files[i].size());
  }
  for (char const* szCodePage : {"", "UTF-8", "936"}) {
    QXApp::QXSceneProblems problems("input");
    QXApp::QXSceneProblems warnings("input");
    RequireGood(
        QXApp::ParseShapefile({files[0], files[1], rest, szCodePage}, {"name", "turn"}, problems, warnings), problems);
  }
  return 0;
}
