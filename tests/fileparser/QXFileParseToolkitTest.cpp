#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseToolkit.h>

#include <gtest/gtest.h>

namespace QXC {
namespace {

struct PathCase {
  wchar_t const* m_szPath;
  int m_nType;
};

class QXFileParseToolkitPaths : public testing::TestWithParam<PathCase> {};

TEST_P(QXFileParseToolkitPaths, TypeIsThatOfTheLastExtension) {
  EXPECT_EQ(QXFileParseToolkit::GetFileTypeByExtName(GetParam().m_szPath), GetParam().m_nType);
}

INSTANTIATE_TEST_SUITE_P(Paths, QXFileParseToolkitPaths,
    testing::Values(PathCase{L"city.3ds", 200}, PathCase{L"/data/city.3DS", 200}, PathCase{L"a.obj/b.ply", 204},
        PathCase{L"a.obj/b", -1}, PathCase{L"a.tar.glb", 202}, PathCase{L".obj", -1}, PathCase{L"/home/.obj", -1},
        PathCase{L"obj", -1}, PathCase{L"", -1}, PathCase{L"a.", -1}, PathCase{L"a.obj.", -1},
        PathCase{L"\x1F3E0.stl", 205}));

}  // namespace
}  // namespace QXC
