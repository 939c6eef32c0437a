// Random lives of both glyph atlases beside the plain one: records, pages and the pixels that arrive.
#include "QXFontAtlasFixture.h"
#include "QXPlainFontAtlas.h"

#include <QxGraphics3D/testing/QXCallLog.h>
#include <QxGraphics3D/testing/QXNullTexture.h>
#include <QxGraphics3D/testing/QXNullTextureManager.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <memory>
#include <random>
#include <vector>

namespace QXC {
namespace {

template <class Manager>
class QXFontLife;

template <>
class QXFontLife<QXTextureFontManager> : public QXFontAtlasFixture {
protected:
  QXFontLife() { m_Manager.SetTextureManager(&m_NullTextures); }

  static constexpr bool IN_MEMORY = false;
  QXNullTexture* Page(int nIndex) {
    return static_cast<QXNullTexture*>(m_NullTextures.GetTexture(PageName(nIndex), 0));
  }
  /// Null before the first upload.
  unsigned char const* Pixels(int nIndex) {
    std::vector<unsigned char> const& arrPixels = Page(nIndex)->GetDevicePixels();
    return arrPixels.size() == 2097152 ? arrPixels.data() : nullptr;
  }
  int Users(int nIndex) { return Page(nIndex)->GetRef(); }
  std::size_t PageCount() const { return m_NullTextures.GetTextureCount(); }

  QXNullTextureManager m_NullTextures{std::make_shared<QXCallLog>()};
  QXTextureFontManager m_Manager;
};

template <>
class QXFontLife<QXMemoryTextureFontManager> : public QXFontAtlasFixture {
protected:
  static constexpr bool IN_MEMORY = true;
  QXTextureData* Page(int nIndex) { return m_Manager.GetTextureDataFromMemory(PageName(nIndex)); }
  unsigned char const* Pixels(int nIndex) { return Page(nIndex)->m_pPixels; }
  int Users(int) { return 1; }
  std::size_t PageCount() {
    std::size_t nCount = 0;
    for (int i = 0; i < 256; ++i) nCount += Page(i) != nullptr;
    return nCount;
  }

  QXMemoryTextureFontManager m_Manager;
};

struct QXLifeOfGlyphs {
  unsigned int m_nSeed;
  int m_nKeys;
  int m_nLargest;
};

template <class Manager>
class QXFontAtlasLife : public QXFontLife<Manager> {
protected:
  QXFontAtlasLife() : m_Plain(this->IN_MEMORY) {}

  int Below(int nCount) { return static_cast<int>(m_Random() % static_cast<unsigned int>(nCount)); }

  /// A glyph of a key: now and then one that no tile can hold.
  QXPlainFontAtlas::Picture MakePicture(int nLargest) {
    QXPlainFontAtlas::Picture picture;
    int const nKind = Below(400);
    int const nEdge = nKind == 0   ? Below(2)
                      : nKind == 1 ? 1024 + Below(60)
                      : nKind < 8  ? 1 + Below(1023)
                                   : 2 + Below(nLargest);
    picture.m_nWidth = nEdge;
    picture.m_nHeight = nEdge == 0 ? 0 : 1 + Below(nEdge);
    if (Below(2) == 0) std::swap(picture.m_nWidth, picture.m_nHeight);
    picture.m_arrPixels.resize(
        static_cast<std::size_t>(picture.m_nWidth) * static_cast<std::size_t>(picture.m_nHeight) * 2);
    auto const nFirst = static_cast<unsigned char>(Below(256));
    for (std::size_t i = 0; i < picture.m_arrPixels.size(); ++i) {
      picture.m_arrPixels[i] = static_cast<unsigned char>(nFirst + i % 251);
    }
    return picture;
  }

  void MakeGlyphs(QXLifeOfGlyphs const& life) {
    m_arrKeys.clear();
    m_arrPictures.clear();
    constexpr wchar_t const* kFaces[] = {L"", L"Noto Sans CJK", L"Noto Serif"};
    for (int i = 0; i < life.m_nKeys; ++i) {
      m_arrKeys.push_back(Blank(i / 2, kFaces[Below(3)]));
      m_arrPictures.push_back(MakePicture(life.m_nLargest));
    }
  }
  static QXPlainFontAtlas::Key PlainKey(QXFontKey const& key) { return {key.m_nCode, key.m_strFaceName.Cstr()}; }

  void GetOne(std::size_t nGlyph) {
    QXFontKey const& key = m_arrKeys[nGlyph];
    QXPlainFontAtlas::Picture const& picture = m_arrPictures[nGlyph];
    // Two numbers may be one key: the first picture is then the one that both have.
    QXCharBitmapData const* const pBitmap = this->m_Manager.GetCharBitmapData(key, this->Style(L"sample", 12));
    if (pBitmap->m_nWidth == 0 && picture.m_nWidth != 0) {
      Shape(this->m_Manager, key, picture.m_nWidth, picture.m_nHeight);
      if (!picture.m_arrPixels.empty())
        std::memcpy(pBitmap->m_pData, picture.m_arrPixels.data(), picture.m_arrPixels.size());
    }
    QXPlainFontAtlas::Picture kept{pBitmap->m_nWidth, pBitmap->m_nHeight, {}};
    auto const nBytes = static_cast<std::size_t>(kept.m_nWidth) * static_cast<std::size_t>(kept.m_nHeight) * 2;
    kept.m_arrPixels.assign(pBitmap->m_pData, pBitmap->m_pData + nBytes);
    QXTextureFont const* const pFont = this->m_Manager.GetTextureFont(key, QXTextStyle());
    QXPlainFontAtlas::Font const* const pPlain = m_Plain.Get(PlainKey(key), kept);
    ASSERT_EQ(pFont != nullptr, pPlain != nullptr);
    if (!pFont) return;
    ASSERT_EQ(pFont->m_Key.m_nKey, pPlain->GetKey());
    ASSERT_EQ(pFont->m_nRefCount, pPlain->m_nRefCount);
    ASSERT_EQ(pFont->m_TexCoords.m_fLeft, pPlain->m_arrCoords[0]);
    ASSERT_EQ(pFont->m_TexCoords.m_fTop, pPlain->m_arrCoords[1]);
    ASSERT_EQ(pFont->m_TexCoords.m_fRight, pPlain->m_arrCoords[2]);
    ASSERT_EQ(pFont->m_TexCoords.m_fBottom, pPlain->m_arrCoords[3]);
  }

  void DelOne(std::size_t nGlyph) {
    this->m_Manager.DelTextureFont(m_arrKeys[nGlyph]);
    m_Plain.Del(PlainKey(m_arrKeys[nGlyph]));
  }

  void Upload() {
    this->m_Manager.AddCharBitmapToTexture();
    m_Plain.Upload();
    ComparePages();
  }

  void ComparePages() {
    ASSERT_EQ(this->PageCount(), m_Plain.m_mapPages.size());
    for (auto const& [nIndex, page] : m_Plain.m_mapPages) {
      ASSERT_NE(this->Page(nIndex), nullptr) << nIndex;
      ASSERT_EQ(this->Users(nIndex), page.m_nUsers) << nIndex;
      if (page.m_arrPixels.empty()) continue;
      ASSERT_NE(this->Pixels(nIndex), nullptr) << nIndex;
      ASSERT_EQ(std::memcmp(this->Pixels(nIndex), page.m_arrPixels.data(), page.m_arrPixels.size()), 0) << nIndex;
    }
  }

  void Live(QXLifeOfGlyphs const& life) {
    std::printf("seed %u\n", life.m_nSeed);
    m_Random.seed(life.m_nSeed);
    MakeGlyphs(life);
    for (int i = 0; i < 4000 && !this->HasFatalFailure(); ++i) {
      // Fuller and emptier by turns, so that pages come and go.
      int const nGets = i / 800 % 2 == 0 ? 70 : 35;
      int const nWhat = Below(100);
      auto const nGlyph = static_cast<std::size_t>(Below(life.m_nKeys));
      if (nWhat < nGets) {
        GetOne(nGlyph);
      } else if (nWhat < 99) {
        DelOne(nGlyph);
      } else if (Below(8) == 0) {
        this->m_Manager.Clear();
        m_Plain.Clear();
        ComparePages();
      } else {
        Upload();
      }
    }
    EXPECT_FALSE(m_Plain.m_mapPages.empty());
    this->m_Manager.Clear();
    m_Plain.Clear();
  }

  std::mt19937 m_Random;
  QXPlainFontAtlas m_Plain;
  std::vector<QXFontKey> m_arrKeys;
  std::vector<QXPlainFontAtlas::Picture> m_arrPictures;
};

using Managers = testing::Types<QXTextureFontManager, QXMemoryTextureFontManager>;
TYPED_TEST_SUITE(QXFontAtlasLife, Managers);

TYPED_TEST(QXFontAtlasLife, SmallGlyphsStandWhereTheRecursionPutsThem) {
  this->Live({7301, 500, 40});
}

TYPED_TEST(QXFontAtlasLife, LargeGlyphsOnSeveralPagesStandWhereTheRecursionPutsThem) {
  this->Live({7302, 120, 300});
}

TYPED_TEST(QXFontAtlasLife, GlyphsOfManySizesStandWhereTheRecursionPutsThem) {
  this->Live({7303, 250, 120});
}

}  // namespace
}  // namespace QXC
