#include <QxGraphics3D/texture/QXTextureMemory.h>

namespace QXC {

template class QXSingleton<QXTextureMemory>;

QXTextureMemory& QXTextureMemory::GetSingleton() {
  return QXSingleton<QXTextureMemory>::GetSingleton();
}

QXTextureMemory* QXTextureMemory::GetSingletonPtr() {
  return QXSingleton<QXTextureMemory>::GetSingletonPtr();
}

// Unsigned inside: a signed sum that leaves its range is undefined.
void QXTextureMemory::AddMemory(int nBytes) {
  m_nCurrentBytes = static_cast<int>(static_cast<unsigned int>(m_nCurrentBytes) + static_cast<unsigned int>(nBytes));
}

void QXTextureMemory::DelMemory(int nBytes) {
  m_nCurrentBytes = static_cast<int>(static_cast<unsigned int>(m_nCurrentBytes) - static_cast<unsigned int>(nBytes));
}

int QXTextureMemory::GetCurrentMemory() const {
  return m_nCurrentBytes / 1048576;
}

}  // namespace QXC
