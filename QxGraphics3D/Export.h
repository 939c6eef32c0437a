/// @file
/// The export mark of the shared library. Every class that crosses the library's edge with virtual
/// operations, type information or out-of-line members carries it: the library is built with hidden
/// visibility, and a class without the mark gets a second vtable and a second typeid in each module.
#pragma once

#if defined(_WIN32)
#  if defined(QXGRAPHICS3D_BUILDING)
#    define QXGRAPHICS3D_API __declspec(dllexport)
#  else
#    define QXGRAPHICS3D_API __declspec(dllimport)
#  endif
#else
#  define QXGRAPHICS3D_API __attribute__((visibility("default")))
#endif
