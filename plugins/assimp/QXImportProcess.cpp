#include <plugins/assimp/QXImportProcess.h>

#include <cerrno>
#include <csignal>
#include <cstdio>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace QXAssimp {

namespace {

/// First byte of what the child sends.
enum : unsigned char { SENT_RESULT = 1, SENT_REASON = 2 };

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
  if (nInUse != 0) Limit(RLIMIT_AS, nInUse + (rlim_t{1} << 30) + 64 * static_cast<rlim_t>(nInput));
}

void SendAll(int nPipe, unsigned char const* pBytes, std::size_t nCount) {
  while (nCount > 0) {
    ssize_t const nWritten = write(nPipe, pBytes, nCount);
    if (nWritten < 0 && errno == EINTR) continue;
    if (nWritten <= 0) return;
    pBytes += nWritten;
    nCount -= static_cast<std::size_t>(nWritten);
  }
}

[[noreturn]] void RunChild(
    int nPipe, std::size_t nInput, std::function<std::string(std::vector<unsigned char>&)> const& work) {
  PrepareChild(nInput);
  std::vector<unsigned char> vecBytes = {SENT_RESULT};
  std::string const strReason = work(vecBytes);
  if (!strReason.empty()) {
    vecBytes.assign(1, SENT_REASON);
    vecBytes.insert(vecBytes.end(), strReason.begin(), strReason.end());
  }
  SendAll(nPipe, vecBytes.data(), vecBytes.size());
  // Without the destructors and handlers of the host, whose copies these are.
  _exit(0);
}

std::vector<unsigned char> ReceiveAll(int nPipe) {
  std::vector<unsigned char> vecBytes;
  std::size_t nFilled = 0;
  for (;;) {
    if (vecBytes.size() - nFilled < 65536) vecBytes.resize(2 * vecBytes.size() + 65536);
    ssize_t const nRead = read(nPipe, vecBytes.data() + nFilled, vecBytes.size() - nFilled);
    if (nRead < 0 && errno == EINTR) continue;
    if (nRead <= 0) break;
    nFilled += static_cast<std::size_t>(nRead);
  }
  vecBytes.resize(nFilled);
  return vecBytes;
}

std::string DescribeEnd(int nStatus) {
  if (WIFSIGNALED(nStatus) && (WTERMSIG(nStatus) == SIGXCPU || WTERMSIG(nStatus) == SIGKILL))
    return "the importer does not come to an end with this file, it is broken";
  return "the importer cannot cope with this file, it is broken";
}

/// Receives and waits, whatever happens in between.
class Child {
public:
  Child(pid_t nProcess, int nPipe) : m_nProcess(nProcess), m_nPipe(nPipe) {}
  Child(Child const&) = delete;
  Child& operator=(Child const&) = delete;
  ~Child() {
    close(m_nPipe);
    if (m_bWaited) return;
    kill(m_nProcess, SIGKILL);
    Wait();
  }
  std::vector<unsigned char> Receive() const { return ReceiveAll(m_nPipe); }
  int Wait() {
    int nStatus = 0;
    while (waitpid(m_nProcess, &nStatus, 0) < 0 && errno == EINTR) {}
    m_bWaited = true;
    return nStatus;
  }

private:
  pid_t m_nProcess;
  int m_nPipe;
  bool m_bWaited = false;
};

}  // namespace

std::string RunInProcess(std::size_t nInput, std::function<std::string(std::vector<unsigned char>&)> const& work,
    std::vector<unsigned char>& vecResult) {
  int nPipe[2];
  if (pipe2(nPipe, O_CLOEXEC) != 0) return "no pipe to an importer can be opened; close some files";
  pid_t const nProcess = fork();
  if (nProcess < 0) {
    close(nPipe[0]);
    close(nPipe[1]);
    return "no process can be started for the importer; end some others";
  }
  if (nProcess == 0) RunChild(nPipe[1], nInput, work);
  close(nPipe[1]);
  Child child(nProcess, nPipe[0]);
  vecResult = child.Receive();
  int const nStatus = child.Wait();
  if (!WIFEXITED(nStatus) || vecResult.empty()) return DescribeEnd(nStatus);
  unsigned char const nKind = vecResult.front();
  vecResult.erase(vecResult.begin());
  if (nKind == SENT_RESULT) return std::string();
  return vecResult.empty() ? "the importer gives no reason" : std::string(vecResult.begin(), vecResult.end());
}

}  // namespace QXAssimp
