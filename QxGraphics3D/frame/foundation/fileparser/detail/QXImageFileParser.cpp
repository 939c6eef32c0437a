#include <QxGraphics3D/frame/foundation/fileparser/detail/QXImageFileParser.h>

#include <QxGraphics3D/frame/foundation/base3d/QXImageData.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseToolkit.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileType.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXImportParams.h>
#include <QxGraphics3D/frame/foundation/fileparser/detail/QXFileTypeTable.h>
#include <QxGraphics3D/frame/foundation/fileparser/detail/QXGifReader.h>
#include <QxGraphics3D/frame/foundation/fileparser/detail/QXImageReader.h>
#include <QxGraphics3D/frame/foundation/stream/detail/QXFileBytes.h>

namespace QXC::detail {

namespace {

wchar_t const* DescribeProblem(QXFileProblem eProblem) {
  switch (eProblem) {
  case QXFileProblem::Missing: return L"no such file; correct the name";
  case QXFileProblem::Forbidden: return L"the file may not be read; change its permissions";
  case QXFileProblem::Folder: return L"this is a directory; give the image file inside it";
  case QXFileProblem::NotRegular: return L"this is no regular file; give an image file";
  case QXFileProblem::TooLarge: return L"the file is larger than 4 GiB, the most that is read; give a smaller one";
  case QXFileProblem::Shrunk: return L"the file became shorter while it was read; try again when it is complete";
  case QXFileProblem::NoMemory: return L"there is not enough memory for the file; give a smaller one";
  default: return L"the file cannot be read; get another copy";
  }
}

QXImageLimits CurrentLimits() {
  QXImageLimits limits;
  limits.m_nMaxEdge = QXFileParseToolkit::GetImageMaxEdge();
  limits.m_nMaxBytes = QXFileParseToolkit::GetImageMaxBytes();
  return limits;
}

}  // namespace

void QXImageFileParser::Close() {
  m_pOwnBytes.reset();
  m_pBytes = nullptr;
  m_nSize = 0;
  m_strError = L"";
}

unsigned char QXImageFileParser::Fail(wchar_t const* szText) {
  Close();
  m_strError = szText;
  return 0;
}

unsigned char QXImageFileParser::CheckBytes() {
  if (CarriesContent(QXFileTypeTable::Instance().FindType(m_nType), m_pBytes, m_nSize)) return 1;
  int const nContent = QXFileParseToolkit::GetFileTypeByContent(m_pBytes, m_nSize);
  Close();
  m_strError.Format(L"this is no %s file", QXFileType::FileTypeToExtName(m_nType).Cstr());
  if (nContent >= 0) {
    QdcUnicodeString strHint;
    strHint.Format(L": it begins as a %s file does; rename it", QXFileType::FileTypeToExtName(nContent).Cstr());
    m_strError += strHint;
  }
  return 0;
}

unsigned char QXImageFileParser::Open(QXImportParams* pParams) {
  Close();
  if (pParams == nullptr) return Fail(L"there is nothing to open");
  QXFileProblem eProblem = QXFileProblem::None;
  m_pOwnBytes.reset(ReadWholeFile(pParams->GetFilePathName(), m_nSize, &eProblem));
  if (m_pOwnBytes == nullptr) return Fail(DescribeProblem(eProblem));
  m_pBytes = m_pOwnBytes.get();
  return CheckBytes();
}

unsigned char QXImageFileParser::OpenBytes(unsigned char const* pBytes, QXUInt64 nSize) {
  Close();
  if (pBytes == nullptr) return Fail(L"there is nothing to open");
  m_pBytes = pBytes;
  m_nSize = nSize;
  return CheckBytes();
}

unsigned char QXImageFileParser::GetImageData(
    QdcArray<QXImageData*>& arrImages, unsigned char /*bFlag*/, int /*nIndex*/) {
  if (m_pBytes == nullptr) return Fail(L"no file is open");
  // Room first: an image that finds no place in the list would be lost.
  QXUInt64 const nPlace = arrImages.Add(nullptr);
  arrImages[nPlace] = ReadImage(m_nType, m_pBytes, m_nSize, CurrentLimits());
  if (arrImages[nPlace] != nullptr) return 1;
  arrImages.RemoveAt(nPlace);
  m_strError =
      L"the image is damaged, larger than the limits allow or of a kind that is not read; get or export it again";
  return 0;
}

unsigned char QXImageFileParser::GetDynamicIMGData(QdcArray<QXGeoPicture*>& arrPictures, unsigned char bFlip) {
  if (m_pBytes == nullptr) return Fail(L"no file is open");
  if (m_nType != QXFileType::EM_IMAGE_GIF) {
    m_strError = L"files of this type hold no animations that are read";
    return 0;
  }
  if (ReadGifPictures(m_pBytes, m_nSize, arrPictures, bFlip, CurrentLimits()) != 0) return 1;
  m_strError = L"the animation is damaged or larger than the limits allow; get or export it again";
  return 0;
}

}  // namespace QXC::detail
