#include <apps/qx3d/QXAtlasReport.h>

#include <apps/qx3d/QXMessage.h>

#include <algorithm>
#include <cstdio>

namespace QXApp {

namespace {

std::string Pad(std::string strText, std::size_t nWidth) {
  strText.resize(std::max(strText.size(), nWidth), ' ');
  return strText;
}

std::string PadLeft(std::string const& strText, std::size_t nWidth) {
  return std::string(nWidth - std::min(nWidth, strText.size()), ' ') + strText;
}

std::string MakePercent(double dPart) {
  char szText[32];
  std::snprintf(szText, sizeof(szText), "%.1f %%", 100.0 * dPart);
  return szText;
}

std::string MakeRow(std::string const& strName, std::string const& strSize, std::string const& strFormat,
    std::string const& strTiles, std::string const& strFill) {
  return Pad(strName, 28) + Pad(strSize, 13) + Pad(strFormat, 20) + PadLeft(strTiles, 7) + PadLeft(strFill, 10) + "\n";
}

}  // namespace

std::string MakeAtlasTable(std::vector<QXAtlasPage> const& vecPages) {
  std::string strTable = MakeRow("page", "size", "format", "tiles", "fill");
  for (QXAtlasPage const& page : vecPages) {
    std::string const strEdge = std::to_string(page.m_nSize);
    strTable += MakeRow(page.m_strName, strEdge + " x " + strEdge, page.m_strFormat,
        std::to_string(page.m_vecTiles.size()), MakePercent(page.GetFill()));
  }
  return strTable;
}

std::string MakeAtlasReport(std::vector<QXAtlasPage> const& vecPages) {
  std::string strReport = MakeAtlasTable(vecPages);
  for (QXAtlasPage const& page : vecPages) {
    strReport += "\n" + page.m_strName + "\n" + PadLeft("tile", 6) + PadLeft("x", 6) + PadLeft("y", 6) +
                 PadLeft("edge", 6) + "  content\n";
    int nNumber = 0;
    for (QXAtlasTile const& tile : page.m_vecTiles)
      strReport += PadLeft(std::to_string(++nNumber), 6) + PadLeft(std::to_string(tile.m_nX), 6) +
                   PadLeft(std::to_string(tile.m_nY), 6) + PadLeft(std::to_string(tile.m_nSize), 6) + "  " +
                   MakeOneLine(tile.m_strName) + "\n";
  }
  return strReport;
}

}  // namespace QXApp
