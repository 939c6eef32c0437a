/// @file
/// Files for tests: the small models of the tree, and folders that go away again.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

namespace QXAssimp {

inline std::string DataPath(std::string const& strName) {
  return std::string(QX_SOURCE_DIR) + "/tests/data/" + strName;
}

inline std::string ModelPath(std::string const& strName) {
  return DataPath("models/" + strName);
}

inline std::vector<unsigned char> ReadTestFile(std::string const& strPath) {
  std::ifstream file(strPath, std::ios::binary);
  if (!file) throw std::runtime_error("missing test file " + strPath);
  return std::vector<unsigned char>(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

inline std::vector<unsigned char> ToBytes(std::string const& strText) {
  return std::vector<unsigned char>(strText.begin(), strText.end());
}

/// An empty folder of its own for one test.
class QXTestFolder {
public:
  QXTestFolder() {
    std::string strPath = (std::filesystem::temp_directory_path() / "qx3d-test-XXXXXX").string();
    if (mkdtemp(strPath.data()) == nullptr) throw std::runtime_error("no folder for a test");
    m_strPath = strPath;
  }
  QXTestFolder(QXTestFolder const&) = delete;
  QXTestFolder& operator=(QXTestFolder const&) = delete;
  ~QXTestFolder() {
    std::error_code error;
    std::filesystem::remove_all(m_strPath, error);
  }
  std::string Path(std::string const& strName) const { return m_strPath + "/" + strName; }
  std::string const& Path() const { return m_strPath; }
  std::string Write(std::string const& strName, std::vector<unsigned char> const& vecBytes) const {
    std::ofstream file(Path(strName), std::ios::binary);
    file.write(reinterpret_cast<char const*>(vecBytes.data()), static_cast<std::streamsize>(vecBytes.size()));
    return Path(strName);
  }
  std::string Write(std::string const& strName, std::string const& strText) const {
    return Write(strName, ToBytes(strText));
  }

private:
  std::string m_strPath;
};

}  // namespace QXAssimp
