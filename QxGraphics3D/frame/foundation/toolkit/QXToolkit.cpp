#include <QxGraphics3D/frame/foundation/toolkit/QXToolkit.h>

#include <QxGraphics3D/frame/foundation/toolkit/QXMutex.h>
#include <QxGraphics3D/frame/foundation/toolkit/detail/QXLibraryPath.h>

#include <sys/stat.h>

namespace QXC {

namespace {

constexpr wchar_t szSystemFonts[] = L"/usr/share/fonts/";

struct FontsFolder {
  QXMutex m_Mutex{0};
  QdcUnicodeString m_strPath;
};

QdcUnicodeString DefaultFontsPath() {
  QdcUnicodeString const installed = detail::DataFolder() + L"fonts/";
  struct stat status {};
  bool const isThere = ::stat(installed.ToMBString().Cstr(), &status) == 0 && S_ISDIR(status.st_mode);
  return isThere ? installed : QdcUnicodeString(szSystemFonts);
}

FontsFolder& Folder() {
  static FontsFolder* const pFolder = new FontsFolder{QXMutex{0}, DefaultFontsPath()};
  return *pFolder;
}

}  // namespace

QdcUnicodeString QXToolkit::GetFontsPath() {
  FontsFolder& folder = Folder();
  QXMutexLock lock(folder.m_Mutex);
  lock.lock();
  return folder.m_strPath;
}

void QXToolkit::SetFontsPath(QdcUnicodeString const& strPath) {
  bool const isComplete = strPath.IsEmpty() || strPath.Right(1) == L"/";
  FontsFolder& folder = Folder();
  QXMutexLock lock(folder.m_Mutex);
  lock.lock();
  folder.m_strPath = isComplete ? strPath : strPath + L"/";
}

}  // namespace QXC
