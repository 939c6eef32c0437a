#include <QxGraphics3D/frame/foundation/base3d/detail/QXPixelBlock.h>

#include <cstddef>
#include <new>

#if defined(__linux__)
#  include <sys/mman.h>
#endif

namespace QXC::detail {

namespace {

void AskForHugePages(unsigned char* pBlock, std::size_t nBytes) {
#if defined(__linux__) && defined(MADV_HUGEPAGE)
  // Only whole pages inside the block: what shares a page with its ends belongs to others. A refusal costs speed only.
  constexpr std::size_t nHuge = std::size_t{2} << 20;
  constexpr std::size_t nSmall = 4096;
  if (nBytes < 2 * nHuge) return;
  std::size_t const nSkip = (nSmall - reinterpret_cast<std::uintptr_t>(pBlock) % nSmall) % nSmall;
  madvise(pBlock + nSkip, (nBytes - nSkip) / nSmall * nSmall, MADV_HUGEPAGE);
#else
  (void)pBlock;
  (void)nBytes;
#endif
}

}  // namespace

unsigned char* NewPixelBlock(std::uint64_t nBytes) {
  // Objects are at most half of the addresses; above, the array's new would throw for lack of a size to ask for.
  if (nBytes > static_cast<std::uint64_t>(PTRDIFF_MAX)) return nullptr;
  auto* const pBlock = new (std::nothrow) unsigned char[static_cast<std::size_t>(nBytes)];
  if (pBlock) AskForHugePages(pBlock, static_cast<std::size_t>(nBytes));
  return pBlock;
}

}  // namespace QXC::detail
