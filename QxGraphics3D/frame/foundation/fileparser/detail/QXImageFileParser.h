/// @file
/// The parser of the image types that the library reads itself.
#pragma once

#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseImage.h>

#include <memory>

namespace QXC::detail {

/// Reads the file whole, checks that its bytes are of the type and hands them to the reader of that type. Nothing is
/// raised.
class QXImageFileParser final : public QXFileParseImage {
public:
  explicit QXImageFileParser(int nType) : m_nType(nType) {}

  unsigned char Open(QXImportParams* pParams) override;
  QdcUnicodeString const& GetErrorText() const override { return m_strError; }
  unsigned char GetImageData(QdcArray<QXImageData*>& arrImages, unsigned char bFlag, int nIndex) override;
  /// Of a GIF; the other types have no animations here.
  unsigned char GetDynamicIMGData(QdcArray<QXGeoPicture*>& arrPictures, unsigned char bFlip) override;
  unsigned char OpenBytes(unsigned char const* pBytes, QXUInt64 nSize) override;

private:
  void Close();
  unsigned char CheckBytes();
  unsigned char Fail(wchar_t const* szText);

  int m_nType;
  std::unique_ptr<unsigned char[]> m_pOwnBytes;
  /// The bytes of the open file, null if none is open; the block above or a caller's.
  unsigned char const* m_pBytes = nullptr;
  QXUInt64 m_nSize = 0;
  QdcUnicodeString m_strError;
};

}  // namespace QXC::detail
