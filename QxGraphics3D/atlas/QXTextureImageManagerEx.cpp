#include <QxGraphics3D/atlas/QXTextureImageManagerEx.h>

#include <limits>
#include <utility>

#include <QxGraphics3D/atlas/detail/QXImageRecords.h>
#include <QxGraphics3D/atlas/detail/QXTextureStoreLock.h>
#include <QxGraphics3D/atlas/detail/QXUploadBlock.h>
#include <QxGraphics3D/texture/QXTexture.h>

namespace QXC {

template class QXSingleton<QXTextureImageManagerEx>;

namespace {

QdcUnicodeString GetPoolKey(QXTextureImageEx const& image) {
  QdcUnicodeString strKey;
  strKey.Format(L"%d_%d_%d_%d", static_cast<int>(image.m_nFormat), static_cast<int>(image.m_nCompression),
      static_cast<int>(image.m_nWidth), static_cast<int>(image.m_nHeight));
  return strKey;
}

// Grey images are handed on as they were read, under the code of 4 bytes: their length tells, to renderers too.
QX3DPixelFormat GetStoredFormat(QXTextureData const& data) {
  QXUInt64 const nPixels = QXUInt64{data.m_nWidth} * data.m_nHeight;
  bool const bGrey = data.m_eFormat == PF_R8G8B8A8 && data.m_nCompression == TEXTURE_COMPRESSION_NONE && nPixels != 0 &&
                     data.GetBlockLength() == nPixels;
  return bGrey ? PF_L8 : data.m_eFormat;
}

void DeletePixels(QXTextureImageEx& image) {
  delete image.m_pTextureData;
  image.m_pTextureData = nullptr;
}

}  // namespace

QXTextureImageManagerEx::QXTextureImageManagerEx()
    : m_pImages(std::make_unique<detail::QXImageRecords<QXTextureImageEx>>()) {}

QXTextureImageManagerEx::~QXTextureImageManagerEx() {
  Clear();
}

QXTextureImageManagerEx& QXTextureImageManagerEx::GetSingleton() {
  return *GetSingletonPtr();
}

QXTextureImageManagerEx* QXTextureImageManagerEx::GetSingletonPtr() {
  if (!ms_pSingleton) ms_pSingleton = new QXTextureImageManagerEx;
  return ms_pSingleton;
}

QXTextureImageEx* QXTextureImageManagerEx::GetTextureImage(QdcUnicodeString const& strName) {
  QXMutexLock lock(m_Mutex);
  lock.lock();
  QXTextureImageEx& image = m_pImages->Get(strName, this);
  ++image.m_nRefCount;
  return &image;
}

// --- Upload ---

void QXTextureImageManagerEx::LoadTexture(unsigned char bKeepTextures) {
  if (!m_pTextureManager) return;
  QXMutexLock lock(m_Mutex);
  lock.lock();
  m_pImages->UploadWaiting([this](QXTextureImageEx& image) { return Upload(image); });
  m_pImages->RemoveUseless(
      [bKeepTextures](QdcUnicodeString const& strName) { GetSingleton().RemoveTextureImage(strName, bKeepTextures); });
}

bool QXTextureImageManagerEx::Upload(QXTextureImageEx& image) {
  // Before anything else of the record: its owner's thread set it behind all that it wrote.
  if (!image.m_bReady) return false;
  if (image.m_bLoaded || image.m_pTexture) return false;
  if (!image.m_pTextureData || !image.m_pTextureData->m_pPixels) return false;
  if (!UploadToKept(image) && !UploadToNew(image)) return false;
  image.m_bLoaded = 1;
  DeletePixels(image);
  return true;
}

bool QXTextureImageManagerEx::UploadToKept(QXTextureImageEx& image) {
  QdcUnicodeString const strKey = GetPoolKey(image);
  // The first of its kind that came: find would give any of them.
  auto const kept = m_mapTexturePools.lower_bound(strKey);
  if (kept == m_mapTexturePools.end() || kept->first != strKey) return false;
  // The key is what the owner wrote into the record; a new texture is measured by the pixels themselves.
  QXTextureData const& data = *image.m_pTextureData;
  auto const kind = m_mapKinds.find(kept->second);
  auto const [eFormat, nCompression] =
      kind != m_mapKinds.end() ? kind->second : std::pair(GetStoredFormat(data), data.m_nCompression);
  // Pixels of 4 bytes are long enough for a grey texture, and would come out as stripes.
  if (eFormat == PF_L8 && GetStoredFormat(data) != PF_L8) return false;
  if (!detail::HasUploadBlock(data, eFormat, nCompression, image.m_nWidth, image.m_nHeight)) return false;
  int const nWidth = static_cast<int>(image.m_nWidth);
  int const nHeight = static_cast<int>(image.m_nHeight);
  kept->second->LoadSubTexture(0, 0, nWidth, nHeight, nWidth, nHeight, data.m_pPixels, 0);
  image.m_pTexture = kept->second;
  m_mapTexturePools.erase(kept);
  return true;
}

bool QXTextureImageManagerEx::UploadToNew(QXTextureImageEx& image) {
  // Further numbers would be those of textures that are in use.
  if (m_nTextureCounter == std::numeric_limits<int>::max()) return false;
  QXTexture* pTexture = nullptr;
  {
    detail::QXTextureStoreLock const lock(*m_pTextureManager);
    QdcUnicodeString strName;
    strName.Format(L"TextureImage_%d", m_nTextureCounter++);
    pTexture = m_pTextureManager->GetTexture(strName, 1);
  }
  if (!pTexture) return false;
  m_mapKinds[pTexture] = {GetStoredFormat(*image.m_pTextureData), image.m_pTextureData->m_nCompression};
  // One image drawn at about its own size; levels would have to be made anew for each image that is sent into it later.
  pTexture->SetTextureMipMap(0);
  pTexture->SetTextureData(static_cast<QXTextureData const*>(image.m_pTextureData));
  pTexture->LoadTexture(1, 0);
  pTexture->AddRef();
  image.m_pTexture = pTexture;
  return true;
}

// --- Removal ---

void QXTextureImageManagerEx::RemoveTextureImage(QdcUnicodeString const& strName, unsigned char bKeepTextures) {
  QXMutexLock lock(m_Mutex);
  lock.lock();
  auto const place = m_pImages->Find(strName);
  if (m_pImages->IsEnd(place)) return;
  if (--place->second->m_nRefCount != 0) return;
  std::unique_ptr<QXTextureImageEx> const pImage = m_pImages->Take(place);
  if (!pImage->m_bLoaded || !pImage->m_pTexture) return;
  if (bKeepTextures) {
    m_mapTexturePools.emplace(GetPoolKey(*pImage), pImage->m_pTexture);
  } else if (m_pTextureManager) {
    m_mapKinds.erase(pImage->m_pTexture);
    detail::QXTextureStoreLock const storeLock(*m_pTextureManager);
    m_pTextureManager->RemoveTexture(pImage->m_pTexture, 1);
  }
}

void QXTextureImageManagerEx::AddUselessTexture(QdcArray<QXTextureImageEx*> arrImages) {
  QXMutexLock lock(m_Mutex);
  lock.lock();
  m_pImages->AddUseless(arrImages);
}

void QXTextureImageManagerEx::Clear() {
  QXMutexLock lock(m_Mutex);
  lock.lock();
  if (m_pTextureManager) {
    detail::QXTextureStoreLock const storeLock(*m_pTextureManager);
    m_mapKinds.clear();
    m_pImages->Clear([this](QXTextureImageEx const& image) {
      if (image.m_pTexture) m_pTextureManager->RemoveTexture(image.m_pTexture, 1);
    });
    // Taken out first: a texture may call back while it dies.
    auto const mapTexturePools = std::exchange(m_mapTexturePools, {});
    for (auto const& [strKey, pTexture] : mapTexturePools) m_pTextureManager->RemoveTexture(pTexture, 1);
  }
  m_pImages->ForgetUseless();
}

}  // namespace QXC
