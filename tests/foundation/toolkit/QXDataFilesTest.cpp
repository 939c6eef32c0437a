// What a freshly loaded library finds beside itself, seen from programs that load a copy of it.
#include "QXChildProcess.h"
#include "QXTestFolder.h"

#include <gtest/gtest.h>

#include <sstream>

namespace QXC {
namespace {

class QXDataFiles : public testing::Test {
protected:
  void SetUp() override {
    std::filesystem::create_directories(m_Folder.GetPath() / QX_LIBRARY_FOLDER);
    std::filesystem::create_directories(GetData());
    // Under the name that the loader looks for.
    std::filesystem::path const library = QX_LIBRARY_FILE;
    std::string name = library.filename().string();
    std::filesystem::copy_file(library, m_Folder.GetPath() / QX_LIBRARY_FOLDER / name);
    for (auto dot = name.rfind('.'); name.find(".so.") != std::string::npos; dot = name.rfind('.')) {
      std::string const target = name;
      name.resize(dot);
      std::filesystem::create_symlink(target, m_Folder.GetPath() / QX_LIBRARY_FOLDER / name);
    }
  }
  std::filesystem::path GetData() const { return m_Folder.GetPath() / QX_DATA_FOLDER; }
  QXTestFolder const& GetFolder() const { return m_Folder; }

  // Fonts folder, default font, registry value.
  std::vector<std::string> Found() const {
    QXChildSetup setup;
    setup.m_arrSet = {"LD_LIBRARY_PATH=" + (m_Folder.GetPath() / QX_LIBRARY_FOLDER).string()};
    QXChildResult const result = RunChild({QX_DATA_CHILD}, setup);
    EXPECT_EQ(result.m_nStatus, 0) << result.m_strErrors;
    std::vector<std::string> lines;
    std::istringstream stream(result.m_strOutput);
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    lines.resize(3);
    return lines;
  }

private:
  QXTestFolder m_Folder;
};

TEST_F(QXDataFiles, NothingInstalledGivesEmptyTextsAndTheSystemsFonts) {
  EXPECT_EQ(Found(), (std::vector<std::string>{"/usr/share/fonts/", "", ""}));
}

TEST_F(QXDataFiles, FilesBesideTheLibraryAreRead) {
  GetFolder().Write(QX_DATA_FOLDER "/registry.ini", "[Graphics3DDefaultFonts]\nDejaVuSans = a.ttf\n");
  GetFolder().Write(QX_DATA_FOLDER "/strings.ini", "IMl001 = Stra\303\237e Sans\n");
  EXPECT_EQ(Found(), (std::vector<std::string>{"/usr/share/fonts/", "Stra\303\237e Sans", "a.ttf"}));
}

TEST_F(QXDataFiles, InstalledFontsFolderComesBeforeTheSystems) {
  std::filesystem::create_directories(GetData() / "fonts");
  std::string const expected = std::filesystem::canonical(GetData()).string() + "/fonts/";
  std::string const found = Found()[0];
  EXPECT_EQ(std::filesystem::canonical(found).string() + "/", expected);
  EXPECT_EQ(found.back(), '/');
}

TEST_F(QXDataFiles, FileNamedFontsIsNoFontsFolder) {
  GetFolder().Write(QX_DATA_FOLDER "/fonts", "");
  EXPECT_EQ(Found()[0], "/usr/share/fonts/");
}

TEST_F(QXDataFiles, BrokenFilesLeaveEverythingEmpty) {
  GetFolder().Write(QX_DATA_FOLDER "/registry.ini", "[Graphics3DDefaultFonts]\nDejaVuSans = a.ttf\nno value here\n");
  GetFolder().Write(QX_DATA_FOLDER "/strings.ini", std::string_view("IMl001 = x\n\0", 12));
  EXPECT_EQ(Found(), (std::vector<std::string>{"/usr/share/fonts/", "", ""}));
}

}  // namespace
}  // namespace QXC
