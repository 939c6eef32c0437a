// Font files that end early, lie, or hold nonsense: passed over or read, never a crash, and nothing stays open.
#include "QXFontsFixture.h"

#include <QxGraphics3D/text/QXTrueType.h>

#include <ft2build.h>
#include FT_FREETYPE_H

#include <fstream>
#include <iterator>
#include <random>

namespace QXC {
namespace {

std::string BytesOf(char const* szPath) {
  std::ifstream file(szPath, std::ios::binary);
  EXPECT_TRUE(file) << szPath << " is missing: run scripts/setup test";
  return {std::istreambuf_iterator<char>(file), {}};
}

class QXBrokenFonts : public QXFontsFixture {
protected:
  void Use(std::string const& bytes, char const* szName = "broken.ttf") { UseFile(WriteFont(szName, bytes)); }
  /// Takes a file through everything that opens fonts. Whatever comes of it, what is handed out must be consistent.
  void UseFile(QdcUnicodeString path) {
    {
      QXTrueType fonts;
      fonts.InitFontsInfo();
      ASSERT_LE(fonts.m_arrFontsInfo.GetSize(), 10u);
      for (QXTrueType::QXFontInfo const& info : fonts.m_arrFontsInfo) {
        ASSERT_TRUE(info.m_strFilePath == path);
        ASSERT_GE(info.m_nFaceStyle, 0);
        ASSERT_LE(info.m_nFaceStyle, 3);
        fonts.GetFace(info.m_strFontNameEn, QXTrueType::FACE_BOLD);
      }
      ASSERT_LE(MappedCount(path), static_cast<int>(fonts.m_dictFaces.GetCount()));
      QdcUnicodeString name = L"Any";
      fonts.GetFontIndex(path, name);
      m_Section[L"Any"] = path.Cstr() + m_Folder.GetName().GetLength() + 1;
      fonts.GetFace(L"Any", QXTrueType::FACE_REGULAR);
    }
    ASSERT_EQ(MappedCount(path), 0);
  }
};

TEST_F(QXBrokenFonts, CutAtEvery64thByte) {
  std::string const bytes = BytesOf("/usr/share/fonts/truetype/dejavu/DejaVuSans-ExtraLight.ttf");
  QdcUnicodeString const path = WriteFont("broken.ttf", bytes);
  for (std::size_t length = bytes.size() / 64 * 64; length > 0; length -= 64) {
    std::filesystem::resize_file(Narrow(path), length);
    UseFile(path);
    ASSERT_FALSE(HasFatalFailure()) << "cut at " << length;
  }
}

TEST_F(QXBrokenFonts, CutAtEveryByte) {
  std::string const single = SimpleFont(u"House").Make();
  std::string const pair =
      QXFontMaker::MakeCollection({TableOf(24, 17, Named(2052, 1, u"One")), TableOf(57, 43, Named(2052, 1, u"Two"))});
  for (std::size_t length = 0; length < single.size(); ++length) {
    Use(single.substr(0, length));
    ASSERT_FALSE(HasFatalFailure()) << "single face cut at " << length;
  }
  std::filesystem::remove(m_Folder.m_Path / "broken.ttf");
  for (std::size_t length = 0; length < pair.size(); length += 5) {
    Use(pair.substr(0, length), "broken.ttc");
    ASSERT_FALSE(HasFatalFailure()) << "collection cut at " << length;
  }
}

TEST_F(QXBrokenFonts, EveryByteOfTheTablesLies) {
  std::string const bytes = SimpleFont(u"House").Make();
  for (std::size_t place = 0; place < bytes.size(); ++place) {
    for (char const value : {'\0', '\x7F', '\xFF'}) {
      std::string lying = bytes;
      lying[place] = value;
      Use(lying);
      ASSERT_FALSE(HasFatalFailure()) << "byte " << place;
    }
  }
}

TEST_F(QXBrokenFonts, CollectionOfNoFacesIsNoFont) {
  std::string none("ttcf\0\1\0\0\0\0\0\0", 12);
  none.append(200, '\0');
  Use(none, "none.ttc");
  QXTrueType fonts;
  fonts.InitFontsInfo();
  EXPECT_EQ(fonts.m_arrFontsInfo.GetSize(), 0u);
  QdcUnicodeString path = m_Folder.GetFile("none.ttc");
  QdcUnicodeString name = L"Any";
  EXPECT_EQ(fonts.GetFontIndex(path, name), -1);
}

TEST_F(QXBrokenFonts, CollectionThatClaimsFacesItHasNotGivesThoseItHas) {
  std::string lying = QXFontMaker::MakeCollection({SimpleFont(u"House"), SimpleFont(u"Garden")});
  lying.replace(8, 4, std::string("\0\0\0\x09", 4));
  Use(lying, "nine.ttc");
  lying.replace(8, 4, "\xFF\xFF\xFF\xFF");
  Use(lying, "nine.ttc");
}

TEST_F(QXBrokenFonts, NamesBeyondTheTableAreNotRead) {
  // FreeType leaves such records out of its count, so the face has no name, and a table of 25 records one of which
  // lies counts as one of 24.
  QXFontMaker font = TableOf(25, 17, Named(2052, 1, u"One"));
  std::string bytes = font.Make();
  std::size_t const names = bytes.size() - (6 + 12 * 25 + 24 * 18 + 6);
  std::size_t const table = bytes.find(std::string("\0\0\0\x19", 4), names - 16);
  ASSERT_NE(table, std::string::npos);
  bytes.replace(table + 6 + 12 * 24 + 8, 2, "\xFF\xFF");
  Use(bytes);
  QXTrueType fonts;
  FT_Face face = nullptr;
  ASSERT_EQ(fonts.QX_FT_New_Face(fonts.m_pLibrary, m_Folder.GetFile("broken.ttf"), 0, face), 0);
  EXPECT_TRUE(fonts.GetFontInfo(face).m_strFontName == L"One");
  FT_Done_Face(face);
}

TEST_F(QXBrokenFonts, LongestPossibleNameIsRead) {
  std::u16string const name(32000, u'n');
  WriteFont("long.ttf", SimpleFont(name));
  QXTrueType fonts;
  fonts.InitFontsInfo();
  ASSERT_EQ(fonts.m_arrFontsInfo.GetSize(), 1u);
  EXPECT_EQ(fonts.m_arrFontsInfo[0].m_strFontNameEn.GetLength(), 3 * 64000);
  EXPECT_NE(fonts.GetFace(std::wstring(32000, L'n').c_str(), QXTrueType::FACE_REGULAR), nullptr);
}

TEST_F(QXBrokenFonts, FolderAndSpecialFileInTheRegistryAreNoFonts) {
  std::filesystem::create_directory(m_Folder.m_Path / "folder.ttf");
  Register(L"Folder", L"folder.ttf");
  Register(L"Null", L"../../../../../../dev/null");
  Register(L"Self", L".");
  QXTrueType fonts;
  for (wchar_t const* const szName : {L"Folder", L"Null", L"Self"}) {
    EXPECT_EQ(fonts.GetFace(szName, QXTrueType::FACE_REGULAR), nullptr);
  }
  EXPECT_EQ(fonts.m_arrMissingFonts.GetSize(), 3u);
}

TEST_F(QXBrokenFonts, RandomDamageNeverBreaksIt) {
  constexpr unsigned int seed = 20261121;
  SCOPED_TRACE(seed);
  std::mt19937 random(seed);
  std::string const pair = QXFontMaker::MakeCollection(
      {TableOf(24, 17, Named(2052, 1, u"One")), TableOf(57, 43, Named(2052, 1, u"Two")), SimpleFont(u"Three")});
  for (int round = 0; round < 500; ++round) {
    std::string bytes = pair;
    for (std::size_t i = 1 + random() % 8; i > 0; --i) bytes[random() % bytes.size()] = static_cast<char>(random());
    Use(bytes, "broken.ttc");
    ASSERT_FALSE(HasFatalFailure()) << "round " << round;
  }
}

}  // namespace
}  // namespace QXC
