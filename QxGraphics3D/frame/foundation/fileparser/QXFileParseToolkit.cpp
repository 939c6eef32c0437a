#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseToolkit.h>

#include <QxGraphics3D/frame/foundation/fileparser/QXFileType.h>

namespace QXC {

int QXFileParseToolkit::GetFileTypeByExtName(QdcUnicodeString const& strPath) {
  wchar_t const* szPath = strPath.Cstr();
  wchar_t const* szName = szPath;
  wchar_t const* szDot = nullptr;
  for (wchar_t const* p = szPath; *p != 0; ++p) {
    if (*p == L'/') {
      szName = p + 1;
      szDot = nullptr;
    } else if (*p == L'.' && p != szName) {
      szDot = p;
    }
  }
  return szDot == nullptr ? QXFileType::EM_UNKNOWN : QXFileType::ExtNameToFileType(QdcUnicodeString(szDot));
}

}  // namespace QXC
