#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseToolkit.h>

#include <QxGraphics3D/frame/foundation/base3d/detail/QXImageHolder.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseImage.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseManager.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileType.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXImportParams.h>
#include <QxGraphics3D/frame/foundation/fileparser/detail/QXFileTypeTable.h>
#include <QxGraphics3D/frame/foundation/fileparser/detail/QXImageReader.h>
#include <QxGraphics3D/frame/foundation/stream/QXFile.h>
// A picture is the result here, though its folder stands behind this one; only the source reaches forward.
#include <QxGraphics3D/frame/foundation/geometry/QXGeoPicture.h>

#include <atomic>
#include <memory>

#include <cxxabi.h>

namespace QXC {

namespace {

std::atomic<unsigned int> g_nMaxEdge{detail::QXImageLimits().m_nMaxEdge};
std::atomic<QXUInt64> g_nMaxBytes{detail::QXImageLimits().m_nMaxBytes};

QdcUnicodeString& ErrorText() {
  thread_local QdcUnicodeString strError;
  return strError;
}

unsigned char Fail(wchar_t const* szText) {
  ErrorText() = szText;
  return 0;
}

struct ParserReturn {
  void operator()(QXFileParser* pParser) const { QXFileParseManager::DestroyFileParser(pParser); }
};
using ParserHolder = std::unique_ptr<QXFileParser, ParserReturn>;

void Destroy(QXImageData* pImage) {
  detail::QXImageDelete()(pImage);
}

void Destroy(QXGeoPicture* pPicture) {
  delete pPicture;
}

/// What a parser hands out, until it is known that the call succeeds.
template <class T>
class Harvest {
public:
  Harvest() = default;
  Harvest(Harvest const&) = delete;
  Harvest& operator=(Harvest const&) = delete;
  ~Harvest() {
    for (T* pItem : m_arrItems) Destroy(pItem);
  }

  QdcArray<T*>& Items() { return m_arrItems; }
  void MoveTo(QdcArray<T*>& arrTarget) {
    QXUInt64 const nOld = arrTarget.GetSize();
    arrTarget.SetSize(nOld + m_arrItems.GetSize());
    for (QXUInt64 i = 0; i < m_arrItems.GetSize(); ++i) arrTarget[nOld + i] = m_arrItems[i];
    m_arrItems.RemoveAll();
  }

private:
  QdcArray<T*> m_arrItems;
};

/// Opens a parser for images of a type and lets it read.
/// @param open  open(parser): 1 or 0
/// @param read  read(parser, items): 1 or 0
template <class T, class Open, class Read>
unsigned char ReadWith(int nType, QdcArray<T*>& arrItems, Open open, Read read) {
  ErrorText() = L"";
  ParserHolder const pHolder(QXFileParseManager::CreateFileParser(nType, 0));
  if (pHolder == nullptr) return Fail(QXFileParseManager::GetErrorText());
  // Hosts may have registered any parser for any number.
  auto* const pParser = dynamic_cast<QXFileParseImage*>(pHolder.get());
  if (pParser == nullptr) return Fail(L"files of this type hold no images");
  Harvest<T> harvest;
  if (open(*pParser) == 0) return Fail(pParser->GetErrorText());
  if (read(*pParser, harvest.Items()) == 0) return Fail(pParser->GetErrorText());
  harvest.MoveTo(arrItems);
  return 1;
}

/// Calls work() and turns what it raises into 0. Cancelling a thread unwinds with something that must go on its way.
template <class Work>
unsigned char Guarded(Work work) {
  try {
    return work();
  } catch (abi::__forced_unwind const&) {
    throw;
  } catch (...) {
    return Fail(L"the parser failed");
  }
}

}  // namespace

int QXFileParseToolkit::GetFileTypeByExtName(QdcUnicodeString strPath) {
  QdcUnicodeString const strExt = QXFile::GetExt(strPath);
  return strExt.IsEmpty() != 0 ? QXFileType::EM_UNKNOWN : QXFileType::ExtNameToFileType(strExt);
}

int QXFileParseToolkit::GetFileTypeByContent(unsigned char const* pBytes, QXUInt64 nSize) {
  return detail::QXFileTypeTable::Instance().FindContent(pBytes, pBytes == nullptr ? 0 : nSize).m_nType;
}

unsigned char QXFileParseToolkit::GetImageData(
    QXImportParams* pParams, QdcArray<QXImageData*>& arrImages, unsigned char bFlag, int nIndex) {
  if (pParams == nullptr) return Fail(L"there is nothing to open");
  return ReadWith(
      pParams->GetFileType(), arrImages, [=](QXFileParseImage& parser) { return parser.Open(pParams); },
      [=](QXFileParseImage& parser, QdcArray<QXImageData*>& arrItems) {
        return parser.GetImageData(arrItems, bFlag, nIndex);
      });
}

unsigned char QXFileParseToolkit::GetImageDataFromMemory(
    unsigned char const* pBytes, QXUInt64 nSize, QdcArray<QXImageData*>& arrImages) {
  return Guarded([&] {
    return ReadWith(
        GetFileTypeByContent(pBytes, nSize), arrImages,
        [=](QXFileParseImage& parser) { return parser.OpenBytes(pBytes, nSize); },
        [](QXFileParseImage& parser, QdcArray<QXImageData*>& arrItems) {
          return parser.GetImageData(arrItems, 0, -1);
        });
  });
}

unsigned char QXFileParseToolkit::GetDynamicIMGData(
    QdcUnicodeString const& strPath, QdcArray<QXGeoPicture*>& arrPictures, unsigned char bFlip) {
  return Guarded([&] {
    QXImportParams params;
    params.SetFilePathName(strPath);
    params.SetFileType(GetFileTypeByExtName(strPath));
    return ReadWith(
        params.GetFileType(), arrPictures, [&](QXFileParseImage& parser) { return parser.Open(&params); },
        [=](QXFileParseImage& parser, QdcArray<QXGeoPicture*>& arrItems) {
          return parser.GetDynamicIMGData(arrItems, bFlip);
        });
  });
}

unsigned char QXFileParseToolkit::GetDynamicIMGDataFromMemory(
    unsigned char const* pBytes, QXUInt64 nSize, QdcArray<QXGeoPicture*>& arrPictures, unsigned char bFlip) {
  return Guarded([&] {
    return ReadWith(
        GetFileTypeByContent(pBytes, nSize), arrPictures,
        [=](QXFileParseImage& parser) { return parser.OpenBytes(pBytes, nSize); },
        [=](QXFileParseImage& parser, QdcArray<QXGeoPicture*>& arrItems) {
          return parser.GetDynamicIMGData(arrItems, bFlip);
        });
  });
}

QdcUnicodeString const& QXFileParseToolkit::GetErrorText() {
  return ErrorText();
}

void QXFileParseToolkit::SetImageLimits(unsigned int nMaxEdge, QXUInt64 nMaxBytes) {
  g_nMaxEdge = nMaxEdge;
  g_nMaxBytes = nMaxBytes;
}

unsigned int QXFileParseToolkit::GetImageMaxEdge() {
  return g_nMaxEdge;
}

QXUInt64 QXFileParseToolkit::GetImageMaxBytes() {
  return g_nMaxBytes;
}

}  // namespace QXC
