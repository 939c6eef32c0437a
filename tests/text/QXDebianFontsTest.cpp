// The installed registry section on the fonts of Debian's packages; scripts/setup installs them.
#include "QXFontsFixture.h"

#include <QxGraphics3D/text/QXTrueType.h>

#include <ft2build.h>
#include FT_FREETYPE_H

#include <algorithm>
#include <set>

namespace QXC {
namespace {

constexpr wchar_t ms_szFolder[] = L"/usr/share/fonts/";

class QXDebianFonts : public QXFontsFixture {
protected:
  void SetUp() override {
    ASSERT_EQ(QXRegistry::Root().Load(QdcUnicodeString::FromUTF8(QX_SOURCE_DIR "/QxGraphics3D/data/registry.ini")), 1);
    QXStringEx::SetResString(L"IMl001", L"DejaVu Sans");
    QXToolkit::SetFontsPath(ms_szFolder);
    for (char const* const szFile : {"truetype/dejavu/DejaVuSans.ttf", "truetype/dejavu/DejaVuMathTeXGyre.ttf",
             "truetype/liberation/LiberationSans-Regular.ttf", "truetype/liberation2/LiberationSans-Regular.ttf",
             "opentype/noto/NotoSansCJK-Regular.ttc", "opentype/noto/NotoSerifCJK-Regular.ttc",
             "truetype/wqy/wqy-zenhei.ttc", "truetype/wqy/wqy-microhei.ttc", "truetype/arphic/uming.ttc"}) {
      std::string const path = Narrow(ms_szFolder) + szFile;
      ASSERT_TRUE(std::filesystem::exists(path)) << path << " is missing: run scripts/setup test";
    }
  }

  static std::string PathOf(QXTrueType::QXFontInfo const& info) { return Narrow(info.m_strFilePath); }
  /// Whether a file belongs to one of the packages: other fonts of the machine are no matter of these tests.
  static bool IsOfThePackages(std::string const& path) {
    auto const has = [&path](char const* szPart) { return path.find(szPart) != std::string::npos; };
    return has("/dejavu/DejaVu") || has("/liberation/") || has("/liberation2/") || has("/noto/NotoSansCJK") ||
           has("/noto/NotoSerifCJK") || has("/wqy/") || has("/arphic/uming");
  }
  static FT_Face Face(QXTrueType& fonts, wchar_t const* szName, int nStyle = 0) {
    return fonts.GetFace(szName, static_cast<QXTrueType::FaceStyle>(nStyle));
  }
};

TEST_F(QXDebianFonts, DefaultFontIsDejaVuSans) {
  QXTrueType fonts;
  ASSERT_NE(fonts.m_pDefaultFace, nullptr);
  EXPECT_STREQ(fonts.m_pDefaultFace->family_name, "DejaVu Sans");
  EXPECT_EQ(fonts.m_pDefaultFace->style_flags, 0);
}

TEST_F(QXDebianFonts, EveryFamilyOfThePackagesOpensItsRegularFace) {
  QXTrueType catalogue;
  catalogue.InitFontsInfo();
  std::set<std::string> families;
  for (QXTrueType::QXFontInfo const& info : catalogue.m_arrFontsInfo) {
    if (!IsOfThePackages(PathOf(info))) continue;
    std::string const name = Narrow(info.m_strFontNameEn);
    if (!families.insert(name).second) continue;
    QXTrueType fonts;
    FT_Face const face = fonts.GetFace(info.m_strFontNameEn, QXTrueType::FACE_REGULAR);
    ASSERT_NE(face, nullptr) << name;
    ASSERT_EQ(fonts.m_arrMissingFonts.GetSize(), 0u) << name;
    EXPECT_EQ(face->style_flags, 0) << name;
    QXTrueType::QXFontInfo found = fonts.GetFontInfo(const_cast<FT_Face&>(face));
    EXPECT_EQ(Narrow(found.m_strFontNameEn), name);
  }
  // DejaVu 7, Liberation 4, Noto CJK 10 and 5, WenQuanYi 3 and 2, AR PL UMing 4.
  EXPECT_EQ(families.size(), 35u);
}

TEST_F(QXDebianFonts, FamilyThatIsNotListedCanOpenABoldItalicFile) {
  m_Section[L"LiberationSans"] = L"";
  m_Section[L"LiberationSerif"] = L"";
  QXTrueType fonts;
  EXPECT_EQ(Face(fonts, L"Liberation Sans")->style_flags, FT_STYLE_FLAG_BOLD | FT_STYLE_FLAG_ITALIC);
  EXPECT_EQ(Face(fonts, L"Liberation Serif")->style_flags, FT_STYLE_FLAG_BOLD | FT_STYLE_FLAG_ITALIC);
}

TEST_F(QXDebianFonts, CollectionsOfTenFacesAreCataloguedWhole) {
  QXTrueType fonts;
  fonts.InitFontsInfo();
  struct {
    char const* szFile;
    int nFaces;
  } const cases[] = {{"NotoSansCJK-Regular.ttc", 10}, {"NotoSansCJK-Bold.ttc", 10}, {"NotoSerifCJK-Regular.ttc", 5},
      {"wqy-zenhei.ttc", 3}, {"wqy-microhei.ttc", 2}, {"uming.ttc", 4}};
  for (auto const& [szFile, nFaces] : cases) {
    int next = 0;
    for (QXTrueType::QXFontInfo const& info : fonts.m_arrFontsInfo) {
      if (PathOf(info).ends_with(szFile)) {
        EXPECT_EQ(info.m_nFaceIndex, next++) << szFile;
      }
    }
    EXPECT_EQ(next, nFaces) << szFile;
  }
}

TEST_F(QXDebianFonts, NamesOfTheCatalogueAreWhatTheFilesSay) {
  QXTrueType fonts;
  fonts.InitFontsInfo();
  auto const entry = [&fonts](char const* szFile, int nFace) {
    for (QXTrueType::QXFontInfo const& info : fonts.m_arrFontsInfo) {
      if (PathOf(info).ends_with(szFile) && info.m_nFaceIndex == nFace) return info;
    }
    ADD_FAILURE() << szFile << ' ' << nFace;
    return QXTrueType::QXFontInfo();
  };
  QXTrueType::QXFontInfo const mono = entry("wqy/wqy-zenhei.ttc", 1);
  EXPECT_TRUE(mono.m_strFontNameEn == L"WenQuanYi Zen Hei Mono");
  EXPECT_TRUE(mono.m_strFontName == L"\u6587\u6cc9\u9a7f\u7b49\u5bbd\u6b63\u9ed1");
  EXPECT_EQ(mono.m_nFaceStyle, 0);
  EXPECT_EQ(entry("dejavu/DejaVuSans-Bold.ttf", 0).m_nFaceStyle, 1);
  EXPECT_EQ(entry("dejavu/DejaVuSans-BoldOblique.ttf", 0).m_nFaceStyle, 0);
  EXPECT_EQ(entry("dejavu/DejaVuSerif-Italic.ttf", 0).m_nFaceStyle, 2);
  EXPECT_TRUE(entry("dejavu/DejaVuSans.ttf", 0).m_strVersion == L"Version 2.37");
  EXPECT_EQ(entry("noto/NotoSansCJK-Bold.ttc", 2).m_nFaceStyle, 1);
  EXPECT_TRUE(entry("noto/NotoSansCJK-Bold.ttc", 2).m_strFontName == L"Noto Sans CJK SC");
}

TEST_F(QXDebianFonts, ChineseNameOpensTheFaceWithinItsCollection) {
  QXTrueType fonts;
  FT_Face const face = Face(fonts, L"\u6587\u6cc9\u9a7f\u7b49\u5bbd\u5fae\u7c73\u9ed1");
  ASSERT_NE(face, nullptr);
  EXPECT_STREQ(face->family_name, "WenQuanYi Micro Hei Mono");
  EXPECT_EQ(face->face_index & 0xFFFF, 1);
}

TEST_F(QXDebianFonts, BoldOfACollectionComesFromItsBoldFile) {
  QXTrueType fonts;
  FT_Face const face = Face(fonts, L"Noto Sans CJK TC", 1);
  ASSERT_NE(face, nullptr);
  EXPECT_EQ(face->style_flags, FT_STYLE_FLAG_BOLD);
  EXPECT_STREQ(face->family_name, "Noto Sans CJK TC");
}

TEST_F(QXDebianFonts, CollectionInTheRegistryIsMissing) {
  m_Section[L"NotoSansCJKSC"] = L"opentype/noto/NotoSansCJK-Regular.ttc";
  QXTrueType fonts;
  EXPECT_EQ(Face(fonts, L"Noto Sans CJK SC"), fonts.m_pDefaultFace);
  EXPECT_EQ(fonts.m_arrMissingFonts.GetSize(), 1u);
}

}  // namespace
}  // namespace QXC
