#include <QxGraphics3D/frame/foundation/stream/QXFileStream.h>

#include <algorithm>
#include <cerrno>
#include <limits>
#include <new>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace QXC {

namespace {

constexpr std::size_t BufferSize = 1u << 16;
// The kernel moves at most about this much at once anyway.
constexpr std::size_t LargestPiece = 1u << 30;
// A smaller file's blocks are chosen when it is written out anyway.
constexpr QXUInt64 LeastReserve = 1u << 20;
// Everybody, less what the process masks.
constexpr mode_t NewFileRights = 0666;

// Blocks behind the end would stay the file's. By its own length and not by what was written: after a failure that is
// more than reached it, and the file would grow by zeros. Where it does not succeed, no harm comes to what was written.
void GiveBackReserved(int nHandle) {
  struct stat status = {};
  if (::fstat(nHandle, &status) != 0) return;
  [[maybe_unused]] int const nResult = ::ftruncate(nHandle, status.st_size);
}

}  // namespace

QXFileStream::QXFileStream() {
  FailWith(STREAM_NOT_OPEN);
}

QXFileStream::~QXFileStream() {
  Close();
}

unsigned char QXFileStream::OpenForReading(QdcUnicodeString const& strPath) {
  return Open(strPath, MODE_READ);
}

unsigned char QXFileStream::OpenForWriting(QdcUnicodeString const& strPath) {
  return Open(strPath, MODE_WRITE);
}

unsigned char QXFileStream::Close() {
  if (m_nHandle < 0) return 0;
  Flush();
  int const nHandle = m_nHandle;
  m_nHandle = -1;
  if (m_bReserved != 0) GiveBackReserved(nHandle);
  // A network's file system reports a failed write as late as here.
  if (::close(nHandle) != 0 && errno != EINTR) FailWithSystem(errno);
  unsigned char const bDone = IsGood();
  FailWith(STREAM_NOT_OPEN);
  return bDone;
}

QdcUnicodeString QXFileStream::GetErrorText() const {
  if (GetProblem() != STREAM_SYSTEM) return QXStream::GetErrorText();
  return QdcUnicodeString::FromUTF8(std::strerror(m_nSystemError));
}

void QXFileStream::Reserve(QXUInt64 nSize) {
#if defined(FALLOC_FL_KEEP_SIZE)
  bool const bPossible = nSize <= static_cast<QXUInt64>(std::numeric_limits<off_t>::max());
  if (m_eMode != MODE_WRITE || !IsGood() || nSize < LeastReserve || !bPossible) return;
  // Also when it fails: a disk that is full half-way keeps the blocks up to there.
  m_bReserved = 1;
  [[maybe_unused]] int const nResult = ::fallocate(m_nHandle, FALLOC_FL_KEEP_SIZE, 0, static_cast<off_t>(nSize));
#else
  static_cast<void>(nSize);
#endif
}

QXUInt64 QXFileStream::GetReadEnd() const {
  return m_eMode == MODE_READ ? m_nFileSize : GetPosition();
}

unsigned char QXFileStream::Open(QdcUnicodeString const& strPath, Mode eMode) {
  Close();
  Recover();
  m_eMode = MODE_CLOSED;
  m_pRead = m_pReadEnd = nullptr;
  m_pWrite = m_pWriteEnd = nullptr;
  m_nReadEndOffset = m_nWriteEndOffset = m_nFileSize = 0;
  m_bReserved = 0;
  if (!m_pBuffer) m_pBuffer.reset(new (std::nothrow) unsigned char[BufferSize]);
  if (!m_pBuffer) {
    FailWith(STREAM_NO_MEMORY);
    return 0;
  }
  // Not blocking: opening a named pipe would wait for its other end before it can be refused. Not truncating: what is
  // no regular file is left alone.
  int const nFlags = eMode == MODE_READ ? O_RDONLY : O_WRONLY | O_CREAT;
  m_nHandle = ::open(strPath.ToMBString().Cstr(), nFlags | O_CLOEXEC | O_NONBLOCK, NewFileRights);
  if (m_nHandle < 0) {
    FailWithSystem(errno);
    return 0;
  }
  return CheckOpened(eMode);
}

unsigned char QXFileStream::CheckOpened(Mode eMode) {
  struct stat status = {};
  bool const bKnown = ::fstat(m_nHandle, &status) == 0;
  if (bKnown && !S_ISREG(status.st_mode)) {
    FailWith(STREAM_NOT_A_FILE);
  } else if (!bKnown || (eMode == MODE_WRITE && ::ftruncate(m_nHandle, 0) != 0)) {
    FailWithSystem(errno);
  }
  if (!IsGood()) {
    CloseHandle();
    return 0;
  }
  m_eMode = eMode;
  if (eMode == MODE_READ) {
    m_nFileSize = static_cast<QXUInt64>(status.st_size);
  } else {
    m_pWrite = m_pBuffer.get();
    m_pWriteEnd = m_pWrite + BufferSize;
    m_nWriteEndOffset = BufferSize;
  }
  return 1;
}

unsigned char QXFileStream::ReadPast(void* pBytes, std::size_t nSize) {
  if (m_eMode != MODE_READ) {
    FailWith(STREAM_NOT_OPEN);
    return 0;
  }
  if (nSize > Remaining()) {
    FailWith(STREAM_ENDED);
    return 0;
  }
  auto* pOut = static_cast<unsigned char*>(pBytes);
  auto const nHeld = static_cast<std::size_t>(m_pReadEnd - m_pRead);
  if (nHeld > 0) std::memcpy(pOut, m_pRead, nHeld);
  std::size_t const nMissing = nSize - nHeld;
  // The window moves only after the bytes have come, so that a failure keeps the position.
  QXUInt64 const nFilePosition = m_nReadEndOffset;
  if (nMissing >= BufferSize) {
    if (!ReadFile(pOut + nHeld, nMissing)) return 0;
    m_nReadEndOffset = nFilePosition + nMissing;
    m_pRead = m_pReadEnd = m_pBuffer.get();
    return 1;
  }
  auto const nPiece = static_cast<std::size_t>(std::min<QXUInt64>(m_nFileSize - nFilePosition, BufferSize));
  if (!ReadFile(m_pBuffer.get(), nPiece)) return 0;
  std::memcpy(pOut + nHeld, m_pBuffer.get(), nMissing);
  m_pRead = m_pBuffer.get() + nMissing;
  m_pReadEnd = m_pBuffer.get() + nPiece;
  m_nReadEndOffset = nFilePosition + nPiece;
  return 1;
}

unsigned char QXFileStream::WritePast(void const* pBytes, std::size_t nSize) {
  if (m_eMode != MODE_WRITE) {
    FailWith(STREAM_NOT_OPEN);
    return 0;
  }
  if (!Flush()) return 0;
  if (nSize < BufferSize) {
    std::memcpy(m_pWrite, pBytes, nSize);
    m_pWrite += nSize;
    return 1;
  }
  if (!WriteFile(static_cast<unsigned char const*>(pBytes), nSize)) return 0;
  m_nWriteEndOffset += nSize;
  return 1;
}

unsigned char QXFileStream::Flush() {
  if (m_eMode != MODE_WRITE || !IsGood()) return IsGood();
  auto const nHeld = static_cast<std::size_t>(m_pWrite - m_pBuffer.get());
  if (!WriteFile(m_pBuffer.get(), nHeld)) return 0;
  m_pWrite = m_pBuffer.get();
  m_nWriteEndOffset += nHeld;
  return 1;
}

unsigned char QXFileStream::ReadFile(unsigned char* pBytes, std::size_t nSize) {
  while (nSize > 0) {
    ssize_t const nRead = ::read(m_nHandle, pBytes, std::min(nSize, LargestPiece));
    if (nRead < 0 && errno == EINTR) continue;
    if (nRead < 0) FailWithSystem(errno);
    // The file became shorter after it was opened.
    if (nRead == 0) FailWith(STREAM_ENDED);
    if (nRead <= 0) return 0;
    pBytes += nRead;
    nSize -= static_cast<std::size_t>(nRead);
  }
  return 1;
}

unsigned char QXFileStream::WriteFile(unsigned char const* pBytes, std::size_t nSize) {
  while (nSize > 0) {
    ssize_t const nWritten = ::write(m_nHandle, pBytes, std::min(nSize, LargestPiece));
    if (nWritten < 0 && errno == EINTR) continue;
    if (nWritten <= 0) {
      FailWithSystem(nWritten < 0 ? errno : EIO);
      return 0;
    }
    pBytes += nWritten;
    nSize -= static_cast<std::size_t>(nWritten);
  }
  return 1;
}

void QXFileStream::FailWithSystem(int nError) {
  if (IsGood()) m_nSystemError = nError;
  FailWith(STREAM_SYSTEM);
}

void QXFileStream::CloseHandle() {
  ::close(m_nHandle);
  m_nHandle = -1;
}

}  // namespace QXC
