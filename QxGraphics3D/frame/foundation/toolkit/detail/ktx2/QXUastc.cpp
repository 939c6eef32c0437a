#include <QxGraphics3D/frame/foundation/toolkit/detail/ktx2/QXUastc.h>

namespace QXC::detail {

bool DecodeUastcBlock(unsigned char const*, unsigned char*) { return false; }

bool DecodeUastcImage(unsigned char const*, std::uint64_t, unsigned int, unsigned int, unsigned char*) { return false; }

}  // namespace QXC::detail
