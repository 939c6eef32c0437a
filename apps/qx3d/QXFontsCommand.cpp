#include <apps/qx3d/QXFontsCommand.h>

#include <apps/qx3d/QXMessage.h>
#include <apps/qx3d/QXViewOptions.h>

#include <QxGraphics3D/frame/foundation/toolkit/QXStringEx.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXToolkit.h>
#include <QxGraphics3D/text/QXTrueType.h>

#include <algorithm>
#include <cstdio>
#include <cwchar>
#include <filesystem>

namespace QXApp {

namespace {

using QXC::QdcUnicodeString;
using QXC::QXTrueType;

struct FontFile {
  QXTrueType::FontSource m_eSource = QXTrueType::FONT_UNKNOWN;
  QdcUnicodeString m_strPath;
  int m_nFaceIndex = 0;
};

FontFile FindFile(QdcUnicodeString const& strFamily, QXTrueType::FaceStyle eStyle) {
  FontFile file;
  file.m_eSource = QXTrueType::GetSingleton().FindFontFile(strFamily, eStyle, file.m_strPath, file.m_nFaceIndex);
  return file;
}

QdcUnicodeString DefaultName() {
  return QXC::QXStringEx::LoadResString(L"IMl001");
}

/// The default font's file. It is opened by the registry alone.
FontFile FindDefault() {
  FontFile const file = FindFile(DefaultName(), QXTrueType::FACE_REGULAR);
  bool const bOpen = QXTrueType::GetSingleton().m_pDefaultFace != nullptr;
  return bOpen && file.m_eSource == QXTrueType::FONT_FROM_REGISTRY ? file : FontFile();
}

std::string Name(QdcUnicodeString const& strText) {
  return MakeOneLine(Narrow(strText));
}

char const* NameStyle(QXTrueType::FaceStyle eStyle) {
  switch (eStyle) {
  case QXTrueType::FACE_BOLD: return "bold";
  case QXTrueType::FACE_ITALIC: return "italic";
  case QXTrueType::FACE_BOLD_ITALIC: return "bold italic";
  default: return "regular";
  }
}

/// English name, and the Chinese one where it is another.
QdcUnicodeString FamilyOf(QXTrueType::QXFontInfo const& info) {
  if (info.m_strFontNameEn.IsEmpty()) return info.m_strFontName;
  if (info.m_strFontName.IsEmpty() || info.m_strFontName == info.m_strFontNameEn) return info.m_strFontNameEn;
  return info.m_strFontNameEn + L" (" + info.m_strFontName + L")";
}

/// Why an entry matters beyond its own name.
char const* NameUse(QXTrueType::QXFontInfo const& info, FontFile const& fallback) {
  bool const bDefault = info.m_strFilePath == fallback.m_strPath && info.m_nFaceIndex == fallback.m_nFaceIndex;
  return bDefault ? "default" : "";
}

/// A column of texts; Chinese characters are two places wide on a terminal.
int CountPlaces(QdcUnicodeString const& strText) {
  int nPlaces = 0;
  for (wchar_t const* p = strText.Cstr(); *p != 0; ++p) nPlaces += *p >= 0x2E80 ? 2 : 1;
  return nPlaces;
}

void PrintEntry(QXTrueType::QXFontInfo const& info, FontFile const& fallback, int nWidth) {
  QdcUnicodeString const strFamily = FamilyOf(info);
  std::printf("%s%*s  %-11s  %4d  %-8s  %s\n", Name(strFamily).c_str(), nWidth - CountPlaces(strFamily), "",
      NameStyle(info.m_nFaceStyle), info.m_nFaceIndex, NameUse(info, fallback), Name(info.m_strFilePath).c_str());
}

int ListFonts() {
  QXTrueType& fonts = QXTrueType::GetSingleton();
  std::string const strFolder = Name(QXC::QXToolkit::GetFontsPath());
  fonts.InitFontsInfo();
  if (fonts.m_arrFontsInfo.GetSize() == 0) {
    PrintFailure(strFolder + ": no .ttf or .ttc font here or below; install fonts, or name their folder with --folder");
    return 1;
  }
  FontFile const fallback = FindDefault();
  int nWidth = 6;
  for (QXTrueType::QXFontInfo const& info : fonts.m_arrFontsInfo)
    nWidth = std::min(60, std::max(nWidth, CountPlaces(FamilyOf(info))));
  std::printf("%-*s  %-11s  %4s  %-8s  %s\n", nWidth, "family", "style", "face", "fallback", "file");
  for (QXTrueType::QXFontInfo const& info : fonts.m_arrFontsInfo) PrintEntry(info, fallback, nWidth);
  std::printf("%llu faces below %s, default font %s%s\n",
      static_cast<unsigned long long>(fonts.m_arrFontsInfo.GetSize()), strFolder.c_str(), Name(DefaultName()).c_str(),
      fallback.m_strPath.IsEmpty() ? ", which is not there" : "");
  return 0;
}

std::string DescribeSource(QXTrueType::FontSource eSource, QXTrueType::FaceStyle eStyle) {
  char const* const szStyle = NameStyle(eStyle);
  switch (eSource) {
  case QXTrueType::FONT_FROM_REGISTRY:
    return std::string("the registry section Graphics3DDefaultFonts names this file") +
           (eStyle == QXTrueType::FACE_REGULAR ? "" : ", for all styles");
  case QXTrueType::FONT_FROM_CATALOGUE: return std::string("it is the first ") + szStyle + " face whose name begins so";
  case QXTrueType::FONT_REGULAR:
    return std::string("no ") + szStyle + " face has a name that begins so; this is the first regular one";
  case QXTrueType::FONT_LOST:
    return "the registry section Graphics3DDefaultFonts names a file that is not there or has no such face";
  default: return "neither the registry nor any font file knows the name";
  }
}

void PrintLine(char const* szWhat, std::string const& strText) {
  std::printf("%-6s %s\n", szWhat, strText.c_str());
}

int FindFont(QXFontsOptions const& options) {
  QdcUnicodeString strFamily = QdcUnicodeString::FromUTF8(options.m_strFind.c_str());
  auto const eStyle = static_cast<QXTrueType::FaceStyle>((options.m_bBold ? 1 : 0) + (options.m_bItalic ? 2 : 0));
  if (strFamily.GetAt(0) == L'@') strFamily.Delete(0, 1);
  FontFile file = FindFile(strFamily, eStyle);
  std::string strReason = DescribeSource(file.m_eSource, eStyle);
  bool const bFound = file.m_eSource != QXTrueType::FONT_UNKNOWN && file.m_eSource != QXTrueType::FONT_LOST;
  if (!bFound) {
    if (file.m_eSource == QXTrueType::FONT_LOST) strReason += " (" + Name(file.m_strPath) + ")";
    strReason += ": the default font, " + Name(DefaultName()) + ", stands in";
    file = FindDefault();
    if (file.m_strPath.IsEmpty()) {
      PrintFailure(Name(strFamily) + ": " + strReason + ", but is not there either; install it, or set the registry");
      return 1;
    }
  }
  PrintLine("name", Name(strFamily) + ", " + NameStyle(eStyle));
  PrintLine("file", Name(file.m_strPath));
  PrintLine("face", std::to_string(file.m_nFaceIndex));
  PrintLine("why", strReason);
  return 0;
}

}  // namespace

int RunFonts(QXFontsOptions const& options) {
  if (!IsUtf8(options.m_strFolder) || !IsUtf8(options.m_strFind)) {
    PrintFailure("the name is no UTF-8 text; give another");
    return 1;
  }
  std::error_code error;
  if (!options.m_strFolder.empty() && !std::filesystem::is_directory(options.m_strFolder, error)) {
    PrintFailure(MakeOneLine(options.m_strFolder) + ": no such folder; correct the name");
    return 1;
  }
  if (!options.m_strFolder.empty())
    QXC::QXToolkit::SetFontsPath(QdcUnicodeString::FromUTF8(options.m_strFolder.c_str()));
  return options.m_strFind.empty() ? ListFonts() : FindFont(options);
}

}  // namespace QXApp
