// The glyph atlas as one would write it down first: the recursion over the marks, ordered maps, and the pixels that the
// pages must have. What both managers are compared with.
#pragma once

#include "../atlas/QXPlainQuadtree.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace QXC {

class QXPlainFontAtlas {
public:
  using Key = std::pair<std::uint32_t, std::wstring>;

  struct Picture {
    int m_nWidth = 0;
    int m_nHeight = 0;
    std::vector<unsigned char> m_arrPixels;
  };
  struct Font {
    QXPlainTile m_Tile;
    int m_nRefCount = 0;
    float m_arrCoords[4] = {};  // left, top, right, bottom

    std::uint32_t GetKey() const {
      return static_cast<std::uint32_t>(m_Tile.m_nCol | m_Tile.m_nRow << 10 | m_Tile.m_nLod << 20) |
             static_cast<std::uint32_t>(m_Tile.m_nIndex) << 24;
    }
  };
  /// A texture of the renderer, or an image in memory.
  struct Page {
    int m_nUsers = 0;
    std::vector<unsigned char> m_arrPixels;  // empty before the first upload
  };

  /// In memory an image goes with Clear; a texture stays.
  explicit QXPlainFontAtlas(bool bInMemory) : m_bInMemory(bInMemory) {}

  Font const* Get(Key const& key, Picture const& picture) {
    auto font = m_mapFonts.find(key);
    if (font == m_mapFonts.end()) {
      QXPlainTile tile;
      if (!Place(std::max(picture.m_nWidth, picture.m_nHeight) + 1, tile)) return nullptr;
      font = m_mapFonts.emplace(key, MakeFont(tile, picture)).first;
      m_mapPictures[key] = picture;
      m_setPending.insert(key);
      m_nCurrent = tile.m_nIndex;
      ++m_mapUseCounts[tile.m_nIndex];
    }
    ++font->second.m_nRefCount;
    return &font->second;
  }

  void Del(Key const& key) {
    auto const font = m_mapFonts.find(key);
    if (font == m_mapFonts.end() || --font->second.m_nRefCount != 0) return;
    QXPlainTile const tile = font->second.m_Tile;
    m_mapFonts.erase(font);
    m_setPending.erase(key);
    m_Marks.SetCell(tile, 0);
    if (--m_mapUseCounts[tile.m_nIndex] != 0) return;
    m_mapUseCounts.erase(tile.m_nIndex);
    m_Marks.m_mapPages.erase(tile.m_nIndex);
    if (--m_mapPages[tile.m_nIndex].m_nUsers == 0) m_mapPages.erase(tile.m_nIndex);
  }

  void Upload() {
    for (Key const& key : m_setPending) {
      Picture const& picture = m_mapPictures[key];
      QXPlainTile const& tile = m_mapFonts[key].m_Tile;
      int const nSize = 1024 >> tile.m_nLod;
      std::vector<unsigned char>& arrPixels = m_mapPages[tile.m_nIndex].m_arrPixels;
      arrPixels.resize(2097152);
      for (int nRow = 0; nRow < picture.m_nHeight; ++nRow) {
        int const nPixel = (tile.m_nRow - nSize / 2 + nRow) * 1024 + tile.m_nCol - nSize / 2;
        std::copy_n(picture.m_arrPixels.begin() + nRow * picture.m_nWidth * 2, picture.m_nWidth * 2,
            arrPixels.begin() + nPixel * 2);
      }
    }
    m_setPending.clear();
  }

  void Clear() {
    m_mapFonts.clear();
    m_setPending.clear();
    m_mapUseCounts.clear();
    m_Marks.m_mapPages.clear();
    if (m_bInMemory) m_mapPages.clear();
  }

  std::map<Key, Font> m_mapFonts;
  std::map<int, Page> m_mapPages;

private:
  bool Place(int nWanted, QXPlainTile& tile) {
    auto const nSize = static_cast<unsigned int>(nWanted);
    if (m_Marks.Place(nSize, 0, 0, m_nCurrent, tile)) return true;
    int const nIndex = m_Marks.AddPage(0, 0);
    ++m_mapPages[nIndex].m_nUsers;
    m_mapUseCounts[nIndex] = 0;
    return m_Marks.PlaceIn(nIndex, nSize, tile);
  }

  static Font MakeFont(QXPlainTile const& tile, Picture const& picture) {
    Font font;
    font.m_Tile = tile;
    double const dLeft = tile.m_nCol - (1024 >> tile.m_nLod) / 2;
    double const dTop = tile.m_nRow - (1024 >> tile.m_nLod) / 2;
    font.m_arrCoords[0] = static_cast<float>(dLeft / 1024.0);
    font.m_arrCoords[2] = font.m_arrCoords[0] + static_cast<float>(picture.m_nWidth / 1024.0);
    font.m_arrCoords[3] = static_cast<float>(dTop / 1024.0);
    font.m_arrCoords[1] = font.m_arrCoords[3] + static_cast<float>(picture.m_nHeight / 1024.0);
    return font;
  }

  bool m_bInMemory;
  QXPlainQuadtree m_Marks{QXPlainKind::Glyph, 1024};
  std::map<Key, Picture> m_mapPictures;
  std::set<Key> m_setPending;
  std::map<int, int> m_mapUseCounts;
  int m_nCurrent = 0;
};

}  // namespace QXC
