#include <apps/qx3d/QXMessage.h>

#include <QxGraphics3D/frame/foundation/fileparser/QXFileType.h>

#include <algorithm>
#include <cstdio>

namespace QXApp {

std::string Narrow(QXC::QdcUnicodeString const& strText) {
  return strText.ToMBString().Cstr();
}

bool IsUtf8(std::string const& strText) {
  // Nearly all lines and names are, and long files have many lines.
  if (std::all_of(strText.begin(), strText.end(), [](char c) { return c > 0; })) return true;
  return Narrow(QXC::QdcUnicodeString::FromUTF8(strText.c_str())) == strText;
}

std::string MakeOneLine(std::string strText) {
  for (char& c : strText)
    if (static_cast<unsigned char>(c) < ' ' || c == '\x7F') c = ' ';
  return strText;
}

std::string ListImageKinds() {
  QXC::QdcArray<QXC::QdcUnicodeString> arrExtNames;
  QXC::QXFileType::GetImageExtNames(arrExtNames);
  std::string strList;
  for (QXC::QdcUnicodeString const& strExt : arrExtNames) strList += " " + Narrow(strExt);
  return strList;
}

void PrintFailure(std::string const& strText) {
  std::fprintf(stderr, "qx3d: %s\n", MakeOneLine(strText).c_str());
}

}  // namespace QXApp
