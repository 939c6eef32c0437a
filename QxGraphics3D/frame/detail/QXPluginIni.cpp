#include <QxGraphics3D/frame/detail/QXPluginIni.h>

#include <cstddef>
#include <limits>
#include <map>
#include <utility>

namespace QXC::detail {

namespace {

bool ParseNumber(QdcUnicodeString const& strValue, int& nNumber) {
  wchar_t const* pDigit = strValue.Cstr();
  if (*pDigit == L'\0') return false;
  long long nValue = 0;
  for (; *pDigit; ++pDigit) {
    if (*pDigit < L'0' || *pDigit > L'9') return false;
    nValue = nValue * 10 + (*pDigit - L'0');
    if (nValue > std::numeric_limits<int>::max()) return false;
  }
  nNumber = static_cast<int>(nValue);
  return true;
}

bool ParseFlag(QdcUnicodeString const& strValue, unsigned char& bFlag) {
  if (strValue != L"true" && strValue != L"false") return false;
  bFlag = static_cast<unsigned char>(strValue == L"true");
  return true;
}

// Null, or what was expected instead.
wchar_t const* FaultOfLine(QXIniEntry const& line, QXPluginEntry& entry) {
  if (line.m_strSection.IsEmpty()) return L"a key before the first section; put it under the plug-in's [kind]";
  if (line.m_strKey == L"name") {
    entry.m_Config.m_strName = line.m_strValue;
  } else if (line.m_strKey == L"module") {
    entry.m_strModule = line.m_strValue;
  } else if (line.m_strKey == L"number") {
    if (!ParseNumber(line.m_strValue, entry.m_Config.m_nNumber))
      return L"number is a whole number from 0 to 2147483647";
  } else if (line.m_strKey == L"enabled") {
    if (!ParseFlag(line.m_strValue, entry.m_Config.m_bEnabled)) return L"enabled is true or false";
  } else {
    return L"unknown key; expected name, module, number or enabled";
  }
  return nullptr;
}

/// The entries in the order of their sections, found by kind: a file of nothing but sections is read in the same time a
/// line as any other.
class SectionList {
public:
  QXPluginEntry& EntryOf(QXIniEntry const& line) {
    auto const [place, bNew] = m_mapPlaces.try_emplace(line.m_strSection, m_arrEntries.size());
    if (bNew) m_arrEntries.push_back({line.m_strSection, {1, QdcUnicodeString(), 1}, QdcUnicodeString(), line.m_nLine});
    return m_arrEntries[place->second];
  }
  std::vector<QXPluginEntry>& GetAll() { return m_arrEntries; }

private:
  std::vector<QXPluginEntry> m_arrEntries;
  std::map<QdcUnicodeString, std::size_t> m_mapPlaces;
};

std::vector<QXPluginEntry> Refuse(
    QdcUnicodeString const& strFile, int nLine, wchar_t const* szReason, QdcUnicodeString& strProblem) {
  strProblem.Format(L"%s:%d: %s", strFile.Cstr(), nLine, szReason);
  return {};
}

}  // namespace

std::vector<QXPluginEntry> ReadPluginEntries(
    std::vector<QXIniEntry> const& arrLines, QdcUnicodeString const& strFile, QdcUnicodeString& strProblem) {
  SectionList sections;
  for (QXIniEntry const& line : arrLines) {
    if (wchar_t const* const szFault = FaultOfLine(line, sections.EntryOf(line))) {
      return Refuse(strFile, line.m_nLine, szFault, strProblem);
    }
  }
  std::vector<QXPluginEntry>& arrEntries = sections.GetAll();
  for (QXPluginEntry const& entry : arrEntries) {
    if (entry.m_Config.m_strName.IsEmpty())
      return Refuse(strFile, entry.m_nLine, L"the section lacks name", strProblem);
    if (entry.m_strModule.IsEmpty()) return Refuse(strFile, entry.m_nLine, L"the section lacks module", strProblem);
  }
  if (arrEntries.empty()) {
    return Refuse(strFile, 1, L"no plug-in; expected a section [kind] with name and module", strProblem);
  }
  strProblem = L"";
  return std::move(arrEntries);
}

}  // namespace QXC::detail
