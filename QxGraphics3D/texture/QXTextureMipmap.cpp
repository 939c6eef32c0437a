#include <algorithm>
#include <utility>

#include <QxGraphics3D/frame/foundation/base3d/detail/QXPixelSize.h>
#include <QxGraphics3D/texture/QXTexture.h>

namespace QXC {
namespace {

QXInt64 Halve(QXInt64 nEdge) {
  return nEdge / 2 == 0 ? 1 : nEdge / 2;
}

// Edges in 64 bits: an edge from a record is unsigned, and a plain int would overflow in the block count. The sizes
// are added without sign and kept in 32 bits, so that absurd edges wrap around instead of being undefined.
QXUInt64 GetLevelSize(QXInt64 nWidth, QXInt64 nHeight, QX3DPixelFormat eFormat, bool bCompressed) {
  if (bCompressed) {
    auto const nBlocks = static_cast<QXUInt64>((nWidth - 1) / 4 + 1) * static_cast<QXUInt64>((nHeight - 1) / 4 + 1);
    return nBlocks * detail::MipmapBlockSize(eFormat);
  }
  return static_cast<QXUInt64>(nWidth) * detail::MipmapPixelSize(eFormat) * static_cast<QXUInt64>(nHeight);
}

void FillOffsets(
    QXInt64 nWidth, QXInt64 nHeight, QX3DPixelFormat eFormat, bool bCompressed, QdcArray<unsigned int>& arrOffsets) {
  arrOffsets.RemoveAll();
  arrOffsets.FreeExtra();
  QXUInt64 nOffset = 0;
  while (true) {
    arrOffsets.Add(static_cast<unsigned int>(nOffset));
    nOffset += GetLevelSize(nWidth, nHeight, eFormat, bCompressed);
    if (nWidth == 1 && nHeight == 1) {
      return;
    }
    nWidth = Halve(nWidth);
    nHeight = Halve(nHeight);
  }
}

}  // namespace

void QXTexture::BuildMipmapOffset(
    int nWidth, int nHeight, QX3DPixelFormat eFormat, int nCompressed, QdcArray<unsigned int>& arrOffsets) {
  FillOffsets(nWidth, nHeight, eFormat, nCompressed != 0, arrOffsets);
}

void QXTexture::BuildMipmapOffset() {
  FillOffsets(m_TextureData.m_nWidth, m_TextureData.m_nHeight, m_TextureData.m_eFormat, true, m_arrMipmapOffset);
}

void QXTexture::SetMipmapOffset(QdcArray<unsigned int> const& arrOffsets) {
  QXMutexLock lock(m_Mutex);
  lock.lock();
  // The copy first: the offsets may be the texture's own.
  QdcArray<unsigned int> arrNew;
  arrNew.SetSize(arrOffsets.GetSize());
  std::copy(arrOffsets.begin(), arrOffsets.end(), arrNew.begin());
  if (arrNew.GetSize() == 0) {
    arrNew.Add(0);
  }
  m_arrMipmapOffset = std::move(arrNew);
}

}  // namespace QXC
