#include <plugins/assimp/QXPlyCheck.h>

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace QXAssimp {

namespace {

struct PlyProperty {
  /// Bytes of a value; of an entry for a list.
  std::size_t m_nSize = 0;
  /// Bytes of the count in front of a list, 0 for a single value.
  std::size_t m_nCountSize = 0;
};

struct PlyElement {
  std::uint64_t m_nCount = 0;
  std::vector<PlyProperty> m_vecProperties;
};

enum class PlyForm { Text, LittleEndian, BigEndian };

struct PlyHeader {
  PlyForm m_eForm = PlyForm::Text;
  std::vector<PlyElement> m_vecElements;
  std::size_t m_nBody = 0;
};

/// Words of a text, separated by blanks and line ends.
class WordReader {
public:
  explicit WordReader(std::string_view strText) : m_strText(strText) {}
  /// Empty at the end of the text.
  std::string_view Next() {
    std::size_t const nBegin = m_strText.find_first_not_of(Blanks);
    if (nBegin == std::string_view::npos) return m_strText = std::string_view();
    std::size_t const nEnd = std::min(m_strText.find_first_of(Blanks, nBegin), m_strText.size());
    std::string_view const strWord = m_strText.substr(nBegin, nEnd - nBegin);
    m_strText.remove_prefix(nEnd);
    return strWord;
  }

private:
  static constexpr std::string_view Blanks = " \t\r\n\v\f";
  std::string_view m_strText;
};

/// Bytes of a type name of the format, 0 for an unknown one.
std::size_t SizeOfType(std::string_view strType) {
  if (strType == "char" || strType == "uchar" || strType == "int8" || strType == "uint8") return 1;
  if (strType == "short" || strType == "ushort" || strType == "int16" || strType == "uint16") return 2;
  if (strType == "int" || strType == "uint" || strType == "int32" || strType == "uint32") return 4;
  if (strType == "float" || strType == "float32") return 4;
  if (strType == "double" || strType == "float64") return 8;
  return 0;
}

bool ReadCount(std::string_view strWord, std::uint64_t& nCount) {
  auto const [pEnd, error] = std::from_chars(strWord.data(), strWord.data() + strWord.size(), nCount);
  return error == std::errc() && pEnd == strWord.data() + strWord.size();
}

bool ReadHeaderLine(std::string_view strLine, PlyHeader& header) {
  WordReader words(strLine);
  std::string_view const strKey = words.Next();
  if (strKey == "format") {
    std::string_view const strForm = words.Next();
    if (strForm == "binary_little_endian")
      header.m_eForm = PlyForm::LittleEndian;
    else if (strForm == "binary_big_endian")
      header.m_eForm = PlyForm::BigEndian;
    else
      return strForm == "ascii";
  } else if (strKey == "element") {
    words.Next();
    header.m_vecElements.emplace_back();
    return ReadCount(words.Next(), header.m_vecElements.back().m_nCount);
  } else if (strKey == "property") {
    if (header.m_vecElements.empty()) return false;
    PlyProperty property;
    std::string_view strType = words.Next();
    if (strType == "list") {
      property.m_nCountSize = SizeOfType(words.Next());
      if (property.m_nCountSize == 0) return false;
      strType = words.Next();
    }
    property.m_nSize = SizeOfType(strType);
    header.m_vecElements.back().m_vecProperties.push_back(property);
    return property.m_nSize != 0;
  }
  return true;  // comments and what later versions may add
}

bool ReadHeader(std::string_view strText, PlyHeader& header) {
  if (strText.substr(0, 3) != "ply") return false;
  std::size_t nLine = 0;
  for (;;) {
    std::size_t const nEnd = strText.find('\n', nLine);
    if (nEnd == std::string_view::npos) return false;
    std::string_view strLine = strText.substr(nLine, nEnd - nLine);
    if (!strLine.empty() && strLine.back() == '\r') strLine.remove_suffix(1);
    nLine = nEnd + 1;
    if (strLine == "end_header") break;
    if (!ReadHeaderLine(strLine, header)) return false;
  }
  header.m_nBody = nLine;
  return true;
}

bool IsWholeText(std::string_view strBody, PlyHeader const& header) {
  WordReader words(strBody);
  for (PlyElement const& element : header.m_vecElements) {
    if (element.m_vecProperties.empty()) continue;
    for (std::uint64_t i = 0; i < element.m_nCount; ++i) {
      for (PlyProperty const& property : element.m_vecProperties) {
        std::uint64_t nWords = 1;
        if (property.m_nCountSize != 0 && !ReadCount(words.Next(), nWords)) return false;
        for (; nWords > 0; --nWords)
          if (words.Next().empty()) return false;
      }
    }
  }
  return true;
}

/// Position behind one record, or npos if the body ends before.
std::size_t SkipRecord(std::string_view strBody, std::size_t nOffset, PlyElement const& element, bool bBigEndian) {
  for (PlyProperty const& property : element.m_vecProperties) {
    if (strBody.size() - nOffset < property.m_nCountSize) return std::string_view::npos;
    std::uint64_t nValues = property.m_nCountSize == 0 ? 1 : 0;
    for (std::size_t i = 0; i < property.m_nCountSize; ++i) {
      std::size_t const nByte = bBigEndian ? i : property.m_nCountSize - 1 - i;
      nValues = nValues << 8 | static_cast<unsigned char>(strBody[nOffset + nByte]);
    }
    nOffset += property.m_nCountSize;
    if (nValues > (strBody.size() - nOffset) / property.m_nSize) return std::string_view::npos;
    nOffset += static_cast<std::size_t>(nValues) * property.m_nSize;
  }
  return nOffset;
}

bool IsWholeBinary(std::string_view strBody, PlyHeader const& header) {
  std::size_t nOffset = 0;
  for (PlyElement const& element : header.m_vecElements) {
    if (element.m_vecProperties.empty()) continue;
    // Each record has at least a byte, so that a lying count ends with the body.
    for (std::uint64_t i = 0; i < element.m_nCount; ++i) {
      nOffset = SkipRecord(strBody, nOffset, element, header.m_eForm == PlyForm::BigEndian);
      if (nOffset == std::string_view::npos) return false;
    }
  }
  return true;
}

}  // namespace

bool CheckPly(std::vector<unsigned char> const& vecBytes, std::string& strError) {
  std::string_view const strText(reinterpret_cast<char const*>(vecBytes.data()), vecBytes.size());
  PlyHeader header;
  if (!ReadHeader(strText, header)) {
    strError = "this is no PLY file, or its header is broken";
    return false;
  }
  std::string_view const strBody = strText.substr(header.m_nBody);
  if (header.m_eForm == PlyForm::Text ? IsWholeText(strBody, header) : IsWholeBinary(strBody, header)) return true;
  strError = "the file is cut off: it holds less than its header announces";
  return false;
}

}  // namespace QXAssimp
