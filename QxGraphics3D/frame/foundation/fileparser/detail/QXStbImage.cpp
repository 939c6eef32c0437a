#include <QxGraphics3D/frame/foundation/fileparser/detail/QXStbImage.h>

#include <QxGraphics3D/frame/foundation/base3d/detail/QXPixelKernels.h>
#include <QxGraphics3D/frame/foundation/fileparser/detail/QXByteSource.h>
#include <QxGraphics3D/frame/foundation/fileparser/detail/QXImageBlock.h>
#include <QxGraphics3D/frame/foundation/fileparser/detail/QXRedBlue.h>

#include <cstring>
#include <limits>
#include <memory>

// The one place where stb_image is compiled: private to this file, with nothing that opens files, and without its
// assertions, which would end the process on a broken file.
// The lint sees the declarations alone: the code is others'.
#if !defined(__clang_analyzer__)
#  define STB_IMAGE_IMPLEMENTATION
#  define STB_IMAGE_STATIC
#endif
#define STBI_ONLY_TGA
#define STBI_ONLY_HDR
#define STBI_NO_STDIO
#define STBI_NO_LINEAR
#define STBI_NO_FAILURE_STRINGS
#define STBI_MAX_DIMENSIONS 65536
#define STBI_ASSERT(condition) static_cast<void>(0)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wunused-function"
#include <stb/stb_image.h>
#pragma GCC diagnostic pop

namespace QXC::detail {
namespace {

// What it reads from. Past the end it is given bytes of 0xFF without end: at zeros, which it makes of a missing byte
// itself, its run length loop of HDR never comes to an end.
struct Input {
  QXByteSource m_Source;
  char const* m_pWindow = nullptr;
  bool m_bPastEnd = false;
};

// The first call fills the window that the codec reads single bytes from, and so do all calls with the same target.
// They ask for more than is used, so that only one that finds nothing is a read past the end.
int OnRead(void* pUser, char* pTarget, int nCount) {
  auto& input = *static_cast<Input*>(pUser);
  if (!input.m_pWindow) input.m_pWindow = pTarget;
  auto const nWanted = static_cast<std::size_t>(nCount);
  std::size_t const nRead = input.m_Source.Read(pTarget, nWanted);
  if (nRead == 0 || (nRead < nWanted && pTarget != input.m_pWindow)) input.m_bPastEnd = true;
  std::memset(pTarget + nRead, 0xFF, nWanted - nRead);
  if (pTarget == input.m_pWindow && nRead > 0) return static_cast<int>(nRead);
  return nCount;
}

void OnSkip(void* pUser, int nCount) {
  auto& input = *static_cast<Input*>(pUser);
  if (nCount < 0 || !input.m_Source.Skip(static_cast<QXUInt64>(nCount))) input.m_bPastEnd = true;
}

int OnEnd(void* pUser) {
  return static_cast<Input*>(pUser)->m_Source.GetLeft() == 0;
}

struct FreePixels {
  void operator()(stbi_uc* pPixels) const { stbi_image_free(pPixels); }
};

void CopyPixels(stbi_uc const* pSource, int nChannels, QXImageBlock& block) {
  std::size_t const nCount = block.GetPixelCount();
  unsigned char* pTarget = block.GetRow(0);
  if (nChannels == 2) {
    WidenGrayAlphaTo4(pSource, pTarget, nCount);
    return;
  }
  if (nChannels == 1) std::memcpy(pTarget, pSource, nCount);
  if (nChannels == 3) CopySwapped3(pSource, pTarget, nCount);
  if (nChannels == 4) CopySwapped4(pSource, pTarget, nCount);
}

}  // namespace

QXImageData* DecodeByStb(
    unsigned char const* pBytes, QXUInt64 nSize, QXUInt64 nWidth, QXUInt64 nHeight, QXImageLimits const& limits) {
  // It counts in int, and takes up to 16 bytes a pixel for itself.
  if (!limits.Allow(nWidth, nHeight, 1) || nSize > std::numeric_limits<int>::max()) return nullptr;
  Input input{QXByteSource(pBytes, nSize)};
  stbi_io_callbacks const callbacks{OnRead, OnSkip, OnEnd};
  int nGotWidth = 0, nGotHeight = 0, nChannels = 0;
  std::unique_ptr<stbi_uc, FreePixels> const pPixels(
      stbi_load_from_callbacks(&callbacks, &input, &nGotWidth, &nGotHeight, &nChannels, 0));
  if (!pPixels || input.m_bPastEnd || nChannels < 1 || nChannels > 4) return nullptr;
  if (nGotWidth != static_cast<int>(nWidth) || nGotHeight != static_cast<int>(nHeight)) return nullptr;
  QXImageBlock block;
  unsigned int const nBytesPerPixel = nChannels == 2 ? 4 : static_cast<unsigned int>(nChannels);
  if (!block.Make(nWidth, nHeight, nBytesPerPixel, limits)) return nullptr;
  CopyPixels(pPixels.get(), nChannels, block);
  return block.HandOver();
}

}  // namespace QXC::detail
