#include <QxGraphics3D/frame/foundation/toolkit/detail/ktx2/QXBasisLz.h>

namespace QXC::detail {

bool QXBasisLz::Init(unsigned char const*, std::uint64_t, unsigned int) { return false; }

bool QXBasisLz::DecodeImage(unsigned int, unsigned char const*, std::uint64_t, unsigned int, unsigned int, unsigned char*) const {
  return false;
}

bool QXBasisLz::HasAlphaSlice(unsigned int) const { return false; }

}  // namespace QXC::detail
