/// @file
/// Scope guard for the lock of the texture manager.
#pragma once

#include <QxGraphics3D/texture/QXTextureManager.h>

namespace QXC::detail {

/// Holds the lock for a scope. An atlas takes it after its own mutex, never before.
class QXTextureStoreLock {
public:
  explicit QXTextureStoreLock(QXTextureManager& manager) : m_Manager(manager) { m_Manager.Lock(); }
  QXTextureStoreLock(QXTextureStoreLock const&) = delete;
  QXTextureStoreLock& operator=(QXTextureStoreLock const&) = delete;
  ~QXTextureStoreLock() { m_Manager.Unlock(); }

private:
  QXTextureManager& m_Manager;
};

}  // namespace QXC::detail
