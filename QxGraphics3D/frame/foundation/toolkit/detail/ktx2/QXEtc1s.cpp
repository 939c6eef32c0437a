#include <QxGraphics3D/frame/foundation/toolkit/detail/ktx2/QXEtc1s.h>

#include <algorithm>

namespace QXC::detail {

namespace {

/// What selectors 0 and 1 take away and 2 and 3 add, outer and inner value of each table.
constexpr int g_Modifiers[8][2] = {{8, 2}, {17, 5}, {29, 9}, {42, 13}, {60, 18}, {80, 24}, {106, 33}, {183, 47}};

unsigned char Widen5(unsigned int nValue) {
  return static_cast<unsigned char>((nValue << 3) | (nValue >> 2));
}

}  // namespace

QXEtc1sEndpoint UnfoldEtc1sEndpoint(unsigned int nRed, unsigned int nGreen, unsigned int nBlue, unsigned int nTable) {
  int const nOuter = g_Modifiers[nTable & 7][0];
  int const nInner = g_Modifiers[nTable & 7][1];
  int const modifiers[4] = {-nOuter, -nInner, nInner, nOuter};
  int const base[3] = {Widen5(nRed & 31), Widen5(nGreen & 31), Widen5(nBlue & 31)};
  QXEtc1sEndpoint endpoint;
  for (int nSelector = 0; nSelector < 4; ++nSelector) {
    for (int nChannel = 0; nChannel < 3; ++nChannel) {
      endpoint.m_Colors[nSelector][nChannel] =
          static_cast<unsigned char>(std::clamp(base[nChannel] + modifiers[nSelector], 0, 255));
    }
    endpoint.m_Colors[nSelector][3] = 255;
  }
  return endpoint;
}

}  // namespace QXC::detail
