#include <QxGraphics3D/frame/QXPluginConfigs.h>

#include <QxGraphics3D/frame/detail/QXOneLine.h>
#include <QxGraphics3D/frame/detail/QXPluginIni.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXMutex.h>
#include <QxGraphics3D/frame/foundation/toolkit/detail/QXIniFile.h>
#include <QxGraphics3D/frame/foundation/toolkit/detail/QXLibraryPath.h>

#include <algorithm>
#include <filesystem>
#include <limits>
#include <string>
#include <system_error>
#include <vector>

namespace QXC {

namespace {

struct SearchFolders {
  QXMutex m_Mutex{1};
  std::vector<QdcUnicodeString> m_arrFolders;

  // Kept until the process ends: static destructors of a host may still ask.
  static SearchFolders& Get() {
    static SearchFolders* const pFolders = new SearchFolders;
    return *pFolders;
  }
  void Remove(QdcUnicodeString const& strFolder) { std::erase(m_arrFolders, strFolder); }
  std::vector<QdcUnicodeString> GetAll() {
    QXMutexLock lock(m_Mutex);
    lock.lock();
    return m_arrFolders;
  }
};

QdcUnicodeString WithSeparator(QdcUnicodeString const& strFolder) {
  if (strFolder.IsEmpty() || strFolder.Right(1) == L"/") return strFolder;
  return strFolder + L"/";
}

// Names of the configuration files of a folder, sorted; empty with a reason in error if it cannot be read.
std::vector<QdcUnicodeString> ListIniFiles(QdcUnicodeString const& strFolder, std::error_code& error) {
  std::vector<QdcUnicodeString> arrNames;
  std::filesystem::directory_iterator file(strFolder.ToMBString().Cstr(), error);
  for (; !error && file != std::filesystem::directory_iterator(); file.increment(error)) {
    std::filesystem::path const name = file->path().filename();
    if (name.extension() == ".ini") arrNames.push_back(QdcUnicodeString::FromUTF8(name.c_str()));
  }
  std::sort(arrNames.begin(), arrNames.end());
  return arrNames;
}

}  // namespace

QXPluginConfigs::QXPluginConfigs() {
  ReadAllPluginConfig();
}

void QXPluginConfigs::AddSearchFolder(QdcUnicodeString const& strFolder) {
  SearchFolders& folders = SearchFolders::Get();
  QXMutexLock lock(folders.m_Mutex);
  lock.lock();
  folders.Remove(WithSeparator(strFolder));
  folders.m_arrFolders.push_back(WithSeparator(strFolder));
}

void QXPluginConfigs::RemoveSearchFolder(QdcUnicodeString const& strFolder) {
  SearchFolders& folders = SearchFolders::Get();
  QXMutexLock lock(folders.m_Mutex);
  lock.lock();
  folders.Remove(WithSeparator(strFolder));
}

QdcUnicodeString QXPluginConfigs::GetDefaultFolder() {
  return detail::LibraryFolder() + L"QxGraphics3D/plugins/";
}

void QXPluginConfigs::ReadAllPluginConfig() {
  m_dictPlugins.RemoveAll();
  m_dictModulePaths.RemoveAll();
  m_arrProblems.RemoveAll();
  ReadFolder(GetDefaultFolder(), 0);
  for (QdcUnicodeString const& strFolder : SearchFolders::Get().GetAll()) ReadFolder(strFolder, 1);
}

void QXPluginConfigs::ReadFolder(QdcUnicodeString const& strFolder, unsigned char bRequired) {
  std::error_code error;
  std::vector<QdcUnicodeString> const arrNames = ListIniFiles(strFolder, error);
  if (error) {
    // A library installed without plug-ins has no folder beside it; a folder that a host names must be there.
    if (bRequired == 0 && error == std::errc::no_such_file_or_directory) return;
    // Not through Format: the system words its reason in the host's encoding, which need not be UTF-8.
    QdcUnicodeString const strReason = QdcUnicodeString::FromUTF8(error.message().c_str());
    m_arrProblems.Add(detail::OneLine(strFolder + L": the plug-in folder cannot be read: " + strReason));
    return;
  }
  for (QdcUnicodeString const& strName : arrNames) ReadFile(strFolder, strName);
}

void QXPluginConfigs::ReadFile(QdcUnicodeString const& strFolder, QdcUnicodeString const& strFileName) {
  QdcUnicodeString const strPath = strFolder + strFileName;
  detail::QXIniFile file;
  if (file.Load(strPath) == 0) {
    m_arrProblems.Add(detail::OneLine(file.GetErrorText()));
    return;
  }
  QdcUnicodeString strProblem;
  for (detail::QXPluginEntry const& entry : detail::ReadPluginEntries(file.GetEntries(), strPath, strProblem)) {
    bool const bAbsolute = entry.m_strModule.GetAt(0) == L'/';
    Store(entry.m_strKind, entry.m_Config, bAbsolute ? entry.m_strModule : strFolder + entry.m_strModule);
  }
  if (!strProblem.IsEmpty()) m_arrProblems.Add(detail::OneLine(strProblem));
}

void QXPluginConfigs::Store(
    QdcUnicodeString const& strKind, QXPluginConfig config, QdcUnicodeString const& strModulePath) {
  RemoveByName(strKind, config.m_strName);
  QdcDict<int, QXPluginConfig>& dictNumbers = m_dictPlugins[strKind];
  while (!dictNumbers.IsEOF(dictNumbers.Find(config.m_nNumber))) {
    config.m_nNumber = config.m_nNumber == std::numeric_limits<int>::max() ? 0 : config.m_nNumber + 1;
  }
  dictNumbers[config.m_nNumber] = config;
  m_dictModulePaths[strKind][config.m_nNumber] = strModulePath;
}

void QXPluginConfigs::RemoveByName(QdcUnicodeString const& strKind, QdcUnicodeString const& strName) {
  QXPluginConfig config;
  QdcUnicodeString strModulePath;
  if (Find(strKind, strName, config, strModulePath) == 0) return;
  m_dictPlugins[strKind].RemoveKey(config.m_nNumber);
  m_dictModulePaths[strKind].RemoveKey(config.m_nNumber);
}

unsigned char QXPluginConfigs::Find(QdcUnicodeString const& strKind, QdcUnicodeString const& strName,
    QXPluginConfig& config, QdcUnicodeString& strModulePath) const {
  auto const kind = m_dictPlugins.Find(strKind);
  if (m_dictPlugins.IsEOF(kind)) return 0;
  QdcDict<int, QXPluginConfig> const& dictNumbers = kind->second;
  for (auto position = dictNumbers.GetStartPosition(); !dictNumbers.IsEOF(position); ++position) {
    if (position->second.m_strName != strName) continue;
    config = position->second;
    auto const paths = m_dictModulePaths.Find(strKind);
    return m_dictModulePaths.IsEOF(paths) ? 0 : paths->second.Lookup(position->first, strModulePath);
  }
  return 0;
}

QdcUnicodeString QXPluginConfigs::GetDefaultName(QdcUnicodeString const& strKind) const {
  auto const kind = m_dictPlugins.Find(strKind);
  if (m_dictPlugins.IsEOF(kind)) return QdcUnicodeString();
  QdcDict<int, QXPluginConfig> const& dictNumbers = kind->second;
  for (auto position = dictNumbers.GetStartPosition(); !dictNumbers.IsEOF(position); ++position) {
    if (position->second.m_bEnabled) return position->second.m_strName;
  }
  return QdcUnicodeString();
}

QdcArray<QdcUnicodeString> const& QXPluginConfigs::GetProblems() const {
  return m_arrProblems;
}

}  // namespace QXC
