/// @file
/// Date-time value and the millisecond clock of the frame.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/Platform.h>
#include <QxGraphics3D/frame/foundation/base/Namespaces.h>

namespace QDC {

/// A moment: milliseconds since 1970-01-01 00:00 UTC, 0 by default.
class QXGRAPHICS3D_API QdcTime {
public:
  constexpr QdcTime() = default;
  constexpr explicit QdcTime(QXInt64 nMillisecondsUTC) : m_nMillisecondsUTC(nMillisecondsUTC) {}

  constexpr QXInt64 GetMillisecondsUTC() const { return m_nMillisecondsUTC; }
  constexpr bool operator==(QdcTime const&) const = default;

  /// Milliseconds of a steady clock, cut to 32 bits: it wraps to 0 every 49.7 days, so subtract two readings and never
  /// compare them. Any thread.
  static unsigned int GetMillisecond();
  /// Puts another clock behind GetMillisecond, for tests and for hosts that replay a recording; null brings the steady
  /// clock back. Any thread.
  static void SetClock(unsigned int (*pClock)());

private:
  QXInt64 m_nMillisecondsUTC = 0;
};

}  // namespace QDC
