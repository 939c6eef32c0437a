#include <QxGraphics3D/frame/foundation/stream/QXFile.h>

#include <QxGraphics3D/frame/foundation/base/detail/QXWideFormat.h>

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <dirent.h>
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
  /// Ends in a '/'.
  std::string m_strRoot;
  QdcUnicodeString m_strFilter;
  /// Folders that wait, relative to the root and with a '/' at their end.
  std::vector<std::string> m_vecFolders{std::string()};
  std::vector<std::pair<QdcUnicodeString, QdcUnicodeString>> m_vecFound;
};

enum class EntryKind { File, Folder, Other };

EntryKind KindOf(mode_t nMode) {
  if (S_ISREG(nMode)) return EntryKind::File;
  return S_ISDIR(nMode) ? EntryKind::Folder : EntryKind::Other;
}

/// Most folders say of their entries what they are; only links, and entries of folders that do not, are looked at.
EntryKind KindOf(dirent const& entry, std::string const& strFolder) {
  if (entry.d_type == DT_REG) return EntryKind::File;
  if (entry.d_type == DT_DIR) return EntryKind::Folder;
  if (entry.d_type != DT_LNK && entry.d_type != DT_UNKNOWN) return EntryKind::Other;
  std::string const strPath = strFolder + entry.d_name;
  struct stat status = {};
  if (lstat(strPath.c_str(), &status) != 0) return EntryKind::Other;
  if (!S_ISLNK(status.st_mode)) return KindOf(status.st_mode);
  // What a link leads to counts if it is a file; a folder behind a link may hold the link itself.
  return stat(strPath.c_str(), &status) == 0 && S_ISREG(status.st_mode) ? EntryKind::File : EntryKind::Other;
}

bool Matches(Listing const& listing, char const* szName) {
  return listing.m_strFilter.IsEmpty() != 0 ||
         MatchesFilter(QdcUnicodeString::FromUTF8(szName).Cstr(), listing.m_strFilter.Cstr());
}

struct CloseFolder {
  void operator()(DIR* pFolder) const { closedir(pFolder); }
};

void ListFolder(Listing& listing, std::string const& strFolder, bool bSubFolders) {
  std::string const strPlace = listing.m_strRoot + strFolder;
  std::unique_ptr<DIR, CloseFolder> const pFolder(opendir(strPlace.c_str()));
  if (!pFolder) return;
  while (dirent const* const pEntry = readdir(pFolder.get())) {
    std::string_view const name = pEntry->d_name;
    if (name == "." || name == "..") continue;
    EntryKind const kind = KindOf(*pEntry, strPlace);
    if (kind == EntryKind::Folder) {
      if (bSubFolders) listing.m_vecFolders.push_back(strFolder + pEntry->d_name + '/');
    } else if (kind == EntryKind::File && Matches(listing, pEntry->d_name)) {
      QdcUnicodeString const strWide = QdcUnicodeString::FromUTF8((strFolder + pEntry->d_name).c_str());
      listing.m_vecFound.emplace_back(QXFile::StripExt(strWide), strWide);
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
  listing.m_strRoot = strFolder.ToMBString().Cstr();
  if (listing.m_strRoot.empty()) return;
  if (listing.m_strRoot.back() != '/') listing.m_strRoot += '/';
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
