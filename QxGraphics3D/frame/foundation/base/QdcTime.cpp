#include <QxGraphics3D/frame/foundation/base/QdcTime.h>

#include <atomic>
#include <chrono>

namespace QDC {

namespace {

constinit std::atomic<unsigned int (*)()> ms_pClock{nullptr};

unsigned int SteadyMillisecond() {
  using std::chrono::milliseconds;
  auto const sinceStart = std::chrono::steady_clock::now().time_since_epoch();
  auto const count = std::chrono::duration_cast<milliseconds>(sinceStart).count();
  return static_cast<unsigned int>(static_cast<unsigned long long>(count) & 0xFFFFFFFFu);
}

}  // namespace

unsigned int QdcTime::GetMillisecond() {
  auto* const pClock = ms_pClock.load(std::memory_order_relaxed);
  return pClock ? pClock() : SteadyMillisecond();
}

void QdcTime::SetClock(unsigned int (*pClock)()) {
  ms_pClock.store(pClock, std::memory_order_relaxed);
}

}  // namespace QDC
