#include <QxGraphics3D/frame/foundation/toolkit/QXTextStyle.h>

#include <gtest/gtest.h>

#include <cmath>

namespace QXC {
namespace {

TEST(QXTextStyle, NewStyleIsTheDefaultFontUprightIn12Points) {
  QXTextStyle const style;
  EXPECT_EQ(style.GetFaceName().IsEmpty(), 1);
  EXPECT_EQ(style.GetSize(), 12);
  EXPECT_EQ(style.GetText3DScale(), 1);
  EXPECT_EQ(style.IsBold(), 0);
  EXPECT_EQ(style.IsItalic(), 0);
}

TEST(QXTextStyle, EachValueIsKeptAndCopied) {
  QXTextStyle style;
  style.SetFaceName(L"House Sans");
  style.SetSize(1e300);
  style.SetText3DScale(-0.5);
  style.SetItalic(1);
  QXTextStyle const copy(style);
  style.SetBold(1);
  style.SetItalic(0);
  EXPECT_TRUE(copy.GetFaceName() == L"House Sans");
  EXPECT_EQ(copy.GetSize(), 1e300);
  EXPECT_EQ(copy.GetText3DScale(), -0.5);
  EXPECT_EQ(copy.IsBold(), 0);
  EXPECT_EQ(copy.IsItalic(), 1);
  QXTextStyle assigned;
  assigned = style;
  EXPECT_EQ(assigned.IsBold(), 1);
  EXPECT_EQ(assigned.IsItalic(), 0);
}

TEST(QXTextStyle, SizeThatIsNoNumberIsKept) {
  QXTextStyle style;
  style.SetSize(NAN);
  EXPECT_TRUE(std::isnan(style.GetSize()));
}

}  // namespace
}  // namespace QXC
