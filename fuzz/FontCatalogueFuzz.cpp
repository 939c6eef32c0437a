/// @file
/// Font files: any bytes are passed over or catalogued, every entry can be opened and found again, and no face stays
/// open but those that belong to a family.
#include <QxGraphics3D/frame/foundation/toolkit/QXRegistry.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXToolkit.h>
#include <QxGraphics3D/text/QXTrueType.h>

#include <stdlib.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace {

using namespace QXC;

void Require(bool bHolds) {
  if (!bHolds) std::abort();
}

/// The fonts folder of this process, with one file in it.
class Folder {
public:
  Folder() {
    std::string name = (std::filesystem::temp_directory_path() / "qx_fuzz_XXXXXX").string();
    Require(::mkdtemp(name.data()) != nullptr);
    m_Path = name;
    QXToolkit::SetFontsPath(QdcUnicodeString::FromUTF8(name.c_str()));
    QXRegistry::Root().SubFile(L"Graphics3DDefaultFonts")[L"Registered"] = L"font.ttc";
  }
  Folder(Folder const&) = delete;
  Folder& operator=(Folder const&) = delete;
  ~Folder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_Path, ignored);
  }

  void Write(std::uint8_t const* pData, std::size_t nSize) const {
    std::ofstream file(m_Path / "font.ttc", std::ios::binary);
    file.write(reinterpret_cast<char const*>(pData), static_cast<std::streamsize>(nSize));
  }

private:
  std::filesystem::path m_Path;
};

void RequireUsable(QXTrueType& fonts, QXTrueType::QXFontInfo const& info) {
  Require(info.m_nFaceIndex >= 0 && info.m_nFaceIndex < 10);
  Require(info.m_nFaceStyle >= QXTrueType::FACE_REGULAR && info.m_nFaceStyle <= QXTrueType::FACE_BOLD_ITALIC);
  QdcUnicodeString path;
  int index = -1;
  Require(fonts.GetFontPathByName(info.m_strFontNameEn, info.m_nFaceStyle, path, index) == 1);
  Require(path == info.m_strFilePath && index <= info.m_nFaceIndex);
  FT_FaceRec_* const face = fonts.GetFace(info.m_strFontNameEn, info.m_nFaceStyle);
  // An empty name means the default font, and there is none.
  Require((face != nullptr) == !info.m_strFontNameEn.IsEmpty());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* pData, std::size_t nSize) {
  static Folder const folder;
  folder.Write(pData, nSize);
  QXTrueType fonts;
  fonts.InitFontsInfo();
  Require(fonts.m_arrFontsInfo.GetSize() <= 10);
  for (QXTrueType::QXFontInfo const& info : fonts.m_arrFontsInfo) {
    // "@Name" is looked for as "Name", and the one registered name as a file.
    bool const isPlain = info.m_strFontNameEn.GetAt(0) != L'@' && info.m_strFontNameEn.Find(L"egistered", 0) < 0;
    if (isPlain) RequireUsable(fonts, info);
  }
  fonts.GetFace(L"Registered", QXTrueType::FACE_BOLD);
  for (wchar_t const* const szName : {L"", L"One", L"Two"}) {
    QdcUnicodeString path = QXToolkit::GetFontsPath() + L"font.ttc";
    QdcUnicodeString name = szName;
    Require(fonts.GetFontIndex(path, name) >= -1);
  }
  return 0;
}
