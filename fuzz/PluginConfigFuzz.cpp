/// @file
/// Plug-in configurations: any bytes give whole plug-ins, or none and a reason on one line.
#include <QxGraphics3D/frame/detail/QXPluginIni.h>
#include <QxGraphics3D/frame/foundation/toolkit/detail/QXIniFile.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace QXC;

void Require(bool bHolds) {
  if (!bHolds) std::abort();
}

std::string Text(QdcUnicodeString const& strText) {
  return strText.ToMBString().Cstr();
}

std::string Written(std::vector<detail::QXPluginEntry> const& arrEntries) {
  std::string strBytes;
  for (detail::QXPluginEntry const& entry : arrEntries) {
    strBytes += "[" + Text(entry.m_strKind) + "]\nname=" + Text(entry.m_Config.m_strName) +
                "\nmodule=" + Text(entry.m_strModule) + "\nnumber=" + std::to_string(entry.m_Config.m_nNumber) +
                "\nenabled=" + (entry.m_Config.m_bEnabled ? "true" : "false") + "\n";
  }
  return strBytes;
}

void RequireWhole(std::vector<detail::QXPluginEntry> const& arrEntries) {
  std::set<QdcUnicodeString> setKinds;
  for (detail::QXPluginEntry const& entry : arrEntries) {
    Require(setKinds.insert(entry.m_strKind).second);
    Require(!entry.m_strKind.IsEmpty() && !entry.m_Config.m_strName.IsEmpty() && !entry.m_strModule.IsEmpty());
    Require(entry.m_Config.m_nNumber >= 0 && entry.m_Config.m_bEnabled <= 1 && entry.m_nLine > 0);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* pBytes, std::size_t nSize) {
  detail::QXIniFile file;
  if (file.Parse(std::string_view(reinterpret_cast<char const*>(pBytes), nSize), L"input") == 0) return 0;
  QdcUnicodeString strProblem = L"left from before";
  auto const arrEntries = detail::ReadPluginEntries(file.GetEntries(), L"input", strProblem);
  Require(arrEntries.empty() != (strProblem.IsEmpty() != 0));
  Require(strProblem.Find(L'\n', 0) < 0);
  RequireWhole(arrEntries);

  // What was read can be written down and is read the same. A line longer than the reader takes cannot occur: each came
  // out of one.
  detail::QXIniFile copy;
  if (arrEntries.empty() || copy.Parse(Written(arrEntries), L"copy") == 0) return 0;
  Require(Written(detail::ReadPluginEntries(copy.GetEntries(), L"copy", strProblem)) == Written(arrEntries));
  return 0;
}
