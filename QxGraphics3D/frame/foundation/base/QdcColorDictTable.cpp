#include <QxGraphics3D/frame/foundation/base/QdcColorDictTable.h>

#include <QxGraphics3D/frame/foundation/base/QdcColor.h>

#include <algorithm>
#include <cmath>

namespace QDC {
namespace {

unsigned char MixChannel(unsigned char nFirst, unsigned char nSecond, double dPart) {
  double const dChannel = nFirst + (static_cast<double>(nSecond) - nFirst) * dPart;
  return static_cast<unsigned char>(dChannel + 0.5);
}

unsigned int Mix(unsigned int nFirst, unsigned int nSecond, double dPart) {
  return QDCRGBA(MixChannel(QDCREDVAL(nFirst), QDCREDVAL(nSecond), dPart),
      MixChannel(QDCGREENVAL(nFirst), QDCGREENVAL(nSecond), dPart),
      MixChannel(QDCBLUEVAL(nFirst), QDCBLUEVAL(nSecond), dPart),
      MixChannel(QDCALPHAVAL(nFirst), QDCALPHAVAL(nSecond), dPart));
}

/// Where dValue stands between dLow and dHigh, 0 to 1.
double PartOf(double dLow, double dHigh, double dValue) {
  if (std::isinf(dHigh)) return 0.0;
  if (std::isinf(dLow)) return 1.0;
  double const dSpan = dHigh - dLow;
  if (std::isfinite(dSpan)) return (dValue - dLow) / dSpan;
  // Ends so far apart that their difference is no number any more; halves are exact at that size.
  return (dValue * 0.5 - dLow * 0.5) / (dHigh * 0.5 - dLow * 0.5);
}

}  // namespace

std::size_t QdcColorDictTable::CountUpTo(double dValue) const {
  auto const behind = std::upper_bound(m_arrItems.begin(), m_arrItems.end(), dValue,
      [](double dWanted, Item const& item) { return dWanted < item.m_dValue; });
  return static_cast<std::size_t>(behind - m_arrItems.begin());
}

void QdcColorDictTable::Add(double dValue, unsigned int nColor) {
  if (std::isnan(dValue)) return;
  m_arrItems.insert(m_arrItems.begin() + static_cast<std::ptrdiff_t>(CountUpTo(dValue)), Item{dValue, nColor});
}

void QdcColorDictTable::GetItem(int nIndex, double& dValue, unsigned int& nColor) const {
  if (nIndex < 0 || nIndex >= GetCount()) return;
  Item const& item = m_arrItems[static_cast<std::size_t>(nIndex)];
  dValue = item.m_dValue;
  nColor = item.m_nColor;
}

unsigned int QdcColorDictTable::GetColor(double dValue, unsigned char bInterpolate) const {
  if (m_arrItems.empty()) return 0;
  std::size_t const nUpTo = std::isnan(dValue) ? 0 : CountUpTo(dValue);
  if (nUpTo == 0) return m_arrItems.front().m_nColor;
  Item const& below = m_arrItems[nUpTo - 1];
  if (!bInterpolate || nUpTo == m_arrItems.size() || below.m_dValue == dValue) return below.m_nColor;
  Item const& above = m_arrItems[nUpTo];
  return Mix(below.m_nColor, above.m_nColor, PartOf(below.m_dValue, above.m_dValue, dValue));
}

}  // namespace QDC
