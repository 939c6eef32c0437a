#include <apps/qx3d/QXSceneValue.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <utility>

namespace QXApp {

namespace {

std::string Quote(std::string_view text) {
  return "'" + std::string(text) + "'";
}

/// As a person writes it.
std::string ToText(double dNumber) {
  char szText[32];
  std::snprintf(szText, sizeof szText, "%.10g", dNumber);
  return szText;
}

/// A finite decimal number and nothing behind it.
bool Scan(std::string_view text, double& dNumber) {
  char const* const pEnd = text.data() + text.size();
  double dRead = 0.0;
  auto const result = std::from_chars(text.data(), pEnd, dRead);
  if (result.ec != std::errc() || result.ptr != pEnd || !std::isfinite(dRead)) return false;
  dNumber = dRead;
  return true;
}

/// The parts of a list: commas with blanks around them, or blanks alone. An empty part stays one, which is no number.
std::vector<std::string_view> Split(std::string_view text) {
  constexpr char const* Blanks = " \t";
  std::vector<std::string_view> vecParts;
  while (true) {
    std::size_t const nEnd = std::min(text.find_first_of(" \t,"), text.size());
    vecParts.push_back(text.substr(0, nEnd));
    text.remove_prefix(nEnd);
    text.remove_prefix(std::min(text.find_first_not_of(Blanks), text.size()));
    if (text.empty()) return vecParts;
    if (text[0] != ',') continue;
    text.remove_prefix(1);
    text.remove_prefix(std::min(text.find_first_not_of(Blanks), text.size()));
  }
}

/// As many numbers as the list has room for.
bool ScanList(std::string_view text, std::size_t nCount, double* pNumbers) {
  std::vector<std::string_view> const vecParts = Split(text);
  if (vecParts.size() != nCount) return false;
  for (std::size_t i = 0; i < nCount; ++i)
    if (!Scan(vecParts[i], pNumbers[i])) return false;
  return true;
}

bool ScanHexColor(std::string_view text, unsigned char (&nColor)[3]) {
  if (text.size() != 7 || text[0] != '#') return false;
  unsigned int nNumber = 0;
  auto const result = std::from_chars(text.data() + 1, text.data() + 7, nNumber, 16);
  if (result.ec != std::errc() || result.ptr != text.data() + 7) return false;
  for (int i = 0; i < 3; ++i) nColor[i] = static_cast<unsigned char>(nNumber >> (16 - 8 * i));
  return true;
}

/// Goes over a moment from its first to its last letter.
class TimeScanner {
public:
  explicit TimeScanner(std::string_view text) : m_Text(text) {}

  bool Scan(std::int64_t& nMilliseconds) {
    int nYear = 0;
    int nMonth = 0;
    int nDay = 0;
    if (!TakeNumber(4, 1900, 2099, nYear) || !Take('-') || !TakeNumber(2, 1, 12, nMonth) || !Take('-') ||
        !TakeNumber(2, 1, 31, nDay))
      return false;
    std::chrono::year_month_day const date(std::chrono::year(nYear), std::chrono::month(static_cast<unsigned>(nMonth)),
        std::chrono::day(static_cast<unsigned>(nDay)));
    int nHour = 0;
    int nMinute = 0;
    int nSecond = 0;
    if (!date.ok() || (!Take('T') && !Take(' ')) || !TakeClock(23, nHour, nMinute)) return false;
    if (Take(':') && !TakeNumber(2, 0, 59, nSecond)) return false;
    int nZone = 0;
    if (!TakeZone(nZone) || !m_Text.empty()) return false;
    std::int64_t const nDays = std::chrono::sys_days(date).time_since_epoch().count();
    nMilliseconds = (((nDays * 24 + nHour) * 60 + nMinute - nZone) * 60 + nSecond) * 1000;
    return true;
  }

private:
  bool Take(char c) {
    if (m_Text.empty() || m_Text[0] != c) return false;
    m_Text.remove_prefix(1);
    return true;
  }

  bool TakeNumber(std::size_t nDigits, int nMin, int nMax, int& nNumber) {
    if (m_Text.size() < nDigits || !std::all_of(m_Text.begin(), m_Text.begin() + nDigits, IsDigit)) return false;
    std::from_chars(m_Text.data(), m_Text.data() + nDigits, nNumber);
    m_Text.remove_prefix(nDigits);
    return nNumber >= nMin && nNumber <= nMax;
  }

  bool TakeClock(int nMaxHour, int& nHour, int& nMinute) {
    return TakeNumber(2, 0, nMaxHour, nHour) && Take(':') && TakeNumber(2, 0, 59, nMinute);
  }

  /// Minutes by which clocks there go before universal time; none is universal time.
  bool TakeZone(int& nZone) {
    if (m_Text.empty() || Take('Z')) return true;
    bool const bWest = m_Text[0] == '-';
    int nHour = 0;
    int nMinute = 0;
    if ((!Take('+') && !Take('-')) || !TakeClock(14, nHour, nMinute)) return false;
    nZone = (bWest ? -1 : 1) * (60 * nHour + nMinute);
    return true;
  }

  static bool IsDigit(char c) { return c >= '0' && c <= '9'; }

  std::string_view m_Text;
};

bool IsByte(double dNumber) {
  return dNumber >= 0.0 && dNumber <= 255.0 && dNumber == std::floor(dNumber);
}

}  // namespace

std::string ReadNumber(std::string_view text, double dMin, double dMax, double& dNumber) {
  double dRead = 0.0;
  if (Scan(text, dRead) && dRead >= dMin && dRead <= dMax) {
    dNumber = dRead;
    return std::string();
  }
  return Quote(text) + " is no number from " + ToText(dMin) + " to " + ToText(dMax) + "; write it as 12.5";
}

std::string ReadWholeNumber(std::string_view text, int nMin, int nMax, int& nNumber) {
  double dRead = 0.0;
  if (Scan(text, dRead) && dRead >= nMin && dRead <= nMax && dRead == std::floor(dRead)) {
    nNumber = static_cast<int>(dRead);
    return std::string();
  }
  return Quote(text) + " is no whole number from " + std::to_string(nMin) + " to " + std::to_string(nMax) +
         "; write it as " + std::to_string(nMin);
}

std::string ReadLength(std::string_view text, double& dLength) {
  double dRead = 0.0;
  if (!Scan(text, dRead)) return Quote(text) + " is no number; write it as 12.5";
  if (!(dRead > 0.0 && dRead <= MaxSceneCoordinate))
    return Quote(text) + " is no size; it must be above 0, and 1e15 at most";
  dLength = dRead;
  return std::string();
}

std::string ReadLengths(std::string_view text, double& dWidth, double& dHeight) {
  double dRead[2];
  if (Scan(text, dRead[0]))
    dRead[1] = dRead[0];
  else if (!ScanList(text, 2, dRead))
    return Quote(text) + " is no size; write a width and a height, as 32, 24, or one number for both";
  for (double const d : dRead)
    if (!(d > 0.0 && d <= MaxSceneCoordinate))
      return Quote(text) + " is no size; both numbers must be above 0, and 1e15 at most";
  dWidth = dRead[0];
  dHeight = dRead[1];
  return std::string();
}

std::string ReadPosition(std::string_view text, QXC::QXVector3d& vecPosition) {
  double dRead[3];
  if (!ScanList(text, 3, dRead)) return Quote(text) + " is no position; write it as 10, 20, 30.5";
  for (double const d : dRead)
    if (std::abs(d) > MaxSceneCoordinate) return Quote(text) + " is no position; no number may be beyond 1e15";
  vecPosition = QXC::QXVector3d(dRead[0], dRead[1], dRead[2]);
  return std::string();
}

std::string ReadOffset(std::string_view text, double (&dOffset)[2]) {
  double dRead[2];
  if (!ScanList(text, 2, dRead)) return Quote(text) + " is no offset; write how far right and how far up, as 4, -2.5";
  for (double const d : dRead)
    if (std::abs(d) > MaxSceneCoordinate) return Quote(text) + " is no offset; no number may be beyond 1e15";
  std::copy(dRead, dRead + 2, dOffset);
  return std::string();
}

std::string ReadColor(std::string_view text, unsigned char (&nColor)[3]) {
  if (ScanHexColor(text, nColor)) return std::string();
  double dRead[3];
  if (!ScanList(text, 3, dRead) || !std::all_of(dRead, dRead + 3, IsByte))
    return Quote(text) + " is no colour; write it as #C7DEF2, or as 199, 222, 242 with numbers from 0 to 255";
  for (int i = 0; i < 3; ++i) nColor[i] = static_cast<unsigned char>(dRead[i]);
  return std::string();
}

std::string ReadNumbers(std::string_view text, std::size_t nFewest, std::size_t nMost, double dMin, double dMax,
    std::vector<double>& vecNumbers) {
  std::vector<double> vecRead;
  bool bGood = true;
  for (std::string_view const part : Split(text)) {
    double dRead = 0.0;
    bGood = bGood && vecRead.size() < nMost && Scan(part, dRead) && dRead >= dMin && dRead <= dMax;
    if (!bGood) break;
    vecRead.push_back(dRead);
  }
  if (!bGood || vecRead.size() < nFewest) {
    std::string const strCount =
        nFewest == nMost ? std::to_string(nMost) : std::to_string(nFewest) + " to " + std::to_string(nMost);
    return Quote(text) + " is no list of " + strCount + " numbers from " + ToText(dMin) + " to " + ToText(dMax) +
           "; write them with commas between them";
  }
  vecNumbers = std::move(vecRead);
  return std::string();
}

bool ScanPlace(std::string_view text, QXScenePlace& place) {
  std::vector<std::string_view> const vecParts = Split(text);
  double dNumbers[5] = {};
  if (vecParts.size() < 3 || vecParts.size() > std::size(dNumbers)) return false;
  for (std::size_t i = 0; i < vecParts.size(); ++i)
    if (!Scan(vecParts[i], dNumbers[i]) || std::abs(dNumbers[i]) > MaxSceneCoordinate) return false;
  bool const bScale = vecParts.size() > 4;
  if (std::abs(dNumbers[3]) > 360.0 || (bScale && !(dNumbers[4] > 0.0))) return false;
  place.m_vecPosition = QXC::QXVector3d(dNumbers[0], dNumbers[1], dNumbers[2]);
  place.m_bHeading = vecParts.size() > 3;
  place.m_dHeading = dNumbers[3];
  place.m_dScale = dNumbers[4];
  return true;
}

std::string ReadPlace(std::string_view text, QXScenePlace& place) {
  if (ScanPlace(text, place)) return std::string();
  return Quote(text) + " is no place; write x, y, z, and if wanted a heading from -360 to 360 and a scale above 0, "
                       "as 10, 20, 3.5, 90, 1.2";
}

std::string ReadTime(std::string_view text, QDC::QdcTime& time) {
  TimeScanner scanner(text);
  std::int64_t nMilliseconds = 0;
  if (!scanner.Scan(nMilliseconds))
    return Quote(text) + " is no moment from 1900 to 2099; write it as 2026-06-21T20:30, in universal time, or with a "
                         "zone, as 2026-06-21T20:30+02:00";
  time = QDC::QdcTime(nMilliseconds);
  return std::string();
}

std::string ReadYesNo(std::string_view text, bool& bYes) {
  if (text != "yes" && text != "no") return Quote(text) + " is neither yes nor no; write one of them";
  bYes = text == "yes";
  return std::string();
}

std::string ReadWord(std::string_view text, std::vector<std::string> const& vecWords, std::size_t& nWord) {
  auto const it = std::find(vecWords.begin(), vecWords.end(), text);
  if (it != vecWords.end()) {
    nWord = static_cast<std::size_t>(it - vecWords.begin());
    return std::string();
  }
  std::string strList;
  for (std::string const& strWord : vecWords) strList += (strList.empty() ? "" : ", ") + strWord;
  return Quote(text) + " is not known here; write one of: " + strList;
}

}  // namespace QXApp
