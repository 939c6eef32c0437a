// Glyphs beside the plain sequence of FreeType calls, byte for byte.
#include "QXGlyphFixture.h"

#include FT_SIZES_H

#include <iostream>
#include <random>

namespace QXC {
namespace {

struct Range {
  unsigned int m_nFirst;
  unsigned int m_nLast;
};

// ASCII with its blank, Latin, Greek, Cyrillic, blanks of all widths, ideographs, beyond the first plane.
constexpr Range RANGES[] = {{0x20, 0x7E}, {0xA0, 0x24F}, {0x370, 0x3FF}, {0x400, 0x4FF}, {0x2000, 0x200A},
    {0x3000, 0x3010}, {0x4E00, 0x9FA5}, {0x20000, 0x200FF}, {0x1F600, 0x1F640}};

class QXGlyphExact : public QXGlyphFixture {
protected:
  struct Sample {
    QdcUnicodeString m_strFamily;
    FT_Face m_pFace;
    std::unique_ptr<QXPlain::Font> m_pPlain;
  };

  QXGlyphExact() {
    for (QXSampleFont const& font : SAMPLE_FONTS) {
      QdcUnicodeString const family((L"font" + std::to_wstring(m_arrSamples.size())).c_str());
      FT_Face const face = OpenAs(family, font.m_szFile, font.m_nFace);
      m_arrSamples.push_back({family, face, std::make_unique<QXPlain::Font>(font.m_szFile, font.m_nFace)});
    }
  }

  unsigned int Below(unsigned int nLimit) { return static_cast<unsigned int>(m_Random() % nLimit); }

  unsigned int PickCharacter() {
    Range const& range = RANGES[Below(std::size(RANGES))];
    return range.m_nFirst + Below(range.m_nLast - range.m_nFirst + 1);
  }

  /// Draws with both. Characters that the face lacks are passed over.
  void Compare(Sample& sample, unsigned int nCharacter, int nSize, bool bBold, bool bHalo) {
    if (FT_Get_Char_Index(sample.m_pFace, nCharacter) == 0) return;
    SetStyle(sample.m_strFamily, nSize, bBold);
    auto const ours = Draw(static_cast<int>(nCharacter), bHalo);
    auto const plain = sample.m_pPlain->Draw(nCharacter, nSize, bBold, bHalo);
    ++m_nCompared;
    ASSERT_TRUE(plain);
    ASSERT_TRUE(Same(ours, plain)) << Narrow(sample.m_strFamily) << " character " << nCharacter << " size " << nSize
                                   << (bBold ? " bold" : "") << (bHalo ? " halo" : "") << " seed " << m_nSeed;
  }

  unsigned int const m_nSeed = 20261121;
  std::mt19937 m_Random{m_nSeed};
  std::vector<Sample> m_arrSamples;
  int m_nCompared = 0;
};

TEST_F(QXGlyphExact, EveryAsciiCharacterOfEveryFontIsThePlainSequences) {
  for (Sample& sample : m_arrSamples) {
    for (unsigned int character = 0x20; character < 0x7F; ++character) {
      for (int const form : {0, 1, 2, 3}) {
        ASSERT_NO_FATAL_FAILURE(Compare(sample, character, 16, (form & 1) != 0, (form & 2) != 0));
      }
    }
  }
  EXPECT_EQ(m_nCompared, 95 * 4 * static_cast<int>(m_arrSamples.size()));
}

TEST_F(QXGlyphExact, RandomFontsSizesAndCharactersAreThePlainSequences) {
  std::cout << "seed " << m_nSeed << '\n';
  for (int i = 0; i < 6000; ++i) {
    Sample& sample = m_arrSamples[Below(static_cast<unsigned int>(m_arrSamples.size()))];
    int const size = i % 4 == 0 ? static_cast<int>(Below(200)) - 5 : static_cast<int>(6 + 2 * Below(12));
    ASSERT_NO_FATAL_FAILURE(Compare(sample, PickCharacter(), size, Below(3) == 0, Below(2) == 0));
  }
  EXPECT_GT(m_nCompared, 2500);
}

// A few glyphs asked for again and again, in all forms: what is kept of one must not show in another.
TEST_F(QXGlyphExact, GlyphsAskedForAgainAreThePlainSequences) {
  std::cout << "seed " << m_nSeed << '\n';
  for (int i = 0; i < 3000; ++i) {
    Sample& sample = m_arrSamples[Below(3)];
    ASSERT_NO_FATAL_FAILURE(
        Compare(sample, 'a' + Below(5), static_cast<int>(10 + Below(2)), Below(2) == 0, Below(2) == 0));
  }
}

// More sizes of one face, and of all faces, than size objects are kept.
TEST_F(QXGlyphExact, MoreSizesThanAreKeptAreThePlainSequences) {
  for (int round = 0; round < 2; ++round) {
    for (int size = 1; size <= 100; ++size) {
      for (std::size_t i = 0; i < 3; ++i) {
        ASSERT_NO_FATAL_FAILURE(Compare(m_arrSamples[i], 'g', size, false, round == 1));
      }
    }
  }
}

TEST_F(QXGlyphExact, LargeGlyphsBetweenSmallOnesAreThePlainSequences) {
  for (int i = 0; i < 40; ++i) {
    for (unsigned int const character : {0x9F98u, 0x9F8Du, 0x4E00u}) {
      ASSERT_NO_FATAL_FAILURE(Compare(m_arrSamples[5], character + Below(3), 1 + i * 40, i % 2 == 0, i % 3 == 0));
    }
  }
}

// What everybody else sees of the face: its own size object, set as the plain sequence sets it.
TEST_F(QXGlyphExact, FaceIsLeftWithTheSizeAndCharmapOfThePlainSequence) {
  for (Sample& sample : m_arrSamples) {
    FT_Size const own = sample.m_pFace->size;
    FT_CharMap const charmap = sample.m_pFace->charmap;
    for (int const size : {9, 30, 9, 0, -3, 30, 200}) {
      for (bool const halo : {false, true}) {
        ASSERT_NO_FATAL_FAILURE(Compare(sample, 'R', size, false, halo));
        FT_Size_Metrics const& ours = sample.m_pFace->size->metrics;
        FT_Size_Metrics const& plain = sample.m_pPlain->m_pFace->size->metrics;
        EXPECT_EQ(sample.m_pFace->size, own);
        EXPECT_EQ(sample.m_pFace->charmap, charmap);
        EXPECT_EQ(ours.x_ppem, plain.x_ppem);
        EXPECT_EQ(ours.y_ppem, plain.y_ppem);
        EXPECT_EQ(ours.x_scale, plain.x_scale);
        EXPECT_EQ(ours.y_scale, plain.y_scale);
        EXPECT_EQ(ours.ascender, plain.ascender);
        EXPECT_EQ(ours.height, plain.height);
      }
    }
  }
}

// The plain sequence on the very face that the engine has just drawn with, and the engine after it.
TEST_F(QXGlyphExact, PlainSequenceAndEngineTakeTurnsOnOneFace) {
  for (int i = 0; i < 400; ++i) {
    Sample& sample = m_arrSamples[Below(static_cast<unsigned int>(m_arrSamples.size()))];
    int const size = static_cast<int>(8 + Below(6));
    unsigned int const character = 'a' + Below(26);
    ASSERT_NO_FATAL_FAILURE(Compare(sample, character, size, false, i % 2 == 0));
    auto const after = QXPlain::Draw(
        Fonts().m_pLibrary, sample.m_pFace, FT_Get_Char_Index(sample.m_pFace, character + 1), size + 1, false, false);
    ASSERT_TRUE(Same(after, sample.m_pPlain->Draw(character + 1, size + 1, false, false)));
  }
}

TEST_F(QXGlyphExact, SizesThatOthersSetOnTheFaceDoNotShow) {
  Sample& sample = m_arrSamples[0];
  for (int i = 0; i < 3; ++i) {
    ASSERT_NO_FATAL_FAILURE(Compare(sample, 'Q' + static_cast<unsigned int>(i), 15, false, false));
    FT_Set_Pixel_Sizes(sample.m_pFace, 0, 20);  // as many pixels, of another resolution
    ASSERT_NO_FATAL_FAILURE(Compare(sample, 'Q' + static_cast<unsigned int>(i), 15, false, true));
    FT_Set_Pixel_Sizes(sample.m_pFace, 77, 33);
  }
}

TEST_F(QXGlyphExact, FacesThatAHostTurnsAreDrawnTurned) {
  Sample& sample = m_arrSamples[0];
  ASSERT_NO_FATAL_FAILURE(Compare(sample, 'F', 24, false, false));
  FT_Matrix slant{0x10000, 0x5000, 0, 0x10000};
  FT_Matrix mirrored{-0x9999, 0, 0, 0x10000};  // its advance is negative and no whole pixels: rounded down
  for (FT_Matrix* const matrix : {&slant, &mirrored, static_cast<FT_Matrix*>(nullptr)}) {
    FT_Set_Transform(sample.m_pFace, matrix, nullptr);
    FT_Set_Transform(sample.m_pPlain->m_pFace, matrix, nullptr);
    ASSERT_NO_FATAL_FAILURE(Compare(sample, 'F', 24, false, false));
    ASSERT_NO_FATAL_FAILURE(Compare(sample, 'F', 24, false, true));
    ASSERT_NO_FATAL_FAILURE(Compare(sample, 'G', 24, false, true));  // upright only after it was turned
  }
  FT_Vector moved{40, 20};
  FT_Set_Transform(sample.m_pFace, nullptr, &moved);
  FT_Set_Transform(sample.m_pPlain->m_pFace, nullptr, &moved);
  ASSERT_NO_FATAL_FAILURE(Compare(sample, 'F', 24, false, false));
}

}  // namespace
}  // namespace QXC
