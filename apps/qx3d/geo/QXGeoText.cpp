#include <apps/qx3d/geo/QXGeoText.h>

#include <charconv>
#include <cmath>
#include <utility>

namespace QXApp {

namespace {

constexpr std::string_view Blanks = " \t\r\n";

bool IsSeparator(char c) {
  return c == ',' || Blanks.find(c) != std::string_view::npos;
}

}  // namespace

std::string MakeGeoLabel(std::string_view text) {
  std::string strLabel;
  bool bBlank = false;
  for (char const c : text) {
    // Other control characters have no picture either.
    if (static_cast<unsigned char>(c) <= ' ') {
      bBlank = !strLabel.empty();
      continue;
    }
    if (bBlank) strLabel += ' ';
    bBlank = false;
    strLabel += c;
  }
  return strLabel;
}

bool IsGeoCoordinate(double dNumber) {
  return std::abs(dNumber) <= MaxGeoCoordinate;
}

bool ScanGeoNumber(std::string_view text, double& dNumber) {
  std::size_t const nFirst = text.find_first_not_of(Blanks);
  if (nFirst == std::string_view::npos) return false;
  text = text.substr(nFirst, text.find_last_not_of(Blanks) + 1 - nFirst);
  double dRead = 0.0;
  auto const result = std::from_chars(text.data(), text.data() + text.size(), dRead);
  if (result.ec != std::errc() || result.ptr != text.data() + text.size() || !std::isfinite(dRead)) return false;
  dNumber = dRead;
  return true;
}

bool ScanGeoNumbers(std::string_view text, std::vector<double>& vecNumbers) {
  char const* p = text.data();
  char const* const pEnd = p + text.size();
  while (true) {
    while (p != pEnd && IsSeparator(*p)) ++p;
    if (p == pEnd) return true;
    double dRead = 0.0;
    auto const result = std::from_chars(p, pEnd, dRead);
    if (result.ec != std::errc() || !IsGeoCoordinate(dRead)) return false;
    if (result.ptr != pEnd && !IsSeparator(*result.ptr)) return false;
    vecNumbers.push_back(dRead);
    p = result.ptr;
  }
}

bool TidyGeoRing(std::vector<QXC::QXVector3d>& vecRing) {
  std::vector<QXC::QXVector3d> vecTidy;
  vecTidy.reserve(vecRing.size());
  for (QXC::QXVector3d const& vec : vecRing)
    if (vecTidy.empty() || vecTidy.back().x != vec.x || vecTidy.back().y != vec.y) vecTidy.push_back(vec);
  while (vecTidy.size() > 1 && vecTidy.front().x == vecTidy.back().x && vecTidy.front().y == vecTidy.back().y)
    vecTidy.pop_back();
  vecRing = std::move(vecTidy);
  return vecRing.size() >= 3;
}

std::string AddGeoPoint(QXGeoPoint point, QXGeoNames const& names, QXGeoData& data) {
  if (names.m_bPlaces) point.m_strText.clear();
  if (point.m_strText.empty() && !names.m_bPlaces) return std::string();
  if (point.m_strText.size() > MaxGeoText)
    return "the text of a point is longer than 1000 bytes and is left out; choose another attribute for the labels";
  if (data.m_vecPoints.size() >= MaxGeoPlaces)
    return "the file has more than 1000000 points, and the further ones are left out; cut it into parts";
  if (point.m_strText.size() > MaxGeoTextBytes - data.m_nTextBytes)
    return "the texts of the points have more than 100 MB together, and the further ones are left out; cut the file "
           "into "
           "parts";
  data.m_nTextBytes += point.m_strText.size();
  data.m_vecPoints.push_back(std::move(point));
  return std::string();
}

}  // namespace QXApp
