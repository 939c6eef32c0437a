#include <plugins/ogre/QXOgreLog.h>

#include <plugins/ogre/QXOgreConvert.h>

namespace QXC {

void QXOgreLog::messageLogged(
    Ogre::String const& strMessage, Ogre::LogMessageLevel eLevel, bool, Ogre::String const&, bool& bSkip) {
  bSkip = true;
  if (eLevel >= Ogre::LML_WARNING) m_strComplaint = OneLine(strMessage);
}

}  // namespace QXC
