#include <QxGraphics3D/frame/foundation/toolkit/detail/QXLibraryPath.h>

#include <dlfcn.h>
#include <limits.h>
#include <link.h>
#include <stdlib.h>
#include <sys/stat.h>

#include <string>

namespace QXC::detail {

namespace {

// Anything whose address lies in this module.
constexpr char nAnchor = 0;

// The main program has an empty name in the linker's list; what it was started as says nothing about its place.
std::string ModuleFile() {
  Dl_info info{};
  link_map* pModule = nullptr;
  if (::dladdr1(&nAnchor, &info, reinterpret_cast<void**>(&pModule), RTLD_DL_LINKMAP) == 0 || !pModule) return {};
  char const* const szName = pModule->l_name && *pModule->l_name ? pModule->l_name : "/proc/self/exe";
  char resolved[PATH_MAX];
  return ::realpath(szName, resolved) ? resolved : "";
}

std::string FolderOf(std::string const& strFile) {
  return strFile.substr(0, strFile.rfind('/') + 1);
}

bool IsFolder(std::string const& strPath) {
  struct stat status {};
  return ::stat(strPath.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

}  // namespace

QdcUnicodeString LibraryFolder() {
  return QdcUnicodeString::FromUTF8(FolderOf(ModuleFile()).c_str());
}

QdcUnicodeString DataFolder() {
  std::string const folder = FolderOf(ModuleFile());
  // The second for programs that carry the library's object files themselves and stand in the folder for programs.
  for (char const* szWay : {QX_DATA_FROM_LIBRARY, QX_DATA_FROM_PROGRAM}) {
    std::string const candidate = folder + szWay + "/";
    if (!folder.empty() && IsFolder(candidate)) return QdcUnicodeString::FromUTF8(candidate.c_str());
  }
  return {};
}

}  // namespace QXC::detail
