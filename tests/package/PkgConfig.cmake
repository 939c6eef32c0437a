# Compiles, links and runs a program with nothing but what the installed pkg-config file tells.
set(ENV{PKG_CONFIG_PATH} "${PREFIX}/${LIBDIR}/pkgconfig")
execute_process(COMMAND "${PKG_CONFIG}" --cflags --libs QxGraphics3D
  OUTPUT_VARIABLE flags OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
separate_arguments(flags)
file(WRITE "${FOLDER}/version.cpp" "
#include <QxGraphics3D/Version.h>
#include <cstdio>
int main() { std::puts(QXC::GetLibraryVersion()); }
")
execute_process(COMMAND "${COMPILER}" -std=c++20 "${FOLDER}/version.cpp" -o "${FOLDER}/version" ${flags}
  "-Wl,-rpath,${PREFIX}/${LIBDIR}" COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND "${FOLDER}/version" OUTPUT_VARIABLE version OUTPUT_STRIP_TRAILING_WHITESPACE
  COMMAND_ERROR_IS_FATAL ANY)
if(NOT version STREQUAL VERSION)
  message(FATAL_ERROR "the installed library says '${version}', the package is ${VERSION}")
endif()
