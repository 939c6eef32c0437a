/// @file
/// A glyph in an atlas.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/text/QXFontTextureKey.h>

namespace QXC {

/// One glyph of an atlas: which pixels of which texture. QXTextureFontManager or QXMemoryTextureFontManager makes, owns
/// and deletes it; it stands still as long as it has users.
class QXGRAPHICS3D_API QXTextureFont {
public:
  /// Texture coordinates, 0 to 1, of the picture's outer edges; v grows downwards, as the rows of the texture do. The
  /// rest of the tile is not covered.
  struct TexCoords {
    float m_fLeft = 0;    ///< u of the first column
    float m_fTop = 0;     ///< v behind the last row, the greater of the two: that of the picture's lower edge
    float m_fRight = 0;   ///< u behind the last column
    float m_fBottom = 0;  ///< v of the first row, that of the picture's upper edge

    /// The four by number, in the order above.
    /// @param nIndex  0 to 3
    float& operator[](int nIndex) {
      return nIndex < 2 ? (nIndex == 0 ? m_fLeft : m_fTop) : nIndex == 2 ? m_fRight : m_fBottom;
    }
    float operator[](int nIndex) const { return const_cast<TexCoords&>(*this)[nIndex]; }
  };

  QXFontTextureKey m_Key;
  int m_nRefCount = 0;  ///< users; raised by GetTextureFont, lowered by DelTextureFont
  TexCoords m_TexCoords;
};

}  // namespace QXC
