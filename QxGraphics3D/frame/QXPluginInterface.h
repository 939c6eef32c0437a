/// @file
/// What a plug-in module exports: three C functions, looked up by name.
///
///     extern "C" QX_PLUGIN_EXPORT unsigned int QXPluginInterfaceVersion() { return QXC::QX_PLUGIN_INTERFACE_VERSION; }
///     extern "C" QX_PLUGIN_EXPORT void* QXPluginCreate(char const* szKind);
///     extern "C" QX_PLUGIN_EXPORT void QXPluginDestroy(void* pObject);
///
/// QXPluginCreate gives a new object of the kind, as a pointer to the kind's class (below) turned into void*, or null
/// for a kind that the module does not know. QXPluginDestroy deletes such an object. Both are called on the thread
/// that uses the object. An exception out of QXPluginCreate is caught and becomes a reason of failure; QXPluginDestroy
/// must not throw.
#pragma once

#if defined(_WIN32)
#  define QX_PLUGIN_EXPORT __declspec(dllexport)
#else
#  define QX_PLUGIN_EXPORT __attribute__((visibility("default")))
#endif

namespace QXC {

/// Raised at every change of slots or layouts that a plug-in can see. A module of another number is refused before
/// anything in it but its static initialisation and QXPluginInterfaceVersion has run.
inline constexpr unsigned int QX_PLUGIN_INTERFACE_VERSION = 3;

/// Kind of a renderer: QXPluginCreate gives a QXGraphics3D.
inline constexpr wchar_t const* QX_PLUGIN_KIND_RENDERER = L"renderer";
/// Kind of a model reader: QXPluginCreate gives a QXFileParseModel.
inline constexpr wchar_t const* QX_PLUGIN_KIND_MODEL_READER = L"model-reader";

using QXPluginInterfaceVersionProc = unsigned int (*)();
using QXPluginCreateProc = void* (*)(char const* szKind);
using QXPluginDestroyProc = void (*)(void* pObject);

}  // namespace QXC
