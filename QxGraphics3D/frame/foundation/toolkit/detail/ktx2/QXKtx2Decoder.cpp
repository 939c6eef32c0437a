#include <QxGraphics3D/frame/foundation/toolkit/detail/ktx2/QXKtx2Decoder.h>

#include <QxGraphics3D/frame/foundation/base3d/detail/QXPixelBlock.h>
#include <QxGraphics3D/frame/foundation/base3d/detail/QXPixelKernels.h>
#include <QxGraphics3D/frame/foundation/toolkit/detail/ktx2/QXBasisLz.h>
#include <QxGraphics3D/frame/foundation/toolkit/detail/ktx2/QXBlockBc.h>
#include <QxGraphics3D/frame/foundation/toolkit/detail/ktx2/QXUastc.h>
#include <QxGraphics3D/frame/foundation/toolkit/detail/ktx2/QXUnpack.h>

#include <algorithm>
#include <cstring>

namespace QXC::detail {

namespace {

/// Pixels of nBytes bytes each, in the order of their format, to four bytes. A swap of red and blue is left to do.
void WidenPixels(unsigned char const* pSource, unsigned int nBytes, std::size_t nCount, unsigned char* pRgba) {
  switch (nBytes) {
  case 4: std::memcpy(pRgba, pSource, nCount * 4); return;
  case 3: Widen3To4(pSource, pRgba, nCount, 255); return;
  default: break;
  }
  for (std::size_t i = 0; i < nCount; ++i) {
    unsigned char* const pPixel = pRgba + 4 * i;
    pPixel[0] = pSource[nBytes * i];
    pPixel[1] = nBytes == 2 ? pSource[nBytes * i + 1] : static_cast<unsigned char>(0);
    pPixel[2] = 0;
    pPixel[3] = 255;
  }
}

/// Calls decode(block, 64 bytes) for each block and copies what of it lies inside the picture.
template <class Decode>
void PaintBlocks(unsigned char const* pBlocks, std::size_t nBlockBytes, unsigned int nWidth, unsigned int nHeight,
    unsigned char* pRgba, Decode decode) {
  std::size_t const nPitch = std::size_t{nWidth} * 4;
  for (std::size_t nTop = 0; nTop < nHeight; nTop += 4) {
    std::size_t const nRows = std::min<std::size_t>(4, nHeight - nTop);
    for (std::size_t nLeft = 0; nLeft < nWidth; nLeft += 4, pBlocks += nBlockBytes) {
      unsigned char block[64];
      decode(pBlocks, block);
      std::size_t const nBytes = std::min<std::size_t>(4, nWidth - nLeft) * 4;
      for (std::size_t nRow = 0; nRow < nRows; ++nRow)
        std::memcpy(pRgba + (nTop + nRow) * nPitch + nLeft * 4, block + nRow * 16, nBytes);
    }
  }
}

/// Puts the channels where the descriptor says that they belong.
void PlaceColors(QXKtx2Colors eColors, unsigned char* pRgba, std::size_t nCount) {
  switch (eColors) {
  case QXKtx2Colors::AsDecoded: return;
  case QXKtx2Colors::Opaque: FillAlpha(pRgba, nCount, 255); return;
  default: break;
  }
  for (std::size_t i = 0; i < nCount; ++i) {
    unsigned char* const pPixel = pRgba + 4 * i;
    if (eColors == QXKtx2Colors::Red) pPixel[1] = 0;
    if (eColors == QXKtx2Colors::RedThenGreen) pPixel[1] = pPixel[3];
    pPixel[2] = 0;
    pPixel[3] = 255;
  }
}

/// Decodes one file, level by level.
class QXLevelDecoder {
public:
  explicit QXLevelDecoder(QXKtx2File const& file) : m_File(file) {}

  /// False without memory, or if the codebooks are damaged.
  bool Prepare() {
    if (m_File.GetEncoding() == QXKtx2Encoding::Etc1s) {
      QXKtx2Range const data = m_File.GetGlobalData();
      auto const nImages = static_cast<unsigned int>(m_File.GetImagesPerLevel() * m_File.GetLevelCount());
      return m_BasisLz.Init(data.m_pBytes, data.m_nSize, nImages);
    }
    if (m_File.GetScheme() == QXKtx2Scheme::None || IsStoredAsHandedOut()) return true;
    m_pStored.reset(NewPixelBlock(m_File.GetStoredSize(0)));
    return m_pStored != nullptr;
  }

  bool Decode(unsigned int nLevel, unsigned char* pTarget) {
    std::size_t const nCount = std::size_t{m_File.GetWidth(nLevel)} * m_File.GetHeight(nLevel);
    if (m_File.GetEncoding() == QXKtx2Encoding::Etc1s) return DecodeEtc1s(nLevel, nCount, pTarget);
    QXKtx2Range const level = m_File.GetLevel(nLevel);
    std::uint64_t const nSize = m_File.GetStoredSize(nLevel);
    unsigned char const* pStored = level.m_pBytes;
    if (m_File.GetScheme() != QXKtx2Scheme::None) {
      unsigned char* const pUnpacked = IsStoredAsHandedOut() ? pTarget : m_pStored.get();
      if (!Unpack(m_File.GetScheme(), level, pUnpacked, nSize, m_File.GetImagesPerLevel() == 1)) return false;
      pStored = pUnpacked;
    } else if (IsStoredAsHandedOut()) {
      std::memcpy(pTarget, pStored, nSize);
    }
    return IsStoredAsHandedOut() ? FinishInPlace(nCount, pTarget) : DecodeStored(nLevel, nCount, pStored, pTarget);
  }

private:
  /// Whether the stored bytes have their place in the result, so that nothing lies between them and it.
  bool IsStoredAsHandedOut() const {
    QXKtx2Encoding const eEncoding = m_File.GetEncoding();
    return eEncoding == QXKtx2Encoding::Bc7 || eEncoding == QXKtx2Encoding::R8G8B8A8 ||
           eEncoding == QXKtx2Encoding::B8G8R8A8;
  }

  bool FinishInPlace(std::size_t nCount, unsigned char* pTarget) const {
    if (m_File.GetEncoding() == QXKtx2Encoding::B8G8R8A8) SwapRedBlue4(pTarget, nCount);
    return true;
  }

  bool DecodeEtc1s(unsigned int nLevel, std::size_t nCount, unsigned char* pTarget) const {
    QXKtx2Range const level = m_File.GetLevel(nLevel);
    auto const nImage = static_cast<unsigned int>(nLevel * m_File.GetImagesPerLevel());
    // A second slice is what the descriptor says it is. One that it promises must be there.
    QXKtx2Colors eColors = m_File.GetColors();
    bool const bSecond = m_BasisLz.HasAlphaSlice(nImage);
    if (!bSecond && (eColors == QXKtx2Colors::AsDecoded || eColors == QXKtx2Colors::RedThenGreen)) return false;
    if (!bSecond && eColors == QXKtx2Colors::Opaque) eColors = QXKtx2Colors::AsDecoded;
    if (!m_BasisLz.DecodeImage(
            nImage, level.m_pBytes, level.m_nSize, m_File.GetWidth(nLevel), m_File.GetHeight(nLevel), pTarget))
      return false;
    PlaceColors(eColors, pTarget, nCount);
    return true;
  }

  bool DecodeStored(
      unsigned int nLevel, std::size_t nCount, unsigned char const* pStored, unsigned char* pTarget) const {
    unsigned int const nWidth = m_File.GetWidth(nLevel);
    unsigned int const nHeight = m_File.GetHeight(nLevel);
    QXKtx2Encoding const eEncoding = m_File.GetEncoding();
    switch (eEncoding) {
    case QXKtx2Encoding::R8: WidenPixels(pStored, 1, nCount, pTarget); return true;
    case QXKtx2Encoding::R8G8: WidenPixels(pStored, 2, nCount, pTarget); return true;
    case QXKtx2Encoding::R8G8B8: WidenPixels(pStored, 3, nCount, pTarget); return true;
    case QXKtx2Encoding::B8G8R8:
      WidenPixels(pStored, 3, nCount, pTarget);
      SwapRedBlue4(pTarget, nCount);
      return true;
    case QXKtx2Encoding::Bc1Rgb:
    case QXKtx2Encoding::Bc1Rgba: {
      QXBc1Alpha const eAlpha = eEncoding == QXKtx2Encoding::Bc1Rgba ? QXBc1Alpha::Punched : QXBc1Alpha::Opaque;
      PaintBlocks(pStored, 8, nWidth, nHeight, pTarget,
          [eAlpha](unsigned char const* pBlock, unsigned char* pRgba) { DecodeBc1Block(pBlock, eAlpha, pRgba); });
      return true;
    }
    case QXKtx2Encoding::Bc3: PaintBlocks(pStored, 16, nWidth, nHeight, pTarget, &DecodeBc3Block); return true;
    default: break;
    }
    if (!DecodeUastcImage(pStored, m_File.GetStoredSize(nLevel), nWidth, nHeight, pTarget)) return false;
    PlaceColors(m_File.GetColors(), pTarget, nCount);
    return true;
  }

  QXKtx2File const& m_File;
  QXBasisLz m_BasisLz;
  std::unique_ptr<unsigned char[]> m_pStored;
};

}  // namespace

std::unique_ptr<unsigned char[]> DecodeKtx2Levels(
    QXKtx2File const& file, unsigned int nLevels, QXKtx2Limits const& limits) {
  std::uint64_t const nSize = file.GetDecodedSize(nLevels);
  if (nSize > limits.m_nMaxBytes) return nullptr;
  QXLevelDecoder decoder(file);
  if (!decoder.Prepare()) return nullptr;
  std::unique_ptr<unsigned char[]> pBlock(NewPixelBlock(nSize));
  if (pBlock == nullptr) return nullptr;
  for (unsigned int nLevel = 0; nLevel < nLevels; ++nLevel) {
    unsigned char* const pTarget = pBlock.get() + file.GetDecodedSize(nLevel);
    if (!decoder.Decode(nLevel, pTarget)) return nullptr;
  }
  return pBlock;
}

}  // namespace QXC::detail
