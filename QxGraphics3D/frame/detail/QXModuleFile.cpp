#include <QxGraphics3D/frame/detail/QXModuleFile.h>

#include <QxGraphics3D/frame/foundation/toolkit/detail/QXFileHandle.h>

#include <link.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>

namespace QXC::detail {

namespace {

template <class Record>
bool ReadAt(int nHandle, std::uint64_t nOffset, Record& record) {
  return ::pread(nHandle, &record, sizeof record, static_cast<off_t>(nOffset)) == static_cast<ssize_t>(sizeof record);
}

// Whether every segment that the loader will map lies inside the file.
wchar_t const* FaultOfSegments(int nHandle, std::uint64_t nFileSize) {
  ElfW(Ehdr) header{};
  if (!ReadAt(nHandle, 0, header) || std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0 || header.e_type != ET_DYN ||
      header.e_phentsize != sizeof(ElfW(Phdr))) {
    return L"is no shared library";
  }
  for (std::uint64_t nIndex = 0; nIndex < header.e_phnum; ++nIndex) {
    ElfW(Phdr) segment{};
    std::uint64_t const nOffset = header.e_phoff + nIndex * sizeof segment;
    if (header.e_phoff > nFileSize || !ReadAt(nHandle, nOffset, segment)) return L"is cut short";
    if (segment.p_filesz > nFileSize || segment.p_offset > nFileSize - segment.p_filesz) return L"is cut short";
  }
  return nullptr;
}

}  // namespace

wchar_t const* FaultOfModuleFile(QdcUnicodeString const& strPath) {
  QXFileHandle const file(strPath.ToMBString().Cstr());
  if (file.Get() < 0) return errno == ENOENT ? L"does not exist" : L"cannot be opened";
  struct stat status {};
  if (::fstat(file.Get(), &status) != 0 || !S_ISREG(status.st_mode)) return L"is not a regular file";
  return FaultOfSegments(file.Get(), static_cast<std::uint64_t>(status.st_size));
}

}  // namespace QXC::detail
