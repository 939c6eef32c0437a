/// @file
/// One configured plug-in.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

namespace QXC {

/// A plug-in as the configuration tells of it. A plain record.
struct QXGRAPHICS3D_API QXPluginConfig {
  /// The plug-in's number among those of its kind; the lowest is the default one.
  int m_nNumber = 0;
  /// The name under which it is loaded.
  QdcUnicodeString m_strName;
  /// 0: configured, but not to be loaded.
  unsigned char m_bEnabled = 0;
};

}  // namespace QXC
