#include <plugins/assimp/QXPictureFinder.h>

#include <QxGraphics3D/frame/foundation/fileparser/QXModelImage.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <system_error>

namespace QXAssimp {

namespace {

namespace fs = std::filesystem;

bool IsFile(fs::path const& path) {
  std::error_code error;
  return fs::is_regular_file(path, error);
}

int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

/// "%20" and its like as the characters they stand for; an escaped zero ends no name.
std::string Unescape(std::string const& strText) {
  std::string strResult;
  for (std::size_t i = 0; i < strText.size(); ++i) {
    int const nHigh = strText[i] == '%' && i + 2 < strText.size() ? HexDigit(strText[i + 1]) : -1;
    int const nLow = nHigh >= 0 ? HexDigit(strText[i + 2]) : -1;
    if (nLow >= 0 && 16 * nHigh + nLow != 0) {
      strResult += static_cast<char>(16 * nHigh + nLow);
      i += 2;
    } else {
      strResult += strText[i];
    }
  }
  return strResult;
}

bool EqualNoCase(std::string const& strA, std::string const& strB) {
  return std::equal(strA.begin(), strA.end(), strB.begin(), strB.end(), [](char a, char b) {
    return std::tolower(static_cast<unsigned char>(a)) == std::tolower(static_cast<unsigned char>(b));
  });
}

/// The entry of a folder by a name in any case; of several the first by their bytes. Empty if there is none.
fs::path FindEntry(fs::path const& folder, std::string const& strName) {
  std::error_code error;
  if (fs::exists(folder / strName, error)) return folder / strName;
  std::string strFound;
  for (fs::directory_iterator it(folder, error), itEnd; !error && it != itEnd; it.increment(error)) {
    std::string const strEntry = it->path().filename().string();
    if (EqualNoCase(strEntry, strName) && (strFound.empty() || strEntry < strFound)) strFound = strEntry;
  }
  return strFound.empty() ? fs::path() : folder / strFound;
}

/// Goes down a relative path, each step in any case.
fs::path FindNoCase(fs::path const& folder, fs::path const& name) {
  if (name.is_absolute()) return fs::path();
  fs::path place = folder;
  for (fs::path const& step : name) {
    if (step.empty()) return fs::path();
    place = FindEntry(place, step.string());
    if (place.empty()) return place;
  }
  return place;
}

}  // namespace

std::string FindPicture(std::string const& strFolder, std::string const& strName) {
  fs::path const folder(strFolder);
  std::string strSlashes = strName;
  std::replace(strSlashes.begin(), strSlashes.end(), '\\', '/');
  std::string const strPlain = Unescape(strSlashes);
  std::string const* const arrNames[] = {&strName, &strSlashes, &strPlain};
  for (std::string const* pName : arrNames)
    if (IsFile(folder / *pName)) return (folder / *pName).string();
  fs::path const bare = fs::path(strPlain).filename();
  for (fs::path const& path : {FindNoCase(folder, strPlain), FindNoCase(folder, bare)})
    if (!path.empty() && IsFile(path)) return path.string();
  // Importers hand on the comment that stands behind a name.
  if (std::size_t const nComment = strName.find(" #"); nComment != std::string::npos) {
    std::size_t const nEnd = strName.find_last_not_of(' ', nComment);
    std::string const strPath = FindPicture(strFolder, strName.substr(0, nEnd == std::string::npos ? 0 : nEnd + 1));
    if (IsFile(strPath)) return strPath;
  }
  return (folder / strSlashes).string();
}

void FindPictures(std::string const& strFolder, QXC::ModelDataInfo& model) {
  for (int i = 0; i < model.GetImageCount(); ++i) {
    QXC::QXModelImage& image = *model.GetImage(i);
    image.m_strFilePath = L"";
    if (strFolder.empty() || image.m_arrBytes.GetSize() != 0) continue;
    std::string const strName = image.m_strName.ToMBString().Cstr();
    image.m_strFilePath = QXC::QdcUnicodeString::FromUTF8(FindPicture(strFolder, strName).c_str());
  }
}

}  // namespace QXAssimp
