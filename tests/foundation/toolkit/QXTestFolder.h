/// @file
/// A folder of its own for one test, gone when the test ends.
#pragma once

#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

#include <stdlib.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <system_error>

namespace QXC {

class QXTestFolder {
public:
  QXTestFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "qx_test_XXXXXX").string();
    if (!::mkdtemp(name.data())) throw std::system_error(errno, std::generic_category(), "no test folder");
    m_Path = name;
  }
  QXTestFolder(QXTestFolder const&) = delete;
  QXTestFolder& operator=(QXTestFolder const&) = delete;
  ~QXTestFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_Path, ignored);
  }

  std::filesystem::path const& GetPath() const { return m_Path; }
  /// Writes a file and returns its path.
  std::filesystem::path Write(char const* szName, std::string_view bytes) const {
    std::filesystem::path path = m_Path / szName;
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return path;
  }

private:
  std::filesystem::path m_Path;
};

inline QdcUnicodeString Wide(std::filesystem::path const& path) {
  return QdcUnicodeString::FromUTF8(path.c_str());
}

}  // namespace QXC
