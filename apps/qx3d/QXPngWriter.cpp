#include <apps/qx3d/QXPngWriter.h>

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <vector>

#include <fcntl.h>
#include <png.h>
#include <sys/stat.h>
#include <unistd.h>

namespace QXApp {

namespace {

namespace fs = std::filesystem;

/// The file that a path means behind links, so that a link stays a link when its target is replaced.
std::string FollowLinks(std::string const& strPath) {
  std::error_code error;
  if (!fs::is_symlink(strPath, error)) return strPath;
  fs::path const target = fs::canonical(strPath, error);
  return error ? strPath : target.string();
}

std::string FolderOf(std::string const& strPath) {
  fs::path const folder = fs::path(strPath).parent_path();
  return folder.empty() ? "." : folder.string();
}

/// A new file beside the target that dies with this object unless it was put into the target's place.
class NewFile {
public:
  explicit NewFile(std::string const& strTarget) : m_strTarget(strTarget), m_strPath(strTarget + ".XXXXXX") {
    int const nHandle = mkostemp(m_strPath.data(), O_CLOEXEC);
    if (nHandle < 0) return;
    // Created for the owner alone; a picture gets the permissions that any new file would have.
    mode_t const nMask = umask(0);
    umask(nMask);
    fchmod(nHandle, 0666 & ~nMask);
    m_pFile = fdopen(nHandle, "wb");
    if (m_pFile == nullptr) close(nHandle);
    m_bExists = true;
  }
  NewFile(NewFile const&) = delete;
  NewFile& operator=(NewFile const&) = delete;
  ~NewFile() {
    if (m_pFile != nullptr) std::fclose(m_pFile);
    if (m_bExists) unlink(m_strPath.c_str());
  }

  std::FILE* Get() const { return m_pFile; }

  /// Closes, and puts the file into the target's place. False with errno set; a full disk shows here.
  bool Commit() {
    std::FILE* pFile = m_pFile;
    m_pFile = nullptr;
    if (std::fclose(pFile) != 0) return false;
    if (std::rename(m_strPath.c_str(), m_strTarget.c_str()) != 0) return false;
    m_bExists = false;
    return true;
  }

private:
  std::string m_strTarget;
  std::string m_strPath;
  std::FILE* m_pFile = nullptr;
  bool m_bExists = false;
};

std::string DescribeFailure() {
  return std::string("the picture cannot be written: ") + std::strerror(errno);
}

/// Blue, green and red alone: the alpha of a rendered picture is what blending left, and a viewer would show holes.
std::vector<unsigned char> DropAlpha(unsigned char const* pPixels, std::size_t nPixels) {
  std::vector<unsigned char> vecPacked(nPixels * 3);
  unsigned char* pTarget = vecPacked.data();
  for (std::size_t i = 0; i < nPixels; ++i, pTarget += 3) std::memcpy(pTarget, pPixels + 4 * i, 3);
  return vecPacked;
}

}  // namespace

std::string QXPngWriter::Check(std::string const& strPath) {
  std::string const strTarget = FollowLinks(strPath);
  struct stat status = {};
  if (stat(strTarget.c_str(), &status) == 0) {
    if (S_ISDIR(status.st_mode)) return "this is a directory; give the name of a file in it";
    // A device or pipe would be replaced by the picture, not written to.
    if (!S_ISREG(status.st_mode)) return "this is no regular file; give another name";
  }
  std::string const strFolder = FolderOf(strTarget);
  if (stat(strFolder.c_str(), &status) != 0 || !S_ISDIR(status.st_mode))
    return "there is no folder '" + strFolder + "'; create it or give another name";
  if (access(strFolder.c_str(), W_OK | X_OK) != 0)
    return "the folder '" + strFolder + "' may not be written to; give another name";
  return std::string();
}

std::string QXPngWriter::Write(std::string const& strPath, int nWidth, int nHeight, unsigned char const* pPixels) {
  std::string const strReason = Check(strPath);
  if (!strReason.empty()) return strReason;
  std::vector<unsigned char> const vecPacked =
      DropAlpha(pPixels, static_cast<std::size_t>(nWidth) * static_cast<std::size_t>(nHeight));
  NewFile file(FollowLinks(strPath));
  if (file.Get() == nullptr) return DescribeFailure();
  png_image image = {};
  image.version = PNG_IMAGE_VERSION;
  image.width = static_cast<png_uint_32>(nWidth);
  image.height = static_cast<png_uint_32>(nHeight);
  image.format = PNG_FORMAT_BGR;
  if (png_image_write_to_stdio(&image, file.Get(), 0, vecPacked.data(), 0, nullptr) == 0)
    return std::string("the picture cannot be written: ") + image.message;
  return file.Commit() ? std::string() : DescribeFailure();
}

}  // namespace QXApp
