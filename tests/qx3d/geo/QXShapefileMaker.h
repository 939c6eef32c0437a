/// @file
/// Shapefiles in memory, byte by byte.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace QXApp {

/// Points with one attribute "NAME" of 24 bytes and one "TURN" of 8.
class QXShapefileMaker {
public:
  void Add(double x, double y, std::string strName, std::string strTurn) {
    std::string strContent = Small(1) + Double(x) + Double(y);
    AppendRecord(strContent);
    strName.resize(24, ' ');
    strTurn.resize(8, ' ');
    m_strRows += ' ' + strName + strTurn;
    ++m_nRows;
  }
  /// Several positions of one record, which makes a shapefile of type 8.
  void AddMany(std::vector<double> const& vecCoordinates, std::string strName) {
    std::string strContent = Small(8) + Double(0.0) + Double(0.0) + Double(9.0) + Double(9.0) +
                             Small(static_cast<std::uint32_t>(vecCoordinates.size() / 2));
    for (double const d : vecCoordinates) strContent += Double(d);
    AppendRecord(strContent);
    strName.resize(32, ' ');
    m_strRows += ' ' + strName;
    ++m_nRows;
  }

  /// Further records whose shape is the last one.
  void AddAgain(unsigned int nTimes) {
    std::string const strEntry = m_strIndex.substr(m_strIndex.size() - 8);
    for (unsigned int i = 0; i < nTimes; ++i, ++m_nRows) {
      m_strIndex += strEntry;
      m_strRows += std::string(33, ' ');
    }
  }

  std::string GetShapes(std::uint32_t nType = 1) const { return Head(nType, m_strShapes.size()) + m_strShapes; }
  std::string GetIndex(std::uint32_t nType = 1) const { return Head(nType, m_strIndex.size()) + m_strIndex; }
  std::string GetAttributes(char cLanguage = 0) const {
    std::string strHead = std::string("\x03\x7C\x01\x01") + Small(m_nRows);
    strHead += Short(32 + 2 * 32 + 1) + Short(33) + std::string(20, '\0');
    strHead[29] = cLanguage;
    return strHead + Field("NAME", 'C', 24) + Field("TURN", 'N', 8) + "\x0D" + m_strRows + "\x1A";
  }

private:
  static std::string Big(std::uint32_t n) {
    std::string str;
    for (int i = 24; i >= 0; i -= 8) str += static_cast<char>(n >> i);
    return str;
  }
  static std::string Small(std::uint32_t n) {
    std::string str;
    for (int i = 0; i < 32; i += 8) str += static_cast<char>(n >> i);
    return str;
  }
  static std::string Short(std::uint32_t n) { return Small(n).substr(0, 2); }
  static std::string Double(double d) {
    std::string str(8, '\0');
    std::memcpy(str.data(), &d, 8);
    return str;
  }
  static std::string Field(std::string strName, char cType, char cSize) {
    strName.resize(11, '\0');
    std::string strField = strName + cType + std::string(4, '\0') + cSize;
    strField.resize(32, '\0');
    return strField;
  }
  static std::string Head(std::uint32_t nType, std::size_t nBody) {
    return Big(9994) + std::string(20, '\0') + Big(static_cast<std::uint32_t>((100 + nBody) / 2)) + Small(1000) +
           Small(nType) + std::string(64, '\0');
  }
  void AppendRecord(std::string const& strContent) {
    std::uint32_t const nWords = static_cast<std::uint32_t>(strContent.size() / 2);
    m_strIndex += Big(static_cast<std::uint32_t>((100 + m_strShapes.size()) / 2)) + Big(nWords);
    m_strShapes += Big(m_nRows + 1) + Big(nWords) + strContent;
  }

  std::string m_strShapes;
  std::string m_strIndex;
  std::string m_strRows;
  std::uint32_t m_nRows = 0;
};

}  // namespace QXApp
