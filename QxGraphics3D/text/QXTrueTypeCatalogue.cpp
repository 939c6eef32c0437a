// The catalogue of QXTrueType, and the name tables that it is made of.
#include <QxGraphics3D/text/QXTrueType.h>

#include <QxGraphics3D/frame/foundation/base/QDCCharset.h>
#include <QxGraphics3D/frame/foundation/base/QdcNumeric.h>
#include <QxGraphics3D/frame/foundation/stream/QXFile.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXTextCodec.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXToolkit.h>

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_SFNT_NAMES_H

#include <climits>

namespace QXC {

namespace {

constexpr int PlatformWindows = 3;
constexpr int EncodingUnicode = 1;
constexpr int LanguageChinese = 2052;
constexpr int LanguageEnglish = 1033;
constexpr int NameFamily = 1;
constexpr int NameSubfamily = 2;
constexpr int NameVersion = 5;
constexpr FT_Long MostFacesCatalogued = 10;

/// A FreeType of its own, so that the faces of the catalogue go with it even when memory runs out halfway.
struct ScopedLibrary {
  ScopedLibrary() {
    if (FT_Init_FreeType(&m_pLibrary) != 0) m_pLibrary = nullptr;
  }
  ScopedLibrary(ScopedLibrary const&) = delete;
  ScopedLibrary& operator=(ScopedLibrary const&) = delete;
  ~ScopedLibrary() { FT_Done_FreeType(m_pLibrary); }

  FT_Library m_pLibrary = nullptr;
};

/// 0 to 3, or -1 for a text that names no style.
int StyleOf(QdcUnicodeString const& strSubfamily) {
  static constexpr wchar_t const* const Texts[] = {L"Regular", L"Bold", L"Italic", L"BoldItalic"};
  for (int i = 0; i < 4; ++i) {
    if (strSubfamily.CompareNoCase(Texts[i]) == 0) return i;
  }
  return -1;
}

bool IsWantedName(FT_SfntName const& name) {
  if (name.platform_id != PlatformWindows) return false;
  if (name.language_id == LanguageChinese) return name.name_id == NameFamily;
  if (name.language_id != LanguageEnglish) return false;
  return name.name_id == NameFamily || name.name_id == NameSubfamily || name.name_id == NameVersion;
}

void TakeName(QXTrueType::QXFontInfo& info, FT_SfntName const& name, QdcUnicodeString const& strText) {
  if (name.language_id == LanguageChinese) {
    info.m_strFontName = strText;
  } else if (name.name_id == NameFamily) {
    info.m_strFontNameEn = strText;
  } else if (name.name_id == NameVersion) {
    info.m_strVersion = strText;
  } else if (int const style = StyleOf(strText); style >= 0) {
    info.m_nFaceStyle = static_cast<QXTrueType::FaceStyle>(style);
  }
}

/// All .ttf files, then all .ttc files, as two listings would give them; the folders are walked once for both.
QdcArray<QdcUnicodeString> FontFiles(QdcUnicodeString const& strFolder) {
  QdcArray<QdcUnicodeString> files;
  if (strFolder.IsEmpty()) return files;
  QdcArray<QdcUnicodeString> listed;
  QXFile::ListFiles(strFolder, listed, L"*.tt?", QXFile::LIST_SUB_FOLDERS);
  for (wchar_t const* const szEnd : {L".ttf", L".ttc"}) {
    for (QdcUnicodeString const& file : listed) {
      if (file.Right(4).CompareNoCase(szEnd) == 0) files.Add(file);
    }
  }
  return files;
}

/// Reads the record that holds the Chinese family name in the two shapes of name table that GetFontIndex knows.
bool ReadProbedName(FT_Face face, FT_SfntName& name) {
  FT_UInt const count = FT_Get_Sfnt_Name_Count(face);
  if (count != 24 && count != 57) return false;
  if (FT_Get_Sfnt_Name(face, count == 24 ? 17 : 43, &name) != 0) return false;
  return name.platform_id == PlatformWindows && name.encoding_id == EncodingUnicode &&
         name.language_id == LanguageChinese && name.name_id == NameFamily;
}

}  // namespace

void QXTrueType::FillFontsInfo() {
  // The lock is taken even when the catalogue is full: looking at its size without it would be a race with the thread
  // that fills it.
  QXMutexLock lock(m_Mutex);
  lock.lock();
  if (m_arrFontsInfo.GetSize() == 0) InitFontsInfo();
}

void QXTrueType::InitFontsInfo() {
  m_arrFontsInfo.RemoveAll();
  m_arrFontsInfo.FreeExtra();
  QdcUnicodeString const folder = QXToolkit::GetFontsPath();
  QdcArray<QdcUnicodeString> const files = FontFiles(folder);
  ScopedLibrary library;
  if (library.m_pLibrary == nullptr) return;
  for (QdcUnicodeString const& file : files) {
    QdcUnicodeString const path = folder + file;
    FT_Long const faces = AddFontInfo(library.m_pLibrary, path, 0);
    if (faces > MostFacesCatalogued) continue;
    for (int i = 1; i < faces; ++i) AddFontInfo(library.m_pLibrary, path, i);
  }
}

long QXTrueType::AddFontInfo(FT_Library& pLibrary, QdcUnicodeString const& strPath, int nFaceIndex) {
  FT_Face face = nullptr;
  if (QX_FT_New_Face(pLibrary, strPath, nFaceIndex, face) != 0) return 0;
  QXFontInfo info = GetFontInfo(face);
  info.m_strFilePath = strPath;
  info.m_nFaceIndex = nFaceIndex;
  m_arrFontsInfo.Add(info);
  FT_Long const faces = face->num_faces;
  FT_Done_Face(face);
  return faces;
}

QXTrueType::QXFontInfo QXTrueType::GetFontInfo(FT_Face& pFace) {
  QXFontInfo info;
  FT_UInt const count = FT_Get_Sfnt_Name_Count(pFace);
  for (FT_UInt i = 0; i < count; ++i) {
    FT_SfntName name = {};
    if (FT_Get_Sfnt_Name(pFace, i, &name) != 0 || !IsWantedName(name)) continue;
    QdcUnicodeString text;
    if (GetFontName(text, name.string, name.string_len)) TakeName(info, name, text);
  }
  return info;
}

unsigned char QXTrueType::GetFontName(QdcUnicodeString& strOut, unsigned char* pData, unsigned int nByteLength) {
  if (nByteLength > INT_MAX / 3) return 0;
  QXTextCodec const codec(QDCCharset::UTF16BigEndian, QDCCharset::UnicodeText);
  if (qdcbigendian()) {
    // Half a character at the end is dropped here, and the text has its own length.
    unsigned int const units = nByteLength / 2;
    strOut.SetLength(static_cast<int>(units) + 1);
    codec.Convert(&strOut[0], units + 1, pData, units * 2);
    strOut = strOut.Cstr();
    return static_cast<unsigned char>(!strOut.IsEmpty());
  }
  // Not cut back to the text: whoever uses these names goes by the zero at its end.
  strOut.SetLength(static_cast<int>(nByteLength * 3));
  return codec.Convert(&strOut[0], nByteLength * 3, pData, nByteLength);
}

unsigned char QXTrueType::GetFontPathByName(
    QdcUnicodeString const& strName, int nStyle, QdcUnicodeString& strPath, int& nFaceIndex) {
  FillFontsInfo();
  for (QXFontInfo const& info : m_arrFontsInfo) {
    if (info.m_nFaceStyle != nStyle) continue;
    if (info.m_strFontName.Find(strName, 0) != 0 && info.m_strFontNameEn.Find(strName, 0) != 0) continue;
    strPath = info.m_strFilePath;
    nFaceIndex = info.m_nFaceIndex;
    return 1;
  }
  return 0;
}

int QXTrueType::GetFontIndex(QdcUnicodeString& strPath, QdcUnicodeString& strName) {
  FT_Face face = nullptr;
  if (QX_FT_New_Face(m_pLibrary, strPath, 0, face) != 0) return -1;
  FT_Long const count = face->num_faces;
  FT_Done_Face(face);
  if (count == 1) return 0;
  QdcUnicodeString scratch;
  // Lives through the whole loop: a face without a readable name is known by the one before it.
  QdcUnicodeString candidate;
  for (int i = 0; i < count; ++i) {
    if (QX_FT_New_Face(m_pLibrary, strPath, i, face) != 0) continue;
    FT_SfntName name = {};
    if (ReadProbedName(face, name)) {
      // The face stays open, and passes over to m_pLibrary, which closes it when it ends.
      if (!GetFontName(scratch, name.string, name.string_len)) continue;
      if (!scratch.IsEmpty()) candidate = scratch;
    }
    bool const isFound = QX_strcmp(candidate.Cstr(), strName.Cstr()) == 0;
    FT_Done_Face(face);
    if (isFound) return i;
  }
  return -1;
}

}  // namespace QXC
