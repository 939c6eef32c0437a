#include <QxGraphics3D/frame/QXPluginModule.h>

#include <dlfcn.h>
#include <sys/stat.h>

#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include <QxGraphics3D/frame/QXPluginConfigs.h>

#include "QXTempFolder.h"
#include "plugins/QXTestPluginObject.h"

namespace QXC {
namespace {

std::string Text(QdcUnicodeString const& strText) {
  return strText.ToMBString().Cstr();
}

std::string ModulePath(std::string const& strName) {
  return std::string(QX_BINARY_DIR "/tests/frame/plugins/") + strName + ".so";
}

/// The module, or null with the message in strError.
std::unique_ptr<QXPluginModule> LoadFile(
    std::string const& strPath, std::string& strError, wchar_t const* szKind = L"test") {
  QdcUnicodeString strReason = L"left from before";
  std::unique_ptr<QXPluginModule> pModule(
      QXPluginModule::LoadFile(QdcUnicodeString::FromUTF8(strPath.c_str()), szKind, L"tester", strReason));
  strError = Text(strReason);
  return pModule;
}

std::string RefusalOf(std::string const& strName) {
  std::string strError;
  EXPECT_EQ(LoadFile(ModulePath(strName), strError), nullptr);
  std::string const strSubject = "test 'tester': " + ModulePath(strName) + " ";
  EXPECT_EQ(strError.substr(0, strSubject.size()), strSubject);
  return strError.size() < strSubject.size() ? strError : strError.substr(strSubject.size());
}

bool IsLoaded(std::string const& strPath) {
  void* const hModule = ::dlopen(strPath.c_str(), RTLD_NOW | RTLD_NOLOAD);
  if (hModule) ::dlclose(hModule);
  return hModule != nullptr;
}

TEST(QXPluginModule, GoodModuleMakesAndDestroysItsObjects) {
  std::string strError;
  std::unique_ptr<QXPluginModule> const pModule = LoadFile(ModulePath("good"), strError);
  ASSERT_NE(pModule, nullptr) << strError;
  EXPECT_EQ(strError, "");
  EXPECT_TRUE(pModule->GetKind() == L"test");
  EXPECT_TRUE(pModule->GetName() == L"tester");
  EXPECT_EQ(Text(pModule->GetPath()), ModulePath("good"));
  QdcUnicodeString strReason = L"left from before";
  auto* const pObject = static_cast<QXTestPluginObject*>(pModule->Create(strReason));
  ASSERT_NE(pObject, nullptr);
  EXPECT_TRUE(strReason.IsEmpty());
  EXPECT_EQ(pObject->m_nMagic, 0x5158);
  int nDeaths = 0;
  pObject->m_pDeaths = &nDeaths;
  pModule->Destroy(pObject);
  EXPECT_EQ(nDeaths, 1);
  pModule->Destroy(nullptr);
}

TEST(QXPluginModule, SymbolsStayLocalAndTheModuleStaysLoaded) {
  std::string strError;
  LoadFile(ModulePath("good"), strError).reset();
  EXPECT_EQ(::dlsym(RTLD_DEFAULT, "QXTestPluginMarker"), nullptr);
  EXPECT_TRUE(IsLoaded(ModulePath("good")));
}

TEST(QXPluginModule, BareFileNameMeansTheCurrentFolder) {
  std::filesystem::path const before = std::filesystem::current_path();
  std::filesystem::current_path(std::filesystem::path(ModulePath("good")).parent_path());
  std::string strError;
  std::unique_ptr<QXPluginModule> const pModule = LoadFile("good.so", strError);
  EXPECT_EQ(LoadFile("libm.so.6", strError), nullptr);
  std::filesystem::current_path(before);
  EXPECT_NE(pModule, nullptr);
  EXPECT_EQ(
      strError, "test 'tester': libm.so.6 does not exist; install the plug-in or correct 'module' in its .ini file");
}

TEST(QXPluginModule, KindThatTheModuleDoesNotKnowIsAReasonAtCreation) {
  std::string strError;
  std::unique_ptr<QXPluginModule> const pModule = LoadFile(ModulePath("good"), strError, L"renderer");
  ASSERT_NE(pModule, nullptr);
  QdcUnicodeString strReason;
  EXPECT_EQ(pModule->Create(strReason), nullptr);
  EXPECT_EQ(Text(strReason), "renderer 'tester': " + ModulePath("good") +
                                 " makes no renderer; correct the section of 'module' in its .ini file");
}

TEST(QXPluginModule, OtherVersionIsRefusedBeforeAnythingIsCreated) {
  std::string const strNeeds = ", this library needs " + std::to_string(QX_PLUGIN_INTERFACE_VERSION) +
                               "; install the plug-in of the same release";
  EXPECT_EQ(RefusalOf("other_version"),
      "has interface version " + std::to_string(QX_PLUGIN_INTERFACE_VERSION + 6) + strNeeds);
  EXPECT_EQ(RefusalOf("other_version_only"),
      "has interface version " + std::to_string(QX_PLUGIN_INTERFACE_VERSION - 1) + strNeeds);
  EXPECT_FALSE(IsLoaded(ModulePath("other_version")));
}

TEST(QXPluginModule, VersionThatThrowsIsAReason) {
  EXPECT_EQ(
      RefusalOf("throwing_version"), "fails to tell its interface version (no version today); install a whole plug-in");
}

TEST(QXPluginModule, MissingEntryPointIsNamed) {
  for (auto const& [szModule, szFunction] : {std::pair{"no_version", "QXPluginInterfaceVersion"},
           std::pair{"no_create", "QXPluginCreate"}, std::pair{"no_destroy", "QXPluginDestroy"}}) {
    EXPECT_EQ(RefusalOf(szModule),
        std::string("does not export ") + szFunction + ", so it is no plug-in; correct 'module' in its .ini file");
  }
}

TEST(QXPluginModule, MissingModuleIsToldWithItsPath) {
  EXPECT_EQ(RefusalOf("missing"), "does not exist; install the plug-in or correct 'module' in its .ini file");
}

TEST(QXPluginModule, ModuleThatNeedsAMissingFunctionIsRefusedAtLoading) {
  std::string const strRefusal = RefusalOf("unresolved");
  EXPECT_EQ(strRefusal.find("cannot be loaded: "), 0u) << strRefusal;
  EXPECT_NE(strRefusal.find("QXFunctionOfNobody"), std::string::npos) << strRefusal;
}

TEST(QXPluginModule, ExceptionDuringCreationBecomesOneLine) {
  std::string strError;
  QdcUnicodeString strReason;
  std::unique_ptr<QXPluginModule> const pModule = LoadFile(ModulePath("throwing"), strError);
  ASSERT_NE(pModule, nullptr);
  EXPECT_EQ(pModule->Create(strReason), nullptr);
  EXPECT_EQ(
      Text(strReason), "test 'tester': " + ModulePath("throwing") +
                           " failed to start: no device second line; check what the plug-in needs on this machine");
  std::unique_ptr<QXPluginModule> const pNumber = LoadFile(ModulePath("throwing"), strError, L"throws-number");
  ASSERT_NE(pNumber, nullptr);
  EXPECT_EQ(pNumber->Create(strReason), nullptr);
  EXPECT_NE(Text(strReason).find("an exception that is no std::exception"), std::string::npos);
}

TEST(QXPluginModule, ThreadThatEndsDuringCreationEndsWithoutHarm) {
  std::string strError;
  std::unique_ptr<QXPluginModule> const pModule = LoadFile(ModulePath("throwing"), strError, L"ends-thread");
  ASSERT_NE(pModule, nullptr);
  struct Call {
    QXPluginModule* m_pModule;
    bool m_bReturned = false;
  } call{pModule.get()};
  // A bare thread: its function may be unwound to the end, which std::thread's would not allow.
  pthread_t hThread{};
  ASSERT_EQ(::pthread_create(
                &hThread, nullptr,
                [](void* pCall) -> void* {
                  QdcUnicodeString strReason;
                  static_cast<Call*>(pCall)->m_pModule->Create(strReason);
                  static_cast<Call*>(pCall)->m_bReturned = true;
                  return pCall;
                },
                &call),
      0);
  void* pResult = &call;
  ASSERT_EQ(::pthread_join(hThread, &pResult), 0);
  EXPECT_EQ(pResult, nullptr);
  EXPECT_FALSE(call.m_bReturned);
}

// --- Files that are no modules ---

class QXBadModuleFile : public testing::Test {
protected:
  std::string RefusalOfFile(std::string const& strName) {
    std::string strError;
    EXPECT_EQ(LoadFile((m_Folder.m_Path / strName).string(), strError), nullptr) << strName;
    std::string const strSubject = "test 'tester': " + (m_Folder.m_Path / strName).string() + " ";
    EXPECT_EQ(strError.substr(0, strSubject.size()), strSubject);
    strError.erase(0, strSubject.size());
    return strError.substr(0, strError.find(';'));
  }
  QXTempFolder m_Folder;
};

TEST_F(QXBadModuleFile, FoldersPipesAndTextAreRefused) {
  std::filesystem::create_directory(m_Folder.m_Path / "folder.so");
  EXPECT_EQ(RefusalOfFile("folder.so"), "is not a regular file");
  ASSERT_EQ(::mkfifo((m_Folder.m_Path / "pipe.so").c_str(), 0600), 0);
  EXPECT_EQ(RefusalOfFile("pipe.so"), "is not a regular file");
  m_Folder.Write("empty.so", "");
  EXPECT_EQ(RefusalOfFile("empty.so"), "is no shared library");
  m_Folder.Write("text.so", std::string(4096, 'x'));
  EXPECT_EQ(RefusalOfFile("text.so"), "is no shared library");
}

TEST_F(QXBadModuleFile, ModuleCutShortIsRefusedWhereTheLoaderWouldCrash) {
  std::ifstream file(ModulePath("good"), std::ios::binary);
  std::string const strBytes{std::istreambuf_iterator<char>(file), {}};
  ASSERT_GT(strBytes.size(), 4096u);
  m_Folder.Write("whole.so", strBytes);
  std::string strError;
  EXPECT_NE(LoadFile((m_Folder.m_Path / "whole.so").string(), strError), nullptr) << strError;
  for (std::size_t nLength = 0; nLength < 64; ++nLength) {
    m_Folder.Write("cut.so", std::string_view(strBytes).substr(0, nLength));
    EXPECT_EQ(RefusalOfFile("cut.so"), "is no shared library") << nLength;
  }
  // Debug data and section headers stand behind the segments, so only what cuts a segment must be refused.
  for (std::size_t nLength = 64; nLength < 4096; nLength += 61) {
    m_Folder.Write("cut.so", std::string_view(strBytes).substr(0, nLength));
    EXPECT_EQ(RefusalOfFile("cut.so"), "is cut short") << nLength;
  }
}

TEST_F(QXBadModuleFile, HeaderThatPointsOutsideTheFileIsRefused) {
  std::ifstream file(ModulePath("good"), std::ios::binary);
  std::string strBytes{std::istreambuf_iterator<char>(file), {}};
  for (std::size_t nByte = 32; nByte < 40; ++nByte) strBytes[nByte] = '\xFF';  // where the segment table stands
  m_Folder.Write("table.so", strBytes);
  EXPECT_EQ(RefusalOfFile("table.so"), "is cut short");
}

// --- Through the configuration ---

class QXConfiguredModule : public testing::Test {
protected:
  QXConfiguredModule() { QXPluginConfigs::AddSearchFolder(m_Folder.GetName()); }
  ~QXConfiguredModule() override { QXPluginConfigs::RemoveSearchFolder(m_Folder.GetName()); }

  void Configure(std::string const& strName, std::string const& strMore = "") {
    m_Folder.Write(
        strName + ".ini", "[test]\nname = " + strName + "\nmodule = " + ModulePath(strName) + "\n" + strMore);
  }
  static std::unique_ptr<QXPluginModule> Load(
      wchar_t const* szName, std::string& strError, wchar_t const* szKind = L"test") {
    QdcUnicodeString strReason;
    QXPluginConfigs const configs;
    std::unique_ptr<QXPluginModule> pModule(QXPluginModule::Load(configs, szKind, szName, strReason));
    strError = Text(strReason);
    return pModule;
  }
  QXTempFolder m_Folder;
};

TEST_F(QXConfiguredModule, IsLoadedByItsName) {
  Configure("good");
  std::string strError;
  std::unique_ptr<QXPluginModule> const pModule = Load(L"good", strError);
  ASSERT_NE(pModule, nullptr) << strError;
  EXPECT_TRUE(pModule->GetName() == L"good");
  EXPECT_EQ(Text(pModule->GetPath()), ModulePath("good"));
}

TEST_F(QXConfiguredModule, EmptyNameTakesTheDefaultOne) {
  Configure("good", "number = 2\n");
  Configure("missing", "number = 1\nenabled = false\n");
  std::string strError;
  std::unique_ptr<QXPluginModule> const pModule = Load(L"", strError);
  ASSERT_NE(pModule, nullptr) << strError;
  EXPECT_TRUE(pModule->GetName() == L"good");
}

TEST_F(QXConfiguredModule, UnknownNameIsToldWithTheKnownOnes) {
  Configure("good", "number = 2\n");
  Configure("throwing", "number = 1\n");
  std::string strError;
  EXPECT_EQ(Load(L"fancy", strError), nullptr);
  EXPECT_EQ(strError, "test 'fancy': no plug-in of this name is configured; choose one of: throwing, good");
}

TEST_F(QXConfiguredModule, EmptyNameWithoutAnEnabledPluginTellsWhichOnesThereAre) {
  Configure("good", "number = 2\nenabled = false\n");
  Configure("throwing", "number = 1\nenabled = false\n");
  std::string strError;
  EXPECT_EQ(Load(L"", strError), nullptr);
  EXPECT_EQ(strError,
      "test: every plug-in of this kind is disabled; set 'enabled = true' in the .ini file of one of: throwing, good");
}

TEST_F(QXConfiguredModule, UnknownKindIsToldWithTheFolder) {
  std::string strError;
  EXPECT_EQ(Load(L"good", strError, L"kind of nobody"), nullptr);
  EXPECT_EQ(strError, "kind of nobody 'good': no plug-in of this kind is configured; put its .ini file into " +
                          Text(QXPluginConfigs::GetDefaultFolder()));
}

TEST_F(QXConfiguredModule, BrokenConfigurationIsToldToo) {
  m_Folder.Write("good.ini", "[test]\nname = good\n");
  std::string strError;
  EXPECT_EQ(Load(L"good", strError), nullptr);
  std::string const strTail =
      " (left out: " + (m_Folder.m_Path / "good.ini").string() + ":2: the section lacks module)";
  ASSERT_GT(strError.size(), strTail.size());
  EXPECT_EQ(strError.substr(strError.size() - strTail.size()), strTail);
}

TEST_F(QXConfiguredModule, DisabledPluginIsRefused) {
  Configure("good", "enabled = false\n");
  std::string strError;
  EXPECT_EQ(Load(L"good", strError), nullptr);
  EXPECT_EQ(strError, "test 'good': " + ModulePath("good") + " is disabled; set 'enabled = true' in its .ini file");
}

TEST_F(QXConfiguredModule, RefusalOfTheModuleIsHandedOn) {
  Configure("other_version");
  std::string strError;
  EXPECT_EQ(Load(L"other_version", strError), nullptr);
  EXPECT_NE(strError.find("has interface version"), std::string::npos) << strError;
}

}  // namespace
}  // namespace QXC
