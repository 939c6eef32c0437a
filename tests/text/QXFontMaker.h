/// @file
/// Writes small TrueType fonts and collections: name tables as a test wants them, and one box for each character.
#pragma once

#include <QxGraphics3D/frame/foundation/base/Namespaces.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace QXC {

/// Text as the bytes of a name record of platform 3.
inline std::string Utf16Bytes(std::u16string_view text) {
  std::string bytes;
  for (char16_t const unit : text) {
    bytes += static_cast<char>(unit >> 8);
    bytes += static_cast<char>(unit & 0xFF);
  }
  return bytes;
}

struct QXNameRecord {
  int m_nPlatform = 3;
  int m_nEncoding = 1;
  int m_nLanguage = 1033;
  int m_nNameId = 1;
  std::string m_strBytes;
};

/// A record of platform 3.
inline QXNameRecord Named(int nLanguage, int nNameId, std::u16string_view text) {
  return {3, 1, nLanguage, nNameId, Utf16Bytes(text)};
}

struct QXCharmapRecord {
  int m_nPlatform = 3;
  int m_nEncoding = 1;
  /// In ascending order; the first is glyph 1, the second glyph 2 and so on, in every charmap alike.
  std::vector<std::uint32_t> m_arrCharacters;
};

/// One face. Glyph 0 is empty; glyph g is a box 100 * g units wide and 700 high, of 1000 units an em.
class QXFontMaker {
public:
  QXFontMaker() = default;
  explicit QXFontMaker(std::vector<QXNameRecord> arrNames) : m_arrNames(std::move(arrNames)) {}

  std::string Make() const { return WithTables(0); }

  /// One file of several faces.
  static std::string MakeCollection(std::vector<QXFontMaker> const& arrFaces) {
    std::string header = "ttcf";
    Put32(header, 0x00010000);
    Put32(header, arrFaces.size());
    std::size_t const start = header.size() + 4 * arrFaces.size();
    std::string faces;
    for (QXFontMaker const& face : arrFaces) {
      Put32(header, start + faces.size());
      faces += face.WithTables(start + faces.size());
    }
    return header + faces;
  }

  std::vector<QXNameRecord> m_arrNames;
  std::vector<QXCharmapRecord> m_arrCharmaps = {{3, 1, {'A', 'B'}}};
  /// Bit 0 bold, bit 1 italic: what a face says of itself beside its names.
  int m_nMacStyle = 0;
  int m_nGlyphs = 3;
  /// Corners of the first glyph's one contour; a box if there are none.
  std::vector<std::pair<int, int>> m_arrCorners;

private:
  using Tables = std::vector<std::pair<std::string, std::string>>;

  static void Put16(std::string& bytes, std::size_t nValue) {
    bytes += static_cast<char>(nValue >> 8 & 0xFF);
    bytes += static_cast<char>(nValue & 0xFF);
  }
  static void Put32(std::string& bytes, std::size_t nValue) {
    Put16(bytes, nValue >> 16);
    Put16(bytes, nValue);
  }
  static void PutZeros(std::string& bytes, std::size_t nCount) { bytes.append(nCount, '\0'); }

  // Offsets in the directory count from the start of the file.
  std::string WithTables(std::size_t nFileOffset) const {
    Tables const tables = {{"cmap", Charmaps()}, {"glyf", Glyphs()}, {"head", Head()}, {"hhea", HorizontalHeader()},
        {"hmtx", Metrics()}, {"loca", Places()}, {"maxp", Profile()}, {"name", Names()}};
    std::string directory;
    Put32(directory, 0x00010000);
    Put16(directory, tables.size());
    PutZeros(directory, 6);
    std::string content;
    std::size_t const start = nFileOffset + directory.size() + 16 * tables.size();
    for (auto const& [tag, bytes] : tables) {
      directory += tag;
      Put32(directory, 0);
      Put32(directory, start + content.size());
      Put32(directory, bytes.size());
      content += bytes;
      PutZeros(content, (4 - bytes.size() % 4) % 4);
    }
    return directory + content;
  }

  std::string Head() const {
    std::string bytes;
    Put32(bytes, 0x00010000);
    PutZeros(bytes, 8);
    Put32(bytes, 0x5F0F3CF5);
    Put16(bytes, 0);
    Put16(bytes, 1000);
    PutZeros(bytes, 16 + 4);
    Put16(bytes, 1000);
    Put16(bytes, 1000);
    Put16(bytes, static_cast<std::size_t>(m_nMacStyle));
    Put16(bytes, 8);
    Put16(bytes, 2);
    Put16(bytes, 1);  // long offsets in loca
    Put16(bytes, 0);
    return bytes;
  }

  std::string HorizontalHeader() const {
    std::string bytes;
    Put32(bytes, 0x00010000);
    Put16(bytes, 800);
    Put16(bytes, 0x10000 - 200);
    PutZeros(bytes, 2);
    Put16(bytes, 1000);
    PutZeros(bytes, 22);
    Put16(bytes, static_cast<std::size_t>(m_nGlyphs));
    return bytes;
  }

  std::string Profile() const {
    std::string bytes;
    Put32(bytes, 0x00010000);
    Put16(bytes, static_cast<std::size_t>(m_nGlyphs));
    Put16(bytes, 4);
    Put16(bytes, 1);
    PutZeros(bytes, 4);
    Put16(bytes, 2);
    PutZeros(bytes, 16);
    return bytes;
  }

  std::string Metrics() const {
    std::string bytes;
    for (int glyph = 0; glyph < m_nGlyphs; ++glyph) {
      Put16(bytes, static_cast<std::size_t>(100 * glyph + 100));
      Put16(bytes, 50);
    }
    return bytes;
  }

  std::string Contour() const {
    std::string bytes;
    Put16(bytes, 1);
    PutZeros(bytes, 8);
    Put16(bytes, m_arrCorners.size() - 1);
    Put16(bytes, 0);
    bytes.append(m_arrCorners.size(), '\1');
    std::string vertical;
    std::pair<int, int> last = {0, 0};
    for (auto const& corner : m_arrCorners) {
      Put16(bytes, static_cast<std::size_t>(corner.first - last.first) & 0xFFFF);
      Put16(vertical, static_cast<std::size_t>(corner.second - last.second) & 0xFFFF);
      last = corner;
    }
    bytes += vertical;
    PutZeros(bytes, bytes.size() % 2);
    return bytes;
  }

  std::string Glyph(int nGlyph) const {
    if (nGlyph == 1 && !m_arrCorners.empty()) return Contour();
    std::size_t const right = static_cast<std::size_t>(50 + 100 * nGlyph);
    std::string bytes;
    Put16(bytes, 1);
    for (std::size_t const edge : {std::size_t{50}, std::size_t{0}, right, std::size_t{700}}) Put16(bytes, edge);
    Put16(bytes, 3);
    Put16(bytes, 0);
    bytes.append(4, '\1');
    for (std::size_t const x : {std::size_t{50}, std::size_t{0}, right - 50, std::size_t{0}}) Put16(bytes, x);
    for (int const y : {0, 700, 0, -700}) Put16(bytes, static_cast<std::size_t>(y) & 0xFFFF);
    PutZeros(bytes, 1);
    PutZeros(bytes, bytes.size() % 2);
    return bytes;
  }

  std::string Glyphs() const {
    std::string bytes;
    for (int glyph = 1; glyph < m_nGlyphs; ++glyph) bytes += Glyph(glyph);
    return bytes;
  }

  std::string Places() const {
    std::string bytes;
    std::size_t place = 0;
    Put32(bytes, place);
    for (int glyph = 0; glyph < m_nGlyphs; ++glyph) {
      if (glyph > 0) place += Glyph(glyph).size();
      Put32(bytes, place);
    }
    return bytes;
  }

  std::string Charmaps() const {
    std::string bytes;
    std::string maps;
    Put16(bytes, 0);
    Put16(bytes, m_arrCharmaps.size());
    for (QXCharmapRecord const& map : m_arrCharmaps) {
      Put16(bytes, static_cast<std::size_t>(map.m_nPlatform));
      Put16(bytes, static_cast<std::size_t>(map.m_nEncoding));
      Put32(bytes, 4 + 8 * m_arrCharmaps.size() + maps.size());
      Put16(maps, 12);
      Put16(maps, 0);
      Put32(maps, 16 + 12 * map.m_arrCharacters.size());
      Put32(maps, 0);
      Put32(maps, map.m_arrCharacters.size());
      for (std::size_t i = 0; i < map.m_arrCharacters.size(); ++i) {
        Put32(maps, map.m_arrCharacters[i]);
        Put32(maps, map.m_arrCharacters[i]);
        Put32(maps, i + 1);
      }
    }
    return bytes + maps;
  }

  std::string Names() const {
    std::string bytes;
    std::string texts;
    Put16(bytes, 0);
    Put16(bytes, m_arrNames.size());
    Put16(bytes, 6 + 12 * m_arrNames.size());
    for (QXNameRecord const& name : m_arrNames) {
      for (int const value : {name.m_nPlatform, name.m_nEncoding, name.m_nLanguage, name.m_nNameId}) {
        Put16(bytes, static_cast<std::size_t>(value));
      }
      Put16(bytes, name.m_strBytes.size());
      Put16(bytes, texts.size());
      texts += name.m_strBytes;
    }
    return bytes + texts;
  }
};

/// A face with one English family name, and a subfamily unless that is empty.
inline QXFontMaker SimpleFont(std::u16string_view family, std::u16string_view subfamily = u"Regular") {
  QXFontMaker font({Named(1033, 1, family)});
  if (!subfamily.empty()) font.m_arrNames.push_back(Named(1033, 2, subfamily));
  return font;
}

/// A face whose name table has nRecords records. Record nNameAt is probe, the rest are copyright texts.
inline QXFontMaker TableOf(int nRecords, int nNameAt, QXNameRecord const& probe) {
  QXFontMaker font;
  for (int i = 0; i < nRecords; ++i) {
    font.m_arrNames.push_back(i == nNameAt ? probe : Named(1033, 0, u"copyright"));
  }
  return font;
}

}  // namespace QXC
