#include <apps/qx3d/QXPngWriter.h>

#include <apps/qx3d/QXNewFile.h>

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <vector>

#include <png.h>
#include <sys/stat.h>
#include <unistd.h>

namespace QXApp {

namespace {

namespace fs = std::filesystem;

std::string FolderOf(std::string const& strPath) {
  fs::path const folder = fs::path(strPath).parent_path();
  return folder.empty() ? "." : folder.string();
}

std::string DescribeFailure() {
  return std::string("the picture cannot be written: ") + std::strerror(errno) +
         (errno == ENOSPC || errno == EDQUOT || errno == EFBIG ? "; make room or give another place"
                                                               : "; give another name");
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
  } else if (errno != ENOENT && errno != ENOTDIR) {
    return DescribeFailure();  // a loop of links, a name that is too long
  }
  std::string const strFolder = FolderOf(strTarget);
  if (stat(strFolder.c_str(), &status) != 0 || !S_ISDIR(status.st_mode))
    return "there is no folder '" + strFolder + "'; create it or give another name";
  if (access(strFolder.c_str(), W_OK | X_OK) != 0)
    return "the folder '" + strFolder + "' may not be written to; give another name";
  return std::string();
}

std::string QXPngWriter::Write(std::string const& strPath, int nWidth, int nHeight, unsigned char const* pPixels) {
  std::vector<unsigned char> const vecPacked =
      DropAlpha(pPixels, static_cast<std::size_t>(nWidth) * static_cast<std::size_t>(nHeight));
  return WritePacked(strPath, nWidth, nHeight, PNG_FORMAT_BGR, vecPacked.data());
}

std::string QXPngWriter::WriteWithAlpha(
    std::string const& strPath, int nWidth, int nHeight, unsigned char const* pPixels) {
  return WritePacked(strPath, nWidth, nHeight, PNG_FORMAT_BGRA, pPixels);
}

std::string QXPngWriter::WritePacked(
    std::string const& strPath, int nWidth, int nHeight, unsigned int nFormat, unsigned char const* pPixels) {
  std::string strReason = Check(strPath);
  if (!strReason.empty()) return strReason;
  QXNewFile file(FollowLinks(strPath));
  if (file.Get() == nullptr) return DescribeFailure();
  png_image image = {};
  image.version = PNG_IMAGE_VERSION;
  image.width = static_cast<png_uint_32>(nWidth);
  image.height = static_cast<png_uint_32>(nHeight);
  image.format = nFormat;
  errno = 0;
  if (png_image_write_to_stdio(&image, file.Get(), 0, pPixels, 0, nullptr) == 0)
    return errno != 0 ? DescribeFailure() : std::string("the picture cannot be written: ") + image.message;
  return file.Commit() ? std::string() : DescribeFailure();
}

}  // namespace QXApp
