#include <apps/qx3d/QXPluginFolders.h>

#include <QxGraphics3D/frame/QXPluginConfigs.h>

#include <filesystem>
#include <system_error>

namespace QXApp {

std::string AddPluginFolders(std::vector<std::string> const& vecFolders) {
  for (std::string const& strFolder : vecFolders) {
    std::error_code error;
    if (!std::filesystem::is_directory(strFolder, error))
      return "--plugins " + strFolder + ": there is no such folder; create it or give another name";
    QXC::QXPluginConfigs::AddSearchFolder(QXC::QdcUnicodeString::FromUTF8(strFolder.c_str()));
  }
  return std::string();
}

}  // namespace QXApp
