#include <QxGraphics3D/frame/foundation/fileparser/detail/QXFileTypeTable.h>

#include <QxGraphics3D/frame/foundation/fileparser/QXFileType.h>
#include <QxGraphics3D/frame/foundation/fileparser/detail/QXImageFileParser.h>

#include <algorithm>
#include <new>

namespace QXC::detail {

namespace {

/// The next word of a list that spaces separate, empty at the end; szText moves behind it.
QdcUnicodeString TakeWord(wchar_t const*& szText) {
  while (*szText == L' ') ++szText;
  wchar_t const* const szWord = szText;
  while (*szText != 0 && *szText != L' ') ++szText;
  return QdcUnicodeString(szWord, static_cast<int>(szText - szWord));
}

int HexDigit(wchar_t nCharacter) {
  if (nCharacter >= L'0' && nCharacter <= L'9') return nCharacter - L'0';
  if (nCharacter >= L'a' && nCharacter <= L'f') return nCharacter - L'a' + 10;
  if (nCharacter >= L'A' && nCharacter <= L'F') return nCharacter - L'A' + 10;
  return -1;
}

/// Two characters of a pattern: a byte's value, -1 for any byte, -2 for what is neither.
int PatternByte(wchar_t const* szPair) {
  if (szPair[0] == L'.' && szPair[1] == L'.') return -1;
  int const nHigh = HexDigit(szPair[0]);
  int const nLow = nHigh < 0 ? -1 : HexDigit(szPair[1]);
  return nLow < 0 ? -2 : nHigh * 16 + nLow;
}

bool IsPattern(QdcUnicodeString const& strPattern) {
  if (strPattern.GetLength() % 2 != 0) return false;
  for (wchar_t const* p = strPattern.Cstr(); *p != 0; p += 2)
    if (PatternByte(p) == -2) return false;
  return true;
}

bool FitsPattern(QdcUnicodeString const& strPattern, unsigned char const* pBytes, QXUInt64 nSize) {
  if (nSize < static_cast<QXUInt64>(strPattern.GetLength() / 2)) return false;
  for (wchar_t const* p = strPattern.Cstr(); *p != 0; p += 2, ++pBytes) {
    int const nByte = PatternByte(p);
    if (nByte >= 0 && nByte != *pBytes) return false;
  }
  return true;
}

/// Calls test(word) for each word until it says true; whether it did.
template <class Test>
bool AnyWord(QdcUnicodeString const& strList, Test test) {
  wchar_t const* szRest = strList.Cstr();
  for (QdcUnicodeString strWord = TakeWord(szRest); strWord.IsEmpty() == 0; strWord = TakeWord(szRest))
    if (test(strWord)) return true;
  return false;
}

bool FitsMagic(QXFileTypeRow const& row, unsigned char const* pBytes, QXUInt64 nSize) {
  return AnyWord(row.m_strMagic, [=](QdcUnicodeString const& strWord) { return FitsPattern(strWord, pBytes, nSize); });
}

bool IsExtension(QdcUnicodeString const& strWord) {
  return strWord.GetLength() > 1 && strWord[0] == L'.';
}

bool IsRowSound(QXFileTypeRow const& row) {
  return row.m_nType >= 0 && AnyWord(row.m_strExtensions, &IsExtension) &&
         !AnyWord(row.m_strMagic, [](QdcUnicodeString const& strWord) { return !IsPattern(strWord); }) &&
         (row.m_pfnCreate == nullptr) == (row.m_pfnDestroy == nullptr);
}

/// Targa files begin with no fixed bytes; most other files fail one of the header's narrow fields.
unsigned char LooksLikeTarga(unsigned char const* pBytes, QXUInt64 nSize) {
  if (nSize < 18) return 0;
  int const nMapType = pBytes[1];
  int const nImageType = pBytes[2] & ~8;  // bit 3: run lengths
  int const nMapDepth = pBytes[7];
  int const nDepth = pBytes[16];
  bool const bMapSound =
      nMapType == 0 || (nMapType == 1 && (nMapDepth == 15 || nMapDepth == 16 || nMapDepth == 24 || nMapDepth == 32));
  bool const bTypeSound = (nImageType == 1 && nMapType == 1) || nImageType == 2 || nImageType == 3;
  bool const bDepthSound = nDepth == 8 || nDepth == 15 || nDepth == 16 || nDepth == 24 || nDepth == 32;
  bool const bSizeSound = (pBytes[12] | pBytes[13]) != 0 && (pBytes[14] | pBytes[15]) != 0;
  return static_cast<unsigned char>(bMapSound && bTypeSound && bDepthSound && bSizeSound && pBytes[2] < 16);
}

template <int Type>
QXFileTypeRow ImageRow(wchar_t const* szExtensions, wchar_t const* szMagic, QXFileContentProc pfnContent = nullptr) {
  return {Type, EM_FILE_IMAGE, szExtensions, szMagic, pfnContent,
      []() -> QXFileParser* { return new (std::nothrow) QXImageFileParser(Type); },
      [](QXFileParser* pParser) { delete pParser; }};
}

QXFileTypeRow ModelRow(int nType, wchar_t const* szExtension) {
  return {nType, EM_FILE_MODEL, szExtension, QdcUnicodeString(), nullptr, nullptr, nullptr};
}

}  // namespace

QXFileTypeTable& QXFileTypeTable::Instance() {
  static QXFileTypeTable* pTable = new QXFileTypeTable;
  return *pTable;
}

QXFileTypeTable::QXFileTypeTable() {
  m_vecBuiltIn = {
      ImageRow<QXFileType::EM_IMAGE_BMP>(L".bmp", L"424D"),
      ImageRow<QXFileType::EM_IMAGE_JPG>(L".jpg .jpeg", L"FFD8FF"),
      ImageRow<QXFileType::EM_IMAGE_PNG>(L".png", L"89504E470D0A1A0A"),
      ImageRow<QXFileType::EM_IMAGE_GIF>(L".gif", L"474946383761 474946383961"),
      // Little-endian and big-endian, each with offsets of 32 and of 64 bits.
      ImageRow<QXFileType::EM_IMAGE_TIFF>(L".tif .tiff", L"49492A00 4D4D002A 49492B00 4D4D002B"),
      ImageRow<QXFileType::EM_IMAGE_WEBP>(L".webp", L"52494646........57454250"),
      ImageRow<QXFileType::EM_IMAGE_TGA>(L".tga", L"", &LooksLikeTarga),
      // "#?RADIANCE" and "#?RGBE".
      ImageRow<QXFileType::EM_IMAGE_HDR>(L".hdr", L"233F52414449414E4345 233F52474245"),
      ImageRow<QXFileType::EM_IMAGE_PSD>(L".psd", L"38425053"),
      ImageRow<QXFileType::EM_IMAGE_KTX2>(L".ktx2", L"AB4B5458203230BB0D0A1A0A"),
      ModelRow(QXFileType::EM_MODEL_3DS, L".3ds"),
      ModelRow(QXFileType::EM_MODEL_GLTF, L".gltf"),
      ModelRow(QXFileType::EM_MODEL_GLB, L".glb"),
      ModelRow(QXFileType::EM_MODEL_OBJ, L".obj"),
      ModelRow(QXFileType::EM_MODEL_PLY, L".ply"),
      ModelRow(QXFileType::EM_MODEL_STL, L".stl"),
      ModelRow(QXFileType::EM_MODEL_COLLADA, L".dae"),
      ModelRow(QXFileType::EM_MODEL_FBX, L".fbx"),
  };
}

bool QXFileTypeTable::Register(QXFileTypeRow const& row) {
  if (!IsRowSound(row)) return false;
  std::lock_guard const lock(m_Mutex);
  std::erase_if(m_vecRegistered, [&](QXFileTypeRow const& other) { return other.m_nType == row.m_nType; });
  m_vecRegistered.push_back(row);
  return true;
}

void QXFileTypeTable::Unregister(int nType) {
  std::lock_guard const lock(m_Mutex);
  std::erase_if(m_vecRegistered, [=](QXFileTypeRow const& row) { return row.m_nType == nType; });
}

template <class Visit>
bool QXFileTypeTable::VisitRows(Visit visit) const {
  std::lock_guard const lock(m_Mutex);
  for (auto it = m_vecRegistered.rbegin(); it != m_vecRegistered.rend(); ++it)
    if (visit(*it)) return true;
  for (QXFileTypeRow const& row : m_vecBuiltIn) {
    bool const bHidden = std::any_of(m_vecRegistered.begin(), m_vecRegistered.end(),
        [&](QXFileTypeRow const& other) { return other.m_nType == row.m_nType; });
    if (!bHidden && visit(row)) return true;
  }
  return false;
}

QXFileTypeRow QXFileTypeTable::FindType(int nType) const {
  QXFileTypeRow found;
  VisitRows([&](QXFileTypeRow const& row) {
    if (row.m_nType != nType) return false;
    found = row;
    return true;
  });
  return found;
}

QXFileTypeRow QXFileTypeTable::FindExtension(QdcUnicodeString const& strExt) const {
  QXFileTypeRow found;
  VisitRows([&](QXFileTypeRow const& row) {
    if (!AnyWord(row.m_strExtensions,
            [&](QdcUnicodeString const& strWord) { return strWord.CompareNoCase(strExt.Cstr()) == 0; }))
      return false;
    found = row;
    return true;
  });
  return found;
}

QXFileTypeRow QXFileTypeTable::FindContent(unsigned char const* pBytes, QXUInt64 nSize) const {
  QXFileTypeRow found;
  std::vector<QXFileTypeRow> vecAsked;
  bool const bMagic = VisitRows([&](QXFileTypeRow const& row) {
    if (row.m_pfnContent != nullptr) vecAsked.push_back(row);
    if (!FitsMagic(row, pBytes, nSize)) return false;
    found = row;
    return true;
  });
  if (bMagic) return found;
  for (QXFileTypeRow const& row : vecAsked)
    if (row.m_pfnContent(pBytes, nSize) != 0) return row;
  return found;
}

std::vector<QXFileTypeRow> QXFileTypeTable::FindKind(QXFileKind eKind) const {
  std::vector<QXFileTypeRow> vecFound;
  VisitRows([&](QXFileTypeRow const& row) {
    if (row.m_eKind == eKind) vecFound.push_back(row);
    return false;
  });
  std::sort(vecFound.begin(), vecFound.end(),
      [](QXFileTypeRow const& first, QXFileTypeRow const& second) { return first.m_nType < second.m_nType; });
  return vecFound;
}

bool CarriesContent(QXFileTypeRow const& row, unsigned char const* pBytes, QXUInt64 nSize) {
  if (row.m_strMagic.IsEmpty() != 0 && row.m_pfnContent == nullptr) return true;
  return FitsMagic(row, pBytes, nSize) || (row.m_pfnContent != nullptr && row.m_pfnContent(pBytes, nSize) != 0);
}

}  // namespace QXC::detail
