#include <QxGraphics3D/frame/foundation/stream/QXFile.h>

#include <QxGraphics3D/frame/foundation/base/detail/QXWideFormat.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include <sys/stat.h>

namespace QXC {

namespace {

constexpr wchar_t const* TemporaryMark = L".|temp";

/// Where the extension begins, the length of the text if there is none.
int FindExtension(wchar_t const* szPath) {
  int nName = 0;
  int nDot = -1;
  int i = 0;
  for (; szPath[i] != 0; ++i) {
    if (szPath[i] == L'/') {
      nName = i + 1;
      nDot = -1;
    } else if (szPath[i] == L'.' && i != nName) {
      nDot = i;
    }
  }
  return nDot < 0 ? i : nDot;
}

bool IsFileThere(QdcUnicodeString const& strPath) {
  struct stat status = {};
  return stat(strPath.ToMBString().Cstr(), &status) == 0 && !S_ISDIR(status.st_mode);
}

/// On a mismatch the last '*' takes one character more: linear in both texts for each star.
bool MatchesFilter(wchar_t const* szName, wchar_t const* szFilter) {
  wchar_t const* szStar = nullptr;
  wchar_t const* szResume = nullptr;
  while (*szName != 0) {
    if (*szFilter == L'*') {
      szStar = szFilter++;
      szResume = szName;
    } else if (*szFilter != 0 && (*szFilter == L'?' || detail::FoldCase(*szFilter) == detail::FoldCase(*szName))) {
      ++szFilter;
      ++szName;
    } else if (szStar != nullptr) {
      szFilter = szStar + 1;
      szName = ++szResume;
    } else {
      return false;
    }
  }
  while (*szFilter == L'*') ++szFilter;
  return *szFilter == 0;
}

struct Listing {
  std::filesystem::path m_pathRoot;
  QdcUnicodeString m_strFilter;
  /// Folders that wait, relative to the root and with a '/' at their end.
  std::vector<std::string> m_vecFolders{std::string()};
  std::vector<std::pair<QdcUnicodeString, QdcUnicodeString>> m_vecFound;
};

void ListFolder(Listing& listing, std::string const& strFolder, bool bSubFolders) {
  std::error_code error;
  std::filesystem::directory_iterator it(listing.m_pathRoot / strFolder, error);
  for (; !error && it != std::filesystem::directory_iterator(); it.increment(error)) {
    std::error_code statusError;
    std::string const strPath = strFolder + it->path().filename().native();
    if (it->symlink_status(statusError).type() == std::filesystem::file_type::directory) {
      if (bSubFolders) listing.m_vecFolders.push_back(strPath + '/');
    } else if (it->is_regular_file(statusError)) {
      QdcUnicodeString const strName = QdcUnicodeString::FromUTF8(it->path().filename().c_str());
      if (listing.m_strFilter.IsEmpty() != 0 || MatchesFilter(strName.Cstr(), listing.m_strFilter.Cstr())) {
        QdcUnicodeString const strWide = QdcUnicodeString::FromUTF8(strPath.c_str());
        listing.m_vecFound.emplace_back(QXFile::StripExt(strWide), strWide);
      }
    }
  }
}

}  // namespace

QdcUnicodeString QXFile::GetExt(QdcUnicodeString const& strPath) {
  return QdcUnicodeString(strPath.Cstr() + FindExtension(strPath.Cstr()));
}

QdcUnicodeString QXFile::StripExt(QdcUnicodeString const& strPath) {
  return QdcUnicodeString(strPath.Cstr(), FindExtension(strPath.Cstr()));
}

unsigned char QXFile::IsExist(QdcUnicodeString const& strPath) {
  if (IsFileThere(strPath)) return 1;
  if (GetExt(strPath) != TemporaryMark) return 0;
  return static_cast<unsigned char>(IsFileThere(StripExt(strPath)));
}

void QXFile::ListFiles(QdcUnicodeString const& strFolder, QdcArray<QdcUnicodeString>& arrFiles,
    QdcUnicodeString const& strFilter, int nFlags) {
  Listing listing;
  listing.m_pathRoot = std::filesystem::path(strFolder.ToMBString().Cstr());
  listing.m_strFilter = strFilter;
  while (!listing.m_vecFolders.empty()) {
    std::string const strNext = std::move(listing.m_vecFolders.back());
    listing.m_vecFolders.pop_back();
    ListFolder(listing, strNext, (nFlags & LIST_SUB_FOLDERS) != 0);
  }
  std::sort(listing.m_vecFound.begin(), listing.m_vecFound.end());
  for (auto const& found : listing.m_vecFound) arrFiles.Add(found.second);
}

}  // namespace QXC
