/// @file
/// What names a glyph in an atlas.
#pragma once

#include <cstdint>

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

namespace QXC {

/// Key of one glyph. A value.
///
/// The managers read the character and the halo bit only. Everything else takes part in the order and in nothing more:
/// who builds keys puts there whatever tells glyphs of one character apart, such as size, cut and family.
class QXGRAPHICS3D_API QXFontKey {
public:
  /// Set in m_nCode for the halo of a glyph, the border round its outline.
  static constexpr std::uint32_t HALO = 16384;

  std::uint32_t m_nCode = 0;       ///< character in bits 16 to 31, HALO, the other bits the caller's
  QdcUnicodeString m_strFaceName;  ///< the caller's; counts up to its first zero character

  QXFontKey() = default;
  QXFontKey(std::uint32_t nCode, QdcUnicodeString const& strFaceName) : m_nCode(nCode), m_strFaceName(strFaceName) {}

  int GetCharacter() const { return static_cast<int>(m_nCode >> 16); }
  unsigned char IsHalo() const { return (m_nCode & HALO) != 0; }

  /// By the code, then by the name.
  bool operator<(QXFontKey const& other) const {
    return m_nCode != other.m_nCode ? m_nCode < other.m_nCode : m_strFaceName < other.m_strFaceName;
  }
  bool operator==(QXFontKey const& other) const {
    return m_nCode == other.m_nCode && m_strFaceName == other.m_strFaceName;
  }
};

}  // namespace QXC
