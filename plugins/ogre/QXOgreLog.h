/// @file
/// The device's log, kept in memory.
#pragma once

#include <string>

#include <OgreLog.h>

namespace QXC {

/// Swallows what OGRE logs, so that the process prints nothing and leaves no file behind, and remembers the last
/// complaint: bad shaders and missing features are told to the log alone, and a failed call is explained with it.
class QXOgreLog final : public Ogre::LogListener {
public:
  void messageLogged(Ogre::String const& strMessage, Ogre::LogMessageLevel eLevel, bool bMaskDebug,
      Ogre::String const& strLogName, bool& bSkip) override;

  /// The last warning or error since Clear, as one line; empty if there was none.
  std::string const& GetLastComplaint() const { return m_strComplaint; }
  void Clear() { m_strComplaint.clear(); }

private:
  std::string m_strComplaint;
};

}  // namespace QXC
