#include <plugins/ogre/QXOgreTexture.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <mutex>
#include <stdexcept>
#include <vector>

#include <OgrePixelFormat.h>

#include <QxGraphics3D/frame/foundation/base3d/QXImageData.h>
#include <QxGraphics3D/texture/QXPixelFormatLayout.h>

#include <plugins/ogre/QXOgreTextureManager.h>
#include <plugins/ogre/QXOgreTexturePixels.h>

namespace QXC {

namespace {

/// OpenGL's own first value: more levels than any texture has.
constexpr int ALL_LEVELS = 1000;

/// Whether the block is a whole file. An image record of one says so by its depth, which no texture keeps: it has no
/// edges and yet a length.
bool IsRawFile(QXTextureData const& data) {
  return data.m_nCompression == TEXTURE_COMPRESSION_RAW ||
         (data.m_nCompression == TEXTURE_COMPRESSION_NONE && data.m_nWidth == 0 && data.m_nHeight == 0 &&
             data.GetBlockLength() > 0);
}

}  // namespace

QXOgreTexture::QXOgreTexture(QXOgreTextureManager& manager)
    : QXOgreTextureSource(manager, *this), m_nBaseLevel(0), m_nMaxLevel(ALL_LEVELS), m_bReverse(false) {}

QXOgreTexture::~QXOgreTexture() = default;

void QXOgreTexture::RendererOperation1(int nMinFilter, int nMagFilter, int nMipFilter) {
  m_Filters = {nMinFilter, nMagFilter, nMipFilter};
}

unsigned char QXOgreTexture::IsInitialGPU() const {
  return GetManager() && GetManager()->GetDevice();
}

void QXOgreTexture::TakeImage(std::unique_ptr<QXOgreImage> pImage, std::unique_ptr<QXOgreFrames> pFrames) {
  m_pImage = std::move(pImage);
  m_pFrames = std::move(pFrames);
  m_nBindID = GetImage() ? GetImage()->GetID() : 0;
  if (m_nBaseLevel != 0 || m_nMaxLevel != ALL_LEVELS) ApplyLevels();
}

unsigned char QXOgreTexture::Upload() {
  return GetManager()->Try([this](QXOgreDevice& device) {
    std::scoped_lock const lock(m_Mutex);
    if (IsRawFile(m_TextureData)) {
      if (!m_TextureData.m_pPixels) throw std::runtime_error("a texture without an image cannot be loaded");
      auto const nSize = static_cast<std::size_t>(m_TextureData.GetBlockLength());
      if (nSize == 0) throw std::runtime_error("the bytes of an animated texture have no length");
      return TakeImage(
          nullptr, std::make_unique<QXOgreFrames>(device, m_TextureData.m_pPixels, nSize, m_bMipmapEnabled != 0));
    }
    TakeImage(std::make_unique<QXOgreImage>(device, DescribePixels(*this), m_bMipmapEnabled != 0), nullptr);
  });
}

void QXOgreTexture::LoadTexture(unsigned char bOnlyIfNeeded, unsigned char bReleaseImage) {
  if (!GetManager() || (bOnlyIfNeeded && GetImage() && !m_bNeedLoadTexture)) return;
  // What fails once would fail with every frame.
  m_bNeedLoadTexture = 0;
  if (Upload() && bReleaseImage) ReleaseImgData();
}

void QXOgreTexture::LoadLayers(std::function<QXOgrePixels(unsigned int)> const& describe, unsigned int nCount) {
  if (!GetManager()) return;
  GetManager()->Try([&](QXOgreDevice& device) {
    std::vector<QXOgrePixels> arrLayers;
    for (unsigned int i = 0; i < nCount; ++i) arrLayers.push_back(describe(i));
    if (arrLayers.empty()) throw std::runtime_error("a texture array has no layers");
    TakeImage(std::make_unique<QXOgreImage>(device, arrLayers), nullptr);
  });
}

void QXOgreTexture::LoadTextureArray(QXTextureData* pLayers, unsigned int nFirst, unsigned int nCount) {
  if (!pLayers) return;
  LoadLayers([&](unsigned int i) { return DescribePixels(pLayers[std::size_t{nFirst} + i]); }, nCount);
}

void QXOgreTexture::LoadTextureArray(unsigned char bReleaseImage) {
  auto const describe = [this](unsigned int i) {
    if (!m_arrLodLevels[i]) throw std::runtime_error("a texture array lacks a layer");
    return DescribePixels(*m_arrLodLevels[i]);
  };
  LoadLayers(describe, static_cast<unsigned int>(m_arrLodLevels.GetSize()));
  if (bReleaseImage && GetImage()) ReleaseImgData();
}

void QXOgreTexture::LoadSubTexture(int nX, int nY, int nWidth, int nHeight, int nSourceWidth, int nSourceHeight,
    void const* pPixels, unsigned int nFlag) {
  if (!GetManager()) return;
  // What is newer in memory would undo the part with the next frame.
  if (!GetImage() || m_bNeedLoadTexture) LoadTexture(1, 0);
  if (!GetImage()) return;
  GetManager()->Try([&](QXOgreDevice&) {
    if (!pPixels) throw std::runtime_error("a part of a texture needs pixels");
    if (!m_pImage || m_pImage->IsStack()) throw std::runtime_error("animations and stacks of layers take no parts");
    QXOgrePart const part =
        CutPart(*m_pImage, {nX, nY, std::min(nWidth, nSourceWidth), std::min(nHeight, nSourceHeight)}, nSourceWidth);
    if (part.m_nColumns == 0 || part.m_nRows == 0) return;
    std::vector<unsigned char> arrTight;
    auto const* const pFirst = static_cast<unsigned char const*>(pPixels) + part.m_nFirst;
    unsigned char const* pPart = pFirst;
    std::size_t const nRow = part.m_nColumns * part.m_nCellBytes;
    if (nRow != part.m_nStep && part.m_nRows > 1) {
      arrTight.resize(nRow * part.m_nRows);
      for (std::size_t i = 0; i < part.m_nRows; ++i)
        std::memcpy(arrTight.data() + i * nRow, pFirst + i * part.m_nStep, nRow);
      pPart = arrTight.data();
    }
    m_pImage->Write(part, pPart);
    // Nobody looks through all pixels for each tile: what was opaque may have a hole now.
    if (Ogre::PixelUtil::hasAlpha(m_pImage->GetFormat())) m_pImage->SetTransparent();
    if (nFlag != 0) CopyIntoBlock(part, pPart);
  });
}

void QXOgreTexture::CopyIntoBlock(QXOgrePart const& part, unsigned char const* pCells) {
  QXTextureData const& data = m_TextureData;
  bool const bBlocks = part.m_nCellEdge > 1;
  std::size_t const nColumns = (data.m_nWidth + part.m_nCellEdge - 1) / part.m_nCellEdge;
  std::size_t const nRows = (data.m_nHeight + part.m_nCellEdge - 1) / part.m_nCellEdge;
  std::uint64_t const nKnown = data.GetBlockLength();
  bool const bSame = data.m_nWidth == m_pImage->GetWidth() && data.m_nHeight == m_pImage->GetHeight();
  bool const bPacked = bBlocks ? data.m_nCompression == TEXTURE_COMPRESSION_BLOCK || m_bKtx2Flag != 0
                               : data.m_nCompression == TEXTURE_COMPRESSION_NONE &&
                                     QXPixelFormatLayout::Of(data.m_eFormat).m_nPixelBytes == part.m_nCellBytes;
  bool const bFits = nKnown == 0 || nKnown >= std::uint64_t{nColumns} * nRows * part.m_nCellBytes;
  if (!data.m_pPixels || !bSame || !bPacked || !bFits) return;
  for (std::size_t i = 0; i < part.m_nRows; ++i)
    std::memcpy(data.m_pPixels + ((part.m_nTop + i) * nColumns + part.m_nLeft) * part.m_nCellBytes,
        pCells + i * part.m_nColumns * part.m_nCellBytes, part.m_nColumns * part.m_nCellBytes);
}

void QXOgreTexture::ApplyLevels() {
  if (m_pImage && GetManager())
    GetManager()->Try([this](QXOgreDevice&) { m_pImage->SetLevels(m_nBaseLevel, m_nMaxLevel); });
}

void QXOgreTexture::SetMipmapBaseLevel(int nLevel) {
  m_nBaseLevel = nLevel;
  ApplyLevels();
}

void QXOgreTexture::SetMipmapMaxLevel(int nLevel) {
  m_nMaxLevel = nLevel;
  ApplyLevels();
}

void QXOgreTexture::GetTimeTextureFrame(std::map<unsigned int, unsigned int>& mapTimes) const {
  if (!m_pFrames) return;
  unsigned int nFrame = 0;
  for (unsigned int const nTime : m_pFrames->GetTimes()) mapTimes[nFrame++] = nTime;
}

QXImageData* QXOgreTexture::BlitToMemory() {
  QXOgreImage const* const pImage = GetImage();
  if (!pImage || pImage->IsStack() || !GetManager()) return nullptr;
  auto pResult = std::make_unique<QXImageData>();
  pResult->m_nWidth = pImage->GetWidth();
  pResult->m_nHeight = pImage->GetHeight();
  pResult->m_nPitch = pResult->m_nWidth * 4;
  pResult->m_nBitDepth = 32;
  auto pPixels = std::make_unique<unsigned char[]>(std::size_t{pResult->m_nPitch} * pResult->m_nHeight);
  if (!GetManager()->Try([&](QXOgreDevice&) { pImage->Read(pPixels.get()); })) return nullptr;
  pResult->m_pPixels = pPixels.release();
  return pResult.release();
}

int QXOgreTexture::GetTextureID() const {
  return GetImage() ? static_cast<int>(GetImage()->GetID()) : -1;
}

void QXOgreTexture::Prepare() {
  if (m_bNeedLoadTexture) LoadTexture(1, 0);
  if (!m_pFrames) return;
  m_pFrames->Advance();
  m_nBindID = m_pFrames->GetImage()->GetID();
}

void QXOgreTexture::ShowForeign(QXOgreDevice& device, Ogre::TexturePtr const& pForeign) {
  TakeImage(std::make_unique<QXOgreImage>(device, pForeign), nullptr);
}

void QXOgreTexture::LeaveDevice() {
  TakeImage(nullptr, nullptr);
}

}  // namespace QXC
