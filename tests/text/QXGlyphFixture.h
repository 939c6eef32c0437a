/// @file
/// A font engine of a test's own, and its pictures beside those of the plain sequence.
#pragma once

#include "QXFontsFixture.h"
#include "QXPlainGlyph.h"

#include <QxGraphics3D/text/QXCharBitmapData.h>
#include <QxGraphics3D/text/QXTrueType.h>

#include <memory>
#include <ostream>
#include <string>

namespace QXPlain {

inline void PrintTo(Picture const& picture, std::ostream* pStream) {
  *pStream << picture.m_nWidth << " x " << picture.m_nHeight << ", bearing " << picture.m_nBearingX << ' '
           << picture.m_nBearingY << ", advance " << picture.m_nAdvance << ", sum ";
  unsigned long sum = 0;
  for (std::size_t i = 0; i < picture.m_arrPixels.size(); ++i) sum = sum * 31 + picture.m_arrPixels[i];
  *pStream << sum;
}

}  // namespace QXPlain

namespace QXC {

/// The installed fonts that glyphs are compared in: hinted and unhinted TrueType, embedded bitmaps, CFF.
struct QXSampleFont {
  char const* m_szFile;
  int m_nFace;
};

inline constexpr QXSampleFont SAMPLE_FONTS[] = {
    {"/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf", 0},
    {"/usr/share/fonts/truetype/dejavu/DejaVuSerif-Bold.ttf", 0},
    {"/usr/share/fonts/truetype/liberation2/LiberationSans-Italic.ttf", 0},
    {"/usr/share/fonts/truetype/wqy/wqy-zenhei.ttc", 0},
    {"/usr/share/fonts/truetype/wqy/wqy-microhei.ttc", 0},
    {"/usr/share/fonts/truetype/arphic/uming.ttc", 0},
    {"/usr/share/fonts/opentype/noto/NotoSansCJK-Regular.ttc", 2},
    {"/usr/share/fonts/opentype/noto/NotoSerifCJK-Bold.ttc", 0},
};

class QXGlyphFixture : public QXFontsFixture {
protected:
  QXTrueType& Fonts() {
    if (!m_pFonts) m_pFonts = std::make_unique<QXTrueType>();
    return *m_pFonts;
  }

  /// Enters an open face under a family name, in the place of a style.
  FT_Face OpenAs(QdcUnicodeString const& strFamily, std::string const& strFile, int nFace = 0, int nStyle = 0) {
    FT_Face face = nullptr;
    EXPECT_EQ(FT_New_Face(Fonts().m_pLibrary, strFile.c_str(), nFace, &face), 0) << strFile << " is missing";
    QdcArray<FT_Face>& faces = Fonts().m_dictFaces[strFamily];
    faces.SetSize(4);
    faces[static_cast<std::uint64_t>(nStyle)] = face;
    return face;
  }

  void SetStyle(QdcUnicodeString const& strFamily, double dSize, bool bBold = false, bool bItalic = false) {
    QXTextStyle style;
    style.SetFaceName(strFamily);
    style.SetSize(dSize);
    style.SetBold(bBold);
    style.SetItalic(bItalic);
    Fonts().SetTextStyle(style);
  }

  /// Null if the engine gives none.
  std::unique_ptr<QXPlain::Picture> Draw(int nCharacter, bool bHalo = false) {
    std::unique_ptr<QXCharBitmapData> const data(Fonts().GetBitmapData(nCharacter, bHalo));
    if (!data) return nullptr;
    EXPECT_EQ(data->m_nReserved, 0);
    EXPECT_NE(data->m_pData, nullptr);
    auto picture = std::make_unique<QXPlain::Picture>();
    picture->m_nWidth = data->m_nWidth;
    picture->m_nHeight = data->m_nHeight;
    picture->m_nBearingX = data->m_nBearingX;
    picture->m_nBearingY = data->m_nBearingY;
    picture->m_nAdvance = data->m_nAdvance;
    std::size_t const pixels = static_cast<std::size_t>(data->m_nWidth) * static_cast<std::size_t>(data->m_nHeight);
    picture->m_arrPixels.assign(data->m_pData, data->m_pData + pixels * 2);
    return picture;
  }

  /// Whether both are there and equal, or neither is.
  static testing::AssertionResult Same(
      std::unique_ptr<QXPlain::Picture> const& pFirst, std::unique_ptr<QXPlain::Picture> const& pSecond) {
    if (!pFirst && !pSecond) return testing::AssertionSuccess();
    if (pFirst && pSecond && *pFirst == *pSecond) return testing::AssertionSuccess();
    auto const text = [](auto const& pPicture) { return pPicture ? testing::PrintToString(*pPicture) : "null"; };
    return testing::AssertionFailure() << text(pFirst) << " against " << text(pSecond);
  }

  std::unique_ptr<QXTrueType> m_pFonts;
};

}  // namespace QXC
