#include <QxGraphics3D/staticgeometry/detail/QXMappedMemory.h>

#if defined(__linux__)
#  include <cstdint>

#  include <sys/mman.h>
#  include <unistd.h>
#endif

namespace QXC::detail {

#if defined(__linux__)
bool IsMapped(void const* pArray, std::size_t nBytes) {
  static auto const ms_nPage = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  if (!pArray || nBytes < 3 * ms_nPage) return true;
  auto const* const pMiddle = static_cast<unsigned char const*>(pArray) + nBytes / 2;
  unsigned char const* const pPage = pMiddle - reinterpret_cast<std::uintptr_t>(pMiddle) % ms_nPage;
  unsigned char nResident = 0;
  // The system's operation takes a pointer to what may be written, and writes nothing.
  int const nResult = mincore(const_cast<unsigned char*>(pPage), ms_nPage, &nResident);
  return nResult != 0 || (nResident & 1) != 0;
}
#else
bool IsMapped(void const*, std::size_t) {
  return true;
}
#endif

}  // namespace QXC::detail
