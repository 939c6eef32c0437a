/// @file
/// What the readers of map data make of a file, together with what they say about it.
#pragma once

#include <apps/qx3d/QXSceneText.h>
#include <apps/qx3d/geo/QXGeoData.h>

#include <string>
#include <vector>

namespace QXApp {

struct QXParsedGeo {
  QXGeoData m_Data;
  std::vector<std::string> m_vecProblems;
  std::vector<std::string> m_vecWarnings;
};

/// Has a reader, one of the Parse... functions, read the bytes as those of a file named strFile.
template <class Reader, class Bytes>
QXParsedGeo ParseGeo(Reader const& read, std::string const& strFile, Bytes const& bytes, QXGeoNames const& names) {
  QXSceneProblems problems(strFile);
  QXSceneProblems warnings(strFile);
  QXParsedGeo parsed;
  parsed.m_Data = read(bytes, names, problems, warnings);
  parsed.m_vecProblems = problems.GetLines();
  parsed.m_vecWarnings = warnings.GetLines();
  return parsed;
}

}  // namespace QXApp
