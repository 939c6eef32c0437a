#include <apps/qx3d/geo/QXShapefile.h>

#include <apps/qx3d/QXMessage.h>
#include <apps/qx3d/geo/QXGeoText.h>

#include <iconv.h>
#include <shapefil.h>

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstring>
#include <map>
#include <memory>
#include <utility>

namespace QXApp {

namespace {

/// What the library underneath takes for an open file.
struct MemoryFile {
  std::string_view m_Bytes;
  std::size_t m_nPlace = 0;
};

/// The library hands no pointer of the caller to its hooks, only the name of a file.
thread_local QXShapefileBytes const* t_pOpenBytes = nullptr;

SAFile OpenFile(char const* szName, char const*) {
  std::string_view const name(szName);
  std::map<std::string_view, std::string_view> const mapFiles = {{".shp", t_pOpenBytes->m_Shapes},
      {".shx", t_pOpenBytes->m_Index}, {".dbf", t_pOpenBytes->m_Attributes}, {".cpg", t_pOpenBytes->m_CodePage}};
  auto const it = mapFiles.find(name.substr(name.size() < 4 ? 0 : name.size() - 4));
  if (it == mapFiles.end() || it->second.empty()) return nullptr;
  return reinterpret_cast<SAFile>(new MemoryFile{it->second});
}

MemoryFile& GetFile(SAFile pFile) {
  return *reinterpret_cast<MemoryFile*>(pFile);
}

SAOffset ReadFile(void* pTo, SAOffset nSize, SAOffset nCount, SAFile pFile) {
  MemoryFile& file = GetFile(pFile);
  if (nSize == 0) return 0;
  std::size_t const nLeft = file.m_Bytes.size() - std::min(file.m_nPlace, file.m_Bytes.size());
  // As from a file, the part of an item at the end is read and not counted: code pages are read so.
  std::size_t const nRead = nCount <= nLeft / nSize ? nCount * nSize : nLeft;
  if (nRead > 0) std::memcpy(pTo, file.m_Bytes.data() + file.m_nPlace, nRead);
  file.m_nPlace += nRead;
  return nRead / nSize;
}

SAOffset SeekFile(SAFile pFile, SAOffset nOffset, int nFrom) {
  MemoryFile& file = GetFile(pFile);
  file.m_nPlace = nOffset + (nFrom == SEEK_CUR ? file.m_nPlace : (nFrom == SEEK_END ? file.m_Bytes.size() : 0));
  return 0;
}

int CloseFile(SAFile pFile) {
  delete &GetFile(pFile);
  return 0;
}

double ReadDecimal(char const* szText) {
  double dNumber = 0.0;
  // The ordinary one follows the language of the system.
  ScanGeoNumber(szText, dNumber);
  return dNumber;
}

SAHooks MakeHooks() {
  SAHooks hooks;
  hooks.FOpen = &OpenFile;
  hooks.FRead = &ReadFile;
  hooks.FWrite = [](void*, SAOffset, SAOffset, SAFile) { return SAOffset{0}; };
  hooks.FSeek = &SeekFile;
  hooks.FTell = [](SAFile pFile) { return static_cast<SAOffset>(GetFile(pFile).m_nPlace); };
  hooks.FFlush = [](SAFile) { return 0; };
  hooks.FClose = &CloseFile;
  hooks.Remove = [](char const*) { return -1; };
  // The default one prints; what went wrong shows in what the operations answer.
  hooks.Error = [](char const*) {};
  hooks.Atof = &ReadDecimal;
  return hooks;
}

struct ShapesDeleter {
  void operator()(SHPInfo* p) const { SHPClose(p); }
};
struct AttributesDeleter {
  void operator()(DBFInfo* p) const { DBFClose(p); }
};
struct ShapeDeleter {
  void operator()(SHPObject* p) const { SHPDestroyObject(p); }
};

unsigned int GetByte(std::string_view bytes, std::size_t nPlace) {
  return static_cast<unsigned char>(bytes[nPlace]);
}

/// The library trusts the lengths that the heads of the files state. @return  empty, or which one lies
std::string CheckLengths(QXShapefileBytes const& bytes) {
  for (std::string_view const file : {bytes.m_Shapes, bytes.m_Index}) {
    char const* const szName = file.data() == bytes.m_Shapes.data() ? ".shp" : ".shx";
    if (file.size() < 100) return std::string("the ") + szName + " file is cut before its end; get another copy";
    std::size_t nWords = 0;
    for (std::size_t i = 24; i < 28; ++i) nWords = nWords << 8 | GetByte(file, i);
    if (nWords < 50 || 2 * nWords > file.size())
      return std::string("the ") + szName + " file has another length than it says; get another copy";
  }
  std::string_view const attributes = bytes.m_Attributes;
  if (attributes.size() < 33) return "the .dbf file is cut before its end; get another copy";
  std::size_t const nHead = GetByte(attributes, 8) | GetByte(attributes, 9) << 8;
  std::size_t const nRecord = GetByte(attributes, 10) | GetByte(attributes, 11) << 8;
  std::size_t nFields = 1;
  for (std::size_t i = 32; i + 32 <= nHead && i + 32 <= attributes.size() && GetByte(attributes, i) != 0x0D; i += 32)
    nFields += GetByte(attributes, i + 16);
  if (nHead < 33 || nHead > attributes.size() || nFields > nRecord)
    return "the .dbf file has fields that do not fit its records; get another copy";
  std::size_t nRecords = 0;
  for (std::size_t i = 8; i-- > 4;) nRecords = nRecords << 8 | GetByte(attributes, i);
  if (nRecords > (attributes.size() - nHead) / nRecord)
    return "the .dbf file has fewer records than it says; get another copy";
  return std::string();
}

/// Turns texts of one encoding into UTF-8.
class Decoder {
public:
  /// @param szCodePage  as the library tells it; null for none
  explicit Decoder(char const* szCodePage) : m_pConverter(reinterpret_cast<iconv_t>(-1)) {
    std::string const strName = szCodePage == nullptr ? std::string() : GetEncoding(MakeGeoLabel(szCodePage));
    if (!strName.empty()) m_pConverter = iconv_open("UTF-8", strName.c_str());
    if (!IsOpen()) m_pLatin = iconv_open("UTF-8", "ISO-8859-1");
  }
  Decoder(Decoder const&) = delete;
  Decoder& operator=(Decoder const&) = delete;
  ~Decoder() {
    if (IsOpen()) iconv_close(m_pConverter);
    if (m_pLatin != reinterpret_cast<iconv_t>(-1)) iconv_close(m_pLatin);
  }

  /// Empty if the text is none in its encoding.
  std::string Decode(std::string const& strText) const {
    if (IsOpen()) return Convert(m_pConverter, strText);
    return IsUtf8(strText) ? strText : Convert(m_pLatin, strText);
  }

private:
  /// The name of an encoding for a number of a .dbf file or the text of a .cpg file.
  static std::string GetEncoding(std::string const& strCodePage) {
    static std::map<std::string, char const*> const mapNumbers = {{"LDID/1", "CP437"}, {"LDID/2", "CP850"},
        {"LDID/3", "CP1252"}, {"LDID/19", "CP932"}, {"LDID/38", "CP866"}, {"LDID/77", "CP936"}, {"LDID/78", "CP949"},
        {"LDID/79", "CP950"}, {"LDID/87", ""}, {"LDID/88", "CP1252"}, {"LDID/89", "CP1252"}, {"LDID/101", "CP866"},
        {"LDID/120", "CP950"}, {"LDID/121", "CP949"}, {"LDID/122", "CP936"}, {"LDID/123", "CP932"},
        {"LDID/200", "CP1250"}, {"LDID/201", "CP1251"}, {"LDID/202", "CP1254"}, {"LDID/203", "CP1253"}};
    if (auto const it = mapNumbers.find(strCodePage); it != mapNumbers.end()) return it->second;
    bool const bDigits = strCodePage.find_first_not_of("0123456789") == std::string::npos;
    if (bDigits && strCodePage == "65001") return "UTF-8";
    return bDigits ? "CP" + strCodePage : strCodePage;
  }

  bool IsOpen() const { return m_pConverter != reinterpret_cast<iconv_t>(-1); }

  static std::string Convert(iconv_t pConverter, std::string const& strText) {
    if (pConverter == reinterpret_cast<iconv_t>(-1)) return std::string();
    std::string strIn = strText;
    std::string strOut(4 * strIn.size(), '\0');
    char* pIn = strIn.data();
    char* pOut = strOut.data();
    std::size_t nIn = strIn.size();
    std::size_t nOut = strOut.size();
    iconv(pConverter, nullptr, nullptr, nullptr, nullptr);
    bool const bGood = iconv(pConverter, &pIn, &nIn, &pOut, &nOut) != static_cast<std::size_t>(-1);
    strOut.resize(strOut.size() - nOut);
    return bGood && IsUtf8(strOut) ? strOut : std::string();
  }

  iconv_t m_pConverter;
  iconv_t m_pLatin = reinterpret_cast<iconv_t>(-1);
};

bool IsPoints(int nType) {
  return nType == SHPT_POINT || nType == SHPT_POINTZ || nType == SHPT_POINTM || nType == SHPT_MULTIPOINT ||
         nType == SHPT_MULTIPOINTZ || nType == SHPT_MULTIPOINTM;
}

std::string ListFields(DBFInfo* pAttributes) {
  std::string strList;
  for (int i = 0; i < DBFGetFieldCount(pAttributes); ++i) {
    char szName[12] = {};
    DBFGetFieldInfo(pAttributes, i, szName, nullptr, nullptr);
    strList += (strList.empty() ? "" : ", ") + MakeGeoLabel(szName);
  }
  return IsUtf8(strList) ? strList : "others, with names in no readable encoding";
}

class Reader {
public:
  Reader(QXGeoNames const& names, QXSceneProblems& problems, QXSceneProblems& warnings)
      : m_Names(names), m_Problems(problems), m_Warnings(warnings) {}

  QXGeoData Read() {
    SAHooks hooks = MakeHooks();
    std::unique_ptr<SHPInfo, ShapesDeleter> const pShapes(SHPOpenLL("a.shp", "rb", &hooks));
    std::unique_ptr<DBFInfo, AttributesDeleter> const pAttributes(DBFOpenLL("a.dbf", "rb", &hooks));
    if (pShapes == nullptr || pAttributes == nullptr) {
      m_Problems.Add(0, std::string("the ") + (pShapes == nullptr ? ".shp and .shx files are" : ".dbf file is") +
                            " no part of a shapefile; get another copy");
      return QXGeoData();
    }
    int nCount = 0;
    int nType = 0;
    SHPGetInfo(pShapes.get(), &nCount, &nType, nullptr, nullptr);
    if (!IsPoints(nType)) m_Problems.Add(0, "its shapes are no points; give a shapefile of points");
    if (m_Problems.IsEmpty()) FindFields(pAttributes.get());
    if (!m_Problems.IsEmpty()) return QXGeoData();
    Decoder const decoder(DBFGetCodePage(pAttributes.get()));
    nCount = std::min(nCount, DBFGetRecordCount(pAttributes.get()));
    for (int i = 0; i < nCount && m_nPositions <= MaxGeoCorners; ++i)
      ReadRecord(pShapes.get(), pAttributes.get(), i, decoder);
    return std::move(m_Data);
  }

private:
  void FindFields(DBFInfo* pAttributes) {
    m_nLabel = m_Names.m_bPlaces ? -1 : FindField(pAttributes, m_Names.m_strLabel, true);
    // Labels do without an angle; who places things by one wants to know.
    m_nAngle = FindField(pAttributes, m_Names.m_strAngle, m_Names.m_bPlaces);
    m_nScale = FindField(pAttributes, m_Names.m_strScale, true);
    m_nWhere = FindField(pAttributes, m_Names.m_strWhere, true);
  }

  /// -1 for none.
  int FindField(DBFInfo* pAttributes, std::string const& strName, bool bRequired) {
    if (strName.empty()) return -1;
    int const nField = DBFGetFieldIndex(pAttributes, strName.c_str());
    if (nField < 0 && bRequired)
      m_Problems.Add(0, "there is no attribute '" + strName + "'; known are " + ListFields(pAttributes));
    return nField;
  }

  static std::string ReadText(DBFInfo* pAttributes, int nRecord, int nField) {
    char const* const szText = nField < 0 ? nullptr : DBFReadStringAttribute(pAttributes, nRecord, nField);
    return szText == nullptr ? std::string() : szText;
  }

  static bool ReadNumber(DBFInfo* pAttributes, int nRecord, int nField, double& dNumber) {
    return nField >= 0 && ScanGeoNumber(ReadText(pAttributes, nRecord, nField), dNumber) && IsGeoCoordinate(dNumber);
  }

  void ReadRecord(SHPInfo* pShapes, DBFInfo* pAttributes, int nRecord, Decoder const& decoder) {
    std::unique_ptr<SHPObject, ShapeDeleter> const pShape(SHPReadObject(pShapes, nRecord));
    if (pShape == nullptr) {
      Warn(nRecord, "its shape cannot be read and is left out; get another copy");
      return;
    }
    if (!IsPoints(pShape->nSHPType)) return;
    m_nPositions += static_cast<std::size_t>(pShape->nVertices);
    if (m_nPositions > MaxGeoCorners) {
      // The file's size does not bound them: any number of records can name one shape.
      Warn(nRecord, "the file has more than 10000000 positions, and the further ones are left out; cut it into parts");
      return;
    }
    if (m_nWhere >= 0 &&
        MakeGeoLabel(decoder.Decode(ReadText(pAttributes, nRecord, m_nWhere))) != m_Names.m_strWhereValue)
      return;
    QXGeoPoint point;
    std::string const strRaw = ReadText(pAttributes, nRecord, m_nLabel);
    point.m_strText = MakeGeoLabel(decoder.Decode(strRaw));
    if (point.m_strText.empty() && !MakeGeoLabel(strRaw).empty())
      Warn(nRecord, "its text is none in the encoding of the file and is left out; give the right one in a .cpg file");
    point.m_bAngle = ReadNumber(pAttributes, nRecord, m_nAngle, point.m_dAngle);
    if (!ReadNumber(pAttributes, nRecord, m_nScale, point.m_dScale) || point.m_dScale < 0.0) point.m_dScale = 0.0;
    bool bGood = true;
    for (int i = 0; i < pShape->nVertices; ++i) {
      double const z = pShape->padfZ == nullptr ? 0.0 : pShape->padfZ[i];
      point.m_vecPosition = QXC::QXVector3d(pShape->padfX[i], pShape->padfY[i], z);
      bGood = IsGeoCoordinate(pShape->padfX[i]) && IsGeoCoordinate(pShape->padfY[i]) && IsGeoCoordinate(z);
      std::string const strReason = bGood ? AddGeoPoint(point, m_Names, m_Data) : "a coordinate is none; correct it";
      if (!strReason.empty()) Warn(nRecord, strReason);
    }
  }

  void Warn(int nRecord, std::string const& strText) {
    m_Warnings.Add(0, "record " + std::to_string(nRecord + 1) + ": " + strText);
  }

  QXGeoNames const& m_Names;
  QXSceneProblems& m_Problems;
  QXSceneProblems& m_Warnings;
  QXGeoData m_Data;
  std::size_t m_nPositions = 0;
  int m_nLabel = -1;
  int m_nAngle = -1;
  int m_nScale = -1;
  int m_nWhere = -1;
};

}  // namespace

QXGeoData ParseShapefile(
    QXShapefileBytes const& bytes, QXGeoNames const& names, QXSceneProblems& problems, QXSceneProblems& warnings) {
  std::string const strLie = CheckLengths(bytes);
  if (!strLie.empty()) {
    problems.Add(0, strLie);
    return QXGeoData();
  }
  t_pOpenBytes = &bytes;
  QXGeoData data = Reader(names, problems, warnings).Read();
  t_pOpenBytes = nullptr;
  return data;
}

}  // namespace QXApp
