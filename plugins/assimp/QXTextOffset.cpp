#include <plugins/assimp/QXTextOffset.h>

#include <QxGraphics3D/frame/foundation/fileparser/QXFileType.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <string_view>

namespace QXAssimp {

namespace {

/// From here on a float steps by more than a millimetre.
constexpr double FarOut = 16384.0;

/// Three numbers of a position line and the rest of the line behind them.
struct PositionLine {
  double m_dValues[3];
  std::string_view m_strRest;
};

std::string_view SkipBlanks(std::string_view strText) {
  std::size_t const nBegin = strText.find_first_not_of(" \t");
  return nBegin == std::string_view::npos ? std::string_view() : strText.substr(nBegin);
}

/// False if the line is no position. std::from_chars reads the same in every locale.
bool ReadPosition(std::string_view strLine, std::string_view strKey, PositionLine& position) {
  strLine = SkipBlanks(strLine);
  if (strLine.substr(0, strKey.size()) != strKey) return false;
  strLine.remove_prefix(strKey.size());
  if (strLine.empty() || (strLine.front() != ' ' && strLine.front() != '\t')) return false;
  for (double& dValue : position.m_dValues) {
    strLine = SkipBlanks(strLine);
    if (!strLine.empty() && strLine.front() == '+') strLine.remove_prefix(1);
    auto const [pEnd, error] = std::from_chars(strLine.data(), strLine.data() + strLine.size(), dValue);
    if (error != std::errc() || !std::isfinite(dValue)) return false;
    strLine.remove_prefix(static_cast<std::size_t>(pEnd - strLine.data()));
  }
  position.m_strRest = strLine;
  return true;
}

/// Calls a function with each line, the line end included.
template <class Function>
void ForEachLine(std::string_view strText, Function function) {
  while (!strText.empty()) {
    std::size_t const nEnd = strText.find('\n');
    std::size_t const nLength = nEnd == std::string_view::npos ? strText.size() : nEnd + 1;
    function(strText.substr(0, nLength));
    strText.remove_prefix(nLength);
  }
}

/// The offset to subtract: the middle of the positions, zeros if floats do not suffer.
void ChooseOffset(std::string_view strText, std::string_view strKey, double (&dOffset)[3]) {
  double dMin[3] = {1e300, 1e300, 1e300};
  double dMax[3] = {-1e300, -1e300, -1e300};
  PositionLine position = {};
  ForEachLine(strText, [&](std::string_view strLine) {
    if (!ReadPosition(strLine, strKey, position)) return;
    for (int i = 0; i < 3; ++i) {
      dMin[i] = std::min(dMin[i], position.m_dValues[i]);
      dMax[i] = std::max(dMax[i], position.m_dValues[i]);
    }
  });
  for (int i = 0; i < 3; ++i) {
    double const dFarthest = std::max(std::fabs(dMin[i]), std::fabs(dMax[i]));
    double const dMiddle = std::round(0.5 * dMin[i] + 0.5 * dMax[i]);
    bool const bHelps = dMin[i] <= dMax[i] && dFarthest > FarOut && std::fabs(dMiddle) > 0.25 * dFarthest;
    dOffset[i] = bHelps && dFarthest < 1e15 ? dMiddle : 0.0;
  }
}

/// Nine digits give every float back; std::to_chars writes the same in every locale.
void AppendNumber(double dValue, std::vector<unsigned char>& vecText) {
  char szNumber[32] = {' '};
  auto const result = std::to_chars(szNumber + 1, szNumber + sizeof szNumber, dValue, std::chars_format::general, 9);
  vecText.insert(vecText.end(), szNumber, result.ptr);
}

}  // namespace

void SubtractOffset(int nType, std::vector<unsigned char>& vecBytes, double (&dOffset)[3]) {
  dOffset[0] = dOffset[1] = dOffset[2] = 0.0;
  std::string_view const strText(reinterpret_cast<char const*>(vecBytes.data()), vecBytes.size());
  std::string_view strKey;
  if (nType == QXC::QXFileType::EM_MODEL_OBJ) strKey = "v";
  if (nType == QXC::QXFileType::EM_MODEL_STL && SkipBlanks(strText).substr(0, 5) == "solid") strKey = "vertex";
  if (strKey.empty()) return;
  ChooseOffset(strText, strKey, dOffset);
  if (dOffset[0] == 0.0 && dOffset[1] == 0.0 && dOffset[2] == 0.0) return;

  std::vector<unsigned char> vecMoved;
  vecMoved.reserve(vecBytes.size());
  ForEachLine(strText, [&](std::string_view strLine) {
    PositionLine position = {};
    if (ReadPosition(strLine, strKey, position)) {
      vecMoved.insert(vecMoved.end(), strKey.begin(), strKey.end());
      for (int i = 0; i < 3; ++i) AppendNumber(position.m_dValues[i] - dOffset[i], vecMoved);
      strLine = position.m_strRest;
    }
    vecMoved.insert(vecMoved.end(), strLine.begin(), strLine.end());
  });
  vecBytes.swap(vecMoved);
}

}  // namespace QXAssimp
