#include <QxGraphics3D/frame/foundation/base3d/QXTextureData.h>

#include <cstring>
#include <new>
#include <utility>

#include <QxGraphics3D/frame/foundation/base3d/QXTextureInfo.h>
#include <QxGraphics3D/frame/foundation/base3d/detail/QXPixelBlock.h>
#include <QxGraphics3D/frame/foundation/base3d/detail/QXPixelKernels.h>
#include <QxGraphics3D/frame/foundation/base3d/detail/QXPixelSize.h>

namespace QXC {
namespace {

// The least that a block of unknown length must have. The layout of a file is not told by its size in pixels.
QXUInt64 LeastBlockLength(
    unsigned int nWidth, unsigned int nHeight, QX3DPixelFormat eFormat, unsigned int nCompression) {
  switch (nCompression) {
  case TEXTURE_COMPRESSION_NONE: return QXUInt64{nWidth} * nHeight * detail::StoredPixelSize(eFormat);
  case TEXTURE_COMPRESSION_RAW: return 0;
  default: return detail::BlockImageSize(nWidth, nHeight, detail::StoredBlockSize(eFormat));
  }
}

unsigned char* CopyBlock(unsigned char const* pPixels, QXUInt64 nLength) {
  auto* const pCopy = detail::NewPixelBlock(nLength);
  if (pCopy == nullptr) {
    throw std::bad_alloc();
  }
  std::memcpy(pCopy, pPixels, nLength);
  return pCopy;
}

}  // namespace

QXTextureData::QXTextureData() = default;

QXTextureData::QXTextureData(QXTextureInfo const& info)
    : m_nHeight(info.m_nHeight), m_nWidth(info.m_nWidth), m_eFormat(info.m_eFormat),
      m_nCompression(info.m_nCompression), m_nDataSize(info.m_nDataSize) {
  if (info.m_pPixels == nullptr) {
    return;
  }
  QXUInt64 const nLength =
      m_nDataSize != 0 ? m_nDataSize : LeastBlockLength(m_nWidth, m_nHeight, m_eFormat, m_nCompression);
  m_pPixels = CopyBlock(info.m_pPixels, nLength);
  SetBlockLength(nLength);
}

QXTextureData::QXTextureData(QXTextureData const& other) {
  CopyFields(other);
  if (other.m_pPixels == nullptr) {
    return;
  }
  QXUInt64 const nKnown = other.GetBlockLength();
  QXUInt64 const nLength = nKnown != 0 ? nKnown : LeastBlockLength(m_nWidth, m_nHeight, m_eFormat, m_nCompression);
  m_pPixels = CopyBlock(other.m_pPixels, nLength);
  SetBlockLength(nLength);
}

QXTextureData::QXTextureData(QXTextureData&& other) noexcept {
  CopyFields(other);
  TakeBlock(other);
}

QXTextureData& QXTextureData::operator=(QXTextureData const& other) {
  if (this != &other) {
    QXTextureData copy(other);
    *this = std::move(copy);
  }
  return *this;
}

QXTextureData& QXTextureData::operator=(QXTextureData&& other) noexcept {
  if (this != &other) {
    Release();
    CopyFields(other);
    TakeBlock(other);
  }
  return *this;
}

QXTextureData* QXTextureData::Clone() const {
  return new QXTextureData(*this);
}

QXTextureData::~QXTextureData() {
  Release();
}

void QXTextureData::Release() {
  delete[] m_pPixels;
  m_pPixels = nullptr;
  // A later block may get the same address.
  m_pMeasuredPixels = nullptr;
}

void QXTextureData::RGBToRGBA() {
  if (m_pPixels == nullptr || m_nCompression != TEXTURE_COMPRESSION_NONE) {
    return;
  }
  if (m_eFormat != PF_R8G8B8 && m_eFormat != PF_B8G8R8) {
    return;
  }
  QXUInt64 const nCount = QXUInt64{m_nWidth} * m_nHeight;
  QXUInt64 const nKnown = GetBlockLength();
  if (nKnown != 0 && nKnown / 3 < nCount) {
    return;
  }
  auto* const pWide = detail::NewPixelBlock(nCount * 4);
  if (pWide == nullptr) {
    throw std::bad_alloc();
  }
  detail::Widen3To4(m_pPixels, pWide, nCount, 255);
  Release();
  m_pPixels = pWide;
  m_eFormat = m_eFormat == PF_R8G8B8 ? PF_A8R8G8B8 : PF_R8G8B8A8;
  SetBlockLength(nCount * 4);
  if (m_nDataSize != 0) {
    m_nDataSize = static_cast<unsigned int>(nCount * 4);
  }
}

void QXTextureData::SetBlockLength(QXUInt64 nLength) {
  m_pMeasuredPixels = m_pPixels;
  m_nBlockLength = nLength;
}

QXUInt64 QXTextureData::GetBlockLength() const {
  if (m_pPixels == nullptr) {
    return 0;
  }
  bool const bTold = m_pPixels == m_pMeasuredPixels && m_nBlockLength != 0;
  return bTold ? m_nBlockLength : m_nDataSize;
}

void QXTextureData::CopyFields(QXTextureData const& other) {
  m_nHeight = other.m_nHeight;
  m_nWidth = other.m_nWidth;
  m_nDepth = other.m_nDepth;
  m_eFormat = other.m_eFormat;
  m_nCompression = other.m_nCompression;
  m_nDataSize = other.m_nDataSize;
}

void QXTextureData::TakeBlock(QXTextureData& other) {
  m_pPixels = std::exchange(other.m_pPixels, nullptr);
  m_pMeasuredPixels = std::exchange(other.m_pMeasuredPixels, nullptr);
  m_nBlockLength = other.m_nBlockLength;
}

}  // namespace QXC
