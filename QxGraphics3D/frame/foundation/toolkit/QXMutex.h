/// @file
/// Mutex of the managers and its scope guard.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/Namespaces.h>

#include <mutex>

namespace QXC {

/// A lock that its owner may enter again; each lock wants its unlock on the same thread.
class QXGRAPHICS3D_API QXMutex {
public:
  /// Told of every lock (bLocked 1, after it was taken) and unlock (bLocked 0, before it is given up), on the thread
  /// that does it.
  using Observer = void (*)(QXMutex const& mutex, unsigned char bLocked);

  /// The flag says what callers rely on (1: one thread enters repeatedly). The lock is recursive for both values: a
  /// setter with a mutex of flag 0 can be reached again from a plug-in's override, and then would never return.
  explicit constexpr QXMutex([[maybe_unused]] unsigned char bRecursive) noexcept {}
  QXMutex(QXMutex const&) = delete;
  QXMutex& operator=(QXMutex const&) = delete;

  void lock();
  void unlock();

  /// Lets a test watch in which order locks are taken; null stops it. One observer for the whole process.
  static void SetObserver(Observer pObserver);

private:
  std::recursive_mutex m_Mutex;
};

/// Binds a mutex to a scope. Nothing is locked before lock() is called; the destructor unlocks what was locked.
class QXGRAPHICS3D_API QXMutexLock {
public:
  explicit QXMutexLock(QXMutex& mutex) : m_Mutex(mutex) {}
  QXMutexLock(QXMutexLock const&) = delete;
  QXMutexLock& operator=(QXMutexLock const&) = delete;
  ~QXMutexLock();

  /// Locks once; a second call on the same object does nothing.
  void lock();

private:
  QXMutex& m_Mutex;
  unsigned char m_bLocked = 0;
};

}  // namespace QXC
