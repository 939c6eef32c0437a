/// @file
/// Vertex packages of strangers in both layouts; the first byte chooses.
#include <cstdint>

#include "StaticGeometryChecks.h"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* pData, std::size_t nSize) {
  using namespace QXC;
  using namespace QXFuzz;
  if (nSize == 0) return 0;
  unsigned char const bWide = pData[0] & 1;
  QXMemoryStream stream(pData + 1, nSize - 1);
  QXVertexDataPackage package;
  unsigned char const bLoaded = LoadVertexPackage(package, stream, bWide);
  Require(bLoaded <= 1 && (!bLoaded || stream.IsGood()));
  Use(package);
  std::string const saved = Saved(package, bWide);
  std::size_t const nSecondColors = package.m_nSecondColorNum ? 2 + 4 * std::size_t{package.m_nSecondColorNum} : 0;
  Require(static_cast<std::size_t>(GetVertexPackageSize(package)) == Saved(package, 0).size() + 4 + nSecondColors);
  if (!SurvivesSaving(package)) return 0;
  QXMemoryStream again(saved.data(), saved.size());
  QXVertexDataPackage read;
  Require(LoadVertexPackage(read, again, bWide) == 1 && again.Remaining() == 0);
  Require(Saved(read, bWide) == saved);
  return 0;
}
