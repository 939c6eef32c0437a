#include <QxGraphics3D/frame/foundation/toolkit/QXMutex.h>

#include <atomic>

namespace QXC {

namespace {

constinit std::atomic<QXMutex::Observer> ms_pObserver{nullptr};

void Tell(QXMutex const& mutex, unsigned char bLocked) {
  if (auto* const pObserver = ms_pObserver.load(std::memory_order_acquire)) pObserver(mutex, bLocked);
}

}  // namespace

void QXMutex::lock() {
  m_Mutex.lock();
  Tell(*this, 1);
}

void QXMutex::unlock() {
  Tell(*this, 0);
  m_Mutex.unlock();
}

void QXMutex::SetObserver(Observer pObserver) {
  ms_pObserver.store(pObserver, std::memory_order_release);
}

QXMutexLock::~QXMutexLock() {
  if (m_bLocked) m_Mutex.unlock();
}

void QXMutexLock::lock() {
  if (m_bLocked) return;
  m_Mutex.lock();
  m_bLocked = 1;
}

}  // namespace QXC
