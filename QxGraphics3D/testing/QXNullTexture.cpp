#include <QxGraphics3D/testing/QXNullTexture.h>

#include <QxGraphics3D/frame/foundation/base3d/QXImageData.h>
#include <QxGraphics3D/frame/foundation/base3d/detail/QXPixelSize.h>
#include <QxGraphics3D/texture/QXTextureMemory.h>

#include <algorithm>
#include <cstddef>
#include <utility>

namespace QXC {
namespace {

/// Bytes that size, format and compression ask for; 0 if no block can have so many.
QXUInt64 GetWantedSize(QXTextureData const& data) {
  if (data.m_nWidth == 0 || data.m_nHeight == 0) return 0;
  if (data.m_nCompression != TEXTURE_COMPRESSION_NONE) {
    return detail::BlockImageSize(data.m_nWidth, data.m_nHeight, detail::StoredBlockSize(data.m_eFormat));
  }
  QXUInt64 const nRow = QXUInt64{data.m_nWidth} * detail::StoredPixelSize(data.m_eFormat);
  return data.m_nHeight <= ~QXUInt64{0} / nRow ? nRow * data.m_nHeight : 0;
}

/// Bytes that LoadTexture copies; 0 if the block cannot be what the record says.
QXUInt64 GetLoadSize(QXTextureData const& data) {
  if (!data.m_pPixels) return 0;
  QXUInt64 const nKnown = data.GetBlockLength();
  // The bytes of a file say nothing of the size of its image.
  if (data.m_nCompression == TEXTURE_COMPRESSION_RAW) return nKnown;
  QXUInt64 const nWanted = GetWantedSize(data);
  // A block may hold further levels behind the first.
  return nKnown == 0 || nWanted == 0 ? nWanted : nKnown >= nWanted ? nKnown : 0;
}

/// A pixel of any 4-byte or 2-byte format as blue, green, red, alpha.
void WriteBgra(unsigned char const* pFrom, QX3DPixelFormat eFormat, unsigned char* pTo) {
  constexpr int kStraight[4] = {0, 1, 2, 3};
  constexpr int kFromRgba[4] = {2, 1, 0, 3};
  constexpr int kFromArgb[4] = {3, 2, 1, 0};
  constexpr int kFromGrey[4] = {0, 0, 0, 1};
  int const* const pOrder = eFormat == PF_A8B8G8R8   ? kFromRgba
                            : eFormat == PF_B8G8R8A8 ? kFromArgb
                            : eFormat == PF_BYTE_LA  ? kFromGrey
                                                     : kStraight;
  for (int i = 0; i < 4; ++i) pTo[i] = pFrom[pOrder[i]];
}

}  // namespace

QXNullTexture::QXNullTexture(std::shared_ptr<QXCallLog> pLog, QdcUnicodeString const& strName)
    : QXTexture(strName), QXNullObject(std::move(pLog), "texture " + QXCallLog::Quote(strName)) {}

QXNullTexture::~QXNullTexture() {
  Record("destroyed");
  LeaveDevice();
}

void QXNullTexture::SetName(QdcUnicodeString const& strName) {
  SetTexFilePath(strName);
  m_strLabel = "texture " + QXCallLog::Quote(strName);
}

// --- The texture of a render target ---

void QXNullTexture::SetRefresh(std::function<void()> refresh) {
  m_Refresh = std::move(refresh);
  m_eDeviceFormat = PF_A8R8G8B8;
  SetBindID();
}

void QXNullTexture::SetDevicePicture(
    unsigned int nWidth, unsigned int nHeight, std::vector<unsigned char> const& arrPixels) {
  QXTextureMemory::GetSingleton().DelMemory(static_cast<int>(m_arrDevicePixels.size()));
  m_arrDevicePixels = arrPixels;
  QXTextureMemory::GetSingleton().AddMemory(static_cast<int>(m_arrDevicePixels.size()));
  m_nDeviceWidth = nWidth;
  m_nDeviceHeight = nHeight;
}

void QXNullTexture::Refresh() const {
  if (m_Refresh) m_Refresh();
}

std::vector<unsigned char> const& QXNullTexture::GetDevicePixels() const {
  Refresh();
  return m_arrDevicePixels;
}

unsigned int QXNullTexture::GetDeviceWidth() const {
  Refresh();
  return m_nDeviceWidth;
}

unsigned int QXNullTexture::GetDeviceHeight() const {
  Refresh();
  return m_nDeviceHeight;
}

// --- The device ---

void QXNullTexture::SetBindID() {
  static unsigned int ms_nLastBindID = 0;
  if (m_nBindID == 0) m_nBindID = ++ms_nLastBindID;
}

void QXNullTexture::LeaveDevice() {
  QXTextureMemory::GetSingleton().DelMemory(static_cast<int>(m_arrDevicePixels.size()));
  m_arrDevicePixels = std::vector<unsigned char>();
  m_nDeviceWidth = 0;
  m_nDeviceHeight = 0;
  m_eDeviceFormat = PF_UNKNOWN;
  m_nDeviceCompression = 0;
  m_nBindID = 0;
}

void QXNullTexture::RendererOperation1(int nMinFilter, int nMagFilter, int nMipFilter) {
  Record("RendererOperation1", nMinFilter, nMagFilter, nMipFilter);
}

void QXNullTexture::RendererOperation2() {
  Record("RendererOperation2");
  if (!m_Refresh) LeaveDevice();
}

void QXNullTexture::LoadTexture(unsigned char bOnlyIfNeeded, unsigned char bReleaseImage) {
  Record("LoadTexture", bOnlyIfNeeded, bReleaseImage);
  if (m_Refresh || (IsLoaded() && bOnlyIfNeeded && !m_bNeedLoadTexture)) return;
  QXUInt64 const nBytes = GetLoadSize(m_TextureData);
  if (nBytes == 0) return;
  unsigned int const nBindID = m_nBindID;
  std::vector<unsigned char> arrPixels(m_TextureData.m_pPixels, m_TextureData.m_pPixels + nBytes);
  LeaveDevice();
  m_arrDevicePixels.swap(arrPixels);
  QXTextureMemory::GetSingleton().AddMemory(static_cast<int>(nBytes));
  m_nDeviceWidth = m_TextureData.m_nWidth;
  m_nDeviceHeight = m_TextureData.m_nHeight;
  m_eDeviceFormat = m_TextureData.m_eFormat;
  m_nDeviceCompression = m_TextureData.m_nCompression;
  m_nBindID = nBindID;
  SetBindID();
  m_bNeedLoadTexture = 0;
  if (bReleaseImage) ReleaseImgData();
}

void QXNullTexture::LoadSubTexture(int nX, int nY, int nWidth, int nHeight, int nSourceWidth, int nSourceHeight,
    void const* pPixels, unsigned int nFlag) {
  Record("LoadSubTexture", nX, nY, nWidth, nHeight, nSourceWidth, nSourceHeight, QXLoggedMemory{pPixels}, nFlag);
  if (m_Refresh || !IsLoaded() || m_nDeviceCompression == TEXTURE_COMPRESSION_RAW || !pPixels) return;
  // Everything is counted in pixels or in blocks of 4 by 4 of them.
  bool const bBlocks = m_nDeviceCompression != TEXTURE_COMPRESSION_NONE;
  int const nEdge = bBlocks ? 4 : 1;
  if (nX % nEdge != 0 || nY % nEdge != 0) return;
  auto const units = [nEdge](long long nPixels) { return (nPixels + nEdge - 1) / nEdge; };
  // In 64 bits: the far edges of what a host asks for may leave the range of int.
  long long const nLeft = std::max(nX, 0);
  long long const nTop = std::max(nY, 0);
  long long const nRight = std::min<long long>({m_nDeviceWidth, 0LL + nX + nWidth, 0LL + nX + nSourceWidth});
  long long const nBottom = std::min<long long>({m_nDeviceHeight, 0LL + nY + nHeight, 0LL + nY + nSourceHeight});
  if (nLeft >= nRight) return;
  std::size_t const nUnit =
      bBlocks ? detail::StoredBlockSize(m_eDeviceFormat) : detail::StoredPixelSize(m_eDeviceFormat);
  std::size_t const nBytes = static_cast<std::size_t>(units(nRight - nLeft)) * nUnit;
  auto const* const pSource = static_cast<unsigned char const*>(pPixels);
  for (long long nRow = nTop; nRow < nBottom; nRow += nEdge) {
    long long const nFromUnit = (nRow - nY) / nEdge * units(nSourceWidth) + (nLeft - nX) / nEdge;
    long long const nToUnit = nRow / nEdge * units(m_nDeviceWidth) + nLeft / nEdge;
    std::size_t const nFrom = static_cast<std::size_t>(nFromUnit) * nUnit;
    std::size_t const nTo = static_cast<std::size_t>(nToUnit) * nUnit;
    std::copy_n(pSource + nFrom, nBytes, m_arrDevicePixels.data() + nTo);
  }
}

void QXNullTexture::SetTextureRepeatMode(unsigned char bRepeatMode) {
  Record("SetTextureRepeatMode", bRepeatMode);
  QXTexture::SetTextureRepeatMode(bRepeatMode);
}

void QXNullTexture::SetTextureMipMap(unsigned char bMipmapEnabled) {
  Record("SetTextureMipMap", bMipmapEnabled);
  QXTexture::SetTextureMipMap(bMipmapEnabled);
}

void QXNullTexture::SetMipmapBaseLevel(int nLevel) {
  RecordAndKeep("SetMipmapBaseLevel", nLevel, m_nBaseLevel);
}

void QXNullTexture::SetMipmapMaxLevel(int nLevel) {
  RecordAndKeep("SetMipmapMaxLevel", nLevel, m_nMaxLevel);
}

QXImageData* QXNullTexture::BlitToMemory() {
  Record("BlitToMemory");
  Refresh();
  if (!IsLoaded() || m_nDeviceCompression != TEXTURE_COMPRESSION_NONE) return nullptr;
  std::size_t const nPixel = detail::StoredPixelSize(m_eDeviceFormat);
  std::size_t const nOut = nPixel == 2 ? 4 : nPixel;
  std::size_t const nCount = std::size_t{m_nDeviceWidth} * m_nDeviceHeight;
  auto pImage = std::make_unique<QXImageData>();
  auto pPixels = std::make_unique<unsigned char[]>(nCount * nOut);
  if (nOut == 4) {
    for (std::size_t i = 0; i < nCount; ++i) {
      WriteBgra(m_arrDevicePixels.data() + i * nPixel, m_eDeviceFormat, pPixels.get() + i * 4);
    }
  } else {
    std::copy_n(m_arrDevicePixels.data(), nCount * nOut, pPixels.get());
  }
  pImage->m_nWidth = m_nDeviceWidth;
  pImage->m_nHeight = m_nDeviceHeight;
  pImage->m_nPitch = static_cast<unsigned int>(m_nDeviceWidth * nOut);
  pImage->m_nBitDepth = static_cast<unsigned char>(nOut * 8);
  pImage->m_pPixels = pPixels.release();
  return pImage.release();
}

int QXNullTexture::GetTextureID() const {
  return IsLoaded() ? static_cast<int>(m_nBindID) : -1;
}

}  // namespace QXC
