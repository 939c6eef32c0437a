#include <QxGraphics3D/texture/QXTextureCacheEntry.h>

#include <QxGraphics3D/texture/QXTexture.h>

#include <ctime>

namespace QXC {

QXTextureCacheEntry::QXTextureCacheEntry() : QXTextureCacheEntry(nullptr) {}

QXTextureCacheEntry::QXTextureCacheEntry(QXTexture* pTexture)
    : m_dLastAccess(static_cast<double>(std::clock())), m_pTexture(pTexture) {}

QXTextureCacheEntry::~QXTextureCacheEntry() {
  delete m_pTexture;
}

void QXTextureCacheEntry::SetTexture(QXTexture* pTexture) {
  if (pTexture == m_pTexture) return;
  QXTexture* const pFormer = m_pTexture;
  // Stored first: the former one's destructor may look the entry up.
  m_pTexture = pTexture;
  if (pFormer && pFormer->GetRef() >= 0) delete pFormer;
}

double QXTextureCacheEntry::CompareAccessTime(QXTextureCacheEntry* pOther) const {
  if (!pOther || !m_pTexture || !pOther->m_pTexture) return -1.0;
  return m_dLastAccess - pOther->m_dLastAccess;
}

int QXTextureCacheEntry::ComparePath(QdcUnicodeString const& strPath) const {
  if (!m_pTexture) return -1;
  QdcUnicodeString const& strOwn = m_pTexture->m_strTexFilePath;
  if (strOwn.GetLength() != strPath.GetLength()) return -1;
  // From the end: the paths of one store begin alike.
  for (int i = strOwn.GetLength() - 1; i >= 0; --i) {
    if (strOwn[i] == strPath[i]) continue;
    // Unsigned inside: what stands in a name need not be a character, and a signed difference could leave its range.
    return static_cast<int>(static_cast<unsigned int>(strOwn[i]) - static_cast<unsigned int>(strPath[i]));
  }
  return 0;
}

int QXTextureCacheEntry::ComparePath(QXTextureCacheEntry* pOther) const {
  return pOther && pOther->m_pTexture ? ComparePath(pOther->m_pTexture->m_strTexFilePath) : -1;
}

}  // namespace QXC
