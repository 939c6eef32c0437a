#include <QxGraphics3D/frame/foundation/toolkit/QXToolkit.h>

#include <gtest/gtest.h>

namespace QXC {
namespace {

class QXToolkitFonts : public testing::Test {
protected:
  void TearDown() override { QXToolkit::SetFontsPath(m_strBefore); }
  QdcUnicodeString const m_strBefore = QXToolkit::GetFontsPath();
};

TEST_F(QXToolkitFonts, DefaultFolderEndsInASeparator) {
  EXPECT_EQ(m_strBefore.IsEmpty(), 0);
  EXPECT_TRUE(m_strBefore.Right(1) == L"/");
}

TEST_F(QXToolkitFonts, SetFontsPathAddsAMissingSeparator) {
  QXToolkit::SetFontsPath(L"/fonts/stra\u00dfe");
  EXPECT_TRUE(QXToolkit::GetFontsPath() == L"/fonts/stra\u00dfe/");
  QXToolkit::SetFontsPath(L"/other/");
  EXPECT_TRUE(QXToolkit::GetFontsPath() == L"/other/");
}

TEST_F(QXToolkitFonts, EmptyTextMeansNoFolder) {
  QXToolkit::SetFontsPath(L"");
  EXPECT_EQ(QXToolkit::GetFontsPath().IsEmpty(), 1);
}

}  // namespace
}  // namespace QXC
