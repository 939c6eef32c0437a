#include <apps/qx3d/QXFrameClock.h>

#include <QxGraphics3D/frame/foundation/base/QdcTime.h>

namespace QXApp {

namespace {

unsigned int ms_nNow = 0;

unsigned int GetNow() {
  return ms_nNow;
}

}  // namespace

QXFrameClock::QXFrameClock() {
  ms_nNow = 0;
  QDC::QdcTime::SetClock(&GetNow);
}

QXFrameClock::~QXFrameClock() {
  QDC::QdcTime::SetClock(nullptr);
}

void QXFrameClock::Advance(unsigned int nMilliseconds) {
  ms_nNow += nMilliseconds;
}

}  // namespace QXApp
