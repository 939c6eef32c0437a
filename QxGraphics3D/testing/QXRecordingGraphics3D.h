/// @file
/// The null renderer that writes down what is called.
#pragma once

#include <QxGraphics3D/testing/QXNullGraphics3D.h>

namespace QXC {

/// A null renderer with a log: its own calls and those on everything that it makes (targets, cameras, drawables..)
/// stand there in order, one line each, the same on every machine. Questions (const operations) are left out, so that
/// asking more often changes no record. The log lives as long as the last object that writes into it.
class QXRecordingGraphics3D final : public QXNullGraphics3D {
public:
  QXRecordingGraphics3D() : QXNullGraphics3D(std::make_shared<QXCallLog>()) {}

  QXCallLog& GetLog() { return *m_pLog; }
  /// The log, for a host that reads it after the renderer has gone.
  std::shared_ptr<QXCallLog> ShareLog() const { return m_pLog; }
};

}  // namespace QXC
