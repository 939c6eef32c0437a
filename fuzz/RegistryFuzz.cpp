/// @file
/// Configuration files: any bytes are read whole or refused whole, what is read survives being written again, and the
/// registry holds exactly what was read.
#include <QxGraphics3D/frame/foundation/toolkit/QXRegistry.h>
#include <QxGraphics3D/frame/foundation/toolkit/detail/QXIniFile.h>

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

using namespace QXC;

void Require(bool bHolds) {
  if (!bHolds) std::abort();
}

std::string Written(detail::QXIniFile const& file) {
  std::string bytes;
  for (detail::QXIniEntry const& entry : file.GetEntries()) {
    bytes += std::string("[") + entry.m_strSection.ToMBString().Cstr() + "]\n" + entry.m_strKey.ToMBString().Cstr() +
             "=" + entry.m_strValue.ToMBString().Cstr() + "\n";
  }
  return bytes;
}

void RequireSame(detail::QXIniFile const& first, detail::QXIniFile const& second) {
  Require(first.GetEntries().size() == second.GetEntries().size());
  for (std::size_t i = 0; i < first.GetEntries().size(); ++i) {
    detail::QXIniEntry const& one = first.GetEntries()[i];
    detail::QXIniEntry const& other = second.GetEntries()[i];
    Require(one.m_strSection == other.m_strSection && one.m_strKey == other.m_strKey);
    Require(one.m_strValue == other.m_strValue);
  }
}

// The last entry of a key is the one that counts, so the entries are asked from the back.
void RequireRegistryHolds(QXRegistry& registry, detail::QXIniFile const& file) {
  QXRegistry seen;
  for (auto entry = file.GetEntries().rbegin(); entry != file.GetEntries().rend(); ++entry) {
    bool const isOwn = entry->m_strSection.IsEmpty() != 0;
    QXRegistry& section = isOwn ? registry : registry.SubFile(entry->m_strSection);
    QXRegistry& seenSection = isOwn ? seen : seen.SubFile(entry->m_strSection);
    QdcUnicodeString value;
    if (seenSection.Lookup(entry->m_strKey, value)) continue;
    seenSection[entry->m_strKey] = L"seen";
    Require(section.Lookup(entry->m_strKey, value) && value == entry->m_strValue);
  }
}

// A registry reads files: the bytes become one that exists in memory only.
class MemoryFile {
public:
  explicit MemoryFile(std::string_view bytes) : m_nHandle(::memfd_create("registry", MFD_CLOEXEC)) {
    Require(m_nHandle >= 0);
    Require(::write(m_nHandle, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()));
  }
  MemoryFile(MemoryFile const&) = delete;
  MemoryFile& operator=(MemoryFile const&) = delete;
  ~MemoryFile() { ::close(m_nHandle); }

  QdcUnicodeString GetPath() const {
    QdcUnicodeString path;
    path.Format(L"/proc/self/fd/%d", m_nHandle);
    return path;
  }

private:
  int m_nHandle;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* pData, std::size_t nSize) {
  std::string_view const bytes(reinterpret_cast<char const*>(pData), nSize);
  detail::QXIniFile file;
  unsigned char const parsed = file.Parse(bytes, L"input");
  Require(parsed == file.GetErrorText().IsEmpty());

  QXRegistry registry;
  registry[L"before"] = L"kept";
  MemoryFile const memory(bytes);
  Require(registry.Load(memory.GetPath()) == parsed);
  if (!parsed) {
    Require(file.GetEntries().empty() && registry.GetCount() == 1);
    return 0;
  }
  RequireRegistryHolds(registry, file);
  detail::QXIniFile again;
  Require(again.Parse(Written(file), L"written"));
  RequireSame(file, again);
  return 0;
}
