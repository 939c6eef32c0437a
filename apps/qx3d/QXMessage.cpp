#include <apps/qx3d/QXMessage.h>

#include <cstdio>

namespace QXApp {

std::string MakeOneLine(std::string strText) {
  for (char& c : strText)
    if (static_cast<unsigned char>(c) < ' ' || c == '\x7F') c = ' ';
  return strText;
}

void PrintFailure(std::string const& strText) {
  std::fprintf(stderr, "qx3d: %s\n", MakeOneLine(strText).c_str());
}

}  // namespace QXApp
