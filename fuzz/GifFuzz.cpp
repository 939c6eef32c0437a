/// @file
/// Animated GIF files: any bytes give frames of one size within the limits, or nothing; turned they are the same frames
/// upside down, and the first is what the reader of still pictures shows.
#include <QxGraphics3D/frame/foundation/base3d/QXImageData.h>
#include <QxGraphics3D/frame/foundation/base3d/detail/QXImageHolder.h>
#include <QxGraphics3D/frame/foundation/fileparser/detail/QXGifReader.h>
#include <QxGraphics3D/frame/foundation/geometry/QXGeoPicture.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace {

using namespace QXC;

// Small, so that inputs are read thousands of times a second.
constexpr detail::QXImageLimits LIMITS{1024, 1u << 18};

void Require(bool bHolds) {
  if (!bHolds) std::abort();
}

class Pictures {
public:
  Pictures(std::uint8_t const* pBytes, std::size_t nSize, unsigned char bFlip) {
    unsigned char const bRead = detail::ReadGifPictures(pBytes, nSize, m_arrPictures, bFlip, LIMITS);
    Require((bRead == 1) == (m_arrPictures.GetSize() > 0));
  }
  Pictures(Pictures const&) = delete;
  Pictures& operator=(Pictures const&) = delete;
  ~Pictures() {
    for (QXGeoPicture* pPicture : m_arrPictures) delete pPicture;
  }

  QXUInt64 GetCount() const { return m_arrPictures.GetSize(); }
  QXImageData const& At(QXUInt64 i) const { return *m_arrPictures[i]->GetImage(); }
  unsigned char const* RowAt(QXUInt64 i, QXUInt64 nRow) const {
    return static_cast<unsigned char const*>(At(i).m_pPixels) + nRow * At(i).m_nPitch;
  }

  void RequireSound() const {
    if (GetCount() == 0) return;
    unsigned int const nWidth = At(0).m_nWidth, nHeight = At(0).m_nHeight;
    Require(LIMITS.Allow(nWidth, nHeight, 4));
    Require(GetCount() <= LIMITS.m_nMaxBytes / (QXUInt64{nWidth} * nHeight * 4));
    for (QXUInt64 i = 0; i < GetCount(); ++i) {
      QXImageData const& image = At(i);
      Require(image.m_nWidth == nWidth && image.m_nHeight == nHeight && image.m_nBitDepth == 32);
      Require(image.m_nPitch == nWidth * 4 && image.m_pPixels != nullptr && image.m_nCompression == 0);
      QdcPoint2D const center = m_arrPictures[i]->GetCenterPoint();
      Require(center.x * 2 == nWidth && center.y * 2 == nHeight);
      double const dDelay = m_arrPictures[i]->GetDelayTime();
      Require(dDelay >= 0 && dDelay <= 65535);
    }
  }

private:
  QdcArray<QXGeoPicture*> m_arrPictures;
};

// Pixels that nobody wrote would differ.
void RequireTurned(Pictures const& first, Pictures const& second) {
  Require(first.GetCount() == second.GetCount());
  for (QXUInt64 i = 0; i < first.GetCount(); ++i) {
    QXUInt64 const nHeight = first.At(i).m_nHeight;
    Require(second.At(i).m_nHeight == nHeight);
    for (QXUInt64 nRow = 0; nRow < nHeight; ++nRow)
      Require(std::memcmp(first.RowAt(i, nRow), second.RowAt(i, nHeight - 1 - nRow), first.At(i).m_nPitch) == 0);
  }
}

void RequireLikeStill(Pictures const& pictures, std::uint8_t const* pBytes, std::size_t nSize) {
  if (pictures.GetCount() == 0) return;
  detail::QXImageHolder const pStill(detail::ReadGif(pBytes, nSize, LIMITS));
  QXImageData const& first = pictures.At(0);
  Require(pStill && pStill->m_nWidth == first.m_nWidth && pStill->m_nHeight == first.m_nHeight);
  std::size_t const nStep = pStill->m_nBitDepth / 8u;
  auto const* pPixel = static_cast<unsigned char const*>(pStill->m_pPixels);
  auto const* pFirst = static_cast<unsigned char const*>(first.m_pPixels);
  for (QXUInt64 i = QXUInt64{first.m_nWidth} * first.m_nHeight; i > 0; --i, pPixel += nStep, pFirst += 4)
    Require(std::memcmp(pPixel, pFirst, nStep) == 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* pBytes, std::size_t nSize) {
  Pictures const pictures(pBytes, nSize, 0);
  pictures.RequireSound();
  RequireTurned(pictures, Pictures(pBytes, nSize, 1));
  RequireLikeStill(pictures, pBytes, nSize);
  return 0;
}
