/// @file
/// Fonts: which file a name means, and glyphs drawn from it.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/Namespaces.h>
#include <QxGraphics3D/frame/foundation/base/QdcArray.h>
#include <QxGraphics3D/frame/foundation/base/QdcDict.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXMutex.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXSingleton.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXTextStyle.h>

// What FreeType's FT_Face and FT_Library point to: a program that only names fonts needs no header of FreeType.
struct FT_FaceRec_;
struct FT_LibraryRec_;

namespace QXC {

namespace detail {
class QXGlyphRasteriser;
}

class QXTrueType;
struct QXCharBitmapData;
extern template class QXGRAPHICS3D_API QXSingleton<QXTrueType>;

/// The font engine of the process: turns a family name and a style into an open face, and a character into pixels.
///
/// A name is looked for in this order, and what is found first stays for the life of the object:
///
/// 1. among the families that are open already, whatever their style;
/// 2. in the section "Graphics3DDefaultFonts" of the root registry, which maps names without blanks to files of the
///    fonts folder (QXToolkit::GetFontsPath);
/// 3. in the catalogue, made of the name tables of every file in the fonts folder;
/// 4. else it is the default font, the one that the resource string "IMl001" names, and the name is never looked for
///    again.
///
/// Ownership: the object owns every face and the FreeType library; faces handed out are borrowed, and live as long as
///            it does.
/// Threads:   no lock but around the first filling of the catalogue. Faces and style are shared, so all text goes
///            through one atlas manager at a time, with that manager's mutex held.
/// Failure:   silence; a font that cannot be had becomes the default font, and null if that is missing too.
class QXGRAPHICS3D_API QXTrueType : public QXSingleton<QXTrueType> {
public:
  /// Cuts of a family, and the places of their faces in m_dictFaces.
  enum FaceStyle : int { FACE_REGULAR = 0, FACE_BOLD = 1, FACE_ITALIC = 2, FACE_BOLD_ITALIC = 3 };

  /// What knows a name.
  enum FontSource : int {
    FONT_UNKNOWN = 0,         ///< neither registry nor catalogue
    FONT_FROM_REGISTRY = 1,   ///< a file of the registry
    FONT_FROM_CATALOGUE = 2,  ///< a catalogued face of the style wanted
    FONT_REGULAR = 3,         ///< a catalogued regular face, because there is none of the style wanted
    FONT_LOST = 4             ///< the registry, but its file has no such face or is not there
  };

  /// One face of the catalogue. The names keep the length of the buffer that they were decoded in: go by their text.
  struct QXFontInfo {
    QdcUnicodeString m_strFontName;         ///< family name in the language 2052, Chinese of the mainland
    QdcUnicodeString m_strFontNameEn;       ///< family name in the language 1033, English
    FaceStyle m_nFaceStyle = FACE_REGULAR;  ///< from the subfamily's text alone, see GetFontInfo
    QdcUnicodeString m_strFilePath;         ///< fonts folder and file name
    int m_nFaceIndex = 0;                   ///< place of the face within its file
    QdcUnicodeString m_strVersion;          ///< version text in English; kept for hosts that list fonts
  };

  /// Starts FreeType and opens the default font: the text of "IMl001" without blanks is the key of its file in
  /// "Graphics3DDefaultFonts". Opens no other file. A default font that cannot be opened leaves m_pDefaultFace null.
  QXTrueType();
  QXTrueType(QXTrueType const&) = delete;
  QXTrueType& operator=(QXTrueType const&) = delete;
  /// Closes every face and FreeType.
  virtual ~QXTrueType();

  /// Both make the object at first use, without a lock; it lives to the end of the process.
  static QXTrueType& GetSingleton();
  static QXTrueType* GetSingletonPtr();

  /// The face of a family. The first style asked for under a name decides what that name offers from then on: asked
  /// for bold when the regular face is open, this gives the regular one, and GetBitmapData thickens it.
  /// @param strName  family name; one '@' at its front, the mark of vertical writing, is passed over. Empty: the
  ///                 default face
  /// @param eStyle   style wanted. It chooses among the faces that the catalogue has; a name from the registry is one
  ///                 file, whatever its style, and so is a name that the catalogue has in regular only
  /// @return  borrowed; m_pDefaultFace, which may be null, if the name cannot be resolved. Such a name joins
  ///          m_arrMissingFonts, as it was given. A file that is found but cannot be opened is tried again next time.
  /// Cost:    a look-up for a name that is open or missing. Else at least one file is opened, and at the first name
  ///          that the registry does not know every file of the fonts folder.
  FT_FaceRec_* GetFace(QdcUnicodeString const& strName, FaceStyle const& eStyle);

  /// Which face of a font file carries a name: the one whose Chinese name (language 2052) equals strName. A file with
  /// a single face is always its face 0.
  ///
  /// Only name tables of 24 or 57 records are looked into, at record 17 or 43. These are the tables of the collections
  /// that the registry section was made for; a collection with other tables is found through the catalogue, and must
  /// not be named in the section. A face with another table is compared under the name of the face before it; one whose
  /// name cannot be decoded is not compared, and stays open until this object ends.
  /// @return  -1 if the file cannot be opened or no face matches
  int GetFontIndex(QdcUnicodeString& strPath, QdcUnicodeString& strName);

  /// What the name table of an open face says; file and index stay empty. Counted are the records of platform 3, later
  /// ones over earlier ones: family name (1) in 2052 and 1033, version (5) in 1033, and the subfamily (2) in 1033. The
  /// subfamily sets the style if it is one of "Regular", "Bold", "Italic" and "BoldItalic" in any case; with other
  /// texts, "Bold Italic" with a blank among them, the style stays as it is. Null gives an empty record.
  QXFontInfo GetFontInfo(FT_FaceRec_*& pFace);

  /// Decodes a name record, big-endian UTF-16.
  /// @param strOut  gets the text. On a little-endian machine its length is three times nByteLength, the room for the
  ///                decoder, and only its text counts
  /// @param pData   nByteLength bytes
  /// @return  0 if there is nothing to decode or half a character at the end
  unsigned char GetFontName(QdcUnicodeString& strOut, unsigned char* pData, unsigned int nByteLength);

  /// Looks a name up in the catalogue and fills that first if it is empty. The first entry of exactly that style counts
  /// whose Chinese or English name begins with strName: a short name finds a longer family too.
  /// @param nStyle      a FaceStyle
  /// @param strPath     gets the file; unchanged if nothing is found
  /// @param nFaceIndex  gets the face within it; unchanged if nothing is found
  /// @return  1 if found
  unsigned char GetFontPathByName(
      QdcUnicodeString const& strName, int nStyle, QdcUnicodeString& strPath, int& nFaceIndex);

  /// Where GetFace gets a family from that is neither open nor known as missing: what it opens, and why. Nothing is
  /// entered among the open families or the missing names.
  /// @param strFamily   family name, without the mark of vertical writing
  /// @param strPath     gets the file; with FONT_LOST the file that the registry names in vain
  /// @param nFaceIndex  gets the face within it, -1 with FONT_LOST
  FontSource FindFontFile(
      QdcUnicodeString const& strFamily, FaceStyle const& eStyle, QdcUnicodeString& strPath, int& nFaceIndex);

  /// Makes the catalogue anew from the fonts folder and what is below it: first all .ttf files, then all .ttc files, in
  /// the order of QXFile::ListFiles. A file that is no font is passed over; of a collection with more than 10 faces only
  /// the first is taken, because each face costs an opening. Without a folder the catalogue is empty.
  /// Threads: takes no lock; when other threads may be asking, call it under m_Mutex.
  /// Cost:    opens every face of every file.
  void InitFontsInfo();

  /// Opens a face: FT_New_Face with the path in UTF-8. Named faces of a variable font have their number in the upper
  /// half of nFaceIndex.
  /// @param pFace  gets the face, the caller's to close with FT_Done_Face; null on failure
  /// @return  FreeType's error code, 0 on success
  int QX_FT_New_Face(FT_LibraryRec_*& pLibrary, QdcUnicodeString strPath, int nFaceIndex, FT_FaceRec_*& pFace);

  /// Style of the next GetBitmapData.
  void SetTextStyle(QXTextStyle const& style);
  QXTextStyle GetTextStyle() const;

  /// Draws one character in the style given to SetTextStyle.
  /// @param nCharacter  character code, looked up in the face's selected charmap
  /// @param bHalo  1: outer border of the stroked outline; 0: filled glyph. Same width, height and metrics for both.
  /// @return  a new object, owned by the caller (delete frees its pixels); null if no face has the character, FreeType
  ///          fails, the size is 49,152 points or more, or the picture would be more than 16,384 pixels wide or high. A
  ///          blank is not null: 0 x 0 pixels and a valid m_nAdvance.
  /// Shape:   m_pData is m_nHeight rows of m_nWidth pixels of 2 bytes {255, coverage}; top row first, no padding.
  /// Units:   metrics in whole pixels; size in points at 96 dpi, size times 3D scale truncated to an integer.
  /// Threads: no lock on faces or style; call with the atlas manager's mutex held.
  /// Cost:    cold: 25 us for a Latin glyph, 60 to 320 us for a Chinese one, a tenth to a quarter of that for a glyph whose
  ///          outline was drawn of late, as its halo. A rare character can open every catalogued font file.
  /// Leaves:  the face that was drawn with at that size, its slot with anything.
  QXCharBitmapData* GetBitmapData(int nCharacter, unsigned char bHalo);

  /// Thickens a picture of one byte a pixel by one pixel up and to the left, in place: each byte raises the byte above
  /// it and the byte to its left to its own value. Row 0 and column 0 are only raised, never spread. Null is ignored.
  /// @param pData  nHeight rows of nWidth bytes
  void SetBold(unsigned char* pData, int nWidth, int nHeight);

  // For hosts that list fonts, and plug-ins. Only this class writes them.

  FT_FaceRec_* m_pDefaultFace = nullptr;         ///< default font; null if it could not be opened
  FT_LibraryRec_* m_pLibrary = nullptr;          ///< what all faces that stay open are made with
  QdcArray<QdcUnicodeString> m_arrMissingFonts;  ///< names that could not be resolved, as they were given
  QdcArray<QXFontInfo> m_arrFontsInfo;           ///< the catalogue; empty until it is first needed
  /// Open faces by family name, each an array of 4, null where a style is not open.
  QdcDict<QdcUnicodeString, QdcArray<FT_FaceRec_*>> m_dictFaces;
  QXTextStyle m_TextStyle;
  QXMutex m_Mutex{1};  ///< held while the catalogue is filled for the first time

private:
  /// Fills the catalogue if it is empty. Any number of threads.
  void FillFontsInfo();
  /// Appends a face of a file to the catalogue. Gives the number of faces in the file, 0 if it could not be opened.
  long AddFontInfo(FT_LibraryRec_*& pLibrary, QdcUnicodeString const& strPath, int nFaceIndex);
  /// Enters a new face under its family and gives what a request for eStyle gets.
  FT_FaceRec_* KeepFace(QdcUnicodeString const& strFamily, FT_FaceRec_* pFace, FaceStyle eStyle);
  /// The face that a character is drawn with and the glyph in it, 0 if no face has the character: the style's font, then
  /// the default font, then the fonts of the catalogue.
  unsigned int FindFaceOf(int nCharacter, FaceStyle eStyle, FT_FaceRec_*& pFace);

  detail::QXGlyphRasteriser* m_pRasteriser = nullptr;  ///< made with the first glyph
};

}  // namespace QXC
