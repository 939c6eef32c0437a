#include <apps/qx3d/QXWholeFile.h>

#include <apps/qx3d/QXMessage.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace QXApp {

std::string ReadWholeFile(
    std::string const& strPath, std::uintmax_t nMaxMiB, std::string const& strKind, std::string& strBytes) {
  if (!IsUtf8(strPath)) return "the name is no UTF-8 text; rename the file";
  std::error_code error;
  std::filesystem::file_status const status = std::filesystem::status(strPath, error);
  if (!std::filesystem::exists(status)) return "no such file; correct the name";
  if (std::filesystem::is_directory(status)) return "this is a directory; give the " + strKind + " inside it";
  if (!std::filesystem::is_regular_file(status)) return "this is no regular file; give a " + strKind;
  std::uintmax_t const nSize = std::filesystem::file_size(strPath, error);
  if (error || nSize > nMaxMiB << 20)
    return "the file is larger than " + std::to_string(nMaxMiB) + " MiB; cut it into several";
  std::ifstream file(strPath, std::ios::binary);
  if (!file) return "the file cannot be read; change its permissions";
  strBytes.resize(static_cast<std::size_t>(nSize));
  file.read(strBytes.data(), static_cast<std::streamsize>(nSize));
  strBytes.resize(static_cast<std::size_t>(std::max<std::streamsize>(file.gcount(), 0)));
  return file ? std::string() : "the file cannot be read to its end; get another copy";
}

}  // namespace QXApp
