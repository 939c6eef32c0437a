/// @file
/// Fonts folder, registry section and default font of a test's own; what was there before comes back.
#pragma once

#include "../QXNarrow.h"
#include "../frame/QXTempFolder.h"
#include "QXFontMaker.h"

#include <QxGraphics3D/frame/foundation/toolkit/QXRegistry.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXStringEx.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXToolkit.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace QXC {

class QXFontsFixture : public testing::Test {
protected:
  QXFontsFixture() {
    m_Section.RemoveAll();
    QXStringEx::SetResString(L"IMl001", L"");
    QXToolkit::SetFontsPath(m_Folder.GetName());
  }
  ~QXFontsFixture() override {
    m_Section = m_SectionBefore;
    QXStringEx::SetResString(L"IMl001", m_strDefaultBefore);
    QXToolkit::SetFontsPath(m_strPathBefore);
  }

  /// Writes a file below the fonts folder and gives its path.
  QdcUnicodeString WriteFont(std::string const& strName, std::string const& bytes) const {
    std::filesystem::create_directories((m_Folder.m_Path / strName).parent_path());
    m_Folder.Write(strName, bytes);
    return m_Folder.GetFile(strName);
  }
  QdcUnicodeString WriteFont(std::string const& strName, QXFontMaker const& font) const {
    return WriteFont(strName, font.Make());
  }
  /// Enters a font file under a key; the key is taken as it is.
  void Register(wchar_t const* szKey, wchar_t const* szFile) { m_Section[szKey] = szFile; }
  /// Makes a file the default font, named "Default".
  void WriteDefaultFont() {
    WriteFont("default.fon", SimpleFont(u"Default"));
    Register(L"Default", L"default.fon");
    QXStringEx::SetResString(L"IMl001", L"Default");
  }

  QXTempFolder m_Folder;
  QXHash<QdcUnicodeString>& m_Section = QXRegistry::Root().SubFile(L"Graphics3DDefaultFonts");

private:
  QXHash<QdcUnicodeString> const m_SectionBefore = m_Section;
  QdcUnicodeString const m_strDefaultBefore = QXStringEx::LoadResString(L"IMl001");
  QdcUnicodeString const m_strPathBefore = QXToolkit::GetFontsPath();
};

/// How often a file is mapped into this process. FreeType maps what it opens until the face is closed.
inline int MappedCount(QdcUnicodeString const& strPath) {
  std::ifstream maps("/proc/self/maps");
  std::string const path = strPath.ToMBString().Cstr();
  int count = 0;
  for (std::string line; std::getline(maps, line);) count += line.ends_with(path);
  return count;
}

}  // namespace QXC
