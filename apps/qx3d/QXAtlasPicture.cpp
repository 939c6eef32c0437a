#include <apps/qx3d/QXAtlasPicture.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string_view>

namespace QXApp {

namespace {

struct Color {
  unsigned char m_nRed;
  unsigned char m_nGreen;
  unsigned char m_nBlue;
};

constexpr Color Black{0, 0, 0};
constexpr Color White{255, 255, 255};
constexpr Color Footer{40, 44, 52};
constexpr Color Bar{90, 170, 80};
constexpr Color Boards[] = {{205, 205, 205}, {160, 160, 160}};
constexpr int BoardEdge = 8;

/// Neighbouring sizes look different; magenta is missing, since that is where nothing was uploaded.
constexpr Color Outlines[] = {{255, 140, 0}, {0, 200, 255}, {255, 235, 0}, {0, 225, 90}, {255, 60, 60}, {90, 130, 255}};

/// The program has no font here: texts are what is looked at, and must not be needed for it. Rows of three pixels,
/// the leftmost in the highest bit.
struct Glyph {
  char m_c;
  std::uint16_t m_nRows;
};
constexpr int GlyphWidth = 3;
constexpr int GlyphHeight = 5;
constexpr Glyph Glyphs[] = {
    {'0', 0b111'101'101'101'111},
    {'1', 0b010'110'010'010'111},
    {'2', 0b111'001'111'100'111},
    {'3', 0b111'001'011'001'111},
    {'4', 0b101'101'111'001'001},
    {'5', 0b111'100'111'001'111},
    {'6', 0b111'100'111'101'111},
    {'7', 0b111'001'010'010'010},
    {'8', 0b111'101'111'101'111},
    {'9', 0b111'101'111'001'111},
    {'.', 0b000'000'000'000'010},
    {'%', 0b101'001'010'100'101},
};

std::uint16_t FindGlyph(char c) {
  auto const* const pGlyph = std::ranges::find(Glyphs, c, &Glyph::m_c);
  return pGlyph != std::end(Glyphs) ? pGlyph->m_nRows : std::uint16_t{0};
}

int GetTextWidth(std::string_view strText, int nScale) {
  return static_cast<int>(strText.size()) * (GlyphWidth + 1) * nScale - nScale;
}

/// A picture that is painted on; what lies outside is left out.
class Canvas {
public:
  Canvas(int nWidth, int nHeight) : m_Picture{nWidth, nHeight, {}} {
    m_Picture.m_vecPixels.assign(
        std::size_t{4} * static_cast<std::size_t>(nWidth) * static_cast<std::size_t>(nHeight), 255);
  }

  QXAtlasPicture Take() { return std::move(m_Picture); }

  /// Inside the picture.
  unsigned char* At(int nX, int nY) {
    return m_Picture.m_vecPixels.data() +
           4 * (static_cast<std::size_t>(nY) * static_cast<std::size_t>(m_Picture.m_nWidth) +
                   static_cast<std::size_t>(nX));
  }

  void Set(int nX, int nY, Color const& color) {
    if (nX < 0 || nY < 0 || nX >= m_Picture.m_nWidth || nY >= m_Picture.m_nHeight) return;
    unsigned char* p = At(nX, nY);
    p[0] = color.m_nBlue;
    p[1] = color.m_nGreen;
    p[2] = color.m_nRed;
  }

  void Fill(int nX, int nY, int nWidth, int nHeight, Color const& color) {
    for (int y = nY; y < nY + nHeight; ++y)
      for (int x = nX; x < nX + nWidth; ++x) Set(x, y, color);
  }

  void Outline(int nX, int nY, int nSize, Color const& color) {
    Fill(nX, nY, nSize, 1, color);
    Fill(nX, nY + nSize - 1, nSize, 1, color);
    Fill(nX, nY, 1, nSize, color);
    Fill(nX + nSize - 1, nY, 1, nSize, color);
  }

  void Text(int nX, int nY, std::string_view strText, int nScale, Color const& color) {
    for (char const c : strText) {
      std::uint16_t const nRows = FindGlyph(c);
      for (int i = 0; i < GlyphWidth * GlyphHeight; ++i)
        if ((nRows >> (GlyphWidth * GlyphHeight - 1 - i) & 1) != 0)
          Fill(nX + i % GlyphWidth * nScale, nY + i / GlyphWidth * nScale, nScale, nScale, color);
      nX += (GlyphWidth + 1) * nScale;
    }
  }

private:
  QXAtlasPicture m_Picture;
};

/// @param nWeight  of the front: its alpha, or 255 where the alpha is in the colour already
unsigned char Mix(unsigned char nFront, unsigned char nBack, unsigned int nWeight, unsigned int nAlpha) {
  return static_cast<unsigned char>(std::min((nFront * nWeight + nBack * (255U - nAlpha) + 127U) / 255U, 255U));
}

void Lay(unsigned char* pTarget, unsigned char const* p, bool bPremultiplied, Color const& board) {
  if (p[3] == 255) {
    std::memcpy(pTarget, p, 3);
    return;
  }
  unsigned int const nWeight = bPremultiplied ? 255U : p[3];
  pTarget[0] = Mix(p[0], board.m_nBlue, nWeight, p[3]);
  pTarget[1] = Mix(p[1], board.m_nGreen, nWeight, p[3]);
  pTarget[2] = Mix(p[2], board.m_nRed, nWeight, p[3]);
}

void PaintPixels(Canvas& canvas, QXAtlasPage const& page, int nScale) {
  if (page.m_vecPixels.empty()) return;
  int const nEdge = page.m_nSize * nScale;
  for (int y = 0; y < nEdge; ++y) {
    unsigned char const* pSource = page.m_vecPixels.data() + std::size_t{4} * static_cast<std::size_t>(y / nScale) *
                                                                 static_cast<std::size_t>(page.m_nSize);
    unsigned char* pTarget = canvas.At(0, y);
    for (int x = 0; x < nEdge; ++x, pTarget += 4) {
      Lay(pTarget, pSource, page.m_bPremultiplied, Boards[(x / BoardEdge + y / BoardEdge) % 2]);
      if ((x + 1) % nScale == 0) pSource += 4;
    }
  }
}

Color const& ChooseOutline(int nSize) {
  return Outlines[static_cast<std::size_t>(std::bit_width(static_cast<unsigned int>(nSize))) % std::size(Outlines)];
}

/// The number in white on black, as large as the tile lets it be.
void PaintNumber(Canvas& canvas, int nX, int nY, int nSize, std::string const& strNumber) {
  int nScale = nSize < 48 ? 1 : (nSize < 160 ? 2 : 3);
  while (nScale > 0 &&
         (GetTextWidth(strNumber, nScale) + 2 * nScale + 2 > nSize || GlyphHeight * nScale + 2 * nScale + 2 > nSize))
    --nScale;
  if (nScale == 0) return;
  canvas.Fill(nX + 1, nY + 1, GetTextWidth(strNumber, nScale) + 2 * nScale, (GlyphHeight + 2) * nScale, Black);
  canvas.Text(nX + 1 + nScale, nY + 1 + nScale, strNumber, nScale, White);
}

void PaintTiles(Canvas& canvas, QXAtlasPage const& page, int nScale) {
  int nNumber = 0;
  for (QXAtlasTile const& tile : page.m_vecTiles) {
    int const nX = tile.m_nX * nScale;
    int const nY = tile.m_nY * nScale;
    int const nSize = tile.m_nSize * nScale;
    canvas.Outline(nX, nY, nSize, ChooseOutline(tile.m_nSize));
    PaintNumber(canvas, nX, nY, nSize, std::to_string(++nNumber));
  }
}

void PaintFooter(Canvas& canvas, int nTop, int nWidth, double dFill) {
  canvas.Fill(0, nTop, nWidth, AtlasFooterHeight, Footer);
  canvas.Fill(0, nTop, static_cast<int>(std::lround(dFill * nWidth)), AtlasFooterHeight, Bar);
  char szText[32];
  std::snprintf(szText, sizeof(szText), "%.1f%%", 100.0 * dFill);
  constexpr int Scale = 4;
  canvas.Text(8, nTop + (AtlasFooterHeight - GlyphHeight * Scale) / 2, szText, Scale, White);
}

}  // namespace

double QXAtlasPage::GetFill() const {
  double dTaken = 0.0;
  for (QXAtlasTile const& tile : m_vecTiles) dTaken += static_cast<double>(tile.m_nSize) * tile.m_nSize;
  return m_nSize > 0 ? dTaken / (static_cast<double>(m_nSize) * m_nSize) : 0.0;
}

QXAtlasPicture PaintAtlasPage(QXAtlasPage const& page) {
  int const nScale = std::max(1, AtlasPictureWidth / std::max(1, page.m_nSize));
  int const nEdge = page.m_nSize * nScale;
  Canvas canvas(nEdge, nEdge + AtlasFooterHeight);
  PaintPixels(canvas, page, nScale);
  PaintTiles(canvas, page, nScale);
  PaintFooter(canvas, nEdge, nEdge, page.GetFill());
  return canvas.Take();
}

}  // namespace QXApp
