/// @file
/// How many bytes textures take on the device.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXSingleton.h>

namespace QXC {

class QXTextureMemory;
extern template class QXGRAPHICS3D_API QXSingleton<QXTextureMemory>;

/// The byte counter of the process. Renderers count in it what they upload and take back; this library does neither.
/// Threads: no lock, so the render thread alone. First use on one thread.
class QXGRAPHICS3D_API QXTextureMemory : public QXSingleton<QXTextureMemory> {
public:
  QXTextureMemory() = default;
  QXTextureMemory(QXTextureMemory const&) = delete;
  QXTextureMemory& operator=(QXTextureMemory const&) = delete;

  /// Both make the counter at first use; it lives to the end of the process.
  static QXTextureMemory& GetSingleton();
  static QXTextureMemory* GetSingletonPtr();

  /// Counts bytes in. Nothing is checked, and past 2 GiB the count goes round.
  void AddMemory(int nBytes);
  /// Counts bytes out, below 0 too.
  void DelMemory(int nBytes);
  /// The count in whole megabytes of 1,048,576 bytes, cut towards 0.
  int GetCurrentMemory() const;

protected:
  int m_nCurrentBytes = 0;
};

}  // namespace QXC
