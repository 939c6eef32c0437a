#include <QxGraphics3D/frame/foundation/toolkit/QXRegistry.h>

#include "QXTestFolder.h"

#include <gtest/gtest.h>

#include <random>

namespace QXC {
namespace {

constexpr char szWhole[] = "top = 1\n"
                           "[Graphics3DDefaultFonts]\n"
                           "DejaVuSans = dejavu/DejaVuSans.ttf\n"
                           "Stra\303\237e = s.ttf\n"
                           "[Other]\n"
                           "key = value\n";

QdcUnicodeString Value(QXRegistry& registry, wchar_t const* szKey) {
  QdcUnicodeString value(L"(none)");
  registry.Lookup(szKey, value);
  return value;
}

// Everything that a test can have put in, as one text.
QdcUnicodeString Content(QXRegistry& registry) {
  QdcUnicodeString text;
  QXRegistry& fonts = registry.SubFile(L"Graphics3DDefaultFonts");
  text.Format(L"%d %d %d %s %s", static_cast<int>(registry.GetCount()), static_cast<int>(fonts.GetCount()),
      static_cast<int>(registry.SubFile(L"Other").GetCount()), Value(registry, L"top").Cstr(),
      Value(fonts, L"DejaVuSans").Cstr());
  return text;
}

class QXRegistryTest : public testing::Test {
protected:
  unsigned char LoadBytes(QXRegistry& registry, std::string_view bytes) {
    return registry.Load(Wide(m_Folder.Write("test.ini", bytes)));
  }
  QXTestFolder m_Folder;
};

TEST_F(QXRegistryTest, SubFileMakesAnEmptySectionAndKeepsIt) {
  QXRegistry registry;
  QXRegistry& section = registry.SubFile(L"section");
  EXPECT_EQ(section.GetCount(), 0u);
  section[L"key"] = L"value";
  EXPECT_EQ(&registry.SubFile(L"section"), &section);
  EXPECT_NE(&registry.SubFile(L"Section"), &section);
  EXPECT_TRUE(Value(registry, L"key") == L"(none)");
}

TEST_F(QXRegistryTest, LoadPutsKeysIntoTheirSections) {
  QXRegistry registry;
  ASSERT_EQ(LoadBytes(registry, szWhole), 1);
  EXPECT_TRUE(Value(registry, L"top") == L"1");
  QXRegistry& fonts = registry.SubFile(L"Graphics3DDefaultFonts");
  EXPECT_TRUE(Value(fonts, L"DejaVuSans") == L"dejavu/DejaVuSans.ttf");
  EXPECT_TRUE(Value(fonts, L"dejavusans") == L"(none)");
  EXPECT_TRUE(Value(fonts, L"Stra\u00dfe") == L"s.ttf");
  EXPECT_TRUE(Value(registry.SubFile(L"Other"), L"key") == L"value");
}

TEST_F(QXRegistryTest, LoadMergesOverWhatIsThere) {
  QXRegistry registry;
  QXRegistry& fonts = registry.SubFile(L"Graphics3DDefaultFonts");
  fonts[L"DejaVuSans"] = L"old.ttf";
  fonts[L"Mine"] = L"mine.ttf";
  ASSERT_EQ(LoadBytes(registry, szWhole), 1);
  EXPECT_EQ(&registry.SubFile(L"Graphics3DDefaultFonts"), &fonts);
  EXPECT_TRUE(Value(fonts, L"DejaVuSans") == L"dejavu/DejaVuSans.ttf");
  EXPECT_TRUE(Value(fonts, L"Mine") == L"mine.ttf");
}

TEST_F(QXRegistryTest, OfAKeyGivenTwiceTheLastCounts) {
  QXRegistry registry;
  ASSERT_EQ(LoadBytes(registry, "a = 1\n[s]\nb = 1\nb = 2\n"), 1);
  EXPECT_TRUE(Value(registry.SubFile(L"s"), L"b") == L"2");
}

TEST_F(QXRegistryTest, BrokenFilesChangeNothing) {
  QXRegistry registry;
  ASSERT_EQ(LoadBytes(registry, szWhole), 1);
  QdcUnicodeString const before = Content(registry);
  std::string const arrBroken[] = {"top = 2\nno value\n", "top = 2\n[open\n", std::string("top = 2\n\0\n", 10),
      "top = 2\n\xff = 1\n", "top = 2\n" + std::string(500, 'x') + " = 1\n",
      "top = 2\n[" + std::string(60, 's') + "]\n", "top = 2\n = 1\n"};
  for (std::string const& broken : arrBroken) {
    EXPECT_EQ(LoadBytes(registry, broken), 0) << broken.substr(0, 40);
    EXPECT_TRUE(Content(registry) == before) << broken.substr(0, 40);
  }
  EXPECT_EQ(registry.Load(Wide(m_Folder.GetPath() / "missing.ini")), 0);
  EXPECT_EQ(registry.Load(Wide(m_Folder.GetPath())), 0);
  EXPECT_EQ(registry.Load(L""), 0);
  EXPECT_TRUE(Content(registry) == before);
}

TEST_F(QXRegistryTest, FileCutAtAnyByteLoadsWholeLinesOrNothing) {
  std::string_view const whole(szWhole);
  for (std::size_t length = 0; length <= whole.size(); ++length) {
    QXRegistry registry;
    registry[L"top"] = L"before";
    unsigned char const loaded = LoadBytes(registry, whole.substr(0, length));
    if (!loaded) {
      ASSERT_TRUE(Content(registry) == L"1 0 0 before (none)") << length;
    } else {
      ASSERT_TRUE(Value(registry, L"top") == (length < 4 ? L"before" : length < 7 ? L"" : L"1")) << length;
    }
  }
}

TEST_F(QXRegistryTest, RandomBytesNeverBreakIt) {
  constexpr unsigned int seed = 551;
  SCOPED_TRACE(seed);
  std::mt19937 random(seed);
  char const szAlphabet[] = "[]=:;# \t\r\nabc\xc3\x9f\xff";
  for (int round = 0; round < 1000; ++round) {
    std::string bytes(random() % 200, '\0');
    for (char& byte : bytes) byte = szAlphabet[random() % (sizeof szAlphabet - 1)];
    QXRegistry registry;
    unsigned char const loaded = LoadBytes(registry, bytes);
    ASSERT_TRUE(loaded || registry.GetCount() == 0) << bytes;
  }
}

TEST_F(QXRegistryTest, RootHoldsTheInstalledConfigurationOnce) {
  QXRegistry& root = QXRegistry::Root();
  EXPECT_EQ(&root, &QXRegistry::Root());
  EXPECT_TRUE(Value(root.SubFile(L"Graphics3DDefaultFonts"), L"DejaVuSans") == L"truetype/dejavu/DejaVuSans.ttf");
  // Whether floating-point textures are used is the device's matter until a host says otherwise.
  EXPECT_TRUE(Value(root, L"IsSupportFloatTexture") == L"(none)");
}

}  // namespace
}  // namespace QXC
