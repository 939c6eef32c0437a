/// @file
/// The resampling loops for wide instructions of x86-64. Call them on a processor that has these only.
#pragma once

#include <QxGraphics3D/frame/foundation/base3d/detail/QXResampleAxis.h>

#if defined(__x86_64__) && defined(__GNUC__)
#  define QX_RESAMPLE_X86 1

namespace QXC::detail {

void GrowRowAvx2(unsigned int nBytesPerPixel, unsigned char const* pSource, std::uint32_t nFrom,
    QXResampleAxis const& axis, std::int16_t* pTarget);
void BlendRowsAvx2(std::int16_t const* pUpper, std::int16_t const* pLower, std::int16_t nShare, unsigned char* pTarget,
    std::size_t nCount);

}  // namespace QXC::detail
#endif
