#include <QxGraphics3D/atlas/QXTextureImageManager.h>

#include <cstring>

#include <QxGraphics3D/atlas/detail/QXImageRecords.h>
#include <QxGraphics3D/atlas/detail/QXQuadtreeAtlas.h>
#include <QxGraphics3D/atlas/detail/QXTextureStoreLock.h>
#include <QxGraphics3D/atlas/detail/QXUploadBlock.h>
#include <QxGraphics3D/texture/QXTexture.h>

namespace QXC {

template class QXSingleton<QXTextureImageManager>;

namespace {

constexpr unsigned int kEdge = 1024;

QdcUnicodeString GetBigTextureName(QXTextureImage const& image) {
  QdcUnicodeString strName;
  strName.Format(L"Image_BigTexture_%d", static_cast<int>(image.GetBigTextureIndex()));
  return strName;
}

// A big texture before the first image: a colour that nobody mistakes for a picture, where it can be seen at all.
QXTextureData MakeBlank(QX3DPixelFormat eFormat, unsigned int nCompression) {
  QXTextureData blank;
  blank.m_nWidth = kEdge;
  blank.m_nHeight = kEdge;
  blank.m_eFormat = eFormat;
  blank.m_nCompression = nCompression;
  unsigned int const nPixelSize = detail::AtlasPixelSize(eFormat);
  bool const bBlocks = nCompression == TEXTURE_COMPRESSION_BLOCK;
  // Blocks of 4 by 4 pixels take 8 bytes for pixels of 3 and 16 for pixels of 4.
  blank.m_nDataSize = bBlocks ? kEdge * kEdge / (nPixelSize == 3 ? 2 : 1) : kEdge * kEdge * nPixelSize;
  blank.m_pPixels = new unsigned char[blank.m_nDataSize];
  std::memset(blank.m_pPixels, 255, blank.m_nDataSize);
  if (!bBlocks) {
    // Blue and red, opaque. Where alpha comes first (PF_B8G8R8A8) the same bytes are green and blue.
    for (unsigned int i = 1; i < blank.m_nDataSize; i += nPixelSize) blank.m_pPixels[i] = 0;
  }
  return blank;
}

// Clear leaves big textures behind, and the next ones get their names. Parts of another format would be read past their
// end, or come out as noise. Only asked before the first part: a renderer may widen the pixels of its texture, and what
// was sent since must not be covered by another blank.
bool IsLeftBehind(QXTexture const& texture, QXTextureData const& data) {
  QXTextureData const& former = texture.m_TextureData;
  return former.m_eFormat != PF_UNKNOWN &&
         (former.m_eFormat != data.m_eFormat || former.m_nCompression != data.m_nCompression);
}

void MakeReady(QXTexture& texture, QXTextureData const& data, bool bStarted) {
  bool const bLeftBehind = !bStarted && IsLeftBehind(texture, data);
  if (bLeftBehind || !texture.IsLoadedImage()) {
    QXTextureData const blank = MakeBlank(data.m_eFormat, data.m_nCompression);
    texture.SetTextureData(&blank);
  }
  if (bLeftBehind) texture.SetIsNeedLoadTexture(1);
  if (bLeftBehind || !texture.IsLoaded()) texture.LoadTexture(1, 0);
}

}  // namespace

QXTextureImageManager::QXTextureImageManager()
    : m_pImages(std::make_unique<detail::QXImageRecords<QXTextureImage>>()),
      m_pBigTextures(std::make_unique<detail::QXQuadtreeAtlas>(detail::g_ImageAtlasRules)) {}

QXTextureImageManager::~QXTextureImageManager() {
  Clear();
}

QXTextureImageManager& QXTextureImageManager::GetSingleton() {
  return *GetSingletonPtr();
}

QXTextureImageManager* QXTextureImageManager::GetSingletonPtr() {
  if (!ms_pSingleton) ms_pSingleton = new QXTextureImageManager;
  return ms_pSingleton;
}

QXTextureImage* QXTextureImageManager::GetTextureImage(QdcUnicodeString const& strName) {
  QXMutexLock lock(m_Mutex);
  lock.lock();
  QXTextureImage& image = m_pImages->Get(strName, this);
  ++image.m_nRefCount;
  return &image;
}

unsigned char QXTextureImageManager::FindSpaceInBigTextures(QXTextureImage* pImage) {
  if (!pImage || !pImage->m_pTextureData) return 0;
  QXMutexLock lock(m_Mutex);
  lock.lock();
  detail::QXQuadtreeRequest request;
  request.m_nSize = pImage->m_nSize;
  request.m_nFormat = static_cast<unsigned int>(pImage->m_pTextureData->m_eFormat);
  request.m_nCompression = pImage->m_pTextureData->m_nCompression;
  detail::QXQuadtreePlace place;
  if (!m_pBigTextures->Place(request, place)) return 0;
  pImage->m_nLocation = detail::PackQuadtreePlace(place);
  pImage->m_bAllocated = 1;
  return 1;
}

void QXTextureImageManager::LoadTexture() {
  if (!m_pTextureManager) return;
  QXMutexLock lock(m_Mutex);
  lock.lock();
  m_pImages->UploadWaiting([this](QXTextureImage& image) { return Upload(image); });
  m_pImages->RemoveUseless([](QdcUnicodeString const& strName) { GetSingleton().RemoveTextureImage(strName); });
}

bool QXTextureImageManager::Upload(QXTextureImage& image) {
  // Another thread may still be filling a record without a slot: nothing else of it may be read.
  if (image.m_bLoaded || !image.m_bAllocated || !image.m_pTextureData) return false;
  QXTextureData const& data = *image.m_pTextureData;
  int const nIndex = static_cast<int>(image.GetBigTextureIndex());
  if (!m_pBigTextures->IsPageOf(nIndex, static_cast<unsigned int>(data.m_eFormat), data.m_nCompression)) return false;
  if (!detail::HasUploadBlock(data, data.m_eFormat, data.m_nCompression, data.m_nWidth, data.m_nHeight)) return false;
  detail::QXTextureStoreLock const storeLock(*m_pTextureManager);
  QXTexture* const pTexture = m_pTextureManager->GetTexture(GetBigTextureName(image), 1);
  if (!pTexture) return false;
  MakeReady(*pTexture, data, m_setStarted[image.GetBigTextureIndex()]);
  m_setStarted.set(image.GetBigTextureIndex());
  QdcRect const slot = image.GetSlot();
  int const nWidth = static_cast<int>(data.m_nWidth);
  int const nHeight = static_cast<int>(data.m_nHeight);
  pTexture->LoadSubTexture(slot.left, slot.top, nWidth, nHeight, nWidth, nHeight, data.m_pPixels, 0);
  pTexture->AddRef();
  image.m_bLoaded = 1;
  delete image.m_pTextureData;
  image.m_pTextureData = nullptr;
  return true;
}

void QXTextureImageManager::RemoveTextureImage(QdcUnicodeString const& strName) {
  QXMutexLock lock(m_Mutex);
  lock.lock();
  auto const place = m_pImages->Find(strName);
  if (m_pImages->IsEnd(place)) return;
  if (--place->second->m_nRefCount != 0) return;
  std::unique_ptr<QXTextureImage> const pImage = m_pImages->Take(place);
  // A slot that is not held is somebody else's.
  if (!pImage->m_bAllocated) return;
  ReleaseSlot(*pImage);
  if (!pImage->m_bLoaded || !m_pTextureManager) return;
  detail::QXTextureStoreLock const storeLock(*m_pTextureManager);
  m_pTextureManager->RemoveTexture(m_pTextureManager->GetTexture(GetBigTextureName(*pImage), 1), 1);
}

void QXTextureImageManager::ReleaseSlot(QXTextureImage const& image) {
  detail::QXQuadtreePlace const slot = detail::UnpackQuadtreePlace(image.m_nLocation);
  if (!m_pBigTextures->Release(slot)) return;
  m_pBigTextures->DropPage(slot.m_nIndex);
  m_setStarted.reset(image.GetBigTextureIndex());
}

void QXTextureImageManager::AddUselessTexture(QdcArray<QXTextureImage*> arrImages) {
  QXMutexLock lock(m_Mutex);
  lock.lock();
  m_pImages->AddUseless(arrImages);
}

void QXTextureImageManager::Clear() {
  QXMutexLock lock(m_Mutex);
  lock.lock();
  m_pImages->Clear([](QXTextureImage const&) {});
  m_pBigTextures->Clear();
  m_setStarted.reset();
}

void QXTextureImageManager::SetTextureManager(QXTextureManager* pTextureManager) {
  // What was sent went elsewhere.
  if (m_pTextureManager != pTextureManager) m_setStarted.reset();
  m_pTextureManager = pTextureManager;
}

}  // namespace QXC
