/// @file
/// Reader of one plug-in configuration file.
#pragma once

#include <QxGraphics3D/frame/QXPluginConfig.h>
#include <QxGraphics3D/frame/foundation/base/Namespaces.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>
#include <QxGraphics3D/frame/foundation/toolkit/detail/QXIniFile.h>

#include <vector>

namespace QXC::detail {

/// A plug-in as one file tells of it.
struct QXPluginEntry {
  QdcUnicodeString m_strKind;
  QXPluginConfig m_Config;
  QdcUnicodeString m_strModule;  ///< as written
  int m_nLine = 0;               ///< of its first key
};

/// Gives the plug-ins of a file in the order of their sections, or none and a one-line reason in strProblem. strFile
/// only stands in the reason.
std::vector<QXPluginEntry> ReadPluginEntries(
    std::vector<QXIniEntry> const& arrLines, QdcUnicodeString const& strFile, QdcUnicodeString& strProblem);

}  // namespace QXC::detail
