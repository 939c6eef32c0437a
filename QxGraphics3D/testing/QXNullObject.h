/// @file
/// What all objects of the null renderer share.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include <QxGraphics3D/testing/QXCallLog.h>

namespace QXC {

/// A label for the log, the log itself if there is one, and a count of the objects that are alive, so that a test
/// sees what a host forgot to delete.
class QXNullObject {
public:
  QXNullObject(QXNullObject const&) = delete;
  QXNullObject& operator=(QXNullObject const&) = delete;

  /// Objects of the null renderer that exist in the process, the renderer itself included. Render thread.
  static int GetLiveCount();
  /// How the object is called in the log, such as `camera "eye"`.
  std::string const& GetLabel() const { return m_strLabel; }

protected:
  /// @param pLog  null: calls are not written down
  QXNullObject(std::shared_ptr<QXCallLog> pLog, std::string strLabel);
  ~QXNullObject();

  /// Writes a call down. Nothing is formatted while there is no log.
  template <class... Arguments>
  void Record(char const* szCall, Arguments const&... arguments) const {
    if (m_pLog != nullptr) {
      m_pLog->Write(m_strLabel, szCall, arguments...);
    }
  }

  /// Of a state that is only remembered.
  template <class Value, class Member>
  void RecordAndKeep(char const* szCall, Value const& value, Member& member) {
    Record(szCall, value);
    member = value;
  }

  std::shared_ptr<QXCallLog> m_pLog;
  std::string m_strLabel;
};

}  // namespace QXC
