/// @file
/// Pixel blocks of styles by name.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcDict.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

#include <functional>

namespace QXC {

class QXTextureData;
struct QXTextureInfo;

/// The pixel blocks that styles name, one store a process: g_styletexturemanager. It stands from the loading of the
/// library to its end. Threads: no lock.
class QXGRAPHICS3D_API QXStyleTextureManager {
public:
  QXStyleTextureManager();
  QXStyleTextureManager(QXStyleTextureManager const&) = delete;
  QXStyleTextureManager& operator=(QXStyleTextureManager const&) = delete;
  /// Deletes every record.
  ~QXStyleTextureManager();

  /// Stores a copy of the described pixels under the name in the description and returns 1; 0 without a description or
  /// a name. A record that the name had is replaced and not freed, since GetStyleTexture has handed it out.
  static unsigned char AddStyleTexture(QXTextureInfo const* pInfo);
  /// The record of that name, the store's, or null.
  static QXTextureData* GetStyleTexture(QdcUnicodeString strName);

protected:
  QdcDict<QdcUnicodeString, QXTextureData*, std::less<QdcUnicodeString>> m_dictTextures;
};

/// The one store.
extern QXGRAPHICS3D_API QXStyleTextureManager g_styletexturemanager;

}  // namespace QXC
