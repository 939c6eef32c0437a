/// @file
/// A folder of a test's own, removed with everything in it.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include <QxGraphics3D/frame/foundation/base/Namespaces.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

namespace QXC {

class QXTempFolder {
public:
  QXTempFolder() {
    std::string strTemplate = (std::filesystem::temp_directory_path() / "qx_test_XXXXXX").string();
    m_Path = ::mkdtemp(strTemplate.data());
  }
  QXTempFolder(QXTempFolder const&) = delete;
  QXTempFolder& operator=(QXTempFolder const&) = delete;
  ~QXTempFolder() {
    std::error_code error;
    std::filesystem::remove_all(m_Path, error);
  }

  void Write(std::string const& strName, std::string_view bytes) const {
    std::ofstream file(m_Path / strName, std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  }
  QdcUnicodeString GetName() const { return QdcUnicodeString::FromUTF8(m_Path.c_str()); }
  QdcUnicodeString GetFile(std::string const& strName) const {
    return QdcUnicodeString::FromUTF8((m_Path / strName).c_str());
  }

  std::filesystem::path m_Path;
};

}  // namespace QXC
