/// @file
/// What differs between platforms: window handles and the 64-bit handle type of callbacks.
/// The system's own header is never included, so that neither its macros nor a display reach a host.
#pragma once

#include <cstdint>

#if defined(_WIN32)
struct HWND__;
struct HDC__;
using HWND = HWND__*;
using HDC = HDC__*;
using QXInt64 = __int64;
using QXUInt64 = unsigned __int64;
#else
/// Opaque native window: the plug-in that created or was given it knows what stands behind it.
using HWND = struct QXNativeWindow*;
/// Opaque native drawing context, stored and returned only.
using HDC = struct QXNativeDisplay*;
/// 64-bit handle of callbacks. `long` is another type of the same width, and function types must match.
using QXInt64 = long long;
/// Byte lengths of pixel blocks and files, which pass 32 bits before they are checked.
using QXUInt64 = unsigned long long;
#endif

static_assert(sizeof(QXInt64) == 8);
static_assert(sizeof(QXUInt64) == 8);
