// Outlines of the glyphs drawn last: what is found, and that memory stays within its bound.
#include <QxGraphics3D/text/detail/QXGlyphOutline.h>

#include <gtest/gtest.h>

namespace QXC::detail {
namespace {

QXGlyphKey KeyOf(unsigned int nGlyph) {
  static FT_FaceRec s_Face;
  return {&s_Face, nGlyph, 12, false};
}

void AddGlyph(QXGlyphOutlineCache& cache, unsigned int nGlyph, std::size_t nPoints = 10) {
  QXGlyphOutline& outline = cache.Add();
  outline.m_Stroked.Make(nPoints, 1);
  outline.m_nWidth = static_cast<FT_Pos>(nGlyph);
  outline.m_Key = KeyOf(nGlyph);
}

TEST(QXGlyphOutlineCache, GlyphIsFoundOnceItsKeyIsSet) {
  QXGlyphOutlineCache cache;
  EXPECT_EQ(cache.Find(KeyOf(1)), nullptr);
  QXGlyphOutline& outline = cache.Add();
  EXPECT_EQ(cache.Find(KeyOf(1)), nullptr);
  outline.m_Key = KeyOf(1);
  EXPECT_EQ(cache.Find(KeyOf(1)), &outline);
}

TEST(QXGlyphOutlineCache, FaceGlyphSizeAndBoldAllCount) {
  QXGlyphOutlineCache cache;
  AddGlyph(cache, 1);
  FT_FaceRec other{};
  QXGlyphKey const keys[] = {{&other, 1, 12, false}, {KeyOf(1).m_pFace, 2, 12, false}, {KeyOf(1).m_pFace, 1, 13, false},
      {KeyOf(1).m_pFace, 1, 12, true}};
  for (QXGlyphKey const& key : keys) EXPECT_EQ(cache.Find(key), nullptr);
  EXPECT_NE(cache.Find(KeyOf(1)), nullptr);
}

TEST(QXGlyphOutlineCache, The64GlyphsAddedLastAreKept) {
  QXGlyphOutlineCache cache;
  for (unsigned int glyph = 1; glyph <= 200; ++glyph) {
    AddGlyph(cache, glyph);
    for (unsigned int known = 1; known <= glyph; ++known) {
      QXGlyphOutline const* const found = cache.Find(KeyOf(known));
      ASSERT_EQ(found != nullptr, known + 64 > glyph) << known << " after " << glyph;
      if (found != nullptr) {
        ASSERT_EQ(found->m_nWidth, static_cast<FT_Pos>(known));
      }
    }
  }
}

TEST(QXGlyphOutlineCache, LargeOutlinesAreForgottenTogether) {
  QXGlyphOutlineCache cache;
  for (unsigned int glyph = 1; glyph <= 3; ++glyph) AddGlyph(cache, glyph, 30000);
  EXPECT_NE(cache.Find(KeyOf(1)), nullptr);
  AddGlyph(cache, 4);
  for (unsigned int glyph = 1; glyph <= 3; ++glyph) EXPECT_EQ(cache.Find(KeyOf(glyph)), nullptr);
  EXPECT_NE(cache.Find(KeyOf(4)), nullptr);
}

// An array that has once been large stays so, and counts.
TEST(QXGlyphOutlineCache, RoomLeftByLargeOutlinesCounts) {
  QXGlyphOutlineCache cache;
  for (unsigned int round = 0; round < 10; ++round) {
    AddGlyph(cache, 1000 + round, 30000);
    for (unsigned int glyph = 1; glyph < 64; ++glyph) AddGlyph(cache, 2000 + 100 * round + glyph);
  }
  int kept = 0;
  for (unsigned int round = 0; round < 10; ++round) kept += cache.Find(KeyOf(1000 + round)) != nullptr;
  EXPECT_LE(kept, 3);
}

}  // namespace
}  // namespace QXC::detail
