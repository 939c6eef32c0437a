#include <plugins/assimp/QXImportProcess.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <limits>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#if defined(__GLIBC__)
#  include <malloc.h>
#endif

namespace QXAssimp {

namespace {

/// What the child left in the shared file, by the number it exits with; an importer that ends the process has others.
enum : int { EXIT_LOST = 97, EXIT_RESULT = 98, EXIT_REASON = 99 };

#if defined(QX_UNLIMITED_MEMORY)
constexpr bool MemoryIsLimited = false;
#else
constexpr bool MemoryIsLimited = true;
#endif

void Limit(__rlimit_resource eResource, rlim_t nValue) {
  rlimit const limit = {nValue, nValue};
  setrlimit(eResource, &limit);
}

/// Address space in use. A host with a graphics device has many gigabytes of it mapped already.
rlim_t AddressSpaceInUse() {
  unsigned long nPages = 0;
  if (std::FILE* pFile = std::fopen("/proc/self/statm", "re")) {
    if (std::fscanf(pFile, "%lu", &nPages) != 1) nPages = 0;
    std::fclose(pFile);
  }
  return static_cast<rlim_t>(nPages) * static_cast<rlim_t>(sysconf(_SC_PAGESIZE));
}

/// Ends quietly: no handler of the host runs, nothing is printed or dumped, and neither memory nor time is without end.
void PrepareChild(std::size_t nInput) {
  for (int nSignal : {SIGINT, SIGILL, SIGABRT, SIGFPE, SIGBUS, SIGSEGV, SIGPIPE, SIGTERM})
    std::signal(nSignal, SIG_DFL);
  int const nNull = open("/dev/null", O_WRONLY | O_CLOEXEC);
  if (nNull >= 0) {
    dup2(nNull, STDOUT_FILENO);
    dup2(nNull, STDERR_FILENO);
  }
  Limit(RLIMIT_CORE, 0);
  // Nobody waits for the result once the host is gone.
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  // A second for each half megabyte is a hundred times what a whole file takes.
  Limit(RLIMIT_CPU, 30 + nInput / (512 * 1024));
  rlim_t const nInUse = MemoryIsLimited ? AddressSpaceInUse() : 0;
  rlim_t const nMore = (rlim_t{1} << 30) + 64 * static_cast<rlim_t>(nInput);
  if (nInUse != 0) Limit(RLIMIT_AS, nInUse + nMore);
  // The shared file is memory, too.
  Limit(RLIMIT_FSIZE, nMore);
  std::signal(SIGXFSZ, SIG_IGN);
#if defined(__GLIBC__)
  // Importers allocate and free large arrays one after the other; from the heap they need not be mapped anew each time.
  mallopt(M_MMAP_THRESHOLD, 1 << 25);
  mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
#endif
}

unsigned char WriteAll(int nFile, unsigned char const* pBytes, std::size_t nCount) {
  while (nCount > 0) {
    ssize_t const nWritten = write(nFile, pBytes, nCount);
    if (nWritten < 0 && errno == EINTR) continue;
    if (nWritten <= 0) return 0;
    pBytes += nWritten;
    nCount -= static_cast<std::size_t>(nWritten);
  }
  return 1;
}

[[noreturn]] void RunChild(
    int nFile, std::size_t nInput, std::function<std::string(std::vector<unsigned char>&)> const& work) {
  PrepareChild(nInput);
  std::vector<unsigned char> vecBytes;
  std::string const strReason = work(vecBytes);
  if (!strReason.empty()) vecBytes.assign(strReason.begin(), strReason.end());
  unsigned char const bWritten = WriteAll(nFile, vecBytes.data(), vecBytes.size());
  // Without the destructors and handlers of the host, whose copies these are.
  _exit(bWritten == 0 ? EXIT_LOST : strReason.empty() ? EXIT_RESULT : EXIT_REASON);
}

std::string DescribeEnd(int nStatus) {
  if (WIFSIGNALED(nStatus) && (WTERMSIG(nStatus) == SIGXCPU || WTERMSIG(nStatus) == SIGKILL))
    return "the importer does not come to an end with this file, it is broken";
  return "the importer cannot cope with this file, it is broken";
}

/// A file in memory, for both processes.
class SharedFile {
public:
  SharedFile() = default;
  SharedFile(SharedFile const&) = delete;
  SharedFile& operator=(SharedFile const&) = delete;
  ~SharedFile() {
    if (m_nHandle >= 0) close(m_nHandle);
  }
  int Get() const { return m_nHandle; }

private:
  int m_nHandle = memfd_create("model", MFD_CLOEXEC);
};

/// Ends and waits, whatever happens in between: the thread that waits may be cancelled.
class Child {
public:
  explicit Child(pid_t nProcess) : m_nProcess(nProcess) {}
  Child(Child const&) = delete;
  Child& operator=(Child const&) = delete;
  ~Child() {
    if (m_bWaited) return;
    kill(m_nProcess, SIGKILL);
    Wait();
  }
  int Wait() {
    int nStatus = 0;
    while (waitpid(m_nProcess, &nStatus, 0) < 0 && errno == EINTR) {}
    m_bWaited = true;
    return nStatus;
  }

private:
  pid_t m_nProcess;
  bool m_bWaited = false;
};

}  // namespace

QXProcessResult::~QXProcessResult() {
  Unmap();
}

void QXProcessResult::Unmap() {
  if (m_pBytes != nullptr) munmap(m_pBytes, m_nSize);
  m_pBytes = nullptr;
  m_nSize = 0;
}

unsigned char QXProcessResult::MapFile(int nFile) {
  Unmap();
  struct stat status = {};
  if (fstat(nFile, &status) != 0) return 0;
  if (status.st_size == 0) return 1;
  void* const pBytes =
      mmap(nullptr, static_cast<std::size_t>(status.st_size), PROT_READ, MAP_PRIVATE | MAP_POPULATE, nFile, 0);
  if (pBytes == MAP_FAILED) return 0;
  m_pBytes = static_cast<unsigned char*>(pBytes);
  m_nSize = static_cast<std::size_t>(status.st_size);
  return 1;
}

std::string RunInProcess(
    std::size_t nInput, std::function<std::string(std::vector<unsigned char>&)> const& work, QXProcessResult& result) {
  SharedFile const file;
  if (file.Get() < 0) return "no memory can be shared with an importer; close some files";
  pid_t const nProcess = fork();
  if (nProcess < 0) return "no process can be started for the importer; end some others";
  if (nProcess == 0) RunChild(file.Get(), nInput, work);
  int const nStatus = Child(nProcess).Wait();
  if (!WIFEXITED(nStatus)) return DescribeEnd(nStatus);
  int const nExit = WEXITSTATUS(nStatus);
  if (nExit != EXIT_RESULT && nExit != EXIT_REASON) return DescribeEnd(nStatus);
  if (result.MapFile(file.Get()) == 0)
    return "there is not enough memory for this model; split it or end other programs";
  if (nExit == EXIT_RESULT) return std::string();
  std::string const strReason(result.GetBytes().begin(), result.GetBytes().end());
  result.Unmap();
  return strReason.empty() ? "the importer gives no reason" : strReason;
}

}  // namespace QXAssimp
