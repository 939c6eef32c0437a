#include <apps/qx3d/QXAtlasReport.h>

#include <gtest/gtest.h>

namespace QXApp {
namespace {

std::vector<QXAtlasPage> MakePages() {
  QXAtlasPage page;
  page.m_strName = "Image_BigTexture_0";
  page.m_nSize = 1024;
  page.m_strFormat = "PF_A8R8G8B8 (12)";
  page.m_vecTiles = {{0, 0, 512, "large.png"}, {512, 0, 16, "a\nb.png"}};
  QXAtlasPage other = page;
  other.m_strName = "Image_BigTexture_1";
  other.m_vecTiles.clear();
  return {page, other};
}

TEST(QXAtlasReport, TableHasALineForEachPage) {
  EXPECT_EQ(MakeAtlasTable(MakePages()),
      "page                        size         format                tiles      fill\n"
      "Image_BigTexture_0          1024 x 1024  PF_A8R8G8B8 (12)          2    25.0 %\n"
      "Image_BigTexture_1          1024 x 1024  PF_A8R8G8B8 (12)          0     0.0 %\n");
}

TEST(QXAtlasReport, PlacesAreListedByTheirNumbers) {
  std::string const strReport = MakeAtlasReport(MakePages());
  EXPECT_EQ(strReport.find(MakeAtlasTable(MakePages())), 0u);
  EXPECT_NE(strReport.find("\nImage_BigTexture_0\n"
                           "  tile     x     y  edge  content\n"
                           "     1     0     0   512  large.png\n"
                           "     2   512     0    16  a b.png\n"),
      std::string::npos)
      << strReport;
}

TEST(QXAtlasReport, LongNamesStayWhole) {
  std::vector<QXAtlasPage> vecPages = MakePages();
  vecPages[0].m_strName = std::string(60, 'n');
  EXPECT_NE(MakeAtlasTable(vecPages).find(std::string(60, 'n')), std::string::npos);
}

}  // namespace
}  // namespace QXApp
