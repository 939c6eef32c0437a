/// @file
/// Where a glyph stands in an atlas.
#pragma once

#include <cstdint>

#include <QxGraphics3D/Export.h>

namespace QXC {

/// A square tile of a texture of 1024 by 1024 pixels, packed into 32 bits. A value.
class QXGRAPHICS3D_API QXFontTextureKey {
public:
  /// From the lowest bit on: 10 bits x and 10 bits y of the tile's centre, 4 bits level, 8 bits texture.
  std::uint32_t m_nKey = 0;

  QXFontTextureKey() = default;
  explicit QXFontTextureKey(std::uint32_t nKey) : m_nKey(nKey) {}
  /// m_nKey.
  operator std::uint32_t() const { return m_nKey; }

  int GetCentreX() const { return static_cast<int>(m_nKey & 1023U); }
  int GetCentreY() const { return static_cast<int>(m_nKey >> 10 & 1023U); }
  /// 0 for the whole texture; each further level has half the edge.
  int GetLevel() const { return static_cast<int>(m_nKey >> 20 & 15U); }
  /// The texture is called "Font_BigTexture_" and this number.
  int GetTexture() const { return static_cast<int>(m_nKey >> 24); }

  /// Edge of the tile in pixels.
  int GetSize() const { return 1024 >> GetLevel(); }
  /// The tile's upper left pixel, counted from the texture's first row and column.
  int GetLeft() const { return GetCentreX() - GetSize() / 2; }
  int GetTop() const { return GetCentreY() - GetSize() / 2; }

  bool operator==(QXFontTextureKey const&) const = default;
};

}  // namespace QXC
