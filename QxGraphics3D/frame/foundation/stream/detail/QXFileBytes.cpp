#include <QxGraphics3D/frame/foundation/stream/detail/QXFileBytes.h>

#include <QxGraphics3D/frame/foundation/toolkit/detail/QXFileHandle.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <new>

#include <sys/stat.h>

namespace QXC::detail {

namespace {

QXFileProblem ProblemOfOpening(int nError) {
  switch (nError) {
  case ENOENT:
  case ENOTDIR: return QXFileProblem::Missing;
  case EACCES:
  case EPERM: return QXFileProblem::Forbidden;
  // A socket, or a device without its driver.
  case ENXIO:
  case ENODEV: return QXFileProblem::NotRegular;
  default: return QXFileProblem::Other;
  }
}

QXFileProblem ProblemOfKind(struct stat const& status) {
  if (S_ISDIR(status.st_mode)) return QXFileProblem::Folder;
  if (!S_ISREG(status.st_mode)) return QXFileProblem::NotRegular;
  if (status.st_size < 0 || static_cast<QXUInt64>(status.st_size) > MaxWholeFile) return QXFileProblem::TooLarge;
  return QXFileProblem::None;
}

QXFileProblem ReadInto(char const* szPath, std::unique_ptr<unsigned char[]>& pBlock, QXUInt64& nSize) {
  QXFileHandle const file(szPath);
  if (file.Get() < 0) return ProblemOfOpening(errno);
  struct stat status = {};
  if (fstat(file.Get(), &status) != 0) return QXFileProblem::Other;
  QXFileProblem const eKind = ProblemOfKind(status);
  if (eKind != QXFileProblem::None) return eKind;
  nSize = static_cast<QXUInt64>(status.st_size);
  pBlock.reset(new (std::nothrow) unsigned char[static_cast<std::size_t>(nSize)]);
  if (pBlock == nullptr) return QXFileProblem::NoMemory;
  return ReadExactly(file.Get(), pBlock.get(), nSize);
}

}  // namespace

QXFileProblem ReadExactly(int nHandle, unsigned char* pBytes, QXUInt64 nSize) {
  // The kernel moves at most this much at once anyway.
  constexpr QXUInt64 LargestRead = 1u << 30;
  QXUInt64 nDone = 0;
  while (nDone < nSize) {
    ssize_t const nRead =
        ::read(nHandle, pBytes + nDone, static_cast<std::size_t>(std::min(nSize - nDone, LargestRead)));
    if (nRead < 0 && errno == EINTR) continue;
    if (nRead < 0) return QXFileProblem::Other;
    if (nRead == 0) return QXFileProblem::Shrunk;
    nDone += static_cast<QXUInt64>(nRead);
  }
  return QXFileProblem::None;
}

unsigned char* ReadWholeFile(QdcUnicodeString const& strPath, QXUInt64& nSize, QXFileProblem* pProblem) {
  QXFileProblem eProblem = QXFileProblem::NoMemory;
  std::unique_ptr<unsigned char[]> pBlock;
  nSize = 0;
  try {
    eProblem = ReadInto(strPath.ToMBString().Cstr(), pBlock, nSize);
  } catch (std::bad_alloc const&) {
    // The path could not be converted.
  }
  if (pProblem != nullptr) *pProblem = eProblem;
  if (eProblem == QXFileProblem::None) return pBlock.release();
  nSize = 0;
  return nullptr;
}

}  // namespace QXC::detail
