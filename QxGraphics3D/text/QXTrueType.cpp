#include <QxGraphics3D/text/QXTrueType.h>

#include <QxGraphics3D/frame/foundation/toolkit/QXRegistry.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXStringEx.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXToolkit.h>
#include <QxGraphics3D/text/detail/QXGlyphRasteriser.h>

namespace QXC {

template class QXSingleton<QXTrueType>;

namespace {

constexpr int FaceSlots = 4;

/// Makes a font name the key of its file. The index moves on even where a blank was taken out, so of two blanks in a
/// row the second stays; the keys of existing configurations are written that way.
QdcUnicodeString RegistryKey(QdcUnicodeString strName) {
  for (int i = 0; i < strName.GetLength(); ++i) {
    if (strName[i] == L' ') strName.Delete(i, 1);
  }
  return strName;
}

/// File name of a font in the registry, empty if the name is not there.
QdcUnicodeString RegistryFile(QdcUnicodeString const& strName) {
  QdcUnicodeString file;
  QXRegistry::Root().SubFile(L"Graphics3DDefaultFonts").Lookup(RegistryKey(strName), file);
  return file;
}

FT_Face FaceAt(QdcArray<FT_Face> const& arrFaces, int nStyle) {
  return nStyle >= 0 && nStyle < FaceSlots ? arrFaces[static_cast<std::uint64_t>(nStyle)] : nullptr;
}

/// The face of an open family: of the style wanted, else the first that is there.
FT_Face ChooseFace(QdcArray<FT_Face> const& arrFaces, int nStyle) {
  if (FT_Face const face = FaceAt(arrFaces, nStyle)) return face;
  for (int i = 0; i < FaceSlots - 1; ++i) {
    if (FT_Face const face = FaceAt(arrFaces, i)) return face;
  }
  return FaceAt(arrFaces, FaceSlots - 1);
}

int SlotOf(FT_Face face) {
  int const bold = (face->style_flags & FT_STYLE_FLAG_BOLD) != 0 ? QXTrueType::FACE_BOLD : 0;
  int const italic = (face->style_flags & FT_STYLE_FLAG_ITALIC) != 0 ? QXTrueType::FACE_ITALIC : 0;
  return bold | italic;
}

bool Holds(QdcArray<QdcUnicodeString> const& arrNames, QdcUnicodeString const& strName) {
  for (QdcUnicodeString const& name : arrNames) {
    if (name == strName) return true;
  }
  return false;
}

}  // namespace

QXTrueType::QXTrueType() {
  FT_Init_FreeType(&m_pLibrary);
  QdcUnicodeString const file = RegistryFile(QXStringEx::LoadResString(L"IMl001"));
  QX_FT_New_Face(m_pLibrary, QXToolkit::GetFontsPath() + file, 0, m_pDefaultFace);
}

QXTrueType::~QXTrueType() {
  delete m_pRasteriser;  // it holds sizes of the faces
  FT_Done_Face(m_pDefaultFace);
  for (auto position = m_dictFaces.GetStartPosition(); !m_dictFaces.IsEOF(position); ++position) {
    for (FT_Face const face : position->second) {
      if (face != nullptr) FT_Done_Face(face);
    }
  }
  m_dictFaces.RemoveAll();
  FT_Done_FreeType(m_pLibrary);
}

QXTrueType& QXTrueType::GetSingleton() {
  return *GetSingletonPtr();
}

QXTrueType* QXTrueType::GetSingletonPtr() {
  if (!ms_pSingleton) ms_pSingleton = new QXTrueType;
  return ms_pSingleton;
}

FT_Face QXTrueType::GetFace(QdcUnicodeString const& strName, FaceStyle const& eStyle) {
  if (strName.IsEmpty() || strName.GetLength() == 0) return m_pDefaultFace;
  // Families are kept without the mark of vertical writing, failures with it: "@Name" and "Name" share a face, but each
  // has to fail for itself.
  QdcUnicodeString unmarked;
  bool const marked = strName.GetAt(0) == L'@';
  if (marked) {
    unmarked = strName;
    unmarked.Delete(0, 1);
  }
  QdcUnicodeString const& family = marked ? unmarked : strName;
  if (auto const open = m_dictFaces.Find(family); !m_dictFaces.IsEOF(open)) return ChooseFace(open->second, eStyle);
  if (Holds(m_arrMissingFonts, strName)) return m_pDefaultFace;

  QdcUnicodeString path;
  int index = 0;
  FontSource const source = FindFontFile(family, eStyle, path, index);
  if (source == FONT_UNKNOWN || source == FONT_LOST) {
    m_arrMissingFonts.Add(strName);
    return m_pDefaultFace;
  }
  FT_Face face = nullptr;
  if (QX_FT_New_Face(m_pLibrary, path, index, face) != 0) return m_pDefaultFace;
  return KeepFace(family, face, eStyle);
}

QXTrueType::FontSource QXTrueType::FindFontFile(
    QdcUnicodeString const& strFamily, FaceStyle const& eStyle, QdcUnicodeString& strPath, int& nFaceIndex) {
  QdcUnicodeString const file = RegistryFile(strFamily);
  if (!file.IsEmpty()) {
    strPath = QXToolkit::GetFontsPath() + file;
    QdcUnicodeString name = strFamily;
    nFaceIndex = GetFontIndex(strPath, name);
    return nFaceIndex == -1 ? FONT_LOST : FONT_FROM_REGISTRY;
  }
  if (GetFontPathByName(strFamily, eStyle, strPath, nFaceIndex)) return FONT_FROM_CATALOGUE;
  bool const isRegular = eStyle == FACE_REGULAR;
  return !isRegular && GetFontPathByName(strFamily, FACE_REGULAR, strPath, nFaceIndex) ? FONT_REGULAR : FONT_UNKNOWN;
}

FT_Face QXTrueType::KeepFace(QdcUnicodeString const& strFamily, FT_Face pFace, FaceStyle eStyle) {
  QdcArray<FT_Face> faces;
  faces.SetSize(FaceSlots);
  // By what the face is, not by what was wanted: a regular face that stood in for a bold one is no bold one.
  faces[static_cast<std::uint64_t>(SlotOf(pFace))] = pFace;
  m_dictFaces[strFamily] = faces;
  FT_Face const wanted = FaceAt(faces, eStyle);
  return wanted != nullptr ? wanted : pFace;
}

int QXTrueType::QX_FT_New_Face(FT_Library& pLibrary, QdcUnicodeString strPath, int nFaceIndex, FT_Face& pFace) {
  pFace = nullptr;
  return FT_New_Face(pLibrary, strPath.ToMBString().Cstr(), nFaceIndex, &pFace);
}

void QXTrueType::SetTextStyle(QXTextStyle const& style) {
  m_TextStyle = style;
}

QXTextStyle QXTrueType::GetTextStyle() const {
  return m_TextStyle;
}

}  // namespace QXC
