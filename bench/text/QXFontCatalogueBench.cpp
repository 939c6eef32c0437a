// Filling the catalogue with all fonts of Debian's packages, beside only opening and closing the same faces: what any
// catalogue has to do, because names and styles stand in the faces.
//
// Both pass over the fonts in turn, and the quickest pass of each counts, since other programs only ever add to one.
// "openings" is the catalogue over the bare openings. Every pass is checked: one entry a face that can be opened.

#include <QxGraphics3D/frame/foundation/stream/QXFile.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXToolkit.h>
#include <QxGraphics3D/text/QXTrueType.h>

#include <benchmark/benchmark.h>

#include <ft2build.h>
#include FT_FREETYPE_H

#include <time.h>

#include <algorithm>
#include <limits>
#include <string>
#include <vector>

using namespace QXC;

namespace {

double ThreadSeconds() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

std::vector<std::string> FontFiles() {
  QdcArray<QdcUnicodeString> names;
  for (wchar_t const* const szFilter : {L"*.ttf", L"*.ttc"}) {
    QXFile::ListFiles(QXToolkit::GetFontsPath(), names, szFilter, QXFile::LIST_SUB_FOLDERS);
  }
  std::vector<std::string> paths;
  for (QdcUnicodeString const& name : names) {
    paths.emplace_back((QXToolkit::GetFontsPath() + name).ToMBString().Cstr());
  }
  return paths;
}

/// Opens and closes every face; gives their number.
std::size_t OpenAll(std::vector<std::string> const& paths) {
  FT_Library library = nullptr;
  if (FT_Init_FreeType(&library) != 0) return 0;
  std::size_t opened = 0;
  for (std::string const& path : paths) {
    FT_Long faces = 1;
    for (FT_Long i = 0; i < faces && faces <= 10; ++i) {
      FT_Face face = nullptr;
      if (FT_New_Face(library, path.c_str(), i, &face) != 0) continue;
      ++opened;
      faces = face->num_faces;
      FT_Done_Face(face);
    }
  }
  FT_Done_FreeType(library);
  return opened;
}

void Fill(benchmark::State& state) {
  QXToolkit::SetFontsPath(L"/usr/share/fonts");
  std::vector<std::string> const paths = FontFiles();
  QXTrueType fonts;
  double fill = std::numeric_limits<double>::max();
  double open = fill;
  std::size_t faces = 0;
  for (auto _ : state) {
    double const start = ThreadSeconds();
    faces = OpenAll(paths);
    double const middle = ThreadSeconds();
    fonts.InitFontsInfo();
    double const end = ThreadSeconds();
    open = std::min(open, middle - start);
    fill = std::min(fill, end - middle);
    if (fonts.m_arrFontsInfo.GetSize() != faces || faces < 50) {
      state.SkipWithError("the catalogue does not hold every face once, or the fonts are not installed");
      break;
    }
  }
  state.counters["faces"] = static_cast<double>(faces);
  state.counters["fill_ms"] = fill * 1e3;
  state.counters["open_ms"] = open * 1e3;
  state.counters["openings"] = fill / open;
}
BENCHMARK(Fill)->Name("QXTrueType/InitFontsInfo/debian")->Iterations(60)->Unit(benchmark::kMillisecond);

}  // namespace
