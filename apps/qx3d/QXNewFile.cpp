#include <apps/qx3d/QXNewFile.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <iterator>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace QXApp {

namespace {

/// What ends the program when somebody has had enough of it.
constexpr int Interruptions[] = {SIGHUP, SIGINT, SIGQUIT, SIGTERM};

std::atomic<char const*> ms_szUnfinished = nullptr;
static_assert(std::atomic<char const*>::is_always_lock_free, "it is read by a signal handler");

/// What the signals meant before: the library reports crashes by handlers of its own.
struct sigaction ms_Previous[std::size(Interruptions)];
struct sigaction ms_PreviousSizeLimit;

void RestoreInterruptions() {
  for (std::size_t i = 0; i < std::size(Interruptions); ++i) sigaction(Interruptions[i], &ms_Previous[i], nullptr);
}

void RemoveUnfinished(int nSignal) {
  int const nError = errno;
  if (char const* szPath = ms_szUnfinished.load()) unlink(szPath);
  RestoreInterruptions();
  errno = nError;
  // Delivered with its old meaning as soon as this returns.
  raise(nSignal);
}

void WatchInterruptions() {
  struct sigaction remove = {};
  remove.sa_handler = RemoveUnfinished;
  // All that is to be restored is known before the first handler stands.
  for (std::size_t i = 0; i < std::size(Interruptions); ++i) sigaction(Interruptions[i], nullptr, &ms_Previous[i]);
  for (std::size_t i = 0; i < std::size(Interruptions); ++i)
    if (ms_Previous[i].sa_handler != SIG_IGN) sigaction(Interruptions[i], &remove, nullptr);
  // A limit on the size of files then fails the write, as a full disk does, instead of ending the program.
  struct sigaction ignore = {};
  ignore.sa_handler = SIG_IGN;
  sigaction(SIGXFSZ, &ignore, &ms_PreviousSizeLimit);
}

void ForgetInterruptions() {
  RestoreInterruptions();
  sigaction(SIGXFSZ, &ms_PreviousSizeLimit, nullptr);
}

}  // namespace

std::string FollowLinks(std::string const& strPath) {
  std::filesystem::path path = strPath;
  std::error_code error;
  // As many as the system follows; a loop ends at one of its links.
  for (int i = 0; i < 40 && std::filesystem::is_symlink(path, error); ++i) {
    std::filesystem::path const target = std::filesystem::read_symlink(path, error);
    if (error) break;
    path = target.is_absolute() ? target : path.parent_path() / target;
  }
  return path.string();
}

std::string WriteNewFile(std::string const& strPath, void const* pBytes, std::size_t nSize) {
  QXNewFile file(FollowLinks(strPath));
  bool const bWritten = file.Get() != nullptr && std::fwrite(pBytes, 1, nSize, file.Get()) == nSize && file.Commit();
  return bWritten
             ? std::string()
             : std::string("the file cannot be written: ") + std::strerror(errno) + "; make room or give another place";
}

QXNewFile::QXNewFile(std::string const& strTarget) : m_strTarget(strTarget) {
  // A short name of its own: the target's may already be as long as the disk allows.
  std::filesystem::path const folder = std::filesystem::path(strTarget).parent_path();
  m_strPath = (folder / ".qx3d-XXXXXX").string();
  ms_szUnfinished = m_strPath.c_str();
  WatchInterruptions();
  Create();
}

QXNewFile::~QXNewFile() {
  if (m_pFile != nullptr) std::fclose(m_pFile);
  if (m_bExists) unlink(m_strPath.c_str());
  ForgetInterruptions();
  ms_szUnfinished = nullptr;
}

void QXNewFile::Create() {
  int const nHandle = mkostemp(m_strPath.data(), O_CLOEXEC);
  if (nHandle < 0) return;
  m_bExists = true;
  // Created for the owner alone; a picture gets the permissions that any new file would have.
  mode_t const nMask = umask(0);
  umask(nMask);
  fchmod(nHandle, 0666 & ~nMask);
  m_pFile = fdopen(nHandle, "wb");
  if (m_pFile == nullptr) close(nHandle);
}

bool QXNewFile::Commit() {
  std::FILE* pFile = m_pFile;
  m_pFile = nullptr;
  if (std::fclose(pFile) != 0) return false;
  if (std::rename(m_strPath.c_str(), m_strTarget.c_str()) != 0) return false;
  m_bExists = false;
  return true;
}

}  // namespace QXApp
