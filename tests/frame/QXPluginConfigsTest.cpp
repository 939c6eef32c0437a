#include <QxGraphics3D/frame/QXPluginConfigs.h>

#include <sys/stat.h>
#include <unistd.h>

#include <memory>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "QXTempFolder.h"

namespace QXC {
namespace {

/// A kind that no real plug-in has, so that what is installed beside the library does not matter.
constexpr wchar_t const* KIND = L"test-kind";

std::string Text(QdcUnicodeString const& strText) {
  return strText.ToMBString().Cstr();
}

/// Made before anything of the library and so gone after it: a host's own static objects come as late.
struct LateUser {
  ~LateUser() {
    QXPluginConfigs::AddSearchFolder(L"/nowhere/late");
    QXPluginConfigs::RemoveSearchFolder(L"/nowhere/late");
  }
} const lateUser;

class QXPluginConfigsTest : public testing::Test {
protected:
  QXPluginConfigsTest() { QXPluginConfigs::AddSearchFolder(m_Folder.GetName()); }
  ~QXPluginConfigsTest() override { QXPluginConfigs::RemoveSearchFolder(m_Folder.GetName()); }

  /// Problems of the files in the test's own folder, without its path.
  std::vector<std::string> Problems(QXPluginConfigs const& configs) const {
    std::vector<std::string> arrProblems;
    for (QdcUnicodeString const& strProblem : configs.GetProblems()) {
      std::string const strText = Text(strProblem);
      std::string const strPrefix = m_Folder.m_Path.string() + "/";
      if (strText.rfind(strPrefix, 0) == 0) arrProblems.push_back(strText.substr(strPrefix.size()));
    }
    return arrProblems;
  }
  static std::string Found(QXPluginConfigs const& configs, wchar_t const* szName) {
    QXPluginConfig config;
    QdcUnicodeString strPath;
    if (configs.Find(KIND, szName, config, strPath) == 0) return "";
    return std::to_string(config.m_nNumber) + " " + Text(config.m_strName) + " " + std::to_string(config.m_bEnabled) +
           " " + Text(strPath);
  }
  std::string Path(std::string const& strName) const { return (m_Folder.m_Path / strName).string(); }

  QXTempFolder m_Folder;
};

TEST_F(QXPluginConfigsTest, NewObjectIsAlreadyFilled) {
  m_Folder.Write("a.ini", "[test-kind]\nname = alpha\nmodule = alpha.so\nnumber = 4\nenabled = true\n");
  QXPluginConfigs const configs;
  EXPECT_EQ(Found(configs, L"alpha"), "4 alpha 1 " + Path("alpha.so"));
  QdcDict<int, QXPluginConfig> dictNumbers;
  ASSERT_EQ(configs.m_dictPlugins.Lookup(KIND, dictNumbers), 1);
  QXPluginConfig config;
  ASSERT_EQ(dictNumbers.Lookup(4, config), 1);
  EXPECT_EQ(config.m_nNumber, 4);
  EXPECT_TRUE(config.m_strName == L"alpha");
  EXPECT_EQ(config.m_bEnabled, 1);
  EXPECT_TRUE(Problems(configs).empty());
}

TEST_F(QXPluginConfigsTest, NumberAndEnabledHaveDefaults) {
  m_Folder.Write("a.ini", "[test-kind]\nname=alpha\nmodule=alpha.so\n");
  EXPECT_EQ(Found(QXPluginConfigs(), L"alpha"), "1 alpha 1 " + Path("alpha.so"));
}

TEST_F(QXPluginConfigsTest, DisabledPluginIsFoundButNeverTheDefault) {
  m_Folder.Write("a.ini", "[test-kind]\nname = alpha\nmodule = a.so\nnumber = 1\nenabled = false\n");
  m_Folder.Write("b.ini", "[test-kind]\nname = beta\nmodule = b.so\nnumber = 9\n");
  m_Folder.Write("c.ini", "[test-kind]\nname = gamma\nmodule = c.so\nnumber = 5\n");
  QXPluginConfigs const configs;
  EXPECT_EQ(Found(configs, L"alpha"), "1 alpha 0 " + Path("a.so"));
  EXPECT_EQ(Text(configs.GetDefaultName(KIND)), "gamma");
  EXPECT_EQ(Text(configs.GetDefaultName(L"kind of nobody")), "");
}

TEST_F(QXPluginConfigsTest, AbsoluteModulePathIsTakenAsItIs) {
  m_Folder.Write("a.ini", "[test-kind]\nname = alpha\nmodule = /opt/alpha.so\n");
  m_Folder.Write("b.ini", "[test-kind]\nname = beta\nmodule = sub/beta.so\n");
  QXPluginConfigs const configs;
  EXPECT_EQ(Found(configs, L"alpha"), "1 alpha 1 /opt/alpha.so");
  EXPECT_EQ(Found(configs, L"beta"), "2 beta 1 " + Path("sub/beta.so"));
}

TEST_F(QXPluginConfigsTest, OneFileMayHoldSeveralKinds) {
  m_Folder.Write("a.ini", "[test-kind]\nname = alpha\nmodule = a.so\n[test-kind-2]\nname = alpha\nmodule = b.so\n");
  QXPluginConfigs const configs;
  EXPECT_EQ(Found(configs, L"alpha"), "1 alpha 1 " + Path("a.so"));
  QXPluginConfig config;
  QdcUnicodeString strPath;
  ASSERT_EQ(configs.Find(L"test-kind-2", L"alpha", config, strPath), 1);
  EXPECT_EQ(Text(strPath), Path("b.so"));
  EXPECT_EQ(configs.Find(L"test-kind-3", L"alpha", config, strPath), 0);
}

TEST_F(QXPluginConfigsTest, EqualNumbersMoveUpToTheNextFreeOne) {
  m_Folder.Write("a.ini", "[test-kind]\nname = alpha\nmodule = a.so\nnumber = 3\n");
  m_Folder.Write("b.ini", "[test-kind]\nname = beta\nmodule = b.so\nnumber = 4\n");
  m_Folder.Write("c.ini", "[test-kind]\nname = gamma\nmodule = c.so\nnumber = 3\n");
  m_Folder.Write("d.ini", "[test-kind]\nname = delta\nmodule = d.so\nnumber = 2147483647\n");
  m_Folder.Write("e.ini", "[test-kind]\nname = epsilon\nmodule = e.so\nnumber = 2147483647\n");
  QXPluginConfigs const configs;
  EXPECT_EQ(Found(configs, L"alpha"), "3 alpha 1 " + Path("a.so"));
  EXPECT_EQ(Found(configs, L"beta"), "4 beta 1 " + Path("b.so"));
  EXPECT_EQ(Found(configs, L"gamma"), "5 gamma 1 " + Path("c.so"));
  EXPECT_EQ(Found(configs, L"delta"), "2147483647 delta 1 " + Path("d.so"));
  EXPECT_EQ(Found(configs, L"epsilon"), "0 epsilon 1 " + Path("e.so"));
}

TEST_F(QXPluginConfigsTest, LaterPluginOfTheSameNameReplacesTheEarlierOne) {
  m_Folder.Write("a.ini", "[test-kind]\nname = alpha\nmodule = a.so\nnumber = 3\n");
  m_Folder.Write("b.ini", "[test-kind]\nname = alpha\nmodule = b.so\nnumber = 7\n");
  QXPluginConfigs const configs;
  EXPECT_EQ(Found(configs, L"alpha"), "7 alpha 1 " + Path("b.so"));
  QdcDict<int, QXPluginConfig> dictNumbers;
  ASSERT_EQ(configs.m_dictPlugins.Lookup(KIND, dictNumbers), 1);
  EXPECT_EQ(dictNumbers.GetCount(), 1u);
}

TEST_F(QXPluginConfigsTest, FoldersOfAHostAreReadInTheOrderTheyWereAdded) {
  QXTempFolder const second;
  m_Folder.Write("z.ini", "[test-kind]\nname = alpha\nmodule = a.so\n");
  second.Write("a.ini", "[test-kind]\nname = alpha\nmodule = b.so\n");
  QXPluginConfigs::AddSearchFolder(second.GetName() + L"/");
  EXPECT_EQ(Found(QXPluginConfigs(), L"alpha"), "1 alpha 1 " + (second.m_Path / "b.so").string());
  QXPluginConfigs::AddSearchFolder(m_Folder.GetName());  // moves to the end
  EXPECT_EQ(Found(QXPluginConfigs(), L"alpha"), "1 alpha 1 " + Path("a.so"));
  QXPluginConfigs::RemoveSearchFolder(m_Folder.GetName() + L"/");
  EXPECT_EQ(Found(QXPluginConfigs(), L"alpha"), "1 alpha 1 " + (second.m_Path / "b.so").string());
  QXPluginConfigs::RemoveSearchFolder(second.GetName());
  QXPluginConfigs::RemoveSearchFolder(second.GetName());
  EXPECT_EQ(Found(QXPluginConfigs(), L"alpha"), "");
}

TEST_F(QXPluginConfigsTest, FoldersMayBeAddedFromAnyThread) {
  auto const addAndRead = [](wchar_t const* szFolder) {
    for (int nRound = 0; nRound < 50; ++nRound) {
      QXPluginConfigs::AddSearchFolder(szFolder);
      QXPluginConfigs const configs;
      QXPluginConfigs::RemoveSearchFolder(szFolder);
    }
  };
  m_Folder.Write("a.ini", "[test-kind]\nname = alpha\nmodule = a.so\n");
  std::thread first(addAndRead, L"/nowhere/first");
  std::thread second(addAndRead, L"/nowhere/second");
  first.join();
  second.join();
  QXPluginConfigs const configs;
  EXPECT_EQ(Found(configs, L"alpha"), "1 alpha 1 " + Path("a.so"));
  for (QdcUnicodeString const& strProblem : configs.GetProblems()) EXPECT_EQ(strProblem.Find(L"/nowhere/", 0), -1);
}

TEST_F(QXPluginConfigsTest, ReadingAgainReplacesWhatTheObjectHolds) {
  m_Folder.Write("a.ini", "[test-kind]\nname = alpha\nmodule = a.so\n");
  m_Folder.Write("broken.ini", "[test-kind\n");
  QXPluginConfigs configs;
  EXPECT_EQ(Problems(configs).size(), 1u);
  std::filesystem::remove(m_Folder.m_Path / "a.ini");
  std::filesystem::remove(m_Folder.m_Path / "broken.ini");
  m_Folder.Write("b.ini", "[test-kind]\nname = beta\nmodule = b.so\n");
  configs.ReadAllPluginConfig();
  EXPECT_EQ(Found(configs, L"alpha"), "");
  EXPECT_EQ(Found(configs, L"beta"), "1 beta 1 " + Path("b.so"));
  EXPECT_TRUE(Problems(configs).empty());
}

TEST_F(QXPluginConfigsTest, FolderBesideTheLibraryIsReadFirst) {
  std::string const strFolder = Text(QXPluginConfigs::GetDefaultFolder());
  std::string const strTail = "/QxGraphics3D/plugins/";
  ASSERT_GT(strFolder.size(), strTail.size());
  ASSERT_EQ(strFolder.substr(strFolder.size() - strTail.size()), strTail);
  ASSERT_TRUE(std::filesystem::exists(strFolder.substr(0, strFolder.size() - strTail.size()) + "/libQxGraphics3D.so"));
  std::filesystem::create_directories(strFolder);
  std::string const strFile = strFolder + "qx_test_" + std::to_string(::getpid()) + ".ini";
  std::ofstream(strFile) << "[test-kind]\nname = installed\nmodule = installed.so\nnumber = 5\n";
  m_Folder.Write("a.ini", "[test-kind]\nname = alpha\nmodule = a.so\nnumber = 5\n");
  QXPluginConfigs const configs;
  std::filesystem::remove(strFile);
  EXPECT_EQ(Found(configs, L"installed"), "5 installed 1 " + strFolder + "installed.so");
  EXPECT_EQ(Found(configs, L"alpha"), "6 alpha 1 " + Path("a.so"));
}

// --- Broken configurations ---

struct BrokenCase {
  char const* m_szText;
  char const* m_szProblem;
};

class QXBrokenPluginConfig : public QXPluginConfigsTest, public testing::WithParamInterface<BrokenCase> {};

TEST_P(QXBrokenPluginConfig, IsLeftOutWholeAndToldWithItsLine) {
  m_Folder.Write("a.ini", GetParam().m_szText);
  m_Folder.Write("b.ini", "[test-kind]\nname = beta\nmodule = b.so\n");
  QXPluginConfigs const configs;
  EXPECT_EQ(Found(configs, L"alpha"), "");
  EXPECT_EQ(Found(configs, L"beta"), "1 beta 1 " + Path("b.so"));
  EXPECT_EQ(Problems(configs), std::vector<std::string>{GetParam().m_szProblem});
}

INSTANTIATE_TEST_SUITE_P(All, QXBrokenPluginConfig,
    testing::Values(BrokenCase{"", "a.ini:1: no plug-in; expected a section [kind] with name and module"},
        BrokenCase{"; nothing\n[test-kind]\n", "a.ini:1: no plug-in; expected a section [kind] with name and module"},
        BrokenCase{"name = alpha\nmodule = a.so\n",
            "a.ini:1: a key before the first section; put it under the plug-in's [kind]"},
        BrokenCase{"[test-kind]\nname = alpha\n", "a.ini:2: the section lacks module"},
        BrokenCase{"[test-kind]\nname = alpha\nmodule =\n", "a.ini:2: the section lacks module"},
        BrokenCase{"[test-kind]\n\nmodule = a.so\n", "a.ini:3: the section lacks name"},
        BrokenCase{"[test-kind]\nname = alpha\nmodul = a.so\n",
            "a.ini:3: unknown key; expected name, module, number or enabled"},
        BrokenCase{"[test-kind]\nname = alpha\nmodule = a.so\nnumber = one\n",
            "a.ini:4: number is a whole number from 0 to 2147483647"},
        BrokenCase{"[test-kind]\nname = alpha\nmodule = a.so\nnumber =\n",
            "a.ini:4: number is a whole number from 0 to 2147483647"},
        BrokenCase{"[test-kind]\nname = alpha\nmodule = a.so\nnumber = -1\n",
            "a.ini:4: number is a whole number from 0 to 2147483647"},
        BrokenCase{"[test-kind]\nname = alpha\nmodule = a.so\nnumber = 2147483648\n",
            "a.ini:4: number is a whole number from 0 to 2147483647"},
        BrokenCase{"[test-kind]\nname = alpha\nmodule = a.so\nnumber = 99999999999999999999999999\n",
            "a.ini:4: number is a whole number from 0 to 2147483647"},
        BrokenCase{"[test-kind]\nname = alpha\nmodule = a.so\nenabled = yes\n", "a.ini:4: enabled is true or false"},
        BrokenCase{"[test-kind]\nname = alpha\nmodule = a.so\nnonsense\n",
            "a.ini:4: expected [section], key = value or a comment"},
        BrokenCase{
            "[test-kind]\nname = alpha\nmodule = a.so\n[other]\nname = x\n", "a.ini:5: the section lacks module"}));

TEST_F(QXPluginConfigsTest, FilesThatCannotBeReadAreTold) {
  std::filesystem::create_directory(m_Folder.m_Path / "folder.ini");
  ASSERT_EQ(::mkfifo((m_Folder.m_Path / "pipe.ini").c_str(), 0600), 0);
  std::filesystem::create_symlink("nowhere", m_Folder.m_Path / "link.ini");
  m_Folder.Write("note.txt", "[test-kind]\nname = alpha\nmodule = a.so\n");
  m_Folder.Write(".ini", "[test-kind]\nname = hidden\nmodule = a.so\n");
  QXPluginConfigs const configs;
  std::vector<std::string> const arrExpected = {
      "folder.ini: is not a regular file", "link.ini: cannot be opened", "pipe.ini: is not a regular file"};
  EXPECT_EQ(Problems(configs), arrExpected);
  EXPECT_EQ(Found(configs, L"alpha"), "");
  EXPECT_EQ(Found(configs, L"hidden"), "");
}

TEST_F(QXPluginConfigsTest, FolderAddedTwiceIsReadOnce) {
  m_Folder.Write("a.ini", "nonsense");
  QXPluginConfigs::AddSearchFolder(m_Folder.GetName() + L"/");
  EXPECT_EQ(Problems(QXPluginConfigs()).size(), 1u);
}

TEST_F(QXPluginConfigsTest, MissingFolderOfAHostIsTold) {
  QXPluginConfigs::AddSearchFolder(m_Folder.GetName() + L"/missing");
  QXPluginConfigs const configs;
  QXPluginConfigs::RemoveSearchFolder(m_Folder.GetName() + L"/missing");
  EXPECT_EQ(Problems(configs),
      std::vector<std::string>{"missing/: the plug-in folder cannot be read: No such file or directory"});
}

TEST_F(QXPluginConfigsTest, ProblemsStayOneLine) {
  std::string const strReason = ":1: expected [section], key = value or a comment";
  // Line feed, delete, next line (a control character of the second range), line and paragraph separator.
  for (char const* szEnd : {"\n", "\x7F", "\xC2\x85", "\xE2\x80\xA8", "\xE2\x80\xA9"}) {
    std::string const strName = std::string("two") + szEnd + "lines.ini";
    m_Folder.Write(strName, "nonsense");
    EXPECT_EQ(Problems(QXPluginConfigs()), std::vector<std::string>{"two lines.ini" + strReason});
    std::filesystem::remove(m_Folder.m_Path / strName);
  }
  m_Folder.Write("stra\xC3\x9F\xC2\xA0.ini", "nonsense");
  EXPECT_EQ(Problems(QXPluginConfigs()), std::vector<std::string>{"stra\xC3\x9F\xC2\xA0.ini" + strReason});
}

TEST_F(QXPluginConfigsTest, FileCutAtAnyByteIsWholeOrLeftOut) {
  std::string const strWhole = "; a comment\n[test-kind]\nname = alpha\nmodule = a.so\nnumber = 12\nenabled = false\n";
  for (std::size_t nLength = 0; nLength <= strWhole.size(); ++nLength) {
    m_Folder.Write("a.ini", std::string_view(strWhole).substr(0, nLength));
    QXPluginConfigs const configs;
    QdcDict<int, QXPluginConfig> dictNumbers;
    unsigned char const bFound = configs.m_dictPlugins.Lookup(KIND, dictNumbers);
    bool const bPlugin = bFound && dictNumbers.GetCount() == 1;
    ASSERT_EQ(Problems(configs).size(), bPlugin ? 0u : 1u) << nLength;
    if (!bPlugin) continue;
    // What is read of a cut file is a true beginning: name whole, the module as far as it goes.
    std::string const strName = Text(dictNumbers.GetStartPosition()->second.m_strName);
    ASSERT_EQ(strName, "alpha") << nLength;
    ASSERT_EQ(Path("a.so").rfind(Found(configs, L"alpha").substr(Found(configs, L"alpha").find('/')), 0), 0u)
        << nLength;
  }
}

TEST_F(QXPluginConfigsTest, FileOfThousandsOfKindsIsReadInOrder) {
  // A time that grew with the square of the sections would show as a minute here.
  constexpr int nKinds = 60000;
  std::string strBytes;
  for (int nKind = 0; nKind < nKinds; ++nKind) {
    strBytes += "[k" + std::to_string(nKind) + "]\nname=n" + std::to_string(nKind) + "\nmodule=m\n";
  }
  m_Folder.Write("a.ini", strBytes);
  QXPluginConfigs const configs;
  EXPECT_TRUE(Problems(configs).empty());
  EXPECT_GE(configs.m_dictPlugins.GetCount(), static_cast<std::uint64_t>(nKinds));
  EXPECT_EQ(Text(configs.GetDefaultName(L"k0")), "n0");
  EXPECT_EQ(Text(configs.GetDefaultName(L"k59999")), "n59999");
}

TEST_F(QXPluginConfigsTest, RandomBytesNeverHarmTheOthers) {
  unsigned int const nSeed = 20261121;
  SCOPED_TRACE(nSeed);
  std::mt19937 random(nSeed);
  m_Folder.Write("b.ini", "[test-kind]\nname = beta\nmodule = b.so\n");
  std::string const strAlphabet =
      std::string("[]=;#\n\r \t\"\\ename module number enabled test-kind 1\xC3\xA4\xFF") + '\0';
  for (int nRound = 0; nRound < 200; ++nRound) {
    std::string strBytes(random() % 300, ' ');
    for (char& c : strBytes) {
      c = nRound % 2 ? static_cast<char>(random()) : strAlphabet[random() % strAlphabet.size()];
    }
    m_Folder.Write("a.ini", strBytes);
    QXPluginConfigs const configs;
    std::string const strFound = Found(configs, L"beta");
    ASSERT_EQ(strFound.substr(strFound.find(' ')), " beta 1 " + Path("b.so")) << nRound;
  }
}

}  // namespace
}  // namespace QXC
