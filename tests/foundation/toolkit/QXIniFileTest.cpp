#include <QxGraphics3D/frame/foundation/toolkit/detail/QXIniFile.h>

#include "QXTestFolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>

namespace QXC::detail {
namespace {

// "section|key|value|line" of every entry.
std::vector<std::string> Entries(QXIniFile const& file) {
  std::vector<std::string> lines;
  for (QXIniEntry const& entry : file.GetEntries()) {
    lines.push_back(std::string(entry.m_strSection.ToMBString().Cstr()) + "|" + entry.m_strKey.ToMBString().Cstr() +
                    "|" + entry.m_strValue.ToMBString().Cstr() + "|" + std::to_string(entry.m_nLine));
  }
  return lines;
}

std::vector<std::string> Parsed(std::string_view bytes) {
  QXIniFile file;
  if (!file.Parse(bytes, L"f")) return {std::string("error ") + file.GetErrorText().ToMBString().Cstr()};
  return Entries(file);
}

using Lines = std::vector<std::string>;

TEST(QXIniFile, ReadsSectionsKeysAndValuesWithTheirCaseAndLine) {
  EXPECT_EQ(Parsed("top = 1\n\n[Renderer]\nName = ogre\nmodule=libqx3d_ogre.so\n"),
      (Lines{"|top|1|1", "Renderer|Name|ogre|4", "Renderer|module|libqx3d_ogre.so|5"}));
}

TEST(QXIniFile, EmptyBytesHoldNothing) {
  EXPECT_EQ(Parsed(""), Lines{});
  EXPECT_EQ(Parsed("\n\r\n ; only a comment\n# and another\n[section]\n"), Lines{});
}

TEST(QXIniFile, StripsBlanksCommentsAndLineEnds) {
  EXPECT_EQ(Parsed("  a =  b c  \r\n\td = e ; comment\r\nf = g;h"), (Lines{"|a|b c|1", "|d|e|2", "|f|g;h|3"}));
}

TEST(QXIniFile, IndentedLineIsALineOfItsOwnNotAContinuation) {
  EXPECT_EQ(Parsed("a = 1\n  b = 2\n"), (Lines{"|a|1|1", "|b|2|2"}));
  EXPECT_EQ(Parsed("a = 1\n  more\n"), Lines{"error f:2: expected [section], key = value or a comment"});
}

TEST(QXIniFile, ValueMayBeEmptyAKeyMayNot) {
  EXPECT_EQ(Parsed("a =\n"), Lines{"|a||1"});
  EXPECT_EQ(Parsed("b = 1\n= 1\n"), Lines{"error f:2: expected [section], key = value or a comment"});
}

TEST(QXIniFile, MarkOfUTF8AtTheFrontIsSkipped) {
  EXPECT_EQ(Parsed("\xEF\xBB\xBF[s]\na = 1\n"), Lines{"s|a|1|2"});
}

TEST(QXIniFile, TextIsUTF8) {
  EXPECT_EQ(Parsed("[Stra\303\237e]\n\xe4\xb8\xad = \xf0\x9f\x98\x80\n"),
      Lines{"Stra\303\237e|\xe4\xb8\xad|\xf0\x9f\x98\x80|2"});
  EXPECT_EQ(Parsed("a = 1\nb = \xe9\n"), Lines{"error f:2: is not UTF-8 text"});
}

TEST(QXIniFile, ZeroByteIsRefused) {
  EXPECT_EQ(Parsed(std::string_view("a = 1\nb = \0 2\n", 14)), Lines{"error f:2: holds a zero byte"});
}

TEST(QXIniFile, LineEndsAtItsLimit) {
  std::string const longest = "k = " + std::string(QXIniFile::ms_nMaxLine - 4, 'v');
  EXPECT_EQ(Parsed(longest + "\n"), Lines{"|k|" + longest.substr(4) + "|1"});
  EXPECT_EQ(Parsed(longest), Lines{"|k|" + longest.substr(4) + "|1"});
  EXPECT_EQ(Parsed(longest + "v\n"), Lines{"error f:1: the line is longer than 190 bytes"});
  EXPECT_EQ(Parsed("a = 1\n" + std::string(1u << 20, 'x')), Lines{"error f:2: the line is longer than 190 bytes"});
}

TEST(QXIniFile, SectionNameEndsAtItsLimitInsteadOfBeingCut) {
  std::string const longest(QXIniFile::ms_nMaxSection, 's');
  EXPECT_EQ(Parsed("[" + longest + "]\na = 1\n"), Lines{longest + "|a|1|2"});
  EXPECT_EQ(Parsed("[" + longest + "s]\na = 1\n"), Lines{"error f:1: a section is [name] of at most 49 bytes"});
  EXPECT_EQ(Parsed("[open\n"), Lines{"error f:1: a section is [name] of at most 49 bytes"});
}

TEST(QXIniFile, LongKeysAreKeptWhole) {
  std::string const key(120, 'k');
  EXPECT_EQ(Parsed(key + " = v\n" + key + "2 = w\n"), (Lines{"|" + key + "|v|1", "|" + key + "2|w|2"}));
}

TEST(QXIniFile, FirstBadLineIsNamed) {
  EXPECT_EQ(Parsed("a = 1\nwrong\nb = 2\n\xff\n"), Lines{"error f:2: expected [section], key = value or a comment"});
  EXPECT_EQ(Parsed("a = 1\n\xff\nwrong\n"), Lines{"error f:2: is not UTF-8 text"});
}

TEST(QXIniFile, FailureLeavesTheEntriesOfTheLastSuccess) {
  QXIniFile file;
  ASSERT_EQ(file.Parse("a = 1\n", L"first"), 1);
  EXPECT_EQ(file.GetErrorText().IsEmpty(), 1);
  EXPECT_EQ(file.Parse("b = 2\nwrong\n", L"second"), 0);
  EXPECT_EQ(Entries(file), Lines{"|a|1|1"});
  EXPECT_TRUE(file.GetErrorText() == L"second:2: expected [section], key = value or a comment");
  ASSERT_EQ(file.Parse("c = 3\n", L"third"), 1);
  EXPECT_EQ(Entries(file), Lines{"|c|3|1"});
  EXPECT_EQ(file.GetErrorText().IsEmpty(), 1);
}

TEST(QXIniFile, OversizedBytesAreRefused) {
  std::string line = "a = 1\n";
  std::string bytes;
  while (bytes.size() + line.size() <= QXIniFile::ms_nMaxFileSize) bytes += line;
  QXIniFile file;
  EXPECT_EQ(file.Parse(bytes, L"f"), 1);
  bytes.resize(QXIniFile::ms_nMaxFileSize + 1, '\n');
  EXPECT_EQ(file.Parse(bytes, L"f"), 0);
  EXPECT_TRUE(file.GetErrorText() == L"f: is too large for a configuration file");
}

TEST(QXIniFile, LoadReadsARegularFileAndRefusesEverythingElse) {
  QXTestFolder const folder;
  QXIniFile file;
  ASSERT_EQ(file.Load(Wide(folder.Write("stra\303\237e.ini", "a = 1\n"))), 1);
  EXPECT_EQ(Entries(file), Lines{"|a|1|1"});

  QdcUnicodeString const missing = Wide(folder.GetPath() / "missing.ini");
  EXPECT_EQ(file.Load(missing), 0);
  EXPECT_TRUE(file.GetErrorText() == missing + L": cannot be opened");
  EXPECT_EQ(file.Load(Wide(folder.GetPath())), 0);
  EXPECT_TRUE(file.GetErrorText() == Wide(folder.GetPath()) + L": is not a regular file");

  std::filesystem::path const pipe = folder.GetPath() / "pipe.ini";
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_EQ(file.Load(Wide(pipe)), 0);
  EXPECT_TRUE(file.GetErrorText() == Wide(pipe) + L": is not a regular file");

  std::filesystem::path const large = folder.Write("large.ini", "");
  std::filesystem::resize_file(large, QXIniFile::ms_nMaxFileSize + 1);
  EXPECT_EQ(file.Load(Wide(large)), 0);
  EXPECT_TRUE(file.GetErrorText() == Wide(large) + L": is too large for a configuration file");
  EXPECT_EQ(Entries(file), Lines{"|a|1|1"});
}

}  // namespace
}  // namespace QXC::detail
