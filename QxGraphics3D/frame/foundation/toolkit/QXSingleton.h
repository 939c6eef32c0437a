/// @file
/// Base of the manager classes that exist once in a process.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/Namespaces.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXMutex.h>

namespace QXC {

/// Holds the one object of T and makes it on first use.
///
/// No lock is taken, so the first use must be on one thread; the object lives until the process ends and nothing
/// deletes it. ms_mLocker stands for hosts that want to guard that first use themselves; nothing here takes it.
///
/// A manager class defines its own static GetSingleton and GetSingletonPtr, which hide these. For the statics to be one
/// in all modules, its header says before the class, and its source says once:
///
///     class QXName;
///     extern template class QXGRAPHICS3D_API QXSingleton<QXName>;   // header
///     template class QXSingleton<QXName>;                           // source
///
/// Without it every module gets statics of its own; behind the derived class g++ fails to link.
template <class T>
class QXSingleton {
public:
  static T& GetSingleton() { return *GetSingletonPtr(); }
  static T* GetSingletonPtr() {
    if (!ms_pSingleton) ms_pSingleton = new T;
    return ms_pSingleton;
  }

  static T* ms_pSingleton;
  static QXMutex ms_mLocker;
};

template <class T>
T* QXSingleton<T>::ms_pSingleton = nullptr;

template <class T>
QXMutex QXSingleton<T>::ms_mLocker{0};

}  // namespace QXC
