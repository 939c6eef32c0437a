/// @file
/// The time that animated pictures see.
#pragma once

namespace QXApp {

/// While it lives the frame's millisecond clock stands still, at 0 first, and goes on in steps alone: the same frames
/// show the same pictures on every machine. One at a time.
class QXFrameClock {
public:
  QXFrameClock();
  QXFrameClock(QXFrameClock const&) = delete;
  QXFrameClock& operator=(QXFrameClock const&) = delete;
  ~QXFrameClock();

  void Advance(unsigned int nMilliseconds);
};

}  // namespace QXApp
