#include <plugins/assimp/QXModelBytes.h>

#include <cerrno>
#include <cstring>

#include <sys/stat.h>
#include <unistd.h>

#include <QxGraphics3D/frame/foundation/toolkit/detail/QXFileHandle.h>

namespace QXAssimp {

namespace {

std::string DescribeOpenFailure(int nError) {
  switch (nError) {
  case ENOENT:
  case ENOTDIR: return "no such file; correct the name";
  case EACCES: return "the file may not be read; change its permissions";
  default: return std::string("the file cannot be opened: ") + std::strerror(nError) + "; give another name";
  }
}

bool CheckKindAndSize(struct stat const& status, std::string& strError) {
  if (S_ISDIR(status.st_mode)) {
    strError = "this is a directory; give the model file inside it";
  } else if (!S_ISREG(status.st_mode)) {
    strError = "this is no regular file; give a model file";
  } else if (status.st_size == 0) {
    strError = "the file is empty; get or export it again";
  } else if (status.st_size < 0 || static_cast<std::size_t>(status.st_size) > MaxFileSize) {
    strError = "the file is larger than 1 GiB, the most that is read; split the model";
  } else {
    return true;
  }
  return false;
}

}  // namespace

bool ReadModelBytes(std::string const& strPath, std::vector<unsigned char>& vecBytes, std::string& strError) {
  QXC::detail::QXFileHandle const file(strPath.c_str());
  if (file.Get() < 0) {
    strError = DescribeOpenFailure(errno);
    return false;
  }
  struct stat status = {};
  if (fstat(file.Get(), &status) != 0) {
    strError = DescribeOpenFailure(errno);
    return false;
  }
  if (!CheckKindAndSize(status, strError)) return false;
  vecBytes.resize(static_cast<std::size_t>(status.st_size));
  std::size_t nDone = 0;
  while (nDone < vecBytes.size()) {
    ssize_t const nRead = read(file.Get(), vecBytes.data() + nDone, vecBytes.size() - nDone);
    if (nRead < 0 && errno == EINTR) continue;
    if (nRead <= 0) {
      strError = nRead < 0 ? std::string("the file cannot be read: ") + std::strerror(errno) + "; get another copy"
                           : std::string("the file became shorter while it was read; try again when it is complete");
      return false;
    }
    nDone += static_cast<std::size_t>(nRead);
  }
  return true;
}

}  // namespace QXAssimp
