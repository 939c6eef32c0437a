#include <plugins/assimp/QXMtlMaps.h>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <string_view>

namespace QXAssimp {

namespace {

constexpr std::string_view Blank = " \t\r";

std::string_view Trim(std::string_view str) {
  std::size_t const nBegin = str.find_first_not_of(Blank);
  return nBegin == std::string_view::npos ? std::string_view()
                                          : str.substr(nBegin, str.find_last_not_of(Blank) + 1 - nBegin);
}

/// Takes the first word off a text without blanks around it; what remains has none either.
std::string_view TakeWord(std::string_view& strText) {
  std::size_t const nEnd = strText.find_first_of(Blank);
  std::string_view const strWord = strText.substr(0, nEnd);
  strText = nEnd == std::string_view::npos ? std::string_view() : Trim(strText.substr(nEnd));
  return strWord;
}

/// As the importer reads keys: in any case.
bool IsKey(std::string_view strWord, std::string_view strKey) {
  return std::equal(strWord.begin(), strWord.end(), strKey.begin(), strKey.end(),
      [](char a, char b) { return std::tolower(static_cast<unsigned char>(a)) == b; });
}

bool ReadNumber(std::string_view strWord, float& fValue) {
  auto const result = std::from_chars(strWord.data(), strWord.data() + strWord.size(), fValue);
  return result.ec == std::errc() && result.ptr == strWord.data() + strWord.size() && std::isfinite(fValue);
}

/// Takes as many numbers as there are, three at most; the last word is the name, whatever it looks like.
void TakeNumbers(std::string_view& strText, float (&fValues)[2]) {
  for (int i = 0; i < 3; ++i) {
    std::string_view strRest = strText;
    float fValue = 0.0f;
    if (!ReadNumber(TakeWord(strRest), fValue) || strRest.empty()) return;
    if (i < 2) fValues[i] = fValue;
    strText = strRest;
  }
}

}  // namespace

void QXMtlMaps::TakeOptions(std::vector<unsigned char>& vecBytes) {
  m_strMaterial.clear();
  std::string_view const strText(reinterpret_cast<char const*>(vecBytes.data()), vecBytes.size());
  std::string strResult;
  strResult.reserve(strText.size());
  for (std::size_t nBegin = 0; nBegin < strText.size();) {
    std::size_t const nEnd = std::min(strText.find('\n', nBegin), strText.size());
    strResult += RewriteLine(std::string(strText.substr(nBegin, nEnd - nBegin)));
    if (nEnd < strText.size()) strResult += '\n';
    nBegin = nEnd + 1;
  }
  vecBytes.assign(strResult.begin(), strResult.end());
}

std::string QXMtlMaps::RewriteLine(std::string const& strLine) {
  std::string_view strRest = Trim(strLine);
  std::string_view const strKey = TakeWord(strRest);
  if (strKey == "newmtl") {
    m_strMaterial = strRest;
    m_mapColors.try_emplace(m_strMaterial, false);
  }
  if (IsKey(strKey, "kd")) m_mapColors[m_strMaterial] = true;
  if (!IsKey(strKey, "map_kd") || strRest.empty() || strRest.front() != '-') return strLine;
  QXMtlTransform transform;
  bool bTransform = false;
  std::string strClamp;
  while (!strRest.empty() && strRest.front() == '-') {
    std::string_view const strOption = TakeWord(strRest);
    float fUnused[2];
    if (strOption == "-s" || strOption == "-o") {
      TakeNumbers(strRest, strOption == "-s" ? transform.m_fScale : transform.m_fOffset);
      bTransform = true;
    } else if (strOption == "-t" || strOption == "-mm") {
      TakeNumbers(strRest, fUnused);
    } else if (TakeWord(strRest) == "on" && strOption == "-clamp") {
      strClamp = "-clamp on ";
    }
  }
  if (bTransform) m_mapTransforms[m_strMaterial] = transform;
  return "map_Kd " + strClamp + std::string(strRest);
}

QXMtlTransform const* QXMtlMaps::Find(std::string const& strMaterial) const {
  auto const itFound = m_mapTransforms.find(strMaterial);
  return itFound == m_mapTransforms.end() ? nullptr : &itFound->second;
}

bool QXMtlMaps::IsColorless(std::string const& strMaterial) const {
  auto const itFound = m_mapColors.find(strMaterial);
  return itFound != m_mapColors.end() && !itFound->second;
}

}  // namespace QXAssimp
