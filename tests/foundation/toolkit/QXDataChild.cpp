// Writes what the library found beside itself, a line each: fonts folder, default font, a registry value.
#include <QxGraphics3D/frame/foundation/toolkit/QXRegistry.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXStringEx.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXToolkit.h>

#include <cstdio>

int main() {
  QXC::QdcUnicodeString file;
  QXC::QXRegistry::Root().SubFile(L"Graphics3DDefaultFonts").Lookup(L"DejaVuSans", file);
  std::printf("%s\n%s\n%s\n", QXC::QXToolkit::GetFontsPath().ToMBString().Cstr(),
      QXC::QXStringEx::LoadResString(L"IMl001").ToMBString().Cstr(), file.ToMBString().Cstr());
  return 0;
}
