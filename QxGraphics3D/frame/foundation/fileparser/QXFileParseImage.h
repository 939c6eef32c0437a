/// @file
/// Parser of image files.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/Platform.h>
#include <QxGraphics3D/frame/foundation/base/QdcArray.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileParser.h>

namespace QXC {

struct QXImageData;
class QXGeoPicture;

/// Reads one image file: Open (or OpenBytes) first, then the images.
///
/// What every reader delivers, because textures take the blocks over without a look at the pitch: rows from top to
/// bottom without gaps (the pitch is the width times the bytes of a pixel), 8 bits luminance, 24 bits blue, green, red
/// or 32 bits blue, green, red, alpha with the colours not multiplied by alpha; pixels in a block from new unsigned
/// char[]. Records and blocks are from then on the caller's.
class QXGRAPHICS3D_API QXFileParseImage : public QXFileParser {
public:
  ~QXFileParseImage() override;

  // Slot order is the contract with plug-ins: never reorder, never insert; append only with a major version. Behind
  // the operations of QXFileParser:

  /// Decodes the images of the open file.
  /// @param arrImages  gets the images behind its elements
  /// @param bFlag      handed through from the caller; the library's readers do not look at it
  /// @param nIndex     which page or frame; -1: what stands for the file as a whole, its first. The library's readers
  ///                   know no other
  /// @return  1, or 0 with the reason in GetErrorText
  virtual unsigned char GetImageData(QdcArray<QXImageData*>& arrImages, unsigned char bFlag, int nIndex) = 0;

  /// Decodes the frames of an animated file, each with the size of the whole picture.
  /// @param arrPictures  gets the frames behind its elements
  /// @param bFlip        1: rows of every frame from bottom to top; the centre points stay
  /// @return  1; 0 if the parser reads no animations, as here, or the file has none that can be read
  virtual unsigned char GetDynamicIMGData(QdcArray<QXGeoPicture*>& arrPictures, unsigned char bFlip);

  /// Open for a file that is in memory: a picture inside a model.
  /// @param pBytes  borrowed until the parser is opened again or given back
  /// @return  1; 0 if the parser reads files only, as here, or the bytes are of another type
  virtual unsigned char OpenBytes(unsigned char const* pBytes, QXUInt64 nSize);
};

}  // namespace QXC
