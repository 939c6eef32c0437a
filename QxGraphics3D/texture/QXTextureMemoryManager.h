/// @file
/// What a renderer offers to keep its textures within the device's memory.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/Namespaces.h>

namespace QXC {

class QXTexture;
class QXTextureManager;

/// Interface of a memory policy on top of a texture manager. Nothing here calls it: the plug-in that implements it
/// calls it from its own uploads and frames, and a host may reach it through the plug-in. Render thread; operations
/// that delete textures hold the lock of the texture manager.
class QXGRAPHICS3D_API QXTextureMemoryManager {
public:
  QXTextureMemoryManager();
  QXTextureMemoryManager(QXTextureMemoryManager const&) = delete;
  QXTextureMemoryManager& operator=(QXTextureMemoryManager const&) = delete;

  // Slot order is the contract with plug-ins: never reorder, never insert; append only with a major version.

  virtual ~QXTextureMemoryManager();
  /// Takes note that the texture stands on the device with that many bytes, levels included; called after each
  /// upload that changes the number. The texture stays its owner's. Count it in QXTextureMemory here.
  virtual void MemoryOperation1(QXTexture* pTexture, unsigned int nBytes) = 0;
  /// Takes note that the texture leaves the device; called before its device object goes. One that was never noted is
  /// ignored.
  virtual void MemoryOperation2(QXTexture* pTexture) = 0;
  /// Sets how many megabytes the textures may take; 0 or less lifts the limit. Deletes nothing by itself.
  virtual void MemoryOperation3(int nMegabytes) = 0;
  /// Deletes textures of the manager that nobody counts a reference on, those that were used longest ago first, until
  /// the limit holds. Called once a frame behind the last target. Returns the bytes given back, 0 without a limit.
  virtual unsigned int MemoryOperation4() = 0;
  /// 1 if that many more bytes fit within the limit. Called before an upload that can be put off.
  virtual unsigned char MemoryOperation5(unsigned int nBytes) const = 0;

  /// The manager whose textures are meant; null: none. Not owned.
  void SetTextureManager(QXTextureManager* pTextureManager) { m_pTextureManager = pTextureManager; }

protected:
  QXTextureManager* m_pTextureManager = nullptr;
};

}  // namespace QXC
