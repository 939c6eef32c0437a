#include "../testing/QXAllocationCounter.h"
#include "QXFontAtlasFixture.h"

#include <gtest/gtest.h>

namespace QXC {
namespace {

template <class Manager>
using QXFontAtlasAllocation = QXFontAtlas<Manager>;

using Managers = testing::Types<QXTextureFontManager, QXMemoryTextureFontManager>;
TYPED_TEST_SUITE(QXFontAtlasAllocation, Managers);

TYPED_TEST(QXFontAtlasAllocation, FrameWithoutNewGlyphsAllocatesNothing) {
  QXTextStyle const style = this->Style(L"sample", 12);
  QXFontKey const key = Blank(17, L"a face with a long name");
  for (int i = 0; i < 500; ++i) {
    ASSERT_NE(GetShaped(this->m_Manager, Blank(i, L"a face with a long name"), 10, 10), nullptr);
  }
  this->m_Manager.AddCharBitmapToTexture();
  long const nBefore = GetAllocationCount();
  for (int i = 0; i < 10; ++i) {
    this->m_Manager.GetTextureFont(key, style);
    this->m_Manager.GetCharBitmapData(key, style);
    this->m_Manager.DelTextureFont(key);
    this->m_Manager.AddCharBitmapToTexture();
  }
  EXPECT_EQ(GetAllocationCount(), nBefore);
}

}  // namespace
}  // namespace QXC
