/// @file
/// Texts to look at.
#pragma once

#include <algorithm>
#include <filesystem>
#include <list>
#include <memory>
#include <string>
#include <vector>

#include <QxGraphics3D/frame/foundation/toolkit/QXRegistry.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXStringEx.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXToolkit.h>
#include <QxGraphics3D/text/QXCharBitmapData.h>
#include <QxGraphics3D/text/QXTextLayout.h>
#include <QxGraphics3D/text/QXTextureFontManager.h>
#include <QxGraphics3D/text/QXTrueType.h>

#include <tests/frame/QXTempFolder.h>
#include <tests/ogre/QXOgreTexturing.h>
#include <tests/text/QXFontMaker.h>

namespace QXC {

/// A fonts folder with two fonts while it lives: "Boxes", whose character 0x4DFF + g is a box at 15 points of 2 g by
/// 14 pixels, which stands on the baseline one pixel behind the pen, and "Letters", a copy of DejaVu Sans.
class QXFontsOfLabels {
public:
  QXFontsOfLabels() {
    QXFontMaker font = SimpleFont(u"Boxes");
    font.m_nGlyphs = 41;
    font.m_arrCharmaps = {{3, 1, {}}};
    for (std::uint32_t g = 1; g <= 40; ++g) font.m_arrCharmaps[0].m_arrCharacters.push_back(0x4DFF + g);
    m_Folder.Write("boxes.fon", font.Make());
    std::filesystem::create_symlink("/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf", m_Folder.m_Path / "letters.fon");
    m_Section[L"Boxes"] = L"boxes.fon";
    m_Section[L"Letters"] = L"letters.fon";
    QXStringEx::SetResString(L"IMl001", L"Letters");
    QXToolkit::SetFontsPath(m_Folder.GetName());
    Renew();
  }
  ~QXFontsOfLabels() {
    m_Section = m_SectionBefore;
    QXStringEx::SetResString(L"IMl001", m_strDefaultBefore);
    QXToolkit::SetFontsPath(m_strPathBefore);
    Renew();
  }
  QXFontsOfLabels(QXFontsOfLabels const&) = delete;
  QXFontsOfLabels& operator=(QXFontsOfLabels const&) = delete;

private:
  /// The engine has opened fonts of the folder before.
  static void Renew() {
    QXTextureFontManager::GetSingleton().Clear();
    delete QXSingleton<QXTrueType>::ms_pSingleton;
    QXSingleton<QXTrueType>::ms_pSingleton = nullptr;
  }

  QXTempFolder m_Folder;
  QXHash<QdcUnicodeString>& m_Section = QXRegistry::Root().SubFile(L"Graphics3DDefaultFonts");
  QXHash<QdcUnicodeString> const m_SectionBefore = m_Section;
  QdcUnicodeString const m_strDefaultBefore = QXStringEx::LoadResString(L"IMl001");
  QdcUnicodeString const m_strPathBefore = QXToolkit::GetFontsPath();
};

inline QXTextStyle MakeStyle(wchar_t const* szFace, double dSize, unsigned char bBold = 0) {
  QXTextStyle style;
  style.SetFaceName(szFace);
  style.SetSize(dSize);
  style.SetBold(bBold);
  return style;
}

/// The box of 2 nGlyph pixels at 15 points.
inline QdcUnicodeString BoxText(int nGlyph) {
  wchar_t const szText[] = {static_cast<wchar_t>(0x4DFF + nGlyph), L'\0'};
  return szText;
}

class QXOgreLabeling : public QXOgreTexturing {
protected:
  void TearDown() override {
    m_arrLayouts.clear();
    QXOgreTexturing::TearDown();
  }

  QXTextLayout const& LayOut(QdcUnicodeString const& strText, QXTextStyle const& style, unsigned char bHalo = 0) {
    m_arrLayouts.emplace_back(QXTextureFontManager::GetSingleton());
    EXPECT_EQ(m_arrLayouts.back().SetText(strText, style, bHalo), 1);
    return m_arrLayouts.back();
  }
  QXTexture* GetPage(int nPage = 0) { return m_pTextures->GetTexture(QXTextLayout::GetPageName(nPage), 0); }

  /// Appends the glyphs of a line to a mesh's parts: halos in one colour, texts in the other.
  struct Quads {
    std::vector<QXCorner> m_arrCorners;
    std::vector<float> m_arrPlaces;
    std::vector<float> m_arrOffsets;

    void Add(QXTextLayout const& layout, QXVector3d const& vecAnchor, unsigned int nColor, unsigned int nHaloColor,
        bool bFlat = false, float fPixel = 1.0F) {
      for (QXTextGlyph const& glyph : layout.GetGlyphs()) {
        for (int i = 0; i < 4; ++i) {
          bool const bRight = i == 1 || i == 2;
          bool const bTop = i >= 2;
          auto const x = static_cast<float>(bRight ? glyph.m_nRight : glyph.m_nLeft);
          auto const y = static_cast<float>(bTop ? glyph.m_nTop : glyph.m_nBottom);
          float const fScale = bFlat ? fPixel : 0.0F;
          m_arrCorners.push_back(
              {static_cast<float>(vecAnchor.x) + fScale * x, static_cast<float>(vecAnchor.y) + fScale * y,
                  static_cast<float>(vecAnchor.z), QXVector3d::ZERO, glyph.m_bHalo ? nHaloColor : nColor});
          m_arrPlaces.push_back(bRight ? glyph.m_TexCoords.m_fRight : glyph.m_TexCoords.m_fLeft);
          m_arrPlaces.push_back(bTop ? glyph.m_TexCoords.m_fBottom : glyph.m_TexCoords.m_fTop);
          m_arrOffsets.push_back(x);
          m_arrOffsets.push_back(y);
        }
      }
    }
  };
  QXRenderOperation3D* DrawQuads(Quads const& quads, bool bFlat = false) {
    auto const pMesh = MakeMesh(quads.m_arrCorners, false, true);
    AddTexCoords(*pMesh, 0, quads.m_arrPlaces);
    if (!bFlat) AddTexCoords(*pMesh, 1, quads.m_arrOffsets);
    std::vector<unsigned int> arrIndices;
    for (unsigned int i = 0; i < quads.m_arrCorners.size(); i += 4)
      for (unsigned int const n : {0U, 1U, 2U, 0U, 2U, 3U}) arrIndices.push_back(i + n);
    AddRange<unsigned int>(*pMesh, arrIndices);
    QXRenderOperation3D* const p = Draw(*pMesh);
    p->SetTexture(0, GetPage());
    p->SetLightEnable(0);
    p->SetDepthWrite(0);
    if (bFlat) return p;
    EXPECT_EQ(p->SetShaderPrograms(LABEL_VERTEX_PROGRAM, LABEL_FRAGMENT_PROGRAM), 1);
    return p;
  }
  /// One label that faces the camera.
  QXRenderOperation3D* DrawLabel(QXTextLayout const& layout, QXVector3d const& vecAnchor,
      unsigned int nColor = 0xFFFFFFFF, unsigned int nHaloColor = 0xFFFFFFFF) {
    Quads quads;
    quads.Add(layout, vecAnchor, nColor, nHaloColor);
    return DrawQuads(quads);
  }
  /// Where a picture has other pixels than the background: left, top, right, bottom, the last two behind it.
  static QdcRect Ink(QXPicture const& picture, unsigned int nWidth = SIZE, unsigned int nHeight = SIZE,
      QXPixel none = BACKGROUND_PIXEL) {
    QdcRect rc(static_cast<int>(nWidth), static_cast<int>(nHeight), 0, 0);
    for (unsigned int y = 0; y < nHeight; ++y)
      for (unsigned int x = 0; x < nWidth; ++x) {
        if (picture.At(x, y) == none) continue;
        rc.left = std::min(rc.left, static_cast<int>(x));
        rc.top = std::min(rc.top, static_cast<int>(y));
        rc.right = std::max(rc.right, static_cast<int>(x) + 1);
        rc.bottom = std::max(rc.bottom, static_cast<int>(y) + 1);
      }
    return rc;
  }
  static std::string Words(QdcRect const& rc) {
    return std::to_string(rc.left) + " " + std::to_string(rc.top) + " " + std::to_string(rc.right) + " " +
           std::to_string(rc.bottom);
  }

  QXFontsOfLabels m_Fonts;
  std::list<QXTextLayout> m_arrLayouts;
};

}  // namespace QXC
