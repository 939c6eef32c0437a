/// @file
/// Image readers: any bytes give a picture within the limits, or nothing, and the same at every run.
#include <QxGraphics3D/frame/foundation/base3d/QXImageData.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileType.h>
#include <QxGraphics3D/frame/foundation/fileparser/detail/QXImageReader.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

#include <zlib.h>

namespace {

using namespace QXC;

// Small, so that inputs are read thousands of times a second.
constexpr detail::QXImageLimits LIMITS{4096, 1u << 20};

struct ImageDeleter {
  void operator()(QXImageData* pImage) const {
    delete[] static_cast<unsigned char*>(pImage->m_pPixels);
    delete pImage;
  }
};
using Image = std::unique_ptr<QXImageData, ImageDeleter>;

void Require(bool bHolds) {
  if (!bHolds) std::abort();
}

std::uint32_t Big(std::uint8_t const* pBytes) {
  return std::uint32_t{pBytes[0]} << 24 | std::uint32_t{pBytes[1]} << 16 | std::uint32_t{pBytes[2]} << 8 | pBytes[3];
}

// Makes the checksums of a PNG right: by chance none of a changed chunk ever is, and all tests would end there.
void MendChecksums(std::vector<std::uint8_t>& arrBytes) {
  constexpr std::size_t MAGIC = 8, AROUND = 12;
  std::size_t nPlace = MAGIC;
  while (nPlace + AROUND <= arrBytes.size()) {
    std::size_t const nLength = Big(arrBytes.data() + nPlace);
    if (nLength > arrBytes.size() - nPlace - AROUND) return;
    std::uint8_t* pEnd = arrBytes.data() + nPlace + 8 + nLength;
    uLong const nSum = crc32(0, arrBytes.data() + nPlace + 4, static_cast<uInt>(nLength + 4));
    for (int i = 0; i < 4; ++i) pEnd[i] = static_cast<std::uint8_t>(nSum >> (24 - 8 * i));
    nPlace += nLength + AROUND;
  }
}

Image Read(int nType, std::vector<std::uint8_t> const& arrBytes) {
  Image pImage(detail::ReadImage(nType, arrBytes.data(), arrBytes.size(), LIMITS));
  if (!pImage) return pImage;
  Require(pImage->m_nBitDepth == 8 || pImage->m_nBitDepth == 24 || pImage->m_nBitDepth == 32);
  Require(LIMITS.Allow(pImage->m_nWidth, pImage->m_nHeight, pImage->m_nBitDepth / 8u));
  Require(pImage->m_nPitch == pImage->m_nWidth * (pImage->m_nBitDepth / 8u) && pImage->m_pPixels != nullptr);
  return pImage;
}

// Pixels that nobody wrote would differ.
void RequireTwiceTheSame(int nType, std::vector<std::uint8_t> const& arrBytes) {
  Image const pFirst = Read(nType, arrBytes);
  if (!pFirst) return;
  std::size_t const nBytes = std::size_t{pFirst->m_nPitch} * pFirst->m_nHeight;
  Image const pSecond = Read(nType, arrBytes);
  Require(pSecond && pSecond->m_nWidth == pFirst->m_nWidth && pSecond->m_nHeight == pFirst->m_nHeight);
  Require(std::memcmp(pFirst->m_pPixels, pSecond->m_pPixels, nBytes) == 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* pBytes, std::size_t nSize) {
  std::vector<std::uint8_t> arrBytes(pBytes, pBytes + nSize);
  if (nSize > 4 && std::memcmp(pBytes, "\x89PNG", 4) == 0) MendChecksums(arrBytes);
  for (int nType = QXFileType::EM_IMAGE_BMP; nType <= QXFileType::EM_IMAGE_PSD; ++nType) {
    RequireTwiceTheSame(nType, arrBytes);
  }
  return 0;
}
